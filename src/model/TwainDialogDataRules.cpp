// The model's observation of itself: the enable rules, their reverse index, and the one change
// handler that keeps the profile name honest, applies a profile picked by name, re-evaluates the
// rules and runs the value reactions.
#include "TwainDialogData.h"

#include "OrvaDebug.h"
#include "TwScoped.h"

#include <cstdint>
#include <exception>

namespace {

// "AND", or a sibling group "AND - ..." (the suffix only keeps dictionary keys distinct).
bool isGroup(const std::string* attrib, std::string_view group) {
    if (!attrib)
        return false;
    std::string_view a = *attrib;
    if (a == group)
        return true;
    return a.size() >= group.size() + 2 && a.starts_with(group) && a.substr(group.size(), 2) == " -";
}

enum class Bucket { None, Yes, No, Custom };

Bucket constantBucket(std::string_view key) {
    if (TwEqualsIgnoringCase(key, "TRUE") || TwEqualsIgnoringCase(key, "YES"))
        return Bucket::Yes;
    if (TwEqualsIgnoringCase(key, "FALSE") || TwEqualsIgnoringCase(key, "NO"))
        return Bucket::No;
    if (TwEqualsIgnoringCase(key, "CUSTOM"))
        return Bucket::Custom;
    return Bucket::None;
}

const char* bucketName(Bucket b) {
    switch (b) {
    case Bucket::Yes:
        return "YES";
    case Bucket::No:
        return "NO";
    case Bucket::Custom:
        return "CUSTOM";
    default:
        return nullptr;
    }
}

// Adds target to the array under key (created when missing) unless it is already there.
void appendUnique(TwDictionary& index, const std::string& key, const std::string& target) {
    TwValue list = index.value(key);
    if (!list.list()) {
        list = TwValue::array();
        index.set(key, list);
    }
    for (auto& t : *list.list())
        if (t.str() && *t.str() == target)
            return;
    list.list()->push_back(TwValue(target));
}

std::intptr_t addressOf(const void* p) {
    return reinterpret_cast<std::intptr_t>(p);
}

// Real rules are a few levels deep; one nested deeper is a broken definition, and walking it
// would use up the stack.
constexpr int kMaxRuleDepth = 64;

// Whether the value holds dictionaries or arrays more than limit levels deep. Looks no deeper
// than that itself.
bool nestedDeeperThan(const TwValue& node, int limit) {
    if (auto d = node.dict()) {
        if (limit == 0)
            return true;
        for (auto& [key, value] : *d)
            if (nestedDeeperThan(value, limit - 1))
                return true;
    } else if (auto a = node.list()) {
        if (limit == 0)
            return true;
        for (auto& value : *a)
            if (nestedDeeperThan(value, limit - 1))
                return true;
    }
    return false;
}

// The rules of the model definition that can be used: a new table, so that refusing a rule never
// changes the data source's own dictionary.
TwValue acceptedRules(const TwValue& rules) {
    auto accepted = TwValue::dictionary();
    for (auto& [target, rule] : *rules.dict()) {
        if (nestedDeeperThan(rule, kMaxRuleDepth)) {
            OrvaLog(kOrvaLogError, "ERROR: %s: the rule of %s is nested more than %d levels deep; refused\n",
                    "TwainDialogData::createObserver", target.c_str(), kMaxRuleDepth);
            continue;
        }
        accepted.dict()->set(target, rule);
    }
    return accepted;
}

} // namespace

// ---- Registration --------------------------------------------------------------------------------

void TwainDialogData::addSelfObserver() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogData::addSelfObserver");
    {
        TwScopedValue inInit(m_bInInit, true);
        initTempDict();
        addSelfObserverForKeyPath("profiles.name", kTwObserveNew | kTwObserveOld | kTwObserveInitial);
        addSelfObserverForDict(valueForKey("Data"), "Data",
                               kTwObserveNew | kTwObserveOld | kTwObserveInitial);
        addSelfObserverForDict(valueForKey("temp"), "temp", kTwObserveNew | kTwObserveOld);
    }
    createObserver();
}

void TwainDialogData::initTempDict() {
    for (const char* key : {"temp.Distinction", "temp.GrayDPI", "temp.GrayColor"})
        setValueForKeyPath(TwValue(""), key);
}

void TwainDialogData::addSelfObserverForKeyPath(const std::string& keyPath, unsigned options) {
    try {
        TwDictionary* registry = m_dictObserver.dict();
        if (!registry || registry->contains(keyPath))
            return;
        registry->set(keyPath, TwValue::array({TwValue(static_cast<long long>(addressOf(this)))}));
        addObserver(this, keyPath, options, nullptr);
    } catch (const std::exception& e) {
        OrvaLog(kOrvaLogError, "ERROR: %s: keyPath:%s :%s\n", "TwainDialogData::addSelfObserverForKeyPath",
                keyPath.c_str(), e.what());
    }
}

void TwainDialogData::addSelfObserverForKeyPaths(const std::vector<std::string>& keyPaths, unsigned options) {
    for (auto& keyPath : keyPaths)
        addSelfObserverForKeyPath(keyPath, options);
}

void TwainDialogData::addSelfObserverForDict(const TwValue& dict, const std::string& prefix,
                                             unsigned options) {
    // Depth first, as the dictionaries nest, with a list of open levels instead of a recursion:
    // the data source decides how deep its values nest. Each level's keys are taken when it is
    // entered: registering may call the handler, whose reactions may add entries there.
    struct Level {
        TwValue dict;
        std::vector<std::string> keys;
        std::size_t next = 0;
        std::string prefix;
    };
    std::vector<Level> open;
    if (auto d = dict.dict())
        open.push_back({dict, d->keys(), 0, prefix});
    while (!open.empty()) {
        Level& level = open.back();
        if (level.next == level.keys.size()) {
            open.pop_back();
            continue;
        }
        const std::string& key = level.keys[level.next++];
        std::string path = level.prefix + "." + key;
        TwValue value = level.dict.dict()->value(key);
        if (auto child = value.dict())
            open.push_back({value, child->keys(), 0, std::move(path)});
        else
            addSelfObserverForKeyPath(path, options);
    }
}

void TwainDialogData::removeSelfObserver() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogData::removeSelfObserver");
    TwDictionary* registry = m_dictObserver.dict();
    if (!registry)
        return;
    for (auto& [keyPath, observers] : *registry) {
        auto list = observers.list();
        if (!list)
            continue;
        for (auto& observer : *list) {
            if (observer.longLongValue() == addressOf(this))
                removeObserver(this, keyPath);
        }
        list->clear();
    }
    registry->clear();
}

// ---- The rule table and its reverse index --------------------------------------------------------

void TwainDialogData::createObserver() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogData::createObserver");
    try {
        m_dictEnableChange = ModelDef ? ModelDef->UIEnable() : TwValue();
        if (!m_dictEnableChange.isNull() && !m_dictEnableChange.isDictionary()) {
            OrvaLog(kOrvaLogError, "ERROR: %s: the enable rules are not a dictionary: %s\n",
                    "TwainDialogData::createObserver", m_dictEnableChange.description().c_str());
            m_dictEnableChange = TwValue();
        }
        if (m_dictEnableChange.isDictionary())
            m_dictEnableChange = acceptedRules(m_dictEnableChange);
        m_dictObserverChange = TwValue::dictionary();
        if (auto rules = m_dictEnableChange.dict()) {
            for (auto& [target, rule] : *rules) {
                if (rule.isDictionary())
                    appendObserverDict(rule, target);
            }
        }
        TwDictionary& index = *m_dictObserverChange.dict();
        for (const char* bucket : {"YES", "NO", "CUSTOM"}) {
            TwValue targets = index.value(bucket);
            index.remove(bucket);
            if (auto list = targets.list()) {
                bool enabled = std::string_view(bucket) == "YES";
                for (auto& target : *list)
                    setValueForKeyPath(TwValue(enabled), target.stringValue());
            }
        }
        for (auto& source : index.keys()) {
            updateEnabledFromKeyPath(source, nullptr);
            addSelfObserverForKeyPath(source, kTwObserveNew | kTwObserveOld | kTwObserveInitial);
        }
    } catch (const std::exception& e) {
        OrvaLog(kOrvaLogError, "*** ERROR: %s keyPath:%s : %s\n", "TwainDialogData::createObserver", "",
                e.what());
    }
}

void TwainDialogData::appendObserverDict(const TwValue& dict, const std::string& keyPath) {
    auto d = dict.dict();
    TwDictionary* index = m_dictObserverChange.dict();
    if (!d || !index)
        return;
    for (auto& [key, value] : *d) {
        if (auto child = value.dict()) {
            if (!child->empty()) {
                appendObserverDict(value, keyPath);
            } else if (const char* bucket = bucketName(constantBucket(key))) {
                appendUnique(*index, bucket, keyPath);
            }
            continue;
        }
        appendUnique(*index, key, keyPath);
    }
}

// ---- Evaluation ----------------------------------------------------------------------------------

bool TwainDialogData::getEnableFromInfo(const TwValue& node, const std::string* attrib,
                                        const std::string& keyPath) {
    if (auto d = node.dict()) {
        if (attrib) {
            switch (constantBucket(*attrib)) {
            case Bucket::Yes:
                return true;
            case Bucket::No:
                return false;
            case Bucket::Custom:
                return getEnableCustomForKeyPath(keyPath);
            case Bucket::None:
                break;
            }
        }
        const bool isOr = isGroup(attrib, "OR");
        const bool isAnd = isGroup(attrib, "AND");
        const bool isNot = isGroup(attrib, "NOT");
        bool result = !isOr;
        bool first = true;
        // By index: evaluation reads the store, whose observers may not change the rule, but a
        // rule dictionary shared with the store must not be walked by invalidated iterators.
        for (std::size_t i = 0; i < d->size(); ++i) {
            const auto& [key, value] = d->at(i);
            bool r = getEnableFromInfo(value, &key, keyPath);
            if (isNot)
                return !r;
            if (isAnd) {
                result = result && r;
                if (!result)
                    return false;
            } else if (isOr) {
                if (r)
                    return true;
            } else if (first) {
                result = r;
            }
            first = false;
        }
        return result;
    }
    if (auto a = node.list()) {
        for (std::size_t i = 0; i < a->size(); ++i)
            if (getEnableFromInfo((*a)[i], attrib, keyPath))
                return true;
        return false;
    }
    if (node.isNumber()) {
        if (!attrib)
            return false;
        return node.isEqual(valueForKeyPath(*attrib));
    }
    if (auto s = node.str()) {
        if (!attrib)
            return false;
        TwValue stored = valueForKeyPath(*attrib);
        return stored.str() && TwEqualsIgnoringCase(*stored.str(), *s);
    }
    return true;
}

bool TwainDialogData::getEnableCustomForKeyPath(const std::string& keyPath) {
    if (keyPath != "enable.Landscape")
        return true;
    TwSize paper = GetCurrentPaperSize();
    double physicalWidth = ModelDef ? ModelDef->getPhysicalWidth() * 254.0 : 0.0;
    double minHeight = ModelDef ? ModelDef->getMinHeight() * 254.0 : 0.0;
    // Turned sideways the length becomes the width across the feeder and the width the length.
    return !(paper.length > physicalWidth || minHeight > paper.width);
}

void TwainDialogData::updateEnabledFromKeyPath(const std::string& keyPath, const TwKeyValueChange*) {
    TwDictionary* index = m_dictObserverChange.dict();
    if (!index)
        return;
    TwValue targets = index->value(keyPath);
    auto list = targets.list();
    if (!list)
        return;
    TwDictionary* rules = m_dictEnableChange.dict();
    for (std::size_t i = 0; i < list->size(); ++i) {
        std::string target = (*list)[i].stringValue();
        // Evaluating a target whose own evaluation led here again would never end: its rule reads
        // its own result, directly or through other rules.
        if (m_rulesInProgress.contains(target)) {
            if (m_cyclicRules.insert(target).second)
                OrvaLog(kOrvaLogError, "ERROR: %s: the rule of %s reads its own result; refused\n",
                        "TwainDialogData::updateEnabledFromKeyPath", target.c_str());
            continue;
        }
        TwScopedInsert inProgress(m_rulesInProgress, target);
        try {
            TwValue rule = rules ? rules->value(target) : TwValue();
            bool enabled = getEnableFromInfo(rule, nullptr, target);
            myChangeValue(TwValue(enabled), target);
        } catch (const std::exception& e) {
            OrvaLog(kOrvaLogError, "*** ERROR: %s toChangeKeyPath:%s : %s\n",
                    "TwainDialogData::updateEnabledFromKeyPath", target.c_str(), e.what());
        }
    }
}

// ---- The change handler --------------------------------------------------------------------------

void TwainDialogData::observeValueForKeyPath(const std::string& keyPath, TwObservable*,
                                             const TwKeyValueChange& change, void*) {
    try {
        std::string_view p = keyPath;
        if (p.starts_with("Data")) {
            if (!bInProfileProcess && p != "Data.Area.Unit" && !p.ends_with(".Keep2SideSame")) {
                // An initial notification has no old value and leaves the name alone.
                if (!change.oldValue.isNull() && !change.oldValue.isEqual(change.newValue))
                    myChangeValue(valueForKeyPath("profiles.temporary"), "profiles.name");
            }
        } else if (p.starts_with("profiles") && p == "profiles.name") {
            TwScopedValue inProfile(bInProfileProcess, true);
            selectProfileNamed(valueForKeyPath("profiles.name"), change.oldValue);
        }
        updateEnabledFromKeyPath(keyPath, &change);
        if (!bInProfileProcess && !bInLoadProfile)
            updateValueWhenChangeKeyPath(keyPath, change);
    } catch (const std::exception& e) {
        OrvaLog(kOrvaLogError, "*** ERROR: %s keyPath:%s : %s\n", "TwainDialogData::observeValueForKeyPath",
                keyPath.c_str(), e.what());
    }
}

// ---- Selecting a profile by name -----------------------------------------------------------------

void TwainDialogData::selectProfileNamed(const TwValue& name, const TwValue& before) {
    if (name.isNull())
        return;
    const TwValue temporary = valueForKeyPath("profiles.temporary");
    auto saved = [this](const TwValue& n, bool ignoringCase) -> TwValue {
        if (auto profiles = m_CustomProfiles.list())
            for (auto& profile : *profiles) {
                auto d = profile.dict();
                TwValue stored = d ? d->value("ProfileName") : TwValue();
                if (ignoringCase
                        ? stored.isString() && n.isString() && TwEqualsIgnoringCase(*stored.str(), *n.str())
                        : stored.isEqual(n))
                    return profile;
            }
        return {};
    };
    if (TwValue profile = saved(name, false)) {
        try {
            SettingApply(profile);
        } catch (const std::exception&) {
            OrvaLog(kOrvaLogError, "Profile Apply Fail!\n");
        }
        return;
    }
    if (name.isEqual(temporary))
        return;
    // A name typed in another letter case picks the saved setting (or the untitled one) it names.
    if (TwValue profile = saved(name, true)) {
        myChangeValue(profile.dict()->value("ProfileName"), "profiles.name");
        return;
    }
    if (name.isString() && temporary.isString() && TwEqualsIgnoringCase(*name.str(), *temporary.str())) {
        myChangeValue(temporary, "profiles.name");
        return;
    }
    // Any other name is no setting: the selection stays what it was (the setting did not change).
    OrvaLog(kOrvaLogError, "ERROR: %s: '%s' is not a saved setting; refused\n",
            "TwainDialogData::selectProfileNamed", name.stringValue().c_str());
    const bool wasSelectable = before.isEqual(temporary) || saved(before, false);
    setValueForKeyPathUnheardBySelf(wasSelectable ? before : temporary, "profiles.name");
}

// ---- Applying a profile --------------------------------------------------------------------------
