#include "TwainViewBinaryImage.h"

#include "TwRangeHelpers.h"

namespace {
constexpr double kLineHeight = 26.0;
}

TwainViewBinaryImage::TwainViewBinaryImage(QWidget* parent) : TwainView(parent) {
    setUpForm(ui);
    SetTextSliderRange(ui.txtBrightness, ui.sldBrightness, 1, 255, 0);
    SetTextSliderRange(ui.txtContrast, ui.sldContrast, 1, 255, 0);
}

void TwainViewBinaryImage::bindControlsToObject(TwainDialogData* model) {
    TwainView::bindControlsToObject(model);
    if (!model)
        return;
    const TwBindList contents{
        "content.Halftone",     ui.cmbHalftone,
        "content.Emphasis",     ui.cmbEmpasis,
        "content.Gray.Gamma",   ui.cmbGamma,
        "content.DropOut",      ui.cmbDrop,
        "content.DynamicThres", ui.cmbDynamicThreshold,
        "content.NoiseSize",    ui.cmbNoiseReductionSize,
        "content.NoiseMode",    ui.cmbNoiseReductionType,
        "content.WhiteLevel",   ui.cmbWhiteLevel,
    };
    const TwBindList enables{
        "enable.Duplex",
        ui.rdoSide,
        "enable.BinaryImage.Halftone",
        ui.cmbHalftone,
        "enable.BinaryImage.Brightness",
        ui.txtBrightness,
        "enable.BinaryImage.Brightness",
        ui.sldBrightness,
        "enable.BinaryImage.Contrast",
        ui.txtContrast,
        "enable.BinaryImage.Contrast",
        ui.sldContrast,
        "enable.BinaryImage.Empasis",
        ui.cmbEmpasis,
        "enable.BinaryImage.Gamma",
        ui.cmbGamma,
        "enable.BinaryImage.Gamma",
        ui.btnGamma,
        "enable.BinaryImage.Drop",
        ui.cmbDrop,
        "Data.BinaryImage.DynamicThresholdEnable",
        ui.cmbDynamicThreshold,
        "enable.BinaryImage.NoiseReductionSize",
        ui.cmbNoiseReductionSize,
        "enable.BinaryImage.NoiseReductionType",
        ui.cmbNoiseReductionType,
        "enable.Image.WhiteLevel",
        ui.cmbWhiteLevel,
        "enable.Image.AutoSeparation",
        ui.btnAutoSeparation,
    };
    const TwBindList values{
        "temp.BinaryImageSide",
        ui.rdoSide,
        "temp.BinaryImageSideText",
        ui.txtSide,
        "temp.BinaryImageSideText",
        ui.boxSide,
        "temp.BinaryImage.Halftone",
        ui.cmbHalftone,
        "temp.BinaryImage.Brightness",
        ui.txtBrightness,
        "temp.BinaryImage.Brightness",
        ui.sldBrightness,
        "temp.BinaryImage.Contrast",
        ui.txtContrast,
        "temp.BinaryImage.Contrast",
        ui.sldContrast,
        "temp.BinaryImage.Empasis",
        ui.cmbEmpasis,
        "temp.BinaryImage.Gamma",
        ui.cmbGamma,
        "temp.BinaryImage.Drop",
        ui.cmbDrop,
        "Data.BinaryImage.DynamicThresholdEnable",
        ui.btnDynamicThreshold,
        "Data.BinaryImage.DynamicThresholdMode",
        ui.cmbDynamicThreshold,
        "Data.BinaryImage.NoiseReductionSize",
        ui.cmbNoiseReductionSize,
        "Data.BinaryImage.NoiseReductionType",
        ui.cmbNoiseReductionType,
        "Data.Image.WhiteLevel",
        ui.cmbWhiteLevel,
        "Data.Image.BorderRemoval",
        ui.btnBorderRemoval,
        "Data.Image.RemoveShadow",
        ui.btnRemoveShadow,
        "Data.Image.HoleRemoval",
        ui.btnHoleRemoval,
        "Data.Image.Mirror",
        ui.btnMirror,
        "Data.Image.Invert",
        ui.btnInvert,
        "Data.Image.AutoSeparation",
        ui.btnAutoSeparation,
    };
    const TwBindList controlDefs{
        "Halftone",
        ui.cmbHalftone,
        "Brightness",
        ui.txtBrightness,
        "Brightness",
        ui.sldBrightness,
        "Contrast",
        ui.txtContrast,
        "Contrast",
        ui.sldContrast,
        "Empasis",
        ui.cmbEmpasis,
        "Gamma",
        ui.cmbGamma,
        "GammaCustom",
        ui.btnGamma,
        "Drop",
        ui.cmbDrop,
        "DynamicThreshold",
        ui.btnDynamicThreshold,
        "DynamicThresholdMode",
        ui.cmbDynamicThreshold,
        "NoiseReduction",
        ui.cmbNoiseReductionSize,
        "NoiseReductionType",
        ui.cmbNoiseReductionType,
        "WhiteLevel",
        ui.cmbWhiteLevel,
        "BorderRemoval",
        ui.btnBorderRemoval,
        "RemoveShadow",
        ui.btnRemoveShadow,
        "HoleRemoval",
        ui.btnHoleRemoval,
        "Mirror",
        ui.btnMirror,
        "Invert",
        ui.btnInvert,
        "AutoSeparation",
        ui.btnAutoSeparation,
    };
    bindLists(controlDefs, contents, enables, values);

    responderBinding()->bindSubviewsEnabled(this, model, "enable.BinaryImage.All");
    adjustViews({ui.btnBorderRemoval, ui.btnRemoveShadow, ui.btnHoleRemoval, ui.btnMirror, ui.btnInvert,
                 ui.btnAutoSeparation},
                ui.btnBorderRemoval->y(), kLineHeight);
}
