// Property lists and bundle folders: round trips through libplist, refusal of broken input, the
// resource and string-table lookups of a bundle, and the module's one text lookup and format.
#include "TestSupport.h"
#include "TwBundle.h"
#include "TwStrings.h"

class TestBundle : public QObject {
    Q_OBJECT

    static QByteArray strings(const QList<QPair<QString, QString>>& entries) {
        TwValue d = TwValue::dictionary();
        for (auto& [k, v] : entries)
            d.dict()->set(k.toStdString(), v.toStdString());
        return QByteArray::fromStdString(TwPlistToXml(d));
    }

    QTemporaryDir dir;

private slots:
    void initTestCase() { qputenv("LANGUAGE", "de"); }

    void plistRoundTripKeepsTypesAndOrder() {
        TwValue tree =
            TwValue::dictionary({{"zeta", 1},
                                 {"alpha", -42},
                                 {"real", 2.5},
                                 {"flag", true},
                                 {"text", "Größe – A4"},
                                 {"bytes", TwValue(TwBytes{0, 1, 255})},
                                 {"big", 5000000000LL},
                                 {"list", TwValue::array({TwValue::dictionary({{"value", 3}}), "x"})},
                                 {"empty", TwValue::dictionary()}});
        std::string xml = TwPlistToXml(tree);
        std::string error;
        TwValue back = TwPlistParse(xml.data(), xml.size(), &error);
        QVERIFY2(back.isDictionary(), error.c_str());
        QVERIFY(back.isEqual(tree));
        QCOMPARE(back.dict()->keys(), tree.dict()->keys());
        // Equality takes 1 for 1.0 and true: the types must survive on their own.
        auto d = back.dict();
        QVERIFY(d->value("alpha").isInteger() && d->value("real").isReal() && d->value("flag").isBoolean());
    }

    void brokenInputIsRefused_data() {
        QTest::addColumn<QByteArray>("bytes");
        row("empty", QByteArray());
        row("text", QByteArray("not a plist at all"));
        row("truncated", QByteArray("<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>a</key>"));
        row("binary header only", QByteArray("bplist00"));
    }
    void brokenInputIsRefused() {
        QFETCH(QByteArray, bytes);
        std::string error;
        TwValue v = TwPlistParse(bytes.constData(), std::size_t(bytes.size()), &error);
        QVERIFY(v.isNull() && !error.empty());
    }

    void deepNestingDoesNotExhaustTheStack() {
        QByteArray xml = "<?xml version=\"1.0\"?><plist version=\"1.0\">";
        for (int i = 0; i < 400; ++i)
            xml += "<array>";
        for (int i = 0; i < 400; ++i)
            xml += "</array>";
        xml += "</plist>";
        TwValue v = TwPlistParse(xml.constData(), std::size_t(xml.size()));
        QVERIFY(v.isArray() || v.isNull());
    }

    void missingFileReportsWhy() {
        std::string error;
        QVERIFY(TwPlistReadFile((dir.path() + "/nope.plist").toStdString(), &error).isNull());
        QVERIFY(error.find("nope.plist") != std::string::npos);
    }

    void bundleReadsItsInfo() {
        QString path = dir.path() + "/A.bundle";
        writeFile(path + "/Contents/Info.plist",
                  QByteArray::fromStdString(TwPlistToXml(TwValue::dictionary(
                      {{"CFBundleIdentifier", "com.example.ds"}, {"CFBundleVersion", "2.1"}}))));
        auto bundle = TwBundle::bundleWithPath(path.toStdString());
        QVERIFY(bundle);
        QCOMPARE(bundle->bundleIdentifier(), std::string("com.example.ds"));
        QCOMPARE(bundle->objectForInfoDictionaryKey("CFBundleVersion").stringValue(), std::string("2.1"));
        // No folder: no bundle; a broken Info.plist: a bundle with empty info.
        QVERIFY(!TwBundle::bundleWithPath((dir.path() + "/absent").toStdString()));
        QVERIFY(!TwBundle::bundleWithPath(""));
        writeFile(path + "/Contents/Info.plist", "garbage");
        bundle = TwBundle::bundleWithPath(path.toStdString());
        QVERIFY(bundle && bundle->bundleIdentifier().empty() && bundle->infoDictionary().isDictionary());
    }

    // Plain resources first, then the first language folder that has the file; string tables the
    // same way, except that an unreadable table is passed over.
    void resourcesAndStringsFollowThePlatformRule() {
        QString path = dir.path() + "/C.bundle";
        writeFile(path + "/Contents/Resources/EnableLink.plist", "x");
        writeFile(path + "/Contents/Resources/en.lproj/Help.html", "x");
        writeFile(path + "/Contents/Resources/de.lproj/Help.html", "x");
        writeFile(path + "/Contents/Resources/de.lproj/Localizable.strings",
                  strings({{"IDS_OK", "OK (de)"}}));
        writeFile(path + "/Contents/Resources/en.lproj/Localizable.strings",
                  strings({{"IDS_OK", "OK"}, {"IDS_CANCEL", "Cancel"}}));
        auto bundle = TwBundle::bundleWithPath(path.toStdString());
        QCOMPARE(QString::fromStdString(bundle->pathForResource("EnableLink", "plist")),
                 path + "/Contents/Resources/EnableLink.plist");
        QCOMPARE(QString::fromStdString(bundle->pathForResource("Help", "html")),
                 path + "/Contents/Resources/de.lproj/Help.html");
        QCOMPARE(bundle->pathForResource("Missing", "png"), std::string());
        QCOMPARE(bundle->localizedStringForKey("IDS_OK", ""), std::string("OK (de)"));
        // The first language that has the table answers alone, as on the platform.
        QCOMPARE(bundle->localizedStringForKey("IDS_CANCEL", "fallback"), std::string("fallback"));
        QCOMPARE(bundle->localizedStringForKey("IDS_CANCEL", ""), std::string("IDS_CANCEL"));
        QVERIFY(bundle->hasLocalizedString("IDS_OK") && !bundle->hasLocalizedString("IDS_CANCEL"));

        writeFile(path + "/Contents/Resources/de.lproj/Localizable.strings", "\"IDS_OK\" = \"old style\";");
        bundle = TwBundle::bundleWithPath(path.toStdString());
        QCOMPARE(bundle->localizedStringForKey("IDS_OK", ""), std::string("OK"));
    }

    // With a data source bundle only its table answers (an empty text too), and a key it lacks
    // comes back as the key itself, never the fallback; the module's own table answers only
    // without one. Both bundles in English.
    void textLookupChain_data() {
        columns<bool, QString, QString, QString, bool>("withDataSource", "key", "text", "withFallback",
                                                       "known");
        row("data source wins", true, "IDS_BOTH", "ds both", "ds both", true);
        row("empty text is an answer", true, "IDS_BLANK", "", "", true);
        row("module's table not asked", true, "IDS_OWN", "IDS_OWN", "IDS_OWN", false);
        row("unknown with a data source", true, "IDS_NONE", "IDS_NONE", "IDS_NONE", false);
        row("no data source: module's table", false, "IDS_BOTH", "own both", "own both", true);
        row("no data source: the fallback", false, "IDS_NONE", "IDS_NONE", "fallback", false);
        row("no key", true, "", "", "", false);
    }
    void textLookupChain() {
        auto [withDataSource, key, text, withFallback, known] = fetch<bool, QString, QString, QString, bool>(
            "withDataSource", "key", "text", "withFallback", "known");
        QString ds = dir.path() + "/Strings/DS.bundle", own = dir.path() + "/Strings/Own.bundle";
        writeFile(ds + "/Contents/Resources/en.lproj/Localizable.strings",
                  strings({{"IDS_BOTH", "ds both"}, {"IDS_BLANK", ""}}));
        writeFile(own + "/Contents/Resources/en.lproj/Localizable.strings",
                  strings({{"IDS_BOTH", "own both"}, {"IDS_OWN", "own text"}, {"IDS_BLANK", "own blank"}}));
        qputenv("LANGUAGE", "en");
        TwBundle::setModuleBundlePath(own.toStdString());
        auto bundle = withDataSource ? TwBundle::bundleWithPath(ds.toStdString()) : nullptr;
        const std::string k = key.toStdString();
        QCOMPARE(QString::fromStdString(TwLocalizedString(bundle.get(), k)), text);
        QCOMPARE(QString::fromStdString(TwLocalizedStringNoEmpty(bundle.get(), k)),
                 text.isEmpty() ? " " : text);
        QCOMPARE(TwLookupString(bundle.get(), k).has_value(), known);
        QCOMPARE(QString::fromStdString(TwLocalizedString(bundle.get(), k, "fallback")), withFallback);
        TwBundle::setModuleBundlePath("");
        qputenv("LANGUAGE", "de");
    }

    void formatFillsPlaceholders_data() {
        columns<QString, QStringList, QString>("format", "arguments", "text");
        row("objects in order", "Delete %@ and %@?", QStringList{"a", "b"}, "Delete a and b?");
        row("numbered", "%2$@ before %1$@", QStringList{"one", "two"}, "two before one");
        row("printf number", "At most %d characters", QStringList{"32"}, "At most 32 characters");
        row("length modifier", "%ld of %lu", QStringList{"1", "2"}, "1 of 2");
        row("percent sign", "100%% done: %@", QStringList{"x"}, "100% done: x");
        row("missing argument", "%@ and %@", QStringList{"a"}, "a and ");
        row("no conversion", "50% off %", QStringList{"a"}, "50% off %");
    }
    void formatFillsPlaceholders() {
        auto [format, arguments, text] = fetch<QString, QStringList, QString>("format", "arguments", "text");
        std::vector<std::string> args;
        for (auto& a : arguments)
            args.push_back(a.toStdString());
        QCOMPARE(QString::fromStdString(TwFormatString(format.toStdString(), args)), text);
    }

    void moduleBundleCanBePointedAt() {
        QString path = dir.path() + "/Own.bundle";
        QDir().mkpath(path);
        TwBundle::setModuleBundlePath(path.toStdString());
        QVERIFY(TwBundle::moduleBundle());
        QCOMPARE(QString::fromStdString(TwBundle::moduleBundle()->bundlePath()), QDir(path).absolutePath());
        TwBundle::setModuleBundlePath("");
        // A test executable is no bundle of its own.
        QVERIFY(!TwBundle::moduleBundle());
        // The module's own bundle, as the build lays it out.
        auto own = TwBundle::bundleWithPath(VMX_BUNDLE_DIR);
        QVERIFY(own && !own->bundleIdentifier().empty());
    }
};

QTEST_APPLESS_MAIN(TestBundle)
#include "tst_bundle.moc"
