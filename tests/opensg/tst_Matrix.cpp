#include <OpenSG/OSGMatrix.h>

#include <QtTest>

#include <random>
#include <sstream>

using namespace osg;

namespace {

const Matrix counting(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);

Matrix translation(float x, float y, float z)
{
    Matrix m;
    m.setTranslate(x, y, z);
    return m;
}

Matrix scaling(float x, float y, float z)
{
    Matrix m;
    m.setScale(x, y, z);
    return m;
}

Matrix rotation(const Quaternion& q)
{
    Matrix m;
    m.setRotate(q);
    return m;
}

Matrix product(std::initializer_list<Matrix> factors)
{
    Matrix result;
    for (const Matrix& factor : factors)
        result.mult(factor);
    return result;
}

} // namespace

class tst_Matrix : public QObject
{
    Q_OBJECT

private slots:
    void defaultIsIdentity();
    void scalarsComeInReadingOrder();
    void transposedScalarsComeByColumn();
    void pointerIsByColumnUnlessToldOtherwise();
    void columnsFromVectors();
    void valuesAreInOpenGLOrder();
    void partialSettersKeepTheRest();
    void setTransformResetsTheRest();
    void setTransformComposesInOrder();
    void centerStaysWhereItIs();
    void getTransformFindsTheFactors();
    void getTransformWithoutScaleOrientation();
    void getTransformOfMirrorAndFlatMatrices();
    void getTransformComposesAgain();
    void multActsFromTheRight();
    void pointIsTranslatedVectorIsNot();
    void multKnowsPointsFromVectors();
    void fullPointDividesByW();
    void affinePointIgnoresW();
    void vectorOfFourIsTheFullProduct();
    void rowVectorProducts();
    void sourceMayBeTheResult();
    void inverseTimesMatrixIsIdentity();
    void singularMatrixInvertsToIdentity();
    void smallestInvertibleDeterminant();
    void notANumberIsSingular();
    void transposing();
    void determinants();
    void comparison();
    void writesRowsAsOnPaper();
};

void tst_Matrix::defaultIsIdentity()
{
    const Matrix m;
    for (UInt32 c = 0; c < 4; ++c) {
        for (UInt32 r = 0; r < 4; ++r)
            QCOMPARE(m[c][r], c == r ? 1.0f : 0.0f);
    }
    QVERIFY(Matrix::identity() == m);
    Matrix n(counting);
    n.setIdentity();
    QVERIFY(n == m);
    QCOMPARE(sizeof(Matrix), std::size_t(64));
}

void tst_Matrix::scalarsComeInReadingOrder()
{
    QCOMPARE(counting[0][0], 1.0f);
    QCOMPARE(counting[1][0], 2.0f);
    QCOMPARE(counting[0][1], 5.0f);
    QCOMPARE(counting[3][0], 4.0f);
    QCOMPARE(counting[3][2], 12.0f);
    Matrix m;
    m.setValue(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
    QVERIFY(m == counting);
}

void tst_Matrix::transposedScalarsComeByColumn()
{
    Matrix m;
    m.setValueTransposed(1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 15, 16);
    QCOMPARE(m[0][1], 2.0f);
    QCOMPARE(m[1][0], 5.0f);
    QCOMPARE(m[3][0], 13.0f);
}

void tst_Matrix::pointerIsByColumnUnlessToldOtherwise()
{
    float values[16];
    for (int i = 0; i < 16; ++i)
        values[i] = float(i + 1);
    Matrix m;
    m.setValue(values);
    QCOMPARE(m[0][1], 2.0f);
    QCOMPARE(m[3][0], 13.0f);
    m.setValue(values, false);
    QVERIFY(m == counting);
}

void tst_Matrix::columnsFromVectors()
{
    Matrix m(counting);
    m.setValue(Vec3f(20, 21, 22), Vec3f(23, 24, 25), Vec3f(26, 27, 28));
    QCOMPARE(m[0][2], 22.0f);
    QCOMPARE(m[2][0], 26.0f);
    QCOMPARE(m[0][3], 13.0f);
    QCOMPARE(m[3][0], 4.0f);
    m.setValue(Vec3f(), Vec3f(), Vec3f(), Vec3f(1, 2, 3));
    QCOMPARE(m[3][1], 2.0f);
    QCOMPARE(m[3][3], 16.0f);
}

void tst_Matrix::valuesAreInOpenGLOrder()
{
    const Matrix m = translation(7, 8, 9);
    const float* values = m.getValues();
    QCOMPARE(values[12], 7.0f);
    QCOMPARE(values[13], 8.0f);
    QCOMPARE(values[14], 9.0f);
    QCOMPARE(values[15], 1.0f);
}

void tst_Matrix::partialSettersKeepTheRest()
{
    Matrix m(counting);
    m.setTranslate(20, 21, 22);
    QCOMPARE(m[3][1], 21.0f);
    QCOMPARE(m[3][3], 16.0f);
    QCOMPARE(m[0][0], 1.0f);
    m.setScale(30, 31, 32);
    QCOMPARE(m[1][1], 31.0f);
    QCOMPARE(m[1][0], 2.0f);
    QCOMPARE(m[3][1], 21.0f);
    m.setRotate(Quaternion());
    QCOMPARE(m[1][1], 1.0f);
    QCOMPARE(m[1][0], 0.0f);
    QCOMPARE(m[0][3], 13.0f);
    QCOMPARE(m[3][0], 20.0f);
}

void tst_Matrix::setTransformResetsTheRest()
{
    Matrix m(counting);
    m.setTransform(Vec3f(1, 2, 3));
    QVERIFY(m == translation(1, 2, 3));
    const Quaternion q(Vec3f(0, 0, 1), Pi / 2);
    m = counting;
    m.setTransform(q);
    QVERIFY(m == Matrix(0, -1, 0, 0, 1, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1));
    m = counting;
    m.setTransform(Vec3f(5, 6, 7), q);
    QVERIFY(m == Matrix(0, -1, 0, 5, 1, 0, 0, 6, 0, 0, 1, 7, 0, 0, 0, 1));
}

void tst_Matrix::setTransformComposesInOrder()
{
    const Quaternion r(Vec3f(1, 2, 3), 0.7f);
    const Quaternion so(Vec3f(-1, 0, 2), 1.1f);
    const Matrix t = translation(1, 2, 3);
    const Matrix s = scaling(2, 3, 4);
    const Matrix c = translation(5, -6, 7);

    Matrix m(counting);
    m.setTransform(Vec3f(1, 2, 3), r, Vec3f(2, 3, 4));
    QVERIFY(m.equals(product({t, rotation(r), s}), 1e-5f));

    m = counting;
    m.setTransform(Vec3f(1, 2, 3), r, Vec3f(2, 3, 4), so);
    const Matrix stretch = product({rotation(so), s, rotation(so.inverse())});
    QVERIFY(m.equals(product({t, rotation(r), stretch}), 1e-5f));

    m = counting;
    m.setTransform(Vec3f(1, 2, 3), r, Vec3f(2, 3, 4), so, Pnt3f(5, -6, 7));
    const Matrix back = translation(-5, 6, -7);
    QVERIFY(m.equals(product({t, c, rotation(r), stretch, back}), 1e-4f));
}

void tst_Matrix::centerStaysWhereItIs()
{
    Matrix m;
    m.setTransform(Vec3f(), Quaternion(Vec3f(0, 1, 0), 1), Vec3f(2, 2, 2), Quaternion(), Pnt3f(3, 4, 5));
    Pnt3f p(3, 4, 5);
    m.mult(p);
    QVERIFY(p.equals(Pnt3f(3, 4, 5), 1e-5f));
}

void tst_Matrix::getTransformFindsTheFactors()
{
    const Quaternion r(Vec3f(0, 0, 1), Pi / 2);
    const Quaternion so(Vec3f(1, 1, 0), 0.5f);
    Matrix m;
    m.setTransform(Vec3f(1, 2, 3), r, Vec3f(2, 3, 4), so, Pnt3f(1, 1, 1));
    Vec3f t;
    Vec3f s;
    Quaternion foundR;
    Quaternion foundSo;
    m.getTransform(t, foundR, s, foundSo, Pnt3f(1, 1, 1));
    QVERIFY(t.equals(Vec3f(1, 2, 3), 1e-5f));
    QVERIFY(s.equals(Vec3f(2, 3, 4), 1e-5f));
    QVERIFY(foundR.equals(r, 1e-5f));
    QVERIFY(foundSo.equals(so, 1e-5f));
}

void tst_Matrix::getTransformWithoutScaleOrientation()
{
    for (const Vec3f& scale : {Vec3f(1, 1, 1), Vec3f(2, 2, 2), Vec3f(3, 1, 2)}) {
        Matrix m;
        m.setTransform(Vec3f(1, 2, 3), Quaternion(Vec3f(1, 2, 3), 0.7f), scale);
        Vec3f t;
        Vec3f s;
        Quaternion r;
        Quaternion so;
        m.getTransform(t, r, s, so);
        QVERIFY(t == Vec3f(1, 2, 3));
        QVERIFY(s.equals(scale, 1e-5f));
        QVERIFY(r.equals(Quaternion(Vec3f(1, 2, 3), 0.7f), 1e-5f));
        QVERIFY(so == Quaternion());
    }
}

void tst_Matrix::getTransformOfMirrorAndFlatMatrices()
{
    const Vec3f scales[] = {{1, -1, 1}, {-2, -3, -4}, {0, 2, 3}, {0, 0, 3}, {0, 2, 0}, {0, 0, 0}};
    for (const Vec3f& scale : scales) {
        Matrix m;
        m.setTransform(Vec3f(1, 2, 3), Quaternion(Vec3f(1, -1, 3), 2), scale, Quaternion(Vec3f(1, 0, 2), 1));
        Vec3f t;
        Vec3f s;
        Quaternion r;
        Quaternion so;
        m.getTransform(t, r, s, so);
        QVERIFY(std::abs(r.length() - 1) < 1e-5f);
        QVERIFY(std::abs(so.length() - 1) < 1e-5f);
        Matrix again;
        again.setTransform(t, r, s, so);
        QVERIFY(again.equals(m, 1e-4f));
    }
}

void tst_Matrix::getTransformComposesAgain()
{
    std::mt19937 random(1);
    std::uniform_real_distribution<float> value(-3, 3);
    for (int i = 0; i < 500; ++i) {
        Matrix m;
        for (UInt32 c = 0; c < 4; ++c) {
            for (UInt32 r = 0; r < 3; ++r)
                m[c][r] = value(random);
        }
        const Pnt3f center(value(random), value(random), value(random));
        Vec3f t;
        Vec3f s;
        Quaternion r;
        Quaternion so;
        m.getTransform(t, r, s, so, center);
        Matrix again;
        again.setTransform(t, r, s, so, center);
        QVERIFY(again.equals(m, 1e-4f));
    }
}

void tst_Matrix::multActsFromTheRight()
{
    Matrix m = translation(1, 0, 0);
    m.mult(scaling(2, 2, 2));
    QCOMPARE(m[3][0], 1.0f);
    m = translation(1, 0, 0);
    m.multLeft(scaling(2, 2, 2));
    QCOMPARE(m[3][0], 2.0f);
    m = counting;
    m.mult(m);
    QVERIFY(m == Matrix(90, 100, 110, 120, 202, 228, 254, 280, 314, 356, 398, 440, 426, 484, 542, 600));
}

void tst_Matrix::pointIsTranslatedVectorIsNot()
{
    Matrix m = translation(10, 20, 30);
    m.mult(scaling(2, 3, 4));
    Pnt3f p;
    m.multMatrixPnt(Pnt3f(1, 1, 1), p);
    QVERIFY(p == Pnt3f(12, 23, 34));
    Vec3f v;
    m.multMatrixVec(Vec3f(1, 1, 1), v);
    QVERIFY(v == Vec3f(2, 3, 4));
}

void tst_Matrix::multKnowsPointsFromVectors()
{
    const Matrix m = translation(10, 20, 30);
    Pnt3f p(1, 2, 3);
    m.mult(p);
    QVERIFY(p == Pnt3f(11, 22, 33));
    Vec3f v(1, 2, 3);
    m.mult(v);
    QVERIFY(v == Vec3f(1, 2, 3));
}

void tst_Matrix::fullPointDividesByW()
{
    const Matrix m(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -1, 0);
    Pnt3f p;
    m.multFullMatrixPnt(Pnt3f(4, 6, -2), p);
    QVERIFY(p == Pnt3f(2, 3, -1));
    p.setValues(1, 1, 1);
    m.multFullMatrixPnt(Pnt3f(4, 6, 0), p);
    QCOMPARE(p[0], 0.0f);
    QCOMPARE(p[1], 0.0f);
    QCOMPARE(p[2], 0.0f);
}

void tst_Matrix::affinePointIgnoresW()
{
    const Matrix m(1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, -1, 0);
    Pnt3f p;
    m.multMatrixPnt(Pnt3f(4, 6, -2), p);
    QVERIFY(p == Pnt3f(4, 6, -2));
}

void tst_Matrix::vectorOfFourIsTheFullProduct()
{
    Vec4f v(1, 2, 3, 4);
    counting.multMatrixVec(v);
    QVERIFY(v == Vec4f(30, 70, 110, 150));
}

void tst_Matrix::rowVectorProducts()
{
    Pnt3f p;
    counting.multPntMatrix(Pnt3f(1, 2, 3), p);
    QVERIFY(p == Pnt3f(1 + 10 + 27 + 13, 2 + 12 + 30 + 14, 3 + 14 + 33 + 15));
    Vec3f v;
    counting.multVecMatrix(Vec3f(1, 2, 3), v);
    QVERIFY(v == Vec3f(38, 44, 50));
    counting.multPntFullMatrix(Pnt3f(1, 2, 3), p);
    const float w = 4 + 16 + 36 + 16;
    QVERIFY(p == Pnt3f(51 / w, 58 / w, 65 / w));
    Matrix noW;
    noW[3][3] = 0;
    noW.multPntFullMatrix(Pnt3f(1, 2, 3), p);
    QVERIFY(p == Pnt3f());
}

void tst_Matrix::sourceMayBeTheResult()
{
    Pnt3f expected;
    counting.multMatrixPnt(Pnt3f(1, 2, 3), expected);
    Pnt3f p(1, 2, 3);
    counting.multMatrixPnt(p, p);
    QVERIFY(p == expected);

    Matrix m = translation(1, 2, 3);
    QVERIFY(m.inverse(m));
    QVERIFY(m == translation(-1, -2, -3));
    Vec3f v(1, 2, 3);
    counting.multMatrixVec(v, v);
    QVERIFY(v == Vec3f(14, 38, 62));
}

void tst_Matrix::inverseTimesMatrixIsIdentity()
{
    const Matrix m(2, 0, 1, 3, -1, 4, 0, 2, 0, 1, 3, 1, 1, 0, 0, 5);
    Matrix inverse;
    QVERIFY(m.inverse(inverse));
    Matrix left(inverse);
    left.mult(m);
    QVERIFY(left.equals(Matrix(), 1e-5f));
    Matrix right(m);
    right.mult(inverse);
    QVERIFY(right.equals(Matrix(), 1e-5f));
    Matrix from;
    QVERIFY(from.invertFrom(m));
    QVERIFY(from == inverse);
    Matrix self(m);
    QVERIFY(self.invert());
    QVERIFY(self == inverse);
}

void tst_Matrix::singularMatrixInvertsToIdentity()
{
    Matrix result(counting);
    QVERIFY(!counting.inverse(result));
    QVERIFY(result == Matrix());
    Matrix self = scaling(1, 0, 1);
    QVERIFY(!self.invert());
    QVERIFY(self == Matrix());
}

void tst_Matrix::smallestInvertibleDeterminant()
{
    Matrix m = scaling(2e-10f, 1e-10f, 1e-10f);
    QVERIFY(m.invert());
    QVERIFY(std::abs(m[1][1] / 1e10f - 1) < 1e-5f);
    m = scaling(0.5e-10f, 1e-10f, 1e-10f);
    QVERIFY(!m.invert());
    QVERIFY(m == Matrix());
}

void tst_Matrix::notANumberIsSingular()
{
    Matrix m;
    m[1][2] = std::numeric_limits<float>::quiet_NaN();
    m[2][1] = 1;
    QVERIFY(!m.invert());
    QVERIFY(m == Matrix());
}

void tst_Matrix::transposing()
{
    Matrix m;
    QVERIFY(counting.transposed(m));
    QCOMPARE(m[0][1], 2.0f);
    QVERIFY(m.transpose());
    QVERIFY(m == counting);
    QVERIFY(m.transposeFrom(translation(1, 2, 3)));
    QCOMPARE(m[0][3], 1.0f);
}

void tst_Matrix::determinants()
{
    const Matrix m(2, 0, 0, 9, 0, 3, 0, 9, 0, 0, 4, 9, 0, 0, 0, 5);
    QCOMPARE(m.det(), 120.0f);
    QCOMPARE(m.det3(), 24.0f);
    QCOMPARE(scaling(-1, 1, 1).det(), -1.0f);
}

void tst_Matrix::comparison()
{
    Matrix m;
    m[2][3] = 9e-7f;
    QVERIFY(m == Matrix());
    m[2][3] = 2e-6f;
    QVERIFY(m != Matrix());
    QVERIFY(m.equals(Matrix(), 1e-5f));
}

void tst_Matrix::writesRowsAsOnPaper()
{
    std::ostringstream out;
    out << translation(1, 2.5f, -3) << 0.125;
    QCOMPARE(out.str(), std::string("   1.000   0.000   0.000   1.000\n"
                                    "   0.000   1.000   0.000   2.500\n"
                                    "   0.000   0.000   1.000  -3.000\n"
                                    "   0.000   0.000   0.000   1.000\n"
                                    "0.125"));
}

QTEST_APPLESS_MAIN(tst_Matrix)
#include "tst_Matrix.moc"
