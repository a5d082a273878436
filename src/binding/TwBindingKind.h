// The kinds of binding a control can carry, and the names bindings are made under. The names are
// the platform's binding names; enabled, hidden and editable may carry a number ("enabled2") so
// that one control can hold several of them at once.
#pragma once

#include <optional>
#include <string>
#include <string_view>

enum class TwBindingKind {
    Value,          // the control's own value: text, checked state, slider position
    Content,        // the array of choice entries
    ContentValues,  // the titles shown for the entries
    ContentObjects, // the values the entries stand for
    SelectedObject, // the selected entry's object (from ContentObjects, else Content)
    SelectedIndex,  // the selected row, item or segment
    SelectedTag,    // the tag (button id, item data) of the selected item
    Title,          // a title that is not the value: group box title, button text
    ValuePath,      // a picture given by its file path
    Enabled,        // several combine by AND
    Hidden,         // several combine by OR
    Editable,       // several combine by AND
};

inline constexpr const char* kTwValueBinding = "value";
inline constexpr const char* kTwContentBinding = "content";
inline constexpr const char* kTwContentValuesBinding = "contentValues";
inline constexpr const char* kTwContentObjectsBinding = "contentObjects";
inline constexpr const char* kTwSelectedObjectBinding = "selectedObject";
inline constexpr const char* kTwSelectedIndexBinding = "selectedIndex";
inline constexpr const char* kTwSelectedTagBinding = "selectedTag";
inline constexpr const char* kTwTitleBinding = "title";
inline constexpr const char* kTwValuePathBinding = "valuePath";
inline constexpr const char* kTwEnabledBinding = "enabled";
inline constexpr const char* kTwHiddenBinding = "hidden";
inline constexpr const char* kTwEditableBinding = "editable";

// The plain name of a kind ("enabled" for Enabled).
const char* TwBindingKindName(TwBindingKind kind);
// The kind a binding name stands for: a plain name, or for the multi-value kinds the plain name
// followed by a decimal number of 2 or more ("hidden3"). Anything else has no kind.
std::optional<TwBindingKind> TwBindingKindForName(std::string_view name);
// Enabled, hidden and editable: kinds a control may carry several times under numbered names.
bool TwBindingKindIsMultiValue(TwBindingKind kind);

// Options of one binding.
struct TwBindingOptions {
    // Edits reach the model as they are typed, not only when editing ends.
    bool continuouslyUpdatesValue = false;
};

// The options of every binding made without explicit ones: continuous updates. Made once, on
// first use.
const TwBindingOptions& TwSharedDefaultBindOptions();
