#pragma once

#include "OSGVector.h"

#include <cmath>
#include <ostream>

namespace osg {

template <class T>
class TransformationMatrix;

/// A rotation as quaternion x, y, z, w: four values and nothing else; the identity is (0, 0, 0, 1).
/// Comparison is by component (Eps), so that q and -q differ although they turn alike.
template <class T>
class OSG_BASE_DLLMAPPING QuaternionBase
{
public:
    typedef T ValueType;
    typedef Vector<T, 3> VectorType;
    typedef TransformationMatrix<T> MatrixType;

    constexpr QuaternionBase() = default;

    /// A turn by angle radians about axis, see setValueAsAxisRad.
    QuaternionBase(const VectorType& axis, T angle) { setValueAsAxisRad(axis, angle); }

    /// The shortest turn that leads the direction from to the direction to.
    QuaternionBase(const VectorType& from, const VectorType& to) { setValue(from, to); }

    /// The rotation in the matrix' upper 3x3, which must be one (no scale).
    explicit QuaternionBase(const MatrixType& matrix) { setValue(matrix); }

    static const QuaternionBase& identity()
    {
        static const QuaternionBase instance;
        return instance;
    }

    constexpr T x() const { return _values[0]; }
    constexpr T y() const { return _values[1]; }
    constexpr T z() const { return _values[2]; }
    constexpr T w() const { return _values[3]; }

    constexpr T& operator[](UInt32 index) { return _values[index]; }
    constexpr const T& operator[](UInt32 index) const { return _values[index]; }

    constexpr T* getValues() { return _values; }
    constexpr const T* getValues() const { return _values; }

    constexpr void setIdentity() { *this = QuaternionBase(); }

    /// A turn by angle radians about the axis (x, y, z) of any length; the identity when the axis is shorter
    /// than Eps.
    void setValueAsAxisRad(T x, T y, T z, T angle);
    void setValueAsAxisRad(const VectorType& axis, T angle)
    {
        setValueAsAxisRad(axis[0], axis[1], axis[2], angle);
    }

    void setValueAsAxisDeg(T x, T y, T z, T angle) { setValueAsAxisRad(x, y, z, osgDegree2Rad(angle)); }
    void setValueAsAxisDeg(const VectorType& axis, T angle) { setValueAsAxisRad(axis, osgDegree2Rad(angle)); }

    /// Takes the four components as they are.
    constexpr void setValueAsQuat(T x, T y, T z, T w)
    {
        _values[0] = x;
        _values[1] = y;
        _values[2] = z;
        _values[3] = w;
    }
    constexpr void setValueAsQuat(const T* values)
    {
        setValueAsQuat(values[0], values[1], values[2], values[3]);
    }

    void setValue(const MatrixType& matrix);
    void setValue(const VectorType& from, const VectorType& to);

    /// Turns by alpha about x, then by beta about y, then by gamma about z (fixed axes, radians).
    void setValue(T alpha, T beta, T gamma);

    /// Unit axis and angle in radians, 0 to 2 pi; the identity answers the axis (0, 0, 1) and the angle 0.
    void getValueAsAxisRad(T& x, T& y, T& z, T& angle) const;
    void getValueAsAxisRad(VectorType& axis, T& angle) const
    {
        getValueAsAxisRad(axis[0], axis[1], axis[2], angle);
    }

    void getValueAsAxisDeg(T& x, T& y, T& z, T& angle) const
    {
        getValueAsAxisRad(x, y, z, angle);
        angle = osgRad2Degree(angle);
    }
    void getValueAsAxisDeg(VectorType& axis, T& angle) const
    {
        getValueAsAxisDeg(axis[0], axis[1], axis[2], angle);
    }

    constexpr void getValueAsQuat(T& x, T& y, T& z, T& w) const
    {
        x = _values[0];
        y = _values[1];
        z = _values[2];
        w = _values[3];
    }

    /// Overwrites the whole matrix with this rotation.
    void getValue(MatrixType& matrix) const;

    /// Overwrites the upper 3x3 only.
    void getValuesOnly(MatrixType& matrix) const;

    T length() const
    {
        return std::sqrt(_values[0] * _values[0] + _values[1] * _values[1] + _values[2] * _values[2] +
                         _values[3] * _values[3]);
    }

    /// Scales to length 1; a quaternion of no length stays as it is.
    void normalize();

    /// this = this x other, normalised: other turns first.
    void mult(const QuaternionBase& other) { *this = product(*this, other); }

    /// this = other x this, normalised: other turns last.
    void multLeft(const QuaternionBase& other) { *this = product(other, *this); }

    void operator*=(const QuaternionBase& other) { mult(other); }

    /// Turns source; source and result may be one.
    void multVec(const VectorType& source, VectorType& result) const;

    /// Becomes the conjugate, which is the inverse of a unit quaternion.
    constexpr void invert() { setValueAsQuat(-_values[0], -_values[1], -_values[2], _values[3]); }

    constexpr QuaternionBase inverse() const
    {
        QuaternionBase result(*this);
        result.invert();
        return result;
    }

    /// The rotation at t (0 gives from, 1 gives to) on the shorter arc.
    static QuaternionBase slerp(const QuaternionBase& from, const QuaternionBase& to, T t);

    constexpr bool equals(const QuaternionBase& other, T tolerance) const
    {
        for (UInt32 i = 0; i < 4; ++i) {
            if (!osgEquals(_values[i], other._values[i], tolerance))
                return false;
        }
        return true;
    }

    constexpr bool operator==(const QuaternionBase& other) const
    {
        return equals(other, static_cast<T>(Eps));
    }
    constexpr bool operator!=(const QuaternionBase& other) const { return !(*this == other); }

private:
    static QuaternionBase product(const QuaternionBase& a, const QuaternionBase& b);

    T _values[4] = {0, 0, 0, 1};
};

template <class T>
void QuaternionBase<T>::setValueAsAxisRad(T x, T y, T z, T angle)
{
    const T length = std::sqrt(x * x + y * y + z * z);
    if (!(length >= static_cast<T>(Eps))) {
        setIdentity();
        return;
    }
    const T scale = std::sin(angle / 2) / length;
    setValueAsQuat(x * scale, y * scale, z * scale, std::cos(angle / 2));
}

template <class T>
void QuaternionBase<T>::setValue(const MatrixType& m)
{
    // The largest component first: it is at least 1/2, and so a safe divisor.
    const T trace = m[0][0] + m[1][1] + m[2][2];
    if (trace > 0) {
        const T s = std::sqrt(trace + 1) * 2;
        setValueAsQuat((m[1][2] - m[2][1]) / s, (m[2][0] - m[0][2]) / s, (m[0][1] - m[1][0]) / s, s / 4);
    } else {
        UInt32 i = m[1][1] > m[0][0] ? 1 : 0;
        if (m[2][2] > m[i][i])
            i = 2;
        const UInt32 j = (i + 1) % 3;
        const UInt32 k = (i + 2) % 3;
        const T s = std::sqrt(osgMax(m[i][i] - m[j][j] - m[k][k] + 1, static_cast<T>(Eps))) * 2;
        _values[i] = s / 4;
        _values[j] = (m[i][j] + m[j][i]) / s;
        _values[k] = (m[i][k] + m[k][i]) / s;
        _values[3] = (m[j][k] - m[k][j]) / s;
    }
    normalize();
}

template <class T>
void QuaternionBase<T>::setValue(const VectorType& from, const VectorType& to)
{
    VectorType a(from);
    VectorType b(to);
    a.normalize();
    b.normalize();
    const T cosine = a.dot(b);
    if (cosine > T(-1) + static_cast<T>(Eps)) {
        const VectorType axis = a.cross(b);
        setValueAsQuat(axis[0], axis[1], axis[2], 1 + cosine);
        normalize();
        return;
    }
    // Opposite directions: half a turn about any axis that stands on them.
    const VectorType other = std::abs(a[0]) < T(0.6) ? VectorType(1, 0, 0) : VectorType(0, 1, 0);
    setValueAsAxisRad(a.cross(other), std::acos(T(-1)));
}

template <class T>
void QuaternionBase<T>::setValue(T alpha, T beta, T gamma)
{
    const QuaternionBase x(VectorType(1, 0, 0), alpha);
    const QuaternionBase y(VectorType(0, 1, 0), beta);
    const QuaternionBase z(VectorType(0, 0, 1), gamma);
    *this = product(product(z, y), x);
}

template <class T>
void QuaternionBase<T>::getValueAsAxisRad(T& x, T& y, T& z, T& angle) const
{
    const T length = std::sqrt(_values[0] * _values[0] + _values[1] * _values[1] + _values[2] * _values[2]);
    if (!(length > static_cast<T>(Eps))) {
        x = 0;
        y = 0;
        z = 1;
        angle = 0;
        return;
    }
    // The arc tangent keeps its precision near 0 and pi, where an arc cosine of w loses half of it.
    angle = 2 * std::atan2(length, _values[3]);
    x = _values[0] / length;
    y = _values[1] / length;
    z = _values[2] / length;
}

template <class T>
void QuaternionBase<T>::normalize()
{
    const T current = length();
    if (!(current > 0))
        return;
    for (T& value : _values)
        value /= current;
}

template <class T>
void QuaternionBase<T>::multVec(const VectorType& source, VectorType& result) const
{
    const VectorType axis(_values[0], _values[1], _values[2]);
    const VectorType twice = axis.cross(source) * T(2);
    result = source + twice * _values[3] + axis.cross(twice);
}

template <class T>
QuaternionBase<T> QuaternionBase<T>::product(const QuaternionBase& a, const QuaternionBase& b)
{
    QuaternionBase result;
    result.setValueAsQuat(a[3] * b[0] + a[0] * b[3] + a[1] * b[2] - a[2] * b[1],
                          a[3] * b[1] + a[1] * b[3] + a[2] * b[0] - a[0] * b[2],
                          a[3] * b[2] + a[2] * b[3] + a[0] * b[1] - a[1] * b[0],
                          a[3] * b[3] - a[0] * b[0] - a[1] * b[1] - a[2] * b[2]);
    result.normalize();
    return result;
}

template <class T>
QuaternionBase<T> QuaternionBase<T>::slerp(const QuaternionBase& from, const QuaternionBase& to, T t)
{
    T cosine = 0;
    for (UInt32 i = 0; i < 4; ++i)
        cosine += from[i] * to[i];
    const T sign = cosine < 0 ? T(-1) : T(1);
    cosine *= sign;

    T fromWeight = 1 - t;
    T toWeight = t;
    // Close rotations are blended straight, as the sine in the divisor vanishes.
    if (cosine < T(1) - static_cast<T>(Eps)) {
        const T angle = std::acos(cosine);
        const T sine = std::sin(angle);
        fromWeight = std::sin((1 - t) * angle) / sine;
        toWeight = std::sin(t * angle) / sine;
    }
    QuaternionBase result;
    for (UInt32 i = 0; i < 4; ++i)
        result[i] = fromWeight * from[i] + sign * toWeight * to[i];
    result.normalize();
    return result;
}

/// Writes x, y, z, w, separated by single blanks.
template <class T>
std::ostream& operator<<(std::ostream& stream, const QuaternionBase<T>& q)
{
    return stream << q[0] << ' ' << q[1] << ' ' << q[2] << ' ' << q[3];
}

typedef QuaternionBase<Real32> Quaternion;

static_assert(sizeof(Quaternion) == 16 && std::is_trivially_copyable_v<Quaternion>);

} // namespace osg

// The operations on matrices need the whole matrix, which in turn needs the quaternion.
#include "OSGMatrix.h"

namespace osg {

template <class T>
void QuaternionBase<T>::getValue(MatrixType& matrix) const
{
    matrix.setIdentity();
    getValuesOnly(matrix);
}

template <class T>
void QuaternionBase<T>::getValuesOnly(MatrixType& matrix) const
{
    const T x = _values[0];
    const T y = _values[1];
    const T z = _values[2];
    const T w = _values[3];
    matrix[0][0] = 1 - 2 * (y * y + z * z);
    matrix[0][1] = 2 * (x * y + z * w);
    matrix[0][2] = 2 * (x * z - y * w);
    matrix[1][0] = 2 * (x * y - z * w);
    matrix[1][1] = 1 - 2 * (x * x + z * z);
    matrix[1][2] = 2 * (y * z + x * w);
    matrix[2][0] = 2 * (x * z + y * w);
    matrix[2][1] = 2 * (y * z - x * w);
    matrix[2][2] = 1 - 2 * (x * x + y * y);
}

} // namespace osg
