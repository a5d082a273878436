#include "TwBoundControl.h"

#include "TwBindingAdapters.h"
#include "TwFormatter.h"
#include "TwObservation.h"

#include <QMetaProperty>
#include <QScopedValueRollback>
#include <QValidator>

#include <algorithm>

namespace {
constexpr const char* kSetObjectName = "qt_twbindings";
} // namespace

class TwBoundControl::Binding : public TwKeyValueObserver {
public:
    Binding(TwBoundControl* owner, std::string name, TwBindingKind kind, TwObservable* model,
            std::string keyPath, const TwBindingOptions& options)
        : owner(owner), name(std::move(name)), kind(kind), model(model), keyPath(std::move(keyPath)),
          options(options) {}

    void observeValueForKeyPath(const std::string&, TwObservable*, const TwKeyValueChange&, void*) override {
        owner->modelChanged(this);
    }

    TwBoundControl* owner;
    std::string name;
    TwBindingKind kind;
    TwObservable* model;
    std::string keyPath;
    TwBindingOptions options;
    TwValue value;        // the model's value as last seen
    bool writing = false; // our own write is under way: its echo is not shown
};

TwBoundControl::TwBoundControl(QObject* control)
    : QObject(control), m_control(control), m_adapter(TwAdapterForControl(control)) {
    setObjectName(QString::fromLatin1(kSetObjectName));
}

TwBoundControl::~TwBoundControl() {
    for (auto& b : m_bindings)
        b->model->removeObserver(b.get(), b->keyPath);
}

TwBoundControl* TwBoundControl::of(const QObject* control) {
    if (!control)
        return nullptr;
    return control->findChild<TwBoundControl*>(QString::fromLatin1(kSetObjectName),
                                               Qt::FindDirectChildrenOnly);
}

TwBoundControl* TwBoundControl::ensure(QObject* control) {
    if (auto* set = of(control))
        return set;
    return new TwBoundControl(control);
}

TwBoundControl::Binding* TwBoundControl::find(std::string_view name) const {
    for (auto& b : m_bindings)
        if (b->name == name)
            return b.get();
    return nullptr;
}

TwBoundControl::Binding* TwBoundControl::findKind(TwBindingKind kind) const {
    for (auto& b : m_bindings)
        if (b->kind == kind)
            return b.get();
    return nullptr;
}

bool TwBoundControl::bind(QObject* control, std::string_view name, TwObservable* model,
                          std::string_view keyPath, const TwBindingOptions& options, std::string* reason) {
    auto fail = [&](std::string why) {
        if (reason)
            *reason = std::move(why);
        return false;
    };
    if (!control)
        return fail("no control");
    if (!model)
        return fail("no model");
    auto kind = TwBindingKindForName(name);
    if (!kind)
        return fail("no binding is named " + std::string(name));
    const TwControlAdapter* adapter = TwAdapterForControl(control);
    if (!adapter->supports(control, *kind))
        return fail(std::string(control->metaObject()->className()) + " offers no binding " +
                    std::string(name));

    TwBoundControl* set = ensure(control);
    if (set->find(name))
        unbind(control, name); // binding a name again replaces it
    auto binding =
        std::make_unique<Binding>(set, std::string(name), *kind, model, std::string(keyPath), options);
    Binding* b = binding.get();
    b->value = model->valueForKeyPath(keyPath);
    model->addObserver(b, keyPath, kTwObserveNew);
    set->m_bindings.push_back(std::move(binding));
    if (!set->m_editsConnected) {
        set->m_editsConnected = true;
        set->m_adapter->connectEdits(control, *set);
    }
    set->show(*kind);
    return true;
}

std::optional<TwBindingInfo> TwBoundControl::infoForBinding(const QObject* control, std::string_view name) {
    TwBoundControl* set = of(control);
    Binding* b = set ? set->find(name) : nullptr;
    if (!b)
        return std::nullopt;
    return TwBindingInfo{b->model, b->keyPath, b->kind, b->options};
}

bool TwBoundControl::unbind(QObject* control, std::string_view name) {
    TwBoundControl* set = of(control);
    if (!set)
        return false;
    auto it = std::find_if(set->m_bindings.begin(), set->m_bindings.end(),
                           [&](const auto& b) { return b->name == name; });
    if (it == set->m_bindings.end())
        return false;
    TwBindingKind kind = (*it)->kind;
    (*it)->model->removeObserver(it->get(), (*it)->keyPath);
    set->retire(std::size_t(it - set->m_bindings.begin()));
    // The remaining bindings of a combined kind decide alone; the last one leaves the state as is.
    if (TwBindingKindIsMultiValue(kind) && set->findKind(kind))
        set->show(kind);
    return true;
}

void TwBoundControl::retire(std::size_t index) {
    auto binding = std::move(m_bindings[index]);
    m_bindings.erase(m_bindings.begin() + std::ptrdiff_t(index));
    if (m_depth > 0)
        m_retired.push_back(std::move(binding));
}

std::vector<std::string> TwBoundControl::bindingNames(const QObject* control) {
    std::vector<std::string> names;
    if (TwBoundControl* set = of(control))
        for (auto& b : set->m_bindings)
            names.push_back(b->name);
    return names;
}

void TwBoundControl::refresh(QObject* control) {
    if (TwBoundControl* set = of(control))
        set->showAll();
}

bool TwBoundControl::commitEditing(QObject* control) {
    TwBoundControl* set = of(control);
    if (!set)
        return true;
    bool ok = true;
    {
        QScopedValueRollback depth(set->m_depth, set->m_depth + 1);
        ok = set->m_adapter->commitEditing(control, *set);
    }
    set->releaseRetired();
    return ok;
}

bool TwBoundControl::isBound(TwBindingKind kind) const {
    return findKind(kind) != nullptr;
}

TwValue TwBoundControl::value(TwBindingKind kind) const {
    Binding* b = findKind(kind);
    return b ? b->value : TwValue();
}

const TwBindingOptions* TwBoundControl::options(TwBindingKind kind) const {
    Binding* b = findKind(kind);
    return b ? &b->options : nullptr;
}

void TwBoundControl::modelChanged(Binding* binding) {
    if (binding->writing)
        return; // the echo of our own write: the control shows it already
    {
        QScopedValueRollback depth(m_depth, m_depth + 1);
        binding->value = binding->model->valueForKeyPath(binding->keyPath);
        show(binding->kind);
    }
    releaseRetired();
}

void TwBoundControl::userEdited(TwBindingKind kind, const TwValue& value) {
    if (isShowing())
        return;
    Binding* b = findKind(kind);
    if (!b)
        return;
    {
        QScopedValueRollback depth(m_depth, m_depth + 1);
        {
            QScopedValueRollback writing(b->writing, true);
            b->model->setValueForKeyPath(value, b->keyPath);
        }
        // Still bound? A change handler may have unbound it.
        if (std::any_of(m_bindings.begin(), m_bindings.end(), [b](const auto& p) { return p.get() == b; })) {
            TwValue stored = b->model->valueForKeyPath(b->keyPath);
            b->value = stored;
            // The model kept something else (a rule corrected it, or the write was refused).
            if (!stored.isEqual(value))
                show(kind);
        }
    }
    releaseRetired();
}

void TwBoundControl::releaseRetired() {
    if (m_depth == 0)
        m_retired.clear();
}

void TwBoundControl::show(TwBindingKind kind) {
    QScopedValueRollback showing(m_showing, m_showing + 1);
    switch (kind) {
    case TwBindingKind::Enabled:
    case TwBindingKind::Editable: {
        bool all = true;
        for (auto& b : m_bindings)
            if (b->kind == kind)
                all = all && b->value.boolValue();
        if (kind == TwBindingKind::Enabled)
            m_adapter->setEnabled(m_control, all);
        else
            m_adapter->setEditable(m_control, all);
        break;
    }
    case TwBindingKind::Hidden: {
        bool any = false;
        for (auto& b : m_bindings)
            if (b->kind == kind)
                any = any || b->value.boolValue();
        m_adapter->setHidden(m_control, any);
        break;
    }
    default:
        m_adapter->show(m_control, kind, *this);
        break;
    }
}

void TwBoundControl::showAll() {
    std::vector<TwBindingKind> kinds;
    for (auto& b : m_bindings)
        if (std::find(kinds.begin(), kinds.end(), b->kind) == kinds.end())
            kinds.push_back(b->kind);
    for (TwBindingKind kind : kinds)
        show(kind);
}

void TwBoundControl::refreshOnFormatterChange(QObject* formatter) {
    auto* validator = qobject_cast<QValidator*>(formatter);
    if (!validator)
        return;
    m_watchedFormatters.erase(std::remove_if(m_watchedFormatters.begin(), m_watchedFormatters.end(),
                                             [](const auto& p) { return !p; }),
                              m_watchedFormatters.end());
    for (auto& p : m_watchedFormatters)
        if (p == formatter)
            return;
    m_watchedFormatters.emplace_back(formatter);
    connect(validator, &QValidator::changed, this, [this, formatter] {
        // Only the formatter the control has now counts; a replaced one may still be shared.
        if (static_cast<const QObject*>(TwFormatterOfControl(m_control)) == formatter)
            showAll();
    });
}

void TwBoundControl::userPropertyChanged() {
    if (isShowing() || !isBound(TwBindingKind::Value))
        return;
    QMetaProperty property = m_control->metaObject()->userProperty();
    if (property.isValid())
        userEdited(TwBindingKind::Value, TwValueFromVariant(property.read(m_control)));
}
