#include "TwainDialogController.h"

#include "ImageShared.h"
#include "OrvaDebug.h"
#include "TwApplication.h"
#include "TwBundle.h"
#include "TwDlgAbout.h"
#include "TwDlgCustom.h"
#include "TwDlgCustomGamma.h"
#include "TwDlgMain.h"
#include "TwDlgPageOrder.h"
#include "TwDlgPaperSize.h"
#include "TwDlgSaveSetting.h"
#include "TwDlgScanning.h"
#include "TwEditCommit.h"
#include "TwMessageBox.h"
#include "TwStrings.h"
#include "TwainDialogData.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QTabWidget>

#include <atomic>
#include <utility>

TwainDialogController::TwainDialogController() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::init");
}

TwainDialogController::~TwainDialogController() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::dealloc");
    // The preview windows are windows of the main panel's and of a question's; they go with those.
    m_preview.reset();
    if (m_window) {
        m_window->unbindControlAll();
        delete m_window;
    }
    // The panels made while there was no main window have no parent to take them along.
    std::apply([](auto&... panels) { (delete panels.data(), ...); }, m_panels);
    m_helpBook.clear();
    pfCallback = nullptr;
    _dialogData.reset();
    OrvaLog(kOrvaLogTrace, "LEAVE: %s\n", "TwainDialogController::dealloc");
}

// ---- Window ------------------------------------------------------------------------------------

TwDlgMain* TwainDialogController::window() {
    if (!m_window) {
        if (!QCoreApplication::instance()) {
            OrvaLog(kOrvaLogError, "ERROR: %s: no application, no window\n", "TwainDialogController::window");
            return nullptr;
        }
        m_window = new TwDlgMain;
        m_window->setPanelHost(this);
    }
    return m_window;
}

QWidget* TwainDialogController::mainWindow() const {
    return m_window;
}

template <class Panel> Panel* TwainDialogController::panel() {
    QPointer<Panel>& panel = std::get<QPointer<Panel>>(m_panels);
    if (panel)
        return panel;
    if (!QCoreApplication::instance()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: no application, no panel\n", "TwainDialogController::panel");
        return nullptr;
    }
    // Over the main window, and gone with it.
    panel = new Panel(m_window);
    panel->setPanelHost(this);
    return panel;
}

template TwDlgSaveSetting* TwainDialogController::panel();
template TwDlgPaperSize* TwainDialogController::panel();
template TwDlgCustomGamma* TwainDialogController::panel();
template TwDlgAbout* TwainDialogController::panel();
template TwDlgCustom* TwainDialogController::panel();
template TwDlgDoubleExposure* TwainDialogController::panel();
template TwDlgPageSeparation* TwainDialogController::panel();
template TwDlgScanning* TwainDialogController::panel();

void TwainDialogController::showWindow() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::showWindow");
    TwDlgMain* panel = window();
    if (!panel)
        return;
    panel->bindControlAll();
    panel->setUIOnly(UiOnly);
    panel->setTitle(m_modelName);
    // The window itself starts as first responder: no field holds the focus (the tabs do, for
    // the keyboard), as a panel that makes itself first responder has none.
    panel->tableMain()->setFocus();
    panel->show();
    panel->raise();
    panel->activateWindow();
}

void TwainDialogController::windowWillClose() {
    if (m_window)
        m_window->windowWillClose();
}

void TwainDialogController::close() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::close");
    closePreview();
    if (m_window)
        m_window->closePanel();
    _dialogData.reset();
}

bool TwainDialogController::isVisible() const {
    return m_window && m_window->isVisible();
}

// ---- Actions -----------------------------------------------------------------------------------

bool TwainDialogController::performAction(const QString& action, QObject* sender) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%s)\n", "TwainDialogController::performAction",
            action.toUtf8().constData());
    // Only the actions this class declares: a name from a data source must not reach QObject's
    // own slots (deleteLater).
    const QByteArray name = action.toLatin1();
    const QMetaObject* meta = metaObject();
    const auto declared = [meta](const QByteArray& signature) {
        return meta->indexOfSlot(signature.constData()) >= meta->methodOffset();
    };
    if (declared(name + "(QObject*)"))
        return QMetaObject::invokeMethod(this, name.constData(), Q_ARG(QObject*, sender));
    if (declared(name + "()"))
        return QMetaObject::invokeMethod(this, name.constData());
    OrvaLog(kOrvaLogError, "ERROR: %s: unknown action %s\n", "TwainDialogController::performAction",
            action.toUtf8().constData());
    return false;
}

bool TwainDialogController::commitEditing() {
    // A field holding an entry its formatter rejects keeps the focus, and the action stops.
    return !m_window || TwEndEditing(m_window);
}

std::uint16_t TwainDialogController::sendEvent(std::uint16_t event, void* data) {
    if (!pfCallback) {
        OrvaLog(kOrvaLogDebug, "\t%s: no callback for event %u\n", "TwainDialogController::sendEvent", event);
        return 0;
    }
    return pfCallback(event, data);
}

void TwainDialogController::logBundleVersion() {
    std::string version;
    if (_dialogData && _dialogData->bundleDS()) {
        TwValue v = _dialogData->bundleDS()->objectForInfoDictionaryKey("CFBundleVersion");
        version = v.isString() ? *v.str() : v.description();
    }
    OrvaLogFile(1, "\tTWAINDS Bundle Version:%s\n", version.c_str());
}

void TwainDialogController::onOK() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onOK");
    if (!commitEditing())
        return;
    closePreview();
    if (_dialogData)
        _dialogData->saveUntitleProfile();
    if (m_isModal) {
        TwApplication::stopModal();
        OrvaLog(kOrvaLogDebug, "\t[NSApp stopModal]\n");
        m_isModal = false;
    }
    sendEvent(kVmxEventClosed, this);
}

void TwainDialogController::onCancel() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onCancel");
    closePreview();
    if (m_isModal) {
        TwApplication::stopModal();
        m_isModal = false;
    }
    sendEvent(kVmxEventClosed, this);
}

std::uint16_t TwainDialogController::onStart() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onStart");
    if (!commitEditing())
        return 0;
    if (_dialogData)
        _dialogData->saveUntitleProfile();
    closePreview();
    m_isNoStopScan = false;
    logBundleVersion();
    return sendEvent(kVmxEventStart, this);
}

void TwainDialogController::onPrescan() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onPrescan");
    if (!commitEditing())
        return;
    if (_dialogData)
        _dialogData->saveUntitleProfile();
    closePreview();
    m_isNoStopScan = true;
    if (!pfCallback)
        return;
    logBundleVersion();
    TwPreviewRecord record{};
    if (sendEvent(kVmxEventPrescan, &record) != 0)
        return;
    if (m_preview)
        m_preview->showPrescan(record, m_isModal);
    else
        TwReleasePreviewPages(&record);
}

void TwainDialogController::onScanCancel() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onScanCancel");
    sendEvent(kVmxEventScanCancel, this);
}

void TwainDialogController::onDefault() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onDefault");
    closePreview();
    if (!_dialogData)
        return;
    _dialogData->restoreDefault();
    _dialogData->resetCustomize();
}

void TwainDialogController::onSaveSetting() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onSaveSetting");
    if (!commitEditing())
        return;
    if (TwDlgSaveSetting* dialog = panel<TwDlgSaveSetting>())
        dialog->saveSetting();
}

void TwainDialogController::onDeleteSetting() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onDeleteSetting");
    if (TwDlgSaveSetting* dialog = panel<TwDlgSaveSetting>())
        dialog->deleteSetting();
}

void TwainDialogController::onAbout() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onAbout");
    if (TwDlgAbout* about = panel<TwDlgAbout>())
        about->runModal();
}

void TwainDialogController::onCustomize() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onCustomize");
    if (TwDlgCustom* custom = panel<TwDlgCustom>())
        custom->runModal();
}

void TwainDialogController::onCustomPaperSize() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onCustomPaperSize");
    if (TwDlgPaperSize* dialog = panel<TwDlgPaperSize>())
        dialog->editCustomPapers();
}

void TwainDialogController::onDoubleExposure() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onDoubleExposure");
    if (TwDlgDoubleExposure* dialog = panel<TwDlgDoubleExposure>())
        dialog->editDoubleExposure();
}

void TwainDialogController::onPageSeparetion() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onPageSeparetion");
    if (TwDlgPageSeparation* dialog = panel<TwDlgPageSeparation>())
        dialog->editPageSeparation();
}

void TwainDialogController::onCustomGamma(QObject* sender) {
    auto* button = qobject_cast<QAbstractButton*>(sender);
    bool ok = false;
    const int tag = button ? button->property("tag").toInt(&ok) : -1;
    if (!ok || tag < 0 || tag > 2)
        return;
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%d)\n", "TwainDialogController::onCustomGamma", tag);
    closePreview();
    if (TwDlgCustomGamma* dialog = panel<TwDlgCustomGamma>())
        dialog->editGammaOf(tag);
}

void TwainDialogController::onHelp() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onHelp");
    if (!TwHelpBook::open(dataSourceBundle()))
        showMessageBox(localizedString(QStringLiteral("IDS_ERR_HELPFILE_LOAD")), QString(), 0x20001);
}

void TwainDialogController::closePreview() {
    if (m_preview)
        m_preview->closePreview();
}

// ---- Progress ----------------------------------------------------------------------------------

void TwainDialogController::showProgressDialog() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::showProgressDialog");
    if (!QCoreApplication::instance())
        return;
    const bool made = panelIfMade<TwDlgScanning>();
    TwDlgScanning* progress = panel<TwDlgScanning>();
    if (!made)
        progress->setWindowTitle(m_modelName);
    progress->showOver(m_window, m_isNoStopScan);
}

void TwainDialogController::hideProgressDialog() {
    static std::atomic_bool busy{false};
    if (busy.exchange(true))
        return;
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::hideProgressDialog");
    TwApplication::runOnGuiThread([this] {
        TwDlgScanning* progress = panelIfMade<TwDlgScanning>();
        if (!progress)
            return;
        progress->stopAnimation();
        if (progress->isVisible())
            progress->hide();
    });
    busy = false;
    OrvaLog(kOrvaLogTrace, "LEAVE: %s\n", "TwainDialogController::hideProgressDialog");
}

void TwainDialogController::setProgress(const void* progressRecord) {
    if (TwDlgScanning* progress = panelIfMade<TwDlgScanning>())
        progress->setProgressRecord(progressRecord);
}

// ---- Messages and texts ------------------------------------------------------------------------

int TwainDialogController::showMessageBox(const QString& message, const QString& title,
                                          std::uint32_t messageType) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s(0x%x)\n", "TwainDialogController::showMessageBox", messageType);
    auto setup = TwMessageBoxSetupFor(title, message, messageType, false, [this](const char* key) {
        return localizedStringNoEmpty(QString::fromLatin1(key));
    });
    int answer = TwRunMessageBox(setup, isVisible() ? m_window.data() : nullptr);
    OrvaLog(kOrvaLogTrace, "LEAVE: %s, return %d\n", "TwainDialogController::showMessageBox", answer);
    return answer;
}

const TwBundle* TwainDialogController::dataSourceBundle() const {
    return _dialogData ? _dialogData->bundleDS().get() : nullptr;
}

QString TwainDialogController::localizedString(const QString& key) {
    return QString::fromStdString(TwLocalizedString(dataSourceBundle(), key.toStdString()));
}

QString TwainDialogController::localizedStringNoEmpty(const QString& key) {
    return QString::fromStdString(TwLocalizedStringNoEmpty(dataSourceBundle(), key.toStdString()));
}
