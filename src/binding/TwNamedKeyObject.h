// The record of one binding made: the control that carries it and the name it was made under
// ("enabled2" when the control had an enabled binding already).
#pragma once

#include <QObject>
#include <QPointer>

#include <string>

class TwNamedKeyObject {
public:
    TwNamedKeyObject() = default;
    TwNamedKeyObject(QObject* object, std::string name);

    const std::string& name() const { return _name; }
    // Null once the control is gone.
    QObject* object() const { return _object.data(); }

private:
    std::string _name;
    QPointer<QObject> _object;
};
