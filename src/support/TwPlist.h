// Property lists (XML or binary) to and from the value tree, through libplist.
#pragma once

#include "TwValue.h"

#include <string>

// The value of the property list in the buffer, or null with the reason in *error.
TwValue TwPlistParse(const char* bytes, std::size_t length, std::string* error = nullptr);
TwValue TwPlistReadFile(const std::string& path, std::string* error = nullptr);
// XML text of the value; containers, numbers, strings, data and dates. Null values are left out.
std::string TwPlistToXml(const TwValue& value);
