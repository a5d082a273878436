#include "TwRangeHelpers.h"

#include "OrvaDebug.h"
#include "TwBoundControl.h"
#include "TwStrings.h"
#include "TwainNumberFormatter.h"

#include <QAbstractSlider>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QLineEdit>
#include <QSpinBox>

#include <climits>
#include <cmath>

namespace {
constexpr const char* kScaleProperty = "twValueScale";
constexpr const char* kAltIncrementProperty = "twAltIncrementValue";
constexpr const char* kRangeMessageKey = "IDS_MSG_INPUT_NUMER_RANGE";
constexpr const char* kRangeMessageDefault = "Must in %@ - %@";

int placesOrZero(int places) {
    return places > 0 ? places : 0;
}

double scaleFor(int places) {
    double scale = 1.0;
    for (int i = 0; i < placesOrZero(places); ++i)
        scale *= 10.0;
    return scale;
}

int clampToInt(double v) {
    if (!std::isfinite(v))
        return 0;
    return int(std::clamp(std::llround(std::clamp(v, double(INT_MIN), double(INT_MAX))), (long long)INT_MIN,
                          (long long)INT_MAX));
}

// The range message comes from this module's own table: a formatter knows no data source.
std::string rangeMessagePattern() {
    return TwLocalizedString(nullptr, kRangeMessageKey, kRangeMessageDefault);
}
} // namespace

std::optional<int> TwAreaUnitPlaces(std::int32_t unit) {
    switch (unit) {
    case 0:
        return 2;
    case 1:
        return 1;
    default:
        return std::nullopt;
    }
}

double TwScaledBound(int value, int places) {
    double v = value;
    for (int i = 0; i < placesOrZero(places); ++i)
        v /= 10.0;
    return v;
}

TwainNumberFormatter* CreateTextRangeFormatter(int minimum, int maximum, int places, QObject* parent) {
    auto* formatter = new TwainNumberFormatter(parent);
    formatter->setNumberStyle(TwainNumberFormatter::DecimalStyle);
    SetTextRangeFormatter(formatter, minimum, maximum, places);
    return formatter;
}

void SetTextRangeFormatter(TwainNumberFormatter* formatter, int minimum, int maximum, int places) {
    if (!formatter)
        return;
    const int d = placesOrZero(places);
    const double lo = TwScaledBound(minimum, places), hi = TwScaledBound(maximum, places);
    formatter->setNilSymbol(QString());
    formatter->setAllowsFloats(places > 0);
    formatter->setMaximumFractionDigits(d);
    formatter->setMinimum(lo);
    formatter->setMaximum(hi);
    formatter->setFormat(d == 0 ? QStringLiteral("0") : QStringLiteral("0.") + QString(d, '0'));
    formatter->setErrorString(QString::fromStdString(
        TwFormatString(rangeMessagePattern(), {formatter->stringFromNumber(lo).toStdString(),
                                               formatter->stringFromNumber(hi).toStdString()})));
}

void SetTextRange(QWidget* field, int minimum, int maximum, int places) {
    QLineEdit* edit = qobject_cast<QLineEdit*>(field);
    auto* combo = qobject_cast<QComboBox*>(field);
    if (combo)
        edit = combo->lineEdit();
    if (!edit) {
        OrvaLog(kOrvaLogError, "ERROR: %s: %s has no editable text\n", "SetTextRange",
                field ? field->metaObject()->className() : "(null)");
        return;
    }
    auto* old = qobject_cast<const TwainNumberFormatter*>(edit->validator());
    TwainNumberFormatter* formatter = CreateTextRangeFormatter(minimum, maximum, places, field);
    if (combo)
        combo->setValidator(formatter);
    else
        edit->setValidator(formatter);
    if (old && old->parent() == field)
        delete old;
    TwBoundControl::refresh(field);
}

void SetSliderRange(QAbstractSlider* slider, int minimum, int maximum, int places) {
    if (!slider)
        return;
    const double scale = scaleFor(places);
    slider->setProperty(kScaleProperty, scale);
    slider->setProperty(kAltIncrementProperty, 1.0);
    // Positions are the integers themselves; the scale turns them into the real bounds.
    slider->setRange(minimum, maximum);
    slider->setPageStep(std::max(1, clampToInt(1.0 * scale)));
    TwBoundControl::refresh(slider);
}

void SetTextSliderRange(QWidget* field, QAbstractSlider* slider, int minimum, int maximum, int places) {
    SetTextRange(field, minimum, maximum, places);
    SetSliderRange(slider, minimum, maximum, places);
}

void SetStepperRange(QAbstractSpinBox* stepper, int minimum, int maximum, int places, int increment) {
    if (auto* real = qobject_cast<QDoubleSpinBox*>(stepper)) {
        real->setDecimals(placesOrZero(places));
        real->setRange(TwScaledBound(minimum, places), TwScaledBound(maximum, places));
        real->setSingleStep(TwScaledBound(increment, places));
    } else if (auto* whole = qobject_cast<QSpinBox*>(stepper)) {
        whole->setProperty(kScaleProperty, scaleFor(places));
        whole->setRange(minimum, maximum);
        whole->setSingleStep(increment);
    } else {
        OrvaLog(kOrvaLogError, "ERROR: %s: %s is no numeric stepper\n", "SetStepperRange",
                stepper ? stepper->metaObject()->className() : "(null)");
        return;
    }
    TwBoundControl::refresh(stepper);
}

double TwValueScale(const QWidget* control) {
    bool ok = false;
    double scale = control ? control->property(kScaleProperty).toDouble(&ok) : 0.0;
    return ok && scale > 0 ? scale : 1.0;
}

double TwAltIncrementValue(const QAbstractSlider* slider) {
    bool ok = false;
    double v = slider ? slider->property(kAltIncrementProperty).toDouble(&ok) : 0.0;
    return ok ? v : 1.0;
}

double TwScaledValue(const QWidget* control) {
    if (auto* real = qobject_cast<const QDoubleSpinBox*>(control))
        return real->value();
    if (auto* slider = qobject_cast<const QAbstractSlider*>(control))
        return slider->value() / TwValueScale(control);
    if (auto* whole = qobject_cast<const QSpinBox*>(control))
        return whole->value() / TwValueScale(control);
    return 0.0;
}

void TwSetScaledValue(QWidget* control, double value) {
    if (auto* real = qobject_cast<QDoubleSpinBox*>(control))
        real->setValue(value);
    else if (auto* slider = qobject_cast<QAbstractSlider*>(control))
        slider->setValue(clampToInt(value * TwValueScale(control)));
    else if (auto* whole = qobject_cast<QSpinBox*>(control))
        whole->setValue(clampToInt(value * TwValueScale(control)));
}
