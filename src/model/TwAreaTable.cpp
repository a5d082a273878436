#include "TwAreaTable.h"

namespace {
constexpr TwAreaColour kRed{255, 0, 0};
constexpr TwAreaColour kCyan{0, 255, 255};
constexpr TwAreaColour kBlue{0, 0, 255};
constexpr TwAreaColour kMagenta{255, 0, 255};
constexpr float kMainMinimum = 10.0f; // millimetres
constexpr float kSubMinimum = 2.0f;   // millimetres
} // namespace

const std::array<TwAreaInfo, 8> Comb_AreaInfo = {{
    {kTwMainAreaId, "IDS_AREA_MAIN", "enable.Area.Front", "temp.Area.Front.X", "temp.Area.Y",
     "temp.Area.Width", "temp.Area.Length", "", kRed, true, "Data.Area.Measure.Front.X",
     "Data.Area.Measure.Y", "Data.Area.Measure.Width", "Data.Area.Measure.Length", kMainMinimum,
     kMainMinimum},
    {0, "IDS_AREA_SUB1", "Data.Area.Front.L1.Enable", "temp.Area.Front.L1.X", "temp.Area.Front.L1.Y",
     "temp.Area.Front.L1.Width", "temp.Area.Front.L1.Length", "Data.Area.Front.L1.Brightness", kCyan, true,
     "Data.Area.Measure.Front.L1.X", "Data.Area.Measure.Front.L1.Y", "Data.Area.Measure.Front.L1.Width",
     "Data.Area.Measure.Front.L1.Length", kSubMinimum, kSubMinimum},
    {1, "IDS_AREA_SUB2", "Data.Area.Front.L2.Enable", "temp.Area.Front.L2.X", "temp.Area.Front.L2.Y",
     "temp.Area.Front.L2.Width", "temp.Area.Front.L2.Length", "Data.Area.Front.L2.Brightness", kBlue, true,
     "Data.Area.Measure.Front.L2.X", "Data.Area.Measure.Front.L2.Y", "Data.Area.Measure.Front.L2.Width",
     "Data.Area.Measure.Front.L2.Length", kSubMinimum, kSubMinimum},
    {2, "IDS_AREA_SUB3", "Data.Area.Front.L3.Enable", "temp.Area.Front.L3.X", "temp.Area.Front.L3.Y",
     "temp.Area.Front.L3.Width", "temp.Area.Front.L3.Length", "Data.Area.Front.L3.Brightness", kMagenta, true,
     "Data.Area.Measure.Front.L3.X", "Data.Area.Measure.Front.L3.Y", "Data.Area.Measure.Front.L3.Width",
     "Data.Area.Measure.Front.L3.Length", kSubMinimum, kSubMinimum},
    {kTwMainAreaId, "IDS_AREA_MAIN", "enable.Area.Back", "temp.Area.Back.X", "temp.Area.Y", "temp.Area.Width",
     "temp.Area.Length", "", kRed, false, "Data.Area.Measure.Back.X", "Data.Area.Measure.Y",
     "Data.Area.Measure.Width", "Data.Area.Measure.Length", kMainMinimum, kMainMinimum},
    {0, "IDS_AREA_SUB1", "Data.Area.Back.L1.Enable", "temp.Area.Back.L1.X", "temp.Area.Back.L1.Y",
     "temp.Area.Back.L1.Width", "temp.Area.Back.L1.Length", "Data.Area.Back.L1.Brightness", kCyan, false,
     "Data.Area.Measure.Back.L1.X", "Data.Area.Measure.Back.L1.Y", "Data.Area.Measure.Back.L1.Width",
     "Data.Area.Measure.Back.L1.Length", kSubMinimum, kSubMinimum},
    {1, "IDS_AREA_SUB2", "Data.Area.Back.L2.Enable", "temp.Area.Back.L2.X", "temp.Area.Back.L2.Y",
     "temp.Area.Back.L2.Width", "temp.Area.Back.L2.Length", "Data.Area.Back.L2.Brightness", kBlue, false,
     "Data.Area.Measure.Back.L2.X", "Data.Area.Measure.Back.L2.Y", "Data.Area.Measure.Back.L2.Width",
     "Data.Area.Measure.Back.L2.Length", kSubMinimum, kSubMinimum},
    {2, "IDS_AREA_SUB3", "Data.Area.Back.L3.Enable", "temp.Area.Back.L3.X", "temp.Area.Back.L3.Y",
     "temp.Area.Back.L3.Width", "temp.Area.Back.L3.Length", "Data.Area.Back.L3.Brightness", kMagenta, false,
     "Data.Area.Measure.Back.L3.X", "Data.Area.Measure.Back.L3.Y", "Data.Area.Measure.Back.L3.Width",
     "Data.Area.Measure.Back.L3.Length", kSubMinimum, kSubMinimum},
}};

const TwAreaInfo* TwFindArea(bool front, std::int16_t id) {
    for (const TwAreaInfo& row : Comb_AreaInfo)
        if (row.front == front && row.id == id)
            return &row;
    return nullptr;
}

const TwAreaInfo& TwAreaRow(bool front, std::int16_t id) {
    const TwAreaInfo* row = TwFindArea(front, id);
    return row ? *row : *TwFindArea(front, kTwMainAreaId);
}
