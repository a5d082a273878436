// The module as a data source loads it: dlopen, the two exported factory functions, and one
// round of values and event 1 through the interface alone.
#include "FakeModelDef.h"

#include <dlfcn.h>

class TestModule : public QObject {
    Q_OBJECT
private slots:
    void loadsCreatesAndDestroys() {
        void* handle = dlopen(VMXUI_MODULE_PATH, RTLD_NOW | RTLD_LOCAL);
        QVERIFY2(handle, dlerror());
        auto create = reinterpret_cast<VmxUICreateFn>(dlsym(handle, VMXUI_CREATE_SYMBOL));
        auto destroy = reinterpret_cast<VmxUIDestroyFn>(dlsym(handle, VMXUI_DESTROY_SYMBOL));
        QVERIFY(create && destroy);

        TestModelDef def = hostModelDef();
        VmxUIController* ui = create();
        QVERIFY(ui);
        ui->initWithDSBundle(VMX_SOURCE_DIR "/samples/SampleDS.bundle");
        ui->setModelDef(&def);
        ui->setDataWithDictionary(capabilityValues(true, false), 0);
        ui->setCallback(&recordEvent);
        QCOMPARE(ui->dataForKeyPath("Data.ImageType").intValue(), 2);
        ui->setDataWithKeyPathValue(dict({{"Data.ImageType", 1}}));
        ui->DialogData()->UpdateCapData("Data.ImageType", ui->dataForKeyPath("Data.ImageType"));
        QCOMPARE(sentCodes(), Codes{kVmxEventSetCapability});
        const auto* bytes = reinterpret_cast<const unsigned char*>(&g_sent[0].record);
        const unsigned char expected[8] = {0x01, 0x01, 5, 0, 1, 0, 0, 0};
        QCOMPARE(QByteArray(reinterpret_cast<const char*>(bytes), 8),
                 QByteArray(reinterpret_cast<const char*>(expected), 8));
        QCOMPARE(ui->localizedString("IDS_SIDE_FRONT") != "IDS_SIDE_FRONT", true);
        // A value nested far deeper than a stack allows per level is kept and freed by the module
        // (with the host's leak detection watching when it is sanitized).
        TwValue deep = dict({{"leaf", 1}});
        for (int i = 0; i < 100000; ++i)
            deep = dict({{"k", deep}});
        ui->setDataWithKeyPathValue(dict({{"Data.Deep", deep}}));
        deep = TwValue();
        QVERIFY(ui->dataForKeyPath("Data.Deep.k.k.k").isDictionary());
        ui->hideUi();
        ui->closeDS();
        destroy(ui);
        QCOMPARE(dlclose(handle), 0);
    }
};

QTEST_APPLESS_MAIN(TestModule)
#include "tst_module.moc"
