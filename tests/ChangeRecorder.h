// Observable stores in tests: their values at key paths, and a recorder of what they tell.
#pragma once

#include "TestSupport.h"
#include "TwObservation.h"

// The store's values at the key paths, to compare in one go with an array.
inline TwValue valuesAt(TwObservable& store, std::initializer_list<const char*> keyPaths) {
    TwValue out = TwValue::array();
    for (const char* keyPath : keyPaths)
        out.list()->push_back(store.valueForKeyPath(keyPath));
    return out;
}

// Records what a store tells of the key paths it watches, and ends its observations when it goes
// (declare it after the store).
class ChangeRecorder : public TwKeyValueObserver {
public:
    struct Seen {
        std::string keyPath;
        TwValue newValue, oldValue;
        bool initial;
    };
    std::vector<Seen> seen;
    std::function<void(const std::string&)> onChange;

    ChangeRecorder() = default;
    ChangeRecorder(TwObservable& object, std::initializer_list<const char*> paths,
                   unsigned options = kTwObserveNew) {
        for (const char* p : paths)
            watch(object, p, options);
    }
    ~ChangeRecorder() override {
        for (auto& [object, path] : m_watched)
            object->removeObserver(this, path);
    }
    void watch(TwObservable& object, const std::string& path, unsigned options = kTwObserveNew) {
        object.addObserver(this, path, options);
        m_watched.emplace_back(&object, path);
    }
    void observeValueForKeyPath(const std::string& keyPath, TwObservable*, const TwKeyValueChange& change,
                                void*) override {
        seen.push_back({keyPath, change.newValue, change.oldValue, change.isInitial});
        if (onChange)
            onChange(keyPath);
    }
    int count() const { return int(seen.size()); }
    int count(const std::string& path) const {
        return int(std::ranges::count_if(seen, [&](const Seen& s) { return s.keyPath == path; }));
    }
    TwValue last() const { return seen.empty() ? TwValue() : seen.back().newValue; }

private:
    std::vector<std::pair<TwObservable*, std::string>> m_watched;
};
