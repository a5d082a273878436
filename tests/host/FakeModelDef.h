// A small model definition for the host tests: the six paper sources in the order the scanner
// family lists them, and one other list.
#pragma once

#include "TestSupport.h"

inline TestModelDef hostModelDef() {
    TestModelDef def;
    def.options = dict({{"PaperSourceAll",
                         array({choice(0, "ADF Front"), choice(2, "Flatbed"), choice(3, "Auto Front"),
                                choice(1, "ADF Duplex"), choice(4, "Auto Duplex"), choice(5, "Passport")})},
                        {"Resolution", array({choice(300, "300 dpi")})}});
    def.adf = dict();
    return def;
}

inline TwValue capabilityValues(bool flatbed, bool passport) {
    return dict(
        {{"ScanInfo", dict({{"FlatbedConnected", flatbed}, {"Support", dict({{"Passport", passport}})}})},
         {"Data", dict({{"Resolution", 200}, {"ImageType", 2}})},
         {"Default", dict({{"Resolution", 200}})}});
}
