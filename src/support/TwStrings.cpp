#include "TwStrings.h"

#include "TwBundle.h"

#include <cctype>
#include <string_view>

std::optional<std::string> TwLookupString(const TwBundle* dataSource, const std::string& key) {
    if (key.empty())
        return std::nullopt;
    std::shared_ptr<TwBundle> own;
    const TwBundle* table = dataSource;
    if (!table) {
        own = TwBundle::moduleBundle();
        table = own.get();
    }
    if (table && table->hasLocalizedString(key))
        return table->localizedStringForKey(key, key);
    return std::nullopt;
}

std::string TwLocalizedString(const TwBundle* dataSource, const std::string& key,
                              const std::string& fallback) {
    if (key.empty())
        return {};
    // A data source's bundle answers every key: one its table lacks comes back as the key itself.
    return TwLookupString(dataSource, key).value_or(dataSource ? key : fallback);
}

std::string TwLocalizedString(const TwBundle* dataSource, const std::string& key) {
    return TwLocalizedString(dataSource, key, key);
}

std::string TwLocalizedStringNoEmpty(const TwBundle* dataSource, const std::string& key) {
    std::string text = TwLocalizedString(dataSource, key);
    return text.empty() ? std::string(" ") : text;
}

namespace {
bool isOneOf(char c, std::string_view set) {
    return set.find(c) != std::string_view::npos;
}

// The length of a printf-style conversion after its '%' (flags, width, precision, length
// modifiers, then the conversion letter or '@'), or 0 when there is none.
std::size_t conversionLength(std::string_view rest) {
    std::size_t i = 0;
    while (i < rest.size() && isOneOf(rest[i], "-+#0"))
        ++i;
    while (i < rest.size() && (std::isdigit(static_cast<unsigned char>(rest[i])) || rest[i] == '.'))
        ++i;
    while (i < rest.size() && isOneOf(rest[i], "hlqLzjt"))
        ++i;
    if (i < rest.size() && isOneOf(rest[i], "@dDiuUxXfFeEgGsScC"))
        return i + 1;
    return 0;
}
} // namespace

std::string TwFormatString(const std::string& format, const std::vector<std::string>& arguments) {
    std::string out;
    out.reserve(format.size());
    std::size_t next = 0;
    auto argument = [&](std::size_t index) {
        return index < arguments.size() ? arguments[index] : std::string();
    };
    for (std::size_t i = 0; i < format.size(); ++i) {
        if (format[i] != '%' || i + 1 >= format.size()) {
            out += format[i];
            continue;
        }
        std::string_view rest(format.data() + i + 1, format.size() - i - 1);
        if (rest[0] == '%') {
            out += '%';
            ++i;
            continue;
        }
        // A numbered argument: digits, '$', then the conversion.
        std::size_t digits = 0;
        while (digits < rest.size() && std::isdigit(static_cast<unsigned char>(rest[digits])))
            ++digits;
        if (digits > 0 && digits < rest.size() && rest[digits] == '$') {
            if (std::size_t n = conversionLength(rest.substr(digits + 1))) {
                std::size_t index = std::stoul(std::string(rest.substr(0, digits)));
                if (index >= 1)
                    out += argument(index - 1);
                i += digits + 1 + n;
                continue;
            }
        }
        if (std::size_t n = conversionLength(rest)) {
            out += argument(next++);
            i += n;
            continue;
        }
        out += '%';
    }
    return out;
}
