// A data source in miniature, built outside the module's source tree against an installed VmxUI:
// it loads the installed module, checks the interface version, hands over a model definition and
// capability values, changes the resolution and has it sent back as event 1. It uses the toolkit
// for its log and for a bitmap, as a data source does.
//
//   consumer MODULE BUNDLE LOGFILE     exit status 0 when all of that worked
#include "ImageShared.h"
#include "OrvaDebug.h"
#include "VmxUI.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <vector>

#include <dlfcn.h>

namespace {

// What this scanner allows: two resolutions, one image type, a feeder.
class ConsumerModelDef : public TwModelDefFile {
public:
    TwValue UIEnable() const override { return TwValue::dictionary(); }
    TwValue UIOptions() const override {
        auto entry = [](int value, const char* display) {
            return TwValue::dictionary({{"value", value}, {"display", display}});
        };
        return TwValue::dictionary(
            {{"Resolution", TwValue::array({entry(200, "200 dpi"), entry(300, "300 dpi")})},
             {"PaperSourceAll", TwValue::array({entry(0, "ADF Front")})}});
    }
    TwValue UIControl() const override { return TwValue::dictionary(); }
    TwValue FeederADF() const override {
        return TwValue::dictionary(
            {{"MinWidth", 2.0}, {"MinHeight", 2.0}, {"MaxWidth", 8.5}, {"MaxHeight", 14.0}});
    }
    TwValue FeederFlatbed() const override { return TwValue::dictionary(); }
    double getPhysicalWidth() const override { return 8.5; }
    double getMinHeight() const override { return 2.0; }
};

std::vector<TwCapabilityRecord> g_sent;

std::uint16_t callback(std::uint16_t event, void* data) {
    if (event == kVmxEventSetCapability && data) {
        TwCapabilityRecord record;
        std::memcpy(&record, data, sizeof record);
        g_sent.push_back(record);
        std::printf("event 1: capability 0x%04x, item type %u, value %u\n", record.capability,
                    record.itemType, record.value.uint32);
    }
    return 0;
}

int fail(const char* what) {
    std::fprintf(stderr, "consumer: %s\n", what);
    return 1;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 4)
        return fail("usage: consumer MODULE BUNDLE LOGFILE");
    const char* modulePath = argv[1];
    const char* bundlePath = argv[2];

    // The toolkit: this data source's own log, and a bitmap of the kind a prescan hands over.
    OrvaSetLogPaths(argv[3], nullptr);
    if (FILE* touch = std::fopen(argv[3], "w"))
        std::fclose(touch); // the log writes only to a file that exists
    OrvaLog(kOrvaLogAlways, "consumer: loading %s\n", modulePath);
    void* dib = AllocDIBMemory(24, 100, 50);
    if (!dib)
        return fail("AllocDIBMemory gave nothing");
    SetDIBHeader(dib, 100, 50, 0, 300, 24);
    const std::uint32_t dibSize = GetDIBSize(dib, GetDIBSizeDirect(24, 100, 50));
    std::free(dib);
    if (dibSize != 40 + 300 * 50)
        return fail("the toolkit measured the bitmap wrongly");

    void* module = dlopen(modulePath, RTLD_NOW | RTLD_LOCAL);
    if (!module)
        return fail(dlerror());
    auto version = reinterpret_cast<VmxUIInterfaceVersionFn>(dlsym(module, VMXUI_VERSION_SYMBOL));
    auto create = reinterpret_cast<VmxUICreateFn>(dlsym(module, VMXUI_CREATE_SYMBOL));
    auto destroy = reinterpret_cast<VmxUIDestroyFn>(dlsym(module, VMXUI_DESTROY_SYMBOL));
    if (!version || !create || !destroy)
        return fail("the module lacks its exported functions");
    if (version() != VMXUI_INTERFACE_VERSION)
        return fail("the module was built for another interface version");
    std::printf("interface version 0x%08x\n", unsigned(version()));

    ConsumerModelDef modelDef;
    VmxUIController* ui = create(VMXUI_INTERFACE_VERSION);
    if (!ui)
        return fail("the factory made no controller");
    ui->initWithDSBundle(bundlePath);
    ui->setModelDef(&modelDef);
    ui->setModelName("Consumer");
    ui->setDataWithDictionary(
        TwValue::dictionary({{"Data", TwValue::dictionary({{"Resolution", 200}, {"ImageType", 2}})},
                             {"ScanInfo", TwValue::dictionary({{"FlatbedConnected", false}})}}),
        0);
    ui->setCallback(&callback);

    ui->setDataWithKeyPathValue(TwValue::dictionary({{"Data.Resolution", 300}}));
    ui->DialogData()->UpdateCapData("Data.Resolution", ui->dataForKeyPath("Data.Resolution"));
    const std::string greeting = ui->localizedString("IDS_CONSUMER_GREETING");
    std::printf("bundle text: %s\n", greeting.c_str());

    ui->closeDS();
    destroy(ui);
    dlclose(module);
    OrvaLog(kOrvaLogAlways, "consumer: done\n");

    if (g_sent.size() != 1 || g_sent[0].capability != 0x1118 || g_sent[0].itemType != 5 ||
        g_sent[0].value.uint32 != 300)
        return fail("expected one event 1: ICAP_XRESOLUTION, item type 5 (TWTY_UINT32), 300");
    if (greeting != "Hello from the consumer's bundle")
        return fail("the module did not read the consumer's string table");
    return 0;
}
