#include "TwainViewImprinter.h"

TwainViewImprinter::TwainViewImprinter(QWidget* parent) : TwainView(parent) {
    setUpForm(ui);
}
