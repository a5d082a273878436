// The texts of the string tables ("IDS_..." keys) and the placeholders they carry. Every part of
// the module looks texts up and fills formats through these functions.
#pragma once

#include <optional>
#include <string>
#include <vector>

class TwBundle;

// The text of a key in the one table that answers: the data source's when there is a data source
// bundle, this module's own only without one. An empty text is a text (a data source may blank a
// text on purpose); nothing when that table lacks the key.
std::optional<std::string> TwLookupString(const TwBundle* dataSource, const std::string& key);
// The text. A key the table lacks gives the key itself with a data source bundle (the data
// source's strings always win), the fallback without one. An empty key gives an empty text.
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
