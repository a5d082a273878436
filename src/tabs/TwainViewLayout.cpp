#include "TwainViewLayout.h"

#include "OrvaDebug.h"
#include "TwBundle.h"
#include "TwRangeHelpers.h"
#include "TwainDialogData.h"
#include "TwainNumberFormatter.h"

namespace {
constexpr const char* kDoubleExposureOrder = "Data.Layout.DoubleExposure.PageOrder";
constexpr const char* kPageSeparationOrder = "Data.Layout.PageSeparation.PageOrder";
constexpr const char* kDoubleExposureImage = "image.DoubleExposure";
constexpr const char* kPageSeparationImage = "image.PageSeparation";
// Hundredths. The end labels of this tab read 0.01 and 5.00; the field takes 0.01 to 5.00.
constexpr int kRatioMaximum = 500;
constexpr int kRatioPlaces = 2;
constexpr double kRatioMinimumShown = 0.01;
constexpr double kRatioMaximumShown = 5.0;
} // namespace

TwainViewLayout::TwainViewLayout(QWidget* parent) : TwainView(parent) {
    setUpForm(ui);
    TwainNumberFormatter* bounds = CreateTextRangeFormatter(0, kRatioMaximum, kRatioPlaces, this);
    ui.txtPixelRationMin->setText(bounds->stringFromNumber(kRatioMinimumShown));
    ui.txtPixelRationMax->setText(bounds->stringFromNumber(kRatioMaximumShown));
    SetTextSliderRange(ui.txtPixelRation, ui.sldPixelRation, 1, kRatioMaximum, kRatioPlaces);
}

const char* TwainViewLayout::pageOrderIconName(std::int64_t order, bool pageSeparation) {
    static const char* const doubleExposure[] = {"LeftRightMk2", "RightLeftMk2", "TopBottomMk2",
                                                 "BottomTopMk2"};
    static const char* const separation[] = {"DLeftRightMk2", "DRightLeftMk2", "DTopBottomMk2",
                                             "DBottomTopMk2"};
    if (order < 0 || order > 3)
        return nullptr;
    return pageSeparation ? separation[order] : doubleExposure[order];
}

std::string TwainViewLayout::pageOrderIconPath(std::int64_t order, bool pageSeparation) {
    const char* name = pageOrderIconName(order, pageSeparation);
    if (!name)
        return {};
    auto bundle = TwBundle::moduleBundle();
    std::string path = bundle ? bundle->pathForResource(name, "ico") : std::string();
    if (path.empty())
        OrvaLog(kOrvaLogError, "ERROR: %s: no icon %s.ico in the module's bundle\n",
                "TwainViewLayout::pageOrderIconPath", name);
    return path;
}

void TwainViewLayout::bindControlsToObject(TwainDialogData* model) {
    TwainView::bindControlsToObject(model);
    if (!model)
        return;
    // The image views bind by path and need a value to bind to.
    model->setValueForKeyPath(TwValue(""), kDoubleExposureImage);
    model->setValueForKeyPath(TwValue(""), kPageSeparationImage);

    const TwBindList contents;
    const TwBindList enables{
        "enable.Duplex",
        ui.rdoDuplex,
        "enable.Layout.DoubleExposure.Enable",
        ui.btnDoubleExposure,
        "enable.Layout.DoubleExposure.Enable",
        ui.btnDoubleExposureCfg,
        "Data.Layout.DoubleExposure.Enable",
        ui.btnDoubleExposureCfg,
        "enable.Layout.PageSeparation",
        ui.btnPageSeparation,
        "enable.Layout.PageSeparation",
        ui.btnPageSeparationCfg,
        "Data.Layout.PageSeparation.Enable",
        ui.btnPageSeparationCfg,
        "enable.BlankPageRemoval",
        ui.btnBlankPageRemoval,
        "enable.BlankPageRemoval",
        ui.txtPixelRation,
        "Data.Layout.BlankPageRemoval.Eanble",
        ui.txtPixelRation,
        "enable.BlankPageRemoval",
        ui.sldPixelRation,
        "Data.Layout.BlankPageRemoval.Eanble",
        ui.sldPixelRation,
        "enable.BlankPageRemoval",
        ui.btnShowResult,
        "Data.Layout.BlankPageRemoval.Eanble",
        ui.btnShowResult,
    };
    const TwBindList values{
        "Data.Layout.Rotate",
        ui.rdoRotate,
        "Data.Layout.DuplexType",
        ui.rdoDuplex,
        "Data.Layout.DoubleExposure.Enable",
        ui.btnDoubleExposure,
        kDoubleExposureImage,
        ui.imgDoubleExposure,
        "Data.Layout.PageSeparation.Enable",
        ui.btnPageSeparation,
        kPageSeparationImage,
        ui.imgPageSeparation,
        "Data.Layout.BlankPageRemoval.Eanble",
        ui.btnBlankPageRemoval,
        "Data.Layout.BlankPageRemoval.Ratio",
        ui.txtPixelRation,
        "Data.Layout.BlankPageRemoval.Ratio",
        ui.sldPixelRation,
        "Data.Layout.BlankPageRemoval.ShowResult",
        ui.btnShowResult,
    };
    const TwBindList controlDefs{
        "Rotate",
        ui.rdoRotate,
        "DuplexType",
        ui.rdoDuplex,
        "DoubleExposure",
        ui.btnDoubleExposure,
        "DoubleExposure",
        ui.imgDoubleExposure,
        "PageSeparation",
        ui.btnPageSeparation,
        "PageSeparation",
        ui.imgPageSeparation,
        "BlankPageRemoval",
        ui.btnBlankPageRemoval,
        "BlankPageRemovalRatio",
        ui.txtPixelRation,
        "BlankPageRemovalRatio",
        ui.sldPixelRation,
        "BlankPageRemovalResult",
        ui.btnShowResult,
    };
    bindLists(controlDefs, contents, enables, values);

    // New value and a call at once, so the pictures show the present orders.
    addObserverForKeyPath(kDoubleExposureOrder, kTwObserveNew | kTwObserveInitial);
    addObserverForKeyPath(kPageSeparationOrder, kTwObserveNew | kTwObserveInitial);
}

void TwainViewLayout::observeValueForKeyPath(const std::string& keyPath, TwObservable* object,
                                             const TwKeyValueChange&, void*) {
    if (!object)
        return;
    if (keyPath == kDoubleExposureOrder)
        updatePageOrderImage(object, false);
    else if (keyPath == kPageSeparationOrder)
        updatePageOrderImage(object, true);
}

void TwainViewLayout::updatePageOrderImage(TwObservable* model, bool pageSeparation) {
    const std::int64_t order =
        model->valueForKeyPath(pageSeparation ? kPageSeparationOrder : kDoubleExposureOrder).intValue();
    const std::string path = pageOrderIconPath(order, pageSeparation);
    OrvaLog(kOrvaLogDebug, "%s: page order %lld -> %s\n", "TwainViewLayout::updatePageOrderImage",
            static_cast<long long>(order), path.c_str());
    // No path for an unknown order: the picture is cleared.
    model->setValueForKeyPath(path.empty() ? TwValue() : TwValue(path),
                              pageSeparation ? kPageSeparationImage : kDoubleExposureImage);
}
