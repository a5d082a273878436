// The simulated scan: what a data source does after Scan, on a worker thread of its own as a real
// one does. It shows the progress panel and moves it on page by page; it can wait for paper first
// (a message box that closes by itself when the data source's poll sees paper) and meet a double
// feed at a given page (the continue-scan question with a picture of that page), going on or
// stopping by the answer. Stop on the progress panel (event 4) ends it after the page at hand.
// Every answer is printed.
#pragma once

#include "SamplePage.h"
#include "VmxUI.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <mutex>
#include <optional>
#include <string>
#include <thread>

struct SampleScanOptions {
    int pages = 5;
    // The page that feeds double (1-based); 0: none.
    int doubleFeedAt = 3;
    // Seconds until paper is "loaded" when the scan starts; 0: paper is there.
    double paperWaitSeconds = 0;
    int pageTimeMs = 400;
    // "continue" or "stop": the scanner's own panel answers the question after answerAfterSeconds,
    // as the data source's poll tells the module. Empty: a person answers.
    std::string autoAnswer;
    double answerAfterSeconds = 2;
};

class SampleScan {
public:
    // The polling event of the paper-wait box.
    static constexpr std::uint16_t kPaperPollEvent = 0x2001;
    static constexpr std::uint32_t kPaperPollMs = 250;

    // renderPage draws the page a question shows, into a zeroed record.
    SampleScan(VmxUIController* ui, SampleScanOptions options,
               std::function<bool(TwPreviewRecord*)> renderPage);
    ~SampleScan();
    SampleScan(const SampleScan&) = delete;
    SampleScan& operator=(const SampleScan&) = delete;

    // Starts the scan on its thread; false while one is running. Called on the thread that drives
    // the module, which also looks up the texts the scan shows.
    bool start();
    bool running() const { return m_running; }
    // Waits for the thread; the GUI thread must not call it while the scan may still ask.
    void join();

    // The callback's share: the events of the scan (4, the paper poll, 0x1000 to 0x1002) get
    // their answer here; any other event gets none.
    std::optional<std::uint16_t> answerEvent(std::uint16_t event, void* data);
    static std::string describeEvent(std::uint16_t event);

private:
    void run();
    // False when the scan ends here.
    bool waitForPaper();
    bool askAboutDoubleFeed(int page);
    void showProgress(int page);
    void say(const std::string& line);

    using Clock = std::chrono::steady_clock;
    VmxUIController* m_ui;
    SampleScanOptions m_options;
    std::function<bool(TwPreviewRecord*)> m_renderPage;
    std::string m_loadPaperText;
    std::thread m_thread;
    std::atomic_bool m_running{false};
    std::atomic_bool m_cancelled{false};
    // Set by the worker before it asks, read by the callback on the GUI thread.
    std::mutex m_timesLock;
    Clock::time_point m_paperArrives;
    Clock::time_point m_questionOpened;
};
