#include "VmxUIControllerImpl.h"

#include "OrvaDebug.h"
#include "TwBundle.h"
#include "TwainDialogData.h"

namespace {
constexpr const char* kClass = "VmxUIController";

std::string methodName(const char* method) { return std::string(kClass) + "::" + method; }
} // namespace

VmxUIControllerImpl::VmxUIControllerImpl() { init(); }

void VmxUIControllerImpl::init() {
    OrvaSetLogPaths(kOrvaDefaultLogFile, kOrvaDefaultConsoleFile);
    _DialogData.reset();
    callbackFunc = nullptr;
    m_modelName.clear();
    ModelDef = nullptr;
    bundleDS.reset();
    m_isShow = true;
    m_showIndicators = true;
}

VmxUIControllerImpl::~VmxUIControllerImpl() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", methodName("dealloc").c_str());
    logModelUseCount("dealloc", 0);
    if (_DialogData)
        _DialogData->removeSelfObserver();
    logModelUseCount("dealloc", 1);
    OrvaLog(kOrvaLogDebug, "\t%s [_dlgController retainCount]: %lu\n", methodName("dealloc").c_str(), 0ul);
}

void VmxUIControllerImpl::logModelUseCount(const char* method, int step) const {
    OrvaLog(kOrvaLogDebug, "\t%s STEP %d [_DialogData retainCount]: %lu\n", methodName(method).c_str(), step,
            static_cast<unsigned long>(_DialogData.use_count()));
}

void VmxUIControllerImpl::initWithDSBundle(const std::string& bundlePath) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%s)\n", methodName("initWithDSBundle").c_str(), bundlePath.c_str());
    init();
    bundleDS = TwBundle::bundleWithPath(bundlePath);
}

void VmxUIControllerImpl::setModelDef(TwModelDefFile* modelDef) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", methodName("setModelDef").c_str());
    ModelDef = modelDef;
}

void VmxUIControllerImpl::setModelName(const std::string& name) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%s)\n", methodName("setModelName").c_str(), name.c_str());
    m_modelName = name;
}

void VmxUIControllerImpl::setDataWithDictionary(const TwValue& dictionary, std::uint32_t) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", methodName("setDataWithDictionary").c_str());
    logModelUseCount("setDataWithDictionary", 0);
    if (_DialogData)
        _DialogData->removeSelfObserver();
    _DialogData.reset();

    auto model = std::make_shared<TwainDialogData>(bundleDS);
    model->setModelDef(ModelDef);
    if (auto d = dictionary.dict()) {
        // Sections are merged, full key paths are set.
        for (auto& key : d->keys())
            model->setValueForKeyPath(d->value(key), key);
    } else if (!dictionary.isNull()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: capability values are not a dictionary\n",
                methodName("setDataWithDictionary").c_str());
    }
    _DialogData = model;
    setUIContents(ModelDef ? ModelDef->UIOptions() : TwValue());

    model->prepareFactoryProfiles();
    model->readProfiles();
    model->readCustomPaperSize();
    model->readCustomGamma();
    model->readCustomize();
    model->restoreDefault();
    model->addSelfObserver();
    model->readUntitleProfile();
    OrvaLog(kOrvaLogTrace, "LEAVE: %s\n", methodName("setDataWithDictionary").c_str());
}

void VmxUIControllerImpl::setCallback(VmxUICallback callback) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", methodName("setCallback").c_str());
    callbackFunc = callback;
    if (_DialogData)
        _DialogData->setCallback(callback);
}

void VmxUIControllerImpl::setUIContents(const TwValue& contents) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", methodName("setUIContents").c_str());
    if (!_DialogData)
        return;
    auto fresh = TwValue::dictionary();
    if (auto d = contents.dict()) {
        for (auto& [name, list] : *d) {
            if (auto entries = list.list()) {
                // Every entry becomes a dictionary of our own, so that edits never reach the source.
                auto copy = TwValue::array();
                for (auto& entry : *entries) {
                    if (auto e = entry.dict()) {
                        auto mine = TwValue::dictionary();
                        mine.dict()->setPropertiesWith(*e);
                        copy.list()->push_back(mine);
                    } else {
                        copy.list()->push_back(entry);
                    }
                }
                fresh.dict()->set(name, copy);
            } else {
                fresh.dict()->set(name, list);
            }
        }
    } else if (!contents.isNull()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: UI contents are not a dictionary\n", methodName("setUIContents").c_str());
    }
    updatePaperSource(fresh);
    _DialogData->willChangeValueForKey("content");
    _DialogData->setValueForKeyPath(fresh, "content");
    _DialogData->didChangeValueForKey("content");
}

void VmxUIControllerImpl::updatePaperSource(const TwValue& contents) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", methodName("updatePaperSource").c_str());
    auto d = contents.dict();
    if (!d || !_DialogData)
        return;
    bool hasFlatbed = _DialogData->valueForKeyPath("ScanInfo.FlatbedConnected").boolValue();
    bool canPassport = _DialogData->valueForKeyPath("ScanInfo.Support.Passport").boolValue();
    OrvaLog(kOrvaLogDebug, "%s: hasFlatbed = %d, canPassport = %d\n", methodName("updatePaperSource").c_str(),
            hasFlatbed, canPassport);

    std::vector<int> allowed{0};
    if (hasFlatbed)
        allowed.insert(allowed.end(), {2, 3, 1, 4});
    else
        allowed.push_back(1);
    if (canPassport)
        allowed.push_back(5);

    TwValue all = d->value("PaperSourceAll");
    if (!all.list()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: no PaperSourceAll list; PaperSource left as it is\n",
                methodName("updatePaperSource").c_str());
        return;
    }
    auto filtered = TwValue::array();
    for (auto& entry : *all.list()) {
        TwValue value = entry.dict() ? entry.dict()->value("value") : TwValue();
        for (int a : allowed) {
            if (value.isEqual(TwValue(a))) {
                filtered.list()->push_back(entry);
                break;
            }
        }
    }
    d->set("PaperSource", filtered);
    OrvaLog(kOrvaLogDebug, "PaperSourceAll: %s\n", all.description().c_str());
    OrvaLog(kOrvaLogDebug, "PaperSource: %s\n", filtered.description().c_str());
}

void VmxUIControllerImpl::readLastData() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", methodName("readLastData").c_str());
    if (_DialogData)
        _DialogData->readUntitleProfile();
}

TwValue VmxUIControllerImpl::dataForKeyPath(const std::string& keyPath) {
    return _DialogData ? _DialogData->valueForKeyPath(keyPath) : TwValue();
}

void VmxUIControllerImpl::setDataWithKeyPathValue(const TwValue& keyPathValues) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", methodName("setDataWithKeyPathValue").c_str());
    auto d = keyPathValues.dict();
    if (!d || !_DialogData)
        return;
    for (auto& key : d->keys()) {
        _DialogData->willChangeValueForKey(key);
        _DialogData->setValueForKeyPath(d->value(key), key);
        _DialogData->didChangeValueForKey(key);
    }
}

TwainDialogDataInterface* VmxUIControllerImpl::DialogData() { return _DialogData.get(); }

void VmxUIControllerImpl::showUi(bool show, bool modal, bool onlyUI) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", methodName("showUi").c_str());
    OrvaLog(kOrvaLogDebug, "\tmodal = %d, onlyUI = %d\n", modal, onlyUI);
    m_isShow = show;
    m_isShowModal = modal;
    // The dialog controller arrives with the settings dialog; until then nothing is shown.
}

void VmxUIControllerImpl::startModal() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", methodName("startModal").c_str());}

void VmxUIControllerImpl::stopModal() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", methodName("stopModal").c_str());
    OrvaLog(kOrvaLogDebug, "\t stop Modal: _dlgController.isModal = %d, isShowModal = %d\n", 0, m_isShowModal);
}

void VmxUIControllerImpl::hideUi() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", methodName("hideUi").c_str());}

void VmxUIControllerImpl::closeDS() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", methodName("closeDS").c_str());
    if (_DialogData)
        _DialogData->removeSelfObserver();
    _DialogData.reset();
}

int VmxUIControllerImpl::showMessageBox(const std::string& message, const std::string& titleKey,
                                        std::uint32_t messageType) {
    return showMessageBox(message, titleKey, messageType, 0, 0);
}

int VmxUIControllerImpl::showMessageBox(const std::string& message, const std::string& titleKey,
                                        std::uint32_t messageType, std::uint16_t, std::uint32_t) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%s)\n", methodName("showMessageBox").c_str(), titleKey.c_str());
    OrvaLog(kOrvaLogDebug, "\tmessageType = 0x%x, message = %s\n", messageType, message.c_str());
    // Message boxes arrive with the dialog; until then the first button's answer stands.
    return kVmxAnswerOK;
}

int VmxUIControllerImpl::showContinueScanDialog(std::uint16_t) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", methodName("showContinueScanDialog").c_str()); return 0; }
void VmxUIControllerImpl::showProgressDialog() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", methodName("showProgressDialog").c_str());}
void VmxUIControllerImpl::hideProgressDialog() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", methodName("hideProgressDialog").c_str());}
void VmxUIControllerImpl::setProgress(const void*) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", methodName("setProgress").c_str());}

std::string VmxUIControllerImpl::localizedString(const std::string& key) { return localizedString(key, key); }

std::string VmxUIControllerImpl::localizedString(const std::string& key, const std::string& defualt) {
    if (key.empty())
        return {};
    if (bundleDS) {
        std::string text = bundleDS->localizedStringForKey(key, defualt);
        if (!text.empty())
            return text;
    }
    if (auto own = TwBundle::moduleBundle()) {
        std::string text = own->localizedStringForKey(key, defualt);
        if (!text.empty())
            return text;
    }
    return defualt;
}

std::string VmxUIControllerImpl::localizedStringNoEmpty(const std::string& key) {
    std::string text = localizedString(key);
    return text.empty() ? " " : text;
}
