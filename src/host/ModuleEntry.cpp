// The module's only exported symbols: the data source creates and destroys the facade here.
#include "VmxUIControllerImpl.h"

#define VMXUI_EXPORT extern "C" __attribute__((visibility("default")))

VMXUI_EXPORT VmxUIController* VmxUICreateController() {
    try {
        return new VmxUIControllerImpl();
    } catch (...) {
        return nullptr;
    }
}

VMXUI_EXPORT void VmxUIDestroyController(VmxUIController* controller) {
    delete controller;
}
