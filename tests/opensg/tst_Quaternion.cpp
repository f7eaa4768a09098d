#include <OpenSG/OSGQuaternion.h>

#include <QtTest>

using namespace osg;

namespace {

Quaternion quaternion(float x, float y, float z, float w)
{
    Quaternion q;
    q.setValueAsQuat(x, y, z, w);
    return q;
}

Vec3f turned(const Quaternion& q, const Vec3f& v)
{
    Vec3f result;
    q.multVec(v, result);
    return result;
}

} // namespace

class tst_Quaternion : public QObject
{
    Q_OBJECT

private slots:
    void defaultIsIdentity();
    void axisAndAngle();
    void axisOfAnyLength();
    void noAxisIsIdentity();
    void degrees();
    void axisAngleComesBack();
    void identityAnswersZAxis();
    void betweenTwoDirections();
    void betweenOppositeDirections();
    void fromMatrixAndBack_data();
    void fromMatrixAndBack();
    void valuesOnlyKeepsTheRest();
    void eulerAngles();
    void productIsHamiltons();
    void productIsNormalised();
    void multTurnsOtherFirst();
    void inverseIsConjugate();
    void slerpTakesTheShorterArc();
    void slerpOfEqualRotations();
    void comparisonTellsSigns();
};

void tst_Quaternion::defaultIsIdentity()
{
    const Quaternion q;
    QCOMPARE(q.x(), 0.0f);
    QCOMPARE(q.y(), 0.0f);
    QCOMPARE(q.z(), 0.0f);
    QCOMPARE(q.w(), 1.0f);
    QVERIFY(Quaternion::identity() == q);
    QCOMPARE(sizeof q, std::size_t(16));
}

void tst_Quaternion::axisAndAngle()
{
    const Quaternion q(Vec3f(0, 0, 1), Pi / 2);
    const float half = std::sqrt(0.5f);
    QVERIFY(q == quaternion(0, 0, half, half));
    QVERIFY(turned(q, Vec3f(1, 0, 0)) == Vec3f(0, 1, 0));
}

void tst_Quaternion::axisOfAnyLength()
{
    QVERIFY(Quaternion(Vec3f(0, 0, 50), 1) == Quaternion(Vec3f(0, 0, 1), 1));
}

void tst_Quaternion::noAxisIsIdentity()
{
    Quaternion q(Vec3f(0, 0, 1), 1);
    q.setValueAsAxisRad(0, 0, 0, 2);
    QVERIFY(q == Quaternion());
    q.setValueAsAxisRad(std::numeric_limits<float>::quiet_NaN(), 0, 0, 2);
    QVERIFY(q == Quaternion());
}

void tst_Quaternion::degrees()
{
    Quaternion q;
    q.setValueAsAxisDeg(1, 0, 0, 90);
    QVERIFY(q == Quaternion(Vec3f(1, 0, 0), Pi / 2));
    Vec3f axis;
    float angle = 0;
    q.getValueAsAxisDeg(axis, angle);
    QCOMPARE(angle, 90.0f);
    QVERIFY(axis == Vec3f(1, 0, 0));
}

void tst_Quaternion::axisAngleComesBack()
{
    for (float angle : {0.001f, 0.5f, 3.0f, 3.14159f, 4.0f, 6.0f}) {
        const Quaternion q(Vec3f(0, 3, 4), angle);
        Vec3f axis;
        float found = 0;
        q.getValueAsAxisRad(axis, found);
        QVERIFY(axis.equals(Vec3f(0, 0.6f, 0.8f), 1e-5f));
        QVERIFY(std::abs(found - angle) < 1e-5f);
    }
}

void tst_Quaternion::identityAnswersZAxis()
{
    float x = 9;
    float y = 9;
    float z = 9;
    float angle = 9;
    Quaternion().getValueAsAxisRad(x, y, z, angle);
    QCOMPARE(x, 0.0f);
    QCOMPARE(y, 0.0f);
    QCOMPARE(z, 1.0f);
    QCOMPARE(angle, 0.0f);
}

void tst_Quaternion::betweenTwoDirections()
{
    const Vec3f from(1, 2, 3);
    const Vec3f to(-2, 1, 0.5f);
    const Vec3f result = turned(Quaternion(from, to), from);
    QVERIFY((result / result.length()).equals(to / to.length(), 1e-5f));
    QVERIFY(Quaternion(from, from * 5) == Quaternion());
}

void tst_Quaternion::betweenOppositeDirections()
{
    for (const Vec3f& v : {Vec3f(1, 0, 0), Vec3f(0, -1, 0), Vec3f(0, 0, 1), Vec3f(1, 1, 1)}) {
        const Quaternion q(v, -v);
        QVERIFY(std::abs(q.length() - 1) < 1e-5f);
        QVERIFY(turned(q, v).equals(-v, 1e-5f));
    }
}

void tst_Quaternion::fromMatrixAndBack_data()
{
    QTest::addColumn<float>("x");
    QTest::addColumn<float>("y");
    QTest::addColumn<float>("z");
    QTest::addColumn<float>("angle");
    QTest::newRow("identity") << 0.0f << 0.0f << 1.0f << 0.0f;
    QTest::newRow("small") << 1.0f << 2.0f << 3.0f << 0.01f;
    QTest::newRow("usual") << 1.0f << -2.0f << 3.0f << 1.0f;
    QTest::newRow("half turn about x") << 1.0f << 0.0f << 0.0f << Pi;
    QTest::newRow("half turn about y") << 0.0f << 1.0f << 0.0f << Pi;
    QTest::newRow("half turn about z") << 0.0f << 0.0f << 1.0f << Pi;
    QTest::newRow("near half turn") << 3.0f << 2.0f << 1.0f << 3.1f;
}

void tst_Quaternion::fromMatrixAndBack()
{
    QFETCH(float, x);
    QFETCH(float, y);
    QFETCH(float, z);
    QFETCH(float, angle);
    const Quaternion q(Vec3f(x, y, z), angle);
    Matrix m(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
    q.getValue(m);
    QCOMPARE(m[3][0], 0.0f);
    QCOMPARE(m[0][3], 0.0f);
    QCOMPARE(m[3][3], 1.0f);

    // The matrix turns as the quaternion does, and the quaternion comes back up to its sign.
    Vec3f v(1, 2, 3);
    m.multMatrixVec(v);
    QVERIFY(v.equals(turned(q, Vec3f(1, 2, 3)), 1e-5f));
    const Quaternion found(m);
    const float dot = found[0] * q[0] + found[1] * q[1] + found[2] * q[2] + found[3] * q[3];
    QVERIFY(std::abs(std::abs(dot) - 1) < 1e-5f);
}

void tst_Quaternion::valuesOnlyKeepsTheRest()
{
    Matrix m(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
    Quaternion().getValuesOnly(m);
    QVERIFY(m == Matrix(1, 0, 0, 4, 0, 1, 0, 8, 0, 0, 1, 12, 13, 14, 15, 16));
}

void tst_Quaternion::eulerAngles()
{
    Quaternion q;
    q.setValue(Pi / 2, 0, 0);
    QVERIFY(q == Quaternion(Vec3f(1, 0, 0), Pi / 2));
    q.setValue(Pi / 2, Pi / 2, 0);
    // About x first (y becomes z), then about y (z becomes x).
    QVERIFY(turned(q, Vec3f(0, 1, 0)) == Vec3f(1, 0, 0));
    q.setValue(0, Pi / 2, Pi / 2);
    // About y first (z becomes x), then about z (x becomes y).
    QVERIFY(turned(q, Vec3f(0, 0, 1)) == Vec3f(0, 1, 0));
}

void tst_Quaternion::productIsHamiltons()
{
    Quaternion i = quaternion(1, 0, 0, 0);
    const Quaternion j = quaternion(0, 1, 0, 0);
    const Quaternion k = quaternion(0, 0, 1, 0);
    i.mult(j);
    QVERIFY(i == k);
    Quaternion l = quaternion(1, 0, 0, 0);
    l.multLeft(j);
    QVERIFY(l == quaternion(0, 0, -1, 0));
    Quaternion m = j;
    m *= k;
    QVERIFY(m == quaternion(1, 0, 0, 0));
}

void tst_Quaternion::productIsNormalised()
{
    Quaternion q = quaternion(0, 0, 0, 3);
    q.mult(quaternion(0, 0, 0, 5));
    QVERIFY(q == Quaternion());
}

void tst_Quaternion::multTurnsOtherFirst()
{
    Quaternion q(Vec3f(0, 0, 1), Pi / 2);
    q.mult(Quaternion(Vec3f(1, 0, 0), Pi / 2));
    QVERIFY(turned(q, Vec3f(0, 1, 0)) == Vec3f(0, 0, 1));
    Quaternion r(Vec3f(0, 0, 1), Pi / 2);
    r.multLeft(Quaternion(Vec3f(1, 0, 0), Pi / 2));
    QVERIFY(turned(r, Vec3f(0, 1, 0)) == Vec3f(-1, 0, 0));
}

void tst_Quaternion::inverseIsConjugate()
{
    Quaternion q = quaternion(1, 2, 3, 4);
    QVERIFY(q.inverse() == quaternion(-1, -2, -3, 4));
    q.invert();
    QVERIFY(q == quaternion(-1, -2, -3, 4));
}

void tst_Quaternion::slerpTakesTheShorterArc()
{
    const Quaternion a(Vec3f(0, 1, 0), 0.2f);
    const Quaternion b(Vec3f(0, 1, 0), 1.2f);
    QVERIFY(Quaternion::slerp(a, b, 0) == a);
    QVERIFY(Quaternion::slerp(a, b, 1) == b);
    QVERIFY(Quaternion::slerp(a, b, 0.25f) == Quaternion(Vec3f(0, 1, 0), 0.45f));
    const Quaternion minusB = quaternion(-b[0], -b[1], -b[2], -b[3]);
    QVERIFY(Quaternion::slerp(a, minusB, 0.25f) == Quaternion(Vec3f(0, 1, 0), 0.45f));
}

void tst_Quaternion::slerpOfEqualRotations()
{
    const Quaternion a(Vec3f(0, 1, 0), 0.2f);
    QVERIFY(Quaternion::slerp(a, a, 0.5f) == a);
}

void tst_Quaternion::comparisonTellsSigns()
{
    QVERIFY(quaternion(0, 0, 0, 1) != quaternion(0, 0, 0, -1));
    QVERIFY(quaternion(0, 0, 0, 1) == quaternion(9e-7f, 0, 0, 1));
    QVERIFY(quaternion(0, 0, 0, 1) != quaternion(2e-6f, 0, 0, 1));
}

QTEST_APPLESS_MAIN(tst_Quaternion)
#include "tst_Quaternion.moc"
