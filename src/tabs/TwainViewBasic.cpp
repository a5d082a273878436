#include "TwainViewBasic.h"

#include "TwRangeHelpers.h"
#include "TwainDialogData.h"

namespace {
constexpr int kResolutionMaximum = 600;
constexpr int kResolutionStart = 100;
} // namespace

TwainViewBasic::TwainViewBasic(QWidget* parent) : TwainView(parent) {
    setUpForm(ui);
}

int TwainViewBasic::resolutionMinimum(const TwValue& resolutions) {
    double m = kResolutionStart;
    if (auto* list = resolutions.list()) {
        for (const TwValue& element : *list) {
            if (!element.isNumber())
                continue;
            const double v = element.doubleValue();
            // A value above the maximum replaces the bound too: the field then refuses typing
            // anything below that value.
            if (v < m || v > kResolutionMaximum)
                m = v;
        }
    }
    return int(m);
}

void TwainViewBasic::bindControlsToObject(TwainDialogData* model) {
    TwainView::bindControlsToObject(model);
    if (!model)
        return;
    SetTextRange(ui.cmbResolution, resolutionMinimum(model->valueForKeyPath("content.Resolution.value")),
                 kResolutionMaximum, 0);

    const TwBindList contents{
        "content.PaperSource", ui.cmbPaperSource, "content.PaperSizeAll", ui.cmbPaperSize,
        "content.ImageType",   ui.cmbImageType,   "content.Resolution",   ui.cmbResolution,
    };
    const TwBindList enables{
        "enable.PaperSize", ui.cmbPaperSize,   "enable.PaperSize", ui.btnCustom,    "enable.Landscape",
        ui.btnLandscape,    "enable.AutoCrop", ui.btnAutoCrop,     "enable.Deskew", ui.btnDeskew,
    };
    const TwBindList values{
        "Data.PaperSource",     ui.cmbPaperSource, "Data.PaperSize",     ui.cmbPaperSize,  "Data.ImageType",
        ui.cmbImageType,        "Data.Resolution", ui.cmbResolution,     "Data.Landscape", ui.btnLandscape,
        "Data.AutoCrop.Enable", ui.btnAutoCrop,    "Data.Deskew.Enable", ui.btnDeskew,
    };
    const TwBindList controlDefs{
        "PaperSource", ui.cmbPaperSource, "PaperSize",  ui.cmbPaperSize,  "CustomPaperSize", ui.btnCustom,
        "ImageType",   ui.cmbImageType,   "Resolution", ui.cmbResolution, "Landscape",       ui.btnLandscape,
        "AutoCrop",    ui.btnAutoCrop,    "Deskew",     ui.btnDeskew,
    };
    bindLists(controlDefs, contents, enables, values);
}
