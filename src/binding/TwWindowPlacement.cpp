#include "TwWindowPlacement.h"

#include <QApplication>
#include <QScreen>
#include <QWidget>
#include <QWindow>

#include <algorithm>

namespace TwPlacement {

QRect frameOf(const QRect& client, const QMargins& frame) {
    return client.marginsAdded(frame);
}

QRect onScreen(const QRect& client, const QMargins& frame, const QSize& minimum, const QRect& available) {
    if (!available.isValid())
        return client;
    const int w =
        std::max(std::min(client.width(), available.width() - frame.left() - frame.right()), minimum.width());
    const int h = std::max(std::min(client.height(), available.height() - frame.top() - frame.bottom()),
                           minimum.height());
    QRect f = frameOf(QRect(client.topLeft(), QSize(w, h)), frame);
    if (f.right() > available.right())
        f.moveRight(available.right());
    if (f.bottom() > available.bottom())
        f.moveBottom(available.bottom());
    // Last, so that a window larger than the screen keeps its title bar's corner on it.
    if (f.left() < available.left())
        f.moveLeft(available.left());
    if (f.top() < available.top())
        f.moveTop(available.top());
    return f.marginsRemoved(frame);
}

Beside beside(const QRect& anchorFrame, const QRect& keepClear, const QRect& client, const QMargins& frame,
              const QSize& minimum, const QRect& available, int gap, Level level, bool anchorMayMove) {
    Beside out;
    const int decorationW = frame.left() + frame.right(), decorationH = frame.top() + frame.bottom();
    int clientH = client.height();
    if (available.isValid())
        clientH = std::max(std::min(clientH, available.height() - decorationH), minimum.height());
    const int frameW = client.width() + decorationW;
    const int narrowest = std::max(minimum.width(), 1) + decorationW;

    QRect anchor = anchorFrame;
    auto roomRight = [&] {
        return available.isValid() ? available.right() - anchor.right() - gap : frameW;
    };
    if (anchorMayMove && available.isValid() && roomRight() < frameW) {
        // The anchor moves left only where that makes room enough.
        const int shift = std::min(frameW - roomRight(), std::max(0, anchor.left() - available.left()));
        if (roomRight() + shift >= narrowest) {
            anchor.translate(-shift, 0);
            out.anchorShift = -shift;
        }
    }

    QRect f(0, 0, frameW, clientH + decorationH);
    bool overAnchor = false;
    const int roomLeft = available.isValid() ? anchor.left() - gap - available.left() : 0;
    if (roomRight() >= narrowest) {
        f.setWidth(std::min(frameW, roomRight()));
        f.moveLeft(anchor.right() + 1 + gap);
    } else if (roomLeft >= narrowest) {
        f.setWidth(std::min(frameW, roomLeft));
        f.moveRight(anchor.left() - 1 - gap);
    } else {
        overAnchor = true;
        f.moveRight(available.right());
    }
    if (level == Level::Tops)
        f.moveTop(anchor.top());
    else
        f.moveBottom(anchor.bottom());

    if (overAnchor && keepClear.isValid()) {
        const QRect clear = keepClear.translated(out.anchorShift, 0);
        if (f.intersects(clear)) {
            const int minimumH = std::max(minimum.height(), 1) + decorationH;
            const int above = clear.top() - gap - available.top();
            const int below = available.bottom() - clear.bottom() - gap;
            if (above >= minimumH) {
                f.setHeight(std::min(f.height(), above));
                f.moveBottom(clear.top() - 1 - gap);
            } else if (below >= minimumH) {
                f.setHeight(std::min(f.height(), below));
                f.moveTop(clear.bottom() + 1 + gap);
            }
        }
    }
    out.client = onScreen(f.marginsRemoved(frame), frame, minimum, available);
    return out;
}

} // namespace TwPlacement

QMargins TwFrameMarginsOf(const QWidget* window) {
    auto marginsOf = [](const QWidget* w) {
        const QWindow* handle = w ? w->windowHandle() : nullptr;
        return handle ? handle->frameMargins() : QMargins();
    };
    if (QMargins own = marginsOf(window); !own.isNull())
        return own;
    // Not framed yet (the window system frames a window once it is shown): the frame of another
    // window of ours is the best guess, as the same window manager frames them all.
    for (const QWidget* other : QApplication::topLevelWidgets())
        if (other != window && other->isVisible())
            if (QMargins m = marginsOf(other); !m.isNull())
                return m;
    return {};
}

void TwKeepOnScreen(QWidget* window) {
    if (!window || !window->isWindow())
        return;
    const QScreen* screen = window->screen();
    if (!screen)
        return;
    const QRect now = window->geometry();
    const QRect placed = TwPlacement::onScreen(now, TwFrameMarginsOf(window), window->minimumSize(),
                                               screen->availableGeometry());
    if (placed != now)
        window->setGeometry(placed);
}
