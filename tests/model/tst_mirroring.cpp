// The value reactions and the mirroring between the working copies under "temp." and the
// setting: side selectors, per-side working values, the area in the user's unit.
#include "ModelTestSupport.h"
#include "OrvaDebug.h"

#include <QTest>

Q_DECLARE_METATYPE(TwValue)

namespace {

TwValue dict(std::initializer_list<std::pair<std::string, TwValue>> entries) {
    return TwValue::dictionary(entries);
}

TwValue duplexRule() {
    return dict({{"enable.Duplex", dict({{"Data.PaperSource", TwValue::array({1, 4})}})}});
}

double number(TwainDialogData& model, const char* keyPath) {
    return model.valueForKeyPath(keyPath).doubleValue();
}

} // namespace

class TestMirroring : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { OrvaSetLogPaths(nullptr, nullptr); }

    // ---- Paper source and side selectors ----

    void withoutDuplexEverySideIsFront() {
        TestModelDef def;
        def.rules = duplexRule();
        auto model = loadedModel(def);
        for (const char* family : TwainDialogData::kSideFamilies)
            model->setValueForKeyPathWithoutNotification(TwValue(2), std::string("temp.") + family + "Side");
        model->setValueForKeyPath(TwValue(3), "Data.PaperSource");
        for (const char* family : TwainDialogData::kSideFamilies)
            QCOMPARE(model->valueForKeyPath(std::string("temp.") + family + "Side"), TwValue(0));
    }

    void withDuplexBothSidesAreKeptTogether() {
        TestModelDef def;
        def.rules = duplexRule();
        auto model = loadedModel(def);
        QVERIFY(model->valueForKeyPath("Data.GrayImage.Keep2SideSame").isNull());
        model->setValueForKeyPath(TwValue(true), "Data.ColorImage.Keep2SideSame");
        model->setValueForKeyPath(TwValue(4), "Data.PaperSource");
        // Absent: stored as true, Both selected. True: Both. False: the selection stays.
        QCOMPARE(model->valueForKeyPath("Data.GrayImage.Keep2SideSame"), TwValue(true));
        QCOMPARE(model->valueForKeyPath("temp.GrayImageSide"), TwValue(2));
        QCOMPARE(model->valueForKeyPath("temp.ColorImageSide"), TwValue(2));
        QCOMPARE(model->valueForKeyPath("temp.BinaryImageSide"), TwValue(0));
        QCOMPARE(model->valueForKeyPath("Data.BinaryImage.Keep2SideSame"), TwValue(false));
    }

    void selectingASideLoadsItsValues() {
        TestModelDef def;
        def.rules = duplexRule();
        auto model = loadedModel(def);
        model->setValueForKeyPath(TwValue(1), "Data.PaperSource");
        model->setValueForKeyPath(TwValue(true), "Data.BinaryImage.Keep2SideSame");
        model->setValueForKeyPath(TwValue(1), "temp.BinaryImageSide");
        QCOMPARE(model->valueForKeyPath("temp.BinaryImage.Brightness"), TwValue(200));
        QCOMPARE(model->valueForKeyPath("temp.BinaryImage.Gamma"), TwValue(1));
        QCOMPARE(model->valueForKeyPath("Data.BinaryImageSide"), TwValue(1));
        QCOMPARE(model->valueForKeyPath("temp.BinaryImageSideText"), TwValue("Back side"));
        QCOMPARE(model->valueForKeyPath("Data.BinaryImage.Keep2SideSame"), TwValue(false));
        // The setting itself is not touched by showing another side.
        QCOMPARE(model->valueForKeyPath("Data.BinaryImage.Front.Brightness"), TwValue(100));
        model->setValueForKeyPath(TwValue(0), "temp.BinaryImageSide");
        QCOMPARE(model->valueForKeyPath("temp.BinaryImage.Brightness"), TwValue(100));
        QCOMPARE(model->valueForKeyPath("temp.BinaryImageSideText"), TwValue("Front side"));
    }

    void showingAnotherSideKeepsTheProfileName() {
        TestModelDef def;
        auto model = loadedModel(def);
        model->setValueForKeyPathWithoutNotification(TwValue("Mine"), "profiles.name");
        model->setValueForKeyPath(TwValue(1), "temp.GrayImageSide");
        QCOMPARE(model->valueForKeyPath("Data.GrayImageSide"), TwValue(1));
        QCOMPARE(model->valueForKeyPath("profiles.name"), TwValue("Mine"));
        // Making both sides equal is an edit of the setting.
        model->setValueForKeyPath(TwValue(2), "temp.GrayImageSide");
        QCOMPARE(model->valueForKeyPath("profiles.name"), TwValue("Untitled"));
    }

    void choosingBothCopiesTheShownSide_data() {
        QTest::addColumn<int>("shown");
        QTest::addColumn<QString>("from");
        QTest::addColumn<QString>("to");
        QTest::newRow("front shown") << 0 << "Front"
                                     << "Back";
        QTest::newRow("back shown") << 1 << "Back"
                                    << "Front";
    }
    void choosingBothCopiesTheShownSide() {
        QFETCH(int, shown);
        QFETCH(QString, from);
        QFETCH(QString, to);
        TestModelDef def;
        def.rules = duplexRule();
        auto model = loadedModel(def);
        model->setValueForKeyPath(TwValue(1), "Data.PaperSource");
        model->setValueForKeyPath(TwValue(shown), "temp.GrayImageSide");
        TwValue source = model->valueForKeyPath("Data.GrayImage." + from.toStdString()).deepCopy();
        model->setValueForKeyPath(TwValue(2), "temp.GrayImageSide");
        QCOMPARE(model->valueForKeyPath("Data.GrayImage." + to.toStdString()), source);
        QCOMPARE(model->valueForKeyPath("Data.GrayImage." + from.toStdString()), source);
        QCOMPARE(model->valueForKeyPath("Data.GrayImage.Keep2SideSame"), TwValue(true));
        QCOMPARE(model->valueForKeyPath("temp.GrayImageSideText"), TwValue("Both sides"));
        QCOMPARE(model->valueForKeyPath("Data.GrayImageSide"), TwValue(2));
    }

    void anUnknownSideShowsNoText() {
        TestModelDef def;
        auto model = loadedModel(def);
        model->setValueForKeyPathWithoutNotification(TwValue(999), "temp.ColorImage.Brightness");
        model->setValueForKeyPath(TwValue(5), "temp.ColorImageSide");
        QCOMPARE(model->valueForKeyPath("temp.ColorImageSideText"), TwValue(""));
        QCOMPARE(model->valueForKeyPath("Data.ColorImageSide"), TwValue(5));
        QCOMPARE(model->valueForKeyPath("temp.ColorImage.Brightness"), TwValue(999));
    }

    void aSideThatIsNotANumberBecomesFront() {
        TestModelDef def;
        auto model = loadedModel(def);
        model->setValueForKeyPath(TwValue(1), "temp.GrayImageSide");
        model->setValueForKeyPath(TwValue("back"), "temp.GrayImageSide");
        QCOMPARE(model->valueForKeyPath("temp.GrayImageSide"), TwValue(0));
        QCOMPARE(model->valueForKeyPath("temp.GrayImageSideText"), TwValue("Front side"));
        QCOMPARE(model->valueForKeyPath("temp.GrayImage.Brightness"), TwValue(101));
    }

    void reselectingTheSameSideCopiesNothing() {
        TestModelDef def;
        auto model = loadedModel(def);
        model->setValueForKeyPathWithoutNotification(TwValue(55), "temp.GrayImage.Brightness");
        model->setValueForKeyPath(TwValue(0), "temp.GrayImageSide");
        QCOMPARE(model->valueForKeyPath("temp.GrayImage.Brightness"), TwValue(55));
    }

    // ---- Working values ----

    void workingValuesReachTheSelectedSides_data() {
        QTest::addColumn<TwValue>("side");
        QTest::addColumn<TwValue>("entered");
        QTest::addColumn<TwValue>("front");
        QTest::addColumn<TwValue>("back");
        QTest::newRow("both, rounded up") << TwValue(2) << TwValue(12.6) << TwValue(13) << TwValue(13);
        QTest::newRow("both, rounded down") << TwValue(2) << TwValue(12.4) << TwValue(12) << TwValue(12);
        QTest::newRow("negative goes toward zero")
            << TwValue(2) << TwValue(-2.7) << TwValue(-2) << TwValue(-2);
        QTest::newRow("a half rounds up") << TwValue(2) << TwValue(0.5) << TwValue(1) << TwValue(1);
        QTest::newRow("minus a half gives zero") << TwValue(2) << TwValue(-0.5) << TwValue(0) << TwValue(0);
        QTest::newRow("text passes unchanged")
            << TwValue(2) << TwValue("custom") << TwValue("custom") << TwValue("custom");
        QTest::newRow("front only") << TwValue(0) << TwValue(7) << TwValue(7) << TwValue(201);
        QTest::newRow("back only") << TwValue(1) << TwValue(7.2) << TwValue(101) << TwValue(7);
        QTest::newRow("negative side: nowhere") << TwValue(-1) << TwValue(7) << TwValue(101) << TwValue(201);
        QTest::newRow("unknown side: nowhere") << TwValue(3) << TwValue(7) << TwValue(101) << TwValue(201);
        QTest::newRow("side not a number: nowhere")
            << TwValue("1") << TwValue(7) << TwValue(101) << TwValue(201);
    }
    void workingValuesReachTheSelectedSides() {
        QFETCH(TwValue, side);
        QFETCH(TwValue, entered);
        QFETCH(TwValue, front);
        QFETCH(TwValue, back);
        TestModelDef def;
        auto model = loadedModel(def);
        model->setValueForKeyPathWithoutNotification(side, "temp.GrayImageSide");
        model->setValueForKeyPath(entered, "temp.GrayImage.Brightness");
        QCOMPARE(model->valueForKeyPath("Data.GrayImage.Front.Brightness"), front);
        QCOMPARE(model->valueForKeyPath("Data.GrayImage.Back.Brightness"), back);
        // A mirrored number is a whole number, not a rounded real.
        for (const char* side : {"Front", "Back"}) {
            TwValue stored = model->valueForKeyPath(std::string("Data.GrayImage.") + side + ".Brightness");
            if (entered.isNumber() && !stored.isEqual(TwValue(side[0] == 'F' ? 101 : 201)))
                QVERIFY(stored.isInteger());
        }
    }

    void workingValuesWaitWhileRegistering() {
        TestModelDef def;
        auto model = loadedModel(def);
        model->m_bInInit = true;
        model->setValueForKeyPath(TwValue(42), "temp.BinaryImage.Contrast");
        QCOMPARE(model->valueForKeyPath("Data.BinaryImage.Front.Contrast"), TwValue(110));
        model->m_bInInit = false;
        model->setValueForKeyPath(TwValue(43), "temp.BinaryImage.Contrast");
        QCOMPARE(model->valueForKeyPath("Data.BinaryImage.Front.Contrast"), TwValue(43));
    }

    void sideTexts_data() {
        QTest::addColumn<TwValue>("side");
        QTest::addColumn<TwValue>("text");
        QTest::newRow("front") << TwValue(0) << TwValue("Front side");
        QTest::newRow("back") << TwValue(1) << TwValue("Back side");
        QTest::newRow("both") << TwValue(2) << TwValue("Both sides");
        QTest::newRow("unknown") << TwValue(7) << TwValue("");
        QTest::newRow("text") << TwValue("1") << TwValue("");
        QTest::newRow("missing") << TwValue() << TwValue("");
    }
    void sideTexts() {
        QFETCH(TwValue, side);
        QFETCH(TwValue, text);
        TestModelDef def;
        auto model = loadedModel(def);
        model->setValueForKeyPathWithoutNotification(side, "Data.ColorImageSide");
        model->setSideTextFor("ColorImage");
        QCOMPARE(model->valueForKeyPath("temp.ColorImageSideText"), text);
    }

    void workingCopyKeys_data() {
        QTest::addColumn<QString>("key");
        QTest::addColumn<int>("grayside");
        QTest::addColumn<QString>("expected"); // empty: none
        QTest::newRow("back shown, back key") << "Data.GrayImage.Back.Gamma" << 1 << "temp.GrayImage.Gamma";
        QTest::newRow("front shown, back key") << "Data.GrayImage.Back.Gamma" << 0 << "";
        QTest::newRow("both: front stands for it")
            << "Data.GrayImage.Front.Gamma" << 2 << "temp.GrayImage.Gamma";
        QTest::newRow("both, back key") << "Data.GrayImage.Back.Gamma" << 2 << "";
        QTest::newRow("back shown, front key") << "Data.GrayImage.Front.Gamma" << 1 << "";
        QTest::newRow("selector") << "Data.BinaryImageSide" << 0 << "temp.BinaryImageSide";
        QTest::newRow("area") << "Data.Area.Measure.Front.L2.Width" << 0 << "temp.Area.Front.L2.Width";
        QTest::newRow("shared area value") << "Data.Area.Measure.Y" << 0 << "temp.Area.Y";
        QTest::newRow("plain setting") << "Data.Resolution" << 0 << "";
        QTest::newRow("area unit") << "Data.Area.Unit" << 0 << "";
    }
    void workingCopyKeys() {
        QFETCH(QString, key);
        QFETCH(int, grayside);
        QFETCH(QString, expected);
        TestModelDef def;
        auto model = loadedModel(def);
        model->setValueForKeyPathWithoutNotification(TwValue(grayside), "Data.GrayImageSide");
        auto got = model->GetTempKey(key.toStdString(), model->m_dictData);
        QCOMPARE(QString::fromStdString(got.value_or("")), expected);
        QCOMPARE(got.has_value(), !expected.isEmpty());
    }

    void textEditRefreshCounts() {
        TestModelDef def;
        auto model = loadedModel(def);
        ChangeRecorder recorder;
        model->addObserver(&recorder, "temp.TextEditRefresh", kTwObserveNew);
        model->TextEditRefresh(TwValue(), "temp.Area.Width");
        QCOMPARE(model->valueForKeyPath("temp.TextEditRefresh"), TwValue(0));
        QCOMPARE(model->valueForKeyPath("temp.TextEditDatakey"), TwValue("temp.Area.Width"));
        model->TextEditRefresh(TwValue(1.0), "temp.Area.Y");
        QCOMPARE(model->valueForKeyPath("temp.TextEditRefresh"), TwValue(1));
        QCOMPARE(model->valueForKeyPath("temp.TextEditDatakey"), TwValue("temp.Area.Y"));
        QCOMPARE(recorder.count("temp.TextEditRefresh"), 2);
        model->removeObserver(&recorder, "temp.TextEditRefresh");
    }

    // ---- Other reactions ----

    void imageTypeTexts_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<QString>("distinction");
        QTest::addColumn<QString>("grayColor");
        QTest::newRow("auto gray") << 22 << "IDS_STR_MULTIRES_NEW"
                                   << "IDS_STR_GRAY";
        QTest::newRow("auto colour") << 23 << "IDS_STR_MULTIRES_NEW"
                                     << "IDS_STR_COLOR";
        QTest::newRow("colour") << 2 << "IDS_STR_AUTORES_NEW"
                                << "IDS_STR_COLOR";
        QTest::newRow("binary") << 0 << "IDS_STR_AUTORES_NEW"
                                << "IDS_STR_COLOR";
    }
    void imageTypeTexts() {
        QFETCH(int, type);
        QFETCH(QString, distinction);
        QFETCH(QString, grayColor);
        TestModelDef def;
        auto model = loadedModel(def);
        model->setValueForKeyPath(TwValue(type), "Data.ImageType");
        QCOMPARE(model->valueForKeyPath("temp.Distinction"),
                 TwValue(model->localizedString(distinction.toStdString())));
        QCOMPARE(model->valueForKeyPath("temp.GrayColor"),
                 TwValue(model->localizedString(grayColor.toStdString())));
    }

    void aDisabledFeedPageModeIsSwitchedOff() {
        TestModelDef def;
        def.rules = dict(
            {{"enable.Feed.FeedPageMode", dict({{"NOT", dict({{"Data.PaperSource", 2}})}})},
             {"enable.Feed.FeedPage",
              dict({{"AND", dict({{"enable.Feed.FeedPageMode", true}, {"Data.Feed.FeedPageMode", 1}})}})}});
        auto model = loadedModel(def);
        QCOMPARE(model->valueForKeyPath("enable.Feed.FeedPage"), TwValue(true));
        model->setValueForKeyPath(TwValue(2), "Data.PaperSource");
        QCOMPARE(model->valueForKeyPath("enable.Feed.FeedPageMode"), TwValue(false));
        QCOMPARE(model->valueForKeyPath("Data.Feed.FeedPageMode"), TwValue(0));
        QCOMPARE(model->valueForKeyPath("enable.Feed.FeedPage"), TwValue(false));
        model->setValueForKeyPath(TwValue(0), "Data.PaperSource");
        QCOMPARE(model->valueForKeyPath("enable.Feed.FeedPageMode"), TwValue(true));
        QCOMPARE(model->valueForKeyPath("Data.Feed.FeedPageMode"), TwValue(0));
    }

    // ---- The area in the user's unit ----

    void unitChangeConvertsTheWorkingArea() {
        TestModelDef def;
        auto model = loadedModel(def);
        QCOMPARE(number(*model, "temp.Area.Width"), 210.0);
        model->setValueForKeyPath(TwValue(0), "Data.Area.Unit");
        QCOMPARE(number(*model, "temp.Area.Width"), 210.0 / 25.4);
        QCOMPARE(number(*model, "temp.Area.Front.L1.X"), 10.0 / 25.4);
        QCOMPARE(number(*model, "Data.Area.Measure.Width"), 210.0); // the setting stays in millimetres
        model->setValueForKeyPath(TwValue(1), "Data.Area.Unit");
        QCOMPARE(number(*model, "temp.Area.Width"), 210.0);
        QCOMPARE(number(*model, "temp.Area.Length"), 297.0);
        QVERIFY(!model->m_bForbitChange);
    }

    void rewritingTheSameUnitConvertsNothing() {
        TestModelDef def;
        auto model = loadedModel(def);
        model->setValueForKeyPathWithoutNotification(TwValue(99.0), "temp.Area.Width");
        model->setValueForKeyPath(TwValue(1), "Data.Area.Unit");
        QCOMPARE(number(*model, "temp.Area.Width"), 99.0);
    }

    void aUnitThatIsNotANumberIsInches() {
        TestModelDef def;
        auto model = loadedModel(def);
        model->setValueForKeyPath(TwValue("mm"), "Data.Area.Unit");
        QCOMPARE(model->valueForKeyPath("Data.Area.Unit"), TwValue(0));
        QCOMPARE(number(*model, "temp.Area.Width"), 210.0 / 25.4);
    }

    void workingAreaValuesReachTheSetting_data() {
        QTest::addColumn<int>("unit");
        QTest::addColumn<QString>("key");
        QTest::addColumn<double>("entered");
        QTest::addColumn<double>("stored");
        QTest::newRow("inches") << 0 << "Width" << 1.0 << 25.4;
        QTest::newRow("millimetres") << 1 << "Front.L1.X" << 12.5 << 12.5;
        QTest::newRow("inches, back X") << 0 << "Back.X" << 0.5 << 12.7;
        QTest::newRow("another unit counts as millimetres") << 7 << "Y" << 3.0 << 3.0;
    }
    void workingAreaValuesReachTheSetting() {
        QFETCH(int, unit);
        QFETCH(QString, key);
        QFETCH(double, entered);
        QFETCH(double, stored);
        TestModelDef def;
        auto model = loadedModel(def);
        model->setValueForKeyPath(TwValue(unit), "Data.Area.Unit");
        model->setValueForKeyPath(TwValue(entered), "temp.Area." + key.toStdString());
        QCOMPARE(number(*model, ("Data.Area.Measure." + key.toStdString()).c_str()), stored);
    }

    void anAreaValueThatIsNotANumberIsRefused() {
        TestModelDef def;
        auto model = loadedModel(def);
        model->setValueForKeyPath(TwValue(0), "Data.Area.Unit");
        model->setValueForKeyPath(TwValue("wide"), "temp.Area.Width");
        QCOMPARE(number(*model, "Data.Area.Measure.Width"), 210.0);
        QCOMPARE(number(*model, "temp.Area.Width"), 210.0 / 25.4);
    }
};

QTEST_GUILESS_MAIN(TestMirroring)
#include "tst_mirroring.moc"
