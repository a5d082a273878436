// The value reactions and the mirroring between the working copies under "temp." and the
// setting: side selectors, per-side working values, the area in the user's unit.
#include "ModelTestSupport.h"

#include <stdexcept>

class TestMirroring : public ModelFixture {
    Q_OBJECT

    static TwValue duplexRule() {
        return dict({{"enable.Duplex", dict({{"Data.PaperSource", TwValue::array({1, 4})}})}});
    }

    static double number(TwainDialogData& model, const char* keyPath) {
        return model.valueForKeyPath(keyPath).doubleValue();
    }

private slots:
    void init() { fresh(); }

    // ---- Paper source and side selectors ----

    // Without duplex every side selector shows the front. With duplex a family whose sides are kept
    // equal (or that has no such flag yet: it is stored as true) selects both; the others stay.
    void paperSourceSetsTheSideSelectors() {
        def->rules = duplexRule();
        reload();
        for (const char* family : TwainDialogData::kSideFamilies)
            model->setValueForKeyPathWithoutNotification(TwValue(2), std::string("temp.") + family + "Side");
        model->setValueForKeyPath(TwValue(3), "Data.PaperSource");
        for (const char* family : TwainDialogData::kSideFamilies)
            QCOMPARE(model->valueForKeyPath(std::string("temp.") + family + "Side"), TwValue(0));

        QVERIFY(model->valueForKeyPath("Data.GrayImage.Keep2SideSame").isNull());
        model->setValueForKeyPath(TwValue(true), "Data.ColorImage.Keep2SideSame");
        model->setValueForKeyPath(TwValue(4), "Data.PaperSource");
        QCOMPARE(
            valuesAt(*model, {"Data.GrayImage.Keep2SideSame", "temp.GrayImageSide", "temp.ColorImageSide",
                              "temp.BinaryImageSide", "Data.BinaryImage.Keep2SideSame"}),
            TwValue::array({true, 2, 2, 0, false}));
    }

    void selectingASideLoadsItsValues() {
        def->rules = duplexRule();
        reload();
        model->setValueForKeyPath(TwValue(1), "Data.PaperSource");
        model->setValueForKeyPath(TwValue(true), "Data.BinaryImage.Keep2SideSame");
        model->setValueForKeyPath(TwValue(1), "temp.BinaryImageSide");
        QCOMPARE(
            valuesAt(*model, {"temp.BinaryImage.Brightness", "temp.BinaryImage.Gamma", "Data.BinaryImageSide",
                              "temp.BinaryImageSideText", "Data.BinaryImage.Keep2SideSame"}),
            TwValue::array({200, 1, 1, "Back side", false}));
        // The setting itself is not touched by showing another side.
        QCOMPARE(model->valueForKeyPath("Data.BinaryImage.Front.Brightness"), TwValue(100));
        model->setValueForKeyPath(TwValue(0), "temp.BinaryImageSide");
        QCOMPARE(valuesAt(*model, {"temp.BinaryImage.Brightness", "temp.BinaryImageSideText"}),
                 TwValue::array({100, "Front side"}));
    }

    void showingAnotherSideKeepsTheProfileName() {
        model->setValueForKeyPathWithoutNotification(TwValue("Mine"), "profiles.name");
        model->setValueForKeyPath(TwValue(1), "temp.GrayImageSide");
        QCOMPARE(valuesAt(*model, {"Data.GrayImageSide", "profiles.name"}), TwValue::array({1, "Mine"}));
        // Making both sides equal is an edit of the setting.
        model->setValueForKeyPath(TwValue(2), "temp.GrayImageSide");
        QCOMPARE(model->valueForKeyPath("profiles.name"), TwValue("Untitled"));
    }

    void choosingBothCopiesTheShownSide() {
        def->rules = duplexRule();
        reload();
        model->setValueForKeyPath(TwValue(1), "Data.PaperSource");
        for (int shown : {0, 1}) {
            const std::string from = shown ? "Data.GrayImage.Back" : "Data.GrayImage.Front";
            const std::string to = shown ? "Data.GrayImage.Front" : "Data.GrayImage.Back";
            model->setValueForKeyPath(TwValue(shown), "temp.GrayImageSide");
            model->setValueForKeyPathWithoutNotification(TwValue(50 + shown), from + ".Brightness");
            TwValue source = model->valueForKeyPath(from).deepCopy();
            model->setValueForKeyPath(TwValue(2), "temp.GrayImageSide");
            QCOMPARE(model->valueForKeyPath(to), source);
            QCOMPARE(model->valueForKeyPath(from), source);
            QCOMPARE(valuesAt(*model, {"Data.GrayImage.Keep2SideSame", "temp.GrayImageSideText",
                                       "Data.GrayImageSide"}),
                     TwValue::array({true, "Both sides", 2}));
        }
    }

    void sideSelectorCorners_data() {
        // brightness: 55: the working copy was not reloaded
        columns<int, TwValue, TwValue, TwValue, TwValue>("before", "chosen", "side", "text", "brightness");
        row("unknown: no text, nothing loaded", 0, TwValue(5), TwValue(5), TwValue(""), TwValue(55));
        row("not a number: front", 1, TwValue("back"), TwValue(0), TwValue("Front side"), TwValue(101));
        row("the same side again: nothing loaded", 1, TwValue(1), TwValue(1), TwValue("Back side"),
            TwValue(55));
    }
    void sideSelectorCorners() {
        auto [before, chosen] = fetch<int, TwValue>("before", "chosen");
        model->setValueForKeyPath(TwValue(before), "temp.GrayImageSide");
        model->setValueForKeyPathWithoutNotification(TwValue(55), "temp.GrayImage.Brightness");
        model->setValueForKeyPath(chosen, "temp.GrayImageSide");
        QTEST(model->valueForKeyPath("temp.GrayImageSide"), "side");
        QTEST(model->valueForKeyPath("temp.GrayImageSideText"), "text");
        QTEST(model->valueForKeyPath("temp.GrayImage.Brightness"), "brightness");
    }

    // ---- Working values ----

    void workingValuesReachTheSelectedSides_data() {
        columns<TwValue, TwValue, TwValue, TwValue>("side", "entered", "front", "back");
        row("both, rounded up", TwValue(2), TwValue(12.6), TwValue(13), TwValue(13));
        row("negative goes toward zero", TwValue(2), TwValue(-2.7), TwValue(-2), TwValue(-2));
        row("a half rounds up", TwValue(2), TwValue(0.5), TwValue(1), TwValue(1));
        row("minus a half gives zero", TwValue(2), TwValue(-0.5), TwValue(0), TwValue(0));
        row("text passes unchanged", TwValue(2), TwValue("custom"), TwValue("custom"), TwValue("custom"));
        row("front only", TwValue(0), TwValue(7), TwValue(7), TwValue(201));
        row("back only", TwValue(1), TwValue(7.2), TwValue(101), TwValue(7));
        row("unknown side: nowhere", TwValue(3), TwValue(7), TwValue(101), TwValue(201));
        row("side not a number: nowhere", TwValue("1"), TwValue(7), TwValue(101), TwValue(201));
    }
    void workingValuesReachTheSelectedSides() {
        auto [side, entered, front, back] =
            fetch<TwValue, TwValue, TwValue, TwValue>("side", "entered", "front", "back");
        model->setValueForKeyPathWithoutNotification(side, "temp.GrayImageSide");
        model->setValueForKeyPath(entered, "temp.GrayImage.Brightness");
        QCOMPARE(model->valueForKeyPath("Data.GrayImage.Front.Brightness"), front);
        QCOMPARE(model->valueForKeyPath("Data.GrayImage.Back.Brightness"), back);
        // A mirrored number is a whole number, not a rounded real.
        QCOMPARE(model->valueForKeyPath("Data.GrayImage.Front.Brightness").isInteger(), front.isInteger());
        QCOMPARE(model->valueForKeyPath("Data.GrayImage.Back.Brightness").isInteger(), back.isInteger());
    }

    void workingValuesWaitWhileRegistering() {
        model->m_bInInit = true;
        model->setValueForKeyPath(TwValue(42), "temp.BinaryImage.Contrast");
        QCOMPARE(model->valueForKeyPath("Data.BinaryImage.Front.Contrast"), TwValue(110));
        model->m_bInInit = false;
        model->setValueForKeyPath(TwValue(43), "temp.BinaryImage.Contrast");
        QCOMPARE(model->valueForKeyPath("Data.BinaryImage.Front.Contrast"), TwValue(43));
    }

    void workingCopyKeys_data() {
        columns<QString, int, QString>("key", "grayside", "expected");
        row("back shown, back key", "Data.GrayImage.Back.Gamma", 1, "temp.GrayImage.Gamma");
        row("front shown, back key", "Data.GrayImage.Back.Gamma", 0, "(none)");
        row("both, back key", "Data.GrayImage.Back.Gamma", 2, "(none)");
        row("back shown, front key", "Data.GrayImage.Front.Gamma", 1, "(none)");
        row("selector", "Data.BinaryImageSide", 0, "temp.BinaryImageSide");
        row("area", "Data.Area.Measure.Front.L2.Width", 0, "temp.Area.Front.L2.Width");
        row("plain setting", "Data.Resolution", 0, "(none)");
    }
    void workingCopyKeys() {
        auto [key, grayside] = fetch<QString, int>("key", "grayside");
        model->setValueForKeyPathWithoutNotification(TwValue(grayside), "Data.GrayImageSide");
        auto got = model->GetTempKey(key.toStdString(), model->m_dictData);
        QTEST(QString::fromStdString(got.value_or("(none)")), "expected");
    }

    // ---- Other reactions ----

    void imageTypeTexts_data() {
        columns<int, QString, QString>("type", "distinction", "grayColor");
        row("auto gray", 22, QString("IDS_STR_MULTIRES_NEW"), QString("IDS_STR_GRAY"));
        row("auto colour", 23, QString("IDS_STR_MULTIRES_NEW"), QString("IDS_STR_COLOR"));
        row("colour", 2, QString("IDS_STR_AUTORES_NEW"), QString("IDS_STR_COLOR"));
    }
    void imageTypeTexts() {
        auto [type, distinction, grayColor] =
            fetch<int, QString, QString>("type", "distinction", "grayColor");
        model->setValueForKeyPath(TwValue(type), "Data.ImageType");
        auto text = [&](const QString& key) {
            return TwValue(model->localizedString(key.toStdString()));
        };
        QCOMPARE(model->valueForKeyPath("temp.Distinction"), text(distinction));
        QCOMPARE(model->valueForKeyPath("temp.GrayColor"), text(grayColor));
    }

    void aDisabledFeedPageModeIsSwitchedOff() {
        def->rules = dict(
            {{"enable.Feed.FeedPageMode", dict({{"NOT", dict({{"Data.PaperSource", 2}})}})},
             {"enable.Feed.FeedPage",
              dict({{"AND", dict({{"enable.Feed.FeedPageMode", true}, {"Data.Feed.FeedPageMode", 1}})}})}});
        reload();
        QCOMPARE(model->valueForKeyPath("enable.Feed.FeedPage"), TwValue(true));
        model->setValueForKeyPath(TwValue(2), "Data.PaperSource");
        QCOMPARE(
            valuesAt(*model, {"enable.Feed.FeedPageMode", "Data.Feed.FeedPageMode", "enable.Feed.FeedPage"}),
            TwValue::array({false, 0, false}));
        model->setValueForKeyPath(TwValue(0), "Data.PaperSource");
        QCOMPARE(valuesAt(*model, {"enable.Feed.FeedPageMode", "Data.Feed.FeedPageMode"}),
                 TwValue::array({true, 0}));
    }

    // ---- The area in the user's unit ----

    // The working area is recomputed from the setting, which stays in millimetres: only a real change
    // of unit converts, a unit that is no number is inches, an area value that is no number is refused.
    void unitChangeConvertsTheWorkingArea() {
        QCOMPARE(number(*model, "temp.Area.Width"), 210.0);
        model->setValueForKeyPath(TwValue(0), "Data.Area.Unit");
        QCOMPARE(number(*model, "temp.Area.Width"), 210.0 / 25.4);
        QCOMPARE(number(*model, "temp.Area.Front.L1.X"), 10.0 / 25.4);
        QCOMPARE(number(*model, "Data.Area.Measure.Width"), 210.0);
        model->setValueForKeyPath(TwValue(1), "Data.Area.Unit");
        QCOMPARE(number(*model, "temp.Area.Width"), 210.0);
        QCOMPARE(number(*model, "temp.Area.Length"), 297.0);
        QVERIFY(!model->m_bForbitChange);

        model->setValueForKeyPathWithoutNotification(TwValue(99.0), "temp.Area.Width");
        model->setValueForKeyPath(TwValue(1), "Data.Area.Unit");
        QCOMPARE(number(*model, "temp.Area.Width"), 99.0);
        model->setValueForKeyPathWithoutNotification(TwValue(210.0), "temp.Area.Width");
        model->setValueForKeyPath(TwValue("mm"), "Data.Area.Unit");
        QCOMPARE(model->valueForKeyPath("Data.Area.Unit"), TwValue(0));
        QCOMPARE(number(*model, "temp.Area.Width"), 210.0 / 25.4);
        model->setValueForKeyPath(TwValue("wide"), "temp.Area.Width");
        QCOMPARE(number(*model, "Data.Area.Measure.Width"), 210.0);
        QCOMPARE(number(*model, "temp.Area.Width"), 210.0 / 25.4);
    }

    void workingAreaValuesReachTheSetting_data() {
        columns<int, QString, double, double>("unit", "key", "entered", "stored");
        row("inches", 0, "Width", 1.0, 25.4);
        row("millimetres", 1, "Front.L1.X", 12.5, 12.5);
        row("inches, back X", 0, "Back.X", 0.5, 12.7);
        row("another unit counts as millimetres", 7, "Y", 3.0, 3.0);
    }
    void workingAreaValuesReachTheSetting() {
        auto [unit, key, entered] = fetch<int, QString, double>("unit", "key", "entered");
        model->setValueForKeyPath(TwValue(unit), "Data.Area.Unit");
        model->setValueForKeyPath(TwValue(entered), "temp.Area." + key.toStdString());
        QTEST(number(*model, ("Data.Area.Measure." + key.toStdString()).c_str()), "stored");
    }

    // ---- Guards ----

    // An observer that throws in the middle of what the model does leaves none of its guard flags
    // set: they are set for the span of a call and put back however the call ends.
    void guardFlagsAreBackAfterAnObserverThrows_data() {
        columns<QString, int>("throwingAt", "action");
        row("converting the area to another unit", "temp.Area.Width", 0);
        row("refusing an area value that is no number", "temp.Area.Width", 1);
        row("starting observation", "temp.GrayDPI", 2);
        row("saving a profile", "profiles.temporary", 3);
    }
    void guardFlagsAreBackAfterAnObserverThrows() {
        auto [throwingAt, action] = fetch<QString, int>("throwingAt", "action");
        ChangeRecorder thrower(*model, {qPrintable(throwingAt)});
        thrower.onChange = [](const std::string& keyPath) {
            throw std::runtime_error("observer of " + keyPath);
        };
        try {
            switch (action) {
            case 0:
                model->setValueForKeyPath(TwValue(0), "Data.Area.Unit");
                break;
            case 1:
                model->setValueForKeyPath(TwValue("wide"), "temp.Area.Width");
                break;
            case 2:
                model->addSelfObserver();
                break;
            default:
                model->AddCustomProfile("Mine");
                break;
            }
        } catch (const std::runtime_error&) {
        }
        QVERIFY(!thrower.seen.empty());
        QVERIFY(!model->m_bForbitChange && !model->m_bInInit && !model->bInProfileProcess &&
                !model->bInLoadProfile);
    }
};

QTEST_GUILESS_MAIN(TestMirroring)
#include "tst_mirroring.moc"
