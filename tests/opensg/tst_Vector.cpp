#include <OpenSG/OSGVector.h>

#include <QtTest>

#include <cstring>
#include <sstream>
#include <vector>

using namespace osg;

class tst_Vector : public QObject
{
    Q_OBJECT

private slots:
    void holdsItsValuesAndNothingElse();
    void missingScalarsAreZero();
    void surplusScalarsAreIgnored();
    void pointerConstructorCopiesAndNullGivesZeros();
    void otherSizesAreCutOrPadded();
    void otherTypesAreConverted();
    void vectorPassesAsPoint();
    void pointNeedsConversionToVector();
    void accessorsAnswerByValue();
    void setValuesAndSetNull();
    void pointMinusPointIsVector();
    void pointPlusVectorIsPoint();
    void scalarFromEitherSide();
    void starOfVectorsIsDotProduct();
    void percentIsCrossProduct();
    void compoundAssignment();
    void lengthAndSquareLength();
    void normalizeGivesUnitLength();
    void normalizeLeavesShortVectorsAlone();
    void comparisonToleratesEps();
    void comparisonOfUnsignedHasNoWrap();
    void equalsTakesTolerance();
    void infinityEqualsItself();
    void isZeroUsesEps();
    void orderIsLexicographic();
    void enclosedAngleInRadians();
    void projectToAnswersLengthAlong();
    void distances();
    void distanceOfUnsignedPoints();
    void maxValueAndNegate();
    void wayBetweenPointAndVector();
    void nullConstant();
    void writesComponentsWithCommas();
    void writesBytesAsNumbers();
    void constants();
};

void tst_Vector::holdsItsValuesAndNothingElse()
{
    QCOMPARE(sizeof(Vec2f), sizeof(float) * 2);
    QCOMPARE(sizeof(Pnt3f), sizeof(float) * 3);
    QCOMPARE(sizeof(Vec3f), sizeof(float) * 3);
    QCOMPARE(sizeof(Vec4d), sizeof(double) * 4);
    QCOMPARE(sizeof(Vec4ub), std::size_t(4));
    QVERIFY(std::is_trivially_copyable_v<Pnt3f> && std::is_standard_layout_v<Vec3f>);

    const std::vector<Vec3f> vectors = {{1, 2, 3}, {4, 5, 6}};
    float flat[6];
    std::memcpy(flat, vectors.data(), sizeof flat);
    for (int i = 0; i < 6; ++i)
        QCOMPARE(flat[i], float(i + 1));
}

void tst_Vector::missingScalarsAreZero()
{
    const Vec3f one(1);
    QCOMPARE(one[0], 1.0f);
    QCOMPARE(one[1], 0.0f);
    QCOMPARE(one[2], 0.0f);
    const Vec4f two(1, 2);
    QCOMPARE(two[1], 2.0f);
    QCOMPARE(two[3], 0.0f);
    const Vec3f none;
    QCOMPARE(none[0], 0.0f);
    const Vec3f zero(0);
    QCOMPARE(zero[2], 0.0f);
}

void tst_Vector::surplusScalarsAreIgnored()
{
    const Pnt2f p(1, 2, 3, 4);
    QCOMPARE(p[0], 1.0f);
    QCOMPARE(p[1], 2.0f);
}

void tst_Vector::pointerConstructorCopiesAndNullGivesZeros()
{
    const float values[] = {7, 8, 9};
    QCOMPARE(Vec3f(values)[2], 9.0f);
    const float* none = nullptr;
    const Vec3f v(none);
    QCOMPARE(v[0], 0.0f);
    QCOMPARE(v[2], 0.0f);
}

void tst_Vector::otherSizesAreCutOrPadded()
{
    const Vec4f four(1, 2, 3, 4);
    const Vec2f two(four);
    QCOMPARE(two[1], 2.0f);
    const Vec4f padded(two);
    QCOMPARE(padded[1], 2.0f);
    QCOMPARE(padded[2], 0.0f);
    QCOMPARE(padded[3], 0.0f);
}

void tst_Vector::otherTypesAreConverted()
{
    const Vec3d d(Vec3f(1.5f, 2.5f, 3.5f));
    QCOMPARE(d[2], 3.5);
    const Pnt3s s(d);
    QCOMPARE(s[0], Int16(1));
}

void tst_Vector::vectorPassesAsPoint()
{
    const auto secondOf = [](const Pnt3f& p) { return p[1]; };
    QCOMPARE(secondOf(Vec3f(1, 2, 3)), 2.0f);
    QVERIFY((std::is_base_of_v<Pnt3f, Vec3f>));
}

void tst_Vector::pointNeedsConversionToVector()
{
    QVERIFY((!std::is_convertible_v<Pnt3f, Vec3f>));
    QCOMPARE(Vec3f(Pnt3f(1, 2, 3))[2], 3.0f);
}

void tst_Vector::accessorsAnswerByValue()
{
    QVERIFY((std::is_same_v<decltype(std::declval<Vec4f&>().x()), float>));
    const Vec4f v(1, 2, 3, 4);
    QCOMPARE(v.x(), 1.0f);
    QCOMPARE(v.y(), 2.0f);
    QCOMPARE(v.z(), 3.0f);
    QCOMPARE(v.w(), 4.0f);
    QCOMPARE(v.getValues()[3], 4.0f);
}

void tst_Vector::setValuesAndSetNull()
{
    Vec3f v;
    v.setValues(1, 2, 3);
    QCOMPARE(v[2], 3.0f);
    v.setValue(Pnt2f(8, 9));
    QCOMPARE(v[1], 9.0f);
    QCOMPARE(v[2], 0.0f);
    v.setNull();
    QCOMPARE(v[0], 0.0f);
    v[1] = 5;
    QCOMPARE(v.y(), 5.0f);
}

void tst_Vector::pointMinusPointIsVector()
{
    const auto difference = Pnt3f(3, 5, 7) - Pnt3f(1, 2, 3);
    QVERIFY((std::is_same_v<decltype(difference), const Vec3f>));
    QVERIFY(difference == Vec3f(2, 3, 4));
}

void tst_Vector::pointPlusVectorIsPoint()
{
    const auto sum = Pnt3f(1, 2, 3) + Vec3f(1, 1, 1);
    QVERIFY((std::is_same_v<decltype(sum), const Pnt3f>));
    QVERIFY(sum == Pnt3f(2, 3, 4));
    const auto back = sum - Vec3f(2, 2, 2);
    QVERIFY((std::is_same_v<decltype(back), const Pnt3f>));
    QVERIFY(back == Pnt3f(0, 1, 2));
    const auto vectors = Vec3f(1, 2, 3) - Vec3f(3, 2, 1);
    QVERIFY((std::is_same_v<decltype(vectors), const Vec3f>));
    QVERIFY(vectors == Vec3f(-2, 0, 2));
    QVERIFY(-vectors == Vec3f(2, 0, -2));
}

void tst_Vector::scalarFromEitherSide()
{
    QVERIFY(Vec3f(1, 2, 3) * 2 == Vec3f(2, 4, 6));
    QVERIFY(2 * Vec3f(1, 2, 3) == Vec3f(2, 4, 6));
    QVERIFY(Vec3f(2, 4, 6) / 2 == Vec3f(1, 2, 3));
    QVERIFY((std::is_same_v<decltype(2 * Vec3f()), Vec3f>));
    QVERIFY((std::is_same_v<decltype(2 * Pnt3f()), Pnt3f>));
}

void tst_Vector::starOfVectorsIsDotProduct()
{
    QCOMPARE(Vec3f(1, 2, 3) * Vec3f(4, 5, 6), 32.0f);
    QCOMPARE(Vec3f(1, 2, 3).dot(Vec3f(4, 5, 6)), 32.0f);
}

void tst_Vector::percentIsCrossProduct()
{
    QVERIFY(Vec3f(1, 0, 0) % Vec3f(0, 1, 0) == Vec3f(0, 0, 1));
    QVERIFY(Vec3f(1, 2, 3).cross(Vec3f(4, 5, 6)) == Vec3f(-3, 6, -3));
}

void tst_Vector::compoundAssignment()
{
    Pnt3f p(1, 2, 3);
    p += Vec3f(1, 1, 1);
    QVERIFY(p == Pnt3f(2, 3, 4));
    p -= Vec3f(2, 2, 2);
    QVERIFY(p == Pnt3f(0, 1, 2));
    p *= 4;
    QVERIFY(p == Pnt3f(0, 4, 8));
    p /= 2;
    QVERIFY(p == Pnt3f(0, 2, 4));
    QVERIFY((std::is_void_v<decltype(p *= 2.0f)>));
    QVERIFY((std::is_void_v<decltype(p /= 2.0f)>));
}

void tst_Vector::lengthAndSquareLength()
{
    QCOMPARE(Vec3f(2, 3, 6).length(), 7.0f);
    QCOMPARE(Vec3f(2, 3, 6).squareLength(), 49.0f);
    QCOMPARE(Vec2us(3, 4).length(), 5.0f);
}

void tst_Vector::normalizeGivesUnitLength()
{
    Vec3f v(0, 3, 4);
    v.normalize();
    QVERIFY(v == Vec3f(0, 0.6f, 0.8f));
}

void tst_Vector::normalizeLeavesShortVectorsAlone()
{
    Vec3f shortOne(0, 9e-7f, 0);
    shortOne.normalize();
    QCOMPARE(shortOne[1], 9e-7f);
    Vec3f longEnough(0, 2e-6f, 0);
    longEnough.normalize();
    QCOMPARE(longEnough[1], 1.0f);
}

void tst_Vector::comparisonToleratesEps()
{
    QVERIFY(Vec3f(0, 0, 0) == Vec3f(0, 9e-7f, 0));
    QVERIFY(Vec3f(0, 0, 0) != Vec3f(0, 2e-6f, 0));
    QVERIFY(Pnt3f(1, 0, 0) != Pnt3f(1, 0, -1));
}

void tst_Vector::comparisonOfUnsignedHasNoWrap()
{
    QVERIFY(Vec3ub(1, 2, 3) == Vec3ub(1, 2, 3));
    QVERIFY(Vec3ub(1, 2, 3) != Vec3ub(1, 2, 4));
    QVERIFY(Vec3ub(1, 2, 4) != Vec3ub(1, 2, 3));
    QVERIFY(Vec3ub(10, 0, 0).equals(Vec3ub(12, 0, 0), 2));
    QVERIFY(!Vec3ub(12, 0, 0).equals(Vec3ub(9, 0, 0), 2));
}

void tst_Vector::equalsTakesTolerance()
{
    QVERIFY(Vec3f(1, 1, 1).equals(Vec3f(1.4f, 0.6f, 1), 0.5f));
    QVERIFY(!Vec3f(1, 1, 1).equals(Vec3f(1.6f, 1, 1), 0.5f));
    QVERIFY(Vec3f(1, 1, 1).equals(Vec3f(1, 1, 1), 0));
}

void tst_Vector::infinityEqualsItself()
{
    const float infinity = std::numeric_limits<float>::infinity();
    const float nan = std::numeric_limits<float>::quiet_NaN();
    QVERIFY(Vec2f(infinity, 1) == Vec2f(infinity, 1));
    QVERIFY(Vec2f(infinity, 1) != Vec2f(-infinity, 1));
    QVERIFY(Vec2f(nan, 1) != Vec2f(nan, 1));
}

void tst_Vector::isZeroUsesEps()
{
    QVERIFY(Vec3f(9e-7f, -9e-7f, 0).isZero());
    QVERIFY(!Vec3f(2e-6f, 0, 0).isZero());
}

void tst_Vector::orderIsLexicographic()
{
    QVERIFY(Vec3f(1, 9, 9) < Vec3f(2, 0, 0));
    QVERIFY(Vec3f(1, 2, 3) < Vec3f(1, 2, 4));
    QVERIFY(!(Vec3f(1, 3, 0) < Vec3f(1, 2, 9)));
    QVERIFY(!(Vec3f(1, 2, 3) < Vec3f(1, 2, 3)));
}

void tst_Vector::enclosedAngleInRadians()
{
    QCOMPARE(Vec3f(2, 0, 0).enclosedAngle(Vec3f(0, 3, 0)), Pi / 2);
    QCOMPARE(Vec3f(2, 0, 0).enclosedAngle(Vec3f(-1, 0, 0)), Pi);
    QCOMPARE(Vec3f(0.1f, 0.3f, 0.7f).enclosedAngle(Vec3f(0.1f, 0.3f, 0.7f)), 0.0f);
    QCOMPARE(Vec3f().enclosedAngle(Vec3f(1, 0, 0)), 0.0f);
}

void tst_Vector::projectToAnswersLengthAlong()
{
    Vec3f v(3, 4, 0);
    QCOMPARE(v.projectTo(Vec3f(0, -2, 0)), -4.0f);
    QVERIFY(v == Vec3f(0, 4, 0));
    QCOMPARE(v.projectTo(Vec3f()), 0.0f);
    QVERIFY(v.isZero());
}

void tst_Vector::distances()
{
    QCOMPARE(Pnt3f(1, 2, 3).dist(Pnt3f(3, 5, 9)), 7.0f);
    QCOMPARE(Pnt3f(1, 2, 3).dist2(Pnt3f(3, 5, 9)), 49.0f);
}

void tst_Vector::distanceOfUnsignedPoints()
{
    QCOMPARE(Pnt2us(10, 0).dist(Pnt2us(13, 4)), 5.0f);
    QCOMPARE(Pnt2us(13, 4).dist(Pnt2us(10, 0)), 5.0f);
}

void tst_Vector::maxValueAndNegate()
{
    Vec3f v(-5, 2, 1);
    QCOMPARE(v.maxValue(), 2.0f);
    v.negate();
    QVERIFY(v == Vec3f(5, -2, -1));
}

void tst_Vector::wayBetweenPointAndVector()
{
    const auto vector = Pnt3f(1, 2, 3).subZero();
    QVERIFY((std::is_same_v<decltype(vector), const Vec3f>));
    QVERIFY(vector == Vec3f(1, 2, 3));
    QVERIFY(Vec3f(1, 2, 3).addToZero() == Pnt3f(1, 2, 3));
    QVERIFY((std::is_same_v<decltype(Vec3f().addToZero()), const Pnt3f&>));
}

void tst_Vector::nullConstant()
{
    QCOMPARE(Vec3f::Null[0], 0.0f);
    QCOMPARE(Pnt4d::Null[3], 0.0);
}

void tst_Vector::writesComponentsWithCommas()
{
    std::ostringstream out;
    out << Vec3f(1, 2.5f, -3) << '|' << Pnt2f(4, 5);
    QCOMPARE(out.str(), std::string("1, 2.5, -3|4, 5"));
}

void tst_Vector::writesBytesAsNumbers()
{
    std::ostringstream out;
    out << Vec3ub(65, 66, 67);
    QCOMPARE(out.str(), std::string("65, 66, 67"));
}

void tst_Vector::constants()
{
    QCOMPARE(Eps, 1e-6f);
    QCOMPARE(Inf, 1e30f);
    QCOMPARE(NegInf, -1e30f);
    QVERIFY(std::isfinite(Inf));
    QCOMPARE(sizeof(BitVector), std::size_t(8));
    QCOMPARE(BitVector(-1), ~BitVector(0));
    QVERIFY((std::is_same_v<Time, double>));
    QCOMPARE(OSG_VERSION, 0x010801);
    QVERIFY((std::is_same_v<OSG::Vec3f, osg::Vector<float, 3>>));
}

QTEST_APPLESS_MAIN(tst_Vector)
#include "tst_Vector.moc"
