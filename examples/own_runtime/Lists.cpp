// Lists of values, and of links to nodes.

#include "Runtime.h"
#include "ValueText.h"
#include <Orvane/MFBool.h>
#include <Orvane/MFColor.h>
#include <Orvane/MFColorRGBA.h>
#include <Orvane/MFDouble.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFInt32.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFRotation.h>
#include <Orvane/MFString.h>
#include <Orvane/MFVec2d.h>
#include <Orvane/MFVec2f.h>
#include <Orvane/MFVec3d.h>
#include <Orvane/MFVec3f.h>
#include <Orvane/MFVec4d.h>
#include <Orvane/MFVec4f.h>
#include <algorithm>

namespace Orvane {

namespace {

template <class List>
auto placeIn(List& list, int index)
{
    return list.begin() + std::clamp(index, 0, static_cast<int>(list.size()));
}

template <class List>
bool isInside(const List& list, int index)
{
    return index >= 0 && index < static_cast<int>(list.size());
}

} // namespace

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
    std::string text;
    for (const T& value : _values)
        put(text.append(text.empty() ? "" : ", "), value);
    return text;
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
    if (!takeAll<T>(text, [&](const T& value) { values.push_back(value); })) {
        error = "not a list of " + dataTypeName();
        return false;
    }
    _values = std::move(values);
    return true;
}

template <class T, int Kind>
void MVField<T, Kind>::assignValue(const Field& other)
{
    _values = static_cast<const MVField&>(other)._values;
}

template <class T, int Kind>
bool MVField<T, Kind>::hasValueOf(const Field& other) const
{
    return valueToString() == other.valueToString();
}

template <class T, int Kind>
T* MVField<T, Kind>::addValue(const T& value)
{
    return insertValue(static_cast<int>(_values.size()), value);
}

template <class T, int Kind>
T* MVField<T, Kind>::insertValue(int index, const T& value)
{
    const auto place = _values.insert(placeIn(_values, index), value) - _values.begin();
    processValueChange(0.0, EXTERNAL_CT);
    return &_values[static_cast<std::size_t>(place)];
}

template <class T, int Kind>
void MVField<T, Kind>::removeValueByIndex(int index)
{
    if (!isInside(_values, index))
        return;
    _values.erase(placeIn(_values, index));
    processValueChange(0.0, EXTERNAL_CT);
}

template <class T, int Kind>
void MVField<T, Kind>::setElem(int index, const T& value)
{
    if (!isInside(_values, index))
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
    std::string text;
    for (const Cell& cell : _values)
        put(text.append(text.empty() ? "" : ", "), cell.value);
    return text;
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
    if (!takeAll<T>(text, [&](const T& value) { values.push_back(Cell{value}); })) {
        error = "not a list of " + dataTypeName();
        return false;
    }
    _values = std::move(values);
    return true;
}

template <class T, int Kind>
void MLField<T, Kind>::assignValue(const Field& other)
{
    _values = static_cast<const MLField&>(other)._values;
}

template <class T, int Kind>
bool MLField<T, Kind>::hasValueOf(const Field& other) const
{
    return valueToString() == other.valueToString();
}

template <class T, int Kind>
T* MLField<T, Kind>::addValue(const T& value)
{
    return insertValue(static_cast<int>(_values.size()), value);
}

template <class T, int Kind>
T* MLField<T, Kind>::insertValue(int index, const T& value)
{
    const auto place = _values.insert(placeIn(_values, index), Cell{value}) - _values.begin();
    processValueChange(0.0, EXTERNAL_CT);
    return &_values[static_cast<std::size_t>(place)].value;
}

template <class T, int Kind>
void MLField<T, Kind>::removeValueByIndex(int index)
{
    if (!isInside(_values, index))
        return;
    _values.erase(placeIn(_values, index));
    processValueChange(0.0, EXTERNAL_CT);
}

template <class T, int Kind>
void MLField<T, Kind>::setElem(int index, const T& value)
{
    if (!isInside(_values, index))
        return;
    _values[static_cast<std::size_t>(index)].value = value;
    processValueChange(0.0, EXTERNAL_CT);
}

template class MLField<bool, 0>;
template class MLField<std::string, 0>;

// Links. A link owns its node.

template <class T>
MLField<T, 1>::MLField(Node* node, NodePartDesc* desc)
    : Field(node, desc)
{
}

template <class T>
MLField<T, 1>::~MLField()
{
    clear();
}

template <class T>
std::string MLField<T, 1>::valueToString() const
{
    std::string text;
    for (T* link : _links)
        text.append(text.empty() ? "" : ", ").append(link->directNode()->getIDStr());
    return text;
}

template <class T>
int MLField<T, 1>::cardinality() const
{
    return 1;
}

template <class T>
unsigned int MLField<T, 1>::size() const
{
    return static_cast<unsigned int>(_links.size());
}

template <class T>
void MLField<T, 1>::clear()
{
    while (!_links.empty())
        removeNode(0.0, static_cast<int>(_links.size()) - 1, EXTERNAL_CT);
}

template <class T>
bool MLField<T, 1>::parseValue(std::string_view text, std::string& error)
{
    error = "nodes cannot be written as text";
    return text.empty();
}

template <class T>
void MLField<T, 1>::assignValue(const Field& other)
{
    (void)other; // nodes have one place
}

template <class T>
bool MLField<T, 1>::hasValueOf(const Field& other) const
{
    return &other == this;
}

template <class T>
bool MLField<T, 1>::addNode(const double& time, Node* node, CallerType caller)
{
    return insertNode(time, static_cast<int>(_links.size()), node, caller);
}

template <class T>
bool MLField<T, 1>::insertNode(const double& time, int index, Node* node, CallerType caller)
{
    if (!node || node->data()->place)
        return false;
    T* link = *_links.insert(placeIn(_links, index), new OwningLink(this, node));
    Node::_childAdded.fire(time, _node, link);
    processValueChange(time, caller);
    return true;
}

template <class T>
bool MLField<T, 1>::removeNode(const double& time, int index, CallerType caller)
{
    if (!isInside(_links, index))
        return false;
    const std::unique_ptr<T> link(_links[static_cast<std::size_t>(index)]);
    Node::_childRemoved.fire(time, _node, link.get());
    _links.erase(placeIn(_links, index));
    processValueChange(time, caller);
    return true;
}

template class MLField<NodeLink, 1>;

// The classes of the data types.

#define VALUES(Class, TYPE, ...)                                                                             \
    Class::Class(Node* node, NodePartDesc* desc)                                                             \
        : __VA_ARGS__(node, desc)                                                                            \
    {                                                                                                        \
    }                                                                                                        \
    Class::~Class() = default;                                                                               \
    NodePartDataType Class::dataType() const                                                                 \
    {                                                                                                        \
        return TYPE;                                                                                         \
    }

VALUES(MFInt32, MFINT32_DT, MVField<int, 0>)
VALUES(MFFloat, MFFLOAT_DT, MVField<float, 0>)
VALUES(MFDouble, MFDOUBLE_DT, MVField<double, 0>)
VALUES(MFColor, MFCOLOR_DT, MVField<osg::Color3f, 0>)
VALUES(MFColorRGBA, MFCOLORRGBA_DT, MVField<osg::Color4f, 0>)
VALUES(MFVec2f, MFVEC2F_DT, MVField<osg::Vec2f, 0>)
VALUES(MFVec3f, MFVEC3F_DT, MVField<osg::Vec3f, 0>)
VALUES(MFVec4f, MFVEC4F_DT, MVField<osg::Vec4f, 0>)
VALUES(MFVec2d, MFVEC2D_DT, MVField<osg::Vec2d, 0>)
VALUES(MFVec3d, MFVEC3D_DT, MVField<osg::Vec3d, 0>)
VALUES(MFVec4d, MFVEC4D_DT, MVField<osg::Vec4d, 0>)
VALUES(MFRotation, MFROTATION_DT, MVField<Rotation, 0>)
VALUES(MFBool, MFBOOL_DT, MLField<bool, 0>)
VALUES(MFString, MFSTRING_DT, MLField<std::string, 0>)
VALUES(MFNode, MFNODE_DT, MLField<NodeLink, 1>)

} // namespace Orvane
