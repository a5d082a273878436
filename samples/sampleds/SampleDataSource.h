// Plays the data source: loads the module, feeds it the simulated scanner and answers its events.
#pragma once

#include "SampleModelDef.h"
#include "VmxUI.h"

#include <cstdint>
#include <string>

struct SampleOptions {
    std::string modulePath;
    std::string bundlePath;
    bool flatbed = true;
    bool passport = true;
    bool headless = false;
};

class SampleDataSource {
public:
    explicit SampleDataSource(SampleOptions options);
    ~SampleDataSource();
    SampleDataSource(const SampleDataSource&) = delete;
    SampleDataSource& operator=(const SampleDataSource&) = delete;

    // Loads the module and the bundle's data; false (with a message on stderr) when it cannot.
    bool load();
    // Loads, sets data, reads values back and pushes Data.Resolution as event 1. Exit code.
    int runHeadless();

    // The callback: prints every event; event 1 decoded.
    static std::uint16_t callback(std::uint16_t event, void* data);
    static std::string describeEvent(std::uint16_t event, const void* data);

private:
    TwValue capabilityValues() const;

    SampleOptions m_options;
    void* m_module = nullptr;
    VmxUIDestroyFn m_destroy = nullptr;
    VmxUIController* m_ui = nullptr;
    SampleModelDef m_modelDef{TwValue()};
    TwValue m_capabilities;
};
