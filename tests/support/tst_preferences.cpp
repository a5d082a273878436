// Preferences on disk: what one save writes, what concurrent savers keep, what a broken file and
// a killed process leave behind. Property lists and bundle folders beneath: round trips through
// libplist, refusal of broken input, the resource and string-table lookups of a bundle, and the
// module's one text lookup and format.
#include "TestSupport.h"
#include "TwBundle.h"
#include "TwPreferences.h"
#include "TwStrings.h"

#include <plist/plist.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

class TestPreferences : public QObject {
    Q_OBJECT

    static QByteArray strings(const QList<QPair<QString, QString>>& entries) {
        TwValue d = TwValue::dictionary();
        for (auto& [k, v] : entries)
            d.dict()->set(k.toStdString(), v.toStdString());
        return QByteArray::fromStdString(TwPlistToXml(d));
    }

    static inline const std::string kDomain = "com.example.scanner.ds";
    static inline int s_chunkFd = -1;

    // Arrays nested `levels` deep around an integer, as XML.
    static QByteArray xmlNestedArrays(int levels) {
        return "<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>k</key>" +
               QByteArray("<array>").repeated(levels) + "<integer>1</integer>" +
               QByteArray("</array>").repeated(levels) + "</dict></plist>";
    }

    // The same as a binary list (the dictionary, then one array per level; with `circle` the last array
    // refers back to the first instead of holding the integer).
    static QByteArray binaryNestedArrays(int levels, bool circle = false) {
        const int objects = levels + 2;
        QByteArray bytes("bplist00");
        QList<quint32> offsets;
        auto be = [](quint64 v, int width) {
            QByteArray out;
            for (int k = width - 1; k >= 0; --k)
                out += char((v >> (8 * k)) & 0xFF);
            return out;
        };
        // Object 0 is {"k": object 1}; objects 1 to `levels` are the arrays; the last is the string "k".
        offsets << bytes.size();
        bytes += char(0xD1) + be(objects - 1, 4) + be(1, 4);
        for (int i = 1; i <= levels; ++i) {
            offsets << bytes.size();
            const int next = i < levels ? i + 1 : (circle ? 1 : objects - 1);
            bytes += char(0xA1) + be(next, 4);
        }
        offsets << bytes.size();
        bytes += QByteArray("\x51k", 2); // the key "k" (one ASCII character), also reached as the leaf
        const quint64 table = quint64(bytes.size());
        for (quint32 o : offsets)
            bytes += be(o, 4);
        bytes += QByteArray(6, 0) + char(4) + char(4) + be(objects, 8) + be(0, 8) + be(table, 8);
        return bytes;
    }

    // A value whose XML is large enough that a save takes a while.
    static TwValue bigBlob(int version) {
        auto list = TwValue::array();
        for (int i = 0; i < 4000; ++i)
            list.list()->push_back(
                TwValue::dictionary({{"index", i}, {"version", version}, {"pad", std::string(40, 'x')}}));
        return list;
    }

    std::unique_ptr<QTemporaryDir> dir; // each case's own

    QString file() const { return dir->path() + "/" + QString::fromStdString(kDomain) + ".plist"; }
    TwPreferences prefs() const { return TwPreferences(kDomain, dir->path().toStdString()); }
    static TwValue readBack(const QString& file) { return TwPlistReadFile(file.toStdString()); }

private slots:
    void initTestCase() { qputenv("LANGUAGE", "de"); }
    void init() { dir = std::make_unique<QTemporaryDir>(); }

    void savedValuesReadBackInANewInstance() {
        QString sub = dir->path() + "/not/yet/there";
        {
            TwPreferences prefs(kDomain, sub.toStdString());
            QVERIFY(prefs.copyValue("profiles").isNull());
            prefs.setValue(
                "profiles",
                TwValue::array({TwValue::dictionary({{"ProfileName", "Office"}, {"Resolution", 300}})}));
            prefs.setValue("Runned", 1);
            QVERIFY(prefs.copyValue("Runned").isEqual(TwValue(1))); // pending writes are visible at once
            QVERIFY(prefs.synchronize());
        }
        QString file = sub + "/" + QString::fromStdString(kDomain) + ".plist";
        QVERIFY(QFile::exists(file));
        QCOMPARE(QFile(file).permissions() & (QFile::ReadOther | QFile::ReadGroup), QFile::Permissions());

        TwPreferences again(kDomain, sub.toStdString());
        QCOMPARE(again.copyValue("Runned").intValue(), 1);
        QCOMPARE(again.copyValue("profiles").list()->at(0).dict()->value("ProfileName"), TwValue("Office"));
        again.setValue("Runned", TwValue()); // null removes
        QVERIFY(again.synchronize() && !readBack(file).dict()->contains("Runned"));
        QVERIFY(readBack(file).dict()->contains("profiles"));
    }

    void noDomainReadsAndWritesNothing() {
        TwPreferences prefs("", dir->path().toStdString());
        prefs.setValue("profiles", TwValue::array());
        QVERIFY(prefs.copyValue("profiles").isNull() && !prefs.synchronize());
        QCOMPARE(QDir(dir->path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).size(), 0);
    }

    void twoProcessesSavingAtOnceLoseNothing() {
        const int rounds = 40;
        pid_t children[2];
        for (int p = 0; p < 2; ++p) {
            children[p] = fork();
            QVERIFY(children[p] >= 0);
            if (children[p] == 0) {
                auto prefs = this->prefs();
                for (int i = 1; i <= rounds; ++i) {
                    prefs.setValue("key" + std::to_string(p), i);
                    if (!prefs.synchronize())
                        _exit(1);
                }
                _exit(0);
            }
        }
        for (pid_t child : children) {
            int status = 0;
            waitpid(child, &status, 0);
            QVERIFY(WIFEXITED(status) && WEXITSTATUS(status) == 0);
        }
        auto prefs = this->prefs();
        QCOMPARE(prefs.copyValue("key0").intValue(), rounds);
        QCOMPARE(prefs.copyValue("key1").intValue(), rounds);
    }

    // The domain may hold keys of other components: a save writes them back with the same types and
    // values at any depth, an unsigned 64-bit number and a nesting far past 256 levels included.
    void keysOfOthersSurviveASave() {
        std::string deep;
        for (int i = 0; i < 300; ++i)
            deep += "<dict><key>k</key>";
        deep += "<string>bottom</string>";
        for (int i = 0; i < 300; ++i)
            deep += "</dict>";
        writeFile(file(),
                  QByteArray::fromStdString(
                      "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>"
                      "<key>big</key><integer>18446744073709551615</integer><key>negative</"
                      "key><integer>-5</integer>"
                      "<key>real</key><real>0.1</real><key>date</key><date>2001-02-03T04:05:06Z</date>"
                      "<key>data</key><data>AAEC</data><key>deep</key>" +
                      deep + "</dict></plist>"));
        auto before = TwPlistDocument::readFile(file().toStdString());
        QVERIFY(before);

        auto prefs = this->prefs();
        prefs.setValue("profiles", TwValue::array({TwValue::dictionary({{"ProfileName", "Office"}})}));
        QVERIFY(prefs.synchronize());
        auto after = TwPlistDocument::readFile(file().toStdString());
        QVERIFY(after);
        for (const char* key : {"big", "negative", "real", "date", "data", "deep"})
            QVERIFY2(after->sameValue(key, *before), key);
        QCOMPARE(after->value("profiles").list()->size(), std::size_t(1));
    }

    // A binary list may hold what this module's XML cannot carry (a date with a fraction of a
    // second): the file is kept as it is and the save refused.
    void aValueThatCannotBeWrittenKeepsTheFile() {
        plist_t root = plist_new_dict();
        plist_dict_set_item(root, "other", plist_new_date(100, 500000));
        char* bytes = nullptr;
        std::uint32_t length = 0;
        plist_to_bin(root, &bytes, &length);
        const QByteArray original(bytes, length);
        plist_to_bin_free(bytes);
        plist_free(root);
        writeFile(file(), original);

        auto prefs = this->prefs();
        prefs.setValue("Runned", 1);
        QVERIFY(!prefs.synchronize());
        QCOMPARE(readFile(file()), original);
        QCOMPARE(prefs.copyValue("Runned").intValue(), 1); // still this process's value
    }

    void unreadableFileIsKeptAsideBeforeTheNextSave_data() {
        QTest::addColumn<QByteArray>("content");
        row("truncated xml", QByteArray("<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>profiles"));
        row("an array, not a dictionary", QByteArray::fromStdString(TwPlistToXml(TwValue::array({1, 2}))));
        // The plist library would read these by a recursion per level, past any thread's stack.
        row("xml, 100000 levels", xmlNestedArrays(100000));
        row("binary, 100000 levels", binaryNestedArrays(100000));
        row("binary, references in a circle", binaryNestedArrays(3, true));
    }
    void unreadableFileIsKeptAsideBeforeTheNextSave() {
        QFETCH(QByteArray, content);
        writeFile(file(), content);
        auto prefs = this->prefs();
        QVERIFY(prefs.copyValue("profiles").isNull()); // empty values, and the file untouched
        QCOMPARE(QDir(dir->path()).entryList({"*.unreadable-*"}).size(), 0);
        prefs.setValue("Runned", 1);
        QVERIFY(prefs.synchronize());
        QStringList aside = QDir(dir->path()).entryList({"*.unreadable-*"});
        QCOMPARE(aside.size(), 1);
        QCOMPARE(readFile(dir->path() + "/" + aside.first()), content);
        QCOMPARE(readBack(file()).dict()->value("Runned").intValue(), 1);
    }

    // The limit itself: what is written at the deepest nesting reads back, one level more is refused
    // both ways, and a value too deep to write leaves the saved one.
    void nestingIsLimitedWhenReadingAndWriting() {
        auto nested = [](std::size_t levels) {
            TwValue v = 1;
            for (std::size_t i = 0; i < levels; ++i)
                v = TwValue::array({v});
            return v;
        };
        for (int binary = 0; binary < 2; ++binary) {
            const int deepest = int(kTwPlistMaxDepth) - 1; // below the top dictionary
            for (int levels : {deepest, deepest + 1}) {
                QByteArray bytes = binary ? binaryNestedArrays(levels) : xmlNestedArrays(levels);
                std::string error;
                TwValue read = TwPlistParse(bytes.constData(), std::size_t(bytes.size()), &error);
                QCOMPARE(read.isDictionary(), levels == deepest);
            }
        }
        auto prefs = this->prefs();
        prefs.setValue("deep", nested(kTwPlistMaxDepth - 1));
        QVERIFY(prefs.synchronize());
        QVERIFY(readBack(file()).dict()->value("deep").isEqual(nested(kTwPlistMaxDepth - 1)));
        prefs.setValue("deep", nested(kTwPlistMaxDepth));
        prefs.setValue("Runned", 1);
        QVERIFY(prefs.synchronize());
        TwValue saved = readBack(file());
        QVERIFY(saved.dict()->value("deep").isEqual(nested(kTwPlistMaxDepth - 1)));
        QCOMPARE(saved.dict()->value("Runned").intValue(), 1);
    }

    void aProcessKilledWhileSavingLeavesAWholeFile() {
        {
            auto prefs = this->prefs();
            prefs.setValue("blob", bigBlob(0));
            QVERIFY(prefs.synchronize());
        }
        // The child tells after each chunk it wrote and then waits: the kill lands mid-save.
        for (int chunks : {1, 3}) {
            int fds[2];
            QCOMPARE(::pipe(fds), 0);
            pid_t child = fork();
            QVERIFY(child >= 0);
            if (child == 0) {
                s_chunkFd = fds[1];
                TwPreferences::setChunkWrittenHook([] {
                    (void)!::write(s_chunkFd, "c", 1);
                    usleep(500000);
                });
                auto prefs = this->prefs();
                prefs.setValue("blob", bigBlob(chunks));
                prefs.synchronize();
                _exit(0);
            }
            ::close(fds[1]);
            char c;
            for (int i = 0; i < chunks; ++i)
                QCOMPARE(::read(fds[0], &c, 1), ssize_t(1));
            kill(child, SIGKILL);
            waitpid(child, nullptr, 0);
            ::close(fds[0]);
            TwValue onDisk = readBack(file());
            QVERIFY2(onDisk.isDictionary(), "the file must be the old one, whole");
            TwValue blob = onDisk.dict()->value("blob");
            QCOMPARE(blob.list()->size(), size_t(4000));
            QCOMPARE(blob.list()->back().dict()->value("version").intValue(), 0);
        }
        // The next save goes through whatever the killed process left.
        auto prefs = this->prefs();
        prefs.setValue("Runned", 1);
        QVERIFY(prefs.synchronize());
        QCOMPARE(readBack(file()).dict()->value("Runned").intValue(), 1);
    }

    // ---- Property lists and bundles ----

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
        QVERIFY(TwPlistReadFile((dir->path() + "/nope.plist").toStdString(), &error).isNull());
        QVERIFY(error.find("nope.plist") != std::string::npos);
    }

    void bundleReadsItsInfo() {
        QString path = dir->path() + "/A.bundle";
        writeFile(path + "/Contents/Info.plist",
                  QByteArray::fromStdString(TwPlistToXml(TwValue::dictionary(
                      {{"CFBundleIdentifier", "com.example.ds"}, {"CFBundleVersion", "2.1"}}))));
        auto bundle = TwBundle::bundleWithPath(path.toStdString());
        QVERIFY(bundle);
        QCOMPARE(bundle->bundleIdentifier(), std::string("com.example.ds"));
        QCOMPARE(bundle->objectForInfoDictionaryKey("CFBundleVersion").stringValue(), std::string("2.1"));
        // No folder: no bundle; a broken Info.plist: a bundle with empty info.
        QVERIFY(!TwBundle::bundleWithPath((dir->path() + "/absent").toStdString()));
        QVERIFY(!TwBundle::bundleWithPath(""));
        writeFile(path + "/Contents/Info.plist", "garbage");
        bundle = TwBundle::bundleWithPath(path.toStdString());
        QVERIFY(bundle && bundle->bundleIdentifier().empty() && bundle->infoDictionary().isDictionary());
    }

    // Plain resources first, then the first language folder that has the file; string tables the
    // same way, except that an unreadable table is passed over.
    void resourcesAndStringsFollowThePlatformRule() {
        QString path = dir->path() + "/C.bundle";
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
        QString ds = dir->path() + "/Strings/DS.bundle", own = dir->path() + "/Strings/Own.bundle";
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
        QString path = dir->path() + "/Own.bundle";
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

QTEST_APPLESS_MAIN(TestPreferences)
#include "tst_preferences.moc"
