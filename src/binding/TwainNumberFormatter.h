// A decimal number formatter with bounds, a fixed pattern ("0", "0.0", "0.00") and its own
// rejection text, which names the allowed range ("Must in 10.0 - 356.0").
//
// Numbers are shown with the decimal separator of the user's language, as the platform's own
// formatters show them ("0,5" in German and French, "0.5" in English and Japanese), and a number is
// taken typed with either separator, so "0,5" and "0.5" are the same number in every language. The
// range in the rejection text is shown the same way.
#pragma once

#include "TwFormatter.h"

#include <optional>

// The decimal separator of the user's language (TwPreferredLanguage).
QChar TwDecimalSeparator();
// The number with that many places, with the user's decimal separator.
QString TwDecimalText(double value, int places);

class TwainNumberFormatter : public TwFormatter {
    Q_OBJECT
public:
    enum NumberStyle { NoStyle = 0, DecimalStyle = 1 };

    explicit TwainNumberFormatter(QObject* parent = nullptr);

    void setNumberStyle(int style);
    int numberStyle() const { return m_numberStyle; }
    // The text of a null value; a null string means none (an empty text).
    void setNilSymbol(const QString& symbol);
    QString nilSymbol() const { return m_nilSymbol; }
    void setAllowsFloats(bool allows);
    bool allowsFloats() const { return m_allowsFloats; }
    void setMaximumFractionDigits(int digits);
    int maximumFractionDigits() const { return m_maximumFractionDigits; }
    void setMinimum(std::optional<double> minimum);
    std::optional<double> minimum() const { return m_minimum; }
    void setMaximum(std::optional<double> maximum);
    std::optional<double> maximum() const { return m_maximum; }
    // "0" followed by "." and the fraction digits shown; empty for no fixed pattern.
    void setFormat(const QString& pattern);
    QString format() const { return m_format; }
    // The rejection text; a null string means none (a rejection then comes with no description).
    void setErrorString(const QString& text);
    QString errorString() const { return m_errorString; }

    QString stringFromNumber(double number) const;
    QString stringForObjectValue(const TwValue& object) const override;
    // A decimal number within the bounds, rounded to the fraction digits: an integer value when
    // fractions are not allowed, a real one otherwise. The empty text is rejected too.
    bool getObjectValue(TwValue* object, const QString& string, QString* error) const override;
    // Sign, digits and (when fractions are allowed) one point with at most the fraction digits.
    bool isPartialStringValid(const QString& partial) const override;

private:
    bool parse(const QString& string, double* number) const;
    int shownFractionDigits() const;

    int m_numberStyle = NoStyle;
    QString m_nilSymbol;
    bool m_allowsFloats = true;
    int m_maximumFractionDigits = 3;
    std::optional<double> m_minimum;
    std::optional<double> m_maximum;
    QString m_format;
    QString m_errorString;
};
