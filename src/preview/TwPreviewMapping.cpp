#include "TwPreviewMapping.h"

#include "TwainDialogData.h"

void TwPreviewMapping::setZoomIndex(int index) {
    if (index >= 0 && index <= kZoomIndexMax)
        m_zoomIndex = index;
}

double TwPreviewMapping::millimetres(double value) const {
    return m_placement.unitIsInch ? value * kTwMillimetresPerInch : value;
}

double TwPreviewMapping::settingValue(double mm) const {
    return m_placement.unitIsInch ? mm / kTwMillimetresPerInch : mm;
}

QPointF TwPreviewMapping::Data2ScreenPoint(QPointF p) const {
    const QSizeF& page = m_placement.page;
    const bool duplexBack = m_placement.duplexType == 1 && !m_placement.front;
    if (!m_placement.mirror && !duplexBack)
        return p;
    if (m_placement.mirror)
        p.setX(page.width() - p.x());
    if (duplexBack)
        p = QPointF(page.width() - p.x(), page.height() - p.y());
    return p;
}

QRectF TwPreviewMapping::Data2ScreenRect(const QRectF& rect) const {
    QPointF origin = Data2ScreenPoint(rect.topLeft());
    QPointF far = Data2ScreenPoint(rect.topLeft() + QPointF(rect.width(), rect.height()));
    double width = far.x() - origin.x();
    double height = far.y() - origin.y();
    if (width < 0) {
        width = -width;
        origin.rx() -= width;
    }
    if (height < 0) {
        height = -height;
        origin.ry() -= height;
    }
    return QRectF(origin.x(), origin.y(), width, height);
}

QRectF TwPreviewMapping::pageFromSetting(const QRectF& s) const {
    return Data2ScreenRect(
        QRectF(millimetres(s.x()), millimetres(s.y()), millimetres(s.width()), millimetres(s.height())));
}

QRectF TwPreviewMapping::settingFromPage(const QRectF& page) const {
    const QRectF mm = Screen2DataRect(page);
    return QRectF(settingValue(mm.x()), settingValue(mm.y()), settingValue(mm.width()),
                  settingValue(mm.height()));
}

QRectF TwPreviewMapping::viewFromPage(const QRectF& page) const {
    return QRectF(viewFromPage(page.topLeft()), page.size() * scale());
}

QPointF TwPreviewMapping::pageFromView(QPointF view) const {
    const double s = scale();
    return s > 0 ? view / s : QPointF();
}

double TwPreviewMapping::pageLength(double viewPixels) const {
    const double s = scale();
    return s > 0 ? viewPixels / s : 0;
}
