// The support library. The diagnostic log: sink choice, line layout, rotation, console mode,
// hardening against non-regular log paths, concurrency, the dumps and the code-name tables.
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

#include <clocale>
#include <ctime>
#include <mutex>

#include <fcntl.h>
#include <signal.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

class TestSupportLibrary : public QObject {
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

    std::unique_ptr<QTemporaryDir> dir; // each case's own
    QString logPath() const { return dir->filePath("orvatwain.log"); }
    QString conPath() const { return dir->filePath("orvatwain.con"); }
    QStringList dirEntries() const {
        return QDir(dir->path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot, QDir::Name);
    }
    // The lines after the "start" line the test wrote first.
    QByteArrayList newLines() const { return splitLines(readFile(logPath())).mid(1); }
    QByteArray logText() const { return readFile(logPath()); }

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

    QString file() const { return dir->path() + "/" + QString::fromStdString(kDomain) + ".plist"; }
    TwPreferences prefs() const { return TwPreferences(kDomain, dir->path().toStdString()); }
    static TwValue readBack(const QString& file) { return TwPlistReadFile(file.toStdString()); }

private slots:
    void initTestCase() {
        // Printable-character decisions of the dumps depend on the locale.
        std::setlocale(LC_CTYPE, "C");
        qputenv("LANGUAGE", "de");
    }
    // The log goes to a folder of the case's own, where it writes only once its file exists.
    void init() {
        dir = std::make_unique<QTemporaryDir>();
        QVERIFY(dir->isValid());
        std::lock_guard lock(s_capturedMutex);
        s_captured.clear();
        OrvaSetConsoleSink(captureSink);
        OrvaSetLogLevel(kOrvaLogDebug);
        OrvaSetLogPaths(QFile::encodeName(logPath()).constData(), QFile::encodeName(conPath()).constData());
    }
    void cleanup() {
        OrvaSetLogPaths(nullptr, nullptr);
        OrvaSetLogLevel(kOrvaLogDebug);
        SetDIBAllocSleep(nullptr);
        dir.reset();
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
        const QString other = dir->filePath("other.log");
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
        QVERIFY(!QFile::exists(logPath()));
        QVERIFY(makeFile(logPath(), {}));
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
        QVERIFY(QDir(dir->path()).mkdir("orvatwain.log.4"));
        QVERIFY(makeFile(logPath() + ".4/keep", "keep\n"));
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

    // The log (nothing there, a link, a dangling link, a folder, a fifo) and the console switch (a
    // regular file, nothing there, a folder, a link to a file) are used only as regular files.
    void nonRegularPaths_data() {
        columns<QString, QString>("kind", "console");
        for (const char* kind : {"none", "link", "dangling", "dir", "fifo"})
            for (const char* console : {"file", "none", "dir", "link"})
                QTest::addRow("log %s, console %s", kind, console) << QString(kind) << QString(console);
    }
    void nonRegularPaths() {
        auto [kind, console] = fetch<QString, QString>("kind", "console");
        const QString target = dir->filePath("target");
        const QByteArray targetHead("target content\n");
        int fifoReader = -1;
        if (kind == "link" || kind == "dangling") {
            // Big enough to be rotated if the link were followed.
            if (kind == "link")
                QVERIFY(makeFile(target, targetHead, kMaxSize + 1, 0600));
            QVERIFY(QFile::link(target, logPath()));
        } else if (kind == "dir") {
            QVERIFY(QDir(dir->path()).mkdir("orvatwain.log"));
        } else if (kind == "fifo") {
            QCOMPARE(::mkfifo(QFile::encodeName(logPath()).constData(), 0600), 0);
            // Held open so that anything written into the pipe stays readable.
            fifoReader = ::open(QFile::encodeName(logPath()).constData(), O_RDONLY | O_NONBLOCK);
            QVERIFY(fifoReader >= 0);
        }
        if (console == "file")
            QVERIFY(makeFile(conPath(), {}));
        else if (console == "dir")
            QVERIFY(QDir(dir->path()).mkdir("orvatwain.con"));
        else if (console == "link")
            QVERIFY(makeFile(dir->filePath("real.con"), {}) &&
                    QFile::link(dir->filePath("real.con"), conPath()));

        OrvaLog(kOrvaLogError, "refused %d\n", 1);
        OrvaLogFile(0, "refused %d\n", 2);
        OrvaLogCFType(kOrvaLogAlways, TwValue("dump"), 0, 1);

        if (fifoReader >= 0) {
            char buf[64];
            const ssize_t n = ::read(fifoReader, buf, sizeof buf);
            ::close(fifoReader);
            QVERIFY2(n <= 0, "the log wrote into a fifo");
        }
        QCOMPARE(captured(),
                 console == "file" ? QByteArrayList({"refused 1\n", "refused 2\n"}) : QByteArrayList());
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
        QCOMPARE(dirEntries().contains("orvatwain.log"), kind != "none");
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

    // ---- Preferences ----

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
        QVERIFY(again.synchronize());
        QVERIFY(!readBack(file).dict()->contains("Runned"));
        QVERIFY(readBack(file).dict()->contains("profiles"));
    }

    void noDomainReadsAndWritesNothing() {
        TwPreferences prefs("", dir->path().toStdString());
        prefs.setValue("profiles", array());
        QVERIFY(prefs.copyValue("profiles").isNull());
        QVERIFY(!prefs.synchronize());
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
        QVERIFY(v.isNull());
        QVERIFY(!error.empty());
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
        QVERIFY(bundle->hasLocalizedString("IDS_OK"));
        QVERIFY(!bundle->hasLocalizedString("IDS_CANCEL"));

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

    void eachDepthHasItsHeaderPaletteStrideAndFileOffset_data() {
        // fileOffset: where the pixels start in the bitmap file of a prescan image, deliberately as
        // the bit count says without looking at the palette (a 4-bit image keeps 54)
        columns<int, int, int, int, uint, uint>("bits", "width", "dpi", "perMetre", "headerSize", "stride");
        QTest::addColumn<uint>("fileOffset");
        row("1 bit at 200 dpi", 1, 33, 200, 7874, 48u, 8u, 62u);
        row("4 bits", 4, 3, 300, 11811, 104u, 4u, 54u);
        row("8 bits at 100 dpi", 8, 5, 100, 3937, 1064u, 8u, 1078u);
        row("24 bits, width 1", 24, 1, 300, 11811, 40u, 4u, 54u);
        row("24 bits, width 3", 24, 3, 300, 11811, 40u, 12u, 54u);
        row("32 bits", 32, 3, 300, 11811, 40u, 12u, 54u);
    }
    void eachDepthHasItsHeaderPaletteStrideAndFileOffset() {
        QVERIFY(makeFile(logPath(), {}));
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
        QVERIFY(logText().isEmpty() && !CreateBMPFileHeader(nullptr, 100));

        dib.resize(dib.size() + 3, 0x5A); // a data source may hand over more than the bitmap
        const auto file = CreateBMPFileHeader(dib.data(), dib.size());
        QVERIFY(file);
        std::uint32_t fileSize = 0, pixels = 0;
        std::memcpy(&fileSize, file->data() + 2, 4);
        std::memcpy(&pixels, file->data() + 10, 4);
        QCOMPARE(QByteArray(reinterpret_cast<const char*>(file->data()), 2), QByteArray("BM"));
        QCOMPARE(fileSize, std::uint32_t(dib.size() + 14));
        QTEST(pixels, "fileOffset");
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
        QVERIFY(block);
        QVERIFY(s_sleeps.empty());
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

    static QByteArray hex(const char* text) { return QByteArray::fromHex(text); }

    void copyFamily_data() {
        columns<QString, QByteArray, int, QByteArray>("function", "source", "count", "palette");
        // The destination starts as 0xEE bytes (as many as expected), or as the source when the
        // function works in place; for lines, count is the line length and there are two lines.
        QTest::addColumn<QByteArray>("expected");
        const QByteArray none;
        row("copy", "ByteCopy", hex("01 02 03 04"), 3, none, hex("01 02 03 ee"));
        row("inverted", "ByteCopyReverse", hex("00 ff 0f"), 3, none, hex("ff 00 f0 ee"));
        row("bit order reversed", "ByteCopyBitRev", hex("01 80 0f a0"), 4, none, hex("80 01 f0 05 ee"));
        row("bit order reversed and inverted", "ByteCopyBitRevReverse", hex("01 0f"), 2, none,
            hex("7f 0f ee"));
        row("RGB swapped, whole pixels only", "ByteCopySwapRGB", QByteArray("abcdefg"), 7, none,
            QByteArray("cbafed\xEE\xEE"));
        row("RGB swapped, less than a pixel", "ByteCopySwapRGB", QByteArray("ab"), 2, none, hex("ee ee ee"));
        row("RGB swapped in place", "ByteSwapRGB", QByteArray("abcdefgh"), 6, none, QByteArray("cbafedgh"));
        row("RGB swapped in lines of 7 bytes", "ByteSwapRGBLines", QByteArray("abcdefgABCDEFGx"), 7, none,
            QByteArray("cbafedgCBAFEDGx"));
        row("1 bit to grey, white and black", "ByteCopy1bppTo8bpp", hex("a5 80"), 9,
            palette2(Qt::white, Qt::black), hex("00 ff 00 ff ff 00 ff 00 00 ee"));
        // The grey weights: 0.299 of red, 0.587 of green, 0.114 of blue.
        row("1 bit to grey, red and green", "ByteCopy1bppTo8bpp", hex("40"), 3, palette2(Qt::red, Qt::green),
            hex("4c 96 4c ee"));
        row("1 bit to grey, blue and grey", "ByteCopy1bppTo8bpp", hex("80"), 2,
            palette2(Qt::blue, QColor(100, 150, 200)), hex("8d 1d ee"));
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
        QVERIFY(makeFile(logPath(), {}));
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
        QVERIFY(makeFile(logPath(), {}));
        TempHome home;
        Bytes dib = makeDIB(4, 2, 8);
        SaveProcessBMP(dib.data(), dib.size(), 3, 0x1f, 2, 0);
        const QString file = home.filePath("Pictures/Page3_1f_2.bmp");
        QVERIFY(logText().contains("EERROR: Save Image: " + QFile::encodeName(file)));
        QVERIFY(QDir(home.path()).mkdir("Pictures"));
        SaveProcessBMP(dib.data(), dib.size(), 3, 0x1f, 2, 0);
        QCOMPARE(QImage(file, "BMP").size(), QSize(4, 2));
    }

    // ---- Aligning rows ----

    void alignAndUnalignRoundTrip_data() {
        QTest::addColumn<int>("width");
        row("padded rows", 5);
        row("rows without padding", 4);
    }
    void alignAndUnalignRoundTrip() {
        QVERIFY(makeFile(logPath(), {}));
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
        QVERIFY(makeFile(logPath(), {}));
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
        QVERIFY(!CreateBMPFileHeader(dib.data(), dib.size()));
        QVERIFY(!unAlignBitmap(dib.data(), dib.size()));
        QCOMPARE(AlignBitmap(dib.data(), dib.size()), nullptr);
        SaveBMP(dib.data(), dib.size(), QFile::encodeName(path).constData(), 0);
        QVERIFY(!QFile::exists(path));

        const QByteArray log = logText();
        for (const char* name : {"GetDIBHeaderSize", "FindDIBBits", "GetDIBSize", "GetDIBSizeMillimetres",
                                 "CreateBMPFileHeader", "unAlignBitmap", "AlignBitmap", "SaveBMP"})
            QVERIFY2(log.contains(QByteArray("E\tERROR: ") + name + ": "), name);
    }
};

QTEST_GUILESS_MAIN(TestSupportLibrary)
#include "tst_support.moc"
