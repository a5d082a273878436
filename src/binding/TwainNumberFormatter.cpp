#include "TwainNumberFormatter.h"

#include "TwBundle.h"

#include <QLocale>
#include <QRegularExpression>

#include <cmath>
#include <mutex>

namespace {
// Bounds are tenths or hundredths divided out in double precision; allow for the last bit.
bool below(double v, double bound) {
    return v < bound - 1e-9 * std::max(1.0, std::fabs(bound));
}
bool above(double v, double bound) {
    return v > bound + 1e-9 * std::max(1.0, std::fabs(bound));
}
} // namespace

TwainNumberFormatter::TwainNumberFormatter(QObject* parent) : TwFormatter(parent) {}

void TwainNumberFormatter::setNumberStyle(int style) {
    m_numberStyle = style;
    emit changed();
}

void TwainNumberFormatter::setNilSymbol(const QString& symbol) {
    m_nilSymbol = symbol;
    emit changed();
}

void TwainNumberFormatter::setAllowsFloats(bool allows) {
    m_allowsFloats = allows;
    emit changed();
}

void TwainNumberFormatter::setMaximumFractionDigits(int digits) {
    m_maximumFractionDigits = std::max(0, digits);
    emit changed();
}

void TwainNumberFormatter::setMinimum(std::optional<double> minimum) {
    m_minimum = minimum;
    emit changed();
}

void TwainNumberFormatter::setMaximum(std::optional<double> maximum) {
    m_maximum = maximum;
    emit changed();
}

void TwainNumberFormatter::setFormat(const QString& pattern) {
    m_format = pattern;
    emit changed();
}

void TwainNumberFormatter::setErrorString(const QString& text) {
    m_errorString = text;
}

int TwainNumberFormatter::shownFractionDigits() const {
    if (m_format.isEmpty())
        return m_allowsFloats ? m_maximumFractionDigits : 0;
    qsizetype point = m_format.indexOf('.');
    return point < 0 ? 0 : int(m_format.size() - point - 1);
}

QChar TwDecimalSeparator() {
    // The language rarely changes within a process: its separator is kept until it does.
    static std::mutex lock;
    static std::string language;
    static QChar separator = '.';
    const std::string now = TwPreferredLanguage();
    std::lock_guard guard(lock);
    if (now != language) {
        language = now;
        const QString point = QLocale(QString::fromStdString(now)).decimalPoint();
        separator = point.size() == 1 ? point[0] : QChar('.');
    }
    return separator;
}

QString TwDecimalText(double value, int places) {
    return QString::number(value, 'f', std::max(places, 0)).replace('.', TwDecimalSeparator());
}

QString TwainNumberFormatter::stringFromNumber(double number) const {
    if (!std::isfinite(number))
        return QString();
    const int digits = shownFractionDigits();
    QString text = QString::number(number, 'f', digits);
    if (m_format.isEmpty() && text.contains('.')) {
        // Without a pattern, trailing zeros are not shown.
        while (text.endsWith('0'))
            text.chop(1);
        if (text.endsWith('.'))
            text.chop(1);
    }
    // No "-0.0".
    static const QRegularExpression negativeZero(QStringLiteral("^-0(\\.0*)?$"));
    if (negativeZero.match(text).hasMatch())
        text.remove(0, 1);
    return text.replace('.', TwDecimalSeparator());
}

QString TwainNumberFormatter::stringForObjectValue(const TwValue& object) const {
    if (object.isNumber() || object.isString())
        return stringFromNumber(object.doubleValue());
    return m_nilSymbol;
}

bool TwainNumberFormatter::isPartialStringValid(const QString& partial) const {
    static const QRegularExpression withPoint(QStringLiteral("^\\s*[+-]?\\d*([.,](\\d*))?\\s*$"));
    static const QRegularExpression withoutPoint(QStringLiteral("^\\s*[+-]?\\d*\\s*$"));
    auto match = (m_allowsFloats ? withPoint : withoutPoint).match(partial);
    if (!match.hasMatch())
        return false;
    return !m_allowsFloats || match.capturedLength(2) <= m_maximumFractionDigits;
}

bool TwainNumberFormatter::parse(const QString& string, double* number) const {
    static const QRegularExpression shape(QStringLiteral("^[+-]?(\\d+(\\.\\d*)?|\\.\\d+)$"));
    // Either separator, whatever the language.
    const QString text = string.trimmed().replace(',', '.');
    if (!shape.match(text).hasMatch())
        return false;
    if (!m_allowsFloats && text.contains('.'))
        return false;
    bool ok = false;
    double v = text.toDouble(&ok);
    if (!ok || !std::isfinite(v))
        return false;
    if (m_allowsFloats) {
        // What the field shows after editing is what the model gets.
        double scale = std::pow(10.0, shownFractionDigits());
        v = std::round(v * scale) / scale;
    }
    if ((m_minimum && below(v, *m_minimum)) || (m_maximum && above(v, *m_maximum)))
        return false;
    *number = v;
    return true;
}

bool TwainNumberFormatter::getObjectValue(TwValue* object, const QString& string, QString* error) const {
    double v = 0;
    if (!parse(string, &v)) {
        if (error && !m_errorString.isNull())
            *error = m_errorString;
        return false;
    }
    if (object)
        *object = m_allowsFloats ? TwValue(v) : TwValue(static_cast<long long>(std::llround(v)));
    return true;
}
