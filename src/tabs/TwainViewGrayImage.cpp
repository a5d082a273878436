#include "TwainViewGrayImage.h"
#include "TwainDialogData.h"

#include "TwRangeHelpers.h"

TwainViewGrayImage::TwainViewGrayImage(QWidget* parent) : TwainView(parent) {
    setUpForm(ui);
    SetTextSliderRange(ui.txtBrightness, ui.sldBrightness, 1, 255, 0);
    SetTextSliderRange(ui.txtContrast, ui.sldContrast, 1, 255, 0);
}

void TwainViewGrayImage::bindControlsToObject(TwainDialogData* model) {
    TwainView::bindControlsToObject(model);
    if (!model)
        return;
    const TwBindList contents{
        "content.Emphasis",  ui.cmbEmpasis, "content.Gray.Gamma", ui.cmbGamma,
        "content.FrontLamp", ui.cmbDrop,    "content.WhiteLevel", ui.cmbWhiteLevel,
    };
    const TwBindList enables{
        "enable.Duplex",           ui.rdoSide,       "enable.GrayImage.Gamma", ui.cmbGamma,
        "enable.GrayImage.Gamma",  ui.btnGamma,      "enable.GrayImage.Drop",  ui.cmbDrop,
        "enable.Image.WhiteLevel", ui.cmbWhiteLevel,
    };
    const TwBindList values{
        "temp.GrayImageSide",        ui.rdoSide,          "temp.GrayImageSideText",    ui.txtSide,
        "temp.GrayImageSideText",    ui.boxSide,          "temp.GrayImage.Brightness", ui.txtBrightness,
        "temp.GrayImage.Brightness", ui.sldBrightness,    "temp.GrayImage.Contrast",   ui.txtContrast,
        "temp.GrayImage.Contrast",   ui.sldContrast,      "temp.GrayImage.Empasis",    ui.cmbEmpasis,
        "temp.GrayImage.Gamma",      ui.cmbGamma,         "temp.GrayImage.Drop",       ui.cmbDrop,
        "Data.Image.HighSpeed",      ui.btnHighSpeed,     "Data.Image.WhiteLevel",     ui.cmbWhiteLevel,
        "Data.Image.BorderRemoval",  ui.btnBorderRemoval, "Data.Image.RemoveShadow",   ui.btnRemoveShadow,
        "Data.Image.HoleRemoval",    ui.btnHoleRemoval,   "Data.Image.Mirror",         ui.btnMirror,
    };
    const TwBindList controlDefs{
        "Brightness",    ui.txtBrightness,    "Brightness",   ui.sldBrightness,
        "Contrast",      ui.txtContrast,      "Contrast",     ui.sldContrast,
        "Empasis",       ui.cmbEmpasis,       "Gamma",        ui.cmbGamma,
        "GammaCustom",   ui.btnGamma,         "Drop",         ui.cmbDrop,
        "HighSpeed",     ui.btnHighSpeed,     "WhiteLevel",   ui.cmbWhiteLevel,
        "BorderRemoval", ui.btnBorderRemoval, "RemoveShadow", ui.btnRemoveShadow,
        "HoleRemoval",   ui.btnHoleRemoval,   "Mirror",       ui.btnMirror,
    };
    bindLists(controlDefs, contents, enables, values);

    responderBinding()->bindSubviewsEnabled(this, model, "enable.GrayImage.All");
}
