// The window controller of the settings dialog: owns the main panel and the sub-dialogs, runs the
// button actions by handing each to the panel that does its work, hands what needs the scanner to
// the data source through the callback (a prescan's result goes to the preview service), shows
// the progress panel and message boxes. Panels reach it only as their TwPanelHost.
#pragma once

#include "TwDlgMain.h"
#include "TwHelpBook.h"
#include "TwPanelHost.h"
#include "TwPreviewService.h"
#include "VmxUI.h"

#include <QObject>
#include <QPointer>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>
#include <tuple>

class TwBundle;
class TwDlgAbout;
class TwDlgCustom;
class TwDlgCustomGamma;
class TwDlgDoubleExposure;
class TwDlgPageSeparation;
class TwDlgPaperSize;
class TwDlgScanning;
class TwDlgSaveSetting;
class TwainDialogData;

class TwainDialogController : public QObject, public TwPanelHost {
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
    void windowWillClose();
    // Closes the window and lets go of the model.
    void close();
    bool isVisible() const;

    void setCallback(VmxUICallback callback) { pfCallback = callback; }
    // Sends an event to the data source; 0 when there is no callback.
    std::uint16_t sendEvent(std::uint16_t event, void* data);
    bool hasCallback() const { return pfCallback != nullptr; }
    void setDialogData(std::shared_ptr<TwainDialogData> model) { _dialogData = std::move(model); }
    void setModelDef(TwModelDefFile* modelDef) { _ModelDef = modelDef; }
    TwModelDefFile* ModelDef() const { return _ModelDef; }
    void setModelName(const QString& name) { m_modelName = name; }
    QString modelName() const { return m_modelName; }
    void setUiOnly(bool uiOnly) { UiOnly = uiOnly; }
    bool uiOnly() const { return UiOnly; }
    void setIsModal(bool modal) { m_isModal = modal; }
    bool isModal() const { return m_isModal; }
    bool isNoStopScan() const { return m_isNoStopScan; }

    // ---- Sub-dialogs ----

    // The sub-dialog of that class (TwDlgSaveSetting, TwDlgPaperSize, TwDlgCustomGamma, TwDlgAbout,
    // TwDlgCustom, TwDlgDoubleExposure, TwDlgPageSeparation, TwDlgScanning), made over the main
    // window, when there is one, on first use; null without a QApplication.
    template <class Panel> Panel* panel();
    // The one of that class if it was made.
    template <class Panel> Panel* panelIfMade() const { return std::get<QPointer<Panel>>(m_panels); }

    // ---- Button actions ----

    // Runs the action a button's "action" property names: the slot of that name below (given the
    // button when it takes one); false, logged, for any other name.
    bool performAction(const QString& action, QObject* sender = nullptr) override;

public slots:
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
    // The button's "tag" names the image kind: 0 binary, 1 gray, 2 colour.
    void onCustomGamma(QObject* sender);

public:
    // ---- Preview ----

    // What shows a prescan's result; the facade gives the preview floor's. Without one a
    // prescan's pages are freed and nothing shows.
    void setPreviewService(std::unique_ptr<TwPreviewService> service) { m_preview = std::move(service); }
    TwPreviewService* previewService() const { return m_preview.get(); }
    // The preview window, once a prescan has made it.
    QWidget* dlgPreview() const { return m_preview ? m_preview->previewWindow() : nullptr; }
    bool hasPrescanSession() const { return m_preview && m_preview->hasPrescanSession(); }
    void closePreview() override;

    // ---- Progress ----

    void showProgressDialog();
    void hideProgressDialog();
    // Record of 32-bit values: maximum at byte 4, value at byte 8; none shows 0 of 100.
    void setProgress(const void* progressRecord);

    // ---- Messages, texts, help ----

    TwainDialogData* dialogData() const override { return _dialogData.get(); }
    QWidget* mainWindow() const override;
    int showMessageBox(const QString& message, const QString& title, std::uint32_t messageType) override;
    QString localizedString(const QString& key) override;
    QString localizedStringNoEmpty(const QString& key);
    // The data source's bundle (through the model), or null.
    const TwBundle* dataSourceBundle() const;
    TwHelpBook& helpBook() { return m_helpBook; }

private:
    bool commitEditing();
    void logBundleVersion();

    QPointer<TwDlgMain> m_window;
    std::unique_ptr<TwPreviewService> m_preview;
    std::tuple<QPointer<TwDlgSaveSetting>, QPointer<TwDlgPaperSize>, QPointer<TwDlgCustomGamma>,
               QPointer<TwDlgAbout>, QPointer<TwDlgCustom>, QPointer<TwDlgDoubleExposure>,
               QPointer<TwDlgPageSeparation>, QPointer<TwDlgScanning>>
        m_panels;
    TwHelpBook m_helpBook;
    VmxUICallback pfCallback = nullptr;
    bool UiOnly = false;
    bool m_isModal = false;
    bool m_isNoStopScan = false;
    std::shared_ptr<TwainDialogData> _dialogData;
    TwModelDefFile* _ModelDef = nullptr;
    QString m_modelName;
};
