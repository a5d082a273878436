#include "TwDlgPreview.h"

#include "OrvaDebug.h"
#include "TwBindingWidgets.h"
#include "TwBundle.h"
#include "TwFormPreparation.h"
#include "TwPageFinder.h"
#include "TwPreviewImage.h"
#include "TwPreviewView.h"
#include "TwRangeHelpers.h"
#include "TwResponderBinding.h"
#include "TwStrings.h"
#include "TwainDialogData.h"
#include "TwainNumberFormatter.h"
#include "ui_TwDlgPreview.h"

#include <QAbstractButton>
#include <QComboBox>
#include <QLabel>
#include <QPainter>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QShortcut>
#include <QSignalBlocker>
#include <QToolTip>

#include <utility>

namespace {
constexpr int kStatusInterval = 100; // ms between two looks at the rescan flag
constexpr const char* kInMouseDrag = "temp.InMouseDragChangeArea";

QString swatchKey(bool front, std::int16_t id) {
    return QString::asprintf("side%dArea%d", front ? 1 : 0, int(id));
}

bool startsWith(const std::string& s, std::string_view prefix) {
    return std::string_view(s).starts_with(prefix);
}

bool endsWith(const std::string& s, std::string_view suffix) {
    return std::string_view(s).ends_with(suffix);
}

bool contains(const std::vector<std::string>& list, const std::string& key) {
    return std::find(list.begin(), list.end(), key) != list.end();
}

QColor areaColour(const TwAreaInfo& row) {
    return QColor(row.color.red, row.color.green, row.color.blue);
}

QCursor bundleCursor(const char* name, int hot, Qt::CursorShape fallback) {
    auto bundle = TwBundle::moduleBundle();
    std::string path = bundle ? bundle->pathForResource(name, "ico") : std::string();
    QPixmap picture;
    if (path.empty() || !picture.load(QString::fromStdString(path))) {
        OrvaLog(kOrvaLogError, "ERROR: %s: no cursor picture %s.ico\n", "TwDlgPreview::showWindow", name);
        return QCursor(fallback);
    }
    return QCursor(picture, hot, hot);
}
} // namespace

const std::vector<std::string>& TwDlgPreview::dataNeedCloseWindow() {
    static const std::vector<std::string> keys = {
        "Data.Resolution",       "Data.AutoCrop.Enable", "Data.Deskew.Enable", "Data.Landscape",
        "Data.PaperSize",        "Data.PaperSource",     "profiles.name",      "Data.AutoCrop.MaxSize",
        "Data.Deskew.Smoothing", "Data.Margin",          "Data.LengthControl",
    };
    return keys;
}

const std::vector<std::string>& TwDlgPreview::dataRescan() {
    static const std::vector<std::string> keys = {
        "Data.Image.BorderRemoval",
        "Data.Image.RemoveShadow",
        "Data.Image.HoleRemoval",
        "Data.Image.Mirror",
        "Data.Layout.DuplexType",
        "Data.BinaryImage.Front.Halftone",
        "Data.BinaryImage.Front.Brightness",
        "Data.BinaryImage.Front.Contrast",
        "Data.BinaryImage.Front.Empasis",
        "Data.BinaryImage.Front.Gamma",
        "Data.BinaryImage.Front.Drop",
        "Data.BinaryImage.Back.Halftone",
        "Data.BinaryImage.Back.Brightness",
        "Data.BinaryImage.Back.Contrast",
        "Data.BinaryImage.Back.Empasis",
        "Data.BinaryImage.Back.Gamma",
        "Data.BinaryImage.Back.Drop",
        "Data.BinaryImage.DynamicThresholdEnable",
        "Data.BinaryImage.DynamicThresholdMode",
        "Data.BinaryImage.NoiseReductionSize",
        "Data.BinaryImage.NoiseReductionType",
        "Data.Image.Invert",
        "Data.Image.AutoSeparation",
        "Data.GrayImage.Front.Brightness",
        "Data.GrayImage.Front.Contrast",
        "Data.GrayImage.Front.Empasis",
        "Data.GrayImage.Front.Gamma",
        "Data.GrayImage.Front.Drop",
        "Data.GrayImage.Back.Brightness",
        "Data.GrayImage.Back.Contrast",
        "Data.GrayImage.Back.Empasis",
        "Data.GrayImage.Back.Gamma",
        "Data.GrayImage.Back.Drop",
        "Data.Image.WhiteLevel",
        "Data.ColorImage.Front.Brightness",
        "Data.ColorImage.Front.Contrast",
        "Data.ColorImage.Front.Chroma",
        "Data.ColorImage.Front.Empasis",
        "Data.ColorImage.Front.Gamma",
        "Data.ColorImage.Back.Brightness",
        "Data.ColorImage.Back.Contrast",
        "Data.ColorImage.Back.Chroma",
        "Data.ColorImage.Back.Empasis",
        "Data.ColorImage.Back.Gamma",
        "Data.Image.SmoothBackground",
        "Data.Image.BackgroundRemoval",
        "Data.Area.Front.Halftone",
        "Data.Area.Back.Halftone",
        "Data.Layout.BlankPageRemoval.Eanble",
        "Data.Layout.BlankPageRemoval.Ratio",
        "Customize.BorderRemoval.left",
        "Customize.BorderRemoval.top",
        "Customize.BorderRemoval.right",
        "Customize.BorderRemoval.bottom",
        "Customize.RemoveShadow.left",
        "Customize.RemoveShadow.top",
        "Customize.RemoveShadow.right",
        "Customize.RemoveShadow.bottom",
        "Data.AutoDistinction.RateBinaryImage",
        "Data.AutoDistinction.IgnorePaperColor",
        "Data.AutoDistinction.ColorPixelRation",
        "Data.ImageType",
    };
    return keys;
}

TwDlgPreview::TwDlgPreview(QWidget* parent)
    : TwPreviewPanel(parent), ui(std::make_unique<Ui::TwDlgPreview>()) {
    ui->setupUi(this);
    TwPrepareForm(this);
    setWindowFlag(Qt::Window);
    m_rescanTimer.setInterval(kStatusInterval);
    connect(&m_rescanTimer, &QTimer::timeout, this, [this] {
        if (!m_NeedRescan)
            return;
        // A request made while the rescan runs is kept for the next look.
        m_NeedRescan = false;
        refreshStatus();
    });
    connect(ui->segSide, &TwSegmentedControl::segmentClicked, this, [this](int index) {
        setSelectedSide(std::uint16_t(index));
        onSide();
    });
    connect(ui->cmbArea, &QComboBox::activated, this, [this](int index) {
        m_selectedArea = std::int16_t(ui->cmbArea->itemData(index).toInt());
        onAreaChange();
    });
    connect(ui->segControl, &TwSegmentedControl::segmentClicked, this, [this] { onControl(); });
    connect(ui->btnZoomFit, &QPushButton::clicked, this, [this] { onZoomFit(); });
    connect(ui->btnFindPage, &QPushButton::clicked, this, [this] { onFindPage(); });
    ui->viewPreview->setDlgParent(this);
    createAreaImageIcon();
    makeShortcuts();
}

void TwDlgPreview::makeShortcuts() {
    auto add = [this](const QKeySequence& keys, QAbstractButton* button, auto action) {
        auto* shortcut = new QShortcut(keys, this, action);
        shortcut->setContext(Qt::WindowShortcut);
        if (button)
            button->setToolTip(button->toolTip() + QStringLiteral(" (") +
                               keys.toString(QKeySequence::NativeText) + QLatin1Char(')'));
    };
    // The tools by their place in the row, Ctrl+1 ... Ctrl+4, as a click on the segment.
    const QList<QAbstractButton*> tools = ui->segControl->buttons();
    for (int i = 0; i < tools.size(); ++i)
        add(QKeySequence(Qt::CTRL | Qt::Key(Qt::Key_1 + i)), tools[i], [this, i] {
            QAbstractButton* button = ui->segControl->buttons().value(i);
            if (button && button->isEnabled()) {
                ui->segControl->setSelectedIndex(i);
                onControl();
            }
        });
    add(QKeySequence(Qt::CTRL | Qt::Key_0), ui->btnZoomFit, [this] { onZoomFit(); });
    add(QKeySequence(Qt::CTRL | Qt::Key_F), ui->btnFindPage, [this] {
        if (ui->btnFindPage->isEnabled())
            onFindPage();
    });
    // A zoom step in or out around the middle, as the zoom tools' click.
    auto zoomBy = [this](int step) {
        ui->viewPreview->doZoom(ui->viewPreview->zoomIndex() + step);
        ui->viewPreview->resetCursorRects();
    };
    for (QKeySequence keys : {QKeySequence(QKeySequence::ZoomIn), QKeySequence(Qt::CTRL | Qt::Key_Equal)})
        add(keys, nullptr, [zoomBy] { zoomBy(+1); });
    add(QKeySequence(QKeySequence::ZoomOut), nullptr, [zoomBy] { zoomBy(-1); });
}

TwDlgPreview::~TwDlgPreview() {
    stopThread();
    unbindControlAll();
}

// ---- Outlets -------------------------------------------------------------------------------------

TwSegmentedControl* TwDlgPreview::segSide() const {
    return ui->segSide;
}
QComboBox* TwDlgPreview::cmbArea() const {
    return ui->cmbArea;
}
TwSegmentedControl* TwDlgPreview::segControl() const {
    return ui->segControl;
}
QPushButton* TwDlgPreview::btnZoomFit() const {
    return ui->btnZoomFit;
}
QPushButton* TwDlgPreview::btnFindPage() const {
    return ui->btnFindPage;
}
QLabel* TwDlgPreview::labValue1() const {
    return ui->labValue1;
}
QLabel* TwDlgPreview::labValue2() const {
    return ui->labValue2;
}
TwPreviewView* TwDlgPreview::viewPreview() const {
    return ui->viewPreview;
}
QScrollArea* TwDlgPreview::sclPreview() const {
    return ui->sclPreview;
}

QIcon TwDlgPreview::areaImage(bool front, std::int16_t id) const {
    return m_areaImages.value(swatchKey(front, id));
}

// ---- Units and coordinates -----------------------------------------------------------------------

QRectF TwDlgPreview::settingRect(const TwAreaInfo& row) const {
    TwainDialogData* m = dialogData();
    if (!m)
        return {};
    auto value = [m](const char* keyPath) {
        return double(m->valueForKeyPath(keyPath).floatValue());
    };
    return QRectF(value(row.xKey), value(row.yKey), value(row.widthKey), value(row.lengthKey));
}

bool TwDlgPreview::IsEnableArea() {
    TwainDialogData* m = dialogData();
    return m && m->valueForKeyPath("enable.Area.Front").boolValue();
}

QSizeF TwDlgPreview::GetCurrentPaperSize() {
    TwainDialogData* m = dialogData();
    if (displayOnly() || !m || !IsEnableArea())
        return sizeFromScanImage();
    TwSize paper = m->GetCurrentPaperSizeInCurrentOrientation();
    return QSizeF(paper.width / 10.0, paper.length / 10.0);
}

void TwDlgPreview::updateMapping() {
    TwPagePlacement placement;
    placement.page = GetCurrentPaperSize();
    placement.front = m_bFront;
    if (TwainDialogData* m = dialogData()) {
        placement.unitIsInch = m->AreaUnitIsInch();
        placement.duplexType = int(m->valueForKeyPath("Data.Layout.DuplexType").intValue());
        placement.mirror = m->valueForKeyPath("Data.Image.Mirror").boolValue();
    }
    ui->viewPreview->setPlacement(placement);
}

const TwPreviewMapping& TwDlgPreview::mapping() const {
    return ui->viewPreview->mapping();
}

QPointF TwDlgPreview::Data2ScreenPoint(QPointF point) {
    return mapping().Data2ScreenPoint(point);
}

QRectF TwDlgPreview::Data2ScreenRect(const QRectF& rect) {
    return mapping().Data2ScreenRect(rect);
}

QRectF TwDlgPreview::Screen2DataRect(const QRectF& rect) {
    return mapping().Screen2DataRect(rect);
}

// ---- Areas ---------------------------------------------------------------------------------------

bool TwDlgPreview::GetAreas(std::vector<TwAreaOverlay>& areas) {
    TwainDialogData* m = dialogData();
    if (displayOnly() || !m)
        return true;
    const bool subAreas = m->valueForKeyPath("enable.Area.SubArea").boolValue();
    for (const TwAreaInfo& row : Comb_AreaInfo) {
        if (row.front != m_bFront)
            continue;
        if (*row.enableKey && !m->valueForKeyPath(row.enableKey).boolValue())
            continue;
        if (row.id != kTwMainAreaId && !subAreas)
            continue;
        if (!(m->valueForKeyPath(row.widthKey).floatValue() > 0) ||
            !(m->valueForKeyPath(row.lengthKey).floatValue() > 0))
            continue;
        TwAreaOverlay overlay{mapping().pageFromSetting(settingRect(row)), areaColour(row), TwValue(),
                              row.id == m_selectedArea && row.front == (m_selectedSide == 0)};
        if (*row.brightnessKey)
            overlay.brightness = m->valueForKeyPath(row.brightnessKey);
        areas.push_back(overlay);
    }
    return true;
}

const TwAreaInfo* TwDlgPreview::selectedRecord() const {
    return TwFindArea(m_selectedSide == 0, m_selectedArea);
}

void TwDlgPreview::setSelectedArea(std::int16_t area) {
    m_selectedArea = area;
    setSelectedArea();
}

void TwDlgPreview::setSelectedArea() {
    const TwAreaInfo* row = selectedRecord();
    if (row && dialogData()) {
        const QRectF rect = mapping().pageFromSetting(settingRect(*row));
        // Single precision, as the view keeps its edges.
        ui->viewPreview->setAreaEdges({double(float(rect.left())), double(float(rect.top())),
                                       double(float(rect.left() + rect.width())),
                                       double(float(rect.top() + rect.height()))});
    }
    ui->viewPreview->resetCursorRects();
}

void TwDlgPreview::ModifyArea(const QRectF& rect) {
    if (const TwAreaInfo* row = selectedRecord())
        writeArea(*row, rect);
}

void TwDlgPreview::writeArea(const TwAreaInfo& row, const QRectF& rect) {
    TwainDialogData* m = dialogData();
    if (!m)
        return;
    const QRectF setting = mapping().settingFromPage(rect);
    // Written as single-precision numbers, in this order, each validated by the model as it comes.
    // This window hears of every working copy it writes (and of those the validation corrects):
    // the edges and the picture follow once, after the last write.
    {
        QScopedValueRollback<bool> grouped(m_writingArea, true);
        m->myChangeValue(TwValue(double(float(setting.x()))), row.xKey);
        m->myChangeValue(TwValue(double(float(setting.y()))), row.yKey);
        m->myChangeValue(TwValue(double(float(setting.width()))), row.widthKey);
        m->myChangeValue(TwValue(double(float(setting.height()))), row.lengthKey);
    }
    setSelectedArea();
    ui->viewPreview->update();
}

QString TwDlgPreview::areaReadout(const QRectF& pageArea) {
    TwainDialogData* m = dialogData();
    if (!m)
        return {};
    const int unit = m->valueForKeyPath("Data.Area.Unit").intValue();
    const std::optional<int> places = TwAreaUnitPlaces(unit);
    if (unit != m_readoutUnit || !m_readoutFormatter) {
        m_readoutFormatter.reset(places ? CreateTextRangeFormatter(0, 1000000, *places) : nullptr);
        m_readoutUnit = unit;
    }
    auto text = [this](double value) {
        return (m_readoutFormatter ? m_readoutFormatter->stringFromNumber(value) : QString::number(value))
            .toStdString();
    };
    // The values the model keeps: single precision, as every area write.
    const QRectF setting = mapping().settingFromPage(pageArea);
    const char* symbolKey = unit == 0 ? "IDS_UNIT_SYMBOL_INCH" : unit == 1 ? "IDS_UNIT_SYMBOL_MM" : nullptr;
    const std::string symbol = symbolKey ? localizedString(QString::fromLatin1(symbolKey)).toStdString() : "";
    return QString::fromStdString(
        TwFormatString(localizedString(QStringLiteral("IDS_PREVIEW_READOUT")).toStdString(),
                       {text(float(setting.x())), text(float(setting.y())), text(float(setting.width())),
                        text(float(setting.height())), symbol}));
}

bool TwDlgPreview::onFindPage() {
    const QImage& page = m_bFront ? m_imageFront : imageBack();
    const TwAreaInfo* main = TwFindArea(m_bFront, kTwMainAreaId);
    const QSizeF paper = mapping().page();
    if (displayOnly() || !dialogData() || !main || page.isNull() || paper.isEmpty() || !IsEnableArea())
        return false;
    const double scaleX = paper.width() / page.width(), scaleY = paper.height() / page.height();
    const std::optional<QRect> found = TwFindPageInImage(page, 1.0 / scaleX);
    if (!found) {
        OrvaLog(kOrvaLogInfo, "\t%s: no document on the %s page\n", "TwDlgPreview::onFindPage",
                m_bFront ? "front" : "back");
        QToolTip::showText(ui->btnFindPage->mapToGlobal(QPoint(0, ui->btnFindPage->height())),
                           localizedString(QStringLiteral("IDS_PREVIEW_NO_PAGE")), ui->btnFindPage);
        return false;
    }
    const QRectF rect(found->x() * scaleX, found->y() * scaleY, found->width() * scaleX,
                      found->height() * scaleY);
    OrvaLog(kOrvaLogInfo, "\t%s: document at %.1f, %.1f, %.1f x %.1f mm\n", "TwDlgPreview::onFindPage",
            rect.x(), rect.y(), rect.width(), rect.height());
    writeArea(*main, rect);
    ValidateAreaRect(); // what validation changes reaches the view through the observations
    return true;
}

void TwDlgPreview::SetInMouseDrag(bool dragging) {
    if (TwainDialogData* m = dialogData())
        m->myChangeValue(TwValue(dragging), kInMouseDrag);
}

bool TwDlgPreview::GetInMouseDrag() {
    TwainDialogData* m = dialogData();
    return m && m->valueForKeyPath(kInMouseDrag).boolValue();
}

void TwDlgPreview::ValidateAreaRect() {
    if (TwainDialogData* m = dialogData())
        m->ValidateAreaRectAll();
}

void TwDlgPreview::ResetAreaContent() {
    m_areaList.clear();
    TwainDialogData* m = dialogData();
    if (displayOnly() || !m)
        return;
    for (const TwAreaInfo& row : Comb_AreaInfo) {
        if (row.front != m_bFront)
            continue;
        if (*row.enableKey && !m->valueForKeyPath(row.enableKey).boolValue())
            continue;
        m_areaList.push_back({row.id, localizedString(QString::fromLatin1(row.nameKey)), row.front});
    }
    auto listed = [this](std::int16_t id) {
        return std::any_of(m_areaList.begin(), m_areaList.end(),
                           [id](auto& item) { return item.value == id; });
    };
    if (!listed(m_selectedArea))
        m_selectedArea = kTwMainAreaId;
    setSelectedArea();
}

void TwDlgPreview::setCmbArea() {
    QSignalBlocker blocker(ui->cmbArea);
    ui->cmbArea->clear();
    for (const TwAreaListItem& item : m_areaList) {
        ui->cmbArea->addItem(m_areaImages.value(swatchKey(item.side, item.value)), item.display,
                             int(item.value));
        if (item.value == m_selectedArea)
            ui->cmbArea->setCurrentIndex(ui->cmbArea->count() - 1);
    }
}

void TwDlgPreview::createAreaImageIcon() {
    for (const TwAreaInfo& row : Comb_AreaInfo) {
        QPixmap swatch(18, 18);
        swatch.fill(Qt::transparent);
        QPainter painter(&swatch);
        painter.setPen(QPen(Qt::black, 2));
        painter.setBrush(areaColour(row));
        painter.drawRect(QRectF(2, 2, 14, 14));
        painter.end();
        m_areaImages.insert(swatchKey(row.front, row.id), QIcon(swatch));
    }
}

// ---- Sides and labels ----------------------------------------------------------------------------

void TwDlgPreview::setEnableSide() {
    QList<QAbstractButton*> sides = ui->segSide->buttons();
    if (sides.size() < 2)
        return;
    sides[0]->setEnabled(true);
    bool back = false;
    if (TwainDialogData* m = dialogData(); m && !displayOnly()) {
        const std::int64_t source = m->valueForKeyPath("Data.PaperSource").intValue();
        back = (source == 1 || source == 4 || source == 5) && hasBackPage();
    }
    sides[1]->setEnabled(back);
}

void TwDlgPreview::setSelectedSide(std::uint16_t side) {
    m_selectedSide = side;
    ui->segSide->setSelectedIndex(side);
}

void TwDlgPreview::ChangeSide() {
    const int side = ui->segSide->selectedIndex();
    m_bFront = side != 1;
    showPage(m_bFront ? m_imageFront : imageBack());
    updateMapping();
    ResetAreaContent();
    setCmbArea();
    setSelectedArea();
    SetSideBottomLable(side);
    ui->viewPreview->update();
}

void TwDlgPreview::SetSideBottomLable(int side) {
    TwainDialogData* m = dialogData();
    const bool back = side == 1;
    auto percent = [](double value) {
        return TwDecimalText(value, 2) + QStringLiteral("(%)");
    };
    const QString none = QStringLiteral("-(%)");
    bool colour = m && m->valueForKeyPath("enable.AutoDistinction").boolValue();
    bool blank = m && m->valueForKeyPath("Data.Layout.BlankPageRemoval.Eanble").boolValue() &&
                 m->valueForKeyPath("enable.BlankPageRemoval").boolValue();
    ui->labValue1->setText(colour ? percent(back ? colorRatioBack() : colorRatioFront()) : none);
    ui->labValue2->setText(blank ? percent(back ? blackRatioBack() : blackRatioFront()) : none);
}

// ---- Actions -------------------------------------------------------------------------------------

void TwDlgPreview::onSide() {
    ChangeSide();
}

void TwDlgPreview::onAreaChange() {
    setSelectedArea();
}

void TwDlgPreview::setTool(int segment) {
    static const int modes[] = {TwPreviewView::kOpSelect, TwPreviewView::kOpHand, TwPreviewView::kOpZoomIn,
                                TwPreviewView::kOpZoomOut};
    if (segment < 0 || segment > 3)
        return;
    const QCursor* cursors[] = {&cursorSelect, &cursorMove, &cursorZoomIn, &cursorZoomOut};
    ui->segControl->setSelectedIndex(segment);
    ui->viewPreview->setToolCursor(*cursors[segment]);
    ui->viewPreview->setOpMode(modes[segment]);
}

void TwDlgPreview::onControl() {
    setTool(ui->segControl->selectedIndex());
    ui->viewPreview->resetCursorRects();
}

void TwDlgPreview::resizeEvent(QResizeEvent* event) {
    TwPreviewPanel::resizeEvent(event);
    if (isVisible() && ui->viewPreview->zoomIndex() == 0)
        onZoomFit();
}

void TwDlgPreview::onZoomFit() {
    ui->viewPreview->doZoominit(GetCurrentPaperSize(),
                                ui->sclPreview ? QSizeF(ui->sclPreview->size()) : QSizeF());
    ui->viewPreview->resetCursorRects();
}

// ---- Pages ---------------------------------------------------------------------------------------

void TwDlgPreview::setPrescanImage(TwOwnedDIB front, TwOwnedDIB back) {
    if (front) {
        m_imageFront = QImage(); // the old page goes before the new one comes
        m_imageFront = CreateImage(std::move(front));
    }
    if (back) {
        m_imageBack = QImage();
        m_backPage = std::move(back);
    }
    // A hidden window gets its page when it opens (showWindow); its back page need not be read
    // yet. A window that is up shows the new page of the side it shows.
    if (isVisible()) {
        const int side = ui->segSide->selectedIndex();
        showPage(side == 0 ? m_imageFront : side == 1 ? imageBack() : QImage());
    }
    setEnableSide();
    SetSideBottomLable(m_selectedSide);
}

const QImage& TwDlgPreview::imageBack() {
    if (m_backPage)
        m_imageBack = CreateImage(std::move(m_backPage));
    return m_imageBack;
}

void TwDlgPreview::showPage(const QImage& page) {
    ui->btnFindPage->setEnabled(!displayOnly() && !page.isNull() && IsEnableArea());
    // The page the view shows already (the same picture data) is not handed over again.
    const QImage& shown = ui->viewPreview->scanImage();
    if (shown.isNull() == page.isNull() && shown.cacheKey() == page.cacheKey())
        return;
    ui->viewPreview->setScanImage(page);
}

void TwDlgPreview::dropPages() {
    showPage(QImage());
    m_imageFront = QImage();
    m_imageBack = QImage();
    m_backPage = TwOwnedDIB();
}

void TwDlgPreview::makeCursors() {
    if (m_cursorsMade)
        return;
    cursorMove = QCursor(Qt::OpenHandCursor);
    cursorSelect = QCursor(Qt::CrossCursor);
    cursorZoomIn = bundleCursor("ZoomIn", 7, Qt::PointingHandCursor);
    cursorZoomOut = bundleCursor("ZoomOut", 7, Qt::PointingHandCursor);
    cursorResizeMove = bundleCursor("Resize_Move", 15, Qt::SizeAllCursor);
    cursorResizeRightDown = bundleCursor("Resize_RightDown", 15, Qt::SizeFDiagCursor);
    cursorResizeRightUp = bundleCursor("Resize_RightUp", 15, Qt::SizeBDiagCursor);
    m_cursorsMade = true;
}

void TwDlgPreview::showWindow() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwDlgPreview::showWindow");
    m_NeedRescan = false;
    if (!displayOnly())
        createThread();
    makeCursors();
    TwPreviewView* view = ui->viewPreview;
    view->setCursorResizeMove(cursorResizeMove);
    view->setCursorResizeRightDown(cursorResizeRightDown);
    view->setCursorResizeRightUp(cursorResizeRightUp);
    view->setDlgParent(this);
    setSelectedSide(0);
    const bool select = !displayOnly() && IsEnableArea();
    ui->segControl->buttons().value(0)->setEnabled(select);
    // A page only: there are no areas to pick.
    ui->cmbArea->setVisible(!displayOnly());
    ui->btnFindPage->setVisible(!displayOnly());
    setTool(select ? 0 : 1);
    updateMapping();
    // The scroll area gets its size from the layout before the page is fitted into it.
    if (layout())
        layout()->activate();
    view->doZoominit(GetCurrentPaperSize(), QSizeF(ui->sclPreview->size()));
    // Binding (bindControlAll) hands the view the front page and makes the area list, once.
    const bool bound = isVisible();
    TwPanel::showWindow();
    if (bound)
        ChangeSide(); // already up and bound: the front page and its areas all the same
    // Shown, the window has the size its layout and the window system settled on.
    view->doZoominit(GetCurrentPaperSize(), QSizeF(ui->sclPreview->size()));
}

void TwDlgPreview::bindControlAll() {
    TwPreviewPanel::bindControlAll();
    setEnableSide();
    setSelectedSide(0);
    ChangeSide();
    TwainDialogData* m = dialogData();
    if (displayOnly() || !m)
        return;
    TwResponderBinding* binding = responderBinding();
    for (const TwAreaInfo& row : Comb_AreaInfo) {
        for (const char* key :
             {row.enableKey, row.xKey, row.yKey, row.widthKey, row.lengthKey, row.brightnessKey})
            if (*key)
                binding->addResponderObserver(m, key);
    }
    binding->addResponderObserver(m, "temp.Area.Side");
    // The unit the working copies are in: the mapping converts them.
    binding->addResponderObserver(m, "Data.Area.Unit");
    // The sub-area switch decides which outlines show.
    binding->addResponderObserver(m, "enable.Area.SubArea");
    for (const std::string& key : dataNeedCloseWindow())
        binding->addResponderObserver(m, key);
    for (const std::string& key : dataRescan())
        binding->addResponderObserver(m, key);
}

void TwDlgPreview::observeValueForKeyPath(const std::string& k, TwObservable*, const TwKeyValueChange&,
                                          void*) {
    const bool enableKey =
        k == "enable.Area.Front" || k == "enable.Area.Back" ||
        ((startsWith(k, "Data.Area.Front.") || startsWith(k, "Data.Area.Back.")) && endsWith(k, ".Enable"));
    const bool workingCopy = startsWith(k, "temp.Area");
    // How the page lies (unit, mirror, duplex type, the page itself with the area switch): the
    // view's mapping follows first. The unit's reaction rewrites the working copies before this
    // window hears of the unit itself, so a working copy's change looks at the unit too; the
    // writes of a drag step (m_writingArea) change none of it.
    const bool placement = k == "Data.Area.Unit" || k == "Data.Image.Mirror" || k == "Data.Layout.DuplexType";
    if (placement || k == "enable.Area.Front" || (workingCopy && !m_writingArea))
        updateMapping();
    if (enableKey) {
        if (k == "enable.Area.Back")
            setEnableSide();
        ResetAreaContent();
        setCmbArea();
        ui->viewPreview->update();
        if (!GetInMouseDrag())
            m_NeedRescan = true;
    } else if (workingCopy) {
        // The writes of a drag step are followed once, after the last (ModifyArea).
        if (!m_writingArea) {
            setSelectedArea();
            ui->viewPreview->update();
        }
        if ((startsWith(k, "temp.Area.Front.L") || startsWith(k, "temp.Area.Back.L")) && !GetInMouseDrag())
            m_NeedRescan = true;
    } else if (k == "enable.Area.SubArea") {
        ui->viewPreview->update();
    } else if (placement) {
        setSelectedArea(); // the edges lie elsewhere on the page now
        ui->viewPreview->update();
    } else if (startsWith(k, "Data.Area.") && endsWith(k, "Brightness")) {
        ui->viewPreview->update();
        if (!GetInMouseDrag())
            m_NeedRescan = true;
    }
    if (contains(dataNeedCloseWindow(), k)) {
        OrvaLog(kOrvaLogDebug, "\t%s: %s changed, closing\n", "TwDlgPreview::observeValueForKeyPath",
                k.c_str());
        closePanel();
        return;
    }
    if (contains(dataRescan(), k)) {
        m_NeedRescan = true;
        ui->viewPreview->update(); // mirror and duplex type move the outlines
    }
}

// ---- Status timer and closing --------------------------------------------------------------------

void TwDlgPreview::createThread() {
    if (m_rescanTimer.isActive())
        return;
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwDlgPreview::connectRefreshStatusThreadMethod");
    m_rescanTimer.start();
}

void TwDlgPreview::stopThread() {
    if (!m_rescanTimer.isActive())
        return;
    OrvaLog(kOrvaLogDebug, "---Status Thread Cancel---\n");
    m_rescanTimer.stop();
    OrvaLog(kOrvaLogTrace, "LEAVE: %s\n", "TwDlgPreview::connectRefreshStatusThreadMethod");
    OrvaLog(kOrvaLogDebug, "---Status Thread Canceled---\n");
}

void TwDlgPreview::refreshStatus() {
    dropPages();
    if (isVisible()) {
        requestRescan();
        setSelectedArea();
    }
}

void TwDlgPreview::windowWillClose() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%s)\n", "TwDlgPreview::windowWillClose", metaObject()->className());
    if (isModal()) {
        // The prescan session of a modal dialog ends with the window; the dialog stays modal.
        OrvaLog(kOrvaLogDebug, "\t[NSApp stopModal]\n");
        setIsModal(false);
    }
    stopThread();
    dropPages();
    TwPreviewPanel::windowWillClose();
}
