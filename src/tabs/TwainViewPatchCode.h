// The Patch Code tab: shown by scanner models that read patch codes; it has no settings of its own to bind.
#pragma once

#include "TwainView.h"
#include "ui_TwainViewPatchCode.h"

class TwainViewPatchCode : public TwainView {
    Q_OBJECT
public:
    explicit TwainViewPatchCode(QWidget* parent = nullptr);

private:
    Ui::TwainViewPatchCode ui;
};
