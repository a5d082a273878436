// The preview's plane geometry: the mapping of mirrored and duplex back pages, the hit zones, the
// edges a drag gives (crossing edges, the move kept on the page, the rectangle handed on) and the
// fit rate.
#include "TestSupport.h"
#include "TwPreviewGeometry.h"

class TestPreviewGeometry : public QObject {
    Q_OBJECT
    static constexpr QSizeF kA4{210, 297};

private slots:
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
        const TwPageMapping m{kA4, duplexType, mirror, front};
        QCOMPARE(Data2ScreenPoint(m, QPointF(10, 20)), expected);
        QCOMPARE(Data2ScreenPoint(m, expected), QPointF(10, 20)); // its own inverse
        // A rectangle keeps a positive size and comes back as it was.
        const QRectF rect(10, 20, 50, 30);
        const QRectF shown = Data2ScreenRect(m, rect);
        QCOMPARE(shown.size(), rect.size());
        QCOMPARE(Data2ScreenRect(m, shown), rect);
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

QTEST_APPLESS_MAIN(TestPreviewGeometry)
#include "tst_previewgeometry.moc"
