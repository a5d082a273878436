#include "SaneScan.h"

#include "ScanOutput.h"

#include <sane/saneopts.h>

#include <algorithm>
#include <cstdio>
#include <limits>

namespace {
constexpr std::uint32_t kOKCancelNote = 0x10002;
constexpr std::uint32_t kOKStop = 0x30001;
constexpr int kCancel = 11;

std::string mm(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", value);
    return text;
}

// The value kept within the option's range, when it has one.
double within(const SaneDevice& device, const char* option, double value) {
    const auto c = device.constraint(option);
    if (c && c->min && c->max)
        return std::clamp(value, *c->min, *c->max);
    return value;
}
} // namespace

bool ApplySaneSettings(SaneDevice& device, const SaneScanSettings& settings, std::string* error) {
    if (!settings.source.empty() && device.settable(SANE_NAME_SCAN_SOURCE) &&
        !device.set(SANE_NAME_SCAN_SOURCE, settings.source, error))
        return false;
    if (!settings.mode.deviceMode.empty() && device.settable(SANE_NAME_SCAN_MODE) &&
        !device.set(SANE_NAME_SCAN_MODE, settings.mode.deviceMode, error))
        return false;
    if (settings.mode.depth > 0 && device.settable(SANE_NAME_BIT_DEPTH) &&
        !device.set(SANE_NAME_BIT_DEPTH, double(settings.mode.depth), error))
        return false;
    if (settings.dpi > 0 && device.settable(SANE_NAME_SCAN_RESOLUTION) &&
        !device.set(SANE_NAME_SCAN_RESOLUTION, double(settings.dpi), error))
        return false;
    return true;
}

void ApplySaneArea(SaneDevice& device, const SaneScanSettings& settings, bool back) {
    if (!device.settable(SANE_NAME_SCAN_TL_X) || !device.settable(SANE_NAME_SCAN_BR_X))
        return;
    const double x = back ? settings.backXMm : settings.frontXMm;
    // The far corner goes out first, so that the near one never passes it on the way.
    for (const char* far : {SANE_NAME_SCAN_BR_X, SANE_NAME_SCAN_BR_Y})
        if (auto c = device.constraint(far); c && c->max)
            device.set(far, *c->max);
    device.set(SANE_NAME_SCAN_TL_X, within(device, SANE_NAME_SCAN_TL_X, x));
    device.set(SANE_NAME_SCAN_TL_Y, within(device, SANE_NAME_SCAN_TL_Y, settings.yMm));
    device.set(SANE_NAME_SCAN_BR_X, within(device, SANE_NAME_SCAN_BR_X, x + settings.widthMm));
    device.set(SANE_NAME_SCAN_BR_Y, within(device, SANE_NAME_SCAN_BR_Y, settings.yMm + settings.lengthMm));
}

SaneScan::SaneScan(VmxUIController* ui, SaneDevice& device, std::string outputFolder, std::string autoAnswer,
                   double answerAfterSeconds)
    : m_ui(ui), m_device(device), m_outputFolder(std::move(outputFolder)),
      m_autoAnswer(std::move(autoAnswer)), m_answerAfterSeconds(answerAfterSeconds) {}

SaneScan::~SaneScan() {
    if (m_running) {
        m_cancelled = true;
        m_device.cancel();
    }
    join();
}

bool SaneScan::start(const SaneScanSettings& settings) {
    if (m_running)
        return false;
    join();
    m_settings = settings;
    m_loadPaperText = m_ui->localizedString("IDS_MSG_LOAD_PAPER");
    m_jamText = m_ui->localizedString("IDS_ERR_SANE_JAMMED");
    m_coverText = m_ui->localizedString("IDS_ERR_SANE_COVER_OPEN");
    m_errorText = m_ui->localizedString("IDS_ERR_SANE_DEVICE");
    m_cancelled = false;
    m_running = true;
    m_thread = std::thread([this] { run(); });
    return true;
}

void SaneScan::join() {
    if (m_thread.joinable())
        m_thread.join();
}

void SaneScan::say(const std::string& line) {
    std::printf("scan: %s\n", line.c_str());
    std::fflush(stdout);
}

void SaneScan::showProgress(std::uint64_t value, std::uint64_t maximum) {
    // Maximum at byte 4, value at byte 8; a frame of unknown size shows what has come so far.
    if (maximum == 0)
        maximum = value + 1;
    const std::uint64_t limit = std::numeric_limits<std::uint32_t>::max();
    const std::uint64_t shift = maximum > limit ? 10 : 0;
    const std::uint32_t record[3] = {0, std::uint32_t(maximum >> shift), std::uint32_t(value >> shift)};
    m_ui->setProgress(record);
}

void SaneScan::run() {
    const SaneScanSettings& s = m_settings;
    say("SANE device " + m_device.name() + ": " + std::to_string(s.dpi) + " dpi, mode " +
        (s.mode.deviceMode.empty() ? std::string("as the device stands") : s.mode.deviceMode) +
        (s.mode.depth ? " at " + std::to_string(s.mode.depth) + " bits" : std::string()) + ", source " +
        (s.source.empty() ? std::string("as the device stands") : s.source) +
        (s.duplex ? ", both sides" : "") + ", area " + mm(s.widthMm) + " x " + mm(s.lengthMm) +
        " mm, worker thread");
    m_ui->showProgressDialog();
    showProgress(0, 1);
    ScanOutput output(m_outputFolder);
    int sides = 0, pages = 0;
    std::string error;
    if (!ApplySaneSettings(m_device, s, &error)) {
        say("the device refuses the setting: " + error);
        showError(SANE_STATUS_INVAL, error);
    } else {
        bool waited = false;
        bool done = false;
        for (int page = 1; !done; ++page) {
            for (int side = 0; side < (s.duplex ? 2 : 1); ++side) {
                const bool back = side == 1;
                const std::string sideName = "page " + std::to_string(page) + (back ? " back" : " front");
                if (m_cancelled) {
                    say("cancelled with Stop before " + sideName);
                    done = true;
                    break;
                }
                ApplySaneArea(m_device, s, back);
                SaneReadResult result =
                    m_device.read([this](std::uint64_t got, std::uint64_t size) { showProgress(got, size); });
                if (result.status == SANE_STATUS_NO_DOCS && page == 1 && !back && s.feeder && !waited) {
                    waited = true;
                    if (!waitForPaper()) {
                        done = true;
                        break;
                    }
                    result = m_device.read(
                        [this](std::uint64_t got, std::uint64_t size) { showProgress(got, size); });
                }
                if (result.status == SANE_STATUS_GOOD) {
                    if (!output.add(result.image, s.dpi, page, back, &error)) {
                        say(error);
                        showError(SANE_STATUS_IO_ERROR, error);
                        done = true;
                        break;
                    }
                    ++sides;
                    pages = page;
                    say(sideName + ": " + std::to_string(result.image.width) + " x " +
                        std::to_string(result.image.height) + " pixels, " +
                        std::to_string(result.image.depth) + "-bit " +
                        (result.image.format == SaneFormat::Rgb ? "colour" : "grey"));
                    continue;
                }
                done = true;
                if (result.status == SANE_STATUS_NO_DOCS) {
                    say(page == 1 ? "no paper: nothing scanned"
                                  : "the feeder is empty after page " + std::to_string(page - 1));
                } else if (result.status == SANE_STATUS_CANCELLED || m_cancelled) {
                    say("cancelled with Stop during " + sideName);
                } else {
                    say(sideName + ": " + result.message);
                    showError(result.status, result.message);
                }
                break;
            }
            if (!s.feeder || (s.maxPages > 0 && page >= s.maxPages))
                done = true;
        }
    }
    m_device.finish();
    const int pdfPages = output.finish();
    m_ui->hideProgressDialog();
    say("finished: " + std::to_string(pages) + " pages, " + std::to_string(sides) + " sides written to " +
        output.folder() +
        (pdfPages ? ", " + output.pdfPath() + " with " + std::to_string(pdfPages) + " pages" : ""));
    m_running = false;
}

bool SaneScan::waitForPaper() {
    {
        std::lock_guard lock(m_timesLock);
        m_boxOpened = Clock::now();
    }
    say("no paper in the feeder: waiting (a polled message box)");
    const int answer = m_ui->showMessageBox(m_loadPaperText, "IDS_CAPTION_LOAD_PAPER", kOKCancelNote,
                                            kPaperPollEvent, kPollMs);
    say("paper wait answered " + std::to_string(answer));
    if (answer == kCancel || m_cancelled) {
        say("stopped while waiting for paper");
        return false;
    }
    return true;
}

void SaneScan::showError(SANE_Status status, const std::string& detail) {
    std::string text = status == SANE_STATUS_JAMMED       ? m_jamText
                       : status == SANE_STATUS_COVER_OPEN ? m_coverText
                                                          : m_errorText;
    if (status != SANE_STATUS_JAMMED && status != SANE_STATUS_COVER_OPEN)
        text += "\n" + detail;
    {
        std::lock_guard lock(m_timesLock);
        m_boxOpened = Clock::now();
    }
    say("message box: " + text);
    const int answer =
        m_ui->showMessageBox(text, "IDS_CAPTION_SCANNER_ERROR", kOKStop, kErrorPollEvent, kPollMs);
    say("message box answered " + std::to_string(answer));
}

std::optional<std::uint16_t> SaneScan::answerEvent(std::uint16_t event, void*) {
    const auto now = Clock::now();
    switch (event) {
    case kVmxEventScanCancel:
        if (m_running) {
            m_cancelled = true;
            m_device.cancel();
        }
        return 0;
    case kPaperPollEvent: {
        // Paper has come when a frame starts; the scan then reads that frame.
        const SANE_Status status = m_device.start();
        if (status != SANE_STATUS_NO_DOCS)
            return std::uint16_t(1); // as if OK were pressed
        std::lock_guard lock(m_timesLock);
        if (m_settings.paperWaitSeconds > 0 &&
            now - m_boxOpened >= std::chrono::duration<double>(m_settings.paperWaitSeconds))
            return std::uint16_t(0); // as if Cancel were pressed: waited long enough
        return kVmxResultContinue;
    }
    case kErrorPollEvent: {
        std::lock_guard lock(m_timesLock);
        if (m_autoAnswer.empty() || now - m_boxOpened < std::chrono::duration<double>(m_answerAfterSeconds))
            return kVmxResultContinue;
        return std::uint16_t(1);
    }
    default:
        return std::nullopt;
    }
}

std::string SaneScan::describeEvent(std::uint16_t event) {
    switch (event) {
    case kPaperPollEvent:
        return "event 0x2001: paper poll (is there paper yet?)";
    case kErrorPollEvent:
        return "event 0x2002: scanner error box poll";
    default:
        return {};
    }
}
