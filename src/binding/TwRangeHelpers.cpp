#include "TwRangeHelpers.h"

#include "OrvaDebug.h"
#include "TwBoundControl.h"
#include "TwBundle.h"
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

// Fills "%@" placeholders in order and "%1$@", "%2$@" by position; "%%" is a percent sign.
QString fillObjects(const QString& pattern, const QStringList& objects) {
    QString out;
    int next = 0;
    for (qsizetype i = 0; i < pattern.size(); ++i) {
        QChar c = pattern[i];
        if (c != '%' || i + 1 >= pattern.size()) {
            out += c;
            continue;
        }
        if (pattern[i + 1] == '%') {
            out += '%';
            ++i;
        } else if (pattern[i + 1] == '@') {
            out += next < objects.size() ? objects[next] : QString();
            ++next;
            ++i;
        } else {
            qsizetype j = i + 1;
            while (j < pattern.size() && pattern[j].isDigit())
                ++j;
            if (j > i + 1 && j + 1 < pattern.size() && pattern[j] == '$' && pattern[j + 1] == '@') {
                int n = pattern.mid(i + 1, j - i - 1).toInt();
                out += n >= 1 && n <= objects.size() ? objects[n - 1] : QString();
                i = j + 1;
            } else {
                out += c;
            }
        }
    }
    return out;
}

QString rangeMessagePattern() {
    if (auto own = TwBundle::moduleBundle())
        return QString::fromStdString(own->localizedStringForKey(kRangeMessageKey, kRangeMessageDefault));
    return QString::fromLatin1(kRangeMessageDefault);
}
} // namespace

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
    formatter->setErrorString(fillObjects(
        rangeMessagePattern(), {formatter->stringFromNumber(lo), formatter->stringFromNumber(hi)}));
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
