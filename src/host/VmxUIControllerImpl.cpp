#include "VmxUIControllerImpl.h"

#include "ImageShared.h"
#include "OrvaDebug.h"
#include "TwApplication.h"
#include "TwBundle.h"
#include "TwMessageBox.h"
#include "TwPreviewCoordinator.h"
#include "TwStrings.h"
#include "TwainDialogController.h"
#include "TwainDialogData.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QMessageBox>
#include <QPainter>
#include <QPixmap>
#include <QTabWidget>
#include <QTimer>
#include <QWidget>

#include <chrono>
#include <cstring>

namespace {
constexpr const char* kClass = "VmxUIController";
// The question icon of the message type.
constexpr std::uint32_t kContinueScanIcon = 0x40000;
} // namespace

VmxUIControllerImpl::VmxUIControllerImpl() {
    init();
}

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
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "VmxUIController::dealloc");
    logModelUseCount("dealloc", 0);
    if (_DialogData)
        _DialogData->removeSelfObserver();
    logModelUseCount("dealloc", 1);
    if (_dlgController) {
        TwApplication::runOnGuiThread([this] {
            _dlgController->close();
            logControllerUseCount("dealloc");
            _dlgController.reset();
        });
    }
    _DialogData.reset();
    if (m_holdsApplication)
        TwApplication::release();
}

void VmxUIControllerImpl::logModelUseCount(const char* method, int step) const {
    OrvaLog(kOrvaLogDebug, "\t%s::%s STEP %d [_DialogData retainCount]: %lu\n", kClass, method, step,
            static_cast<unsigned long>(_DialogData.use_count()));
}

void VmxUIControllerImpl::initWithDSBundle(const std::string& bundlePath) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%s)\n", "VmxUIController::initWithDSBundle", bundlePath.c_str());
    init();
    bundleDS = TwBundle::bundleWithPath(bundlePath);
}

void VmxUIControllerImpl::setModelDef(TwModelDefFile* modelDef) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "VmxUIController::setModelDef");
    ModelDef = modelDef;
}

void VmxUIControllerImpl::setModelName(const std::string& name) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%s)\n", "VmxUIController::setModelName", name.c_str());
    m_modelName = name;
}

void VmxUIControllerImpl::setDataWithDictionary(const TwValue& dictionary, std::uint32_t) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "VmxUIController::setDataWithDictionary");
    logModelUseCount("setDataWithDictionary", 0);
    if (_DialogData)
        _DialogData->removeSelfObserver();
    _DialogData.reset();

    auto model = std::make_shared<TwainDialogData>(bundleDS);
    model->setModelDef(ModelDef);
    // The store edits what it holds: it gets containers of its own, never the data source's.
    const TwValue values = dictionary.deepCopy();
    if (auto d = values.dict()) {
        // Sections are merged, full key paths are set.
        for (auto& key : d->keys())
            model->setValueForKeyPath(d->value(key), key);
    } else if (!dictionary.isNull()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: capability values are not a dictionary\n",
                "VmxUIController::setDataWithDictionary");
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
    OrvaLog(kOrvaLogTrace, "LEAVE: %s\n", "VmxUIController::setDataWithDictionary");
}

void VmxUIControllerImpl::setCallback(VmxUICallback callback) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "VmxUIController::setCallback");
    callbackFunc = callback;
    if (_dlgController)
        _dlgController->setCallback(callback);
    if (_DialogData)
        _DialogData->setCallback(callback);
}

void VmxUIControllerImpl::setUIContents(const TwValue& contents) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "VmxUIController::setUIContents");
    if (!_DialogData)
        return;
    // Lists of our own, so that edits never reach the data source's.
    auto fresh = contents.isDictionary() ? contents.deepCopy() : TwValue::dictionary();
    if (!contents.isDictionary() && !contents.isNull()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: UI contents are not a dictionary\n",
                "VmxUIController::setUIContents");
    }
    updatePaperSource(fresh);
    _DialogData->willChangeValueForKey("content");
    _DialogData->setValueForKeyPath(fresh, "content");
    _DialogData->didChangeValueForKey("content");
}

void VmxUIControllerImpl::updatePaperSource(const TwValue& contents) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "VmxUIController::updatePaperSource");
    auto d = contents.dict();
    if (!d || !_DialogData)
        return;
    bool hasFlatbed = _DialogData->valueForKeyPath("ScanInfo.FlatbedConnected").boolValue();
    bool canPassport = _DialogData->valueForKeyPath("ScanInfo.Support.Passport").boolValue();
    OrvaLog(kOrvaLogDebug, "%s: hasFlatbed = %d, canPassport = %d\n", "VmxUIController::updatePaperSource",
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
                "VmxUIController::updatePaperSource");
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
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "VmxUIController::readLastData");
    if (_DialogData)
        _DialogData->readUntitleProfile();
}

TwValue VmxUIControllerImpl::dataForKeyPath(const std::string& keyPath) {
    // A copy: changing it must not change the store behind the rules' back.
    return _DialogData ? _DialogData->valueForKeyPath(keyPath).deepCopy() : TwValue();
}

void VmxUIControllerImpl::setDataWithKeyPathValue(const TwValue& keyPathValues) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "VmxUIController::setDataWithKeyPathValue");
    auto d = keyPathValues.dict();
    if (!d || !_DialogData)
        return;
    for (auto& key : d->keys()) {
        _DialogData->willChangeValueForKey(key);
        _DialogData->setValueForKeyPath(d->value(key).deepCopy(), key);
        _DialogData->didChangeValueForKey(key);
    }
}

TwainDialogDataInterface* VmxUIControllerImpl::DialogData() {
    return _DialogData ? &m_dataSourceView : nullptr;
}

TwValue VmxUIDataSourceView::valueForKeyPath(std::string_view keyPath) {
    return m_model ? m_model->valueForKeyPath(keyPath).deepCopy() : TwValue();
}

void VmxUIDataSourceView::UpdateCapData(std::string_view keyPath, const TwValue& value) {
    if (m_model)
        m_model->UpdateCapData(keyPath, value.deepCopy());
}

TwValue VmxUIControllerImpl::customPaperSize() {
    return _DialogData ? _DialogData->customPaperSize().deepCopy() : TwValue();
}

TwValue VmxUIControllerImpl::customGamme(const std::string& name, bool isColor) {
    return _DialogData ? _DialogData->customGamme(name, isColor).deepCopy() : TwValue();
}

void VmxUIControllerImpl::setPaperFrame(const TwPaperFrame& frame) {
    if (_DialogData)
        _DialogData->setPaperFrame(frame);
}

void VmxUIControllerImpl::getPaperFrame(TwPaperFrame* frame) {
    if (_DialogData && frame)
        _DialogData->getPaperFrame(frame);
}

TwPreviewCoordinator* VmxUIControllerImpl::previewCoordinator() const {
    TwainDialogController* c = controllerIfMade();
    // The facade gives every controller it makes a coordinator as its preview service.
    return c ? static_cast<TwPreviewCoordinator*>(c->previewService()) : nullptr;
}

TwainDialogController* VmxUIControllerImpl::controller() {
    std::lock_guard lock(m_controllerLock);
    if (!_dlgController) {
        _dlgController = std::make_unique<TwainDialogController>();
        TwainDialogController* c = _dlgController.get();
        c->setPreviewService(std::make_unique<TwPreviewCoordinator>(c, [c](TwPreviewRecord& record) {
            return c->hasCallback() && c->sendEvent(kVmxEventPreviewRescan, &record) == 0;
        }));
        // The controller lives on the GUI thread whoever asked for it first.
        if (auto* app = QCoreApplication::instance())
            if (_dlgController->thread() != app->thread())
                _dlgController->moveToThread(app->thread());
    }
    _dlgController->setDialogData(_DialogData);
    _dlgController->setCallback(callbackFunc);
    return _dlgController.get();
}

bool VmxUIControllerImpl::ensureApplication() {
    if (m_holdsApplication)
        return true;
    m_holdsApplication = TwApplication::acquire();
    return m_holdsApplication;
}

void VmxUIControllerImpl::showUi(bool show, bool modal, bool onlyUI) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "VmxUIController::showUi");
    OrvaLog(kOrvaLogDebug, "\tmodal = %d, onlyUI = %d\n", modal, onlyUI);
    TwainDialogController* c = controller();
    m_isShow = show;
    m_isShowModal = modal;
    c->setIsModal(modal);
    c->setUiOnly(onlyUI);
    if (!show)
        return;
    if (!ensureApplication())
        return;
    c->setModelDef(ModelDef);
    c->setModelName(QString::fromStdString(m_modelName));
    c->showWindow();
    m_isShowModal = false;
    startModal();
}

void VmxUIControllerImpl::startModal() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "VmxUIController::startModal");
    if (!_dlgController || !_dlgController->isModal() || m_isShowModal)
        return;
    m_isShowModal = true;
    OrvaLog(kOrvaLogDebug, "\t startModal: _dlgController.isModal = %d, isShowModal = %d\n",
            _dlgController->isModal(), m_isShowModal);
    // The run does not block: the window is application-modal while the host's loop runs it.
    TwApplication::runModalForWindow(_dlgController->window());
}

void VmxUIControllerImpl::stopModal() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "VmxUIController::stopModal");
    OrvaLog(kOrvaLogDebug, "\t stop Modal: _dlgController.isModal = %d, isShowModal = %d\n",
            _dlgController ? _dlgController->isModal() : 0, m_isShowModal);
    if (!_dlgController || !_dlgController->isModal())
        return;
    if (m_isShowModal) {
        TwApplication::stopModal();
        OrvaLog(kOrvaLogDebug, "\t[NSApp stopModal]\n");
        m_isShowModal = false;
    }
    simulateMouseEvent();
}

void VmxUIControllerImpl::simulateMouseEvent() {
    if (!_dlgController || !_dlgController->isModal())
        return;
    // No synthetic click is needed to end a Qt run; waking the loop lets it see the new state.
    OrvaLog(kOrvaLogDebug, "kCGEventRightMouseDown: (%.0f, %.0f)\n", -10.0, -10.0);
    ++m_wakeUps;
    TwApplication::wakeUp();
}

void VmxUIControllerImpl::hideUi() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "VmxUIController::hideUi");
    if (!controllerIfMade())
        return;
    TwApplication::runOnGuiThread([this] { innerHideUi(); });
    logControllerUseCount("hideUi");
}

void VmxUIControllerImpl::innerHideUi() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "VmxUIController::innerHideUi");
    hideProgressDialog();
    stopModal();
    if (!m_isShow || !_dlgController)
        return;
    logModelUseCount("innerHideUi", 0);
    _dlgController->closePreview();
    if (auto* window = _dlgController->windowIfLoaded())
        window->closePanel();
    _dlgController->close();
    logModelUseCount("innerHideUi", 1);
    logControllerUseCount("innerHideUi");
}

void VmxUIControllerImpl::logControllerUseCount(const char* method) const {
    OrvaLog(kOrvaLogDebug, "\t%s::%s [_dlgController retainCount]: %lu\n", kClass, method,
            _dlgController ? 1ul : 0ul);
}

void VmxUIControllerImpl::closeDS() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "VmxUIController::closeDS");
    if (_DialogData)
        _DialogData->removeSelfObserver();
    _DialogData.reset();
}

void VmxUIControllerImpl::processEvents(std::uint32_t maxTimeMs) {
    if (!QCoreApplication::instance() || !TwApplication::isGuiThread())
        return;
    QEventLoop loop;
    QTimer::singleShot(std::chrono::milliseconds(maxTimeMs), &loop, &QEventLoop::quit);
    loop.exec();
}

bool VmxUIControllerImpl::performDialogAction(const std::string& action) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%s)\n", "VmxUIController::performDialogAction", action.c_str());
    bool done = false;
    TwApplication::runOnGuiThread([&] {
        if (_dlgController && _dlgController->isVisible())
            done = _dlgController->performAction(QString::fromStdString(action));
    });
    return done;
}

bool VmxUIControllerImpl::saveDialogPicture(const std::string& pngPath, const std::string& tabIdentifier) {
    bool saved = false;
    TwApplication::runOnGuiThread([&] {
        TwDlgMain* window = _dlgController ? _dlgController->windowIfLoaded() : nullptr;
        if (!window || !window->isVisible())
            return;
        if (!tabIdentifier.empty()) {
            int index = window->tabIdentifiers().indexOf(QString::fromStdString(tabIdentifier));
            if (index < 0)
                return;
            window->tableMain()->setCurrentIndex(index);
        }
        // Let the tab lay itself out and paint before the picture is taken.
        QCoreApplication::processEvents();
        // The whole dialog: with the preview beside it when that is open, as they lie on the screen.
        QList<QWidget*> windows{window};
        if (QWidget* preview = _dlgController->dlgPreview();
            preview && preview->isVisible() && tabIdentifier.empty())
            windows << preview;
        QRect bounds;
        for (QWidget* w : windows)
            bounds |= w->geometry();
        QPixmap picture(bounds.size());
        picture.fill(window->palette().color(QPalette::Window).darker(115)); // the desktop between

        QPainter painter(&picture);
        for (QWidget* w : windows)
            painter.drawPixmap(w->geometry().topLeft() - bounds.topLeft(), w->grab());
        painter.end();
        saved = picture.save(QString::fromStdString(pngPath), "PNG");
    });
    if (!saved)
        OrvaLog(kOrvaLogError, "ERROR: %s: no picture saved to %s\n", "VmxUIController::saveDialogPicture",
                pngPath.c_str());
    return saved;
}

// ---- Message boxes and progress ----------------------------------------------------------------

int VmxUIControllerImpl::showMessageBox(const std::string& message, const std::string& titleKey,
                                        std::uint32_t messageType) {
    return showMessageBox(message, titleKey, messageType, 0, 0);
}

int VmxUIControllerImpl::showMessageBox(const std::string& message, const std::string& titleKey,
                                        std::uint32_t messageType, std::uint16_t callbackEvent,
                                        std::uint32_t timeIntervalMs) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%s)\n", "VmxUIController::showMessageBox", titleKey.c_str());
    OrvaLog(kOrvaLogDebug, "\tmessageType = 0x%x, message = %s\n", messageType, message.c_str());
    if (TwApplication::isGuiThread())
        return innerShowMessageBox(message, titleKey, messageType, callbackEvent, timeIntervalMs);
    if (!QCoreApplication::instance()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: no application to show a message box from this thread\n",
                "VmxUIController::showMessageBox");
        return 0;
    }
    VmxUIMessageBoxArg arg;
    arg.message = message;
    arg.title = titleKey;
    arg.messageType = messageType;
    arg.callbackEvent = callbackEvent;
    arg.timeInterval = timeIntervalMs;
    TwApplication::runOnGuiThread([this, &arg] { showMessageFunc(arg); });
    return arg.returnValue;
}

void VmxUIControllerImpl::showMessageFunc(VmxUIMessageBoxArg& arg) {
    arg.returnValue =
        innerShowMessageBox(arg.message, arg.title, arg.messageType, arg.callbackEvent, arg.timeInterval);
}

int VmxUIControllerImpl::innerShowMessageBox(const std::string& message, const std::string& titleKey,
                                             std::uint32_t messageType, std::uint16_t callbackEvent,
                                             std::uint32_t timeIntervalMs) {
    if (!ensureApplication())
        return 0;
    QString title = titleKey.empty() ? QString() : QString::fromStdString(localizedStringNoEmpty(titleKey));
    auto setup = TwMessageBoxSetupFor(
        title, QString::fromStdString(message), messageType, true,
        [this](const char* key) { return QString::fromStdString(localizedStringNoEmpty(key)); });
    QWidget* parent =
        _dlgController && _dlgController->isVisible() ? _dlgController->windowIfLoaded() : nullptr;
    int answer;
    if (callbackEvent == 0) {
        answer = TwRunMessageBox(setup, parent);
    } else {
        TwMessagePoll poll = [this, callbackEvent]() -> std::optional<std::int16_t> {
            if (!callbackFunc)
                return std::nullopt;
            std::uint16_t r = callbackFunc(callbackEvent, nullptr);
            if (r == kVmxResultContinue)
                return std::nullopt;
            return static_cast<std::int16_t>(r);
        };
        answer = TwRunMessageBox(setup, parent, poll, timeIntervalMs);
    }
    OrvaLog(kOrvaLogTrace, "LEAVE: %s, return %d\n", "VmxUIController::innerShowMessageBox", answer);
    return answer;
}

int VmxUIControllerImpl::showContinueScanDialog(std::uint16_t value) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%u)\n", "VmxUIController::showContinueScanDialog", value);
    if (TwApplication::isGuiThread())
        return innerShowContinueScanDialogFunc(value);
    if (!QCoreApplication::instance()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: no application to ask from this thread\n",
                "VmxUIController::showContinueScanDialog");
        return 0;
    }
    VmxUIMessageBoxArg arg;
    arg.callbackEvent = value;
    TwApplication::runOnGuiThread([this, &arg] { showContinueScanDialogFunc(arg); });
    return arg.returnValue;
}

void VmxUIControllerImpl::showContinueScanDialogFunc(VmxUIMessageBoxArg& arg) {
    arg.returnValue = innerShowContinueScanDialogFunc(arg.callbackEvent);
}

int VmxUIControllerImpl::innerShowContinueScanDialogFunc(std::uint16_t value) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "VmxUIController::innerShowContinueScanDialogFunc");
    // The data source's function: it stays valid whatever happens to this object meanwhile.
    const VmxUICallback callback = callbackFunc;
    if (!callback) {
        OrvaLog(kOrvaLogDebug, "\t%s: no callback, nothing asked\n",
                "VmxUIController::innerShowContinueScanDialogFunc");
        return 0;
    }
    if (!ensureApplication())
        return 0;
    auto text = [this](const char* key) {
        return localizedString(key);
    };
    const QString message = QString::fromStdString(TwFormatString(
        "%@\n\n%@\n\n%@", {text("IDS_MSG_CONTINUE_SCAN"), text("IDS_DOUBLEFEED"), text("IDS_ContinueMsg")}));
    // The value names the problem page; 0 names none.
    const QString title =
        value == 0
            ? QString()
            : QString::fromStdString(TwFormatString(text("IDS_MSG_CONTINUE_PAGE"), {std::to_string(value)}));
    const auto setup = TwMessageBoxSetupFor(
        title, message, kVmxButtonsContinueStop | kContinueScanIcon, true,
        [this](const char* key) { return QString::fromStdString(localizedStringNoEmpty(key)); });

    TwPreviewRecord record{};
    callback(kVmxEventContinueScanOpen, &record);
    TwainDialogController* c = controller();
    QWidget* parent = c->isVisible() ? c->windowIfLoaded() : nullptr;
    const TwMessagePoll poll = [callback, &record]() -> std::optional<std::int16_t> {
        const std::uint16_t r = callback(kVmxEventContinueScanPoll, &record);
        if (r == kVmxResultContinue)
            return std::nullopt;
        // The answer codes stand for their buttons; anything else as the polled boxes take it.
        if (r == kVmxAnswerContinue)
            return std::int16_t(1);
        if (r == kVmxAnswerStop)
            return std::int16_t(0);
        return static_cast<std::int16_t>(r);
    };
    const int answer =
        TwRunMessageBox(setup, parent, poll, m_continueScanPollMs, [c, &record](QMessageBox* box) {
            if (TwPreviewService* preview = c->previewService())
                preview->showContinueScanPage(record, box);
        });
    // Every way the question ends comes through here, so the data source hears of it once.
    callback(kVmxEventContinueScanClose, &record);
    if (TwPreviewService* preview = c->previewService())
        preview->closeContinueScanPage();
    // Images the page never took (the question ended before it showed) are freed all the same.
    TwReleasePreviewPages(&record);
    OrvaLog(kOrvaLogTrace, "LEAVE: %s, return %d\n", "VmxUIController::innerShowContinueScanDialogFunc",
            answer);
    return answer;
}

void VmxUIControllerImpl::showProgressDialog() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "VmxUIController::showProgressDialog");
    if (!m_showIndicators)
        return;
    TwainDialogController* c = controller();
    TwApplication::runOnGuiThread([this, c] {
        if (ensureApplication())
            c->showProgressDialog();
    });
}

void VmxUIControllerImpl::hideProgressDialog() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "VmxUIController::hideProgressDialog");
    TwainDialogController* c = controllerIfMade();
    if (!m_showIndicators || !c)
        return;
    c->hideProgressDialog();
}

void VmxUIControllerImpl::setProgress(const void* progressRecord) {
    TwainDialogController* c = controllerIfMade();
    if (!m_showIndicators || !c)
        return;
    // The record is read here, on the caller's thread; the panel is set on the GUI thread.
    std::uint32_t values[3] = {0, 0, 0};
    if (progressRecord)
        std::memcpy(values, progressRecord, sizeof values);
    TwApplication::runOnGuiThread(
        [c, values, none = progressRecord == nullptr] { c->setProgress(none ? nullptr : values); });
}

std::string VmxUIControllerImpl::localizedString(const std::string& key) {
    return localizedString(key, key);
}

std::string VmxUIControllerImpl::localizedString(const std::string& key, const std::string& defualt) {
    // The data source's table is asked with the default as the text of a key it lacks (the key
    // itself for an empty default); the module's own only without a data source bundle.
    if (bundleDS && !key.empty())
        return TwLookupString(bundleDS.get(), key).value_or(defualt.empty() ? key : defualt);
    return TwLocalizedString(bundleDS.get(), key, defualt);
}

std::string VmxUIControllerImpl::localizedStringNoEmpty(const std::string& key) {
    return TwLocalizedStringNoEmpty(bundleDS.get(), key);
}
