// The value reactions that follow every observed change, and the mirroring between the working
// copies under "temp." that the controls edit and the setting under "Data.".
#include "TwainDialogData.h"

#include "OrvaDebug.h"
#include "TwScoped.h"

#include <algorithm>
#include <climits>
#include <cmath>
#include <cstring>
#include <exception>

namespace {

std::string join(const std::vector<std::string>& parts, std::size_t from) {
    std::string out;
    for (std::size_t i = from; i < parts.size(); ++i) {
        if (i > from)
            out += '.';
        out += parts[i];
    }
    return out;
}

// Reads a key path below a plain dictionary without creating anything.
TwValue readPath(const TwValue& root, std::string_view keyPath) {
    TwValue cur = root;
    for (auto& key : TwainDialogData::keyPathComponents(keyPath)) {
        auto d = cur.dict();
        if (!d)
            return {};
        cur = d->value(key);
    }
    return cur;
}

bool isFamily(std::string_view name) {
    for (const char* f : TwainDialogData::kSideFamilies)
        if (name == f)
            return true;
    return false;
}

const char* sideName(std::int64_t side) {
    switch (side) {
    case 0:
        return "Front";
    case 1:
        return "Back";
    case 2:
        return "Both";
    default:
        return nullptr;
    }
}

} // namespace

// ---- Value reactions -----------------------------------------------------------------------------

void TwainDialogData::updateValueWhenChangeKeyPath(const std::string& keyPath,
                                                   const TwKeyValueChange& change) {
    const std::string& p = keyPath;
    if (p == "Data.AutoCrop.Enable" || p == "enable.Landscape" || p == "Data.Landscape" ||
        p == "Data.PaperSize") {
        if (!change.newValue.isNull() && !change.newValue.isEqual(change.oldValue))
            AdjustLandscapeEnableAndArea();
    } else if (p == "Data.PaperSource") {
        bool duplex = valueForKeyPath("enable.Duplex").boolValue();
        for (const char* family : kSideFamilies) {
            std::string sideKey = std::string("temp.") + family + "Side";
            if (!duplex) {
                myChangeValue(TwValue(0), sideKey);
                continue;
            }
            std::string keepKey = std::string("Data.") + family + ".Keep2SideSame";
            TwValue keep = valueForKeyPath(keepKey);
            if (keep.isNull()) {
                keep = TwValue(true);
                setValueForKeyPathWithoutNotification(keep, keepKey);
            }
            if (keep.boolValue())
                myChangeValue(TwValue(2), sideKey);
        }
    } else if (p == "Data.ImageType") {
        unsigned type = change.newValue.unsignedIntValue();
        myChangeValue(TwValue(localizedString(type == 22 || type == 23 ? "IDS_STR_MULTIRES_NEW"
                                                                       : "IDS_STR_AUTORES_NEW")),
                      "temp.Distinction");
        myChangeValue(TwValue(localizedString(type == 22 ? "IDS_STR_GRAY" : "IDS_STR_COLOR")),
                      "temp.GrayColor");
    } else if (p == "Data.AutoDistinction.RateBinaryImage") {
        SetGrayDPI();
    } else if (p == "Data.Resolution") {
        SetBinaryImageRate();
        SetGrayDPI();
    } else if (p == "enable.Feed.FeedPageMode") {
        if (!valueForKeyPath(p).boolValue())
            myChangeValue(TwValue(0), "Data.Feed.FeedPageMode");
    } else if (p == "Data.Area.Unit") {
        std::int64_t unit = 0;
        if (change.newValue.isNumber()) {
            unit = change.newValue.intValue();
        } else {
            OrvaLog(kOrvaLogError, "ERROR: %s: Data.Area.Unit %s is not a number; 0 is used\n",
                    "TwainDialogData::updateValueWhenChangeKeyPath", change.newValue.description().c_str());
            setValueForKeyPathWithoutNotification(TwValue(0), "Data.Area.Unit");
        }
        std::int64_t old = change.oldValue.isNumber() ? change.oldValue.intValue() : -1;
        if (unit != old) {
            TwScopedValue forbid(m_bForbitChange, true);
            ModifyMetureValue(TwValue(unit), valueForKeyPath("Data.Area.Measure"), "temp.Area");
        }
    } else if (p.starts_with("Data.Area.Measure.") && !m_areaWriting && !m_bForbitChange && !m_bInInit) {
        areaSettingWritten(keyPath, change);
    }
    if (p.starts_with("temp."))
        tmepValueChangedKeyPath(keyPath, this, change, nullptr);
}

// ---- Mirroring of working values -----------------------------------------------------------------

void TwainDialogData::tmepValueChangedKeyPath(const std::string& keyPath, TwainDialogData*,
                                              const TwKeyValueChange& change, void*) {
    // Values the model itself is converting or correcting are not mirrored back.
    if (m_bForbitChange)
        return;
    std::vector<std::string> parts = TwainDialogData::keyPathComponents(keyPath);
    if (parts.size() < 2)
        return;
    const std::string& second = parts[1];

    if (std::string_view(keyPath).ends_with("ImageSide")) {
        if (second.size() <= 4)
            return;
        std::string family = second.substr(0, second.size() - 4);
        setValueForKeyPathWithoutNotification(change.newValue, "Data." + second);
        std::int64_t side = 0;
        if (change.newValue.isNumber()) {
            side = change.newValue.intValue();
        } else {
            OrvaLog(kOrvaLogError, "ERROR: %s: side %s of %s is not a number; Front is used\n",
                    "TwainDialogData::tmepValueChangedKeyPath", change.newValue.description().c_str(),
                    keyPath.c_str());
            setValueForKeyPathWithoutNotification(TwValue(0), keyPath);
        }
        std::int64_t old = change.oldValue.isNumber() ? change.oldValue.intValue() : -1;
        std::string keepKey = "Data." + family + ".Keep2SideSame";
        if (side == 0 || side == 1) {
            if (valueForKeyPath("enable.Duplex").boolValue())
                setValueForKeyPathWithoutNotification(TwValue(false), keepKey);
        } else if (side == 2) {
            setValueForKeyPathWithoutNotification(TwValue(true), keepKey);
        }
        const char* name = sideName(side);
        if (!name) {
            myChangeValue(TwValue(""), keyPath + "Text");
            return;
        }
        myChangeValue(valueForKeyPath(std::string("const.text.side") + name), keyPath + "Text");
        if (side == old)
            return;
        if (side == 0 || side == 1) {
            TwValue values = valueForKeyPath("Data." + family + "." + name);
            if (auto d = values.dict()) {
                for (auto& key : d->keys())
                    myChangeValue(d->value(key), "temp." + family + "." + key);
            }
        } else if (old == 0 || old == 1) {
            // Both sides take the values of the side that was shown.
            const char* from = old == 0 ? "Front" : "Back";
            const char* to = old == 0 ? "Back" : "Front";
            TwValue values = valueForKeyPath("Data." + family + "." + from);
            if (auto d = values.dict()) {
                for (auto& key : d->keys())
                    myChangeValue(d->value(key), "Data." + family + "." + to + "." + key);
            }
        }
        return;
    }

    if (isFamily(second)) {
        if (m_bInInit || bInProfileProcess)
            return;
        TwValue sideValue = valueForKeyPath("temp." + second + "Side");
        if (!sideValue.isNumber() || sideValue.doubleValue() < 0)
            return;
        std::int64_t side = sideValue.intValue();
        std::vector<const char*> sides;
        if (side == 2)
            sides = {"Front", "Back"};
        else if (side == 1)
            sides = {"Back"};
        else if (side == 0)
            sides = {"Front"};
        TwValue value = change.newValue;
        // Rounded half up by truncation toward zero: -2.7 gives -2.
        if (value.isNumber()) {
            double rounded = double(value.floatValue()) + 0.5;
            value = TwValue(std::isfinite(rounded)
                                ? static_cast<int>(std::clamp(rounded, double(INT_MIN), double(INT_MAX)))
                                : 0);
        }
        for (const char* s : sides)
            myChangeValue(value, "Data." + second + "." + s + "." + parts.back());
        return;
    }

    if (second == "Area") {
        if (keyPath == "temp.Area.Side" || parts.size() < 3)
            return;
        std::string dataKey = "Data.Area.Measure." + join(parts, 2);
        const bool inch = AreaUnitIsInch();
        const double millimetres = change.newValue.doubleValue() * (inch ? kTwMillimetresPerInch : 1.0);
        if (!change.newValue.isNumber() || !std::isfinite(millimetres)) {
            // Refused: the working copy shows the setting again.
            OrvaLog(kOrvaLogError, "ERROR: %s: %s = %s is not a finite number\n",
                    "TwainDialogData::tmepValueChangedKeyPath", keyPath.c_str(),
                    change.newValue.description().c_str());
            TwValue mm = valueForKeyPath(dataKey);
            if (mm.isNumber()) {
                TwScopedValue forbid(m_bForbitChange, true);
                myChangeValue(inch ? TwValue(mm.doubleValue() / kTwMillimetresPerInch) : mm, keyPath);
            }
            return;
        }
        {
            TwScopedValue writing(m_areaWriting, true);
            myChangeValue(inch ? TwValue(millimetres) : change.newValue, dataKey);
        }
        ValidateAreaRect(this, keyPath);
    }
}

void TwainDialogData::areaSettingWritten(const std::string& keyPath, const TwKeyValueChange& change) {
    TwScopedValue writing(m_areaWriting, true);
    const TwValue& value = change.newValue;
    if (!value.isNumber() || !std::isfinite(value.doubleValue())) {
        OrvaLog(kOrvaLogError, "ERROR: %s: %s = %s is not a finite number; the old value stays\n",
                "TwainDialogData::areaSettingWritten", keyPath.c_str(), value.description().c_str());
        const TwValue& old = change.oldValue;
        myChangeValue(old.isNumber() && std::isfinite(old.doubleValue()) ? old : TwValue(), keyPath);
        return;
    }
    {
        TwScopedValue forbid(m_bForbitChange, true);
        const std::string tempKey = "temp.Area." + keyPath.substr(std::strlen("Data.Area.Measure."));
        myChangeValue(AreaUnitIsInch() ? TwValue(value.doubleValue() / kTwMillimetresPerInch) : value,
                      tempKey);
    }
    ValidateAreaRect(this, keyPath);
}

// ---- Texts and helpers for the controls ----------------------------------------------------------

void TwainDialogData::setSideTextFor(const std::string& family) {
    try {
        TwValue side = valueForKeyPath("Data." + family + "Side");
        const char* name = side.isNumber() ? sideName(side.intValue()) : nullptr;
        TwValue text = name ? valueForKeyPath(std::string("const.text.side") + name) : TwValue("");
        myChangeValue(text, "temp." + family + "SideText");
    } catch (const std::exception& e) {
        OrvaLog(kOrvaLogError, "ERROR: %s(line %d): %s\n", "TwainDialogData::setSideTextFor", __LINE__,
                e.what());
    }
}

std::optional<std::string> TwainDialogData::GetTempKey(const std::string& keyPath, const TwValue& dict) {
    try {
        std::string_view k = keyPath;
        for (const char* family : kSideFamilies) {
            for (const char* side : {"Front", "Back"}) {
                std::string prefix = std::string("Data.") + family + "." + side;
                if (!k.starts_with(prefix))
                    continue;
                std::vector<std::string> parts = TwainDialogData::keyPathComponents(keyPath);
                if (parts.size() < 3)
                    return std::nullopt;
                TwValue code = readPath(dict, parts[0] + "." + parts[1] + "Side");
                const char* shown = code.intValue() == 1 ? "Back" : "Front";
                if (parts[2] != shown)
                    return std::nullopt;
                std::string out = "temp." + parts[1];
                std::string rest = join(parts, 3);
                return rest.empty() ? out : out + "." + rest;
            }
        }
        for (const char* family : kSideFamilies) {
            if (keyPath == std::string("Data.") + family + "Side")
                return "temp." + keyPath.substr(5);
        }
        if (k.starts_with("Data.Area.Measure")) {
            std::vector<std::string> parts = TwainDialogData::keyPathComponents(keyPath);
            std::string rest = join(parts, 3);
            return rest.empty() ? std::string("temp.Area") : "temp.Area." + rest;
        }
    } catch (const std::exception& e) {
        OrvaLog(kOrvaLogError, "ERROR: %s(line %d): %s\n", "TwainDialogData::GetTempKey", __LINE__, e.what());
    }
    return std::nullopt;
}

void TwainDialogData::TextEditRefresh(const TwValue&, const std::string& keyPath) {
    TwValue counter = valueForKeyPath("temp.TextEditRefresh");
    myChangeValue(counter.isNull() ? TwValue(0) : TwValue(counter.intValue() + 1), "temp.TextEditRefresh");
    myChangeValue(TwValue(keyPath), "temp.TextEditDatakey");
}
