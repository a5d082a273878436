// Preferences on disk: what one save writes, what concurrent savers keep, what a broken file and
// a killed process leave behind. Property lists and bundle folders beneath: round trips through
// libplist, refusal of broken input, the resource and string-table lookups of a bundle, and the
// module's one text lookup and format. Bitmaps in memory and as files: the layout of each depth, the
// header and palettes, the sizes that leave room to grow, the byte-row copies, BMP files Qt's reader
// opens with the right pixels, the bitmap-file bytes of a prescan image, and the refusal of headers
// that do not fit their buffer.
#include "ImageShared.h"
#include "TestSupport.h"
#include "TwPreferences.h"
#include "TwStrings.h"

#include <plist/plist.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

class TestPreferences : public QObject {
    Q_OBJECT

    using Bytes = std::vector<unsigned char>;

    // A bitmap made the way a data source makes one, its rows zero.
    static Bytes makeDIB(int width, int height, int bitCount, int dpi = 300) {
        auto layout = TwDibLayoutFor(width, height, bitCount);
        if (!layout)
            return {};
        Bytes dib(layout->totalSize(), 0);
        SetDIBHeader(dib.data(), width, height, 0, dpi, std::uint16_t(bitCount));
        return dib;
    }

    static inline std::vector<unsigned> s_sleeps;

    static QByteArray palette2(QColor clear, QColor set) {
        const char entries[8] = {char(clear.blue()), char(clear.green()), char(clear.red()), 0,
                                 char(set.blue()),   char(set.green()),   char(set.red()),   0};
        return QByteArray(entries, 8);
    }

    std::unique_ptr<LogCapture> m_log;
    QByteArray logText() const { return m_log->text().toUtf8(); }

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
        auto list = array();
        for (int i = 0; i < 4000; ++i)
            list.list()->push_back(dict({{"index", i}, {"version", version}, {"pad", std::string(40, 'x')}}));
        return list;
    }

    std::unique_ptr<QTemporaryDir> dir; // each case's own

    QString file() const { return dir->path() + "/" + QString::fromStdString(kDomain) + ".plist"; }
    TwPreferences prefs() const { return TwPreferences(kDomain, dir->path().toStdString()); }
    static TwValue readBack(const QString& file) { return TwPlistReadFile(file.toStdString()); }

private slots:
    void initTestCase() { qputenv("LANGUAGE", "de"); }
    void init() {
        dir = std::make_unique<QTemporaryDir>();
        QVERIFY(dir->isValid());
        m_log = std::make_unique<LogCapture>();
    }
    void cleanup() {
        m_log.reset();
        SetDIBAllocSleep(nullptr);
    }

    void savedValuesReadBackInANewInstance() {
        QString sub = dir->path() + "/not/yet/there";
        {
            TwPreferences prefs(kDomain, sub.toStdString());
            QVERIFY(prefs.copyValue("profiles").isNull());
            prefs.setValue("profiles", array({dict({{"ProfileName", "Office"}, {"Resolution", 300}})}));
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
        prefs.setValue("profiles", array());
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
        prefs.setValue("profiles", array({dict({{"ProfileName", "Office"}})}));
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
        row("an array, not a dictionary", QByteArray::fromStdString(TwPlistToXml(array({1, 2}))));
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
                v = array({v});
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
        TwValue tree = dict({{"zeta", 1},
                             {"alpha", -42},
                             {"real", 2.5},
                             {"flag", true},
                             {"text", "Größe – A4"},
                             {"bytes", TwValue(TwBytes{0, 1, 255})},
                             {"big", 5000000000LL},
                             {"list", array({dict({{"value", 3}}), "x"})},
                             {"empty", dict()}});
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

    void missingFileReportsWhy() {
        std::string error;
        QVERIFY(TwPlistReadFile((dir->path() + "/nope.plist").toStdString(), &error).isNull());
        QVERIFY(error.find("nope.plist") != std::string::npos);
    }

    void bundleReadsItsInfo() {
        QString path = dir->path() + "/A.bundle";
        writeFile(path + "/Contents/Info.plist",
                  QByteArray::fromStdString(TwPlistToXml(
                      dict({{"CFBundleIdentifier", "com.example.ds"}, {"CFBundleVersion", "2.1"}}))));
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
        writeStrings(path, dict({{"IDS_OK", "OK (de)"}}), "de");
        writeStrings(path, dict({{"IDS_OK", "OK"}, {"IDS_CANCEL", "Cancel"}}));
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
        writeStrings(ds, dict({{"IDS_BOTH", "ds both"}, {"IDS_BLANK", ""}}));
        writeStrings(own,
                     dict({{"IDS_BOTH", "own both"}, {"IDS_OWN", "own text"}, {"IDS_BLANK", "own blank"}}));
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

    // ---- Bitmaps in memory and as files ----

    // ---- Layout and header ----

    void eachDepthHasItsHeaderPaletteAndStride_data() {
        columns<int, int, int, int, uint, uint>("bits", "width", "dpi", "perMetre", "headerSize", "stride");
        row("1 bit at 200 dpi", 1, 33, 200, 7874, 48u, 8u);
        row("4 bits", 4, 3, 300, 11811, 104u, 4u);
        row("8 bits at 100 dpi", 8, 5, 100, 3937, 1064u, 8u);
        row("24 bits, width 1", 24, 1, 300, 11811, 40u, 4u);
        row("24 bits, width 3", 24, 3, 300, 11811, 40u, 12u);
        row("32 bits", 32, 3, 300, 11811, 40u, 12u);
    }
    void eachDepthHasItsHeaderPaletteAndStride() {
        auto [bits, width, dpi, perMetre, headerSize, stride] =
            fetch<int, int, int, int, uint, uint>("bits", "width", "dpi", "perMetre", "headerSize", "stride");
        const int height = 7;
        const auto layout = TwDibLayoutFor(width, height, bits);
        QCOMPARE(layout->stride, stride);
        QCOMPARE(layout->totalSize(), std::size_t(headerSize + stride * height));
        Bytes dib(layout->totalSize(), 0xAB);
        SetDIBHeader(dib.data(), width, height, 12345, dpi, std::uint16_t(bits));
        TwBitmapInfoHeader h;
        std::memcpy(&h, dib.data(), sizeof h);
        QCOMPARE((QList<qint64>{h.biSize, h.biWidth, h.biHeight, h.biPlanes, h.biBitCount, h.biXPelsPerMeter,
                                h.biYPelsPerMeter}),
                 (QList<qint64>{40, width, height, 1, bits, perMetre, perMetre}));
        QCOMPARE(h.biCompression + h.biSizeImage + h.biClrUsed + h.biClrImportant, 0u);
        const int entries = bits <= 8 ? 1 << bits : 0;
        for (int i = 0; i < entries; ++i) {
            const int grey = bits == 1 ? (i == 0 ? 255 : 0) : i * 255 / (entries - 1);
            const unsigned char* e = dib.data() + 40 + 4 * i;
            QCOMPARE(QList<int>({e[0], e[1], e[2], e[3]}), QList<int>({grey, grey, grey, 0}));
        }
        QCOMPARE(dib[40 + 4 * entries], 0xAB); // nothing written past the palette

        QCOMPARE(GetDIBHeaderSize(dib.data(), dib.size()), headerSize);
        QCOMPARE(FindDIBBits(dib.data(), dib.size()), dib.data() + headerSize);
        QCOMPARE(GetDIBSize(dib.data(), dib.size()), headerSize + stride * height);
        // Null is no bitmap, not a broken one.
        QCOMPARE(GetDIBHeaderSize(nullptr, 100), 0u);
        QCOMPARE(FindDIBBits(static_cast<const void*>(nullptr), 100), nullptr);
        QCOMPARE(GetDIBSize(nullptr, 100), 0u);
        QVERIFY(logText().isEmpty());
    }

    // ---- Sizes and allocation ----

    void getDIBSizeDirectLeavesRoomToGrow_data() {
        columns<uint, int, int, uint>("bits", "width", "height", "size");
        row("1 bit: four packed rows each, 1 % more rows", 1u, 33, 100, 48u + 101u * 32u);
        row("24 bits", 24u, 10, 250, 40u + 252u * 32u);
        row("only the low byte of the bit count", 0x118u, 10, 250, 40u + 252u * 32u);
        row("8 bits, fewer than 100 rows", 8u, 10, 99, 1064u + 99u * 12u);
        row("negative width", 24u, -10, 10, 0u);
        row("beyond 32 bits", 32u, 65535, 65535, 0u);
    }
    void getDIBSizeDirectLeavesRoomToGrow() {
        auto [bits, width, height, size] = fetch<uint, int, int, uint>("bits", "width", "height", "size");
        QCOMPARE(GetDIBSizeDirect(bits, width, height), size);
        void* block = AllocDIBMemory(bits, width, height);
        QCOMPARE(block != nullptr, size != 0);
        std::free(block);
    }

    // The waiting allocation tries 64 times, sleeping 5 s after each failure; a handle's block is
    // zero-filled.
    void allocationRetriesAndHandles() {
        s_sleeps.clear();
        SetDIBAllocSleep([](unsigned seconds) { s_sleeps.push_back(seconds); });
        void* block = AllocDIBMemoryWait(24, 100, 100);
        QVERIFY(block && s_sleeps.empty());
        std::free(block);
        QCOMPARE(AllocDIBMemoryWait(32, 65535, 65535), nullptr);
        QCOMPARE(s_sleeps, std::vector<unsigned>(64, 5u));

        TwHandle handle = TwMemAlloc(64);
        QVERIFY(handle && *handle);
        QCOMPARE(QByteArray(static_cast<const char*>(*handle), 64), QByteArray(64, '\0'));
        TwMemFree(handle);
        TwMemFree(nullptr);
    }

    // Width and height from the pixels per metre, tenths of a millimetre rounded.
    void sizeInMillimetres_data() {
        // size: invalid: no size
        columns<int, int, int, QSizeF>("width", "height", "dpi", "size");
        row("2 px at 300 dpi", 2, 2, 300, QSizeF(0.2, 0.2));
        row("A4 at 100 dpi", 827, 1169, 100, QSizeF(210.1, 296.9));
        row("no resolution", 2, 2, 0, QSizeF());
    }
    void sizeInMillimetres() {
        auto [width, height, dpi] = fetch<int, int, int>("width", "height", "dpi");
        Bytes dib = makeDIB(width, height, 8, dpi);
        auto size = GetDIBSizeMillimetres(dib.data(), dib.size());
        QTEST(size ? QSizeF(size->first, size->second) : QSizeF(), "size");
    }

    // ---- Byte rows ----

    void copyFamily_data() {
        columns<QString, QByteArray, int, QByteArray>("function", "source", "count", "palette");
        // The destination starts as 0xEE bytes (as many as expected), or as the source when the
        // function works in place; for lines, count is the line length and there are two lines.
        QTest::addColumn<QByteArray>("expected");
        const QByteArray none;
        row("copy", "ByteCopy", QByteArray("\x01\x02\x03\x04", 4), 3, none,
            QByteArray("\x01\x02\x03\xEE", 4));
        row("inverted", "ByteCopyReverse", QByteArray("\x00\xFF\x0F", 3), 3, none,
            QByteArray("\xFF\x00\xF0\xEE", 4));
        row("bit order reversed", "ByteCopyBitRev", QByteArray("\x01\x80\x0F\xA0", 4), 4, none,
            QByteArray("\x80\x01\xF0\x05\xEE", 5));
        row("bit order reversed and inverted", "ByteCopyBitRevReverse", QByteArray("\x01\x0F", 2), 2, none,
            QByteArray("\x7F\x0F\xEE", 3));
        row("RGB swapped, whole pixels only", "ByteCopySwapRGB", QByteArray("abcdefg"), 7, none,
            QByteArray("cbafed\xEE\xEE"));
        row("RGB swapped, less than a pixel", "ByteCopySwapRGB", QByteArray("ab"), 2, none,
            QByteArray("\xEE\xEE\xEE"));
        row("RGB swapped in place", "ByteSwapRGB", QByteArray("abcdefgh"), 6, none, QByteArray("cbafedgh"));
        row("RGB swapped in lines of 7 bytes", "ByteSwapRGBLines", QByteArray("abcdefgABCDEFGx"), 7, none,
            QByteArray("cbafedgCBAFEDGx"));
        row("1 bit to grey, white and black", "ByteCopy1bppTo8bpp", QByteArray("\xA5\x80", 2), 9,
            palette2(Qt::white, Qt::black), QByteArray("\x00\xFF\x00\xFF\xFF\x00\xFF\x00\x00\xEE", 10));
        // The grey weights: 0.299 of red, 0.587 of green, 0.114 of blue.
        row("1 bit to grey, red and green", "ByteCopy1bppTo8bpp", QByteArray("\x40", 1), 3,
            palette2(Qt::red, Qt::green), QByteArray("\x4C\x96\x4C\xEE", 4));
        row("1 bit to grey, blue and grey", "ByteCopy1bppTo8bpp", QByteArray("\x80", 1), 2,
            palette2(Qt::blue, QColor(100, 150, 200)), QByteArray("\x8D\x1D\xEE", 3));
    }
    void copyFamily() {
        auto [function, source, count, palette, expected] =
            fetch<QString, QByteArray, int, QByteArray, QByteArray>("function", "source", "count", "palette",
                                                                    "expected");
        const auto* src = reinterpret_cast<const std::uint8_t*>(source.constData());
        const bool inPlace = function.startsWith("ByteSwap");
        QByteArray out = inPlace ? source : QByteArray(expected.size(), '\xEE');
        auto* dst = reinterpret_cast<std::uint8_t*>(out.data());
        const auto n = std::size_t(count);
        TwRGBQuad entries[2] = {};
        std::memcpy(entries, palette.constData(), std::size_t(palette.size()));
        const QStringList names{
            "ByteCopy",        "ByteCopyReverse", "ByteCopyBitRev",   "ByteCopyBitRevReverse",
            "ByteCopySwapRGB", "ByteSwapRGB",     "ByteSwapRGBLines", "ByteCopy1bppTo8bpp"};
        const std::function<void()> run[] = {
            [&] { ByteCopy(src, dst, n); },        [&] { ByteCopyReverse(src, dst, n); },
            [&] { ByteCopyBitRev(src, dst, n); },  [&] { ByteCopyBitRevReverse(src, dst, n); },
            [&] { ByteCopySwapRGB(src, dst, n); }, [&] { ByteSwapRGB(dst, n); },
            [&] { ByteSwapRGBLines(dst, n, 2); },  [&] { ByteCopy1bppTo8bpp(src, dst, n, entries); },
        };
        run[names.indexOf(function)]();
        QCOMPARE(out.toHex(' '), expected.toHex(' '));
    }

    // ---- Files ----

    // Top-down rows in memory become a bottom-up file that Qt's reader shows the right way up.
    void saveBMPWritesAFileQtReads_data() {
        columns<int, bool>("bits", "swap");
        row("1 bit", 1, false);
        row("4 bits", 4, false);
        row("8 bits", 8, false);
        row("24 bits", 24, false);
        row("24 bits, RGB in memory", 24, true);
        row("32 bits", 32, false);
        row("8 bits, swap ignored", 8, true);
    }
    void saveBMPWritesAFileQtReads() {
        auto [bits, swap] = fetch<int, bool>("bits", "swap");
        const int width = 5, height = 3;
        Bytes dib = makeDIB(width, height, bits);
        const auto layout = *TwDibLayoutFor(width, height, bits);
        // Palette indices that vary along the rows, shown as the palette's greys (1 bit: white, black).
        auto index = [&](int x, int y) {
            return (41 * x + 7 * y) % (1 << std::min(bits, 8));
        };
        auto expected = [&](int x, int y) -> QRgb {
            if (bits > 8)
                return qRgb(200, y * 80, x * 50);
            const int i = index(x, y), grey = bits == 1 ? 255 - 255 * i : i * 255 / ((1 << bits) - 1);
            return qRgb(grey, grey, grey);
        };
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x) {
                unsigned char* p = dib.data() + layout.headerSize + y * layout.stride + x * bits / 8;
                const QRgb c = expected(x, y);
                if (bits <= 8)
                    *p |= std::uint8_t(index(x, y) << (8 - bits - x * bits % 8));
                else
                    std::tie(p[0], p[1], p[2]) = swap ? std::tuple(qRed(c), qGreen(c), qBlue(c))
                                                      : std::tuple(qBlue(c), qGreen(c), qRed(c));
            }
        const QString path = dir->filePath("image.bmp");
        SaveBMP(dib.data(), dib.size(), QFile::encodeName(path).constData(), swap);
        QCOMPARE(QFileInfo(path).size(), qint64(14 + dib.size()));
        QImage image(path, "BMP");
        QCOMPARE(image.size(), QSize(width, height));
        for (int y = 0; y < height; ++y)
            for (int x = 0; x < width; ++x)
                QCOMPARE(image.pixel(x, y), expected(x, y));
        QVERIFY(logText().contains("Save Image: '" + QFile::encodeName(path) + "'"));
    }

    void saveProcessBMPWritesUnderPictures() {
        const QByteArray oldHome = qgetenv("HOME");
        qputenv("HOME", QFile::encodeName(dir->path()));
        Bytes dib = makeDIB(4, 2, 8);
        SaveProcessBMP(dib.data(), dib.size(), 3, 0x1f, 2, 0);
        QVERIFY(logText().contains("EERROR: Save Image: " + QFile::encodeName(dir->path()) +
                                   "/Pictures/Page3_1f_2.bmp"));
        QVERIFY(QDir(dir->path()).mkdir("Pictures"));
        SaveProcessBMP(dib.data(), dib.size(), 3, 0x1f, 2, 0);
        qputenv("HOME", oldHome);
        QCOMPARE(QImage(dir->filePath("Pictures/Page3_1f_2.bmp"), "BMP").size(), QSize(4, 2));
    }

    // The bitmap file of a prescan image: the pixels start where the bit count says, deliberately
    // without looking at the palette (a 4-bit image keeps 54).
    void bitmapFileBytesGetThePixelOffsetOfTheirDepth_data() {
        columns<int, uint>("bits", "offset");
        row("1 bit", 1, 62u);
        row("4 bits", 4, 54u);
        row("8 bits", 8, 1078u);
        row("24 bits", 24, 54u);
        row("32 bits", 32, 54u);
    }
    void bitmapFileBytesGetThePixelOffsetOfTheirDepth() {
        auto [bits, offset] = fetch<int, uint>("bits", "offset");
        Bytes dib = makeDIB(2, 2, bits);
        dib.resize(dib.size() + 3, 0x5A); // a data source may hand over more than the bitmap
        const auto file = CreateBMPFileHeader(dib.data(), dib.size());
        QVERIFY(file);
        std::uint32_t fileSize = 0, pixels = 0;
        std::memcpy(&fileSize, file->data() + 2, 4);
        std::memcpy(&pixels, file->data() + 10, 4);
        QCOMPARE(QByteArray(reinterpret_cast<const char*>(file->data()), 2), QByteArray("BM"));
        QCOMPARE(fileSize, std::uint32_t(dib.size() + 14));
        QCOMPARE(pixels, offset);
        QVERIFY(!CreateBMPFileHeader(nullptr, 100));
    }

    // ---- Aligning rows ----

    void alignAndUnalignRoundTrip_data() {
        QTest::addColumn<int>("width");
        row("padded rows", 5);
        row("rows without padding", 4);
    }
    void alignAndUnalignRoundTrip() {
        QFETCH(int, width);
        const int height = 3;
        Bytes aligned = makeDIB(width, height, 24);
        const auto layout = *TwDibLayoutFor(width, height, 24);
        const std::size_t packed = std::size_t(width) * 3;
        Bytes rows; // the pixels packed
        for (int y = 0; y < height; ++y)
            for (std::size_t i = 0; i < packed; ++i) {
                const auto value = std::uint8_t(y * 60 + i + 1);
                aligned[layout.headerSize + y * layout.stride + i] = value;
                rows.push_back(value);
            }
        const bool padded = packed < layout.stride;

        Bytes into(rows.size(), 0xEE);
        QVERIFY(unAlignBitmap(aligned.data(), aligned.size(), into.data(), into.size()));
        QCOMPARE(into == rows, padded); // rows without padding are left where they are
        if (padded)
            QVERIFY(!unAlignBitmap(aligned.data(), aligned.size(), into.data(), into.size() - 1));

        Bytes inPlace = aligned;
        QVERIFY(unAlignBitmap(inPlace.data(), inPlace.size()));
        QVERIFY(std::equal(rows.begin(), rows.end(), inPlace.begin() + 40));
        void* again = AlignBitmap(inPlace.data(), 40 + rows.size());
        QVERIFY(again);
        QCOMPARE(GetDIBSize(again, aligned.size()), std::uint32_t(aligned.size()));
        QVERIFY(std::memcmp(again, aligned.data(), aligned.size()) == 0);
        std::free(again);
        QVERIFY(logText().contains("AlignBitmap size=" + QByteArray::number(int(aligned.size())) + " \n"));
    }

    // ---- Headers that do not fit their buffer ----

    void lyingHeadersAreRefused_data() {
        columns<int, uint, int, int, int>("length", "headerSize", "width", "height", "bits");
        row("shorter than a header", 39, 40u, 1, 1, 24);
        row("header size 12", 56, 12u, 2, 2, 24);
        row("header size beyond the buffer", 104, 4000u, 2, 2, 24);
        row("zero width", 1000, 40u, 0, 2, 24);
        row("negative height", 1000, 40u, 2, -2, 24);
        row("huge width", 40 + 1024 + 70000, 40u, 70000, 1, 8);
        row("huge height", 1000, 40u, 1, 65536, 8);
        row("16 bits", 1000, 40u, 2, 2, 16);
        row("bit count 0", 1000, 40u, 2, 2, 0);
        row("palette past the end", 40 + 100, 40u, 1, 1, 8);
        row("rows past the end", 40 + 100, 40u, 10, 10, 24);
        row("last row one byte short", 40 + 36 - 1, 40u, 4, 3, 24);
        // 32768 x 32768 x 4 bytes is 2^32: in 32-bit arithmetic the rows would take no room.
        row("rows overflowing 32 bits", 40 + 64, 40u, 32768, 32768, 32);
    }
    void lyingHeadersAreRefused() {
        auto [length, headerSize, width, height, bits] =
            fetch<int, uint, int, int, int>("length", "headerSize", "width", "height", "bits");
        const TwBitmapInfoHeader header{headerSize, width, height, 1,    std::uint16_t(bits),
                                        0,          0,     11811,  11811};
        // On the heap and exactly as long as said, so that a read past it is caught by the sanitizer.
        Bytes dib(std::size_t(length), 0);
        std::memcpy(dib.data(), &header, std::min(dib.size(), sizeof header));
        const QString path = dir->filePath("refused.bmp");

        QCOMPARE(GetDIBHeaderSize(dib.data(), dib.size()), 0u);
        QCOMPARE(FindDIBBits(dib.data(), dib.size()), nullptr);
        QCOMPARE(GetDIBSize(dib.data(), dib.size()), 0u);
        QVERIFY(!GetDIBSizeMillimetres(dib.data(), dib.size()));
        QVERIFY(!CreateBMPFileHeader(dib.data(), dib.size()) && !unAlignBitmap(dib.data(), dib.size()));
        QCOMPARE(AlignBitmap(dib.data(), dib.size()), nullptr);
        SaveBMP(dib.data(), dib.size(), QFile::encodeName(path).constData(), 0);
        QVERIFY(!QFile::exists(path));

        const QByteArray log = logText();
        for (const char* name : {"GetDIBHeaderSize", "FindDIBBits", "GetDIBSize", "GetDIBSizeMillimetres",
                                 "CreateBMPFileHeader", "unAlignBitmap", "AlignBitmap", "SaveBMP"})
            QVERIFY2(log.contains(QByteArray("E\tERROR: ") + name + ": "), name);
    }
};

QTEST_GUILESS_MAIN(TestPreferences)
#include "tst_preferences.moc"
