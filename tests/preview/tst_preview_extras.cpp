// What the preview offers beyond the areas' zones and the zoom tools: a new area drawn anywhere with
// Shift, the selected area edited with the keys, the tools, Fit and Find Page on keys, the live
// readout of position and size, the document found on rendered scans (white on black, dark on
// white, skewed, at the border, noisy, empty, grey and 1-bit) and set as the main area, Ctrl with
// the wheel zooming around the pointer, and the handles of the selected area.
#include "PreviewPages.h"
#include "SampleFixture.h"
#include "TwDlgPreview.h"
#include "TwPageFinder.h"
#include "TwPreviewGeometry.h"
#include "TwPreviewView.h"

#include <QShortcut>
#include <QTransform>

#include <random>

namespace {

// A rendered scan: a document (a polygon in millimetres) of one colour on a background of another,
// with Gaussian noise of the given spread and a share of impulse pixels (black or white at random).
struct Scan {
    QSizeF mm{210, 297};
    double dpi = 100;
    QColor background = Qt::black;
    QColor document = Qt::white;
    QPolygonF outline; // millimetres; empty: nothing on the scan
    double noise = 0;
    double impulses = 0;

    double perMm() const { return dpi / 25.4; }
    QImage render() const {
        const QSize size(int(std::lround(mm.width() * perMm())), int(std::lround(mm.height() * perMm())));
        QImage image(size, QImage::Format_BGR888);
        image.fill(background);
        {
            QPainter p(&image);
            p.scale(perMm(), perMm());
            p.setPen(Qt::NoPen);
            p.setBrush(document);
            p.drawPolygon(outline);
            // Text on the document, darker than it: what a page holds.
            p.setPen(document.darker(300));
            const QRectF box = outline.boundingRect().adjusted(15, 15, -15, -15);
            for (double y = box.top(); y < box.bottom(); y += 8)
                p.drawLine(QPointF(box.left(), y), QPointF(box.right(), y));
        }
        std::mt19937 random(7);
        std::normal_distribution<double> gauss(0, noise > 0 ? noise : 1);
        std::uniform_real_distribution<double> uniform(0, 1);
        for (int y = 0; y < image.height(); ++y) {
            std::uint8_t* pixel = image.scanLine(y);
            for (int x = 0; x < image.width(); ++x, pixel += 3) {
                if (impulses > 0 && uniform(random) < impulses) {
                    std::fill(pixel, pixel + 3, uniform(random) < 0.5 ? 0 : 255);
                    continue;
                }
                for (int c = 0; c < 3 && noise > 0; ++c)
                    pixel[c] = std::uint8_t(std::clamp(pixel[c] + gauss(random), 0.0, 255.0));
            }
        }
        return image;
    }
    // Where the document lies on the scan, millimetres.
    QRectF expected() const { return outline.boundingRect().intersected(QRectF(QPointF(0, 0), mm)); }
};

QPolygonF rectangle(QRectF mm, double degrees = 0) {
    QTransform turn;
    turn.translate(mm.center().x(), mm.center().y())
        .rotate(degrees)
        .translate(-mm.center().x(), -mm.center().y());
    return turn.map(QPolygonF(mm));
}

// The scan the next prescan delivers, as a 24-bit bitmap at its resolution.
QImage g_scan;
std::uint16_t scanCallback(std::uint16_t event, void* data) {
    recordEvent(event, data);
    if ((event == kVmxEventPrescan || event == kVmxEventPreviewRescan) && data && !g_scan.isNull()) {
        auto* record = static_cast<TwPreviewRecord*>(data);
        const auto pelsPerMetre = std::int32_t(std::lround(g_scan.dotsPerMeterX()));
        record->front.pDIB = makeBitmap(g_scan, pelsPerMetre, &record->front.imageLength);
    }
    return 0;
}

} // namespace

Q_DECLARE_METATYPE(Scan)

class TestPreviewExtras : public QObject {
    Q_OBJECT
    SampleScanner sample;

    // The dialog with the preview of a prescan of the scan (by default a white A4 sheet, the main
    // area at 0, 0, 100 x 100 mm), the main area selected and the view focused.
    struct Shown {
        Facade ui;
        TwDlgPreview* preview = nullptr;
        TwPreviewView* view = nullptr;
    };
    Shown prescanOf(const Scan& scan, int unit = 1) {
        g_scan = scan.render();
        g_scan.setDotsPerMeterX(int(std::lround(scan.perMm() * 1000)));
        g_scan.setDotsPerMeterY(g_scan.dotsPerMeterX());
        Shown s{sample.load({.callback = &scanCallback, .show = true})};
        set(*s.ui, {{"Data.Area.Unit", unit}});
        const double perUnit = unit == 0 ? 25.4 : 1;
        set(*s.ui, {{"temp.Area.Front.X", 0.0},
                    {"temp.Area.Y", 0.0},
                    {"temp.Area.Width", 100 / perUnit},
                    {"temp.Area.Length", 100 / perUnit}});
        QTest::mouseClick(window(*s.ui)->btnPrescan(), Qt::LeftButton);
        s.preview = dynamic_cast<TwDlgPreview*>(s.ui->controllerIfMade()->dlgPreview());
        if (s.preview) {
            s.view = s.preview->viewPreview();
            s.preview->activateWindow();
            if (!QTest::qWaitForWindowActive(s.preview))
                qWarning("the preview did not become the active window");
            s.view->setFocus();
        }
        return s;
    }
    static Scan whiteSheet() { return {.background = Qt::white, .document = Qt::white}; }
    static QPoint at(const TwPreviewView* v, QPointF mm) { return v->mapping().viewFromPage(mm).toPoint(); }
    static QRectF mainArea(VmxUIControllerImpl& ui, double perUnit = 1) {
        auto v = [&](const char* key) {
            return ui.dataForKeyPath(key).doubleValue() * perUnit;
        };
        return QRectF(v("temp.Area.Front.X"), v("temp.Area.Y"), v("temp.Area.Width"), v("temp.Area.Length"));
    }
    static bool within(const QRectF& a, const QRectF& b, double tolerance) {
        return std::abs(a.left() - b.left()) <= tolerance && std::abs(a.top() - b.top()) <= tolerance &&
               std::abs(a.right() - b.right()) <= tolerance && std::abs(a.bottom() - b.bottom()) <= tolerance;
    }
    static QString text(const QRectF& r) {
        return QString("%1, %2, %3 x %4").arg(r.x()).arg(r.y()).arg(r.width()).arg(r.height());
    }

private slots:
    void init() {
        QVERIFY2(sample.reset(), sample.error.c_str());
        g_scan = QImage();
    }

    // ---- Finding the document ----

    // The bounding box of what differs from the background, within 1 mm, on scans as scanners make
    // them; nothing on a scan of the background alone.
    void theDocumentOnRenderedScans_data() {
        columns<Scan, bool>("scan", "found");
        const QPolygonF sheet = rectangle(QRectF(20, 30, 150, 210));
        row("white page on black", Scan{.background = QColor(12, 12, 12), .outline = sheet, .noise = 4},
            true);
        row("dark page on the white lid",
            Scan{.background = QColor(250, 250, 248),
                 .document = QColor(70, 70, 80),
                 .outline = sheet,
                 .noise = 4},
            true);
        row("coloured page on the feeder's grey",
            Scan{.background = QColor(128, 128, 128),
                 .document = QColor(240, 200, 60),
                 .outline = sheet,
                 .noise = 6},
            true);
        row("skewed by 6 degrees", Scan{.outline = rectangle(QRectF(30, 40, 140, 200), 6), .noise = 4}, true);
        row("touching the top left border", Scan{.outline = rectangle(QRectF(-10, -5, 150, 200)), .noise = 4},
            true);
        row("heavy noise and dust",
            Scan{.background = QColor(20, 20, 20), .outline = sheet, .noise = 12, .impulses = 0.003}, true);
        row("at 300 dpi", Scan{.dpi = 300, .outline = sheet, .noise = 4}, true);
        row("an empty scan", Scan{.background = QColor(20, 20, 20), .noise = 6, .impulses = 0.002}, false);
        row("an empty white scan", Scan{.background = Qt::white, .noise = 3}, false);
    }
    void theDocumentOnRenderedScans() {
        auto [scan, found] = fetch<Scan, bool>("scan", "found");
        const QImage image = scan.render();
        const std::optional<QRect> pixels = TwFindPageInImage(image, scan.perMm());
        QCOMPARE(pixels.has_value(), found);
        if (!found)
            return;
        const QRectF mm(pixels->x() / scan.perMm(), pixels->y() / scan.perMm(),
                        pixels->width() / scan.perMm(), pixels->height() / scan.perMm());
        QVERIFY2(within(mm, scan.expected(), 1.0), qPrintable(text(mm) + " for " + text(scan.expected())));
    }

    // The pictures a prescan can become: grey (from an 8-bit bitmap) and 1-bit find the same page.
    void theDocumentInOtherDepths_data() {
        columns<QImage::Format>("format");
        row("grey", QImage::Format_Grayscale8);
        row("1 bit", QImage::Format_Mono);
        row("indexed colours", QImage::Format_Indexed8);
        row("32 bit", QImage::Format_RGB32);
    }
    void theDocumentInOtherDepths() {
        auto [format] = fetch<QImage::Format>("format");
        const Scan scan{.outline = rectangle(QRectF(25, 35, 120, 180))};
        const QImage image = scan.render().convertToFormat(format);
        const std::optional<QRect> pixels = TwFindPageInImage(image, scan.perMm());
        QVERIFY(pixels);
        const QRectF mm(QPointF(pixels->topLeft()) / scan.perMm(), QSizeF(pixels->size()) / scan.perMm());
        QVERIFY2(within(mm, scan.expected(), 1.0), qPrintable(text(mm)));
        QVERIFY(!TwFindPageInImage(QImage()));
        QVERIFY(!TwFindPageInImage(QImage(1, 1, format)));
    }

    // Find Page (and Ctrl+F) sets the main area of the side shown to the document, in the user's
    // unit, through the model: the minimum size applies, a selected sub-area keeps its place, and
    // a scan without a document changes nothing.
    void findPageSetsTheMainArea_data() {
        columns<int, QRectF, bool, bool>("unit", "document", "subAreaSelected", "byKey");
        row("millimetres", 1, QRectF(20, 30, 150, 210), false, false);
        row("inches", 0, QRectF(20, 30, 150, 210), false, true);
        row("a sub-area selected", 1, QRectF(40, 20, 120, 160), true, false);
        row("smaller than the smallest area", 1, QRectF(60, 70, 4, 5), false, false);
        row("no document", 1, QRectF(), false, true);
    }
    void findPageSetsTheMainArea() {
        auto [unit, document, subAreaSelected, byKey] =
            fetch<int, QRectF, bool, bool>("unit", "document", "subAreaSelected", "byKey");
        const double perUnit = unit == 0 ? 25.4 : 1;
        Scan scan{.background = QColor(15, 15, 15), .noise = 3};
        if (!document.isEmpty())
            scan.outline = rectangle(document);
        Shown s = prescanOf(scan, unit);
        QVERIFY(s.preview && s.preview->btnFindPage()->isEnabled());
        const QRectF before = mainArea(*s.ui, perUnit);
        if (subAreaSelected) {
            set(*s.ui, {{"Data.Area.Front.L1.Enable", true},
                        {"temp.Area.Front.L1.X", 10 / perUnit},
                        {"temp.Area.Front.L1.Y", 10 / perUnit},
                        {"temp.Area.Front.L1.Width", 30 / perUnit},
                        {"temp.Area.Front.L1.Length", 30 / perUnit}});
            s.preview->setSelectedArea(0);
        }
        if (byKey)
            QTest::keyClick(s.view, Qt::Key_F, Qt::ControlModifier);
        else
            QTest::mouseClick(s.preview->btnFindPage(), Qt::LeftButton);
        const QRectF area = mainArea(*s.ui, perUnit);
        if (document.isEmpty()) {
            QCOMPARE(area, before);
            return;
        }
        // The main area is at least 10 mm each way; a small document is grown from its corner.
        const QRectF wanted(document.topLeft(),
                            QSizeF(std::max(document.width(), 10.0), std::max(document.height(), 10.0)));
        QVERIFY2(within(area, wanted, 1.0), qPrintable(text(area)));
        if (subAreaSelected) {
            QCOMPARE(s.preview->selectedArea(), std::int16_t(0));
            QCOMPARE(s.ui->dataForKeyPath("temp.Area.Front.L1.X").doubleValue() * perUnit, 10.0);
            QCOMPARE(s.ui->dataForKeyPath("temp.Area.Front.L1.Width").doubleValue() * perUnit, 30.0);
        }
        // The Area tab shows what was set.
        auto* width = window(*s.ui)->findChild<QLineEdit*>("txtWidth");
        QVERIFY2(std::abs(width->text().toDouble() - area.width() / perUnit) <= 0.051,
                 qPrintable(width->text()));
    }

    // ---- Drawing anywhere, the keys ----

    // With Shift a drag inside the area draws a new one; without, the same drag moves the area.
    void shiftDrawsANewAreaInsideTheArea_data() {
        columns<bool, QRectF>("shift", "written");
        row("with Shift", true, QRectF(30, 40, 50, 40));
        row("without: a move", false, QRectF(50, 40, 100, 100));
    }
    void shiftDrawsANewAreaInsideTheArea() {
        auto [shift, written] = fetch<bool, QRectF>("shift", "written");
        Shown s = prescanOf(whiteSheet());
        QVERIFY(s.view);
        const Qt::KeyboardModifiers modifiers = shift ? Qt::ShiftModifier : Qt::NoModifier;
        QTest::mousePress(s.view, Qt::LeftButton, modifiers, at(s.view, QPointF(30, 40)));
        QTest::mouseMove(s.view, at(s.view, QPointF(60, 60)));
        QTest::mouseMove(s.view, at(s.view, QPointF(80, 80)));
        QTest::mouseMove(s.view, at(s.view, QPointF(80, 80)));
        QTest::mouseRelease(s.view, Qt::LeftButton, modifiers, at(s.view, QPointF(80, 80)));
        const double pixel = 1.5 / s.view->mapping().scale();
        QVERIFY2(within(mainArea(*s.ui), written, pixel), qPrintable(text(mainArea(*s.ui))));
    }

    // The arrows move the selected area by 1 mm (Shift: 10 mm), Alt with them its right or bottom
    // edge, kept on the page and validated as a drag is (the smallest area stays 10 mm); a key step
    // of a sub-area asks for a rescan.
    void theKeysEditTheSelectedArea_data() {
        columns<int, QRectF, QList<int>, Qt::KeyboardModifiers, QRectF>("unit", "start", "keys", "modifiers",
                                                                        "written");
        const QRectF start(50, 60, 80, 90);
        row("right", 1, start, QList<int>{Qt::Key_Right, Qt::Key_Right}, Qt::KeyboardModifiers(),
            QRectF(52, 60, 80, 90));
        row("down by ten, in inches", 0, start, QList<int>{Qt::Key_Down},
            Qt::KeyboardModifiers(Qt::ShiftModifier), QRectF(50, 70, 80, 90));
        row("left stops at the page", 1, QRectF(3, 60, 80, 90), QList<int>{Qt::Key_Left},
            Qt::KeyboardModifiers(Qt::ShiftModifier), QRectF(0, 60, 80, 90));
        row("the right edge out", 1, start, QList<int>{Qt::Key_Right}, Qt::KeyboardModifiers(Qt::AltModifier),
            QRectF(50, 60, 81, 90));
        row("the bottom edge up by ten", 1, start, QList<int>{Qt::Key_Up},
            Qt::KeyboardModifiers(Qt::AltModifier | Qt::ShiftModifier), QRectF(50, 60, 80, 80));
        row("the right edge stops at the page", 1, QRectF(120, 60, 85, 90), QList<int>{Qt::Key_Right},
            Qt::KeyboardModifiers(Qt::AltModifier | Qt::ShiftModifier), QRectF(120, 60, 90, 90));
        row("no smaller than the smallest area", 1, QRectF(50, 60, 12, 90), QList<int>{Qt::Key_Left},
            Qt::KeyboardModifiers(Qt::AltModifier | Qt::ShiftModifier), QRectF(50, 60, 10, 90));
    }
    void theKeysEditTheSelectedArea() {
        auto [unit, start, keys, modifiers, written] =
            fetch<int, QRectF, QList<int>, Qt::KeyboardModifiers, QRectF>("unit", "start", "keys",
                                                                          "modifiers", "written");
        const double perUnit = unit == 0 ? 25.4 : 1;
        Shown s = prescanOf(whiteSheet(), unit);
        QVERIFY(s.view);
        set(*s.ui, {{"temp.Area.Front.X", start.x() / perUnit},
                    {"temp.Area.Y", start.y() / perUnit},
                    {"temp.Area.Width", start.width() / perUnit},
                    {"temp.Area.Length", start.height() / perUnit}});
        for (int key : keys)
            QTest::keyClick(s.view, Qt::Key(key), modifiers);
        QVERIFY2(within(mainArea(*s.ui, perUnit), written, 0.01), qPrintable(text(mainArea(*s.ui, perUnit))));
        QVERIFY(!s.ui->dataForKeyPath("temp.InMouseDragChangeArea").boolValue());
        // The readout shows the area for a while, in the Area tab's form.
        auto field = [&](const char* name) {
            return window(*s.ui)->findChild<QLineEdit*>(name)->text();
        };
        const QString unitSymbol = unit == 0 ? "in" : "mm";
        QCOMPARE(s.view->readoutText(), QString("X %1  Y %2  W %3  L %4 %5")
                                            .arg(field("txtFrontX"), field("txtY"), field("txtWidth"),
                                                 field("txtLength"), unitSymbol));
        QVERIFY(!s.preview->needRescan());
        // A sub-area's step asks for a rescan.
        set(*s.ui, {{"temp.Area.Front.X", 0.0},
                    {"temp.Area.Y", 0.0},
                    {"temp.Area.Width", 150 / perUnit},
                    {"temp.Area.Length", 200 / perUnit},
                    {"Data.Area.Front.L1.Enable", true},
                    {"temp.Area.Front.L1.X", 10 / perUnit},
                    {"temp.Area.Front.L1.Y", 10 / perUnit},
                    {"temp.Area.Front.L1.Width", 30 / perUnit},
                    {"temp.Area.Front.L1.Length", 30 / perUnit}});
        s.preview->setSelectedArea(0);
        s.preview->SetRescanFlag(false);
        QTest::keyClick(s.view, Qt::Key_Down);
        QVERIFY(std::abs(s.ui->dataForKeyPath("temp.Area.Front.L1.Y").doubleValue() * perUnit - 11.0) < 0.01);
        QVERIFY(s.preview->needRescan());
    }

    // The tools, Fit, Find Page and zoom steps have keys, named in the tool tips, and the view is
    // reached with Tab.
    void theToolsAndZoomHaveKeys() {
        Shown s = prescanOf(whiteSheet());
        QVERIFY(s.view);
        QCOMPARE(s.view->opMode(), int(TwPreviewView::kOpSelect));
        QTest::keyClick(s.view, Qt::Key_2, Qt::ControlModifier);
        QCOMPARE(s.view->opMode(), int(TwPreviewView::kOpHand));
        QCOMPARE(s.preview->segControl()->selectedIndex(), 1);
        QTest::keyClick(s.view, Qt::Key_4, Qt::ControlModifier);
        QCOMPARE(s.view->opMode(), int(TwPreviewView::kOpZoomOut));
        QTest::keyClick(s.view, Qt::Key_1, Qt::ControlModifier);
        QCOMPARE(s.view->opMode(), int(TwPreviewView::kOpSelect));
        QTest::keyClick(s.view, Qt::Key_Plus, Qt::ControlModifier);
        QTest::keyClick(s.view, Qt::Key_Equal, Qt::ControlModifier);
        QCOMPARE(s.view->zoomIndex(), 2);
        QTest::keyClick(s.view, Qt::Key_Minus, Qt::ControlModifier);
        QCOMPARE(s.view->zoomIndex(), 1);
        QTest::keyClick(s.view, Qt::Key_0, Qt::ControlModifier);
        QCOMPARE(s.view->zoomIndex(), 0);
        QVERIFY2(s.preview->segControl()->buttons()[1]->toolTip().endsWith("(Ctrl+2)"),
                 qPrintable(s.preview->segControl()->buttons()[1]->toolTip()));
        QVERIFY(s.preview->btnFindPage()->toolTip().endsWith("(Ctrl+F)"));
        QVERIFY(s.preview->btnZoomFit()->toolTip().endsWith("(Ctrl+0)"));
        // Tab goes round the window and passes the view.
        bool reached = false;
        for (QWidget* w = s.preview->nextInFocusChain(); w != s.preview && !reached;
             w = w->nextInFocusChain())
            reached = w == s.view && (w->focusPolicy() & Qt::TabFocus);
        QVERIFY(reached);
    }

    // ---- The readout ----

    // While a new area is drawn, or the area moved or resized, the readout beside the pointer shows
    // the position and size in the user's unit as the Area tab shows them; it goes at the release.
    void theReadoutFollowsTheDrag_data() {
        columns<int, QPointF, QPointF, QString>("unit", "from", "to", "shown");
        row("drawing, millimetres", 1, QPointF(120, 150), QPointF(170, 210),
            "X 120.0  Y 150.0  W 50.0  L 60.0 mm");
        row("moving, inches", 0, QPointF(50, 50), QPointF(75.4, 75.4), "X 1.00  Y 1.00  W 3.94  L 3.94 in");
        row("resizing the right edge", 1, QPointF(100, 50), QPointF(140, 50),
            "X 0.0  Y 0.0  W 140.0  L 100.0 mm");
    }
    void theReadoutFollowsTheDrag() {
        auto [unit, from, to, shown] = fetch<int, QPointF, QPointF, QString>("unit", "from", "to", "shown");
        Shown s = prescanOf(whiteSheet(), unit);
        QVERIFY(s.view);
        s.view->doZoominit(QSizeF(210, 297), QSizeF(450, 624)); // two pixels a millimetre
        QTest::mousePress(s.view, Qt::LeftButton, {}, at(s.view, from));
        QTest::mouseMove(s.view, at(s.view, (from + to) / 2));
        QTest::mouseMove(s.view, at(s.view, to));
        QTest::mouseMove(s.view, at(s.view, to)); // an edge follows the previous position
        QCOMPARE(s.view->readoutText(), shown);
        const QRectF readout = s.view->readoutRect();
        QVERIFY(readout.isValid());
        QVERIFY(QRectF(s.view->rect()).contains(readout));
        QVERIFY(!readout.contains(s.view->mapping().viewFromPage(to))); // beside the pointer, not under it
        QTest::mouseRelease(s.view, Qt::LeftButton, {}, at(s.view, to));
        QVERIFY(s.view->readoutText().isEmpty());
    }

    // ---- The wheel ----

    // Ctrl with the wheel zooms a step around the pointer: the page point under it stays there;
    // the plain wheel only scrolls.
    void ctrlWheelZoomsAroundThePointer() {
        Shown s = prescanOf(whiteSheet());
        QVERIFY(s.view);
        QScrollArea* area = s.preview->sclPreview();
        auto wheel = [&](QPointF viewPoint, int delta, Qt::KeyboardModifiers modifiers) {
            QWheelEvent event(viewPoint, s.view->mapToGlobal(viewPoint), QPoint(), QPoint(0, delta),
                              Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
            QCoreApplication::sendEvent(s.view, &event);
        };
        // From the fitted page, where the view lies in the middle of the scroll area, to the last
        // step; once the view is larger than the scroll area in a direction, the point stays.
        const QPoint inViewport = s.view->mapTo(area->viewport(), at(s.view, QPointF(150, 80)));
        for (int step = 1; step <= kZoomIndexMax; ++step) {
            const QPointF pointer = s.view->mapFrom(area->viewport(), inViewport);
            const QPointF underPointer = s.view->mapping().pageFromView(pointer);
            wheel(pointer, 120, Qt::ControlModifier);
            QCOMPARE(s.view->zoomIndex(), step);
            const QPointF now = s.view->mapTo(area->viewport(), s.view->mapping().viewFromPage(underPointer));
            const QSize viewport = area->viewport()->size();
            if (s.view->width() > viewport.width())
                QVERIFY2(std::abs(now.x() - inViewport.x()) <= 1,
                         qPrintable(QString("step %1: x %2").arg(step).arg(now.x())));
            if (s.view->height() > viewport.height())
                QVERIFY2(std::abs(now.y() - inViewport.y()) <= 1,
                         qPrintable(QString("step %1: y %2").arg(step).arg(now.y())));
        }
        QVERIFY(s.view->width() > area->viewport()->width() && s.view->height() > area->viewport()->height());
        const QPointF pointer = s.view->mapFrom(area->viewport(), inViewport);
        wheel(pointer, 120, Qt::ControlModifier); // beyond the last step
        QCOMPARE(s.view->zoomIndex(), kZoomIndexMax);
        wheel(pointer, -60, Qt::ControlModifier); // half a notch: not yet
        QCOMPARE(s.view->zoomIndex(), kZoomIndexMax);
        wheel(pointer, -60, Qt::ControlModifier);
        QCOMPARE(s.view->zoomIndex(), kZoomIndexMax - 1);
        wheel(pointer, -120, Qt::NoModifier);
        QCOMPARE(s.view->zoomIndex(), kZoomIndexMax - 1);
    }

    // ---- Handles ----

    // Eight squares of a constant size at the selected area's corners and edge middles, painted
    // white with a black border at every zoom; none with another tool or when the selected area
    // is not drawn.
    void handlesAtTheCornersAndMiddles() {
        Shown s = prescanOf(Scan{.background = QColor(40, 90, 160), .document = QColor(40, 90, 160)});
        QVERIFY(s.view);
        set(*s.ui, {{"temp.Area.Front.X", 40.0}, {"temp.Area.Y", 50.0}});
        for (int zoom : {0, 3}) {
            s.view->doZoom(zoom);
            const std::vector<QRectF> handles = s.view->handleRects();
            QCOMPARE(handles.size(), std::size_t(8));
            const QList<QPointF> points{{40, 50},   {90, 50},  {140, 50}, {140, 100},
                                        {140, 150}, {90, 150}, {40, 150}, {40, 100}};
            const QImage picture = s.view->grab().toImage();
            for (std::size_t i = 0; i < handles.size(); ++i) {
                QCOMPARE(handles[i].size(), QSizeF(TwPreviewView::kHandleSize, TwPreviewView::kHandleSize));
                const QPointF centre = s.view->mapping().viewFromPage(points[int(i)]);
                QVERIFY(std::abs(handles[i].center().x() - centre.x()) < 1e-6);
                QVERIFY(std::abs(handles[i].center().y() - centre.y()) < 1e-6);
                // White inside a black border (a 7-pixel square has 24 border pixels).
                const QPoint c = handles[i].center().toPoint();
                QCOMPARE(picture.pixelColor(c), QColor(Qt::white));
                int black = 0;
                for (int dy = -5; dy <= 5; ++dy)
                    for (int dx = -5; dx <= 5; ++dx)
                        black += picture.pixelColor(c + QPoint(dx, dy)) == QColor(Qt::black);
                QVERIFY2(black >= 20 && black <= 28, qPrintable(QString::number(black)));
            }
        }
        QTest::keyClick(s.view, Qt::Key_2, Qt::ControlModifier); // the hand
        QVERIFY(s.view->handleRects().empty());
        QTest::keyClick(s.view, Qt::Key_1, Qt::ControlModifier);
        // A sub-area selected while sub-areas are off is not drawn, so it has no handles.
        set(*s.ui, {{"Data.Area.Front.L1.Enable", true},
                    {"temp.Area.Front.L1.Width", 30.0},
                    {"temp.Area.Front.L1.Length", 30.0}});
        s.preview->setSelectedArea(0);
        std::vector<TwAreaOverlay> overlays;
        s.preview->GetAreas(overlays);
        const auto selected =
            std::find_if(overlays.begin(), overlays.end(), [](auto& o) { return o.selected; });
        const std::vector<QRectF> handles = s.view->handleRects();
        if (selected == overlays.end()) {
            QVERIFY(handles.empty());
        } else {
            QCOMPARE(handles.size(), std::size_t(8));
            QCOMPARE(handles[0].center(), s.view->mapping().viewFromPage(selected->rect.topLeft()));
        }
    }

    // ---- Geometry ----

    void keySteps_data() {
        columns<int, bool, double, QRectF>("key", "edgeOnly", "step", "edges");
        const QRectF start(20, 30, 100, 60); // left, top, width, height on a 210 x 297 page
        row("right", int(Qt::Key_Right), false, 1.0, start.translated(1, 0));
        row("up by ten", int(Qt::Key_Up), false, 10.0, start.translated(0, -10));
        row("left past the page", int(Qt::Key_Left), false, 30.0, start.translated(-20, 0));
        row("down to the page's end", int(Qt::Key_Down), false, 500.0, start.translated(0, 297 - 90));
        row("the right edge", int(Qt::Key_Right), true, 10.0, start.adjusted(0, 0, 10, 0));
        row("the right edge past the page", int(Qt::Key_Right), true, 200.0, QRectF(20, 30, 190, 60));
        row("the right edge over the left", int(Qt::Key_Left), true, 300.0, QRectF(20, 30, 0, 60));
        row("the bottom edge up", int(Qt::Key_Up), true, 1.0, start.adjusted(0, 0, 0, -1));
    }
    void keySteps() {
        auto [key, edgeOnly, step, edges] =
            fetch<int, bool, double, QRectF>("key", "edgeOnly", "step", "edges");
        const TwAreaEdges start{20, 30, 120, 90};
        const std::optional<TwAreaEdges> moved = keyStepEdges(start, key, edgeOnly, step, QSizeF(210, 297));
        QVERIFY(moved);
        QCOMPARE(QRectF(QPointF(moved->left, moved->top), QPointF(moved->right, moved->bottom)), edges);
        QVERIFY(!keyStepEdges(start, Qt::Key_Space, false, 1, QSizeF(210, 297)));
    }
};

QTEST_MAIN(TestPreviewExtras)
#include "tst_preview_extras.moc"
