#include "ImageShared.h"

#include "OrvaDebug.h"

#include <atomic>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <string>
#include <thread>
#include <utility>

namespace {

constexpr std::uint64_t kMaxDIBBytes = std::numeric_limits<std::uint32_t>::max();
constexpr int kAllocTries = 64;
constexpr unsigned kAllocRetrySeconds = 5;

void sleepSeconds(unsigned seconds) {
    std::this_thread::sleep_for(std::chrono::seconds(seconds));
}

std::atomic<TwDIBSleepFunction> g_allocSleep{&sleepSeconds};

bool knownBitCount(int bitCount) {
    return bitCount == 1 || bitCount == 4 || bitCount == 8 || bitCount == 24 || bitCount == 32;
}

bool dimensionInRange(std::int32_t pixels) {
    return pixels >= 1 && pixels <= kTwDIBMaxDimension;
}

std::uint32_t paletteSize(int bitCount) {
    return bitCount <= 8 ? 4u << bitCount : 0u;
}

// The info header of a bitmap handed over, when it can describe one at all: the buffer holds it,
// and its size, dimensions and bit count are ones this code knows. Whether the rows fit is the
// caller's question, as packed and padded rows need different room.
std::optional<TwBitmapInfoHeader> readHeader(const void* dib, std::size_t length, const char* caller) {
    if (!dib)
        return std::nullopt;
    if (length < kTwDIBHeaderSize) {
        OrvaLog(kOrvaLogError, "ERROR: %s: a buffer of %zu bytes cannot hold a bitmap header\n", caller,
                length);
        return std::nullopt;
    }
    TwBitmapInfoHeader header;
    std::memcpy(&header, dib, sizeof header);
    if (header.biSize != kTwDIBHeaderSize) {
        OrvaLog(kOrvaLogError, "ERROR: %s: header size %u, not %u\n", caller, header.biSize,
                kTwDIBHeaderSize);
        return std::nullopt;
    }
    if (!dimensionInRange(header.biWidth) || !dimensionInRange(header.biHeight)) {
        OrvaLog(kOrvaLogError, "ERROR: %s: %d x %d pixels is outside 1 ... %d\n", caller, header.biWidth,
                header.biHeight, kTwDIBMaxDimension);
        return std::nullopt;
    }
    if (!knownBitCount(header.biBitCount)) {
        OrvaLog(kOrvaLogError, "ERROR: %s: bit count %u is not 1, 4, 8, 24 or 32\n", caller,
                unsigned(header.biBitCount));
        return std::nullopt;
    }
    return header;
}

bool fitsIn(std::uint64_t needed, std::size_t length, const TwBitmapInfoHeader& header, const char* caller) {
    if (needed <= length)
        return true;
    OrvaLog(kOrvaLogError, "ERROR: %s: a %d x %d bitmap of %u bits needs %llu bytes; the buffer holds %zu\n",
            caller, header.biWidth, header.biHeight, unsigned(header.biBitCount),
            static_cast<unsigned long long>(needed), length);
    return false;
}

void writeUInt16(unsigned char* out, std::uint16_t value) {
    std::memcpy(out, &value, sizeof value);
}

void writeUInt32(unsigned char* out, std::uint32_t value) {
    std::memcpy(out, &value, sizeof value);
}

constexpr std::array<std::uint8_t, 256> makeBitReverse() {
    std::array<std::uint8_t, 256> table{};
    for (int byte = 0; byte < 256; ++byte) {
        int reversed = 0;
        for (int bit = 0; bit < 8; ++bit)
            if (byte & (1 << bit))
                reversed |= 0x80 >> bit;
        table[std::size_t(byte)] = std::uint8_t(reversed);
    }
    return table;
}

} // namespace

const std::array<std::uint8_t, 256> BitReverse = makeBitReverse();

// ---- Layout --------------------------------------------------------------------------------------

std::optional<TwDibLayout> TwDibLayoutFor(std::int32_t width, std::int32_t height, int bitCount) {
    if (!dimensionInRange(width) || !dimensionInRange(height) || !knownBitCount(bitCount))
        return std::nullopt;
    TwDibLayout layout;
    layout.width = width;
    layout.height = height;
    layout.bitCount = std::uint16_t(bitCount);
    layout.headerSize = kTwDIBHeaderSize + paletteSize(bitCount);
    layout.stride = std::uint32_t((std::uint64_t(width) * std::uint64_t(bitCount) + 31) / 32 * 4);
    layout.imageSize = std::uint64_t(layout.stride) * std::uint64_t(height);
    if (layout.totalSize() > kMaxDIBBytes)
        return std::nullopt;
    return layout;
}

std::optional<TwDibLayout> TwDibLayoutOf(const void* dib, std::size_t length, const char* caller) {
    auto header = readHeader(dib, length, caller);
    if (!header)
        return std::nullopt;
    auto layout = TwDibLayoutFor(header->biWidth, header->biHeight, header->biBitCount);
    if (!layout) {
        OrvaLog(kOrvaLogError, "ERROR: %s: a %d x %d bitmap of %u bits would be larger than 4 GB\n", caller,
                header->biWidth, header->biHeight, unsigned(header->biBitCount));
        return std::nullopt;
    }
    if (!fitsIn(layout->totalSize(), length, *header, caller))
        return std::nullopt;
    return layout;
}

std::uint8_t TwGreyLevel(std::uint8_t blue, std::uint8_t green, std::uint8_t red) {
    std::uint64_t level = blue * 1912602ull + green * 9848225ull + red * 5016387ull + 8388608ull;
    return std::uint8_t(level >> 24);
}

// ---- Sizes ---------------------------------------------------------------------------------------

std::uint32_t GetDIBHeaderSize(const void* dib, std::size_t length) {
    auto layout = TwDibLayoutOf(dib, length, "GetDIBHeaderSize");
    return layout ? layout->headerSize : 0;
}

unsigned char* FindDIBBits(void* dib, std::size_t length) {
    auto layout = TwDibLayoutOf(dib, length, "FindDIBBits");
    return layout ? static_cast<unsigned char*>(dib) + layout->headerSize : nullptr;
}

const unsigned char* FindDIBBits(const void* dib, std::size_t length) {
    return FindDIBBits(const_cast<void*>(dib), length);
}

std::uint32_t GetDIBSize(const void* dib, std::size_t length) {
    auto layout = TwDibLayoutOf(dib, length, "GetDIBSize");
    return layout ? std::uint32_t(layout->totalSize()) : 0;
}

std::uint32_t GetDIBSizeDirect(std::uint32_t bitCount, std::int32_t width, std::int32_t height) {
    if (width < 0 || height < 0)
        return 0;
    const std::uint32_t bits = bitCount & 0xFF;
    const std::uint64_t w = std::uint64_t(width);
    const std::uint64_t h = std::uint64_t(height);
    // Room for data that may grow: 1 % more rows, and four times the packed row for 1 bit.
    const std::uint64_t row = bits == 1 ? (w + 31) / 32 * 16 : ((w * bits + 31) / 8) & ~std::uint64_t(3);
    const std::uint64_t size = kTwDIBHeaderSize + paletteSize(int(bits)) + (h + h / 100) * row;
    return size > kMaxDIBBytes ? 0 : std::uint32_t(size);
}

std::optional<std::pair<double, double>> GetDIBSizeMillimetres(const void* dib, std::size_t length) {
    auto layout = TwDibLayoutOf(dib, length, "GetDIBSizeMillimetres");
    if (!layout)
        return std::nullopt;
    TwBitmapInfoHeader header;
    std::memcpy(&header, dib, sizeof header);
    if (header.biXPelsPerMeter <= 0 || header.biYPelsPerMeter <= 0) {
        OrvaLog(kOrvaLogError, "ERROR: %s: bitmap without resolution (%d x %d pixels per metre)\n",
                "GetDIBSizeMillimetres", header.biXPelsPerMeter, header.biYPelsPerMeter);
        return std::nullopt;
    }
    auto millimetres = [](std::int32_t pixels, std::int32_t perMetre) {
        // Tenths of a millimetre rounded, then millimetres.
        return double(std::int64_t(double(pixels) * 10000.0 / perMetre + 0.5)) * 0.1;
    };
    return std::make_pair(millimetres(layout->width, header.biXPelsPerMeter),
                          millimetres(layout->height, header.biYPelsPerMeter));
}

// ---- Making bitmaps ------------------------------------------------------------------------------

void* AllocDIBMemory(std::uint32_t bitCount, std::int32_t width, std::int32_t length) {
    const std::uint32_t size = GetDIBSizeDirect(bitCount, width, length);
    OrvaLog(kOrvaLogDebug, "\t%s(): bitpixel = %d, width = %d, length = %d, malloc size = %d\n",
            "AllocDIBMemory", int(bitCount), width, length, int(size));
    if (size == 0) {
        OrvaLog(kOrvaLogError, "ERROR: %s: no bitmap of %d x %d pixels at %u bits can be allocated\n",
                "AllocDIBMemory", width, length, bitCount);
        return nullptr;
    }
    return std::malloc(size);
}

void* AllocDIBMemoryWait(std::uint32_t bitCount, std::int32_t width, std::int32_t length) {
    for (int attempt = 1; attempt <= kAllocTries; ++attempt) {
        if (void* block = AllocDIBMemory(bitCount, width, length))
            return block;
        OrvaLog(kOrvaLogWarning, "%s: allocation %d of %d failed; waiting %u s\n", "AllocDIBMemoryWait",
                attempt, kAllocTries, kAllocRetrySeconds);
        g_allocSleep.load()(kAllocRetrySeconds);
    }
    return nullptr;
}

void SetDIBAllocSleep(TwDIBSleepFunction sleepFunction) {
    g_allocSleep.store(sleepFunction ? sleepFunction : &sleepSeconds);
}

void SetDIBHeader(void* header, std::int32_t width, std::int32_t height, std::int32_t /*unused*/,
                  std::int32_t dpi, std::uint16_t bitCount) {
    if (!header)
        return;
    // Dots per inch to dots per metre, rounded: dpi / 0.0254.
    const auto perMetre = std::int32_t((std::int64_t(dpi) * 10000 + 127) / 254);
    TwBitmapInfoHeader info{};
    info.biSize = kTwDIBHeaderSize;
    info.biWidth = width;
    info.biHeight = height;
    info.biPlanes = 1;
    info.biBitCount = bitCount;
    info.biXPelsPerMeter = perMetre;
    info.biYPelsPerMeter = perMetre;
    auto* out = static_cast<unsigned char*>(header);
    std::memcpy(out, &info, sizeof info);

    auto* palette = out + kTwDIBHeaderSize;
    auto setEntry = [palette](int index, std::uint8_t grey) {
        const TwRGBQuad entry{grey, grey, grey, 0};
        std::memcpy(palette + 4 * index, &entry, sizeof entry);
    };
    if (bitCount == 1) {
        setEntry(0, 255);
        setEntry(1, 0);
    } else if (bitCount == 4) {
        for (int i = 0; i < 16; ++i)
            setEntry(i, std::uint8_t(i * 17));
    } else if (bitCount == 8) {
        for (int i = 0; i < 256; ++i)
            setEntry(i, std::uint8_t(i));
    }
}

void* AlignBitmap(const void* dib, std::size_t length) {
    auto header = readHeader(dib, length, "AlignBitmap");
    if (!header)
        return nullptr;
    if (header->biBitCount != 24) {
        OrvaLog(kOrvaLogError, "ERROR: %s: %u bits per pixel, not 24\n", "AlignBitmap",
                unsigned(header->biBitCount));
        return nullptr;
    }
    const std::uint64_t packed = std::uint64_t(header->biWidth) * 3;
    if (!fitsIn(kTwDIBHeaderSize + packed * std::uint64_t(header->biHeight), length, *header, "AlignBitmap"))
        return nullptr;
    auto layout = TwDibLayoutFor(header->biWidth, header->biHeight, 24);
    if (!layout) {
        OrvaLog(kOrvaLogError, "ERROR: %s: a %d x %d bitmap would be larger than 4 GB\n", "AlignBitmap",
                header->biWidth, header->biHeight);
        return nullptr;
    }
    const std::uint64_t size = layout->totalSize();
    OrvaLog(kOrvaLogAlways, "AlignBitmap size=%d \n", int(size));
    auto* out = static_cast<unsigned char*>(std::malloc(size));
    if (!out) {
        OrvaLog(kOrvaLogError, "ERROR: %s: %llu bytes could not be allocated\n", "AlignBitmap",
                static_cast<unsigned long long>(size));
        return nullptr;
    }
    std::memset(out, 0, size);
    std::memcpy(out, dib, kTwDIBHeaderSize);
    OrvaLog(kOrvaLogAlways, "AlignBitmap iDstWidth=%d \n", int(layout->stride));
    OrvaLog(kOrvaLogAlways, "AlignBitmap pDIB->biWidth=%d \n", header->biWidth);
    OrvaLog(kOrvaLogAlways, "AlignBitmap pDIB->biHeight=%d \n", header->biHeight);
    OrvaLog(kOrvaLogAlways, "AlignBitmap pDIB->biBitCount=%d \n", int(header->biBitCount));
    OrvaLog(kOrvaLogAlways, "AlignBitmap 000 \n");
    const auto* source = static_cast<const unsigned char*>(dib) + kTwDIBHeaderSize;
    for (std::uint64_t row = 0; row < std::uint64_t(layout->height); ++row)
        std::memcpy(out + kTwDIBHeaderSize + row * layout->stride, source + row * packed, packed);
    return out;
}

bool unAlignBitmap(void* dib, std::size_t length, unsigned char* destination, std::size_t destinationLength) {
    auto layout = TwDibLayoutOf(dib, length, "unAlignBitmap");
    if (!layout)
        return false;
    if (layout->bitCount != 24) {
        OrvaLog(kOrvaLogError, "ERROR: %s: %u bits per pixel, not 24\n", "unAlignBitmap",
                unsigned(layout->bitCount));
        return false;
    }
    const std::uint64_t packed = std::uint64_t(layout->width) * 3;
    if (packed >= layout->stride)
        return true;
    const std::uint64_t needed = packed * std::uint64_t(layout->height);
    if (destination && destinationLength < needed) {
        OrvaLog(kOrvaLogError, "ERROR: %s: the destination holds %zu bytes of the %llu needed\n",
                "unAlignBitmap", destinationLength, static_cast<unsigned long long>(needed));
        return false;
    }
    auto* rows = static_cast<unsigned char*>(dib) + layout->headerSize;
    auto* out = destination ? destination : rows;
    // In place each row moves down to where it overlaps only rows already moved.
    for (std::uint64_t row = 0; row < std::uint64_t(layout->height); ++row)
        std::memmove(out + row * packed, rows + row * layout->stride, packed);
    return true;
}

// ---- Files ---------------------------------------------------------------------------------------

void SaveBMP(const void* dib, std::size_t length, const char* path, std::uint8_t swapRGB) {
    auto layout = TwDibLayoutOf(dib, length, "SaveBMP");
    if (!layout)
        return;
    if (!path) {
        OrvaLog(kOrvaLogError, "ERROR: %s: no path\n", "SaveBMP");
        return;
    }
    std::FILE* file = std::fopen(path, "wb");
    if (!file) {
        OrvaLog(kOrvaLogDebug, "EERROR: Save Image: %s\n", path);
        return;
    }
    const std::uint32_t paletteBytes = layout->headerSize - kTwDIBHeaderSize;
    unsigned char fileHeader[14] = {};
    writeUInt16(fileHeader, 19778); // "BM"
    writeUInt32(fileHeader + 2, std::uint32_t(54 + paletteBytes + layout->imageSize));
    writeUInt32(fileHeader + 10, 54 + paletteBytes);
    OrvaLog(kOrvaLogDebug, "Save Image: '%s'\n", path);
    OrvaLog(kOrvaLogDebug, "\t BitCount : %d\n", int(layout->bitCount));
    OrvaLog(kOrvaLogDebug, "\t Width    : %d\n", layout->width);
    OrvaLog(kOrvaLogDebug, "\t Height   : %d\n", layout->height);

    std::fwrite(fileHeader, 1, sizeof fileHeader, file);
    std::fwrite(dib, 1, layout->headerSize, file);
    const auto* rows = static_cast<const unsigned char*>(dib) + layout->headerSize;
    const bool swap = swapRGB && layout->bitCount == 24;
    std::vector<unsigned char> swapped(swap ? layout->stride : 0);
    // Memory holds the top row first; a BMP file the bottom row.
    for (std::int64_t row = layout->height - 1; row >= 0; --row) {
        const unsigned char* line = rows + std::uint64_t(row) * layout->stride;
        if (swap) {
            std::memcpy(swapped.data(), line, layout->stride);
            ByteSwapRGB(swapped.data(), std::size_t(layout->width) * 3);
            line = swapped.data();
        }
        std::fwrite(line, 1, layout->stride, file);
    }
    std::fclose(file);
}

void SaveProcessBMP(const void* dib, std::size_t length, std::uint8_t page, std::uint8_t step,
                    std::uint16_t index, std::uint8_t swapRGB) {
    const char* home = std::getenv("HOME");
    if (!home || !*home) {
        OrvaLog(kOrvaLogError, "ERROR: %s: HOME is not set\n", "SaveProcessBMP");
        return;
    }
    std::string folder = home;
    if (folder.back() != '/')
        folder += '/';
    folder += "Pictures/";
    char name[64];
    std::snprintf(name, sizeof name, "Page%d_%02x_%d.bmp", int(page), unsigned(step), int(index));
    SaveBMP(dib, length, (folder + name).c_str(), swapRGB);
}

std::optional<std::array<unsigned char, 14>> CreateBMPFileHeader(const void* dib, std::size_t length) {
    auto layout = TwDibLayoutOf(dib, length, "CreateBMPFileHeader");
    if (!layout)
        return std::nullopt;
    if (length > kMaxDIBBytes - 14) {
        OrvaLog(kOrvaLogError, "ERROR: %s: %zu bytes do not fit a bitmap file\n", "CreateBMPFileHeader",
                length);
        return std::nullopt;
    }
    // Deliberately by bit count alone, not by the palette the header implies.
    std::uint32_t pixelOffset = 54;
    if (layout->bitCount == 1)
        pixelOffset = 62;
    else if (layout->bitCount == 8)
        pixelOffset = 1078;
    std::array<unsigned char, 14> header{};
    writeUInt16(header.data(), 19778); // "BM"
    writeUInt32(header.data() + 2, std::uint32_t(length + 14));
    writeUInt32(header.data() + 10, pixelOffset);
    return header;
}

// ---- Bitmaps handed over -------------------------------------------------------------------------

TwOwnedDIB::TwOwnedDIB(void* dib, std::size_t length) : m_dib(dib), m_length(dib ? length : 0) {}

TwOwnedDIB TwOwnedDIB::copyOf(const void* dib, std::size_t length) {
    if (!dib || length == 0)
        return {};
    void* copy = std::malloc(length);
    if (!copy) {
        OrvaLog(kOrvaLogError, "ERROR: %s: no copy of %zu bytes can be allocated\n", "TwOwnedDIB::copyOf",
                length);
        return {};
    }
    std::memcpy(copy, dib, length);
    return TwOwnedDIB(copy, length);
}

TwOwnedDIB::~TwOwnedDIB() {
    std::free(m_dib);
}

TwOwnedDIB::TwOwnedDIB(TwOwnedDIB&& other) noexcept
    : m_dib(std::exchange(other.m_dib, nullptr)), m_length(std::exchange(other.m_length, 0)) {}

TwOwnedDIB& TwOwnedDIB::operator=(TwOwnedDIB&& other) noexcept {
    if (this != &other) {
        std::free(m_dib);
        m_dib = std::exchange(other.m_dib, nullptr);
        m_length = std::exchange(other.m_length, 0);
    }
    return *this;
}

void* TwOwnedDIB::release() {
    m_length = 0;
    return std::exchange(m_dib, nullptr);
}

// ---- Memory handles ------------------------------------------------------------------------------

TwHandle TwMemAlloc(std::uint32_t size) {
    auto handle = static_cast<TwHandle>(std::malloc(sizeof(void*)));
    if (handle)
        *handle = std::calloc(1, size);
    return handle;
}

void TwMemFree(TwHandle handle) {
    if (!handle)
        return;
    std::free(*handle);
    std::free(handle);
}

// ---- Byte rows -----------------------------------------------------------------------------------

void ByteCopy(const std::uint8_t* source, std::uint8_t* destination, std::size_t count) {
    if (source && destination && count)
        std::memmove(destination, source, count);
}

void ByteCopyReverse(const std::uint8_t* source, std::uint8_t* destination, std::size_t count) {
    if (!source || !destination)
        return;
    for (std::size_t i = 0; i < count; ++i)
        destination[i] = std::uint8_t(~source[i]);
}

void ByteCopyBitRev(const std::uint8_t* source, std::uint8_t* destination, std::size_t count) {
    if (!source || !destination)
        return;
    for (std::size_t i = 0; i < count; ++i)
        destination[i] = BitReverse[source[i]];
}

void ByteCopyBitRevReverse(const std::uint8_t* source, std::uint8_t* destination, std::size_t count) {
    if (!source || !destination)
        return;
    for (std::size_t i = 0; i < count; ++i)
        destination[i] = std::uint8_t(~BitReverse[source[i]]);
}

void ByteCopySwapRGB(const std::uint8_t* source, std::uint8_t* destination, std::size_t count) {
    if (!source || !destination)
        return;
    for (std::size_t i = 0; i + 3 <= count; i += 3) {
        const std::uint8_t first = source[i];
        destination[i] = source[i + 2];
        destination[i + 1] = source[i + 1];
        destination[i + 2] = first;
    }
}

void ByteSwapRGB(std::uint8_t* buffer, std::size_t count) {
    ByteCopySwapRGB(buffer, buffer, count);
}

void ByteSwapRGBLines(std::uint8_t* buffer, std::size_t lineBytes, std::size_t lines) {
    if (!buffer)
        return;
    for (std::size_t line = 0; line < lines; ++line)
        ByteSwapRGB(buffer + line * lineBytes, lineBytes);
}

void ByteCopy1bppTo8bpp(const std::uint8_t* source, std::uint8_t* destination, std::size_t count,
                        const TwRGBQuad palette[2]) {
    if (!source || !destination || !palette)
        return;
    const std::uint8_t clear = TwGreyLevel(palette[0].rgbBlue, palette[0].rgbGreen, palette[0].rgbRed);
    const std::uint8_t set = TwGreyLevel(palette[1].rgbBlue, palette[1].rgbGreen, palette[1].rgbRed);
    for (std::size_t i = 0; i < count; ++i)
        destination[i] = (source[i / 8] >> (7 - i % 8)) & 1 ? set : clear;
}

std::array<TwOwnedDIB, 2> TwTakePreviewPages(TwPreviewRecord* record, bool take) {
    std::array<TwOwnedDIB, 2> pages;
    if (!record)
        return pages;
    TwPreviewSide* sides[2] = {&record->front, &record->back};
    // The record is packed: its pointers are read and cleared by value, never by reference.
    void* const blocks[2] = {sides[0]->pDIB, sides[1]->pDIB};
    for (int i = 0; i < 2; ++i) {
        if (!blocks[i])
            continue;
        if (i == 1 && blocks[1] == blocks[0]) {
            OrvaLog(kOrvaLogError,
                    "ERROR: %s: the back image is the front's block; it is shown for both sides\n",
                    "TwTakePreviewPages");
            pages[1] = TwOwnedDIB::copyOf(pages[0].data(), pages[0].length());
        } else if (take) {
            pages[i] = TwOwnedDIB(blocks[i], sides[i]->imageLength);
        } else {
            pages[i] = TwOwnedDIB::copyOf(blocks[i], sides[i]->imageLength);
        }
    }
    if (take) {
        sides[0]->pDIB = nullptr;
        sides[1]->pDIB = nullptr;
    }
    return pages;
}
