#include "TwDlgPageOrder.h"

#include "OrvaDebug.h"
#include "TwBindingWidgets.h"
#include "TwFormPreparation.h"
#include "TwResponderBinding.h"
#include "TwainDialogData.h"
#include "TwainViewLayout.h"
#include "ui_TwDlgDoubleExposure.h"
#include "ui_TwDlgPageSeparation.h"

#include <QAbstractButton>
#include <QIcon>

namespace {
constexpr const char* kPageOrder = "pageOrder";
constexpr const char* kPaperSize = "paperSize";
} // namespace

// ---- TwDlgPageOrder ----------------------------------------------------------------------------

TwDlgPageOrder::TwDlgPageOrder(QWidget* parent) : TwPanel(parent) {
    ownValues().setValueForKeyPathWithoutNotification(TwValue(0), kPageOrder);
}

void TwDlgPageOrder::setPageOrderControl(TwSegmentedControl* control, bool pageSeparation) {
    m_pageOrderControl = control;
    const auto buttons = control->buttons();
    for (int order = 0; order < buttons.size(); ++order) {
        // The same pictures as the Layout tab shows beside its Settings... buttons.
        const std::string path = TwainViewLayout::pageOrderIconPath(order, pageSeparation);
        if (!path.empty())
            buttons[order]->setIcon(QIcon(QString::fromStdString(path)));
    }
}

void TwDlgPageOrder::setPageOrder(int order) {
    ownValues().setValueForKeyPath(TwValue(order), kPageOrder);
}

int TwDlgPageOrder::pageOrder() {
    return int(ownValues().valueForKeyPath(kPageOrder).intValue());
}

void TwDlgPageOrder::bindControlAll() {
    TwPanel::bindControlAll();
    responderBinding()->bindValue(m_pageOrderControl, &ownValues(), kPageOrder);
}

void TwDlgPageOrder::onOK() {
    setReturnCode(1);
    close();
}

void TwDlgPageOrder::onCancel() {
    setReturnCode(0);
    close();
}

// ---- TwDlgDoubleExposure -----------------------------------------------------------------------

TwDlgDoubleExposure::TwDlgDoubleExposure(QWidget* parent)
    : TwDlgPageOrder(parent), ui(std::make_unique<Ui::TwDlgDoubleExposure>()) {
    ui->setupUi(this);
    TwPrepareForm(this);
    setPageOrderControl(ui->rdoDoubleExposure, false);
    ownValues().setValueForKeyPathWithoutNotification(TwValue(0), kPaperSize);
    connectActions(this);
}

TwDlgDoubleExposure::~TwDlgDoubleExposure() = default;

TwSegmentedControl* TwDlgDoubleExposure::rdoDoubleExposure() const {
    return ui->rdoDoubleExposure;
}
QComboBox* TwDlgDoubleExposure::cmbPaperSize() const {
    return ui->cmbPaperSize;
}
QPushButton* TwDlgDoubleExposure::btnOK() const {
    return ui->btnOK;
}
QPushButton* TwDlgDoubleExposure::btnCancel() const {
    return ui->btnCancel;
}

void TwDlgDoubleExposure::setPaperSize(int index) {
    ownValues().setValueForKeyPath(TwValue(index), kPaperSize);
}

int TwDlgDoubleExposure::paperSize() {
    return int(ownValues().valueForKeyPath(kPaperSize).intValue());
}

void TwDlgDoubleExposure::bindControlAll() {
    TwDlgPageOrder::bindControlAll();
    TwainDialogData* model = dialogData();
    if (!model) {
        OrvaLog(kOrvaLogError, "TwDlgDoubleExposure::bindControlAll ERROR: no model to bind to\n");
        return;
    }
    responderBinding()->bindContent(ui->cmbPaperSize, model, "content.PaperSizeAllPlusNone");
    responderBinding()->bindSelectedIndex(ui->cmbPaperSize, &ownValues(), kPaperSize);
}

// ---- TwDlgPageSeparation -----------------------------------------------------------------------

TwDlgPageSeparation::TwDlgPageSeparation(QWidget* parent)
    : TwDlgPageOrder(parent), ui(std::make_unique<Ui::TwDlgPageSeparation>()) {
    ui->setupUi(this);
    TwPrepareForm(this);
    setPageOrderControl(ui->rdoPageSeparation, true);
    connectActions(this);
}

TwDlgPageSeparation::~TwDlgPageSeparation() = default;

TwSegmentedControl* TwDlgPageSeparation::rdoPageSeparation() const {
    return ui->rdoPageSeparation;
}
QPushButton* TwDlgPageSeparation::btnOK() const {
    return ui->btnOK;
}
QPushButton* TwDlgPageSeparation::btnCancel() const {
    return ui->btnCancel;
}

void TwDlgDoubleExposure::editDoubleExposure() {
    TwainDialogData* model = dialogData();
    if (!model)
        return;
    const TwValue order = model->valueForKeyPath("Data.Layout.DoubleExposure.PageOrder");
    const TwValue papers = model->valueForKeyPath("content.PaperSizeAllPlusNone");
    const TwValue paper = model->valueForKeyPath("Data.Layout.DoubleExposure.PaperSize");
    int index = 0;
    if (auto list = papers.list()) {
        for (std::size_t i = 0; i < list->size(); ++i) {
            auto entry = (*list)[i].dict();
            if (entry && entry->value("value").isEqual(paper)) {
                index = int(i);
                break;
            }
        }
    }
    setPageOrder(int(order.intValue()));
    setPaperSize(index);
    if (runModal() != 1)
        return;
    model->myChangeValue(TwValue(pageOrder()), "Data.Layout.DoubleExposure.PageOrder");
    auto list = model->valueForKeyPath("content.PaperSizeAllPlusNone").list();
    const int chosen = paperSize();
    if (!list || chosen < 0 || std::size_t(chosen) >= list->size() || !(*list)[std::size_t(chosen)].dict()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: paper size %d is not in content.PaperSizeAllPlusNone; kept\n",
                "TwDlgDoubleExposure::editDoubleExposure", chosen);
        return;
    }
    model->myChangeValue((*list)[std::size_t(chosen)].dict()->value("value"),
                         "Data.Layout.DoubleExposure.PaperSize");
}

void TwDlgPageSeparation::editPageSeparation() {
    TwainDialogData* model = dialogData();
    if (!model)
        return;
    setPageOrder(int(model->valueForKeyPath("Data.Layout.PageSeparation.PageOrder").intValue()));
    if (runModal() == 1)
        model->myChangeValue(TwValue(pageOrder()), "Data.Layout.PageSeparation.PageOrder");
}
