// The simulated scanner family's model definition, read from the bundle's ModelDef.plist.
#pragma once

#include "VmxUI.h"

#include <string>

class SampleModelDef final : public TwModelDefFile {
public:
    // A definition with empty tables when the file is missing or unreadable (reported in *error).
    static SampleModelDef fromFile(const std::string& path, std::string* error);
    explicit SampleModelDef(TwValue root) : m_root(root.isDictionary() ? root : TwValue::dictionary()) {}

    const TwValue& root() const { return m_root; }
    // The choice lists' texts ("display", and the tabs' "localizedText") in the user's language:
    // each text found in the bundle's ModelDef.strings (English text -> text), taken from the
    // language folder its string tables come from. A bundle without one leaves them as they are.
    void localize(const std::string& bundlePath);

    TwValue UIEnable() const override { return table("UIEnable"); }
    TwValue UIOptions() const override { return table("UIOptions"); }
    TwValue UIControl() const override { return table("UIControl"); }
    TwValue FeederADF() const override { return table("FeederADF"); }
    TwValue FeederFlatbed() const override { return table("FeederFlatbed"); }
    double getPhysicalWidth() const override;
    double getMinHeight() const override;

private:
    TwValue table(const char* key) const;
    TwValue m_root;
};
