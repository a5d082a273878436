// Synthetic prescan pages for the preview's tests and benchmark: a device-independent bitmap as a
// data source delivers it (40-byte header, rows top down, padded to 4 bytes, made with malloc).
#pragma once

#include "ImageShared.h"

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPainter>
#include <QString>

#include <cstdint>
#include <cstdlib>
#include <cstring>

// The picture as a 24-bit bitmap at the given pixels per metre; the caller (or the module) frees it
// with free().
inline void* makeBitmap(const QImage& picture, std::int32_t pelsPerMetre, std::uint32_t* length) {
    const QImage page = picture.convertToFormat(QImage::Format_BGR888);
    const std::int32_t width = page.width(), height = page.height();
    const std::uint32_t stride = std::uint32_t(page.bytesPerLine()); // whole 32-bit words, as a DIB's
    *length = 40 + stride * std::uint32_t(height);
    auto* dib = static_cast<unsigned char*>(std::calloc(1, *length));
    const TwBitmapInfoHeader header{40, width, height, 1, 24, 0, 0, pelsPerMetre, pelsPerMetre};
    std::memcpy(dib, &header, sizeof header);
    for (int y = 0; y < height; ++y)
        std::memcpy(dib + 40 + std::size_t(y) * stride, page.constScanLine(y), stride);
    return dib;
}

// A 24-bit page of width x height pixels at the given pixels per metre: a light sheet with a band
// of the tint along its top 5 mm, a frame, a grid every 20 mm and a label. The caller (or the module) frees
// it with free().
inline void* makePageBitmap(int width, int height, std::int32_t pelsPerMetre, const QColor& tint,
                            const QString& label, std::uint32_t* length) {
    QImage page(width, height, QImage::Format_BGR888);
    page.fill(tint.lighter(180));
    {
        QPainter p(&page);
        const double perMm = pelsPerMetre / 1000.0;
        p.fillRect(QRectF(0, 0, width, 5 * perMm), tint);
        p.setPen(QPen(tint.darker(150), std::max(1.0, perMm * 0.3)));
        for (double mm = 20; mm * perMm < width; mm += 20)
            p.drawLine(QPointF(mm * perMm, 0), QPointF(mm * perMm, height));
        for (double mm = 20; mm * perMm < height; mm += 20)
            p.drawLine(QPointF(0, mm * perMm), QPointF(width, mm * perMm));
        p.setPen(QPen(Qt::black, std::max(1.0, perMm)));
        p.drawRect(QRectF(0, 0, width - 1, height - 1));
        QFont font;
        font.setPixelSize(std::max(8, int(perMm * 25)));
        p.setFont(font);
        p.drawText(QRectF(0, 0, width, height / 3.0), Qt::AlignCenter, label);
    }
    return makeBitmap(page, pelsPerMetre, length);
}
