#include "TwPreviewImage.h"

#include "OrvaDebug.h"

#include <QIODevice>
#include <QImageReader>
#include <QList>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>

namespace {
constexpr qint64 kFileHeaderSize = 14;
constexpr qint64 kInfoHeaderSize = 40;
constexpr int kHeightOffset = 8; // in the info header

// A bitmap file read from two pieces without joining them: the file header and info header (with
// the height turned negative), then the rest of the bitmap where it lies.
class BitmapFileDevice : public QIODevice {
public:
    BitmapFileDevice(const std::array<unsigned char, 14>& fileHeader, const void* bitmap, std::size_t length)
        : m_bitmap(static_cast<const char*>(bitmap)), m_length(qint64(length)) {
        std::memcpy(m_head.data(), fileHeader.data(), kFileHeaderSize);
        std::memcpy(m_head.data() + kFileHeaderSize, bitmap, kInfoHeaderSize);
        std::int32_t height;
        std::memcpy(&height, m_head.data() + kFileHeaderSize + kHeightOffset, 4);
        if (height > 0)
            height = -height;
        std::memcpy(m_head.data() + kFileHeaderSize + kHeightOffset, &height, 4);
        open(QIODevice::ReadOnly);
    }
    bool isSequential() const override { return false; }
    qint64 size() const override { return kFileHeaderSize + m_length; }

protected:
    qint64 readData(char* data, qint64 maxSize) override {
        const qint64 at = pos();
        const qint64 count = std::clamp<qint64>(size() - at, 0, maxSize);
        const qint64 headLength = kFileHeaderSize + kInfoHeaderSize;
        for (qint64 i = 0; i < count;) {
            const qint64 p = at + i;
            qint64 n;
            if (p < headLength) {
                n = std::min(count - i, headLength - p);
                std::memcpy(data + i, m_head.data() + p, std::size_t(n));
            } else {
                n = count - i;
                std::memcpy(data + i, m_bitmap + (p - kFileHeaderSize), std::size_t(n));
            }
            i += n;
        }
        return count;
    }
    qint64 writeData(const char*, qint64) override { return -1; }

private:
    std::array<char, kFileHeaderSize + kInfoHeaderSize> m_head{};
    const char* m_bitmap;
    qint64 m_length;
};
} // namespace

QImage ReadBitmapImage(const void* bitmap, std::size_t length) {
    const auto fileHeader = CreateBMPFileHeader(bitmap, length);
    if (!fileHeader)
        return {};
    BitmapFileDevice file(*fileHeader, bitmap, length);
    QImageReader reader(&file, "bmp");
    QImage page = reader.read();
    if (page.isNull())
        OrvaLog(kOrvaLogError, "ERROR: %s: a bitmap of %zu bytes is refused: %s\n", "CreateImage", length,
                reader.errorString().toUtf8().constData());
    return page;
}

namespace {
constexpr std::uint32_t kUncompressed = 0; // BI_RGB

// The format in which Qt takes the bitmap's rows as they stand, with the colour table of an
// indexed one; Format_Invalid where they must be read.
QImage::Format formatAsItStands(const TwBitmapInfoHeader& header, const unsigned char* palette,
                                QList<QRgb>* colours) {
    if (header.biCompression != kUncompressed || header.biPlanes != 1)
        return QImage::Format_Invalid;
    if (header.biBitCount == 24)
        return QImage::Format_BGR888;
    // A palette that claims fewer colours than 256 is the reader's to interpret.
    if (header.biBitCount != 8 || (header.biClrUsed != 0 && header.biClrUsed != 256))
        return QImage::Format_Invalid;
    bool grey = true;
    colours->resize(256);
    for (int i = 0; i < 256; ++i) {
        TwRGBQuad entry;
        std::memcpy(&entry, palette + 4 * i, sizeof entry);
        (*colours)[i] = qRgb(entry.rgbRed, entry.rgbGreen, entry.rgbBlue);
        grey = grey && entry.rgbRed == i && entry.rgbGreen == i && entry.rgbBlue == i;
    }
    return grey ? QImage::Format_Grayscale8 : QImage::Format_Indexed8;
}

void freeBitmap(void* block) {
    std::free(block);
}
} // namespace

QImage CreateImage(TwOwnedDIB page) {
    // The header is checked as the reader's file header checks it, with the same log lines.
    if (!CreateBMPFileHeader(page.data(), page.length()))
        return {};
    const auto layout = TwDibLayoutOf(page.data(), page.length(), "CreateImage");
    if (!layout)
        return {};
    auto* block = static_cast<unsigned char*>(page.data());
    TwBitmapInfoHeader header;
    std::memcpy(&header, block, sizeof header);
    QList<QRgb> colours;
    const QImage::Format format = formatAsItStands(header, block + kInfoHeaderSize, &colours);
    if (format == QImage::Format_Invalid)
        return ReadBitmapImage(page.data(), page.length());
    QImage picture(block + layout->headerSize, layout->width, layout->height, qsizetype(layout->stride),
                   format, &freeBitmap, block);
    if (picture.isNull())
        return ReadBitmapImage(page.data(), page.length());
    page.release(); // the picture frees it
    if (format == QImage::Format_Indexed8)
        picture.setColorTable(colours); // the picture's only copy: its rows stay where they are
    return picture;
}
