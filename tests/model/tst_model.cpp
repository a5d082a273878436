// The settings model. Its rules: evaluation of the rule table, the reverse index with its constant
// buckets, the registration of the model's own observation, and the dispatch of changes. The value
// reactions and the mirroring between the working copies under "temp." and the setting: side
// selectors, per-side working values, the area in the user's unit. The current paper and its
// orientation, the resolution-dependent choices, the paper lists and the geometry of the scan
// areas. The store beneath (sections and key paths, notification rules, the plain-dictionary
// helpers, texts and the capability records sent as event 1) and its value tree (equality and
// conversions, reference semantics of containers, the ordered dictionary).
#include "ChangeRecorder.h"
#include "ModelTestSupport.h"

#include <limits>
#include <stdexcept>

class TestModel : public ModelFixture {
    Q_OBJECT

    // Area values in millimetres, written "Front.X=20 Width=100".
    static std::vector<std::pair<std::string, double>> areaValues(const QString& text) {
        std::vector<std::pair<std::string, double>> out;
        for (const QString& pair : text.split(' ', Qt::SkipEmptyParts))
            out.emplace_back(pair.section('=', 0, 0).toStdString(), pair.section('=', 1).toDouble());
        return out;
    }

    // Sets area values in the setting and their working copies, telling nobody.
    static void placeArea(TwainDialogData& model, const QString& text) {
        for (auto& [rest, v] : areaValues(text)) {
            model.setValueForKeyPathWithoutNotification(v, "Data.Area.Measure." + rest);
            model.setValueForKeyPathWithoutNotification(v, "temp.Area." + rest);
        }
    }

    // Compares the setting and, with the unit in millimetres, the working copies too.
    static void compareArea(TwainDialogData& model, const QString& text, bool workingCopies = false) {
        for (auto& [rest, v] : areaValues(text))
            for (const char* prefix : {"Data.Area.Measure.", "temp.Area."}) {
                double got = model.valueForKeyPath(prefix + rest).doubleValue();
                if (std::fabs(got - v) > 1e-9)
                    QFAIL(qPrintable(
                        QString("%1%2 is %3, expected %4").arg(prefix).arg(rest.c_str()).arg(got).arg(v)));
                if (!workingCopies)
                    break;
            }
    }

    static TwValue duplexRule() {
        return dict({{"enable.Duplex", dict({{"Data.PaperSource", array({1, 4})}})}});
    }

    static double number(TwainDialogData& model, const char* keyPath) {
        return model.valueForKeyPath(keyPath).doubleValue();
    }

    // Counts how often the custom landscape rule asks for the feeder's width.
    class CountingModelDef : public TestModelDef {
    public:
        mutable int widthAsked = 0;
        double getPhysicalWidth() const override {
            ++widthAsked;
            return TestModelDef::getPhysicalWidth();
        }
    };

    static TwValue empty() { return dict(); }

    // The conditions the rules read, under the definition when one is given.
    static void fillConditions(TwainDialogData& model, TwModelDefFile* def = nullptr) {
        if (def)
            model.setModelDef(def);
        model.setValueForKeyPath(
            dict({{"Source", "ADF"}, {"Num", 1}, {"Str", "1"}, {"Flag", true}, {"Real", 2.5}}), "Data");
    }

private slots:
    void init() { fresh(); }

    // ---- Evaluation ----

    void ruleTable_data() {
        columns<TwValue, bool>("rule", "expected");
        row("empty OR is false", dict({{"OR", empty()}}), false);
        row("empty AND is true", dict({{"AND", empty()}}), true);
        row("empty NOT is true", dict({{"NOT", empty()}}), true);
        row("empty top level is true", empty(), true);
        row("string ignores case", dict({{"Data.Source", "adf"}}), true);
        row("string never matches a number", dict({{"Data.Num", "1"}}), false);
        row("number matches number", dict({{"Data.Num", 1}}), true);
        row("number never matches a string", dict({{"Data.Str", 1}}), false);
        row("boolean is a number", dict({{"Data.Flag", 1}}), true);
        row("array: any element", dict({{"Data.Num", array({3, 1})}}), true);
        row("array: no element", dict({{"Data.Num", array({3, 4})}}), false);
        row("NOT of missing", dict({{"NOT", dict({{"Data.Missing", 1}})}}), true);
        row("other value types enable", dict({{"Data.Num", TwValue(TwBytes{1, 2})}}), true);
        row("NOT reads the first entry only", dict({{"NOT", dict({{"Data.Num", 1}, {"Data.Missing", 5}})}}),
            false);
        row("NOT of a false first entry", dict({{"NOT", dict({{"Data.Num", 2}, {"Data.Num ", 1}})}}), true);
        row("top level takes its first entry", dict({{"Data.Num", 2}, {"Data.Source", "ADF"}}), false);
        row("AND one false", dict({{"AND", dict({{"Data.Num", 1}, {"Data.Source", "no"}})}}), false);
        row("OR one true", dict({{"OR", dict({{"Data.Num", 5}, {"Data.Source", "ADF"}})}}), true);
        row("prefixed groups",
            dict({{"AND", dict({{"OR - 1", dict({{"Data.Num", 9}, {"Data.Flag", true}})},
                                {"NOT - 2", dict({{"Data.Source", "FB"}})},
                                {"AND - 3", dict({{"Data.Str", "1"}})}})}}),
            true);
        row("prefixed group decides", dict({{"AND", dict({{"NOT - 1", dict({{"Data.Source", "adf"}})}})}}),
            false);
        row("lower-case or is a key path", dict({{"or", dict({{"Data.Num", 2}, {"Data.Source", "ADF"}})}}),
            false);
        row("yes ignores case", dict({{"yes", empty()}}), true);
        row("FALSE inside AND", dict({{"AND", dict({{"TRUE", empty()}, {"false", empty()}})}}), false);
        row("custom of another target is true", dict({{"custom", empty()}}), true);
        row("a dictionary under a key path takes its first entry",
            dict({{"Data.Num", dict({{"Data.Source", "adf"}, {"Data.Num", 7}})}}), true);
    }
    void ruleTable() {
        QFETCH(TwValue, rule);
        TwainDialogData model;
        fillConditions(model);
        QTEST(model.getEnableFromInfo(rule, nullptr, "enable.Target"), "expected");
    }

    void groupsStopEarly_data() {
        columns<TwValue, int>("rule", "customCalls");
        row("AND stops at the first false", dict({{"AND", dict({{"Data.Num", 2}, {"CUSTOM", empty()}})}}), 0);
        row("AND goes on while true", dict({{"AND", dict({{"Data.Num", 1}, {"CUSTOM", empty()}})}}), 1);
        row("OR stops at the first true", dict({{"OR", dict({{"Data.Num", 1}, {"CUSTOM", empty()}})}}), 0);
        row("OR goes on while false", dict({{"OR", dict({{"Data.Num", 2}, {"CUSTOM", empty()}})}}), 1);
        row("NOT looks no further", dict({{"NOT", dict({{"Data.Num", 1}, {"CUSTOM", empty()}})}}), 0);
        row("top level evaluates later entries", dict({{"Data.Num", 1}, {"CUSTOM", empty()}}), 1);
    }
    void groupsStopEarly() {
        QFETCH(TwValue, rule);
        CountingModelDef def;
        TwainDialogData model;
        fillConditions(model, &def);
        model.getEnableFromInfo(rule, nullptr, "enable.Landscape");
        QTEST(def.widthAsked, "customCalls");
    }

    void customLandscapeWithoutModelDefinitionIsDisabled() {
        TwainDialogData model;
        QVERIFY(!model.getEnableCustomForKeyPath("enable.Landscape"));
        QVERIFY(model.getEnableCustomForKeyPath("enable.Other"));
    }

    // ---- The reverse index ----

    void reverseIndexAndConstantTargets() {
        TestModelDef def;
        def.rules = dict(
            {{"enable.A", dict({{"AND", dict({{"Data.Num", 1},
                                              {"NOT - 1", dict({{"Data.Source", "ADF"}})},
                                              {"OR - 2", dict({{"Data.Num", 2}, {"Data.Flag", true}})}})}})},
             {"enable.B", dict({{"Data.Num", array({1, 2})}})},
             {"enable.C", dict({{"YES", empty()}})},
             {"enable.D", dict({{"false", empty()}})},
             {"enable.E", dict({{"CUSTOM", empty()}})},
             {"enable.F", "not a dictionary"},
             {"enable.G", dict({{"AND", dict({{"Data.Flag", true}, {"custom", empty()}})}})}});
        TwainDialogData model;
        fillConditions(model, &def);
        model.setValueForKeyPath(TwValue(true), "enable.F");
        model.createObserver();

        TwDictionary* index = model.m_dictObserverChange.dict();
        QCOMPARE(index->keys(), (std::vector<std::string>{"Data.Num", "Data.Source", "Data.Flag"}));
        QCOMPARE(index->value("Data.Num"), array({"enable.A", "enable.B"}));
        QCOMPARE(index->value("Data.Source"), array({"enable.A"}));
        QCOMPARE(index->value("Data.Flag"), array({"enable.A", "enable.G"}));

        // C and D are constants; E (CUSTOM alone) starts disabled; F is no rule and keeps its value;
        // G's custom is true for a target other than the landscape.
        auto states = [&] {
            std::string out;
            for (const char* t : {"A", "B", "C", "D", "E", "F", "G"})
                out += model.valueForKeyPath(std::string("enable.") + t).boolValue() ? '1' : '0';
            return out;
        };
        QCOMPARE(states(), std::string("0110011"));
        for (const char* source : {"Data.Num", "Data.Source", "Data.Flag"})
            QVERIFY(model.m_dictObserver.dict()->contains(source));

        // A source change re-evaluates its targets; the lone CUSTOM target is never evaluated again.
        model.setValueForKeyPath(TwValue("FB"), "Data.Source");
        QCOMPARE(states(), std::string("1110011"));
        model.setValueForKeyPath(TwValue(5), "Data.Num");
        QCOMPARE(states(), std::string("0010011"));
        model.removeSelfObserver();
    }

    // A data source's typo must not take the host down: a rule that reads its own target, two
    // that read each other, or one nested deeper than any real rule is refused, and the other
    // rules go on working.
    void cyclicAndDeepRulesAreRefused_data() {
        QTest::addColumn<TwValue>("rules");
        TwValue deep = dict({{"Data.Num", 1}});
        for (int i = 0; i < 24000; ++i)
            deep = dict({{"AND", deep}});
        TwValue notA = dict({{"NOT", dict({{"enable.A", true}})}});
        TwValue notB = dict({{"NOT", dict({{"enable.B", true}})}});
        row("reads itself under NOT", dict({{"enable.A", notA}}));
        row("two read each other", dict({{"enable.A", notB}, {"enable.B", dict({{"enable.A", true}})}}));
        row("nested 24000 deep", dict({{"enable.A", deep}}));
    }
    void cyclicAndDeepRulesAreRefused() {
        QFETCH(TwValue, rules);
        TestModelDef def;
        def.rules = rules.deepCopy();
        def.rules.dict()->set("enable.H", dict({{"Data.Num", 2}}));
        TwainDialogData model;
        fillConditions(model, &def);
        LogCapture log;
        model.addSelfObserver();
        QVERIFY(log.text().contains("refused"));
        model.setValueForKeyPath(TwValue(2), "Data.Num");
        QVERIFY(model.valueForKeyPath("enable.H").boolValue());
        model.setValueForKeyPath(TwValue(3), "Data.Num");
        QVERIFY(!model.valueForKeyPath("enable.H").boolValue());
        model.removeSelfObserver();
    }

    void aRuleTableThatIsNotADictionaryIsEmpty() {
        TestModelDef def;
        def.rules = array({dict({{"enable.A", dict({{"YES", empty()}})}})});
        TwainDialogData model;
        model.setModelDef(&def);
        model.createObserver();
        QVERIFY(model.m_dictEnableChange.isNull());
        QVERIFY(model.m_dictObserverChange.dict()->empty());
        QVERIFY(model.valueForKeyPath("enable.A").isNull());
    }

    // ---- Registration ----

    void selfObservationRegistersEveryLeafOnceAndEnds() {
        TwDictionary* registry = model->m_dictObserver.dict();
        for (const char* path : {"profiles.name", "Data.Resolution", "Data.Area.Measure.Front.L1.X",
                                 "Data.BinaryImage.Back.Gamma", "temp.GrayDPI", "temp.Area.Width",
                                 "temp.BinaryImage.Brightness"}) {
            QVERIFY2(registry->contains(path), path);
            TwValue observers = registry->value(path);
            QCOMPARE(observers.list()->size(), std::size_t(1));
            QCOMPARE(observers.list()->front().longLongValue(),
                     static_cast<long long>(reinterpret_cast<std::intptr_t>(model.get())));
        }
        QVERIFY(!registry->contains("Data.Area"));
        std::size_t count = model->observationCount(model.get());
        QCOMPARE(count, registry->size());
        model->addSelfObserverForKeyPath("Data.Resolution", kTwObserveNew); // already there: nothing
        QCOMPARE(model->observationCount(model.get()), count);
        model->addSelfObserverForKeyPaths({"temp.Extra", "Data.Resolution", "temp.Extra"}, kTwObserveNew);
        QCOMPARE(model->observationCount(model.get()), count + 1);

        model->removeSelfObserver();
        QCOMPARE(model->observationCount(model.get()), std::size_t(0));
        QVERIFY(model->m_dictObserver.dict()->empty());
        model->setValueForKeyPath(TwValue(150), "Data.Resolution"); // no reaction any more
        QCOMPARE(model->valueForKeyPath("temp.GrayDPI"), TwValue(300));
        model->removeSelfObserver(); // twice is harmless
    }

    // ---- Dispatch ----

    void untitledProfileRule_data() {
        columns<QString, TwValue, bool, bool>("keyPath", "value", "applying", "renamed");
        row("resolution 300 to 200", "Data.Resolution", TwValue(200), false, true);
        row("resolution rewritten unchanged", "Data.Resolution", TwValue(300), false, false);
        row("nested setting", "Data.BinaryImage.Front.Contrast", TwValue(5), false, true);
        row("area unit", "Data.Area.Unit", TwValue(0), false, false);
        row("keep both sides", "Data.BinaryImage.Keep2SideSame", TwValue(true), false, false);
        row("a working value that mirrors nothing", "temp.GrayDPI", TwValue(5), false, false);
        row("a new Data key (not observed)", "Data.NewKey", TwValue(1), false, false);
        row("while a profile is applied", "Data.Resolution", TwValue(600), true, false);
    }
    void untitledProfileRule() {
        auto [keyPath, value, applying] = fetch<QString, TwValue, bool>("keyPath", "value", "applying");
        model->bInProfileProcess = applying;
        model->setValueForKeyPathWithoutNotification(TwValue("Mine"), "profiles.name");
        model->setValueForKeyPath(value, keyPath.toStdString());
        QTEST(model->valueForKeyPath("profiles.name").stringValue() == "Untitled", "renamed");
        QCOMPARE(model->bInProfileProcess, applying);
    }

    void initialNotificationsKeepTheProfileName() {
        TestModelDef def;
        TwainDialogData model;
        model.setModelDef(&def);
        model.setValueForKeyPath(sampleData(), "Data");
        model.setValueForKeyPath(dict({{"temporary", "Untitled"}, {"name", "Mine"}}), "profiles");
        model.m_CustomProfiles = array({dict({{"ProfileName", "Mine"}})});
        model.addSelfObserver();
        QCOMPARE(model.valueForKeyPath("profiles.name"), TwValue("Mine"));
        model.removeSelfObserver();
    }

    void selectingAProfileByName_data() {
        columns<TwValue, bool>("profiles", "saved");
        row("foreign elements: no setting of that name", array({1, "A", array()}), false);
        row("a match", array({dict({{"ProfileName", "B"}}), dict({{"ProfileName", "A"}})}), true);
    }
    void selectingAProfileByName() {
        auto [profiles, saved] = fetch<TwValue, bool>("profiles", "saved");
        model->m_CustomProfiles = profiles;
        model->setValueForKeyPath(TwValue("A"), "profiles.name");
        QCOMPARE(model->valueForKeyPath("profiles.name"),
                 saved ? TwValue("A") : model->valueForKeyPath("profiles.temporary"));
        QVERIFY(!model->bInProfileProcess);
        model->bInProfileProcess = true;
        model->setValueForKeyPath(TwValue("B"), "profiles.name");
        QVERIFY(model->bInProfileProcess); // restored to what it was, not cleared
        model->bInProfileProcess = false;
    }

    void loadingAProfileSkipsTheReactions() {
        model->bInLoadProfile = true;
        model->setValueForKeyPath(TwValue(150), "Data.Resolution");
        QCOMPARE(model->valueForKeyPath("temp.GrayDPI"), TwValue(300));
        model->bInLoadProfile = false;
        model->setValueForKeyPath(TwValue(200), "Data.Resolution");
        QCOMPARE(model->valueForKeyPath("temp.GrayDPI"), TwValue(200));
    }

    // ---- Mirroring between the working copies and the setting ----

    // ---- Paper source and side selectors ----

    // Without duplex every side selector shows the front. With duplex a family whose sides are kept
    // equal (or that has no such flag yet: it is stored as true) selects both; the others stay. The
    // reaction reads enable.Duplex, so the enable rules must have run for the new source first.
    void paperSourceSetsTheSideSelectors() {
        reload(duplexRule());
        for (const char* family : TwainDialogData::kSideFamilies)
            model->setValueForKeyPathWithoutNotification(TwValue(2), std::string("temp.") + family + "Side");
        model->setValueForKeyPath(TwValue(3), "Data.PaperSource");
        for (const char* family : TwainDialogData::kSideFamilies)
            QCOMPARE(model->valueForKeyPath(std::string("temp.") + family + "Side"), TwValue(0));

        QVERIFY(model->valueForKeyPath("Data.GrayImage.Keep2SideSame").isNull());
        model->setValueForKeyPath(TwValue(true), "Data.ColorImage.Keep2SideSame");
        model->setValueForKeyPath(TwValue(4), "Data.PaperSource");
        QCOMPARE(valuesAt(*model,
                          {"enable.Duplex", "Data.GrayImage.Keep2SideSame", "temp.GrayImageSide",
                           "temp.ColorImageSide", "temp.BinaryImageSide", "Data.BinaryImage.Keep2SideSame"}),
                 array({true, true, 2, 2, 0, false}));
    }

    void selectingASideLoadsItsValues() {
        reload(duplexRule());
        model->setValueForKeyPath(TwValue(1), "Data.PaperSource");
        model->setValueForKeyPath(TwValue(true), "Data.BinaryImage.Keep2SideSame");
        model->setValueForKeyPath(TwValue(1), "temp.BinaryImageSide");
        QCOMPARE(
            valuesAt(*model, {"temp.BinaryImage.Brightness", "temp.BinaryImage.Gamma", "Data.BinaryImageSide",
                              "temp.BinaryImageSideText", "Data.BinaryImage.Keep2SideSame"}),
            array({200, 1, 1, "Back side", false}));
        // The setting itself is not touched by showing another side.
        QCOMPARE(model->valueForKeyPath("Data.BinaryImage.Front.Brightness"), TwValue(100));
        model->setValueForKeyPath(TwValue(0), "temp.BinaryImageSide");
        QCOMPARE(valuesAt(*model, {"temp.BinaryImage.Brightness", "temp.BinaryImageSideText"}),
                 array({100, "Front side"}));
    }

    void showingAnotherSideKeepsTheProfileName() {
        model->setValueForKeyPathWithoutNotification(TwValue("Mine"), "profiles.name");
        model->setValueForKeyPath(TwValue(1), "temp.GrayImageSide");
        QCOMPARE(valuesAt(*model, {"Data.GrayImageSide", "profiles.name"}), array({1, "Mine"}));
        // Making both sides equal is an edit of the setting.
        model->setValueForKeyPath(TwValue(2), "temp.GrayImageSide");
        QCOMPARE(model->valueForKeyPath("profiles.name"), TwValue("Untitled"));
    }

    void choosingBothCopiesTheShownSide() {
        reload(duplexRule());
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
                     array({true, "Both sides", 2}));
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
        QCOMPARE(valuesAt(*model, {"temp.Distinction", "temp.GrayColor"}),
                 array({model->localizedString(distinction.toStdString()),
                        model->localizedString(grayColor.toStdString())}));
    }

    void aDisabledFeedPageModeIsSwitchedOff() {
        reload(dict(
            {{"enable.Feed.FeedPageMode", dict({{"NOT", dict({{"Data.PaperSource", 2}})}})},
             {"enable.Feed.FeedPage",
              dict({{"AND", dict({{"enable.Feed.FeedPageMode", true}, {"Data.Feed.FeedPageMode", 1}})}})}}));
        QCOMPARE(model->valueForKeyPath("enable.Feed.FeedPage"), TwValue(true));
        model->setValueForKeyPath(TwValue(2), "Data.PaperSource");
        QCOMPARE(
            valuesAt(*model, {"enable.Feed.FeedPageMode", "Data.Feed.FeedPageMode", "enable.Feed.FeedPage"}),
            array({false, 0, false}));
        model->setValueForKeyPath(TwValue(0), "Data.PaperSource");
        QCOMPARE(valuesAt(*model, {"enable.Feed.FeedPageMode", "Data.Feed.FeedPageMode"}), array({true, 0}));
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

    // ---- The current paper, its choices and the area on it ----

    // ---- The current paper ----

    void currentPaperSize_data() {
        columns<TwValue, double, double>("paperSize", "width", "length");
        row("A4", TwValue(1), 2100.0, 2970.0);
        row("A5", TwValue(5), 1480.0, 2100.0);
        row("high bits ignored", TwValue(0x30005), 1480.0, 2100.0);
        row("unknown code", TwValue(99), 2100.0, 2970.0);
        row("custom, truncated", TwValue("Mine"), 1005.0, 500.0);
        row("custom that vanished", TwValue("Gone"), 2100.0, 2970.0);
        row("custom without a size", TwValue("Broken"), 2100.0, 2970.0);
        row("not a paper", array({5}), 2100.0, 2970.0);
    }
    void currentPaperSize() {
        QFETCH(TwValue, paperSize);
        TwainDialogData model;
        model.setValueForKeyPath(standardPapers(), "content.PaperSize");
        model.m_CustomPapers = array({customPaper("Mine", 100.55, 50.0), customPaper("Broken", 0, 0)});
        model.setValueForKeyPath(paperSize, "Data.PaperSize");
        TwSize size = model.GetCurrentPaperSize();
        QTEST(size.width, "width");
        QTEST(size.length, "length");
    }

    // ---- Landscape ----

    void landscapeFollowsTheFeeder_data() {
        columns<TwValue, double, bool>("paperSize", "physicalWidth", "enabled");
        row("A4 is too long to turn", TwValue(1), 8.5, false);
        row("A4 on a wider feeder", TwValue(1), 12.0, true);
        row("A5", TwValue(5), 8.5, true);
        row("length equal to the feeder width", TwValue(52), 8.5, true);
        row("card just wide enough", TwValue(53), 8.5, true);
        row("custom too narrow to feed sideways", TwValue("Narrow"), 8.5, false);
        row("custom at the minimum", TwValue("Edge"), 8.5, true);
    }
    void landscapeFollowsTheFeeder() {
        auto [paperSize, physicalWidth, enabled] =
            fetch<TwValue, double, bool>("paperSize", "physicalWidth", "enabled");
        def->physicalWidth = physicalWidth;
        def->minHeight = 2.0;
        reload(dict({{"enable.Landscape", dict({{"CUSTOM", dict()}})}}));
        model->m_CustomPapers = array({customPaper("Narrow", 40, 80), customPaper("Edge", 50.9, 100)});
        model->setValueForKeyPath(TwValue(13), "Data.PaperSize"); // A6: always allowed
        QCOMPARE(model->valueForKeyPath("enable.Landscape"), TwValue(true));
        model->setValueForKeyPath(paperSize, "Data.PaperSize");
        QCOMPARE(model->valueForKeyPath("enable.Landscape"), TwValue(enabled));
        QCOMPARE(model->getEnableCustomForKeyPath("enable.Landscape"), enabled);
    }

    void landscapeKeepsTheOtherConditionsOfItsRule() {
        reload(dict({{"enable.Landscape",
                      dict({{"AND", dict({{"CUSTOM", dict()},
                                          {"NOT - 1", dict({{"Data.AutoCrop.Enable", true}})}})}})}}));
        model->setValueForKeyPath(TwValue(5), "Data.PaperSize");
        QCOMPARE(model->valueForKeyPath("enable.Landscape"), TwValue(true));
        model->setValueForKeyPath(TwValue(true), "Data.AutoCrop.Enable");
        QCOMPARE(model->valueForKeyPath("enable.Landscape"), TwValue(false));
        model->setValueForKeyPath(TwValue(1), "Data.PaperSize");
        model->setValueForKeyPath(TwValue(false), "Data.AutoCrop.Enable");
        QCOMPARE(model->valueForKeyPath("enable.Landscape"), TwValue(false)); // A4 cannot turn
    }

    // ---- Resolution-dependent choices ----

    void binaryRates_data() {
        columns<int, QList<int>>("resolution", "kept");
        row("150", 150, QList<int>{0, 4, 5});
        row("300", 300, QList<int>{0, 1, 2, 4, 5});
        row("400", 400, QList<int>{0, 1, 2, 3, 4, 5});
        row("90", 90, QList<int>{0});
    }
    void binaryRates() {
        QFETCH(int, resolution);
        TwainDialogData model;
        model.setValueForKeyPath(rateChoices({0, 1, 2, 3, 4, 5}), "content.RateImage");
        model.setValueForKeyPath(TwValue(resolution), "Data.Resolution");
        model.SetBinaryImageRate();
        QTEST(codes(model.valueForKeyPath("content.RateImageAvail")), "kept");
    }

    void grayResolution_data() {
        columns<int, int, int, int>("resolution", "code", "newCode", "gray");
        row("150, none", 150, 0, 0, 150);
        row("150, 1/2 steps to none", 150, 1, 0, 150);
        row("150, 1/4 steps to none", 150, 3, 0, 150);
        row("150, code 4 divides by one", 150, 4, 4, 150);
        row("300, none", 300, 0, 0, 300);
        row("300, 1/2", 300, 1, 1, 150);
        row("300, 1/3", 300, 2, 2, 100);
        row("300, 1/4 steps to 1/3", 300, 3, 2, 100);
        row("300, code 5", 300, 5, 5, 300);
        row("600, 1/2", 600, 1, 1, 300);
        row("600, 1/3", 600, 2, 2, 200);
        row("600, 1/4", 600, 3, 3, 150);
        row("90, code 4 moves to 3 and down", 90, 4, 0, 90);
        row("90, huge code", 90, 1000000000, 0, 90);
        row("negative code", 90, -3, -3, 90);
    }
    void grayResolution() {
        auto [resolution, code] = fetch<int, int>("resolution", "code");
        TwainDialogData model;
        model.setValueForKeyPath(TwValue(resolution), "Data.Resolution");
        model.setValueForKeyPath(TwValue(code), "Data.AutoDistinction.RateBinaryImage");
        model.SetGrayDPI();
        QTEST(model.valueForKeyPath("Data.AutoDistinction.RateBinaryImage").intValue(), "newCode");
        QTEST(model.valueForKeyPath("temp.GrayDPI").intValue(), "gray");
    }

    void aResolutionEditUpdatesBoth() {
        model->setValueForKeyPath(TwValue(3), "Data.AutoDistinction.RateBinaryImage");
        QCOMPARE(valuesAt(*model, {"Data.AutoDistinction.RateBinaryImage", "temp.GrayDPI"}), array({2, 100}));
        model->setValueForKeyPath(TwValue(150), "Data.Resolution");
        QCOMPARE(codes(model->valueForKeyPath("content.RateImageAvail")), QList<int>{0});
        QCOMPARE(valuesAt(*model, {"Data.AutoDistinction.RateBinaryImage", "temp.GrayDPI"}), array({0, 150}));
        model->setValueForKeyPath(TwValue(600), "Data.Resolution");
        QCOMPARE(codes(model->valueForKeyPath("content.RateImageAvail")), (QList<int>{0, 1, 2, 3}));
        QCOMPARE(model->valueForKeyPath("temp.GrayDPI"), TwValue(600));
    }

    void autoCropLength_data() {
        columns<TwValue, int>("feeder", "length");
        row("sample feeder: A3 too wide", dict({{"MaxWidth", 8.504}, {"MaxHeight", 118.0}}), 8400);
        row("narrower: no Letter or Legal", dict({{"MaxWidth", 8.3}, {"MaxHeight", 118.0}}), 7016);
        row("no limits: every paper", dict(), 9921);
        row("feeder not a dictionary", TwValue("ADF"), 9921);
        row("nothing fits", dict({{"MaxWidth", 1.0}, {"MaxHeight", 1.0}}), 0);
    }
    void autoCropLength() {
        QFETCH(TwValue, feeder);
        TestModelDef def;
        def.adf = feeder;
        TwainDialogData model;
        model.setModelDef(&def);
        model.setValueForKeyPath(standardPapers(), "content.PaperSize");
        model.calcAutoCropLength();
        QTEST(model.valueForKeyPath("range.AutoCropLength").intValue(), "length");
    }

    // ---- Paper lists ----

    void paperListsHoldStandardThenCustomPapers() {
        TwainDialogData model;
        model.setValueForKeyPath(array({paper(1, "A4", 2100, 2970, 7016), paper(5, "A5", 1480, 2100, 4961)}),
                                 "content.PaperSize");
        model.m_CustomPapers =
            array({customPaper("Receipt", 80, 200.25), dict({{"Width", 10}}), customPaper("Card", 85.6, 54)});
        model.updateContentPaperSizeAll();
        TwValue all = model.valueForKeyPath("content.PaperSizeAll");
        // The entry without a name is left out.
        QCOMPARE(model.valueForKeyPath("content.PaperSizeAll.value"), array({1, 5, "Receipt", "Card"}));
        QCOMPARE(model.valueForKeyPath("content.PaperSizeAll.display"),
                 array({"A4", "A5", "Receipt - 80.0 x 200.2 mm", "Card - 85.6 x 54.0 mm"}));
        QCOMPARE(all.list()->at(3).dict()->value("mmWidth"), TwValue(856));
        TwValue plusNone = model.valueForKeyPath("content.PaperSizeAllPlusNone");
        QCOMPARE(plusNone.list()->at(0),
                 dict({{"value", 0}, {"display", model.localizedString("IDS_PAPERSIZE_NONE")}}));
        plusNone.list()->erase(plusNone.list()->begin());
        QCOMPARE(plusNone, all);
    }

    void aVanishedCustomPaperLeavesTheLists() {
        model->m_CustomPapers = array({customPaper("Receipt", 80, 200), customPaper("Slip", 100, 100)});
        model->updateContentPaperSizeAll();
        model->setValueForKeyPath(TwValue("Receipt"), "Data.PaperSize");
        QCOMPARE(model->GetCurrentPaperSize().width, 800.0);
        model->m_CustomPapers.list()->erase(model->m_CustomPapers.list()->begin());
        model->updateContentPaperSizeAll();
        TwValue all = model->valueForKeyPath("content.PaperSizeAll.value");
        QCOMPARE(all.list()->back(), TwValue("Slip"));
        QVERIFY(std::ranges::none_of(*all.list(),
                                     [](const TwValue& v) { return v.isEqual(TwValue("Receipt")); }));
        QCOMPARE(model->GetCurrentPaperSize().width, 2100.0); // back to the first standard paper
    }

    // ---- Area geometry ----

    void formatterRanges_data() {
        columns<QString, QString, bool, double, double>("key", "area", "duplex", "start", "length");
        row("front X", "temp.Area.Front.X", "", false, 0.0, 200.0);
        row("Y", "temp.Area.Y", "", false, 0.0, 287.0);
        row("width beside X", "temp.Area.Width", "Front.X=20", false, 10.0, 180.0);
        row("width ignores the back when simplex", "temp.Area.Width", "Back.X=50", false, 10.0, 200.0);
        row("width beside the back X in duplex", "temp.Area.Width", "Front.X=20 Back.X=50", true, 10.0,
            150.0);
        row("length below Y", "temp.Area.Length", "Y=7", false, 10.0, 280.0);
        row("sub-area X", "temp.Area.Front.L1.X", "", false, 0.0, 208.0);
        row("sub-area width", "temp.Area.Front.L1.Width", "Front.L1.X=10", false, 2.0, 198.0);
        row("sub-area length", "temp.Area.Back.L1.Length", "Back.L1.Y=100", false, 2.0, 195.0);
        row("X beyond the paper", "temp.Area.Width", "Front.X=205", false, 10.0, 0.0);
        row("not an area", "Data.Resolution", "", false, 0.0, 0.0);
    }
    void formatterRanges() {
        auto [key, area, duplex] = fetch<QString, QString, bool>("key", "area", "duplex");
        placeArea(*model, area);
        model->setValueForKeyPathWithoutNotification(TwValue(duplex), "enable.Duplex");
        TwRange range = model->GetFormatterRange(key.toStdString());
        QTEST(range.start, "start");
        QTEST(range.length, "length");
    }

    void editedAreasStayOnThePaper_data() {
        columns<QString, QString, double, QString>("before", "key", "entered", "after");
        row("too wide: shrunk to the paper", "", "Width", 250.0, "Width=210 Front.X=0");
        row("X kept, width gives way", "", "Front.X", 30.0, "Front.X=30 Width=180 Back.X=0");
        row("width kept, X moves", "Front.X=30 Width=180", "Width", 200.0, "Front.X=10 Width=200 Back.X=0");
        row("width moves the back X too", "Width=100 Back.X=110", "Width", 150.0,
            "Front.X=0 Back.X=60 Width=150");
        row("X no further than the minimum width", "", "Front.X", 205.0, "Front.X=200 Width=10");
        row("main minimum length", "", "Length", 5.0, "Length=10 Y=0");
        row("Y near the bottom", "", "Y", 295.0, "Y=287 Length=10");
        row("sub-area too wide: moved, then shrunk", "", "Front.L1.Width", 300.0,
            "Front.L1.Width=210 Front.L1.X=0");
        row("sub-area moved back", "", "Back.L1.Width", 205.0, "Back.L1.Width=205 Back.L1.X=5");
        row("sub-area minimum", "", "Front.L1.Length", 1.0, "Front.L1.Length=2");
        row("sub-area outside the main area is kept", "Width=100", "Front.L1.X", 150.0,
            "Front.L1.X=150 Front.L1.Width=50");
    }

    void editedAreasStayOnThePaper() {
        auto [before, key, entered, after] =
            fetch<QString, QString, double, QString>("before", "key", "entered", "after");
        placeArea(*model, before);
        model->setValueForKeyPath(TwValue(entered), "temp.Area." + key.toStdString());
        compareArea(*model, after, true);
    }

    void aCorrectedFieldIsAskedToRefresh() {
        model->setValueForKeyPath(TwValue(0), "Data.Area.Unit");
        model->setValueForKeyPath(TwValue(9.0), "temp.Area.Width");
        QCOMPARE(model->valueForKeyPath("Data.Area.Measure.Width").doubleValue(), 210.0);
        QCOMPARE(model->valueForKeyPath("temp.Area.Width").doubleValue(), 210.0 / 25.4);
        QCOMPARE(valuesAt(*model, {"temp.TextEditDatakey", "temp.TextEditRefresh"}),
                 array({"temp.Area.Width", 0}));
        // A value that fits asks for nothing.
        model->setValueForKeyPath(TwValue(4.0), "temp.Area.Width");
        QCOMPARE(model->valueForKeyPath("Data.Area.Measure.Width").doubleValue(), 4.0 * 25.4);
        QCOMPARE(model->valueForKeyPath("temp.TextEditRefresh"), TwValue(0));
    }

    void aWholePaperAreaFollowsThePaper() {
        model->setValueForKeyPath(TwValue(5), "Data.PaperSize");
        compareArea(*model, "Front.X=0 Back.X=0 Y=0 Width=148 Length=210 Front.L1.X=10 Front.L1.Width=50");
        QCOMPARE(model->valueForKeyPath("temp.Area.Width").doubleValue(), 148.0);
        model->setValueForKeyPath(TwValue(1), "Data.PaperSize");
        compareArea(*model, "Width=210 Length=297");
        model->setValueForKeyPath(TwValue(53), "Data.PaperSize"); // a card: the sub-areas move onto it
        compareArea(*model, "Width=55 Length=91 Front.L1.X=5 Front.L1.Width=50 Back.L1.X=5");
    }

    void aDrawnAreaIsKeptMovedAndShrunk() {
        placeArea(*model, "Front.X=20 Back.X=0 Y=30 Width=100 Length=150");
        model->setValueForKeyPath(TwValue(5), "Data.PaperSize"); // A5: still fits
        compareArea(*model, "Front.X=20 Y=30 Width=100 Length=150");
        model->setValueForKeyPath(TwValue(13), "Data.PaperSize"); // A6, 105 x 148
        compareArea(*model, "Front.X=5 Back.X=0 Y=0 Width=100 Length=148");
        model->setValueForKeyPath(TwValue(1), "Data.PaperSize"); // back on A4 the area stays as it is
        compareArea(*model, "Front.X=5 Y=0 Width=100 Length=148");
    }

    void turningThePaperTurnsAWholePaperArea() {
        model->setValueForKeyPath(TwValue(5), "Data.PaperSize");
        model->setValueForKeyPath(TwValue(true), "Data.Landscape");
        QCOMPARE(model->valueForKeyPath("enable.Landscape"), TwValue(true));
        compareArea(*model, "Width=210 Length=148");
        model->setValueForKeyPath(TwValue(1), "Data.PaperSize"); // A4 cannot turn: portrait again
        QCOMPARE(model->valueForKeyPath("enable.Landscape"), TwValue(false));
        compareArea(*model, "Width=210 Length=297");
    }

    // Every area of the table is one the model mirrors and keeps: its working copies reach its
    // setting keys, a width or length below its smallest size is raised to it, and its field
    // ranges start there and end that far before the paper's edge.
    void eachAreaOfTheTableKeepsItsSmallestSize_data() {
        QTest::addColumn<int>("index");
        for (std::size_t i = 0; i < Comb_AreaInfo.size(); ++i) {
            const TwAreaInfo& area = Comb_AreaInfo[i];
            const QString name = area.subArea() ? QString("L%1").arg(area.id + 1) : QString("main");
            row(qPrintable(QString(area.front ? "front " : "back ") + name), int(i));
        }
    }
    void eachAreaOfTheTableKeepsItsSmallestSize() {
        QFETCH(int, index);
        const TwAreaInfo& area = Comb_AreaInfo[std::size_t(index)];
        model->setValueForKeyPath(TwValue(0.5), area.widthKey);
        model->setValueForKeyPath(TwValue(0.5), area.lengthKey);
        QCOMPARE(number(*model, area.dataWidthKey), double(area.minWidth));
        QCOMPARE(number(*model, area.dataLengthKey), double(area.minLength));
        QCOMPARE(number(*model, area.widthKey), double(area.minWidth));
        model->setValueForKeyPath(TwValue(7.0), area.xKey);
        model->setValueForKeyPath(TwValue(9.0), area.yKey);
        QCOMPARE(number(*model, area.dataXKey), 7.0);
        QCOMPARE(number(*model, area.dataYKey), 9.0);
        for (const char* key : {area.widthKey, area.dataWidthKey})
            QCOMPARE(model->GetFormatterRange(key).start, double(area.minWidth));
        QCOMPARE(model->GetFormatterRange(area.lengthKey).start, double(area.minLength));
        QCOMPARE(model->GetFormatterRange(area.xKey).length, 210.0 - area.minWidth);
        QCOMPARE(model->GetFormatterRange(area.yKey).length, 297.0 - area.minLength);
        // The main areas are 10 mm at least, the sub-areas 2 mm.
        QCOMPARE(area.minWidth, area.subArea() ? 2.0f : 10.0f);
        QCOMPARE(area.minLength, area.minWidth);
    }

    void validateAllBringsEveryAreaBack() {
        placeArea(*model, "Front.X=300 Back.L1.Y=296 Front.L1.Width=0.5 Back.L1.X=nan Back.L1.Width=inf");
        model->ValidateAreaRectAll();
        compareArea(*model, "Front.X=0 Width=210 Back.L1.Y=277 Back.L1.Length=20 Front.L1.Width=2 "
                            "Back.L1.X=0 Back.L1.Width=210");
        QCOMPARE(model->valueForKeyPath("temp.Area.Back.L1.Y").doubleValue(), 277.0);
    }

    // Every area value stays a finite number on the paper, whether typed into a working copy or
    // written into the setting by the data source: what is not one is refused and the old value
    // stays; a finite value is fitted.
    void areaValuesStayFinite_data() {
        columns<int, QString, TwValue, QString>("unit", "key", "value", "after");
        const double inf = std::numeric_limits<double>::infinity();
        auto row = [](const char* name, int unit, const char* key, TwValue v, const char* after) {
            QTest::newRow(name) << unit << QString(key) << v << QString(after);
        };
        row("typed X not a number", 1, "temp.Area.Front.X", std::nan(""), "Front.X=0 Width=210");
        row("typed width infinite", 1, "temp.Area.Width", inf, "Width=210");
        row("typed length -infinite", 1, "temp.Area.Length", -inf, "Length=297");
        row("typed inches overflowing", 0, "temp.Area.Front.L1.X", 1e308, "Front.L1.X=10");
        row("setting X not a number", 1, "Data.Area.Measure.Front.X", std::nan(""), "Front.X=0");
        row("setting width text", 1, "Data.Area.Measure.Width", "wide", "Width=210");
        row("setting width 0: the minimum", 1, "Data.Area.Measure.Width", 0, "Width=10");
        row("setting sub-area huge: the paper", 0, "Data.Area.Measure.Front.L1.Width", 1e300,
            "Front.L1.X=0 Front.L1.Width=210");
    }
    void areaValuesStayFinite() {
        auto [unit, key, value, after] =
            fetch<int, QString, TwValue, QString>("unit", "key", "value", "after");
        model->setValueForKeyPath(TwValue(unit), "Data.Area.Unit");
        LogCapture log;
        model->setValueForKeyPath(value, key.toStdString());
        compareArea(*model, after);
        const double perUnit = unit == 0 ? 25.4 : 1.0;
        for (auto& [rest, mm] : areaValues(after))
            QCOMPARE(model->valueForKeyPath("temp.Area." + rest).doubleValue() * perUnit, mm);
        QCOMPARE(log.text().contains("is not a finite number"),
                 !value.isNumber() || !std::isfinite(value.doubleValue() * perUnit));
    }

    void areasTheSettingLacksAreNotCreated() {
        model->setValueForKeyPathWithoutNotification(TwValue(), "Data.Area.Measure.Back.L1");
        model->setValueForKeyPathWithoutNotification(TwValue("wide"), "Data.Area.Measure.Front.L1.Width");
        model->ValidateAreaRectAll();
        QVERIFY(model->valueForKeyPath("Data.Area.Measure.Back.L1").isNull());
        QCOMPARE(model->valueForKeyPath("Data.Area.Measure.Front.L1.Width"), TwValue("wide"));
    }

    void paperFrame() {
        model->setValueForKeyPath(TwValue(0), "Data.Area.Unit");
        model->setPaperFrame({10, 20, 110, 220});
        compareArea(*model, "Front.X=10 Back.X=10 Y=20 Width=100 Length=200");
        QCOMPARE(model->valueForKeyPath("temp.Area.Width").doubleValue(), 100.0 / 25.4);
        TwPaperFrame frame;
        model->getPaperFrame(&frame);
        QCOMPARE(QRectF(QPointF(frame.left, frame.top), QPointF(frame.right, frame.bottom)),
                 QRectF(10, 20, 100, 200));

        model->setPaperFrame({110, 220, 10, 20}); // corners in any order
        compareArea(*model, "Front.X=10 Width=100");
        model->setPaperFrame({0, 0, 500, 500}); // larger than the paper
        compareArea(*model, "Width=210 Length=297");
        model->setPaperFrame({NAN, 0, 10, 10}); // refused
        compareArea(*model, "Width=210 Length=297");
        model->getPaperFrame(nullptr);
    }

    // ---- The settings store ----

    void initCreatesElevenSectionsInOrder() {
        TwainDialogData model;
        std::vector<std::string> expected{"ScanInfo", "const",  "content", "contentValues",
                                          "range",    "enable", "Data",    "Default",
                                          "profiles", "temp",   "image"};
        QCOMPARE(model.m_dictData.dict()->keys(), expected);
    }

    void keyPathReadsAndWrites() {
        TwainDialogData model;
        // Reading a missing section creates it, empty.
        QVERIFY(model.valueForKeyPath("Nowhere.Key").isNull());
        QVERIFY(model.m_dictData.dict()->value("Nowhere").dict()->empty());
        // Writing creates the levels in between; writing through a non-dictionary is dropped.
        model.setValueForKeyPath(true, "Data.Area.Front.L1.Enable");
        QVERIFY(model.valueForKeyPath("Data.Area.Front.L1.Enable").boolValue());
        model.setValueForKeyPath("text", "Data.Leaf");
        model.setValueForKeyPath(1, "Data.Leaf.Deeper");
        QVERIFY(model.valueForKeyPath("Data.Leaf").isEqual(TwValue("text")));
        QVERIFY(model.valueForKeyPath("Data.Leaf.Deeper").isNull());
        // Null removes the key.
        model.setValueForKeyPath(TwValue(), "Data.Leaf");
        QVERIFY(!model.valueForKeyPath("Data").dict()->contains("Leaf"));
        // A key path through an array collects the key of each element.
        model.setValueForKeyPath(
            array({dict({{"value", 1}, {"display", "A4"}}), dict({{"value", 2}, {"display", "A5"}})}),
            "content.PaperSize");
        QVERIFY(model.valueForKeyPath("content.PaperSize.display").isEqual(array({"A4", "A5"})));
    }

    // A write costs one walk down its key path: a path running far past a number is dropped at
    // once, and a deep valid path is made level by level (both took exponential or quadratic time).
    void longKeyPathsCostOneWalk() {
        TwainDialogData model;
        model.setValueForKeyPath(300, "Data.Resolution");
        std::string blocked = "Data.Resolution";
        for (int i = 0; i < 64; ++i)
            blocked += ".c";
        model.setValueForKeyPath(1, blocked);
        model.setDataWithDictionary(dict({{blocked, 2}}));
        QCOMPARE(model.valueForKeyPath("Data.Resolution").intValue(), 300);

        std::string deep = "Data.Deep";
        for (int i = 0; i < 20000; ++i)
            deep += ".k";
        model.setValueForKeyPath(7, deep);
        QCOMPARE(model.valueForKeyPath(deep).intValue(), 7);
        model.setValueForKeyPath(TwValue(), "Data.Deep");
    }

    // How deep settings nest is the data source's choice, and secondary threads may have stacks
    // of a few hundred kilobytes: observing every leaf must not take a stack frame per level.
    void deepSettingsAreObservedOnASmallStack() {
        auto selfObservations = [](const std::string& deepLeaf) {
            TwainDialogData model;
            model.setValueForKeyPath(1, "Data.Flat");
            if (!deepLeaf.empty())
                model.setValueForKeyPath(7, deepLeaf);
            model.addSelfObserver();
            return model.observationCount(&model);
        };
        std::string deep = "Data.Deep";
        for (int i = 0; i < 6000; ++i)
            deep += ".k";
        std::size_t withDeepLeaf = 0;
        std::unique_ptr<QThread> thread(QThread::create([&] { withDeepLeaf = selfObservations(deep); }));
        thread->setStackSize(256 * 1024);
        thread->start();
        QVERIFY(thread->wait(60000));
        QCOMPARE(withDeepLeaf, selfObservations({}) + 1);
    }

    void settingASectionMergesIntoIt() {
        TwainDialogData model;
        model.setValueForKeyPath(array(), "content.Resolution");
        model.setValueForKeyPath(dict({{"Unit", array()}}), "content");
        QVERIFY(model.valueForKeyPath("content.Resolution").isArray());
        QVERIFY(model.valueForKeyPath("content.Unit").isArray());
        model.setValueForKeyPath(5, "content"); // a section stays a dictionary
        QVERIFY(model.valueForKeyPath("content").isDictionary());
        // The same for a whole dictionary of sections and key paths.
        model.setDataWithDictionary(dict(
            {{"Data", dict({{"Resolution", 200}})}, {"Data.ImageType", 2}, {"ScanInfo.Version", "1.2"}}));
        QCOMPARE(valuesAt(model, {"Data.Resolution", "Data.ImageType"}), array({200, 2}));
        QVERIFY(model.valueForKeyPath("ScanInfo.Version").isEqual(TwValue("1.2")));
    }

    void modelDefinitionPathsReadTheDataSourceObject() {
        TestModelDef def;
        def.controls = dict({{"MainDialog", dict({{"tabFeed", dict({{"hidden", true}})}})}});
        TwainDialogData model;
        QVERIFY(model.valueForKeyPath("ModelDef.UIControl.MainDialog.tabFeed.hidden").isNull());
        model.setModelDef(&def);
        QVERIFY(model.valueForKeyPath("ModelDef.UIControl.MainDialog.tabFeed.hidden").boolValue());
        QVERIFY(model.valueForKeyPath("ModelDef.UIControl.Other.x").isNull());
        QVERIFY(!model.m_dictData.dict()->contains("ModelDef"));
    }

    // ---- notification rules ----

    void optionsDecideWhatTheChangeCarries_data() {
        QTest::addColumn<unsigned>("options");
        row("new", unsigned(kTwObserveNew));
        row("old", unsigned(kTwObserveOld));
        row("new and old", unsigned(kTwObserveNew | kTwObserveOld));
        row("initial", unsigned(kTwObserveNew | kTwObserveOld | kTwObserveInitial));
    }
    void optionsDecideWhatTheChangeCarries() {
        QFETCH(unsigned, options);
        TwainDialogData model;
        model.setValueForKeyPath(1, "Data.X");
        ChangeRecorder r(model, {"Data.X"}, options);
        const bool initial = options & kTwObserveInitial;
        QCOMPARE(r.seen.size(), size_t(initial)); // told at registration, with no old value
        if (initial)
            QVERIFY(r.seen[0].initial && r.seen[0].newValue.intValue() == 1 && r.seen[0].oldValue.isNull());
        model.setValueForKeyPath(2, "Data.X");
        QCOMPARE(r.seen.size(), size_t(initial) + 1);
        QCOMPARE(r.seen.back().newValue.isNull(), !(options & kTwObserveNew));
        QCOMPARE(r.seen.back().oldValue.isNull(), !(options & kTwObserveOld));
    }

    // A plain write tells even when the value is equal; myChangeValue only a real change, once; a
    // silent write nobody.
    void whichWritesTell() {
        TwainDialogData model;
        model.setValueForKeyPath(true, "enable.Duplex");
        ChangeRecorder r(model, {"enable.Duplex", "Data.X", "Data"});
        model.myChangeValue(1, "enable.Duplex"); // equal: 1 is true
        QCOMPARE(r.seen.size(), size_t(0));
        model.myChangeValue(false, "enable.Duplex");
        QCOMPARE(r.seen.size(), size_t(1)); // once, not once for the write and once for the bracket
        QVERIFY(!model.valueForKeyPath("enable.Duplex").boolValue());
        model.setValueForKeyPath(false, "enable.Duplex");
        QCOMPARE(r.seen.size(), size_t(2));
        model.setValueForKeyPathWithoutNotification(3, "Data.X");
        model.setValueForKeyPathWithoutNotification(dict({{"Y", 1}}), "Data");
        QCOMPARE(r.seen.size(), size_t(2));
        QCOMPARE(valuesAt(model, {"Data.X", "Data.Y"}), array({3, 1}));
    }

    void writeTellsObserversBelowButNotBesideOrAbove() {
        TwainDialogData model;
        ChangeRecorder r(model,
                         {"Data.Feed", "Data.Feed.A", "Data.Feed.B.C", "Data.FeedX", "Data", "Data.Other"});
        model.setValueForKeyPath(dict({{"A", 1}, {"B", dict({{"C", 2}})}}), "Data.Feed");
        auto told = mapped(r.seen, [](const ChangeRecorder::Seen& s) { return s.keyPath; });
        std::ranges::sort(told);
        QCOMPARE(told, (QList<std::string>{"Data.Feed", "Data.Feed.A", "Data.Feed.B.C"}));
        QCOMPARE(r.seen.back().newValue.intValue(), 2);
    }

    void bracketsTellOnceAtTheOuterDid() {
        TwainDialogData model;
        model.setValueForKeyPath(1, "Data.X");
        ChangeRecorder r(model, {"Data.X", "content.PaperSize", "content.Unit"},
                         kTwObserveNew | kTwObserveOld);
        model.willChangeValueForKey("Data.X");
        model.willChangeValueForKey("Data.X"); // nested brackets tell once, at the outer did
        model.setValueForKeyPath(2, "Data.X");
        model.setValueForKeyPath(3, "Data.X");
        model.didChangeValueForKey("Data.X");
        QCOMPARE(r.seen.size(), size_t(0));
        model.didChangeValueForKey("Data.X");
        QCOMPARE(r.seen.size(), size_t(1));
        QCOMPARE(r.seen[0].oldValue.intValue(), 1); // taken at will
        QCOMPARE(r.seen[0].newValue.intValue(), 3);
        // A section merge inside its bracket tells everything under the section at the end.
        model.willChangeValueForKey("content");
        model.setValueForKeyPath(dict({{"PaperSize", array()}}), "content");
        QCOMPARE(r.seen.size(), size_t(1));
        model.didChangeValueForKey("content");
        QCOMPARE(r.seen.size(), size_t(3));
        QVERIFY(r.seen[1].newValue.isArray());
    }

    void observersChangingThingsWhileTold() {
        TwainDialogData model;
        ChangeRecorder first(model, {"Data.X", "Data.A"}), second(model, {"Data.X", "Data.B"});
        // An observer removed while the change is told is not called.
        first.onChange = [&](const std::string& p) {
            if (p == "Data.X")
                model.removeObserver(&second, "Data.X");
            else
                model.myChangeValue(model.valueForKeyPath("Data.A").intValue() * 2, "Data.B");
        };
        model.setValueForKeyPath(1, "Data.X");
        QCOMPARE(first.count("Data.X"), 1);
        QCOMPARE(second.count("Data.X"), 0);
        // A write from inside a notification is told at once.
        model.setValueForKeyPath(21, "Data.A");
        QCOMPARE(second.count("Data.B"), 1);
        QCOMPARE(model.valueForKeyPath("Data.B").intValue(), 42);
    }

    void removingTakesTheLatestRegistration() {
        TwainDialogData model;
        ChangeRecorder r;
        model.addObserver(&r, "Data.X", kTwObserveNew);
        model.addObserver(&r, "Data.X", kTwObserveNew);
        model.removeObserver(&r, "Data.X");
        model.setValueForKeyPath(1, "Data.X");
        QCOMPARE(r.seen.size(), size_t(1));
        model.removeObserver(&r, "Data.X");
        model.removeObserver(&r, "Data.X"); // nothing left: no effect
        QCOMPARE(model.observationCount(), size_t(0));
    }

    // ---- plain dictionaries ----

    void plainDictionaryHelpers() {
        TwainDialogData model;
        TwValue d = dict({{"a", dict({{"b", 1}})}, {"s", "text"}, {"t", "text"}});
        QVERIFY(model.dictionary(d, {}).isNull());
        QCOMPARE(model.dictionary(d, {"a", "b"}).intValue(), 1);
        // A string in the way is replaced by a new dictionary, and the string is what comes back.
        QVERIFY(model.dictionary(d, {"s", "x"}).isEqual(TwValue("text")));
        QVERIFY(d.dict()->value("s").isDictionary());
        // A missing level is created the same way; the caller gets null and asks again.
        QVERIFY(model.dictionary(d, {"m", "x"}).isNull());
        QVERIFY(d.dict()->value("m").isDictionary());

        // Reading returns what is in the way as it is, and creates only below the first level.
        QVERIFY(model.dictionaryRead(d, "t.x").isEqual(TwValue("text")));
        QVERIFY(d.dict()->value("t").isString());
        QVERIFY(model.dictionaryRead(d, "missing.x").isNull());
        QVERIFY(!d.dict()->contains("missing"));
        QVERIFY(model.dictionaryRead(d, "a.c.d").isNull());
        QVERIFY(d.dict()->value("a").dict()->value("c").isDictionary());

        TwValue w = dict();
        model.setValue(5, w, {"a", "b", "c"});
        QCOMPARE(model.dictionaryRead(w, "a.b.c").intValue(), 5);
        model.setValue(6, w, {}); // nothing
        QCOMPARE(w.dict()->size(), size_t(1));
        model.setValue(1, w, {"a", "b", "c", "d"}); // "c" holds a number: refused
        QCOMPARE(model.dictionaryRead(w, "a.b.c").intValue(), 5);
    }

    // ---- texts ----

    void constTextsComeFromTheDataSourceTable() {
        QTemporaryDir dir;
        QString ds = dir.path() + "/DS.bundle";
        writeStrings(ds, dict({{"IDS_SIDE_FRONT", "Front side"}}));
        qputenv("LANGUAGE", "en");
        TwainDialogData withDS(TwBundle::bundleWithPath(ds.toStdString()));
        std::string fallback = "fallback";
        // The data source's strings always win: a key its table lacks is the key, not the default.
        QCOMPARE(withDS.localizedString("IDS_NONE", &fallback), std::string("IDS_NONE"));
        QCOMPARE(withDS.valueForKeyPath("const.text.sideFront").stringValue(), std::string("Front side"));
        QCOMPARE(withDS.valueForKeyPath("const.text.sideBack").stringValue(), std::string("IDS_SIDE_BACK"));
    }

    // ---- capabilities ----

    // Event 1 carries an 8-byte record, little-endian: capability, item type (5: whole number,
    // 7: 16.16 fixed point), value. The fixed-point rows set capability 0x1118 directly.
    void capabilityRecords_data() {
        // keyPath: empty: setCapabilityWithFix32
        // sent: empty: nothing sent
        columns<QString, TwValue, QByteArray>("keyPath", "value", "sent");
        auto row = [](const char* name, const char* keyPath, TwValue value, const char* sent) {
            QTest::newRow(name) << QString(keyPath) << value << QByteArray(sent);
        };
        row("fix32 1.5", "", 1.5, "18 11 07 00 01 00 00 80");
        row("fix32 0.12345 rounds to 0.1235", "", 0.12345, "18 11 07 00 00 00 9e 1f");
        row("fix32 300", "", 300.0, "18 11 07 00 2c 01 00 00");
        // Negative values: the fraction is the low half of the whole 16.16 product.
        row("fix32 -1.5", "", -1.5, "18 11 07 00 ff ff 01 80");
        row("fix32 -0.25", "", -0.25, "18 11 07 00 00 00 01 c0");
        row("resolution", "Data.Resolution", 300, "18 11 05 00 2c 01 00 00");
        row("resolution real", "Data.Resolution", 600.7, "18 11 05 00 58 02 00 00");
        row("image type", "Data.ImageType", 2, "01 01 05 00 02 00 00 00");
        row("negative wraps", "Data.ImageType", -1, "01 01 05 00 ff ff ff ff");
        row("string refused", "Data.Resolution", "300", "");
        row("unmapped key", "Data.PaperSize", 1, "");
        row("prefix only", "Data.Resolution.X", 1, "");
    }
    void capabilityRecords() {
        auto [keyPath, value] = fetch<QString, TwValue>("keyPath", "value");
        TwainDialogData model;
        g_sent.clear();
        auto send = [&] {
            if (keyPath.isEmpty())
                model.setCapabilityWithFix32(0x1118, float(value.doubleValue()));
            else
                model.UpdateCapData(keyPath.toStdString(), value);
        };
        send(); // no callback yet: nothing
        QVERIFY(g_sent.empty());
        model.setCallback(&recordEvent);
        send();
        QByteArray sent;
        for (const SentEvent& e : g_sent)
            if (e.code == kVmxEventSetCapability)
                sent += QByteArray(reinterpret_cast<const char*>(&e.record), sizeof e.record).toHex(' ');
        QTEST(sent, "sent");
    }

    // ---- The value tree ----

    void equality_data() {
        columns<TwValue, TwValue, bool>("a", "b", "equal");
        row("int = real", TwValue(300), TwValue(300.0), true);
        row("int != real fraction", TwValue(1), TwValue(1.5), false);
        row("true = 1", TwValue(true), TwValue(1), true);
        row("number != its string", TwValue(1), TwValue("1"), false);
        row("string case matters", TwValue("ADF"), TwValue("adf"), false);
        row("null = null", TwValue(), TwValue(), true);
        row("null != 0", TwValue(), TwValue(0), false);
        row("arrays deep", array({1, "a", dict({{"k", 2}})}), array({1.0, "a", dict({{"k", 2.0}})}), true);
        row("arrays order", array({1, 2}), array({2, 1}), false);
        row("dicts ignore order", dict({{"a", 1}, {"b", 2}}), dict({{"b", 2}, {"a", 1}}), true);
        row("dicts extra key", dict({{"a", 1}}), dict({{"a", 1}, {"b", 2}}), false);
        row("large ints", TwValue(9007199254740993LL), TwValue(9007199254740992LL), false);
    }
    void equality() {
        auto [a, b, equal] = fetch<TwValue, TwValue, bool>("a", "b", "equal");
        QCOMPARE(a.isEqual(b), equal);
        QCOMPARE(b.isEqual(a), equal);
    }

    void conversions_data() {
        columns<TwValue, int, double, bool>("v", "intValue", "doubleValue", "boolValue");
        row("real truncates", TwValue(12.6), 12, 12.6, true);
        row("negative real truncates", TwValue(-2.7), -2, -2.7, true);
        row("leading number", TwValue(" 42abc"), 42, 42.0, true);
        row("real string", TwValue("3.75"), 3, 3.75, true);
        row("no number", TwValue("abc"), 0, 0.0, false);
        row("yes string", TwValue("YES"), 0, 0.0, true);
        row("zeros then digit", TwValue("-007"), -7, -7.0, true);
        row("true", TwValue(true), 1, 1.0, true);
        row("null", TwValue(), 0, 0.0, false);
        row("dictionary", dict(), 0, 0.0, false);
    }
    void conversions() {
        QFETCH(TwValue, v);
        QTEST(v.intValue(), "intValue");
        QTEST(v.doubleValue(), "doubleValue");
        QTEST(v.boolValue(), "boolValue");
    }

    void unsignedOfNegativeWraps() { QCOMPARE(TwValue(-1).unsignedIntValue(), 0xFFFFFFFFu); }

    void containersAreSharedUntilDeepCopied() {
        TwValue inner = dict({{"x", 1}});
        TwValue outer = dict({{"inner", inner}, {"list", array({inner})}});
        TwValue alias = outer;
        alias.dict()->set("k", 1);
        QVERIFY(outer.dict()->contains("k"));
        TwValue copy = outer.deepCopy();
        QVERIFY(copy.isEqual(outer));
        copy.dict()->value("inner").dict()->set("x", 5);
        copy.dict()->value("list").list()->at(0).dict()->set("x", 6);
        QCOMPARE(inner.dict()->value("x").intValue(), 1);
    }

    // Far deeper than a thread's stack allows for a recursion per level, even without sanitizers.
    void deepNestingCopiesComparesAndGoesWithoutRecursion() {
        constexpr int kLevels = 300000;
        TwValue deep = dict({{"leaf", 1}});
        for (int i = 0; i < kLevels; ++i)
            deep = i % 2 ? dict({{"k", deep}}) : array({deep});
        TwValue copy = deep.deepCopy();
        QVERIFY(copy.isEqual(deep));
        TwValue original = deep, copied = copy;
        for (int i = 0; i < kLevels; ++i) {
            QVERIFY(original.list() != copied.list() || !original.list());
            QVERIFY(original.dict() != copied.dict() || !original.dict());
            original = original.list() ? original.list()->at(0) : original.dict()->value("k");
            copied = copied.list() ? copied.list()->at(0) : copied.dict()->value("k");
        }
        copied.dict()->set("leaf", 2);
        QVERIFY(!copy.isEqual(deep));
        QCOMPARE(original.dict()->value("leaf").intValue(), 1);
        deep = TwValue();
        copy = TwValue();
        QCOMPARE(original.dict()->value("leaf").intValue(), 1); // still held here
    }

    void dictionaryKeepsInsertionOrderAndIndex() {
        TwDictionary d;
        // Enough keys to switch to the hashed index, then removals and re-insertions.
        for (int i = 0; i < 40; ++i)
            d.set("k" + std::to_string(39 - i), i);
        d.remove("k20");
        d.set("k5", 100);       // replacing keeps the place
        d.set("k20", 7);        // re-inserted at the end
        d.set("k7", TwValue()); // a null value removes
        auto keys = d.keys();
        QCOMPARE(keys.size(), size_t(39));
        QCOMPARE(keys.front(), std::string("k39"));
        QCOMPARE(keys.back(), std::string("k20"));
        QCOMPARE(d.value("k5").intValue(), 100);
        QCOMPARE(d.value("k20").intValue(), 7);
        QVERIFY(!d.contains("k7"));
        for (std::size_t i = 0; i < keys.size(); ++i)
            QCOMPARE(d.find(keys[i]), std::ptrdiff_t(i));
    }
};

QTEST_GUILESS_MAIN(TestModel)
#include "tst_model.moc"
