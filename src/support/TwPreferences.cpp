#include "TwPreferences.h"

#include "OrvaDebug.h"
#include "TwPlist.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace fs = std::filesystem;

namespace {
// Holds an exclusive advisory lock on <file>.lock for as long as it lives. The preferences file
// itself cannot carry the lock: it is replaced by rename on every save.
class DomainLock {
public:
    explicit DomainLock(const std::string& lockPath) {
        m_fd = ::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
        if (m_fd < 0)
            return;
        while (::flock(m_fd, LOCK_EX) != 0 && errno == EINTR) {
        }
    }
    ~DomainLock() {
        if (m_fd >= 0)
            ::close(m_fd); // closing releases the lock
    }
    DomainLock(const DomainLock&) = delete;
    DomainLock& operator=(const DomainLock&) = delete;
    bool held() const { return m_fd >= 0; }

private:
    int m_fd = -1;
};

void (*g_chunkWrittenHook)() = nullptr;

bool writeAll(int fd, const std::string& bytes) {
    constexpr std::size_t kChunk = 64 * 1024;
    const char* p = bytes.data();
    std::size_t left = bytes.size();
    while (left > 0) {
        ssize_t n = ::write(fd, p, std::min(left, kChunk));
        if (n > 0 && g_chunkWrittenHook)
            g_chunkWrittenHook();
        if (n < 0 && errno == EINTR)
            continue;
        if (n <= 0)
            return false;
        p += n;
        left -= std::size_t(n);
    }
    return true;
}
} // namespace

void TwPreferences::setChunkWrittenHook(void (*hook)()) {
    g_chunkWrittenHook = hook;
}

std::string TwPreferences::defaultDirectory() {
    if (const char* xdg = std::getenv("XDG_CONFIG_HOME"); xdg && *xdg == '/')
        return xdg;
    if (const char* home = std::getenv("HOME"); home && *home)
        return std::string(home) + "/.config";
    return {};
}

TwPreferences::TwPreferences(std::string domain, std::string directory)
    : m_domain(std::move(domain)), m_directory(std::move(directory)) {}

std::string TwPreferences::filePath() const {
    if (m_domain.empty() || m_directory.empty())
        return {};
    return m_directory + "/" + m_domain + ".plist";
}

TwValue TwPreferences::loadFile(bool keepBrokenAside) {
    std::string path = filePath();
    std::error_code ec;
    if (path.empty() || !fs::exists(path, ec))
        return TwValue::dictionary();
    std::string error;
    TwValue values = TwPlistReadFile(path, &error);
    if (values.isDictionary())
        return values;
    OrvaLog(kOrvaLogError, "ERROR: preferences '%s' cannot be read (%s); starting from empty values\n",
            path.c_str(), error.empty() ? "not a dictionary" : error.c_str());
    if (keepBrokenAside) {
        // Before anything replaces it, the unreadable file is kept for the user to recover.
        std::string aside = path + ".unreadable-" + std::to_string(std::time(nullptr));
        fs::copy_file(path, aside, fs::copy_options::overwrite_existing, ec);
        if (ec)
            OrvaLog(kOrvaLogError, "ERROR: cannot keep '%s' aside: %s\n", path.c_str(), ec.message().c_str());
        else
            OrvaLog(kOrvaLogError, "ERROR: unreadable preferences kept as '%s'\n", aside.c_str());
    }
    return TwValue::dictionary();
}

TwValue TwPreferences::copyValue(const std::string& key) {
    std::lock_guard lock(m_mutex);
    if (filePath().empty())
        return {};
    // Callers get their own copy, as from the platform's preferences.
    if (auto p = m_pending.find(key); p != m_pending.end())
        return p->second.deepCopy();
    if (m_cache.isNull())
        m_cache = loadFile(false);
    return m_cache.dict()->value(key).deepCopy();
}

void TwPreferences::setValue(const std::string& key, const TwValue& value) {
    std::lock_guard lock(m_mutex);
    if (filePath().empty())
        return;
    m_pending[key] = value.deepCopy();
}

bool TwPreferences::writeFile(const TwValue& values) {
    std::string path = filePath();
    std::string tmp = path + ".tmp";
    std::string xml = TwPlistToXml(values);
    int fd = ::open(tmp.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (fd < 0) {
        OrvaLog(kOrvaLogError, "ERROR: cannot write preferences '%s': %s\n", tmp.c_str(),
                std::strerror(errno));
        return false;
    }
    bool ok = writeAll(fd, xml) && ::fsync(fd) == 0;
    ok = (::close(fd) == 0) && ok;
    if (ok && ::rename(tmp.c_str(), path.c_str()) != 0)
        ok = false;
    if (!ok) {
        OrvaLog(kOrvaLogError, "ERROR: cannot save preferences '%s': %s\n", path.c_str(),
                std::strerror(errno));
        ::unlink(tmp.c_str());
        return false;
    }
    // The rename itself is made durable by syncing the folder.
    int dir = ::open(m_directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (dir >= 0) {
        ::fsync(dir);
        ::close(dir);
    }
    return true;
}

bool TwPreferences::synchronize() {
    std::lock_guard lock(m_mutex);
    std::string path = filePath();
    if (path.empty())
        return false;
    std::error_code ec;
    fs::create_directories(m_directory, ec);
    DomainLock domainLock(path + ".lock");
    if (!domainLock.held()) {
        OrvaLog(kOrvaLogError, "ERROR: cannot lock preferences '%s': %s\n", path.c_str(),
                std::strerror(errno));
        return false;
    }
    TwValue current = loadFile(!m_pending.empty());
    bool ok = true;
    if (!m_pending.empty()) {
        for (auto& [key, value] : m_pending)
            current.dict()->set(key, value);
        ok = writeFile(current);
        if (ok)
            m_pending.clear();
    }
    m_cache = current;
    return ok;
}
