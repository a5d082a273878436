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

namespace {
// The document on disk now; an empty one when there is no file. A file that cannot be parsed is
// logged and read as empty; when it is about to be replaced it is first kept aside for the user.
TwPlistDocument loadDocument(const std::string& path, bool keepBrokenAside) {
    std::error_code ec;
    if (path.empty() || !fs::exists(path, ec))
        return {};
    std::string error;
    if (auto document = TwPlistDocument::readFile(path, &error))
        return std::move(*document);
    OrvaLog(kOrvaLogError, "ERROR: preferences '%s' cannot be read (%s); starting from empty values\n",
            path.c_str(), error.c_str());
    if (keepBrokenAside) {
        std::string aside = path + ".unreadable-" + std::to_string(std::time(nullptr));
        fs::copy_file(path, aside, fs::copy_options::overwrite_existing, ec);
        if (ec)
            OrvaLog(kOrvaLogError, "ERROR: cannot keep '%s' aside: %s\n", path.c_str(), ec.message().c_str());
        else
            OrvaLog(kOrvaLogError, "ERROR: unreadable preferences kept as '%s'\n", aside.c_str());
    }
    return {};
}
} // namespace

TwValue TwPreferences::copyValue(const std::string& key) {
    std::lock_guard lock(m_mutex);
    if (filePath().empty())
        return {};
    if (m_cache.isNull())
        m_cache = loadDocument(filePath(), false).toValue();
    TwValue saved = m_cache.dict()->value(key);
    // Callers get their own copy, as from the platform's preferences.
    if (auto p = m_pending.find(key); p != m_pending.end())
        return p->second(saved).deepCopy();
    return saved.deepCopy();
}

void TwPreferences::setValue(const std::string& key, const TwValue& value) {
    std::lock_guard lock(m_mutex);
    if (filePath().empty())
        return;
    m_pending[key] = [value = value.deepCopy()](const TwValue&) {
        return value.deepCopy();
    };
}

void TwPreferences::updateValue(const std::string& key, Update update) {
    std::lock_guard lock(m_mutex);
    if (filePath().empty() || !update)
        return;
    auto p = m_pending.find(key);
    if (p == m_pending.end())
        m_pending[key] = std::move(update);
    else
        p->second = [before = std::move(p->second), update = std::move(update)](const TwValue& saved) {
            return update(before(saved));
        };
}

bool TwPreferences::writeFile(const std::string& xml) {
    std::string path = filePath();
    std::string tmp = path + ".tmp";
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
    TwPlistDocument document = loadDocument(path, !m_pending.empty());
    if (m_pending.empty()) {
        m_cache = document.toValue();
        return true;
    }
    std::vector<std::string> others;
    for (const std::string& key : document.keys())
        if (!m_pending.contains(key))
            others.push_back(key);
    for (auto& [key, update] : m_pending) {
        if (!document.setValue(key, update(document.value(key))))
            OrvaLog(kOrvaLogError,
                    "ERROR: preferences '%s': the value of '%s' is nested deeper than %zu levels; it is not "
                    "saved and the saved one stays\n",
                    path.c_str(), key.c_str(), kTwPlistMaxDepth);
    }
    std::string xml = document.toXml();
    // A value of another component that the XML cannot carry would come back changed: rather than
    // rewrite it, keep the file as it is.
    auto written = TwPlistDocument::parse(xml);
    for (const std::string& key : others) {
        if (!written || !written->sameValue(key, document)) {
            OrvaLog(kOrvaLogError,
                    "ERROR: preferences '%s': the key '%s' would not be saved as it was read; the file is "
                    "kept and nothing is saved\n",
                    path.c_str(), key.c_str());
            return false;
        }
    }
    if (!writeFile(xml))
        return false;
    m_pending.clear();
    m_cache = document.toValue();
    return true;
}
