// The scan areas a setting carries, listed once: per side the main area and the sub-areas L1 to
// L3, each with the key paths of its working copies ("temp.Area.*", in the user's unit) and of the
// setting ("Data.Area.*", millimetres), its name, its switch, its brightness, its smallest size
// and the colour the preview draws it in. The model's area rules, the Area tab and the preview all
// read this table.
#pragma once

#include <array>
#include <cstdint>

// The id of the main area; sub-areas L1, L2 and L3 are 0, 1 and 2.
inline constexpr std::int16_t kTwMainAreaId = 1000;
inline constexpr int kTwSubAreaCount = 3;

// A colour as plain red, green and blue (the model has no graphics library).
struct TwAreaColour {
    std::uint8_t red;
    std::uint8_t green;
    std::uint8_t blue;
    bool operator==(const TwAreaColour&) const = default;
};

// One area of one side. The main areas of both sides share Y, width and length; only X is per
// side.
struct TwAreaInfo {
    std::int16_t id;           // kTwMainAreaId, or 0 ... 2 for L1 ... L3
    const char* nameKey;       // string-table key of the name the area list shows
    const char* enableKey;     // the area's switch
    const char* xKey;          // working copies, in the user's unit
    const char* yKey;          //
    const char* widthKey;      //
    const char* lengthKey;     //
    const char* brightnessKey; // empty for the main area
    TwAreaColour color;
    bool front;           // the side: true front, false back
    const char* dataXKey; // the setting, in millimetres
    const char* dataYKey; //
    const char* dataWidthKey;
    const char* dataLengthKey;
    float minWidth;  // millimetres
    float minLength; // millimetres

    bool subArea() const { return id != kTwMainAreaId; }
};

// Front main area, front L1 to L3, back main area, back L1 to L3.
extern const std::array<TwAreaInfo, 8> Comb_AreaInfo;

// The row of a side's area; null for an id the table does not have.
const TwAreaInfo* TwFindArea(bool front, std::int16_t id);
// The row of a side's area; the side's main area for an id the table does not have.
const TwAreaInfo& TwAreaRow(bool front, std::int16_t id);
