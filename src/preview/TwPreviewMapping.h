// The one place where the preview's coordinates meet. Three spaces:
//
//   setting     the model's working copies, in the user's unit (inches or millimetres), measured
//               on the page as it is fed;
//   page        millimetres on the page as its picture shows it: a mirrored page is turned left
//               and right, the back of duplex type 1 half round;
//   view        pixels of the page view: page millimetres times the scale of the zoom step.
//
// The view owns the mapping and keeps its zoom (fit rate and step); the window tells it how the
// page lies (size, side, mirror, duplex type, unit) whenever one of those changes. Every
// conversion of the window, the view and its tools goes through it.
#pragma once

#include "TwPreviewGeometry.h"

#include <QPointF>
#include <QRectF>
#include <QSizeF>

// How the page lies, as the window reads it from the model.
struct TwPagePlacement {
    QSizeF page;             // millimetres: the current paper in its orientation, or the scanned page
    bool unitIsInch = false; // the working copies are in inches ("Data.Area.Unit" 0)
    bool front = true;       // the front side is shown
    bool mirror = false;     // "Data.Image.Mirror"
    int duplexType = 0;      // "Data.Layout.DuplexType"
    bool operator==(const TwPagePlacement&) const = default;
};

class TwPreviewMapping {
public:
    TwPreviewMapping() = default;
    explicit TwPreviewMapping(const TwPagePlacement& placement) : m_placement(placement) {}

    const TwPagePlacement& placement() const { return m_placement; }
    void setPlacement(const TwPagePlacement& placement) { m_placement = placement; }
    QSizeF page() const { return m_placement.page; }
    void setPage(QSizeF page) { m_placement.page = page; }

    // ---- Zoom ----

    // View pixels per page millimetre at step 0 (fitRate of the page and the visible frame).
    float fitRate() const { return m_fitRate; }
    void setFitRate(float rate) { m_fitRate = rate; }
    // The step of ZoomRates, 0 ... kZoomIndexMax; others are ignored.
    int zoomIndex() const { return m_zoomIndex; }
    void setZoomIndex(int index);
    // View pixels per page millimetre at the current step.
    double scale() const { return double(m_fitRate) * double(ZoomRates[std::size_t(m_zoomIndex)]); }

    // ---- The setting's unit and millimetres ----

    double millimetres(double settingValue) const;
    double settingValue(double millimetres) const;

    // ---- The page as the setting measures it and as its picture shows it ----

    // Maps a point either way (the function is its own inverse). A mirrored page turns left and
    // right; the back of duplex type 1 is turned half round; a mirrored back of duplex type 1 has
    // both, so only its y is flipped.
    QPointF Data2ScreenPoint(QPointF point) const;
    // Maps both corners and makes the size positive again; its own inverse too.
    QRectF Data2ScreenRect(const QRectF& rect) const;
    QRectF Screen2DataRect(const QRectF& rect) const { return Data2ScreenRect(rect); }

    // ---- Both steps ----

    // A rectangle of the setting (x, y, width, length in the user's unit) on the page as shown.
    QRectF pageFromSetting(const QRectF& setting) const;
    // A rectangle on the page as shown, in the setting's unit.
    QRectF settingFromPage(const QRectF& page) const;

    // ---- Page millimetres and view pixels ----

    QPointF viewFromPage(QPointF page) const { return page * scale(); }
    QRectF viewFromPage(const QRectF& page) const;
    // The origin for a mapping without a scale.
    QPointF pageFromView(QPointF view) const;
    // A length of view pixels in page millimetres; 0 without a scale.
    double pageLength(double viewPixels) const;

private:
    TwPagePlacement m_placement;
    float m_fitRate = 1.0f;
    int m_zoomIndex = 0;
};
