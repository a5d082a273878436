// The Control Sheet tab ("Separation Sheet"): detecting separation sheets and skipping them.
#pragma once

#include "TwainView.h"
#include "ui_TwainViewControlSheet.h"

class TwainViewControlSheet : public TwainView {
    Q_OBJECT
public:
    explicit TwainViewControlSheet(QWidget* parent = nullptr);

    void bindControlsToObject(TwainDialogData* model) override;

private:
    Ui::TwainViewControlSheet ui;
};
