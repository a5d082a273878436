#include "TwainViewCommon.h"
#include "TwainDialogData.h"

#include "TwRangeHelpers.h"
#include "TwainNumberFormatter.h"

namespace {
// Hundredths: 0.01 to 50.00.
constexpr int kRatioMinimum = 1;
constexpr int kRatioMaximum = 5000;
constexpr int kRatioPlaces = 2;
constexpr double kRatioMinimumShown = 0.01;
constexpr double kRatioMaximumShown = 50.0;
} // namespace

TwainViewCommon::TwainViewCommon(QWidget* parent) : TwainView(parent) {
    setUpForm(ui);
    // Shared by the ratio field and its two end labels, which show the bounds through it.
    TwainNumberFormatter* pixelRation =
        CreateTextRangeFormatter(kRatioMinimum, kRatioMaximum, kRatioPlaces, this);
    ui.txtPixelRationMin->setText(pixelRation->stringFromNumber(kRatioMinimumShown));
    ui.txtPixelRationMax->setText(pixelRation->stringFromNumber(kRatioMaximumShown));
    ui.txtPixelRation->setValidator(pixelRation);
    SetSliderRange(ui.sldPixelRation, kRatioMinimum, kRatioMaximum, kRatioPlaces);
}

void TwainViewCommon::bindControlsToObject(TwainDialogData* model) {
    TwainView::bindControlsToObject(model);
    if (!model)
        return;

    const TwBindList contents{"content.RateImageAvail", ui.cmbRateBinaryImage};
    const TwBindList enables{
        "enable.AutoCrop",
        ui.btnAutoCrop,
        "enable.AutoCrop",
        ui.btnSelectMaxPaperSize,
        "Data.AutoCrop.Enable",
        ui.btnSelectMaxPaperSize,
        "enable.Deskew",
        ui.btnDeskew,
        "enable.Deskew",
        ui.btnSmoothing,
        "Data.Deskew.Enable",
        ui.btnSmoothing,
        "enable.AutoDistinction",
        ui.txtPixelRation,
        "enable.AutoDistinction",
        ui.sldPixelRation,
        "enable.AutoDistinction",
        ui.btnIgnorePaperColor,
        "enable.AutoDistinctionResolution",
        ui.cmbRateBinaryImage,
        "enable.AutoDistinctionResolution",
        ui.txtDPI,
        "enable.Margin",
        ui.btnMargin,
        "enable.FitToPage",
        ui.btnFitToPage,
        "enable.LengthControl",
        ui.btnLengthControl,
    };
    // The Basic tab's box for the same setting: both show and change it.
    const TwBindList values{
        "Data.AutoCrop.Enable",
        ui.btnAutoCrop,
        "Data.AutoCrop.MaxSize",
        ui.btnSelectMaxPaperSize,
        "Data.Deskew.Enable",
        ui.btnDeskew,
        "Data.Deskew.Smoothing",
        ui.btnSmoothing,
        "Data.AutoDistinction.ColorPixelRation",
        ui.txtPixelRation,
        "Data.AutoDistinction.ColorPixelRation",
        ui.sldPixelRation,
        "Data.AutoDistinction.IgnorePaperColor",
        ui.btnIgnorePaperColor,
        "Data.AutoDistinction.RateBinaryImage",
        ui.cmbRateBinaryImage,
        "temp.Distinction",
        ui.boxDistinctionResolution,
        "temp.GrayDPI",
        ui.txtDPI,
        "temp.GrayColor",
        ui.txtGrayColor,
        "Data.Margin",
        ui.btnMargin,
        "Data.FitToPage",
        ui.btnFitToPage,
        "Data.LengthControl",
        ui.btnLengthControl,
        "Data.Image.BorderRemoval",
        ui.btnBorderRemoval,
        "Data.Image.RemoveShadow",
        ui.btnRemoveShadow,
        "Data.Image.HoleRemoval",
        ui.btnHoleRemoval,
        "Data.Image.Mirror",
        ui.btnMirror,
    };
    const TwBindList controlDefs{
        "AutoCrop",
        ui.btnAutoCrop,
        "AutoCropMaxSize",
        ui.btnSelectMaxPaperSize,
        "Deskew",
        ui.btnDeskew,
        "DeskewSmoothing",
        ui.btnSmoothing,
        "AutoDistinction",
        ui.txtPixelRation,
        "AutoDistinction",
        ui.sldPixelRation,
        "AutoDistinctionIgnoreColor",
        ui.btnIgnorePaperColor,
        "RateBinaryImage",
        ui.cmbRateBinaryImage,
        "RateBinaryImage",
        ui.boxDistinctionResolution,
        "RateBinaryImage",
        ui.txtDPI,
        "RateBinaryImage",
        ui.txtGrayColor,
        "Margin",
        ui.btnMargin,
        "FitToPage",
        ui.btnFitToPage,
        "LengthControl",
        ui.btnLengthControl,
        "BackgroundColor",
        ui.cmbBackgroundColor,
        "BackgroundColor",
        ui.txtBackgroundColor,
        "BorderRemoval",
        ui.btnBorderRemoval,
        "RemoveShadow",
        ui.btnRemoveShadow,
        "HoleRemoval",
        ui.btnHoleRemoval,
        "Mirror",
        ui.btnMirror,
    };
    bindLists(controlDefs, contents, enables, values);
    // The background choices are the form's own ("White", "Black"), with no list in the model to
    // match a value against: the setting is the chosen row.
    responderBinding()->bindSelectedIndex(ui.cmbBackgroundColor, model, "Data.BackgroundColor");
}
