// What a SANE device offers, read from its options, and how that becomes the model definition and
// the capability values the data source hands to the module (docs/SANE.md has the table).
#pragma once

#include "TwValue.h"

#include <optional>
#include <string>
#include <vector>

class SaneDevice;
struct SaneConstraint;

// The sample's paper sources (the values of its model definition).
constexpr int kSourceFeeder = 0;
constexpr int kSourceDuplex = 1;
constexpr int kSourceFlatbed = 2;
// The paper that is the device's whole scan area.
constexpr int kWholeAreaPaper = 1000;

struct SaneSource {
    int paperSource = kSourceFlatbed;
    std::string deviceName; // the "source" option's value; empty without that option
    double maxWidthMm = 0;
    double maxLengthMm = 0;
};

struct SaneImageMode {
    int imageType = 1;      // 0 black and white, 1 grayscale, 2 colour
    std::string deviceMode; // the "mode" option's value; empty without that option
    int depth = 0;          // written to "depth" when not 0
};

struct SaneTraits {
    std::string productName;
    std::vector<int> resolutions;
    int resolution = 0; // the device's own, when it has one
    int prescanResolution = 0;
    bool resolutionSettable = false;
    std::vector<SaneImageMode> modes;
    bool modeSettable = false;
    std::vector<SaneSource> sources;
    bool sourceSettable = false;
    bool geometry = false; // tl-x, tl-y, br-x, br-y in millimetres
};

struct SaneMapping {
    TwValue modelDef;     // the model definition's root (UIOptions, UIControl, feeder limits, ...)
    TwValue capabilities; // ScanInfo, Data and Default sections
    std::string refusal;  // why the device cannot be offered; empty when it can
};

// Reads the device's options; sources are selected in turn to learn each one's area, then the
// device's own source is put back.
SaneTraits ReadSaneTraits(SaneDevice& device, const std::string& productName);

// The resolutions offered for a list or a range: the list itself, or the usual steps within the
// range (a range of one value gives that value; a range without usual steps its two ends).
std::vector<int> SaneResolutionChoices(const SaneConstraint& constraint);
// The prescan resolution: 100 dpi when the device takes it, else the highest it takes from 75 to
// 100, else the one it takes nearest to 100.
int SanePrescanResolution(const SaneConstraint& constraint);
// The sample's image type of a mode name (Lineart, Gray, Color and their other spellings), or none.
std::optional<int> SaneImageTypeOfMode(const std::string& mode);
// The sample's paper source of a source name (Flatbed, ADF, ADF Duplex, ...), or none.
std::optional<int> SanePaperSourceOf(const std::string& source);

// The bundle's model definition and capability values fitted to the device.
SaneMapping MapSaneTraits(const SaneTraits& traits, const TwValue& modelDef, const TwValue& capabilities);
