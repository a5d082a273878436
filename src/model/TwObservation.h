// Key-value observing for the settings store.
//
// An observer registers for one key path with options 1 (new value), 2 (old value) and 4 (an
// initial call at registration). A notifying write at path P tells the observers of P and of every
// path below P. Manual will/did brackets capture old values at "will" and notify once at "did";
// a notifying write inside an open bracket that covers its path leaves the telling to the bracket.
#pragma once

#include "TwValue.h"

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

class TwObservable;

enum TwObservingOptions : unsigned {
    kTwObserveNew = 1,
    kTwObserveOld = 2,
    kTwObserveInitial = 4,
};

// What changed; a value that the observer did not ask for is null.
struct TwKeyValueChange {
    TwValue newValue;
    TwValue oldValue;
    bool isInitial = false;
};

class TwKeyValueObserver {
public:
    virtual ~TwKeyValueObserver() = default;
    virtual void observeValueForKeyPath(const std::string& keyPath, TwObservable* object,
                                        const TwKeyValueChange& change, void* context) = 0;
};

// Anything controls can be bound to and observed at by key path: the settings model, and the
// small value stores of the dialogs that edit values of their own.
class TwObservable {
public:
    virtual ~TwObservable() = default;
    virtual TwValue valueForKeyPath(std::string_view keyPath) = 0;
    // The notifying write: the observers of the path and of every path below it are told.
    virtual void setValueForKeyPath(const TwValue& value, std::string_view keyPath) = 0;
    virtual void addObserver(TwKeyValueObserver* observer, std::string_view keyPath, unsigned options,
                             void* context = nullptr) = 0;
    virtual void removeObserver(TwKeyValueObserver* observer, std::string_view keyPath) = 0;
    virtual void willChangeValueForKey(std::string_view keyPath) = 0;
    virtual void didChangeValueForKey(std::string_view keyPath) = 0;
};

class TwObservationCenter {
public:
    using Reader = std::function<TwValue(std::string_view keyPath)>;

    TwObservationCenter(TwObservable* owner, Reader reader);
    TwObservationCenter(const TwObservationCenter&) = delete;
    TwObservationCenter& operator=(const TwObservationCenter&) = delete;

    void addObserver(TwKeyValueObserver* observer, std::string_view keyPath, unsigned options, void* context);
    // Removes the most recent registration of the observer for the key path; false if none.
    bool removeObserver(TwKeyValueObserver* observer, std::string_view keyPath);
    // Removes every registration of the observer.
    void removeObserver(TwKeyValueObserver* observer);

    std::size_t observationCount() const;
    std::size_t observationCount(const TwKeyValueObserver* observer) const;

    // Old values of the paths observed at or below keyPath, taken before a write.
    class Snapshot {
        friend class TwObservationCenter;
        std::string path;
        std::vector<std::pair<std::string, TwValue>> oldValues;
        bool skip = false;
    };
    Snapshot beforeWrite(std::string_view keyPath) const;
    void afterWrite(Snapshot&& snapshot);

    void willChange(std::string_view keyPath);
    void didChange(std::string_view keyPath);
    // Tells the observers of the path and below, all but one, that it changed (no old value).
    void didChangeForOthers(std::string_view keyPath, const TwKeyValueObserver* except);

private:
    struct Registration {
        TwKeyValueObserver* observer;
        unsigned options;
        void* context;
        bool active = true;
    };
    using RegistrationList = std::vector<std::shared_ptr<Registration>>;
    struct Bracket {
        Snapshot snapshot;
        int depth = 1;
    };

    template <typename F> void forEachObservedPath(std::string_view keyPath, F&& f) const;
    bool coveredByBracket(std::string_view keyPath) const;
    void notify(const Snapshot& snapshot, const TwKeyValueObserver* except = nullptr);

    TwObservable* m_owner;
    Reader m_read;
    std::map<std::string, RegistrationList, std::less<>> m_registrations;
    std::vector<Bracket> m_brackets;
};
