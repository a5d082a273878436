#include "TwDlgAbout.h"

#include "OrvaDebug.h"
#include "TwBundle.h"
#include "TwFormPreparation.h"
#include "TwResponderBinding.h"
#include "TwainDialogData.h"
#include "ui_TwDlgAbout.h"

namespace {
constexpr const char* kBundleInfoKeys[] = {"CFBundleVersion", "Version Information",
                                           "NSHumanReadableCopyright"};
} // namespace

TwDlgAbout::TwDlgAbout(QWidget* parent) : TwPanel(parent), ui(std::make_unique<Ui::TwDlgAbout>()) {
    ui->setupUi(this);
    TwPrepareForm(this);
    connectActions(this);
}

TwDlgAbout::~TwDlgAbout() = default;

QLabel* TwDlgAbout::txtDriverVersion() const {
    return ui->txtDriverVersion;
}
QLabel* TwDlgAbout::txtDriverVerInfo() const {
    return ui->txtDriverVerInfo;
}
QLabel* TwDlgAbout::txtScannerProduct() const {
    return ui->txtScannerProduct;
}
QLabel* TwDlgAbout::txtScannerVersion() const {
    return ui->txtScannerVersion;
}
QLabel* TwDlgAbout::txtScannerInterface() const {
    return ui->txtScannerInterface;
}
QLabel* TwDlgAbout::txtCopyright() const {
    return ui->txtCopyright;
}

void TwDlgAbout::bindControlAll() {
    TwPanel::bindControlAll();
    TwainDialogData* model = dialogData();
    const TwBundle* bundle = model ? model->bundleDS().get() : nullptr;
    for (const char* key : kBundleInfoKeys) {
        TwValue value = bundle ? bundle->objectForInfoDictionaryKey(key) : TwValue();
        if (!value.isString() && !value.isNull())
            value = TwValue(value.description());
        // A text the bundle lacks shows empty rather than what the last data source said.
        ownValues().setValueForKeyPath(value.isNull() ? TwValue("") : value, key);
    }
    responderBinding()->bindValues({"CFBundleVersion", ui->txtDriverVersion, "Version Information",
                                    ui->txtDriverVerInfo, "NSHumanReadableCopyright", ui->txtCopyright},
                                   &ownValues());
    if (!model) {
        OrvaLog(kOrvaLogError, "TwDlgAbout::bindControlAll ERROR: no model to bind to\n");
        return;
    }
    responderBinding()->bindValues({"ScanInfo.ProductName", ui->txtScannerProduct, "ScanInfo.Version",
                                    ui->txtScannerVersion, "ScanInfo.Interface", ui->txtScannerInterface},
                                   model);
}

void TwDlgAbout::onOK() {
    close();
}
