#include "SampleModelDef.h"

#include "TwBundle.h"
#include "TwPlist.h"

namespace {
void translateTexts(const TwValue& node, const TwDictionary& table) {
    if (TwDictionary* d = node.dict()) {
        for (const char* key : {"display", "localizedText"}) {
            const TwValue text = d->value(key);
            if (const std::string* english = text.str())
                if (TwValue translated = table.value(*english); translated.str())
                    d->set(key, translated);
        }
        for (const auto& entry : *d)
            translateTexts(entry.second, table);
    } else if (TwArray* a = node.list()) {
        for (const TwValue& item : *a)
            translateTexts(item, table);
    }
}
} // namespace

SampleModelDef SampleModelDef::fromFile(const std::string& path, std::string* error) {
    TwValue root = TwPlistReadFile(path, error);
    if (!root.isDictionary() && error && error->empty())
        *error = path + " is not a dictionary";
    return SampleModelDef(root);
}

TwValue SampleModelDef::table(const char* key) const {
    TwValue v = m_root.dict()->value(key);
    return v.isDictionary() ? v : TwValue::dictionary();
}

double SampleModelDef::getPhysicalWidth() const {
    TwValue w = m_root.dict()->value("PhysicalWidth");
    return w.isNumber() ? w.doubleValue() : FeederADF().dict()->value("MaxWidth").doubleValue();
}

double SampleModelDef::getMinHeight() const {
    TwValue h = m_root.dict()->value("MinHeight");
    return h.isNumber() ? h.doubleValue() : FeederADF().dict()->value("MinHeight").doubleValue();
}

void SampleModelDef::localize(const std::string& bundlePath) {
    const std::shared_ptr<TwBundle> bundle = TwBundle::bundleWithPath(bundlePath);
    const std::string path = bundle ? bundle->pathForResource("ModelDef", "strings") : std::string();
    if (path.empty())
        return;
    const TwValue table = TwPlistReadFile(path);
    if (const TwDictionary* d = table.dict())
        translateTexts(m_root, *d);
}
