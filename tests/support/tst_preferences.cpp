// Preferences on disk: what one save writes, what concurrent savers keep, what a broken file and
// a killed process leave behind.
#include "OrvaDebug.h"
#include "TwPlist.h"
#include "TwPreferences.h"

#include <plist/plist.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

#include <signal.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {
const std::string kDomain = "com.example.scanner.ds";
int g_chunkFd = -1;

QString domainFile(const QTemporaryDir& dir) {
    return dir.path() + "/" + QString::fromStdString(kDomain) + ".plist";
}

void writeBytes(const QString& path, const QByteArray& bytes) {
    QFile f(path);
    QVERIFY(f.open(QIODevice::WriteOnly));
    f.write(bytes);
}

QByteArray readBytes(const QString& path) {
    QFile f(path);
    return f.open(QIODevice::ReadOnly) ? f.readAll() : QByteArray();
}

TwValue readBack(const QString& file) {
    std::string error;
    return TwPlistReadFile(file.toStdString(), &error);
}

// A value whose XML is large enough that a save takes a while.
TwValue bigBlob(int version) {
    auto list = TwValue::array();
    for (int i = 0; i < 4000; ++i)
        list.list()->push_back(
            TwValue::dictionary({{"index", i}, {"version", version}, {"pad", std::string(40, 'x')}}));
    return list;
}
} // namespace

class TestPreferences : public QObject {
    Q_OBJECT
private slots:
    void initTestCase() { OrvaSetLogPaths(nullptr, nullptr); }

    void savedValuesReadBackInANewInstance() {
        QTemporaryDir dir;
        QString sub = dir.path() + "/not/yet/there";
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
        QVERIFY(again.synchronize());
        QVERIFY(!readBack(file).dict()->contains("Runned"));
        QVERIFY(readBack(file).dict()->contains("profiles"));
    }

    void noDomainReadsAndWritesNothing() {
        QTemporaryDir dir;
        TwPreferences prefs("", dir.path().toStdString());
        prefs.setValue("profiles", TwValue::array());
        QVERIFY(prefs.copyValue("profiles").isNull());
        QVERIFY(!prefs.synchronize());
        QCOMPARE(QDir(dir.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries).size(), 0);
    }

    void twoProcessesSavingAtOnceLoseNothing() {
        QTemporaryDir dir;
        const int rounds = 40;
        pid_t children[2];
        for (int p = 0; p < 2; ++p) {
            children[p] = fork();
            QVERIFY(children[p] >= 0);
            if (children[p] == 0) {
                TwPreferences prefs(kDomain, dir.path().toStdString());
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
        TwPreferences prefs(kDomain, dir.path().toStdString());
        QCOMPARE(prefs.copyValue("key0").intValue(), rounds);
        QCOMPARE(prefs.copyValue("key1").intValue(), rounds);
    }

    // The domain may hold keys of other components: a save writes them back with the same types and
    // values at any depth, an unsigned 64-bit number and a nesting far past 256 levels included.
    void keysOfOthersSurviveASave() {
        QTemporaryDir dir;
        QString file = domainFile(dir);
        std::string deep;
        for (int i = 0; i < 300; ++i)
            deep += "<dict><key>k</key>";
        deep += "<string>bottom</string>";
        for (int i = 0; i < 300; ++i)
            deep += "</dict>";
        writeBytes(file, QByteArray::fromStdString(
                             "<?xml version=\"1.0\" encoding=\"UTF-8\"?><plist version=\"1.0\"><dict>"
                             "<key>big</key><integer>18446744073709551615</integer><key>negative</"
                             "key><integer>-5</integer>"
                             "<key>real</key><real>0.1</real><key>date</key><date>2001-02-03T04:05:06Z</date>"
                             "<key>data</key><data>AAEC</data><key>deep</key>" +
                             deep + "</dict></plist>"));
        auto before = TwPlistDocument::readFile(file.toStdString());
        QVERIFY(before);

        TwPreferences prefs(kDomain, dir.path().toStdString());
        prefs.setValue("profiles", TwValue::array({TwValue::dictionary({{"ProfileName", "Office"}})}));
        QVERIFY(prefs.synchronize());
        auto after = TwPlistDocument::readFile(file.toStdString());
        QVERIFY(after);
        for (const char* key : {"big", "negative", "real", "date", "data", "deep"})
            QVERIFY2(after->sameValue(key, *before), key);
        QCOMPARE(after->value("profiles").list()->size(), std::size_t(1));
    }

    // A binary list may hold what this module's XML cannot carry (a date with a fraction of a
    // second): the file is kept as it is and the save refused.
    void aValueThatCannotBeWrittenKeepsTheFile() {
        QTemporaryDir dir;
        QString file = domainFile(dir);
        plist_t root = plist_new_dict();
        plist_dict_set_item(root, "other", plist_new_date(100, 500000));
        char* bytes = nullptr;
        std::uint32_t length = 0;
        plist_to_bin(root, &bytes, &length);
        const QByteArray original(bytes, length);
        plist_to_bin_free(bytes);
        plist_free(root);
        writeBytes(file, original);

        TwPreferences prefs(kDomain, dir.path().toStdString());
        prefs.setValue("Runned", 1);
        QVERIFY(!prefs.synchronize());
        QCOMPARE(readBytes(file), original);
        QCOMPARE(prefs.copyValue("Runned").intValue(), 1); // still this process's value
    }

    void unreadableFileIsKeptAsideBeforeTheNextSave_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("truncated xml")
            << QByteArray("<?xml version=\"1.0\"?><plist version=\"1.0\"><dict><key>profiles");
        QTest::newRow("an array, not a dictionary")
            << QByteArray::fromStdString(TwPlistToXml(TwValue::array({1, 2})));
    }
    void unreadableFileIsKeptAsideBeforeTheNextSave() {
        QFETCH(QByteArray, content);
        QTemporaryDir dir;
        QString file = domainFile(dir);
        writeBytes(file, content);
        TwPreferences prefs(kDomain, dir.path().toStdString());
        QVERIFY(prefs.copyValue("profiles").isNull()); // empty values, and the file untouched
        QCOMPARE(QDir(dir.path()).entryList({"*.unreadable-*"}).size(), 0);
        prefs.setValue("Runned", 1);
        QVERIFY(prefs.synchronize());
        QStringList aside = QDir(dir.path()).entryList({"*.unreadable-*"});
        QCOMPARE(aside.size(), 1);
        QCOMPARE(readBytes(dir.path() + "/" + aside.first()), content);
        QCOMPARE(readBack(file).dict()->value("Runned").intValue(), 1);
    }

    void aProcessKilledWhileSavingLeavesAWholeFile() {
        QTemporaryDir dir;
        QString file = domainFile(dir);
        {
            TwPreferences prefs(kDomain, dir.path().toStdString());
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
                g_chunkFd = fds[1];
                TwPreferences::setChunkWrittenHook([] {
                    (void)!::write(g_chunkFd, "c", 1);
                    usleep(500000);
                });
                TwPreferences prefs(kDomain, dir.path().toStdString());
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
            TwValue onDisk = readBack(file);
            QVERIFY2(onDisk.isDictionary(), "the file must be the old one, whole");
            TwValue blob = onDisk.dict()->value("blob");
            QCOMPARE(blob.list()->size(), size_t(4000));
            QCOMPARE(blob.list()->back().dict()->value("version").intValue(), 0);
        }
        // The next save goes through whatever the killed process left.
        TwPreferences prefs(kDomain, dir.path().toStdString());
        prefs.setValue("Runned", 1);
        QVERIFY(prefs.synchronize());
        QCOMPARE(readBack(file).dict()->value("Runned").intValue(), 1);
    }
};

QTEST_APPLESS_MAIN(TestPreferences)
#include "tst_preferences.moc"
