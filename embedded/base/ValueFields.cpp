#include "base/ValueFields.h"
#include "base/ValueText.h"
#include <algorithm>

namespace Orvane {

template <class T, NodePartDataType Type>
SingleField<T, Type>::SingleField(Node* node, NodePartDesc* desc)
    : Field(node, desc)
{
}

template <class T, NodePartDataType Type>
SingleField<T, Type>::~SingleField() = default;

template <class T, NodePartDataType Type>
NodePartDataType SingleField<T, Type>::dataType() const
{
    return Type;
}

template <class T, NodePartDataType Type>
std::string SingleField<T, Type>::valueToString() const
{
    std::string text;
    text::write(text, _value);
    return text;
}

template <class T, NodePartDataType Type>
int SingleField<T, Type>::cardinality() const
{
    return 0;
}

template <class T, NodePartDataType Type>
unsigned int SingleField<T, Type>::size() const
{
    return 1;
}

template <class T, NodePartDataType Type>
void SingleField<T, Type>::clear()
{
}

template <class T, NodePartDataType Type>
bool SingleField<T, Type>::parseValue(std::string_view text, std::string& error)
{
    return text::parse(text, _value, error);
}

template <class T, NodePartDataType Type>
void SingleField<T, Type>::assignValue(const Field& other)
{
    _value = static_cast<const SingleField&>(other)._value;
}

template <class T, NodePartDataType Type>
bool SingleField<T, Type>::hasValueOf(const Field& other) const
{
    return text::isSame(_value, static_cast<const SingleField&>(other)._value);
}

template <class T, NodePartDataType Type>
void SingleField<T, Type>::setValue(const double& time, const T& value, CallerType caller)
{
    _value = value;
    processValueChange(time, caller);
}

template <class T, NodePartDataType Type>
ListField<T, Type>::ListField(Node* node, NodePartDesc* desc)
    : Field(node, desc)
{
}

template <class T, NodePartDataType Type>
ListField<T, Type>::~ListField() = default;

template <class T, NodePartDataType Type>
NodePartDataType ListField<T, Type>::dataType() const
{
    return Type;
}

template <class T, NodePartDataType Type>
std::string ListField<T, Type>::valueToString() const
{
    return text::writeList(_values.begin(), _values.end(), [](const T& value) -> const T& { return value; });
}

template <class T, NodePartDataType Type>
int ListField<T, Type>::cardinality() const
{
    return 1;
}

template <class T, NodePartDataType Type>
unsigned int ListField<T, Type>::size() const
{
    return static_cast<unsigned int>(_values.size());
}

template <class T, NodePartDataType Type>
void ListField<T, Type>::clear()
{
    _values.clear();
}

template <class T, NodePartDataType Type>
bool ListField<T, Type>::parseValue(std::string_view text, std::string& error)
{
    return text::parseList<T>(text, _values, error);
}

template <class T, NodePartDataType Type>
void ListField<T, Type>::assignValue(const Field& other)
{
    _values = static_cast<const ListField&>(other)._values;
}

template <class T, NodePartDataType Type>
bool ListField<T, Type>::hasValueOf(const Field& other) const
{
    const std::vector<T>& values = static_cast<const ListField&>(other)._values;
    return std::equal(_values.begin(), _values.end(), values.begin(), values.end(),
                      [](const T& a, const T& b) { return text::isSame(a, b); });
}

template <class T, NodePartDataType Type>
void ListField<T, Type>::setValues(const double& time, std::vector<T> values, CallerType caller)
{
    _values = std::move(values);
    processValueChange(time, caller);
}

template class SingleField<osg::Color3f, SFCOLOR_DT>;
template class SingleField<osg::Color4f, SFCOLORRGBA_DT>;
template class SingleField<double, SFDOUBLE_DT>;
template class SingleField<double, SFTIME_DT>;
template class SingleField<Rotation, SFROTATION_DT>;
template class SingleField<osg::Vec2f, SFVEC2F_DT>;
template class SingleField<osg::Vec3f, SFVEC3F_DT>;
template class SingleField<osg::Vec4f, SFVEC4F_DT>;
template class SingleField<osg::Vec2d, SFVEC2D_DT>;
template class SingleField<osg::Vec3d, SFVEC3D_DT>;
template class SingleField<osg::Vec4d, SFVEC4D_DT>;
template class SingleField<Matrix3f, SFMATRIX3F_DT>;
template class SingleField<Matrix3d, SFMATRIX3D_DT>;
template class SingleField<Matrix4f, SFMATRIX4F_DT>;
template class SingleField<Matrix4d, SFMATRIX4D_DT>;
template class ListField<double, MFTIME_DT>;
template class ListField<Image, MFIMAGE_DT>;
template class ListField<Matrix3f, MFMATRIX3F_DT>;
template class ListField<Matrix3d, MFMATRIX3D_DT>;
template class ListField<Matrix4f, MFMATRIX4F_DT>;
template class ListField<Matrix4d, MFMATRIX4D_DT>;

} // namespace Orvane
