// The values a dialog edits for itself (a name, a unit, eight margins): a small dictionary that
// controls bind to and observers watch by key path exactly as they do the settings model.
#pragma once

#include "TwObservation.h"
#include "TwValue.h"

#include <initializer_list>
#include <string_view>
#include <utility>

class TwObservableValues : public TwObservable {
public:
    TwObservableValues();
    // Starts with the given keys and values; nobody is told.
    TwObservableValues(std::initializer_list<std::pair<std::string, TwValue>> values);
    TwObservableValues(const TwObservableValues&) = delete;
    TwObservableValues& operator=(const TwObservableValues&) = delete;

    // Null for a missing key or one whose way is blocked by a value that is not a dictionary.
    TwValue valueForKeyPath(std::string_view keyPath) override;
    // Creates missing intermediate dictionaries and tells the observers of the path and below,
    // even when the value is equal to the old one. A way blocked by a non-dictionary drops it.
    void setValueForKeyPath(const TwValue& value, std::string_view keyPath) override;
    // Writes and tells only when the stored value is not equal.
    void changeValue(const TwValue& value, std::string_view keyPath);
    void setValueForKeyPathWithoutNotification(const TwValue& value, std::string_view keyPath);

    void addObserver(TwKeyValueObserver* observer, std::string_view keyPath, unsigned options,
                     void* context = nullptr) override;
    void removeObserver(TwKeyValueObserver* observer, std::string_view keyPath) override;
    void willChangeValueForKey(std::string_view keyPath) override;
    void didChangeValueForKey(std::string_view keyPath) override;
    std::size_t observationCount() const { return m_observation.observationCount(); }

private:
    void write(const TwValue& value, std::string_view keyPath, bool notify);

    TwValue m_values = TwValue::dictionary();
    TwObservationCenter m_observation;
};
