#include "TwFormatter.h"

QValidator::State TwFormatter::validate(QString& input, int&) const {
    if (!isPartialStringValid(input))
        return Invalid;
    TwValue value;
    return getObjectValue(&value, input, nullptr) ? Acceptable : Intermediate;
}
