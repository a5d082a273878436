// The facade the data source drives: it owns the settings model (and, once shown, the dialog
// controller), forwards the callback, and answers key-path reads and writes.
#pragma once

#include "VmxUI.h"

#include <memory>
#include <mutex>
#include <string>

class TwainDialogData;
class TwBundle;
class TwPreviewCoordinator;
class TwainDialogController;

// One message-box request carried to the GUI thread.
struct VmxUIMessageBoxArg {
    std::string message;
    std::string title;
    std::uint32_t messageType = 1;
    int returnValue = 10;
    std::uint16_t callbackEvent = 0;
    std::uint32_t timeInterval = 0;
};

// What the data source gets from DialogData(): the model's capability push, and copies of its
// values.
class VmxUIDataSourceView final : public TwainDialogDataInterface {
public:
    explicit VmxUIDataSourceView(const std::shared_ptr<TwainDialogData>& model) : m_model(model) {}
    TwValue valueForKeyPath(std::string_view keyPath) override;
    void UpdateCapData(std::string_view keyPath, const TwValue& value) override;

private:
    const std::shared_ptr<TwainDialogData>& m_model;
};

class VmxUIControllerImpl final : public VmxUIController {
public:
    // init: points the diagnostic log at its two files; no model, no controller.
    VmxUIControllerImpl();
    ~VmxUIControllerImpl() override;

    void initWithDSBundle(const std::string& bundlePath) override;
    void setModelDef(TwModelDefFile* modelDef) override;
    void setModelName(const std::string& name) override;
    std::string modelName() const override { return m_modelName; }
    void setDataWithDictionary(const TwValue& dictionary, std::uint32_t productID) override;
    void setCallback(VmxUICallback callback) override;
    void setUIContents(const TwValue& contents) override;
    void readLastData() override;
    TwValue dataForKeyPath(const std::string& keyPath) override;
    void setDataWithKeyPathValue(const TwValue& keyPathValues) override;
    TwainDialogDataInterface* DialogData() override;
    TwValue customPaperSize() override;
    TwValue customGamme(const std::string& name, bool isColor) override;
    void setPaperFrame(const TwPaperFrame& frame) override;
    void getPaperFrame(TwPaperFrame* frame) override;

    void showUi(bool show, bool modal, bool onlyUI) override;
    void startModal() override;
    void stopModal() override;
    void hideUi() override;
    void closeDS() override;

    bool showIndicators() const override { return m_showIndicators; }
    void setShowIndicators(bool show) override { m_showIndicators = show; }

    int showMessageBox(const std::string& message, const std::string& titleKey,
                       std::uint32_t messageType) override;
    int showMessageBox(const std::string& message, const std::string& titleKey, std::uint32_t messageType,
                       std::uint16_t callbackEvent, std::uint32_t timeIntervalMs) override;
    int showContinueScanDialog(std::uint16_t value) override;
    void showProgressDialog() override;
    void hideProgressDialog() override;
    void setProgress(const void* progressRecord) override;

    std::string localizedString(const std::string& key) override;
    std::string localizedString(const std::string& key, const std::string& defualt) override;
    std::string localizedStringNoEmpty(const std::string& key) override;
    void processEvents(std::uint32_t maxTimeMs) override;
    bool performDialogAction(const std::string& action) override;
    bool saveDialogPicture(const std::string& pngPath, const std::string& tabIdentifier) override;

    // The dialog controller, made on first use; it is handed the current model and callback.
    TwainDialogController* controller();
    // The controller if there is one; safe from any thread while another one makes it.
    TwainDialogController* controllerIfMade() const {
        std::lock_guard lock(m_controllerLock);
        return _dlgController.get();
    }
    // What shows the controller's prescans and continue-scan pages, once the controller is made.
    TwPreviewCoordinator* previewCoordinator() const;
    // Wakes the GUI loop after a modal run was stopped; counts the wake-ups.
    void simulateMouseEvent();
    int wakeUpsPosted() const { return m_wakeUps; }
    void innerHideUi();
    int innerShowMessageBox(const std::string& message, const std::string& titleKey,
                            std::uint32_t messageType, std::uint16_t callbackEvent,
                            std::uint32_t timeIntervalMs);
    void showMessageFunc(VmxUIMessageBoxArg& arg);
    // The continue-scan question on the GUI thread; the record's callbackEvent carries the value.
    void showContinueScanDialogFunc(VmxUIMessageBoxArg& arg);
    int innerShowContinueScanDialogFunc(std::uint16_t value);
    // How often the continue-scan question asks the data source (event 0x1000); once a second.
    void setContinueScanPollInterval(std::uint32_t ms) { m_continueScanPollMs = ms; }

    // Filters "PaperSourceAll" into "PaperSource" by what the connected scanner offers.
    void updatePaperSource(const TwValue& contents);

    std::shared_ptr<TwainDialogData> model() const { return _DialogData; }
    VmxUICallback callback() const { return callbackFunc; }
    bool isShow() const { return m_isShow; }
    bool isShowModal() const { return m_isShowModal; }

private:
    void init();
    void logModelUseCount(const char* method, int step) const;
    void logControllerUseCount(const char* method) const;
    // A QApplication for the windows: the host's, or one made on first need.
    bool ensureApplication();

    mutable std::mutex m_controllerLock; // guards the creation of the dialog controller
    std::unique_ptr<TwainDialogController> _dlgController;
    bool m_holdsApplication = false;
    int m_wakeUps = 0;
    std::shared_ptr<TwainDialogData> _DialogData;
    VmxUIDataSourceView m_dataSourceView{_DialogData};
    VmxUICallback callbackFunc = nullptr;
    bool m_isShow = true;
    bool m_isShowModal = false;
    bool m_showIndicators = true;
    std::uint32_t m_continueScanPollMs = 1000;
    std::string m_modelName;
    TwModelDefFile* ModelDef = nullptr;
    std::shared_ptr<TwBundle> bundleDS;
};
