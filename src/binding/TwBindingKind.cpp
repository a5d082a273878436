#include "TwBindingKind.h"

#include <array>
#include <utility>

namespace {
constexpr std::array<std::pair<TwBindingKind, const char*>, 12> kNames{{
    {TwBindingKind::Value, kTwValueBinding},
    {TwBindingKind::Content, kTwContentBinding},
    {TwBindingKind::ContentValues, kTwContentValuesBinding},
    {TwBindingKind::ContentObjects, kTwContentObjectsBinding},
    {TwBindingKind::SelectedObject, kTwSelectedObjectBinding},
    {TwBindingKind::SelectedIndex, kTwSelectedIndexBinding},
    {TwBindingKind::SelectedTag, kTwSelectedTagBinding},
    {TwBindingKind::Title, kTwTitleBinding},
    {TwBindingKind::ValuePath, kTwValuePathBinding},
    {TwBindingKind::Enabled, kTwEnabledBinding},
    {TwBindingKind::Hidden, kTwHiddenBinding},
    {TwBindingKind::Editable, kTwEditableBinding},
}};
} // namespace

const char* TwBindingKindName(TwBindingKind kind) {
    for (auto& [k, name] : kNames)
        if (k == kind)
            return name;
    return "";
}

bool TwBindingKindIsMultiValue(TwBindingKind kind) {
    return kind == TwBindingKind::Enabled || kind == TwBindingKind::Hidden || kind == TwBindingKind::Editable;
}

std::optional<TwBindingKind> TwBindingKindForName(std::string_view name) {
    for (auto& [kind, plain] : kNames) {
        std::string_view p(plain);
        if (name == p)
            return kind;
        if (!TwBindingKindIsMultiValue(kind) || name.size() <= p.size() || name.substr(0, p.size()) != p)
            continue;
        std::string_view number = name.substr(p.size());
        // "%d" of 2, 3, ...: no sign, no leading zero, not 0 or 1.
        if (number[0] < '1' || number[0] > '9' || number == "1")
            return std::nullopt;
        for (char c : number)
            if (c < '0' || c > '9')
                return std::nullopt;
        return kind;
    }
    return std::nullopt;
}

const TwBindingOptions& TwSharedDefaultBindOptions() {
    // A function-local static is made once, under the runtime's initialisation lock.
    static const TwBindingOptions shared{true};
    return shared;
}
