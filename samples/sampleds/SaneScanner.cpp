#include "SaneScanner.h"

#include "SaneBitmaps.h"

#include <cstdio>
#include <cstdlib>

namespace {
bool isTestDevice(const std::string& name) {
    return name == "test" || name.rfind("test:", 0) == 0;
}
} // namespace

int SaneScanner::listDevices(const std::string& configDir) {
    std::string error;
    auto library = SaneLibrary::acquire(configDir, SaneBackends::WithTest, &error);
    if (!library) {
        std::fprintf(stderr, "sampleds: %s\n", error.c_str());
        return 2;
    }
    const auto devices = library->devices();
    for (const SaneDeviceEntry& d : devices)
        std::printf("%s\t%s %s (%s)\n", d.name.c_str(), d.vendor.c_str(), d.model.c_str(), d.type.c_str());
    if (devices.empty())
        std::printf("SANE finds no device\n");
    return 0;
}

std::unique_ptr<SaneScanner>
SaneScanner::open(const std::string& name, const std::string& configDir,
                  const std::vector<std::pair<std::string, std::string>>& options, std::string* error) {
    auto scanner = std::unique_ptr<SaneScanner>(new SaneScanner);
    scanner->m_library = SaneLibrary::acquire(
        configDir, isTestDevice(name) ? SaneBackends::TestOnly : SaneBackends::System, error);
    if (!scanner->m_library)
        return nullptr;
    scanner->m_device = SaneDevice::open(scanner->m_library, name, error);
    if (!scanner->m_device)
        return nullptr;
    for (const auto& [option, value] : options)
        if (!scanner->m_device->set(option, value, error))
            return nullptr;
    // The name a person knows the device by, from the local devices (the network is not asked).
    std::string product = name;
    for (const SaneDeviceEntry& d : scanner->m_library->devices(true))
        if (d.name == name || (isTestDevice(name) && d.name == name + ":0"))
            product = d.vendor + " " + d.model;
    scanner->m_traits = ReadSaneTraits(*scanner->m_device, product);
    return scanner;
}

SaneImageMode SaneScanner::modeFor(int imageType) const {
    for (const SaneImageMode& mode : m_traits.modes)
        if (mode.imageType == imageType)
            return mode;
    return m_traits.modes.empty() ? SaneImageMode{} : m_traits.modes.front();
}

std::string SaneScanner::sourceFor(int paperSource) const {
    for (const SaneSource& source : m_traits.sources)
        if (source.paperSource == paperSource)
            return source.deviceName;
    return m_traits.sources.empty() ? std::string() : m_traits.sources.front().deviceName;
}

bool SaneScanner::prescan(const SaneScanSettings& settings, TwPreviewRecord* record, std::string* error) {
    if (!record)
        return false;
    *record = {};
    auto fail = [&](const std::string& why) {
        std::free(record->front.pDIB);
        std::free(record->back.pDIB);
        *record = {};
        if (error)
            *error = why;
        m_device->finish();
        return false;
    };
    if (!ApplySaneSettings(*m_device, settings, error))
        return fail(error ? *error : std::string());
    for (int side = 0; side < (settings.duplex ? 2 : 1); ++side) {
        const bool back = side == 1;
        ApplySaneArea(*m_device, settings, back);
        const SaneReadResult result = m_device->read();
        if (result.status != SANE_STATUS_GOOD)
            return fail(result.message);
        const SamplePage page = SaneBitmapOf(result.image, settings.dpi);
        if (!page.dib)
            return fail("no bitmap of " + std::to_string(result.image.width) + " x " +
                        std::to_string(result.image.height) + " pixels");
        TwPreviewSide& target = back ? record->back : record->front;
        target.pDIB = page.dib;
        target.imageLength = page.length;
        target.colorRatio = page.colorRatio;
        target.blackRatio = page.blackRatio;
        target.whiteRatio = page.whiteRatio;
    }
    m_device->finish();
    return true;
}
