// The bindings one control carries: each ties one of its binding kinds to a key path of the
// settings model and follows it both ways. Model changes are shown through the control's adapter;
// user edits come back from the adapter and are written with the model's notifying write. Several
// enabled (or editable) bindings combine by AND, several hidden bindings by OR.
//
// The set lives as a hidden child object of the control, so it goes with the control. A binding
// holds the model by plain pointer: owners unbind before the model goes away.
#pragma once

#include "TwBindingKind.h"
#include "TwValue.h"

#include <QObject>
#include <QPointer>

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

class TwObservable;
class TwControlAdapter;

struct TwBindingInfo {
    TwObservable* model = nullptr;
    std::string keyPath;
    TwBindingKind kind = TwBindingKind::Value;
    TwBindingOptions options;
};

class TwBoundControl : public QObject {
    Q_OBJECT
public:
    ~TwBoundControl() override;

    // Binds the control's binding `name` to the model at the key path; an existing binding of the
    // same name is replaced. False, with the reason, when the control has no such binding.
    static bool bind(QObject* control, std::string_view name, TwObservable* model, std::string_view keyPath,
                     const TwBindingOptions& options, std::string* reason = nullptr);
    // What the control is bound to under the name, or nothing.
    static std::optional<TwBindingInfo> infoForBinding(const QObject* control, std::string_view name);
    // Removes the binding of that name; false if there is none.
    static bool unbind(QObject* control, std::string_view name);
    // Names of the control's bindings in the order they were made.
    static std::vector<std::string> bindingNames(const QObject* control);
    // Shows every bound value again (after a formatter or range change).
    static void refresh(QObject* control);
    // Writes a pending edit of the control (a typed text) to the model. False when the control's
    // formatter rejects the entry; nothing is written then.
    static bool commitEditing(QObject* control);
    // The set of the control, or null when it never had a binding.
    static TwBoundControl* of(const QObject* control);

    // ---- For the adapters ----

    QObject* control() const { return m_control; }
    bool isBound(TwBindingKind kind) const;
    // The model's latest value for a single-valued kind; null when the kind is not bound.
    TwValue value(TwBindingKind kind) const;
    const TwBindingOptions* options(TwBindingKind kind) const;
    // True while a model value is being shown: signals the control emits then are no user edits.
    bool isShowing() const { return m_showing > 0; }
    // A user edit: the value goes to the model at the kind's key path.
    void userEdited(TwBindingKind kind, const TwValue& value);
    // Shows all bound values again whenever the formatter (a QValidator) emits changed() while the
    // control still uses it.
    void refreshOnFormatterChange(QObject* formatter);

public slots:
    // Connected to the notify signal of the control's USER property.
    void userPropertyChanged();

private:
    class Binding;
    explicit TwBoundControl(QObject* control);
    static TwBoundControl* ensure(QObject* control);

    Binding* find(std::string_view name) const;
    Binding* findKind(TwBindingKind kind) const;
    void modelChanged(Binding* binding);
    void show(TwBindingKind kind);
    void showAll();
    void retire(std::size_t index);
    // Lets the retired bindings go once no call of the set is under way.
    void releaseRetired();

    QObject* m_control;
    const TwControlAdapter* m_adapter;
    std::vector<std::unique_ptr<Binding>> m_bindings;
    // Bindings removed while one of them was being told of a change die after the call.
    std::vector<std::unique_ptr<Binding>> m_retired;
    std::vector<QPointer<QObject>> m_watchedFormatters;
    // Nesting depths: of values being shown, and of calls that may retire a binding.
    int m_showing = 0;
    int m_depth = 0;
    bool m_editsConnected = false;
};
