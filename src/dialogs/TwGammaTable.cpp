#include "TwGammaTable.h"

#include "ImageShared.h"
#include "OrvaDebug.h"

#include <algorithm>
#include <cmath>

namespace {
constexpr std::size_t kFileHeaderSize = 14;
constexpr int kNeutralPosition = kTwGammaSliderMax / 2;
} // namespace

void makeGammaData(TwGammaTable& table, std::uint8_t black, std::uint8_t white, double gamma) {
    const int range = int(white) - int(black);
    for (int i = 0; i < 256; ++i) {
        const int t = i - int(black);
        if (t < 0) {
            table[std::size_t(i)] = 0;
            continue;
        }
        double x = t;
        if (range != 0)
            x /= range;
        double v = std::pow(x, 1.0 / gamma) * 255.0;
        if (v > 255.0)
            v = 255.0;
        // Not a number, or below zero (a white point under the black point): nothing to show.
        table[std::size_t(i)] = std::isnan(v) || v < 0.0 ? 0 : std::uint8_t(v);
    }
}

TwGammaTable TwIdentityGammaTable() {
    TwGammaTable table;
    makeGammaData(table, 0, 255, 1.0);
    return table;
}

double TwGammaFromSliderPosition(int position) {
    if (position == kNeutralPosition)
        return 1.0;
    if (position < kNeutralPosition)
        return 1.0 - (kNeutralPosition - position) * 0.02;
    return 1.0 + (position - kNeutralPosition) * 0.1;
}

int TwSliderPositionFromGamma(double gamma) {
    if (std::isnan(gamma))
        return kNeutralPosition;
    if (std::fabs(gamma - 1.0) <= 0.001)
        return kNeutralPosition;
    if (gamma <= 1.0) {
        if (gamma < kTwGammaMin)
            return 0;
        return std::max(0, kNeutralPosition - int((1.0 - gamma) / 0.02 + 0.5));
    }
    gamma = std::min(gamma, kTwGammaMax);
    return kNeutralPosition + int((gamma - 1.0) / 0.1 + 0.5);
}

bool gammaConvert(unsigned char* file, std::size_t length, const TwGammaTables& tables) {
    if (!file || length <= kFileHeaderSize) {
        OrvaLog(kOrvaLogError, "ERROR: %s: %zu bytes are no bitmap file\n", "gammaConvert", length);
        return false;
    }
    unsigned char* dib = file + kFileHeaderSize;
    const std::size_t dibLength = length - kFileHeaderSize;
    auto layout = TwDibLayoutOf(dib, dibLength, "gammaConvert");
    if (!layout)
        return false;
    if (layout->bitCount != 8 && layout->bitCount != 24)
        return false;
    unsigned char* bits = FindDIBBits(dib, dibLength);
    if (!bits)
        return false;
    const std::size_t bytesPerRow = std::size_t(layout->width) * (layout->bitCount / 8);
    for (std::int32_t y = 0; y < layout->height; ++y) {
        unsigned char* p = bits + std::size_t(y) * layout->stride;
        if (layout->bitCount == 24) {
            for (std::size_t x = 0; x < bytesPerRow; x += 3) {
                p[x] = tables.blue[p[x]];
                p[x + 1] = tables.green[p[x + 1]];
                p[x + 2] = tables.red[p[x + 2]];
            }
        } else {
            for (std::size_t x = 0; x < bytesPerRow; ++x)
                p[x] = tables.blue[p[x]];
        }
    }
    return true;
}
