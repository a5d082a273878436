// What the preview coordinator hands a preview window before showing it: the pages, the ratios the
// data source measured, the page size from the bitmap, and the window's modes.
#pragma once

#include "ImageShared.h"
#include "TwPanel.h"

#include <QSizeF>

#include <functional>
#include <utility>

class TwPreviewPanel : public TwPanel {
public:
    using TwPanel::TwPanel;

    // The bitmaps of the two sides as the data source handed them over, owned from now on; none
    // leaves that side's page as it was.
    virtual void setPrescanImage(TwOwnedDIB front, TwOwnedDIB back) = 0;
    // Shows the window with the front page fitted, its tools and, unless display-only, its areas.
    virtual void showWindow() = 0;
    // What the window calls when a change of the setting needs a new prescan.
    void setRescanHandler(std::function<void()> handler) { m_rescanHandler = std::move(handler); }
    void requestRescan() {
        if (m_rescanHandler)
            m_rescanHandler();
    }

    // Ratios in percent, measured by the data source; the white ratios are kept, not shown.
    void setColorRatioFront(double v) { m_colorRatioFront = v; }
    void setBlackRatioFront(double v) { m_blackRatioFront = v; }
    void setWhiteRatioFront(double v) { m_whiteRatioFront = v; }
    void setColorRatioBack(double v) { m_colorRatioBack = v; }
    void setBlackRatioBack(double v) { m_blackRatioBack = v; }
    void setWhiteRatioBack(double v) { m_whiteRatioBack = v; }
    double colorRatioFront() const { return m_colorRatioFront; }
    double blackRatioFront() const { return m_blackRatioFront; }
    double whiteRatioFront() const { return m_whiteRatioFront; }
    double colorRatioBack() const { return m_colorRatioBack; }
    double blackRatioBack() const { return m_blackRatioBack; }
    double whiteRatioBack() const { return m_whiteRatioBack; }

    // The page size in millimetres from the prescan bitmap; the page shown while the area is off
    // or the window is display-only.
    void setSizeFromScanImage(QSizeF size) { m_sizeFromScanImage = size; }
    QSizeF sizeFromScanImage() const { return m_sizeFromScanImage; }
    // The window belongs to a prescan of a modal dialog; it ends that session when it closes.
    void setIsModal(bool modal) { m_isModal = modal; }
    bool isModal() const { return m_isModal; }
    // Pages only: no areas, no back side, no rescans.
    void setDisplayOnly(bool displayOnly) { m_displayOnly = displayOnly; }
    bool displayOnly() const { return m_displayOnly; }

private:
    std::function<void()> m_rescanHandler;
    double m_colorRatioFront = 0;
    double m_blackRatioFront = 0;
    double m_whiteRatioFront = 0;
    double m_colorRatioBack = 0;
    double m_blackRatioBack = 0;
    double m_whiteRatioBack = 0;
    QSizeF m_sizeFromScanImage;
    bool m_isModal = false;
    bool m_displayOnly = false;
};
