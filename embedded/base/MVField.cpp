#include "base/ValueText.h"
#include <Orvane/MVField.h>
#include <algorithm>

namespace Orvane {

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
    return text::writeList(_values.begin(), _values.end(), [](const T& value) -> const T& { return value; });
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
    return text::parseList<T>(text, _values, error);
}

template <class T, int Kind>
void MVField<T, Kind>::assignValue(const Field& other)
{
    _values = static_cast<const MVField&>(other)._values;
}

template <class T, int Kind>
bool MVField<T, Kind>::hasValueOf(const Field& other) const
{
    const std::vector<T>& values = static_cast<const MVField&>(other)._values;
    return std::equal(_values.begin(), _values.end(), values.begin(), values.end(),
                      [](const T& a, const T& b) { return text::isSame(a, b); });
}

template <class T, int Kind>
T* MVField<T, Kind>::addValue(const T& value)
{
    _values.push_back(value);
    processValueChange(0.0, EXTERNAL_CT);
    return &_values.back();
}

template <class T, int Kind>
T* MVField<T, Kind>::insertValue(int index, const T& value)
{
    const auto place = _values.insert(
        _values.begin() + std::clamp<std::ptrdiff_t>(index, 0, static_cast<std::ptrdiff_t>(_values.size())),
        value);
    processValueChange(0.0, EXTERNAL_CT);
    return &*place;
}

template <class T, int Kind>
void MVField<T, Kind>::removeValueByIndex(int index)
{
    if (index < 0 || static_cast<std::size_t>(index) >= _values.size())
        return;
    _values.erase(_values.begin() + index);
    processValueChange(0.0, EXTERNAL_CT);
}

template <class T, int Kind>
void MVField<T, Kind>::setElem(int index, const T& value)
{
    if (index < 0 || static_cast<std::size_t>(index) >= _values.size())
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

} // namespace Orvane
