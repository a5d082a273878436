// The sample scanner loaded through the facade, for the tests of the custom paper-size and gamma
// editors, with message boxes recorded instead of shown.
#pragma once

#include "DialogTestSupport.h"
#include "OrvaDebug.h"
#include "SampleModelDef.h"
#include "TwBundle.h"
#include "TwMessageBox.h"
#include "TwPlist.h"
#include "TwPreferences.h"
#include "TwainDialogController.h"
#include "TwainDialogData.h"
#include "VmxUIControllerImpl.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <memory>
#include <string>
#include <vector>

class SampleScanner {
public:
    std::vector<TwMessageBoxSetup> boxes;
    int boxAnswer = kVmxAnswerOK;

    // Reads the sample bundle; false when it cannot be read. Without a configuration folder of its
    // own (run outside CTest) the test takes a temporary one, never the user's.
    bool load() {
        if (qEnvironmentVariableIsEmpty("XDG_CONFIG_HOME")) {
            qputenv("XDG_CONFIG_HOME", m_config.path().toLocal8Bit());
            qputenv("HOME", m_config.path().toLocal8Bit());
        }
        std::string error;
        TwValue root = TwPlistReadFile(kBundle + "/Contents/Resources/ModelDef.plist", &error);
        m_capabilities = TwPlistReadFile(kBundle + "/Contents/Resources/Capabilities.plist", &error);
        if (!root.isDictionary() || !m_capabilities.isDictionary())
            return false;
        m_def = std::make_unique<SampleModelDef>(root);
        return true;
    }

    // No saved presets, boxes recorded and answered with boxAnswer, this module's own bundle.
    void reset() {
        OrvaSetLogPaths(nullptr, nullptr);
        const QString config = QString::fromLocal8Bit(qgetenv("XDG_CONFIG_HOME"));
        if (!config.isEmpty())
            QDir(config).removeRecursively();
        TwBundle::setModuleBundlePath(VMX_BUNDLE_DIR);
        boxes.clear();
        boxAnswer = kVmxAnswerOK;
        TwSetMessageBoxRunner([this](const TwMessageBoxSetup& s) {
            boxes.push_back(s);
            return boxAnswer;
        });
    }

    // A facade with the sample's model, the flatbed connected or not, the dialog shown (modal or
    // not) when asked.
    std::unique_ptr<VmxUIControllerImpl> facade(bool flatbed = true, int show = -1) {
        auto ui = std::make_unique<VmxUIControllerImpl>();
        ui->initWithDSBundle(kBundle);
        ui->setModelDef(m_def.get());
        ui->setModelName("Sample VMX-S");
        TwValue values = m_capabilities.deepCopy();
        values.dict()->value("ScanInfo").dict()->set("FlatbedConnected", flatbed);
        ui->setDataWithDictionary(values, 0);
        if (show >= 0)
            ui->showUi(true, show == 1, false);
        return ui;
    }

    static TwValue stored(const char* key) {
        return TwPreferences("com.orvanic.vmx.sampleds").copyValue(key);
    }

private:
    const std::string kBundle = SAMPLE_BUNDLE_DIR;
    QTemporaryDir m_config;
    std::unique_ptr<SampleModelDef> m_def;
    TwValue m_capabilities;
};

// Saves a picture of the panel as it is now into $VMX_EDITOR_SHOTS/<name>.png; false when the
// variable is not set or the picture cannot be written.
inline bool saveEditorPicture(QWidget* panel, const QString& name) {
    const QString dir = qEnvironmentVariable("VMX_EDITOR_SHOTS");
    if (dir.isEmpty() || !QDir().mkpath(dir))
        return false;
    QCoreApplication::processEvents();
    return panel->grab().save(QDir(dir).filePath(name + QStringLiteral(".png")), "PNG");
}

// Runs the panel modally and calls act once it is up; a panel act leaves open (a failed check
// returns early) is closed, so that the run always ends.
template <class Panel, class Act> int runWith(Panel* panel, Act act) {
    auto timer = whenModal<Panel>([&](Panel* p) {
        act(p);
        if (p->isVisible())
            p->close();
    });
    return panel->runModal();
}
