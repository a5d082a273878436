// The Color Image tab: per-side brightness, contrast, chroma, emphasis and gamma (through the
// side's working copies), high speed, colour matching and the cleanup options.
#pragma once

#include "TwainView.h"
#include "ui_TwainViewColorImage.h"

class TwainViewColorImage : public TwainView {
    Q_OBJECT
public:
    explicit TwainViewColorImage(QWidget* parent = nullptr);

    void bindControlsToObject(TwainDialogData* model) override;

private:
    Ui::TwainViewColorImage ui;
};
