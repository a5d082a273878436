// The custom gamma editor with the sample scanner and the module's sample picture: how long one
// step of a gamma slider takes from the slider's move to the curves and the sample painted again
// (the binding writes the position, the gamma follows, the three tables are rebuilt, both views
// repaint, the sample converted anew). Red is dragged with the link on, so that each step moves all
// three channels. Prints one line per figure: "name: value unit".
#include "BenchHome.h"
#include "BenchSupport.h"
#include "OrvaDebug.h"
#include "SampleModelDef.h"
#include "TwBundle.h"
#include "TwDlgCustomGamma.h"
#include "TwGammaViews.h"
#include "TwPlist.h"
#include "TwainDialogController.h"
#include "VmxUIControllerImpl.h"

#include <QApplication>
#include <QCheckBox>
#include <QElapsedTimer>
#include <QSlider>

#include <algorithm>
#include <cstdio>
#include <vector>

namespace {} // namespace

int main(int argc, char** argv) {
    BenchHome home;
    prepareWidgetBenchmark();
    QApplication app(argc, argv);
    OrvaSetLogPaths(nullptr, nullptr);
    TwBundle::setModuleBundlePath(VMX_BUNDLE_DIR);

    const std::string bundle = SAMPLE_BUNDLE_DIR;
    std::string error;
    SampleModelDef def(TwPlistReadFile(bundle + "/Contents/Resources/ModelDef.plist", &error));
    TwValue capabilities = TwPlistReadFile(bundle + "/Contents/Resources/Capabilities.plist", &error);
    if (!capabilities.isDictionary()) {
        std::fprintf(stderr, "bench_gamma: cannot read the sample bundle: %s\n", error.c_str());
        return 1;
    }
    VmxUIControllerImpl ui;
    ui.initWithDSBundle(bundle);
    ui.setModelDef(&def);
    ui.setDataWithDictionary(capabilities.deepCopy(), 0);

    TwDlgCustomGamma* dialog = ui.controller()->panel<TwDlgCustomGamma>();
    dialog->setIsColor(true);
    dialog->setCurrentGammaName(std::nullopt);
    dialog->showWindow();
    QCoreApplication::processEvents();
    if (dialog->viewSample()->convertedImage().isNull()) {
        std::fprintf(stderr, "bench_gamma: no sample picture in %s\n", VMX_BUNDLE_DIR);
        return 1;
    }
    dialog->btnRGBLink()->click();
    QSlider* red = dialog->slider("sldGammaRed");

    std::vector<double> steps;
    QElapsedTimer clock;
    bool up = true;
    for (int i = 0; i < 400; ++i) {
        // Across the whole scale and back: both the fine and the coarse half.
        if (red->value() == red->maximum())
            up = false;
        else if (red->value() == red->minimum())
            up = true;
        clock.start();
        red->triggerAction(up ? QAbstractSlider::SliderSingleStepAdd : QAbstractSlider::SliderSingleStepSub);
        dialog->viewGamma()->repaint();
        dialog->viewSample()->repaint();
        steps.push_back(double(clock.nsecsElapsed()) / 1e6);
    }
    dialog->closePanel();

    std::printf("gamma_slider_step_median: %.2f ms\n", percentile(steps, 0.5));
    std::printf("gamma_slider_step_p95: %.2f ms\n", percentile(steps, 0.95));
    std::printf("gamma_slider_step_max: %.2f ms\n", percentile(steps, 1.0));
    return 0;
}
