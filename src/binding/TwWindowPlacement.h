// Where the module puts its windows: always wholly on the screen's available area, the window
// system's frame and title bar included, so that every window can be moved and closed with the
// mouse. The geometry is plain functions of rectangles (client areas in screen coordinates and the
// frame's margins around them); the widget functions below apply it.
#pragma once

#include <QMargins>
#include <QRect>

class QWidget;

namespace TwPlacement {

// The frame around a client rectangle.
QRect frameOf(const QRect& client, const QMargins& frame);

// The client rectangle moved, and made smaller where it must (never below `minimum`), so that its
// frame lies on `available`; where even the smallest size does not fit, the title bar's corner
// stays on it.
QRect onScreen(const QRect& client, const QMargins& frame, const QSize& minimum, const QRect& available);

enum class Level { Tops, Bottoms };

struct Beside {
    int anchorShift = 0; // how far the anchor window moves left to make room (0 or less)
    QRect client;        // where the window goes
};

// A window beside an anchor window (whose frame is given): `gap` to its right, tops or bottoms
// level, on the screen. Where the room on the right is too small, the anchor first moves left as
// far as the screen allows (when it may move), then the window is narrowed to the room (not below its
// minimum), then it goes to the anchor's left if there is room there. Only when it must lie over the anchor
// does it keep clear of `keepClear` (the anchor's own buttons, in screen coordinates), above it if it fits
// there and below it otherwise.
Beside beside(const QRect& anchorFrame, const QRect& keepClear, const QRect& client, const QMargins& frame,
              const QSize& minimum, const QRect& available, int gap, Level level, bool anchorMayMove);

} // namespace TwPlacement

// The margins of the frame the window system gives the window: its own once it has one, else those
// of another framed window of the application, else none.
QMargins TwFrameMarginsOf(const QWidget* window);

// Moves (and if need be shrinks) a top-level window so that it lies wholly on its screen.
void TwKeepOnScreen(QWidget* window);
