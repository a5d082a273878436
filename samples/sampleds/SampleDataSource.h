// Plays the data source: loads the module, feeds it the simulated scanner and answers its events.
#pragma once

#include "SampleModelDef.h"
#include "SamplePage.h"
#include "SampleScan.h"
#include "SaneScanner.h"
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
    // Presses Stop on the progress panel by itself that many seconds after Scan (0: never).
    double stopAfter = 0;
    // A SANE device instead of the simulation, the options written to it first, and the folder
    // its scans are written to.
    std::string device;
    std::vector<std::pair<std::string, std::string>> deviceOptions;
    std::string output = "scans";
    // Pages a feeder scan of the device takes at most (--scan-pages); 0: until the feeder is empty.
    int devicePages = 0;
};

class SampleDataSource {
public:
    explicit SampleDataSource(SampleOptions options);
    ~SampleDataSource();
    SampleDataSource(const SampleDataSource&) = delete;
    SampleDataSource& operator=(const SampleDataSource&) = delete;

    // The sample's SANE configuration in its bundle.
    static std::string saneConfigDir(const std::string& bundlePath);

    // Loads the module and the bundle's data, and opens the SANE device when one is named; false
    // (with a message on stderr, and exitStatus() telling why) when it cannot.
    bool load();
    // 2 when the SANE device cannot be opened or offered, else 1.
    int exitStatus() const { return m_exitStatus; }
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
    // Fills the zeroed preview record with the rendered (or, from a SANE device, scanned) sides; 0
    // when it did.
    std::uint16_t prescan(TwPreviewRecord* record);
    std::uint16_t prescanFromDevice(TwPreviewRecord* record);
    // The SANE scan of the current setting: resolution, image type, source, each side's main area.
    SaneScanSettings deviceScanSettings();
    bool openDevice();
    // Width and length of the selected paper in millimetres, upright.
    std::pair<double, double> currentPaperMillimetres();
    void applySettings();
    int savePrescan();
    // Starts the simulated scan on its worker thread (event 2, or --scan).
    void startScan();
    bool scanRunning() const {
        return (m_scan && m_scan->running()) || (m_saneScan && m_saneScan->running());
    }
    void joinScan();
    // The page a continue-scan question shows: the front of the current paper.
    bool renderQuestionPage(TwPreviewRecord* record);

    SampleOptions m_options;
    void* m_module = nullptr;
    VmxUIDestroyFn m_destroy = nullptr;
    VmxUIController* m_ui = nullptr;
    SampleModelDef m_modelDef{TwValue()};
    TwValue m_capabilities;
    std::unique_ptr<SampleScan> m_scan;
    std::unique_ptr<SaneScanner> m_sane;
    std::unique_ptr<SaneScan> m_saneScan;
    int m_exitStatus = 1;
};
