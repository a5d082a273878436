#include "TwainViewControlSheet.h"

TwainViewControlSheet::TwainViewControlSheet(QWidget* parent) : TwainView(parent) {
    setUpForm(ui);
}

void TwainViewControlSheet::bindControlsToObject(TwainDialogData* model) {
    TwainView::bindControlsToObject(model);
    if (!model)
        return;
    const TwBindList contents;
    const TwBindList enables{
        "enable.Feed.DetectSeparationSheet",
        ui.btnDetectSeparationSheet,
        "enable.Feed.DetectSeparationSheetSkip",
        ui.btnSkipSeparationSheet,
    };
    const TwBindList values{
        "Data.Feed.DetectSeparationSheetEnable",
        ui.btnDetectSeparationSheet,
        "Data.Feed.DetectSeparationSheetSkip",
        ui.btnSkipSeparationSheet,
    };
    const TwBindList controlDefs{
        "DetectSeparationSheet",
        ui.btnDetectSeparationSheet,
        "DetectSeparationSheetSkip",
        ui.btnSkipSeparationSheet,
    };
    bindLists(controlDefs, contents, enables, values);
}
