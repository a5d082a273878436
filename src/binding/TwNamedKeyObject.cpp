#include "TwNamedKeyObject.h"

TwNamedKeyObject::TwNamedKeyObject(QObject* object, std::string name)
    : _name(std::move(name)), _object(object) {}
