// The Feed tab: manual feed and its timeout, double-feed detection, feeding a set number of pages,
// look-ahead feeding.
#pragma once

#include "TwainView.h"
#include "ui_TwainViewFeed.h"

class TwainViewFeed : public TwainView {
    Q_OBJECT
public:
    explicit TwainViewFeed(QWidget* parent = nullptr);

    void bindControlsToObject(TwainDialogData* model) override;

private:
    Ui::TwainViewFeed ui;
};
