// The sample scanner loaded through the facade, for the tab tests: its model definition, its
// capability values, a preferences folder of the test's own, the module's bundle from the build,
// and the diagnostic log captured in a file.
#pragma once

#include "LogCapture.h"
#include "OrvaDebug.h"
#include "SampleModelDef.h"
#include "TwBindingKind.h"
#include "TwBoundControl.h"
#include "TwBundle.h"
#include "TwPlist.h"
#include "TwainDialogData.h"
#include "TwainView.h"
#include "VmxUIControllerImpl.h"

#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <memory>
#include <string>

namespace tabtest {

inline const std::string kBundle = SAMPLE_BUNDLE_DIR;

struct Sample {
    SampleModelDef def{TwValue()};
    TwValue capabilities;
    std::unique_ptr<QTemporaryDir> config;
    std::unique_ptr<LogCapture> log;

    // Reads the sample's files; false (with the reason) when one is missing.
    bool read(std::string* error) {
        def = SampleModelDef::fromFile(kBundle + "/Contents/Resources/ModelDef.plist", error);
        if (!error->empty())
            return false;
        capabilities = TwPlistReadFile(kBundle + "/Contents/Resources/Capabilities.plist", error);
        TwBundle::setModuleBundlePath(VMX_BUNDLE_DIR);
        return capabilities.isDictionary();
    }

    // A fresh preferences folder, so that nothing the user or an earlier case saved is read.
    void freshPreferences() {
        config = std::make_unique<QTemporaryDir>();
        qputenv("XDG_CONFIG_HOME", config->path().toLocal8Bit());
    }

    // The facade with the sample's values (or the given ones) and its definition (or the given one).
    std::unique_ptr<VmxUIControllerImpl> load(const TwValue& values = TwValue(),
                                              SampleModelDef* otherDef = nullptr) {
        auto ui = std::make_unique<VmxUIControllerImpl>();
        ui->initWithDSBundle(kBundle);
        // The facade's init points the log at the system paths; the tests keep their own.
        captureLog();
        ui->setModelDef(otherDef ? otherDef : &def);
        ui->setDataWithDictionary(values.isNull() ? capabilities.deepCopy() : values, 0);
        return ui;
    }

    // Error lines only, into a file of the test's own.
    void captureLog() {
        log.reset(); // the old capture points the log away when it goes
        log = std::make_unique<LogCapture>();
        OrvaSetLogLevel(kOrvaLogError);
    }
    QString logText() const { return log ? log->text() : QString(); }
};

inline void set(VmxUIControllerImpl& ui, const char* keyPath, const TwValue& value) {
    ui.setDataWithKeyPathValue(TwValue::dictionary({{keyPath, value}}));
}

// A tab of the class, bound to the model when one is given.
inline std::unique_ptr<TwainView> makeTab(const char* className, TwainDialogData* model = nullptr) {
    std::unique_ptr<TwainView> tab(TwainView::create(QString::fromLatin1(className)));
    if (tab && model)
        tab->bindControlsToObject(model);
    return tab;
}

template <class T = QWidget> T* child(const QWidget* parent, const char* name) {
    return parent->findChild<T*>(QString::fromLatin1(name));
}

// Every control below the widget that carries at least one binding.
inline int boundControlCount(const QWidget* root) {
    int count = 0;
    const auto objects = root->findChildren<QObject*>();
    for (QObject* object : objects)
        if (!TwBoundControl::bindingNames(object).empty())
            ++count;
    return count;
}

} // namespace tabtest
