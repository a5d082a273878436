// The sample scanner (model definition, capability values and bundle of samples/SampleDS.bundle)
// loaded through the facade, for the dialog tests.
#pragma once

#include "OrvaDebug.h"
#include "SampleModelDef.h"
#include "TwPlist.h"
#include "TwPreferences.h"
#include "VmxUIControllerImpl.h"

#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <memory>
#include <string>

struct SampleScanner {
    static inline const std::string kBundle = SAMPLE_BUNDLE_DIR;
    SampleModelDef def{TwValue()};
    TwValue capabilities;
    // The preferences folder of a run outside CTest, which sets one: never the user's own.
    QTemporaryDir ownConfig;

    // False, with the reason, when the bundle's files cannot be read.
    bool read(std::string* error) {
        if (qEnvironmentVariableIsEmpty("XDG_CONFIG_HOME"))
            qputenv("XDG_CONFIG_HOME", QFile::encodeName(ownConfig.path()));
        def = SampleModelDef::fromFile(kBundle + "/Contents/Resources/ModelDef.plist", error);
        if (!error->empty())
            return false;
        capabilities = TwPlistReadFile(kBundle + "/Contents/Resources/Capabilities.plist", error);
        return capabilities.isDictionary();
    }

    // A facade with the sample's data and the callback, in the order a data source follows.
    std::unique_ptr<VmxUIControllerImpl> load(VmxUICallback callback) {
        auto ui = std::make_unique<VmxUIControllerImpl>();
        OrvaSetLogPaths(nullptr, nullptr);
        ui->initWithDSBundle(kBundle);
        ui->setModelDef(&def);
        ui->setModelName("Sample VMX-S");
        ui->setDataWithDictionary(capabilities.deepCopy(), 0);
        ui->setCallback(callback);
        return ui;
    }

    // Removes every saved setting: the test's own preferences folder, and only that (never the
    // working folder, should the variable be empty).
    static void forgetPreferences() {
        const QString folder = QString::fromLocal8Bit(qgetenv("XDG_CONFIG_HOME"));
        if (!folder.isEmpty())
            QDir(folder).removeRecursively();
    }

    // What the sample's preferences hold under the key.
    static TwValue stored(const char* key) {
        return TwPreferences("com.orvanic.vmx.sampleds").copyValue(key);
    }
};
