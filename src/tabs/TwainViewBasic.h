// The Basic tab: paper source and size, image type, resolution, landscape, deskew, automatic crop.
#pragma once

#include "TwainView.h"
#include "ui_TwainViewBasic.h"

class TwainViewBasic : public TwainView {
    Q_OBJECT
public:
    explicit TwainViewBasic(QWidget* parent = nullptr);

    void bindControlsToObject(TwainDialogData* model) override;

    // The lower bound of the resolution field from the model's resolution list: a running value
    // that starts at 100 and takes every smaller number and every number above 600.
    static int resolutionMinimum(const TwValue& resolutions);

private:
    Ui::TwainViewBasic ui;
};
