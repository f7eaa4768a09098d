// What all fields have in common, and those of one value.

#include "Runtime.h"
#include "ValueText.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/FieldType.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/Route.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFInt32.h>
#include <Orvane/SFString.h>
#include <algorithm>

namespace Orvane {

// What all fields have in common.

Field::Field(Node* node, NodePartDesc* desc)
    : _desc(desc)
    , _node(node)
{
}

Field::~Field()
{
    delete _inSlot;
    delete _outSlot;
}

const char* Field::name() const
{
    return _desc->name.c_str();
}

const std::string& Field::dataTypeName() const
{
    return _desc->dataTypeName();
}

NodePartType Field::partType() const
{
    return _desc->partType;
}

const std::string& Field::fieldTypeName() const
{
    return dataTypeName();
}

void Field::setValueByStr(const double& time, const char* text)
{
    std::string error;
    if (parseValue(text, error))
        processValueChange(time, EXTERNAL_CT);
}

void Field::processValueChange(const double& time, CallerType)
{
    if (_marks) // a ring of routes ends where it began
        return;
    _marks = 1;
    if (_inSlot)
        _inSlot->processEventSubject().fire(time, _inSlot);
    if (_outSlot) {
        _outSlot->processEventSubject().fire(time, _outSlot);
        for (const Route* route : std::vector<Route*>(_outSlot->begin(), _outSlot->end())) {
            Field* target = route->inSlot()->field();
            target->assignValue(*this);
            target->processValueChange(time, EVENT_CT);
        }
    }
    _marks = 0;
}

unsigned int Field::inRouteCount(bool scene, bool) const
{
    return scene && _inSlot ? static_cast<unsigned int>(_inSlot->end() - _inSlot->begin()) : 0;
}

unsigned int Field::outRouteCount(bool scene, bool) const
{
    return scene && _outSlot ? static_cast<unsigned int>(_outSlot->end() - _outSlot->begin()) : 0;
}

EventOutSlot* Field::getOutSlot(bool create, bool internal)
{
    if (create)
        createOutSlot(internal);
    return _outSlot;
}

void Field::createInSlot(bool)
{
    if (!_inSlot)
        _inSlot = new EventInSlot(this);
}

void Field::createOutSlot(bool)
{
    if (!_outSlot)
        _outSlot = new EventOutSlot(this);
}

const std::string& FieldType::dataTypeName(NodePartDataType type)
{
    static const char* const kinds[] = {"Bool",     "Color",    "ColorRGBA", "Double",   "Float",    "Image",
                                        "Int32",    "Matrix3d", "Matrix3f",  "Matrix4d", "Matrix4f", "Node",
                                        "Rotation", "String",   "Time",      "Vec2d",    "Vec2f",    "Vec3d",
                                        "Vec3f",    "Vec4d",    "Vec4f",     "Own1",     "Own2",     "Own3"};
    static const std::vector<std::string> names = [] {
        std::vector<std::string> all{""};
        for (const char* kind : kinds) {
            all.push_back(std::string("SF") + kind);
            all.push_back(std::string("MF") + kind);
        }
        return all;
    }();
    return type > 0 && type < static_cast<int>(names.size()) ? names[static_cast<std::size_t>(type)]
                                                             : names[0];
}

// One value.

template <class T, int Kind>
XField<T, Kind>::XField(Node* node, NodePartDesc* desc)
    : Field(node, desc)
{
}

template <class T, int Kind>
XField<T, Kind>::~XField() = default;

template <class T, int Kind>
std::string XField<T, Kind>::valueToString() const
{
    std::string text;
    put(text, _value);
    return text;
}

template <class T, int Kind>
int XField<T, Kind>::cardinality() const
{
    return 0;
}

template <class T, int Kind>
unsigned int XField<T, Kind>::size() const
{
    return 1;
}

template <class T, int Kind>
void XField<T, Kind>::clear()
{
}

template <class T, int Kind>
bool XField<T, Kind>::parseValue(std::string_view text, std::string& error)
{
    T value{};
    if (take(text, value) && std::all_of(text.begin(), text.end(), [](char c) { return c == ' '; })) {
        _value = value;
        return true;
    }
    error = "not a value of " + dataTypeName();
    return false;
}

template <class T, int Kind>
void XField<T, Kind>::assignValue(const Field& other)
{
    _value = static_cast<const XField&>(other)._value;
}

template <class T, int Kind>
bool XField<T, Kind>::hasValueOf(const Field& other) const
{
    return _value == static_cast<const XField&>(other)._value;
}

template <class T, int Kind>
void XField<T, Kind>::setValue(const double& time, const T& value, CallerType caller)
{
    _value = value;
    processValueChange(time, caller);
}

template class XField<bool, 0>;
template class XField<int, 0>;
template class XField<float, 0>;

SFBool::SFBool(Node* node, NodePartDesc* desc)
    : XField(node, desc)
{
}

SFBool::~SFBool() = default;

NodePartDataType SFBool::dataType() const
{
    return SFBOOL_DT;
}

SFInt32::SFInt32(Node* node, NodePartDesc* desc)
    : XField(node, desc)
{
}

SFInt32::~SFInt32() = default;

NodePartDataType SFInt32::dataType() const
{
    return SFINT32_DT;
}

SFFloat::SFFloat(Node* node, NodePartDesc* desc)
    : XField(node, desc)
{
}

SFFloat::~SFFloat() = default;

NodePartDataType SFFloat::dataType() const
{
    return SFFLOAT_DT;
}

SFString::SFString(Node* node, NodePartDesc* desc)
    : Field(node, desc)
{
}

SFString::~SFString() = default;

std::string SFString::valueToString() const
{
    return _value;
}

int SFString::cardinality() const
{
    return 0;
}

unsigned int SFString::size() const
{
    return 1;
}

void SFString::clear()
{
}

bool SFString::parseValue(std::string_view text, std::string&)
{
    _value = text;
    return true;
}

void SFString::assignValue(const Field& other)
{
    _value = static_cast<const SFString&>(other)._value;
}

bool SFString::hasValueOf(const Field& other) const
{
    return _value == static_cast<const SFString&>(other)._value;
}

NodePartDataType SFString::dataType() const
{
    return SFSTRING_DT;
}

} // namespace Orvane
