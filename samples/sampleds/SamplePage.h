// The page the simulated scanner scans, rendered straight into device-independent bitmaps as a data
// source delivers them: the front has a few lines of text, a gray ramp, colour blocks and a
// photo-like gradient under an "F"; the back fewer lines and the ramp under a "B".
#pragma once

#include "VmxUI.h"

#include <cstdint>

enum class SampleImageType { Binary, Gray, Color };
enum class SampleSide { Front, Back };

struct SampleScanSettings {
    double widthMm = 210;  // across the feed, in the current orientation
    double lengthMm = 297; // along the feed
    int dpi = 100;
    SampleImageType type = SampleImageType::Color;
    bool duplex = false;
};

// One side: a bitmap made with malloc (rows top-down, padded to 4 bytes, pixels per metre from the
// resolution; 1 bit with a white-then-black palette, 8 bits grey, 24 bits BGR) and the shares of its
// pixels in percent: colour (channels apart), black (dark) and white (light).
struct SamplePage {
    void* dib = nullptr;
    std::uint32_t length = 0;
    double colorRatio = 0;
    double blackRatio = 0;
    double whiteRatio = 0;
};

int SampleBitCount(SampleImageType type);

// The side at that size, resolution and depth; no bitmap when the size gives none (beyond
// 65535 pixels a side) or memory runs out.
SamplePage RenderSamplePage(const SampleScanSettings& settings, SampleSide side);

// Counts the colour, black and white shares of a finished bitmap (1, 8 or 24 bits) into page.
void SampleMeasureRatios(SamplePage& page);

// Fills a zeroed preview record as a data source answers a prescan: the front, and the back when
// duplex. False, with the record left empty, when a side cannot be rendered. Whoever takes the
// record frees the bitmaps with free().
bool RenderSamplePrescan(const SampleScanSettings& settings, TwPreviewRecord* record);
