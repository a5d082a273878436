#include "TwDlgPaperSize.h"

#include "OrvaDebug.h"
#include "TwEditCommit.h"
#include "TwFormPreparation.h"
#include "TwPanelHost.h"
#include "TwRangeHelpers.h"
#include "TwResponderBinding.h"
#include "TwStrings.h"
#include "TwainDialogData.h"
#include "TwainNumberFormatter.h"
#include "ui_TwDlgPaperSize.h"

#include <QHeaderView>
#include <QItemSelectionModel>

#include <cmath>

namespace {
constexpr int kInches = 0;

// Limits in tenths of a millimetre, truncated.
int tenths(double millimetres) {
    return int(std::trunc(millimetres * 10.0));
}

// Tenths of a millimetre as hundredths of an inch, truncated.
int hundredthsOfInch(int tenthsOfMillimetre) {
    return int(std::trunc(tenthsOfMillimetre / kTwMillimetresPerInch * 10.0));
}

// Rounded to tenths of a millimetre.
double roundedToTenths(double millimetres) {
    return std::trunc(millimetres * 10.0 + 0.5) / 10.0;
}

double limitOf(const TwValue& feeder, const char* key) {
    const TwDictionary* d = feeder.dict();
    return d ? d->value(key).doubleValue() * kTwMillimetresPerInch : 0.0;
}
} // namespace

TwDlgPaperSize::TwDlgPaperSize(QWidget* parent)
    : TwPanel(parent), ui(std::make_unique<Ui::TwDlgPaperSize>()) {
    ui->setupUi(this);
    TwPrepareForm(this);
    ownValues().setValueForKeyPathWithoutNotification(1, "unit");
    ownValues().setValueForKeyPathWithoutNotification("", "paperName");
    ownValues().setValueForKeyPathWithoutNotification(210.0, "paperWidth");
    ownValues().setValueForKeyPathWithoutNotification(297.0, "paperLength");

    fmtWidth = CreateTextRangeFormatter(0, 1000, 2, this);
    fmtLength = CreateTextRangeFormatter(0, 1000, 2, this);
    ui->txtWidth->setValidator(fmtWidth);
    ui->txtLength->setValidator(fmtLength);
    fmtDisplay = new TwainNumberFormatter(this);
    fmtDisplay->setNumberStyle(TwainNumberFormatter::DecimalStyle);
    fmtDisplay->setAllowsFloats(true);
    fmtDisplay->setMaximumFractionDigits(2);
    fmtDisplay->setFormat(QStringLiteral("0.00"));
    fmtDisplay->setNilSymbol(QStringLiteral("-"));

    m_papers.setSizeText([this](double w, double l) { return sizeText(w, l); });
    ui->tblPaperSize->setModel(&m_papers);
    ui->tblPaperSize->horizontalHeader()->setSectionResizeMode(TwPaperSizeTableModel::NameColumn,
                                                               QHeaderView::Stretch);
    ui->tblPaperSize->horizontalHeader()->setSectionResizeMode(TwPaperSizeTableModel::SizeColumn,
                                                               QHeaderView::ResizeToContents);
    connect(ui->tblPaperSize->selectionModel(), &QItemSelectionModel::selectionChanged, this,
            [this] { tableViewSelectionDidChange(); });
    connectActions(this);
}

TwDlgPaperSize::~TwDlgPaperSize() {
    unbindControlAll();
    // The table model goes before the view does: nothing may reach this panel on the way.
    disconnect(ui->tblPaperSize->selectionModel(), nullptr, this, nullptr);
}

QString TwDlgPaperSize::formatted(const char* key, const QString& argument) const {
    return QString::fromStdString(
        TwFormatString(localizedString(QLatin1String(key)).toStdString(), {argument.toStdString()}));
}

int TwDlgPaperSize::unit() {
    return ownValues().valueForKeyPath("unit").intValue();
}

// ---- Running -----------------------------------------------------------------------------------

int TwDlgPaperSize::runModal() {
    TwainDialogData* model = dialogData();
    TwValue papers = model ? model->customPaperSize() : TwValue();
    if (!papers.isArray())
        OrvaLog(kOrvaLogError, "ERROR: %s: the model has no list of custom papers\n",
                "TwDlgPaperSize::runModal");
    m_papers.setPapers(papers);
    ui->btnDelete->setEnabled(false);
    const int result = TwPanel::runModal();
    m_papers.setPapers(TwValue());
    return result;
}

void TwDlgPaperSize::readLimits() {
    TwainDialogData* model = dialogData();
    TwModelDefFile* def = model ? model->modelDef() : nullptr;
    const TwValue adf = def ? def->FeederADF() : TwValue();
    dADFMinWidth = limitOf(adf, "MinWidth");
    dADFMinLength = limitOf(adf, "MinHeight");
    dADFMaxWidth = limitOf(adf, "MaxWidth");
    dADFMaxLength = limitOf(adf, "MaxHeight");
    const bool flatbed = model && model->valueForKeyPath("ScanInfo.FlatbedConnected").boolValue();
    const TwValue flat = flatbed && def ? def->FeederFlatbed() : TwValue();
    dFlatMinWidth = limitOf(flat, "MinWidth");
    dFlatMinLength = limitOf(flat, "MinHeight");
    dFlatMaxWidth = limitOf(flat, "MaxWidth");
    dFlatMaxLength = limitOf(flat, "MaxHeight");
}

void TwDlgPaperSize::bindControlAll() {
    TwPanel::bindControlAll();
    unitOld = kNoUnit;
    m_addedPaperSize.clear();
    ui->tblPaperSize->clearSelection();
    readLimits();

    TwResponderBinding* binding = responderBinding();
    if (TwainDialogData* model = dialogData())
        binding->bindContent(ui->cmbUnit, model, "content.Unit");
    binding->bindValues(TwBindList{"unit", ui->cmbUnit, "paperName", ui->txtName, "paperWidth", ui->txtWidth,
                                   "paperLength", ui->txtLength},
                        &ownValues());
    binding->addResponderObserver(&ownValues(), "unit");

    // Every run starts in millimetres at A4.
    for (const char* key : {"unit", "paperWidth", "paperLength"})
        ownValues().willChangeValueForKey(key);
    ownValues().setValueForKeyPathWithoutNotification(1, "unit");
    ownValues().setValueForKeyPathWithoutNotification(210.0, "paperWidth");
    ownValues().setValueForKeyPathWithoutNotification(297.0, "paperLength");
    for (const char* key : {"unit", "paperWidth", "paperLength"})
        ownValues().didChangeValueForKey(key);
}

void TwDlgPaperSize::observeValueForKeyPath(const std::string& keyPath, TwObservable* object,
                                            const TwKeyValueChange&, void*) {
    if (object != &ownValues() || keyPath != "unit")
        return;
    if (unit() == unitOld)
        return;
    updateFormatter();
    unitOld = unit();
    m_papers.redraw();
}

// ---- Units -------------------------------------------------------------------------------------

void TwDlgPaperSize::updateFormatter() {
    const int minWidth = tenths(dADFMinWidth), maxWidth = tenths(dADFMaxWidth);
    const int minLength = tenths(dADFMinLength), maxLength = tenths(dADFMaxLength);
    const int newUnit = unit();
    if (newUnit == kInches) {
        SetTextRangeFormatter(fmtWidth, hundredthsOfInch(minWidth), hundredthsOfInch(maxWidth), 2);
        SetTextRangeFormatter(fmtLength, hundredthsOfInch(minLength), hundredthsOfInch(maxLength), 2);
    } else {
        SetTextRangeFormatter(fmtWidth, minWidth, maxWidth, 1);
        SetTextRangeFormatter(fmtLength, minLength, maxLength, 1);
    }
    const int digits = newUnit == kInches ? 2 : 1;
    fmtDisplay->setMaximumFractionDigits(digits);
    fmtDisplay->setFormat(QStringLiteral("0.") + QString(digits, QLatin1Char('0')));

    const double width = ownValues().valueForKeyPath("paperWidth").doubleValue();
    const double length = ownValues().valueForKeyPath("paperLength").doubleValue();
    if (newUnit == kInches) {
        ownValues().setValueForKeyPath(width / kTwMillimetresPerInch, "paperWidth");
        ownValues().setValueForKeyPath(length / kTwMillimetresPerInch, "paperLength");
    } else if (unitOld != kNoUnit) {
        ownValues().setValueForKeyPath(width * kTwMillimetresPerInch, "paperWidth");
        ownValues().setValueForKeyPath(length * kTwMillimetresPerInch, "paperLength");
    }

    setLabel(ui->labADFMinWidth, dADFMinWidth);
    setLabel(ui->labADFMinLength, dADFMinLength);
    setLabel(ui->labADFMaxWidth, dADFMaxWidth);
    setLabel(ui->labADFMaxLength, dADFMaxLength);
    setLabel(ui->labFlatMinWidth, dFlatMinWidth);
    setLabel(ui->labFlatMinLength, dFlatMinLength);
    setLabel(ui->labFlatMaxWidth, dFlatMaxWidth);
    setLabel(ui->labFlatMaxLength, dFlatMaxLength);
}

void TwDlgPaperSize::setLabel(QLabel* label, double millimetres) {
    const double shown = unit() == kInches ? millimetres / kTwMillimetresPerInch : millimetres;
    label->setText(shown == 0.0 ? fmtDisplay->nilSymbol() : fmtDisplay->stringFromNumber(shown));
}

QString TwDlgPaperSize::sizeText(double widthMillimetres, double lengthMillimetres) {
    const double divisor = unit() == kInches ? kTwMillimetresPerInch : 1.0;
    // The length goes through the width's formatter too.
    return QString::fromStdString(
        TwFormatString("%@ %@ %@", {fmtWidth->stringFromNumber(widthMillimetres / divisor).toStdString(),
                                    ui->labMutil->text().toStdString(),
                                    fmtWidth->stringFromNumber(lengthMillimetres / divisor).toStdString()}));
}

// ---- The list ----------------------------------------------------------------------------------

int TwDlgPaperSize::selectedRow() const {
    const QModelIndexList rows = ui->tblPaperSize->selectionModel()->selectedRows();
    return rows.isEmpty() ? -1 : rows.first().row();
}

void TwDlgPaperSize::selectRow(int row) {
    QItemSelectionModel* selection = ui->tblPaperSize->selectionModel();
    if (row < 0 || row >= m_papers.rowCount()) {
        selection->clearSelection();
        return;
    }
    const QModelIndex index = m_papers.index(row, 0);
    selection->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    ui->tblPaperSize->scrollTo(index);
}

void TwDlgPaperSize::tableViewSelectionDidChange() {
    const int row = selectedRow();
    ui->btnDelete->setEnabled(row >= 0);
    const TwValue entry = m_papers.paper(row);
    const TwDictionary* d = entry.dict();
    if (!d)
        return;
    const double divisor = unit() == kInches ? kTwMillimetresPerInch : 1.0;
    ownValues().setValueForKeyPath(d->value("Name").stringValue(), "paperName");
    ownValues().setValueForKeyPath(d->value("Width").doubleValue() / divisor, "paperWidth");
    ownValues().setValueForKeyPath(d->value("Length").doubleValue() / divisor, "paperLength");
}

// ---- Actions -----------------------------------------------------------------------------------

void TwDlgPaperSize::onSave() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwDlgPaperSize::onSave");
    if (!TwEndEditing(this))
        return;
    const QString name =
        QString::fromStdString(ownValues().valueForKeyPath("paperName").stringValue()).trimmed();
    if (name.isEmpty()) {
        showMessageBox(localizedString(QStringLiteral("IDS_MSG_INPUT_NAME")), 0x20001);
        return;
    }
    if (name.size() > kMaxNameLength) {
        showMessageBox(formatted("IDS_ERR_MAXNAMEFORMAT", QString::number(kMaxNameLength)), 0x20001);
        return;
    }
    const double toMillimetres = unit() == kInches ? kTwMillimetresPerInch : 1.0;
    double width = roundedToTenths(ownValues().valueForKeyPath("paperWidth").doubleValue() * toMillimetres);
    double length = roundedToTenths(ownValues().valueForKeyPath("paperLength").doubleValue() * toMillimetres);
    // Only the feeder's limits apply, also with a flatbed connected.
    if (width < dADFMinWidth)
        width = dADFMinWidth;
    if (width > dADFMaxWidth)
        width = dADFMaxWidth;
    if (length < dADFMinLength)
        length = dADFMinLength;
    if (length > dADFMaxLength)
        length = dADFMaxLength;

    int row = m_papers.rowOfName(name);
    if (row >= 0) {
        if (showMessageBox(formatted("IDS_STR_OVERWRITE", name), 0x40003) != kVmxAnswerYes)
            return;
        TwDictionary* entry = m_papers.paper(row).dict();
        entry->set("Width", float(width));
        entry->set("Length", float(length));
    } else {
        if (!m_papers.papers().isArray()) {
            OrvaLog(kOrvaLogError, "ERROR: %s: no list of custom papers to save to\n",
                    "TwDlgPaperSize::onSave");
            return;
        }
        if (m_papers.rowCount() >= kMaxPapers) {
            showMessageBox(localizedString(QStringLiteral("IDS_ERR_OVERSAVESETTINGS")), 0x20001);
            return;
        }
        m_addedPaperSize.prepend(name);
        row = m_papers.appendPaper(TwValue::dictionary(
            {{"Name", name.toStdString()}, {"Width", float(width)}, {"Length", float(length)}}));
    }
    selectRow(row);
    m_papers.redraw();
    if (TwainDialogData* model = dialogData())
        model->saveCustomPaperSize();
}

void TwDlgPaperSize::onDelete() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwDlgPaperSize::onDelete");
    const int row = selectedRow();
    if (row < 0)
        return;
    const TwDictionary* entry = m_papers.paper(row).dict();
    const QString name = entry ? QString::fromStdString(entry->value("Name").stringValue()) : QString();
    if (showMessageBox(formatted("IDS_STR_DELETEPAPERSIZE", name), 0x40002) != kVmxAnswerOK)
        return;
    const bool last = row == m_papers.rowCount() - 1;
    if (last && row != 0)
        selectRow(row - 1);
    m_papers.removePaper(row);
    // The row that took the deleted one's place stays selected, as it was.
    if (!last)
        selectRow(row);
    tableViewSelectionDidChange();
    m_papers.redraw();
    if (TwainDialogData* model = dialogData())
        model->saveCustomPaperSize();
}

void TwDlgPaperSize::onClose() {
    close();
}

// ---- Outlets -----------------------------------------------------------------------------------

QLineEdit* TwDlgPaperSize::txtName() const {
    return ui->txtName;
}
QLineEdit* TwDlgPaperSize::txtWidth() const {
    return ui->txtWidth;
}
QLineEdit* TwDlgPaperSize::txtLength() const {
    return ui->txtLength;
}
QComboBox* TwDlgPaperSize::cmbUnit() const {
    return ui->cmbUnit;
}
QLabel* TwDlgPaperSize::labMutil() const {
    return ui->labMutil;
}
QPushButton* TwDlgPaperSize::btnSave() const {
    return ui->btnSave;
}
QPushButton* TwDlgPaperSize::btnDelete() const {
    return ui->btnDelete;
}
QPushButton* TwDlgPaperSize::btnClose() const {
    return ui->btnClose;
}
QPushButton* TwDlgPaperSize::btnHelp() const {
    return ui->btnHelp;
}
QTableView* TwDlgPaperSize::tblPaperSize() const {
    return ui->tblPaperSize;
}

void TwDlgPaperSize::editCustomPapers() {
    TwainDialogData* model = dialogData();
    if (!model)
        return;
    const TwSize before = model->GetCurrentPaperSize();
    center();
    runModal();

    for (const char* key : {"content.PaperSizeAll", "content.PaperSizeAllPlusNone"})
        model->willChangeValueForKey(key);
    model->updateContentPaperSizeAll();
    for (const char* key : {"content.PaperSizeAll", "content.PaperSizeAllPlusNone"})
        model->didChangeValueForKey(key);

    // The newest first: each paper added goes to the front of the list.
    auto known =
        std::find_if(m_addedPaperSize.cbegin(), m_addedPaperSize.cend(), [model](const QString& name) {
            return model->customPaperExist(TwValue(name.toStdString()));
        });
    if (known != m_addedPaperSize.cend()) {
        model->willChangeValueForKey("Data.PaperSize");
        model->setValueForKeyPath(TwValue(known->toStdString()), "Data.PaperSize");
        model->didChangeValueForKey("Data.PaperSize");
    } else {
        model->validatePaperValues();
    }

    const TwSize after = model->GetCurrentPaperSize();
    if (after.width != before.width || after.length != before.length) {
        if (panelHost())
            panelHost()->closePreview();
        model->AdjustLandscapeEnableAndArea();
    }
}
