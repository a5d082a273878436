// The user's preferences for one domain (a data source's bundle identifier).
//
// Reads come from a cache loaded on first use; writes are kept until synchronize(), which takes
// the domain's lock, reads what is on disk now, lays the pending writes over it and replaces the
// file atomically. So a key saved meanwhile by another process or another model survives, and a
// crash leaves the old file or the new one. Keys of other components are written back exactly as
// the plist library read them; if one of them would not read back the same, nothing is saved. A
// list that several processes change (the profiles) is saved with updateValue, which merges under
// the lock. On macOS the platform's preferences are used instead.
#pragma once

#include "TwValue.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>

class TwPreferences {
public:
    // $XDG_CONFIG_HOME, else $HOME/.config.
    static std::string defaultDirectory();

    // An empty domain makes every read null and every synchronize() fail.
    explicit TwPreferences(std::string domain, std::string directory = defaultDirectory());

    const std::string& domain() const { return m_domain; }
    // <directory>/<domain>.plist
    std::string filePath() const;

    TwValue copyValue(const std::string& key);
    // A null value removes the key.
    void setValue(const std::string& key, const TwValue& value);
    // Computes the key's new value from the one saved when synchronize() saves, under the domain's
    // lock, after the writes and updates of the key made before; a null result removes the key.
    using Update = std::function<TwValue(const TwValue& saved)>;
    void updateValue(const std::string& key, Update update);
    // Writes pending changes and reloads; false when nothing could be written.
    bool synchronize();

    // Called after every chunk written to disk; lets a test stretch a save to kill it midway.
    static void setChunkWrittenHook(void (*hook)());

private:
    bool writeFile(const std::string& xml);

    std::string m_domain;
    std::string m_directory;
    std::mutex m_mutex;
    TwValue m_cache;
    std::map<std::string, Update> m_pending;
};
