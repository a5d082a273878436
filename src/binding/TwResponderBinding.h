// The one object through which a tab or a panel binds its controls to key paths of the settings
// model and observes the model, and through which all of that is undone again. It records every
// binding and every observation it makes, so that removeObserverAll and unbindAll leave neither
// observers on the model nor bindings on the controls, and the owner can be bound again.
//
// Key suffixes: a choice list at K offers K.value (what the entries stand for) and K.display (what
// they show); a control named N in dialog D follows ModelDef.UIControl.D.N.enabled and .hidden.
#pragma once

#include "TwBindingKind.h"
#include "TwNamedKeyObject.h"
#include "TwValue.h"

#include <QObject>
#include <QString>

#include <concepts>
#include <map>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

class QObject;
class QWidget;
class TwKeyValueObserver;
class TwObservable;

// One element of a pair list: a key (a key path or a control name) or a control. A null control
// stands for an absent outlet.
class TwBindItem {
public:
    TwBindItem(std::nullptr_t) {}
    TwBindItem(const char* key) : m_item(std::string(key ? key : "")) {}
    TwBindItem(std::string key) : m_item(std::move(key)) {}
    TwBindItem(const QString& key) : m_item(key.toStdString()) {}
    template <typename T>
    requires std::derived_from<T, QObject> TwBindItem(T* control) : m_item(static_cast<QObject*>(control)) {}

    const std::string* key() const { return std::get_if<std::string>(&m_item); }
    // The control, or null when the element is no control or an absent one.
    QObject* control() const {
        auto p = std::get_if<QObject*>(&m_item);
        return p ? *p : nullptr;
    }

private:
    std::variant<std::monostate, std::string, QObject*> m_item;
};

// Flat pairs, key first: key path 1, control 1, key path 2, control 2, ...
using TwBindList = std::vector<TwBindItem>;

class TwResponderBinding {
public:
    TwResponderBinding() = default;
    // The responder is the observer of every observation made here; it is not owned.
    explicit TwResponderBinding(TwKeyValueObserver* responder);
    ~TwResponderBinding();
    TwResponderBinding(const TwResponderBinding&) = delete;
    TwResponderBinding& operator=(const TwResponderBinding&) = delete;

    TwKeyValueObserver* responder() const { return _responder; }

    // ---- Observation ----

    // Registers the responder with the object at the key path, once per object and key path.
    void addResponderObserver(TwObservable* object, const std::string& keyPath, unsigned options);
    // The same with options 1 (new value).
    void addResponderObserver(TwObservable* object, const std::string& keyPath);
    // Each string of the array; other elements are skipped.
    void addResponderObserverForKeyPathArray(TwObservable* object, const TwValue& keyPaths, unsigned options);
    // The same with options 3 (new and old value).
    void addResponderObserverForKeyPathArray(TwObservable* object, const TwValue& keyPaths);
    // Undoes one registration made here; anything else is left alone.
    void removeResponderObserver(TwObservable* object, const std::string& keyPath);
    void removeObserverAll();

    // ---- Binding ----

    // The core operation. A key path the model has no value at binds nothing (logged). Enabled,
    // hidden and editable take the first free name of "enabled", "enabled2", "enabled3", ...;
    // any other name replaces an earlier binding of that name.
    void bind(std::string_view binding, QObject* control, TwObservable* model, const std::string& keyPath,
              const TwBindingOptions& options);
    // The same with the shared default options (continuous updates).
    void bind(std::string_view binding, QObject* control, TwObservable* model, const std::string& keyPath);
    // The binding on each control that is a widget, all to the same key path.
    void bind(std::string_view binding, const std::vector<QObject*>& controls, TwObservable* model,
              const std::string& keyPath);

    // Content to K; an editable combo box also gets content values to K.value, any other control
    // content objects to K.value and content values to K.display.
    void bindContent(QObject* control, TwObservable* model, const std::string& keyPath);
    // Content and content values, both to K.
    void bindContentValues(QObject* control, TwObservable* model, const std::string& keyPath);
    // The binding that is the value of the control's class: a pop-up's selected object, a radio
    // group's selected index, a group box's title, an image view's picture path, else the value.
    void bindValue(QObject* control, TwObservable* model, const std::string& keyPath);
    void bindSelectedIndex(QObject* control, TwObservable* model, const std::string& keyPath);
    void bindEnabled(QObject* control, TwObservable* model, const std::string& keyPath);
    // A group box: hidden to K.hidden; any other control: enabled to K.enabled, hidden to K.hidden.
    void bindControlDef(QObject* control, TwObservable* model, const std::string& keyPath);

    // Pair lists (key first). A pair whose control is absent or of the wrong kind is skipped; an
    // odd last element is ignored.
    void bindContents(const TwBindList& pairs, TwObservable* model);
    void bindEnableds(const TwBindList& pairs, TwObservable* model);
    void bindValues(const TwBindList& pairs, TwObservable* model);
    // Pairs of control name and control: each control follows "ModelDef.UIControl." + dialog +
    // "." + name. Nothing when the dialog name is empty or the model defines nothing for it.
    void bindControlDefs(const TwBindList& pairs, TwObservable* model, const std::string& dialogName);
    // Every control below the view follows the enable key path, depth first. Containers are
    // walked into; a control's own inner widgets are not.
    void bindSubviewsEnabled(QWidget* view, TwObservable* model, const std::string& keyPath);

    // Removes every binding made here, the latest first.
    void unbindAll();

    // ---- Records ----

    const std::vector<TwNamedKeyObject>& bindings() const { return _arrayBinding; }
    const std::map<std::string, std::vector<TwObservable*>>& observations() const { return _dictObserver; }

private:
    std::string responderClassName() const;

    TwKeyValueObserver* _responder = nullptr;
    std::map<std::string, std::vector<TwObservable*>> _dictObserver;
    std::vector<TwNamedKeyObject> _arrayBinding;
};
