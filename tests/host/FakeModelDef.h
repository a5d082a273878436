// A small model definition for the host tests: the six paper sources in the order the scanner
// family lists them, and one other list.
#pragma once

#include "VmxUI.h"

inline TwValue paperSourceEntry(int value, const char* display) {
    return TwValue::dictionary({{"value", value}, {"display", display}});
}

class FakeModelDef : public TwModelDefFile {
public:
    TwValue options = TwValue::dictionary(
        {{"PaperSourceAll",
          TwValue::array({paperSourceEntry(0, "ADF Front"), paperSourceEntry(2, "Flatbed"),
                          paperSourceEntry(3, "Auto Front"), paperSourceEntry(1, "ADF Duplex"),
                          paperSourceEntry(4, "Auto Duplex"), paperSourceEntry(5, "Passport")})},
         {"Resolution", TwValue::array({TwValue::dictionary({{"value", 300}, {"display", "300 dpi"}})})}});

    TwValue UIEnable() const override { return TwValue::dictionary(); }
    TwValue UIOptions() const override { return options; }
    TwValue UIControl() const override { return TwValue::dictionary(); }
    TwValue FeederADF() const override { return TwValue::dictionary(); }
    TwValue FeederFlatbed() const override { return TwValue::dictionary(); }
    double getPhysicalWidth() const override { return 8.5; }
    double getMinHeight() const override { return 2.0; }
};

inline TwValue capabilityValues(bool flatbed, bool passport) {
    return TwValue::dictionary(
        {{"ScanInfo", TwValue::dictionary({{"FlatbedConnected", flatbed},
                                           {"Support", TwValue::dictionary({{"Passport", passport}})}})},
         {"Data", TwValue::dictionary({{"Resolution", 200}, {"ImageType", 2}})},
         {"Default", TwValue::dictionary({{"Resolution", 200}})}});
}
