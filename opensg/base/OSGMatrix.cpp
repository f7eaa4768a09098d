#include "OpenSG/OSGMatrix.h"

#include <array>
#include <cmath>

namespace osg {

namespace {

/// The 2x2 minors of the upper and of the lower two rows, from which determinant and inverse follow.
/// In double precision, so that determinants near the singular limit come out right for Real32 too.
struct Minors
{
    template <class T>
    explicit Minors(const TransformationMatrix<T>& m)
    {
        const int pairs[6][2] = {{0, 1}, {0, 2}, {0, 3}, {1, 2}, {1, 3}, {2, 3}};
        for (int i = 0; i < 6; ++i) {
            const int p = pairs[i][0];
            const int q = pairs[i][1];
            upper[i] = Real64(m[p][0]) * m[q][1] - Real64(m[q][0]) * m[p][1];
            lower[i] = Real64(m[p][2]) * m[q][3] - Real64(m[q][2]) * m[p][3];
        }
    }

    Real64 det() const
    {
        return upper[0] * lower[5] - upper[1] * lower[4] + upper[2] * lower[3] + upper[3] * lower[2] -
               upper[4] * lower[1] + upper[5] * lower[0];
    }

    Real64 upper[6];
    Real64 lower[6];
};

typedef std::array<Vec3d, 3> Columns;

/// Turns columns i and j of a and v in their plane so that those of a stand on each other.
/// False when they did already.
bool makeOrthogonal(Columns& a, Columns& v, int i, int j, Real64 tolerance)
{
    const Real64 ii = a[i].squareLength();
    const Real64 jj = a[j].squareLength();
    const Real64 ij = a[i].dot(a[j]);
    if (!(std::abs(ij) > tolerance * std::sqrt(ii * jj)))
        return false;
    const Real64 zeta = (jj - ii) / (2 * ij);
    const Real64 tangent = (zeta >= 0 ? 1.0 : -1.0) / (std::abs(zeta) + std::sqrt(1 + zeta * zeta));
    const Real64 cosine = 1 / std::sqrt(1 + tangent * tangent);
    const Real64 sine = cosine * tangent;
    for (Columns* columns : {&a, &v}) {
        const Vec3d first = (*columns)[i];
        const Vec3d second = (*columns)[j];
        (*columns)[i] = first * cosine - second * sine;
        (*columns)[j] = first * sine + second * cosine;
    }
    return true;
}

/// Makes unit columns of u and answers their lengths; columns without length become perpendicular to the
/// others, so that the result is a rotation or a mirrored one.
Vec3d takeLengths(Columns& u)
{
    Vec3d lengths;
    int order[3] = {0, 1, 2};
    for (int i = 0; i < 3; ++i)
        lengths[i] = u[i].length();
    for (int i : {0, 1, 0}) {
        if (lengths[order[i]] < lengths[order[i + 1]])
            std::swap(order[i], order[i + 1]);
    }
    const Real64 limit = lengths[order[0]] * 1e-12;
    const int a = order[0];
    const int b = order[1];
    const int c = order[2];
    u[a] = lengths[a] > 0 ? u[a] / lengths[a] : Vec3d((a == 0), (a == 1), (a == 2));
    if (lengths[b] > limit) {
        u[b] = u[b] / lengths[b];
    } else {
        // The axis least like the first column, made perpendicular; its own axis where that is possible.
        const Vec3d own((b == 0), (b == 1), (b == 2));
        const Vec3d other((c == 0), (c == 1), (c == 2));
        const Vec3d start = std::abs(u[a].dot(own)) <= std::abs(u[a].dot(other)) ? own : other;
        u[b] = start - u[a] * u[a].dot(start);
        u[b] = u[b] / u[b].length();
    }
    if (lengths[c] > limit) {
        u[c] = u[c] / lengths[c];
    } else {
        u[c] = u[a].cross(u[b]);
        if (u[0].dot(u[1].cross(u[2])) < 0)
            u[c] = -u[c];
    }
    return lengths;
}

QuaternionBase<Real64> rotationOf(const Columns& columns)
{
    Matrix4d matrix;
    matrix.setValue(columns[0], columns[1], columns[2]);
    return QuaternionBase<Real64>(matrix);
}

template <class T>
QuaternionBase<T> converted(const QuaternionBase<Real64>& q)
{
    QuaternionBase<T> result;
    result.setValueAsQuat(T(q[0]), T(q[1]), T(q[2]), T(q[3]));
    return result;
}

} // namespace

template <class T>
void TransformationMatrix<T>::setTransform(const PointType3& translation, const QuaternionType& rotation,
                                           const PointType3& scale)
{
    setTransform(translation, rotation);
    for (UInt32 c = 0; c < 3; ++c)
        _columns[c] *= scale[c];
}

template <class T>
void TransformationMatrix<T>::setTransform(const PointType3& translation, const QuaternionType& rotation,
                                           const PointType3& scale, const QuaternionType& scaleOrientation)
{
    QuaternionType turn(rotation);
    turn.mult(scaleOrientation);
    TransformationMatrix back;
    back.setRotate(scaleOrientation.inverse());
    setTransform(translation, turn, scale);
    mult(back);
}

template <class T>
void TransformationMatrix<T>::setTransform(const PointType3& translation, const QuaternionType& rotation,
                                           const PointType3& scale, const QuaternionType& scaleOrientation,
                                           const PointType3& center)
{
    const PointType3 fixed(center);
    const PointType3 target = translation + fixed.subZero();
    setTransform(PointType3(), rotation, scale, scaleOrientation);
    PointType3 moved;
    multMatrixPnt(fixed, moved);
    setTranslate((target - moved).addToZero());
}

template <class T>
void TransformationMatrix<T>::getTransform(VectorType3& translation, QuaternionType& rotation,
                                           VectorType3& scale, QuaternionType& scaleOrientation) const
{
    getTransform(translation, rotation, scale, scaleOrientation, PointType3());
}

template <class T>
void TransformationMatrix<T>::getTransform(VectorType3& translation, QuaternionType& rotation,
                                           VectorType3& scale, QuaternionType& scaleOrientation,
                                           const PointType3& center) const
{
    PointType3 moved;
    multMatrixPnt(center, moved);
    translation = moved - center;

    // Singular value decomposition A = U * S * V^T by one-sided Jacobi turns. Columns that stand on each
    // other within the type's precision are left alone: a matrix without scale orientation gets none.
    Columns u = {Vec3d(_columns[0]), Vec3d(_columns[1]), Vec3d(_columns[2])};
    Columns v = {Vec3d(1, 0, 0), Vec3d(0, 1, 0), Vec3d(0, 0, 1)};
    const Real64 tolerance = sizeof(T) == sizeof(Real32) ? 1e-6 : 1e-13;
    const int mostSweeps = 30;
    for (int sweep = 0, turned = 1; turned && sweep < mostSweeps; ++sweep) {
        turned = makeOrthogonal(u, v, 0, 1, tolerance);
        turned += makeOrthogonal(u, v, 0, 2, tolerance);
        turned += makeOrthogonal(u, v, 1, 2, tolerance);
    }
    Vec3d lengths = takeLengths(u);
    if (u[0].dot(u[1].cross(u[2])) < 0) {
        lengths.negate();
        for (Vec3d& column : u)
            column.negate();
    }

    // A = (U * V^T) * V * S * V^T
    const QuaternionBase<Real64> orientation = rotationOf(v);
    QuaternionBase<Real64> turn = rotationOf(u);
    turn.mult(orientation.inverse());
    rotation = converted<T>(turn);
    scale = VectorType3(lengths);
    scaleOrientation = converted<T>(orientation);
}

template <class T>
T TransformationMatrix<T>::det() const
{
    return static_cast<T>(Minors(*this).det());
}

template <class T>
T TransformationMatrix<T>::det3() const
{
    return static_cast<T>(Vec3d(_columns[0]).dot(Vec3d(_columns[1]).cross(Vec3d(_columns[2]))));
}

template <class T>
bool TransformationMatrix<T>::inverse(TransformationMatrix& result) const
{
    const Minors minors(*this);
    const Real64 det = minors.det();
    if (!(std::isfinite(det) && std::abs(det) >= 1e-30)) {
        result.setIdentity();
        return false;
    }
    const TransformationMatrix m(*this);
    const Real64* s = minors.upper;
    const Real64* c = minors.lower;
    const Real64 f = 1 / det;
    const auto set = [&](UInt32 column, UInt32 row, Real64 value) {
        result[column][row] = static_cast<T>(value * f);
    };
    set(0, 0, m[1][1] * c[5] - m[2][1] * c[4] + m[3][1] * c[3]);
    set(1, 0, -m[1][0] * c[5] + m[2][0] * c[4] - m[3][0] * c[3]);
    set(2, 0, m[1][3] * s[5] - m[2][3] * s[4] + m[3][3] * s[3]);
    set(3, 0, -m[1][2] * s[5] + m[2][2] * s[4] - m[3][2] * s[3]);
    set(0, 1, -m[0][1] * c[5] + m[2][1] * c[2] - m[3][1] * c[1]);
    set(1, 1, m[0][0] * c[5] - m[2][0] * c[2] + m[3][0] * c[1]);
    set(2, 1, -m[0][3] * s[5] + m[2][3] * s[2] - m[3][3] * s[1]);
    set(3, 1, m[0][2] * s[5] - m[2][2] * s[2] + m[3][2] * s[1]);
    set(0, 2, m[0][1] * c[4] - m[1][1] * c[2] + m[3][1] * c[0]);
    set(1, 2, -m[0][0] * c[4] + m[1][0] * c[2] - m[3][0] * c[0]);
    set(2, 2, m[0][3] * s[4] - m[1][3] * s[2] + m[3][3] * s[0]);
    set(3, 2, -m[0][2] * s[4] + m[1][2] * s[2] - m[3][2] * s[0]);
    set(0, 3, -m[0][1] * c[3] + m[1][1] * c[1] - m[2][1] * c[0]);
    set(1, 3, m[0][0] * c[3] - m[1][0] * c[1] + m[2][0] * c[0]);
    set(2, 3, -m[0][3] * s[3] + m[1][3] * s[1] - m[2][3] * s[0]);
    set(3, 3, m[0][2] * s[3] - m[1][2] * s[1] + m[2][2] * s[0]);
    return true;
}

template class TransformationMatrix<Real32>;
template class TransformationMatrix<Real64>;

} // namespace osg
