#include "TwBundle.h"

#include "OrvaDebug.h"
#include "TwPlist.h"

#include <dlfcn.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace {
std::mutex g_moduleMutex;
std::string g_moduleBundlePath;
} // namespace

std::string TwPreferredLanguage() {
    for (const char* var : {"LANGUAGE", "LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* v = std::getenv(var);
        if (!v || !*v)
            continue;
        std::string s(v);
        s = s.substr(0, s.find_first_of(":._@"));
        if (!s.empty() && s != "C" && s != "POSIX")
            return s;
    }
    return "en";
}

TwBundle::TwBundle(std::string path) : m_path(std::move(path)) {}

std::shared_ptr<TwBundle> TwBundle::bundleWithPath(const std::string& path) {
    std::error_code ec;
    if (path.empty() || !fs::is_directory(path, ec)) {
        OrvaLog(kOrvaLogError, "ERROR: %s: not a bundle folder: '%s'\n", __func__, path.c_str());
        return nullptr;
    }
    return std::shared_ptr<TwBundle>(new TwBundle(fs::absolute(path, ec).lexically_normal().string()));
}

void TwBundle::setModuleBundlePath(const std::string& path) {
    std::lock_guard lock(g_moduleMutex);
    g_moduleBundlePath = path;
}

std::shared_ptr<TwBundle> TwBundle::moduleBundle() {
    std::lock_guard lock(g_moduleMutex);
    static std::shared_ptr<TwBundle> cached;
    static std::string cachedFor = "\x01";
    if (cachedFor == g_moduleBundlePath)
        return cached;
    std::string path = g_moduleBundlePath;
    if (path.empty()) {
        Dl_info info{};
        if (dladdr(reinterpret_cast<void*>(&TwBundle::moduleBundle), &info) && info.dli_fname) {
            std::error_code ec;
            fs::path module = fs::canonical(info.dli_fname, ec);
            fs::path contents = module.parent_path().parent_path();
            if (!ec && contents.filename() == "Contents")
                path = contents.parent_path().string();
        }
    }
    cachedFor = g_moduleBundlePath;
    cached = path.empty() ? nullptr : bundleWithPath(path);
    return cached;
}

TwValue TwBundle::infoDictionary() const {
    std::lock_guard lock(m_mutex);
    if (!m_infoLoaded) {
        m_infoLoaded = true;
        std::string file = m_path + "/Contents/Info.plist", error;
        std::error_code ec;
        if (fs::exists(file, ec)) {
            m_info = TwPlistReadFile(file, &error);
            if (!m_info.isDictionary()) {
                OrvaLog(kOrvaLogError, "ERROR: %s: '%s': %s\n", __func__, file.c_str(),
                        error.empty() ? "not a dictionary" : error.c_str());
                m_info = {};
            }
        }
        if (m_info.isNull())
            m_info = TwValue::dictionary();
    }
    return m_info;
}

TwValue TwBundle::objectForInfoDictionaryKey(const std::string& key) const {
    return infoDictionary().dict()->value(key);
}

std::string TwBundle::bundleIdentifier() const {
    TwValue id = objectForInfoDictionaryKey("CFBundleIdentifier");
    return id.isString() ? *id.str() : std::string();
}

std::vector<std::string> TwBundle::localizationFolders() const {
    std::vector<std::string> folders;
    auto add = [&](const std::string& lang) {
        std::string f = lang + ".lproj";
        if (std::find(folders.begin(), folders.end(), f) == folders.end())
            folders.push_back(f);
    };
    add(TwPreferredLanguage());
    TwValue region = objectForInfoDictionaryKey("CFBundleDevelopmentRegion");
    if (region.isString() && !region.str()->empty())
        add(*region.str());
    add("en");
    add("English");
    add("Base");
    return folders;
}

std::string TwBundle::pathForResource(const std::string& name, const std::string& type) const {
    std::string file = type.empty() ? name : name + "." + type;
    std::error_code ec;
    std::string plain = m_path + "/Contents/Resources/" + file;
    if (fs::exists(plain, ec))
        return plain;
    for (auto& folder : localizationFolders()) {
        std::string localized = m_path + "/Contents/Resources/" + folder + "/" + file;
        if (fs::exists(localized, ec))
            return localized;
    }
    return {};
}

const TwDictionary* TwBundle::stringTable(const std::string& table) const {
    {
        std::lock_guard lock(m_mutex);
        auto it = m_tables.find(table);
        if (it != m_tables.end())
            return it->second.dict();
    }
    // Only a table not loaded yet needs the language folders (they take the lock themselves). The
    // first language folder that holds the table wins, as on the platform.
    TwValue strings;
    std::error_code ec;
    for (auto& folder : localizationFolders()) {
        std::string file = m_path + "/Contents/Resources/" + folder + "/" + table + ".strings";
        if (!fs::exists(file, ec))
            continue;
        std::string error;
        strings = TwPlistReadFile(file, &error);
        if (!strings.isDictionary()) {
            OrvaLog(kOrvaLogError, "ERROR: %s: string table '%s' is unreadable: %s\n", __func__, file.c_str(),
                    error.empty() ? "not a dictionary" : error.c_str());
            strings = {};
            continue;
        }
        break;
    }
    if (!strings.isDictionary())
        strings = TwValue::dictionary();
    std::lock_guard lock(m_mutex);
    // A table another thread loaded meanwhile is kept.
    return m_tables.emplace(table, strings).first->second.dict();
}

bool TwBundle::hasLocalizedString(const std::string& key, const std::string& table) const {
    return stringTable(table)->value(key).isString();
}

std::string TwBundle::localizedStringForKey(const std::string& key, const std::string& value,
                                            const std::string& table) const {
    TwValue text = stringTable(table)->value(key);
    if (text.isString())
        return *text.str();
    return value.empty() ? key : value;
}
