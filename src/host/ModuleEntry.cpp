// The module's only exported symbols: its interface version, and the factory that creates and
// destroys the facade for a data source built with the same version.
#include "OrvaDebug.h"
#include "VmxUIControllerImpl.h"

#include <cstdio>

#define VMXUI_EXPORT extern "C" __attribute__((visibility("default")))

VMXUI_EXPORT std::uint32_t VmxUIInterfaceVersion() {
    return VMXUI_INTERFACE_VERSION;
}

VMXUI_EXPORT VmxUIController* VmxUICreateController(std::uint32_t interfaceVersion) {
    if (interfaceVersion != VMXUI_INTERFACE_VERSION) {
        // Said before any controller exists, so the log may not be pointed anywhere yet; standard
        // error always has it.
        OrvaSetLogPaths(kOrvaDefaultLogFile, kOrvaDefaultConsoleFile);
        constexpr const char* format = "VmxUICreateController: the data source was built for interface %u "
                                       "(standard library %u), this module for %u (standard library %u); "
                                       "no controller\n";
        const unsigned theirs = interfaceVersion >> 16, theirLibrary = interfaceVersion & 0xFFFF;
        const unsigned ours = VMXUI_INTERFACE_REVISION, ourLibrary = VMXUI_STANDARD_LIBRARY;
        OrvaLog(kOrvaLogError, format, theirs, theirLibrary, ours, ourLibrary);
        std::fprintf(stderr, format, theirs, theirLibrary, ours, ourLibrary);
        return nullptr;
    }
    try {
        return new VmxUIControllerImpl();
    } catch (...) {
        return nullptr;
    }
}

VMXUI_EXPORT void VmxUIDestroyController(VmxUIController* controller) {
    delete controller;
}
