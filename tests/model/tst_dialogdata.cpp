// The settings store: sections and key paths, notification rules, the plain-dictionary helpers,
// texts and the capability records sent as event 1.
#include "OrvaDebug.h"
#include "TwBundle.h"
#include "TwainDialogData.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <cstring>

namespace {

struct Seen {
    std::string keyPath;
    TwValue newValue;
    TwValue oldValue;
    bool initial;
};

class Recorder : public TwKeyValueObserver {
public:
    std::vector<Seen> seen;
    std::function<void(const std::string&)> onChange;
    void observeValueForKeyPath(const std::string& keyPath, TwainDialogData*, const TwKeyValueChange& change,
                                void*) override {
        seen.push_back({keyPath, change.newValue, change.oldValue, change.isInitial});
        if (onChange)
            onChange(keyPath);
    }
};

std::vector<TwCapabilityRecord> g_records;
std::uint16_t recordCallback(std::uint16_t event, void* data) {
    if (event == kVmxEventSetCapability) {
        TwCapabilityRecord r;
        std::memcpy(&r, data, sizeof r);
        g_records.push_back(r);
    }
    return 0;
}

void writeFile(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).path());
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

QByteArray stringsPlist(const QList<QPair<QString, QString>>& entries) {
    QByteArray xml = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>";
    for (auto& [k, v] : entries)
        xml += "<key>" + k.toUtf8() + "</key><string>" + v.toUtf8() + "</string>";
    return xml + "</dict></plist>";
}

} // namespace

class TestDialogData : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { OrvaSetLogPaths(nullptr, nullptr); }

    void initCreatesElevenSectionsInOrder() {
        TwainDialogData model;
        std::vector<std::string> expected{"ScanInfo", "const",  "content", "contentValues",
                                          "range",    "enable", "Data",    "Default",
                                          "profiles", "temp",   "image"};
        QCOMPARE(model.m_dictData.dict()->keys(), expected);
        QVERIFY(model.m_dictEnableChange.isNull());
        QVERIFY(!model.bInProfileProcess && !model.bInLoadProfile && !model.m_bInInit &&
                !model.m_bForbitChange);
    }

    void readingAMissingSectionCreatesIt() {
        TwainDialogData model;
        QVERIFY(model.valueForKeyPath("Nowhere.Key").isNull());
        QVERIFY(model.m_dictData.dict()->value("Nowhere").isDictionary());
        QVERIFY(model.m_dictData.dict()->value("Nowhere").dict()->empty());
    }

    void readingThroughAStringOrArray() {
        TwainDialogData model;
        model.setValueForKeyPath("text", "Data.Leaf");
        QVERIFY(model.valueForKeyPath("Data.Leaf.Deeper").isNull());
        model.setValueForKeyPath(TwValue::array({TwValue::dictionary({{"value", 1}, {"display", "A4"}}),
                                                 TwValue::dictionary({{"value", 2}, {"display", "A5"}})}),
                                 "content.PaperSize");
        QVERIFY(model.valueForKeyPath("content.PaperSize.display").isEqual(TwValue::array({"A4", "A5"})));
    }

    void writingCreatesIntermediateDictionaries() {
        TwainDialogData model;
        model.setValueForKeyPath(30, "Data.Feed.ManualFeedTimeOut");
        QVERIFY(model.valueForKeyPath("Data.Feed").isDictionary());
        QCOMPARE(model.valueForKeyPath("Data.Feed.ManualFeedTimeOut").intValue(), 30);
        model.setValueForKeyPath(true, "Data.Area.Front.L1.Enable");
        QVERIFY(model.valueForKeyPath("Data.Area.Front.L1.Enable").boolValue());
    }

    void writingThroughANonDictionaryIsDropped() {
        TwainDialogData model;
        model.setValueForKeyPath("text", "Data.Leaf");
        model.setValueForKeyPath(1, "Data.Leaf.Deeper");
        QVERIFY(model.valueForKeyPath("Data.Leaf").isEqual(TwValue("text")));
    }

    void writingNullRemovesTheKey() {
        TwainDialogData model;
        model.setValueForKeyPath(1, "Data.X");
        model.setValueForKeyPath(TwValue(), "Data.X");
        QVERIFY(!model.valueForKeyPath("Data").dict()->contains("X"));
    }

    void settingASectionMergesIntoIt() {
        TwainDialogData model;
        model.setValueForKeyPath(TwValue::array(), "content.Resolution");
        model.setValueForKeyPath(TwValue::dictionary({{"Unit", TwValue::array()}}), "content");
        QVERIFY(model.valueForKeyPath("content.Resolution").isArray());
        QVERIFY(model.valueForKeyPath("content.Unit").isArray());
        // A section cannot be replaced by something that is not a dictionary.
        model.setValueForKeyPath(5, "content");
        QVERIFY(model.valueForKeyPath("content").isDictionary());
    }

    void setDataWithDictionaryTakesSectionsAndKeyPaths() {
        TwainDialogData model;
        model.setDataWithDictionary(TwValue::dictionary({{"Data", TwValue::dictionary({{"Resolution", 200}})},
                                                         {"Data.ImageType", 2},
                                                         {"ScanInfo.Version", "1.2"}}));
        QCOMPARE(model.valueForKeyPath("Data.Resolution").intValue(), 200);
        QCOMPARE(model.valueForKeyPath("Data.ImageType").intValue(), 2);
        QVERIFY(model.valueForKeyPath("ScanInfo.Version").isEqual(TwValue("1.2")));
    }

    void modelDefinitionPathsReadTheDataSourceObject() {
        struct Def : TwModelDefFile {
            TwValue UIEnable() const override { return {}; }
            TwValue UIOptions() const override { return {}; }
            TwValue UIControl() const override {
                return TwValue::dictionary(
                    {{"MainDialog",
                      TwValue::dictionary({{"tabFeed", TwValue::dictionary({{"hidden", true}})}})}});
            }
            TwValue FeederADF() const override { return {}; }
            TwValue FeederFlatbed() const override { return {}; }
            double getPhysicalWidth() const override { return 8.5; }
            double getMinHeight() const override { return 2; }
        } def;
        TwainDialogData model;
        QVERIFY(model.valueForKeyPath("ModelDef.UIControl.MainDialog.tabFeed.hidden").isNull());
        model.setModelDef(&def);
        QVERIFY(model.valueForKeyPath("ModelDef.UIControl.MainDialog.tabFeed.hidden").boolValue());
        QVERIFY(model.valueForKeyPath("ModelDef.UIControl.Other.x").isNull());
        QVERIFY(!model.m_dictData.dict()->contains("ModelDef"));
    }

    // ---- notification rules ----

    void plainWriteNotifiesEvenWhenEqual() {
        TwainDialogData model;
        model.setValueForKeyPath(200, "Data.Resolution");
        Recorder r;
        model.addObserver(&r, "Data.Resolution", kTwObserveNew | kTwObserveOld);
        model.setValueForKeyPath(300, "Data.Resolution");
        model.setValueForKeyPath(300, "Data.Resolution");
        QCOMPARE(r.seen.size(), size_t(2));
        QCOMPARE(r.seen[0].oldValue.intValue(), 200);
        QCOMPARE(r.seen[0].newValue.intValue(), 300);
        QCOMPARE(r.seen[1].oldValue.intValue(), 300);
        model.removeObserver(&r, "Data.Resolution");
    }

    void optionsDecideWhatTheChangeCarries_data() {
        QTest::addColumn<unsigned>("options");
        QTest::addColumn<bool>("hasNew");
        QTest::addColumn<bool>("hasOld");
        QTest::newRow("new") << 1u << true << false;
        QTest::newRow("old") << 2u << false << true;
        QTest::newRow("new and old") << 3u << true << true;
    }
    void optionsDecideWhatTheChangeCarries() {
        QFETCH(unsigned, options);
        QFETCH(bool, hasNew);
        QFETCH(bool, hasOld);
        TwainDialogData model;
        model.setValueForKeyPath(1, "Data.X");
        Recorder r;
        model.addObserver(&r, "Data.X", options);
        model.setValueForKeyPath(2, "Data.X");
        QCOMPARE(r.seen.size(), size_t(1));
        QCOMPARE(!r.seen[0].newValue.isNull(), hasNew);
        QCOMPARE(!r.seen[0].oldValue.isNull(), hasOld);
        model.removeObserver(&r, "Data.X");
    }

    void initialOptionCallsAtRegistration() {
        TwainDialogData model;
        model.setValueForKeyPath(5, "Data.X");
        Recorder r;
        model.addObserver(&r, "Data.X", kTwObserveNew | kTwObserveOld | kTwObserveInitial);
        QCOMPARE(r.seen.size(), size_t(1));
        QVERIFY(r.seen[0].initial);
        QCOMPARE(r.seen[0].newValue.intValue(), 5);
        QVERIFY(r.seen[0].oldValue.isNull());
        model.removeObserver(&r, "Data.X");
    }

    void myChangeValueSkipsEqualValues() {
        TwainDialogData model;
        model.setValueForKeyPath(true, "enable.Duplex");
        Recorder r;
        model.addObserver(&r, "enable.Duplex", kTwObserveNew);
        model.myChangeValue(1, "enable.Duplex"); // equal: 1 is true
        QCOMPARE(r.seen.size(), size_t(0));
        model.myChangeValue(false, "enable.Duplex");
        QCOMPARE(r.seen.size(), size_t(1)); // once, not once for the write and once for the bracket
        QVERIFY(!model.valueForKeyPath("enable.Duplex").boolValue());
        model.removeObserver(&r, "enable.Duplex");
    }

    void silentWriteTellsNobody() {
        TwainDialogData model;
        Recorder r;
        model.addObserver(&r, "Data.X", kTwObserveNew);
        model.addObserver(&r, "Data", kTwObserveNew);
        model.setValueForKeyPathWithoutNotification(3, "Data.X");
        model.setValueForKeyPathWithoutNotification(TwValue::dictionary({{"Y", 1}}), "Data");
        QCOMPARE(r.seen.size(), size_t(0));
        QCOMPARE(model.valueForKeyPath("Data.X").intValue(), 3);
        QCOMPARE(model.valueForKeyPath("Data.Y").intValue(), 1);
        model.removeObserver(&r, "Data.X");
        model.removeObserver(&r, "Data");
    }

    void writeTellsObserversBelowButNotBesideOrAbove() {
        TwainDialogData model;
        Recorder r;
        for (auto p : {"Data.Feed", "Data.Feed.A", "Data.Feed.B.C", "Data.FeedX", "Data", "Data.Other"})
            model.addObserver(&r, p, kTwObserveNew);
        model.setValueForKeyPath(TwValue::dictionary({{"A", 1}, {"B", TwValue::dictionary({{"C", 2}})}}),
                                 "Data.Feed");
        std::vector<std::string> told;
        for (auto& s : r.seen)
            told.push_back(s.keyPath);
        std::sort(told.begin(), told.end());
        QCOMPARE(told, (std::vector<std::string>{"Data.Feed", "Data.Feed.A", "Data.Feed.B.C"}));
        QCOMPARE(r.seen.back().newValue.intValue(), 2);
        for (auto p : {"Data.Feed", "Data.Feed.A", "Data.Feed.B.C", "Data.FeedX", "Data", "Data.Other"})
            model.removeObserver(&r, p);
    }

    void sectionMergeTellsEverythingUnderIt() {
        TwainDialogData model;
        Recorder r;
        model.addObserver(&r, "content.PaperSize", kTwObserveNew);
        model.addObserver(&r, "content.Unit", kTwObserveNew);
        model.addObserver(&r, "Data.Unit", kTwObserveNew);
        model.willChangeValueForKey("content");
        model.setValueForKeyPath(TwValue::dictionary({{"PaperSize", TwValue::array()}}), "content");
        QCOMPARE(r.seen.size(), size_t(0)); // inside the bracket
        model.didChangeValueForKey("content");
        QCOMPARE(r.seen.size(), size_t(2));
        QVERIFY(r.seen[0].newValue.isArray());
        for (auto p : {"content.PaperSize", "content.Unit", "Data.Unit"})
            model.removeObserver(&r, p);
        QCOMPARE(model.observationCount(), size_t(0));
    }

    void bracketCapturesOldValueAtWill() {
        TwainDialogData model;
        model.setValueForKeyPath(1, "Data.X");
        Recorder r;
        model.addObserver(&r, "Data.X", kTwObserveNew | kTwObserveOld);
        model.willChangeValueForKey("Data.X");
        model.willChangeValueForKey("Data.X"); // nested brackets tell once, at the outer did
        model.setValueForKeyPath(2, "Data.X");
        model.setValueForKeyPath(3, "Data.X");
        model.didChangeValueForKey("Data.X");
        QCOMPARE(r.seen.size(), size_t(0));
        model.didChangeValueForKey("Data.X");
        QCOMPARE(r.seen.size(), size_t(1));
        QCOMPARE(r.seen[0].oldValue.intValue(), 1);
        QCOMPARE(r.seen[0].newValue.intValue(), 3);
        model.removeObserver(&r, "Data.X");
    }

    void observerRemovedWhileTellingIsNotCalled() {
        TwainDialogData model;
        Recorder first, second;
        model.addObserver(&first, "Data.X", kTwObserveNew);
        model.addObserver(&second, "Data.X", kTwObserveNew);
        first.onChange = [&](const std::string&) {
            model.removeObserver(&second, "Data.X");
        };
        model.setValueForKeyPath(1, "Data.X");
        QCOMPARE(first.seen.size(), size_t(1));
        QCOMPARE(second.seen.size(), size_t(0));
        model.removeObserver(&first, "Data.X");
        QCOMPARE(model.observationCount(), size_t(0));
    }

    void observerWritingWhileToldSeesNestedChanges() {
        TwainDialogData model;
        Recorder r;
        model.addObserver(&r, "Data.A", kTwObserveNew);
        model.addObserver(&r, "Data.B", kTwObserveNew);
        r.onChange = [&](const std::string& p) {
            if (p == "Data.A")
                model.myChangeValue(model.valueForKeyPath("Data.A").intValue() * 2, "Data.B");
        };
        model.setValueForKeyPath(21, "Data.A");
        QCOMPARE(r.seen.size(), size_t(2));
        QCOMPARE(r.seen[1].keyPath, std::string("Data.B"));
        QCOMPARE(model.valueForKeyPath("Data.B").intValue(), 42);
        model.removeObserver(&r, "Data.A");
        model.removeObserver(&r, "Data.B");
    }

    void removingTakesTheLatestRegistration() {
        TwainDialogData model;
        Recorder r;
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

    void dictionaryForKeyPathArray() {
        TwainDialogData model;
        TwValue d = TwValue::dictionary({{"a", TwValue::dictionary({{"b", 1}})}, {"s", "text"}});
        QVERIFY(model.dictionary(d, {}).isNull());
        QCOMPARE(model.dictionary(d, {"a", "b"}).intValue(), 1);
        // A string in the way is replaced by a new dictionary, and the string is what comes back.
        QVERIFY(model.dictionary(d, {"s", "x"}).isEqual(TwValue("text")));
        QVERIFY(d.dict()->value("s").isDictionary());
        // A missing level is created the same way; the caller gets null and asks again.
        QVERIFY(model.dictionary(d, {"m", "x"}).isNull());
        QVERIFY(d.dict()->value("m").isDictionary());
    }

    void dictionaryReadCreatesOnlyBelowTheFirstLevel() {
        TwainDialogData model;
        TwValue d = TwValue::dictionary({{"a", TwValue::dictionary()}, {"s", "text"}});
        QVERIFY(model.dictionaryRead(d, "s.x").isEqual(TwValue("text"))); // returned as it is
        QVERIFY(d.dict()->value("s").isString());
        QVERIFY(model.dictionaryRead(d, "missing.x").isNull());
        QVERIFY(!d.dict()->contains("missing"));
        QVERIFY(model.dictionaryRead(d, "a.b.c").isNull()); // below the first level: created
        QVERIFY(d.dict()->value("a").dict()->value("b").isDictionary());
    }

    void setValueDictionaryForKeyPathArray() {
        TwainDialogData model;
        TwValue d = TwValue::dictionary();
        model.setValue(5, d, {"a", "b", "c"});
        QCOMPARE(model.dictionaryRead(d, "a.b.c").intValue(), 5);
        model.setValue(6, d, {}); // nothing
        QCOMPARE(d.dict()->size(), size_t(1));
        model.setValue(1, d, {"a", "b", "c", "d"}); // "c" holds a number: refused, logged
        QCOMPARE(model.dictionaryRead(d, "a.b.c").intValue(), 5);
    }

    void allKeyPathsListsLeavesInOrder() {
        TwainDialogData model;
        TwValue d = TwValue::dictionary(
            {{"Unit", 1},
             {"Front",
              TwValue::dictionary({{"L1", TwValue::dictionary({{"Enable", true}})}, {"Halftone", 0}})},
             {"Empty", TwValue::dictionary()},
             {"List", TwValue::array({1})}});
        std::string prefix = "Data.Area";
        QCOMPARE(model.allKeyPaths(&prefix, d),
                 (std::vector<std::string>{"Data.Area.Unit", "Data.Area.Front.L1.Enable",
                                           "Data.Area.Front.Halftone", "Data.Area.List"}));
        QCOMPARE(model.allKeyPaths(nullptr, d).front(), std::string("Unit"));
        model.setValueForKeyPath(0, "Data.Area.Unit");
        auto all = model.allKeyPaths();
        QVERIFY(std::find(all.begin(), all.end(), "Data.Area.Unit") != all.end());
    }

    // ---- texts ----

    void localizedStringLookupOrder() {
        QTemporaryDir dir;
        QString ds = dir.path() + "/DS.bundle", own = dir.path() + "/Own.bundle";
        writeFile(ds + "/Contents/Resources/en.lproj/Localizable.strings",
                  stringsPlist({{"IDS_SIDE_FRONT", "Front side"}}));
        writeFile(own + "/Contents/Resources/en.lproj/Localizable.strings",
                  stringsPlist({{"IDS_SIDE_FRONT", "own front"}, {"IDS_OWN", "own text"}}));
        qputenv("LANGUAGE", "en");
        TwBundle::setModuleBundlePath(own.toStdString());

        TwainDialogData withDS(TwBundle::bundleWithPath(ds.toStdString()));
        std::string fallback = "fallback";
        QCOMPARE(withDS.localizedString("IDS_SIDE_FRONT"), std::string("Front side"));
        // The data source's bundle answers every key, with the key itself when it lacks it.
        QCOMPARE(withDS.localizedString("IDS_OWN", &fallback), std::string("IDS_OWN"));
        QCOMPARE(withDS.valueForKeyPath("const.text.sideFront").stringValue(), std::string("Front side"));
        QCOMPARE(withDS.valueForKeyPath("const.text.sideBack").stringValue(), std::string("IDS_SIDE_BACK"));

        TwainDialogData alone;
        QCOMPARE(alone.localizedString("IDS_OWN", &fallback), std::string("own text"));
        QCOMPARE(alone.localizedString("IDS_NONE", &fallback), fallback);
        QCOMPARE(alone.localizedString("IDS_NONE"), std::string("IDS_NONE"));
        QCOMPARE(alone.localizedString(""), std::string());
        TwBundle::setModuleBundlePath("");
    }

    // ---- capabilities ----

    void fix32Record_data() {
        QTest::addColumn<float>("value");
        QTest::addColumn<int>("whole");
        QTest::addColumn<int>("fraction");
        QTest::newRow("1.5") << 1.5f << 1 << 32768;
        QTest::newRow("0.12345 rounds to 0.1235") << 0.12345f << 0 << 8094;
        QTest::newRow("300") << 300.0f << 300 << 0;
        QTest::newRow("0") << 0.0f << 0 << 0;
        // Negative values: the fraction is the low half of the whole 16.16 product.
        QTest::newRow("-1.5") << -1.5f << -1 << 32769;
        QTest::newRow("-0.25") << -0.25f << 0 << 49153;
    }
    void fix32Record() {
        QFETCH(float, value);
        QFETCH(int, whole);
        QFETCH(int, fraction);
        TwainDialogData model;
        g_records.clear();
        model.setCapabilityWithFix32(0x1118, value); // no callback yet: nothing
        QVERIFY(g_records.empty());
        model.setCallback(&recordCallback);
        model.setCapabilityWithFix32(0x1118, value);
        QCOMPARE(g_records.size(), size_t(1));
        const unsigned char* bytes = reinterpret_cast<const unsigned char*>(&g_records[0]);
        QCOMPARE(bytes[0] | bytes[1] << 8, 0x1118);
        QCOMPARE(bytes[2] | bytes[3] << 8, 7);
        QCOMPARE(int(std::int16_t(bytes[4] | bytes[5] << 8)), whole);
        QCOMPARE(bytes[6] | bytes[7] << 8, fraction);
    }

    void updateCapDataSendsOnlyMappedNumbers_data() {
        QTest::addColumn<QString>("keyPath");
        QTest::addColumn<TwValue>("value");
        QTest::addColumn<int>("capability");
        QTest::addColumn<qlonglong>("sent");
        QTest::newRow("resolution") << "Data.Resolution" << TwValue(300) << 0x1118 << 300LL;
        QTest::newRow("resolution real") << "Data.Resolution" << TwValue(600.7) << 0x1118 << 600LL;
        QTest::newRow("image type") << "Data.ImageType" << TwValue(2) << 0x0101 << 2LL;
        QTest::newRow("negative wraps") << "Data.ImageType" << TwValue(-1) << 0x0101 << 0xFFFFFFFFLL;
        QTest::newRow("string refused") << "Data.Resolution" << TwValue("300") << 0 << 0LL;
        QTest::newRow("unmapped key") << "Data.PaperSize" << TwValue(1) << 0 << 0LL;
        QTest::newRow("prefix only") << "Data.Resolution.X" << TwValue(1) << 0 << 0LL;
    }
    void updateCapDataSendsOnlyMappedNumbers() {
        QFETCH(QString, keyPath);
        QFETCH(TwValue, value);
        QFETCH(int, capability);
        QFETCH(qlonglong, sent);
        TwainDialogData model;
        model.setCallback(&recordCallback);
        g_records.clear();
        model.UpdateCapData(keyPath.toStdString(), value);
        if (!capability) {
            QVERIFY(g_records.empty());
            return;
        }
        QCOMPARE(g_records.size(), size_t(1));
        QCOMPARE(int(g_records[0].capability), capability);
        QCOMPARE(int(g_records[0].itemType), 5);
        QCOMPARE(qlonglong(g_records[0].value.uint32), sent);
    }
};

QTEST_APPLESS_MAIN(TestDialogData)
#include "tst_dialogdata.moc"
