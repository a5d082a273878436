#include "TwPreviewView.h"

#include "TwDlgPreview.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>

#include <cmath>

namespace {
constexpr double kOutlineWidth = 3.0;  // screen points, at every zoom
constexpr double kZoneHalfWidth = 4.0; // screen points on each side of an edge
} // namespace

TwPreviewView::TwPreviewView(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
}

// ---- Page and areas ------------------------------------------------------------------------------

void TwPreviewView::setScanImage(const QImage& image) {
    m_imageScan = image;
    m_pageCache = QImage();
    update();
}

void TwPreviewView::setAreaEdges(const TwAreaEdges& edges) {
    if (edges == m_areaEdges)
        return;
    m_areaEdges = edges;
    update();
}

void TwPreviewView::setOpMode(int mode) {
    m_opMode = mode;
}

void TwPreviewView::setToolCursor(const QCursor& cursor) {
    m_cursor = cursor;
    setCursor(cursor);
}

// ---- Coordinates and zoom ------------------------------------------------------------------------

QPointF TwPreviewView::viewFromPage(QPointF page) const {
    return page * scale();
}

QPointF TwPreviewView::pageFromView(QPointF view) const {
    const double s = scale();
    return s > 0 ? view / s : QPointF();
}

QRectF TwPreviewView::viewFromPage(const QRectF& page) const {
    return QRectF(viewFromPage(page.topLeft()), page.size() * scale());
}

QScrollArea* TwPreviewView::scrollArea() const {
    QWidget* viewport = parentWidget();
    return viewport ? qobject_cast<QScrollArea*>(viewport->parentWidget()) : nullptr;
}

QRect TwPreviewView::visibleRect() const {
    if (QScrollArea* area = scrollArea())
        return QRect(-pos(), area->viewport()->size()).intersected(rect());
    return rect();
}

void TwPreviewView::resizeToScale() {
    QSizeF size = m_paperSize * scale();
    resize(int(std::ceil(size.width())), int(std::ceil(size.height())));
    m_pageCache = QImage();
    update();
}

void TwPreviewView::scrollToCentre(QPointF pageCentre) {
    if (QScrollArea* area = scrollArea()) {
        QPointF c = viewFromPage(pageCentre);
        QSize visible = area->viewport()->size();
        area->horizontalScrollBar()->setValue(int(std::lround(c.x() - visible.width() / 2.0)));
        area->verticalScrollBar()->setValue(int(std::lround(c.y() - visible.height() / 2.0)));
    }
}

void TwPreviewView::doZoominit(QSizeF page, QSizeF frame) {
    if (page.width() <= 0 || page.height() <= 0)
        return;
    const float rate = fitRate(page, frame);
    if (rate <= 0)
        return; // a frame within the margin: keep the scale it has
    m_paperSize = page;
    m_zoomIndex = 0;
    m_initedRate = rate;
    resizeToScale();
    MakeCursorAreaList();
}

void TwPreviewView::doZoom(int index) {
    if (index < 0 || index > kZoomIndexMax || m_paperSize.isEmpty())
        return;
    const QPointF centre = pageFromView(QRectF(visibleRect()).center());
    m_zoomIndex = index;
    resizeToScale();
    scrollToCentre(centre);
    MakeCursorAreaList();
}

void TwPreviewView::doZoomFit() {
    doZoom(0);
}

// ---- Hit zones and cursors -----------------------------------------------------------------------

void TwPreviewView::MakeCursorAreaList() {
    const double s = scale();
    m_cursorAreaList = ::MakeCursorAreaList(m_areaEdges, s > 0 ? kZoneHalfWidth / s : 0);
}

void TwPreviewView::resetCursorRects() {
    if (m_opMode == kOpSelect)
        MakeCursorAreaList();
    showCursorAt(pageFromView(mapFromGlobal(QCursor::pos())));
}

void TwPreviewView::showCursorAt(QPointF p) {
    int zone = m_opMode == kOpSelect ? cursorZone(m_cursorAreaList, p) : kZoneNone;
    switch (zone) {
    case kZoneInside:
        setCursor(m_cursorResizeMove);
        break;
    case kZoneLeft:
    case kZoneRight:
        setCursor(Qt::SizeHorCursor);
        break;
    case kZoneTop:
    case kZoneBottom:
        setCursor(Qt::SizeVerCursor);
        break;
    case kZoneTopLeft:
    case kZoneBottomRight:
        setCursor(m_cursorResizeRightDown);
        break;
    case kZoneTopRight:
    case kZoneBottomLeft:
        setCursor(m_cursorResizeRightUp);
        break;
    default:
        setCursor(m_cursor);
        break;
    }
}

// ---- Drawing -------------------------------------------------------------------------------------

void TwPreviewView::ensurePageCache(const QRect& needed) {
    if (!m_pageCache.isNull() && m_pageCacheRect.contains(needed))
        return;
    // The visible part and half a screen around it, so that short scrolls need no new picture.
    QRect visible = visibleRect();
    QRect area =
        visible
            .adjusted(-visible.width() / 2, -visible.height() / 2, visible.width() / 2, visible.height() / 2)
            .united(needed)
            .intersected(rect());
    m_pageCacheRect = area;
    m_pageCache = QImage(area.size(), QImage::Format_RGB32);
    m_pageCache.fill(Qt::white);
    const QRectF page(QPointF(0, 0), m_paperSize * scale());
    const QRectF target = QRectF(area).intersected(page);
    if (target.isEmpty() || page.isEmpty())
        return;
    const double sx = m_imageScan.width() / page.width();
    const double sy = m_imageScan.height() / page.height();
    const QRectF source(target.x() * sx, target.y() * sy, target.width() * sx, target.height() * sy);
    QPainter painter(&m_pageCache);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.translate(-area.topLeft());
    painter.drawImage(target, m_imageScan, source);
}

void TwPreviewView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QRect exposed = event->rect();
    if (m_imageScan.isNull() || m_paperSize.isEmpty()) {
        painter.fillRect(exposed, Qt::white);
    } else {
        ensurePageCache(exposed);
        painter.drawImage(exposed.topLeft(), m_pageCache, exposed.translated(-m_pageCacheRect.topLeft()));
    }
    if (!m_dlgParent)
        return;

    QPen pen;
    pen.setWidthF(kOutlineWidth);
    pen.setJoinStyle(Qt::MiterJoin);
    std::vector<TwAreaOverlay> overlays;
    m_dlgParent->GetAreas(overlays);
    for (const TwAreaOverlay& overlay : overlays) {
        pen.setColor(overlay.color);
        painter.setPen(pen);
        painter.drawRect(viewFromPage(overlay.rect));
    }
    if (m_opMode == kOpSelect && m_bDraged && m_subOpMode == kZoneNone) {
        pen.setColor(Qt::black);
        // 2 page units (millimetres) on, 2 off; Qt counts dashes in pen widths, and a square cap
        // would lengthen every dash by a pen width, closing the gaps.
        const double dash = 2.0 * scale() / kOutlineWidth;
        pen.setDashPattern({dash, dash});
        pen.setCapStyle(Qt::FlatCap);
        painter.setPen(pen);
        painter.drawRect(QRectF(viewFromPage(m_ptDown), viewFromPage(m_ptDrag)).normalized());
    }
}

// ---- Mouse ---------------------------------------------------------------------------------------

void TwPreviewView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    m_buttonDown = true;
    m_ptDown = m_ptDrag = pageFromView(event->position());
    m_bDraged = false;
    if (QScrollArea* area = scrollArea())
        m_handLast = area->viewport()->mapFromGlobal(event->globalPosition().toPoint());
    if (m_opMode == kOpSelect) {
        MakeCursorAreaList();
        m_subOpMode = grabbedZone(m_cursorAreaList, m_ptDown);
    }
    if (m_dlgParent)
        m_dlgParent->SetInMouseDrag(false);
}

void TwPreviewView::dragHand(QMouseEvent* event) {
    QScrollArea* area = scrollArea();
    if (!area)
        return;
    // The grabbed point stays under the pointer: the view moves with it as far as it can.
    QPoint now = area->viewport()->mapFromGlobal(event->globalPosition().toPoint());
    QPoint delta = now - m_handLast;
    area->horizontalScrollBar()->setValue(area->horizontalScrollBar()->value() - delta.x());
    area->verticalScrollBar()->setValue(area->verticalScrollBar()->value() - delta.y());
    m_handLast = now;
}

void TwPreviewView::mouseMoveEvent(QMouseEvent* event) {
    const QPointF p = pageFromView(event->position());
    if (!m_buttonDown) {
        showCursorAt(p);
        return;
    }
    m_bDraged = true;
    if (m_opMode == kOpHand) {
        dragHand(event);
        m_ptDrag = p;
        return;
    }
    if (m_opMode != kOpSelect) {
        m_ptDrag = p;
        return;
    }
    if (m_subOpMode != kZoneNone && m_dlgParent) {
        TwDragStep step = dragAreaEdges(m_areaEdges, m_subOpMode, m_ptDrag, p - m_ptDrag, m_paperSize);
        m_subOpMode = step.zone;
        m_dlgParent->SetInMouseDrag(true);
        m_dlgParent->ModifyArea(areaRectForEdges(step.edges));
    }
    m_ptDrag = p;
    update();
}

void TwPreviewView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_buttonDown)
        return;
    m_buttonDown = false;
    const QPointF p = pageFromView(event->position());
    if (m_dlgParent)
        m_dlgParent->SetInMouseDrag(false);
    if (m_opMode == kOpSelect && m_dlgParent) {
        if (m_bDraged && m_subOpMode == kZoneNone) {
            m_dlgParent->ModifyArea(newAreaRect(m_ptDown, p, m_dlgParent->GetCurrentPaperSize()));
        } else {
            m_dlgParent->ValidateAreaRect();
            if (m_dlgParent->selectedArea() == kTwMainAreaId)
                update();
            else
                m_dlgParent->SetRescanFlag(true); // a moved sub-area is prescanned again
        }
    } else if (m_opMode == kOpZoomIn && m_zoomIndex < kZoomIndexMax) {
        doZoom(m_zoomIndex + 1);
    } else if (m_opMode == kOpZoomOut && m_zoomIndex > 0) {
        doZoom(m_zoomIndex - 1);
    }
    m_bDraged = false;
    update();
    resetCursorRects();
}
