#include "SampleDataSource.h"

#include "ImageShared.h"
#include "TwPlist.h"

#include <dlfcn.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
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

// Prescans are quick and small.
constexpr int kPrescanDpi = 100;

// The paper sources of the sample's list that scan both sides: "ADF (Duplex)" and "Automatic (ADF
// Duplex / Flatbed)".
bool isDuplexSource(const TwValue& source) {
    return source.isNumber() && (source.intValue() == 1 || source.intValue() == 4);
}

// The sample's image types: 0 black and white, 1 grayscale, 2 colour; the automatic ones decide per
// page at scan time, so their prescan shows the richer of the two.
SampleImageType imageTypeFor(const TwValue& imageType) {
    switch (imageType.intValue()) {
    case 0:
        return SampleImageType::Binary;
    case 1:
    case 22:
        return SampleImageType::Gray;
    case 2:
    case 23:
        return SampleImageType::Color;
    default:
        std::fprintf(stderr, "sampleds: image type %s is not the sample's; grayscale is used\n",
                     imageType.description().c_str());
        return SampleImageType::Gray;
    }
}

// "true", "false", a whole number, a real number, or else the text itself.
TwValue parseValue(const std::string& text) {
    if (text == "true" || text == "false")
        return TwValue(text == "true");
    char* end = nullptr;
    long long whole = std::strtoll(text.c_str(), &end, 10);
    if (!text.empty() && end && !*end)
        return TwValue(whole);
    double real = std::strtod(text.c_str(), &end);
    if (!text.empty() && end && !*end)
        return TwValue(real);
    return TwValue(text);
}

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
    // The scan asks the module until it ends: it must end before the module goes.
    m_scan.reset();
    m_saneScan.reset();
    if (m_ui && m_destroy)
        m_destroy(m_ui);
    if (m_module)
        dlclose(m_module);
}

std::string SampleDataSource::saneConfigDir(const std::string& bundlePath) {
    return bundlePath + "/Contents/Resources/sane";
}

bool SampleDataSource::openDevice() {
    std::string error;
    m_sane = SaneScanner::open(m_options.device, saneConfigDir(m_options.bundlePath), m_options.deviceOptions,
                               &error);
    if (!m_sane) {
        std::fprintf(stderr, "sampleds: %s\n", error.c_str());
        m_exitStatus = 2;
        return false;
    }
    const SaneMapping mapping = MapSaneTraits(m_sane->traits(), m_modelDef.root(), m_capabilities);
    if (!mapping.refusal.empty()) {
        std::fprintf(stderr, "sampleds: the SANE device \"%s\" cannot be offered: %s\n",
                     m_options.device.c_str(), mapping.refusal.c_str());
        m_sane.reset();
        m_exitStatus = 2;
        return false;
    }
    m_modelDef = SampleModelDef(mapping.modelDef);
    m_modelDef.localize(m_options.bundlePath);
    m_capabilities = mapping.capabilities;
    const SaneTraits& t = m_sane->traits();
    std::string resolutions, modes, sources;
    for (int dpi : t.resolutions)
        resolutions += (resolutions.empty() ? "" : " ") + std::to_string(dpi);
    for (const SaneImageMode& mode : t.modes)
        modes += (modes.empty() ? "" : ", ") + std::to_string(mode.imageType) + " (" +
                 (mode.deviceMode.empty() ? std::string("fixed") : mode.deviceMode) +
                 (mode.depth ? " " + std::to_string(mode.depth) + "-bit" : std::string()) + ")";
    for (const SaneSource& source : t.sources) {
        char area[64];
        std::snprintf(area, sizeof area, " %.0f x %.0f mm", source.maxWidthMm, source.maxLengthMm);
        sources += (sources.empty() ? "" : ", ") + std::to_string(source.paperSource) + " (" +
                   (source.deviceName.empty() ? std::string("unnamed") : source.deviceName) + area + ")";
    }
    std::printf(
        "SANE device %s: %s; resolutions %s dpi, prescan at %d dpi; image types %s; paper sources %s\n",
        m_options.device.c_str(), t.productName.c_str(), resolutions.c_str(), t.prescanResolution,
        modes.c_str(), sources.c_str());
    std::fflush(stdout);
    return true;
}

bool SampleDataSource::load() {
    std::string error;
    m_modelDef =
        SampleModelDef::fromFile(m_options.bundlePath + "/Contents/Resources/ModelDef.plist", &error);
    if (!error.empty())
        std::fprintf(stderr, "sampleds: model definition: %s\n", error.c_str());
    error.clear();
    m_modelDef.localize(m_options.bundlePath);
    m_capabilities = TwPlistReadFile(m_options.bundlePath + "/Contents/Resources/Capabilities.plist", &error);
    if (!m_capabilities.isDictionary()) {
        std::fprintf(stderr, "sampleds: capability values: %s\n", error.c_str());
        m_capabilities = TwValue::dictionary();
    }
    if (!m_options.device.empty() && !openDevice())
        return false;

    m_module = dlopen(m_options.modulePath.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (!m_module) {
        std::fprintf(stderr, "sampleds: cannot load %s: %s\n", m_options.modulePath.c_str(), dlerror());
        return false;
    }
    auto version = reinterpret_cast<VmxUIInterfaceVersionFn>(dlsym(m_module, VMXUI_VERSION_SYMBOL));
    auto create = reinterpret_cast<VmxUICreateFn>(dlsym(m_module, VMXUI_CREATE_SYMBOL));
    m_destroy = reinterpret_cast<VmxUIDestroyFn>(dlsym(m_module, VMXUI_DESTROY_SYMBOL));
    if (!version || !create || !m_destroy) {
        std::fprintf(stderr, "sampleds: %s lacks the factory functions\n", m_options.modulePath.c_str());
        return false;
    }
    if (version() != VMXUI_INTERFACE_VERSION) {
        std::fprintf(stderr, "sampleds: %s has interface version 0x%08x, this data source 0x%08x\n",
                     m_options.modulePath.c_str(), unsigned(version()), unsigned(VMXUI_INTERFACE_VERSION));
        return false;
    }
    m_ui = create(VMXUI_INTERFACE_VERSION);
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
    applySettings();
    return true;
}

void SampleDataSource::applySettings() {
    if (m_options.settings.empty())
        return;
    auto values = TwValue::dictionary();
    for (auto& [keyPath, text] : m_options.settings)
        values.dict()->set(keyPath, parseValue(text));
    m_ui->setDataWithKeyPathValue(values);
}

TwValue SampleDataSource::capabilityValues() const {
    // Sections are handed over as copies: the module must not edit the data source's own tree.
    TwValue values = m_capabilities.deepCopy();
    auto scanInfo = values.dict()->value("ScanInfo");
    if (!scanInfo.isDictionary()) {
        scanInfo = TwValue::dictionary();
        values.dict()->set("ScanInfo", scanInfo);
    }
    if (m_sane)
        return values; // the device says what it has
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
        return "event 3: prescan";
    case kVmxEventScanCancel:
        return "event 4: cancel the scan";
    case kVmxEventPreviewRescan:
        return "event 5: rescan the preview";
    case kVmxEventClosed:
        return "event 6: dialog closed (OK or Cancel)";
    default:
        break;
    }
    if (std::string scanEvent = SampleScan::describeEvent(event); !scanEvent.empty())
        return scanEvent;
    if (std::string scanEvent = SaneScan::describeEvent(event); !scanEvent.empty())
        return scanEvent;
    std::snprintf(line, sizeof line, "event 0x%04x", event);
    return line;
}

std::uint16_t SampleDataSource::callback(std::uint16_t event, void* data) {
    std::printf("%s\n", describeEvent(event, data).c_str());
    std::fflush(stdout);
    if (g_source && g_source->m_scan)
        if (auto answer = g_source->m_scan->answerEvent(event, data))
            return *answer;
    if (g_source && g_source->m_saneScan)
        if (auto answer = g_source->m_saneScan->answerEvent(event, data))
            return *answer;
    if (event == kVmxEventStart) {
        g_scanned = true;
        if (g_source) {
            g_source->printData("to scan with");
            g_source->startScan();
        }
    } else if (event == kVmxEventClosed) {
        g_closed = true;
    } else if (event == kVmxEventPrescan || event == kVmxEventPreviewRescan) {
        return g_source ? g_source->prescan(static_cast<TwPreviewRecord*>(data)) : 1;
    }
    return 0;
}

std::pair<double, double> SampleDataSource::currentPaperMillimetres() {
    auto positive = [](const TwValue& v) {
        return v.isNumber() && v.doubleValue() > 0;
    };
    TwValue size = m_ui->dataForKeyPath("Data.PaperSize");
    if (size.isString()) {
        const TwValue custom = m_ui->customPaperSize(); // a copy: kept while it is walked
        if (auto papers = custom.list()) {
            for (auto& paper : *papers) {
                auto d = paper.dict();
                if (d && d->value("Name").isEqual(size) && positive(d->value("Width")) &&
                    positive(d->value("Length")))
                    return {d->value("Width").doubleValue(), d->value("Length").doubleValue()};
            }
        }
    } else if (size.isNumber()) {
        // Standard papers carry their size in tenths of a millimetre.
        const TwValue all = m_ui->dataForKeyPath("content.PaperSizeAll");
        if (auto papers = all.list()) {
            for (auto& paper : *papers) {
                auto d = paper.dict();
                if (!d || !d->value("value").isNumber() || d->value("value").intValue() != size.intValue())
                    continue;
                TwValue width = d->value("mmWidth"), length = d->value("mmLength");
                if (positive(width) && positive(length))
                    return {width.doubleValue() / 10.0, length.doubleValue() / 10.0};
            }
        }
    }
    std::fprintf(stderr, "sampleds: paper %s has no size; A4 is used\n", size.description().c_str());
    return {210.0, 297.0};
}

SampleScanSettings SampleDataSource::prescanSettings() {
    SampleScanSettings settings;
    auto [width, length] = currentPaperMillimetres();
    if (m_ui->dataForKeyPath("enable.Landscape").boolValue() &&
        m_ui->dataForKeyPath("Data.Landscape").boolValue())
        std::swap(width, length);
    settings.widthMm = width;
    settings.lengthMm = length;
    settings.dpi = kPrescanDpi;
    settings.type = imageTypeFor(m_ui->dataForKeyPath("Data.ImageType"));
    settings.duplex = isDuplexSource(m_ui->dataForKeyPath("Data.PaperSource"));
    return settings;
}

std::uint16_t SampleDataSource::prescan(TwPreviewRecord* record) {
    if (!record || !m_ui)
        return 1;
    if (m_sane)
        return prescanFromDevice(record);
    const SampleScanSettings settings = prescanSettings();
    if (!RenderSamplePrescan(settings, record)) {
        std::fprintf(stderr, "sampleds: no prescan image of %.1f x %.1f mm at %d dpi\n", settings.widthMm,
                     settings.lengthMm, settings.dpi);
        return 1;
    }
    TwBitmapInfoHeader header;
    std::memcpy(&header, record->front.pDIB, sizeof header);
    std::printf("prescan: %.1f x %.1f mm at %d dpi, %d-bit, %d x %d pixels, %s; front colour %.1f %%, "
                "black %.1f %%, white %.1f %%\n",
                settings.widthMm, settings.lengthMm, settings.dpi, int(header.biBitCount), header.biWidth,
                header.biHeight, settings.duplex ? "front and back" : "front only", record->front.colorRatio,
                record->front.blackRatio, record->front.whiteRatio);
    std::fflush(stdout);
    return 0;
}

namespace {
// The image type a SANE device scans for the sample's: the automatic ones as their richer kind.
int deviceImageType(const TwValue& imageType) {
    switch (imageTypeFor(imageType)) {
    case SampleImageType::Binary:
        return 0;
    case SampleImageType::Gray:
        return 1;
    case SampleImageType::Color:
        break;
    }
    return 2;
}

// The sample's paper sources that feed pages: the feeder, duplex and the automatic ones.
bool isFeederSource(const TwValue& source) {
    return source.isNumber() && source.intValue() != kSourceFlatbed && source.intValue() != 5;
}
} // namespace

SaneScanSettings SampleDataSource::deviceScanSettings() {
    SaneScanSettings settings;
    const TwValue source = m_ui->dataForKeyPath("Data.PaperSource");
    settings.dpi = m_ui->dataForKeyPath("Data.Resolution").intValue();
    settings.mode = m_sane->modeFor(deviceImageType(m_ui->dataForKeyPath("Data.ImageType")));
    settings.duplex = isDuplexSource(source);
    settings.feeder = isFeederSource(source);
    settings.source = m_sane->sourceFor(settings.duplex   ? kSourceDuplex
                                        : settings.feeder ? kSourceFeeder
                                                          : kSourceFlatbed);
    auto number = [this](const char* keyPath) {
        return m_ui->dataForKeyPath(keyPath).doubleValue();
    };
    settings.frontXMm = number("Data.Area.Measure.Front.X");
    settings.backXMm = number("Data.Area.Measure.Back.X");
    settings.yMm = number("Data.Area.Measure.Y");
    settings.widthMm = number("Data.Area.Measure.Width");
    settings.lengthMm = number("Data.Area.Measure.Length");
    settings.maxPages = m_options.devicePages;
    settings.paperWaitSeconds = m_ui->dataForKeyPath("Data.Feed.ManualFeedUnlimited").boolValue()
                                    ? 0
                                    : number("Data.Feed.ManualFeedTimeOut");
    return settings;
}

std::uint16_t SampleDataSource::prescanFromDevice(TwPreviewRecord* record) {
    // The whole page at the prescan resolution, in the image type and from the source set now.
    SaneScanSettings settings = deviceScanSettings();
    const SampleScanSettings page = prescanSettings();
    settings.dpi = m_sane->traits().prescanResolution;
    settings.frontXMm = settings.backXMm = settings.yMm = 0;
    settings.widthMm = page.widthMm;
    settings.lengthMm = page.lengthMm;
    std::string error;
    if (!m_sane->prescan(settings, record, &error)) {
        std::fprintf(stderr, "sampleds: the prescan from %s failed: %s\n", m_options.device.c_str(),
                     error.c_str());
        return 1;
    }
    TwBitmapInfoHeader header;
    std::memcpy(&header, record->front.pDIB, sizeof header);
    std::printf(
        "prescan from %s: %.1f x %.1f mm at %d dpi, %d-bit, %d x %d pixels, %s; front colour %.1f %%, "
        "black %.1f %%, white %.1f %%\n",
        m_options.device.c_str(), settings.widthMm, settings.lengthMm, settings.dpi, int(header.biBitCount),
        header.biWidth, header.biHeight, settings.duplex ? "front and back" : "front only",
        record->front.colorRatio, record->front.blackRatio, record->front.whiteRatio);
    std::fflush(stdout);
    return 0;
}

bool SampleDataSource::renderQuestionPage(TwPreviewRecord* record) {
    SampleScanSettings settings = prescanSettings();
    settings.duplex = false;
    return RenderSamplePrescan(settings, record);
}

void SampleDataSource::joinScan() {
    if (m_scan)
        m_scan->join();
    if (m_saneScan)
        m_saneScan->join();
}

void SampleDataSource::startScan() {
    if (m_sane) {
        if (!m_saneScan)
            m_saneScan =
                std::make_unique<SaneScan>(m_ui, m_sane->device(), m_options.output,
                                           m_options.scan.autoAnswer, m_options.scan.answerAfterSeconds);
        if (!m_saneScan->start(deviceScanSettings()))
            std::printf("scan: already scanning; Scan ignored\n");
        return;
    }
    if (!m_scan)
        m_scan = std::make_unique<SampleScan>(m_ui, m_options.scan,
                                              [this](TwPreviewRecord* r) { return renderQuestionPage(r); });
    if (!m_scan->start())
        std::printf("scan: already scanning; Scan ignored\n");
}

int SampleDataSource::savePrescan() {
    TwPreviewRecord record{};
    if (callback(kVmxEventPrescan, &record) != 0) {
        std::fprintf(stderr, "sampleds: the prescan delivered no image\n");
        return 1;
    }
    std::filesystem::path front = m_options.prescanFile;
    std::filesystem::path back = front;
    back.replace_filename(front.stem().string() + "-back" + front.extension().string());
    int result = 0;
    for (auto [side, path] : {std::make_pair(&record.front, front), std::make_pair(&record.back, back)}) {
        if (!side->pDIB)
            continue;
        std::error_code ec;
        std::filesystem::remove(path, ec);
        SaveBMP(side->pDIB, side->imageLength, path.c_str(), 0);
        if (std::filesystem::exists(path)) {
            std::printf("prescan image: %s\n", std::filesystem::absolute(path).c_str());
        } else {
            std::fprintf(stderr, "sampleds: cannot write %s\n", path.c_str());
            result = 1;
        }
        std::free(side->pDIB);
    }
    return result;
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
        return m_exitStatus;
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
    bool scanPressed = false;
    bool prescanPressed = false;
    bool stopPressed = false;
    // A data source without a Qt loop of its own lets the module run its events, also while its
    // scan thread waits for an answer.
    while (!g_closed || scanRunning()) {
        m_ui->processEvents(20);
        double elapsed = std::chrono::duration<double>(Clock::now() - shown).count();
        if (m_options.scanAfter > 0 && !scanPressed && elapsed >= m_options.scanAfter) {
            scanPressed = true;
            std::printf("pressing Scan by itself after %.1f s\n", m_options.scanAfter);
            std::fflush(stdout);
            m_ui->performDialogAction("onStart");
        }
        if (m_options.stopAfter > 0 && scanPressed && !stopPressed &&
            elapsed >= m_options.scanAfter + m_options.stopAfter && scanRunning()) {
            stopPressed = true;
            std::printf("pressing Stop by itself %.1f s after Scan\n", m_options.stopAfter);
            std::fflush(stdout);
            callback(kVmxEventScanCancel, nullptr); // what the progress panel's Stop sends
        }
        if (m_options.prescanAfter > 0 && !prescanPressed && elapsed >= m_options.prescanAfter) {
            prescanPressed = true;
            std::printf("pressing Prescan by itself after %.1f s\n", m_options.prescanAfter);
            std::fflush(stdout);
            m_ui->performDialogAction("onPrescan");
        }
        // A scan in progress is let finish before the dialog closes by itself.
        if (m_options.closeAfter > 0 && !pressed && elapsed >= m_options.closeAfter && !scanRunning()) {
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
    joinScan();
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
        return m_exitStatus;
    g_source = this;
    std::printf("module %s\nbundle %s\n", m_options.modulePath.c_str(), m_options.bundlePath.c_str());
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
    // The prescan the module would ask for, through the same callback.
    const int result = m_options.prescanFile.empty() ? 0 : savePrescan();
    if (m_options.headlessScan) {
        // The module's windows need the application, made on this thread by the first one shown.
        m_ui->showProgressDialog();
        startScan();
        while (scanRunning())
            m_ui->processEvents(20);
        joinScan();
    }
    m_ui->closeDS();
    g_source = nullptr;
    return result;
}
