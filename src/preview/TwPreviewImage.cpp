#include "TwPreviewImage.h"

#include "OrvaDebug.h"

#include <QIODevice>
#include <QImageReader>

#include <algorithm>
#include <array>
#include <cstdint>
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

QImage CreateImage(const void* bitmap, std::size_t length) {
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
