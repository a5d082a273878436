// The sample scanner (model definition, capability values and bundle of samples/SampleDS.bundle)
// loaded through the facade, for the dialog and preview tests, with message boxes and formatter
// alerts recorded when asked.
#pragma once

#include "OrvaDebug.h"
#include "SampleModelDef.h"
#include "TwBundle.h"
#include "TwEditCommit.h"
#include "TwMessageBox.h"
#include "TwPlist.h"
#include "TwPreferences.h"
#include "TwainDialogController.h"
#include "TwainDialogData.h"
#include "VmxUIControllerImpl.h"

#include <QDir>
#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>
#include <string>
#include <vector>

struct SampleScanner {
    static inline const std::string kBundle = SAMPLE_BUNDLE_DIR;
    TwValue definition; // the sample's ModelDef.plist, whose entries a case may change
    SampleModelDef def{TwValue()};
    TwValue capabilities;
    std::vector<TwMessageBoxSetup> boxes;
    QList<int> boxAnswers; // answers of the recorded boxes to come; boxAnswer once they run out
    int boxAnswer = kVmxAnswerOK;
    QStringList alerts; // the formatters' refusals
    // The preferences folder of a run outside CTest, which sets one: never the user's own.
    QTemporaryDir ownConfig;

    // False, with the reason, when the bundle's files cannot be read.
    bool read(std::string* error) {
        if (qEnvironmentVariableIsEmpty("XDG_CONFIG_HOME")) {
            qputenv("XDG_CONFIG_HOME", QFile::encodeName(ownConfig.path()));
            qputenv("HOME", QFile::encodeName(ownConfig.path()));
        }
        definition = TwPlistReadFile(kBundle + "/Contents/Resources/ModelDef.plist", error);
        capabilities = TwPlistReadFile(kBundle + "/Contents/Resources/Capabilities.plist", error);
        def = SampleModelDef(definition);
        return definition.isDictionary() && capabilities.isDictionary();
    }

    // Every case starts with no saved settings (the test's own folder only, never the working
    // folder should the variable be empty), this module's bundle, real boxes and no help opener.
    void reset() {
        OrvaSetLogPaths(nullptr, nullptr);
        const QString folder = qEnvironmentVariable("XDG_CONFIG_HOME");
        if (!folder.isEmpty())
            QDir(folder).removeRecursively();
        TwBundle::setModuleBundlePath(VMX_BUNDLE_DIR);
        boxes.clear();
        boxAnswers.clear();
        boxAnswer = kVmxAnswerOK;
        alerts.clear();
        TwSetMessageBoxRunner({});
        TwSetFormatterAlert([this](QWidget*, const QString& message) { alerts << message; });
        TwainDialogController::setUrlOpener({});
    }

    void recordBoxes() {
        TwSetMessageBoxRunner([this](const TwMessageBoxSetup& s) {
            boxes.push_back(s);
            return boxAnswers.isEmpty() ? boxAnswer : boxAnswers.takeFirst();
        });
    }
    QStringList boxMessages() const {
        QStringList texts;
        for (auto& b : boxes)
            texts << b.message;
        return texts;
    }

    // A facade with the sample's data and the callback, in the order a data source follows.
    std::unique_ptr<VmxUIControllerImpl> load(VmxUICallback callback = nullptr, bool flatbed = true,
                                              const std::string& bundle = kBundle) {
        auto ui = std::make_unique<VmxUIControllerImpl>();
        ui->initWithDSBundle(bundle);
        ui->setModelDef(&def);
        ui->setModelName("Sample VMX-S");
        TwValue values = capabilities.deepCopy();
        values.dict()->value("ScanInfo").dict()->set("FlatbedConnected", flatbed);
        ui->setDataWithDictionary(values, 0);
        ui->setCallback(callback);
        return ui;
    }

    // What the sample's preferences hold under the key.
    static TwValue stored(const char* key) {
        return TwPreferences("com.orvanic.vmx.sampleds").copyValue(key);
    }
};
