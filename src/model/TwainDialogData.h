// The settings model: one tree of dictionaries addressed by dot-separated key paths, whose first
// component names a section. Controls bind to it, the enable rules observe it, and the data source
// reads and writes it through the facade.
#pragma once

#include "TwAreaTable.h"
#include "TwObservation.h"
#include "TwValue.h"
#include "VmxUI.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

class TwBundle;
class TwPreferences;

// One row of the capability map: which setting goes to the scanner as which capability.
struct TwCapabilityMapEntry {
    std::uint16_t capability;
    std::uint16_t itemType;
    const char* keyPath;
};

// Area and paper values are kept in millimetres; a user who works in inches sees them divided.
inline constexpr double kTwMillimetresPerInch = 25.4;

// ASCII letters compared without regard to case ("yes" equals "YES"); other bytes as they are.
bool TwEqualsIgnoringCase(std::string_view a, std::string_view b);

// A width and a length (of a paper: tenths of a millimetre).
struct TwSize {
    double width = 0;
    double length = 0;
};

// The values from start to start + length.
struct TwRange {
    double start = 0;
    double length = 0;
};

class TwainDialogData : public TwainDialogDataInterface, public TwObservable, public TwKeyValueObserver {
public:
    static constexpr const char* kSections[] = {"ScanInfo", "const",  "content", "contentValues",
                                                "range",    "enable", "Data",    "Default",
                                                "profiles", "temp",   "image"};
    static const TwCapabilityMapEntry kCapabilityMap[2];

    // init: the eleven sections, rules from this module's "EnableLink" resource if it has one.
    TwainDialogData();
    // initWithDSBundle: init, keep the data source's bundle, then setConst.
    explicit TwainDialogData(std::shared_ptr<TwBundle> bundleDS);
    ~TwainDialogData() override;
    TwainDialogData(const TwainDialogData&) = delete;
    TwainDialogData& operator=(const TwainDialogData&) = delete;

    void setConst();
    void setModelDef(TwModelDefFile* modelDef) { ModelDef = modelDef; }
    TwModelDefFile* modelDef() const { return ModelDef; }
    const std::shared_ptr<TwBundle>& bundleDS() const { return m_bundleDS; }
    void setCallback(VmxUICallback callback) { pfCallback = callback; }
    VmxUICallback callback() const { return pfCallback; }

    // ---- Reading and writing by key path ----

    // A missing section is created empty on first read; a missing key gives null. An array met
    // before the last component answers with the array of its elements' values for the rest.
    TwValue valueForKeyPath(std::string_view keyPath) override;
    TwValue valueForKey(std::string_view key);
    TwValue valueForUndefinedKey(std::string_view key);

    // The notifying write: missing intermediate dictionaries are created, then the value is set
    // and the observers of the path and of every path below it are told, even when the value is
    // equal to the old one. A one-component path merges into the section. Failures are dropped.
    void setValueForKeyPath(const TwValue& value, std::string_view keyPath) override;
    // The same write without telling any observer.
    void setValueForKeyPathWithoutNotification(const TwValue& value, std::string_view keyPath);
    void setValueDictionaryforKeyPath(std::string_view keyPath);
    void setValueForUndefinedKey(const TwValue& value, std::string_view key);
    // For every key: setValueForKeyPath(value, key).
    void setDataWithDictionary(const TwValue& dictionary);
    // Writes only when the stored value is not equal, inside a will/did bracket of the whole path.
    void myChangeValue(const TwValue& value, std::string_view keyPath);

    // ---- Observing ----

    void addObserver(TwKeyValueObserver* observer, std::string_view keyPath, unsigned options,
                     void* context = nullptr) override;
    void removeObserver(TwKeyValueObserver* observer, std::string_view keyPath) override;
    void willChangeValueForKey(std::string_view keyPath) override;
    void didChangeValueForKey(std::string_view keyPath) override;
    std::size_t observationCount() const { return m_observation.observationCount(); }
    std::size_t observationCount(const TwKeyValueObserver* o) const {
        return m_observation.observationCount(o);
    }
    void observeValueForKeyPath(const std::string& keyPath, TwObservable* object,
                                const TwKeyValueChange& change, void* context) override;

    // ---- Plain dictionaries ----

    TwValue dictionary(const TwValue& dict, const std::vector<std::string>& keys);
    TwValue dictionaryRead(const TwValue& dict, const std::vector<std::string>& keys);
    TwValue dictionaryRead(const TwValue& dict, std::string_view keyPath);
    void setValue(const TwValue& value, const TwValue& dict, const std::vector<std::string>& keys);
    // The components of a dotted key path ("Data.Area.Unit" -> Data, Area, Unit).
    static std::vector<std::string> keyPathComponents(std::string_view keyPath);
    // Leaf key paths below the dictionary, in key order; prefix null gives bare keys.
    std::vector<std::string> allKeyPaths(const std::string* prefix, const TwValue& dict) const;
    std::vector<std::string> allKeyPaths() const;

    // ---- Texts ----

    // Data source's bundle first (a key it lacks comes back as the key), else this module's.
    std::string localizedString(const std::string& key, const std::string* defualt);
    std::string localizedString(const std::string& key) { return localizedString(key, nullptr); }

    // ---- Capabilities (event 1) ----

    void setCapabilityWithUInt32(std::uint16_t capability, std::uint32_t value);
    void setCapabilityWithFix32(std::uint16_t capability, float value);
    void UpdateCapData(std::string_view keyPath, const TwValue& value) override;
    static TwCapabilityRecord makeFix32Record(std::uint16_t capability, float value);

    // ---- Observers and enable rules ----

    // Observes profiles.name, every leaf of Data and temp, then builds the rules (createObserver).
    void addSelfObserver();
    void initTempDict();
    void addSelfObserverForKeyPath(const std::string& keyPath, unsigned options);
    void addSelfObserverForKeyPaths(const std::vector<std::string>& keyPaths, unsigned options);
    void addSelfObserverForDict(const TwValue& dict, const std::string& prefix, unsigned options);
    void removeSelfObserver();
    // Rules from the model definition, the reverse index, the constant targets, every target once.
    void createObserver();
    void appendObserverDict(const TwValue& dict, const std::string& keyPath);
    // Re-evaluates every target whose rule reads keyPath; the change is not consulted.
    void updateEnabledFromKeyPath(const std::string& keyPath, const TwKeyValueChange* change);
    bool getEnableFromInfo(const TwValue& node, const std::string* attrib, const std::string& keyPath);
    bool getEnableCustomForKeyPath(const std::string& keyPath);
    // Applies a profile (a Data section with "ProfileName") to the setting and its working copies.
    void SettingApply(const TwValue& profile);

    // ---- Side and working-value mirroring ----

    static constexpr const char* kSideFamilies[] = {"BinaryImage", "GrayImage", "ColorImage"};
    // The value reactions run after the enable rules for every observed change.
    void updateValueWhenChangeKeyPath(const std::string& keyPath, const TwKeyValueChange& change);
    // Mirrors one change of a "temp." working value into the setting.
    void tmepValueChangedKeyPath(const std::string& keyPath, TwainDialogData* object,
                                 const TwKeyValueChange& change, void* context);
    void setSideTextFor(const std::string& family);
    // The working-copy key of a setting key ("Data.GrayImage.Back.Gamma" -> "temp.GrayImage.Gamma"
    // when the back side is shown), or nothing. dict is a store root holding "Data".
    std::optional<std::string> GetTempKey(const std::string& keyPath, const TwValue& dict);
    // Asks a text field bound to keyPath to reload (temp.TextEditRefresh, temp.TextEditDatakey).
    void TextEditRefresh(const TwValue& value, const std::string& keyPath);

    // ---- Paper, resolution and area geometry ----

    // What the current paper in its current orientation is read from: a change of any of them may
    // change GetCurrentPaperSizeInCurrentOrientation and every area range.
    static constexpr const char* kCurrentPaperKeyPaths[] = {
        "Data.PaperSize", "Data.Landscape", "enable.Landscape", "content.PaperSize", "content.PaperSizeAll"};
    // Tenths of a millimetre, before any landscape turn; A4 when the paper is unknown.
    TwSize GetCurrentPaperSize();
    TwSize GetCurrentPaperSizeInCurrentOrientation();
    bool AreaUnitIsInch();
    // Divisor of a binary-rate code: code + 1 for codes 1 to 3, else 1.
    static std::int64_t rateDivisor(std::int64_t code);
    void SetBinaryImageRate();
    void SetGrayDPI();
    void calcAutoCropLength();
    // The allowed values in millimetres for an area key ("temp.Area.<path>" or
    // "Data.Area.Measure.<path>"); a length of 0 for any other key.
    TwRange GetFormatterRange(const std::string& keyPath);
    // Fits every area to the paper; the value at keyPath, just edited, is kept if it can be.
    void ValidateAreaRect(TwainDialogData* object, const std::string& keyPath);
    void ValidateAreaRectAll();
    void AdjustLandscapeEnableAndArea();
    void updateContentPaperSizeAll();
    // The front main area as a frame in millimetres; setting it sets both sides' X.
    void setPaperFrame(const TwPaperFrame& frame);
    void getPaperFrame(TwPaperFrame* frame);
    // Writes every number below dict to keyPrefix + "." + its path, in inches when unit is 0,
    // otherwise unchanged (millimetres).
    void ModifyMetureValue(const TwValue& unit, const TwValue& dict, const std::string& keyPrefix);

    // ---- Profiles and user presets ----
    // Persisted per user under the data source's bundle identifier; without one nothing is read
    // or written and saves answer false.

    bool prepareFactoryProfiles();
    void readProfiles();
    int ProfileCount() const;
    TwValue customProfiles() const { return m_CustomProfiles; }
    bool IsProfileExist(const std::string& name) const;
    bool AddCustomProfile(const std::string& name);
    bool deleteCustomProfile(const std::string& name);
    bool saveCustomProfile();
    void saveUntitleProfile();
    void readUntitleProfile();
    void restoreDefault();
    void setDictToDictForPath(const TwValue& source, const std::string& prefix);
    void setDictToDictCopy(const TwValue& source, const TwValue& destination);

    void readCustomPaperSize();
    bool saveCustomPaperSize();
    TwValue customPaperSize() const { return m_CustomPapers; }
    bool customPaperExist(const TwValue& name) const;

    void readCustomGamma();
    bool saveCustomGamma();
    TwValue customGammasWithColor(bool isColor) const;
    TwValue CustomGammas() const { return m_CustomGammas; }
    std::vector<std::string> customGammaNamesWithColor(bool isColor) const;
    TwValue customGamme(const std::string& name, bool isColor) const;
    void setCustomGamme(const std::string& name, bool isColor, const TwValue& gamma);
    void deleteCustomGamme(const std::string& name, bool isColor);
    static bool gammaExist(const TwValue& name, const TwValue& menu);
    TwValue gammaContentsWithColor(bool isColor);
    void updataGammaContentsWithColor(bool isColor);

    void readCustomize();
    void saveCustomize();
    void resetCustomize();

    void validateValues();
    void validatePaperSourceValues();
    void validateGammaValues();
    void validatePaperValues();

    // Writes without the model's own reactions but tells every other observer (the controls).
    void setValueForKeyPathUnheardBySelf(const TwValue& value, std::string_view keyPath);

    // ---- Fields ----

    TwValue m_dictData;       // section name -> section dictionary
    TwValue m_dictObserver;   // key path -> observers the model registered (itself)
    TwValue m_CustomPapers;   // array of custom paper dictionaries
    TwValue m_CustomProfiles; // array of profile dictionaries with "ProfileName"
    // Profiles put (a profile) or deleted (null) by name since the last save.
    std::vector<std::pair<std::string, TwValue>> m_profileChanges;
    TwValue m_CustomGammas;    // name -> custom gamma
    TwValue m_CustomPaperTemp; // working copy while custom papers are edited
    TwModelDefFile* ModelDef = nullptr;
    VmxUICallback pfCallback = nullptr;
    bool bInProfileProcess = false;
    bool bInLoadProfile = false;
    bool m_bInInit = false;
    bool m_bForbitChange = false;
    TwValue m_dictEnableChange;              // target enable key -> rule
    TwValue m_dictObserverChange;            // source key path -> target enable keys
    std::set<std::string> m_rulesInProgress; // targets being evaluated, outermost first
    std::set<std::string> m_cyclicRules;     // targets whose rule was found to read itself

private:
    void writeValue(const TwValue& value, std::string_view keyPath, bool notify);
    // The dictionary that holds the last component of the key path, with the missing levels made
    // on the way; null when a level that is no dictionary blocks the way.
    TwValue parentForWrite(std::string_view keyPath);
    TwValue section(std::string_view name);

    // Area geometry helpers (TwainDialogDataPaper.cpp).
    void fitAreas(const std::string* editedKey);
    // Writes an area value (millimetres) and its working copy (user's unit) without mirroring.
    void writeAreaValue(const std::string& rest, double millimetres, const std::string* editedRest);
    // The selection of a profile by name (a new "profiles.name"): a saved setting is applied; a
    // name in another letter case selects the saved setting (or the untitled one) it names; any
    // other name is refused and the selection goes back to what it was.
    void selectProfileNamed(const TwValue& name, const TwValue& before);
    // The paper, in millimetres and current orientation, that the areas were last fitted to.
    TwSize m_areaPaper;
    // The model itself is writing area values of the setting: they are not taken as new input.
    bool m_areaWriting = false;
    // An area value of the setting written from outside (the data source): refused unless it is a
    // finite number, else shown in the working copy and fitted.
    void areaSettingWritten(const std::string& keyPath, const TwKeyValueChange& change);

    TwPreferences* preferences();
    TwValue preferenceValue(const std::string& key);
    bool savePreference(const std::string& key, const TwValue& value);

    std::shared_ptr<TwBundle> m_bundleDS;
    std::unique_ptr<TwPreferences> m_preferences;
    TwObservationCenter m_observation;
};
