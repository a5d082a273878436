// Finding the document on a prescan: the bounding box of what differs from the background.
//
// The background is what most of the picture's outermost rows and columns show (a white lid, a
// black backing, the feeder's grey), and the scanner's noise is measured there too, so that only
// a difference well above that noise counts. A row or column holds the document when enough of
// its pixels differ, and only in runs a millimetre long, so that noise, dust and a lone streak are
// passed over. The picture is looked at in steps of a few pixels on large pages (never coarser than a
// quarter millimetre at the resolution the caller names).
#pragma once

#include <QImage>
#include <QRect>

#include <optional>

// The document on the picture; nothing for a picture without one (all background) or without
// pixels. pixelsPerMillimetre sets the step (0: every pixel).
std::optional<QRect> TwFindPageInImage(const QImage& image, double pixelsPerMillimetre = 0);
