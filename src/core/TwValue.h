// The value tree shared by the data source and this module: null, boolean, integer, real, string,
// data, date, array and dictionary. Arrays and dictionaries are held by reference, like mutable
// containers: copying a TwValue that holds a dictionary copies the handle, not the contents, so a
// dictionary read out of the settings store is the live one. Dictionaries keep insertion order.
//
// Header-only on purpose: a data source that loads the module with dlopen needs only this header.
#pragma once

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <variant>
#include <vector>

class TwValue;
class TwDictionary;
using TwArray = std::vector<TwValue>;
using TwBytes = std::vector<std::uint8_t>;

// Seconds since 2001-01-01 00:00:00 UTC, the reference date of property lists.
struct TwDate {
    double seconds = 0;
    bool operator==(const TwDate&) const = default;
};

class TwValue {
public:
    enum class Type { Null, Boolean, Integer, Real, String, Data, Date, Array, Dictionary };

    TwValue() = default;
    TwValue(std::nullptr_t) {}
    TwValue(bool b) : m_v(b) {}
    TwValue(int i) : m_v(std::int64_t(i)) {}
    TwValue(unsigned i) : m_v(std::int64_t(i)) {}
    TwValue(long i) : m_v(std::int64_t(i)) {}
    TwValue(long long i) : m_v(std::int64_t(i)) {}
    TwValue(unsigned long i) : m_v(std::int64_t(i)) {}
    TwValue(unsigned long long i) : m_v(std::int64_t(i)) {}
    TwValue(double d) : m_v(d) {}
    TwValue(float f) : m_v(double(f)) {}
    TwValue(const char* s) : m_v(std::string(s ? s : "")) {}
    TwValue(std::string s) : m_v(std::move(s)) {}
    TwValue(std::string_view s) : m_v(std::string(s)) {}
    TwValue(TwBytes data) : m_v(std::make_shared<const TwBytes>(std::move(data))) {}
    TwValue(TwDate date) : m_v(date) {}
    TwValue(std::shared_ptr<TwArray> a) : m_v(std::move(a)) {}
    TwValue(std::shared_ptr<TwDictionary> d) : m_v(std::move(d)) {}
    TwValue(const TwValue&) = default;
    TwValue(TwValue&&) = default;
    TwValue& operator=(const TwValue&) = default;
    TwValue& operator=(TwValue&&) = default;
    ~TwValue() { releaseContainer(); }

    // A new, empty mutable container.
    static TwValue dictionary();
    static TwValue array();
    static TwValue array(std::initializer_list<TwValue> items);
    static TwValue dictionary(std::initializer_list<std::pair<std::string, TwValue>> entries);

    Type type() const { return Type(m_v.index()); }
    bool isNull() const { return type() == Type::Null; }
    bool isBoolean() const { return type() == Type::Boolean; }
    bool isInteger() const { return type() == Type::Integer; }
    bool isReal() const { return type() == Type::Real; }
    // Booleans are numbers, as on the platform the description comes from.
    bool isNumber() const { return isBoolean() || isInteger() || isReal(); }
    bool isString() const { return type() == Type::String; }
    bool isData() const { return type() == Type::Data; }
    bool isDate() const { return type() == Type::Date; }
    bool isArray() const { return type() == Type::Array; }
    bool isDictionary() const { return type() == Type::Dictionary; }
    explicit operator bool() const { return !isNull(); }

    // The live container, or null when the value is not one.
    TwDictionary* dict() const {
        auto p = std::get_if<std::shared_ptr<TwDictionary>>(&m_v);
        return p ? p->get() : nullptr;
    }
    TwArray* list() const {
        auto p = std::get_if<std::shared_ptr<TwArray>>(&m_v);
        return p ? p->get() : nullptr;
    }
    std::shared_ptr<TwDictionary> dictRef() const {
        auto p = std::get_if<std::shared_ptr<TwDictionary>>(&m_v);
        return p ? *p : nullptr;
    }
    std::shared_ptr<TwArray> listRef() const {
        auto p = std::get_if<std::shared_ptr<TwArray>>(&m_v);
        return p ? *p : nullptr;
    }
    const std::string* str() const { return std::get_if<std::string>(&m_v); }
    const TwBytes* data() const {
        auto p = std::get_if<std::shared_ptr<const TwBytes>>(&m_v);
        return p ? p->get() : nullptr;
    }
    const TwDate* date() const { return std::get_if<TwDate>(&m_v); }

    // Conversions with the platform's rules: a string converts by its leading number, anything
    // that is neither number nor string converts to zero (or false).
    double doubleValue() const;
    float floatValue() const { return float(doubleValue()); }
    std::int64_t longLongValue() const;
    int intValue() const { return int(std::uint32_t(std::uint64_t(longLongValue()))); }
    unsigned unsignedIntValue() const { return unsigned(std::uint64_t(longLongValue())); }
    bool boolValue() const;
    // The string itself, a number printed as the platform prints it, or "" for anything else.
    std::string stringValue() const;

    // Equality of the platform's isEqual: numbers by value across integer, real and boolean; a
    // number never equals a string; containers compare deeply.
    bool isEqual(const TwValue& other) const;
    bool operator==(const TwValue& other) const { return isEqual(other); }

    // A copy whose containers (at every level) are new ones.
    TwValue deepCopy() const;
    // A readable one-line rendering for logs, like the platform's description.
    std::string description() const;

private:
    // Lets go of a container held here. Containers nested thousands of levels deep (a hostile
    // model definition, a long key path) are destroyed one level at a time rather than by a
    // recursion as deep as the nesting, which would overflow a thread's stack.
    void releaseContainer() noexcept;

    std::variant<std::monostate, bool, std::int64_t, double, std::string, std::shared_ptr<const TwBytes>,
                 TwDate, std::shared_ptr<TwArray>, std::shared_ptr<TwDictionary>>
        m_v;
};

// An insertion-ordered dictionary with string keys. Lookups by string_view; large dictionaries
// get a hash index so that key-path walks stay fast.
class TwDictionary {
    friend class TwValue;

public:
    using Entry = std::pair<std::string, TwValue>;

    TwDictionary() = default;
    TwDictionary(const TwDictionary& o) : m_entries(o.m_entries) {}
    TwDictionary& operator=(const TwDictionary& o) {
        m_entries = o.m_entries;
        m_index.reset();
        return *this;
    }

    std::size_t size() const { return m_entries.size(); }
    bool empty() const { return m_entries.empty(); }
    auto begin() const { return m_entries.begin(); }
    auto end() const { return m_entries.end(); }
    const Entry& at(std::size_t i) const { return m_entries[i]; }

    bool contains(std::string_view key) const { return find(key) >= 0; }
    // The value for the key, or null.
    TwValue value(std::string_view key) const {
        auto i = find(key);
        return i < 0 ? TwValue() : m_entries[std::size_t(i)].second;
    }
    TwValue operator[](std::string_view key) const { return value(key); }
    // Sets the key, keeping its place when it exists. A null value removes the key, as the
    // platform's setValue:forKey: does on a mutable dictionary.
    void set(std::string_view key, TwValue v);
    void remove(std::string_view key);
    void clear() {
        m_entries.clear();
        m_index.reset();
    }
    std::vector<std::string> keys() const {
        std::vector<std::string> k;
        k.reserve(m_entries.size());
        for (auto& e : m_entries)
            k.push_back(e.first);
        return k;
    }
    // The merge of the data source's dictionary extension: every entry of the other dictionary
    // is set here (a shallow copy of each entry).
    void setPropertiesWith(const TwDictionary& other) {
        for (auto& [k, v] : other)
            set(k, v);
    }

    // Index of the key, or -1.
    std::ptrdiff_t find(std::string_view key) const;

private:
    struct Hash {
        using is_transparent = void;
        std::size_t operator()(std::string_view s) const { return std::hash<std::string_view>{}(s); }
    };
    using Index = std::unordered_map<std::string, std::size_t, Hash, std::equal_to<>>;
    static constexpr std::size_t kIndexFrom = 12;

    void rebuildIndex() const;

    std::vector<Entry> m_entries;
    mutable std::unique_ptr<Index> m_index;
};

// ---------------------------------------------------------------------------------------------

inline TwValue TwValue::dictionary() {
    return TwValue(std::make_shared<TwDictionary>());
}
inline TwValue TwValue::array() {
    return TwValue(std::make_shared<TwArray>());
}
inline TwValue TwValue::array(std::initializer_list<TwValue> items) {
    return TwValue(std::make_shared<TwArray>(items));
}
inline TwValue TwValue::dictionary(std::initializer_list<std::pair<std::string, TwValue>> entries) {
    auto d = std::make_shared<TwDictionary>();
    for (auto& [k, v] : entries)
        d->set(k, v);
    return TwValue(std::move(d));
}

namespace twvalue_detail {
// The leading number of a string, as the platform's string-to-number conversions read it:
// leading blanks, an optional sign, digits, an optional fraction and exponent; 0 when none.
inline double leadingDouble(const std::string& s) {
    const char* p = s.c_str();
    char* end = nullptr;
    double d = std::strtod(p, &end);
    if (end == p || !std::isfinite(d))
        return end == p ? 0.0 : d;
    return d;
}
inline std::int64_t leadingInteger(const std::string& s) {
    const char* p = s.c_str();
    char* end = nullptr;
    errno = 0;
    long long v = std::strtoll(p, &end, 10);
    if (end == p)
        return 0;
    return v;
}
} // namespace twvalue_detail

inline double TwValue::doubleValue() const {
    switch (type()) {
    case Type::Boolean:
        return std::get<bool>(m_v) ? 1.0 : 0.0;
    case Type::Integer:
        return double(std::get<std::int64_t>(m_v));
    case Type::Real:
        return std::get<double>(m_v);
    case Type::String:
        return twvalue_detail::leadingDouble(std::get<std::string>(m_v));
    default:
        return 0.0;
    }
}

inline std::int64_t TwValue::longLongValue() const {
    switch (type()) {
    case Type::Boolean:
        return std::get<bool>(m_v) ? 1 : 0;
    case Type::Integer:
        return std::get<std::int64_t>(m_v);
    case Type::Real: {
        double d = std::get<double>(m_v);
        if (!std::isfinite(d))
            return 0;
        if (d >= 9.2e18)
            return INT64_MAX;
        if (d <= -9.2e18)
            return INT64_MIN;
        return std::int64_t(d); // toward zero, as a C cast
    }
    case Type::String:
        return twvalue_detail::leadingInteger(std::get<std::string>(m_v));
    default:
        return 0;
    }
}

inline bool TwValue::boolValue() const {
    switch (type()) {
    case Type::Boolean:
        return std::get<bool>(m_v);
    case Type::Integer:
        return std::get<std::int64_t>(m_v) != 0;
    case Type::Real:
        return std::get<double>(m_v) != 0.0;
    case Type::String: {
        // The platform's rule: after blanks, an optional sign and zeros, a non-zero digit or one
        // of Y, y, T, t means true.
        const std::string& s = std::get<std::string>(m_v);
        std::size_t i = 0;
        while (i < s.size() && (s[i] == ' ' || s[i] == '\t' || s[i] == '\n'))
            ++i;
        if (i < s.size() && (s[i] == 'Y' || s[i] == 'y' || s[i] == 'T' || s[i] == 't'))
            return true;
        if (i < s.size() && (s[i] == '+' || s[i] == '-'))
            ++i;
        while (i < s.size() && s[i] == '0')
            ++i;
        return i < s.size() && s[i] >= '1' && s[i] <= '9';
    }
    default:
        return false;
    }
}

inline std::string TwValue::stringValue() const {
    switch (type()) {
    case Type::String:
        return std::get<std::string>(m_v);
    case Type::Boolean:
        return std::get<bool>(m_v) ? "1" : "0";
    case Type::Integer:
        return std::to_string(std::get<std::int64_t>(m_v));
    case Type::Real: {
        char buf[64];
        std::snprintf(buf, sizeof buf, "%.15g", std::get<double>(m_v));
        return buf;
    }
    default:
        return {};
    }
}

inline bool TwValue::isEqual(const TwValue& o) const {
    // Containers are compared from a list of pairs still to compare rather than by a recursion,
    // so that the depth of the nesting costs no stack.
    std::vector<std::pair<const TwValue*, const TwValue*>> toCompare;
    auto sameHere = [&toCompare](const TwValue& a, const TwValue& b) {
        if (a.isNumber() && b.isNumber())
            return a.isReal() || b.isReal() ? a.doubleValue() == b.doubleValue()
                                            : a.longLongValue() == b.longLongValue();
        if (a.type() != b.type())
            return false;
        switch (a.type()) {
        case Type::Null:
            return true;
        case Type::String:
            return std::get<std::string>(a.m_v) == std::get<std::string>(b.m_v);
        case Type::Data:
            return *a.data() == *b.data();
        case Type::Date:
            return *a.date() == *b.date();
        case Type::Array: {
            const TwArray* x = a.list();
            const TwArray* y = b.list();
            if (x == y)
                return true;
            if (x->size() != y->size())
                return false;
            for (std::size_t i = 0; i < x->size(); ++i)
                toCompare.push_back({&(*x)[i], &(*y)[i]});
            return true;
        }
        case Type::Dictionary: {
            const TwDictionary* x = a.dict();
            const TwDictionary* y = b.dict();
            if (x == y)
                return true;
            if (x->size() != y->size())
                return false;
            for (auto& [k, v] : *x) {
                auto j = y->find(k);
                if (j < 0)
                    return false;
                toCompare.push_back({&v, &y->at(std::size_t(j)).second});
            }
            return true;
        }
        default:
            return false;
        }
    };
    if (!sameHere(*this, o))
        return false;
    while (!toCompare.empty()) {
        auto [a, b] = toCompare.back();
        toCompare.pop_back();
        if (!sameHere(*a, *b))
            return false;
    }
    return true;
}

inline void TwValue::releaseContainer() noexcept {
    using DictRef = std::shared_ptr<TwDictionary>;
    using ListRef = std::shared_ptr<TwArray>;
    // Only the last owner takes the container apart; anyone else just lets go of a reference.
    auto takeIfLast = [](TwValue& v, auto& pending) {
        if (auto d = std::get_if<DictRef>(&v.m_v); d && d->use_count() == 1)
            pending.emplace_back(std::move(*d));
        else if (auto a = std::get_if<ListRef>(&v.m_v); a && a->use_count() == 1)
            pending.emplace_back(std::move(*a));
    };
    // The containers this one held are moved out before it goes, level by level, into a list of
    // this call's own: no recursion as deep as the nesting and no per-thread state, which a module
    // loaded with dlopen must not have (it gives the host's sanitizers a dynamic TLS block).
    std::vector<std::variant<DictRef, ListRef>> pending;
    takeIfLast(*this, pending);
    while (!pending.empty()) {
        auto next = std::move(pending.back());
        pending.pop_back();
        if (auto d = std::get_if<DictRef>(&next)) {
            for (auto& entry : (*d)->m_entries)
                takeIfLast(entry.second, pending);
        } else {
            for (auto& item : *std::get<ListRef>(next))
                takeIfLast(item, pending);
        }
        // `next` goes here, holding only values without a container of their own to free.
    }
}

inline TwValue TwValue::deepCopy() const {
    auto emptyLike = [](const TwValue& v) {
        return v.list() ? array() : v.dict() ? dictionary() : v;
    };
    TwValue root = emptyLike(*this);
    // Level by level with a list of containers still to fill, so that the depth of the nesting
    // costs no stack.
    std::vector<std::pair<const TwValue*, TwValue*>> toFill{{this, &root}};
    while (!toFill.empty()) {
        auto [from, to] = toFill.back();
        toFill.pop_back();
        if (auto a = from->list()) {
            TwArray* out = to->list();
            out->reserve(a->size());
            for (auto& v : *a)
                out->push_back(emptyLike(v));
            for (std::size_t i = 0; i < a->size(); ++i)
                if ((*a)[i].list() || (*a)[i].dict())
                    toFill.push_back({&(*a)[i], &(*out)[i]});
        } else if (auto d = from->dict()) {
            TwDictionary* out = to->dict();
            out->m_entries.reserve(d->size());
            for (auto& [k, v] : *d)
                out->m_entries.emplace_back(k, emptyLike(v));
            for (std::size_t i = 0; i < d->size(); ++i)
                if (d->at(i).second.list() || d->at(i).second.dict())
                    toFill.push_back({&d->at(i).second, &out->m_entries[i].second});
        }
    }
    return root;
}

inline std::string TwValue::description() const {
    switch (type()) {
    case Type::Null:
        return "(null)";
    case Type::Boolean:
    case Type::Integer:
    case Type::Real:
        return stringValue();
    case Type::String:
        return "\"" + std::get<std::string>(m_v) + "\"";
    case Type::Data:
        return "<" + std::to_string(data()->size()) + " bytes>";
    case Type::Date:
        return "<date " + std::to_string(date()->seconds) + ">";
    case Type::Array: {
        std::string s = "(";
        bool first = true;
        for (auto& v : *list()) {
            s += first ? "" : ", ";
            s += v.description();
            first = false;
        }
        return s + ")";
    }
    case Type::Dictionary: {
        std::string s = "{";
        bool first = true;
        for (auto& [k, v] : *dict()) {
            s += first ? "" : "; ";
            s += k + " = " + v.description();
            first = false;
        }
        return s + "}";
    }
    }
    return {};
}

inline std::ptrdiff_t TwDictionary::find(std::string_view key) const {
    if (m_entries.size() >= kIndexFrom) {
        if (!m_index)
            rebuildIndex();
        auto it = m_index->find(key);
        return it == m_index->end() ? -1 : std::ptrdiff_t(it->second);
    }
    for (std::size_t i = 0; i < m_entries.size(); ++i)
        if (m_entries[i].first == key)
            return std::ptrdiff_t(i);
    return -1;
}

inline void TwDictionary::set(std::string_view key, TwValue v) {
    if (v.isNull()) {
        remove(key);
        return;
    }
    auto i = find(key);
    if (i >= 0) {
        m_entries[std::size_t(i)].second = std::move(v);
        return;
    }
    m_entries.emplace_back(std::string(key), std::move(v));
    if (m_index)
        m_index->emplace(m_entries.back().first, m_entries.size() - 1);
}

inline void TwDictionary::remove(std::string_view key) {
    auto i = find(key);
    if (i < 0)
        return;
    m_entries.erase(m_entries.begin() + i);
    m_index.reset();
}

inline void TwDictionary::rebuildIndex() const {
    m_index = std::make_unique<Index>();
    m_index->reserve(m_entries.size() * 2);
    for (std::size_t i = 0; i < m_entries.size(); ++i)
        m_index->emplace(m_entries[i].first, i);
}
