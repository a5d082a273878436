// Plays the data source: loads the module, feeds it the simulated scanner and answers its events.
#pragma once

#include "SampleModelDef.h"
#include "SamplePage.h"
#include "SampleScan.h"
#include "VmxUI.h"

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

struct SampleOptions {
    std::string modulePath;
    std::string bundlePath;
    bool flatbed = true;
    bool passport = true;
    bool headless = false;
    bool modal = true;
    bool settingsOnly = false;
    // Closes the dialog by itself after that many seconds (0: never), pressing OK or Cancel.
    double closeAfter = 0;
    bool closeWithOK = false;
    // Pictures taken just before the dialog closes by itself.
    std::string screenshot;
    std::string screenshotTabs;
    // Settings written through the facade right after loading: key path and value text.
    std::vector<std::pair<std::string, std::string>> settings;
    // Headless: prescan through the callback and save the front (and back) image here.
    std::string prescanFile;
    // The simulated scan that Scan starts; headless, --scan runs it without the dialog.
    SampleScanOptions scan;
    bool headlessScan = false;
    // Presses Scan, or Prescan, by itself after that many seconds (0: never).
    double scanAfter = 0;
    double prescanAfter = 0;
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
    // Shows the dialog and runs its events until the dialog reports event 6; prints the Data
    // section the data source would scan with after OK or Scan. Exit code.
    int runDialog();

    // The callback: prints every event; event 1 decoded; events 3 and 5 answered with a prescan.
    static std::uint16_t callback(std::uint16_t event, void* data);
    static std::string describeEvent(std::uint16_t event, const void* data);
    // The Data section, one "key path = value" line per setting.
    void printData(const char* when);

private:
    TwValue capabilityValues() const;
    // What a prescan scans with: the current paper in its orientation, the image type's depth,
    // both sides when the paper source is a duplex one, at the prescan resolution.
    SampleScanSettings prescanSettings();
    // Fills the zeroed preview record with the rendered sides; 0 when it did.
    std::uint16_t prescan(TwPreviewRecord* record);
    // Width and length of the selected paper in millimetres, upright.
    std::pair<double, double> currentPaperMillimetres();
    void applySettings();
    int savePrescan();
    // Starts the simulated scan on its worker thread (event 2, or --scan).
    void startScan();
    bool scanRunning() const { return m_scan && m_scan->running(); }
    // The page a continue-scan question shows: the front of the current paper.
    bool renderQuestionPage(TwPreviewRecord* record);

    SampleOptions m_options;
    void* m_module = nullptr;
    VmxUIDestroyFn m_destroy = nullptr;
    VmxUIController* m_ui = nullptr;
    SampleModelDef m_modelDef{TwValue()};
    TwValue m_capabilities;
    std::unique_ptr<SampleScan> m_scan;
};
