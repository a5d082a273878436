// Prescan pages: a data source's bitmap made into a picture.
//
// A data source's bitmap keeps its rows top down whatever the sign of its height, each row padded
// to whole 32-bit words. Where Qt can take such rows as they stand, the bitmap becomes the
// picture without a copy: 8-bit rows (a grey palette as Grayscale8, any other as Indexed8 with the
// palette as its colour table) and 24-bit rows (blue, green, red: BGR888), uncompressed. The
// picture then owns the bitmap's block, which is freed with the picture's last copy. Every other
// bitmap is read with Qt's BMP reader (ReadBitmapImage) and freed at once.
#pragma once

#include "ImageShared.h"

#include <QImage>

// The page of a bitmap handed over, its first row at the top; the bitmap is the picture's from
// now on (or freed, when it had to be read). Null (logged) for no bitmap, a refused one or one Qt
// cannot read: a refused header gives the same log line as CreateBMPFileHeader.
QImage CreateImage(TwOwnedDIB page);

// Qt's BMP reader over the bitmap file that the 14-byte file header and the bitmap make
// (CreateBMPFileHeader), served to it in place: the bitmap is not copied into a file first, and
// it is left as it is. A BMP file with a positive height counts its rows from the bottom, so the
// reader is told a negative height. Null (logged) for no bitmap, a refused one or one Qt cannot
// read.
QImage ReadBitmapImage(const void* bitmap, std::size_t length);
