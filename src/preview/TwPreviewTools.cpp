#include "TwPreviewTools.h"

#include "TwDlgPreview.h"
#include "TwPreviewView.h"

#include <QMouseEvent>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>

namespace {
constexpr double kZoneHalfWidth = 4.0; // view pixels on each side of an edge
} // namespace

QCursor TwPreviewTool::cursorAt(QPointF) const {
    return m_view.toolCursor();
}

// ---- Select and resize -----------------------------------------------------------------------------

void TwSelectTool::makeZones() {
    m_zones = MakeCursorAreaList(m_view.areaEdges(), m_view.mapping().pageLength(kZoneHalfWidth));
}

QCursor TwSelectTool::cursorAt(QPointF page) const {
    switch (cursorZone(m_zones, page)) {
    case kZoneInside:
        return m_view.cursorResizeMove();
    case kZoneLeft:
    case kZoneRight:
        return QCursor(Qt::SizeHorCursor);
    case kZoneTop:
    case kZoneBottom:
        return QCursor(Qt::SizeVerCursor);
    case kZoneTopLeft:
    case kZoneBottomRight:
        return m_view.cursorResizeRightDown();
    case kZoneTopRight:
    case kZoneBottomLeft:
        return m_view.cursorResizeRightUp();
    default:
        return m_view.toolCursor();
    }
}

void TwSelectTool::press(QPointF page, const QMouseEvent& event) {
    m_ptDown = m_ptDrag = page;
    m_dragged = false;
    makeZones();
    // With Shift a drag draws a new area wherever it starts, over the selected one too.
    m_zone = event.modifiers() & Qt::ShiftModifier ? int(kZoneNone) : grabbedZone(m_zones, m_ptDown);
}

void TwSelectTool::drag(QPointF page, const QMouseEvent&) {
    m_dragged = true;
    TwDlgPreview* dialog = m_view.dlgParent();
    if (m_zone != kZoneNone && dialog) {
        const TwDragStep step =
            dragAreaEdges(m_view.areaEdges(), m_zone, m_ptDrag, page - m_ptDrag, m_view.mapping().page());
        m_zone = step.zone;
        dialog->SetInMouseDrag(true);
        dialog->ModifyArea(areaRectForEdges(step.edges));
    }
    m_ptDrag = page;
    const TwPreviewMapping& mapping = m_view.mapping();
    const TwAreaEdges& e = m_view.areaEdges();
    m_view.showReadout(m_zone == kZoneNone ? newAreaRect(m_ptDown, page, mapping.page())
                                           : QRectF(QPointF(e.left, e.top), QPointF(e.right, e.bottom)),
                       mapping.viewFromPage(page));
    m_view.update();
}

void TwSelectTool::release(QPointF page, const QMouseEvent&) {
    TwDlgPreview* dialog = m_view.dlgParent();
    const bool drewNewArea = m_dragged && m_zone == kZoneNone;
    m_dragged = false;
    m_view.hideReadout();
    if (!dialog)
        return;
    if (drewNewArea) {
        dialog->ModifyArea(newAreaRect(m_ptDown, page, m_view.mapping().page()));
        return;
    }
    m_view.finishAreaEdit();
}

void TwSelectTool::paint(QPainter& painter) const {
    if (!m_dragged || m_zone != kZoneNone)
        return;
    const TwPreviewMapping& mapping = m_view.mapping();
    QPen pen(Qt::black);
    pen.setWidthF(TwPreviewView::kOutlineWidth);
    pen.setJoinStyle(Qt::MiterJoin);
    // 2 page units (millimetres) on, 2 off; Qt counts dashes in pen widths, and a square cap would
    // lengthen every dash by a pen width, closing the gaps.
    const double dash = 2.0 * mapping.scale() / TwPreviewView::kOutlineWidth;
    pen.setDashPattern({dash, dash});
    pen.setCapStyle(Qt::FlatCap);
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(QRectF(mapping.viewFromPage(m_ptDown), mapping.viewFromPage(m_ptDrag)).normalized());
}

// ---- Hand ------------------------------------------------------------------------------------------

void TwHandTool::press(QPointF, const QMouseEvent& event) {
    if (QScrollArea* area = m_view.scrollArea())
        m_last = area->viewport()->mapFromGlobal(event.globalPosition().toPoint());
}

void TwHandTool::drag(QPointF, const QMouseEvent& event) {
    QScrollArea* area = m_view.scrollArea();
    if (!area)
        return;
    // The grabbed point stays under the pointer: the view moves with it as far as it can.
    const QPoint now = area->viewport()->mapFromGlobal(event.globalPosition().toPoint());
    const QPoint delta = now - m_last;
    area->horizontalScrollBar()->setValue(area->horizontalScrollBar()->value() - delta.x());
    area->verticalScrollBar()->setValue(area->verticalScrollBar()->value() - delta.y());
    m_last = now;
}

// ---- Zoom ------------------------------------------------------------------------------------------

void TwZoomTool::release(QPointF, const QMouseEvent&) {
    const int index = m_view.zoomIndex() + m_step;
    if (index >= 0 && index <= kZoomIndexMax)
        m_view.doZoom(index);
}
