// A bundle folder laid out as on macOS: Contents/Info.plist, Contents/Resources/<name>.<type>,
// Contents/Resources/<lang>.lproj/<table>.strings (string tables as property lists).
#pragma once

#include "TwValue.h"

#include <map>
#include <memory>
#include <mutex>
#include <string>

// The user's language: the first of LANGUAGE, LC_ALL, LC_MESSAGES and LANG that names one, cut
// to its language ("de_DE.UTF-8" is "de"); "en" when none does (C and POSIX name none).
std::string TwPreferredLanguage();

class TwBundle {
public:
    // The bundle at the folder, or null (logged) when it is not a folder.
    static std::shared_ptr<TwBundle> bundleWithPath(const std::string& path);
    // The bundle that holds this module's own code: the folder three levels above the module file
    // (<bundle>/Contents/MacOS/<module>), found through the module's address.
    static std::shared_ptr<TwBundle> moduleBundle();
    // Tests and hosts that keep the module elsewhere point it at its bundle folder.
    static void setModuleBundlePath(const std::string& path);

    const std::string& bundlePath() const { return m_path; }
    std::string bundleIdentifier() const;
    TwValue infoDictionary() const;
    TwValue objectForInfoDictionaryKey(const std::string& key) const;

    // Full path of the resource, or "" when it does not exist. Localized folders are searched
    // after the plain Resources folder.
    std::string pathForResource(const std::string& name, const std::string& type) const;

    // The platform's rule: the table's text for the key; if none, value when it is not empty;
    // otherwise the key itself.
    std::string localizedStringForKey(const std::string& key, const std::string& value,
                                      const std::string& table = "Localizable") const;
    // Whether a string table holds the key.
    bool hasLocalizedString(const std::string& key, const std::string& table = "Localizable") const;

    // Language folders in the order they are searched, e.g. "de.lproj", "en.lproj", "Base.lproj".
    std::vector<std::string> localizationFolders() const;

private:
    explicit TwBundle(std::string path);
    const TwDictionary* stringTable(const std::string& table) const;

    std::string m_path;
    mutable std::mutex m_mutex;
    mutable TwValue m_info;
    mutable bool m_infoLoaded = false;
    mutable std::map<std::string, TwValue> m_tables;
};
