// The mouse tools of the page view: select and resize an area (drawing a new one with a dashed
// band), scroll by hand, zoom in, zoom out. The view hands the current tool its presses, the
// moves with the button held and the releases, asks it for the cursor where the pointer rests,
// and lets it paint its own feedback over the page and the outlines.
//
// Positions reach a tool in page millimetres as shown (TwPreviewMapping::pageFromView); a tool
// that needs the pointer itself (the hand) reads it from the event.
#pragma once

#include "TwPreviewGeometry.h"

#include <QCursor>
#include <QPoint>
#include <QPointF>

class QMouseEvent;
class QPainter;
class TwPreviewView;

class TwPreviewTool {
public:
    explicit TwPreviewTool(TwPreviewView& view) : m_view(view) {}
    virtual ~TwPreviewTool() = default;
    TwPreviewTool(const TwPreviewTool&) = delete;
    TwPreviewTool& operator=(const TwPreviewTool&) = delete;

    // The cursor where the pointer rests, no button held: the tool's own cursor unless a tool
    // has places of its own.
    virtual QCursor cursorAt(QPointF page) const;
    virtual void press(QPointF page, const QMouseEvent& event) = 0;
    virtual void drag(QPointF page, const QMouseEvent& event) = 0;
    virtual void release(QPointF page, const QMouseEvent& event) = 0;
    // What the tool shows over the page, in view pixels.
    virtual void paint(QPainter&) const {}

protected:
    TwPreviewView& m_view;
};

// Tool 0: a press inside the selected area or on its edges grabs that zone, and each move hands
// the window the area's new rectangle; a drag elsewhere draws a new area, handed over at the
// release. A release validates the areas; one of a sub-area asks for a rescan.
class TwSelectTool : public TwPreviewTool {
public:
    using TwPreviewTool::TwPreviewTool;

    QCursor cursorAt(QPointF page) const override;
    void press(QPointF page, const QMouseEvent& event) override;
    void drag(QPointF page, const QMouseEvent& event) override;
    void release(QPointF page, const QMouseEvent& event) override;
    // The dashed band of a new area.
    void paint(QPainter& painter) const override;

    // The hit zones around the view's area edges, four view pixels to each side.
    void makeZones();
    const TwCursorAreaList& zones() const { return m_zones; }
    // The zone grabbed at the last press (TwAreaZone); it changes as dragged edges cross.
    int zone() const { return m_zone; }

private:
    TwCursorAreaList m_zones{};
    QPointF m_ptDown;
    QPointF m_ptDrag; // the previous pointer position: dragged edges follow it
    int m_zone = kZoneNone;
    bool m_dragged = false;
};

// Tool 1: the page moves with the pointer as far as the scroll area lets it.
class TwHandTool : public TwPreviewTool {
public:
    using TwPreviewTool::TwPreviewTool;

    void press(QPointF page, const QMouseEvent& event) override;
    void drag(QPointF page, const QMouseEvent& event) override;
    void release(QPointF, const QMouseEvent&) override {}

private:
    QPoint m_last; // the pointer in the scroll area's viewport
};

// Tools 2 and 3: a click takes one zoom step in or out, the middle of the visible part staying
// in the middle; nothing beyond the first and the last step.
class TwZoomTool : public TwPreviewTool {
public:
    TwZoomTool(TwPreviewView& view, int step) : TwPreviewTool(view), m_step(step) {}

    void press(QPointF, const QMouseEvent&) override {}
    void drag(QPointF, const QMouseEvent&) override {}
    void release(QPointF page, const QMouseEvent& event) override;

private:
    int m_step; // +1 in, -1 out
};
