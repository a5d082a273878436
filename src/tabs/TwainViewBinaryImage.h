// The Binary Image tab: per-side halftone, brightness, contrast, emphasis, gamma and dropout
// (through the side's working copies), dynamic threshold, noise reduction, white level and the
// cleanup options.
#pragma once

#include "TwainView.h"
#include "ui_TwainViewBinaryImage.h"

class TwainViewBinaryImage : public TwainView {
    Q_OBJECT
public:
    explicit TwainViewBinaryImage(QWidget* parent = nullptr);

    void bindControlsToObject(TwainDialogData* model) override;

private:
    Ui::TwainViewBinaryImage ui;
};
