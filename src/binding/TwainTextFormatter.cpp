#include "TwainTextFormatter.h"

TwainTextFormatter::TwainTextFormatter(QObject* parent) : TwFormatter(parent) {}

void TwainTextFormatter::setMaximumLength(std::int32_t length) {
    maxLength = length;
    emit changed();
}

QString TwainTextFormatter::stringForObjectValue(const TwValue& object) const {
    return QString::fromStdString(object.stringValue());
}

bool TwainTextFormatter::getObjectValue(TwValue* object, const QString& string, QString*) const {
    if (object)
        *object = TwValue(string.toStdString());
    return true;
}

bool TwainTextFormatter::isPartialStringValid(const QString& partial) const {
    return std::uint64_t(partial.size()) <= std::uint64_t(std::int64_t(maxLength));
}
