// Ending the editing of a window before its values are used (OK, Scan, Save): every text field
// with a typed entry that has not been written yet is committed. A field whose formatter rejects
// its entry refuses: the formatter's message is shown, the field gets the focus back with its
// text selected, and the caller stops.
#pragma once

#include <QString>

#include <functional>

class QLineEdit;
class QWidget;

// Shows a formatter's rejection for a field. The default is a warning message box over the
// field's window; tests install one that records.
using TwFormatterAlert = std::function<void(QWidget* field, const QString& message)>;
// An empty function restores the default.
void TwSetFormatterAlert(TwFormatterAlert alert);

// The text shown when a formatter rejects an entry without a message of its own.
QString TwFormatterDefaultMessage();

// False when a field of the window holds an entry its formatter rejects; the focused field is
// checked first.
bool TwEndEditing(QWidget* window);

// Has the field checked whenever the person leaves it (Tab, a click elsewhere; not when the
// window goes to the background): a rejected entry is refused there and then, as at TwEndEditing.
// The message names the field by its row label.
void TwCheckWhenLeft(QLineEdit* edit);
