// sampleds: a stand-in data source for trying the settings dialog without a scanner.
#include "SampleDataSource.h"

#include <cstdio>
#include <cstring>
#include <string>

namespace {
void usage() {
    std::printf(
        "usage: sampleds [--headless] [--no-flatbed] [--no-passport] [--module PATH] [--bundle PATH]\n");
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
        else if (arg == "--module" && i + 1 < argc)
            options.modulePath = argv[++i];
        else if (arg == "--bundle" && i + 1 < argc)
            options.bundlePath = argv[++i];
        else {
            usage();
            return arg == "--help" || arg == "-h" ? 0 : 2;
        }
    }
    SampleDataSource source(options);
    // The settings dialog is not there yet: every run is the headless one.
    return source.runHeadless();
}
