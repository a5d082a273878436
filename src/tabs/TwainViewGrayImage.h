// The Gray Image tab: per-side brightness, contrast, emphasis, gamma and dropout (through the
// side's working copies), high speed, white level and the cleanup options.
#pragma once

#include "TwainView.h"
#include "ui_TwainViewGrayImage.h"

class TwainViewGrayImage : public TwainView {
    Q_OBJECT
public:
    explicit TwainViewGrayImage(QWidget* parent = nullptr);

    void bindControlsToObject(TwainDialogData* model) override;

private:
    Ui::TwainViewGrayImage ui;
};
