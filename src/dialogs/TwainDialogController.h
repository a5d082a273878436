// The window controller of the settings dialog: owns the main panel and the sub-dialogs, runs
// every button action, hands what needs the scanner to the data source through the callback, shows
// the progress panel, opens the help and shows message boxes with localized button titles.
#pragma once

#include "TwDlgAbout.h"
#include "TwDlgCustom.h"
#include "TwDlgMain.h"
#include "TwDlgPageOrder.h"
#include "TwDlgSaveSetting.h"
#include "TwDlgScanning.h"
#include "TwPreviewPanel.h"
#include "VmxUI.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QUrl>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

class TwBundle;
class TwDlgCustomGamma;
class TwDlgPaperSize;
class TwPanel;
class TwainDialogData;
class QTimer;
class QWidget;

class TwainDialogController : public QObject {
    Q_OBJECT
public:
    TwainDialogController();
    ~TwainDialogController() override;

    // ---- Window ----

    // The main panel, made on first use (a QApplication must exist).
    TwDlgMain* window();
    TwDlgMain* windowIfLoaded() const { return m_window; }
    // Binds the panel, sets settings-only mode and the title, shows it in front.
    void showWindow();
    // The close box is Cancel; the window itself stays until the data source hides the dialog.
    bool windowShouldClose();
    void windowWillClose();
    // Closes the window and lets go of the model.
    void close();
    bool isVisible() const;

    void setCallback(VmxUICallback callback) { pfCallback = callback; }
    void setDialogData(std::shared_ptr<TwainDialogData> model) { _dialogData = std::move(model); }
    TwainDialogData* dialogData() const { return _dialogData.get(); }
    void setModelDef(TwModelDefFile* modelDef) { _ModelDef = modelDef; }
    TwModelDefFile* ModelDef() const { return _ModelDef; }
    void setModelName(const QString& name) { m_modelName = name; }
    QString modelName() const { return m_modelName; }
    void setUiOnly(bool uiOnly) { UiOnly = uiOnly; }
    bool uiOnly() const { return UiOnly; }
    void setIsModal(bool modal) { m_isModal = modal; }
    bool isModal() const { return m_isModal; }
    bool isNoStopScan() const { return m_isNoStopScan; }

    // ---- Sub-dialogs, made on first use ----

    // The name dialog for settings and custom gammas.
    TwDlgSaveSetting* dlgSaveSetting();
    // The custom paper-size and custom gamma editors.
    TwDlgPaperSize* dlgPaperSize();
    TwDlgCustomGamma* dlgGamma();
    TwDlgAbout* dlgAbout();
    TwDlgCustom* dlgCustom();
    TwDlgDoubleExposure* dlgDoubleExposure();
    TwDlgPageSeparation* dlgPageSeparation();

    // ---- Button actions ----

    // Runs the action a button's "action" property names; false for an unknown name.
    bool performAction(const QString& action, QObject* sender = nullptr);
    void onOK();
    void onCancel();
    std::uint16_t onStart();
    void onPrescan();
    void onScanCancel();
    void onDefault();
    void onSaveSetting();
    void onDeleteSetting();
    void onAbout();
    void onCustomize();
    void onHelp();
    void onCustomPaperSize();
    void onDoubleExposure();
    void onPageSeparetion();
    void onCustomGamma(QObject* sender);

    // ---- Preview ----

    // The preview window, once a prescan has made it.
    TwPreviewPanel* dlgPreview() const { return m_dlgPreview; }
    // How the preview window is made; the facade gives TwDlgPreview's. Without one a prescan
    // frees the images and shows nothing.
    using PreviewMaker = std::function<TwPreviewPanel*(QWidget* parent)>;
    void setPreviewMaker(PreviewMaker maker) { m_previewMaker = std::move(maker); }
    // The preview of a modal dialog's prescan is up: both windows take input while it lasts.
    bool hasPrescanSession() const { return sessionPrescan; }
    // Looks whether the prescan session's window is still up (every 0.2 s while a session runs)
    // and ends the session once it has closed.
    void doModelPreviewThread();
    void closePreview();
    void setPreviewImages(TwPreviewRecord* record);
    void setPreviewImages(TwPreviewRecord* record, bool freeImage);
    void previewRescan();
    // Width and height in millimetres from a bitmap header, or nothing when the header is
    // missing, short or has no resolution.
    static std::optional<std::pair<double, double>> bitmapSizeMillimetres(const void* bitmap,
                                                                          std::uint32_t length);

    // Frees the images of the record (with free(), as the data source made them with malloc) and
    // clears their pointers.
    static void releasePreviewImages(TwPreviewRecord* record);

    // ---- The problem page of a continue-scan question ----
    // The one place that receives the page a continue-scan question is about: the front image of
    // the record the data source filled for event 0x1001. It is shown beside the question in a
    // preview window in display-only mode (pages only, hand and zoom tools), a window of the
    // question's; every image of the record is freed here. Without a front image "ERROR: pDIB =
    // NULL" is logged and only the question shows.
    void showContinueScanPage(TwPreviewRecord* record, QWidget* question);
    void closeContinueScanPage();
    TwPreviewPanel* continueScanPage() const { return m_continueScanPage; }

    // ---- Progress ----

    void showProgressDialog();
    void hideProgressDialog();
    // Record of 32-bit values: maximum at byte 4, value at byte 8; none shows 0 of 100.
    void setProgress(const void* progressRecord);
    TwDlgScanning* scanningPanel() const { return m_dlgScanning; }

    // ---- Messages and texts ----

    int showMessageBox(const QString& message, const QString& title, std::uint32_t messageType);
    QString localizedString(const QString& key, const TwBundle* bundle);
    QString localizedString(const QString& key);
    QString localizedStringNoEmpty(const QString& key);
    // The data source's bundle (through the model), or null.
    const TwBundle* dataSourceBundle() const;
    // Keeps the help book name of the first bundle that has one; false when none has.
    bool registerHelp(const QStringList& bundlePaths);
    QString helpBookName() const { return DSHelpBookName; }

    // ---- Replaceable for tests ----

    // Opens the help page; the default is QDesktopServices::openUrl.
    using UrlOpener = std::function<bool(const QUrl&)>;
    static void setUrlOpener(UrlOpener opener);
    // Where the help books are looked for first.
    static void setHelpRoot(const QString& folder);

private:
    bool commitEditing();
    std::uint16_t sendEvent(std::uint16_t event, void* data);
    void logBundleVersion();
    // The sub-dialog in that member, made over the main window (when there is one) on first use.
    template <class Panel> Panel* panelOnFirstUse(QPointer<Panel>& panel);
    // Button titles the data source's string table gives for the buttons that name a key.
    void applyButtonTextKeys(QWidget* root);

    TwPreviewPanel* previewPanel();
    // Pages and ratios of the record to the preview window (none: only freed when asked).
    void handOverImages(TwPreviewPanel* preview, TwPreviewRecord* record, bool freeImage);
    void placePreview(TwPreviewPanel* preview);

    QPointer<TwDlgMain> m_window;
    QPointer<TwPreviewPanel> m_dlgPreview;
    PreviewMaker m_previewMaker;
    bool sessionPrescan = false;
    QTimer* m_prescanSessionTimer;
    QPointer<TwDlgScanning> m_dlgScanning;
    QPointer<TwDlgSaveSetting> m_dlgSaveSetting;
    QPointer<TwDlgPaperSize> m_dlgPaperSize;
    QPointer<TwDlgCustomGamma> m_dlgGamma;
    QPointer<TwDlgAbout> m_dlgAbout;
    QPointer<TwDlgCustom> m_dlgCustom;
    QPointer<TwDlgDoubleExposure> m_dlgDoubleExposure;
    QPointer<TwDlgPageSeparation> m_dlgPageSeparation;
    QPointer<TwPreviewPanel> m_continueScanPage;
    QString DSHelpBookName;
    VmxUICallback pfCallback = nullptr;
    bool UiOnly = false;
    bool m_isModal = false;
    bool m_isNoStopScan = false;
    std::shared_ptr<TwainDialogData> _dialogData;
    TwModelDefFile* _ModelDef = nullptr;
    QString m_modelName;
};
