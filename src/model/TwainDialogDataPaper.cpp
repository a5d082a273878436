// The current paper and its orientation, the resolution-dependent choices, the paper lists, and
// the geometry of the scan areas (see "Area geometry" in docs/ARCHITECTURE.md).
#include "TwainDialogData.h"

#include "OrvaDebug.h"
#include "TwScoped.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

namespace {

// Area values closer than this (millimetres) count as equal: inch values converted back and
// forth must not look like corrections.
constexpr double kAreaEpsilon = 1e-6;
// A main area within this distance of every paper edge covers the whole paper.
constexpr double kFullPaperEpsilon = 0.05;
constexpr TwSize kA4 = {2100, 2970};

bool isPositiveNumber(const TwValue& v) {
    return v.isNumber() && std::isfinite(v.doubleValue()) && v.doubleValue() > 0;
}

bool near(double a, double b, double eps) {
    return std::fabs(a - b) <= eps;
}

// One dimension of an area: its start and its size on a paper of the given size. An edited start
// is kept (within the paper) and the size gives way; otherwise the area is moved back onto the
// paper and shrunk only when it is longer than the paper. Never below the minimum, unless the
// paper itself is smaller.
void fitSpan(double& pos, double& size, double paper, double minSize, bool keepPos) {
    paper = std::max(paper, 0.0);
    double smallest = std::min(minSize, paper);
    if (!(size >= smallest - kAreaEpsilon))
        size = smallest;
    if (size > paper + kAreaEpsilon)
        size = paper;
    if (!(pos >= -kAreaEpsilon))
        pos = 0;
    if (keepPos) {
        if (pos > paper - smallest + kAreaEpsilon)
            pos = paper - smallest;
        if (pos + size > paper + kAreaEpsilon)
            size = paper - pos;
    } else if (pos + size > paper + kAreaEpsilon) {
        pos = std::max(0.0, paper - size);
    }
}

// "temp.Area.Front.L1.X" or "Data.Area.Measure.Front.L1.X" -> "Front.L1.X"; "" for other keys.
std::string areaRest(std::string_view keyPath) {
    for (std::string_view prefix : {std::string_view("temp.Area."), std::string_view("Data.Area.Measure.")}) {
        if (keyPath.starts_with(prefix))
            return std::string(keyPath.substr(prefix.size()));
    }
    return {};
}

// The main area of a side: its X is the side's own, its Y, width and length are shared.
const TwAreaInfo& mainArea(bool front) {
    return TwAreaRow(front, kTwMainAreaId);
}

} // namespace

// ---- The current paper ---------------------------------------------------------------------------

TwSize TwainDialogData::GetCurrentPaperSize() {
    TwValue size = valueForKeyPath("Data.PaperSize");
    if (size.str()) {
        if (auto papers = m_CustomPapers.list()) {
            for (auto& paper : *papers) {
                auto d = paper.dict();
                if (!d || !d->value("Name").isEqual(size))
                    continue;
                TwValue w = d->value("Width");
                TwValue l = d->value("Length");
                if (isPositiveNumber(w) && isPositiveNumber(l))
                    return {std::trunc(w.doubleValue() * 10.0), std::trunc(l.doubleValue() * 10.0)};
                OrvaLog(kOrvaLogError, "ERROR: %s: custom paper %s has no size; A4 is used\n",
                        "TwainDialogData::GetCurrentPaperSize", size.description().c_str());
                return kA4;
            }
        }
    } else if (size.isNumber()) {
        std::int64_t code = size.intValue() & 0xFFFF;
        if (auto list = valueForKeyPath("content.PaperSize").list()) {
            for (auto& entry : *list) {
                auto d = entry.dict();
                if (!d)
                    continue;
                TwValue value = d->value("value");
                if (value.isNull() || value.intValue() != code)
                    continue;
                TwValue w = d->value("mmWidth");
                TwValue l = d->value("mmLength");
                if (isPositiveNumber(w) && isPositiveNumber(l))
                    return {w.doubleValue(), l.doubleValue()};
                OrvaLog(kOrvaLogError, "ERROR: %s: paper %lld has no size; A4 is used\n",
                        "TwainDialogData::GetCurrentPaperSize", static_cast<long long>(code));
                return kA4;
            }
        }
    } else if (!size.isNull()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: Data.PaperSize %s is neither a code nor a name; A4 is used\n",
                "TwainDialogData::GetCurrentPaperSize", size.description().c_str());
    }
    return kA4;
}

TwSize TwainDialogData::GetCurrentPaperSizeInCurrentOrientation() {
    TwSize size = GetCurrentPaperSize();
    if (valueForKeyPath("enable.Landscape").boolValue() && valueForKeyPath("Data.Landscape").boolValue())
        return {size.length, double(float(size.width))};
    return size;
}

bool TwainDialogData::AreaUnitIsInch() {
    TwValue unit = valueForKeyPath("Data.Area.Unit");
    return unit.isNumber() && unit.intValue() == 0;
}

// ---- Resolution-dependent choices ----------------------------------------------------------------

std::int64_t TwainDialogData::rateDivisor(std::int64_t code) {
    return code >= 1 && code <= 3 ? code + 1 : 1;
}

void TwainDialogData::SetBinaryImageRate() {
    std::int64_t resolution = valueForKeyPath("Data.Resolution").longLongValue();
    auto kept = TwValue::array();
    if (auto rates = valueForKeyPath("content.RateImage").list()) {
        for (auto& entry : *rates) {
            auto d = entry.dict();
            if (!d)
                continue;
            std::int64_t code = d->value("value").intValue();
            if (code == 0 || resolution / rateDivisor(code) >= 100)
                kept.list()->push_back(entry);
        }
    }
    myChangeValue(kept, "content.RateImageAvail");
}

void TwainDialogData::SetGrayDPI() {
    std::int64_t resolution = valueForKeyPath("Data.Resolution").longLongValue();
    std::int64_t code = valueForKeyPath("Data.AutoDistinction.RateBinaryImage").intValue();
    std::int64_t gray = resolution / rateDivisor(code);
    if (code >= 1 && gray < 100) {
        // Every code above 4 has divisor 1 just as 4 has, so the steps down to 4 change nothing.
        if (code > 4)
            code = 4;
        for (;;) {
            std::int64_t old = code--;
            gray = resolution / rateDivisor(code);
            if (old < 2 || gray >= 100)
                break;
        }
        myChangeValue(TwValue(static_cast<long long>(code)), "Data.AutoDistinction.RateBinaryImage");
    }
    myChangeValue(TwValue(static_cast<long long>(gray)), "temp.GrayDPI");
}

void TwainDialogData::calcAutoCropLength() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogData::calcAutoCropLength");
    TwValue adf = ModelDef ? ModelDef->FeederADF() : TwValue();
    TwValue maxWidth = adf.dict() ? adf.dict()->value("MaxWidth") : TwValue();
    TwValue maxHeight = adf.dict() ? adf.dict()->value("MaxHeight") : TwValue();
    // A limit the model definition does not give restricts nothing: the automatic crop must still
    // reach every paper the user can pick.
    double widthLimit = std::numeric_limits<double>::infinity();
    double heightLimit = std::numeric_limits<double>::infinity();
    if (isPositiveNumber(maxWidth))
        widthLimit = maxWidth.doubleValue() * kTwMillimetresPerInch;
    if (isPositiveNumber(maxHeight))
        heightLimit = maxHeight.doubleValue() * kTwMillimetresPerInch;
    if (!isPositiveNumber(maxWidth) || !isPositiveNumber(maxHeight))
        OrvaLog(kOrvaLogWarning,
                "%s: the feeder gives no maximum width or height; those limits are not applied\n",
                "TwainDialogData::calcAutoCropLength");
    long long largest = 0;
    if (auto papers = valueForKeyPath("content.PaperSize").list()) {
        for (auto& paper : *papers) {
            auto d = paper.dict();
            if (!d)
                continue;
            double w = d->value("mmWidth").doubleValue() / 10.0;
            double l = d->value("mmLength").doubleValue() / 10.0;
            if (w <= widthLimit && l <= heightLimit)
                largest = std::max<long long>(largest, d->value("pxLength").longLongValue());
        }
    }
    setValueForKeyPathWithoutNotification(TwValue(largest), "range.AutoCropLength");
}

// ---- Paper lists ---------------------------------------------------------------------------------

void TwainDialogData::updateContentPaperSizeAll() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogData::updateContentPaperSizeAll");
    auto all = TwValue::array();
    if (auto standard = valueForKeyPath("content.PaperSize").list())
        all.list()->insert(all.list()->end(), standard->begin(), standard->end());
    if (auto papers = m_CustomPapers.list()) {
        for (auto& paper : *papers) {
            auto d = paper.dict();
            TwValue name = d ? d->value("Name") : TwValue();
            if (!name.str()) {
                OrvaLog(kOrvaLogError, "ERROR: %s: a custom paper without a name is left out: %s\n",
                        "TwainDialogData::updateContentPaperSizeAll", paper.description().c_str());
                continue;
            }
            double w = d->value("Width").doubleValue();
            double l = d->value("Length").doubleValue();
            char display[512];
            std::snprintf(display, sizeof display, "%s - %.1f x %.1f mm", name.str()->c_str(), w, l);
            all.list()->push_back(
                TwValue::dictionary({{"value", name},
                                     {"display", std::string(display)},
                                     {"mmWidth", static_cast<long long>(std::trunc(w * 10.0))},
                                     {"mmLength", static_cast<long long>(std::trunc(l * 10.0))}}));
        }
    }
    auto plusNone = TwValue::array(
        {TwValue::dictionary({{"value", 0}, {"display", localizedString("IDS_PAPERSIZE_NONE")}})});
    plusNone.list()->insert(plusNone.list()->end(), all.list()->begin(), all.list()->end());
    myChangeValue(all, "content.PaperSizeAll");
    myChangeValue(plusNone, "content.PaperSizeAllPlusNone");
}

// ---- Units ---------------------------------------------------------------------------------------

void TwainDialogData::ModifyMetureValue(const TwValue& unit, const TwValue& dict,
                                        const std::string& keyPrefix) {
    auto d = dict.dict();
    if (!d)
        return;
    bool inch = unit.isNumber() && unit.intValue() == 0;
    for (auto& key : d->keys()) {
        TwValue value = d->value(key);
        std::string path = keyPrefix + "." + key;
        if (value.isDictionary())
            ModifyMetureValue(unit, value, path);
        else if (value.isNumber())
            myChangeValue(inch ? TwValue(value.doubleValue() / kTwMillimetresPerInch)
                               : TwValue(value.doubleValue()),
                          path);
    }
}

// ---- Area geometry -------------------------------------------------------------------------------

void TwainDialogData::writeAreaValue(const std::string& rest, double millimetres,
                                     const std::string* editedRest) {
    std::string dataKey = "Data.Area.Measure." + rest;
    TwValue old = valueForKeyPath(dataKey);
    if (old.isNumber() && near(old.doubleValue(), millimetres, kAreaEpsilon))
        return;
    {
        TwScopedValue writing(m_areaWriting, true);
        myChangeValue(TwValue(millimetres), dataKey);
    }
    std::string tempKey = "temp.Area." + rest;
    TwValue shown(AreaUnitIsInch() ? millimetres / kTwMillimetresPerInch : millimetres);
    {
        TwScopedValue forbid(m_bForbitChange, true);
        myChangeValue(shown, tempKey);
    }
    if (editedRest && *editedRest == rest)
        TextEditRefresh(shown, tempKey);
}

void TwainDialogData::fitAreas(const std::string* editedKey) {
    TwSize paper = GetCurrentPaperSizeInCurrentOrientation();
    const double pw = paper.width / 10.0;
    const double pl = paper.length / 10.0;
    std::string edited = editedKey ? areaRest(*editedKey) : std::string();
    const std::string* editedRest = edited.empty() ? nullptr : &edited;
    // A value that is a number but not a finite one is carried, and corrected below.
    auto read = [this](const std::string& rest, double& out) {
        TwValue v = valueForKeyPath("Data.Area.Measure." + rest);
        if (!v.isNumber())
            return false;
        out = v.doubleValue();
        return true;
    };

    const std::string backX = areaRest(mainArea(false).dataXKey);
    for (const TwAreaInfo& row : Comb_AreaInfo) {
        // The shared Y, width and length of the main area are fitted once, with both sides' X.
        if (!row.subArea() && !row.front)
            continue;
        std::string x1 = areaRest(row.dataXKey), y = areaRest(row.dataYKey), w = areaRest(row.dataWidthKey),
                    l = areaRest(row.dataLengthKey);
        std::string x2 = row.subArea() ? std::string() : backX;
        double vx1 = 0, vx2 = 0, vy = 0, vw = 0, vl = 0;
        bool hasX1 = read(x1, vx1), hasX2 = !x2.empty() && read(x2, vx2);
        if (!read(y, vy) || !read(w, vw) || !read(l, vl))
            continue; // an area the setting does not carry is not created here
        const double ox1 = vx1, ox2 = vx2, oy = vy, ow = vw, ol = vl;
        if (edited == x2 && hasX2) {
            fitSpan(vx2, vw, pw, row.minWidth, true);
            if (hasX1)
                fitSpan(vx1, vw, pw, row.minWidth, false);
        } else {
            double dummy = 0;
            fitSpan(hasX1 ? vx1 : dummy, vw, pw, row.minWidth, hasX1 && edited == x1);
            if (hasX2)
                fitSpan(vx2, vw, pw, row.minWidth, false);
        }
        fitSpan(vy, vl, pl, row.minLength, edited == y);
        if (hasX1 && vx1 != ox1)
            writeAreaValue(x1, vx1, editedRest);
        if (hasX2 && vx2 != ox2)
            writeAreaValue(x2, vx2, editedRest);
        if (vy != oy)
            writeAreaValue(y, vy, editedRest);
        if (vw != ow)
            writeAreaValue(w, vw, editedRest);
        if (vl != ol)
            writeAreaValue(l, vl, editedRest);
    }
    m_areaPaper = {pw, pl};
}

void TwainDialogData::ValidateAreaRect(TwainDialogData*, const std::string& keyPath) {
    if (keyPath == "temp.Area.Side")
        return;
    fitAreas(&keyPath);
}

void TwainDialogData::ValidateAreaRectAll() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogData::ValidateAreaRectAll");
    fitAreas(nullptr);
}

TwRange TwainDialogData::GetFormatterRange(const std::string& keyPath) {
    std::string rest = areaRest(keyPath);
    if (rest.empty())
        return {};
    TwSize paper = GetCurrentPaperSizeInCurrentOrientation();
    const double pw = paper.width / 10.0;
    const double pl = paper.length / 10.0;
    auto mm = [this](const std::string& r) {
        return valueForKeyPath("Data.Area.Measure." + r).doubleValue();
    };
    auto range = [](double start, double end) {
        return TwRange{start, std::max(0.0, end - start)};
    };
    for (const TwAreaInfo& row : Comb_AreaInfo) {
        const double minW = row.minWidth, minL = row.minLength;
        if (rest == areaRest(row.dataXKey))
            return range(0, pw - minW);
        if (rest == areaRest(row.dataYKey))
            return range(0, pl - minL);
        if (rest == areaRest(row.dataWidthKey)) {
            double x = mm(areaRest(row.dataXKey));
            // The main width is shared: it must fit beside the back X too when the back is scanned.
            if (!row.subArea() && valueForKeyPath("enable.Duplex").boolValue())
                x = std::max(x, mm(areaRest(mainArea(false).dataXKey)));
            return range(minW, pw - std::max(0.0, x));
        }
        if (rest == areaRest(row.dataLengthKey))
            return range(minL, pl - std::max(0.0, mm(areaRest(row.dataYKey))));
    }
    return {};
}

void TwainDialogData::AdjustLandscapeEnableAndArea() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogData::AdjustLandscapeEnableAndArea");
    TwValue rule =
        m_dictEnableChange.dict() ? m_dictEnableChange.dict()->value("enable.Landscape") : TwValue();
    const std::string target = "enable.Landscape";
    bool enabled =
        rule.isDictionary() ? getEnableFromInfo(rule, nullptr, target) : getEnableCustomForKeyPath(target);
    myChangeValue(TwValue(enabled), target);

    TwSize paper = GetCurrentPaperSizeInCurrentOrientation();
    const double pw = paper.width / 10.0;
    const double pl = paper.length / 10.0;
    const TwSize before = m_areaPaper;
    bool paperChanged = before.width > 0 && !(near(before.width, pw, kFullPaperEpsilon) &&
                                              near(before.length, pl, kFullPaperEpsilon));
    if (paperChanged) {
        auto at = [this](const char* keyPath, double want) {
            TwValue v = valueForKeyPath(keyPath);
            return v.isNumber() && near(v.doubleValue(), want, kFullPaperEpsilon);
        };
        const TwAreaInfo &front = mainArea(true), &back = mainArea(false);
        TwValue backX = valueForKeyPath(back.dataXKey);
        bool wholePaper = at(front.dataXKey, 0) && at(front.dataYKey, 0) &&
                          at(front.dataWidthKey, before.width) && at(front.dataLengthKey, before.length) &&
                          (backX.isNull() || at(back.dataXKey, 0));
        if (wholePaper) {
            // An area that covered the whole paper keeps covering it.
            writeAreaValue(areaRest(front.dataWidthKey), pw, nullptr);
            writeAreaValue(areaRest(front.dataLengthKey), pl, nullptr);
        }
    }
    ValidateAreaRectAll();
}

// ---- The paper frame -----------------------------------------------------------------------------

void TwainDialogData::setPaperFrame(const TwPaperFrame& frame) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogData::setPaperFrame");
    if (!std::isfinite(frame.left) || !std::isfinite(frame.top) || !std::isfinite(frame.right) ||
        !std::isfinite(frame.bottom)) {
        OrvaLog(kOrvaLogError, "ERROR: %s: frame (%g, %g, %g, %g) is not a rectangle\n",
                "TwainDialogData::setPaperFrame", frame.left, frame.top, frame.right, frame.bottom);
        return;
    }
    double left = std::min(frame.left, frame.right), right = std::max(frame.left, frame.right);
    double top = std::min(frame.top, frame.bottom), bottom = std::max(frame.top, frame.bottom);
    const TwAreaInfo &front = mainArea(true), &back = mainArea(false);
    writeAreaValue(areaRest(front.dataXKey), left, nullptr);
    writeAreaValue(areaRest(back.dataXKey), left, nullptr);
    writeAreaValue(areaRest(front.dataYKey), top, nullptr);
    writeAreaValue(areaRest(front.dataWidthKey), right - left, nullptr);
    writeAreaValue(areaRest(front.dataLengthKey), bottom - top, nullptr);
    ValidateAreaRectAll();
}

void TwainDialogData::getPaperFrame(TwPaperFrame* frame) {
    if (!frame)
        return;
    const TwAreaInfo& front = mainArea(true);
    TwValue x = valueForKeyPath(front.dataXKey);
    TwValue y = valueForKeyPath(front.dataYKey);
    TwValue w = valueForKeyPath(front.dataWidthKey);
    TwValue l = valueForKeyPath(front.dataLengthKey);
    if (x.isNumber() && y.isNumber() && isPositiveNumber(w) && isPositiveNumber(l)) {
        *frame = {x.doubleValue(), y.doubleValue(), x.doubleValue() + w.doubleValue(),
                  y.doubleValue() + l.doubleValue()};
        return;
    }
    // Without an area the whole paper is scanned.
    TwSize paper = GetCurrentPaperSizeInCurrentOrientation();
    *frame = {0, 0, paper.width / 10.0, paper.length / 10.0};
}
