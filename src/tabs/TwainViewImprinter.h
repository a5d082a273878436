// The Imprinter tab: shown by scanner models that have an imprinter; it has no settings of its own to bind.
#pragma once

#include "TwainView.h"
#include "ui_TwainViewImprinter.h"

class TwainViewImprinter : public TwainView {
    Q_OBJECT
public:
    explicit TwainViewImprinter(QWidget* parent = nullptr);

private:
    Ui::TwainViewImprinter ui;
};
