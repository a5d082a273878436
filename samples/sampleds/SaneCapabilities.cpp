#include "SaneCapabilities.h"

#include "SaneDevice.h"

#include <sane/saneopts.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>

namespace {
constexpr double kMmPerInch = 25.4;
// A frame of unknown length (a hand scanner) is offered as long as an A4 page.
constexpr double kUnknownLengthMm = 297;
// A paper fits when it is no larger than the area by more than this (rounding of the device's mm).
constexpr double kFitSlackMm = 0.5;
constexpr int kUsualResolutions[] = {50, 75, 100, 150, 200, 240, 300, 400, 600, 1200, 2400, 4800};

std::string lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return char(std::tolower(c)); });
    return s;
}

bool contains(const std::string& text, const char* part) {
    return text.find(part) != std::string::npos;
}

// Whether the range takes v (within its ends, on its steps).
bool rangeTakes(const SaneConstraint& c, double v) {
    if (!c.min || !c.max || v < *c.min - 1e-9 || v > *c.max + 1e-9)
        return false;
    const double quant = c.quant.value_or(0);
    if (quant <= 0)
        return true;
    const double steps = (v - *c.min) / quant;
    return std::abs(steps - std::round(steps)) < 1e-6;
}

// The widest and longest the device scans with its options as they stand, in millimetres.
std::pair<double, double> measureArea(const SaneDevice& device, bool geometry) {
    if (geometry) {
        auto extent = [&](const char* from, const char* to) {
            const auto a = device.constraint(from), b = device.constraint(to);
            auto lowest = [](const SaneConstraint& c) {
                return c.min               ? *c.min
                       : c.numbers.empty() ? 0.0
                                           : *std::min_element(c.numbers.begin(), c.numbers.end());
            };
            auto highest = [](const SaneConstraint& c) {
                return c.max               ? *c.max
                       : c.numbers.empty() ? 0.0
                                           : *std::max_element(c.numbers.begin(), c.numbers.end());
            };
            return a && b ? std::max(0.0, highest(*b) - lowest(*a)) : 0.0;
        };
        return {extent(SANE_NAME_SCAN_TL_X, SANE_NAME_SCAN_BR_X),
                extent(SANE_NAME_SCAN_TL_Y, SANE_NAME_SCAN_BR_Y)};
    }
    // Without geometry options the frame itself says how large it is.
    const auto p = device.parameters();
    const double dpi = device.number(SANE_NAME_SCAN_RESOLUTION).value_or(0);
    if (!p || dpi <= 0 || p->pixels_per_line <= 0)
        return {0, 0};
    return {p->pixels_per_line / dpi * kMmPerInch,
            p->lines > 0 ? p->lines / dpi * kMmPerInch : kUnknownLengthMm};
}

TwValue ensureDict(const TwValue& parent, const std::string& key) {
    TwValue child = parent.dict()->value(key);
    if (!child.isDictionary()) {
        child = TwValue::dictionary();
        parent.dict()->set(key, child);
    }
    return child;
}

// The display text the bundle gives that value in a choice list, or fallback.
std::string displayOf(const TwValue& list, int value, const std::string& fallback) {
    if (auto entries = list.list())
        for (const TwValue& entry : *entries)
            if (auto d = entry.dict(); d && d->value("value").isNumber() &&
                                       d->value("value").intValue() == value &&
                                       d->value("display").isString())
                return *d->value("display").str();
    return fallback;
}

std::string millimetres(double mm) {
    char text[32];
    std::snprintf(text, sizeof text, "%.0f", mm);
    return text;
}

TwValue paperEntry(int value, const std::string& display, double widthMm, double lengthMm) {
    return TwValue::dictionary({{"value", value},
                                {"display", display},
                                {"mmWidth", int(std::lround(widthMm * 10))},
                                {"mmLength", int(std::lround(lengthMm * 10))},
                                {"pxLength", int(std::lround(lengthMm / kMmPerInch * 600))}});
}

TwValue limits(const TwValue& base, double widthMm, double lengthMm) {
    auto inches = [&](const char* key, double fallback) {
        const TwValue v = base.dict() ? base.dict()->value(key) : TwValue();
        return v.isNumber() ? v.doubleValue() : fallback;
    };
    const double maxWidth = widthMm / kMmPerInch, maxLength = lengthMm / kMmPerInch;
    return TwValue::dictionary({{"MinWidth", std::min(inches("MinWidth", 0.5), maxWidth)},
                                {"MinHeight", std::min(inches("MinHeight", 0.5), maxLength)},
                                {"MaxWidth", maxWidth},
                                {"MaxHeight", maxLength}});
}
} // namespace

std::optional<int> SaneImageTypeOfMode(const std::string& mode) {
    const std::string m = lower(mode);
    if (contains(m, "lineart") || contains(m, "line art") || contains(m, "binary") ||
        contains(m, "halftone") || contains(m, "black") || contains(m, "mono"))
        return 0;
    if (contains(m, "gray") || contains(m, "grey"))
        return 1;
    if (contains(m, "color") || contains(m, "colour"))
        return 2;
    return std::nullopt;
}

std::optional<int> SanePaperSourceOf(const std::string& source) {
    const std::string s = lower(source);
    if (contains(s, "duplex") || contains(s, "both"))
        return kSourceDuplex;
    if (contains(s, "adf") || contains(s, "feeder") || contains(s, "front"))
        return kSourceFeeder;
    if (contains(s, "flatbed") || contains(s, "platen") || contains(s, "glass") || contains(s, "normal"))
        return kSourceFlatbed;
    return std::nullopt;
}

std::vector<int> SaneResolutionChoices(const SaneConstraint& c) {
    std::vector<int> choices;
    auto add = [&](double v) {
        const int dpi = int(std::lround(v));
        if (dpi > 0 && std::find(choices.begin(), choices.end(), dpi) == choices.end())
            choices.push_back(dpi);
    };
    if (!c.numbers.empty()) {
        for (double v : c.numbers)
            add(v);
    } else if (c.min && c.max) {
        for (int v : kUsualResolutions)
            if (rangeTakes(c, v))
                add(v);
        if (choices.empty()) {
            add(*c.min);
            add(*c.max);
        }
    }
    std::sort(choices.begin(), choices.end());
    return choices;
}

int SanePrescanResolution(const SaneConstraint& c) {
    std::vector<double> taken = c.numbers;
    if (taken.empty() && c.min && c.max) {
        if (rangeTakes(c, 100))
            return 100;
        const double quant = c.quant.value_or(0) > 0 ? *c.quant : 1;
        // The highest step at or below 100, and the step nearest 100 from either side.
        const double below = *c.min + std::floor((std::min(100.0, *c.max) - *c.min) / quant) * quant;
        if (below >= *c.min)
            taken.push_back(below);
        taken.push_back(std::clamp(*c.min + std::ceil((100.0 - *c.min) / quant) * quant, *c.min, *c.max));
        taken.push_back(*c.min);
    }
    if (taken.empty())
        return 0;
    double best = -1;
    for (double v : taken)
        if (v >= 75 && v <= 100 && v > best)
            best = v;
    if (best < 0) {
        best = taken.front();
        for (double v : taken)
            if (std::abs(v - 100) < std::abs(best - 100))
                best = v;
    }
    return std::max(1, int(std::lround(best)));
}

SaneTraits ReadSaneTraits(SaneDevice& device, const std::string& productName) {
    SaneTraits t;
    t.productName = productName;

    if (auto r = device.number(SANE_NAME_SCAN_RESOLUTION))
        t.resolution = int(std::lround(*r));
    t.resolutionSettable = device.settable(SANE_NAME_SCAN_RESOLUTION);
    if (auto c = device.constraint(SANE_NAME_SCAN_RESOLUTION)) {
        t.resolutions = SaneResolutionChoices(*c);
        t.prescanResolution = SanePrescanResolution(*c);
    }
    if (t.resolutions.empty() && t.resolution > 0)
        t.resolutions = {t.resolution};
    if (t.prescanResolution <= 0)
        t.prescanResolution = t.resolution;

    // Image types: the modes the sample knows, 8 bits where the device lets the depth be chosen;
    // a grey mode at 1 bit is black and white when the device has no mode of that name.
    const auto depths = device.constraint(SANE_NAME_BIT_DEPTH);
    auto takesDepth = [&](int depth) {
        return depths && device.settable(SANE_NAME_BIT_DEPTH) &&
               std::find(depths->numbers.begin(), depths->numbers.end(), double(depth)) !=
                   depths->numbers.end();
    };
    auto addMode = [&](int type, const std::string& mode, int depth) {
        for (const SaneImageMode& m : t.modes)
            if (m.imageType == type)
                return;
        t.modes.push_back({type, mode, depth});
    };
    if (device.has(SANE_NAME_SCAN_MODE)) {
        t.modeSettable = device.settable(SANE_NAME_SCAN_MODE);
        std::vector<std::string> modes;
        if (auto c = device.constraint(SANE_NAME_SCAN_MODE))
            modes = c->texts;
        if (modes.empty() || !t.modeSettable)
            modes = {device.text(SANE_NAME_SCAN_MODE).value_or("")};
        std::string grayMode;
        for (const std::string& mode : modes) {
            const auto type = SaneImageTypeOfMode(mode);
            if (!type)
                continue;
            addMode(*type, mode, *type != 0 && takesDepth(8) ? 8 : 0);
            if (*type == 1 && grayMode.empty())
                grayMode = mode;
        }
        if (!grayMode.empty() && takesDepth(1))
            addMode(0, grayMode, 1);
    } else if (auto p = device.parameters()) {
        // No mode option: the one kind of frame the device sends.
        addMode(p->format == SANE_FRAME_GRAY ? (p->depth == 1 ? 0 : 1) : 2, "", 0);
    }
    std::sort(t.modes.begin(), t.modes.end(),
              [](const SaneImageMode& a, const SaneImageMode& b) { return a.imageType < b.imageType; });

    t.geometry = true;
    for (const char* name :
         {SANE_NAME_SCAN_TL_X, SANE_NAME_SCAN_TL_Y, SANE_NAME_SCAN_BR_X, SANE_NAME_SCAN_BR_Y})
        t.geometry = t.geometry && device.unit(name) == SANE_UNIT_MM;

    auto addSource = [&](int paperSource, const std::string& name) {
        for (const SaneSource& s : t.sources)
            if (s.paperSource == paperSource)
                return;
        const auto [width, length] = measureArea(device, t.geometry);
        t.sources.push_back({paperSource, name, width, length});
    };
    const auto original = device.text(SANE_NAME_SCAN_SOURCE);
    t.sourceSettable = original && device.settable(SANE_NAME_SCAN_SOURCE);
    const auto sources = device.constraint(SANE_NAME_SCAN_SOURCE);
    if (t.sourceSettable && sources && !sources->texts.empty()) {
        for (const std::string& name : sources->texts) {
            const auto paperSource = SanePaperSourceOf(name);
            if (paperSource && device.set(SANE_NAME_SCAN_SOURCE, name))
                addSource(*paperSource, name);
        }
        device.set(SANE_NAME_SCAN_SOURCE, *original);
    } else {
        // One source the device does not name: a flatbed unless its name says otherwise.
        addSource(original ? SanePaperSourceOf(*original).value_or(kSourceFlatbed) : kSourceFlatbed,
                  original.value_or(""));
    }
    return t;
}

SaneMapping MapSaneTraits(const SaneTraits& traits, const TwValue& modelDef, const TwValue& capabilities) {
    SaneMapping m;
    m.modelDef = modelDef.isDictionary() ? modelDef.deepCopy() : TwValue::dictionary();
    m.capabilities = capabilities.isDictionary() ? capabilities.deepCopy() : TwValue::dictionary();

    std::vector<SaneSource> sources;
    for (const SaneSource& s : traits.sources)
        if (s.maxWidthMm > 0 && s.maxLengthMm > 0)
            sources.push_back(s);
    if (traits.sources.empty())
        m.refusal = "the device offers no paper source";
    else if (sources.empty())
        m.refusal = "the device's scan area is empty (" + millimetres(traits.sources.front().maxWidthMm) +
                    " x " + millimetres(traits.sources.front().maxLengthMm) + " mm)";
    else if (traits.resolutions.empty())
        m.refusal = "the device offers no resolution";
    else if (traits.modes.empty())
        m.refusal = "the device offers no image mode this data source reads (Lineart, Gray or Color)";
    if (!m.refusal.empty())
        return m;

    const TwValue options = ensureDict(m.modelDef, "UIOptions");
    const TwValue baseOptions = modelDef.isDictionary() ? modelDef.dict()->value("UIOptions") : TwValue();
    auto baseList = [&](const char* key) {
        return baseOptions.dict() ? baseOptions.dict()->value(key) : TwValue();
    };

    auto resolutions = TwValue::array();
    for (int dpi : traits.resolutions)
        resolutions.list()->push_back(
            TwValue::dictionary({{"value", dpi}, {"display", std::to_string(dpi) + " dpi"}}));
    options.dict()->set("Resolution", resolutions);

    static const char* const kTypeNames[] = {"Black & White", "Grayscale", "Color"};
    auto types = TwValue::array();
    for (const SaneImageMode& mode : traits.modes)
        types.list()->push_back(TwValue::dictionary(
            {{"value", mode.imageType},
             {"display", displayOf(baseList("ImageType"), mode.imageType, kTypeNames[mode.imageType])}}));
    options.dict()->set("ImageType", types);

    auto paperSources = TwValue::array();
    for (const SaneSource& s : sources)
        paperSources.list()->push_back(TwValue::dictionary(
            {{"value", s.paperSource},
             {"display", s.deviceName.empty() ? displayOf(baseList("PaperSource"), s.paperSource, "Scanner")
                                              : s.deviceName}}));
    options.dict()->set("PaperSource", paperSources);
    options.dict()->set("PaperSourceAll", paperSources.deepCopy());

    // Papers: the whole area of the largest source first, then the bundle's that fit a source.
    const SaneSource& largest = *std::max_element(sources.begin(), sources.end(), [](auto& a, auto& b) {
        return a.maxWidthMm * a.maxLengthMm < b.maxWidthMm * b.maxLengthMm;
    });
    auto fits = [&](double widthMm, double lengthMm) {
        return std::any_of(sources.begin(), sources.end(), [&](const SaneSource& s) {
            return widthMm <= s.maxWidthMm + kFitSlackMm && lengthMm <= s.maxLengthMm + kFitSlackMm;
        });
    };
    const TwValue wholeArea = paperEntry(kWholeAreaPaper,
                                         "Whole scan area (" + millimetres(largest.maxWidthMm) + " x " +
                                             millimetres(largest.maxLengthMm) + " mm)",
                                         largest.maxWidthMm, largest.maxLengthMm);
    std::vector<int> offered;
    for (const char* key : {"PaperSize", "PaperSizeAll", "PaperSizeAllPlusNone"}) {
        auto papers = TwValue::array();
        const TwValue base = baseList(key);
        bool placed = false;
        if (auto entries = base.list()) {
            for (const TwValue& entry : *entries) {
                auto d = entry.dict();
                if (!d)
                    continue;
                const TwValue w = d->value("mmWidth"), l = d->value("mmLength");
                if (!w.isNumber() || !l.isNumber()) { // "None" and the like stay, first
                    papers.list()->push_back(entry);
                    continue;
                }
                if (!placed) {
                    papers.list()->push_back(wholeArea.deepCopy());
                    placed = true;
                }
                if (fits(w.doubleValue() / 10, l.doubleValue() / 10)) {
                    papers.list()->push_back(entry);
                    if (std::string(key) == "PaperSize")
                        offered.push_back(d->value("value").intValue());
                }
            }
        }
        if (!placed)
            papers.list()->push_back(wholeArea.deepCopy());
        options.dict()->set(key, papers);
    }

    // Feeder limits, in inches; a kind of source the device lacks takes the other's.
    const SaneSource* feeder = nullptr;
    const SaneSource* flatbed = nullptr;
    for (const SaneSource& s : sources) {
        const SaneSource*& kind = s.paperSource == kSourceFlatbed ? flatbed : feeder;
        if (!kind)
            kind = &s;
    }
    const SaneSource& adfArea = feeder ? *feeder : *flatbed;
    const SaneSource& bedArea = flatbed ? *flatbed : *feeder;
    m.modelDef.dict()->set("FeederADF",
                           limits(modelDef.dict() ? modelDef.dict()->value("FeederADF") : TwValue(),
                                  adfArea.maxWidthMm, adfArea.maxLengthMm));
    m.modelDef.dict()->set("FeederFlatbed",
                           limits(modelDef.dict() ? modelDef.dict()->value("FeederFlatbed") : TwValue(),
                                  bedArea.maxWidthMm, bedArea.maxLengthMm));
    double widest = 0, shortest = largest.maxLengthMm;
    for (const SaneSource& s : sources) {
        widest = std::max(widest, s.maxWidthMm);
        shortest = std::min(shortest, s.maxLengthMm);
    }
    m.modelDef.dict()->set("PhysicalWidth", widest / kMmPerInch);
    const TwValue minHeight = m.modelDef.dict()->value("MinHeight");
    m.modelDef.dict()->set(
        "MinHeight", std::min(minHeight.isNumber() ? minHeight.doubleValue() : 0.5, shortest / kMmPerInch));

    // A choice the device does not let the user make is shown but cannot be changed.
    const TwValue basic = ensureDict(ensureDict(m.modelDef, "UIControl"), "Basic");
    auto control = [&](const char* name, bool enabled) {
        basic.dict()->set(name, TwValue::dictionary({{"enabled", enabled}, {"hidden", false}}));
    };
    control("PaperSource", traits.sourceSettable && sources.size() > 1);
    control("ImageType", traits.modeSettable && traits.modes.size() > 1);
    control("Resolution", traits.resolutionSettable && traits.resolutions.size() > 1);

    // The capability values: the bundle's, where the device offers them; else what it has.
    const TwValue scanInfo = ensureDict(m.capabilities, "ScanInfo");
    scanInfo.dict()->set("ProductName", traits.productName);
    scanInfo.dict()->set("FlatbedConnected", flatbed != nullptr);
    ensureDict(scanInfo, "Support").dict()->set("Passport", false);
    for (const char* section : {"Data", "Default"}) {
        const TwValue data = ensureDict(m.capabilities, section);
        auto pick = [&](const char* key, const std::vector<int>& allowed, int fallback) {
            const TwValue v = data.dict()->value(key);
            const bool ok =
                v.isNumber() && std::find(allowed.begin(), allowed.end(), v.intValue()) != allowed.end();
            const int chosen = ok ? v.intValue() : fallback;
            data.dict()->set(key, chosen);
            return chosen;
        };
        // The resolution nearest the bundle's (or the device's own) among those offered.
        const TwValue wanted = data.dict()->value("Resolution");
        const int target = wanted.isNumber() ? wanted.intValue() : traits.resolution;
        int nearest = traits.resolutions.front();
        for (int dpi : traits.resolutions)
            if (std::abs(dpi - target) < std::abs(nearest - target))
                nearest = dpi;
        data.dict()->set("Resolution", nearest);
        std::vector<int> typeValues, sourceValues;
        for (const SaneImageMode& mode : traits.modes)
            typeValues.push_back(mode.imageType);
        for (const SaneSource& s : sources)
            sourceValues.push_back(s.paperSource);
        pick("ImageType", typeValues, typeValues.front());
        pick("PaperSource", sourceValues, sourceValues.front());
        // A4, else Letter, else the whole area.
        int paper = kWholeAreaPaper;
        for (int candidate : {1, 3})
            if (std::find(offered.begin(), offered.end(), candidate) != offered.end()) {
                paper = candidate;
                break;
            }
        data.dict()->set("PaperSize", paper);
        data.dict()->set("Landscape", false);
        double width = largest.maxWidthMm, length = largest.maxLengthMm;
        if (auto papers = options.dict()->value("PaperSize").list())
            for (const TwValue& entry : *papers)
                if (auto d = entry.dict(); d && d->value("value").intValue() == paper) {
                    width = d->value("mmWidth").doubleValue() / 10;
                    length = d->value("mmLength").doubleValue() / 10;
                }
        const TwValue measure = ensureDict(ensureDict(data, "Area"), "Measure");
        measure.dict()->set("Width", width);
        measure.dict()->set("Length", length);
    }
    return m;
}
