#pragma once

#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/Image.h>
#include <Orvane/MVField.h>
#include <Orvane/Rotation.h>
#include <array>
#include <vector>

namespace Orvane {

/// A square matrix as scenes write it: row by row, for row vectors.
template <class T, int N>
struct ORVANE_API SquareMatrix
{
    std::array<T, static_cast<std::size_t>(N)* N> v = identity();

    static constexpr std::array<T, static_cast<std::size_t>(N) * N> identity()
    {
        std::array<T, static_cast<std::size_t>(N) * N> m{};
        for (std::size_t i = 0; i < static_cast<std::size_t>(N); ++i)
            m[i * N + i] = T(1);
        return m;
    }
    bool operator==(const SquareMatrix& other) const { return v == other.v; }
    bool operator!=(const SquareMatrix& other) const { return v != other.v; }
};

using Matrix3f = SquareMatrix<float, 3>;
using Matrix3d = SquareMatrix<double, 3>;
using Matrix4f = SquareMatrix<float, 4>;
using Matrix4d = SquareMatrix<double, 4>;

/// A field of one value of those types of which hosts know only the text form.
template <class T, NodePartDataType Type>
class ORVANE_API SingleField : public Field
{
public:
    SingleField(Node* node, NodePartDesc* desc);
    ~SingleField() override;

    NodePartDataType dataType() const override;
    std::string valueToString() const override;
    int cardinality() const override;
    unsigned int size() const override;
    void clear() override;
    bool parseValue(std::string_view text, std::string& error) override;
    void assignValue(const Field& other) override;
    bool hasValueOf(const Field& other) const override;

    const T& value() const { return _value; }
    void setValue(const double& time, const T& value, CallerType caller);

private:
    T _value{};
};

/// The same for lists. A host that knows the class of the same values by another name meets that one instead.
template <class T, NodePartDataType Type>
class ORVANE_API ListField : public Field
{
public:
    ListField(Node* node, NodePartDesc* desc);
    ~ListField() override;

    NodePartDataType dataType() const override;
    std::string valueToString() const override;
    int cardinality() const override;
    unsigned int size() const override;
    void clear() override;
    bool parseValue(std::string_view text, std::string& error) override;
    void assignValue(const Field& other) override;
    bool hasValueOf(const Field& other) const override;

    const std::vector<T>& values() const { return _values; }
    /// The values in place, for who calls `processValueChange` afterwards.
    std::vector<T>& editValues() { return _values; }
    void setValues(const double& time, std::vector<T> values, CallerType caller);

private:
    std::vector<T> _values;
};

using SFColor = SingleField<osg::Color3f, SFCOLOR_DT>;
using SFColorRGBA = SingleField<osg::Color4f, SFCOLORRGBA_DT>;
using SFDouble = SingleField<double, SFDOUBLE_DT>;
using SFTime = SingleField<double, SFTIME_DT>;
using SFRotation = SingleField<Rotation, SFROTATION_DT>;
using SFVec2f = SingleField<osg::Vec2f, SFVEC2F_DT>;
using SFVec3f = SingleField<osg::Vec3f, SFVEC3F_DT>;
using SFVec4f = SingleField<osg::Vec4f, SFVEC4F_DT>;
using SFVec2d = SingleField<osg::Vec2d, SFVEC2D_DT>;
using SFVec3d = SingleField<osg::Vec3d, SFVEC3D_DT>;
using SFVec4d = SingleField<osg::Vec4d, SFVEC4D_DT>;
using SFMatrix3f = SingleField<Matrix3f, SFMATRIX3F_DT>;
using SFMatrix3d = SingleField<Matrix3d, SFMATRIX3D_DT>;
using SFMatrix4f = SingleField<Matrix4f, SFMATRIX4F_DT>;
using SFMatrix4d = SingleField<Matrix4d, SFMATRIX4D_DT>;
using MFTime = ListField<double, MFTIME_DT>;
using MFImage = ListField<Image, MFIMAGE_DT>;
using MFMatrix3f = ListField<Matrix3f, MFMATRIX3F_DT>;
using MFMatrix3d = ListField<Matrix3d, MFMATRIX3D_DT>;
using MFMatrix4f = ListField<Matrix4f, MFMATRIX4F_DT>;
using MFMatrix4d = ListField<Matrix4d, MFMATRIX4D_DT>;

} // namespace Orvane
