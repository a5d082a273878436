// The one list of the setting tabs, in the order the main panel shows them. A tab is named by its
// identifier: its class is TwainView<identifier>, its form TwainView<identifier>.ui, whose
// "tabIdentifier" is the identifier. The imprinter and patch-code tabs take no part in the main
// panel.
//
// The form catalog, the tab factory and the main panel's pages are all made from this list:
// TW_SETTING_TABS(X) expands X(identifier, inMainPanel) once per tab.
#pragma once

#define TW_SETTING_TABS(X)                                                                                   \
    X(Basic, true)                                                                                           \
    X(Common, true)                                                                                          \
    X(Layout, true)                                                                                          \
    X(BinaryImage, true)                                                                                     \
    X(GrayImage, true)                                                                                       \
    X(ColorImage, true)                                                                                      \
    X(Feed, true)                                                                                            \
    X(Area, true)                                                                                            \
    X(ControlSheet, true)                                                                                    \
    X(Imprinter, false)                                                                                      \
    X(PatchCode, false)

struct TwSettingTab {
    const char* className;
    bool inMainPanel;
};

#define TW_SETTING_TAB_ENTRY(identifier, inMainPanel) {"TwainView" #identifier, inMainPanel},
inline constexpr TwSettingTab kTwSettingTabs[] = {TW_SETTING_TABS(TW_SETTING_TAB_ENTRY)};
#undef TW_SETTING_TAB_ENTRY
