// Property lists (XML or binary) to and from the value tree, through libplist.
#pragma once

#include "TwValue.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

// The deepest nesting of arrays and dictionaries read or written. The plist library reads, writes
// and frees its trees by a recursion per level; a document nested deeper is refused unread, as
// an unreadable one is, and a value nested deeper is not written. (The library takes about 100
// bytes of stack a level: 512 levels stay within a tenth of the smallest thread stacks in use.)
inline constexpr std::size_t kTwPlistMaxDepth = 512;

// The value of the property list in the buffer, or null with the reason in *error.
TwValue TwPlistParse(const char* bytes, std::size_t length, std::string* error = nullptr);
TwValue TwPlistReadFile(const std::string& path, std::string* error = nullptr);
// XML text of the value; containers, numbers, strings, data and dates. Null values are left out.
// Empty for a value nested deeper than kTwPlistMaxDepth.
std::string TwPlistToXml(const TwValue& value);

// A property list whose top level is a dictionary, kept as the plist library holds it: a key that
// is only read and written back keeps every type, value and level the library gave it (unsigned
// 64-bit numbers, any depth), because it never passes through the value tree.
class TwPlistDocument {
public:
    // An empty dictionary.
    TwPlistDocument();
    ~TwPlistDocument();
    TwPlistDocument(TwPlistDocument&&) noexcept;
    TwPlistDocument& operator=(TwPlistDocument&&) noexcept;

    // The file's document, or nothing (the reason in *error) when it is no property list or its top
    // level is no dictionary.
    static std::optional<TwPlistDocument> readFile(const std::string& path, std::string* error = nullptr);
    static std::optional<TwPlistDocument> parse(const std::string& bytes, std::string* error = nullptr);

    std::vector<std::string> keys() const;
    // The key's value in the value tree (null for a missing key).
    TwValue value(const std::string& key) const;
    // The whole document in the value tree.
    TwValue toValue() const;
    // Replaces the key's value; null removes the key. False, with the document unchanged, for a
    // value nested deeper than kTwPlistMaxDepth.
    bool setValue(const std::string& key, const TwValue& value);
    // XML text of the document.
    std::string toXml() const;
    // Whether the key holds the same value here and in the other document: the same types, the
    // same values at every level, the same keys in the same order. Two missing keys are the same.
    bool sameValue(const std::string& key, const TwPlistDocument& other) const;

private:
    explicit TwPlistDocument(void* root);
    void* m_root;
};
