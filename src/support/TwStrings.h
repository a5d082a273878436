// The texts of the string tables ("IDS_..." keys) and the placeholders they carry. Every part of
// the module looks texts up and fills formats through these functions.
#pragma once

#include <optional>
#include <string>
#include <vector>

class TwBundle;

// The text of a key: the data source's table when it holds the key (an empty text too: a data
// source may blank a text on purpose), else this module's own table, else nothing.
std::optional<std::string> TwLookupString(const TwBundle* dataSource, const std::string& key);
// The text, or the fallback when no table holds the key. An empty key gives an empty text.
std::string TwLocalizedString(const TwBundle* dataSource, const std::string& key,
                              const std::string& fallback);
// The text, or the key itself.
std::string TwLocalizedString(const TwBundle* dataSource, const std::string& key);
// The text with an empty one turned into a single blank, so that a button never has no title.
std::string TwLocalizedStringNoEmpty(const TwBundle* dataSource, const std::string& key);

// Fills a string-table format: "%@" and the printf conversions ("%d", "%s", "%ld", "%u" ...) take
// the next argument as text, "%1$@" / "%2$d" a numbered one, "%%" is a percent sign. A missing
// argument leaves nothing; anything else is copied as it stands.
std::string TwFormatString(const std::string& format, const std::vector<std::string>& arguments);
