// A scan from a SANE device, on a worker thread of its own as a real data source runs it: every
// page with the current setting, each side written as a PNG and a page of one PDF; the progress
// panel follows the bytes of the frame; Stop cancels the frame; an empty feeder ends the scan; no
// paper at the start is the polled waiting-for-paper box; a jam, an open cover or an I/O error is
// a message box with the sample's own texts. Every step is printed.
#pragma once

#include "SaneCapabilities.h"
#include "SaneDevice.h"
#include "VmxUI.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

struct SaneScanSettings {
    int dpi = 0;
    SaneImageMode mode;
    std::string source;  // the device's name for it; empty: as the device stands
    bool feeder = false; // pages come until the feeder runs empty
    int maxPages = 0;    // a feeder scan ends after this many pages; 0: when the feeder is empty
    bool duplex = false; // two frames a page, front then back
    // The main area of each side, in millimetres from the device's corner.
    double frontXMm = 0, backXMm = 0, yMm = 0, widthMm = 0, lengthMm = 0;
    // How long the paper-wait box waits for paper; 0: until a person cancels.
    double paperWaitSeconds = 30;
};

// Writes the resolution, mode (and depth) and source; false with the reason when the device
// refuses one.
bool ApplySaneSettings(SaneDevice& device, const SaneScanSettings& settings, std::string* error);
// Writes the geometry of one side, kept within the device's ranges.
void ApplySaneArea(SaneDevice& device, const SaneScanSettings& settings, bool back);

class SaneScan {
public:
    // Polling events of the paper-wait box and of the error boxes.
    static constexpr std::uint16_t kPaperPollEvent = 0x2001;
    static constexpr std::uint16_t kErrorPollEvent = 0x2002;
    static constexpr std::uint32_t kPollMs = 250;

    // autoAnswer "continue" (or "stop") closes error boxes by itself after answerAfterSeconds, as
    // an unattended run needs; empty: a person closes them.
    SaneScan(VmxUIController* ui, SaneDevice& device, std::string outputFolder, std::string autoAnswer,
             double answerAfterSeconds);
    ~SaneScan();
    SaneScan(const SaneScan&) = delete;
    SaneScan& operator=(const SaneScan&) = delete;

    // Starts on the worker; false while one runs. Called on the thread that drives the module.
    bool start(const SaneScanSettings& settings);
    bool running() const { return m_running; }
    void join();
    // The callback's share: Stop (event 4) and the boxes' polls.
    std::optional<std::uint16_t> answerEvent(std::uint16_t event, void* data);
    static std::string describeEvent(std::uint16_t event);

private:
    using Clock = std::chrono::steady_clock;
    void run();
    bool waitForPaper();
    void showError(SANE_Status status, const std::string& detail);
    void showProgress(std::uint64_t value, std::uint64_t maximum);
    void say(const std::string& line);

    VmxUIController* m_ui;
    SaneDevice& m_device;
    std::string m_outputFolder;
    std::string m_autoAnswer;
    double m_answerAfterSeconds;
    SaneScanSettings m_settings;
    // Texts looked up on the driving thread before the worker starts.
    std::string m_loadPaperText, m_jamText, m_coverText, m_errorText;
    std::thread m_thread;
    std::atomic_bool m_running{false};
    std::atomic_bool m_cancelled{false};
    std::mutex m_timesLock;
    Clock::time_point m_boxOpened;
};
