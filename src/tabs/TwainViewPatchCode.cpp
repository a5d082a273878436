#include "TwainViewPatchCode.h"

TwainViewPatchCode::TwainViewPatchCode(QWidget* parent) : TwainView(parent) {
    setUpForm(ui);
}
