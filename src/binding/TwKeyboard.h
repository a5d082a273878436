// The keyboard in the module's windows: Tab follows what the person sees, top to bottom and left
// to right, and a number field with a stepper beside it steps with Up and Down.
#pragma once

#include <QList>

class QAbstractSpinBox;
class QLineEdit;
class QWidget;

// The controls below root that take the focus with Tab, in the order they are seen: a layout's
// rows top to bottom and, within a row, left to right; a container's contents where it stands; a
// tab widget's bar before its pages. Hidden and disabled controls are listed too (Tab passes them
// over while they are), so that the order holds whatever the scanner model shows.
QList<QWidget*> TwVisualTabOrder(QWidget* root);

// Chains the controls below root in that order for Tab and Shift+Tab.
void TwSetVisualTabOrder(QWidget* root);

// The stepper is no stop of its own (Tab passes it); Up and Down in the field step the value as
// the stepper's arrows do, after a typed entry is ended.
void TwStepFieldWith(QLineEdit* field, QAbstractSpinBox* stepper);
