// The prescan preview with a 300-dpi A4 colour page on both sides (2480 x 3508 pixels, 24 bits):
// from event 3's return to the preview's first paint, from a click on Back to the back page's first
// paint (it is read when first shown), the peak memory that prescan (both pages shown) adds, one drag
// step of an area (mouse move, model write, validation, repaint) at the fit zoom and at the largest
// zoom with the area values the model told changed and the paints of one step, and one zoom step; and, to
// compare machines, what the first touch of 35 MB of memory costs (a decoded page is that large). Prints one
// line per figure: "name: value unit".
#include "../tests/preview/PreviewPages.h"
#include "BenchHome.h"
#include "BenchSupport.h"
#include "OrvaDebug.h"
#include "SampleModelDef.h"
#include "TwBindingWidgets.h"
#include "TwDlgMain.h"
#include "TwDlgPreview.h"
#include "TwPlist.h"
#include "TwPageFinder.h"
#include "TwPreviewView.h"
#include "TwainDialogController.h"
#include "TwainDialogData.h"
#include "VmxUIControllerImpl.h"

#include <QAbstractButton>
#include <QApplication>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QScrollArea>

#include <algorithm>
#include <cstdio>
#include <fstream>
#include <string>
#include <vector>

namespace {

constexpr int kWidth = 2480, kHeight = 3508, kPelsPerMetre = 11811; // 300 dpi A4

struct Pages {
    void* front = nullptr;
    void* back = nullptr;
    std::uint32_t length = 0;
} g_pages;
QElapsedTimer g_sinceReturn;

// Hands out copies of the rendered pages, as a data source hands out what it scanned; the clock
// starts as the callback returns.
std::uint16_t callback(std::uint16_t event, void* data) {
    if ((event == kVmxEventPrescan || event == kVmxEventPreviewRescan) && data) {
        auto* record = static_cast<TwPreviewRecord*>(data);
        for (auto [side, page] :
             {std::pair{&record->front, g_pages.front}, std::pair{&record->back, g_pages.back}}) {
            side->pDIB = std::malloc(g_pages.length);
            std::memcpy(side->pDIB, page, g_pages.length);
            side->imageLength = g_pages.length;
        }
        g_sinceReturn.start();
    }
    return 0;
}

long statusKilobytes(const char* field) {
    std::ifstream status("/proc/self/status");
    std::string line;
    while (std::getline(status, line))
        if (line.rfind(field, 0) == 0)
            return std::stol(line.substr(std::string(field).size()));
    return -1;
}

void mouse(QWidget* view, QEvent::Type type, QPointF at) {
    const Qt::MouseButtons held = type == QEvent::MouseButtonRelease ? Qt::NoButton : Qt::LeftButton;
    QMouseEvent event(type, at, view->mapToGlobal(at), Qt::LeftButton, held, Qt::NoModifier);
    QCoreApplication::sendEvent(view, &event);
}

// Counts what the model tells of the main area's key paths while it is watched.
class AreaChanges : public TwKeyValueObserver {
public:
    static constexpr const char* kKeys[] = {"temp.Area.Front.X", "temp.Area.Y", "temp.Area.Width",
                                            "temp.Area.Length"};
    explicit AreaChanges(TwainDialogData* model) : m_model(model) {
        for (const char* key : kKeys)
            model->addObserver(this, key, kTwObserveNew, nullptr);
    }
    ~AreaChanges() override {
        for (const char* key : kKeys)
            m_model->removeObserver(this, key);
    }
    void observeValueForKeyPath(const std::string&, TwObservable*, const TwKeyValueChange&, void*) override {
        ++told;
    }
    int told = 0;

private:
    TwainDialogData* m_model;
};

// Counts the paints of a widget.
class PaintCount : public QObject {
public:
    int paints = 0;
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
};

struct DragFigures {
    double stepMs = -1;
    double changesPerStep = 0; // area values the model told changed
    double paintsPerStep = 0;
};

// One drag of the main area's inside back and forth; the median of its steps, and what each step
// changed in the model and painted.
DragFigures dragStep(TwPreviewView* view, QPointF centreMm, TwainDialogData* model) {
    std::vector<double> steps;
    AreaChanges changes(model);
    PaintCount paints;
    int counted = 0;
    QPointF at = view->mapping().viewFromPage(centreMm);
    mouse(view, QEvent::MouseButtonPress, at);
    for (int i = 0; i < 60; ++i) {
        at += QPointF(i % 20 < 10 ? 3 : -3, i % 20 < 10 ? 2 : -2);
        QElapsedTimer clock;
        clock.start();
        mouse(view, QEvent::MouseMove, at);
        double ms = untilPainted(view, clock);
        if (ms >= 0)
            steps.push_back(ms);
        // Whatever else the step asked for is painted before the next one.
        view->installEventFilter(&paints);
        QCoreApplication::processEvents();
        view->removeEventFilter(&paints);
        ++counted;
    }
    mouse(view, QEvent::MouseButtonRelease, at);
    QCoreApplication::processEvents();
    DragFigures figures;
    figures.stepMs = steps.empty() ? -1 : median(steps);
    // The step's own paint was seen by untilPainted; the extra ones by the counter.
    figures.paintsPerStep = 1.0 + double(paints.paints) / counted;
    figures.changesPerStep = double(changes.told) / counted;
    return figures;
}

// Writing 35 MB the process has not touched before (one decoded page): the price of fresh memory on
// this machine, which the prescan pays for every page it reads.
double freshMemoryMs() {
    constexpr std::size_t size = std::size_t(kWidth) * kHeight * 4;
    QElapsedTimer clock;
    clock.start();
    auto* block = static_cast<unsigned char*>(std::malloc(size));
    std::memset(block, 1, size);
    asm volatile("" : : "r"(block) : "memory"); // the writes must happen
    const double ms = double(clock.nsecsElapsed()) / 1e6;
    std::free(block);
    return ms;
}

// Finding the document on a 300-dpi A4 colour prescan: a sheet turned by 3 degrees with lines of
// text, on the dark backing of a feeder, with the scanner's noise. The median of ten runs.
double findPageMs() {
    constexpr double perMm = 300 / 25.4;
    QImage scan(int(210 * perMm), int(297 * perMm), QImage::Format_BGR888);
    scan.fill(QColor(25, 25, 30));
    {
        QPainter p(&scan);
        p.scale(perMm, perMm);
        p.translate(105, 148);
        p.rotate(3);
        p.fillRect(QRectF(-90, -130, 180, 260), QColor(245, 243, 238));
        p.setPen(QPen(QColor(40, 40, 40), 0.6));
        for (double y = -115; y < 115; y += 6)
            p.drawLine(QPointF(-75, y), QPointF(75, y));
    }
    std::uint32_t noise = 12345;
    for (int y = 0; y < scan.height(); ++y) {
        std::uint8_t* line = scan.scanLine(y);
        for (int x = 0; x < scan.width() * 3; ++x) {
            noise = noise * 1664525u + 1013904223u;
            line[x] = std::uint8_t(std::clamp(int(line[x]) + int(noise >> 29) - 4, 0, 255));
        }
    }
    std::vector<double> runs;
    for (int i = 0; i < 10; ++i) {
        QElapsedTimer clock;
        clock.start();
        const std::optional<QRect> found = TwFindPageInImage(scan, perMm);
        runs.push_back(double(clock.nsecsElapsed()) / 1e6);
        if (!found)
            return -1;
    }
    return median(runs);
}

} // namespace

int main(int argc, char** argv) {
    BenchHome home;
    prepareWidgetBenchmark();
    QApplication app(argc, argv);
    OrvaSetLogPaths(nullptr, nullptr);
    const double freshMemory = freshMemoryMs();

    const std::string bundle = SAMPLE_BUNDLE_DIR;
    std::string error;
    SampleModelDef def = SampleModelDef::fromFile(bundle + "/Contents/Resources/ModelDef.plist", &error);
    TwValue capabilities = TwPlistReadFile(bundle + "/Contents/Resources/Capabilities.plist", &error);
    if (!capabilities.isDictionary()) {
        std::fprintf(stderr, "bench_preview: cannot read the sample bundle: %s\n", error.c_str());
        return 1;
    }
    g_pages.front =
        makePageBitmap(kWidth, kHeight, kPelsPerMetre, QColor(70, 110, 200), "FRONT", &g_pages.length);
    g_pages.back =
        makePageBitmap(kWidth, kHeight, kPelsPerMetre, QColor(200, 120, 60), "BACK", &g_pages.length);

    VmxUIControllerImpl ui;
    ui.initWithDSBundle(bundle);
    ui.setModelDef(&def);
    ui.setModelName("Sample VMX-S");
    ui.setDataWithDictionary(capabilities.deepCopy(), 0);
    ui.setCallback(&callback);
    ui.setDataWithKeyPathValue(TwValue::dictionary({{"Data.PaperSource", 1}}));
    ui.showUi(true, false, false);
    TwainDialogController* controller = ui.controllerIfMade();
    for (int i = 0; i < 5; ++i)
        QCoreApplication::processEvents();

    // Prescan to first paint; the first run also gives the memory it adds at its peak.
    std::vector<double> toPaint, toBackPage;
    long addedPeak = -1;
    for (int i = 0; i < 8; ++i) {
        const long before = statusKilobytes("VmRSS:");
        std::ofstream("/proc/self/clear_refs") << "5"; // restart the peak from here
        controller->onPrescan();
        auto* preview = dynamic_cast<TwDlgPreview*>(controller->dlgPreview());
        if (!preview) {
            std::fprintf(stderr, "bench_preview: no preview\n");
            return 1;
        }
        double ms = untilPainted(preview->viewPreview(), g_sinceReturn);
        if (ms < 0) {
            std::fprintf(stderr, "bench_preview: the preview was never painted\n");
            return 1;
        }
        toPaint.push_back(ms);
        // The back page is read when it is first shown.
        QElapsedTimer clock;
        clock.start();
        preview->segSide()->buttons()[1]->click();
        toBackPage.push_back(untilPainted(preview->viewPreview(), clock));
        if (i == 0)
            addedPeak = statusKilobytes("VmHWM:") - before;
        if (i < 7)
            controller->closePreview();
    }

    auto* preview = dynamic_cast<TwDlgPreview*>(controller->dlgPreview());
    TwPreviewView* view = preview->viewPreview();
    const QSizeF page = preview->GetCurrentPaperSize();
    ui.setDataWithKeyPathValue(
        TwValue::dictionary({{"temp.Area.Width", 100.0}, {"temp.Area.Length", 120.0}}));
    const QPointF areaCentre(50, 60);
    const DragFigures fitDrag = dragStep(view, areaCentre, controller->dialogData());
    view->doZoom(kZoomIndexMax);
    auto* area = preview->sclPreview();
    // Bring the area into sight at the largest zoom.
    view->doZoomFit();
    view->doZoom(kZoomIndexMax);
    QPointF centre = view->mapping().viewFromPage(areaCentre);
    area->ensureVisible(int(centre.x()), int(centre.y()), area->viewport()->width() / 2,
                        area->viewport()->height() / 2);
    QCoreApplication::processEvents();
    const DragFigures largestDrag = dragStep(view, areaCentre, controller->dialogData());

    std::vector<double> zoom;
    view->doZoomFit();
    QCoreApplication::processEvents();
    for (int round = 0; round < 3; ++round) {
        for (int step : {1, 2, 3, 4, 5, 4, 3, 2, 1, 0}) {
            QElapsedTimer clock;
            clock.start();
            view->doZoom(step);
            zoom.push_back(untilPainted(view, clock));
        }
    }
    controller->closePreview();
    ui.hideUi();
    std::free(g_pages.front);
    std::free(g_pages.back);

    std::printf("preview_page: %d x %d pixels, 24 bits, duplex, page %.1f x %.1f mm\n", kWidth, kHeight,
                page.width(), page.height());
    std::printf("preview_prescan_to_first_paint: %.1f ms\n", median(toPaint));
    std::printf("preview_back_page_first_shown: %.1f ms\n", median(toBackPage));
    std::printf("preview_fresh_memory_35MB_first_touch: %.1f ms\n", freshMemory);
    std::printf("preview_prescan_to_first_paint_first_time: %.1f ms\n", toPaint.front());
    std::printf("preview_prescan_peak_memory_added: %ld kB\n", addedPeak);
    std::printf("preview_drag_step_fit_zoom: %.2f ms\n", fitDrag.stepMs);
    std::printf("preview_drag_step_largest_zoom: %.2f ms\n", largestDrag.stepMs);
    std::printf("preview_drag_step_area_changes: %.2f changes\n", fitDrag.changesPerStep);
    std::printf("preview_drag_step_paints: %.2f paints\n", fitDrag.paintsPerStep);
    std::printf("preview_zoom_step: %.1f ms\n", median(zoom));
    std::printf("preview_find_page_a4_300dpi_colour: %.1f ms\n", findPageMs());
    std::printf("preview_zoom_step_slowest: %.1f ms\n", *std::max_element(zoom.begin(), zoom.end()));
    return 0;
}
