#include "TwObservableValues.h"

TwObservableValues::TwObservableValues()
    : m_observation(this, [this](std::string_view keyPath) { return valueForKeyPath(keyPath); }) {}

TwObservableValues::TwObservableValues(std::initializer_list<std::pair<std::string, TwValue>> values)
    : TwObservableValues() {
    for (auto& [key, value] : values)
        write(value, key, false);
}

TwValue TwObservableValues::valueForKeyPath(std::string_view keyPath) {
    TwValue current = m_values;
    while (!keyPath.empty()) {
        auto dict = current.dict();
        if (!dict)
            return {};
        auto dot = keyPath.find('.');
        current = dict->value(keyPath.substr(0, dot));
        keyPath = dot == std::string_view::npos ? std::string_view() : keyPath.substr(dot + 1);
    }
    return current;
}

void TwObservableValues::write(const TwValue& value, std::string_view keyPath, bool notify) {
    if (keyPath.empty())
        return;
    // One walk down, making the missing levels; a level that is no dictionary blocks the write.
    TwValue parent = m_values;
    std::string_view rest = keyPath;
    for (auto dot = rest.find('.'); dot != std::string_view::npos; dot = rest.find('.')) {
        TwValue next = parent.dict()->value(rest.substr(0, dot));
        if (next.isNull()) {
            next = TwValue::dictionary();
            parent.dict()->set(rest.substr(0, dot), next);
        } else if (!next.isDictionary()) {
            return;
        }
        parent = next;
        rest = rest.substr(dot + 1);
    }
    TwObservationCenter::Snapshot snapshot;
    if (notify)
        snapshot = m_observation.beforeWrite(keyPath);
    parent.dict()->set(rest, value);
    if (notify)
        m_observation.afterWrite(std::move(snapshot));
}

void TwObservableValues::setValueForKeyPath(const TwValue& value, std::string_view keyPath) {
    write(value, keyPath, true);
}

void TwObservableValues::changeValue(const TwValue& value, std::string_view keyPath) {
    if (!valueForKeyPath(keyPath).isEqual(value))
        write(value, keyPath, true);
}

void TwObservableValues::setValueForKeyPathWithoutNotification(const TwValue& value,
                                                               std::string_view keyPath) {
    write(value, keyPath, false);
}

void TwObservableValues::addObserver(TwKeyValueObserver* observer, std::string_view keyPath, unsigned options,
                                     void* context) {
    m_observation.addObserver(observer, keyPath, options, context);
}

void TwObservableValues::removeObserver(TwKeyValueObserver* observer, std::string_view keyPath) {
    m_observation.removeObserver(observer, keyPath);
}

void TwObservableValues::willChangeValueForKey(std::string_view keyPath) {
    m_observation.willChange(keyPath);
}

void TwObservableValues::didChangeValueForKey(std::string_view keyPath) {
    m_observation.didChange(keyPath);
}
