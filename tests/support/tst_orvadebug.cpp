// Tests of the diagnostic log: sink choice, line layout, rotation, console mode, hardening against
// non-regular log paths, concurrency, the dumps and the code-name tables.
#include "OrvaDebug.h"
#include "TwValue.h"

#include <QByteArray>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>
#include <QtTest>

#include <clocale>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::mutex g_capturedMutex;
QByteArrayList g_captured;

void captureSink(const char* line) {
    std::lock_guard lock(g_capturedMutex);
    g_captured.append(QByteArray(line));
}

QByteArrayList captured() {
    std::lock_guard lock(g_capturedMutex);
    return g_captured;
}

void clearCaptured() {
    std::lock_guard lock(g_capturedMutex);
    g_captured.clear();
}

void logv(int level, const char* format, ...) __attribute__((format(printf, 2, 3)));
void logv(int level, const char* format, ...) {
    va_list args;
    va_start(args, format);
    OrvaLogv(level, format, args);
    va_end(args);
}

void logFilev(std::int32_t flag, const char* format, ...) __attribute__((format(printf, 2, 3)));
void logFilev(std::int32_t flag, const char* format, ...) {
    va_list args;
    va_start(args, format);
    OrvaLogFilev(flag, format, args);
    va_end(args);
}

QByteArray readAll(const QString& path) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return f.readAll();
}

QByteArray readHead(const QString& path, qint64 n) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return f.read(n);
}

QByteArray readTail(const QString& path, qint64 n) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    f.seek(qMax<qint64>(0, f.size() - n));
    return f.readAll();
}

// Writes head, then extends to size (sparse, so the 5 MiB files are cheap) ending in a newline.
bool makeFile(const QString& path, const QByteArray& head, qint64 size, mode_t mode = 0644) {
    const QByteArray p = QFile::encodeName(path);
    int fd = ::open(p.constData(), O_WRONLY | O_CREAT | O_TRUNC, mode);
    if (fd < 0)
        return false;
    bool ok = ::write(fd, head.constData(), size_t(head.size())) == head.size();
    if (ok && size > head.size())
        ok = ::pwrite(fd, "\n", 1, off_t(size - 1)) == 1;
    ok = ok && ::fchmod(fd, mode) == 0;
    ::close(fd);
    return ok;
}

std::optional<struct stat> lstatPath(const QString& path) {
    struct stat st {};
    if (::lstat(QFile::encodeName(path).constData(), &st) != 0)
        return std::nullopt;
    return st;
}

QByteArrayList splitLines(const QByteArray& text) {
    QByteArrayList lines = text.split('\n');
    if (!lines.isEmpty() && lines.last().isEmpty())
        lines.removeLast();
    return lines;
}

const QRegularExpression& levelledPrefix() {
    static const QRegularExpression re(R"(^\[(\d\d):(\d\d):(\d\d)\.(\d\d\d)\](.)\t)");
    return re;
}

const QRegularExpression& plainPrefix() {
    static const QRegularExpression re(R"(^\[\d\d:\d\d:\d\d\.\d\d\d\]\t)");
    return re;
}

// The text after a levelled prefix, checking the letter; a null array when there is no prefix.
QByteArray afterPrefix(const QByteArray& line, char letter) {
    auto m = levelledPrefix().match(QString::fromLatin1(line));
    if (!m.hasMatch() || m.captured(5) != QChar::fromLatin1(letter))
        return {};
    const QByteArray rest = line.mid(m.capturedLength());
    return rest.isNull() ? QByteArray("") : rest;
}

const QRegularExpression& creationLine() {
    static const QRegularExpression re(R"(^\[Creat at (\d{4})/(\d\d)/(\d\d)\]$)");
    return re;
}

constexpr qint64 kMaxSize = 5242880;

std::uint32_t fourCC(const char (&s)[5]) {
    return std::uint32_t(std::uint8_t(s[0])) << 24 | std::uint32_t(std::uint8_t(s[1])) << 16 |
           std::uint32_t(std::uint8_t(s[2])) << 8 | std::uint32_t(std::uint8_t(s[3]));
}

class UmaskScope {
public:
    explicit UmaskScope(mode_t mask) : m_old(::umask(mask)) {}
    ~UmaskScope() { ::umask(m_old); }
    UmaskScope(const UmaskScope&) = delete;
    UmaskScope& operator=(const UmaskScope&) = delete;

private:
    mode_t m_old;
};

class TzScope {
public:
    explicit TzScope(const char* tz) {
        if (const char* old = std::getenv("TZ"))
            m_old = old;
        ::setenv("TZ", tz, 1);
        ::tzset();
    }
    ~TzScope() {
        if (m_old)
            ::setenv("TZ", m_old->c_str(), 1);
        else
            ::unsetenv("TZ");
        ::tzset();
    }
    TzScope(const TzScope&) = delete;
    TzScope& operator=(const TzScope&) = delete;

private:
    std::optional<std::string> m_old;
};

} // namespace

class TestOrvaDebug : public QObject {
    Q_OBJECT

private:
    std::unique_ptr<QTemporaryDir> m_dir;
    QString logPath() const { return m_dir->filePath("orvatwain.log"); }
    QString conPath() const { return m_dir->filePath("orvatwain.con"); }
    QStringList dirEntries() const {
        return QDir(m_dir->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }

private slots:
    void initTestCase();
    void init();
    void cleanup();

    void offWhenNeitherFileExists();
    void pathsAreCopied();
    void creationLineOnlyOnEmptyFile_data();
    void creationLineOnlyOnEmptyFile();
    void levelLetters_data();
    void levelLetters();
    void droppedLevelsDoNotOpenTheFile();
    void timePrefixIsLocalWallClock();
    void unlevelledLines_data();
    void unlevelledLines();
    void removedFileStopsLogging();

    void rotationThreshold_data();
    void rotationThreshold();
    void generationsShift_data();
    void generationsShift();
    void repeatedRotationKeepsSixFiles();
    void failedRotationAppendsToBigFile();

    void consoleMode();
    void consoleSwitchMustBeRegularFile_data();
    void consoleSwitchMustBeRegularFile();
    void nonRegularLogPath_data();
    void nonRegularLogPath();

    void concurrentLinesStayWhole();

    void binaryDump_data();
    void binaryDump();
    void binaryFileDump_data();
    void binaryFileDump();

    void valueTreeDump();
    void valueTreeScalars_data();
    void valueTreeScalars();

    void ioReturnString_data();
    void ioReturnString();
    void ioReturnStringNamesAreDistinct();
    void objectType2Str_data();
    void objectType2Str();
    void icaErr2Str_data();
    void icaErr2Str();
};

void TestOrvaDebug::initTestCase() {
    // Printable-character decisions of the dumps depend on the locale.
    std::setlocale(LC_CTYPE, "C");
}

void TestOrvaDebug::init() {
    m_dir = std::make_unique<QTemporaryDir>();
    QVERIFY(m_dir->isValid());
    clearCaptured();
    OrvaSetConsoleSink(captureSink);
    OrvaSetLogLevel(kOrvaLogDebug);
    OrvaSetLogPaths(QFile::encodeName(logPath()).constData(), QFile::encodeName(conPath()).constData());
}

void TestOrvaDebug::cleanup() {
    OrvaSetLogPaths(nullptr, nullptr);
    OrvaSetLogLevel(kOrvaLogDebug);
    m_dir.reset();
}

void TestOrvaDebug::offWhenNeitherFileExists() {
    OrvaLog(kOrvaLogAlways, "line %d\n", 1);
    logv(kOrvaLogError, "line %d\n", 2);
    OrvaLogFile(1, "line %d\n", 3);
    OrvaLogBinary(kOrvaLogAlways, "bin", "abc", 3);
    OrvaLogBinaryFile("bin", "abc", 3, 16);
    OrvaLogCFType(kOrvaLogAlways, TwValue::dictionary({{"k", TwValue(1)}}), 0, 1);

    QVERIFY2(dirEntries().isEmpty(), qPrintable(dirEntries().join(',')));
    QVERIFY(captured().isEmpty());
}

void TestOrvaDebug::pathsAreCopied() {
    const QString other = m_dir->filePath("other.log");
    QVERIFY(makeFile(logPath(), "log\n", 0));
    QVERIFY(makeFile(other, "other\n", 0));

    QByteArray buffer = QFile::encodeName(logPath());
    OrvaSetLogPaths(buffer.data(), nullptr);
    // Rewrite the caller's buffer in place: the log must still use the path it was given.
    const QByteArray otherName = QFile::encodeName(other);
    QVERIFY(otherName.size() <= buffer.size());
    std::memset(buffer.data(), 0, size_t(buffer.size()));
    std::memcpy(buffer.data(), otherName.constData(), size_t(otherName.size()));

    OrvaLog(kOrvaLogInfo, "copied\n");
    QVERIFY(readAll(logPath()).endsWith("\tcopied\n"));
    QCOMPARE(readAll(other), QByteArray("other\n"));
}

void TestOrvaDebug::creationLineOnlyOnEmptyFile_data() {
    QTest::addColumn<QByteArray>("initial");
    QTest::addColumn<bool>("expectCreationLine");
    QTest::newRow("empty") << QByteArray() << true;
    QTest::newRow("one byte") << QByteArray("x") << false;
    QTest::newRow("one line") << QByteArray("old line\n") << false;
}

void TestOrvaDebug::creationLineOnlyOnEmptyFile() {
    QFETCH(QByteArray, initial);
    QFETCH(bool, expectCreationLine);
    QVERIFY(makeFile(logPath(), initial, 0));

    const QDate before = QDateTime::currentDateTime().date();
    OrvaLog(kOrvaLogError, "first %s\n", "line");
    const QDate after = QDateTime::currentDateTime().date();
    OrvaLog(kOrvaLogError, "second\n");

    const QByteArray text = readAll(logPath());
    QVERIFY(text.startsWith(initial));
    const QByteArrayList lines = splitLines(text.mid(initial.size()));
    if (!expectCreationLine) {
        QCOMPARE(lines.size(), 2);
        QVERIFY2(!lines[0].contains("Creat"), lines[0].constData());
        QVERIFY(text.endsWith("\tsecond\n"));
        return;
    }
    QCOMPARE(lines.size(), 3);
    auto m = creationLine().match(QString::fromLatin1(lines[0]));
    QVERIFY2(m.hasMatch(), lines[0].constData());
    const QDate logged(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
    QVERIFY2(logged == before || logged == after, lines[0].constData());
    QCOMPARE(afterPrefix(lines[1], 'E'), QByteArray("first line"));
    QCOMPARE(afterPrefix(lines[2], 'E'), QByteArray("second"));
}

void TestOrvaDebug::levelLetters_data() {
    QTest::addColumn<int>("level");
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("written");
    QTest::addColumn<char>("letter");

    QTest::newRow("0 blank") << 0 << 6 << true << ' ';
    QTest::newRow("1 E") << 1 << 6 << true << 'E';
    QTest::newRow("2 W") << 2 << 6 << true << 'W';
    QTest::newRow("3 N") << 3 << 6 << true << 'N';
    QTest::newRow("4 I") << 4 << 6 << true << 'I';
    QTest::newRow("5 T") << 5 << 6 << true << 'T';
    QTest::newRow("6 D") << 6 << 6 << true << 'D';
    QTest::newRow("7 dropped at default") << 7 << 6 << false << ' ';
    QTest::newRow("99 dropped at default") << 99 << 6 << false << ' ';
    QTest::newRow("99 dropped at 98") << 99 << 98 << false << ' ';
    QTest::newRow("99 P at 99") << 99 << 99 << true << 'P';
    QTest::newRow("99 P at 100") << 99 << 100 << true << 'P';
    QTest::newRow("7 blank at 99") << 7 << 99 << true << ' ';
    QTest::newRow("50 blank at 99") << 50 << 99 << true << ' ';
    QTest::newRow("6 dropped at 5") << 6 << 5 << false << ' ';
    QTest::newRow("0 dropped at -1") << 0 << -1 << false << ' ';
    QTest::newRow("-1 blank") << -1 << 6 << true << ' ';
}

void TestOrvaDebug::levelLetters() {
    QFETCH(int, level);
    QFETCH(int, mode);
    QFETCH(bool, written);
    QFETCH(char, letter);
    QVERIFY(makeFile(logPath(), "start\n", 0));
    OrvaSetLogLevel(mode);
    QCOMPARE(OrvaGetLogLevel(), mode);

    OrvaLog(level, "via OrvaLog %d %s\n", 42, "end");
    logv(level, "via OrvaLogv %d\n", 43);

    const QByteArrayList lines = splitLines(readAll(logPath()));
    if (!written) {
        QCOMPARE(lines, QByteArrayList{"start"});
        return;
    }
    QCOMPARE(lines.size(), 3);
    QCOMPARE(afterPrefix(lines[1], letter), QByteArray("via OrvaLog 42 end"));
    QCOMPARE(afterPrefix(lines[2], letter), QByteArray("via OrvaLogv 43"));
}

void TestOrvaDebug::droppedLevelsDoNotOpenTheFile() {
    // An empty file would get the creation line if any of these opened it.
    QVERIFY(makeFile(logPath(), {}, 0));
    QVERIFY(makeFile(conPath(), {}, 0));
    OrvaLog(7, "no\n");
    logv(7, "no\n");
    OrvaLogBinary(7, "no", "abc", 3);
    OrvaLogCFType(7, TwValue::array({TwValue(1)}), 0, 1);
    QCOMPARE(QFileInfo(logPath()).size(), 0);
    QVERIFY(captured().isEmpty());
}

void TestOrvaDebug::timePrefixIsLocalWallClock() {
    // A zone with a half-hour offset, so that both UTC and a wrong minute show.
    TzScope tz("VMX-05:30");
    QVERIFY(makeFile(logPath(), "start\n", 0));

    const qint64 offsetMs = (5 * 3600 + 30 * 60) * 1000LL;
    const qint64 before = QDateTime::currentMSecsSinceEpoch();
    OrvaLog(kOrvaLogTrace, "now\n");
    const qint64 after = QDateTime::currentMSecsSinceEpoch();

    const QByteArrayList lines = splitLines(readAll(logPath()));
    QCOMPARE(lines.size(), 2);
    auto m = levelledPrefix().match(QString::fromLatin1(lines[1]));
    QVERIFY2(m.hasMatch(), lines[1].constData());
    const qint64 loggedMs =
        ((m.captured(1).toLongLong() * 60 + m.captured(2).toLongLong()) * 60 + m.captured(3).toLongLong()) *
            1000 +
        m.captured(4).toLongLong();

    constexpr qint64 day = 86400000;
    auto wrap = [](qint64 v) {
        return ((v % day) + day) % day;
    };
    const qint64 beforeLocal = wrap(before + offsetMs);
    // Milliseconds are truncated, hence the small allowance below the first reading.
    const qint64 distance = wrap(loggedMs - beforeLocal + 5);
    QVERIFY2(
        distance <= (after - before) + 10,
        qPrintable(QStringLiteral("logged %1 ms of day, expected about %2").arg(loggedMs).arg(beforeLocal)));
}

void TestOrvaDebug::unlevelledLines_data() {
    QTest::addColumn<int>("flag");
    QTest::addColumn<int>("mode");
    QTest::addColumn<bool>("prefixed");
    QTest::newRow("flag 1") << 1 << 6 << true;
    QTest::newRow("flag 7") << 7 << 6 << true;
    QTest::newRow("flag 0") << 0 << 6 << false;
    QTest::newRow("no level filter") << 1 << -5 << true;
}

void TestOrvaDebug::unlevelledLines() {
    QFETCH(int, flag);
    QFETCH(int, mode);
    QFETCH(bool, prefixed);
    QVERIFY(makeFile(logPath(), "start\n", 0));
    OrvaSetLogLevel(mode);

    OrvaLogFile(flag, "\tBundle Version:%s\n", "1.2.3");
    logFilev(flag, "direct %d\n", 5);

    const QByteArrayList lines = splitLines(readAll(logPath()));
    QCOMPARE(lines.size(), 3);
    const QByteArrayList expected{"\tBundle Version:1.2.3", "direct 5"};
    for (int i = 0; i < 2; ++i) {
        QByteArray line = lines[i + 1];
        auto m = plainPrefix().match(QString::fromLatin1(line));
        QCOMPARE(m.hasMatch(), prefixed);
        if (prefixed)
            line = line.mid(m.capturedLength());
        QCOMPARE(line, expected[i]);
    }
}

void TestOrvaDebug::removedFileStopsLogging() {
    QVERIFY(makeFile(logPath(), "start\n", 0));
    OrvaLog(kOrvaLogInfo, "one\n");
    QVERIFY(QFile::remove(logPath()));
    OrvaLog(kOrvaLogInfo, "two\n");
    OrvaLogFile(1, "two\n");
    QVERIFY(!QFile::exists(logPath()));

    QVERIFY(makeFile(logPath(), {}, 0));
    OrvaLog(kOrvaLogInfo, "three\n");
    const QByteArrayList lines = splitLines(readAll(logPath()));
    QCOMPARE(lines.size(), 2);
    QVERIFY(creationLine().match(QString::fromLatin1(lines[0])).hasMatch());
    QCOMPARE(afterPrefix(lines[1], 'I'), QByteArray("three"));
}

void TestOrvaDebug::rotationThreshold_data() {
    QTest::addColumn<qint64>("size");
    QTest::addColumn<bool>("rotated");
    QTest::newRow("exactly 5 MiB") << kMaxSize << false;
    QTest::newRow("one byte more") << kMaxSize + 1 << true;
    QTest::newRow("much larger") << qint64(9000000) << true;
}

void TestOrvaDebug::rotationThreshold() {
    QFETCH(qint64, size);
    QFETCH(bool, rotated);
    UmaskScope mask(077);
    QVERIFY(makeFile(logPath(), "old content\n", size, 0600));

    OrvaLog(kOrvaLogNotice, "after %s\n", "check");

    // The log must not have changed the process umask.
    const mode_t current = ::umask(077);
    QCOMPARE(current, mode_t(077));

    const auto live = lstatPath(logPath());
    QVERIFY(live);
    const auto old = lstatPath(logPath() + ".0");
    if (!rotated) {
        QVERIFY(!old);
        QCOMPARE(dirEntries(), QStringList{"orvatwain.log"});
        const QByteArray tail = readTail(logPath(), 200);
        QVERIFY(tail.endsWith("\tafter check\n"));
        const QByteArray line = splitLines(tail).last();
        QCOMPARE(afterPrefix(line, 'N'), QByteArray("after check"));
        QCOMPARE(qint64(live->st_size), size + line.size() + 1);
        QCOMPARE(live->st_mode & 07777, mode_t(0600));
        return;
    }
    QVERIFY(old);
    QCOMPARE(qint64(old->st_size), size);
    QCOMPARE(readHead(logPath() + ".0", 12), QByteArray("old content\n"));
    QCOMPARE(dirEntries(), (QStringList{"orvatwain.log", "orvatwain.log.0"}));

    QVERIFY(S_ISREG(live->st_mode));
    QCOMPARE(live->st_mode & 07777, mode_t(0666));
    const QByteArrayList lines = splitLines(readAll(logPath()));
    QCOMPARE(lines.size(), 2);
    QVERIFY2(creationLine().match(QString::fromLatin1(lines[0])).hasMatch(), lines[0].constData());
    QCOMPARE(afterPrefix(lines[1], 'N'), QByteArray("after check"));
}

void TestOrvaDebug::generationsShift_data() {
    QTest::addColumn<QString>("present");      // generations that exist before, by digit
    QTest::addColumn<QStringList>("expected"); // head of P.0 .. P.4 afterwards, "" for none
    QTest::newRow("all five") << "01234" << QStringList{"live", "gen0", "gen1", "gen2", "gen3"};
    QTest::newRow("none") << "" << QStringList{"live", "", "", "", ""};
    QTest::newRow("gap at 1") << "023" << QStringList{"live", "gen0", "", "gen2", "gen3"};
    QTest::newRow("only the oldest") << "4" << QStringList{"live", "", "", "", "gen4"};
    QTest::newRow("only 3") << "3" << QStringList{"live", "", "", "", "gen3"};
}

void TestOrvaDebug::generationsShift() {
    QFETCH(QString, present);
    QFETCH(QStringList, expected);
    QVERIFY(makeFile(logPath(), "live\n", kMaxSize + 1));
    for (QChar c : present)
        QVERIFY(makeFile(logPath() + "." + c, "gen" + QByteArray(1, char(c.toLatin1())) + "\n", 0));

    OrvaLog(kOrvaLogDebug, "rotated\n");

    QStringList expectedEntries{"orvatwain.log"};
    for (int i = 0; i < 5; ++i) {
        const QString name = logPath() + "." + QString::number(i);
        if (expected[i].isEmpty()) {
            QVERIFY2(!QFile::exists(name), qPrintable(name));
            continue;
        }
        expectedEntries << "orvatwain.log." + QString::number(i);
        QCOMPARE(QString::fromLatin1(splitLines(readHead(name, 5)).value(0)), expected[i]);
    }
    QCOMPARE(dirEntries(), expectedEntries);
    const QByteArrayList lines = splitLines(readAll(logPath()));
    QCOMPARE(lines.size(), 2);
    QCOMPARE(afterPrefix(lines[1], 'D'), QByteArray("rotated"));
}

void TestOrvaDebug::repeatedRotationKeepsSixFiles() {
    for (int round = 0; round < 8; ++round) {
        QVERIFY(makeFile(logPath(), "round" + QByteArray::number(round) + "\n", kMaxSize + 1));
        OrvaLog(kOrvaLogError, "round %d\n", round);
        QVERIFY(dirEntries().size() <= 6);
    }
    QCOMPARE(dirEntries(), (QStringList{"orvatwain.log", "orvatwain.log.0", "orvatwain.log.1",
                                        "orvatwain.log.2", "orvatwain.log.3", "orvatwain.log.4"}));
    for (int i = 0; i < 5; ++i)
        QCOMPARE(readHead(logPath() + "." + QString::number(i), 7),
                 "round" + QByteArray::number(7 - i) + "\n");
}

void TestOrvaDebug::failedRotationAppendsToBigFile() {
    // A non-empty directory at P.4 makes the first rename (P.3 onto it) fail.
    QVERIFY(QDir(m_dir->path()).mkdir("orvatwain.log.4"));
    QVERIFY(makeFile(logPath() + ".4/keep", "keep\n", 0));
    QVERIFY(makeFile(logPath() + ".3", "gen3\n", 0));
    QVERIFY(makeFile(logPath() + ".0", "gen0\n", 0));
    QVERIFY(makeFile(logPath(), "big\n", kMaxSize + 1));

    OrvaLog(kOrvaLogWarning, "still here\n");

    QVERIFY(QFileInfo(logPath() + ".4").isDir());
    QCOMPARE(readAll(logPath() + ".3"), QByteArray("gen3\n"));
    QCOMPARE(readAll(logPath() + ".0"), QByteArray("gen0\n"));
    QCOMPARE(dirEntries(),
             (QStringList{"orvatwain.log", "orvatwain.log.0", "orvatwain.log.3", "orvatwain.log.4"}));
    QCOMPARE(readHead(logPath(), 4), QByteArray("big\n"));
    const QByteArray line = splitLines(readTail(logPath(), 200)).last();
    QCOMPARE(afterPrefix(line, 'W'), QByteArray("still here"));
    QCOMPARE(QFileInfo(logPath()).size(), kMaxSize + 1 + line.size() + 1);
}

void TestOrvaDebug::consoleMode() {
    QVERIFY(makeFile(conPath(), {}, 0));
    const QByteArray longText(2000, 'L');

    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "-[TwDlg onOK:]");
    logv(kOrvaLogError, "code %d\n", -1);
    OrvaLog(7, "dropped\n");
    OrvaLogFile(1, "\tBundle Version:%s\n", "2.0");
    OrvaLog(kOrvaLogDebug, "%s\n", longText.constData());
    OrvaLogCFType(kOrvaLogAlways, TwValue::dictionary({{"k", TwValue("v")}}), 0, 1);
    OrvaLogBinaryFile("blk", "AB", 2, 16);
    OrvaLogBinary(kOrvaLogAlways, "bin", "A", 1);

    const QByteArrayList expected{
        "ENTER: -[TwDlg onOK:]\n",
        "code -1\n",
        "\tBundle Version:2.0\n",
        longText + "\n",
        "blk(2 bytes):\n",
        "\t\t[0x0000]: 41 42" + QByteArray(44, ' ') + ": AB\n",
        "bin[0x0000]: 0x41" + QByteArray(77, ' ') + ": A\n",
    };
    QCOMPARE(captured(), expected);
    QCOMPARE(dirEntries(), QStringList{"orvatwain.con"});
    QCOMPARE(QFileInfo(conPath()).size(), 0);
}

void TestOrvaDebug::consoleSwitchMustBeRegularFile_data() {
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("console");
    QTest::newRow("regular file") << "file" << true;
    QTest::newRow("missing") << "none" << false;
    QTest::newRow("directory") << "dir" << false;
    QTest::newRow("symbolic link to a file") << "link" << false;
}

void TestOrvaDebug::consoleSwitchMustBeRegularFile() {
    QFETCH(QString, kind);
    QFETCH(bool, console);
    if (kind == "file")
        QVERIFY(makeFile(conPath(), {}, 0));
    else if (kind == "dir")
        QVERIFY(QDir(m_dir->path()).mkdir("orvatwain.con"));
    else if (kind == "link") {
        QVERIFY(makeFile(m_dir->filePath("real.con"), {}, 0));
        QVERIFY(QFile::link(m_dir->filePath("real.con"), conPath()));
    }
    OrvaLog(kOrvaLogError, "hello\n");
    QCOMPARE(captured(), console ? QByteArrayList{"hello\n"} : QByteArrayList{});
    QVERIFY(!QFile::exists(logPath()));
}

void TestOrvaDebug::nonRegularLogPath_data() {
    QTest::addColumn<QString>("kind");
    QTest::addColumn<bool>("withConsole");
    for (bool con : {true, false}) {
        const char* suffix = con ? ", console switch" : ", no console switch";
        QTest::newRow(qPrintable(QStringLiteral("link to big file%1").arg(suffix))) << "link" << con;
        QTest::newRow(qPrintable(QStringLiteral("dangling link%1").arg(suffix))) << "dangling" << con;
        QTest::newRow(qPrintable(QStringLiteral("directory%1").arg(suffix))) << "dir" << con;
        QTest::newRow(qPrintable(QStringLiteral("fifo%1").arg(suffix))) << "fifo" << con;
    }
}

void TestOrvaDebug::nonRegularLogPath() {
    QFETCH(QString, kind);
    QFETCH(bool, withConsole);
    const QString target = m_dir->filePath("target");
    const QByteArray targetHead("target content\n");
    int fifoReader = -1;
    if (kind == "link") {
        // Big enough to be rotated if the link were followed.
        QVERIFY(makeFile(target, targetHead, kMaxSize + 1, 0600));
        QVERIFY(QFile::link(target, logPath()));
    } else if (kind == "dangling") {
        QVERIFY(QFile::link(target, logPath()));
    } else if (kind == "dir") {
        QVERIFY(QDir(m_dir->path()).mkdir("orvatwain.log"));
    } else {
        QCOMPARE(::mkfifo(QFile::encodeName(logPath()).constData(), 0600), 0);
        // Held open so that anything written into the pipe stays readable.
        fifoReader = ::open(QFile::encodeName(logPath()).constData(), O_RDONLY | O_NONBLOCK);
        QVERIFY(fifoReader >= 0);
    }
    if (withConsole)
        QVERIFY(makeFile(conPath(), {}, 0));

    OrvaLog(kOrvaLogError, "refused %d\n", 1);
    OrvaLogFile(0, "refused %d\n", 2);
    OrvaLogCFType(kOrvaLogAlways, TwValue("dump"), 0, 1);

    if (fifoReader >= 0) {
        char buf[64];
        const ssize_t n = ::read(fifoReader, buf, sizeof buf);
        ::close(fifoReader);
        QVERIFY2(n <= 0, "the log wrote into a fifo");
    }
    const QByteArrayList expected =
        withConsole ? QByteArrayList{"refused 1\n", "refused 2\n"} : QByteArrayList{};
    QCOMPARE(captured(), expected);

    const auto st = lstatPath(logPath());
    QVERIFY(st);
    if (kind == "link" || kind == "dangling")
        QVERIFY(S_ISLNK(st->st_mode));
    if (kind == "link") {
        QCOMPARE(QFileInfo(target).size(), kMaxSize + 1);
        QCOMPARE(readHead(target, targetHead.size()), targetHead);
        QCOMPARE(readTail(target, 2), QByteArray("\0\n", 2));
    }
    if (kind == "dangling")
        QVERIFY(!lstatPath(target));
    for (const QString& e : dirEntries())
        QVERIFY2(!e.contains(".log."), qPrintable(e));
}

void TestOrvaDebug::concurrentLinesStayWhole() {
    constexpr int kThreads = 8;
    constexpr int kLines = 500;
    QVERIFY(makeFile(logPath(), {}, 0));
    // Every 25th line is longer than a stdio buffer, so that it leaves in several writes.
    const std::string shortText(150, 'x');
    const std::string longText(6000, 'y');
    auto payload = [&](int i) -> const std::string& {
        return i % 25 == 0 ? longText : shortText;
    };

    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t)
        threads.emplace_back([t, &payload] {
            for (int i = 0; i < kLines; ++i)
                OrvaLog(kOrvaLogInfo, "thread %d line %d %s\n", t, i, payload(i).c_str());
        });
    for (auto& th : threads)
        th.join();

    const QByteArrayList lines = splitLines(readAll(logPath()));
    QCOMPARE(lines.size(), 1 + kThreads * kLines);
    QVERIFY(creationLine().match(QString::fromLatin1(lines[0])).hasMatch());
    const QRegularExpression body(QStringLiteral("^thread (\\d) line (\\d+) ([xy]+)$"));
    QSet<int> seen;
    for (int i = 1; i < lines.size(); ++i) {
        const QByteArray rest = afterPrefix(lines[i], 'I');
        auto m = body.match(QString::fromLatin1(rest));
        QVERIFY2(m.hasMatch(), lines[i].left(80).constData());
        const int n = m.captured(2).toInt();
        QCOMPARE(m.captured(3).toStdString(), payload(n));
        seen.insert(m.captured(1).toInt() * kLines + n);
    }
    QCOMPARE(seen.size(), kThreads * kLines);
}

void TestOrvaDebug::binaryDump_data() {
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<int>("length");
    QTest::addColumn<QByteArrayList>("expected");

    const QByteArray twenty("Hello\0\x01\x7f\x80\xff ~ABCDxy\nz", 20);
    QTest::newRow("3 bytes") << QByteArray("AB\x01", 3) << 3
                             << QByteArrayList{"lbl[0x0000]: 0x41 0x42 0x01" + QByteArray(67, ' ') +
                                               ": A B ."};
    QTest::newRow("one full row")
        << QByteArray("abcdefghijklmnop") << 16
        << QByteArrayList{
               "lbl[0x0000]: 0x61 0x62 0x63 0x64 0x65 0x66 0x67 0x68  0x69 0x6a 0x6b 0x6c 0x6d 0x6e 0x6f "
               "0x70 : a b c d e f g h i j k l m n o p"};
    QTest::newRow("20 bytes")
        << twenty << 20
        << QByteArrayList{
               "lbl[0x0000]: 0x48 0x65 0x6c 0x6c 0x6f 0x00 0x01 0x7f  0x80 0xff 0x20 0x7e 0x41 0x42 0x43 "
               "0x44 : H e l l o . . . . .   ~ A B C D",
               "lbl[0x0010]: 0x78 0x79 0x0a 0x7a" + QByteArray(62, ' ') + ": x y . z"};
    QTest::newRow("length shorter than data")
        << twenty << 2 << QByteArrayList{"lbl[0x0000]: 0x48 0x65" + QByteArray(72, ' ') + ": H e"};
    QTest::newRow("zero length") << twenty << 0 << QByteArrayList{};
    QTest::newRow("negative length") << twenty << -4 << QByteArrayList{};
}

void TestOrvaDebug::binaryDump() {
    QFETCH(QByteArray, bytes);
    QFETCH(int, length);
    QFETCH(QByteArrayList, expected);
    QVERIFY(makeFile(logPath(), "start\n", 0));

    OrvaLogBinary(kOrvaLogInfo, "lbl", bytes.constData(), length);

    QByteArrayList lines = splitLines(readAll(logPath()));
    QVERIFY(!lines.isEmpty());
    lines.removeFirst();
    QCOMPARE(lines.size(), expected.size());
    for (int i = 0; i < lines.size(); ++i)
        QCOMPARE(afterPrefix(lines[i], 'I'), expected[i]);
}

void TestOrvaDebug::binaryFileDump_data() {
    QTest::addColumn<QByteArray>("label");
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<qulonglong>("maxShown");
    QTest::addColumn<QByteArray>("expected");

    const QByteArray twenty("Hello\0\x01\x7f\x80\xff ~ABCDxy\nz", 20);
    const QByteArray fullA = "41 41 41 41 41 41 41 41  41 41 41 41 41 41 41 41 : AAAAAAAAAAAAAAAA\n";
    const QByteArray forty(40, 'A');

    QTest::newRow("3 bytes") << QByteArray("lbl") << QByteArray("AB\x01", 3) << 64ull
                             << "lbl(3 bytes):\n\t\t[0x0000]: 41 42 01" + QByteArray(41, ' ') + ": AB.\n";
    QTest::newRow("20 bytes")
        << QByteArray("lbl") << twenty << 64ull
        << "lbl(20 bytes):\n"
           "\t\t[0x0000]: 48 65 6c 6c 6f 00 01 7f  80 ff 20 7e 41 42 43 44 : Hello..... ~ABCD\n"
           "\t\t[0x0010]: 78 79 0a 7a" +
               QByteArray(38, ' ') + ": xy.z\n";
    QTest::newRow("9 bytes") << QByteArray("n") << QByteArray("ABCDEFGHI") << 64ull
                             << "n(9 bytes):\n\t\t[0x0000]: 41 42 43 44 45 46 47 48  49" +
                                    QByteArray(22, ' ') + ": ABCDEFGHI\n";
    QTest::newRow("null label, no data")
        << QByteArray() << QByteArray() << 64ull << QByteArray("(0 bytes):\n");
    QTest::newRow("cut at 16") << QByteArray("cut") << forty << 16ull
                               << "cut(40 bytes):\n\t\t[0x0000]: " + fullA + "\t\t[0x0010]: ...\n";
    QTest::newRow("cut inside a row")
        << QByteArray("cut") << forty << 20ull
        << "cut(40 bytes):\n\t\t[0x0000]: " + fullA + "\t\t[0x0010]: " + fullA + "\t\t[0x0020]: ...\n";
    QTest::newRow("cut at 0") << QByteArray("cut") << forty << 0ull
                              << QByteArray("cut(40 bytes):\n\t\t[0x0000]: ...\n");
    QTest::newRow("maximum equals length")
        << QByteArray("all") << forty.left(32) << 32ull
        << "all(32 bytes):\n\t\t[0x0000]: " + fullA + "\t\t[0x0010]: " + fullA;
}

void TestOrvaDebug::binaryFileDump() {
    QFETCH(QByteArray, label);
    QFETCH(QByteArray, bytes);
    QFETCH(qulonglong, maxShown);
    QFETCH(QByteArray, expected);
    QVERIFY(makeFile(logPath(), "start\n", 0));
    OrvaSetLogLevel(-10); // unlevelled: the mode must not matter

    OrvaLogBinaryFile(label.isNull() ? nullptr : label.constData(), bytes.constData(),
                      std::uint64_t(bytes.size()), maxShown);

    QCOMPARE(readAll(logPath()), "start\n" + expected);
}

void TestOrvaDebug::valueTreeDump() {
    QVERIFY(makeFile(logPath(), {}, 0));
    const TwValue inner =
        TwValue::array({TwValue("x"), TwValue(true), TwValue::dictionary({{"deep", TwValue(2.5)}})});
    const TwValue root = TwValue::dictionary({
        {"name", TwValue("Scanner")},
        {"dpi", TwValue(300)},
        {"raw", TwValue(TwBytes{1, 2, 3})},
        {"when", TwValue(TwDate{1.0})},
        {"list", inner},
        {"empty", TwValue::array()},
    });

    OrvaLogCFType(kOrvaLogDebug, root, 0, 1);

    const QByteArray expected = "[CFDictionary] count = 6\n"
                                "[   0]: key = [CFString] 'name'\n"
                                "      value = [CFString] 'Scanner'\n"
                                "[   1]: key = [CFString] 'dpi'\n"
                                "      value = [CFNumber] 300 (SInt32)\n"
                                "[   2]: key = [CFString] 'raw'\n"
                                "      value = [CFData] byties = 3\n"
                                "[   3]: key = [CFString] 'when'\n"
                                "      value = [CFDate]\n"
                                "[   4]: key = [CFString] 'list'\n"
                                "      value = [CFArray] count = 3\n"
                                "  [   0]: [CFString] 'x'\n"
                                "  [   1]: [CFBoolean]\n"
                                "  [   2]: [CFDictionary] count = 1\n"
                                "    [   0]: key = [CFString] 'deep'\n"
                                "          value = [CFNumber] 2.500000 (Float64)\n"
                                "[   5]: key = [CFString] 'empty'\n"
                                "      value = [CFArray] count = 0\n";
    const QByteArrayList lines = splitLines(readAll(logPath()));
    QVERIFY(!lines.isEmpty());
    QVERIFY(creationLine().match(QString::fromLatin1(lines[0])).hasMatch());
    QCOMPARE(lines.mid(1), splitLines(expected));
    QVERIFY(readAll(logPath()).endsWith(expected));
}

void TestOrvaDebug::valueTreeScalars_data() {
    QTest::addColumn<TwValue>("value");
    QTest::addColumn<int>("indent");
    QTest::addColumn<int>("noLeadingIndent");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("string") << TwValue("a b") << 0 << 1 << QByteArray("[CFString] 'a b'\n");
    QTest::newRow("indented string") << TwValue("s") << 2 << 0 << QByteArray("    [CFString] 's'\n");
    QTest::newRow("flag suppresses indent") << TwValue("s") << 2 << 1 << QByteArray("[CFString] 's'\n");
    QTest::newRow("int32 max") << TwValue(2147483647LL) << 0 << 1
                               << QByteArray("[CFNumber] 2147483647 (SInt32)\n");
    QTest::newRow("int32 min") << TwValue(-2147483648LL) << 0 << 1
                               << QByteArray("[CFNumber] -2147483648 (SInt32)\n");
    QTest::newRow("above int32") << TwValue(2147483648LL) << 0 << 1
                                 << QByteArray("[CFNumber] 2147483648 (SInt64)\n");
    QTest::newRow("below int32") << TwValue(-2147483649LL) << 0 << 1
                                 << QByteArray("[CFNumber] -2147483649 (SInt64)\n");
    QTest::newRow("real") << TwValue(-0.125) << 1 << 0 << QByteArray("  [CFNumber] -0.125000 (Float64)\n");
    QTest::newRow("false") << TwValue(false) << 1 << 0 << QByteArray("  [CFBoolean]\n");
    QTest::newRow("empty data") << TwValue(TwBytes{}) << 0 << 1 << QByteArray("[CFData] byties = 0\n");
    QTest::newRow("date") << TwValue(TwDate{}) << 0 << 1 << QByteArray("[CFDate]\n");
    QTest::newRow("null writes nothing") << TwValue() << 3 << 0 << QByteArray();
    QTest::newRow("indented array") << TwValue::array({TwValue(1)}) << 1 << 0
                                    << QByteArray("  [CFArray] count = 1\n  [   0]: [CFNumber] 1 (SInt32)\n");
}

void TestOrvaDebug::valueTreeScalars() {
    QFETCH(TwValue, value);
    QFETCH(int, indent);
    QFETCH(int, noLeadingIndent);
    QFETCH(QByteArray, expected);
    QVERIFY(makeFile(logPath(), "start\n", 0));

    OrvaLogCFType(kOrvaLogAlways, value, indent, std::int16_t(noLeadingIndent));

    QCOMPARE(readAll(logPath()), "start\n" + expected);
}

void TestOrvaDebug::ioReturnString_data() {
    QTest::addColumn<qint64>("code");
    QTest::addColumn<QByteArray>("expected");
    QTest::addColumn<bool>("nameOnly"); // compare "name " only

    QTest::newRow("success") << 0ll << QByteArray("kIOReturnSuccess OK") << false;
    QTest::newRow("error") << 0xE00002BCll << QByteArray("kIOReturnError general error") << false;
    QTest::newRow("no memory") << 0xE00002BDll << QByteArray("kIOReturnNoMemory can't allocate memory")
                               << false;
    QTest::newRow("device error") << 0xE00002E9ll
                                  << QByteArray("kIOReturnDeviceError the device is not working properly!")
                                  << false;
    QTest::newRow("invalid") << 0xE0000001ll << QByteArray("kIOReturnInvalid should never be seen") << false;
    QTest::newRow("pipe stalled") << 0xE000404Fll
                                  << QByteArray(
                                         "kIOUSBPipeStalled Pipe has stalled, error needs to be cleared")
                                  << false;
    QTest::newRow("io error") << 0xE00002CAll << QByteArray("kIOReturnIOError") << true;
    QTest::newRow("cannot lock") << 0xE00002CCll << QByteArray("kIOReturnCannotLock") << true;
    QTest::newRow("no space") << 0xE00002DBll << QByteArray("kIOReturnNoSpace") << true;
    QTest::newRow("port exists") << 0xE00002DDll << QByteArray("kIOReturnPortExists") << true;
    QTest::newRow("not found") << 0xE00002F0ll << QByteArray("kIOReturnNotFound") << true;
    QTest::newRow("crc") << 0xE0004001ll << QByteArray("kIOUSBCRCErr") << true;
    QTest::newRow("wrong pid") << 0xE0004007ll << QByteArray("kIOUSBWrongPIDErr") << true;
    QTest::newRow("link") << 0xE0004010ll << QByteArray("kIOUSBLinkErr") << true;
    QTest::newRow("not high speed") << 0xE0004049ll << QByteArray("kIOUSBDeviceNotHighSpeed") << true;
    QTest::newRow("transaction timeout") << 0xE0004051ll << QByteArray("kIOUSBTransactionTimeout") << true;
    QTest::newRow("config not found") << 0xE0004056ll << QByteArray("kIOUSBConfigNotFound") << true;
    QTest::newRow("not enough power") << 0xE000405Dll << QByteArray("kIOUSBNotEnoughPowerErr") << true;
    QTest::newRow("unknown pipe") << 0xE0004061ll << QByteArray("kIOUSBUnknownPipeErr") << true;

    for (qint64 code :
         {0xE00002CBll, 0xE00002DCll, 0xE00002BBll, 0xE00002F1ll, 0xE0000002ll, 0xE0004000ll, 0xE0004004ll,
          0xE0004008ll, 0xE0004011ll, 0xE0004048ll, 0xE0004052ll, 0xE000405Cll, 0xE0004062ll, 1ll, -1ll})
        QTest::newRow(qPrintable(QStringLiteral("unassigned 0x%1").arg(quint32(code), 8, 16, QChar('0'))))
            << code << QByteArray("UNKNOW") << false;
}

void TestOrvaDebug::ioReturnString() {
    QFETCH(qint64, code);
    QFETCH(QByteArray, expected);
    QFETCH(bool, nameOnly);
    const QByteArray text(IOReturnString(std::int32_t(quint32(code))));
    if (nameOnly) {
        QVERIFY2(text.startsWith(expected + " "), text.constData());
        QVERIFY(text.size() > expected.size() + 1);
    } else {
        QCOMPARE(text, expected);
    }
}

void TestOrvaDebug::ioReturnStringNamesAreDistinct() {
    // Every name belongs to exactly one code: 1 + 51 common + invalid + 12 + 16 USB.
    QSet<QByteArray> names;
    int known = 0;
    auto visit = [&](quint32 code) {
        const QByteArray text(IOReturnString(std::int32_t(code)));
        if (text == "UNKNOW")
            return;
        ++known;
        names.insert(text.left(text.indexOf(' ')));
    };
    visit(0);
    visit(0xE0000001);
    for (quint32 c = 0xE00002B0; c <= 0xE0000300; ++c)
        visit(c);
    for (quint32 c = 0xE0004000; c <= 0xE0004070; ++c)
        visit(c);
    QCOMPARE(known, 81);
    QCOMPARE(names.size(), 81);
}

void TestOrvaDebug::objectType2Str_data() {
    QTest::addColumn<quint32>("code");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("device") << fourCC("icdv") << QByteArray("kICADevice");
    QTest::newRow("scan: first match wins") << fourCC("scan") << QByteArray("kICADeviceScanner");
    QTest::newRow("file: first match wins") << fourCC("file") << QByteArray("kICAFile");
    QTest::newRow("mfp with blank") << fourCC("mfp ") << QByteArray("kICADeviceMFP");
    QTest::newRow("web with blank") << fourCC("web ") << QByteArray("kICAButtonWeb");
    QTest::newRow("btn?") << fourCC("btn?") << QByteArray("kICAMessageGetLastButtonPressed");
    QTest::newRow("area") << fourCC("area") << QByteArray("'area'");
    QTest::newRow("copy") << fourCC("copy") << QByteArray("kICAButtonCopy");
    QTest::newRow("last entry") << fourCC("meta") << QByteArray("kICS_MetaData");
    QTest::newRow("unknown") << fourCC("zqxw") << QByteArray("'zqxw'");
    QTest::newRow("abc and zero") << (fourCC("abcd") & 0xFFFFFF00u) << QByteArray("'abc '");
    QTest::newRow("mfp without blank") << (fourCC("mfp ") & 0xFFFFFF00u) << QByteArray("'mfp '");
    QTest::newRow("zero") << 0u << QByteArray("'    '");
    QTest::newRow("leading zero") << (fourCC("abcd") & 0x00FFFFFFu) << QByteArray("' bcd'");
}

void TestOrvaDebug::objectType2Str() {
    QFETCH(quint32, code);
    QFETCH(QByteArray, expected);
    QCOMPARE(QByteArray(ObjectType2Str(code)), expected);
}

void TestOrvaDebug::icaErr2Str_data() {
    QTest::addColumn<int>("error");
    QTest::addColumn<QByteArray>("expected");

    QTest::newRow("noErr") << 0 << QByteArray("noErr");
    QTest::newRow("first") << -9900 << QByteArray("kICACommunicationErr");
    QTest::newRow("cannot yield") << -9909 << QByteArray("kICACannotYieldDevice");
    QTest::newRow("last") << -9917 << QByteArray("kICADeviceIOServicePathNotFoundErr");
    for (int e : {-9899, -9918, 2, -1})
        QTest::newRow(qPrintable(QStringLiteral("strerror %1").arg(e))) << e << QByteArray(std::strerror(e));
}

void TestOrvaDebug::icaErr2Str() {
    QFETCH(int, error);
    QFETCH(QByteArray, expected);
    QCOMPARE(QByteArray(ICAErr2Str(std::int16_t(error))), expected);
}

QTEST_GUILESS_MAIN(TestOrvaDebug)
#include "tst_orvadebug.moc"
