// The page view of the preview window: the prescanned page, the outlines of the areas on it and a
// dashed band while a new area is drawn, with four mouse tools (select and resize an area, scroll
// by hand, zoom in, zoom out).
//
// The view sits in a QScrollArea and owns the zoom: its size is the page times the current scale.
// It keeps no area of its own. The overlays and the selected area's edges come from the dialog,
// which reads them from the settings model; a drag hands the dialog a rectangle, the dialog writes
// it to the model, and the model's answer comes back as new edges and a repaint.
//
// Page millimetres and view pixels meet in one pair of functions, viewFromPage / pageFromView.
#pragma once

#include "TwPreviewGeometry.h"

#include <QCursor>
#include <QImage>
#include <QPointer>
#include <QWidget>

class QScrollArea;
class TwDlgPreview;

class TwPreviewView : public QWidget {
    Q_OBJECT
public:
    enum OpMode { kOpSelect = 0, kOpHand = 1, kOpZoomIn = 2, kOpZoomOut = 3 };

    explicit TwPreviewView(QWidget* parent = nullptr);

    void setDlgParent(TwDlgPreview* dialog) { m_dlgParent = dialog; }
    // The page shown; a null image leaves the page white. The image is shared, not copied.
    void setScanImage(const QImage& image);
    const QImage& scanImage() const { return m_imageScan; }

    // Edges of the selected area, in page millimetres as shown; set by the dialog from the model.
    void setAreaEdges(const TwAreaEdges& edges);
    const TwAreaEdges& areaEdges() const { return m_areaEdges; }

    void setOpMode(int mode);
    int opMode() const { return m_opMode; }
    // The zone grabbed at the last mouse-down in the select tool (TwAreaZone).
    int subOpMode() const { return m_subOpMode; }
    // The cursor of the current tool, and the three cursors of the area's hit zones.
    void setToolCursor(const QCursor& cursor);
    void setCursorResizeMove(const QCursor& cursor) { m_cursorResizeMove = cursor; }
    void setCursorResizeRightDown(const QCursor& cursor) { m_cursorResizeRightDown = cursor; }
    void setCursorResizeRightUp(const QCursor& cursor) { m_cursorResizeRightUp = cursor; }

    // ---- Zoom ----

    // Fits the page into the visible frame (30 points of margin) and makes that zoom step 0.
    // Nothing for a page without size.
    void doZoominit(QSizeF page, QSizeF frame);
    // Zoom step n of ZoomRates; the point in the middle of the visible part stays there.
    void doZoom(int index);
    void doZoomFit();
    int zoomIndex() const { return m_zoomIndex; }
    float initedRate() const { return m_initedRate; }
    QSizeF paperSize() const { return m_paperSize; }
    // View pixels per page millimetre at the current step.
    double scale() const { return double(m_initedRate) * double(ZoomRates[std::size_t(m_zoomIndex)]); }

    QPointF viewFromPage(QPointF page) const;
    QPointF pageFromView(QPointF view) const;
    QRectF viewFromPage(const QRectF& page) const;

    // ---- Hit zones and cursors ----

    // The zones around the selected area's edges, four view pixels to each side.
    void MakeCursorAreaList();
    const TwCursorAreaList& cursorAreaList() const { return m_cursorAreaList; }
    // Rebuilds the zones (select tool) and shows the cursor for where the pointer is.
    void resetCursorRects();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    QScrollArea* scrollArea() const;
    // The part of the view the scroll area shows, in view pixels.
    QRect visibleRect() const;
    void resizeToScale();
    void scrollToCentre(QPointF pageCentre);
    // The page picture at the current scale, for at least the given part of the view.
    void ensurePageCache(const QRect& needed);
    void showCursorAt(QPointF pagePoint);
    void dragHand(QMouseEvent* event);

    QPointer<TwDlgPreview> m_dlgParent;
    QImage m_imageScan;
    QImage m_pageCache; // the page at the current scale over m_pageCacheRect
    QRect m_pageCacheRect;
    TwAreaEdges m_areaEdges;
    TwCursorAreaList m_cursorAreaList{};
    QCursor m_cursor;
    QCursor m_cursorResizeMove;
    QCursor m_cursorResizeRightDown;
    QCursor m_cursorResizeRightUp;
    QPointF m_ptDown;
    QPointF m_ptDrag;
    QPoint m_handLast; // the pointer in the scroll area's viewport, for the hand tool
    int m_opMode = kOpSelect;
    int m_subOpMode = kZoneNone;
    int m_zoomIndex = 0;
    bool m_bDraged = false;
    bool m_buttonDown = false;
    float m_initedRate = 1.0f;
    QSizeF m_paperSize;
};
