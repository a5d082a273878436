#include "TwainViewColorImage.h"
#include "TwainDialogData.h"

#include "TwRangeHelpers.h"

TwainViewColorImage::TwainViewColorImage(QWidget* parent) : TwainView(parent) {
    setUpForm(ui);
    SetTextSliderRange(ui.txtBrightness, ui.sldBrightness, 1, 255, 0);
    SetTextSliderRange(ui.txtContrast, ui.sldContrast, 1, 255, 0);
    SetTextSliderRange(ui.txtChroma, ui.sldChroma, 1, 255, 0);
}

void TwainViewColorImage::bindControlsToObject(TwainDialogData* model) {
    TwainView::bindControlsToObject(model);
    if (!model)
        return;
    const TwBindList contents{
        "content.Emphasis", ui.cmbEmpasis,        "content.Color.Gamma",
        ui.cmbGamma,        "content.ColorMatch", ui.cmbColorMatching,
    };
    const TwBindList enables{
        "enable.Duplex",
        ui.rdoSide,
        "enable.ColorImage.Chroma",
        ui.txtChroma,
        "enable.ColorImage.Chroma",
        ui.sldChroma,
        "enable.ColorImage.Gamma",
        ui.cmbGamma,
        "enable.ColorImage.Gamma",
        ui.btnGamma,
    };
    const TwBindList values{
        "temp.ColorImageSide",
        ui.rdoSide,
        "temp.ColorImageSideText",
        ui.txtSide,
        "temp.ColorImageSideText",
        ui.boxSide,
        "temp.ColorImage.Brightness",
        ui.txtBrightness,
        "temp.ColorImage.Brightness",
        ui.sldBrightness,
        "temp.ColorImage.Contrast",
        ui.txtContrast,
        "temp.ColorImage.Contrast",
        ui.sldContrast,
        "temp.ColorImage.Chroma",
        ui.txtChroma,
        "temp.ColorImage.Chroma",
        ui.sldChroma,
        "temp.ColorImage.Empasis",
        ui.cmbEmpasis,
        "temp.ColorImage.Gamma",
        ui.cmbGamma,
        "Data.Image.HighSpeed",
        ui.btnHighSpeed,
        "Data.ColorImage.ColorMatching",
        ui.cmbColorMatching,
        "Data.Image.BorderRemoval",
        ui.btnBorderRemoval,
        "Data.Image.RemoveShadow",
        ui.btnRemoveShadow,
        "Data.Image.HoleRemoval",
        ui.btnHoleRemoval,
        "Data.Image.Mirror",
        ui.btnMirror,
        "Data.Image.SmoothBackground",
        ui.btnSmooth,
        "Data.Image.BackgroundRemoval",
        ui.btnBackgroundRemoval,
    };
    const TwBindList controlDefs{
        "Brightness",
        ui.txtBrightness,
        "Brightness",
        ui.sldBrightness,
        "Contrast",
        ui.txtContrast,
        "Contrast",
        ui.sldContrast,
        "Chroma",
        ui.txtChroma,
        "Chroma",
        ui.sldChroma,
        "Empasis",
        ui.cmbEmpasis,
        "Gamma",
        ui.cmbGamma,
        "GammaCustom",
        ui.btnGamma,
        "HighSpeed",
        ui.btnHighSpeed,
        "ColorMatching",
        ui.cmbColorMatching,
        "BorderRemoval",
        ui.btnBorderRemoval,
        "RemoveShadow",
        ui.btnRemoveShadow,
        "HoleRemoval",
        ui.btnHoleRemoval,
        "Mirror",
        ui.btnMirror,
        "Smooth",
        ui.btnSmooth,
        "BackgroundRemoval",
        ui.btnBackgroundRemoval,
    };
    bindLists(controlDefs, contents, enables, values);

    responderBinding()->bindSubviewsEnabled(this, model, "enable.ColorImage.All");
}
