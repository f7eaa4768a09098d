#pragma once

#include "OSGQuaternion.h"
#include "OSGVector.h"

#include <cmath>
#include <iomanip>
#include <ostream>
#include <type_traits>

namespace osg {

/// A 4x4 matrix for column vectors (M x v): four columns in OpenGL's order, 16 values and nothing else.
/// m[c][r] names column c, row r; the translation is m[3]. The default is the identity. Results may be
/// written onto sources everywhere.
template <class T>
class OSG_BASE_DLLMAPPING TransformationMatrix
{
public:
    typedef T ValueType;
    typedef Vector<T, 3> VectorType3;
    typedef Vector<T, 4> VectorType4;
    typedef Point<T, 3> PointType3;
    typedef QuaternionBase<T> QuaternionType;

    constexpr TransformationMatrix() { setIdentity(); }

    /// The values in reading order, row by row.
    // clang-format off
    constexpr TransformationMatrix(T r00, T r01, T r02, T r03, T r10, T r11, T r12, T r13,
                                   T r20, T r21, T r22, T r23, T r30, T r31, T r32, T r33)
    {
        setValue(r00, r01, r02, r03, r10, r11, r12, r13, r20, r21, r22, r23, r30, r31, r32, r33);
    }
    // clang-format on

    static const TransformationMatrix& identity()
    {
        static const TransformationMatrix instance;
        return instance;
    }

    constexpr VectorType4& operator[](UInt32 column) { return _columns[column]; }
    constexpr const VectorType4& operator[](UInt32 column) const { return _columns[column]; }

    /// The 16 values, column by column, as glLoadMatrixf takes them.
    T* getValues() { return _columns[0].getValues(); }
    const T* getValues() const { return _columns[0].getValues(); }

    constexpr void setIdentity()
    {
        for (UInt32 c = 0; c < 4; ++c)
            _columns[c] = VectorType4(c == 0, c == 1, c == 2, c == 3);
    }

    // clang-format off
    /// The values in reading order, row by row.
    constexpr void setValue(T r00, T r01, T r02, T r03, T r10, T r11, T r12, T r13,
                            T r20, T r21, T r22, T r23, T r30, T r31, T r32, T r33)
    {
        setValueTransposed(r00, r10, r20, r30, r01, r11, r21, r31, r02, r12, r22, r32, r03, r13, r23, r33);
    }

    /// The values column by column.
    constexpr void setValueTransposed(T c00, T c01, T c02, T c03, T c10, T c11, T c12, T c13,
                                      T c20, T c21, T c22, T c23, T c30, T c31, T c32, T c33)
    {
        _columns[0].setValues(c00, c01, c02, c03);
        _columns[1].setValues(c10, c11, c12, c13);
        _columns[2].setValues(c20, c21, c22, c23);
        _columns[3].setValues(c30, c31, c32, c33);
    }
    // clang-format on

    /// 16 values, column by column; row by row with transposed false.
    constexpr void setValue(const T* values, bool transposed = true)
    {
        for (UInt32 c = 0; c < 4; ++c) {
            for (UInt32 r = 0; r < 4; ++r)
                _columns[c][r] = transposed ? values[4 * c + r] : values[4 * r + c];
        }
    }

    constexpr void setValue(const TransformationMatrix& other) { *this = other; }

    /// Sets the upper three values of the first three columns; all else stays.
    constexpr void setValue(const VectorType3& v1, const VectorType3& v2, const VectorType3& v3)
    {
        setColumn(0, v1);
        setColumn(1, v2);
        setColumn(2, v3);
    }

    constexpr void setValue(const VectorType3& v1, const VectorType3& v2, const VectorType3& v3,
                            const VectorType3& v4)
    {
        setValue(v1, v2, v3);
        setColumn(3, v4);
    }

    /// Overwrites the translation only, as the next two overwrite the diagonal and the upper 3x3 only.
    constexpr void setTranslate(T x, T y, T z) { setColumn(3, PointType3(x, y, z)); }
    constexpr void setTranslate(const PointType3& t) { setColumn(3, t); }

    constexpr void setScale(T x, T y, T z)
    {
        _columns[0][0] = x;
        _columns[1][1] = y;
        _columns[2][2] = z;
    }
    constexpr void setScale(T s) { setScale(s, s, s); }
    constexpr void setScale(const PointType3& s) { setScale(s[0], s[1], s[2]); }

    void setRotate(const QuaternionType& q) { q.getValuesOnly(*this); }

    /// Composes T * C * R * SO * S * SO^-1 * C^-1 of translation, rotation, scale, scale orientation and
    /// center, and overwrites the whole matrix; what is not given is neutral.
    void setTransform(const PointType3& translation)
    {
        setIdentity();
        setTranslate(translation);
    }
    void setTransform(const QuaternionType& rotation) { rotation.getValue(*this); }
    void setTransform(const PointType3& translation, const QuaternionType& rotation)
    {
        rotation.getValue(*this);
        setTranslate(translation);
    }
    void setTransform(const PointType3& translation, const QuaternionType& rotation, const PointType3& scale);
    void setTransform(const PointType3& translation, const QuaternionType& rotation, const PointType3& scale,
                      const QuaternionType& scaleOrientation);
    void setTransform(const PointType3& translation, const QuaternionType& rotation, const PointType3& scale,
                      const QuaternionType& scaleOrientation, const PointType3& center);

    /// Finds factors that compose this matrix again. A mirroring matrix has three negative scales, one
    /// without scale orientation answers the identity for it. Perspective parts are left out.
    void getTransform(VectorType3& translation, QuaternionType& rotation, VectorType3& scale,
                      QuaternionType& scaleOrientation) const;

    /// The same for a known center.
    void getTransform(VectorType3& translation, QuaternionType& rotation, VectorType3& scale,
                      QuaternionType& scaleOrientation, const PointType3& center) const;

    /// this = this x other: other acts first.
    void mult(const TransformationMatrix& other) { *this = product(*this, other); }

    /// this = other x this: other acts last.
    void multLeft(const TransformationMatrix& other) { *this = product(other, *this); }

    /// Transforms a point, translation included; no division by w.
    void multMatrixPnt(const PointType3& source, PointType3& result) const
    {
        const PointType3 p(source);
        for (UInt32 r = 0; r < 3; ++r)
            result[r] = row(r, p) + _columns[3][r];
    }
    void multMatrixPnt(PointType3& point) const { multMatrixPnt(point, point); }
    void mult(const PointType3& source, PointType3& result) const { multMatrixPnt(source, result); }
    void mult(PointType3& point) const { multMatrixPnt(point, point); }

    /// Transforms a point and divides by w; where w is 0 the result is (0, 0, 0).
    void multFullMatrixPnt(const PointType3& source, PointType3& result) const
    {
        const PointType3 p(source);
        const T w = row(3, p) + _columns[3][3];
        for (UInt32 r = 0; r < 3; ++r)
            result[r] = w == 0 ? T(0) : (row(r, p) + _columns[3][r]) / w;
    }
    void multFullMatrixPnt(PointType3& point) const { multFullMatrixPnt(point, point); }

    /// Transforms a direction by the upper 3x3. Normals need the inverse transposed matrix instead.
    void multMatrixVec(const VectorType3& source, VectorType3& result) const
    {
        const VectorType3 v(source);
        for (UInt32 r = 0; r < 3; ++r)
            result[r] = row(r, v);
    }
    void multMatrixVec(VectorType3& vector) const { multMatrixVec(vector, vector); }
    void mult(const VectorType3& source, VectorType3& result) const { multMatrixVec(source, result); }
    void mult(VectorType3& vector) const { multMatrixVec(vector, vector); }

    /// The full product with a vector of four.
    void multMatrixVec(const VectorType4& source, VectorType4& result) const
    {
        const VectorType4 v(source);
        for (UInt32 r = 0; r < 4; ++r)
            result[r] = row(r, v) + _columns[3][r] * v[3];
    }
    void multMatrixVec(VectorType4& vector) const { multMatrixVec(vector, vector); }

    /// The same with row vectors, v x M.
    void multPntMatrix(const PointType3& source, PointType3& result) const
    {
        const PointType3 p(source);
        for (UInt32 c = 0; c < 3; ++c)
            result[c] = column(c, p) + _columns[c][3];
    }
    void multPntMatrix(PointType3& point) const { multPntMatrix(point, point); }

    void multPntFullMatrix(const PointType3& source, PointType3& result) const
    {
        const PointType3 p(source);
        const T w = column(3, p) + _columns[3][3];
        for (UInt32 c = 0; c < 3; ++c)
            result[c] = w == 0 ? T(0) : (column(c, p) + _columns[c][3]) / w;
    }
    void multPntFullMatrix(PointType3& point) const { multPntFullMatrix(point, point); }

    void multVecMatrix(const VectorType3& source, VectorType3& result) const
    {
        const VectorType3 v(source);
        for (UInt32 c = 0; c < 3; ++c)
            result[c] = column(c, v);
    }
    void multVecMatrix(VectorType3& vector) const { multVecMatrix(vector, vector); }

    /// Determinant of the matrix, and of its upper 3x3.
    T det() const;
    T det3() const;

    /// Inverts. Where the determinant's absolute value is below 1e-30 the result is the identity and the
    /// answer false.
    bool invert() { return inverse(*this); }
    bool inverse(TransformationMatrix& result) const;
    bool invertFrom(const TransformationMatrix& matrix) { return matrix.inverse(*this); }

    /// Transposes; the answer is always true.
    bool transpose() { return transposed(*this); }
    bool transposed(TransformationMatrix& result) const
    {
        const TransformationMatrix source(*this);
        result.setValue(source.getValues(), false);
        return true;
    }
    bool transposeFrom(const TransformationMatrix& matrix) { return matrix.transposed(*this); }

    constexpr bool equals(const TransformationMatrix& other, T tolerance) const
    {
        for (UInt32 c = 0; c < 4; ++c) {
            if (!_columns[c].equals(other._columns[c], tolerance))
                return false;
        }
        return true;
    }

    constexpr bool operator==(const TransformationMatrix& other) const
    {
        return equals(other, static_cast<T>(Eps));
    }
    constexpr bool operator!=(const TransformationMatrix& other) const { return !(*this == other); }

private:
    constexpr void setColumn(UInt32 c, const PointType3& values)
    {
        for (UInt32 r = 0; r < 3; ++r)
            _columns[c][r] = values[r];
    }

    /// Row r times the first three components of v, and the first three of v times column c.
    template <class V>
    constexpr T row(UInt32 r, const V& v) const
    {
        return _columns[0][r] * v[0] + _columns[1][r] * v[1] + _columns[2][r] * v[2];
    }
    template <class V>
    constexpr T column(UInt32 c, const V& v) const
    {
        return v[0] * _columns[c][0] + v[1] * _columns[c][1] + v[2] * _columns[c][2];
    }

    static TransformationMatrix product(const TransformationMatrix& a, const TransformationMatrix& b)
    {
        TransformationMatrix result;
        for (UInt32 c = 0; c < 4; ++c) {
            for (UInt32 r = 0; r < 4; ++r) {
                result[c][r] = a[0][r] * b[c][0] + a[1][r] * b[c][1] + a[2][r] * b[c][2] + a[3][r] * b[c][3];
            }
        }
        return result;
    }

    VectorType4 _columns[4];
};

/// Writes four lines, rows as on paper: fixed notation, three decimals, width 8.
template <class T>
std::ostream& operator<<(std::ostream& stream, const TransformationMatrix<T>& matrix)
{
    const std::ios_base::fmtflags flags = stream.setf(std::ios_base::fixed, std::ios_base::floatfield);
    const std::streamsize precision = stream.precision(3);
    for (UInt32 r = 0; r < 4; ++r) {
        for (UInt32 c = 0; c < 4; ++c)
            stream << std::setw(8) << matrix[c][r];
        stream << '\n';
    }
    stream.precision(precision);
    stream.flags(flags);
    return stream;
}

typedef TransformationMatrix<Real32> Matrix;
typedef TransformationMatrix<Real32> Matrix4f;
typedef TransformationMatrix<Real64> Matrix4d;

static_assert(sizeof(Matrix) == 64 && std::is_trivially_copyable_v<Matrix>);

} // namespace osg
