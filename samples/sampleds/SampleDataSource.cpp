#include "SampleDataSource.h"

#include "TwPlist.h"

#include <dlfcn.h>

#include <cstdio>

namespace {
const char* capabilityName(std::uint16_t cap) {
    switch (cap) {
    case 0x0101:
        return "ICAP_PIXELTYPE";
    case 0x1118:
        return "ICAP_XRESOLUTION";
    default:
        return "unknown capability";
    }
}
} // namespace

SampleDataSource::SampleDataSource(SampleOptions options) : m_options(std::move(options)) {}

SampleDataSource::~SampleDataSource() {
    if (m_ui && m_destroy)
        m_destroy(m_ui);
    if (m_module)
        dlclose(m_module);
}

bool SampleDataSource::load() {
    std::string error;
    m_modelDef =
        SampleModelDef::fromFile(m_options.bundlePath + "/Contents/Resources/ModelDef.plist", &error);
    if (!error.empty())
        std::fprintf(stderr, "sampleds: model definition: %s\n", error.c_str());
    error.clear();
    m_capabilities = TwPlistReadFile(m_options.bundlePath + "/Contents/Resources/Capabilities.plist", &error);
    if (!m_capabilities.isDictionary()) {
        std::fprintf(stderr, "sampleds: capability values: %s\n", error.c_str());
        m_capabilities = TwValue::dictionary();
    }

    m_module = dlopen(m_options.modulePath.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_module) {
        std::fprintf(stderr, "sampleds: cannot load %s: %s\n", m_options.modulePath.c_str(), dlerror());
        return false;
    }
    auto create = reinterpret_cast<VmxUICreateFn>(dlsym(m_module, VMXUI_CREATE_SYMBOL));
    m_destroy = reinterpret_cast<VmxUIDestroyFn>(dlsym(m_module, VMXUI_DESTROY_SYMBOL));
    if (!create || !m_destroy) {
        std::fprintf(stderr, "sampleds: %s lacks the factory functions\n", m_options.modulePath.c_str());
        return false;
    }
    m_ui = create();
    if (!m_ui)
        return false;

    // The order a data source follows: bundle, model definition and name, values, callback.
    m_ui->initWithDSBundle(m_options.bundlePath);
    m_ui->setModelDef(&m_modelDef);
    TwValue name = m_capabilities.dict()->value("ScanInfo").dict()
                       ? m_capabilities.dict()->value("ScanInfo").dict()->value("ProductName")
                       : TwValue();
    m_ui->setModelName(name.isString() ? *name.str() : "Simulated scanner");
    m_ui->setDataWithDictionary(capabilityValues(), 0);
    m_ui->setCallback(&SampleDataSource::callback);
    return true;
}

TwValue SampleDataSource::capabilityValues() const {
    // Sections are handed over as copies: the module must not edit the data source's own tree.
    TwValue values = m_capabilities.deepCopy();
    auto scanInfo = values.dict()->value("ScanInfo");
    if (!scanInfo.isDictionary()) {
        scanInfo = TwValue::dictionary();
        values.dict()->set("ScanInfo", scanInfo);
    }
    scanInfo.dict()->set("FlatbedConnected", m_options.flatbed);
    auto support = scanInfo.dict()->value("Support");
    if (!support.isDictionary()) {
        support = TwValue::dictionary();
        scanInfo.dict()->set("Support", support);
    }
    support.dict()->set("Passport", m_options.passport);
    return values;
}

std::string SampleDataSource::describeEvent(std::uint16_t event, const void* data) {
    char line[256];
    if (event == kVmxEventSetCapability && data) {
        const auto* r = static_cast<const TwCapabilityRecord*>(data);
        if (r->itemType == 7) {
            double value = r->value.fix32.whole + r->value.fix32.fraction / 65536.0;
            std::snprintf(line, sizeof line,
                          "event 1: set capability 0x%04x (%s), item type 7 (TWTY_FIX32), value %.4f "
                          "(whole %d, fraction %u)",
                          r->capability, capabilityName(r->capability), value, r->value.fix32.whole,
                          r->value.fix32.fraction);
        } else {
            std::snprintf(line, sizeof line,
                          "event 1: set capability 0x%04x (%s), item type %u (TWTY_UINT32), value %u",
                          r->capability, capabilityName(r->capability), r->itemType, r->value.uint32);
        }
        return line;
    }
    std::snprintf(line, sizeof line, "event 0x%04x", event);
    return line;
}

std::uint16_t SampleDataSource::callback(std::uint16_t event, void* data) {
    std::printf("%s\n", describeEvent(event, data).c_str());
    std::fflush(stdout);
    return 0;
}

int SampleDataSource::runHeadless() {
    if (!load())
        return 1;
    for (const char* keyPath : {"ScanInfo.ProductName", "Data.PaperSource", "Data.PaperSize",
                                "Data.Resolution", "Data.ImageType", "Data.Area.Unit"})
        std::printf("%s = %s\n", keyPath, m_ui->dataForKeyPath(keyPath).description().c_str());
    TwValue sources = m_ui->dataForKeyPath("content.PaperSource.value");
    std::printf("paper sources offered: %s\n", sources.description().c_str());

    // The user picks another resolution; the data source pushes it to the scanner.
    int wanted = m_ui->dataForKeyPath("Data.Resolution").intValue() == 400 ? 300 : 400;
    m_ui->setDataWithKeyPathValue(TwValue::dictionary({{"Data.Resolution", wanted}}));
    TwValue resolution = m_ui->dataForKeyPath("Data.Resolution");
    std::printf("Data.Resolution = %s after the write\n", resolution.description().c_str());
    if (auto model = m_ui->DialogData())
        model->UpdateCapData("Data.Resolution", resolution);
    m_ui->closeDS();
    return 0;
}
