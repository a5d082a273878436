#include "TwainDialogController.h"

#include "ImageShared.h"
#include "OrvaDebug.h"
#include "TwApplication.h"
#include "TwBundle.h"
#include "TwDlgCustomGamma.h"
#include "TwDlgMain.h"
#include "TwDlgPaperSize.h"
#include "TwDlgScanning.h"
#include "TwEditCommit.h"
#include "TwMessageBox.h"
#include "TwStrings.h"
#include "TwainDialogData.h"

#include <QComboBox>
#include <QCoreApplication>
#include <QDesktopServices>
#include <QDir>
#include <QFileInfo>
#include <QImage>
#include <QPixmap>
#include <QPushButton>
#include <QScreen>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

namespace {
constexpr int kMaxProfiles = 50;
constexpr int kPrescanSessionPoll = 200; // ms
constexpr int kPreviewGap = 10;          // points between the dialog and the preview
// The page beside a continue-scan question stands this far from it.
constexpr int kContinueScanPageGap = 10;

TwainDialogController::UrlOpener& urlOpener() {
    static TwainDialogController::UrlOpener opener;
    return opener;
}

QString& helpRoot() {
    static QString root = QStringLiteral("/Library/Documentation/OrvanicVMX");
    return root;
}

QString qs(const std::string& s) {
    return QString::fromStdString(s);
}

QString formatWith(const QString& format, const QString& argument) {
    return qs(TwFormatString(format.toStdString(), {argument.toStdString()}));
}

std::uint32_t readUInt32(const void* p, std::size_t offset) {
    std::uint32_t v;
    std::memcpy(&v, static_cast<const unsigned char*>(p) + offset, sizeof v);
    return v;
}
} // namespace

TwainDialogController::TwainDialogController() : m_prescanSessionTimer(new QTimer(this)) {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::init");
    m_prescanSessionTimer->setInterval(kPrescanSessionPoll);
    connect(m_prescanSessionTimer, &QTimer::timeout, this, [this] { doModelPreviewThread(); });
}

TwainDialogController::~TwainDialogController() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::dealloc");
    // The preview is a window of the main panel's and goes with it.
    if (m_dlgPreview)
        m_dlgPreview->unbindControlAll();
    if (m_window) {
        m_window->unbindControlAll();
        delete m_window;
    }
    sessionPrescan = false;
    // The panels made while there was no main window have no parent to take them along.
    delete m_dlgScanning;
    delete m_dlgSaveSetting;
    delete m_dlgPaperSize;
    delete m_dlgGamma;
    delete m_dlgAbout;
    delete m_dlgCustom;
    delete m_dlgDoubleExposure;
    delete m_dlgPageSeparation;
    DSHelpBookName.clear();
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
        m_window->setWindowController(this);
        applyButtonTextKeys(m_window);
    }
    return m_window;
}

void TwainDialogController::applyButtonTextKeys(QWidget* root) {
    for (auto* button : root->findChildren<QPushButton*>()) {
        const QString key = button->property("textKey").toString();
        if (key.isEmpty())
            continue;
        auto text = TwLookupString(dataSourceBundle(), key.toStdString());
        if (text && !text->empty())
            button->setText(qs(*text));
    }
}

template <class Panel> Panel* TwainDialogController::panelOnFirstUse(QPointer<Panel>& panel) {
    if (panel)
        return panel;
    if (!QCoreApplication::instance()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: no application, no panel\n",
                "TwainDialogController::panelOnFirstUse");
        return nullptr;
    }
    // Over the main window, and gone with it.
    panel = new Panel(m_window);
    panel->setWindowController(this);
    applyButtonTextKeys(panel);
    return panel;
}

TwDlgSaveSetting* TwainDialogController::dlgSaveSetting() {
    return panelOnFirstUse(m_dlgSaveSetting);
}

TwDlgPaperSize* TwainDialogController::dlgPaperSize() {
    return panelOnFirstUse(m_dlgPaperSize);
}

TwDlgCustomGamma* TwainDialogController::dlgGamma() {
    return panelOnFirstUse(m_dlgGamma);
}

TwDlgAbout* TwainDialogController::dlgAbout() {
    return panelOnFirstUse(m_dlgAbout);
}

TwDlgCustom* TwainDialogController::dlgCustom() {
    return panelOnFirstUse(m_dlgCustom);
}

TwDlgDoubleExposure* TwainDialogController::dlgDoubleExposure() {
    return panelOnFirstUse(m_dlgDoubleExposure);
}

TwDlgPageSeparation* TwainDialogController::dlgPageSeparation() {
    return panelOnFirstUse(m_dlgPageSeparation);
}

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

bool TwainDialogController::windowShouldClose() {
    onCancel();
    return false;
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
    static const std::pair<const char*, void (TwainDialogController::*)()> plain[] = {
        {"onOK", &TwainDialogController::onOK},
        {"onCancel", &TwainDialogController::onCancel},
        {"onPrescan", &TwainDialogController::onPrescan},
        {"onScanCancel", &TwainDialogController::onScanCancel},
        {"onDefault", &TwainDialogController::onDefault},
        {"onSaveSetting", &TwainDialogController::onSaveSetting},
        {"onDeleteSetting", &TwainDialogController::onDeleteSetting},
        {"onAbout", &TwainDialogController::onAbout},
        {"onCustomize", &TwainDialogController::onCustomize},
        {"onHelp", &TwainDialogController::onHelp},
        {"onCustomPaperSize", &TwainDialogController::onCustomPaperSize},
        {"onDoubleExposure", &TwainDialogController::onDoubleExposure},
        {"onPageSeparetion", &TwainDialogController::onPageSeparetion},
    };
    if (action == QLatin1String("onStart")) {
        onStart();
        return true;
    }
    if (action == QLatin1String("onCustomGamma")) {
        onCustomGamma(sender);
        return true;
    }
    for (auto& [name, method] : plain) {
        if (action == QLatin1String(name)) {
            (this->*method)();
            return true;
        }
    }
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
    std::uint16_t result = sendEvent(kVmxEventPrescan, &record);
    if (result != 0)
        return;
    if (!record.front.pDIB) {
        OrvaLog(kOrvaLogDebug, "\t%s: no front image\n", "TwainDialogController::onPrescan");
        setPreviewImages(&record); // a back image alone is still ours to free
        return;
    }
    auto size = bitmapSizeMillimetres(record.front.pDIB, record.front.imageLength);
    if (!size)
        OrvaLog(kOrvaLogError, "ERROR: %s: the front image has no size; the paper size stands for it\n",
                "TwainDialogController::onPrescan");
    setPreviewImages(&record);
    TwPreviewPanel* preview = dlgPreview();
    if (!preview)
        return;
    placePreview(preview);
    preview->setSizeFromScanImage(size ? QSizeF(size->first, size->second) : QSizeF());
    preview->setIsModal(m_isModal);
    preview->setDisplayOnly(false);
    preview->showWindow();
    placePreview(preview); // again, now that the window system has given it a frame
    if (m_isModal) {
        // The dialog is application-modal; the preview, a window of the dialog's, is not blocked
        // by it, so both take input until the preview closes.
        sessionPrescan = true;
        OrvaLog(kOrvaLogDebug, "\t%s: prescan session begun\n", "TwainDialogController::onPrescan");
        m_prescanSessionTimer->start();
    }
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
    if (!commitEditing() || !_dialogData)
        return;
    QStringList names;
    TwValue profiles = _dialogData->customProfiles();
    if (auto list = profiles.list()) {
        for (auto& profile : *list) {
            TwValue name = profile.dict() ? profile.dict()->value("ProfileName") : TwValue();
            names << (name.isString() ? qs(*name.str()) : qs(name.description()));
        }
    }
    TwDlgSaveSetting* dialog = dlgSaveSetting();
    if (!dialog)
        return;
    dialog->setType(TwDlgSaveSetting::SettingName);
    dialog->setCheckOverwrite(true);
    dialog->setNameList(names);
    dialog->setName(QString());
    if (dialog->runModal() != 1)
        return;
    const QString name = dialog->name().trimmed();
    if (name.isEmpty()) {
        showMessageBox(localizedString(QStringLiteral("IDS_MSG_INPUT_NAME")), QString(), 0x20001);
        return;
    }
    if (_dialogData->ProfileCount() >= kMaxProfiles && !_dialogData->IsProfileExist(name.toStdString())) {
        showMessageBox(localizedString(QStringLiteral("IDS_ERR_OVERSAVESETTINGS")), QString(), 0x20001);
        return;
    }
    _dialogData->AddCustomProfile(name.toStdString());
}

void TwainDialogController::onDeleteSetting() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onDeleteSetting");
    if (!_dialogData)
        return;
    TwValue name = _dialogData->valueForKeyPath("profiles.name");
    TwValue temporary = _dialogData->valueForKeyPath("profiles.temporary");
    if (name.isEqual(temporary)) {
        showMessageBox(localizedString(QStringLiteral("IDS_PROFILE_DEL_TEMP")), QString(), 0x20001);
        return;
    }
    if (!name.isString() || !_dialogData->IsProfileExist(*name.str())) {
        OrvaLog(kOrvaLogError, "ERROR: %s: '%s' is not a saved setting; nothing to delete\n",
                "TwainDialogController::onDeleteSetting", name.description().c_str());
        return;
    }
    QString text = qs(*name.str());
    int answer = showMessageBox(formatWith(localizedString(QStringLiteral("IDS_PROFILE_DEL_CONFIRM")), text),
                                QString(), 0x40002);
    if (answer == kVmxAnswerCancel)
        return;
    _dialogData->deleteCustomProfile(text.toStdString());
}

void TwainDialogController::onAbout() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onAbout");
    if (TwDlgAbout* about = dlgAbout())
        about->runModal();
}

void TwainDialogController::onCustomize() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onCustomize");
    if (TwDlgCustom* custom = dlgCustom())
        custom->runModal();
}

void TwainDialogController::onCustomPaperSize() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onCustomPaperSize");
    TwDlgPaperSize* dialog = dlgPaperSize();
    if (!dialog || !_dialogData)
        return;
    const TwSize before = _dialogData->GetCurrentPaperSize();
    dialog->center();
    dialog->runModal();

    for (const char* key : {"content.PaperSizeAll", "content.PaperSizeAllPlusNone"})
        _dialogData->willChangeValueForKey(key);
    _dialogData->updateContentPaperSizeAll();
    for (const char* key : {"content.PaperSizeAll", "content.PaperSizeAllPlusNone"})
        _dialogData->didChangeValueForKey(key);

    // The newest paper added that still exists becomes the selection.
    const QStringList& added = dialog->addedPaperSize();
    auto known = std::find_if(added.begin(), added.end(), [this](const QString& name) {
        return _dialogData->customPaperExist(TwValue(name.toStdString()));
    });
    if (known != added.end()) {
        _dialogData->willChangeValueForKey("Data.PaperSize");
        _dialogData->setValueForKeyPath(TwValue(known->toStdString()), "Data.PaperSize");
        _dialogData->didChangeValueForKey("Data.PaperSize");
    } else {
        // A custom paper that was deleted gives way to the standard paper of the model's rules.
        _dialogData->validatePaperValues();
    }

    const TwSize after = _dialogData->GetCurrentPaperSize();
    if (after.width != before.width || after.length != before.length) {
        closePreview();
        _dialogData->AdjustLandscapeEnableAndArea();
    }
}

void TwainDialogController::onDoubleExposure() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onDoubleExposure");
    TwDlgDoubleExposure* dialog = dlgDoubleExposure();
    if (!dialog || !_dialogData)
        return;
    const TwValue order = _dialogData->valueForKeyPath("Data.Layout.DoubleExposure.PageOrder");
    const TwValue papers = _dialogData->valueForKeyPath("content.PaperSizeAllPlusNone");
    const TwValue paper = _dialogData->valueForKeyPath("Data.Layout.DoubleExposure.PaperSize");
    int index = 0;
    if (auto list = papers.list()) {
        for (std::size_t i = 0; i < list->size(); ++i) {
            auto entry = (*list)[i].dict();
            if (entry && entry->value("value").isEqual(paper)) {
                index = int(i);
                break;
            }
        }
    }
    dialog->setPageOrder(int(order.intValue()));
    dialog->setPaperSize(index);
    if (dialog->runModal() != 1)
        return;
    _dialogData->myChangeValue(TwValue(dialog->pageOrder()), "Data.Layout.DoubleExposure.PageOrder");
    auto list = _dialogData->valueForKeyPath("content.PaperSizeAllPlusNone").list();
    const int chosen = dialog->paperSize();
    if (!list || chosen < 0 || std::size_t(chosen) >= list->size() || !(*list)[std::size_t(chosen)].dict()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: paper size %d is not in content.PaperSizeAllPlusNone; kept\n",
                "TwainDialogController::onDoubleExposure", chosen);
        return;
    }
    _dialogData->myChangeValue((*list)[std::size_t(chosen)].dict()->value("value"),
                               "Data.Layout.DoubleExposure.PaperSize");
}

void TwainDialogController::onPageSeparetion() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onPageSeparetion");
    TwDlgPageSeparation* dialog = dlgPageSeparation();
    if (!dialog || !_dialogData)
        return;
    dialog->setPageOrder(
        int(_dialogData->valueForKeyPath("Data.Layout.PageSeparation.PageOrder").intValue()));
    if (dialog->runModal() == 1)
        _dialogData->myChangeValue(TwValue(dialog->pageOrder()), "Data.Layout.PageSeparation.PageOrder");
}

void TwainDialogController::onCustomGamma(QObject* sender) {
    auto* button = qobject_cast<QAbstractButton*>(sender);
    if (!button)
        return;
    static const char* const keyPaths[] = {"temp.BinaryImage.Gamma", "temp.GrayImage.Gamma",
                                           "temp.ColorImage.Gamma"};
    bool ok = false;
    int tag = button->property("tag").toInt(&ok);
    if (!ok || tag < 0 || tag > 2)
        return;
    OrvaLog(kOrvaLogTrace, "ENTER: %s(%s)\n", "TwainDialogController::onCustomGamma", keyPaths[tag]);
    TwDlgCustomGamma* dialog = dlgGamma();
    if (!dialog || !_dialogData)
        return;
    const std::string keyPath = keyPaths[tag];
    dialog->setIsColor(tag == 2);
    const TwValue current = _dialogData->valueForKeyPath(keyPath);
    dialog->setCurrentGammaName(current.isString() ? std::optional<QString>(qs(*current.str()))
                                                   : std::nullopt);
    closePreview();
    dialog->center();
    dialog->runModal();
    if (auto name = dialog->currentGammaName()) {
        _dialogData->willChangeValueForKey(keyPath);
        _dialogData->setValueForKeyPath(TwValue(name->toStdString()), keyPath);
        _dialogData->didChangeValueForKey(keyPath);
        _dialogData->validateGammaValues();
    }
}

void TwainDialogController::onHelp() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::onHelp");
    const TwBundle* ds = _dialogData ? _dialogData->bundleDS().get() : nullptr;
    TwValue folderValue = ds ? ds->objectForInfoDictionaryKey("CFBundleHelpBookFolder") : TwValue();
    QString folder = folderValue.isString() ? qs(*folderValue.str()) : QString();
    QString bundlePath;
    if (!folder.isEmpty()) {
        QString installed = QDir(helpRoot()).filePath(folder);
        if (QFileInfo(installed).isDir())
            bundlePath = installed;
        else if (ds)
            bundlePath = qs(ds->pathForResource(folder.toStdString(), ""));
    }
    QString page;
    if (!bundlePath.isEmpty()) {
        // A help bundle keeps its book under Contents/Resources, or flat in its folder.
        auto help = TwBundle::bundleWithPath(bundlePath.toStdString());
        QString book = help ? qs(help->pathForResource("HelpBook", "")) : QString();
        if (book.isEmpty() && QFileInfo(bundlePath + QStringLiteral("/HelpBook")).isDir())
            book = bundlePath + QStringLiteral("/HelpBook");
        if (!book.isEmpty() && QFileInfo::exists(book + QStringLiteral("/index.html")))
            page = book + QStringLiteral("/index.html");
    }
    if (page.isEmpty()) {
        OrvaLog(kOrvaLogError, "ERROR: %s: no help book (folder '%s')\n", "TwainDialogController::onHelp",
                folder.toUtf8().constData());
        showMessageBox(localizedString(QStringLiteral("IDS_ERR_HELPFILE_LOAD")), QString(), 0x20001);
        return;
    }
    OrvaLog(kOrvaLogDebug, "\t%s: %s\n", "TwainDialogController::onHelp", page.toUtf8().constData());
    QUrl url = QUrl::fromLocalFile(page);
    bool opened = urlOpener() ? urlOpener()(url) : QDesktopServices::openUrl(url);
    if (!opened) {
        // No browser or launcher on the machine: as good as no help book.
        OrvaLog(kOrvaLogError, "ERROR: %s: the desktop could not open %s\n", "TwainDialogController::onHelp",
                page.toUtf8().constData());
        showMessageBox(localizedString(QStringLiteral("IDS_ERR_HELPFILE_LOAD")), QString(), 0x20001);
    }
}

bool TwainDialogController::registerHelp(const QStringList& bundlePaths) {
    for (const QString& path : bundlePaths) {
        auto bundle = TwBundle::bundleWithPath(path.toStdString());
        if (!bundle)
            continue;
        TwValue name = bundle->objectForInfoDictionaryKey("CFBundleHelpBookName");
        if (!name.isString())
            continue;
        OrvaLog(kOrvaLogDebug, "\tregisterBooksInBundle: '%s'\n", path.toUtf8().constData());
        DSHelpBookName = qs(*name.str());
        return true;
    }
    return false;
}

void TwainDialogController::setUrlOpener(UrlOpener opener) {
    urlOpener() = std::move(opener);
}

void TwainDialogController::setHelpRoot(const QString& folder) {
    helpRoot() = folder;
}

// ---- Preview -----------------------------------------------------------------------------------

TwPreviewPanel* TwainDialogController::previewPanel() {
    if (!m_dlgPreview && m_previewMaker && window()) {
        m_dlgPreview = m_previewMaker(m_window);
        if (m_dlgPreview)
            m_dlgPreview->setWindowController(this);
    }
    return m_dlgPreview;
}

void TwainDialogController::placePreview(TwPreviewPanel* preview) {
    if (!m_window)
        return;
    // Beside the dialog's right edge, bottoms level; where the screen is too small for both, never
    // over the dialog's bottom buttons.
    preview->placeBeside(m_window, kPreviewGap, TwPanel::Level::Bottoms, m_window->buttonRow(), true);
}

void TwainDialogController::closePreview() {
    if (!m_dlgPreview || !m_dlgPreview->isVisible())
        return;
    OrvaLog(kOrvaLogDebug, "%s: [dlgPreview close]\n", "TwainDialogController::closePreview");
    m_dlgPreview->closePanel();
    if (sessionPrescan)
        doModelPreviewThread();
}

void TwainDialogController::doModelPreviewThread() {
    if (!sessionPrescan) {
        m_prescanSessionTimer->stop();
        return;
    }
    if (m_dlgPreview && m_dlgPreview->isVisible())
        return; // the session goes on
    sessionPrescan = false;
    m_prescanSessionTimer->stop();
    OrvaLog(kOrvaLogDebug, "\t%s: prescan session ended\n", "TwainDialogController::doModelPreviewThread");
}

void TwainDialogController::setPreviewImages(TwPreviewRecord* record) {
    setPreviewImages(record, true);
}

void TwainDialogController::setPreviewImages(TwPreviewRecord* record, bool freeImage) {
    handOverImages(previewPanel(), record, freeImage);
}

namespace {
// The record's two bitmaps as pages of our own: taken as they are (the data source made them with
// malloc, and they are freed with free) or copied when the record's owner keeps them. A data
// source that gives the same block for both sides hands over one block: it is freed once and its
// page shown for both. The record's pointers are cleared when taken.
std::array<TwOwnedDIB, 2> takePages(TwPreviewRecord* record, bool take) {
    std::array<TwOwnedDIB, 2> pages;
    TwPreviewSide* sides[2] = {&record->front, &record->back};
    // The record is packed: its pointers are read and cleared by value, never by reference.
    void* const blocks[2] = {sides[0]->pDIB, sides[1]->pDIB};
    for (int i = 0; i < 2; ++i) {
        if (!blocks[i])
            continue;
        if (i == 1 && blocks[1] == blocks[0]) {
            OrvaLog(kOrvaLogError,
                    "ERROR: %s: the back image is the front's block; it is shown for both sides\n",
                    "TwainDialogController::setPreviewImages");
            pages[1] = TwOwnedDIB::copyOf(pages[0].data(), pages[0].length());
        } else if (take) {
            pages[i] = TwOwnedDIB(blocks[i], sides[i]->imageLength);
        } else {
            pages[i] = TwOwnedDIB::copyOf(blocks[i], sides[i]->imageLength);
        }
    }
    if (take) {
        sides[0]->pDIB = nullptr;
        sides[1]->pDIB = nullptr;
    }
    return pages;
}
} // namespace

void TwainDialogController::handOverImages(TwPreviewPanel* preview, TwPreviewRecord* record, bool freeImage) {
    if (!record)
        return;
    std::array<TwOwnedDIB, 2> pages = takePages(record, freeImage);
    OrvaLog(kOrvaLogDebug, "\t%s: ratios front %.3f/%.3f/%.3f back %.3f/%.3f/%.3f\n",
            "TwainDialogController::setPreviewImages", record->front.colorRatio, record->front.whiteRatio,
            record->front.blackRatio, record->back.colorRatio, record->back.whiteRatio,
            record->back.blackRatio);
    if (!preview)
        return;
    preview->setColorRatioFront(record->front.colorRatio);
    preview->setWhiteRatioFront(record->front.whiteRatio);
    preview->setBlackRatioFront(record->front.blackRatio);
    preview->setColorRatioBack(record->back.colorRatio);
    preview->setWhiteRatioBack(record->back.whiteRatio);
    preview->setBlackRatioBack(record->back.blackRatio);
    preview->setPrescanImage(std::move(pages[0]), std::move(pages[1]));
}

void TwainDialogController::releasePreviewImages(TwPreviewRecord* record) {
    if (record)
        takePages(record, true); // and let them go
}

void TwainDialogController::previewRescan() {
    TwPreviewRecord record{};
    if (sendEvent(kVmxEventPreviewRescan, &record) == 0 && pfCallback)
        setPreviewImages(&record);
}

std::optional<std::pair<double, double>> TwainDialogController::bitmapSizeMillimetres(const void* bitmap,
                                                                                      std::uint32_t length) {
    return GetDIBSizeMillimetres(bitmap, length);
}

// ---- The problem page of a continue-scan question ------------------------------------------------

void TwainDialogController::showContinueScanPage(TwPreviewRecord* record, QWidget* question) {
    closeContinueScanPage();
    if (!record)
        return;
    if (!record->front.pDIB) {
        OrvaLog(kOrvaLogError, "ERROR: pDIB = NULL\n");
        releasePreviewImages(record);
        return;
    }
    const auto layout = TwDibLayoutOf(record->front.pDIB, record->front.imageLength,
                                      "TwainDialogController::showContinueScanPage");
    if (!layout) {
        releasePreviewImages(record); // refused, logged: only the question shows
        return;
    }
    // A preview window of the question's own: shown with it, taking input while it runs (a window
    // of a modal window is not blocked by it), and gone with it. The prescan preview stays as it is.
    TwPreviewPanel* page = m_previewMaker && question ? m_previewMaker(question) : nullptr;
    if (!page) {
        releasePreviewImages(record);
        return;
    }
    page->setWindowController(this);
    // A page that does not say its resolution is shown as if scanned at 100 dpi.
    auto size = bitmapSizeMillimetres(record->front.pDIB, record->front.imageLength);
    page->setSizeFromScanImage(size
                                   ? QSizeF(size->first, size->second)
                                   : QSizeF(layout->width, layout->height) * (kTwMillimetresPerInch / 100.0));
    page->setIsModal(false);
    page->setDisplayOnly(true);
    // The question is what the person answers: the page beside it never takes the keyboard.
    page->setAttribute(Qt::WA_ShowWithoutActivating);
    page->setWindowFlag(Qt::WindowDoesNotAcceptFocus);
    handOverImages(page, record, true);
    page->showWindow();
    page->placeBeside(question, kContinueScanPageGap, TwPanel::Level::Tops);
    m_continueScanPage = page;
    question->activateWindow();
}

void TwainDialogController::closeContinueScanPage() {
    if (m_continueScanPage)
        m_continueScanPage->closePanel();
    m_continueScanPage = nullptr;
}

// ---- Progress ----------------------------------------------------------------------------------

void TwainDialogController::showProgressDialog() {
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::showProgressDialog");
    if (!QCoreApplication::instance())
        return;
    bool mainVisible = isVisible();
    if (!m_dlgScanning && panelOnFirstUse(m_dlgScanning))
        m_dlgScanning->setWindowTitle(m_modelName);
    if (mainVisible) {
        // A sheet: modal for the main window only, over it.
        m_dlgScanning->setStopButtonHidden(m_isNoStopScan);
        if (m_dlgScanning->parentWidget() != m_window.data()) {
            m_dlgScanning->setParent(m_window, Qt::Dialog);
        }
        m_dlgScanning->setWindowModality(Qt::WindowModal);
    } else {
        m_dlgScanning->setStopButtonHidden(true);
        if (m_dlgScanning->parentWidget())
            m_dlgScanning->setParent(nullptr, Qt::Dialog);
        m_dlgScanning->setWindowModality(Qt::NonModal);
    }
    // Placed by us every time: left to the window system, a first appearance before the frame is
    // known lands a title bar higher than the later ones.
    m_dlgScanning->adjustSize();
    m_dlgScanning->center();
    m_dlgScanning->show();
    m_dlgScanning->raise();
    m_dlgScanning->startAnimation();
}

void TwainDialogController::hideProgressDialog() {
    static std::atomic_bool busy{false};
    if (busy.exchange(true))
        return;
    OrvaLog(kOrvaLogTrace, "ENTER: %s\n", "TwainDialogController::hideProgressDialog");
    TwApplication::runOnGuiThread([this] {
        if (!m_dlgScanning)
            return;
        m_dlgScanning->stopAnimation();
        if (m_dlgScanning->isVisible())
            m_dlgScanning->hide();
    });
    busy = false;
    OrvaLog(kOrvaLogTrace, "LEAVE: %s\n", "TwainDialogController::hideProgressDialog");
}

void TwainDialogController::setProgress(const void* progressRecord) {
    if (!m_dlgScanning)
        return;
    if (!progressRecord) {
        m_dlgScanning->setProgressValue(0, 100);
        return;
    }
    m_dlgScanning->setProgressValue(readUInt32(progressRecord, 8), readUInt32(progressRecord, 4));
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

QString TwainDialogController::localizedString(const QString& key, const TwBundle* bundle) {
    return qs(TwLocalizedString(bundle, key.toStdString()));
}

QString TwainDialogController::localizedString(const QString& key) {
    return localizedString(key, dataSourceBundle());
}

QString TwainDialogController::localizedStringNoEmpty(const QString& key) {
    return qs(TwLocalizedStringNoEmpty(dataSourceBundle(), key.toStdString()));
}
