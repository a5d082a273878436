// A prescan from pressing Prescan (event 3 sent) to the preview's first paint, colour at 100 dpi
// over the device's whole area (200 x 200 mm on SANE's test backend): once from the test device
// through libsane, once from the simulated scanner rendering the same page size. Prints one line
// per figure: "name: value unit".
#include "BenchHome.h"
#include "BenchSupport.h"
#include "OrvaDebug.h"
#include "SampleModelDef.h"
#include "SamplePage.h"
#include "SaneCapabilities.h"
#include "SaneScanner.h"
#include "TwDlgPreview.h"
#include "TwPlist.h"
#include "TwPreviewView.h"
#include "TwainDialogController.h"
#include "VmxUIControllerImpl.h"

#include <QApplication>

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace {
SaneScanner* g_device = nullptr; // null: the simulated scanner
SaneScanSettings g_settings;
QElapsedTimer g_sincePressed;

std::uint16_t callback(std::uint16_t event, void* data) {
    if ((event != kVmxEventPrescan && event != kVmxEventPreviewRescan) || !data)
        return 0;
    auto* record = static_cast<TwPreviewRecord*>(data);
    if (g_device)
        return g_device->prescan(g_settings, record, nullptr) ? 0 : 1;
    const SampleScanSettings page{g_settings.widthMm, g_settings.lengthMm, g_settings.dpi,
                                  SampleImageType::Color, false};
    return RenderSamplePrescan(page, record) ? 0 : 1;
}

// The median time from Prescan to the first paint over a few prescans; -1 when none painted.
double prescanToFirstPaint(VmxUIControllerImpl& ui) {
    TwainDialogController* controller = ui.controllerIfMade();
    std::vector<double> times;
    for (int i = 0; i < 6; ++i) {
        controller->closePreview();
        QCoreApplication::processEvents();
        g_sincePressed.start();
        controller->onPrescan();
        auto* preview = dynamic_cast<TwDlgPreview*>(controller->dlgPreview());
        if (!preview)
            return -1;
        const double ms = untilPainted(preview->viewPreview(), g_sincePressed);
        if (ms < 0)
            return -1;
        times.push_back(ms);
    }
    controller->closePreview();
    return median(times);
}
} // namespace

int main(int argc, char** argv) {
    BenchHome home;
    prepareWidgetBenchmark();
    QApplication app(argc, argv);
    OrvaSetLogPaths(nullptr, nullptr);

    const std::string bundle = SAMPLE_BUNDLE_DIR;
    std::string error;
    auto scanner = SaneScanner::open("test", bundle + "/Contents/Resources/sane",
                                     {{"test-picture", "Color pattern"}}, &error);
    if (!scanner) {
        std::fprintf(stderr, "bench_sane: %s\n", error.c_str());
        return 1;
    }
    const SampleModelDef bundleDef =
        SampleModelDef::fromFile(bundle + "/Contents/Resources/ModelDef.plist", &error);
    const TwValue capabilities = TwPlistReadFile(bundle + "/Contents/Resources/Capabilities.plist", &error);
    const SaneMapping mapping = MapSaneTraits(scanner->traits(), bundleDef.root(), capabilities);
    if (!mapping.refusal.empty()) {
        std::fprintf(stderr, "bench_sane: %s\n", mapping.refusal.c_str());
        return 1;
    }
    SampleModelDef def(mapping.modelDef);
    const SaneSource& area = scanner->traits().sources.front();
    g_settings.dpi = 100;
    g_settings.mode = scanner->modeFor(2);
    g_settings.source = area.deviceName;
    g_settings.widthMm = area.maxWidthMm;
    g_settings.lengthMm = area.maxLengthMm;

    VmxUIControllerImpl ui;
    ui.initWithDSBundle(bundle);
    ui.setModelDef(&def);
    ui.setModelName(scanner->traits().productName);
    ui.setDataWithDictionary(mapping.capabilities.deepCopy(), 0);
    ui.setCallback(&callback);
    ui.setDataWithKeyPathValue(
        TwValue::dictionary({{"Data.ImageType", 2}, {"Data.PaperSize", kWholeAreaPaper}}));
    ui.showUi(true, false, false);
    for (int i = 0; i < 5; ++i)
        QCoreApplication::processEvents();

    g_device = scanner.get();
    const double fromDevice = prescanToFirstPaint(ui);
    g_device = nullptr;
    const double simulated = prescanToFirstPaint(ui);
    ui.hideUi();
    if (fromDevice < 0 || simulated < 0) {
        std::fprintf(stderr, "bench_sane: the preview was never painted\n");
        return 1;
    }
    std::printf("sane_prescan_page: %.0f x %.0f mm, colour, %d dpi\n", g_settings.widthMm,
                g_settings.lengthMm, g_settings.dpi);
    std::printf("sane_prescan_to_first_paint_test_device: %.1f ms\n", fromDevice);
    std::printf("sane_prescan_to_first_paint_simulated: %.1f ms\n", simulated);
    return 0;
}
