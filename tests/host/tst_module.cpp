// The module as a data source loads it: dlopen, the exported version and factory functions, and
// one round of values and event 1 through the interface alone.
#include "FakeModelDef.h"

#include <QTemporaryFile>

#include <cstdio>

#include <dlfcn.h>
#include <unistd.h>

namespace {
// What the code run by body writes to standard error.
template <class Body> QByteArray standardErrorOf(Body body) {
    QTemporaryFile capture;
    if (!capture.open())
        return "(no capture file)";
    std::fflush(stderr);
    const int saved = dup(STDERR_FILENO);
    dup2(capture.handle(), STDERR_FILENO);
    body();
    std::fflush(stderr);
    dup2(saved, STDERR_FILENO);
    close(saved);
    capture.seek(0);
    return capture.readAll();
}
} // namespace

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
        VmxUIController* ui = create(VMXUI_INTERFACE_VERSION);
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

    // The module says which interface it was built for, and its factory makes nothing for a data
    // source built for another (revision or standard library), saying why on standard error.
    void versionHandshake_data() {
        QTest::addColumn<quint32>("callerVersion");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("same") << quint32(VMXUI_INTERFACE_VERSION) << true;
        QTest::newRow("older revision") << quint32(VMXUI_INTERFACE_VERSION - (1u << 16)) << false;
        QTest::newRow("newer revision") << quint32(VMXUI_INTERFACE_VERSION + (1u << 16)) << false;
        QTest::newRow("other standard library") << quint32(VMXUI_INTERFACE_VERSION ^ 3u) << false;
        QTest::newRow("before versions") << quint32(0) << false;
    }
    void versionHandshake() {
        QFETCH(quint32, callerVersion);
        QFETCH(bool, accepted);
        void* handle = dlopen(VMXUI_MODULE_PATH, RTLD_NOW | RTLD_LOCAL);
        QVERIFY2(handle, dlerror());
        auto version = reinterpret_cast<VmxUIInterfaceVersionFn>(dlsym(handle, VMXUI_VERSION_SYMBOL));
        auto create = reinterpret_cast<VmxUICreateFn>(dlsym(handle, VMXUI_CREATE_SYMBOL));
        auto destroy = reinterpret_cast<VmxUIDestroyFn>(dlsym(handle, VMXUI_DESTROY_SYMBOL));
        QVERIFY(version && create && destroy);
        QCOMPARE(version(), std::uint32_t(VMXUI_INTERFACE_VERSION));
        QVERIFY(VMXUI_INTERFACE_VERSION >> 16 >= 1);

        VmxUIController* ui = nullptr;
        const QByteArray said = standardErrorOf([&] { ui = create(callerVersion); });
        QCOMPARE(ui != nullptr, accepted);
        if (accepted) {
            QVERIFY(said.isEmpty());
            destroy(ui);
        } else {
            const QByteArray expected =
                QByteArray("VmxUICreateController: the data source was built for interface ") +
                QByteArray::number(callerVersion >> 16) + " (standard library " +
                QByteArray::number(callerVersion & 0xFFFF) + "), this module for " +
                QByteArray::number(VMXUI_INTERFACE_REVISION) + " (standard library " +
                QByteArray::number(VMXUI_STANDARD_LIBRARY) + "); no controller\n";
            QCOMPARE(said, expected);
        }
        QCOMPARE(dlclose(handle), 0);
    }
};

QTEST_APPLESS_MAIN(TestModule)
#include "tst_module.moc"
