// Profiles, the untitled profile, custom papers, custom gammas and customize margins: what the
// user keeps between sessions, and how a kept setting is applied to the store.
#include "TwainDialogData.h"

#include "OrvaDebug.h"
#include "TwBundle.h"
#include "TwPreferences.h"
#include "TwScoped.h"

#include <algorithm>

namespace {
constexpr const char* kProfilesKey = "profiles";
constexpr const char* kUntitledProfileKey = "untitle profile";
constexpr const char* kProfileNameKey = "profile name";
constexpr const char* kCustomPapersKey = "custom papers";
constexpr const char* kCustomGammaKey = "custom gamma";
constexpr const char* kCustomizeKey = "customize";
constexpr const char* kRunnedKey = "Runned";

std::string profileName(const TwValue& profile) {
    auto d = profile.dict();
    TwValue name = d ? d->value("ProfileName") : TwValue();
    return name.isString() ? *name.str() : std::string();
}

// A saved list of profiles with one change laid over it: the profile put in place of the one of
// that name (in any letter case) or appended, or, without a profile, the one of exactly that name
// removed. What is not a list counts as an empty one.
TwValue withProfileChange(const TwValue& saved, const std::string& name, const TwValue& profile) {
    TwValue list = saved.isArray() ? saved : TwValue::array();
    auto& entries = *list.list();
    if (profile.isNull()) {
        std::erase_if(entries, [&](const TwValue& p) { return profileName(p) == name; });
        return list;
    }
    auto same = std::find_if(entries.begin(), entries.end(),
                             [&](const TwValue& p) { return TwEqualsIgnoringCase(profileName(p), name); });
    if (same != entries.end())
        *same = profile;
    else
        entries.push_back(profile);
    return list;
}

const char* gammaFamily(bool isColor) {
    return isColor ? "Color" : "Gray";
}
} // namespace

// ---- Preferences ---------------------------------------------------------------------------------

TwPreferences* TwainDialogData::preferences() {
    if (!m_preferences) {
        std::string id = m_bundleDS ? m_bundleDS->bundleIdentifier() : std::string();
        if (id.empty())
            return nullptr;
        m_preferences = std::make_unique<TwPreferences>(id);
    }
    return m_preferences.get();
}

TwValue TwainDialogData::preferenceValue(const std::string& key) {
    TwPreferences* prefs = preferences();
    return prefs ? prefs->copyValue(key) : TwValue();
}

bool TwainDialogData::savePreference(const std::string& key, const TwValue& value) {
    TwPreferences* prefs = preferences();
    if (!prefs)
        return false;
    prefs->setValue(key, value);
    return prefs->synchronize();
}

void TwainDialogData::setValueForKeyPathUnheardBySelf(const TwValue& value, std::string_view keyPath) {
    setValueForKeyPathWithoutNotification(value, keyPath);
    m_observation.didChangeForOthers(keyPath, this);
}

// ---- Profiles ------------------------------------------------------------------------------------

bool TwainDialogData::prepareFactoryProfiles() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogData::prepareFactoryProfiles");
    TwPreferences* prefs = preferences();
    if (!prefs || !prefs->copyValue(kRunnedKey).isNull())
        return false;
    bool saved = false;
    if (!prefs->copyValue(kProfilesKey).isArray()) {
        TwValue profile = valueForKey("Default").deepCopy();
        profile.dict()->set("ProfileName", localizedString("IDS_DEFAULT_SETTINGNAME"));
        // The factory profile keeps its paper source and image type only where it has a "Data"
        // level of its own, which a copy of the Default section never has.
        if (auto data = profile.dict()->value("Data").dict()) {
            data->set("PaperSource", 0);
            data->set("ImageType", 0);
        }
        m_CustomProfiles = TwValue::array({profile});
        m_profileChanges.emplace_back(profileName(profile), profile);
        saved = saveCustomProfile();
    }
    prefs->setValue(kRunnedKey, 1);
    prefs->synchronize();
    return saved;
}

void TwainDialogData::readProfiles() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogData::readProfiles");
    TwValue temporary(localizedString("IDS_TEMPORARY_SETTINGNAME_NEW"));
    setValueForKeyPath(temporary, "profiles.temporary");
    if (!preferences())
        return;

    m_CustomProfiles = TwValue::array();
    TwValue stored = preferenceValue(kProfilesKey);
    if (auto list = stored.list()) {
        for (auto& profile : *list) {
            if (profile.isDictionary() && !profileName(profile).empty())
                m_CustomProfiles.list()->push_back(profile);
            else
                OrvaLog(kOrvaLogError, "ERROR: %s: a stored profile without a name is ignored\n",
                        "TwainDialogData::readProfiles");
        }
    } else if (!stored.isNull()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: stored profiles are not a list; none are used\n",
                "TwainDialogData::readProfiles");
    }

    TwValue name = valueForKeyPath("profiles.name");
    bool saved = false;
    for (auto& profile : *m_CustomProfiles.list())
        saved = saved || (name.isString() && profileName(profile) == *name.str());
    if (!saved)
        name = temporary;

    auto content = TwValue::array({temporary});
    for (auto& profile : *m_CustomProfiles.list()) {
        TwValue n(profileName(profile));
        if (!n.isEqual(temporary))
            content.list()->push_back(n);
    }
    willChangeValueForKey("profiles.content");
    willChangeValueForKey("profiles.name");
    setValueForKeyPath(content, "profiles.content");
    setValueForKeyPath(name, "profiles.name");
    didChangeValueForKey("profiles.content");
    didChangeValueForKey("profiles.name");
}

int TwainDialogData::ProfileCount() const {
    auto list = m_CustomProfiles.list();
    return list ? static_cast<int>(list->size()) : 0;
}

bool TwainDialogData::IsProfileExist(const std::string& name) const {
    if (auto list = m_CustomProfiles.list())
        for (auto& profile : *list)
            if (TwEqualsIgnoringCase(profileName(profile), name))
                return true;
    return false;
}

bool TwainDialogData::AddCustomProfile(const std::string& name) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%s)\n", "TwainDialogData::AddCustomProfile", name.c_str());
    TwValue profile = valueForKey("Data").deepCopy();
    profile.dict()->set("ProfileName", name);
    if (!m_CustomProfiles.list())
        m_CustomProfiles = TwValue::array();
    auto& list = *m_CustomProfiles.list();
    auto same = std::find_if(list.begin(), list.end(),
                             [&](const TwValue& p) { return TwEqualsIgnoringCase(profileName(p), name); });
    if (same != list.end())
        *same = profile;
    else
        list.push_back(profile);
    m_profileChanges.emplace_back(name, profile);
    saveCustomProfile();

    TwScopedValue inProfile(bInProfileProcess, true);
    readProfiles();
    // The new profile is the current setting already: selecting it must not apply it again.
    setValueForKeyPathUnheardBySelf(TwValue(name), "profiles.name");
    return true;
}

bool TwainDialogData::deleteCustomProfile(const std::string& name) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%s)\n", "TwainDialogData::deleteCustomProfile", name.c_str());
    TwValue selection = valueForKeyPath("profiles.temporary");
    if (auto list = m_CustomProfiles.list()) {
        auto it = std::find_if(list->begin(), list->end(),
                               [&](const TwValue& p) { return profileName(p) == name; });
        if (it != list->end()) {
            std::size_t index = std::size_t(it - list->begin());
            list->erase(it);
            if (!list->empty())
                selection = TwValue(profileName((*list)[std::min(index, list->size() - 1)]));
        }
    }
    m_profileChanges.emplace_back(name, TwValue());
    saveCustomProfile();
    readProfiles();
    myChangeValue(selection, "profiles.name");
    return true;
}

bool TwainDialogData::saveCustomProfile() {
    TwPreferences* prefs = preferences();
    if (!prefs)
        return false;
    // Another process may have saved profiles since this one read them: each change made here is
    // laid over the list as it is saved now, so that its additions and deletions stay too.
    prefs->updateValue(kProfilesKey, [changes = std::move(m_profileChanges)](const TwValue& saved) {
        TwValue list = saved.deepCopy();
        for (auto& [name, profile] : changes)
            list = withProfileChange(list, name, profile);
        return list;
    });
    m_profileChanges.clear();
    return prefs->synchronize();
}

void TwainDialogData::saveUntitleProfile() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogData::saveUntitleProfile");
    TwPreferences* prefs = preferences();
    if (!prefs)
        return;
    prefs->setValue(kUntitledProfileKey, valueForKey("Data"));
    TwValue name = valueForKeyPath("profiles.name");
    prefs->setValue(kProfileNameKey, name.isEqual(valueForKeyPath("profiles.temporary")) ? TwValue() : name);
    prefs->synchronize();
}

void TwainDialogData::readUntitleProfile() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogData::readUntitleProfile");
    TwValue name = preferenceValue(kProfileNameKey);
    if (name.isString()) {
        TwValue found;
        if (auto list = m_CustomProfiles.list())
            for (auto& profile : *list)
                if (profileName(profile) == *name.str()) {
                    found = profile;
                    break;
                }
        if (found) {
            TwScopedValue inProfile(bInProfileProcess, true);
            SettingApply(found);
            setValueForKeyPathUnheardBySelf(TwValue(*name.str()), "profiles.name");
            return;
        }
        // The profile was deleted meanwhile (by another program): the last setting used stands.
        OrvaLog(kOrvaLogError, "ERROR: %s: the last profile '%s' no longer exists\n",
                "TwainDialogData::readUntitleProfile", name.str()->c_str());
    } else if (!name.isNull()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: the stored profile name is not text; ignored\n",
                "TwainDialogData::readUntitleProfile");
        return;
    }
    bInProfileProcess = false;
    TwValue untitled = preferenceValue(kUntitledProfileKey);
    if (untitled.isDictionary()) {
        TwScopedValue inLoad(bInLoadProfile, true);
        SettingApply(untitled);
    }
}

void TwainDialogData::restoreDefault() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogData::restoreDefault");
    SettingApply(valueForKey("Default"));
}

void TwainDialogData::setDictToDictForPath(const TwValue& source, const std::string& prefix) {
    if (!source.isDictionary())
        return;
    for (auto& leaf : allKeyPaths(nullptr, source))
        setValueForKeyPath(dictionaryRead(source, leaf), prefix + "." + leaf);
}

void TwainDialogData::setDictToDictCopy(const TwValue& source, const TwValue& destination) {
    if (!source.isDictionary() || !destination.isDictionary())
        return;
    for (auto& leaf : allKeyPaths(nullptr, source))
        setValue(dictionaryRead(source, leaf), destination, keyPathComponents(leaf));
}

void TwainDialogData::SettingApply(const TwValue& profileIn) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogData::SettingApply");
    if (!profileIn.isDictionary()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: the profile is not a dictionary; nothing applied\n",
                "TwainDialogData::SettingApply");
        return;
    }
    // Reading a profile fills in missing levels; the stored profile itself stays as it was saved.
    TwValue profile = profileIn.deepCopy();

    for (const char* family : kSideFamilies) {
        std::string f(family);
        setValueForKeyPath(TwValue(true), "Data." + f + ".Keep2SideSame");
        std::string sideKey = "temp." + f + "Side";
        if (valueForKeyPath(sideKey).isNull())
            setValueForKeyPath(TwValue(-1), sideKey);
        addSelfObserverForKeyPath(sideKey, kTwObserveNew | kTwObserveOld | kTwObserveInitial);
    }

    std::string dataPrefix = "Data";
    std::vector<std::string> keyPaths = allKeyPaths(&dataPrefix, valueForKey("Data"));
    if (keyPaths.empty()) {
        setDictToDictForPath(valueForKey("Default"), "Data");
        validateValues();
    } else {
        for (auto& k : keyPaths)
            willChangeValueForKey(k);
        for (auto& k : keyPaths) {
            auto keys = keyPathComponents(k);
            if (keys.size() < 2)
                continue;
            TwValue v = dictionaryRead(profile, std::vector<std::string>(keys.begin() + 1, keys.end()));
            if (!v.isNull())
                setValueForKeyPath(v, k);
        }
        validateValues();
        for (auto& k : keyPaths)
            didChangeValueForKey(k);

        TwValue unit = dictionaryRead(profile, std::vector<std::string>{"Area", "Unit"});
        bool inches = unit.isNumber() && unit.intValue() == 0;
        std::vector<std::pair<std::string, TwValue>> working;
        for (auto& k : keyPaths) {
            auto tempKey = GetTempKey(k, m_dictData);
            if (!tempKey)
                continue;
            auto keys = keyPathComponents(k);
            TwValue v = dictionaryRead(profile, std::vector<std::string>(keys.begin() + 1, keys.end()));
            if (v.isNull())
                continue;
            if (inches && k.starts_with("Data.Area.Measure") && v.isNumber())
                v = TwValue(static_cast<float>(v.doubleValue() / kTwMillimetresPerInch));
            working.emplace_back(*tempKey, v);
        }
        for (auto& [tempKey, v] : working)
            willChangeValueForKey(tempKey);
        for (auto& [tempKey, v] : working)
            setValueForKeyPath(v, tempKey);
        validateValues();
        for (auto& [tempKey, v] : working)
            didChangeValueForKey(tempKey);
    }

    if (!valueForKeyPath("enable.Duplex").boolValue()) {
        for (const char* family : kSideFamilies) {
            setValueForKeyPath(TwValue(0), std::string("temp.") + family + "Side");
            setValueForKeyPath(TwValue(0), std::string("Data.") + family + "Side");
        }
    }
    for (const char* family : kSideFamilies)
        setSideTextFor(family);
    SetGrayDPI();
    // A profile is data from outside: its areas are fitted to its paper like any others.
    ValidateAreaRectAll();
}

// ---- Custom papers -------------------------------------------------------------------------------

void TwainDialogData::readCustomPaperSize() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogData::readCustomPaperSize");
    m_CustomPapers = TwValue::array();
    TwValue stored = preferenceValue(kCustomPapersKey);
    if (auto list = stored.list()) {
        for (auto& paper : *list)
            if (paper.isDictionary())
                m_CustomPapers.list()->push_back(paper);
    } else if (!stored.isNull()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: stored custom papers are not a list; none are used\n",
                "TwainDialogData::readCustomPaperSize");
    }
    updateContentPaperSizeAll();
    calcAutoCropLength();
}

bool TwainDialogData::saveCustomPaperSize() {
    return savePreference(kCustomPapersKey, m_CustomPapers.isArray() ? m_CustomPapers : TwValue::array());
}

bool TwainDialogData::customPaperExist(const TwValue& name) const {
    if (auto list = m_CustomPapers.list())
        for (auto& paper : *list)
            if (paper.dict() && paper.dict()->value("Name").isEqual(name))
                return true;
    return false;
}

// ---- Custom gammas -------------------------------------------------------------------------------

void TwainDialogData::readCustomGamma() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogData::readCustomGamma");
    m_CustomGammas = TwValue::dictionary({{"Color", TwValue::array()}, {"Gray", TwValue::array()}});
    TwValue stored = preferenceValue(kCustomGammaKey);
    if (auto d = stored.dict()) {
        for (const char* family : {"Color", "Gray"}) {
            auto list = d->value(family).list();
            if (!list)
                continue;
            for (auto& gamma : *list) {
                if (!gamma.isDictionary())
                    continue;
                TwValue copy = TwValue::dictionary();
                setDictToDictCopy(gamma, copy);
                m_CustomGammas.dict()->value(family).list()->push_back(copy);
            }
        }
    } else if (!stored.isNull()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: stored custom gammas are not a dictionary; none are used\n",
                "TwainDialogData::readCustomGamma");
    }
    updataGammaContentsWithColor(true);
    updataGammaContentsWithColor(false);
}

bool TwainDialogData::saveCustomGamma() {
    return savePreference(kCustomGammaKey,
                          m_CustomGammas.isDictionary() ? m_CustomGammas : TwValue::dictionary());
}

TwValue TwainDialogData::customGammasWithColor(bool isColor) const {
    auto d = m_CustomGammas.dict();
    return d ? d->value(gammaFamily(isColor)) : TwValue();
}

std::vector<std::string> TwainDialogData::customGammaNamesWithColor(bool isColor) const {
    std::vector<std::string> names;
    if (auto list = customGammasWithColor(isColor).list())
        for (auto& gamma : *list)
            names.push_back(gamma.dict() ? gamma.dict()->value("name").stringValue() : std::string());
    return names;
}

TwValue TwainDialogData::customGamme(const std::string& name, bool isColor) const {
    if (auto list = customGammasWithColor(isColor).list())
        for (auto& gamma : *list)
            if (gamma.dict() && gamma.dict()->value("name").isEqual(TwValue(name)))
                return gamma;
    return {};
}

void TwainDialogData::setCustomGamme(const std::string& name, bool isColor, const TwValue& gamma) {
    TwValue target = customGamme(name, isColor);
    if (target.isNull()) {
        if (!m_CustomGammas.isDictionary())
            m_CustomGammas = TwValue::dictionary({{"Color", TwValue::array()}, {"Gray", TwValue::array()}});
        TwValue list = m_CustomGammas.dict()->value(gammaFamily(isColor));
        if (!list.isArray()) {
            list = TwValue::array();
            m_CustomGammas.dict()->set(gammaFamily(isColor), list);
        }
        target = TwValue::dictionary({{"name", name}});
        list.list()->push_back(target);
        updataGammaContentsWithColor(isColor);
    } else if (auto d = gamma.dict()) {
        target.dict()->setPropertiesWith(*d);
    }
    if (auto d = gamma.dict())
        for (auto& [key, value] : *d)
            if (key != "name")
                target.dict()->set(key, value);
}

void TwainDialogData::deleteCustomGamme(const std::string& name, bool isColor) {
    auto list = customGammasWithColor(isColor).list();
    if (!list)
        return;
    auto it = std::find_if(list->begin(), list->end(), [&](const TwValue& g) {
        TwValue n = g.dict() ? g.dict()->value("name") : TwValue();
        return !n.isNull() && n.isEqual(TwValue(name));
    });
    if (it == list->end())
        return;
    list->erase(it);
    saveCustomGamma();
    updataGammaContentsWithColor(isColor);
}

bool TwainDialogData::gammaExist(const TwValue& name, const TwValue& menu) {
    if (!name.isString())
        return false;
    if (auto list = menu.list())
        for (auto& entry : *list)
            if (entry.dict() && entry.dict()->value("value").isEqual(name))
                return true;
    return false;
}

TwValue TwainDialogData::gammaContentsWithColor(bool isColor) {
    auto menu = TwValue::array();
    if (auto builtIn = valueForKeyPath("content.Gamma").list())
        menu.list()->insert(menu.list()->end(), builtIn->begin(), builtIn->end());
    for (auto& name : customGammaNamesWithColor(isColor))
        menu.list()->push_back(TwValue::dictionary({{"value", name}, {"display", name}}));
    return menu;
}

void TwainDialogData::updataGammaContentsWithColor(bool isColor) {
    setValueForKeyPath(gammaContentsWithColor(isColor),
                       std::string("content.") + gammaFamily(isColor) + ".Gamma");
}

// ---- Customize margins ---------------------------------------------------------------------------

void TwainDialogData::readCustomize() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogData::readCustomize");
    TwValue stored = preferenceValue(kCustomizeKey);
    struct Family {
        const char* name;
        long long max;
    };
    for (Family family : {Family{"BorderRemoval", 4318}, Family{"RemoveShadow", 254}}) {
        for (const char* side : {"left", "top", "right", "bottom"}) {
            TwValue v = dictionaryRead(stored, std::vector<std::string>{family.name, side});
            long long margin = v.isNumber() ? std::clamp<long long>(v.longLongValue(), 0, family.max) : 30;
            setValueForKeyPath(TwValue(margin), std::string("Customize.") + family.name + "." + side);
        }
    }
}

void TwainDialogData::saveCustomize() {
    savePreference(kCustomizeKey, valueForKey("Customize"));
}

void TwainDialogData::resetCustomize() {
    if (TwPreferences* prefs = preferences()) {
        prefs->setValue(kCustomizeKey, TwValue());
        prefs->synchronize();
    }
    readCustomize();
}

// ---- Validation ----------------------------------------------------------------------------------

void TwainDialogData::validateValues() {
    validatePaperSourceValues();
    validateGammaValues();
    validatePaperValues();
}

void TwainDialogData::validatePaperSourceValues() {
    TwValue source = valueForKeyPath("Data.PaperSource");
    if (auto list = valueForKeyPath("content.PaperSource").list())
        for (auto& entry : *list)
            if (entry.dict() && source.isNumber() &&
                entry.dict()->value("value").intValue() == source.intValue())
                return;
    setValueForKeyPath(valueForKeyPath("Default.PaperSource"), "Data.PaperSource");
}

void TwainDialogData::validateGammaValues() {
    struct Side {
        const char* key;
        const char* family;
        int side;
        bool color;
    };
    static const Side sides[] = {
        {"Data.ColorImage.Back", "ColorImage", 1, true},
        {"Data.ColorImage.Front", "ColorImage", 0, true},
        {"Data.BinaryImage.Front", "BinaryImage", 0, false},
        {"Data.BinaryImage.Back", "BinaryImage", 1, false},
        {"Data.GrayImage.Front", "GrayImage", 0, false},
        {"Data.GrayImage.Back", "GrayImage", 1, false},
    };
    for (const Side& s : sides) {
        std::string gammaKey = std::string(s.key) + ".Gamma";
        TwValue gamma = valueForKeyPath(gammaKey);
        if (!gamma.isString())
            continue;
        TwValue menu = valueForKeyPath(s.color ? "content.Color.Gamma" : "content.Gray.Gamma");
        if (gammaExist(gamma, menu))
            continue;
        setValueForKeyPath(TwValue(0), gammaKey);
        TwValue shown = valueForKeyPath(std::string("temp.") + s.family + "Side");
        if (shown.isNumber() && shown.intValue() == s.side)
            setValueForKeyPath(TwValue(0), std::string("temp.") + s.family + ".Gamma");
    }
}

void TwainDialogData::validatePaperValues() {
    TwValue paper = valueForKeyPath("Data.PaperSize");
    if (paper.isString() && !customPaperExist(paper))
        myChangeValue(TwValue(static_cast<unsigned>(std::uint16_t(1))), "Data.PaperSize");
}
