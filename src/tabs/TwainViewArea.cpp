#include "TwainViewArea.h"

#include "OrvaDebug.h"
#include "TwAreaTable.h"
#include "TwRangeHelpers.h"
#include "TwainNumberFormatter.h"

#include <QLineEdit>
#include <QSpinBox>

#include <algorithm>
#include <cmath>
#include <limits>

namespace {
constexpr const char* kSideNames[] = {"Front", "Back"};
constexpr const char* kAreaPrefix = "temp.Area.";
constexpr const char* kHiddenFront = "hidden.Area.Front";
constexpr const char* kHiddenBack = "hidden.Area.Back";

// The table's row of a side's sub-area (side 0 front, 1 back; n 0 ... 2 for L1 ... L3) or main area.
const TwAreaInfo& subArea(int side, int n) {
    return TwAreaRow(side == 0, std::int16_t(n));
}

const TwAreaInfo& mainArea(int side) {
    return TwAreaRow(side == 0, kTwMainAreaId);
}

// Truncation toward zero of a bound already offset by one half, as a formatter takes it.
std::optional<int> roundedBound(double value) {
    if (!std::isfinite(value) || value > std::numeric_limits<int>::max() ||
        value < std::numeric_limits<int>::min())
        return std::nullopt;
    return int(value);
}
} // namespace

TwainViewArea::TwainViewArea(QWidget* parent) : TwainView(parent) {
    setUpForm(ui);
    m_sub[0][0] = {ui.btnFrontArea1,   ui.txtFrontX1,          ui.txtFrontY1,         ui.txtFrontWidth1,
                   ui.txtFrontLength1, ui.txtFrontBrightness1, ui.stpFrontBrightness1};
    m_sub[0][1] = {ui.btnFrontArea2,   ui.txtFrontX2,          ui.txtFrontY2,         ui.txtFrontWidth2,
                   ui.txtFrontLength2, ui.txtFrontBrightness2, ui.stpFrontBrightness2};
    m_sub[0][2] = {ui.btnFrontArea3,   ui.txtFrontX3,          ui.txtFrontY3,         ui.txtFrontWidth3,
                   ui.txtFrontLength3, ui.txtFrontBrightness3, ui.stpFrontBrightness3};
    m_sub[1][0] = {ui.btnBackArea1,   ui.txtBackX1,          ui.txtBackY1,         ui.txtBackWidth1,
                   ui.txtBackLength1, ui.txtBackBrightness1, ui.stpBackBrightness1};
    m_sub[1][1] = {ui.btnBackArea2,   ui.txtBackX2,          ui.txtBackY2,         ui.txtBackWidth2,
                   ui.txtBackLength2, ui.txtBackBrightness2, ui.stpBackBrightness2};
    m_sub[1][2] = {ui.btnBackArea3,   ui.txtBackX3,          ui.txtBackY3,         ui.txtBackWidth3,
                   ui.txtBackLength3, ui.txtBackBrightness3, ui.stpBackBrightness3};

    // First ranges in tenths of a millimetre (an A4 sheet); the unit's ranges replace them at bind
    // time.
    fmtAreaOffsetX = CreateTextRangeFormatter(0, 2100, 1, this);
    fmtAreaWidth = CreateTextRangeFormatter(0, 2100, 1, this);
    fmtSubAreaOffsetX = CreateTextRangeFormatter(0, 2100, 1, this);
    fmtAreaOffsetY = CreateTextRangeFormatter(0, 2970, 1, this);
    fmtAreaLength = CreateTextRangeFormatter(0, 2970, 1, this);
    fmtSubAreaOffsetY = CreateTextRangeFormatter(0, 2970, 1, this);
    for (int s = 0; s < kSides; ++s) {
        for (int n = 0; n < kSubAreas; ++n) {
            fmtSubAreaWidth[s][n] = CreateTextRangeFormatter(0, 2100, 1, this);
            fmtSubAreaLength[s][n] = CreateTextRangeFormatter(0, 2970, 1, this);
        }
    }
    fmtBright = CreateTextRangeFormatter(1, 255, 0, this);

    ui.txtFrontX->setValidator(fmtAreaOffsetX);
    ui.txtBackX->setValidator(fmtAreaOffsetX);
    ui.txtY->setValidator(fmtAreaOffsetY);
    ui.txtWidth->setValidator(fmtAreaWidth);
    ui.txtLength->setValidator(fmtAreaLength);
    for (int s = 0; s < kSides; ++s) {
        for (int n = 0; n < kSubAreas; ++n) {
            const SubArea& a = sub(s, n);
            a.x->setValidator(fmtSubAreaOffsetX);
            a.y->setValidator(fmtSubAreaOffsetY);
            a.width->setValidator(fmtSubAreaWidth[s][n]);
            a.length->setValidator(fmtSubAreaLength[s][n]);
            a.brightness->setValidator(fmtBright);
            SetStepperRange(a.stepper, 1, 255, 0, 1);
        }
    }

    // The back sub-areas' X and Y and the back X share the front formatters: no entries of their own.
    const TwAreaInfo& main = mainArea(0);
    _dictFmtMap = {
        {main.xKey, fmtAreaOffsetX},
        {main.yKey, fmtAreaOffsetY},
        {main.widthKey, fmtAreaWidth},
        {main.lengthKey, fmtAreaLength},
        {subArea(0, 0).xKey, fmtSubAreaOffsetX},
        {subArea(0, 0).yKey, fmtSubAreaOffsetY},
    };
    // Each area's X limits its width and its Y its length (the main areas share Y and width).
    for (const TwAreaInfo& row : Comb_AreaInfo) {
        _dictEffectedMap[row.xKey] = row.widthKey;
        _dictEffectedMap[row.yKey] = row.lengthKey;
    }
    for (int s = 0; s < kSides; ++s) {
        for (int n = 0; n < kSubAreas; ++n) {
            _dictFmtMap[subArea(s, n).widthKey] = fmtSubAreaWidth[s][n];
            _dictFmtMap[subArea(s, n).lengthKey] = fmtSubAreaLength[s][n];
        }
    }

    arrFormatText = {ui.txtFrontX, ui.txtBackX, ui.txtY, ui.txtWidth, ui.txtLength};
    for (int s = 0; s < kSides; ++s) {
        for (int n = 0; n < kSubAreas; ++n)
            arrFormatText << sub(s, n).x;
        for (int n = 0; n < kSubAreas; ++n)
            arrFormatText << sub(s, n).y;
        for (int n = 0; n < kSubAreas; ++n)
            arrFormatText << sub(s, n).width;
        for (int n = 0; n < kSubAreas; ++n)
            arrFormatText << sub(s, n).length;
    }
}

TwainViewArea::~TwainViewArea() {
    if (bindObject() || responderBinding())
        unbindControls();
}

QList<QWidget*> TwainViewArea::sideControls(int side) const {
    QList<QWidget*> list;
    if (side < 0 || side >= kSides)
        return list;
    list << (side == 0 ? ui.cmbFrontHalftone : ui.cmbBackHalftone);
    for (int n = 0; n < kSubAreas; ++n) {
        const SubArea& a = sub(side, n);
        list << a.area << a.x << a.y << a.width << a.length << a.brightness << a.stepper;
    }
    return list;
}

TwBindList TwainViewArea::valuesList() const {
    const TwAreaInfo &front = mainArea(0), &back = mainArea(1);
    TwBindList values{
        "Data.Area.Unit", ui.cmbUnit,   front.xKey,       ui.txtFrontX,   back.xKey,
        ui.txtBackX,      front.yKey,   ui.txtY,          front.widthKey, ui.txtWidth,
        front.lengthKey,  ui.txtLength, "temp.Area.Side", ui.tblSide,
    };
    for (int s = 0; s < kSides; ++s) {
        for (int n = 0; n < kSubAreas; ++n) {
            const SubArea& a = sub(s, n);
            const TwAreaInfo& row = subArea(s, n);
            values.insert(values.end(), {row.enableKey, a.area, row.xKey, a.x, row.yKey, a.y, row.widthKey,
                                         a.width, row.lengthKey, a.length, row.brightnessKey, a.brightness,
                                         row.brightnessKey, a.stepper});
        }
    }
    values.insert(values.end(), {"Data.Area.Front.Halftone", ui.cmbFrontHalftone, "Data.Area.Back.Halftone",
                                 ui.cmbBackHalftone});
    return values;
}

std::int32_t TwainViewArea::currentUnit() const {
    return bindObject() ? bindObject()->valueForKeyPath("Data.Area.Unit").intValue() : 0;
}

void TwainViewArea::bindControlsToObject(TwainDialogData* model) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainViewArea::bindControlsToObject");
    _dictTempText.clear();
    TwainView::bindControlsToObject(model);
    if (!model)
        return;
    TwResponderBinding* binding = responderBinding();

    // The working copy starts from the setting.
    const TwValue area = model->valueForKeyPath("Data.Area");
    if (!area.isDictionary())
        OrvaLog(kOrvaLogError, "ERROR: %s: the model has no Data.Area\n",
                "TwainViewArea::bindControlsToObject");
    for (const std::string& k : model->allKeyPaths(nullptr, area))
        model->setValueForKeyPath(model->valueForKeyPath("Data.Area." + k), kAreaPrefix + k);

    // Every binding starts on the front.
    model->setValueForKeyPath(TwValue(0), "temp.Area.Side");
    onChangeSideOfObject(model);

    const TwBindList contents{
        "content.Unit",         ui.cmbUnit,         "content.FrontHalftone", ui.cmbFrontHalftone,
        "content.BackHalftone", ui.cmbBackHalftone,
    };
    const TwBindList enables{"enable.Duplex", ui.txtBackX, "enable.Duplex", ui.tblSide};
    const TwBindList values = valuesList();
    bindLists(TwBindList(), contents, enables, values);

    binding->bindSubviewsEnabled(this, model, "enable.Area.Front");
    binding->bindSubviewsEnabled(ui.boxSubArea, model, "enable.Area.SubArea");

    const auto asObjects = [](const QList<QWidget*>& widgets) {
        return std::vector<QObject*>(widgets.begin(), widgets.end());
    };
    const std::vector<QObject*> front = asObjects(sideControls(0));
    const std::vector<QObject*> back = asObjects(sideControls(1));
    binding->bind(kTwHiddenBinding, front, model, kHiddenFront);
    binding->bind(kTwHiddenBinding, back, model, kHiddenBack);
    binding->bind(kTwEnabledBinding, back, model, "enable.Duplex");

    for (int s = 0; s < kSides; ++s) {
        for (int n = 0; n < kSubAreas; ++n) {
            const SubArea& a = sub(s, n);
            binding->bind(kTwEnabledBinding, {a.x, a.y, a.width, a.length, a.brightness, a.stepper}, model,
                          subArea(s, n).enableKey);
        }
    }
    for (int s = 0; s < kSides; ++s) {
        std::vector<QObject*> brightness;
        for (int n = 0; n < kSubAreas; ++n)
            brightness.insert(brightness.end(), {sub(s, n).brightness, sub(s, n).stepper});
        binding->bind(kTwEnabledBinding, brightness, model,
                      std::string("enable.Area.Brightness.") + kSideNames[s]);
    }
    binding->bind(kTwEnabledBinding, {ui.cmbFrontHalftone, ui.cmbBackHalftone}, model,
                  "enable.Area.Halftone");
    // The back X is in this group twice, so it carries two enabled bindings to the same key.
    binding->bind(kTwEnabledBinding,
                  {ui.txtFrontX, ui.txtBackX, ui.txtY, ui.txtWidth, ui.txtLength, ui.txtBackX, ui.tblSide},
                  model, "enable.Area.Front");

    for (std::size_t i = 0; i + 1 < values.size(); i += 2) {
        const std::string* key = values[i].key();
        QObject* control = values[i + 1].control();
        if (!key || !control || !key->starts_with(kAreaPrefix))
            continue;
        _dictTempText[*key] = qobject_cast<QWidget*>(control);
        addObserverForKeyPath(*key, kTwObserveNew);
    }

    addObserverForKeyPath("enable.Duplex", kTwObserveNew);
    addObserverForKeyPath("temp.Area.Side", kTwObserveNew);
    for (const char* keyPath : TwainDialogData::kCurrentPaperKeyPaths)
        addObserverForKeyPath(keyPath, kTwObserveNew);
    addObserverForKeyPath("temp.TextEditRefresh", kTwObserveNew);
    // The model bumps the counter before it names the key, so the counter alone would find the
    // key of the previous request: the key's own change reloads the right field.
    addObserverForKeyPath("temp.TextEditDatakey", kTwObserveNew);
    addObserverForKeyPath("Data.Area.Unit", kTwObserveNew | kTwObserveOld);

    setFormatterForUnitAll(currentUnit());
    OrvaLog(kOrvaLogTrace, "LEAVE: %s\n", "TwainViewArea::bindControlsToObject");
}

void TwainViewArea::unbindControls() {
    _dictTempText.clear();
    TwainView::unbindControls();
}

void TwainViewArea::observeValueForKeyPath(const std::string& keyPath, TwObservable* object,
                                           const TwKeyValueChange& change, void*) {
    TwainDialogData* model = bindObject();
    if (!object || object != model)
        return;
    OrvaLog(kOrvaLogDebug, "%s: %s\n", "TwainViewArea::observeValueForKeyPath", keyPath.c_str());
    if (keyPath == "temp.Area.Side") {
        onChangeSideOfObject(model);
    } else if (keyPath == "enable.Duplex") {
        // Without a back side there is only the front to show.
        if (!object->valueForKeyPath("enable.Duplex").boolValue())
            object->setValueForKeyPath(TwValue(0), "temp.Area.Side");
    } else if (keyPath == "Data.Area.Unit") {
        if (change.oldValue.isNull() || change.oldValue.isEqual(change.newValue))
            return;
        for (QLineEdit* field : std::as_const(arrFormatText))
            field->update();
        setFormatterForUnitAll(change.newValue.intValue());
    } else if (std::ranges::find(TwainDialogData::kCurrentPaperKeyPaths, keyPath) !=
               std::end(TwainDialogData::kCurrentPaperKeyPaths)) {
        // The limits follow the paper in its orientation.
        setFormatterForUnitAll(currentUnit());
    } else if (keyPath == "temp.TextEditRefresh" || keyPath == "temp.TextEditDatakey") {
        // The model corrected a value and asks the field that shows it to reload.
        refreshTextField(model);
    } else if (keyPath.starts_with("temp.Area")) {
        auto effected = _dictEffectedMap.find(keyPath);
        if (effected == _dictEffectedMap.end())
            return;
        auto formatter = _dictFmtMap.find(effected->second);
        if (formatter != _dictFmtMap.end() && formatter->second)
            setFormatter(formatter->second, effected->second, currentUnit());
    }
}

void TwainViewArea::refreshTextField(TwainDialogData* model) {
    const std::string key = model->valueForKeyPath("temp.TextEditDatakey").stringValue();
    auto it = _dictTempText.find(key);
    if (it == _dictTempText.end() || !it->second)
        return;
    if (auto* field = qobject_cast<QLineEdit*>(it->second.data())) {
        const double value = model->valueForKeyPath(key).floatValue();
        auto* formatter = qobject_cast<const TwainNumberFormatter*>(field->validator());
        field->setText(formatter ? formatter->stringFromNumber(value) : QString::number(value));
    }
}

void TwainViewArea::onChangeSideOfObject(TwainDialogData* model) {
    if (!model)
        return;
    const bool back = model->valueForKeyPath("temp.Area.Side").intValue() == 1;
    model->willChangeValueForKey(kHiddenFront);
    model->willChangeValueForKey(kHiddenBack);
    model->setValueForKeyPathWithoutNotification(TwValue(back), kHiddenFront);
    model->setValueForKeyPathWithoutNotification(TwValue(!back), kHiddenBack);
    model->didChangeValueForKey(kHiddenBack);
    model->didChangeValueForKey(kHiddenFront);
}

void TwainViewArea::setFormatterForUnitAll(std::int32_t unit) {
    for (const auto& [keyPath, formatter] : _dictFmtMap)
        if (formatter)
            setFormatter(formatter, keyPath, unit);
}

std::optional<TwTextRange> TwainViewArea::rangeForUnit(const TwRange& range, std::int32_t unit) {
    const double lo = float(range.start);
    const double hi = float(range.start + range.length);
    const std::optional<int> places = TwAreaUnitPlaces(unit);
    if (!places)
        return std::nullopt;
    // Inches are divided first, then scaled, as the bounds have always been computed.
    auto inPlaces = [unit](double mm) {
        return unit == 0 ? mm / kTwMillimetresPerInch * 100.0 : mm * 10.0;
    };
    const std::optional<int> minimum = roundedBound(inPlaces(lo) + 0.5);
    const std::optional<int> maximum = roundedBound(inPlaces(hi) + 0.5);
    if (!minimum || !maximum)
        return std::nullopt;
    return TwTextRange{*minimum, *maximum, *places};
}

void TwainViewArea::setFormatter(TwainNumberFormatter* formatter, const std::string& keyPath,
                                 std::int32_t unit) {
    TwainDialogData* model = bindObject();
    if (!model || !formatter)
        return;
    const TwRange range = model->GetFormatterRange(keyPath);
    if (range.length == 0)
        return;
    const std::optional<TwTextRange> r = rangeForUnit(range, unit);
    if (!r) {
        OrvaLog(kOrvaLogDebug, "%s: %s keeps its range (unit %d)\n", "TwainViewArea::setFormatter",
                keyPath.c_str(), unit);
        return;
    }
    SetTextRangeFormatter(formatter, r->minimum, r->maximum, r->places);
}

TwainNumberFormatter* TwainViewArea::formatterForKeyPath(const std::string& keyPath) const {
    auto it = _dictFmtMap.find(keyPath);
    return it == _dictFmtMap.end() ? nullptr : it->second;
}
