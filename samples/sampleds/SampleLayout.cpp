#include "SampleLayout.h"

#include <filesystem>
#include <system_error>

namespace fs = std::filesystem;

SampleLayout SampleLayoutBeside(const std::string& executableDir) {
    const fs::path dir(executableDir);
    const fs::path module = fs::path("VmxUI.bundle") / "Contents" / "MacOS" / "VmxUI.so";
    const SampleLayout candidates[] = {
        // Installed: <prefix>/bin/sampleds.
        {(dir / ".." / "lib" / "vmxui" / module).string(),
         (dir / ".." / "share" / "vmxui" / "SampleDS.bundle").string()},
        // Built: build/samples/sampleds beside build/VmxUI.bundle.
        {(dir / ".." / module).string(), (dir / "SampleDS.bundle").string()},
    };
    for (const SampleLayout& layout : candidates) {
        std::error_code error;
        if (fs::is_regular_file(layout.modulePath, error) && fs::is_directory(layout.bundlePath, error))
            return {fs::weakly_canonical(layout.modulePath, error).string(),
                    fs::weakly_canonical(layout.bundlePath, error).string()};
    }
    return {};
}

std::string SampleExecutableDir(const char* argv0) {
    std::error_code error;
    fs::path exe = fs::read_symlink("/proc/self/exe", error);
    if (error || exe.empty())
        exe = fs::absolute(argv0 ? argv0 : ".", error);
    return exe.parent_path().string();
}
