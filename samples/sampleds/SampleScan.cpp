#include "SampleScan.h"

#include <cstdio>

namespace {
constexpr std::uint32_t kOKCancelNote = 0x10002;
constexpr int kCancel = 11;
constexpr int kContinue = 15;
constexpr int kStop = 16;

const char* answerName(int answer) {
    switch (answer) {
    case 10:
        return "OK";
    case kCancel:
        return "Cancel";
    case kContinue:
        return "Continue";
    case kStop:
        return "Stop";
    case 0:
        return "no button";
    default:
        return "unknown";
    }
}
} // namespace

SampleScan::SampleScan(VmxUIController* ui, SampleScanOptions options,
                       std::function<bool(TwPreviewRecord*)> renderPage)
    : m_ui(ui), m_options(std::move(options)), m_renderPage(std::move(renderPage)) {}

SampleScan::~SampleScan() {
    m_cancelled = true;
    join();
}

bool SampleScan::start() {
    if (m_running)
        return false;
    join();
    m_loadPaperText = m_ui->localizedString("IDS_MSG_LOAD_PAPER");
    m_cancelled = false;
    m_running = true;
    m_thread = std::thread([this] { run(); });
    return true;
}

void SampleScan::join() {
    if (m_thread.joinable())
        m_thread.join();
}

void SampleScan::say(const std::string& line) {
    std::printf("scan: %s\n", line.c_str());
    std::fflush(stdout);
}

void SampleScan::showProgress(int page) {
    // Maximum at byte 4, value at byte 8.
    const std::uint32_t record[3] = {0, std::uint32_t(m_options.pages), std::uint32_t(page)};
    m_ui->setProgress(record);
}

void SampleScan::run() {
    say(std::to_string(m_options.pages) + " pages, worker thread");
    m_ui->showProgressDialog();
    showProgress(0);
    int scanned = 0;
    if (waitForPaper()) {
        for (int page = 1; page <= m_options.pages; ++page) {
            // The feed takes its time; Stop is seen between steps.
            for (int waited = 0; waited < m_options.pageTimeMs && !m_cancelled; waited += 20)
                std::this_thread::sleep_for(std::chrono::milliseconds(20));
            if (m_cancelled) {
                say("cancelled with Stop before page " + std::to_string(page));
                break;
            }
            if (page == m_options.doubleFeedAt && !askAboutDoubleFeed(page))
                break;
            scanned = page;
            showProgress(page);
            say("page " + std::to_string(page) + " of " + std::to_string(m_options.pages));
        }
    }
    m_ui->hideProgressDialog();
    say("finished: " + std::to_string(scanned) + " of " + std::to_string(m_options.pages) + " pages scanned");
    m_running = false;
}

bool SampleScan::waitForPaper() {
    if (m_options.paperWaitSeconds <= 0)
        return true;
    {
        std::lock_guard lock(m_timesLock);
        m_paperArrives = Clock::now() + std::chrono::duration_cast<Clock::duration>(
                                            std::chrono::duration<double>(m_options.paperWaitSeconds));
    }
    say("no paper in the feeder: waiting (a polled message box)");
    const int answer = m_ui->showMessageBox(m_loadPaperText, "IDS_CAPTION_LOAD_PAPER", kOKCancelNote,
                                            kPaperPollEvent, kPaperPollMs);
    say("paper wait answered " + std::to_string(answer) + " (" + answerName(answer) + ")");
    if (answer == kCancel) {
        say("stopped while waiting for paper");
        return false;
    }
    return true;
}

bool SampleScan::askAboutDoubleFeed(int page) {
    say("double feed at page " + std::to_string(page) + ": asking whether to go on");
    const int answer = m_ui->showContinueScanDialog(std::uint16_t(page));
    say("continue-scan question at page " + std::to_string(page) + " answered " + std::to_string(answer) +
        " (" + answerName(answer) + ")");
    if (answer == kContinue)
        return true;
    say("stopped at page " + std::to_string(page));
    return false;
}

std::optional<std::uint16_t> SampleScan::answerEvent(std::uint16_t event, void* data) {
    const auto now = Clock::now();
    switch (event) {
    case kVmxEventScanCancel:
        m_cancelled = true;
        return 0;
    case kPaperPollEvent: {
        std::lock_guard lock(m_timesLock);
        // 1: as if the first button (OK) were pressed.
        return now >= m_paperArrives ? std::uint16_t(1) : kVmxResultContinue;
    }
    case kVmxEventContinueScanOpen: {
        {
            std::lock_guard lock(m_timesLock);
            m_questionOpened = now;
        }
        auto* record = static_cast<TwPreviewRecord*>(data);
        return record && m_renderPage && m_renderPage(record) ? 0 : 1;
    }
    case kVmxEventContinueScanPoll: {
        if (m_options.autoAnswer.empty())
            return kVmxResultContinue;
        std::lock_guard lock(m_timesLock);
        if (now - m_questionOpened < std::chrono::duration<double>(m_options.answerAfterSeconds))
            return kVmxResultContinue;
        return std::uint16_t(m_options.autoAnswer == "stop" ? kStop : kContinue);
    }
    case kVmxEventContinueScanClose:
        return 0;
    default:
        return std::nullopt;
    }
}

std::string SampleScan::describeEvent(std::uint16_t event) {
    switch (event) {
    case kPaperPollEvent:
        return "event 0x2001: paper poll (is there paper yet?)";
    case kVmxEventContinueScanPoll:
        return "event 0x1000: continue-scan poll";
    case kVmxEventContinueScanOpen:
        return "event 0x1001: continue-scan question opens; the problem page is handed over";
    case kVmxEventContinueScanClose:
        return "event 0x1002: continue-scan question closed";
    default:
        return {};
    }
}
