// sampleds: a stand-in data source for trying the settings dialog without a scanner.
#include "SampleDataSource.h"
#include "SampleLayout.h"
#include "SaneScanner.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <string>
#include <utility>

namespace {
void usage() {
    std::printf(
        "usage: sampleds [--headless] [--modeless] [--settings-only] [--close-after SECONDS [--ok]]\n"
        "                [--screenshot FILE.png] [--screenshot-tabs DIR] [--no-flatbed] [--no-passport]\n"
        "                [--set KEYPATH=VALUE]... [--prescan FILE.bmp] [--prescan-after SECONDS]\n"
        "                [--module PATH] [--bundle PATH] [--language LANG]\n"
        "                [--scan] [--scan-after SECONDS] [--scan-pages N] [--double-feed-at K]\n"
        "                [--paper-wait SECONDS] [--page-time MS] [--auto-answer continue|stop]\n"
        "                [--answer-after SECONDS]\n"
        "  --headless         no window: read values, change the resolution, send it as event 1\n"
        "  --language LANG    the user's language (de, fr, ja, ...) instead of the environment's: the\n"
        "                     dialog's and the sample's texts; a language without them is English\n"
        "  --prescan F        with --headless: prescan through the callback (event 3) and save the\n"
        "                     front image as F, the back one as F with \"-back\" added\n"
        "  --set K=V          write a setting through the facade after loading (true, false, a\n"
        "                     number or text), e.g. --set Data.ImageType=2 --set Data.PaperSource=1\n"
        "  --modeless         show the dialog modeless (default: modal)\n"
        "  --settings-only    settings-only mode: OK enabled, Scan disabled\n"
        "  --close-after S    press Cancel (or OK with --ok) by itself after S seconds, once a scan\n"
        "                     in progress has ended\n"
        "  --prescan-after S  press Prescan by itself after S seconds\n"
        "  --screenshot F     save a picture of the dialog, and of the preview when it is open, just\n"
        "                     before the dialog closes by itself\n"
        "  --screenshot-tabs D  save one picture per tab into D just before it closes by itself\n"
        "The simulated scan (Scan in the dialog, or --scan with --headless) runs on a thread of its\n"
        "own with the progress panel:\n"
        "  --scan             with --headless: scan without the dialog (no display needed: Qt's\n"
        "                     offscreen platform is used when there is none)\n"
        "  --scan-after S     press Scan by itself after S seconds\n"
        "  --stop-after S     press Stop on the progress panel by itself S seconds after Scan\n"
        "  --scan-pages N     pages in the feeder (default 5); with --device, the most pages a\n"
        "                     feeder scan takes (default: until the feeder is empty)\n"
        "  --double-feed-at K page K feeds double: the continue-scan question (default 3, 0: never)\n"
        "  --paper-wait S     the feeder is empty for S seconds: a message box that closes by itself\n"
        "                     when paper arrives (default 0)\n"
        "  --page-time MS     time a page takes (default 400)\n"
        "  --auto-answer A    the scanner's own panel answers the question with A (continue or stop)\n"
        "                     --answer-after S seconds after it opened (default 2); with --headless\n"
        "                     continue unless told otherwise\n"
        "A SANE scanner instead of the simulated one (the test backend: --device test):\n"
        "  --list-devices     print the devices SANE finds\n"
        "  --device NAME      drive that SANE device: its options become the dialog's choices,\n"
        "                     Prescan and Scan read from it\n"
        "  --device-option O=V  set a device option first, as scanimage names it, e.g.\n"
        "                     --device-option test-picture=\"Color pattern\"\n"
        "  --output DIR       where a scan's pages go: one PNG per page side and scan.pdf\n"
        "                     (default: scans)\n");
}

// The number after an option, or nothing (reported) when it is not one within the bounds.
std::optional<double> numberArgument(const char* option, const char* text, double low, double high) {
    char* end = nullptr;
    const double value = std::strtod(text, &end);
    if (!end || *end || !(value >= low && value <= high)) {
        std::fprintf(stderr, "sampleds: %s wants a number from %g to %g\n", option, low, high);
        return std::nullopt;
    }
    return value;
}
// NAME=VALUE split at the first "=", or nothing (reported) without a name before it.
std::optional<std::pair<std::string, std::string>> assignmentArgument(const char* option, const char* form,
                                                                      const std::string& text) {
    const auto equals = text.find('=');
    if (equals == 0 || equals == std::string::npos) {
        std::fprintf(stderr, "sampleds: %s wants %s\n", option, form);
        return std::nullopt;
    }
    return std::make_pair(text.substr(0, equals), text.substr(equals + 1));
}
} // namespace

int main(int argc, char** argv) {
    SampleOptions options;
    bool listDevices = false;
    const SampleLayout layout = SampleLayoutBeside(SampleExecutableDir(argv[0]));
    options.modulePath = layout.modulePath;
    options.bundlePath = layout.bundlePath;
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        if (arg == "--headless")
            options.headless = true;
        else if (arg == "--no-flatbed")
            options.flatbed = false;
        else if (arg == "--no-passport")
            options.passport = false;
        else if (arg == "--modeless")
            options.modal = false;
        else if (arg == "--modal")
            options.modal = true;
        else if (arg == "--settings-only")
            options.settingsOnly = true;
        else if (arg == "--ok")
            options.closeWithOK = true;
        else if (arg == "--close-after" && i + 1 < argc) {
            char* end = nullptr;
            options.closeAfter = std::strtod(argv[++i], &end);
            if (!end || *end || options.closeAfter < 0) {
                std::fprintf(stderr, "sampleds: --close-after wants a number of seconds\n");
                return 2;
            }
        } else if (arg == "--screenshot" && i + 1 < argc)
            options.screenshot = argv[++i];
        else if (arg == "--screenshot-tabs" && i + 1 < argc)
            options.screenshotTabs = argv[++i];
        else if (arg == "--prescan" && i + 1 < argc)
            options.prescanFile = argv[++i];
        else if (arg == "--set" && i + 1 < argc) {
            auto setting = assignmentArgument("--set", "KEYPATH=VALUE", argv[++i]);
            if (!setting)
                return 2;
            options.settings.push_back(*setting);
        } else if (arg == "--scan") {
            options.headlessScan = true;
        } else if (arg == "--auto-answer" && i + 1 < argc) {
            options.scan.autoAnswer = argv[++i];
            if (options.scan.autoAnswer != "continue" && options.scan.autoAnswer != "stop") {
                std::fprintf(stderr, "sampleds: --auto-answer wants continue or stop\n");
                return 2;
            }
        } else if ((arg == "--scan-after" || arg == "--prescan-after" || arg == "--scan-pages" ||
                    arg == "--double-feed-at" || arg == "--paper-wait" || arg == "--page-time" ||
                    arg == "--answer-after" || arg == "--stop-after") &&
                   i + 1 < argc) {
            const bool count = arg == "--scan-pages" || arg == "--double-feed-at" || arg == "--page-time";
            auto value =
                numberArgument(arg.c_str(), argv[++i], arg == "--scan-pages" ? 1 : 0, count ? 100000 : 3600);
            if (!value)
                return 2;
            if (arg == "--scan-after")
                options.scanAfter = *value;
            else if (arg == "--prescan-after")
                options.prescanAfter = *value;
            else if (arg == "--stop-after")
                options.stopAfter = *value;
            else if (arg == "--scan-pages")
                options.scan.pages = options.devicePages = int(*value);
            else if (arg == "--double-feed-at")
                options.scan.doubleFeedAt = int(*value);
            else if (arg == "--paper-wait")
                options.scan.paperWaitSeconds = *value;
            else if (arg == "--page-time")
                options.scan.pageTimeMs = int(*value);
            else
                options.scan.answerAfterSeconds = *value;
        } else if (arg == "--module" && i + 1 < argc)
            options.modulePath = argv[++i];
        else if (arg == "--bundle" && i + 1 < argc)
            options.bundlePath = argv[++i];
        else if (arg == "--language" && i + 1 < argc)
            setenv("LANGUAGE", argv[++i], 1); // as the user's own setting: read by the module too
        else if (arg == "--list-devices")
            listDevices = true;
        else if (arg == "--device" && i + 1 < argc)
            options.device = argv[++i];
        else if (arg == "--output" && i + 1 < argc)
            options.output = argv[++i];
        else if (arg == "--device-option" && i + 1 < argc) {
            auto setting = assignmentArgument("--device-option", "NAME=VALUE", argv[++i]);
            if (!setting)
                return 2;
            options.deviceOptions.push_back(*setting);
        } else {
            usage();
            return arg == "--help" || arg == "-h" ? 0 : 2;
        }
    }
    if (options.modulePath.empty() || options.bundlePath.empty()) {
        std::fprintf(stderr,
                     "sampleds: no module or sample bundle beside %s (installed or built); give "
                     "--module PATH and --bundle PATH\n",
                     SampleExecutableDir(argv[0]).c_str());
        return 2;
    }
    if (listDevices)
        return SaneScanner::listDevices(SampleDataSource::saneConfigDir(options.bundlePath));
    if (!options.deviceOptions.empty() && options.device.empty()) {
        std::fprintf(stderr, "sampleds: --device-option sets an option of a SANE device (--device)\n");
        return 2;
    }
    if ((!options.screenshot.empty() || !options.screenshotTabs.empty()) && options.closeAfter <= 0) {
        std::fprintf(stderr,
                     "sampleds: pictures are taken when the dialog closes by itself (--close-after)\n");
        return 2;
    }
    if (!options.prescanFile.empty() && !options.headless) {
        std::fprintf(stderr, "sampleds: --prescan saves the images of a headless run (--headless); in the "
                             "dialog, press Prescan\n");
        return 2;
    }
    if (options.headlessScan && !options.headless) {
        std::fprintf(stderr,
                     "sampleds: --scan scans without the dialog (--headless); in the dialog, press Scan "
                     "or use --scan-after\n");
        return 2;
    }
    if (options.headlessScan) {
        // Nobody can press a button of a window nobody sees: the scanner's panel answers.
        if (options.scan.autoAnswer.empty())
            options.scan.autoAnswer = "continue";
        if (!std::getenv("DISPLAY") && !std::getenv("WAYLAND_DISPLAY"))
            setenv("QT_QPA_PLATFORM", "offscreen", 0);
    }
    SampleDataSource source(options);
    return options.headless ? source.runHeadless() : source.runDialog();
}
