// Device-independent bitmaps (DIB) in memory and as BMP files: the image toolkit shared with the
// data source side.
//
// A DIB in memory is a 40-byte info header, then a palette of 4 << bitcount bytes for up to 8 bits
// per pixel, then the pixel rows, each padded to whole 32-bit words, first row first (top-down).
// Little-endian throughout, as the Windows BMP format.
//
// Every function that reads a bitmap handed over by the data source takes the length of the buffer
// it came in, and refuses (log line at level 1 naming the function) a header that does not describe
// a bitmap lying wholly inside that buffer: header size 40, width and height 1 ... 65535, bit count
// 1, 4, 8, 24 or 32, palette and rows within the length, at most 4 GB in all. A null bitmap is no
// bitmap: the described "none" result, without a log line.
#pragma once

#include "VmxUI.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <utility>
#include <vector>

struct TwBitmapInfoHeader {
    std::uint32_t biSize;
    std::int32_t biWidth;
    std::int32_t biHeight;
    std::uint16_t biPlanes;
    std::uint16_t biBitCount;
    std::uint32_t biCompression;
    std::uint32_t biSizeImage;
    std::int32_t biXPelsPerMeter;
    std::int32_t biYPelsPerMeter;
    std::uint32_t biClrUsed;
    std::uint32_t biClrImportant;
};
static_assert(sizeof(TwBitmapInfoHeader) == 40, "the info header is 40 bytes");

// A palette entry.
struct TwRGBQuad {
    std::uint8_t rgbBlue;
    std::uint8_t rgbGreen;
    std::uint8_t rgbRed;
    std::uint8_t rgbReserved;
};

constexpr std::uint32_t kTwDIBHeaderSize = 40;
// Largest width and height a bitmap may claim.
constexpr std::int32_t kTwDIBMaxDimension = 65535;

// Where the parts of a bitmap lie.
struct TwDibLayout {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::uint16_t bitCount = 0;
    std::uint32_t headerSize = 0; // info header plus palette: where the rows begin
    std::uint32_t stride = 0;     // bytes per row
    std::uint64_t imageSize = 0;  // stride x height
    std::uint64_t totalSize() const { return headerSize + imageSize; }
};

// The layout of a bitmap of that size and depth; nothing for a width or height outside
// 1 ... 65535, an unknown bit count or more than 4 GB in all.
std::optional<TwDibLayout> TwDibLayoutFor(std::int32_t width, std::int32_t height, int bitCount);
// The layout of the bitmap at dib when it lies within length bytes; otherwise nothing, logged at
// level 1 with caller's name (nothing is logged for a null dib).
std::optional<TwDibLayout> TwDibLayoutOf(const void* dib, std::size_t length, const char* caller);

// The grey level of a colour, 0.114 B + 0.587 G + 0.299 R rounded, in 24-bit fixed point.
std::uint8_t TwGreyLevel(std::uint8_t blue, std::uint8_t green, std::uint8_t red);

// ---- Sizes ---------------------------------------------------------------------------------------

// Header plus palette; 0 for no bitmap or a refused one.
std::uint32_t GetDIBHeaderSize(const void* dib, std::size_t length);
// The first pixel row; null for no bitmap or a refused one.
unsigned char* FindDIBBits(void* dib, std::size_t length);
const unsigned char* FindDIBBits(const void* dib, std::size_t length);
// Header, palette and rows; 0 for no bitmap or a refused one.
std::uint32_t GetDIBSize(const void* dib, std::size_t length);
// What to allocate for a bitmap that may still grow: header and palette, then 1 % more rows than
// asked, each row four times the packed row for 1 bit. Only the low byte of the bit count counts.
// 0 for a negative width or height and for a size beyond 32 bits.
std::uint32_t GetDIBSizeDirect(std::uint32_t bitCount, std::int32_t width, std::int32_t height);
// Width and height in millimetres from the pixels per metre: tenths of a millimetre rounded, times
// 0.1. Nothing for no bitmap, a refused one or one without a resolution.
std::optional<std::pair<double, double>> GetDIBSizeMillimetres(const void* dib, std::size_t length);

// ---- Making bitmaps ------------------------------------------------------------------------------

// malloc of GetDIBSizeDirect; null when that is 0 or malloc fails. The caller frees with free().
void* AllocDIBMemory(std::uint32_t bitCount, std::int32_t width, std::int32_t length);
// AllocDIBMemory, tried up to 64 times with 5 seconds of sleep after each failure: may block for
// over five minutes before it answers null.
void* AllocDIBMemoryWait(std::uint32_t bitCount, std::int32_t width, std::int32_t length);
// What AllocDIBMemoryWait sleeps with (seconds); null puts back ::sleep. For tests.
using TwDIBSleepFunction = void (*)(unsigned seconds);
void SetDIBAllocSleep(TwDIBSleepFunction sleepFunction);
// Fills the info header and the palette of the bitmap at header, which the caller made large
// enough (AllocDIBMemory). Pixels per metre from the resolution in dots per inch, rounded. The
// fourth argument is not used. Palettes: 1 bit white then black; 4 and 8 bits a grey ramp.
void SetDIBHeader(void* header, std::int32_t width, std::int32_t height, std::int32_t unused,
                  std::int32_t dpi, std::uint16_t bitCount);

// A new 24-bit bitmap with the rows of dib, which holds packed rows of width x 3 bytes right after
// its header, padded to whole words. Null for no bitmap, a refused one or a failed allocation;
// the caller frees with free().
void* AlignBitmap(const void* dib, std::size_t length);
// The inverse for a 24-bit bitmap with padded rows: packs each row down to width x 3 bytes, into
// destination (pixel rows only, no header) when one is given, else in place. Rows that have no
// padding are left as they are, and destination is then not written. False when refused.
bool unAlignBitmap(void* dib, std::size_t length, unsigned char* destination = nullptr,
                   std::size_t destinationLength = 0);

// ---- Files ---------------------------------------------------------------------------------------

// Writes dib as a BMP file, bottom row first. With swapRGB set a 24-bit bitmap's first and third
// bytes of each pixel are exchanged on the way. A file that cannot be opened is logged at level 6.
void SaveBMP(const void* dib, std::size_t length, const char* path, std::uint8_t swapRGB);
// For diagnosis: SaveBMP to "$HOME/Pictures/Page<page>_<step in hex>_<index>.bmp".
void SaveProcessBMP(const void* dib, std::size_t length, std::uint8_t page, std::uint8_t step,
                    std::uint16_t index, std::uint8_t swapRGB);
// The 14-byte file header that makes dib, put right behind it, a BMP file: "BM", size length + 14,
// pixels at 62 for 1 bit, 1078 for 8 bits, 54 for anything else, whatever the palette. Nothing for
// no bitmap or a refused one.
std::optional<std::array<unsigned char, 14>> CreateBMPFileHeader(const void* dib, std::size_t length);

// A bitmap the data source handed over, owned from then on: freed with free() when dropped, as the
// data source allocated it with malloc().
class TwOwnedDIB {
public:
    TwOwnedDIB() = default;
    // Takes the block; a null one is no bitmap.
    TwOwnedDIB(void* dib, std::size_t length);
    // A copy of a bitmap whose owner keeps it; no bitmap when it cannot be allocated (logged).
    static TwOwnedDIB copyOf(const void* dib, std::size_t length);
    ~TwOwnedDIB();
    TwOwnedDIB(TwOwnedDIB&& other) noexcept;
    TwOwnedDIB& operator=(TwOwnedDIB&& other) noexcept;
    TwOwnedDIB(const TwOwnedDIB&) = delete;
    TwOwnedDIB& operator=(const TwOwnedDIB&) = delete;

    const void* data() const { return m_dib; }
    void* data() { return m_dib; }
    std::size_t length() const { return m_length; }
    explicit operator bool() const { return m_dib != nullptr; }
    // Gives the block up: the caller frees it with free(). No bitmap is left.
    void* release();

private:
    void* m_dib = nullptr;
    std::size_t m_length = 0;
};

// The two bitmaps of a preview record as bitmaps of our own: taken as they are (the data source made
// them with malloc; they are freed with free) or, when the record's owner keeps them, copied. A
// data source that gives the same block for both sides hands over one block: it is freed once and
// its page given for both (logged). The record's pointers are cleared when taken.
std::array<TwOwnedDIB, 2> TwTakePreviewPages(TwPreviewRecord* record, bool take);
// Frees the bitmaps of a record that will not be shown, and clears its pointers.
inline void TwReleasePreviewPages(TwPreviewRecord* record) {
    TwTakePreviewPages(record, true);
}

// ---- Memory handles ------------------------------------------------------------------------------

// A handle is a block holding one pointer to a zero-filled data block.
using TwHandle = void**;
// Null only when the handle itself cannot be allocated; its data is null when the block cannot.
TwHandle TwMemAlloc(std::uint32_t size);
void TwMemFree(TwHandle handle);

// ---- Byte rows -----------------------------------------------------------------------------------
// Each touches exactly count bytes of its destination, or count / 3 whole pixels.

// Each byte with its bit order reversed.
extern const std::array<std::uint8_t, 256> BitReverse;

void ByteCopy(const std::uint8_t* source, std::uint8_t* destination, std::size_t count);
void ByteCopyReverse(const std::uint8_t* source, std::uint8_t* destination, std::size_t count);
void ByteCopyBitRev(const std::uint8_t* source, std::uint8_t* destination, std::size_t count);
void ByteCopyBitRevReverse(const std::uint8_t* source, std::uint8_t* destination, std::size_t count);
void ByteCopySwapRGB(const std::uint8_t* source, std::uint8_t* destination, std::size_t count);
void ByteSwapRGB(std::uint8_t* buffer, std::size_t count);
void ByteSwapRGBLines(std::uint8_t* buffer, std::size_t lineBytes, std::size_t lines);
// Expands count 1-bit pixels (most significant bit first) to one byte each: the grey level of
// palette[1] for a set bit, of palette[0] for a clear one.
void ByteCopy1bppTo8bpp(const std::uint8_t* source, std::uint8_t* destination, std::size_t count,
                        const TwRGBQuad palette[2]);
