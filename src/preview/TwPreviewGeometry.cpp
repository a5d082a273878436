#include "TwPreviewGeometry.h"

#include <algorithm>

QRectF MakePointRect(QPointF p, double r) {
    return QRectF(p.x() - r, p.y() - r, 2 * r, 2 * r);
}

TwCursorAreaList MakeCursorAreaList(const TwAreaEdges& e, double d) {
    const double L = e.left, T = e.top, R = e.right, B = e.bottom;
    return {
        QRectF(L + d, T + d, R - L - 2 * d, B - T - 2 * d), // inside
        QRectF(L - d, T + d, 2 * d, B - T - 2 * d),         // left
        QRectF(R - d, T + d, 2 * d, B - T - 2 * d),         // right
        QRectF(L + d, T - d, R - L - 2 * d, 2 * d),         // top
        QRectF(L + d, B - d, R - L - 2 * d, 2 * d),         // bottom
        QRectF(L - d, T - d, 2 * d, 2 * d),                 // top left
        QRectF(R - d, B - d, 2 * d, 2 * d),                 // bottom right
        QRectF(R - d, T - d, 2 * d, 2 * d),                 // top right
        QRectF(L - d, B - d, 2 * d, 2 * d),                 // bottom left
    };
}

namespace {
// A point on the rectangle's left or top border is inside; one on the right or bottom is not.
bool holds(const QRectF& r, QPointF p) {
    return r.width() > 0 && r.height() > 0 && p.x() >= r.left() && p.x() < r.right() && p.y() >= r.top() &&
           p.y() < r.bottom();
}

int flipHorizontally(int zone) {
    switch (zone) {
    case kZoneLeft:
        return kZoneRight;
    case kZoneRight:
        return kZoneLeft;
    case kZoneTopLeft:
        return kZoneTopRight;
    case kZoneTopRight:
        return kZoneTopLeft;
    case kZoneBottomRight:
        return kZoneBottomLeft;
    case kZoneBottomLeft:
        return kZoneBottomRight;
    default:
        return zone;
    }
}

int flipVertically(int zone) {
    switch (zone) {
    case kZoneTop:
        return kZoneBottom;
    case kZoneBottom:
        return kZoneTop;
    case kZoneTopLeft:
        return kZoneBottomLeft;
    case kZoneBottomLeft:
        return kZoneTopLeft;
    case kZoneBottomRight:
        return kZoneTopRight;
    case kZoneTopRight:
        return kZoneBottomRight;
    default:
        return zone;
    }
}
} // namespace

int grabbedZone(const TwCursorAreaList& zones, QPointF p) {
    for (std::size_t i = 0; i < zones.size(); ++i)
        if (holds(zones[i], p))
            return int(i) + 1;
    return kZoneNone;
}

int cursorZone(const TwCursorAreaList& zones, QPointF p) {
    for (std::size_t i = zones.size(); i-- > 0;)
        if (holds(zones[i], p))
            return int(i) + 1;
    return kZoneNone;
}

TwDragStep dragAreaEdges(const TwAreaEdges& edges, int zone, QPointF ptDrag, QPointF delta, QSizeF page) {
    TwDragStep step{edges, zone};
    TwAreaEdges& e = step.edges;
    switch (zone) {
    case kZoneInside: {
        double dx = std::min(std::max(delta.x(), -e.left), page.width() - e.right);
        double dy = std::min(std::max(delta.y(), -e.top), page.height() - e.bottom);
        e.left += dx;
        e.right += dx;
        e.top += dy;
        e.bottom += dy;
        return step;
    }
    case kZoneLeft:
        e.left = ptDrag.x();
        break;
    case kZoneRight:
        e.right = ptDrag.x();
        break;
    case kZoneTop:
        e.top = ptDrag.y();
        break;
    case kZoneBottom:
        e.bottom = ptDrag.y();
        break;
    case kZoneTopLeft:
        e.left = ptDrag.x(), e.top = ptDrag.y();
        break;
    case kZoneBottomRight:
        e.right = ptDrag.x(), e.bottom = ptDrag.y();
        break;
    case kZoneTopRight:
        e.right = ptDrag.x(), e.top = ptDrag.y();
        break;
    case kZoneBottomLeft:
        e.left = ptDrag.x(), e.bottom = ptDrag.y();
        break;
    default:
        return step;
    }
    if (e.left > e.right) {
        std::swap(e.left, e.right);
        step.zone = flipHorizontally(step.zone);
    }
    if (e.top > e.bottom) {
        std::swap(e.top, e.bottom);
        step.zone = flipVertically(step.zone);
    }
    return step;
}

QRectF areaRectForEdges(const TwAreaEdges& e) {
    double width = e.left < 0 ? e.right : e.right - e.left;
    double height = e.top < 0 ? e.bottom : e.bottom - e.top;
    return QRectF(e.left, e.top, width, height);
}

QRectF newAreaRect(QPointF a, QPointF b, QSizeF page) {
    QPointF origin(std::max(0.0, std::min(a.x(), b.x())), std::max(0.0, std::min(a.y(), b.y())));
    QPointF far(std::min(page.width(), std::max(a.x(), b.x())),
                std::min(page.height(), std::max(a.y(), b.y())));
    return QRectF(origin.x(), origin.y(), far.x() - origin.x(), far.y() - origin.y());
}

std::optional<TwAreaEdges> keyStepEdges(const TwAreaEdges& edges, int key, bool edgeOnly, double step,
                                        QSizeF page) {
    double dx = 0, dy = 0;
    switch (key) {
    case Qt::Key_Left:
        dx = -step;
        break;
    case Qt::Key_Right:
        dx = step;
        break;
    case Qt::Key_Up:
        dy = -step;
        break;
    case Qt::Key_Down:
        dy = step;
        break;
    default:
        return std::nullopt;
    }
    if (!edgeOnly)
        return dragAreaEdges(edges, kZoneInside, QPointF(), QPointF(dx, dy), page).edges;
    // Not before the opposite edge, and not out beyond the page (or beyond where it lies already).
    TwAreaEdges e = edges;
    e.right = std::clamp(e.right + dx, std::min(e.left, e.right), std::max(e.right, page.width()));
    e.bottom = std::clamp(e.bottom + dy, std::min(e.top, e.bottom), std::max(e.bottom, page.height()));
    return e;
}

std::array<QPointF, 8> areaHandlePoints(const QRectF& a) {
    const QPointF c = a.center();
    return {a.topLeft(),     QPointF(c.x(), a.top()),    a.topRight(),   QPointF(a.right(), c.y()),
            a.bottomRight(), QPointF(c.x(), a.bottom()), a.bottomLeft(), QPointF(a.left(), c.y())};
}

float fitRate(QSizeF page, QSizeF frame) {
    if (page.width() <= 0 || page.height() <= 0)
        return 0;
    float across = (float(frame.width()) - 30.0f) / float(page.width());
    float down = (float(frame.height()) - 30.0f) / float(page.height());
    return std::min(across, down);
}
