#include "SampleModelDef.h"

#include "TwPlist.h"

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
