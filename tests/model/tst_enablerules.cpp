// The enable rules: evaluation of the rule table, the reverse index with its constant buckets,
// the registration of the model's own observation, and the dispatch of changes.
#include "ModelTestSupport.h"

class TestEnableRules : public ModelFixture {
    Q_OBJECT

    // Counts how often the custom landscape rule asks for the feeder's width.
    class CountingModelDef : public TestModelDef {
    public:
        mutable int widthAsked = 0;
        double getPhysicalWidth() const override {
            ++widthAsked;
            return TestModelDef::getPhysicalWidth();
        }
    };

    static TwValue empty() { return TwValue::dictionary(); }

    static void fillConditions(TwainDialogData& model) {
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
        row("array: any element", dict({{"Data.Num", TwValue::array({3, 1})}}), true);
        row("array: no element", dict({{"Data.Num", TwValue::array({3, 4})}}), false);
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
        model.setModelDef(&def);
        fillConditions(model);
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
             {"enable.B", dict({{"Data.Num", TwValue::array({1, 2})}})},
             {"enable.C", dict({{"YES", empty()}})},
             {"enable.D", dict({{"false", empty()}})},
             {"enable.E", dict({{"CUSTOM", empty()}})},
             {"enable.F", "not a dictionary"},
             {"enable.G", dict({{"AND", dict({{"Data.Flag", true}, {"custom", empty()}})}})}});
        TwainDialogData model;
        model.setModelDef(&def);
        fillConditions(model);
        model.setValueForKeyPath(TwValue(true), "enable.F");
        model.createObserver();

        TwDictionary* index = model.m_dictObserverChange.dict();
        QCOMPARE(index->keys(), (std::vector<std::string>{"Data.Num", "Data.Source", "Data.Flag"}));
        auto targets = [&](const char* source) {
            std::vector<std::string> out;
            for (auto& t : *index->value(source).list())
                out.push_back(t.stringValue());
            return out;
        };
        QCOMPARE(targets("Data.Num"), (std::vector<std::string>{"enable.A", "enable.B"}));
        QCOMPARE(targets("Data.Source"), (std::vector<std::string>{"enable.A"}));
        QCOMPARE(targets("Data.Flag"), (std::vector<std::string>{"enable.A", "enable.G"}));

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
        model.setModelDef(&def);
        fillConditions(model);
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
        def.rules = TwValue::array({dict({{"enable.A", dict({{"YES", empty()}})}})});
        TwainDialogData model;
        model.setModelDef(&def);
        model.createObserver();
        QVERIFY(model.m_dictEnableChange.isNull() && model.m_dictObserverChange.dict()->empty());
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
        model.m_CustomProfiles = TwValue::array({dict({{"ProfileName", "Mine"}})});
        model.addSelfObserver();
        QCOMPARE(model.valueForKeyPath("profiles.name"), TwValue("Mine"));
        model.removeSelfObserver();
    }

    void selectingAProfileByName_data() {
        columns<TwValue, bool>("profiles", "saved");
        row("foreign elements: no setting of that name", TwValue::array({1, "A", TwValue::array()}), false);
        row("a match", TwValue::array({dict({{"ProfileName", "B"}}), dict({{"ProfileName", "A"}})}), true);
    }
    void selectingAProfileByName() {
        QFETCH(TwValue, profiles);
        model->m_CustomProfiles = profiles;
        QFETCH(bool, saved);
        model->setValueForKeyPath(TwValue("A"), "profiles.name");
        QCOMPARE(model->valueForKeyPath("profiles.name"),
                 saved ? TwValue("A") : model->valueForKeyPath("profiles.temporary"));
        QVERIFY(!model->bInProfileProcess);
        model->bInProfileProcess = true;
        model->setValueForKeyPath(TwValue("B"), "profiles.name");
        QVERIFY(model->bInProfileProcess); // restored to what it was, not cleared
        model->bInProfileProcess = false;
    }

    void enableRulesRunBeforeTheReactions() {
        // The paper-source reaction reads enable.Duplex: it must see the value for the new source.
        def->rules = dict({{"enable.Duplex", dict({{"Data.PaperSource", TwValue::array({1, 4})}})}});
        reload();
        model->setValueForKeyPath(TwValue(1), "Data.PaperSource");
        QCOMPARE(valuesAt(*model, {"enable.Duplex", "temp.GrayImageSide"}), TwValue::array({true, 2}));
    }

    void loadingAProfileSkipsTheReactions() {
        model->bInLoadProfile = true;
        model->setValueForKeyPath(TwValue(150), "Data.Resolution");
        QCOMPARE(model->valueForKeyPath("temp.GrayDPI"), TwValue(300));
        model->bInLoadProfile = false;
        model->setValueForKeyPath(TwValue(200), "Data.Resolution");
        QCOMPARE(model->valueForKeyPath("temp.GrayDPI"), TwValue(200));
    }
};

QTEST_GUILESS_MAIN(TestEnableRules)
#include "tst_enablerules.moc"
