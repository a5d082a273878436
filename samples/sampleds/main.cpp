// sampleds: a stand-in data source for trying the settings dialog without a scanner.
#include "SampleDataSource.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {
void usage() {
    std::printf(
        "usage: sampleds [--headless] [--modeless] [--settings-only] [--close-after SECONDS [--ok]]\n"
        "                [--screenshot FILE.png] [--screenshot-tabs DIR] [--no-flatbed] [--no-passport]\n"
        "                [--set KEYPATH=VALUE]... [--prescan FILE.bmp] [--module PATH] [--bundle PATH]\n"
        "  --headless         no window: read values, change the resolution, send it as event 1\n"
        "  --prescan F        with --headless: prescan through the callback (event 3) and save the\n"
        "                     front image as F, the back one as F with \"-back\" added\n"
        "  --set K=V          write a setting through the facade after loading (true, false, a\n"
        "                     number or text), e.g. --set Data.ImageType=2 --set Data.PaperSource=1\n"
        "  --modeless         show the dialog modeless (default: modal)\n"
        "  --settings-only    settings-only mode: OK enabled, Scan disabled\n"
        "  --close-after S    press Cancel (or OK with --ok) by itself after S seconds\n"
        "  --screenshot F     save a picture of the dialog just before it closes by itself\n"
        "  --screenshot-tabs D  save one picture per tab into D just before it closes by itself\n");
}
} // namespace

int main(int argc, char** argv) {
    SampleOptions options;
    options.modulePath = VMXUI_MODULE_PATH;
    options.bundlePath = SAMPLE_BUNDLE_DIR;
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
            std::string setting = argv[++i];
            const auto equals = setting.find('=');
            if (equals == 0 || equals == std::string::npos) {
                std::fprintf(stderr, "sampleds: --set wants KEYPATH=VALUE\n");
                return 2;
            }
            options.settings.emplace_back(setting.substr(0, equals), setting.substr(equals + 1));
        } else if (arg == "--module" && i + 1 < argc)
            options.modulePath = argv[++i];
        else if (arg == "--bundle" && i + 1 < argc)
            options.bundlePath = argv[++i];
        else {
            usage();
            return arg == "--help" || arg == "-h" ? 0 : 2;
        }
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
    SampleDataSource source(options);
    return options.headless ? source.runHeadless() : source.runDialog();
}
