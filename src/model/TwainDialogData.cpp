#include "TwainDialogData.h"

#include "OrvaDebug.h"
#include "TwBundle.h"
#include "TwPlist.h"
#include "TwPreferences.h"
#include "TwStrings.h"

#include <cctype>
#include <cmath>

const TwCapabilityMapEntry TwainDialogData::kCapabilityMap[2] = {
    {0x0101, 4, "Data.ImageType"},  // ICAP_PIXELTYPE, TWTY_UINT16
    {0x1118, 4, "Data.Resolution"}, // ICAP_XRESOLUTION, TWTY_UINT16
};

namespace {
constexpr std::uint16_t kTwTypeUInt32 = 5;
constexpr std::uint16_t kTwTypeFix32 = 7;

// Walks the components of rest below cur. A dictionary answers by key; an array answers with the
// array of its elements' answers; anything else ends the walk with null.
TwValue walk(TwValue cur, std::string_view rest) {
    for (;;) {
        auto dot = rest.find('.');
        std::string_view key = rest.substr(0, dot);
        if (auto d = cur.dict()) {
            cur = d->value(key);
        } else if (auto a = cur.list()) {
            auto out = TwValue::array();
            out.list()->reserve(a->size());
            for (auto& item : *a)
                out.list()->push_back(walk(item, rest));
            return out;
        } else {
            return {};
        }
        if (dot == std::string_view::npos)
            return cur;
        rest = rest.substr(dot + 1);
    }
}

std::pair<std::string_view, std::string_view> splitLast(std::string_view keyPath) {
    auto dot = keyPath.rfind('.');
    if (dot == std::string_view::npos)
        return {{}, keyPath};
    return {keyPath.substr(0, dot), keyPath.substr(dot + 1)};
}
} // namespace

bool TwEqualsIgnoringCase(std::string_view a, std::string_view b) {
    if (a.size() != b.size())
        return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        unsigned char x = static_cast<unsigned char>(a[i]);
        unsigned char y = static_cast<unsigned char>(b[i]);
        if (x != y && std::tolower(x) != std::tolower(y))
            return false;
    }
    return true;
}

TwainDialogData::TwainDialogData()
    : m_dictData(TwValue::dictionary()), m_dictObserver(TwValue::dictionary()),
      m_dictObserverChange(TwValue::dictionary()),
      m_observation(this, [this](std::string_view keyPath) { return valueForKeyPath(keyPath); }) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogData::init");
    if (auto own = TwBundle::moduleBundle()) {
        std::string path = own->pathForResource("EnableLink", "plist");
        if (!path.empty()) {
            std::string error;
            TwValue rules = TwPlistReadFile(path, &error);
            if (rules.isDictionary())
                m_dictEnableChange = rules;
            else
                OrvaLog(kOrvaLogError, "ERROR: %s: EnableLink.plist is not a dictionary: %s\n",
                        "TwainDialogData::init", error.c_str());
        }
    }
    for (const char* name : kSections)
        m_dictData.dict()->set(name, TwValue::dictionary());
}

TwainDialogData::TwainDialogData(std::shared_ptr<TwBundle> bundleDS) : TwainDialogData() {
    m_bundleDS = std::move(bundleDS);
    setConst();
}

TwainDialogData::~TwainDialogData() = default;

void TwainDialogData::setConst() {
    auto text = TwValue::dictionary({{"sideFront", localizedString("IDS_SIDE_FRONT")},
                                     {"sideBack", localizedString("IDS_SIDE_BACK")},
                                     {"sideBoth", localizedString("IDS_SIDE_BOTH")}});
    section("const").dict()->set("text", text);
}

// ---- Reading -------------------------------------------------------------------------------------

TwValue TwainDialogData::valueForUndefinedKey(std::string_view key) {
    TwDictionary* sections = m_dictData.dict();
    TwValue s = sections->value(key);
    if (s.isNull()) {
        s = TwValue::dictionary();
        sections->set(key, s);
    }
    return s;
}

TwValue TwainDialogData::section(std::string_view name) {
    return valueForUndefinedKey(name);
}

TwValue TwainDialogData::valueForKey(std::string_view key) {
    if (key.empty() || key == "ModelDef")
        return {};
    return valueForUndefinedKey(key);
}

TwValue TwainDialogData::valueForKeyPath(std::string_view keyPath) {
    auto dot = keyPath.find('.');
    std::string_view first = keyPath.substr(0, dot);
    if (first == "ModelDef") {
        // The model definition answers for its own tree ("ModelDef.UIControl.MainDialog...").
        if (!ModelDef || dot == std::string_view::npos)
            return {};
        std::string_view rest = keyPath.substr(dot + 1);
        auto dot2 = rest.find('.');
        TwValue top = ModelDef->valueForKey(rest.substr(0, dot2));
        return dot2 == std::string_view::npos ? top : walk(top, rest.substr(dot2 + 1));
    }
    TwValue cur = valueForKey(first);
    if (dot == std::string_view::npos)
        return cur;
    return walk(cur, keyPath.substr(dot + 1));
}

// ---- Writing -------------------------------------------------------------------------------------

void TwainDialogData::setValueDictionaryforKeyPath(std::string_view keyPath) {
    auto [parent, last] = splitLast(keyPath);
    // A parent of one component is a section, created on demand when it is read.
    if (parent.find('.') != std::string_view::npos)
        parentForWrite(keyPath);
}

TwValue TwainDialogData::parentForWrite(std::string_view keyPath) {
    auto dot = keyPath.find('.');
    if (dot == std::string_view::npos)
        return {};
    // One walk down from the section, making the missing levels: creating a level is not a change
    // anybody observes. A level holding anything but a dictionary blocks the way. Levels are only
    // made below the last existing one, so a blocked way leaves nothing behind.
    TwValue parent = valueForKey(keyPath.substr(0, dot));
    std::string_view rest = keyPath.substr(dot + 1);
    for (auto next = rest.find('.'); next != std::string_view::npos; next = rest.find('.')) {
        TwDictionary* d = parent.dict();
        if (!d)
            return {};
        std::string_view key = rest.substr(0, next);
        TwValue child = d->value(key);
        if (child.isNull()) {
            child = TwValue::dictionary();
            d->set(key, child);
        }
        parent = child;
        rest = rest.substr(next + 1);
    }
    return parent.isDictionary() ? parent : TwValue();
}

void TwainDialogData::setValueForUndefinedKey(const TwValue& value, std::string_view key) {
    TwValue s = valueForKey(key);
    if (s.isNull() || !value.isDictionary())
        return; // only a dictionary can be merged into a section
    s.dict()->setPropertiesWith(*value.dict());
}

void TwainDialogData::writeValue(const TwValue& value, std::string_view keyPath, bool notify) {
    if (keyPath.empty())
        return;
    auto [parentPath, key] = splitLast(keyPath);
    if (keyPath.substr(0, keyPath.find('.')) == "ModelDef")
        return; // the model definition belongs to the data source
    TwObservationCenter::Snapshot snapshot;
    if (parentPath.empty()) {
        if (notify)
            snapshot = m_observation.beforeWrite(keyPath);
        setValueForUndefinedKey(value, keyPath);
    } else {
        TwValue parent = parentForWrite(keyPath);
        if (!parent.isDictionary())
            return; // a value that is not a dictionary stands in the way: the write is dropped
        if (notify)
            snapshot = m_observation.beforeWrite(keyPath);
        parent.dict()->set(key, value);
    }
    if (notify)
        m_observation.afterWrite(std::move(snapshot));
}

void TwainDialogData::setValueForKeyPath(const TwValue& value, std::string_view keyPath) {
    writeValue(value, keyPath, true);
}

void TwainDialogData::setValueForKeyPathWithoutNotification(const TwValue& value, std::string_view keyPath) {
    writeValue(value, keyPath, false);
}

void TwainDialogData::setDataWithDictionary(const TwValue& dictionary) {
    auto d = dictionary.dict();
    if (!d)
        return;
    // Keys are read first: an observer told of one write may change the dictionary.
    for (auto& key : d->keys())
        setValueForKeyPath(d->value(key), key);
}

void TwainDialogData::myChangeValue(const TwValue& value, std::string_view keyPath) {
    if (valueForKeyPath(keyPath).isEqual(value))
        return;
    willChangeValueForKey(keyPath);
    setValueForKeyPath(value, keyPath);
    didChangeValueForKey(keyPath);
}

// ---- Observing -----------------------------------------------------------------------------------

void TwainDialogData::addObserver(TwKeyValueObserver* observer, std::string_view keyPath, unsigned options,
                                  void* context) {
    m_observation.addObserver(observer, keyPath, options, context);
}

void TwainDialogData::removeObserver(TwKeyValueObserver* observer, std::string_view keyPath) {
    m_observation.removeObserver(observer, keyPath);
}

void TwainDialogData::willChangeValueForKey(std::string_view keyPath) {
    m_observation.willChange(keyPath);
}

void TwainDialogData::didChangeValueForKey(std::string_view keyPath) {
    m_observation.didChange(keyPath);
}

// ---- Plain dictionaries --------------------------------------------------------------------------

TwValue TwainDialogData::dictionary(const TwValue& dict, const std::vector<std::string>& keys) {
    TwDictionary* d = dict.dict();
    if (keys.empty() || !d)
        return {};
    TwValue v = d->value(keys.front());
    if (keys.size() == 1)
        return v;
    if (v.isDictionary())
        return dictionary(v, std::vector<std::string>(keys.begin() + 1, keys.end()));
    // The missing or foreign level is replaced; the caller gets the old value and asks again.
    d->set(keys.front(), TwValue::dictionary());
    return v;
}

TwValue TwainDialogData::dictionaryRead(const TwValue& dict, const std::vector<std::string>& keys) {
    TwDictionary* d = dict.dict();
    if (keys.empty() || !d)
        return {};
    TwValue v = d->value(keys.front());
    if (keys.size() == 1 || !v.isDictionary())
        return v;
    return dictionary(v, std::vector<std::string>(keys.begin() + 1, keys.end()));
}

std::vector<std::string> TwainDialogData::keyPathComponents(std::string_view keyPath) {
    std::vector<std::string> keys;
    std::size_t start = 0;
    for (;;) {
        auto dot = keyPath.find('.', start);
        keys.emplace_back(keyPath.substr(start, dot - start));
        if (dot == std::string_view::npos)
            return keys;
        start = dot + 1;
    }
}

TwValue TwainDialogData::dictionaryRead(const TwValue& dict, std::string_view keyPath) {
    return dictionaryRead(dict, keyPathComponents(keyPath));
}

void TwainDialogData::setValue(const TwValue& value, const TwValue& dict,
                               const std::vector<std::string>& keys) {
    if (keys.empty())
        return;
    TwDictionary* d = dict.dict();
    if (!d) {
        OrvaLog(kOrvaLogError, "*** ERROR : %s\n",
                ("setValue:forKey: on a non-dictionary for key " + keys.front()).c_str());
        return;
    }
    const std::string key = keys.front();
    if (keys.size() == 1) {
        d->set(key, value);
        return;
    }
    TwValue child = d->value(key);
    if (child.isNull()) {
        child = TwValue::dictionary();
        d->set(key, child);
    }
    setValue(value, child, std::vector<std::string>(keys.begin() + 1, keys.end()));
}

std::vector<std::string> TwainDialogData::allKeyPaths(const std::string* prefix, const TwValue& dict) const {
    std::vector<std::string> paths;
    auto d = dict.dict();
    if (!d)
        return paths;
    for (auto& [key, value] : *d) {
        std::string path = prefix ? *prefix + "." + key : key;
        if (value.isDictionary()) {
            auto below = allKeyPaths(&path, value);
            paths.insert(paths.end(), below.begin(), below.end());
        } else {
            paths.push_back(std::move(path));
        }
    }
    return paths;
}

std::vector<std::string> TwainDialogData::allKeyPaths() const {
    return allKeyPaths(nullptr, m_dictData);
}

// ---- Texts ---------------------------------------------------------------------------------------

std::string TwainDialogData::localizedString(const std::string& key, const std::string* defualt) {
    return TwLocalizedString(m_bundleDS.get(), key, defualt ? *defualt : key);
}

// ---- Capabilities --------------------------------------------------------------------------------

void TwainDialogData::setCapabilityWithUInt32(std::uint16_t capability, std::uint32_t value) {
    if (!pfCallback)
        return;
    TwCapabilityRecord record{};
    record.capability = capability;
    record.itemType = kTwTypeUInt32;
    record.value.uint32 = value;
    pfCallback(kVmxEventSetCapability, &record);
}

TwCapabilityRecord TwainDialogData::makeFix32Record(std::uint16_t capability, float value) {
    TwCapabilityRecord record{};
    record.capability = capability;
    record.itemType = kTwTypeFix32;
    double v = std::round(double(value) * 10000.0) / 10000.0;
    record.value.fix32.whole = static_cast<std::int16_t>(static_cast<std::int32_t>(v));
    // Taken from the whole 16.16 product, also for negative values.
    record.value.fix32.fraction =
        static_cast<std::uint16_t>(static_cast<std::uint32_t>(static_cast<std::int64_t>(v * 65536.0 + 0.5)));
    return record;
}

void TwainDialogData::setCapabilityWithFix32(std::uint16_t capability, float value) {
    if (!pfCallback)
        return;
    TwCapabilityRecord record = makeFix32Record(capability, value);
    pfCallback(kVmxEventSetCapability, &record);
}

void TwainDialogData::UpdateCapData(std::string_view keyPath, const TwValue& value) {
    for (const auto& row : kCapabilityMap) {
        if (keyPath != row.keyPath || !value.isNumber())
            continue;
        if (row.itemType <= 5)
            setCapabilityWithUInt32(row.capability, value.unsignedIntValue());
        else if (row.itemType == kTwTypeFix32)
            setCapabilityWithFix32(row.capability, value.floatValue());
    }
}
