#include "TwainDialogData.h"

// The change handler of the model's observation of itself. The enable rules, the untitled-profile
// rule and the value reactions are dispatched from here.
void TwainDialogData::observeValueForKeyPath(const std::string&, TwainDialogData*, const TwKeyValueChange&, void*) {}
