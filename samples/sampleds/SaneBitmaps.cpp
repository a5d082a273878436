#include "SaneBitmaps.h"

#include "ImageShared.h"

#include <bit>
#include <cstring>
#include <vector>

namespace {
// The high byte of each native-order 16-bit sample.
void narrowSamples(const std::uint8_t* source, std::uint8_t* destination, std::size_t samples) {
    const std::size_t high = std::endian::native == std::endian::little ? 1 : 0;
    for (std::size_t i = 0; i < samples; ++i)
        destination[i] = source[2 * i + high];
}
} // namespace

SamplePage SaneBitmapOf(const SaneImage& image, int dpi) {
    const int bitCount = image.format == SaneFormat::Rgb ? 24 : image.depth == 1 ? 1 : 8;
    const auto layout = TwDibLayoutFor(image.width, image.height, bitCount);
    const int channels = image.format == SaneFormat::Rgb ? 3 : 1;
    const std::size_t samples = std::size_t(image.width) * std::size_t(channels);
    const std::size_t rowBytes =
        image.depth == 1 ? (std::size_t(image.width) + 7) / 8 : samples * std::size_t(image.depth / 8);
    if (!layout || image.bytesPerLine <= 0 || std::size_t(image.bytesPerLine) < rowBytes ||
        image.bytes.size() < std::size_t(image.bytesPerLine) * std::size_t(image.height))
        return {};
    auto* dib =
        static_cast<std::uint8_t*>(AllocDIBMemoryWait(std::uint32_t(bitCount), image.width, image.height));
    if (!dib)
        return {};
    SetDIBHeader(dib, image.width, image.height, 0, dpi, std::uint16_t(bitCount));
    std::vector<std::uint8_t> narrowed(image.depth == 16 ? samples : 0);
    for (int y = 0; y < image.height; ++y) {
        const std::uint8_t* source = image.bytes.data() + std::size_t(y) * std::size_t(image.bytesPerLine);
        std::uint8_t* row = dib + layout->headerSize + std::size_t(y) * layout->stride;
        std::memset(row, 0, layout->stride); // the padding
        if (image.depth == 16) {
            narrowSamples(source, narrowed.data(), samples);
            source = narrowed.data();
        }
        if (bitCount == 24)
            ByteCopySwapRGB(source, row, samples); // SANE sends RGB, a bitmap holds BGR
        else
            // A set bit is black in SANE's line art and palette entry 1 is black: the bits go as
            // they are.
            ByteCopy(source, row, bitCount == 1 ? rowBytes : samples);
    }
    SamplePage page;
    page.dib = dib;
    page.length = std::uint32_t(layout->totalSize());
    SampleMeasureRatios(page);
    return page;
}
