// Speed of the model with the sample scanner loaded: one edit end to end (the write and every
// rule, reaction and notification it causes) and a full rebuild through the facade, each round
// from a capability dictionary of its own, as a data source hands over.
// Prints one line per figure: "name: value unit", each the median of many runs.
#include "BenchHome.h"
#include "OrvaDebug.h"
#include "SampleModelDef.h"
#include "TwPlist.h"
#include "TwainDialogData.h"
#include "VmxUIControllerImpl.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

double medianNanoseconds(int runs, const std::function<void(int)>& body) {
    std::vector<double> times;
    times.reserve(std::size_t(runs));
    for (int i = 0; i < runs; ++i) {
        auto start = Clock::now();
        body(i);
        times.push_back(std::chrono::duration<double, std::nano>(Clock::now() - start).count());
    }
    std::nth_element(times.begin(), times.begin() + runs / 2, times.end());
    return times[std::size_t(runs / 2)];
}

} // namespace

int main() {
    BenchHome home;
    const std::string bundle = SAMPLE_BUNDLE_DIR;
    std::string error;
    SampleModelDef def = SampleModelDef::fromFile(bundle + "/Contents/Resources/ModelDef.plist", &error);
    TwValue capabilities = TwPlistReadFile(bundle + "/Contents/Resources/Capabilities.plist", &error);
    if (!capabilities.isDictionary() || def.UIEnable().dict()->empty()) {
        std::fprintf(stderr, "bench_model: cannot read the sample bundle at %s: %s\n", bundle.c_str(),
                     error.c_str());
        return 1;
    }

    VmxUIControllerImpl ui;
    OrvaSetLogPaths(nullptr, nullptr); // the figures are of the model, not of the log
    ui.initWithDSBundle(bundle);
    ui.setModelDef(&def);
    ui.setDataWithDictionary(capabilities.deepCopy(), 0);
    auto model = ui.model();

    // Warm up, then alternate two values so that every write is a change.
    const TwValue resolutions[2] = {TwValue(400), TwValue(300)};
    for (int i = 0; i < 200; ++i)
        model->setValueForKeyPath(resolutions[i % 2], "Data.Resolution");
    double edit = medianNanoseconds(
        20001, [&](int i) { model->setValueForKeyPath(resolutions[i % 2], "Data.Resolution"); });

    // The edits must have run the reactions, or the figures mean nothing.
    if (!model->valueForKeyPath("temp.GrayDPI").isEqual(model->valueForKeyPath("Data.Resolution")) ||
        model->observationCount(model.get()) == 0) {
        std::fprintf(stderr, "bench_model: the resolution edit did not reach the model's reactions\n");
        return 1;
    }

    const TwValue papers[2] = {TwValue(5), TwValue(1)};
    double paper =
        medianNanoseconds(5001, [&](int i) { model->setValueForKeyPath(papers[i % 2], "Data.PaperSize"); });

    // The model edits what it is given: every round gets a copy made before the clock starts.
    constexpr int kRebuilds = 301;
    std::vector<TwValue> rounds;
    for (int i = 0; i < 10 + kRebuilds; ++i)
        rounds.push_back(capabilities.deepCopy());
    for (int i = 0; i < 10; ++i)
        ui.setDataWithDictionary(rounds[std::size_t(kRebuilds + i)], 0);
    double rebuild =
        medianNanoseconds(kRebuilds, [&](int i) { ui.setDataWithDictionary(rounds[std::size_t(i)], 0); });

    std::printf("edit_resolution_us: %.1f us\n", edit / 1000.0);
    std::printf("edit_paper_size_us: %.1f us\n", paper / 1000.0);
    std::printf("rebuild_ms: %.2f ms\n", rebuild / 1e6);
    return 0;
}
