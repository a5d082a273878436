#include "TwPlist.h"

#include <plist/plist.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>
#include <string_view>

namespace {

struct PlistDeleter {
    void operator()(void* p) const { plist_free(p); }
};
using PlistPtr = std::unique_ptr<void, PlistDeleter>;

// Calls f(key, value) for every entry of a dictionary node, in order.
template <typename F> void forEachDictItem(plist_t dict, F&& f) {
    plist_dict_iter it = nullptr;
    plist_dict_new_iter(dict, &it);
    for (;;) {
        char* key = nullptr;
        plist_t value = nullptr;
        plist_dict_next_item(dict, it, &key, &value);
        if (!key)
            break;
        f(static_cast<const char*>(key), value);
        std::free(key);
    }
    std::free(it);
}

TwValue fromNode(plist_t node, int depth) {
    // Property lists from outside are data: a pathological nesting must not exhaust the stack.
    if (!node || depth > 256)
        return {};
    switch (plist_get_node_type(node)) {
    case PLIST_BOOLEAN: {
        std::uint8_t b = 0;
        plist_get_bool_val(node, &b);
        return TwValue(b != 0);
    }
    case PLIST_UINT: {
        // libplist keeps integers in 64 unsigned bits; negative numbers come back two's complement.
        std::uint64_t u = 0;
        plist_get_uint_val(node, &u);
        return TwValue(static_cast<long long>(u));
    }
    case PLIST_REAL: {
        double d = 0;
        plist_get_real_val(node, &d);
        return TwValue(d);
    }
    case PLIST_STRING:
    case PLIST_KEY: {
        char* s = nullptr;
        if (plist_get_node_type(node) == PLIST_STRING)
            plist_get_string_val(node, &s);
        else
            plist_get_key_val(node, &s);
        TwValue v(s ? s : "");
        std::free(s);
        return v;
    }
    case PLIST_DATA: {
        char* bytes = nullptr;
        std::uint64_t length = 0;
        plist_get_data_val(node, &bytes, &length);
        TwBytes data(bytes, bytes + length);
        std::free(bytes);
        return TwValue(std::move(data));
    }
    case PLIST_DATE: {
        std::int32_t sec = 0, usec = 0;
        plist_get_date_val(node, &sec, &usec);
        return TwValue(TwDate{sec + usec / 1e6});
    }
    case PLIST_ARRAY: {
        auto out = TwValue::array();
        std::uint32_t n = plist_array_get_size(node);
        out.list()->reserve(n);
        for (std::uint32_t i = 0; i < n; ++i) {
            TwValue v = fromNode(plist_array_get_item(node, i), depth + 1);
            if (!v.isNull())
                out.list()->push_back(std::move(v));
        }
        return out;
    }
    case PLIST_DICT: {
        auto out = TwValue::dictionary();
        forEachDictItem(
            node, [&](const char* key, plist_t value) { out.dict()->set(key, fromNode(value, depth + 1)); });
        return out;
    }
    default:
        return {};
    }
}

plist_t toNode(const TwValue& v) {
    switch (v.type()) {
    case TwValue::Type::Null:
        return nullptr;
    case TwValue::Type::Boolean:
        return plist_new_bool(v.boolValue());
    case TwValue::Type::Integer:
        return plist_new_uint(static_cast<std::uint64_t>(v.longLongValue()));
    case TwValue::Type::Real:
        return plist_new_real(v.doubleValue());
    case TwValue::Type::String:
        return plist_new_string(v.str()->c_str());
    case TwValue::Type::Data:
        return plist_new_data(reinterpret_cast<const char*>(v.data()->data()), v.data()->size());
    case TwValue::Type::Date: {
        double s = v.date()->seconds;
        auto sec = static_cast<std::int32_t>(s);
        return plist_new_date(sec, static_cast<std::int32_t>((s - sec) * 1e6));
    }
    case TwValue::Type::Array: {
        plist_t a = plist_new_array();
        for (auto& item : *v.list())
            if (plist_t n = toNode(item))
                plist_array_append_item(a, n);
        return a;
    }
    case TwValue::Type::Dictionary: {
        plist_t d = plist_new_dict();
        for (auto& [k, item] : *v.dict())
            if (plist_t n = toNode(item))
                plist_dict_set_item(d, k.c_str(), n);
        return d;
    }
    }
    return nullptr;
}

} // namespace

TwValue TwPlistParse(const char* bytes, std::size_t length, std::string* error) {
    if (!bytes || length == 0 || length > std::numeric_limits<std::uint32_t>::max()) {
        if (error)
            *error = length == 0 ? "empty property list" : "property list too large";
        return {};
    }
    plist_t root = nullptr;
    plist_from_memory(bytes, static_cast<std::uint32_t>(length), &root);
    PlistPtr owner(root);
    if (!root) {
        if (error)
            *error = "not a property list";
        return {};
    }
    return fromNode(root, 0);
}

TwValue TwPlistReadFile(const std::string& path, std::string* error) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        if (error)
            *error = "cannot open " + path;
        return {};
    }
    std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    return TwPlistParse(bytes.data(), bytes.size(), error);
}

std::string TwPlistToXml(const TwValue& value) {
    PlistPtr root(toNode(value));
    if (!root)
        return {};
    char* xml = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(root.get(), &xml, &length);
    std::string out(xml ? xml : "", length);
    plist_to_xml_free(xml);
    return out;
}

// ---- Documents -------------------------------------------------------------------------------------

namespace {
std::string xmlOf(plist_t node) {
    char* xml = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(node, &xml, &length);
    std::string out(xml ? xml : "", length);
    plist_to_xml_free(xml);
    return out;
}
} // namespace

TwPlistDocument::TwPlistDocument() : m_root(plist_new_dict()) {}

TwPlistDocument::TwPlistDocument(void* root) : m_root(root) {}

TwPlistDocument::~TwPlistDocument() {
    if (m_root)
        plist_free(m_root);
}

TwPlistDocument::TwPlistDocument(TwPlistDocument&& other) noexcept : m_root(other.m_root) {
    other.m_root = plist_new_dict();
}

TwPlistDocument& TwPlistDocument::operator=(TwPlistDocument&& other) noexcept {
    std::swap(m_root, other.m_root);
    return *this;
}

std::optional<TwPlistDocument> TwPlistDocument::parse(const std::string& bytes, std::string* error) {
    if (bytes.empty() || bytes.size() > std::numeric_limits<std::uint32_t>::max()) {
        if (error)
            *error = bytes.empty() ? "empty property list" : "property list too large";
        return std::nullopt;
    }
    plist_t root = nullptr;
    plist_from_memory(bytes.data(), static_cast<std::uint32_t>(bytes.size()), &root);
    if (!root || plist_get_node_type(root) != PLIST_DICT) {
        if (root)
            plist_free(root);
        if (error)
            *error = root ? "the top level is not a dictionary" : "not a property list";
        return std::nullopt;
    }
    return TwPlistDocument(root);
}

std::optional<TwPlistDocument> TwPlistDocument::readFile(const std::string& path, std::string* error) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        if (error)
            *error = "cannot open " + path;
        return std::nullopt;
    }
    return parse(std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>()), error);
}

std::vector<std::string> TwPlistDocument::keys() const {
    std::vector<std::string> out;
    forEachDictItem(m_root, [&](const char* key, plist_t) { out.emplace_back(key); });
    return out;
}

TwValue TwPlistDocument::value(const std::string& key) const {
    return fromNode(plist_dict_get_item(m_root, key.c_str()), 1);
}

TwValue TwPlistDocument::toValue() const {
    return fromNode(m_root, 0);
}

void TwPlistDocument::setValue(const std::string& key, const TwValue& value) {
    if (plist_t node = toNode(value))
        plist_dict_set_item(m_root, key.c_str(), node);
    else if (plist_dict_get_item(m_root, key.c_str()))
        plist_dict_remove_item(m_root, key.c_str());
}

std::string TwPlistDocument::toXml() const {
    return xmlOf(m_root);
}

namespace {
// The children of a container in order (a dictionary's as key, value pairs).
std::vector<std::pair<std::string, plist_t>> childrenOf(plist_t node) {
    std::vector<std::pair<std::string, plist_t>> out;
    if (plist_get_node_type(node) == PLIST_ARRAY) {
        std::uint32_t n = plist_array_get_size(node);
        for (std::uint32_t i = 0; i < n; ++i)
            out.emplace_back(std::string(), plist_array_get_item(node, i));
    } else if (plist_get_node_type(node) == PLIST_DICT) {
        forEachDictItem(node, [&](const char* key, plist_t value) { out.emplace_back(key, value); });
    }
    return out;
}

// Compared level by level with a list of its own, not the stack: a value from another component
// may be nested to any depth.
bool sameTree(plist_t a, plist_t b) {
    std::vector<std::pair<plist_t, plist_t>> pending{{a, b}};
    while (!pending.empty()) {
        auto [x, y] = pending.back();
        pending.pop_back();
        if (!x || !y) {
            if (x != y)
                return false;
            continue;
        }
        plist_type type = plist_get_node_type(x);
        if (type != plist_get_node_type(y))
            return false;
        if (type == PLIST_STRING) {
            // With their lengths: a string may hold characters that C strings end at.
            std::uint64_t nx = 0, ny = 0;
            const char* sx = plist_get_string_ptr(x, &nx);
            const char* sy = plist_get_string_ptr(y, &ny);
            if (std::string_view(sx ? sx : "", nx) != std::string_view(sy ? sy : "", ny))
                return false;
            continue;
        }
        if (type != PLIST_ARRAY && type != PLIST_DICT) {
            if (!plist_compare_node_value(x, y))
                return false;
            continue;
        }
        auto cx = childrenOf(x), cy = childrenOf(y);
        if (cx.size() != cy.size())
            return false;
        for (std::size_t i = 0; i < cx.size(); ++i) {
            if (cx[i].first != cy[i].first)
                return false;
            pending.emplace_back(cx[i].second, cy[i].second);
        }
    }
    return true;
}
} // namespace

bool TwPlistDocument::sameValue(const std::string& key, const TwPlistDocument& other) const {
    return sameTree(plist_dict_get_item(m_root, key.c_str()), plist_dict_get_item(other.m_root, key.c_str()));
}
