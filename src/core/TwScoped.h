// Scoped changes of the model's guard state: each is undone when the scope ends, also when it is
// left by an exception, so that no flag stays set after a failed operation.
#pragma once

#include <set>
#include <string>
#include <utility>

// Gives a variable a value for the span of a scope and puts back the one it had.
template <typename T> class TwScopedValue {
public:
    TwScopedValue(T& variable, T value)
        : m_variable(variable), m_saved(std::exchange(variable, std::move(value))) {}
    ~TwScopedValue() { m_variable = std::move(m_saved); }
    TwScopedValue(const TwScopedValue&) = delete;
    TwScopedValue& operator=(const TwScopedValue&) = delete;

private:
    T& m_variable;
    T m_saved;
};

// Holds a key in a set for the span of a scope.
class TwScopedInsert {
public:
    TwScopedInsert(std::set<std::string>& set, const std::string& key) : m_set(set), m_key(key) {
        m_set.insert(m_key);
    }
    ~TwScopedInsert() { m_set.erase(m_key); }
    TwScopedInsert(const TwScopedInsert&) = delete;
    TwScopedInsert& operator=(const TwScopedInsert&) = delete;

private:
    std::set<std::string>& m_set;
    std::string m_key;
};
