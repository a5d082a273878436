// What the Designer forms ask of their widgets through dynamic properties, kept up as things change:
// - "fieldChars" (number field): wide enough for that many digits in its font and style;
// - "stepperFor" (spin box): only its arrows; the named field beside it shows the value and steps
//   with Up and Down, and the stepper is no Tab stop of its own;
// - "follows" (label): shown, hidden and greyed with the named control, so that a row the scanner
//   model hides leaves no label behind;
// and Tab follows the order in which the controls are seen (TwSetVisualTabOrder).
#pragma once

class QWidget;

// Called once by every class that sets a form up, after setupUi(); a second call does nothing.
void TwPrepareForm(QWidget* form);
