// A formatter converts between a control's text and the value it stands for. It is a QValidator,
// so a QLineEdit (or an editable combo box) that has it refuses keystrokes that can never become
// valid; the bindings use it to show values and to read typed entries.
#pragma once

#include "TwValue.h"

#include <QString>
#include <QValidator>

class TwFormatter : public QValidator {
    Q_OBJECT
public:
    using QValidator::QValidator;

    // The text for a value.
    virtual QString stringForObjectValue(const TwValue& object) const = 0;
    // The value of a finished entry. On failure the error slot, when given, may receive a
    // description of the failure.
    virtual bool getObjectValue(TwValue* object, const QString& string, QString* error) const = 0;
    // Whether a text being typed may stand.
    virtual bool isPartialStringValid(const QString& partial) const = 0;

    // Invalid when the partial text may not stand, Acceptable when it converts, else Intermediate.
    State validate(QString& input, int& pos) const override;
};
