// The settings store: sections and key paths, notification rules, the plain-dictionary helpers,
// texts and the capability records sent as event 1; and the value tree beneath: equality and
// conversions as the settings rules rely on them, reference semantics of containers, and the
// ordered dictionary.
#include "ModelTestSupport.h"
#include "TwBundle.h"

class TestDialogData : public QObject {
    Q_OBJECT

private slots:

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
        model.setValueForKeyPath(TwValue::array({dict({{"value", 1}, {"display", "A4"}}),
                                                 dict({{"value", 2}, {"display", "A5"}})}),
                                 "content.PaperSize");
        QVERIFY(model.valueForKeyPath("content.PaperSize.display").isEqual(TwValue::array({"A4", "A5"})));
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
        model.setDataWithDictionary(TwValue::dictionary({{blocked, 2}}));
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
        model.setValueForKeyPath(TwValue::array(), "content.Resolution");
        model.setValueForKeyPath(dict({{"Unit", TwValue::array()}}), "content");
        QVERIFY(model.valueForKeyPath("content.Resolution").isArray());
        QVERIFY(model.valueForKeyPath("content.Unit").isArray());
        model.setValueForKeyPath(5, "content"); // a section stays a dictionary
        QVERIFY(model.valueForKeyPath("content").isDictionary());
        // The same for a whole dictionary of sections and key paths.
        model.setDataWithDictionary(dict(
            {{"Data", dict({{"Resolution", 200}})}, {"Data.ImageType", 2}, {"ScanInfo.Version", "1.2"}}));
        QCOMPARE(valuesAt(model, {"Data.Resolution", "Data.ImageType"}), TwValue::array({200, 2}));
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
        QCOMPARE(valuesAt(model, {"Data.X", "Data.Y"}), TwValue::array({3, 1}));
    }

    void writeTellsObserversBelowButNotBesideOrAbove() {
        TwainDialogData model;
        ChangeRecorder r(model,
                         {"Data.Feed", "Data.Feed.A", "Data.Feed.B.C", "Data.FeedX", "Data", "Data.Other"});
        model.setValueForKeyPath(dict({{"A", 1}, {"B", dict({{"C", 2}})}}), "Data.Feed");
        std::vector<std::string> told;
        for (auto& s : r.seen)
            told.push_back(s.keyPath);
        std::sort(told.begin(), told.end());
        QCOMPARE(told, (std::vector<std::string>{"Data.Feed", "Data.Feed.A", "Data.Feed.B.C"}));
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
        model.setValueForKeyPath(dict({{"PaperSize", TwValue::array()}}), "content");
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
        QVERIFY(model.dictionary(d, {"m", "x"}).isNull() && d.dict()->value("m").isDictionary());

        // Reading returns what is in the way as it is, and creates only below the first level.
        QVERIFY(model.dictionaryRead(d, "t.x").isEqual(TwValue("text")) && d.dict()->value("t").isString());
        QVERIFY(model.dictionaryRead(d, "missing.x").isNull() && !d.dict()->contains("missing"));
        QVERIFY(model.dictionaryRead(d, "a.c.d").isNull());
        QVERIFY(d.dict()->value("a").dict()->value("c").isDictionary());

        TwValue w = TwValue::dictionary();
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
        row("arrays deep", TwValue::array({1, "a", TwValue::dictionary({{"k", 2}})}),
            TwValue::array({1.0, "a", TwValue::dictionary({{"k", 2.0}})}), true);
        row("arrays order", TwValue::array({1, 2}), TwValue::array({2, 1}), false);
        row("dicts ignore order", TwValue::dictionary({{"a", 1}, {"b", 2}}),
            TwValue::dictionary({{"b", 2}, {"a", 1}}), true);
        row("dicts extra key", TwValue::dictionary({{"a", 1}}), TwValue::dictionary({{"a", 1}, {"b", 2}}),
            false);
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
        row("dictionary", TwValue::dictionary(), 0, 0.0, false);
    }
    void conversions() {
        QFETCH(TwValue, v);
        QTEST(v.intValue(), "intValue");
        QTEST(v.doubleValue(), "doubleValue");
        QTEST(v.boolValue(), "boolValue");
    }

    void unsignedOfNegativeWraps() { QCOMPARE(TwValue(-1).unsignedIntValue(), 0xFFFFFFFFu); }

    void containersAreSharedUntilDeepCopied() {
        TwValue inner = TwValue::dictionary({{"x", 1}});
        TwValue outer = TwValue::dictionary({{"inner", inner}, {"list", TwValue::array({inner})}});
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
        TwValue deep = TwValue::dictionary({{"leaf", 1}});
        for (int i = 0; i < kLevels; ++i)
            deep = i % 2 ? TwValue::dictionary({{"k", deep}}) : TwValue::array({deep});
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

QTEST_APPLESS_MAIN(TestDialogData)
#include "tst_dialogdata.moc"
