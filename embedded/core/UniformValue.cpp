#include "core/UniformValue.h"
#include "base/ValueFields.h"
#include <Orvane/MFBool.h>
#include <Orvane/MFColor.h>
#include <Orvane/MFColorRGBA.h>
#include <Orvane/MFDouble.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFInt32.h>
#include <Orvane/MFRotation.h>
#include <Orvane/MFVec2d.h>
#include <Orvane/MFVec2f.h>
#include <Orvane/MFVec3d.h>
#include <Orvane/MFVec3f.h>
#include <Orvane/MFVec4d.h>
#include <Orvane/MFVec4f.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFInt32.h>
#include <algorithm>

namespace Orvane {

namespace {

using Value = osg::SHLChunk::Value;

/// More numbers no program can take in one variable.
constexpr std::size_t mostNumbers = 65536;

/// How many numbers a value of a type has, and where they stand.
template <class T>
struct Tuple;

template <class T, osg::UInt32 N>
struct Tuple<osg::Vector<T, N>>
{
    static constexpr osg::UInt32 size = N;
    static const T* data(const osg::Vector<T, N>& v) { return v.getValues(); }
};
template <>
struct Tuple<osg::Color3f>
{
    static constexpr osg::UInt32 size = 3;
    static const float* data(const osg::Color3f& v) { return v.getValuesRGB(); }
};
template <>
struct Tuple<osg::Color4f>
{
    static constexpr osg::UInt32 size = 4;
    static const float* data(const osg::Color4f& v) { return v.getValuesRGBA(); }
};
// Rows of a scene's matrix, for vectors in front, are columns of OpenGL's, for vectors behind.
template <class T, int N>
struct Tuple<SquareMatrix<T, N>>
{
    static constexpr osg::UInt32 size = N * N;
    static const T* data(const SquareMatrix<T, N>& v) { return v.v.data(); }
};
template <>
struct Tuple<float>
{
    static constexpr osg::UInt32 size = 1;
    static const float* data(const float& v) { return &v; }
};
template <>
struct Tuple<double>
{
    static constexpr osg::UInt32 size = 1;
    static const double* data(const double& v) { return &v; }
};

template <class T>
void append(const T& element, std::vector<float>& reals)
{
    const auto* const numbers = Tuple<T>::data(element);
    for (osg::UInt32 i = 0; i < Tuple<T>::size; ++i)
        reals.push_back(static_cast<float>(numbers[i]));
}

void append(const Rotation& element, std::vector<float>& reals)
{
    reals.insert(reals.end(), {element.x(), element.y(), element.z(), element.angle()});
}

template <class T>
constexpr osg::UInt32 componentsOf()
{
    return Tuple<T>::size;
}
template <>
constexpr osg::UInt32 componentsOf<Rotation>()
{
    return 4;
}

template <class T>
bool take(const T& element, Value& value)
{
    value.components = componentsOf<T>();
    append(element, value.reals);
    return true;
}

template <class T>
bool takeAll(const std::vector<T>& elements, Value& value)
{
    value.components = componentsOf<T>();
    const std::size_t count = std::min(elements.size(), mostNumbers / value.components);
    value.reals.reserve(count * value.components);
    for (std::size_t i = 0; i < count; ++i)
        append(elements[i], value.reals);
    // Nothing is an array of zeros; it still tells of its type.
    if (count == 0)
        value.reals.resize(value.components);
    return true;
}

/// The single value of a field of class \a F.
template <class F>
bool take(const Field& field, Value& value)
{
    return take(static_cast<const F&>(field).value(), value);
}

/// The values of a list of class \a F.
template <class F>
bool takeAll(const Field& field, Value& value)
{
    return takeAll(static_cast<const F&>(field).values(), value);
}

bool takeFlags(const MFBool& flags, Value& value)
{
    const std::size_t count = std::min<std::size_t>(flags.size(), mostNumbers);
    for (std::size_t i = 0; i < count; ++i)
        value.integers.push_back(flags[static_cast<int>(i)] ? 1 : 0);
    return true;
}

bool takeIntegers(const std::vector<int>& integers, Value& value)
{
    value.integers.assign(integers.begin(), integers.begin() + static_cast<std::ptrdiff_t>(
                                                                   std::min(integers.size(), mostNumbers)));
    return true;
}

} // namespace

bool uniformValue(const Field& field, Value& value)
{
    switch (field.dataType()) {
    case SFBOOL_DT:
        value.integers = {static_cast<const SFBool&>(field).value() ? 1 : 0};
        return true;
    case MFBOOL_DT:
        return takeFlags(static_cast<const MFBool&>(field), value);
    case SFINT32_DT:
        value.integers = {static_cast<const SFInt32&>(field).value()};
        return true;
    case MFINT32_DT:
        return takeIntegers(static_cast<const MFInt32&>(field).values(), value);
    case SFFLOAT_DT:
        return take<SFFloat>(field, value);
    case MFFLOAT_DT:
        return takeAll<MFFloat>(field, value);
    case SFDOUBLE_DT:
        return take<SFDouble>(field, value);
    case MFDOUBLE_DT:
        return takeAll<MFDouble>(field, value);
    case SFTIME_DT:
        return take<SFTime>(field, value);
    case MFTIME_DT:
        return takeAll<MFTime>(field, value);
    case SFCOLOR_DT:
        return take<SFColor>(field, value);
    case MFCOLOR_DT:
        return takeAll<MFColor>(field, value);
    case SFCOLORRGBA_DT:
        return take<SFColorRGBA>(field, value);
    case MFCOLORRGBA_DT:
        return takeAll<MFColorRGBA>(field, value);
    case SFROTATION_DT:
        return take<SFRotation>(field, value);
    case MFROTATION_DT:
        return takeAll<MFRotation>(field, value);
    case SFVEC2F_DT:
        return take<SFVec2f>(field, value);
    case MFVEC2F_DT:
        return takeAll<MFVec2f>(field, value);
    case SFVEC3F_DT:
        return take<SFVec3f>(field, value);
    case MFVEC3F_DT:
        return takeAll<MFVec3f>(field, value);
    case SFVEC4F_DT:
        return take<SFVec4f>(field, value);
    case MFVEC4F_DT:
        return takeAll<MFVec4f>(field, value);
    case SFVEC2D_DT:
        return take<SFVec2d>(field, value);
    case MFVEC2D_DT:
        return takeAll<MFVec2d>(field, value);
    case SFVEC3D_DT:
        return take<SFVec3d>(field, value);
    case MFVEC3D_DT:
        return takeAll<MFVec3d>(field, value);
    case SFVEC4D_DT:
        return take<SFVec4d>(field, value);
    case MFVEC4D_DT:
        return takeAll<MFVec4d>(field, value);
    case SFMATRIX3F_DT:
        return take<SFMatrix3f>(field, value);
    case MFMATRIX3F_DT:
        return takeAll<MFMatrix3f>(field, value);
    case SFMATRIX3D_DT:
        return take<SFMatrix3d>(field, value);
    case MFMATRIX3D_DT:
        return takeAll<MFMatrix3d>(field, value);
    case SFMATRIX4F_DT:
        return take<SFMatrix4f>(field, value);
    case MFMATRIX4F_DT:
        return takeAll<MFMatrix4f>(field, value);
    case SFMATRIX4D_DT:
        return take<SFMatrix4d>(field, value);
    case MFMATRIX4D_DT:
        return takeAll<MFMatrix4d>(field, value);
    default:
        return false;
    }
}

} // namespace Orvane
