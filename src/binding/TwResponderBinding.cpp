#include "TwResponderBinding.h"

#include "OrvaDebug.h"
#include "TwBindingAdapters.h"
#include "TwBindingWidgets.h"
#include "TwBoundControl.h"
#include "TwObservation.h"

#include <QComboBox>
#include <QGroupBox>
#include <QWidget>

#include <algorithm>
#include <cstdlib>
#include <cxxabi.h>
#include <exception>
#include <memory>
#include <typeinfo>

namespace {
constexpr const char* kUIControlPrefix = "ModelDef.UIControl.";
constexpr int kMaxNumberedBindings = 1000;

std::string demangled(const char* name) {
    int status = 0;
    std::unique_ptr<char, void (*)(void*)> text(abi::__cxa_demangle(name, nullptr, nullptr, &status),
                                                std::free);
    return status == 0 && text ? std::string(text.get()) : std::string(name);
}

// The class of the object bound to or observed, for the log ("TwainDialogData").
std::string className(const TwObservable* object) {
    return object ? demangled(typeid(*object).name()) : std::string("(null)");
}

const char* className(const QObject* object) {
    return object ? object->metaObject()->className() : "(null)";
}

// Calls f(key, control) for every (key, widget) pair of the list; other pairs are skipped.
template <class F> void forEachWidgetPair(const TwBindList& pairs, F&& f) {
    for (std::size_t i = 0; i + 1 < pairs.size(); i += 2) {
        const std::string* key = pairs[i].key();
        QObject* control = pairs[i + 1].control();
        if (key && control && control->isWidgetType())
            f(*key, control);
    }
}

bool isPopUp(const QObject* control) {
    auto* combo = qobject_cast<const QComboBox*>(control);
    return combo && !combo->isEditable();
}

bool isEditableComboBox(const QObject* control) {
    auto* combo = qobject_cast<const QComboBox*>(control);
    return combo && combo->isEditable();
}
} // namespace

TwResponderBinding::TwResponderBinding(TwKeyValueObserver* responder) : _responder(responder) {}

TwResponderBinding::~TwResponderBinding() {
    removeObserverAll();
    unbindAll();
}

std::string TwResponderBinding::responderClassName() const {
    if (!_responder)
        return "(null)";
    if (auto* object = dynamic_cast<const QObject*>(_responder))
        return object->metaObject()->className();
    return demangled(typeid(*_responder).name());
}

// ---- Observation -----------------------------------------------------------------------------------

void TwResponderBinding::addResponderObserver(TwObservable* object, const std::string& keyPath,
                                              unsigned options) {
    if (!object || !_responder)
        return;
    try {
        auto& objects = _dictObserver[keyPath];
        if (std::find(objects.begin(), objects.end(), object) != objects.end())
            return;
        objects.push_back(object);
        object->addObserver(_responder, keyPath, options, nullptr);
    } catch (const std::exception&) {
        OrvaLog(kOrvaLogError, "ERROR: %s(%s): addObserver:%s forKeyPath:%s\n",
                "TwResponderBinding::addResponderObserver", responderClassName().c_str(),
                className(object).c_str(), keyPath.c_str());
    }
}

void TwResponderBinding::addResponderObserver(TwObservable* object, const std::string& keyPath) {
    addResponderObserver(object, keyPath, kTwObserveNew);
}

void TwResponderBinding::addResponderObserverForKeyPathArray(TwObservable* object, const TwValue& keyPaths,
                                                             unsigned options) {
    const TwArray* list = keyPaths.list();
    if (!list)
        return;
    for (const TwValue& keyPath : TwArray(*list)) // a copy: an observer may change the array
        if (const std::string* path = keyPath.str())
            addResponderObserver(object, *path, options);
}

void TwResponderBinding::addResponderObserverForKeyPathArray(TwObservable* object, const TwValue& keyPaths) {
    addResponderObserverForKeyPathArray(object, keyPaths, kTwObserveNew | kTwObserveOld);
}

void TwResponderBinding::removeResponderObserver(TwObservable* object, const std::string& keyPath) {
    if (!_responder || !object)
        return;
    auto it = _dictObserver.find(keyPath);
    if (it == _dictObserver.end())
        return;
    auto& objects = it->second;
    auto at = std::find(objects.begin(), objects.end(), object);
    if (at == objects.end())
        return;
    object->removeObserver(_responder, keyPath);
    objects.erase(at);
    if (objects.empty())
        _dictObserver.erase(it);
}

void TwResponderBinding::removeObserverAll() {
    auto all = std::move(_dictObserver);
    _dictObserver.clear();
    if (!_responder || all.empty())
        return;
    OrvaLog(kOrvaLogDebug, "\t%s(%s): %zu key paths\n", "TwResponderBinding::removeObserverAll",
            responderClassName().c_str(), all.size());
    for (auto& [keyPath, objects] : all) {
        for (TwObservable* object : objects) {
            try {
                object->removeObserver(_responder, keyPath);
            } catch (const std::exception&) {
                OrvaLog(kOrvaLogError, "ERROR: %s(%s): removeObserver:%s forKeyPath:%s\n",
                        "TwResponderBinding::removeObserverAll", responderClassName().c_str(),
                        className(object).c_str(), keyPath.c_str());
            }
        }
    }
}

// ---- Binding ---------------------------------------------------------------------------------------

void TwResponderBinding::bind(std::string_view binding, QObject* control, TwObservable* model,
                              const std::string& keyPath, const TwBindingOptions& options) {
    const char* method = "TwResponderBinding::bind";
    std::string name(binding);
    try {
        if (!model || model->valueForKeyPath(keyPath).isNull()) {
            OrvaLog(kOrvaLogError, "ERROR: %s(%s): %s is not found KeyPath:%s\n", method,
                    responderClassName().c_str(), className(model).c_str(), keyPath.c_str());
            return;
        }
        if (!control) {
            OrvaLog(kOrvaLogError, "ERROR: %s(%s): bind %s withKeyPath:%s, %s\n", method,
                    responderClassName().c_str(), name.c_str(), keyPath.c_str(), "no control");
            return;
        }
        auto kind = TwBindingKindForName(binding);
        if (kind && TwBindingKindIsMultiValue(*kind) && binding == TwBindingKindName(*kind)) {
            // The first free name: "enabled", "enabled2", "enabled3", ...
            for (int n = 2; TwBoundControl::infoForBinding(control, name) && n <= kMaxNumberedBindings; ++n)
                name = std::string(binding) + std::to_string(n);
        }
        std::string reason;
        if (!TwBoundControl::bind(control, name, model, keyPath, options, &reason)) {
            OrvaLog(kOrvaLogError, "ERROR: %s(%s): bind %s withKeyPath:%s, %s\n", method,
                    responderClassName().c_str(), name.c_str(), keyPath.c_str(), reason.c_str());
            return;
        }
        _arrayBinding.emplace_back(control, name);
    } catch (const std::exception& e) {
        OrvaLog(kOrvaLogError, "ERROR: %s(%s): bind %s withKeyPath:%s, %s\n", method,
                responderClassName().c_str(), name.c_str(), keyPath.c_str(), e.what());
    }
}

void TwResponderBinding::bind(std::string_view binding, QObject* control, TwObservable* model,
                              const std::string& keyPath) {
    bind(binding, control, model, keyPath, TwSharedDefaultBindOptions());
}

void TwResponderBinding::bind(std::string_view binding, const std::vector<QObject*>& controls,
                              TwObservable* model, const std::string& keyPath) {
    for (QObject* control : controls)
        if (control && control->isWidgetType())
            bind(binding, control, model, keyPath);
}

void TwResponderBinding::bindContent(QObject* control, TwObservable* model, const std::string& keyPath) {
    bind(kTwContentBinding, control, model, keyPath);
    if (isEditableComboBox(control)) {
        bind(kTwContentValuesBinding, control, model, keyPath + ".value");
    } else {
        bind(kTwContentObjectsBinding, control, model, keyPath + ".value");
        bind(kTwContentValuesBinding, control, model, keyPath + ".display");
    }
}

void TwResponderBinding::bindContentValues(QObject* control, TwObservable* model,
                                           const std::string& keyPath) {
    bind(kTwContentBinding, control, model, keyPath);
    bind(kTwContentValuesBinding, control, model, keyPath);
}

void TwResponderBinding::bindValue(QObject* control, TwObservable* model, const std::string& keyPath) {
    const char* name = kTwValueBinding;
    if (isPopUp(control))
        name = kTwSelectedObjectBinding;
    else if (qobject_cast<TwSegmentedControl*>(control))
        name = kTwSelectedIndexBinding;
    else if (qobject_cast<QGroupBox*>(control))
        name = kTwTitleBinding;
    else if (qobject_cast<TwImageView*>(control))
        name = kTwValuePathBinding;
    bind(name, control, model, keyPath);
}

void TwResponderBinding::bindSelectedIndex(QObject* control, TwObservable* model,
                                           const std::string& keyPath) {
    bind(kTwSelectedIndexBinding, control, model, keyPath);
}

void TwResponderBinding::bindEnabled(QObject* control, TwObservable* model, const std::string& keyPath) {
    bind(kTwEnabledBinding, control, model, keyPath);
}

void TwResponderBinding::bindControlDef(QObject* control, TwObservable* model, const std::string& keyPath) {
    if (!qobject_cast<QGroupBox*>(control))
        bind(kTwEnabledBinding, control, model, keyPath + ".enabled");
    bind(kTwHiddenBinding, control, model, keyPath + ".hidden");
}

void TwResponderBinding::bindContents(const TwBindList& pairs, TwObservable* model) {
    forEachWidgetPair(pairs,
                      [&](const std::string& key, QObject* control) { bindContent(control, model, key); });
}

void TwResponderBinding::bindEnableds(const TwBindList& pairs, TwObservable* model) {
    forEachWidgetPair(pairs, [&](const std::string& key, QObject* control) {
        bind(kTwEnabledBinding, control, model, key);
    });
}

void TwResponderBinding::bindValues(const TwBindList& pairs, TwObservable* model) {
    forEachWidgetPair(pairs,
                      [&](const std::string& key, QObject* control) { bindValue(control, model, key); });
}

void TwResponderBinding::bindControlDefs(const TwBindList& pairs, TwObservable* model,
                                         const std::string& dialogName) {
    if (dialogName.empty() || !model)
        return;
    const std::string prefix = kUIControlPrefix + dialogName;
    if (model->valueForKeyPath(prefix).isNull())
        return; // the scanner model defines nothing for this dialog
    forEachWidgetPair(pairs, [&](const std::string& name, QObject* control) {
        bindControlDef(control, model, prefix + "." + name);
    });
}

void TwResponderBinding::bindSubviewsEnabled(QWidget* view, TwObservable* model, const std::string& keyPath) {
    if (!view)
        return;
    const QObjectList children = view->children(); // a copy: binding adds child objects
    for (QObject* child : children) {
        auto* sub = qobject_cast<QWidget*>(child);
        if (!sub || sub->isWindow())
            continue;
        if (TwWidgetIsControl(sub))
            bind(kTwEnabledBinding, sub, model, keyPath);
        else
            bindSubviewsEnabled(sub, model, keyPath);
    }
}

void TwResponderBinding::unbindAll() {
    const char* method = "TwResponderBinding::unbindAll";
    if (_arrayBinding.empty())
        return;
    OrvaLog(kOrvaLogDebug, "\t%s(%s): %zu bindings\n", method, responderClassName().c_str(),
            _arrayBinding.size());
    try {
        while (!_arrayBinding.empty()) {
            TwNamedKeyObject record = _arrayBinding.back();
            try {
                QObject* control = record.object();
                for (int guard = 0; control && guard < kMaxNumberedBindings &&
                                    TwBoundControl::infoForBinding(control, record.name());
                     ++guard)
                    TwBoundControl::unbind(control, record.name());
            } catch (const std::exception& e) {
                OrvaLog(kOrvaLogError, "*** ERROR: %s %s: %s.%s : %s", responderClassName().c_str(), method,
                        className(record.object()), record.name().c_str(), e.what());
            }
            _arrayBinding.pop_back();
        }
    } catch (const std::exception& e) {
        OrvaLog(kOrvaLogError, "*** ERROR: %s %s: %s", responderClassName().c_str(), method, e.what());
    }
}
