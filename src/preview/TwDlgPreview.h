// The prescan preview window: the page of the front or the back side with the scan areas of that
// side, an area list to pick the area the mouse edits, the mouse tools, zoom to fit, and the
// colour and blank-page ratios of the side shown.
//
// Areas live in the settings model only (their keys: the area table, Comb_AreaInfo). The window
// reads every area through the model's working copies ("temp.Area.*", in the user's unit) and
// writes each drag step back with myChangeValue, X, Y, width and length; the model validates each
// write, and the window follows from its observations, once per step. It keeps the view's mapping
// (TwPreviewMapping) told how the page lies: its size, the side shown, mirror, duplex type and
// unit. Changes of image settings ask for a new prescan (one for every burst: a 100 ms timer
// looks at the request flag); changes that make the page itself wrong (paper, resolution,
// profile, ...) close the window.
#pragma once

#include "TwAreaTable.h"
#include "TwPreviewMapping.h"
#include "TwPreviewPanel.h"
#include "TwValue.h"

#include <QColor>
#include <QCursor>
#include <QIcon>
#include <QImage>
#include <QMap>
#include <QTimer>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class QComboBox;
class QLabel;
class QPushButton;
class QScrollArea;
class TwPreviewView;
class TwSegmentedControl;
class TwainNumberFormatter;
class TwainDialogData;
namespace Ui {
class TwDlgPreview;
}

// An outline to draw: the area in page millimetres as shown, its colour and, for a sub-area, the
// value of its brightness key.
struct TwAreaOverlay {
    QRectF rect;
    QColor color;
    TwValue brightness;
    bool selected = false; // the area the area list has chosen
};

// An entry of the area list of the side shown.
struct TwAreaListItem {
    std::int16_t value;
    QString display;
    bool side;
};

class TwDlgPreview : public TwPreviewPanel {
    Q_OBJECT
public:
    explicit TwDlgPreview(QWidget* parent = nullptr);
    ~TwDlgPreview() override;

    // ---- From the coordinator ----

    void setPrescanImage(TwOwnedDIB front, TwOwnedDIB back) override;
    void showWindow() override;
    void bindControlAll() override;
    void windowWillClose() override;
    // Asks for a new prescan at the next look of the status timer.
    void SetRescanFlag(bool flag) { m_NeedRescan = flag; }

    // ---- For the view ----

    // The outlines of the side shown, main area first; none while display-only.
    bool GetAreas(std::vector<TwAreaOverlay>& areas);
    // A rectangle in page millimetres as shown, written to the selected area.
    void ModifyArea(const QRectF& rect);
    // An area's position and size (page millimetres as shown) in the user's unit, as the Area tab
    // shows them: "X 1.00  Y 2.00  W 8.50  L 11.00 in".
    QString areaReadout(const QRectF& pageArea);
    void SetInMouseDrag(bool dragging);
    bool GetInMouseDrag();
    void ValidateAreaRect();
    // The page in millimetres: the current paper in its orientation, or the scanned page while the
    // area is off or the window is display-only.
    QSizeF GetCurrentPaperSize();
    bool IsEnableArea();
    std::int16_t selectedArea() const { return m_selectedArea; }
    std::uint16_t selectedSide() const { return m_selectedSide; }
    QPointF Data2ScreenPoint(QPointF point);
    QRectF Data2ScreenRect(const QRectF& rect);
    QRectF Screen2DataRect(const QRectF& rect);

    // ---- Area list and sides ----

    // Selects an area (the area list's choice) and shows its edges in the view.
    void setSelectedArea(std::int16_t area);
    // Shows the selected area's edges in the view, read from the model.
    void setSelectedArea();
    void setSelectedSide(std::uint16_t side);
    void ResetAreaContent();
    void setCmbArea();
    void setEnableSide();
    void ChangeSide();
    void SetSideBottomLable(int side);
    const std::vector<TwAreaListItem>& areaList() const { return m_areaList; }

    // ---- Actions ----

    void onSide();
    void onAreaChange();
    void onControl();
    void onZoomFit();
    // Sets the main area of the side shown to the document found on its prescan, through the model
    // (validated as any edit); a selected sub-area stays as it is. False, saying so beside the
    // button, when the page shows no document.
    bool onFindPage();

    void observeValueForKeyPath(const std::string& keyPath, TwObservable* object,
                                const TwKeyValueChange& change, void* context) override;

    // ---- Outlets and state ----

    TwSegmentedControl* segSide() const;
    QComboBox* cmbArea() const;
    TwSegmentedControl* segControl() const;
    QPushButton* btnZoomFit() const;
    QPushButton* btnFindPage() const;
    QLabel* labValue1() const;
    QLabel* labValue2() const;
    TwPreviewView* viewPreview() const;
    QScrollArea* sclPreview() const;
    const QImage& imageFront() const { return m_imageFront; }
    // The back page, read from its bitmap file when it is first wanted: the front shows first, and
    // a back page nobody looks at is never decoded.
    const QImage& imageBack();
    bool needRescan() const { return m_NeedRescan; }
    bool isStatusTimerRunning() const { return m_rescanTimer.isActive(); }
    // The colour swatch of an area in the area list.
    QIcon areaImage(bool front, std::int16_t id) const;

    // The key paths whose change closes the window, and those whose change asks for a rescan.
    static const std::vector<std::string>& dataNeedCloseWindow();
    static const std::vector<std::string>& dataRescan();

protected:
    // A page shown to fit goes on fitting the window as it is resized.
    void resizeEvent(QResizeEvent* event) override;

private:
    const TwAreaInfo* selectedRecord() const;
    // The view's mapping, and telling it how the page lies now (page, side, mirror, duplex
    // type, unit).
    const TwPreviewMapping& mapping() const;
    void updateMapping();
    // An area's working copies (x, y, width, length in the user's unit), single precision.
    QRectF settingRect(const TwAreaInfo& row) const;
    // Hands the view a page unless it shows that page already.
    void showPage(const QImage& page);
    void createAreaImageIcon();
    void makeCursors();
    // The keys of the tools, the zoom, Fit and Find Page, also named in their tool tips.
    void makeShortcuts();
    // Writes a rectangle (page millimetres as shown) to an area's working copies.
    void writeArea(const TwAreaInfo& row, const QRectF& rect);
    void setTool(int segment);
    // The status timer: looks at the rescan flag every 100 ms while the window is up.
    void createThread();
    void stopThread();
    void refreshStatus();
    bool hasBackPage() const { return !m_imageBack.isNull() || bool(m_backPage); }
    void dropPages();

    std::unique_ptr<Ui::TwDlgPreview> ui;
    std::int16_t m_selectedArea = kTwMainAreaId;
    std::uint16_t m_selectedSide = 0;
    QImage m_imageFront;
    QImage m_imageBack;
    TwOwnedDIB m_backPage; // the back page's bitmap until the page is read
    QCursor cursorMove;
    QCursor cursorSelect;
    QCursor cursorZoomIn;
    QCursor cursorZoomOut;
    QCursor cursorResizeMove;
    QCursor cursorResizeRightDown;
    QCursor cursorResizeRightUp;
    bool m_cursorsMade = false;
    std::vector<TwAreaListItem> m_areaList;
    bool m_bFront = true;
    QMap<QString, QIcon> m_areaImages;
    QTimer m_rescanTimer;
    bool m_NeedRescan = false;
    bool m_writingArea = false;                               // ModifyArea is writing a drag step's rectangle
    std::unique_ptr<TwainNumberFormatter> m_readoutFormatter; // as the Area tab's, for m_readoutUnit
    int m_readoutUnit = -1;
};
