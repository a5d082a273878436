#include "SampleDataSource.h"

#include "TwPlist.h"

#include <dlfcn.h>

#include <chrono>
#include <cstdio>
#include <filesystem>

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
// The one data source of the process, for the callback (a plain function).
SampleDataSource* g_source = nullptr;
bool g_closed = false;
bool g_scanned = false;

const char* const kTabs[] = {"Basic",      "Common", "Layout", "BinaryImage", "GrayImage",
                             "ColorImage", "Feed",   "Area",   "ControlSheet"};

void printLeaves(const TwValue& value, const std::string& path) {
    if (auto d = value.dict()) {
        for (auto& key : d->keys())
            printLeaves(d->value(key), path + "." + key);
        return;
    }
    std::printf("  %s = %s\n", path.c_str(), value.description().c_str());
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
    TwValue scanInfo = m_capabilities.dict()->value("ScanInfo");
    TwValue name = scanInfo.dict() ? scanInfo.dict()->value("ProductName") : TwValue();
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
    switch (event) {
    case kVmxEventStart:
        return "event 2: start (Scan pressed)";
    case kVmxEventPrescan:
        return "event 3: prescan (no images from the sample)";
    case kVmxEventScanCancel:
        return "event 4: cancel the scan";
    case kVmxEventPreviewRescan:
        return "event 5: rescan the preview";
    case kVmxEventClosed:
        return "event 6: dialog closed (OK or Cancel)";
    default:
        break;
    }
    std::snprintf(line, sizeof line, "event 0x%04x", event);
    return line;
}

std::uint16_t SampleDataSource::callback(std::uint16_t event, void* data) {
    std::printf("%s\n", describeEvent(event, data).c_str());
    std::fflush(stdout);
    if (event == kVmxEventStart) {
        g_scanned = true;
        if (g_source)
            g_source->printData("to scan with");
    } else if (event == kVmxEventClosed) {
        g_closed = true;
    }
    // Event 3: a sample scanner delivers no prescan images.
    return event == kVmxEventPrescan ? 1 : 0;
}

void SampleDataSource::printData(const char* when) {
    if (!m_ui)
        return;
    std::printf("Data (%s):\n", when);
    printLeaves(m_ui->dataForKeyPath("Data"), "Data");
    std::fflush(stdout);
}

int SampleDataSource::runDialog() {
    if (!load())
        return 1;
    g_source = this;
    g_closed = false;
    g_scanned = false;
    std::printf("showing the dialog: %s, %s\n", m_options.modal ? "modal" : "modeless",
                m_options.settingsOnly ? "settings only (OK)" : "scanning (Scan)");
    std::fflush(stdout);
    m_ui->showUi(true, m_options.modal, m_options.settingsOnly);

    using Clock = std::chrono::steady_clock;
    const auto shown = Clock::now();
    bool pressed = false;
    // A data source without a Qt loop of its own lets the module run its events.
    while (!g_closed) {
        m_ui->processEvents(20);
        double elapsed = std::chrono::duration<double>(Clock::now() - shown).count();
        if (m_options.closeAfter > 0 && !pressed && elapsed >= m_options.closeAfter) {
            pressed = true;
            if (!m_options.screenshotTabs.empty()) {
                std::error_code ec;
                std::filesystem::create_directories(m_options.screenshotTabs, ec);
                for (const char* tab : kTabs) {
                    std::string file = m_options.screenshotTabs + "/" + tab + ".png";
                    if (m_ui->saveDialogPicture(file, tab))
                        std::printf("screenshot: %s\n", file.c_str());
                }
            }
            if (!m_options.screenshot.empty() && m_ui->saveDialogPicture(m_options.screenshot, ""))
                std::printf("screenshot: %s\n", std::filesystem::absolute(m_options.screenshot).c_str());
            const char* action = m_options.closeWithOK ? "onOK" : "onCancel";
            std::printf("closing by itself after %.1f s: %s\n", m_options.closeAfter, action);
            std::fflush(stdout);
            if (!m_ui->performDialogAction(action)) {
                std::fprintf(stderr, "sampleds: %s refused; closing anyway\n", action);
                g_closed = true;
            }
        }
    }
    m_ui->hideUi();
    // After event 6 a data source in settings-only mode reads the setting it will scan with; the
    // event is the same for OK and Cancel, so the sample prints it when it pressed OK itself or
    // the dialog offered OK.
    bool accepted = pressed ? m_options.closeWithOK : m_options.settingsOnly;
    if (accepted)
        printData("final, after OK");
    m_ui->closeDS();
    g_source = nullptr;
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
