// The platform's own preferences on macOS: CFPreferences for the current user and host, with the
// bundle identifier as the application domain, so the data lands where the system keeps it.
#include "TwPreferences.h"

#include <CoreFoundation/CoreFoundation.h>

#include <cstring>
#include <memory>
#include <vector>

namespace {
struct CFRelease_ {
    void operator()(CFTypeRef r) const {
        if (r)
            CFRelease(r);
    }
};
using CFHolder = std::unique_ptr<const void, CFRelease_>;

CFStringRef makeString(const std::string& s) {
    return CFStringCreateWithBytes(nullptr, reinterpret_cast<const UInt8*>(s.data()), CFIndex(s.size()),
                                   kCFStringEncodingUTF8, false);
}

std::string toStd(CFStringRef s) {
    CFIndex length = CFStringGetLength(s);
    CFIndex max = CFStringGetMaximumSizeForEncoding(length, kCFStringEncodingUTF8) + 1;
    std::string out(std::size_t(max), '\0');
    if (!CFStringGetCString(s, out.data(), max, kCFStringEncodingUTF8))
        return {};
    out.resize(std::strlen(out.c_str()));
    return out;
}

CFPropertyListRef toCF(const TwValue& v) {
    switch (v.type()) {
    case TwValue::Type::Null:
        return nullptr;
    case TwValue::Type::Boolean:
        return CFRetain(v.boolValue() ? kCFBooleanTrue : kCFBooleanFalse);
    case TwValue::Type::Integer: {
        long long i = v.longLongValue();
        return CFNumberCreate(nullptr, kCFNumberLongLongType, &i);
    }
    case TwValue::Type::Real: {
        double d = v.doubleValue();
        return CFNumberCreate(nullptr, kCFNumberDoubleType, &d);
    }
    case TwValue::Type::String:
        return makeString(*v.str());
    case TwValue::Type::Data:
        return CFDataCreate(nullptr, v.data()->data(), CFIndex(v.data()->size()));
    case TwValue::Type::Date:
        return CFDateCreate(nullptr, v.date()->seconds);
    case TwValue::Type::Array: {
        CFMutableArrayRef a = CFArrayCreateMutable(nullptr, 0, &kCFTypeArrayCallBacks);
        for (auto& item : *v.list())
            if (CFHolder cf{toCF(item)})
                CFArrayAppendValue(a, cf.get());
        return a;
    }
    case TwValue::Type::Dictionary: {
        CFMutableDictionaryRef d = CFDictionaryCreateMutable(nullptr, 0, &kCFTypeDictionaryKeyCallBacks,
                                                             &kCFTypeDictionaryValueCallBacks);
        for (auto& [key, item] : *v.dict()) {
            CFHolder k{makeString(key)};
            if (CFHolder cf{toCF(item)})
                CFDictionarySetValue(d, k.get(), cf.get());
        }
        return d;
    }
    }
    return nullptr;
}

TwValue fromCF(CFTypeRef p, int depth = 0) {
    if (!p || depth > 256)
        return {};
    CFTypeID type = CFGetTypeID(p);
    if (type == CFBooleanGetTypeID())
        return TwValue(bool(CFBooleanGetValue(static_cast<CFBooleanRef>(p))));
    if (type == CFNumberGetTypeID()) {
        auto n = static_cast<CFNumberRef>(p);
        if (CFNumberIsFloatType(n)) {
            double d = 0;
            CFNumberGetValue(n, kCFNumberDoubleType, &d);
            return TwValue(d);
        }
        long long i = 0;
        CFNumberGetValue(n, kCFNumberLongLongType, &i);
        return TwValue(i);
    }
    if (type == CFStringGetTypeID())
        return TwValue(toStd(static_cast<CFStringRef>(p)));
    if (type == CFDataGetTypeID()) {
        auto d = static_cast<CFDataRef>(p);
        const UInt8* bytes = CFDataGetBytePtr(d);
        return TwValue(TwBytes(bytes, bytes + CFDataGetLength(d)));
    }
    if (type == CFDateGetTypeID())
        return TwValue(TwDate{CFDateGetAbsoluteTime(static_cast<CFDateRef>(p))});
    if (type == CFArrayGetTypeID()) {
        auto a = static_cast<CFArrayRef>(p);
        auto out = TwValue::array();
        for (CFIndex i = 0; i < CFArrayGetCount(a); ++i)
            if (TwValue item = fromCF(CFArrayGetValueAtIndex(a, i), depth + 1); !item.isNull())
                out.list()->push_back(item);
        return out;
    }
    if (type == CFDictionaryGetTypeID()) {
        auto d = static_cast<CFDictionaryRef>(p);
        CFIndex count = CFDictionaryGetCount(d);
        std::vector<const void*> keys(std::size_t(count)), values(std::size_t(count));
        CFDictionaryGetKeysAndValues(d, keys.data(), values.data());
        auto out = TwValue::dictionary();
        for (CFIndex i = 0; i < count; ++i)
            if (CFGetTypeID(keys[std::size_t(i)]) == CFStringGetTypeID())
                out.dict()->set(toStd(static_cast<CFStringRef>(keys[std::size_t(i)])),
                                fromCF(values[std::size_t(i)], depth + 1));
        return out;
    }
    return {};
}
} // namespace

void TwPreferences::setChunkWrittenHook(void (*)()) {}

std::string TwPreferences::defaultDirectory() {
    return {};
}

TwPreferences::TwPreferences(std::string domain, std::string directory)
    : m_domain(std::move(domain)), m_directory(std::move(directory)) {}

std::string TwPreferences::filePath() const {
    return {};
}

TwValue TwPreferences::copyValue(const std::string& key) {
    if (m_domain.empty())
        return {};
    CFHolder app{makeString(m_domain)}, k{makeString(key)};
    CFHolder value{CFPreferencesCopyValue(static_cast<CFStringRef>(k.get()),
                                          static_cast<CFStringRef>(app.get()), kCFPreferencesCurrentUser,
                                          kCFPreferencesCurrentHost)};
    return fromCF(value.get());
}

void TwPreferences::setValue(const std::string& key, const TwValue& value) {
    if (m_domain.empty())
        return;
    CFHolder app{makeString(m_domain)}, k{makeString(key)}, cf{toCF(value)};
    CFPreferencesSetValue(static_cast<CFStringRef>(k.get()), cf.get(), static_cast<CFStringRef>(app.get()),
                          kCFPreferencesCurrentUser, kCFPreferencesCurrentHost);
}

void TwPreferences::updateValue(const std::string& key, Update update) {
    if (m_domain.empty() || !update)
        return;
    // The platform merges per key; the latest saved value is read first.
    CFHolder app{makeString(m_domain)};
    CFPreferencesSynchronize(static_cast<CFStringRef>(app.get()), kCFPreferencesCurrentUser,
                             kCFPreferencesCurrentHost);
    setValue(key, update(copyValue(key)));
}

bool TwPreferences::synchronize() {
    if (m_domain.empty())
        return false;
    CFHolder app{makeString(m_domain)};
    return CFPreferencesSynchronize(static_cast<CFStringRef>(app.get()), kCFPreferencesCurrentUser,
                                    kCFPreferencesCurrentHost);
}
