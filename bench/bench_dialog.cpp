// The settings dialog with the sample scanner: how long from showUi to the first paint of the
// window with every tab bound (a new facade each time, so the window and its tabs are made anew;
// and the same facade showing again), and whether memory grows over 200 show and hide cycles.
// The heap grows over the first few dozen cycles while Qt's caches fill (glyphs, style pixmaps),
// then stays flat: the second hundred cycles is the figure that tells a leak. The resident size is
// read at both ends after the allocator has handed its free memory back (malloc_trim), so that the
// two readings compare; the heap figures are the bytes in use, which trimming does not change.
// Prints one line per figure: "name: value unit".
#include "BenchHome.h"
#include "BenchSupport.h"
#include "OrvaDebug.h"
#include "SampleModelDef.h"
#include "TwDlgMain.h"
#include "TwPlist.h"
#include "TwainDialogController.h"
#include "VmxUIControllerImpl.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QEvent>

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <memory>
#include <vector>

namespace {

// The resident size once the allocator has returned what it can.
long trimmedRssKilobytes() {
    malloc_trim(0);
    std::ifstream statm("/proc/self/statm");
    long pages = 0, resident = 0;
    statm >> pages >> resident;
    return resident * 4;
}

double heapInUseKilobytes() {
    return double(mallinfo2().uordblks) / 1024.0;
}

struct Sample {
    SampleModelDef def{TwValue()};
    TwValue capabilities;
    std::string bundle = SAMPLE_BUNDLE_DIR;

    std::unique_ptr<VmxUIControllerImpl> facade() {
        auto ui = std::make_unique<VmxUIControllerImpl>();
        OrvaSetLogPaths(nullptr, nullptr);
        ui->initWithDSBundle(bundle);
        ui->setModelDef(&def);
        ui->setModelName("Sample VMX-S");
        ui->setDataWithDictionary(capabilities.deepCopy(), 0);
        return ui;
    }
};

// showUi until the window's first paint, in milliseconds.
double openToFirstPaint(VmxUIControllerImpl& ui) {
    QElapsedTimer clock;
    clock.start();
    ui.showUi(true, false, false);
    return untilPainted(ui.controllerIfMade()->windowIfLoaded(), clock);
}

void settle() {
    for (int i = 0; i < 3; ++i) {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QCoreApplication::processEvents();
    }
}

} // namespace

int main(int argc, char** argv) {
    BenchHome home;
    prepareWidgetBenchmark();
    QApplication app(argc, argv);

    Sample sample;
    std::string error;
    sample.def = SampleModelDef::fromFile(sample.bundle + "/Contents/Resources/ModelDef.plist", &error);
    sample.capabilities = TwPlistReadFile(sample.bundle + "/Contents/Resources/Capabilities.plist", &error);
    if (!sample.capabilities.isDictionary()) {
        std::fprintf(stderr, "bench_dialog: cannot read the sample bundle: %s\n", error.c_str());
        return 1;
    }

    // A new facade each time: the window and every tab are made, bound and painted.
    std::vector<double> cold;
    int tabs = 0;
    for (int i = 0; i < 15; ++i) {
        auto ui = sample.facade();
        double ms = openToFirstPaint(*ui);
        if (ms < 0) {
            std::fprintf(stderr, "bench_dialog: the window was never painted\n");
            return 1;
        }
        tabs = int(ui->controllerIfMade()->windowIfLoaded()->tabIdentifiers().size());
        cold.push_back(ms);
        ui->hideUi();
        ui.reset();
        settle();
    }

    // The same facade showing its dialog again: bound anew, painted again.
    auto ui = sample.facade();
    std::vector<double> warm;
    openToFirstPaint(*ui);
    ui->hideUi();
    settle();
    const long rssFirst = trimmedRssKilobytes();
    const double heapFirst = heapInUseKilobytes();
    double heapMid = 0;
    for (int i = 0; i < 200; ++i) {
        double ms = openToFirstPaint(*ui);
        if (i < 30)
            warm.push_back(ms);
        ui->hideUi();
        settle();
        if (i == 99)
            heapMid = heapInUseKilobytes();
    }
    const long rssAfter = trimmedRssKilobytes();
    const double heapAfter = heapInUseKilobytes();

    std::printf("dialog_tabs_bound: %d tabs\n", tabs);
    std::printf("dialog_open_to_first_paint_new_window: %.1f ms\n", median(cold));
    std::printf("dialog_open_to_first_paint_again: %.1f ms\n", median(warm));
    std::printf("dialog_rss_trimmed_after_first_cycle: %ld kB\n", rssFirst);
    std::printf("dialog_rss_trimmed_after_200_more_cycles: %ld kB\n", rssAfter);
    std::printf("dialog_rss_trimmed_growth_over_200_cycles: %ld kB\n", rssAfter - rssFirst);
    std::printf("dialog_heap_in_use_growth_over_200_cycles: %.1f kB\n", heapAfter - heapFirst);
    std::printf("dialog_heap_in_use_growth_cycles_100_to_200: %.1f kB\n", heapAfter - heapMid);
    return 0;
}
