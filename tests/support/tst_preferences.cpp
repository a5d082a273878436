// Preferences on disk: what one save writes, what concurrent savers keep, what a broken file and
// a killed process leave behind.
#include "TestSupport.h"
#include "TwPreferences.h"

#include <plist/plist.h>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

class TestPreferences : public QObject {
    Q_OBJECT

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
};

QTEST_APPLESS_MAIN(TestPreferences)
#include "tst_preferences.moc"
