// The page view of the preview window: the prescanned page, the outlines of the areas on it and
// what the current mouse tool shows (the dashed band of a new area), with four tools (select and
// resize an area, scroll by hand, zoom in, zoom out; TwPreviewTools.h) that take its mouse events.
//
// The view sits in a QScrollArea and owns the zoom: its size is the page times the current scale.
// It keeps no area of its own. The overlays and the selected area's edges come from the dialog,
// which reads them from the settings model; a drag step hands the dialog one rectangle, the dialog
// writes it to the model, and the model's answer comes back as new edges and a repaint.
//
// The view owns the one mapping between the setting, the page and its pixels (TwPreviewMapping):
// the window tells it how the page lies, the zoom sets its scale.
#pragma once

#include "TwPreviewGeometry.h"
#include "TwPreviewMapping.h"

#include <QCursor>
#include <QImage>
#include <QPointer>
#include <QTimer>
#include <QWidget>

#include <array>
#include <memory>
#include <vector>

class QScrollArea;
class TwDlgPreview;
class TwPreviewTool;
class TwSelectTool;

class TwPreviewView : public QWidget {
    Q_OBJECT
public:
    enum OpMode { kOpSelect = 0, kOpHand = 1, kOpZoomIn = 2, kOpZoomOut = 3 };
    // Outlines and the band are this wide (view pixels) at every zoom.
    static constexpr double kOutlineWidth = 3.0;
    // The selected area's handles are squares this wide (view pixels) at every zoom.
    static constexpr double kHandleSize = 7.0;
    // An arrow key moves the area this far (millimetres), with Shift ten times as far.
    static constexpr double kKeyStep = 1.0;
    static constexpr double kKeyStepLarge = 10.0;

    explicit TwPreviewView(QWidget* parent = nullptr);
    ~TwPreviewView() override;

    void setDlgParent(TwDlgPreview* dialog) { m_dlgParent = dialog; }
    TwDlgPreview* dlgParent() const { return m_dlgParent; }
    // The page shown; a null image leaves the page white. The image is shared, not copied.
    void setScanImage(const QImage& image);
    const QImage& scanImage() const { return m_imageScan; }

    // ---- Coordinates ----

    const TwPreviewMapping& mapping() const { return m_mapping; }
    // How the page lies. A new page size keeps the zoom step and lays the view out again.
    void setPlacement(const TwPagePlacement& placement);

    // Edges of the selected area, in page millimetres as shown; set by the dialog from the model.
    void setAreaEdges(const TwAreaEdges& edges);
    const TwAreaEdges& areaEdges() const { return m_areaEdges; }

    // ---- Tools and cursors ----

    // The tool that takes the mouse (OpMode).
    void setOpMode(int mode);
    int opMode() const { return m_opMode; }
    // The zone grabbed at the last press of the select tool (TwAreaZone).
    int subOpMode() const;
    // The cursor of the current tool, and the three cursors of the area's hit zones.
    void setToolCursor(const QCursor& cursor);
    const QCursor& toolCursor() const { return m_cursor; }
    void setCursorResizeMove(const QCursor& cursor) { m_cursorResizeMove = cursor; }
    void setCursorResizeRightDown(const QCursor& cursor) { m_cursorResizeRightDown = cursor; }
    void setCursorResizeRightUp(const QCursor& cursor) { m_cursorResizeRightUp = cursor; }
    const QCursor& cursorResizeMove() const { return m_cursorResizeMove; }
    const QCursor& cursorResizeRightDown() const { return m_cursorResizeRightDown; }
    const QCursor& cursorResizeRightUp() const { return m_cursorResizeRightUp; }
    // The scroll area the view sits in; null outside one.
    QScrollArea* scrollArea() const;

    // ---- Zoom ----

    // Fits the page into the visible frame (30 points of margin) and makes that zoom step 0.
    // Nothing for a page without size.
    void doZoominit(QSizeF page, QSizeF frame);
    // Zoom step n of ZoomRates; the point in the middle of the visible part stays there.
    void doZoom(int index);
    void doZoomFit();
    // Zoom step n with the page point under viewPoint (view pixels) kept under it: the wheel's
    // zoom around the pointer.
    void doZoomAt(int index, QPointF viewPoint);
    int zoomIndex() const { return m_mapping.zoomIndex(); }
    float initedRate() const { return m_mapping.fitRate(); }

    // ---- Hit zones and cursors ----

    // The select tool's zones around the selected area's edges, four view pixels to each side.
    void MakeCursorAreaList();
    const TwCursorAreaList& cursorAreaList() const;
    // Rebuilds the zones (select tool) and shows the cursor for where the pointer is.
    void resetCursorRects();

    // ---- Handles and the readout ----

    // The handles of the selected area in view pixels, as painted; none while the select tool is
    // not chosen or no area is selected on the page.
    std::vector<QRectF> handleRects() const;
    // The position and size readout shown while an area is drawn, moved or resized (empty when
    // none shows), and where it shows (view pixels).
    QString readoutText() const { return m_readoutText; }
    QRectF readoutRect() const { return m_readoutRect; }
    // Shows the readout for the area (page millimetres) beside the view point; an empty rectangle
    // hides it. The tools call it on each step, the keyboard once per key (for a while).
    void showReadout(const QRectF& pageArea, QPointF viewPoint);
    void hideReadout();
    // Ends an edit of the selected area as a drag ends: the model validates the areas, and a
    // moved sub-area asks for a rescan.
    void finishAreaEdit();

signals:
    // A page was handed to the view (setScanImage), a null one included.
    void scanImageChanged();
    // The selected area's edges are new.
    void areaEdgesChanged();

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    // Arrows move the selected area (Shift: farther); with Alt they move its right or bottom edge.
    void keyPressEvent(QKeyEvent* event) override;
    // Ctrl with the wheel zooms around the pointer; the plain wheel scrolls.
    void wheelEvent(QWheelEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    // The part of the view the scroll area shows, in view pixels.
    QRect visibleRect() const;
    void resizeToScale();
    void scrollToCentre(QPointF pageCentre);
    // The page picture at the current scale, for at least the given part of the view.
    void ensurePageCache(const QRect& needed);
    void showCursorAt(QPointF pagePoint);
    TwPreviewTool& tool() const { return *m_tools[std::size_t(m_opMode)]; }
    // The selected area as painted (page millimetres); empty when none is.
    QRectF selectedOverlay() const;
    std::vector<QRectF> handleRectsAround(const QRectF& selectedArea) const;
    void paintHandles(QPainter& painter, const QRectF& selectedArea) const;
    void paintReadout(QPainter& painter) const;

    QPointer<TwDlgPreview> m_dlgParent;
    TwPreviewMapping m_mapping;
    std::array<std::unique_ptr<TwPreviewTool>, 4> m_tools; // by OpMode
    TwSelectTool* m_select = nullptr;                      // m_tools[kOpSelect]
    QImage m_imageScan;
    QImage m_pageCache; // the page at the current scale over m_pageCacheRect
    QRect m_pageCacheRect;
    TwAreaEdges m_areaEdges;
    QCursor m_cursor;
    QCursor m_cursorResizeMove;
    QCursor m_cursorResizeRightDown;
    QCursor m_cursorResizeRightUp;
    TwPreviewTool* m_grabbed = nullptr; // the tool that took the press, while the button is held
    QString m_readoutText;
    QRectF m_readoutRect;   // where the readout shows, view pixels
    QTimer m_readoutExpiry; // a key step's readout goes after a while
    int m_wheelTurn = 0;    // the wheel's turn not yet made into a zoom step (eighths of a degree)
    int m_opMode = kOpSelect;
};
