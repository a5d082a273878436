#include "SamplePage.h"

#include "ImageShared.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace {

struct Rgb {
    std::uint8_t r, g, b;
};

constexpr Rgb kPaper{255, 255, 255};
// Darker than the lowest dither threshold, so that text stays solid at 1 bit.
constexpr Rgb kInk{5, 5, 10};
constexpr Rgb kBlocks[] = {{220, 30, 30}, {30, 170, 60},  {30, 60, 200},
                           {0, 180, 200}, {200, 40, 160}, {240, 210, 0}};

// What counts for the ratios: a grey level below kDark is black, from kLight on white; a pixel whose
// channels lie more than kColourSpread apart is coloured.
constexpr int kDark = 64;
constexpr int kLight = 192;
constexpr int kColourSpread = 32;

// 5 x 7 glyphs, one byte a row, bit 4 the leftmost cell.
constexpr std::uint8_t kGlyphF[7] = {0x1F, 0x10, 0x10, 0x1E, 0x10, 0x10, 0x10};
constexpr std::uint8_t kGlyphB[7] = {0x1E, 0x11, 0x11, 0x1E, 0x11, 0x11, 0x1E};

// Thresholds of a 4 x 4 ordered dither, so that the 1-bit page shows the ramp and the photo as
// halftones instead of blocks.
constexpr std::uint8_t kBayer[4][4] = {
    {8, 136, 40, 168}, {200, 72, 232, 104}, {56, 184, 24, 152}, {248, 120, 216, 88}};

Rgb mix(Rgb a, Rgb b, double t) {
    auto channel = [t](int x, int y) {
        return std::uint8_t(std::lround(x + (y - x) * t));
    };
    return {channel(a.r, b.r), channel(a.g, b.g), channel(a.b, b.b)};
}

struct Span {
    int begin, end;
};

// Paints the page one row at a time; every position is a share of the page, so any paper size and
// resolution gives the same picture.
class PagePainter {
public:
    PagePainter(int width, int height, SampleSide side) : m_width(width), m_back(side == SampleSide::Back) {
        m_left = at(width, 0.08);
        m_right = at(width, 0.92);
        m_textTop = at(height, 0.06);
        m_linePitch = std::max(3, at(height, 0.03));
        m_barHeight = std::max(1, m_linePitch * 11 / 20);
        // The mark's seven rows end above the ramp also on a wide page.
        m_cell = std::max(1, std::min(at(width, 0.03), at(height, 0.036)));
        m_markLeft = m_right - 5 * m_cell;
        m_rampTop = at(height, 0.36);
        m_rampBottom = at(height, 0.42);
        m_blocksTop = at(height, 0.46);
        m_blocksBottom = at(height, 0.54);
        m_photoTop = at(height, 0.58);
        m_photoBottom = at(height, 0.92);
        makeWords(m_back ? 4 : 8);
    }

    void paintRow(int y, Rgb* row) const {
        std::fill(row, row + m_width, kPaper);
        paintText(y, row);
        paintMark(y, row);
        if (y >= m_rampTop && y < m_rampBottom)
            paintRamp(row);
        if (!m_back && y >= m_blocksTop && y < m_blocksBottom)
            paintBlocks(row);
        if (!m_back && y >= m_photoTop && y < m_photoBottom)
            paintPhoto(y, row);
    }

private:
    static int at(int extent, double share) { return int(std::lround(extent * share)); }

    void fill(Rgb* row, int begin, int end, Rgb colour) const {
        begin = std::clamp(begin, 0, m_width);
        end = std::clamp(end, begin, m_width);
        std::fill(row + begin, row + end, colour);
    }

    // Words of varied widths that end short of the mark; the last line of the paragraph is shorter.
    void makeWords(int lines) {
        const int textRight = m_markLeft - at(m_width, 0.06);
        const int gap = std::max(1, at(m_width, 0.015));
        const int shortest = std::max(1, at(m_width, 0.03));
        const int longest = std::max(shortest + 1, at(m_width, 0.11));
        std::uint32_t seed = m_back ? 0x9E3779B9u : 0x12345u;
        for (int line = 0; line < lines; ++line) {
            const int end = line == lines - 1 ? (m_left + textRight) / 2 : textRight;
            std::vector<Span> words;
            for (int x = m_left;;) {
                seed = seed * 1103515245u + 12345u;
                const int width = shortest + int((seed >> 16) % std::uint32_t(longest - shortest));
                if (x + width > end && !words.empty())
                    break; // a ragged right edge, as text has
                words.push_back({x, std::min(x + width, end)});
                x += width + gap;
            }
            m_words.push_back(std::move(words));
        }
    }

    void paintText(int y, Rgb* row) const {
        const int offset = y - m_textTop;
        if (offset < 0 || offset % m_linePitch >= m_barHeight)
            return;
        const std::size_t line = std::size_t(offset / m_linePitch);
        if (line >= m_words.size())
            return;
        for (const Span& word : m_words[line])
            fill(row, word.begin, word.end, kInk);
    }

    void paintMark(int y, Rgb* row) const {
        const int glyphRow = (y - m_textTop) / m_cell;
        if (y < m_textTop || glyphRow >= 7)
            return;
        const std::uint8_t bits = (m_back ? kGlyphB : kGlyphF)[glyphRow];
        for (int column = 0; column < 5; ++column)
            if (bits & (0x10 >> column))
                fill(row, m_markLeft + column * m_cell, m_markLeft + (column + 1) * m_cell, kInk);
    }

    // Sixteen steps from black to white.
    void paintRamp(Rgb* row) const {
        const int span = std::max(1, m_right - m_left);
        for (int x = m_left; x < m_right; ++x) {
            const auto grey = std::uint8_t((x - m_left) * 16 / span * 17);
            row[x] = {grey, grey, grey};
        }
    }

    void paintBlocks(Rgb* row) const {
        const int count = int(std::size(kBlocks));
        const int gap = std::max(1, at(m_width, 0.02));
        const int width = std::max(1, (m_right - m_left - (count - 1) * gap) / count);
        for (int i = 0; i < count; ++i) {
            const int begin = m_left + i * (width + gap);
            fill(row, begin, begin + width, kBlocks[i]);
        }
    }

    // A landscape: sky fading to the horizon, a hill, and a soft sun.
    void paintPhoto(int y, Rgb* row) const {
        const double v = double(y - m_photoTop) / std::max(1, m_photoBottom - m_photoTop);
        const double across = std::max(1, m_right - m_left);
        const double aspect = (m_photoBottom - m_photoTop) / across;
        for (int x = m_left; x < m_right; ++x) {
            const double u = (x - m_left) / across;
            const double horizon = 0.55 + 0.8 * (u - 0.35) * (u - 0.35);
            Rgb colour = v < horizon ? mix({60, 120, 200}, {250, 210, 160}, v / horizon)
                                     : mix({70, 140, 60}, {25, 70, 30}, (v - horizon) / (1 - horizon));
            const double du = u - 0.75, dv = (v - 0.25) * aspect;
            const double distance = std::sqrt(du * du + dv * dv) / 0.1;
            if (distance < 1) {
                const double f = 1 - distance;
                colour = mix(colour, {255, 235, 150}, std::min(1.0, f * f * (3 - 2 * f) * 1.6));
            }
            row[x] = colour;
        }
    }

    int m_width;
    bool m_back;
    int m_left, m_right;
    int m_textTop, m_linePitch, m_barHeight;
    int m_cell, m_markLeft;
    int m_rampTop, m_rampBottom, m_blocksTop, m_blocksBottom, m_photoTop, m_photoBottom;
    std::vector<std::vector<Span>> m_words;
};

struct PixelCounts {
    std::uint64_t colour = 0, dark = 0, light = 0;
};

// Writes one painted row in the bitmap's depth.
void storeRow(const Rgb* painted, int width, int y, int bitCount, unsigned char* out) {
    for (int x = 0; x < width; ++x) {
        const Rgb c = painted[x];
        const int grey = TwGreyLevel(c.b, c.g, c.r);
        switch (bitCount) {
        case 1:
            if (grey < kBayer[y % 4][x % 4])
                out[x / 8] |= std::uint8_t(0x80 >> (x % 8)); // palette entry 1, black
            break;
        case 8:
            out[x] = std::uint8_t(grey);
            break;
        default:
            out[3 * x] = c.b;
            out[3 * x + 1] = c.g;
            out[3 * x + 2] = c.r;
        }
    }
}

} // namespace

int SampleBitCount(SampleImageType type) {
    switch (type) {
    case SampleImageType::Binary:
        return 1;
    case SampleImageType::Gray:
        return 8;
    case SampleImageType::Color:
        break;
    }
    return 24;
}

SamplePage RenderSamplePage(const SampleScanSettings& settings, SampleSide side) {
    const double width = std::round(settings.widthMm * settings.dpi / 25.4);
    const double height = std::round(settings.lengthMm * settings.dpi / 25.4);
    const int bitCount = SampleBitCount(settings.type);
    if (!(width >= 1 && width <= kTwDIBMaxDimension && height >= 1 && height <= kTwDIBMaxDimension))
        return {};
    auto layout = TwDibLayoutFor(int(width), int(height), bitCount);
    if (!layout)
        return {};
    // Zeroed: 1-bit rows are built by setting bits, and padding stays zero.
    auto* dib = static_cast<unsigned char*>(std::calloc(1, layout->totalSize()));
    if (!dib)
        return {};
    SetDIBHeader(dib, layout->width, layout->height, 0, settings.dpi, std::uint16_t(bitCount));

    const PagePainter painter(layout->width, layout->height, side);
    std::vector<Rgb> row(std::size_t(layout->width));
    for (int y = 0; y < layout->height; ++y) {
        painter.paintRow(y, row.data());
        storeRow(row.data(), layout->width, y, bitCount,
                 dib + layout->headerSize + std::size_t(y) * layout->stride);
    }
    SamplePage page;
    page.dib = dib;
    page.length = std::uint32_t(layout->totalSize());
    SampleMeasureRatios(page);
    return page;
}

void SampleMeasureRatios(SamplePage& page) {
    const auto layout = TwDibLayoutOf(page.dib, page.length, "SampleMeasureRatios");
    if (!layout)
        return;
    const auto* rows = static_cast<const unsigned char*>(page.dib) + layout->headerSize;
    PixelCounts counts;
    for (int y = 0; y < layout->height; ++y) {
        const unsigned char* row = rows + std::size_t(y) * layout->stride;
        for (int x = 0; x < layout->width; ++x) {
            if (layout->bitCount == 1) {
                const bool black = (row[x / 8] >> (7 - x % 8)) & 1; // palette entry 1 is black
                counts.dark += black;
                counts.light += !black;
                continue;
            }
            const unsigned char* p = row + std::size_t(x) * (layout->bitCount / 8);
            const int grey = layout->bitCount == 8 ? p[0] : TwGreyLevel(p[0], p[1], p[2]);
            counts.dark += grey < kDark;
            counts.light += grey >= kLight;
            if (layout->bitCount == 24)
                counts.colour +=
                    (std::max({p[0], p[1], p[2]}) - std::min({p[0], p[1], p[2]})) > kColourSpread;
        }
    }
    const double pixels = double(layout->width) * layout->height;
    page.colorRatio = 100.0 * double(counts.colour) / pixels;
    page.blackRatio = 100.0 * double(counts.dark) / pixels;
    page.whiteRatio = 100.0 * double(counts.light) / pixels;
}

bool RenderSamplePrescan(const SampleScanSettings& settings, TwPreviewRecord* record) {
    if (!record)
        return false;
    auto store = [](const SamplePage& page, TwPreviewSide& side) {
        side.imageLength = page.length;
        side.pDIB = page.dib;
        side.colorRatio = page.colorRatio;
        side.blackRatio = page.blackRatio;
        side.whiteRatio = page.whiteRatio;
    };
    *record = {};
    store(RenderSamplePage(settings, SampleSide::Front), record->front);
    if (settings.duplex)
        store(RenderSamplePage(settings, SampleSide::Back), record->back);
    if (record->front.pDIB && (!settings.duplex || record->back.pDIB))
        return true;
    std::free(record->front.pDIB);
    std::free(record->back.pDIB);
    *record = {};
    return false;
}
