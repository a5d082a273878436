#include "TwPreviewImage.h"

#include "OrvaDebug.h"

#include <QBuffer>
#include <QImageReader>

#include <cstdint>
#include <cstring>

namespace {
constexpr qsizetype kFileHeaderSize = 14;
constexpr qsizetype kHeightOffset = kFileHeaderSize + 8;
} // namespace

QImage TwPrescanPageFromBitmapFile(QByteArray file) {
    if (file.isEmpty())
        return {};
    if (file.size() >= kHeightOffset + 4) {
        std::int32_t height;
        std::memcpy(&height, file.constData() + kHeightOffset, 4);
        if (height > 0) {
            height = -height;
            std::memcpy(file.data() + kHeightOffset, &height, 4);
        }
    }
    QBuffer buffer(&file);
    buffer.open(QIODevice::ReadOnly);
    QImageReader reader(&buffer, "bmp");
    QImage page = reader.read();
    if (page.isNull())
        OrvaLog(kOrvaLogError, "ERROR: %s: a bitmap of %lld bytes is refused: %s\n",
                "TwPrescanPageFromBitmapFile", static_cast<long long>(file.size()),
                reader.errorString().toUtf8().constData());
    return page;
}
