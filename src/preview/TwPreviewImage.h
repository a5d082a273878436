// Prescan pages from the bitmap files the controller makes of the data source's bitmaps
// (TwainDialogController::CreateImage), read with Qt's BMP reader.
#pragma once

#include <QByteArray>
#include <QImage>

// The page of a bitmap file, its first row at the top. A data source's bitmap keeps its rows top
// down whatever the sign of its height, where a BMP file with a positive height counts them from
// the bottom; the file's height is made negative before reading, which costs nothing. Null
// (logged) for an empty or unreadable file.
QImage TwPrescanPageFromBitmapFile(QByteArray file);
