#include "TwPlist.h"

#include <plist/plist.h>

#include <algorithm>
#include <cctype>
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

// ---- Nesting before parsing ------------------------------------------------------------------------
// The plist library reads (and frees) a tree by a recursion per level, so a document nested deep
// enough overflows any thread's stack inside it. Its nesting is measured first, without recursion,
// and a document deeper than kTwPlistMaxDepth is refused as unreadable.

// The deepest nesting of <dict> and <array> in XML text. Comments, CDATA sections, processing
// instructions and declarations are skipped; "<dict/>" opens nothing.
std::size_t xmlNesting(std::string_view text) {
    std::size_t depth = 0, deepest = 0;
    auto skipPast = [&](std::size_t from, std::string_view end) {
        std::size_t at = text.find(end, from);
        return at == std::string_view::npos ? text.size() : at + end.size();
    };
    auto opensElement = [&](std::size_t at, std::string_view name) {
        if (text.compare(at, name.size(), name) != 0)
            return false;
        std::size_t after = at + name.size();
        return after < text.size() && (text[after] == '>' || text[after] == '/' ||
                                       std::isspace(static_cast<unsigned char>(text[after])));
    };
    std::size_t i = 0;
    while ((i = text.find('<', i)) != std::string_view::npos) {
        std::string_view rest = text.substr(i);
        if (rest.starts_with("<!--")) {
            i = skipPast(i + 4, "-->");
        } else if (rest.starts_with("<![CDATA[")) {
            i = skipPast(i + 9, "]]>");
        } else if (rest.starts_with("<?")) {
            i = skipPast(i + 2, "?>");
        } else if (rest.starts_with("<!")) {
            i = skipPast(i + 2, ">");
        } else if (rest.starts_with("</")) {
            if ((opensElement(i + 2, "dict") || opensElement(i + 2, "array")) && depth > 0)
                --depth;
            i = skipPast(i + 2, ">");
        } else {
            bool container = opensElement(i + 1, "dict") || opensElement(i + 1, "array");
            std::size_t end = skipPast(i + 1, ">");
            bool empty = end >= 2 && text[end - 2] == '/';
            if (container && !empty)
                deepest = std::max(deepest, ++depth);
            i = end;
        }
    }
    return deepest;
}

// The deepest nesting of containers in a binary property list ("bplist00"), following the object
// references from the top object; nothing for a document whose tables or references do not hold
// together, or whose references run in a circle.
std::optional<std::size_t> binaryNesting(std::string_view bytes) {
    constexpr std::size_t kTrailer = 32;
    if (bytes.size() < 8 + kTrailer)
        return std::nullopt;
    auto uintAt = [&](std::size_t at, std::size_t width) -> std::optional<std::uint64_t> {
        if (width == 0 || width > 8 || at > bytes.size() || bytes.size() - at < width)
            return std::nullopt;
        std::uint64_t v = 0;
        for (std::size_t k = 0; k < width; ++k)
            v = (v << 8) | static_cast<unsigned char>(bytes[at + k]);
        return v;
    };
    const std::size_t trailer = bytes.size() - kTrailer;
    const std::size_t offsetSize = static_cast<unsigned char>(bytes[trailer + 6]);
    const std::size_t refSize = static_cast<unsigned char>(bytes[trailer + 7]);
    auto count = uintAt(trailer + 8, 8), top = uintAt(trailer + 16, 8), table = uintAt(trailer + 24, 8);
    if (!count || !top || !table || *count == 0 || *top >= *count || offsetSize == 0 || offsetSize > 8 ||
        refSize == 0 || refSize > 8 || *table > trailer || (trailer - *table) / offsetSize < *count)
        return std::nullopt;
    const std::size_t objects = std::size_t(*count);

    // The objects a container refers to; none for any other object.
    struct Refs {
        bool container = false;
        std::vector<std::size_t> objects;
    };
    auto children = [&](std::size_t object) -> std::optional<Refs> {
        auto offset = uintAt(std::size_t(*table) + object * offsetSize, offsetSize);
        if (!offset || *offset >= trailer)
            return std::nullopt;
        std::size_t at = std::size_t(*offset);
        const unsigned char marker = static_cast<unsigned char>(bytes[at]);
        const unsigned kind = marker >> 4;
        if (kind != 0xA && kind != 0xC && kind != 0xD)
            return Refs{};
        std::uint64_t n = marker & 0x0F;
        ++at;
        if (n == 0x0F) {
            // The count follows as an integer object: 0x1k, then 2^k bytes.
            if (at >= trailer || (static_cast<unsigned char>(bytes[at]) >> 4) != 0x1)
                return std::nullopt;
            const std::size_t width = std::size_t(1) << (bytes[at] & 0x0F);
            auto big = uintAt(at + 1, width);
            if (!big)
                return std::nullopt;
            n = *big;
            at += 1 + width;
        }
        const std::uint64_t refs = kind == 0xD ? n * 2 : n;
        if (n > trailer || at > trailer || (trailer - at) / refSize < refs)
            return std::nullopt;
        Refs out{true, {}};
        out.objects.reserve(std::size_t(refs));
        for (std::uint64_t k = 0; k < refs; ++k) {
            auto ref = uintAt(at + std::size_t(k) * refSize, refSize);
            if (!ref || *ref >= objects)
                return std::nullopt;
            out.objects.push_back(std::size_t(*ref));
        }
        return out;
    };

    // Depth-first with a list of its own; each object's depth is worked out once.
    enum : std::uint8_t { kUnseen, kOpen, kDone };
    std::vector<std::uint8_t> state(objects, kUnseen);
    std::vector<std::size_t> depthOf(objects, 0);
    struct Frame {
        std::size_t object;
        Refs refs;
        std::size_t next = 0;
    };
    std::vector<Frame> stack;
    auto open = [&](std::size_t object) {
        auto kids = children(object);
        if (!kids)
            return false;
        state[object] = kOpen;
        stack.push_back({object, std::move(*kids)});
        return true;
    };
    if (!open(std::size_t(*top)))
        return std::nullopt;
    while (!stack.empty()) {
        // Open containers are nested in each other: past the limit the answer is known.
        if (stack.size() > kTwPlistMaxDepth)
            return stack.size();
        Frame& frame = stack.back();
        if (frame.next < frame.refs.objects.size()) {
            const std::size_t child = frame.refs.objects[frame.next++];
            if (state[child] == kOpen)
                return std::nullopt; // a circle
            if (state[child] == kUnseen && !open(child))
                return std::nullopt;
            continue;
        }
        std::size_t deepest = 0;
        for (std::size_t child : frame.refs.objects)
            deepest = std::max(deepest, depthOf[child]);
        depthOf[frame.object] = deepest + (frame.refs.container ? 1 : 0);
        state[frame.object] = kDone;
        stack.pop_back();
    }
    return depthOf[std::size_t(*top)];
}

// The plist library's tree of the bytes, or null with the reason in *error: refused before the
// library sees it when it is empty, too large or nested too deep.
plist_t parseChecked(const char* bytes, std::size_t length, std::string* error) {
    auto fail = [error](std::string why) -> plist_t {
        if (error)
            *error = std::move(why);
        return nullptr;
    };
    if (!bytes || length == 0)
        return fail("empty property list");
    if (length > std::numeric_limits<std::uint32_t>::max())
        return fail("property list too large");
    std::string_view text(bytes, length);
    std::optional<std::size_t> nesting =
        text.starts_with("bplist00") ? binaryNesting(text) : std::optional<std::size_t>(xmlNesting(text));
    if (!nesting)
        return fail("not a property list (its object table does not hold together)");
    if (*nesting > kTwPlistMaxDepth)
        return fail("nested deeper than " + std::to_string(kTwPlistMaxDepth) + " levels");
    plist_t root = nullptr;
    plist_from_memory(bytes, static_cast<std::uint32_t>(length), &root);
    if (!root)
        return fail("not a property list");
    return root;
}

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

// A container at depth d (the top is 0) is nested d + 1 deep.
bool tooDeepFor(std::size_t depth) {
    return depth >= kTwPlistMaxDepth;
}

TwValue fromNode(plist_t node, std::size_t depth) {
    if (!node)
        return {};
    const plist_type type = plist_get_node_type(node);
    // Parsed documents are checked before; this keeps the walk bounded whatever it is given.
    if ((type == PLIST_ARRAY || type == PLIST_DICT) && tooDeepFor(depth))
        return {};
    switch (type) {
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
        if (type == PLIST_STRING)
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

// The plist library writes (and frees) a tree by a recursion per level: a value nested deeper than
// kTwPlistMaxDepth is not handed to it. *tooDeep tells why nothing came back.
plist_t toNode(const TwValue& v, std::size_t depth, bool* tooDeep) {
    if ((v.isArray() || v.isDictionary()) && tooDeepFor(depth)) {
        *tooDeep = true;
        return nullptr;
    }
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
        for (auto& item : *v.list()) {
            if (plist_t n = toNode(item, depth + 1, tooDeep))
                plist_array_append_item(a, n);
            else if (*tooDeep)
                break;
        }
        if (*tooDeep) {
            plist_free(a);
            return nullptr;
        }
        return a;
    }
    case TwValue::Type::Dictionary: {
        plist_t d = plist_new_dict();
        for (auto& [k, item] : *v.dict()) {
            if (plist_t n = toNode(item, depth + 1, tooDeep))
                plist_dict_set_item(d, k.c_str(), n);
            else if (*tooDeep)
                break;
        }
        if (*tooDeep) {
            plist_free(d);
            return nullptr;
        }
        return d;
    }
    }
    return nullptr;
}

} // namespace

TwValue TwPlistParse(const char* bytes, std::size_t length, std::string* error) {
    PlistPtr root(parseChecked(bytes, length, error));
    return root ? fromNode(root.get(), 0) : TwValue();
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
    bool tooDeep = false;
    PlistPtr root(toNode(value, 0, &tooDeep));
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
    plist_t root = parseChecked(bytes.data(), bytes.size(), error);
    if (!root)
        return std::nullopt;
    if (plist_get_node_type(root) != PLIST_DICT) {
        plist_free(root);
        if (error)
            *error = "the top level is not a dictionary";
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

bool TwPlistDocument::setValue(const std::string& key, const TwValue& value) {
    bool tooDeep = false;
    if (plist_t node = toNode(value, 1, &tooDeep))
        plist_dict_set_item(m_root, key.c_str(), node);
    else if (tooDeep)
        return false;
    else if (plist_dict_get_item(m_root, key.c_str()))
        plist_dict_remove_item(m_root, key.c_str());
    return true;
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
