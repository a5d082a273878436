// Free text with a length limit: the value is the string itself, and a text longer than the
// limit is refused as it is typed.
#pragma once

#include "TwFormatter.h"

#include <cstdint>

class TwainTextFormatter : public TwFormatter {
    Q_OBJECT
public:
    explicit TwainTextFormatter(QObject* parent = nullptr);

    void setMaximumLength(std::int32_t length);
    std::int32_t maximumLength() const { return maxLength; }

    QString stringForObjectValue(const TwValue& object) const override;
    // Always succeeds; the value is the string.
    bool getObjectValue(TwValue* object, const QString& string, QString* error) const override;
    // At most maximumLength characters (UTF-16 units, as the platform counts them). The limit is
    // widened to an unsigned 64-bit number first, so a negative limit accepts everything.
    bool isPartialStringValid(const QString& partial) const override;

private:
    std::int32_t maxLength = INT32_MAX;
};
