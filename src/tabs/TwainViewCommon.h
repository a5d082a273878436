// The Common tab ("Image Processing"): automatic crop and deskew options, automatic colour
// distinction, margins, page fitting, length control, background colour and the cleanup options.
#pragma once

#include "TwainView.h"
#include "ui_TwainViewCommon.h"

class TwainViewCommon : public TwainView {
    Q_OBJECT
public:
    explicit TwainViewCommon(QWidget* parent = nullptr);

    // The distinction box title and the gray/colour text show temp.Distinction and temp.GrayColor,
    // which the model itself relabels when the image type changes.
    void bindControlsToObject(TwainDialogData* model) override;

private:
    Ui::TwainViewCommon ui;
};
