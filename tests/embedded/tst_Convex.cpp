#include "core/Convex.h"
#include <QtTest>
#include <cmath>
#include <limits>
#include <random>

using namespace Orvane;

/// Distances of convex bodies.
class tst_Convex : public QObject
{
    Q_OBJECT

private slots:
    void pointAndSolid_data();
    void pointAndSolid();
    void solidsMeetOrDoNot();
    void matrixBendsTheBody();
    void trianglesThatTouchMeet();
    void flatBodiesHaveDistances();
    void boundsHoldTheBody();
    void boxesAgreeWithTheirIntervals();
    void badNumbersNeverMeet();

private:
    static osg::Matrix4d moved(double x, double y, double z)
    {
        osg::Matrix4d matrix;
        matrix.setTranslate(x, y, z);
        return matrix;
    }
    static double fromPoint(const Convex& body, double x, double y, double z)
    {
        return Convex::distance(Convex::point({x, y, z}), body);
    }
};

void tst_Convex::pointAndSolid_data()
{
    QTest::addColumn<int>("body");
    QTest::addColumn<QVector<double>>("place");
    QTest::addColumn<double>("distance");
    const QVector<double> origin{0, 0, 0};
    for (int body = 0; body < 4; ++body)
        QTest::addRow("middle %d", body) << body << origin << 0.0;
    QTest::newRow("face of a box") << 0 << QVector<double>{0.2, 0.3, 4} << 3.0;
    QTest::newRow("edge of a box") << 0 << QVector<double>{4, 5, 0} << 5.0;
    QTest::newRow("corner of a box") << 0 << QVector<double>{2, 3, 3} << 3.0;
    QTest::newRow("sphere") << 1 << QVector<double>{0, 3, 4} << 4.0;
    QTest::newRow("in a sphere") << 1 << QVector<double>{0.5, 0.5, 0.5} << 0.0;
    QTest::newRow("tip of a cone") << 2 << QVector<double>{0, 4, 0} << 3.0;
    QTest::newRow("beside the tip") << 2 << QVector<double>{0.9, 0.9, 0} << 0.85 / std::sqrt(1.25);
    QTest::newRow("below a cone") << 2 << QVector<double>{0, -3, 0} << 2.0;
    QTest::newRow("side of a cylinder") << 3 << QVector<double>{0, 0.5, -3} << 2.0;
    QTest::newRow("rim of a cylinder") << 3 << QVector<double>{4, 5, 0} << 5.0;
}

void tst_Convex::pointAndSolid()
{
    QFETCH(int, body);
    QFETCH(QVector<double>, place);
    QFETCH(double, distance);
    // All of them reach from -1 to 1.
    const Convex bodies[] = {Convex::box({}, {2, 2, 2}), Convex::sphere(1), Convex::cone(1, 2),
                             Convex::cylinder(1, 2)};
    const double found = fromPoint(bodies[body], place[0], place[1], place[2]);
    QVERIFY2(std::abs(found - distance) < 1e-4, qPrintable(QString::number(found)));
}

void tst_Convex::solidsMeetOrDoNot()
{
    const Convex ball = Convex::sphere(1);
    QVERIFY(Convex::meet(ball, ball.in(moved(1.9, 0, 0))));
    QVERIFY(!Convex::meet(ball, ball.in(moved(2.1, 0, 0))));
    QVERIFY(!Convex::meet(ball, ball.in(moved(1.5, 1.5, 0))));
    const Convex cone = Convex::cone(1, 2);
    QVERIFY(Convex::meet(cone, ball.in(moved(0, 1.9, 0))));
    // Beside the tip there is nothing of it, though the boxes meet.
    QVERIFY(!Convex::meet(cone, Convex::box({0.9, 0.9, 0.9}, {0.4, 0.4, 0.4})));
}

void tst_Convex::matrixBendsTheBody()
{
    osg::Matrix4d flat;
    flat.setScale(4, 0.5, 1);
    const Convex disc = Convex::sphere(1).in(flat);
    QVERIFY(std::abs(fromPoint(disc, 6, 0, 0) - 2.0) < 1e-4);
    QVERIFY(std::abs(fromPoint(disc, 0, 2, 0) - 1.5) < 1e-4);
    QVERIFY(std::abs(fromPoint(disc.in(moved(0, 1, 0)), 0, 2, 0) - 0.5) < 1e-4);
}

void tst_Convex::trianglesThatTouchMeet()
{
    const Convex floor = Convex::triangle({-1, 0, -1}, {1, 0, -1}, {0, 0, 1});
    QVERIFY(Convex::meet(floor, Convex::triangle({0, -1, 0}, {0.1, 1, 0}, {-0.1, 1, 0})));
    QVERIFY(Convex::meet(floor, Convex::triangle({0, 0, 0}, {0.5, 0, 0}, {0, 0, 0.5})));
    QVERIFY(!Convex::meet(floor, Convex::triangle({0, 0.01, 0}, {0.5, 0.01, 0}, {0, 0.01, 0.5})));
    QVERIFY(!Convex::meet(floor, Convex::triangle({2, -1, 0}, {2, 1, 0}, {3, 0, 0})));
}

void tst_Convex::flatBodiesHaveDistances()
{
    const Convex lone = Convex::triangle({1, 1, 1}, {1, 1, 1}, {1, 1, 1});
    QVERIFY(std::abs(fromPoint(lone, 1, 1, 4) - 3.0) < 1e-9);
    QVERIFY(std::abs(fromPoint(Convex::box({}, {2, 0, 2}), 0.3, 2, 0.4) - 2.0) < 1e-9);
    QCOMPARE(fromPoint(Convex::box({}, {2, 0, 2}), 0.3, 0, 0.4), 0.0);
}

void tst_Convex::boundsHoldTheBody()
{
    const osg::BoxVolume box = Convex::cylinder(2, 6).in(moved(1, 1, 1)).bounds();
    QVERIFY(box.getMin().equals(osg::Pnt3f(-1, -2, -1), 1e-4F));
    QVERIFY(box.getMax().equals(osg::Pnt3f(3, 4, 3), 1e-4F));
}

void tst_Convex::boxesAgreeWithTheirIntervals()
{
    std::mt19937 chance(7);
    std::uniform_real_distribution<double> place(-2.0, 2.0);
    std::uniform_real_distribution<double> edge(0.1, 2.0);
    int meetings = 0;
    for (int i = 0; i < 5000; ++i) {
        const osg::Vec3d centers[] = {{place(chance), place(chance), place(chance)},
                                      {place(chance), place(chance), place(chance)}};
        const osg::Vec3d sizes[] = {{edge(chance), edge(chance), edge(chance)},
                                    {edge(chance), edge(chance), edge(chance)}};
        double square = 0.0;
        for (osg::UInt32 axis = 0; axis < 3; ++axis) {
            const double gap =
                std::abs(centers[0][axis] - centers[1][axis]) - 0.5 * (sizes[0][axis] + sizes[1][axis]);
            square += gap > 0.0 ? gap * gap : 0.0;
        }
        const double found =
            Convex::distance(Convex::box(centers[0], sizes[0]), Convex::box(centers[1], sizes[1]));
        QVERIFY2(std::abs(found - std::sqrt(square)) < 1e-5, qPrintable(QString::number(i)));
        meetings += square == 0.0 ? 1 : 0;
    }
    QVERIFY(meetings > 100 && meetings < 4900);
}

void tst_Convex::badNumbersNeverMeet()
{
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const double inf = std::numeric_limits<double>::infinity();
    QVERIFY(!Convex::meet(Convex::point({nan, 0, 0}), Convex::sphere(1)));
    QVERIFY(!Convex::meet(Convex::point({inf, 0, 0}), Convex::sphere(1)));
    QVERIFY(!Convex::meet(Convex::sphere(1).in(moved(nan, nan, nan)), Convex::cone(1, 2)));
    QVERIFY(!Convex::meet(Convex::sphere(nan), Convex::box({}, {inf, 1, 1})));
}

QTEST_GUILESS_MAIN(tst_Convex)
#include "tst_Convex.moc"
