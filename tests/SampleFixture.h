// The sample scanner of samples/SampleDS.bundle loaded through the facade, for every test that
// drives the facade with it: its model definition (as read, which a case may change) and its
// capability values, this module's bundle from the build, a home and preferences folder of each
// case's own, the log's error lines in a file of the case's own, and message boxes and formatter
// alerts recorded.
#pragma once

#include "SampleModelDef.h"
#include "TwApplication.h"
#include "TwDlgCustom.h"
#include "TwDlgCustomGamma.h"
#include "TwDlgMain.h"
#include "TwDlgPageOrder.h"
#include "TwDlgPaperSize.h"
#include "TwDlgSaveSetting.h"
#include "TwDlgScanning.h"
#include "TwMessageBox.h"
#include "TwPreferences.h"
#include "TwainDialogController.h"
#include "TwainView.h"
#include "VmxUIControllerImpl.h"
#include "WidgetTestSupport.h"

// Hides the dialog, then deletes the facade, in the order a data source ends.
struct HideAndDelete {
    void operator()(VmxUIControllerImpl* ui) const {
        ui->hideUi();
        delete ui;
    }
};
using Facade = std::unique_ptr<VmxUIControllerImpl, HideAndDelete>;

struct SampleScanner {
    static inline const std::string kBundle = SAMPLE_BUNDLE_DIR;
    static inline const std::string kDomain = "com.orvanic.vmx.sampleds";
    TwValue definition; // the sample's ModelDef.plist, whose entries a case may change
    SampleModelDef def{TwValue()};
    TwValue capabilities;
    std::string error; // why the sample's files could not be read
    std::unique_ptr<TempHome> home;
    std::unique_ptr<LogCapture> log;
    std::vector<TwMessageBoxSetup> boxes;
    QList<int> boxAnswers; // answers of the recorded boxes to come; boxAnswer once they run out
    int boxAnswer = kVmxAnswerOK;
    QStringList alerts; // the formatters' refusals

    SampleScanner() {
        definition = TwPlistReadFile(kBundle + "/Contents/Resources/ModelDef.plist", &error);
        capabilities = TwPlistReadFile(kBundle + "/Contents/Resources/Capabilities.plist", &error);
        def = SampleModelDef(definition);
    }

    // Every case starts with a home and preferences of its own, this module's bundle, the log off
    // below errors, nothing sent, boxes and alerts recorded (a box answers boxAnswers in turn, then
    // boxAnswer) and no help opener. False, with the reason in error, when the sample's files could
    // not be read.
    bool reset() {
        log.reset();
        OrvaSetLogLevel(kOrvaLogError);
        home.reset(); // gives the variables back before the next one takes them
        home = std::make_unique<TempHome>();
        TwBundle::setModuleBundlePath(VMX_BUNDLE_DIR);
        boxes.clear();
        boxAnswers.clear();
        boxAnswer = kVmxAnswerOK;
        alerts.clear();
        g_sent.clear();
        TwSetMessageBoxRunner([this](const TwMessageBoxSetup& s) {
            boxes.push_back(s);
            return boxAnswers.isEmpty() ? boxAnswer : boxAnswers.takeFirst();
        });
        TwSetFormatterAlert([this](QWidget*, const QString& message) { alerts << message; });
        TwHelpBook::setUrlOpener({});
        return definition.isDictionary() && capabilities.isDictionary();
    }
    QStringList boxMessages() const {
        return mapped(boxes, [](const TwMessageBoxSetup& b) { return b.message; });
    }

    struct Load {
        VmxUICallback callback = nullptr;
        bool flatbed = true;
        std::string bundle = kBundle;
        TwValue values;                                         // null: the sample's capability values
        TwModelDefFile* modelDef = nullptr;                     // null: the sample's
        bool show = false, modal = false, settingsOnly = false; // the dialog shown, and how
    };
    // A facade with the sample's data and the callback, in the order a data source follows, and
    // the dialog shown when asked.
    Facade load() { return load(Load()); }
    Facade load(const Load& how) {
        Facade ui(new VmxUIControllerImpl);
        ui->initWithDSBundle(how.bundle);
        captureLog(); // the facade's init points the log at the system's paths
        ui->setModelDef(how.modelDef ? how.modelDef : &def);
        ui->setModelName("Sample VMX-S");
        TwValue values = how.values.isNull() ? capabilities.deepCopy() : how.values;
        if (TwValue info = values.dict()->value("ScanInfo"); info.isDictionary())
            info.dict()->set("FlatbedConnected", how.flatbed);
        ui->setDataWithDictionary(values, 0);
        ui->setCallback(how.callback);
        if (how.show)
            ui->showUi(true, how.modal, how.settingsOnly);
        return ui;
    }

    // Error lines only, into a file of the case's own.
    void captureLog() {
        log.reset(); // the old capture points the log away when it goes
        log = std::make_unique<LogCapture>();
        OrvaSetLogLevel(kOrvaLogError);
    }
    QString logText() const { return log ? log->text() : QString(); }

    // The sample's preferences, and what they hold under the key.
    static TwPreferences preferences() { return TwPreferences(kDomain); }
    static TwValue stored(const char* key) { return preferences().copyValue(key); }
};

// Sets key paths through the facade, in order, as the data source does (also as keyPaths text).
inline void set(VmxUIControllerImpl& ui, const char* keyPath, const TwValue& value) {
    ui.setDataWithKeyPathValue(dict({{keyPath, value}}));
}
inline void set(VmxUIControllerImpl& ui, std::initializer_list<std::pair<std::string, TwValue>> values) {
    ui.setDataWithKeyPathValue(dict(values));
}
inline void set(VmxUIControllerImpl& ui, const QString& keyPathsText) {
    ui.setDataWithKeyPathValue(keyPaths(keyPathsText));
}

// The main dialog once it is made, and a control of one of its tabs.
inline TwDlgMain* window(VmxUIControllerImpl& ui) {
    return ui.controllerIfMade() ? ui.controllerIfMade()->windowIfLoaded() : nullptr;
}
template <class T = QWidget> T* tabChild(VmxUIControllerImpl& ui, const char* tab, const char* name) {
    return child<T>(window(ui)->view(QString::fromLatin1(tab)), name);
}
