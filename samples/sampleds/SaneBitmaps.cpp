#include "SaneBitmaps.h"

#include "ImageShared.h"

#include <cstring>
#include <vector>

SamplePage SaneBitmapOf(const SaneImage& image, int dpi) {
    const int bitCount = image.format == SaneFormat::Rgb ? 24 : image.depth == 1 ? 1 : 8;
    const auto layout = TwDibLayoutFor(image.width, image.height, bitCount);
    std::vector<std::uint8_t> scratch;
    // The last line there means every line is.
    if (!layout || !image.line8(image.height - 1, scratch))
        return {};
    auto* dib =
        static_cast<std::uint8_t*>(AllocDIBMemoryWait(std::uint32_t(bitCount), image.width, image.height));
    if (!dib)
        return {};
    SetDIBHeader(dib, image.width, image.height, 0, dpi, std::uint16_t(bitCount));
    for (int y = 0; y < image.height; ++y) {
        const std::uint8_t* source = image.line8(y, scratch);
        std::uint8_t* row = dib + layout->headerSize + std::size_t(y) * layout->stride;
        std::memset(row, 0, layout->stride); // the padding
        if (bitCount == 24)
            ByteCopySwapRGB(source, row, image.samplesPerLine()); // SANE sends RGB, a bitmap holds BGR
        else
            // A set bit is black in SANE's line art and palette entry 1 is black: the bits go as
            // they are.
            ByteCopy(source, row, image.packedLineBytes());
    }
    SamplePage page;
    page.dib = dib;
    page.length = std::uint32_t(layout->totalSize());
    SampleMeasureRatios(page);
    return page;
}
