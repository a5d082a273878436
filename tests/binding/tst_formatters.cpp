// The number and text formatters and the range helpers: bounds, patterns and messages for 0, 1,
// 2 and negative places, parsing and partial entries, the length limit, and the scaled ranges of
// sliders and steppers.
#include "TwBundle.h"
#include "WidgetTestSupport.h"

class TestFormatters : public QObject {
    Q_OBJECT

    static std::unique_ptr<TwainNumberFormatter> formatter(int minimum, int maximum, int places) {
        return std::unique_ptr<TwainNumberFormatter>(CreateTextRangeFormatter(minimum, maximum, places));
    }

private slots:
    void init() {
        // This module's own bundle as the build lays it out.
        TwBundle::setModuleBundlePath(VMX_BUNDLE_DIR);
        qputenv("LANGUAGE", "en");
    }
    void cleanup() { TwBundle::setModuleBundlePath(""); }

    // ---- number formatter set-up ----

    // Pattern, bounds and message; whether fractions are allowed, and how many, the parsing and
    // partial cases show.
    void rangeSetUp_data() {
        columns<int, int, int, QString, double, double, QString>("minimum", "maximum", "places", "pattern",
                                                                 "low", "high", "message");
        row("no places", 1, 300, 0, "0", 1.0, 300.0, "Enter a number from 1 to 300.");
        row("one place", 100, 3560, 1, "0.0", 10.0, 356.0, "Enter a number from 10.0 to 356.0.");
        row("two places", 1, 500, 2, "0.00", 0.01, 5.0, "Enter a number from 0.01 to 5.00.");
        row("negative places", 5, 50, -2, "0", 5.0, 50.0, "Enter a number from 5 to 50.");
        row("negative bounds", -250, 250, 1, "0.0", -25.0, 25.0, "Enter a number from -25.0 to 25.0.");
        row("empty range", 0, 0, 0, "0", 0.0, 0.0, "Enter a number from 0 to 0.");
    }
    void rangeSetUp() {
        auto [minimum, maximum, places] = fetch<int, int, int>("minimum", "maximum", "places");
        // Set up over one made for another range: every part is replaced.
        auto f = formatter(-7, 7, places > 0 ? 0 : 1);
        SetTextRangeFormatter(f.get(), minimum, maximum, places);
        QTEST(f->format(), "pattern");
        QVERIFY(f->minimum() && f->maximum());
        QTEST(*f->minimum(), "low");
        QTEST(*f->maximum(), "high");
        QTEST(f->errorString(), "message");
    }

    // ---- parsing ----

    void parsing_data() {
        columns<int, QString, bool, double>("places", "text", "accepted", "value");
        // 100..3560 with the given places: 10.0..356.0 (1), 1.00..35.60 (2), 100..3560 (0).
        row("1: inside", 1, "12.5", true, 12.5);
        row("1: upper bound", 1, "356", true, 356.0);
        row("1: above", 1, "400", false, 0.0);
        row("1: just above", 1, "356.1", false, 0.0);
        row("1: blanks around", 1, " 20 ", true, 20.0);
        row("1: rounded to the place", 1, "20.26", true, 20.3);
        row("1: letters", 1, "12a", false, 0.0);
        row("1: exponent", 1, "1e2", false, 0.0);
        row("1: empty", 1, "", false, 0.0);
        row("1: leading point", 1, ".5", false, 0.0);
        row("0: integer", 0, "3000", true, 3000.0);
        row("0: fraction refused", 0, "150.5", false, 0.0);
        row("-2: no places either", -2, "150.5", false, 0.0);
        row("-2: integer", -2, "150", true, 150.0);
        row("2: hundredths", 2, "1.01", true, 1.01);
        row("2: upper bound", 2, "35.6", true, 35.6);
        row("2: below", 2, "0.99", false, 0.0);
    }
    void parsing() {
        auto [places, text, accepted, value] =
            fetch<int, QString, bool, double>("places", "text", "accepted", "value");
        auto f = formatter(100, 3560, places);
        TwValue parsed;
        QString error;
        QCOMPARE(f->getObjectValue(&parsed, text, &error), accepted);
        // A rejection describes the range; an accepted number is whole exactly when there are no places.
        QCOMPARE(error, accepted ? QString() : f->errorString());
        QCOMPARE(parsed.doubleValue(), value);
        QCOMPARE(parsed.isInteger(), accepted && places <= 0);
        QCOMPARE(parsed.isReal(), accepted && places > 0);
    }

    // ---- the message text from the bundles ----

    // The range message comes from this module's table in the user's language, else the default.
    void rangeMessage() {
        // Language (none: no bundle at all), the table's text (none: no table), the message.
        const char* cases[][3] = {{"de", "Erlaubt: %@ bis %@", "Erlaubt: 0.01 bis 5.00"},
                                  {"en", "From %2$@ down to %1$@ (100%%)", "From 5.00 down to 0.01 (100%)"},
                                  {"en", "", "Must in 0.01 - 5.00"},
                                  {"", "", "Must in 0.01 - 5.00"}};
        for (auto& [lang, text, message] : cases) {
            QTemporaryDir dir;
            const QString folder = dir.path() + "/Own.bundle/Contents/Resources/" + lang + ".lproj";
            QVERIFY(QDir().mkpath(folder));
            QFile strings(folder + "/Localizable.strings");
            if (*text && strings.open(QIODevice::WriteOnly))
                strings.write(
                    QString("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>"
                            "<key>IDS_MSG_INPUT_NUMER_RANGE</key><string>%1</string></dict></plist>\n")
                        .arg(text)
                        .toUtf8());
            strings.close();
            TwBundle::setModuleBundlePath(*lang ? (dir.path() + "/Own.bundle").toStdString() : "");
            qputenv("LANGUAGE", lang);
            QCOMPARE(formatter(1, 500, 2)->errorString(), QString(message));
        }
    }

    // ---- display ----

    void display_data() {
        columns<int, TwValue, QString>("places", "value", "text");
        row("0: rounds", 0, TwValue(12.6), "13");
        row("0: integer", 0, TwValue(300), "300");
        row("1: integer padded", 1, TwValue(12), "12.0");
        row("1: real", 1, TwValue(356.04), "356.0");
        row("2: no minus zero", 2, TwValue(-0.001), "0.00");
        row("2: negative", 2, TwValue(-1.5), "-1.50");
        row("2: string number", 2, TwValue("12.5"), "12.50");
        row("2: null is the nil symbol", 2, TwValue(), "");
        row("1: array is the nil symbol", 1, TwValue::array({1}), "");
    }
    void display() {
        auto [places, value] = fetch<int, TwValue>("places", "value");
        QTEST(formatter(-100000, 100000, places)->stringForObjectValue(value), "text");
    }

    void displayWithoutPatternTrimsZeros() {
        TwainNumberFormatter f;
        QCOMPARE(f.stringFromNumber(2.5), QString("2.5"));
        QCOMPARE(f.stringFromNumber(2.0), QString("2"));
        QCOMPARE(f.stringFromNumber(2.12345), QString("2.123"));
    }

    // ---- partial entries (as typed into a field) ----

    void partial_data() {
        columns<int, QString, int>("places", "text", "state");
        const int invalid = QValidator::Invalid, intermediate = QValidator::Intermediate,
                  acceptable = QValidator::Acceptable;
        row("1: acceptable", 1, "12.5", acceptable);
        row("1: trailing point", 1, "12.", acceptable);
        row("1: out of range may still grow", 1, "4", intermediate);
        row("1: sign", 1, "-", intermediate);
        row("1: empty", 1, "", intermediate);
        row("1: letter", 1, "12a", invalid);
        row("1: second place", 1, "12.55", invalid);
        row("1: two points", 1, "1.2.3", invalid);
        row("0: point", 0, "12.", invalid);
        row("2: second place", 2, "1.25", acceptable);
    }
    void partial() {
        auto [places, text] = fetch<int, QString>("places", "text");
        auto f = formatter(100, 3560, places);
        int pos = int(text.size());
        QTEST(int(f->validate(text, pos)), "state");
    }

    // ---- text formatter ----

    // The limit counts UTF-16 units as the platform does; a negative limit is none.
    void textFormatterLimit_data() {
        columns<int, QString, bool>("limit", "text", "accepted");
        row("default, long", INT32_MAX, QString(100000, 'x'), true);
        row("64 of 64", 64, QString(64, 'x'), true);
        row("65 of 64", 64, QString(65, 'x'), false);
        row("zero limit", 0, "x", false);
        row("negative limit accepts all", -1, QString(100000, 'x'), true);
        row("emoji is two units: 4 of 3", 3, QString::fromUtf8("ab\xF0\x9F\x98\x80"), false);
        row("emoji is two units: 4 of 4", 4, QString::fromUtf8("ab\xF0\x9F\x98\x80"), true);
    }
    void textFormatterLimit() {
        auto [limit, text, accepted] = fetch<int, QString, bool>("limit", "text", "accepted");
        TwainTextFormatter f;
        if (limit != INT32_MAX)
            f.setMaximumLength(limit);
        QCOMPARE(f.maximumLength(), limit);
        QCOMPARE(f.isPartialStringValid(text), accepted);
        int pos = 0;
        QCOMPARE(f.validate(text, pos), accepted ? QValidator::Acceptable : QValidator::Invalid);
        // Any text is its own value.
        TwValue value;
        QString error = "untouched";
        QVERIFY(f.getObjectValue(&value, text, &error));
        QCOMPARE(error, QString("untouched"));
        QCOMPARE(QString::fromStdString(value.stringValue()), text);
        QCOMPARE(f.stringForObjectValue(TwValue(12)), QString("12"));
    }

    // ---- fields, sliders, steppers ----

    // A line edit or an editable combo box gets a formatter of its own, replacing the one it made
    // before; anything else is refused with a log line.
    void setTextRangeInstallsOwnFormatter() {
        QLineEdit edit;
        SetTextRange(&edit, 1, 255, 0);
        QPointer<const QValidator> first = edit.validator();
        auto* f = qobject_cast<const TwainNumberFormatter*>(first.data());
        QVERIFY(f);
        QCOMPARE(f->parent(), &edit);
        QCOMPARE(f->errorString(), QString("Enter a number from 1 to 255."));
        SetTextRange(&edit, 0, 2100, 1);
        auto* second = qobject_cast<const TwainNumberFormatter*>(edit.validator());
        QVERIFY(second && second != f);
        QCOMPARE(second->format(), QString("0.0"));
        QVERIFY(first.isNull());

        QComboBox combo, popUp;
        combo.setEditable(true);
        SetTextRange(&combo, 50, 600, 0);
        QVERIFY(qobject_cast<const TwainNumberFormatter*>(combo.lineEdit()->validator()));
        LogCapture log;
        QLabel label;
        SetTextRange(&label, 1, 2, 0);
        SetTextRange(nullptr, 1, 2, 0);
        SetTextRange(&popUp, 1, 2, 0);
        QCOMPARE(log.count("SetTextRange: QLabel has no editable text"), 1);
        QCOMPARE(log.count("has no editable text"), 3);
    }

    void sliderRange_data() {
        columns<int, int, int, double, double>("minimum", "maximum", "places", "low", "high");
        row("0 places", 1, 255, 0, 1.0, 255.0);
        row("1 place", 100, 3560, 1, 10.0, 356.0);
        row("2 places", 1, 5000, 2, 0.01, 50.0);
        row("negative places", 1, 500, -1, 1.0, 500.0);
    }
    void sliderRange() {
        auto [minimum, maximum, places] = fetch<int, int, int>("minimum", "maximum", "places");
        QSlider slider;
        SetSliderRange(&slider, minimum, maximum, places);
        QTEST(slider.minimum() / TwValueScale(&slider), "low");
        QTEST(slider.maximum() / TwValueScale(&slider), "high");
        // The alternate increment stays 1.0 in real units whatever the places.
        QCOMPARE(TwAltIncrementValue(&slider), 1.0);
        QCOMPARE(slider.pageStep() / TwValueScale(&slider), 1.0);
        QFETCH(double, high);
        TwSetScaledValue(&slider, high);
        QCOMPARE(TwScaledValue(&slider), high);
        TwSetScaledValue(&slider, high * 10);
        QCOMPARE(TwScaledValue(&slider), high); // clamped
    }

    void stepperRange() {
        QDoubleSpinBox real;
        SetStepperRange(&real, 0, 100, 1, 5);
        QCOMPARE(real.maximum(), 10.0);
        real.setValue(2.0);
        real.stepUp();
        QCOMPARE(TwScaledValue(&real), 2.5);

        QSpinBox whole;
        SetStepperRange(&whole, 0, 100, 1, 5);
        QCOMPARE(whole.maximum() / TwValueScale(&whole), 10.0);
        TwSetScaledValue(&whole, 2.0);
        whole.stepUp();
        QCOMPARE(TwScaledValue(&whole), 2.5);

        // Negative places divide nothing; the brightness steppers use 1..255 step 1.
        QDoubleSpinBox plain;
        SetStepperRange(&plain, 1, 255, -2, 3);
        QCOMPARE(plain.maximum(), 255.0);
        QCOMPARE(plain.singleStep(), 3.0);
    }
};

QTEST_MAIN(TestFormatters)
#include "tst_formatters.moc"
