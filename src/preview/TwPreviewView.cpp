#include "TwPreviewView.h"

#include "TwDlgPreview.h"
#include "TwPreviewTools.h"

#include <QFontMetricsF>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QWheelEvent>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {
// At most this many page pixels per pixel of the picture made of them are made 32-bit first.
constexpr qint64 kPiecePixels = 4;
// How long a key step's readout stays (ms), and how far from its point a readout shows (pixels).
constexpr int kKeyReadoutTime = 1500;
constexpr QPointF kReadoutOffset(14, 18);
} // namespace

TwPreviewView::TwPreviewView(QWidget* parent) : QWidget(parent) {
    setMouseTracking(true);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setFocusPolicy(Qt::StrongFocus);
    m_readoutExpiry.setSingleShot(true);
    m_readoutExpiry.setInterval(kKeyReadoutTime);
    connect(&m_readoutExpiry, &QTimer::timeout, this, &TwPreviewView::hideReadout);
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

void TwPreviewView::doZoomAt(int index, QPointF viewPoint) {
    if (index < 0 || index > kZoomIndexMax || index == zoomIndex() || m_mapping.page().isEmpty())
        return;
    const QPointF page = m_mapping.pageFromView(viewPoint);
    const QPointF inViewport = viewPoint + QPointF(pos()); // in the scroll area's viewport
    m_mapping.setZoomIndex(index);
    resizeToScale();
    if (QScrollArea* area = scrollArea()) {
        const QPointF origin = m_mapping.viewFromPage(page) - inViewport;
        area->horizontalScrollBar()->setValue(int(std::lround(origin.x())));
        area->verticalScrollBar()->setValue(int(std::lround(origin.y())));
    }
    MakeCursorAreaList();
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

// ---- Handles and the readout ---------------------------------------------------------------------

namespace {
QRectF selectedIn(const std::vector<TwAreaOverlay>& overlays) {
    for (const TwAreaOverlay& overlay : overlays)
        if (overlay.selected)
            return overlay.rect;
    return {};
}
} // namespace

QRectF TwPreviewView::selectedOverlay() const {
    if (!m_dlgParent)
        return {};
    std::vector<TwAreaOverlay> overlays;
    m_dlgParent->GetAreas(overlays);
    return selectedIn(overlays);
}

std::vector<QRectF> TwPreviewView::handleRects() const {
    return handleRectsAround(m_opMode == kOpSelect ? selectedOverlay() : QRectF());
}

std::vector<QRectF> TwPreviewView::handleRectsAround(const QRectF& area) const {
    std::vector<QRectF> handles;
    if (area.isEmpty())
        return handles;
    for (QPointF point : areaHandlePoints(area))
        handles.push_back(MakePointRect(m_mapping.viewFromPage(point), kHandleSize / 2));
    return handles;
}

void TwPreviewView::paintHandles(QPainter& painter, const QRectF& selectedArea) const {
    if (m_opMode != kOpSelect)
        return;
    painter.save();
    painter.setPen(QPen(Qt::black, 1.0));
    painter.setBrush(Qt::white);
    for (const QRectF& handle : handleRectsAround(selectedArea))
        painter.drawRect(handle.adjusted(0.5, 0.5, -0.5, -0.5));
    painter.restore();
}

void TwPreviewView::showReadout(const QRectF& pageArea, QPointF viewPoint) {
    const QRect old = m_readoutRect.toAlignedRect();
    m_readoutText = m_dlgParent && pageArea.isValid() ? m_dlgParent->areaReadout(pageArea) : QString();
    if (m_readoutText.isEmpty()) {
        m_readoutRect = QRectF();
    } else {
        // Beside the point, below and to the right unless that leaves the visible part.
        const QSizeF text = QFontMetricsF(font()).size(Qt::TextSingleLine, m_readoutText);
        const QSizeF size(text.width() + 10, text.height() + 6);
        const QRectF visible(visibleRect());
        QPointF at = viewPoint + kReadoutOffset;
        if (at.x() + size.width() > visible.right())
            at.setX(viewPoint.x() - kReadoutOffset.x() - size.width());
        if (at.y() + size.height() > visible.bottom())
            at.setY(viewPoint.y() - kReadoutOffset.y() - size.height());
        at.setX(std::max(at.x(), visible.left()));
        at.setY(std::max(at.y(), visible.top()));
        m_readoutRect = QRectF(at, size);
    }
    update(old.united(m_readoutRect.toAlignedRect()).adjusted(-1, -1, 1, 1));
}

void TwPreviewView::hideReadout() {
    m_readoutExpiry.stop();
    showReadout(QRectF(), QPointF());
}

void TwPreviewView::paintReadout(QPainter& painter) const {
    if (m_readoutText.isEmpty())
        return;
    painter.save();
    QColor base = palette().color(QPalette::ToolTipBase);
    base.setAlpha(235);
    painter.setPen(QPen(palette().color(QPalette::ToolTipText), 1.0));
    painter.setBrush(base);
    painter.drawRoundedRect(m_readoutRect.adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);
    painter.drawText(m_readoutRect, Qt::AlignCenter, m_readoutText);
    painter.restore();
}

void TwPreviewView::finishAreaEdit() {
    if (!m_dlgParent)
        return;
    m_dlgParent->ValidateAreaRect();
    if (m_dlgParent->selectedArea() == kTwMainAreaId)
        update();
    else
        m_dlgParent->SetRescanFlag(true); // a moved sub-area is prescanned again
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
    paintHandles(painter, selectedIn(overlays)); // the overlays read once per paint
    tool().paint(painter);
    paintReadout(painter);
    if (hasFocus()) {
        // Where the keys go: a frame just inside the visible part.
        painter.setPen(QPen(palette().color(QPalette::Highlight), 2.0));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(QRectF(visibleRect()).adjusted(1, 1, -1, -1));
    }
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

// ---- Keys, wheel and focus -----------------------------------------------------------------------

void TwPreviewView::keyPressEvent(QKeyEvent* event) {
    const Qt::KeyboardModifiers modifiers = event->modifiers() & ~Qt::KeypadModifier;
    const bool edgeOnly = modifiers & Qt::AltModifier;
    const double step = modifiers & Qt::ShiftModifier ? kKeyStepLarge : kKeyStep;
    const bool plain = (modifiers & ~(Qt::AltModifier | Qt::ShiftModifier)) == 0;
    const QRectF area = selectedOverlay();
    const auto edges = plain && !area.isEmpty()
                           ? keyStepEdges(m_areaEdges, event->key(), edgeOnly, step, m_mapping.page())
                           : std::nullopt;
    if (!edges) {
        QWidget::keyPressEvent(event);
        return;
    }
    event->accept();
    if (*edges != m_areaEdges) {
        // As one step of a drag, ended as a drag ends.
        m_dlgParent->SetInMouseDrag(true);
        m_dlgParent->ModifyArea(areaRectForEdges(*edges));
        m_dlgParent->SetInMouseDrag(false);
        finishAreaEdit();
    }
    const QRectF now = selectedOverlay();
    showReadout(now, m_mapping.viewFromPage(now.bottomRight()));
    m_readoutExpiry.start();
}

void TwPreviewView::wheelEvent(QWheelEvent* event) {
    if (!(event->modifiers() & Qt::ControlModifier)) {
        event->ignore(); // the scroll area scrolls
        return;
    }
    event->accept();
    // One zoom step per notch; a fine wheel's small turns add up to one.
    m_wheelTurn += event->angleDelta().y();
    const int notches = m_wheelTurn / QWheelEvent::DefaultDeltasPerStep;
    if (notches == 0)
        return;
    m_wheelTurn -= notches * QWheelEvent::DefaultDeltasPerStep;
    doZoomAt(std::clamp(zoomIndex() + (notches > 0 ? 1 : -1), 0, kZoomIndexMax), event->position());
    resetCursorRects();
}

void TwPreviewView::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
}

void TwPreviewView::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}
