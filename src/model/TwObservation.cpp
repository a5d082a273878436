#include "TwObservation.h"

#include <algorithm>

namespace {
// keyPath is path itself or lies below it.
bool isAtOrBelow(std::string_view keyPath, std::string_view path) {
    if (keyPath.size() < path.size() || keyPath.compare(0, path.size(), path) != 0)
        return false;
    return keyPath.size() == path.size() || keyPath[path.size()] == '.';
}
} // namespace

TwObservationCenter::TwObservationCenter(TwObservable* owner, Reader reader)
    : m_owner(owner), m_read(std::move(reader)) {}

void TwObservationCenter::addObserver(TwKeyValueObserver* observer, std::string_view keyPath,
                                      unsigned options, void* context) {
    if (!observer || keyPath.empty())
        return;
    auto reg = std::make_shared<Registration>(Registration{observer, options, context});
    auto it = m_registrations.find(keyPath);
    if (it == m_registrations.end())
        it = m_registrations.emplace(std::string(keyPath), RegistrationList{}).first;
    it->second.push_back(reg);
    if (options & kTwObserveInitial) {
        TwKeyValueChange change;
        change.isInitial = true;
        if (options & kTwObserveNew)
            change.newValue = m_read(keyPath);
        observer->observeValueForKeyPath(std::string(keyPath), m_owner, change, context);
    }
}

bool TwObservationCenter::removeObserver(TwKeyValueObserver* observer, std::string_view keyPath) {
    auto it = m_registrations.find(keyPath);
    if (it == m_registrations.end())
        return false;
    auto& list = it->second;
    for (auto r = list.rbegin(); r != list.rend(); ++r) {
        if ((*r)->observer == observer) {
            (*r)->active = false;
            list.erase(std::next(r).base());
            if (list.empty())
                m_registrations.erase(it);
            return true;
        }
    }
    return false;
}

void TwObservationCenter::removeObserver(TwKeyValueObserver* observer) {
    for (auto it = m_registrations.begin(); it != m_registrations.end();) {
        auto& list = it->second;
        for (auto& r : list)
            if (r->observer == observer)
                r->active = false;
        std::erase_if(list, [](auto& r) { return !r->active; });
        it = list.empty() ? m_registrations.erase(it) : std::next(it);
    }
}

std::size_t TwObservationCenter::observationCount() const {
    std::size_t n = 0;
    for (auto& [path, list] : m_registrations)
        n += list.size();
    return n;
}

std::size_t TwObservationCenter::observationCount(const TwKeyValueObserver* observer) const {
    std::size_t n = 0;
    for (auto& [path, list] : m_registrations)
        n += std::count_if(list.begin(), list.end(), [&](auto& r) { return r->observer == observer; });
    return n;
}

template <typename F> void TwObservationCenter::forEachObservedPath(std::string_view keyPath, F&& f) const {
    // Paths below keyPath share its text as a prefix, so they follow it in the sorted map.
    for (auto it = m_registrations.lower_bound(keyPath); it != m_registrations.end(); ++it) {
        std::string_view p = it->first;
        if (p.compare(0, keyPath.size(), keyPath) != 0)
            break;
        if (isAtOrBelow(p, keyPath))
            f(it->first, it->second);
    }
}

bool TwObservationCenter::coveredByBracket(std::string_view keyPath) const {
    return std::any_of(m_brackets.begin(), m_brackets.end(),
                       [&](const Bracket& b) { return isAtOrBelow(keyPath, b.snapshot.path); });
}

TwObservationCenter::Snapshot TwObservationCenter::beforeWrite(std::string_view keyPath) const {
    Snapshot s;
    s.path = std::string(keyPath);
    if (coveredByBracket(keyPath)) {
        s.skip = true;
        return s;
    }
    forEachObservedPath(keyPath, [&](const std::string& p, const RegistrationList& list) {
        bool wantsOld =
            std::any_of(list.begin(), list.end(), [](auto& r) { return r->options & kTwObserveOld; });
        s.oldValues.emplace_back(p, wantsOld ? m_read(p) : TwValue());
    });
    return s;
}

void TwObservationCenter::afterWrite(Snapshot&& snapshot) {
    if (!snapshot.skip)
        notify(snapshot);
}

void TwObservationCenter::willChange(std::string_view keyPath) {
    for (auto& b : m_brackets) {
        if (b.snapshot.path == keyPath) {
            ++b.depth;
            return;
        }
    }
    Bracket b;
    b.snapshot = beforeWrite(keyPath);
    // An outer bracket already covers this path; this one only counts.
    m_brackets.push_back(std::move(b));
}

void TwObservationCenter::didChange(std::string_view keyPath) {
    for (auto it = m_brackets.rbegin(); it != m_brackets.rend(); ++it) {
        if (it->snapshot.path != keyPath)
            continue;
        if (--it->depth > 0)
            return;
        Snapshot s = std::move(it->snapshot);
        m_brackets.erase(std::next(it).base());
        if (!s.skip)
            notify(s);
        return;
    }
    // A "did" with no "will": tell the observers, with no old value.
    Snapshot s;
    s.path = std::string(keyPath);
    notify(s);
}

void TwObservationCenter::didChangeForOthers(std::string_view keyPath, const TwKeyValueObserver* except) {
    Snapshot s;
    s.path = std::string(keyPath);
    notify(s, except);
}

void TwObservationCenter::notify(const Snapshot& snapshot, const TwKeyValueObserver* except) {
    // Registrations are copied first: observers may register, unregister or write while told.
    std::vector<std::pair<std::string, std::shared_ptr<Registration>>> targets;
    forEachObservedPath(snapshot.path, [&](const std::string& p, const RegistrationList& list) {
        for (auto& r : list)
            targets.emplace_back(p, r);
    });
    for (auto& [path, reg] : targets) {
        if (!reg->active || reg->observer == except)
            continue;
        TwKeyValueChange change;
        if (reg->options & kTwObserveNew)
            change.newValue = m_read(path);
        if (reg->options & kTwObserveOld) {
            for (auto& [p, v] : snapshot.oldValues)
                if (p == path) {
                    change.oldValue = v;
                    break;
                }
        }
        reg->observer->observeValueForKeyPath(path, m_owner, change, reg->context);
    }
}
