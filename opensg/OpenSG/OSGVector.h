#pragma once

#include "OSGBaseFunctions.h"
#include "OSGBaseTypes.h"

#include <cmath>
#include <ostream>
#include <type_traits>

namespace osg {

template <class T, UInt32 N>
class Vector;

/// A point of N components of type T: N values and nothing else, so that an array of points goes to GL as
/// it is. Missing scalars of a constructor are 0, surplus ones are ignored. Comparison is tolerant (Eps).
template <class T, UInt32 N>
class OSG_BASE_DLLMAPPING Point
{
    template <class... S>
    using Scalars = std::enable_if_t<(std::is_arithmetic_v<S> && ...) && sizeof...(S) <= 4>;

public:
    typedef T ValueType;

    /// Type of lengths and angles: T where T is a floating type.
    typedef std::conditional_t<std::is_floating_point_v<T>, T, Real32> RealType;

    static constexpr UInt32 Dimension = N;

    /// All components 0.
    static const Point Null;

    constexpr Point() = default;

    template <class S, class = Scalars<S>>
    explicit constexpr Point(S x)
    {
        setValues(x);
    }

    template <class S0, class S1, class... S, class = Scalars<S0, S1, S...>>
    constexpr Point(S0 x, S1 y, S... rest)
    {
        setValues(x, y, rest...);
    }

    /// Copies N values; null gives zeros.
    explicit constexpr Point(const T* values) { setValue(values); }

    /// Takes over the components of a point of another type or size, cut or padded with 0.
    template <class U, UInt32 M>
    explicit constexpr Point(const Point<U, M>& other)
    {
        setValue(other);
    }

    constexpr T x() const { return _values[0]; }
    constexpr T y() const { return component<1>(); }
    constexpr T z() const { return component<2>(); }
    constexpr T w() const { return component<3>(); }

    constexpr T& operator[](UInt32 index) { return _values[index]; }
    constexpr const T& operator[](UInt32 index) const { return _values[index]; }

    constexpr T* getValues() { return _values; }
    constexpr const T* getValues() const { return _values; }

    template <class... S, class = Scalars<S...>>
    constexpr void setValues(S... scalars)
    {
        const T given[] = {static_cast<T>(scalars)...};
        for (UInt32 i = 0; i < N; ++i)
            _values[i] = i < sizeof...(S) ? given[i] : T(0);
    }

    constexpr void setValue(const T* values)
    {
        for (UInt32 i = 0; i < N; ++i)
            _values[i] = values ? values[i] : T(0);
    }

    template <class U, UInt32 M>
    constexpr void setValue(const Point<U, M>& other)
    {
        for (UInt32 i = 0; i < N; ++i)
            _values[i] = i < M ? static_cast<T>(other[i]) : T(0);
    }

    constexpr void setNull() { *this = Point(); }

    /// The largest component.
    constexpr T maxValue() const
    {
        T result = _values[0];
        for (UInt32 i = 1; i < N; ++i)
            result = osgMax(result, _values[i]);
        return result;
    }

    constexpr void negate()
    {
        for (UInt32 i = 0; i < N; ++i)
            _values[i] = static_cast<T>(-_values[i]);
    }

    /// The vector from the origin to this point.
    constexpr Vector<T, N> subZero() const { return Vector<T, N>(*this); }

    constexpr T dist2(const Point& other) const
    {
        T sum = 0;
        for (UInt32 i = 0; i < N; ++i) {
            // Ordered, because unsigned types have no negative difference.
            const T difference =
                static_cast<T>(_values[i] < other[i] ? other[i] - _values[i] : _values[i] - other[i]);
            sum = static_cast<T>(sum + difference * difference);
        }
        return sum;
    }

    RealType dist(const Point& other) const { return std::sqrt(static_cast<RealType>(dist2(other))); }

    constexpr bool equals(const Point& other, T tolerance) const
    {
        for (UInt32 i = 0; i < N; ++i) {
            if (!osgEquals(_values[i], other[i], tolerance))
                return false;
        }
        return true;
    }

    constexpr bool isZero() const { return equals(Point(), static_cast<T>(Eps)); }

    constexpr bool operator==(const Point& other) const { return equals(other, static_cast<T>(Eps)); }
    constexpr bool operator!=(const Point& other) const { return !(*this == other); }

    /// Lexicographic and exact, a strict order for sorted containers.
    constexpr bool operator<(const Point& other) const
    {
        for (UInt32 i = 0; i < N; ++i) {
            if (_values[i] < other[i])
                return true;
            if (other[i] < _values[i])
                return false;
        }
        return false;
    }

    constexpr Vector<T, N> operator-(const Point& other) const
    {
        Vector<T, N> result(*this);
        result.subtract(other);
        return result;
    }

    constexpr Point operator+(const Vector<T, N>& vector) const
    {
        Point result(*this);
        result.add(vector);
        return result;
    }

    constexpr Point operator-(const Vector<T, N>& vector) const
    {
        Point result(*this);
        result.subtract(vector);
        return result;
    }

    constexpr Point operator-() const
    {
        Point result(*this);
        result.negate();
        return result;
    }

    constexpr Point operator*(T factor) const
    {
        Point result(*this);
        result *= factor;
        return result;
    }

    constexpr Point operator/(T divisor) const
    {
        Point result(*this);
        result /= divisor;
        return result;
    }

    constexpr void operator+=(const Vector<T, N>& vector) { add(vector); }
    constexpr void operator-=(const Vector<T, N>& vector) { subtract(vector); }

    constexpr void operator*=(T factor)
    {
        for (UInt32 i = 0; i < N; ++i)
            _values[i] = static_cast<T>(_values[i] * factor);
    }

    constexpr void operator/=(T divisor)
    {
        for (UInt32 i = 0; i < N; ++i)
            _values[i] = static_cast<T>(_values[i] / divisor);
    }

protected:
    constexpr void add(const Point& other)
    {
        for (UInt32 i = 0; i < N; ++i)
            _values[i] = static_cast<T>(_values[i] + other._values[i]);
    }

    constexpr void subtract(const Point& other)
    {
        for (UInt32 i = 0; i < N; ++i)
            _values[i] = static_cast<T>(_values[i] - other._values[i]);
    }

private:
    friend class Vector<T, N>;

    template <UInt32 I>
    constexpr T component() const
    {
        static_assert(I < N, "the point has no such component");
        return _values[I];
    }

    T _values[N] = {};
};

template <class T, UInt32 N>
inline const Point<T, N> Point<T, N>::Null;

/// A direction or difference. It is a point too where one is asked for; the way back is explicit.
template <class T, UInt32 N>
class OSG_BASE_DLLMAPPING Vector : public Point<T, N>
{
    typedef Point<T, N> Base;
    friend class Point<T, N>;

public:
    using Base::Base;
    using typename Base::RealType;

    /// All components 0.
    static const Vector Null;

    constexpr Vector() = default;
    explicit constexpr Vector(const Base& point)
        : Base(point)
    {
    }

    /// The point that this vector leads to from the origin.
    constexpr const Base& addToZero() const { return *this; }

    constexpr T dot(const Vector& other) const
    {
        T sum = 0;
        for (UInt32 i = 0; i < N; ++i)
            sum = static_cast<T>(sum + (*this)[i] * other[i]);
        return sum;
    }

    constexpr Vector cross(const Vector& other) const
    {
        static_assert(N == 3, "a cross product needs three components");
        const Vector& a = *this;
        const Vector& b = other;
        return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
    }

    constexpr T squareLength() const { return dot(*this); }
    RealType length() const { return std::sqrt(static_cast<RealType>(squareLength())); }

    /// Scales to length 1; a vector shorter than Eps stays as it is.
    void normalize()
    {
        static_assert(std::is_floating_point_v<T>, "a vector of integers has no unit length");
        const T current = length();
        if (current >= static_cast<T>(Eps))
            *this *= T(1) / current;
    }

    /// Angle to other in radians, 0 to pi; 0 when one of the two has no length.
    RealType enclosedAngle(const Vector& other) const
    {
        const RealType lengths = length() * other.length();
        if (!(lengths > 0))
            return 0;
        return std::acos(osgClamp(RealType(-1), static_cast<RealType>(dot(other)) / lengths, RealType(1)));
    }

    /// Becomes its own projection onto other; answers the projection's signed length along other. Both are
    /// 0 when other has no length.
    RealType projectTo(const Vector& other)
    {
        const RealType square = static_cast<RealType>(other.squareLength());
        const RealType along = static_cast<RealType>(dot(other));
        if (!(square > 0)) {
            *this = Vector();
            return 0;
        }
        for (UInt32 i = 0; i < N; ++i)
            (*this)[i] = static_cast<T>(other[i] * along / square);
        return along / std::sqrt(square);
    }

    constexpr Vector operator+(const Vector& other) const
    {
        Vector result(*this);
        result.add(other);
        return result;
    }

    constexpr Vector operator-(const Vector& other) const
    {
        Vector result(*this);
        result.subtract(other);
        return result;
    }

    constexpr Vector operator-() const
    {
        Vector result(*this);
        result.negate();
        return result;
    }

    constexpr Vector operator*(T factor) const
    {
        Vector result(*this);
        result *= factor;
        return result;
    }

    constexpr Vector operator/(T divisor) const
    {
        Vector result(*this);
        result /= divisor;
        return result;
    }

    /// The dot product.
    constexpr T operator*(const Vector& other) const { return dot(other); }

    /// The cross product.
    constexpr Vector operator%(const Vector& other) const { return cross(other); }
};

template <class T, UInt32 N>
inline const Vector<T, N> Vector<T, N>::Null;

template <class T, UInt32 N>
constexpr Point<T, N> operator*(typename Point<T, N>::ValueType factor, const Point<T, N>& point)
{
    return point * factor;
}

template <class T, UInt32 N>
constexpr Vector<T, N> operator*(typename Vector<T, N>::ValueType factor, const Vector<T, N>& vector)
{
    return vector * factor;
}

/// Writes the components, separated by ", "; small integers as numbers.
template <class T, UInt32 N>
std::ostream& operator<<(std::ostream& stream, const Point<T, N>& point)
{
    for (UInt32 i = 0; i < N; ++i)
        stream << (i ? ", " : "") << +point[i];
    return stream;
}

#define OSG_VECTOR_TYPES(suffix, type)                                                                       \
    typedef Point<type, 2> Pnt2##suffix;                                                                     \
    typedef Point<type, 3> Pnt3##suffix;                                                                     \
    typedef Point<type, 4> Pnt4##suffix;                                                                     \
    typedef Vector<type, 2> Vec2##suffix;                                                                    \
    typedef Vector<type, 3> Vec3##suffix;                                                                    \
    typedef Vector<type, 4> Vec4##suffix;

OSG_VECTOR_TYPES(f, Real32)
OSG_VECTOR_TYPES(d, Real64)
OSG_VECTOR_TYPES(ld, Real128)
OSG_VECTOR_TYPES(b, Int8)
OSG_VECTOR_TYPES(ub, UInt8)
OSG_VECTOR_TYPES(s, Int16)
OSG_VECTOR_TYPES(us, UInt16)

#undef OSG_VECTOR_TYPES

static_assert(sizeof(Vec3f) == 12 && std::is_trivially_copyable_v<Vec3f>);

} // namespace osg
