// One adapter per control class: which binding kinds the class offers, how a model value is shown
// on it, and which user-action signals bring edits back. Found like Qt's own mappers find a
// property: a table of classes first (most derived first), then the widget's USER property with
// its notify signal, then plain enabled/hidden for any other widget, and for an object that is no
// widget the Qt property named like the binding.
#pragma once

#include "TwBindingKind.h"

#include <initializer_list>

class QMetaType;
class QObject;
class QVariant;
class QWidget;
class TwBoundControl;
class TwFormatter;
class TwValue;

class TwControlAdapter {
public:
    explicit TwControlAdapter(std::initializer_list<TwBindingKind> kinds);
    virtual ~TwControlAdapter() = default;

    virtual const char* name() const = 0;
    virtual bool supports(const QObject* control, TwBindingKind kind) const;

    // Shows the latest model value of the kind (state.value(kind)) on the control.
    virtual void show(QObject* control, TwBindingKind kind, const TwBoundControl& state) const = 0;
    // Connects the signals a user action emits; called once per control, at its first binding.
    virtual void connectEdits(QObject* control, TwBoundControl& state) const;
    // Writes a typed, not yet written entry. False when its formatter rejects it.
    virtual bool commitEditing(QObject* control, TwBoundControl& state) const;

    // The combined multi-value bindings.
    virtual void setEnabled(QObject* control, bool enabled) const;
    virtual void setHidden(QObject* control, bool hidden) const;
    virtual void setEditable(QObject* control, bool editable) const;

private:
    unsigned m_kinds = 0;
};

// The adapter of the control; never null.
const TwControlAdapter* TwAdapterForControl(const QObject* control);

// The formatter of a text field or an editable combo box, or null.
const TwFormatter* TwFormatterOfControl(const QObject* control);

// Conversions at the boundary of Qt properties.
QVariant TwValueToVariant(const TwValue& value, const QMetaType& type);
TwValue TwValueFromVariant(const QVariant& variant);

// Whether the widget is a control that follows an enable binding of its own, as opposed to a
// container (group box, plain widget, frame, tab page) whose children are the controls. The
// internals of a control (a combo box's line edit, a list's scroll bars) are never visited.
bool TwWidgetIsControl(const QWidget* widget);
