// A SANE device behind the sample data source: opened by name with the options a person gives,
// what it offers, its prescans, and its scans on a worker thread.
#pragma once

#include "SaneCapabilities.h"
#include "SaneDevice.h"
#include "SaneScan.h"
#include "VmxUI.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

class SaneScanner {
public:
    // The sample's SANE configuration (which enables the test backend) lies in configDir.
    // Prints the devices SANE finds, one a line; the exit status.
    static int listDevices(const std::string& configDir);
    // The device with the options written ("name=value", as scanimage takes them), or null with
    // the reason in *error.
    static std::unique_ptr<SaneScanner> open(const std::string& name, const std::string& configDir,
                                             const std::vector<std::pair<std::string, std::string>>& options,
                                             std::string* error);

    const SaneTraits& traits() const { return m_traits; }
    SaneDevice& device() { return *m_device; }
    // The mode of an image type (the first offered when the device lacks that one).
    SaneImageMode modeFor(int imageType) const;
    // The device's name for a paper source, and the source offered first when it has none.
    std::string sourceFor(int paperSource) const;

    // Scans the front (and the back, duplex) of the area into a zeroed record as the module takes
    // a prescan; false with the record empty and the reason in *error.
    bool prescan(const SaneScanSettings& settings, TwPreviewRecord* record, std::string* error);

private:
    std::shared_ptr<SaneLibrary> m_library;
    std::unique_ptr<SaneDevice> m_device;
    SaneTraits m_traits;
};
