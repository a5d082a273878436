// What the tests share: Qt Test and the standard library, the value type as test data, the
// diagnostic log and a home of the test's own, files written and read, a model definition the
// test shapes, and a recorder of what the module sends the data source.
#pragma once

#include "OrvaDebug.h"
#include "TwBundle.h"
#include "TwPlist.h"
#include "VmxUI.h"

#include <QtTest>

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <string>
#include <thread>
#include <tuple>
#include <vector>

#include <csignal>
#include <poll.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

Q_DECLARE_METATYPE(TwValue)

using namespace Qt::StringLiterals;

// A value as a failed comparison shows it.
inline char* toString(const TwValue& v) {
    return qstrdup(TwPlistToXml(v).c_str());
}

// What f makes of each item, in order.
template <class Items, class F> auto mapped(const Items& items, F f) {
    QList<std::decay_t<decltype(f(*std::begin(items)))>> out;
    for (const auto& item : items)
        out << f(item);
    return out;
}

// The current row's values of the named columns, in order:
// const auto [unit, path] = fetch<int, QString>("unit", "path").
template <class... T, class... Names> std::tuple<T...> fetch(Names... names) {
    static_assert(sizeof...(T) == sizeof...(Names));
    return {*static_cast<T*>(QTest::qData(names, qMetaTypeId<T>()))...};
}

// One row of a data function: row("tag", a, b) is QTest::newRow("tag") << a << b.
template <class... T> void row(const char* tag, const T&... values) {
    (QTest::newRow(tag) << ... << values);
}

// The columns of a data function, named in order: columns<int, QString>("unit", "path").
template <class... T, class... Names> void columns(Names... names) {
    static_assert(sizeof...(T) == sizeof...(Names));
    (QTest::addColumn<T>(names), ...);
}

// HOME and XDG_CONFIG_HOME in a fresh folder for the lifetime of the object, so that nothing the
// user or an earlier case saved is read and nothing of the user's is written.
class TempHome {
public:
    TempHome() : m_home(qgetenv("HOME")), m_config(qgetenv("XDG_CONFIG_HOME")) {
        qputenv("HOME", QFile::encodeName(path()));
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(config()));
    }
    ~TempHome() {
        qputenv("HOME", m_home);
        qputenv("XDG_CONFIG_HOME", m_config);
    }
    QString path() const { return m_dir.path(); }
    QString config() const { return m_dir.path() + "/.config"; }
    QString filePath(const QString& name) const { return m_dir.filePath(name); }

private:
    QTemporaryDir m_dir;
    QByteArray m_home, m_config;
};

// A program of this build run to its end: its exit status (-1 when it did not start, did not end
// within the time or ended by a signal) and what it wrote.
struct BuiltProgramRun {
    int exitCode = -1;
    QString out, err;
};
// Runs the program with the environment (QProcessEnvironment's "NAME=value" list), through the
// emulator a cross build's tests run under (VMX_TEST_EMULATOR, words split at blanks) when there
// is one, and waits at most timeoutMs. It is started with posix_spawn: QProcess's way of starting
// a child is refused under qemu's user-mode emulation.
inline BuiltProgramRun runBuiltProgram(const QString& program, const QStringList& arguments,
                                       const QStringList& environment, int timeoutMs) {
    QStringList words = QString::fromLocal8Bit(qgetenv("VMX_TEST_EMULATOR")).split(' ', Qt::SkipEmptyParts);
    words << program << arguments;
    std::vector<QByteArray> argBytes, envBytes;
    for (const QString& w : words)
        argBytes.push_back(w.toLocal8Bit());
    for (const QString& e : environment)
        envBytes.push_back(e.toLocal8Bit());
    std::vector<char*> argv, envp;
    for (QByteArray& b : argBytes)
        argv.push_back(b.data());
    for (QByteArray& b : envBytes)
        envp.push_back(b.data());
    argv.push_back(nullptr);
    envp.push_back(nullptr);

    BuiltProgramRun run;
    int out[2], err[2];
    if (pipe(out) != 0 || pipe(err) != 0)
        return run;
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_adddup2(&actions, out[1], 1);
    posix_spawn_file_actions_adddup2(&actions, err[1], 2);
    posix_spawn_file_actions_addclose(&actions, out[0]);
    posix_spawn_file_actions_addclose(&actions, err[0]);
    pid_t pid = 0;
    const int spawned = posix_spawnp(&pid, argv[0], &actions, nullptr, argv.data(), envp.data());
    posix_spawn_file_actions_destroy(&actions);
    close(out[1]);
    close(err[1]);
    QByteArray outBytes, errBytes;
    QElapsedTimer clock;
    clock.start();
    pollfd fds[2] = {{out[0], POLLIN, 0}, {err[0], POLLIN, 0}};
    int open = spawned == 0 ? 2 : 0;
    while (open > 0 && clock.elapsed() < timeoutMs) {
        if (poll(fds, 2, 100) <= 0)
            continue;
        for (pollfd& fd : fds) {
            if (fd.fd < 0 || !(fd.revents & (POLLIN | POLLHUP)))
                continue;
            char buffer[4096];
            const ssize_t n = read(fd.fd, buffer, sizeof buffer);
            if (n > 0) {
                (&fd == &fds[0] ? outBytes : errBytes).append(buffer, n);
            } else {
                fd.fd = -1;
                --open;
            }
        }
    }
    close(out[0]);
    close(err[0]);
    if (spawned != 0)
        return run;
    int status = 0;
    if (open > 0)
        kill(pid, SIGKILL); // out of time
    waitpid(pid, &status, 0);
    run.out = QString::fromUtf8(outBytes);
    run.err = QString::fromUtf8(errBytes);
    if (open == 0 && WIFEXITED(status))
        run.exitCode = WEXITSTATUS(status);
    return run;
}

// Sets the user's language (LANGUAGE, which the module reads first) while it lives.
class UserLanguage {
public:
    explicit UserLanguage(const char* language) : m_old(qgetenv("LANGUAGE")) {
        qputenv("LANGUAGE", language);
    }
    ~UserLanguage() { qputenv("LANGUAGE", m_old); }
    UserLanguage(const UserLanguage&) = delete;
    UserLanguage& operator=(const UserLanguage&) = delete;

private:
    QByteArray m_old;
};

// Writes the bytes, making the folders on the way.
inline void writeFile(const QString& path, const QByteArray& bytes) {
    QDir().mkpath(QFileInfo(path).path());
    QFile f(path);
    QVERIFY2(f.open(QIODevice::WriteOnly), qPrintable(path));
    f.write(bytes);
}

// The file's bytes from `from` (from the end when negative), at most n of them when n >= 0.
inline QByteArray readFile(const QString& path, qint64 from = 0, qint64 n = -1) {
    QFile f(path);
    if (!f.open(QIODevice::ReadOnly))
        return {};
    f.seek(from >= 0 ? from : qMax<qint64>(0, f.size() + from));
    return n >= 0 ? f.read(n) : f.readAll();
}

// Points the diagnostic log at a fresh file for the lifetime of the object.
class LogCapture {
public:
    LogCapture() : m_path(m_dir.filePath("orva.log")) {
        writeFile(m_path, {});
        OrvaSetLogPaths(QFile::encodeName(m_path).constData(), nullptr);
    }
    ~LogCapture() { OrvaSetLogPaths(nullptr, nullptr); }
    QString text() const { return QString::fromUtf8(readFile(m_path)); }
    int count(const QString& needle) const { return int(text().count(needle)); }

private:
    QTemporaryDir m_dir;
    QString m_path;
};

// A bundle's string table in the language.
inline void writeStrings(const QString& bundle, const TwValue& table, const QString& language = "en") {
    writeFile(bundle + "/Contents/Resources/" + language + ".lproj/Localizable.strings",
              QByteArray::fromStdString(TwPlistToXml(table)));
}

// Key paths with their values, "a.b=1 c=2.5 d=true e=text" (whole numbers, reals, true and
// false, else text), in order.
inline TwValue keyPaths(const QString& text) {
    TwValue out = TwValue::dictionary();
    for (const QString& item : text.split(' ', Qt::SkipEmptyParts)) {
        const QString v = item.section('=', 1);
        bool whole = false, real = false;
        const qlonglong n = v.toLongLong(&whole);
        const double d = v.toDouble(&real);
        out.dict()->set(item.section('=', 0, 0).toStdString(), whole  ? TwValue(n)
                                                               : real ? TwValue(d)
                                                               : v == "true" || v == "false"
                                                                   ? TwValue(v == "true")
                                                                   : TwValue(v.toStdString()));
    }
    return out;
}

// The value type's containers, in short.
inline TwValue dict(std::initializer_list<std::pair<std::string, TwValue>> entries = {}) {
    return TwValue::dictionary(entries);
}
inline TwValue array(std::initializer_list<TwValue> items = {}) {
    return TwValue::array(items);
}

// An entry of a choice list, and the values (or another key) of a list's entries.
inline TwValue choice(const TwValue& value, const char* display) {
    return dict({{"value", value}, {"display", display}});
}
template <class T = int> QList<T> codes(const TwValue& list, const char* key = "value") {
    QList<T> out;
    if (auto a = list.list())
        for (auto& e : *a) {
            const TwValue v = e.dict() ? e.dict()->value(key) : TwValue();
            if constexpr (std::is_same_v<T, int>)
                out.append(v.intValue());
            else
                out.append(v.stringValue());
        }
    return out;
}

// A custom paper as the preferences keep it, in millimetres.
inline TwValue customPaper(const std::string& name, double width, double length) {
    return dict({{"Name", name}, {"Width", width}, {"Length", length}});
}

// A model definition the test shapes.
class TestModelDef : public TwModelDefFile {
public:
    TwValue rules = TwValue::dictionary();
    TwValue options = TwValue::dictionary();
    TwValue controls = TwValue::dictionary();
    TwValue adf = dict({{"MinWidth", 2.0}, {"MinHeight", 2.0}, {"MaxWidth", 8.504}, {"MaxHeight", 118.0}});
    double physicalWidth = 8.5;
    double minHeight = 2.0;

    TwValue UIEnable() const override { return rules; }
    TwValue UIOptions() const override { return options; }
    TwValue UIControl() const override { return controls; }
    TwValue FeederADF() const override { return adf; }
    TwValue FeederFlatbed() const override { return TwValue::dictionary(); }
    double getPhysicalWidth() const override { return physicalWidth; }
    double getMinHeight() const override { return minHeight; }
};

// What the module sent to the data source's callback, in order; recordEvent is the callback.
struct SentEvent {
    std::uint16_t code;
    void* data;
    TwCapabilityRecord record; // of event 1
};
inline std::vector<SentEvent> g_sent;
inline std::uint16_t recordEvent(std::uint16_t code, void* data) {
    SentEvent e{code, data, {}};
    if (code == kVmxEventSetCapability && data)
        std::memcpy(&e.record, data, sizeof e.record);
    g_sent.push_back(e);
    return 0;
}
using Codes = QList<std::uint16_t>;
inline Codes sentCodes() {
    return mapped(g_sent, [](const SentEvent& e) { return e.code; });
}
inline int sentCount(std::uint16_t code) {
    return int(std::ranges::count_if(g_sent, [&](const SentEvent& e) { return e.code == code; }));
}
