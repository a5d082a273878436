// Tests of the diagnostic log: sink choice, line layout, rotation, console mode, hardening against
// non-regular log paths, concurrency, the dumps and the code-name tables.
#include "TestSupport.h"

#include <clocale>
#include <ctime>
#include <mutex>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

class TestOrvaDebug : public QObject {
    Q_OBJECT

    static inline std::mutex s_capturedMutex;
    static inline QByteArrayList s_captured;

    static void captureSink(const char* line) {
        std::lock_guard lock(s_capturedMutex);
        s_captured.append(QByteArray(line));
    }

    static inline QByteArrayList captured() {
        std::lock_guard lock(s_capturedMutex);
        return s_captured;
    }

    // Writes head, then extends to size (sparse, so the 5 MiB files are cheap) ending in a newline.
    static bool makeFile(const QString& path, const QByteArray& head, qint64 size = 0, mode_t mode = 0644) {
        int fd = ::open(QFile::encodeName(path).constData(), O_WRONLY | O_CREAT | O_TRUNC, mode);
        if (fd < 0)
            return false;
        bool ok = ::write(fd, head.constData(), size_t(head.size())) == head.size();
        if (ok && size > head.size())
            ok = ::pwrite(fd, "\n", 1, off_t(size - 1)) == 1;
        ok = ok && ::fchmod(fd, mode) == 0;
        ::close(fd);
        return ok;
    }

    static struct stat lstatPath(const QString& path, bool* exists = nullptr) {
        struct stat st {};
        const bool ok = ::lstat(QFile::encodeName(path).constData(), &st) == 0;
        if (exists)
            *exists = ok;
        return st;
    }

    static inline QByteArrayList splitLines(const QByteArray& text) {
        QByteArrayList lines = text.split('\n');
        if (!lines.isEmpty() && lines.last().isEmpty())
            lines.removeLast();
        return lines;
    }

    static inline const QRegularExpression kLevelled{R"(^\[(\d\d):(\d\d):(\d\d)\.(\d\d\d)\](.)\t)"};

    // The text after a levelled prefix, checking the letter; a null array when there is no prefix.
    static QByteArray afterPrefix(const QByteArray& line, char letter) {
        auto m = kLevelled.match(QString::fromLatin1(line));
        if (!m.hasMatch() || m.captured(5) != QChar::fromLatin1(letter))
            return {};
        const QByteArray rest = line.mid(m.capturedLength());
        return rest.isNull() ? QByteArray("") : rest;
    }

    static inline const QRegularExpression kCreation{R"(^\[Creat at (\d{4})/(\d\d)/(\d\d)\]$)"};
    static bool isCreationLine(const QByteArray& line) {
        return kCreation.match(QString::fromLatin1(line)).hasMatch();
    }

    static constexpr qint64 kMaxSize = 5242880;

    std::unique_ptr<QTemporaryDir> m_dir;
    QString logPath() const { return m_dir->filePath("orvatwain.log"); }
    QString conPath() const { return m_dir->filePath("orvatwain.con"); }
    QStringList dirEntries() const {
        return QDir(m_dir->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }
    // The lines after the "start" line the test wrote first.
    QByteArrayList newLines() const { return splitLines(readFile(logPath())).mid(1); }

private slots:
    void initTestCase() {
        // Printable-character decisions of the dumps depend on the locale.
        std::setlocale(LC_CTYPE, "C");
    }
    void init() {
        m_dir = std::make_unique<QTemporaryDir>();
        QVERIFY(m_dir->isValid());
        std::lock_guard lock(s_capturedMutex);
        s_captured.clear();
        OrvaSetConsoleSink(captureSink);
        OrvaSetLogLevel(kOrvaLogDebug);
        OrvaSetLogPaths(QFile::encodeName(logPath()).constData(), QFile::encodeName(conPath()).constData());
    }
    void cleanup() {
        OrvaSetLogPaths(nullptr, nullptr);
        OrvaSetLogLevel(kOrvaLogDebug);
        m_dir.reset();
    }

    // ---- sink choice and line layout ----

    void nothingIsWritten_data() {
        columns<bool, int>("filesExist", "level");
        row("neither file exists", false, int(kOrvaLogAlways));
        // An empty file would get the creation line if a dropped level opened it.
        row("dropped level", true, 7);
    }
    void nothingIsWritten() {
        auto [filesExist, level] = fetch<bool, int>("filesExist", "level");
        if (filesExist)
            QVERIFY(makeFile(logPath(), {}) && makeFile(conPath(), {}));
        OrvaLog(level, "line %d\n", 1);
        OrvaLogBinary(level, "bin", "abc", 3);
        OrvaLogCFType(level, dict({{"k", TwValue(1)}}), 0, 1);
        if (!filesExist) {
            OrvaLogFile(1, "line %d\n", 3);
            OrvaLogBinaryFile("bin", "abc", 3, 16);
        }
        QCOMPARE(dirEntries(), filesExist ? QStringList({"orvatwain.con", "orvatwain.log"}) : QStringList());
        QCOMPARE(QFileInfo(logPath()).size(), 0);
        QVERIFY(captured().isEmpty());
    }

    void pathsAreCopied() {
        const QString other = m_dir->filePath("other.log");
        QVERIFY(makeFile(logPath(), "log\n") && makeFile(other, "other\n"));
        QByteArray buffer = QFile::encodeName(logPath());
        OrvaSetLogPaths(buffer.data(), nullptr);
        // Rewrite the caller's buffer in place: the log must still use the path it was given.
        const QByteArray otherName = QFile::encodeName(other);
        QVERIFY(otherName.size() <= buffer.size());
        std::memset(buffer.data(), 0, size_t(buffer.size()));
        std::memcpy(buffer.data(), otherName.constData(), size_t(otherName.size()));
        OrvaLog(kOrvaLogInfo, "copied\n");
        QVERIFY(readFile(logPath()).endsWith("\tcopied\n"));
        QCOMPARE(readFile(other), QByteArray("other\n"));
    }

    void creationLineOnlyOnEmptyFile_data() {
        QTest::addColumn<QByteArray>("initial");
        row("empty", QByteArray());
        row("one byte", QByteArray("x"));
    }
    void creationLineOnlyOnEmptyFile() {
        QFETCH(QByteArray, initial);
        QVERIFY(makeFile(logPath(), initial));
        const QDate before = QDate::currentDate();
        OrvaLog(kOrvaLogError, "first %s\n", "line");
        const QDate after = QDate::currentDate();
        OrvaLog(kOrvaLogError, "second\n");

        const QByteArray text = readFile(logPath());
        QVERIFY(text.startsWith(initial));
        QByteArrayList lines = splitLines(text.mid(initial.size()));
        if (initial.isEmpty()) {
            auto m = kCreation.match(QString::fromLatin1(lines.value(0)));
            QVERIFY2(m.hasMatch(), lines.value(0).constData());
            const QDate logged(m.captured(1).toInt(), m.captured(2).toInt(), m.captured(3).toInt());
            QVERIFY(logged == before || logged == after);
            lines.removeFirst();
        }
        QCOMPARE(lines.size(), 2);
        QCOMPARE(afterPrefix(lines[0], 'E'), QByteArray("first line"));
        QCOMPARE(afterPrefix(lines[1], 'E'), QByteArray("second"));
    }

    void removedFileStopsLogging() {
        QVERIFY(makeFile(logPath(), "start\n"));
        OrvaLog(kOrvaLogInfo, "one\n");
        QVERIFY(QFile::remove(logPath()));
        OrvaLog(kOrvaLogInfo, "two\n");
        OrvaLogFile(1, "two\n");
        QVERIFY(!QFile::exists(logPath()) && makeFile(logPath(), {}));
        OrvaLog(kOrvaLogInfo, "three\n");
        const QByteArrayList lines = splitLines(readFile(logPath()));
        QCOMPARE(lines.size(), 2);
        QVERIFY(isCreationLine(lines[0]));
        QCOMPARE(afterPrefix(lines[1], 'I'), QByteArray("three"));
    }

    void levelLetters_data() {
        // letter: 0: dropped
        columns<int, int, char>("level", "mode", "letter");
        const char letters[] = " EWNITD";
        for (int level = 0; level <= 6; ++level)
            QTest::addRow("%d", level) << level << 6 << letters[level];
        row("99 dropped at 98", 99, 98, '\0');
        row("99 P at 99", 99, 99, 'P');
        row("7 blank at 99", 7, 99, ' ');
        row("0 dropped at -1", 0, -1, '\0');
        row("-1 blank", -1, 6, ' ');
    }
    void levelLetters() {
        auto [level, mode, letter] = fetch<int, int, char>("level", "mode", "letter");
        QVERIFY(makeFile(logPath(), "start\n"));
        OrvaSetLogLevel(mode);
        OrvaLog(level, "via OrvaLog %d %s\n", 42, "end");
        const QByteArrayList lines = newLines();
        QCOMPARE(lines.size(), letter ? 1 : 0);
        if (letter)
            QCOMPARE(afterPrefix(lines[0], letter), QByteArray("via OrvaLog 42 end"));
    }

    void timePrefixIsLocalWallClock() {
        // A zone with a half-hour offset, so that both UTC and a wrong minute show.
        const QByteArray oldTz = qgetenv("TZ");
        const bool hadTz = qEnvironmentVariableIsSet("TZ");
        qputenv("TZ", "VMX-05:30");
        ::tzset();
        QVERIFY(makeFile(logPath(), "start\n"));
        const qint64 before = QDateTime::currentMSecsSinceEpoch();
        OrvaLog(kOrvaLogTrace, "now\n");
        const qint64 after = QDateTime::currentMSecsSinceEpoch();
        hadTz ? qputenv("TZ", oldTz) : qunsetenv("TZ");
        ::tzset();

        const QByteArray line = newLines().value(0);
        QVERIFY(kLevelled.match(QString::fromLatin1(line)).hasMatch());
        const qint64 loggedMs =
            QTime::fromString(QString::fromLatin1(line.mid(1, 12)), "hh:mm:ss.zzz").msecsSinceStartOfDay();
        constexpr qint64 day = 86400000;
        const qint64 beforeLocal = (before + (5 * 3600 + 30 * 60) * 1000LL) % day;
        // Milliseconds are truncated, hence the small allowance below the first reading.
        const qint64 distance = ((loggedMs - beforeLocal + 5) % day + day) % day;
        QVERIFY2(distance <= (after - before) + 10, qPrintable(QString("logged %1 ms of day").arg(loggedMs)));
    }

    void unlevelledLines_data() {
        columns<int, int>("flag", "mode");
        row("flag 0: no time", 0, 6);
        row("any other flag, whatever the level", 7, -5);
    }
    void unlevelledLines() {
        auto [flag, mode] = fetch<int, int>("flag", "mode");
        QVERIFY(makeFile(logPath(), "start\n"));
        OrvaSetLogLevel(mode);
        OrvaLogFile(flag, "\tBundle Version:%s\n", "1.2.3");
        OrvaLogFile(flag, "direct %d\n", 5);
        static const QRegularExpression plain(R"(^\[\d\d:\d\d:\d\d\.\d\d\d\]\t)");
        QStringList lines;
        for (const QByteArray& line : newLines()) {
            QString text = QString::fromLatin1(line);
            auto m = plain.match(text);
            QCOMPARE(m.hasMatch(), flag != 0);
            lines << text.mid(m.hasMatch() ? m.capturedLength() : 0);
        }
        QCOMPARE(lines, (QStringList{"\tBundle Version:1.2.3", "direct 5"}));
    }

    // ---- rotation ----

    // Past 5 MiB the log moves to P.0, the generations shift up one and the oldest is dropped; the
    // new file gets the default mode whatever the umask, and the umask is left as it was.
    void rotation_data() {
        // present: generations that exist before, by digit
        // expected: head of P.0 .. P.4 afterwards, "" for none
        columns<qint64, QString, QStringList>("size", "present", "expected");
        row("exactly 5 MiB: kept", kMaxSize, "", QStringList());
        row("one byte more: rotated", kMaxSize + 1, "", QStringList{"live", "", "", "", ""});
        row("all five: the oldest dropped", kMaxSize + 1, "01234",
            QStringList{"live", "gen0", "gen1", "gen2", "gen3"});
        row("gap at 1", kMaxSize + 1, "023", QStringList{"live", "gen0", "", "gen2", "gen3"});
    }
    void rotation() {
        auto [size, present, expected] = fetch<qint64, QString, QStringList>("size", "present", "expected");
        const mode_t oldMask = ::umask(077);
        QVERIFY(makeFile(logPath(), "live\n", size, 0600));
        for (QChar c : present)
            QVERIFY(makeFile(logPath() + "." + c, "gen" + QByteArray(1, c.toLatin1()) + "\n"));
        OrvaLog(kOrvaLogNotice, "after %s\n", "check");
        QCOMPARE(::umask(oldMask), mode_t(077));

        const struct stat live = lstatPath(logPath());
        const QByteArray last = splitLines(readFile(logPath(), -200)).last();
        QCOMPARE(afterPrefix(last, 'N'), QByteArray("after check"));
        QStringList expectedEntries{"orvatwain.log"};
        for (int i = 0; i < expected.size(); ++i) {
            const QString name = logPath() + "." + QString::number(i);
            if (!expected[i].isEmpty())
                expectedEntries << QFileInfo(name).fileName();
            QCOMPARE(QString::fromLatin1(splitLines(readFile(name, 0, 5)).value(0)), expected[i]);
        }
        QCOMPARE(dirEntries(), expectedEntries);
        if (expected.isEmpty()) {
            QCOMPARE(qint64(live.st_size), size + last.size() + 1);
            QCOMPARE(live.st_mode & 07777, mode_t(0600));
            return;
        }
        QCOMPARE(QFileInfo(logPath() + ".0").size(), size);
        QVERIFY(S_ISREG(live.st_mode));
        QCOMPARE(live.st_mode & 07777, mode_t(0666));
        const QByteArrayList lines = splitLines(readFile(logPath()));
        QCOMPARE(lines.size(), 2);
        QVERIFY(isCreationLine(lines[0]));
    }

    void failedRotationAppendsToBigFile() {
        // A non-empty directory at P.4 makes the first rename (P.3 onto it) fail.
        QVERIFY(QDir(m_dir->path()).mkdir("orvatwain.log.4") && makeFile(logPath() + ".4/keep", "keep\n"));
        QVERIFY(makeFile(logPath() + ".3", "gen3\n") && makeFile(logPath() + ".0", "gen0\n"));
        QVERIFY(makeFile(logPath(), "big\n", kMaxSize + 1));
        OrvaLog(kOrvaLogWarning, "still here\n");
        QCOMPARE(readFile(logPath() + ".3"), QByteArray("gen3\n"));
        QCOMPARE(readFile(logPath() + ".0"), QByteArray("gen0\n"));
        QCOMPARE(dirEntries(),
                 (QStringList{"orvatwain.log", "orvatwain.log.0", "orvatwain.log.3", "orvatwain.log.4"}));
        QCOMPARE(readFile(logPath(), 0, 4), QByteArray("big\n"));
        const QByteArray line = splitLines(readFile(logPath(), -200)).last();
        QCOMPARE(afterPrefix(line, 'W'), QByteArray("still here"));
        QCOMPARE(QFileInfo(logPath()).size(), kMaxSize + 1 + line.size() + 1);
    }

    // ---- console mode and non-regular paths ----

    void consoleMode() {
        QVERIFY(makeFile(conPath(), {}));
        const QByteArray longText(2000, 'L');
        OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "-[TwDlg onOK:]");
        OrvaLog(kOrvaLogError, "code %d\n", -1);
        OrvaLog(7, "dropped\n");
        OrvaLogFile(1, "\tBundle Version:%s\n", "2.0");
        OrvaLog(kOrvaLogDebug, "%s\n", longText.constData());
        OrvaLogCFType(kOrvaLogAlways, dict({{"k", TwValue("v")}}), 0, 1);
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

    void consoleSwitchMustBeRegularFile_data() {
        QTest::addColumn<QString>("kind");
        row("regular file", "file");
        row("missing", "none");
        row("directory", "dir");
        row("symbolic link to a file", "link");
    }
    void consoleSwitchMustBeRegularFile() {
        QFETCH(QString, kind);
        if (kind == "file")
            QVERIFY(makeFile(conPath(), {}));
        else if (kind == "dir")
            QVERIFY(QDir(m_dir->path()).mkdir("orvatwain.con"));
        else if (kind == "link")
            QVERIFY(makeFile(m_dir->filePath("real.con"), {}) &&
                    QFile::link(m_dir->filePath("real.con"), conPath()));
        OrvaLog(kOrvaLogError, "hello\n");
        QCOMPARE(captured(), kind == "file" ? QByteArrayList{"hello\n"} : QByteArrayList{});
        QVERIFY(!QFile::exists(logPath()));
    }

    void nonRegularLogPath_data() {
        columns<QString, bool>("kind", "withConsole");
        for (const char* kind : {"link", "dangling", "dir", "fifo"})
            for (bool con : {true, false})
                QTest::addRow("%s%s", kind, con ? ", console switch" : "") << QString(kind) << con;
    }
    void nonRegularLogPath() {
        auto [kind, withConsole] = fetch<QString, bool>("kind", "withConsole");
        const QString target = m_dir->filePath("target");
        const QByteArray targetHead("target content\n");
        int fifoReader = -1;
        if (kind == "link" || kind == "dangling") {
            // Big enough to be rotated if the link were followed.
            if (kind == "link")
                QVERIFY(makeFile(target, targetHead, kMaxSize + 1, 0600));
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
            QVERIFY(makeFile(conPath(), {}));

        OrvaLog(kOrvaLogError, "refused %d\n", 1);
        OrvaLogFile(0, "refused %d\n", 2);
        OrvaLogCFType(kOrvaLogAlways, TwValue("dump"), 0, 1);

        if (fifoReader >= 0) {
            char buf[64];
            const ssize_t n = ::read(fifoReader, buf, sizeof buf);
            ::close(fifoReader);
            QVERIFY2(n <= 0, "the log wrote into a fifo");
        }
        QCOMPARE(captured(), withConsole ? QByteArrayList({"refused 1\n", "refused 2\n"}) : QByteArrayList());
        if (kind == "link") {
            QCOMPARE(QFileInfo(target).size(), kMaxSize + 1);
            QCOMPARE(readFile(target, 0, targetHead.size()), targetHead);
            QCOMPARE(readFile(target, -2), QByteArray("\0\n", 2));
        }
        // The link stays a link, and a dangling one creates no target.
        QCOMPARE(S_ISLNK(lstatPath(logPath()).st_mode), kind == "link" || kind == "dangling");
        bool exists = false;
        lstatPath(target, &exists);
        QCOMPARE(exists, kind == "link");
        for (const QString& e : dirEntries())
            QVERIFY2(!e.contains(".log."), qPrintable(e));
    }

    void concurrentLinesStayWhole() {
        constexpr int kThreads = 8;
        constexpr int kLines = 500;
        QVERIFY(makeFile(logPath(), {}));
        // Every 25th line is longer than a stdio buffer, so that it leaves in several writes.
        const std::string shortText(150, 'x'), longText(6000, 'y');
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

        const QByteArrayList lines = splitLines(readFile(logPath()));
        QCOMPARE(lines.size(), 1 + kThreads * kLines);
        QVERIFY(isCreationLine(lines[0]));
        const QRegularExpression body(u"^thread (\\d) line (\\d+) ([xy]+)$"_s);
        QSet<int> seen;
        for (int i = 1; i < lines.size(); ++i) {
            auto m = body.match(QString::fromLatin1(afterPrefix(lines[i], 'I')));
            QVERIFY2(m.hasMatch(), lines[i].left(80).constData());
            const int n = m.captured(2).toInt();
            QCOMPARE(m.captured(3).toStdString(), payload(n));
            seen.insert(m.captured(1).toInt() * kLines + n);
        }
        QCOMPARE(seen.size(), kThreads * kLines);
    }

    // ---- dumps ----

    void binaryDump() {
        QVERIFY(makeFile(logPath(), "start\n"));
        const QByteArray twenty("Hello\0\x01\x7f\x80\xff ~ABCDxy\nz", 20);
        OrvaLogBinary(kOrvaLogInfo, "lbl", twenty.constData(), 20);
        OrvaLogBinary(kOrvaLogInfo, "none", twenty.constData(), -4);
        const QByteArrayList lines = newLines();
        QCOMPARE(lines.size(), 2);
        QCOMPARE(
            afterPrefix(lines[0], 'I'),
            QByteArray("lbl[0x0000]: 0x48 0x65 0x6c 0x6c 0x6f 0x00 0x01 0x7f  0x80 0xff 0x20 0x7e 0x41 0x42 "
                       "0x43 0x44 : H e l l o . . . . .   ~ A B C D"));
        QCOMPARE(afterPrefix(lines[1], 'I'),
                 "lbl[0x0010]: 0x78 0x79 0x0a 0x7a" + QByteArray(62, ' ') + ": x y . z");
    }

    void binaryFileDump_data() {
        columns<QByteArray, QByteArray, qulonglong, QByteArray>("label", "bytes", "maxShown", "expected");
        const QByteArray fullA = "41 41 41 41 41 41 41 41  41 41 41 41 41 41 41 41 : AAAAAAAAAAAAAAAA\n";
        const QByteArray forty(40, 'A');
        row("20 bytes", QByteArray("lbl"), QByteArray("Hello\0\x01\x7f\x80\xff ~ABCDxy\nz", 20), 64ull,
            "lbl(20 bytes):\n"
            "\t\t[0x0000]: 48 65 6c 6c 6f 00 01 7f  80 ff 20 7e 41 42 43 44 : "
            "Hello..... ~ABCD\n"
            "\t\t[0x0010]: 78 79 0a 7a" +
                QByteArray(38, ' ') + ": xy.z\n");
        row("null label, no data", QByteArray(), QByteArray(), 64ull, QByteArray("(0 bytes):\n"));
        row("cut inside a row", QByteArray("cut"), forty, 20ull,
            "cut(40 bytes):\n\t\t[0x0000]: " + fullA + "\t\t[0x0010]: " + fullA + "\t\t[0x0020]: ...\n");
        row("cut at 0", QByteArray("cut"), forty, 0ull, QByteArray("cut(40 bytes):\n\t\t[0x0000]: ...\n"));
    }
    void binaryFileDump() {
        auto [label, bytes, maxShown] =
            fetch<QByteArray, QByteArray, qulonglong>("label", "bytes", "maxShown");
        QVERIFY(makeFile(logPath(), "start\n"));
        OrvaSetLogLevel(-10); // unlevelled: the mode must not matter
        OrvaLogBinaryFile(label.isNull() ? nullptr : label.constData(), bytes.constData(),
                          std::uint64_t(bytes.size()), maxShown);
        QTEST(readFile(logPath(), 6), "expected");
    }

    void valueTreeDump() {
        QVERIFY(makeFile(logPath(), "start\n"));
        const TwValue root = dict({
            {"name", TwValue("Scanner")},
            {"dpi", TwValue(300)},
            {"raw", TwValue(TwBytes{1, 2, 3})},
            {"when", TwValue(TwDate{1.0})},
            {"list", array({TwValue("x"), TwValue(true), dict({{"deep", TwValue(2.5)}})})},
            {"empty", array()},
            {"big", TwValue(2147483648LL)},
        });
        OrvaLogCFType(kOrvaLogDebug, root, 0, 1);
        OrvaLogCFType(kOrvaLogDebug, TwValue("s"), 2, 0);
        QCOMPARE(readFile(logPath(), 6), QByteArray("[CFDictionary] count = 7\n"
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
                                                    "      value = [CFArray] count = 0\n"
                                                    "[   6]: key = [CFString] 'big'\n"
                                                    "      value = [CFNumber] 2147483648 (SInt64)\n"
                                                    "    [CFString] 's'\n"));
    }

    void codeNames() {
        auto io = [](quint32 code) {
            return QByteArray(IOReturnString(std::int32_t(code)));
        };
        QCOMPARE(io(0xE00002BC), QByteArray("kIOReturnError general error"));
        QCOMPARE(io(0xE000404F), QByteArray("kIOUSBPipeStalled Pipe has stalled, error needs to be cleared"));
        QCOMPARE(io(0xE0004062), QByteArray("UNKNOW"));
        // Every name belongs to exactly one code: 1 + 51 common + invalid + 12 + 16 USB.
        QSet<QByteArray> names;
        for (quint32 c = 0xE00002B0; c <= 0xE0004070; c = (c == 0xE0000300 ? 0xE0004000 : c + 1))
            if (io(c) != "UNKNOW")
                names.insert(io(c).left(io(c).indexOf(' ')));
        names.insert(io(0).left(io(0).indexOf(' ')));
        names.insert(io(0xE0000001).left(io(0xE0000001).indexOf(' ')));
        QCOMPARE(names.size(), 81);

        // 'scan' (the first of its names wins), and 'mfp' with a zero byte (no name: the code in quotes).
        QCOMPARE(QByteArray(ObjectType2Str(0x7363616E)), QByteArray("kICADeviceScanner"));
        QCOMPARE(QByteArray(ObjectType2Str(0x6D667000)), QByteArray("'mfp '"));
        QCOMPARE(QByteArray(ICAErr2Str(-9917)), QByteArray("kICADeviceIOServicePathNotFoundErr"));
        QCOMPARE(QByteArray(ICAErr2Str(-9918)), QByteArray(std::strerror(-9918)));
    }
};

QTEST_GUILESS_MAIN(TestOrvaDebug)
#include "tst_orvadebug.moc"
