// Tone tables of the custom gamma editor: one 256-byte table per channel from a gamma value and a
// black and a white clip point, the mapping between a gamma slider's position and its gamma, and
// the conversion of a BMP file's pixels through the tables.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

using TwGammaTable = std::array<std::uint8_t, 256>;

// The three tables the editor shows; monochrome presets use the red one for all three.
struct TwGammaTables {
    TwGammaTable red;
    TwGammaTable green;
    TwGammaTable blue;
};

// Slider positions run from 0 to 80, 40 being gamma 1.0; gammas from 0.2 to 5.0.
inline constexpr int kTwGammaSliderMax = 80;
inline constexpr double kTwGammaMin = 0.2;
inline constexpr double kTwGammaMax = 5.0;

// Levels at or below black give 0, levels at or above white give 255; in between
// ((level - black) / (white - black)) ^ (1 / gamma) x 255, truncated. With black equal to white
// every level above black saturates. A white point below the black point, or a gamma that is not a
// positive number, makes no number of the power: such levels give 0.
void makeGammaData(TwGammaTable& table, std::uint8_t black, std::uint8_t white, double gamma);

// The identity of the curve's neutral state: black 0, white 255, gamma 1.0.
TwGammaTable TwIdentityGammaTable();

// 40 is 1.0; below it 0.02 per step (0 is 0.2), above it 0.1 per step (80 is 5.0).
double TwGammaFromSliderPosition(int position);
// The nearest position: within 0.001 of 1.0 is 40; below 0.2 is 0; above 5.0 counts as 5.0.
int TwSliderPositionFromGamma(double gamma);

// Puts the pixels of a whole BMP file (14-byte file header, then the bitmap) through the tables:
// a 24-bit pixel's bytes through blue, green and red, an 8-bit pixel's byte through blue. Any
// other depth is left as it is. A file whose header does not describe a bitmap lying within the
// buffer is refused (logged) and left untouched. True when pixels were converted.
bool gammaConvert(unsigned char* file, std::size_t length, const TwGammaTables& tables);
