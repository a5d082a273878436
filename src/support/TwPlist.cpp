#include "TwPlist.h"

#include <plist/plist.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <limits>
#include <memory>

namespace {

struct PlistDeleter {
    void operator()(void* p) const { plist_free(p); }
};
using PlistPtr = std::unique_ptr<void, PlistDeleter>;

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
        plist_dict_iter it = nullptr;
        plist_dict_new_iter(node, &it);
        for (;;) {
            char* key = nullptr;
            plist_t value = nullptr;
            plist_dict_next_item(node, it, &key, &value);
            if (!key)
                break;
            out.dict()->set(key, fromNode(value, depth + 1));
            std::free(key);
        }
        std::free(it);
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
