// The preview's plane geometry, free of widgets: the hit zones around the selected area, the edges
// a drag gives, and the zoom steps. How the setting, the page and the view meet is
// TwPreviewMapping's.
//
// Every length here is in the preview's data units, millimetres on the page shown.
#pragma once

#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <array>
#include <optional>

// The square of half-side r around a point.
QRectF MakePointRect(QPointF point, double r);

// The edges of the selected area in view coordinates.
struct TwAreaEdges {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;
    bool operator==(const TwAreaEdges&) const = default;
};

// Hit zones, numbered as the mouse code keeps them in subOpMode: 0 none, 1 inside, 2 left edge,
// 3 right edge, 4 top edge, 5 bottom edge, 6 top left, 7 bottom right, 8 top right, 9 bottom left.
enum TwAreaZone {
    kZoneNone = 0,
    kZoneInside,
    kZoneLeft,
    kZoneRight,
    kZoneTop,
    kZoneBottom,
    kZoneTopLeft,
    kZoneBottomRight,
    kZoneTopRight,
    kZoneBottomLeft,
};
using TwCursorAreaList = std::array<QRectF, 9>;

// The nine zones around the edges, d data units to each side of an edge.
TwCursorAreaList MakeCursorAreaList(const TwAreaEdges& edges, double d);
// The first zone (in zone order) that holds the point: what a mouse-down grabs.
int grabbedZone(const TwCursorAreaList& zones, QPointF point);
// The last zone that holds the point: the one whose cursor shows (later zones win).
int cursorZone(const TwCursorAreaList& zones, QPointF point);

// One drag step in the select tool. A move (zone 1) shifts all edges by delta, kept on the page;
// an edge zone sets its edges to ptDrag, the previous pointer position. Edges that cross are
// swapped and the zone changes to the opposite one, so the drag goes on with the other edge.
struct TwDragStep {
    TwAreaEdges edges;
    int zone = kZoneNone;
};
TwDragStep dragAreaEdges(const TwAreaEdges& edges, int zone, QPointF ptDrag, QPointF delta, QSizeF page);
// The rectangle a drag hands to the model. Where the left (top) edge lies before the page, the
// width (height) is the right (bottom) edge itself, so that once the model puts the origin back
// on the page the far edge stays where it was dragged.
QRectF areaRectForEdges(const TwAreaEdges& edges);
// A new area drawn from ptDown to ptUp, limited to the page.
QRectF newAreaRect(QPointF ptDown, QPointF ptUp, QSizeF page);

// One keyboard step of the selected area: the arrow keys (Qt::Key_Left ... Qt::Key_Down) move it
// by step, kept on the page as a move by drag is; with edgeOnly they move its right or bottom edge
// (left and up make it smaller), kept on the page and not before the opposite edge. Nothing for
// another key.
std::optional<TwAreaEdges> keyStepEdges(const TwAreaEdges& edges, int key, bool edgeOnly, double step,
                                        QSizeF page);

// Where the selected area's eight handles sit: the corners and the middles of the edges, clockwise
// from the top left corner.
std::array<QPointF, 8> areaHandlePoints(const QRectF& area);

// Zoom steps relative to the fit rate.
inline constexpr std::array<float, 6> ZoomRates = {1.0f, 1.25f, 1.5f, 2.0f, 4.0f, 8.0f};
inline constexpr int kZoomIndexMax = int(ZoomRates.size()) - 1;
// Screen points per data unit that fit the page into the visible frame with a 30-point margin;
// 0 when the page has no size.
float fitRate(QSizeF page, QSizeF frame);
