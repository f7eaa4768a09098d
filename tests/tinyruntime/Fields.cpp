// Fields and their templates.

#include "Runtime.h"
#include "ValueText.h"
#include <Orvane/FieldType.h>
#include <algorithm>

namespace Orvane {

namespace {

const std::string TypeNames[] = {
    "",           "SFBool",      "MFBool",      "SFColor",     "MFColor",     "SFColorRGBA", "MFColorRGBA",
    "SFDouble",   "MFDouble",    "SFFloat",     "MFFloat",     "SFImage",     "MFImage",     "SFInt32",
    "MFInt32",    "SFMatrix3d",  "MFMatrix3d",  "SFMatrix3f",  "MFMatrix3f",  "SFMatrix4d",  "MFMatrix4d",
    "SFMatrix4f", "MFMatrix4f",  "SFNode",      "MFNode",      "SFRotation",  "MFRotation",  "SFString",
    "MFString",   "SFTime",      "MFTime",      "SFVec2d",     "MFVec2d",     "SFVec2f",     "MFVec2f",
    "SFVec3d",    "MFVec3d",     "SFVec3f",     "MFVec3f",     "SFVec4d",     "MFVec4d",     "SFVec4f",
    "MFVec4f",    "SFReserved1", "MFReserved1", "SFReserved2", "MFReserved2", "SFReserved3", "MFReserved3"};
const int TypeCount = 48;

/// The place in front of which a new value goes.
template <class List>
auto placeOf(List& list, int index)
{
    return list.begin() + std::clamp(index, 0, static_cast<int>(list.size()));
}

template <class List>
bool holds(const List& list, int index)
{
    return index >= 0 && index < static_cast<int>(list.size());
}

} // namespace

const std::string& FieldType::dataTypeName(NodePartDataType type)
{
    return type >= 1 && type <= TypeCount ? TypeNames[type] : TypeNames[0];
}

NodePartDataType FieldType::dataType(const std::string& name)
{
    for (int i = 1; i <= TypeCount; ++i) {
        if (TypeNames[i] == name)
            return static_cast<NodePartDataType>(i);
    }
    return NO_DT;
}

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
    return _desc ? _desc->name.c_str() : "";
}

const std::string& Field::dataTypeName() const
{
    return FieldType::dataTypeName(dataType());
}

NodePartType Field::partType() const
{
    return _desc ? _desc->partType : NO_PART;
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

void Field::processValueChange(const double& time, CallerType caller)
{
    Tiny::fieldWrites().push_back({this, time, caller});
    // A loop of routes ends where it began.
    if (_marks)
        return;
    _marks = 1;
    if (_inSlot)
        _inSlot->processEventSubject().fire(time, _inSlot);
    if (_outSlot) {
        _outSlot->processEventSubject().fire(time, _outSlot);
        const std::vector<Route*> routes(_outSlot->begin(), _outSlot->end());
        for (Route* route : routes) {
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
    return Tiny::text::write(_value);
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
    if (!Tiny::text::read(text, value)) {
        error = "not a value of " + dataTypeName();
        return false;
    }
    _value = value;
    return true;
}

template <class T, int Kind>
void XField<T, Kind>::assignValue(const Field& other)
{
    if (const auto* same = dynamic_cast<const XField*>(&other))
        _value = same->_value;
}

template <class T, int Kind>
bool XField<T, Kind>::hasValueOf(const Field& other) const
{
    const auto* same = dynamic_cast<const XField*>(&other);
    return same && same->_value == _value;
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

// Many plain values.

template <class T, int Kind>
MVField<T, Kind>::MVField(Node* node, NodePartDesc* desc)
    : Field(node, desc)
{
}

template <class T, int Kind>
MVField<T, Kind>::~MVField() = default;

template <class T, int Kind>
std::string MVField<T, Kind>::valueToString() const
{
    std::string result;
    for (const T& value : _values)
        result += (result.empty() ? "" : ", ") + Tiny::text::write(value);
    return result;
}

template <class T, int Kind>
int MVField<T, Kind>::cardinality() const
{
    return 1;
}

template <class T, int Kind>
unsigned int MVField<T, Kind>::size() const
{
    return static_cast<unsigned int>(_values.size());
}

template <class T, int Kind>
void MVField<T, Kind>::clear()
{
    _values.clear();
}

template <class T, int Kind>
bool MVField<T, Kind>::parseValue(std::string_view text, std::string& error)
{
    std::vector<T> values;
    while (!Tiny::text::trimmed(text).empty()) {
        T value{};
        if (!Tiny::text::read(Tiny::text::nextItem(text), value)) {
            error = "not a value of " + dataTypeName();
            return false;
        }
        values.push_back(value);
    }
    _values = std::move(values);
    return true;
}

template <class T, int Kind>
void MVField<T, Kind>::assignValue(const Field& other)
{
    if (const auto* same = dynamic_cast<const MVField*>(&other))
        _values = same->_values;
}

template <class T, int Kind>
bool MVField<T, Kind>::hasValueOf(const Field& other) const
{
    const auto* same = dynamic_cast<const MVField*>(&other);
    return same && same->valueToString() == valueToString();
}

template <class T, int Kind>
T* MVField<T, Kind>::addValue(const T& value)
{
    return insertValue(static_cast<int>(_values.size()), value);
}

template <class T, int Kind>
T* MVField<T, Kind>::insertValue(int index, const T& value)
{
    const auto place = _values.insert(placeOf(_values, index), value) - _values.begin();
    processValueChange(0.0, EXTERNAL_CT);
    return &_values[static_cast<std::size_t>(place)];
}

template <class T, int Kind>
void MVField<T, Kind>::removeValueByIndex(int index)
{
    if (!holds(_values, index))
        return;
    _values.erase(placeOf(_values, index));
    processValueChange(0.0, EXTERNAL_CT);
}

template <class T, int Kind>
void MVField<T, Kind>::setElem(int index, const T& value)
{
    if (!holds(_values, index))
        return;
    _values[static_cast<std::size_t>(index)] = value;
    processValueChange(0.0, EXTERNAL_CT);
}

template class MVField<int, 0>;
template class MVField<float, 0>;
template class MVField<double, 0>;
template class MVField<osg::Color3f, 0>;
template class MVField<osg::Color4f, 0>;
template class MVField<osg::Vec2f, 0>;
template class MVField<osg::Vec3f, 0>;
template class MVField<osg::Vec4f, 0>;
template class MVField<osg::Vec2d, 0>;
template class MVField<osg::Vec3d, 0>;
template class MVField<osg::Vec4d, 0>;
template class MVField<Rotation, 0>;

// Many values that are objects.

template <class T, int Kind>
MLField<T, Kind>::MLField(Node* node, NodePartDesc* desc)
    : Field(node, desc)
{
}

template <class T, int Kind>
MLField<T, Kind>::~MLField() = default;

template <class T, int Kind>
std::string MLField<T, Kind>::valueToString() const
{
    std::string result;
    for (const Cell& cell : _values)
        result += (result.empty() ? "" : ", ") + Tiny::text::write(cell.value);
    return result;
}

template <class T, int Kind>
int MLField<T, Kind>::cardinality() const
{
    return 1;
}

template <class T, int Kind>
unsigned int MLField<T, Kind>::size() const
{
    return static_cast<unsigned int>(_values.size());
}

template <class T, int Kind>
void MLField<T, Kind>::clear()
{
    _values.clear();
}

template <class T, int Kind>
bool MLField<T, Kind>::parseValue(std::string_view text, std::string& error)
{
    std::vector<Cell> values;
    while (!Tiny::text::trimmed(text).empty()) {
        Cell cell{};
        if (!Tiny::text::read(Tiny::text::nextItem(text), cell.value)) {
            error = "not a value of " + dataTypeName();
            return false;
        }
        values.push_back(cell);
    }
    _values = std::move(values);
    return true;
}

template <class T, int Kind>
void MLField<T, Kind>::assignValue(const Field& other)
{
    if (const auto* same = dynamic_cast<const MLField*>(&other))
        _values = same->_values;
}

template <class T, int Kind>
bool MLField<T, Kind>::hasValueOf(const Field& other) const
{
    const auto* same = dynamic_cast<const MLField*>(&other);
    return same && same->valueToString() == valueToString();
}

template <class T, int Kind>
T* MLField<T, Kind>::addValue(const T& value)
{
    return insertValue(static_cast<int>(_values.size()), value);
}

template <class T, int Kind>
T* MLField<T, Kind>::insertValue(int index, const T& value)
{
    const auto place = _values.insert(placeOf(_values, index), Cell{value}) - _values.begin();
    processValueChange(0.0, EXTERNAL_CT);
    return &_values[static_cast<std::size_t>(place)].value;
}

template <class T, int Kind>
void MLField<T, Kind>::removeValueByIndex(int index)
{
    if (!holds(_values, index))
        return;
    _values.erase(placeOf(_values, index));
    processValueChange(0.0, EXTERNAL_CT);
}

template <class T, int Kind>
void MLField<T, Kind>::setElem(int index, const T& value)
{
    if (!holds(_values, index))
        return;
    _values[static_cast<std::size_t>(index)].value = value;
    processValueChange(0.0, EXTERNAL_CT);
}

template class MLField<bool, 0>;
template class MLField<std::string, 0>;

#define TINY_FIELD(Class, Base, DataType)                                                                    \
    Class::Class(Node* node, NodePartDesc* desc)                                                             \
        : Base(node, desc)                                                                                   \
    {                                                                                                        \
    }                                                                                                        \
    Class::~Class() = default;                                                                               \
    NodePartDataType Class::dataType() const                                                                 \
    {                                                                                                        \
        return DataType;                                                                                     \
    }

TINY_FIELD(SFBool, XField, SFBOOL_DT)
TINY_FIELD(SFInt32, XField, SFINT32_DT)
TINY_FIELD(SFFloat, XField, SFFLOAT_DT)
TINY_FIELD(MFInt32, MVField, MFINT32_DT)
TINY_FIELD(MFFloat, MVField, MFFLOAT_DT)
TINY_FIELD(MFDouble, MVField, MFDOUBLE_DT)
TINY_FIELD(MFColor, MVField, MFCOLOR_DT)
TINY_FIELD(MFColorRGBA, MVField, MFCOLORRGBA_DT)
TINY_FIELD(MFRotation, MVField, MFROTATION_DT)
TINY_FIELD(MFVec2f, MVField, MFVEC2F_DT)
TINY_FIELD(MFVec3f, MVField, MFVEC3F_DT)
TINY_FIELD(MFVec4f, MVField, MFVEC4F_DT)
TINY_FIELD(MFVec2d, MVField, MFVEC2D_DT)
TINY_FIELD(MFVec3d, MVField, MFVEC3D_DT)
TINY_FIELD(MFVec4d, MVField, MFVEC4D_DT)
TINY_FIELD(MFBool, MLField, MFBOOL_DT)
TINY_FIELD(MFString, MLField, MFSTRING_DT)
TINY_FIELD(MFNode, MLField, MFNODE_DT)
TINY_FIELD(SFString, Field, SFSTRING_DT)
TINY_FIELD(SFImage, Field, SFIMAGE_DT)

#undef TINY_FIELD

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
    if (const auto* same = dynamic_cast<const SFString*>(&other))
        _value = same->_value;
}
bool SFString::hasValueOf(const Field& other) const
{
    const auto* same = dynamic_cast<const SFString*>(&other);
    return same && same->_value == _value;
}
void SFString::setValue(const double& time, const std::string& value, CallerType caller)
{
    _value = value;
    processValueChange(time, caller);
}

std::string SFImage::valueToString() const
{
    const int size[] = {_value.width(), _value.height(), _value.depth()};
    return Tiny::text::write(size, 3);
}
int SFImage::cardinality() const
{
    return 0;
}
unsigned int SFImage::size() const
{
    return 1;
}
void SFImage::clear()
{
}
bool SFImage::parseValue(std::string_view, std::string& error)
{
    error = "images are not read from text";
    return false;
}
void SFImage::assignValue(const Field& other)
{
    if (const auto* same = dynamic_cast<const SFImage*>(&other))
        _value = same->_value;
}
bool SFImage::hasValueOf(const Field& other) const
{
    const auto* same = dynamic_cast<const SFImage*>(&other);
    return same && same->_value.rco() == _value.rco();
}
void SFImage::setValue(const double& time, const Image& value, CallerType caller)
{
    _value = value;
    processValueChange(time, caller);
}

} // namespace Orvane
