// Numeric controls are set up from integer ranges with a number of decimal places: 100 to 3560
// with one place stands for 10.0 to 356.0. The real bounds are the integers divided by 10.0 once
// per place; places of 0 or less divide nothing.
//
// Sliders and integer spin boxes have integer positions only, so a real range is mapped onto them
// with a scale (10^places) kept on the control; TwScaledValue/TwSetScaledValue read and write the
// real value through it.
#pragma once

#include <cstdint>
#include <optional>

class QAbstractSlider;
class QAbstractSpinBox;
class QObject;
class QWidget;
class TwainNumberFormatter;

// Decimal places an area value shows in a unit ("Data.Area.Unit"): 2 for inches (0), 1 for
// millimetres (1); nothing for another unit, whose values are shown as they are.
std::optional<int> TwAreaUnitPlaces(std::int32_t unit);

// The real value of the integer divided by 10.0 once per place.
double TwScaledBound(int value, int places);

// A new decimal formatter configured by SetTextRangeFormatter; the caller owns it (or gives it a
// parent).
TwainNumberFormatter* CreateTextRangeFormatter(int minimum, int maximum, int places,
                                               QObject* parent = nullptr);
// Replaces range, fraction digits, pattern and range message of the formatter together.
void SetTextRangeFormatter(TwainNumberFormatter* formatter, int minimum, int maximum, int places);
// Gives a text field (a QLineEdit, or an editable QComboBox) a new range formatter of its own.
void SetTextRange(QWidget* field, int minimum, int maximum, int places);
// Minimum and maximum scaled; the alternate increment (the page step, in real units) stays 1.0.
void SetSliderRange(QAbstractSlider* slider, int minimum, int maximum, int places);
// A text field and the slider beside it showing the same setting: SetTextRange and
// SetSliderRange with the one range.
void SetTextSliderRange(QWidget* field, QAbstractSlider* slider, int minimum, int maximum, int places);
// Minimum, maximum and increment all scaled.
void SetStepperRange(QAbstractSpinBox* stepper, int minimum, int maximum, int places, int increment);

// The real value of a slider or spin box (its position divided by its scale).
double TwScaledValue(const QWidget* control);
// Sets a slider or spin box to the real value (clamped to its range).
void TwSetScaledValue(QWidget* control, double value);
// The scale of an integer control; 1 when none was set.
double TwValueScale(const QWidget* control);
// The alternate increment of a slider in real units.
double TwAltIncrementValue(const QAbstractSlider* slider);
