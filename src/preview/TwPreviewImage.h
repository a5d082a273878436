// Prescan pages: a data source's bitmap made into a picture with Qt's BMP reader.
#pragma once

#include "ImageShared.h"

#include <QImage>

// CreateImage: the page of a bitmap, its first row at the top. Qt's BMP reader reads the bitmap
// file that the 14-byte file header and the bitmap make (CreateBMPFileHeader), served to it in
// place: the pixels are not copied first. A data source's bitmap keeps its rows top down whatever
// the sign of its height, where a BMP file with a positive height counts them from the bottom; the
// reader is told a negative height. Null (logged) for no bitmap, a refused one or one Qt cannot read.
QImage CreateImage(const void* bitmap, std::size_t length);
inline QImage CreateImage(const TwOwnedDIB& page) {
    return CreateImage(page.data(), page.length());
}
