// A side read from a SANE device as the module takes it: a device-independent bitmap made with the
// project's bitmap toolkit (1-bit line art, 8-bit grey, 24-bit BGR; rows top-down, padded to 4
// bytes) with its colour, black and white shares.
#pragma once

#include "SamplePage.h"
#include "SaneDevice.h"

// The bitmap of the image at that resolution; no bitmap (page.dib null) when the image is empty,
// larger than a bitmap may be, or memory runs out. 16-bit samples keep their high byte.
SamplePage SaneBitmapOf(const SaneImage& image, int dpi);
