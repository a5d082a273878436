// Where sampleds finds the module and its own bundle: beside its executable, as installed
// (<prefix>/bin, <prefix>/lib/vmxui, <prefix>/share/vmxui) or as built (build/samples, build).
#pragma once

#include <string>

struct SampleLayout {
    std::string modulePath;
    std::string bundlePath;
};

// The first layout whose module and bundle both exist, relative to the folder of the executable;
// empty paths when neither does.
SampleLayout SampleLayoutBeside(const std::string& executableDir);
// The folder of the running executable (/proc/self/exe), else of argv0.
std::string SampleExecutableDir(const char* argv0);
