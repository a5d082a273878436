#include "TwDlgCustom.h"

#include "OrvaDebug.h"
#include "TwEditCommit.h"
#include "TwFormPreparation.h"
#include "TwRangeHelpers.h"
#include "TwResponderBinding.h"
#include "TwainDialogData.h"
#include "TwainNumberFormatter.h"
#include "ui_TwDlgCustom.h"

#include <QGroupBox>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {
constexpr const char* kUnit = "unit";
// The model's key of each margin, in the order of kMarginKeys.
constexpr const char* kModelKeys[8] = {"Customize.BorderRemoval.left",  "Customize.BorderRemoval.top",
                                       "Customize.BorderRemoval.right", "Customize.BorderRemoval.bottom",
                                       "Customize.RemoveShadow.left",   "Customize.RemoveShadow.top",
                                       "Customize.RemoveShadow.right",  "Customize.RemoveShadow.bottom"};
// A margin converted to inches and back lands a hair below the tenth it was; whole tenths survive.
constexpr double kTenthsTolerance = 1e-6;

// Formatter steps of a field: millimetres with one decimal, inches with two.
int placesFor(std::uint32_t unit) {
    return unit == TwDlgCustom::Inch ? 2 : 1;
}
} // namespace

const char* const TwDlgCustom::kMarginKeys[8] = {"removalLeft", "removalTop", "removalRight", "removalBottom",
                                                 "shadowLeft",  "shadowTop",  "shadowRight",  "shadowBottom"};

TwDlgCustom::TwDlgCustom(QWidget* parent) : TwPanel(parent), ui(std::make_unique<Ui::TwDlgCustom>()) {
    ui->setupUi(this);
    TwPrepareForm(this);
    m_fmtRemoval = new TwainNumberFormatter(this);
    m_fmtShadow = new TwainNumberFormatter(this);
    for (int i = 0; i < 8; ++i) {
        field(kMarginKeys[i])->setValidator(i < 4 ? m_fmtRemoval : m_fmtShadow);
        ownValues().setValueForKeyPathWithoutNotification(TwValue(0.0), kMarginKeys[i]);
    }
    ownValues().setValueForKeyPathWithoutNotification(TwValue(std::int64_t(Millimetre)), kUnit);
    setFormatterUnit(Millimetre);
    // Whoever changes the unit (the pop-up, setUnit), the margins follow, shown or not.
    ownValues().addObserver(this, kUnit, kTwObserveNew | kTwObserveOld);
    connectActions(this);
}

TwDlgCustom::~TwDlgCustom() {
    ownValues().removeObserver(this, kUnit);
}

QComboBox* TwDlgCustom::cmbUnit() const {
    return ui->cmbUnit;
}
QPushButton* TwDlgCustom::btnOK() const {
    return ui->btnOK;
}
QPushButton* TwDlgCustom::btnCancel() const {
    return ui->btnCancel;
}

QLineEdit* TwDlgCustom::field(const char* key) const {
    QLineEdit* const fields[8] = {ui->txtRemovalLeft,   ui->txtRemovalTop,  ui->txtRemovalRight,
                                  ui->txtRemovalBottom, ui->txtShadowLeft,  ui->txtShadowTop,
                                  ui->txtShadowRight,   ui->txtShadowBottom};
    for (int i = 0; i < 8; ++i)
        if (std::strcmp(key, kMarginKeys[i]) == 0)
            return fields[i];
    return nullptr;
}

std::uint32_t TwDlgCustom::unit() {
    return std::uint32_t(ownValues().valueForKeyPath(kUnit).intValue());
}

void TwDlgCustom::setUnit(std::uint32_t newUnit) {
    // Written only when it differs; the observer converts the margins.
    ownValues().changeValue(TwValue(std::int64_t(newUnit)), kUnit);
}

double TwDlgCustom::margin(const char* key) {
    return ownValues().valueForKeyPath(key).doubleValue();
}

void TwDlgCustom::setFormatterUnit(std::uint32_t unit) {
    const int places = placesFor(unit);
    const double scale = std::pow(10.0, places);
    for (auto [formatter, box] :
         {std::pair{m_fmtRemoval, ui->boxRemoval}, std::pair{m_fmtShadow, ui->boxShadow}}) {
        const double millimetres = box->property("maximumMillimetres").toDouble();
        const double maximum = unit == Inch ? millimetres / kTwMillimetresPerInch : millimetres;
        // Rounded down, so that the largest entry still lies within the model's limit.
        SetTextRangeFormatter(formatter, 0, int(std::floor(maximum * scale + kTenthsTolerance)), places);
    }
}

void TwDlgCustom::bindControlAll() {
    TwPanel::bindControlAll();
    TwainDialogData* model = dialogData();
    if (!model) {
        OrvaLog(kOrvaLogError, "TwDlgCustom::bindControlAll ERROR: no model to bind to\n");
        return;
    }
    const std::uint32_t current = unit();
    for (int i = 0; i < 8; ++i) {
        TwValue tenths = model->valueForKeyPath(kModelKeys[i]);
        if (!tenths.isNumber())
            OrvaLog(kOrvaLogError, "ERROR: %s: %s is not a number; 0 is shown\n",
                    "TwDlgCustom::bindControlAll", kModelKeys[i]);
        double value = tenths.doubleValue() / 10.0;
        if (current == Inch)
            value /= kTwMillimetresPerInch;
        ownValues().setValueForKeyPath(TwValue(value), kMarginKeys[i]);
    }
    setFormatterUnit(current);
    responderBinding()->bindContents({"content.Unit", ui->cmbUnit}, model);
    TwBindList values{kUnit, ui->cmbUnit};
    for (const char* key : kMarginKeys)
        values.insert(values.end(), {key, field(key)});
    responderBinding()->bindValues(values, &ownValues());
}

void TwDlgCustom::observeValueForKeyPath(const std::string& keyPath, TwObservable* object,
                                         const TwKeyValueChange& change, void*) {
    if (object != &ownValues() || keyPath != kUnit)
        return;
    if (!change.oldValue.isNumber() || !change.newValue.isNumber() ||
        change.oldValue.isEqual(change.newValue))
        return;
    convertMargins(std::uint32_t(change.oldValue.intValue()), std::uint32_t(change.newValue.intValue()));
}

void TwDlgCustom::convertMargins(std::uint32_t from, std::uint32_t to) {
    OrvaLog(kOrvaLogDebug, "\t%s: unit %u -> %u\n", "TwDlgCustom::convertMargins", from, to);
    double factor = 1.0;
    if (from == Millimetre && to == Inch)
        factor = 1.0 / kTwMillimetresPerInch;
    else if (from == Inch && to == Millimetre)
        factor = kTwMillimetresPerInch;
    // The fields show the new unit's decimals when they are told of the new numbers.
    setFormatterUnit(to);
    for (const char* key : kMarginKeys)
        ownValues().willChangeValueForKey(key);
    for (const char* key : kMarginKeys)
        ownValues().setValueForKeyPath(TwValue(margin(key) * factor), key);
    for (const char* key : kMarginKeys)
        ownValues().didChangeValueForKey(key);
}

void TwDlgCustom::onOK() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwDlgCustom::onOK");
    // A field whose formatter rejects its entry keeps the focus.
    if (!TwEndEditing(this))
        return;
    TwainDialogData* model = dialogData();
    if (model) {
        const bool inch = unit() == Inch;
        for (int i = 0; i < 8; ++i) {
            const double millimetres =
                inch ? margin(kMarginKeys[i]) * kTwMillimetresPerInch : margin(kMarginKeys[i]);
            const auto tenths =
                std::max<std::int64_t>(0, std::int64_t(millimetres * 10.0 + kTenthsTolerance));
            model->setValueForKeyPath(TwValue(tenths), kModelKeys[i]);
        }
        model->saveCustomize();
    }
    close();
}

void TwDlgCustom::onCancel() {
    close();
}
