#include "script/FieldTuples.h"

#include "base/ValueFields.h"
#include <Orvane/MFBool.h>
#include <Orvane/MFColor.h>
#include <Orvane/MFColorRGBA.h>
#include <Orvane/MFDouble.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFInt32.h>
#include <Orvane/MFRotation.h>
#include <Orvane/MFString.h>
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
#include <cmath>
#include <limits>

namespace Orvane {

namespace {

constexpr const char* coordinates[] = {"x", "y", "z", "w"};
constexpr const char* colours[] = {"r", "g", "b", "a"};
constexpr const char* rotation[] = {"x", "y", "z", "angle"};

// ---- Numbers of one value

void unpack(bool value, double* out)
{
    *out = value ? 1.0 : 0.0;
}

void unpack(int value, double* out)
{
    *out = value;
}

void unpack(float value, double* out)
{
    *out = static_cast<double>(value);
}

void unpack(double value, double* out)
{
    *out = value;
}

void unpack(const Rotation& value, double* out)
{
    const float parts[] = {value.x(), value.y(), value.z(), value.angle()};
    std::copy(std::begin(parts), std::end(parts), out);
}

template <class T, int N>
void unpack(const SquareMatrix<T, N>& value, double* out)
{
    std::copy(value.v.begin(), value.v.end(), out);
}

template <class V>
constexpr unsigned int partsOf = sizeof(V) / sizeof(std::declval<V&>()[0]);

template <class V>
auto unpack(const V& value, double* out) -> decltype(void(value[0]))
{
    for (unsigned int i = 0; i < partsOf<V>; ++i)
        out[i] = static_cast<double>(value[i]);
}

void pack(bool& value, const double* in)
{
    value = *in != 0.0 && !std::isnan(*in);
}

void pack(int& value, const double* in)
{
    constexpr double lowest = std::numeric_limits<int>::min();
    constexpr double highest = std::numeric_limits<int>::max();
    value = std::isnan(*in) ? 0 : static_cast<int>(std::clamp(*in, lowest, highest));
}

void pack(float& value, const double* in)
{
    value = static_cast<float>(*in);
}

void pack(double& value, const double* in)
{
    value = *in;
}

void pack(Rotation& value, const double* in)
{
    value = Rotation(static_cast<float>(in[0]), static_cast<float>(in[1]), static_cast<float>(in[2]),
                     static_cast<float>(in[3]));
}

template <class T, int N>
void pack(SquareMatrix<T, N>& value, const double* in)
{
    for (T& part : value.v)
        part = static_cast<T>(*in++);
}

template <class V>
auto pack(V& value, const double* in) -> decltype(void(value[0]))
{
    for (unsigned int i = 0; i < partsOf<V>; ++i)
        pack(value[i], in + i);
}

// ---- The classes of fields

template <class F>
struct Single
{
    static void read(const Field& field, unsigned int, double* out)
    {
        unpack(static_cast<const F&>(field).value(), out);
    }
    static void write(Field& field, unsigned int, const double* in)
    {
        auto& typed = static_cast<F&>(field);
        auto value = typed.value();
        pack(value, in);
        typed.setValue(0.0, value, Field::LOADER_CT);
    }
    static void resize(Field&, unsigned int) {}
};

template <class F>
struct Multi
{
    static void read(const Field& field, unsigned int index, double* out)
    {
        unpack(static_cast<const F&>(field).values()[index], out);
    }
    static void write(Field& field, unsigned int index, const double* in)
    {
        pack(static_cast<F&>(field).editValues()[index], in);
    }
    static void resize(Field& field, unsigned int size) { static_cast<F&>(field).editValues().resize(size); }
};

/// Lists of objects change their length with an event, so they do so apart from their node.
template <class F>
void resizeApart(Field& field, unsigned int size)
{
    auto& list = static_cast<F&>(field);
    F copy(nullptr, field._desc);
    for (unsigned int i = 0; i < std::min(size, list.size()); ++i)
        copy.addValue(list.elem(static_cast<int>(i)));
    while (copy.size() < size)
        copy.addValue({});
    list.assignValue(copy);
}

struct MultiBool
{
    static void read(const Field& field, unsigned int index, double* out)
    {
        unpack(static_cast<const MFBool&>(field)[static_cast<int>(index)], out);
    }
    static void write(Field& field, unsigned int index, const double* in)
    {
        pack(static_cast<MFBool&>(field).elem(static_cast<int>(index)), in);
    }
    static void resize(Field& field, unsigned int size) { resizeApart<MFBool>(field, size); }
};

struct Access
{
    void (*read)(const Field&, unsigned int, double*);
    void (*write)(Field&, unsigned int, const double*);
    void (*resize)(Field&, unsigned int);
};

template <class A>
constexpr Access access()
{
    return {&A::read, &A::write, &A::resize};
}

struct MultiString
{
    static void resize(Field& field, unsigned int size) { resizeApart<MFString>(field, size); }
};

struct MultiImage
{
    static void resize(Field& field, unsigned int size)
    {
        static_cast<MFImage&>(field).editValues().resize(size);
    }
};

constexpr Access none = {nullptr, nullptr, nullptr};

/// By data type.
constexpr Access accesses[] = {none,
                               access<Single<SFBool>>(),
                               access<MultiBool>(),
                               access<Single<SFColor>>(),
                               access<Multi<MFColor>>(),
                               access<Single<SFColorRGBA>>(),
                               access<Multi<MFColorRGBA>>(),
                               access<Single<SFDouble>>(),
                               access<Multi<MFDouble>>(),
                               access<Single<SFFloat>>(),
                               access<Multi<MFFloat>>(),
                               none,
                               {nullptr, nullptr, &MultiImage::resize},
                               access<Single<SFInt32>>(),
                               access<Multi<MFInt32>>(),
                               access<Single<SFMatrix3d>>(),
                               access<Multi<MFMatrix3d>>(),
                               access<Single<SFMatrix3f>>(),
                               access<Multi<MFMatrix3f>>(),
                               access<Single<SFMatrix4d>>(),
                               access<Multi<MFMatrix4d>>(),
                               access<Single<SFMatrix4f>>(),
                               access<Multi<MFMatrix4f>>(),
                               none,
                               none,
                               access<Single<SFRotation>>(),
                               access<Multi<MFRotation>>(),
                               none,
                               {nullptr, nullptr, &MultiString::resize},
                               access<Single<SFTime>>(),
                               access<Multi<MFTime>>(),
                               access<Single<SFVec2d>>(),
                               access<Multi<MFVec2d>>(),
                               access<Single<SFVec2f>>(),
                               access<Multi<MFVec2f>>(),
                               access<Single<SFVec3d>>(),
                               access<Multi<MFVec3d>>(),
                               access<Single<SFVec3f>>(),
                               access<Multi<MFVec3f>>(),
                               access<Single<SFVec4d>>(),
                               access<Multi<MFVec4d>>(),
                               access<Single<SFVec4f>>(),
                               access<Multi<MFVec4f>>()};
static_assert(sizeof accesses / sizeof *accesses == MFVEC4F_DT + 1, "one entry for each data type");

} // namespace

TupleShape tupleShape(NodePartDataType type)
{
    switch (elementType(type)) {
    case SFBOOL_DT:
    case SFDOUBLE_DT:
    case SFFLOAT_DT:
    case SFINT32_DT:
    case SFTIME_DT:
        return {1, nullptr};
    case SFCOLOR_DT:
        return {3, colours};
    case SFCOLORRGBA_DT:
        return {4, colours};
    case SFMATRIX3D_DT:
    case SFMATRIX3F_DT:
        return {9, nullptr};
    case SFMATRIX4D_DT:
    case SFMATRIX4F_DT:
        return {16, nullptr};
    case SFROTATION_DT:
        return {4, rotation};
    case SFVEC2D_DT:
    case SFVEC2F_DT:
        return {2, coordinates};
    case SFVEC3D_DT:
    case SFVEC3F_DT:
        return {3, coordinates};
    case SFVEC4D_DT:
    case SFVEC4F_DT:
        return {4, coordinates};
    default:
        return {};
    }
}

void readTuple(const Field& field, unsigned int index, double* out)
{
    accesses[field.dataType()].read(field, index, out);
}

void writeTuple(Field& field, unsigned int index, const double* in)
{
    accesses[field.dataType()].write(field, index, in);
}

void resizeList(Field& field, unsigned int size)
{
    accesses[field.dataType()].resize(field, size);
}

} // namespace Orvane
