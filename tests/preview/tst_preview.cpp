// The prescan preview driven from the controller's Prescan with the sample scanner and synthetic
// pages handed back by the callback: the window and its pages, overlays in either unit, the area
// table against the sample's model, the tools with the mouse (edges, crossing, the move at the
// border, a new area, the hand, zoom steps), one refresh and one paint per drag step, one page
// handed over per prescan, the area list, the side choice, the ratios, rescans and closing, modal
// and modeless, and display-only use. Pages made of bitmaps without a copy, and bad bitmaps. The
// plane geometry beneath, which needs no window: the mapping between the setting, the page shown
// and the view (mirrored and duplex back pages, units, zoom), the hit zones, the edges a drag gives
// (crossing edges, the move kept on the page, the rectangle handed on) and the fit rate.
#include "PreviewPages.h"
#include "SampleFixture.h"
#include "TwDlgPreview.h"
#include "TwPreviewCoordinator.h"
#include "TwPreviewGeometry.h"
#include "TwPreviewImage.h"
#include "TwPreviewView.h"

#include <random>

namespace {

enum class Front { Page, LyingHeader, TooShort, None };
struct PageSource {
    Front front = Front::Page;
    bool back = true;
    bool sameBlock = false; // the back is the front's block, a data source's mistake
    std::uint16_t result = 0;
} g_pages;

// 248 x 351 pixels at 30 dpi: 210.0 x 297.2 mm.
constexpr int kPageWidth = 248, kPageHeight = 351, kPelsPerMetre = 1181;

std::uint16_t prescanCallback(std::uint16_t event, void* data) {
    recordEvent(event, data);
    if ((event == kVmxEventPrescan || event == kVmxEventPreviewRescan) && data) {
        if (g_pages.result != 0)
            return g_pages.result; // a prescan that failed delivers nothing
        auto* record = static_cast<TwPreviewRecord*>(data);
        if (g_pages.front != Front::None)
            record->front.pDIB = makePageBitmap(kPageWidth, kPageHeight, kPelsPerMetre, QColor(70, 110, 200),
                                                "FRONT", &record->front.imageLength);
        if (g_pages.front == Front::LyingHeader) { // the header claims far more than the 60 bytes
            record->front.pDIB = std::realloc(record->front.pDIB, 60);
            record->front.imageLength = 60;
        } else if (g_pages.front == Front::TooShort) { // not even a header
            record->front.pDIB = std::realloc(record->front.pDIB, 8);
            record->front.imageLength = 8;
        }
        if (g_pages.sameBlock) {
            record->back.pDIB = record->front.pDIB;
            record->back.imageLength = record->front.imageLength;
        } else if (g_pages.back)
            record->back.pDIB = makePageBitmap(kPageWidth, kPageHeight, kPelsPerMetre, QColor(200, 120, 60),
                                               "BACK", &record->back.imageLength);
        record->front.colorRatio = 12.345;
        record->front.blackRatio = 1.5;
        record->back.colorRatio = 67.891;
        record->back.blackRatio = 2.25;
    }
    return 0;
}

// Counts the paints of a widget while it lives.
class PaintCount : public QObject {
public:
    explicit PaintCount(QWidget* widget) { widget->installEventFilter(this); }
    int paints = 0;
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
};

// A bitmap of the given depth as a data source makes it (header, palette, rows top down, each
// padded to whole words), width x height pixels with a pattern that differs by row and column and
// padding bytes of 0xAB; an 8-bit palette is the grey ramp or, when colours is set, a spread of
// colours. The caller frees it with free().
void* makePatternBitmap(int bits, int width, int height, bool colours, std::size_t* length) {
    const std::optional<TwDibLayout> layout = TwDibLayoutFor(width, height, bits);
    *length = std::size_t(layout->totalSize());
    auto* dib = static_cast<unsigned char*>(std::malloc(*length));
    std::memset(dib, 0xAB, *length);
    SetDIBHeader(dib, width, height, 0, 150, std::uint16_t(bits));
    if (bits == 8 && colours)
        for (int i = 0; i < 256; ++i) {
            const TwRGBQuad entry{std::uint8_t(i * 7), std::uint8_t(255 - i), std::uint8_t(i * 3 + 40), 0};
            std::memcpy(dib + 40 + 4 * i, &entry, 4);
        }
    for (int y = 0; y < height; ++y) {
        unsigned char* rowBytes = dib + layout->headerSize + std::size_t(y) * layout->stride;
        const int packed = (width * bits + 7) / 8;
        for (int x = 0; x < packed; ++x)
            rowBytes[x] = std::uint8_t(x * 13 + y * 29 + (y == 0 ? 200 : 0));
    }
    return dib;
}

} // namespace

class TestPreview : public QObject {
    Q_OBJECT
    static constexpr QSizeF kA4{210, 297};
    SampleScanner sample;

    Facade shown(bool modal = false) {
        return sample.load({.callback = &prescanCallback, .show = true, .modal = modal});
    }
    static TwDlgPreview* prescan(VmxUIControllerImpl& ui) {
        QTest::mouseClick(window(ui)->btnPrescan(), Qt::LeftButton);
        return dynamic_cast<TwDlgPreview*>(ui.controllerIfMade()->dlgPreview());
    }
    // The first sub-area of the front, enabled, at the given rectangle in millimetres.
    static void placeSubArea(VmxUIControllerImpl& ui, QRectF mm) {
        set(ui, {{"Data.Area.Front.L1.Enable", true},
                 {"temp.Area.Front.L1.X", mm.x()},
                 {"temp.Area.Front.L1.Y", mm.y()},
                 {"temp.Area.Front.L1.Width", mm.width()},
                 {"temp.Area.Front.L1.Length", mm.height()}});
    }
    static QPoint at(const TwPreviewView* v, QPointF mm) { return v->mapping().viewFromPage(mm).toPoint(); }
    // The pointer moved over the view with no button down.
    static void hover(TwPreviewView* v, QPointF mm) {
        const QPointF p = v->mapping().viewFromPage(mm);
        QMouseEvent move(QEvent::MouseMove, p, v->mapToGlobal(p), Qt::NoButton, Qt::NoButton, Qt::NoModifier);
        QCoreApplication::sendEvent(v, &move);
    }
    static void clickThroughWindow(QWidget* w) {
        QWidget* top = w->window();
        QTest::mouseClick(top->windowHandle(), Qt::LeftButton, {}, w->mapTo(top, w->rect().center()));
    }
    static double value(VmxUIControllerImpl& ui, const char* key) {
        return ui.dataForKeyPath(key).doubleValue();
    }
    static bool near(double a, double b, double tolerance) { return std::abs(a - b) <= tolerance; }

private slots:

    void init() {
        QVERIFY2(sample.reset(), sample.error.c_str());
        g_pages = {};
    }

    // ---- The window from Prescan ----

    // Event 3 with a zeroed record; the window opens beside the dialog with the front page, its
    // size from the bitmap's resolution, the areas of the front and the ratios below.
    void prescanOpensTheWindowBesideTheDialog() {
        auto ui = shown();
        set(*ui, "Data.PaperSource", 1);
        TwDlgPreview* p = prescan(*ui);
        QVERIFY(p && p->isVisible());
        QCOMPARE(sentCodes(), (Codes{kVmxEventPrescan}));
        QCOMPARE(p->sizeFromScanImage(), QSizeF(210.0, 297.2));
        QCOMPARE(p->imageFront().size(), QSize(kPageWidth, kPageHeight));
        QTRY_COMPARE(p->imageBack().size(), QSize(kPageWidth, kPageHeight)); // read meanwhile
        QCOMPARE(p->viewPreview()->scanImage(), p->imageFront());
        // Rows come top down: the label is in the top third of the front page.
        QImage page = p->imageFront();
        QCOMPARE(page.pixelColor(kPageWidth / 2, 3), QColor(70, 110, 200));
        QVERIFY(page.pixelColor(kPageWidth / 2, kPageHeight - 4) != QColor(70, 110, 200));
        const QRect main = window(*ui)->frameGeometry();
        QCOMPARE(p->frameGeometry().left(), main.right() + 1 + 10);
        QCOMPARE(p->frameGeometry().bottom(), main.bottom());
        QVERIFY(!p->isModal());
        QVERIFY(!p->displayOnly());
        QVERIFY(p->isStatusTimerRunning());
        // The page fits the scroll area with a 30-point margin.
        const QSize frame = p->sclPreview()->size();
        QCOMPARE(p->viewPreview()->initedRate(), fitRate(p->GetCurrentPaperSize(), QSizeF(frame)));
        std::vector<TwAreaOverlay> areas;
        p->GetAreas(areas);
        QVERIFY(!areas.empty());
        QCOMPARE(areas[0].color, QColor(Qt::red));
        QCOMPARE(p->cmbArea()->itemText(0), u"Main Area"_s);
        ui->hideUi();
        QVERIFY(!p->isVisible() && !p->isStatusTimerRunning());
    }

    // ---- Areas in either unit, dragged with the mouse ----

    // A drag with the mouse writes the area in the user's unit and the setting follows, and the
    // preview follows a value typed on the Area tab: an edge follows the previous pointer position
    // while the opposite one stays; a left edge dragged past the right goes on as the right edge
    // (the model keeps 2 mm on the way); a move stops at the page border; a drag outside the
    // area draws a new one.
    void aDragWritesTheArea_data() {
        // placed: the front's first sub-area, mm; empty: the main area
        // path: mm on the page: pressed, moved, released at the last
        // written: "key=value ...": temp.Area.* in the unit, Data.Area.Measure.* in mm
        columns<int, QRectF, QList<QPointF>, QString>("unit", "placed", "path", "written");
        row("an edge, in inches", 0, QRectF(25.4, 40, 80, 30),
            QList<QPointF>{{25.4, 55}, {50.8, 55}, {50.8, 55}},
            "temp.Area.Front.L1.X=2 Data.Area.Measure.Front.L1.Width=54.6");
        row("an edge, in millimetres", 1, QRectF(30, 40, 80, 30),
            QList<QPointF>{{30, 55}, {50, 55}, {50, 55}},
            "temp.Area.Front.L1.X=50 Data.Area.Measure.Front.L1.Width=60");
        row("the left edge past the right", 1, QRectF(40, 40, 60, 30),
            QList<QPointF>{{40, 55}, {90, 55}, {110, 55}, {130, 55}, {140, 55}},
            "temp.Area.Front.L1.X=100 temp.Area.Front.L1.Width=30 Data.Area.Measure.Front.L1.X=100");
        row("moved inside", 1, QRectF(40, 40, 60, 30), QList<QPointF>{{70, 55}, {80, 65}, {90, 75}},
            "temp.Area.Front.L1.X=60 temp.Area.Front.L1.Y=60");
        row("the main area moved against the border", 1, QRectF(),
            QList<QPointF>{{50, 50}, {100, 60}, {180, 60}, {400, 60}},
            "temp.Area.Front.X=110 temp.Area.Width=100");
        row("a new area drawn outside", 1, QRectF(10, 10, 20, 20),
            QList<QPointF>{{150, 250}, {120, 200}, {60, 150}},
            "temp.Area.Front.L1.X=60 temp.Area.Front.L1.Y=150 temp.Area.Front.L1.Width=90 "
            "temp.Area.Front.L1.Length=100");
    }
    void aDragWritesTheArea() {
        auto [unit, placed, path, written] =
            fetch<int, QRectF, QList<QPointF>, QString>("unit", "placed", "path", "written");
        auto ui = shown();
        const bool sub = !placed.isEmpty();
        if (sub)
            placeSubArea(*ui, placed);
        else
            set(*ui, {{"temp.Area.Width", 100.0}, {"temp.Area.Length", 100.0}});
        set(*ui, "Data.Area.Unit", unit);
        TwDlgPreview* p = prescan(*ui);
        QVERIFY(p);
        TwPreviewView* v = p->viewPreview();
        if (sub) {
            p->setSelectedArea(0);
            QVERIFY(near(v->areaEdges().left, placed.left(), 1e-4)); // millimetres whatever the unit
            QVERIFY(near(v->areaEdges().bottom, placed.bottom(), 1e-4));
        } else {
            QCOMPARE(p->selectedArea(), kTwMainAreaId);
        }
        QTest::mousePress(v, Qt::LeftButton, {}, at(v, path.first()));
        for (QPointF point : path.mid(1))
            QTest::mouseMove(v, at(v, point));
        QTest::mouseRelease(v, Qt::LeftButton, {}, at(v, path.last()));
        const double mm = 1.5 / v->mapping().scale(), perUnit = unit == 0 ? 25.4 : 1.0;
        for (const QString& item : written.split(' ')) {
            const QString key = item.section('=', 0, 0);
            const double actual = value(*ui, qPrintable(key));
            const double tolerance = key.startsWith("temp.") ? mm / perUnit : mm;
            QVERIFY2(near(actual, item.section('=', 1).toDouble(), tolerance),
                     qPrintable(item + " is " + QString::number(actual)));
        }
        if (!sub)
            return;
        auto* field = window(*ui)->findChild<QLineEdit*>("txtFrontX1");
        QVERIFY2(near(field->text().toDouble(), value(*ui, "temp.Area.Front.L1.X"), 0.051),
                 qPrintable(field->text()));
        const double width = value(*ui, "Data.Area.Measure.Front.L1.Width");
        ui->model()->setValueForKeyPath(TwValue(0.5), "temp.Area.Front.L1.X");
        QVERIFY(near(v->areaEdges().left, 0.5 * perUnit, 1e-4));
        QVERIFY(near(v->areaEdges().right, 0.5 * perUnit + width, 1e-4));
    }

    // Hit zones are four screen points, so at two points per millimetre d = 2.
    void hitZonesAreFourPointsWide() {
        auto ui = shown();
        TwDlgPreview* p = prescan(*ui);
        TwPreviewView* v = p->viewPreview();
        v->doZoominit(QSizeF(200, 200), QSizeF(430, 430));
        QCOMPARE(v->width(), 400);
        const TwAreaEdges e = v->areaEdges();
        QVERIFY(near(v->cursorAreaList()[kZoneLeft - 1].left(), e.left - 2, 1e-9));
        QVERIFY(near(v->cursorAreaList()[kZoneLeft - 1].width(), 4, 1e-9));
        // The pointer over a zone shows its cursor: the left edge, the inside, outside the area.
        hover(v, QPointF(e.left + 0.5, (e.top + e.bottom) / 2));
        QCOMPARE(v->cursor().shape(), Qt::SizeHorCursor);
        hover(v, QPointF(e.left + 20, (e.top + e.bottom) / 2));
        QCOMPARE(v->cursor().shape(), Qt::BitmapCursor);
        QCOMPARE(v->cursor().hotSpot(), QPoint(15, 15));
        v->doZoominit(QSizeF(0, 200), QSizeF(800, 800)); // no page: the scale stays
        QCOMPARE(v->width(), 400);
    }

    // ---- Zoom and the hand ----

    // Zoom steps stop at both ends; the middle of the visible part stays in the middle.
    void zoomStepsAndLimits() {
        auto ui = shown();
        TwDlgPreview* p = prescan(*ui);
        TwPreviewView* v = p->viewPreview();
        QScrollArea* area = p->sclPreview();
        QTest::mouseClick(p->segControl()->buttons()[2], Qt::LeftButton);
        QCOMPARE(v->opMode(), int(TwPreviewView::kOpZoomIn));
        const double fit = v->mapping().scale();
        for (int i = 0; i < 7; ++i)
            QTest::mouseClick(v, Qt::LeftButton, {}, QPoint(v->width() / 2, v->height() / 2));
        QCOMPARE(v->zoomIndex(), kZoomIndexMax);
        QVERIFY(near(v->mapping().scale(), fit * 8, 1e-6));
        // The page point in the middle of the visible part.
        auto visibleCentre = [&] {
            return v->mapping().pageFromView(
                QPointF(area->horizontalScrollBar()->value(), area->verticalScrollBar()->value()) +
                QPointF(area->viewport()->width(), area->viewport()->height()) / 2);
        };
        auto text = [](QPointF c) {
            return u"%1, %2"_s.arg(c.x()).arg(c.y());
        };
        const QPointF centre = visibleCentre();
        QVERIFY2(near(centre.x(), p->GetCurrentPaperSize().width() / 2, 2) &&
                     near(centre.y(), p->GetCurrentPaperSize().height() / 2, 2),
                 qPrintable(text(centre)));

        // The hand scrolls the page with the pointer.
        QTest::mouseClick(p->segControl()->buttons()[1], Qt::LeftButton);
        QCOMPARE(v->opMode(), int(TwPreviewView::kOpHand));
        const int before = area->horizontalScrollBar()->value();
        const int beforeDown = area->verticalScrollBar()->value();
        // Where the pointer is over the scroll area: the view moves under it.
        auto over = [&](QPoint inViewport) {
            return v->mapFrom(area->viewport(), inViewport);
        };
        QTest::mousePress(v, Qt::LeftButton, {}, over(QPoint(100, 100)));
        QTest::mouseMove(v, over(QPoint(140, 100)));
        QTest::mouseMove(v, over(QPoint(140, 75)));
        QTest::mouseRelease(v, Qt::LeftButton, {}, over(QPoint(140, 75)));
        QCOMPARE(area->horizontalScrollBar()->value(), before - 40);
        QCOMPARE(area->verticalScrollBar()->value(), beforeDown + 25);

        // Off the page's middle now, each step out and in keeps the middle where it is (within the
        // rounding of a pixel or two), wherever the click lands.
        const QPointF scrolled = visibleCentre();
        QVERIFY(!near(scrolled.x(), centre.x(), 1));
        for (int tool : {3, 2}) {
            QTest::mouseClick(p->segControl()->buttons()[tool], Qt::LeftButton);
            QTest::mouseClick(v, Qt::LeftButton, {}, v->mapFrom(area->viewport(), QPoint(30, 40)));
            QCOMPARE(v->zoomIndex(), tool == 3 ? kZoomIndexMax - 1 : kZoomIndexMax);
            const QPointF now = visibleCentre();
            QVERIFY2(near(now.x(), scrolled.x(), 2 / v->mapping().scale()) &&
                         near(now.y(), scrolled.y(), 2 / v->mapping().scale()),
                     qPrintable(text(now) + " after " + text(scrolled)));
        }

        QTest::mouseClick(p->segControl()->buttons()[3], Qt::LeftButton);
        for (int i = 0; i < 7; ++i)
            QTest::mouseClick(v, Qt::LeftButton, {}, v->mapFrom(area->viewport(), QPoint(50, 50)));
        QCOMPARE(v->zoomIndex(), 0);
        QTest::mouseClick(p->segControl()->buttons()[2], Qt::LeftButton);
        QTest::mouseClick(v, Qt::LeftButton, {}, QPoint(10, 10));
        QTest::mouseClick(p->btnZoomFit(), Qt::LeftButton);
        QCOMPARE(v->zoomIndex(), 0);
        QCOMPARE(v->mapping().scale(), double(fitRate(p->GetCurrentPaperSize(), QSizeF(area->size()))));
    }

    // ---- Area list and sides ----

    // A sub-area of no width draws nothing but is listed; with the sub-area switch off no sub-area
    // is drawn, and a disabled selected sub-area gives the selection back to the main area.
    void theAreaListAndTheOverlays() {
        auto ui = shown();
        placeSubArea(*ui, QRectF(10, 10, 40, 20));
        set(*ui, "Data.Area.Front.L2.Enable", true);
        ui->model()->setValueForKeyPathWithoutNotification(TwValue(0.0), "temp.Area.Front.L2.Width");
        TwDlgPreview* p = prescan(*ui);
        std::vector<TwAreaOverlay> areas;
        auto colours = [&] {
            areas.clear();
            p->GetAreas(areas);
            return mapped(areas, [](const TwAreaOverlay& a) { return a.color; });
        };
        QCOMPARE(p->cmbArea()->count(), 3);
        QCOMPARE(p->cmbArea()->itemData(2).toInt(), 1);
        QVERIFY(!p->cmbArea()->itemIcon(1).isNull());
        QCOMPARE(colours(), (QList<QColor>{Qt::red, Qt::cyan}));
        QCOMPARE(areas[1].brightness, ui->dataForKeyPath("Data.Area.Front.L1.Brightness"));

        set(*ui, "enable.Area.SubArea", false);
        QCOMPARE(colours(), (QList<QColor>{Qt::red}));
        QCOMPARE(p->cmbArea()->count(), 3);

        choose(p->cmbArea(), 1);
        QCOMPARE(p->selectedArea(), std::int16_t(0));
        set(*ui, "Data.Area.Front.L1.Enable", false);
        QCOMPARE(p->selectedArea(), kTwMainAreaId);
        QCOMPARE(p->cmbArea()->count(), 2);
        QCOMPARE(p->cmbArea()->currentData().toInt(), int(kTwMainAreaId));
    }

    // Every key path of every row of the area table holds a value in the sample scanner's model as
    // the facade loads it, in either unit: the switch, the working copies (showing the setting in
    // the user's unit), the setting and, for a sub-area, the brightness; each name has a text.
    void theAreaTableNamesWhatTheModelHolds_data() {
        QTest::addColumn<int>("unit");
        row("inches", 0);
        row("millimetres", 1);
    }
    void theAreaTableNamesWhatTheModelHolds() {
        QFETCH(int, unit);
        auto ui = shown();
        set(*ui, "Data.Area.Unit", unit);
        const double perUnit = unit == 0 ? 25.4 : 1.0;
        QSet<QString> places;
        for (const TwAreaInfo& row : Comb_AreaInfo) {
            const char* working[] = {row.xKey, row.yKey, row.widthKey, row.lengthKey};
            const char* setting[] = {row.dataXKey, row.dataYKey, row.dataWidthKey, row.dataLengthKey};
            for (int i = 0; i < 4; ++i) {
                const TwValue shown = ui->dataForKeyPath(working[i]), kept = ui->dataForKeyPath(setting[i]);
                QVERIFY2(shown.isNumber() && kept.isNumber(), working[i]);
                QVERIFY2(near(shown.doubleValue() * perUnit, kept.doubleValue(), 1e-9), working[i]);
            }
            QVERIFY2(ui->dataForKeyPath(row.enableKey).isBoolean(), row.enableKey);
            if (row.subArea())
                QVERIFY2(ui->dataForKeyPath(row.brightnessKey).isNumber(), row.brightnessKey);
            else
                QCOMPARE(row.brightnessKey, "");
            QVERIFY(ui->controllerIfMade()->localizedString(row.nameKey) != QString(row.nameKey));
            // Sub-areas are places of their own; the main areas share all but X.
            places << QString("%1 %2").arg(row.xKey, row.yKey);
        }
        QCOMPARE(places.size(), int(Comb_AreaInfo.size()));
    }

    // The back page can be chosen for paper sources 1, 4 and 5 when there is one.
    void theBackSideByPaperSource_data() {
        // sameBlock: the front's block given as the back too, by events 3 and 5; it is freed once
        // and shows on both sides
        columns<int, bool, bool, bool>("source", "backImage", "sameBlock", "enabled");
        row("source 1", 1, true, false, true);
        row("source 1 without a back page", 1, false, false, false);
        row("source 1, one block for both sides", 1, false, true, true);
        row("source 2", 2, true, false, false);
        row("source 3", 3, true, false, false);
        row("source 0", 0, true, false, false);
    }
    void theBackSideByPaperSource() {
        auto [source, backImage, sameBlock, enabled] =
            fetch<int, bool, bool, bool>("source", "backImage", "sameBlock", "enabled");
        auto ui = shown();
        ui->model()->setValueForKeyPathWithoutNotification(TwValue(source), "Data.PaperSource");
        g_pages.back = backImage;
        g_pages.sameBlock = sameBlock;
        TwDlgPreview* p = prescan(*ui);
        QAbstractButton* back = p->segSide()->buttons()[1];
        QCOMPARE(back->isEnabled(), enabled);
        if (enabled) {
            QTest::mouseClick(back, Qt::LeftButton);
            QCOMPARE(p->selectedSide(), std::uint16_t(1));
            QTRY_VERIFY(!p->imageBack().isNull());
            QCOMPARE(p->viewPreview()->scanImage(), p->imageBack());
            QCOMPARE(p->labValue1()->text(),
                     ui->dataForKeyPath("enable.AutoDistinction").boolValue() ? u"67.89(%)"_s : u"-(%)"_s);
            for (int round = 0; sameBlock && round < 2; ++round) {
                QCOMPARE(p->imageBack(), p->imageFront());
                ui->previewCoordinator()->rescan();
                QTest::mouseClick(back, Qt::LeftButton);
                QTRY_VERIFY(!p->imageBack().isNull());
            }
        }
    }

    // While a new area is drawn the band is dashed 2 on, 2 off in page units (millimetres), so the
    // dashes grow with the zoom and stay visible over black text.
    void theRubberBandIsDashedInPageUnits() {
        auto ui = shown();
        placeSubArea(*ui, QRectF(10, 10, 20, 20));
        TwDlgPreview* p = prescan(*ui);
        p->setSelectedArea(0);
        TwPreviewView* v = p->viewPreview();
        for (int zoom = 0; zoom < 2; ++zoom) {
            if (zoom)
                v->doZoom(3);                    // twice as large
            const double top = zoom ? 220 : 150; // clear of the area the first band made
            QTest::mousePress(v, Qt::LeftButton, {}, at(v, QPointF(60, top)));
            QTest::mouseMove(v, at(v, QPointF(100, top + 20)));
            QTest::mouseMove(v, at(v, QPointF(160, top + 40)));
            const QImage picture = v->grab().toImage();
            QTest::mouseRelease(v, Qt::LeftButton, {}, at(v, QPointF(160, top + 40)));
            // Along the band's top edge, away from its corners: runs of black and of anything else.
            const int y = at(v, QPointF(0, top)).y();
            QList<int> runs;
            bool black = false;
            for (int x = at(v, QPointF(64, 0)).x(); x < at(v, QPointF(156, 0)).x(); ++x) {
                const bool here = picture.pixel(x, y) == qRgb(0, 0, 0);
                if (runs.isEmpty() || here != black)
                    runs << 0;
                black = here;
                ++runs.last();
            }
            QVERIFY2(runs.size() >= 10, qPrintable(QString("%1 runs").arg(runs.size())));
            const double dash = 2.0 * v->mapping().scale();
            for (int run : runs.mid(1, runs.size() - 2))
                QVERIFY2(std::abs(run - dash) <= 1.5,
                         qPrintable(QString("run %1, dash %2").arg(run).arg(dash)));
        }
    }

    // A drag step hands the window one rectangle; it writes X, Y, width and length, each validated
    // by the model, and follows once: one new set of edges and one paint per step, whether the
    // step moves the area or drags an edge or a corner. The drag flag is up while the button is.
    void oneRefreshAndOnePaintPerDragStep_data() {
        // grab: where the main area (0, 0, 100 x 100 mm) is pressed; step: mm per move, five moves
        // after: where it ends (a dragged edge trails the pointer by one move)
        columns<QPointF, QPointF, QString>("grab", "step", "after");
        row("moved", QPointF(50, 50), QPointF(3, 2), "temp.Area.Front.X=15 temp.Area.Y=10");
        row("right edge", QPointF(100, 50), QPointF(4, 0), "temp.Area.Width=116 temp.Area.Length=100");
        row("bottom right corner", QPointF(100, 100), QPointF(2, 5),
            "temp.Area.Width=108 temp.Area.Length=120");
    }
    void oneRefreshAndOnePaintPerDragStep() {
        auto [grab, step, after] = fetch<QPointF, QPointF, QString>("grab", "step", "after");
        auto ui = shown();
        set(*ui, {{"temp.Area.Width", 100.0}, {"temp.Area.Length", 100.0}});
        TwDlgPreview* p = prescan(*ui);
        TwPreviewView* v = p->viewPreview();
        QCoreApplication::processEvents();
        QSignalSpy edges(v, &TwPreviewView::areaEdgesChanged);
        PaintCount painted(v);
        QTest::mousePress(v, Qt::LeftButton, {}, at(v, grab));
        for (int i = 1; i <= 5; ++i) {
            QCoreApplication::processEvents();
            edges.clear();
            painted.paints = 0;
            QTest::mouseMove(v, at(v, grab + step * i));
            QCoreApplication::processEvents();
            QVERIFY(ui->dataForKeyPath("temp.InMouseDragChangeArea").boolValue());
            // A dragged edge goes to the previous position: on the first move, where it was
            // pressed, which is the edge itself give or take a pixel.
            const bool edgeChanged = edges.count() == 1 || (i == 1 && edges.count() == 0 && grab.x() == 100);
            QVERIFY2(edgeChanged, qPrintable(u"step %1: %2 edge changes"_s.arg(i).arg(edges.count())));
            QVERIFY2(painted.paints == 1, qPrintable(u"step %1: %2 paints"_s.arg(i).arg(painted.paints)));
        }
        QTest::mouseRelease(v, Qt::LeftButton, {}, at(v, grab + step * 5));
        QVERIFY(!ui->dataForKeyPath("temp.InMouseDragChangeArea").boolValue());
        const double tolerance = 1.5 / v->mapping().scale();
        for (const QString& item : after.split(' ')) {
            const double actual = value(*ui, qPrintable(item.section('=', 0, 0)));
            QVERIFY2(near(actual, item.section('=', 1).toDouble(), tolerance),
                     qPrintable(item + " is " + QString::number(actual)));
        }
        const QRectF area(value(*ui, "temp.Area.Front.X"), value(*ui, "temp.Area.Y"),
                          value(*ui, "temp.Area.Width"), value(*ui, "temp.Area.Length"));
        QVERIFY(near(v->areaEdges().right, area.right(), 1e-4));
        QVERIFY(near(v->areaEdges().bottom, area.bottom(), 1e-4));
    }

    // Opening hands the view its page once and makes the area list once; choosing the back hands
    // over the back page, and a rescan the new page of the side shown, once each.
    void onePageHandOverAndOneAreaListPerPrescan() {
        auto ui = shown();
        set(*ui, "Data.PaperSource", 1);
        placeSubArea(*ui, QRectF(10, 10, 40, 20));
        TwDlgPreview* p = prescan(*ui);
        QVERIFY(p);
        ui->controllerIfMade()->closePreview();
        TwPreviewView* v = p->viewPreview();
        QSignalSpy handed(v, &TwPreviewView::scanImageChanged);
        QSignalSpy listed(p->cmbArea()->model(), &QAbstractItemModel::rowsInserted);
        QCOMPARE(prescan(*ui), p);
        QVERIFY(p->isVisible());
        QCOMPARE(handed.count(), 1);
        QCOMPARE(v->scanImage().cacheKey(), p->imageFront().cacheKey());
        QCOMPARE(p->cmbArea()->count(), 2);
        QCOMPARE(listed.count(), 2); // one row inserted per entry, once

        handed.clear();
        QTest::mouseClick(p->segSide()->buttons()[1], Qt::LeftButton);
        QCOMPARE(handed.count(), 1);
        QCOMPARE(v->scanImage().cacheKey(), p->imageBack().cacheKey());
        const qint64 oldBack = p->imageBack().cacheKey();
        handed.clear();
        ui->previewCoordinator()->rescan();
        QCOMPARE(handed.count(), 1);
        QVERIFY(v->scanImage().cacheKey() != oldBack);
        QCOMPARE(v->scanImage().cacheKey(), p->imageBack().cacheKey());
    }

    // On a large desktop, a small one and at twice the scale, the preview comes up wholly on the
    // dialog's screen, beside the dialog where there is room and never over its bottom buttons.
    void thePreviewStaysOnTheDialogsScreen_data() {
        columns<QString, bool>("screen", "beside");
        row("desktop", "desktop", true);
        row("1366 x 768: too narrow for both", "laptop", false);
        row("1920 x 1080 at 2x", "scaled", false);
    }
    void thePreviewStaysOnTheDialogsScreen() {
        auto [screen, beside] = fetch<QString, bool>("screen", "beside");
        QScreen* target = nullptr;
        for (QScreen* s : QGuiApplication::screens())
            if (s->name() == screen)
                target = s;
        QVERIFY(target);
        const QRect available = target->availableGeometry();
        auto ui = shown();
        TwDlgMain* dialog = window(*ui);
        QRect placed = dialog->geometry();
        placed.moveCenter(available.center());
        dialog->setGeometry(placed);
        QCOMPARE(dialog->screen(), target);
        TwDlgPreview* p = prescan(*ui);
        QVERIFY(p && p->isVisible());
        QVERIFY2(available.contains(p->frameGeometry()), qPrintable(screen));
        QVERIFY(available.contains(dialog->frameGeometry()));
        QCOMPARE(p->frameGeometry().left() > dialog->frameGeometry().right(), beside);
        QVERIFY(!p->frameGeometry().intersects(dialog->buttonRow()));
    }

    // A seeded storm of drags, tool, side, area and unit changes, rescans and hostile area writes
    // (not numbers, infinite, huge, negative, text): afterwards every area value of the setting is
    // a finite number on the paper, no smaller than its minimum, and its working copy shows it.
    void areasSurviveAStorm_data() {
        QTest::addColumn<int>("seed");
        for (int seed : {1, 7, 42, 1234, 99991})
            row(qPrintable(QString("seed %1").arg(seed)), seed);
    }
    void areasSurviveAStorm() {
        QFETCH(int, seed);
        std::mt19937 random{std::uint32_t(seed)};
        auto pick = [&](int n) {
            return int(random() % std::uint32_t(n));
        };
        auto ui = shown();
        set(*ui, "Data.PaperSource", 1);
        for (const char* key : {"Data.Area.Front.L1.Enable", "Data.Area.Back.L1.Enable"})
            set(*ui, key, true);
        TwDlgPreview* p = prescan(*ui);
        QVERIFY(p);
        TwPreviewView* v = p->viewPreview();
        const TwValue hostile[] = {std::nan(""), HUGE_VAL, -HUGE_VAL, 1e308, -50.0, 1e9, "wide", 0};
        const char* const keys[] = {"temp.Area.Front.X",       "temp.Area.Width",
                                    "temp.Area.Front.L1.Y",    "temp.Area.Back.L1.Length",
                                    "Data.Area.Measure.Y",     "Data.Area.Measure.Front.L1.Width",
                                    "Data.Area.Measure.Back.X"};
        for (int step = 0; step < 300 && p->isVisible(); ++step) {
            switch (pick(6)) {
            case 0: { // a drag from anywhere on the page to anywhere
                const QSizeF page = p->GetCurrentPaperSize();
                auto somewhere = [&] {
                    return at(v, QPointF(pick(int(page.width())), pick(int(page.height()))));
                };
                QTest::mousePress(v, Qt::LeftButton, {}, somewhere());
                for (int n = pick(4); n >= 0; --n)
                    QTest::mouseMove(v, somewhere());
                QTest::mouseRelease(v, Qt::LeftButton, {}, somewhere());
                break;
            }
            case 1:
                p->segControl()->buttons()[pick(2)]->click(); // select or hand
                break;
            case 2:
                p->segSide()->buttons()[pick(2)]->click();
                if (p->cmbArea()->count() > 0)
                    p->cmbArea()->setCurrentIndex(pick(p->cmbArea()->count()));
                p->onAreaChange();
                break;
            case 3:
                ui->previewCoordinator()->rescan();
                break;
            case 4:
                set(*ui, "Data.Area.Unit", pick(2));
                break;
            default:
                set(*ui, keys[pick(std::size(keys))], hostile[pick(std::size(hostile))]);
                break;
            }
        }
        const TwSize paper = ui->model()->GetCurrentPaperSizeInCurrentOrientation();
        const double perUnit = ui->model()->AreaUnitIsInch() ? 25.4 : 1.0;
        for (const TwAreaInfo& row : Comb_AreaInfo) {
            const char* parts[4] = {row.xKey, row.yKey, row.widthKey, row.lengthKey};
            double mm[4];
            for (int i = 0; i < 4; ++i) {
                const std::string rest = std::string(parts[i]).substr(std::strlen("temp.Area."));
                const TwValue setting = ui->dataForKeyPath("Data.Area.Measure." + rest);
                QVERIFY2(setting.isNumber() && std::isfinite(setting.doubleValue()), parts[i]);
                mm[i] = setting.doubleValue();
                QVERIFY2(near(value(*ui, parts[i]) * perUnit, mm[i], 1e-6), parts[i]);
            }
            const double w = paper.width / 10.0, l = paper.length / 10.0;
            QVERIFY2(mm[0] >= -1e-6 && mm[0] + mm[2] <= w + 1e-6, row.xKey);
            QVERIFY2(mm[1] >= -1e-6 && mm[1] + mm[3] <= l + 1e-6, row.yKey);
            QVERIFY2(mm[2] >= std::min<double>(row.minWidth, w) - 1e-6, row.widthKey);
            QVERIFY2(mm[3] >= std::min<double>(row.minLength, l) - 1e-6, row.lengthKey);
        }
    }

    // The ratios show only where their features are on.
    void theRatiosBelowThePage() {
        auto ui = shown();
        set(*ui, "enable.AutoDistinction=true enable.BlankPageRemoval=true "
                 "Data.Layout.BlankPageRemoval.Eanble=false");
        TwDlgPreview* p = prescan(*ui);
        QCOMPARE(p->labValue1()->text(), u"12.35(%)"_s);
        QCOMPARE(p->labValue2()->text(), u"-(%)"_s);
        set(*ui, "enable.AutoDistinction", false);
        ui->model()->setValueForKeyPathWithoutNotification(TwValue(true),
                                                           "Data.Layout.BlankPageRemoval.Eanble");
        p->SetSideBottomLable(0);
        QCOMPARE(p->labValue1()->text(), u"-(%)"_s);
        QCOMPARE(p->labValue2()->text(), u"1.50(%)"_s);
    }

    // ---- Rescans and closing ----

    // A burst of image changes within the timer's period asks once; area changes during a drag ask
    // for nothing until the button is released over a sub-area.
    void oneRescanForABurst() {
        auto ui = shown();
        placeSubArea(*ui, QRectF(40, 40, 60, 30));
        TwDlgPreview* p = prescan(*ui);
        set(*ui, "Data.Image.Invert", true);
        set(*ui, "Data.Image.Invert", false);
        set(*ui, "Data.ColorImage.Front.Contrast", 100);
        QTRY_COMPARE_WITH_TIMEOUT(sentCount(kVmxEventPreviewRescan), 1, 1000);
        QTest::qWait(300);
        QCOMPARE(sentCount(kVmxEventPreviewRescan), 1);
        QVERIFY(!p->imageFront().isNull()); // the new pages came

        p->setSelectedArea(0);
        TwPreviewView* v = p->viewPreview();
        QTest::mousePress(v, Qt::LeftButton, {}, at(v, QPointF(70, 55)));
        QTest::mouseMove(v, at(v, QPointF(80, 60)));
        QTest::mouseMove(v, at(v, QPointF(90, 65)));
        QTest::qWait(250);
        QCOMPARE(sentCount(kVmxEventPreviewRescan), 1);
        QVERIFY(ui->dataForKeyPath("temp.InMouseDragChangeArea").boolValue());
        QTest::mouseRelease(v, Qt::LeftButton, {}, at(v, QPointF(90, 65)));
        QVERIFY(!ui->dataForKeyPath("temp.InMouseDragChangeArea").boolValue());
        QTRY_COMPARE_WITH_TIMEOUT(sentCount(kVmxEventPreviewRescan), 2, 1000);
        ui->setCallback(nullptr); // a rescan without a callback asks nobody
        ui->previewCoordinator()->rescan();
        QCOMPARE(sentCount(kVmxEventPreviewRescan), 2);
    }

    // Page-wide changes (resolution, paper size) and every action that leaves the preview behind
    // close it silently, with its timer and its pages.
    void whatClosesThePreview_data() {
        QTest::addColumn<QString>("action"); // an action of the dialog, or key=value
        for (const char* a : {"Data.Resolution=200", "Data.PaperSize=2", "onOK", "onCancel", "onStart",
                              "onDefault", "onPrescan"})
            row(a, a);
    }
    void whatClosesThePreview() {
        QFETCH(QString, action);
        auto ui = shown();
        TwDlgPreview* p = prescan(*ui);
        QVERIFY(p->isVisible());
        g_pages.result = 1; // a second prescan delivers nothing
        if (action.contains('='))
            set(*ui, qPrintable(action.section('=', 0, 0)), action.section('=', 1).toInt());
        else
            ui->controllerIfMade()->performAction(action);
        QVERIFY(!p->isVisible());
        QVERIFY(!p->isStatusTimerRunning());
        QVERIFY(p->imageFront().isNull());
    }

    // A modal dialog's prescan: the dialog stays application-modal, the preview takes input too,
    // and the session ends with the window.
    void aModalDialogsPreviewTakesInput() {
        auto ui = shown(true);
        TwDlgMain* main = window(*ui);
        QCOMPARE(TwApplication::modalWindow(), main);
        TwDlgPreview* p = prescan(*ui);
        QVERIFY(p->isModal());
        QVERIFY(ui->controllerIfMade()->hasPrescanSession());
        QCOMPARE(QApplication::activeModalWidget(), main);
        // Clicks through the window system, which drops those of blocked windows.
        clickThroughWindow(p->segControl()->buttons()[1]);
        QCOMPARE(p->viewPreview()->opMode(), int(TwPreviewView::kOpHand));
        // Another window of the application is blocked meanwhile: the check that clicks can fail.
        QPushButton other("other");
        other.show();
        int clicks = 0;
        connect(&other, &QPushButton::clicked, [&clicks] { ++clicks; });
        clickThroughWindow(&other);
        QCOMPARE(clicks, 0);
        p->close();
        QVERIFY(!p->isModal());
        QTRY_VERIFY(!ui->controllerIfMade()->hasPrescanSession());
        QCOMPARE(TwApplication::modalWindow(), main);

        // The dialog takes input beside its preview: Default closes the preview and the session.
        QVERIFY(prescan(*ui)->isVisible() && ui->controllerIfMade()->hasPrescanSession());
        clickThroughWindow(main->btnDefault());
        QVERIFY(!p->isVisible());
        QVERIFY(!ui->controllerIfMade()->hasPrescanSession());
    }

    // Pages only: no areas, no back side, no timer; the hand tool; the page's own size.
    void displayOnly() {
        auto ui = shown();
        set(*ui, "Data.PaperSource", 1);
        TwDlgPreview* p = prescan(*ui);
        ui->controllerIfMade()->closePreview();
        g_sent.clear();
        p->setDisplayOnly(true);
        p->setSizeFromScanImage(QSizeF(100, 150));
        TwPreviewRecord record{};
        prescanCallback(kVmxEventPrescan, &record);
        ui->previewCoordinator()->setPreviewImages(record, true);
        QCOMPARE(record.front.pDIB, nullptr);
        p->showWindow();
        std::vector<TwAreaOverlay> areas;
        p->GetAreas(areas);
        QVERIFY(areas.empty());
        QCOMPARE(p->cmbArea()->count(), 0);
        QVERIFY(!p->segSide()->buttons()[1]->isEnabled());
        QVERIFY(!p->segControl()->buttons()[0]->isEnabled());
        QCOMPARE(p->viewPreview()->opMode(), int(TwPreviewView::kOpHand));
        QCOMPARE(p->GetCurrentPaperSize(), QSizeF(100, 150));
        QVERIFY(!p->isStatusTimerRunning());
        set(*ui, "Data.Image.Invert", true);
        QTest::qWait(250);
        QCOMPARE(sentCount(kVmxEventPreviewRescan), 0);
    }

    // ---- Bad pages and resources ----

    // A bitmap whose header claims more than it holds, or too short for a header, is refused and
    // freed; so is one with a compression Qt's reader does not know; nothing crashes.
    void aBrokenBitmapShowsNoPage_data() {
        columns<int, QString>("front", "logged");
        row("lying header", int(Front::LyingHeader),
            "ERROR: CreateBMPFileHeader: a 248 x 351 bitmap of 24 bits needs 261184 bytes; the buffer "
            "holds 60");
        row("too short", int(Front::TooShort),
            "ERROR: CreateBMPFileHeader: a buffer of 8 bytes cannot hold a bitmap header");
    }
    void aBrokenBitmapShowsNoPage() {
        auto [front, logged] = fetch<int, QString>("front", "logged");
        auto ui = shown();
        g_pages.front = Front(front);
        g_pages.back = false;
        TwDlgPreview* p = prescan(*ui);
        QVERIFY(p);
        QVERIFY(p->isVisible());
        QVERIFY(p->imageFront().isNull());
        QVERIFY2(sample.logText().contains(logged), qPrintable(sample.logText()));
        std::uint32_t length = 0;
        TwOwnedDIB odd(makePageBitmap(8, 8, 3937, Qt::red, QString(), &length), length);
        const std::uint32_t compression = 77;
        std::memcpy(static_cast<char*>(odd.data()) + 16, &compression, 4);
        QVERIFY(CreateImage(std::move(odd)).isNull());
        p->grab(); // paints a white page
    }

    // Uncompressed 8-bit (grey or colour palette) and 24-bit bitmaps become pictures without a
    // copy: the picture's rows are the bitmap's block, padded rows included, and it looks as Qt's
    // BMP reader reads the bitmap. Other depths are read.
    void bitmapsBecomePicturesWithoutACopy_data() {
        columns<int, bool, int, bool>("bits", "colours", "format", "wrapped");
        row("24 bits", 24, false, int(QImage::Format_BGR888), true);
        row("8 bits, grey palette", 8, false, int(QImage::Format_Grayscale8), true);
        row("8 bits, colour palette", 8, true, int(QImage::Format_Indexed8), true);
        row("1 bit: read", 1, false, int(QImage::Format_Mono), false);
        row("32 bits: read", 32, false, int(QImage::Format_RGB32), false);
    }
    void bitmapsBecomePicturesWithoutACopy() {
        auto [bits, colours, format, wrapped] =
            fetch<int, bool, int, bool>("bits", "colours", "format", "wrapped");
        constexpr int width = 37, height = 23; // rows of 111 or 37 bytes, padded to 112 or 40
        std::size_t length = 0;
        void* dib = makePatternBitmap(bits, width, height, colours, &length);
        const QImage read = ReadBitmapImage(dib, length);
        QVERIFY(!read.isNull());
        const auto layout = TwDibLayoutOf(dib, length, "test");
        const auto* rows = static_cast<const uchar*>(dib) + layout->headerSize;
        const QImage picture = CreateImage(TwOwnedDIB(dib, length));
        QCOMPARE(int(picture.format()), format);
        QCOMPARE(picture.size(), QSize(width, height));
        QCOMPARE(picture.constBits() == rows, wrapped);
        if (wrapped)
            QCOMPARE(picture.bytesPerLine(), qsizetype(layout->stride));
        QCOMPARE(picture.convertToFormat(QImage::Format_ARGB32), read.convertToFormat(QImage::Format_ARGB32));
        if (bits == 8)
            QCOMPARE(picture.pixel(1, 0), read.pixel(1, 0)); // the first row is the top one
    }

    // The five cursor pictures come from the module's bundle with their hot spots.
    void cursorsFromTheBundle() {
        for (const char* name : {"ZoomIn", "ZoomOut", "Resize_Move", "Resize_RightDown", "Resize_RightUp"}) {
            const QPixmap picture(VMX_BUNDLE_DIR "/Contents/Resources/" + QString(name) + ".ico");
            QVERIFY2(picture.size() == QSize(32, 32), name);
            QVERIFY(picture.toImage().hasAlphaChannel());
        }
    }

    // ---- The plane geometry ----

    void pointsMapByMirrorAndDuplexBack_data() {
        columns<int, bool, bool, QPointF>("duplexType", "mirror", "front", "expected");
        row("plain front", 0, false, true, QPointF(10, 20));
        row("plain back, duplex 0", 0, false, false, QPointF(10, 20));
        row("duplex 1 front", 1, false, true, QPointF(10, 20));
        row("duplex 1 back: half turn", 1, false, false, QPointF(200, 277));
        row("duplex 1 back, mirrored: y only", 1, true, false, QPointF(10, 277));
        row("mirrored front", 0, true, true, QPointF(200, 20));
        row("duplex 2 back, mirrored", 2, true, false, QPointF(200, 20));
    }
    void pointsMapByMirrorAndDuplexBack() {
        auto [duplexType, mirror, front, expected] =
            fetch<int, bool, bool, QPointF>("duplexType", "mirror", "front", "expected");
        const TwPreviewMapping m({.page = kA4, .front = front, .mirror = mirror, .duplexType = duplexType});
        QCOMPARE(m.Data2ScreenPoint(QPointF(10, 20)), expected);
        QCOMPARE(m.Data2ScreenPoint(expected), QPointF(10, 20)); // its own inverse
        // A rectangle keeps a positive size and comes back as it was.
        const QRectF rect(10, 20, 50, 30);
        const QRectF shown = m.Data2ScreenRect(rect);
        QCOMPARE(shown.size(), rect.size());
        QCOMPARE(m.Screen2DataRect(shown), rect);
    }

    // One mapping from the setting's unit to the page as shown to the view's pixels and back, for
    // every side, mirror, duplex type, unit and a few zoom steps: a rectangle lands where the
    // turns put it, at the zoom's scale, and comes back as it was.
    void theMappingRoundTrips_data() {
        columns<bool, bool, int, bool, int>("front", "mirror", "duplexType", "inch", "zoom");
        for (bool front : {true, false})
            for (bool mirror : {false, true})
                for (int duplexType : {0, 1, 2})
                    for (bool inch : {false, true})
                        for (int zoom : {0, 3, kZoomIndexMax})
                            row(qPrintable(u"%1%2, duplex %3, %4, zoom %5"_s.arg(front ? "front" : "back")
                                               .arg(mirror ? " mirrored" : "")
                                               .arg(duplexType)
                                               .arg(inch ? "inches" : "mm")
                                               .arg(zoom)),
                                front, mirror, duplexType, inch, zoom);
    }
    void theMappingRoundTrips() {
        auto [front, mirror, duplexType, inch, zoom] =
            fetch<bool, bool, int, bool, int>("front", "mirror", "duplexType", "inch", "zoom");
        TwPreviewMapping m({kA4, inch, front, mirror, duplexType});
        m.setFitRate(2.5f);
        m.setZoomIndex(zoom);
        const double scale = 2.5 * ZoomRates[std::size_t(zoom)];
        QCOMPARE(m.scale(), scale);
        const double perUnit = inch ? 25.4 : 1.0;
        auto near4 = [](const QRectF& a, const QRectF& b, double tolerance) {
            return near(a.x(), b.x(), tolerance) && near(a.y(), b.y(), tolerance) &&
                   near(a.width(), b.width(), tolerance) && near(a.height(), b.height(), tolerance);
        };
        auto text = [](const QRectF& r) {
            return u"%1, %2, %3 x %4"_s.arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height());
        };
        // 30, 40 mm from the fed page's top left, 50 x 20 mm, as the setting holds it in the unit.
        const QRectF setting(30 / perUnit, 40 / perUnit, 50 / perUnit, 20 / perUnit);
        // The back of duplex type 1 is turned half round; a mirror turns left and right once more.
        const bool halfTurn = duplexType == 1 && !front;
        const bool acrossTurned = mirror != halfTurn;
        const QRectF expected(acrossTurned ? 210 - 30 - 50 : 30, halfTurn ? 297 - 40 - 20 : 40, 50, 20);
        const QRectF page = m.pageFromSetting(setting);
        QVERIFY2(near4(page, expected, 1e-9), qPrintable(text(page)));
        const QRectF view = m.viewFromPage(page);
        QVERIFY2(near4(view, QRectF(expected.topLeft() * scale, expected.size() * scale), 1e-9),
                 qPrintable(text(view)));
        const QRectF pageAgain(m.pageFromView(view.topLeft()), m.pageFromView(view.bottomRight()));
        QVERIFY2(near4(m.settingFromPage(pageAgain), setting, 1e-9),
                 qPrintable(text(m.settingFromPage(pageAgain))));
        QVERIFY(near(m.millimetres(m.settingValue(123.4)), 123.4, 1e-12));
        QCOMPARE(m.millimetres(1.0), perUnit);
        QVERIFY(near(m.pageLength(4.0), 4.0 / scale, 1e-12));
    }

    // Zones are d wide on each side of every edge; a mouse-down takes the first zone, the cursor
    // the last, where corners and edges overlap.
    void hitZonesAroundTheEdges() {
        const TwAreaEdges e{20, 30, 120, 90};
        const TwCursorAreaList zones = MakeCursorAreaList(e, 2);
        QCOMPARE(zones[kZoneLeft - 1], QRectF(18, 32, 4, 56));
        QCOMPARE(zones[kZoneBottomRight - 1], QRectF(118, 88, 4, 4));
        QCOMPARE(grabbedZone(zones, QPointF(60, 60)), int(kZoneInside));
        QCOMPARE(grabbedZone(zones, QPointF(18.5, 60)), int(kZoneLeft));
        QCOMPARE(grabbedZone(zones, QPointF(121.9, 89)), int(kZoneBottomRight));
        QCOMPARE(grabbedZone(zones, QPointF(60, 27.9)), int(kZoneNone));
        QCOMPARE(grabbedZone(zones, QPointF(60, 28)), int(kZoneTop));
        QCOMPARE(cursorZone(zones, QPointF(119, 31)), int(kZoneTopRight));
        QCOMPARE(MakePointRect(QPointF(5, 6), 2), QRectF(3, 4, 4, 4));
    }

    // Edge zones set their edges to the previous pointer position; crossing edges swap, and the
    // grabbed zone becomes the opposite one. A move keeps the whole area on the page: it stops
    // with an edge exactly on the border.
    void dragsOfEdgesAndMoves_data() {
        // delta: of a move
        // edgesAfter: left, top, right, bottom as x, y, width, height
        columns<int, QPointF, QPointF, int, QRectF>("zone", "ptDrag", "delta", "zoneAfter", "edgesAfter");
        const QPointF none(999, 999);
        row("left edge inward", int(kZoneLeft), QPointF(50, 0), none, int(kZoneLeft),
            QRectF(50, 30, 120, 90));
        row("left past right", int(kZoneLeft), QPointF(130, 0), none, int(kZoneRight),
            QRectF(120, 30, 130, 90));
        row("top past bottom", int(kZoneTop), QPointF(0, 95), none, int(kZoneBottom),
            QRectF(20, 90, 120, 95));
        row("top left past both", int(kZoneTopLeft), QPointF(125, 100), none, int(kZoneBottomRight),
            QRectF(120, 90, 125, 100));
        row("top right past left", int(kZoneTopRight), QPointF(10, 40), none, int(kZoneTopLeft),
            QRectF(10, 40, 20, 90));
        row("bottom left past top", int(kZoneBottomLeft), QPointF(25, 10), none, int(kZoneTopLeft),
            QRectF(25, 10, 120, 30));
        const int in = kZoneInside;
        row("moved inside the page", in, QPointF(), QPointF(5, -5), in, QRectF(25, 25, 125, 85));
        row("moved past the right", in, QPointF(), QPointF(500, 0), in, QRectF(110, 30, 210, 90));
        row("moved past the top left", in, QPointF(), QPointF(-50, -50), in, QRectF(0, 0, 100, 60));
        row("moved past the bottom", in, QPointF(), QPointF(0, 400), in, QRectF(20, 237, 120, 297));
    }
    void dragsOfEdgesAndMoves() {
        auto [zone, ptDrag, delta, zoneAfter, edgesAfter] =
            fetch<int, QPointF, QPointF, int, QRectF>("zone", "ptDrag", "delta", "zoneAfter", "edgesAfter");
        TwDragStep step = dragAreaEdges({20, 30, 120, 90}, zone, ptDrag, delta, kA4);
        QCOMPARE(step.zone, zoneAfter);
        QCOMPARE(QRectF(step.edges.left, step.edges.top, step.edges.right, step.edges.bottom), edgesAfter);
    }

    // Before the page's left or top, the size handed on is the far edge itself.
    void theRectangleHandedOnKeepsTheFarEdge() {
        QCOMPARE(areaRectForEdges({10, 20, 60, 80}), QRectF(10, 20, 50, 60));
        QCOMPARE(areaRectForEdges({-5, 20, 60, 80}), QRectF(-5, 20, 60, 60));
        QCOMPARE(areaRectForEdges({10, -3, 60, 80}), QRectF(10, -3, 50, 80));
        // A new area is the spanned rectangle, kept on the page.
        QCOMPARE(newAreaRect(QPointF(100, 50), QPointF(-10, 400), kA4), QRectF(0, 50, 100, 247));
    }

    void theFitRateLeavesAMargin() {
        QCOMPARE(fitRate(kA4, QSizeF(450, 624)), 2.0f);              // (624 - 30) / 297
        QCOMPARE(fitRate(QSizeF(100, 100), QSizeF(230, 500)), 2.0f); // the narrower way wins
        QCOMPARE(fitRate(QSizeF(0, 297), QSizeF(450, 624)), 0.0f);
    }
};

QTEST_MAIN(TestPreview)
#include "tst_preview.moc"
