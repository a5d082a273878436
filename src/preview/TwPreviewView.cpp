#include "TwPreviewView.h"

#include "TwDlgPreview.h"
#include "TwPreviewTools.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>

#include <cmath>
#include <utility>

namespace {
// At most this many page pixels per pixel of the picture made of them are made 32-bit first.
constexpr qint64 kPiecePixels = 4;
} // namespace

TwPreviewView::TwPreviewView(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    auto select = std::make_unique<TwSelectTool>(*this);
    m_select = select.get();
    m_tools[kOpSelect] = std::move(select);
    m_tools[kOpHand] = std::make_unique<TwHandTool>(*this);
    m_tools[kOpZoomIn] = std::make_unique<TwZoomTool>(*this, +1);
    m_tools[kOpZoomOut] = std::make_unique<TwZoomTool>(*this, -1);
}

TwPreviewView::~TwPreviewView() = default;

// ---- Page and areas ------------------------------------------------------------------------------

void TwPreviewView::setScanImage(const QImage& image) {
    m_imageScan = image;
    m_pageCache = QImage();
    update();
    emit scanImageChanged();
}

void TwPreviewView::setPlacement(const TwPagePlacement& placement) {
    if (placement == m_mapping.placement())
        return;
    const bool newPage = placement.page != m_mapping.page();
    m_mapping.setPlacement(placement);
    if (newPage && !placement.page.isEmpty())
        resizeToScale();
    update();
}

void TwPreviewView::setAreaEdges(const TwAreaEdges& edges) {
    if (edges == m_areaEdges)
        return;
    m_areaEdges = edges;
    update();
    emit areaEdgesChanged();
}

// ---- Tools and cursors ---------------------------------------------------------------------------

void TwPreviewView::setOpMode(int mode) {
    if (mode < kOpSelect || mode > kOpZoomOut)
        return;
    m_opMode = mode;
}

int TwPreviewView::subOpMode() const {
    return m_select->zone();
}

void TwPreviewView::setToolCursor(const QCursor& cursor) {
    m_cursor = cursor;
    setCursor(cursor);
}

QScrollArea* TwPreviewView::scrollArea() const {
    QWidget* viewport = parentWidget();
    return viewport ? qobject_cast<QScrollArea*>(viewport->parentWidget()) : nullptr;
}

// ---- Zoom ----------------------------------------------------------------------------------------

QRect TwPreviewView::visibleRect() const {
    if (QScrollArea* area = scrollArea())
        return QRect(-pos(), area->viewport()->size()).intersected(rect());
    return rect();
}

void TwPreviewView::resizeToScale() {
    QSizeF size = m_mapping.page() * m_mapping.scale();
    resize(int(std::ceil(size.width())), int(std::ceil(size.height())));
    m_pageCache = QImage();
    update();
}

void TwPreviewView::scrollToCentre(QPointF pageCentre) {
    if (QScrollArea* area = scrollArea()) {
        QPointF c = m_mapping.viewFromPage(pageCentre);
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
    m_mapping.setPage(page);
    m_mapping.setZoomIndex(0);
    m_mapping.setFitRate(rate);
    resizeToScale();
    MakeCursorAreaList();
}

void TwPreviewView::doZoom(int index) {
    if (index < 0 || index > kZoomIndexMax || m_mapping.page().isEmpty())
        return;
    const QPointF centre = m_mapping.pageFromView(QRectF(visibleRect()).center());
    m_mapping.setZoomIndex(index);
    resizeToScale();
    scrollToCentre(centre);
    MakeCursorAreaList();
}

void TwPreviewView::doZoomFit() {
    doZoom(0);
}

// ---- Hit zones and cursors -----------------------------------------------------------------------

void TwPreviewView::MakeCursorAreaList() {
    m_select->makeZones();
}

const TwCursorAreaList& TwPreviewView::cursorAreaList() const {
    return m_select->zones();
}

void TwPreviewView::resetCursorRects() {
    if (m_opMode == kOpSelect)
        MakeCursorAreaList();
    showCursorAt(m_mapping.pageFromView(mapFromGlobal(QCursor::pos())));
}

void TwPreviewView::showCursorAt(QPointF p) {
    setCursor(tool().cursorAt(p));
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
    // The old picture goes before the new one is made: never two at once.
    m_pageCache = QImage();
    m_pageCache = QImage(area.size(), QImage::Format_RGB32);
    m_pageCache.fill(Qt::white);
    const QRectF page(QPointF(0, 0), m_mapping.page() * m_mapping.scale());
    const QRectF target = QRectF(area).intersected(page);
    if (target.isEmpty() || page.isEmpty())
        return;
    const double sx = m_imageScan.width() / page.width();
    const double sy = m_imageScan.height() / page.height();
    const QRectF source(target.x() * sx, target.y() * sy, target.width() * sx, target.height() * sy);
    QPainter painter(&m_pageCache);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.translate(-area.topLeft());
    // Qt scales 32-bit pictures fastest, and a page taken as the bitmap's rows is 8 or 24 bits.
    // Where the part of the page drawn has at most kPiecePixels times the pixels of the picture
    // made of it (the page enlarged, or reduced by no more than half), that part is made 32-bit
    // first: a passing picture of a few screens at most. A page reduced further, as it is fitted
    // into the window, is drawn from its own rows.
    const QRect part = source.toAlignedRect().intersected(m_imageScan.rect());
    const bool fast = m_imageScan.format() == QImage::Format_RGB32 ||
                      m_imageScan.format() == QImage::Format_ARGB32_Premultiplied;
    if (!fast && !part.isEmpty() &&
        qint64(part.width()) * part.height() <= kPiecePixels * qint64(area.width()) * area.height()) {
        QImage piece(part.size(), QImage::Format_RGB32);
        QPainter(&piece).drawImage(QPoint(0, 0), m_imageScan, part);
        painter.drawImage(target, piece, source.translated(-part.topLeft()));
        return;
    }
    painter.drawImage(target, m_imageScan, source);
}

void TwPreviewView::paintEvent(QPaintEvent* event) {
    QPainter painter(this);
    const QRect exposed = event->rect();
    if (m_imageScan.isNull() || m_mapping.page().isEmpty()) {
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
        painter.drawRect(m_mapping.viewFromPage(overlay.rect));
    }
    tool().paint(painter);
}

// ---- Mouse ---------------------------------------------------------------------------------------

void TwPreviewView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return;
    // The tool that takes the press has the drag and the release, whatever is chosen meanwhile.
    m_grabbed = &tool();
    m_grabbed->press(m_mapping.pageFromView(event->position()), *event);
    if (m_dlgParent)
        m_dlgParent->SetInMouseDrag(false);
}

void TwPreviewView::mouseMoveEvent(QMouseEvent* event) {
    const QPointF p = m_mapping.pageFromView(event->position());
    if (m_grabbed)
        m_grabbed->drag(p, *event);
    else
        showCursorAt(p);
}

void TwPreviewView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !m_grabbed)
        return;
    TwPreviewTool* grabbed = std::exchange(m_grabbed, nullptr);
    if (m_dlgParent)
        m_dlgParent->SetInMouseDrag(false);
    grabbed->release(m_mapping.pageFromView(event->position()), *event);
    update();
    resetCursorRects();
}
