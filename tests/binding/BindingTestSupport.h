// Shared pieces of the binding tests: a log capture, an observer that counts what the model tells
// it, a responder, and a model definition with control definitions.
#pragma once

#include "LogCapture.h"
#include "OrvaDebug.h"
#include "TwObservation.h"
#include "TwainDialogData.h"
#include "VmxUI.h"

#include <QFile>
#include <QTemporaryDir>

#include <functional>
#include <string>
#include <vector>

// Counts the notifications of one key path (the model's own writes and the controls' writes).
class WriteCounter : public TwKeyValueObserver {
public:
    WriteCounter(TwObservable& model, std::string keyPath) : m_model(model), m_keyPath(std::move(keyPath)) {
        m_model.addObserver(this, m_keyPath, kTwObserveNew);
    }
    ~WriteCounter() override { m_model.removeObserver(this, m_keyPath); }
    void observeValueForKeyPath(const std::string&, TwObservable*, const TwKeyValueChange& change,
                                void*) override {
        ++count;
        last = change.newValue;
    }
    int count = 0;
    TwValue last;

private:
    TwObservable& m_model;
    std::string m_keyPath;
};

// An owner that is no Qt object: its class name comes from the type information.
class RecordingResponder : public TwKeyValueObserver {
public:
    struct Call {
        std::string keyPath;
        TwKeyValueChange change;
    };
    void observeValueForKeyPath(const std::string& keyPath, TwObservable*, const TwKeyValueChange& change,
                                void*) override {
        calls.push_back({keyPath, change});
        if (onChange)
            onChange();
    }
    std::vector<Call> calls;
    std::function<void()> onChange;
};

// A model definition that offers control definitions only.
class ControlDefs : public TwModelDefFile {
public:
    TwValue controls = TwValue::dictionary();
    TwValue UIEnable() const override { return TwValue::dictionary(); }
    TwValue UIOptions() const override { return TwValue::dictionary(); }
    TwValue UIControl() const override { return controls; }
    TwValue FeederADF() const override { return TwValue::dictionary(); }
    TwValue FeederFlatbed() const override { return TwValue::dictionary(); }
    double getPhysicalWidth() const override { return 8.5; }
    double getMinHeight() const override { return 2.0; }
};

inline TwValue entry(const TwValue& value, const char* display) {
    return TwValue::dictionary({{"value", value}, {"display", display}});
}
