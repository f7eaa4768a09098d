#include "GraphLayout.h"
#include <QTest>
#include <algorithm>

class tst_GraphLayout : public QObject
{
    Q_OBJECT

private slots:
    void nothingHasNoPlaces();
    void chainGoesFromLeftToRight();
    void boxStandsBehindTheLastThatLeadsToIt();
    void circlesAreCutOpen();
    void noTwoBoxesShareAPlace_data();
    void noTwoBoxesShareAPlace();
    void crossingsAreUndone();
    void partsLieBelowEachOther();
    void boxesWithoutLinesComeLast();
    void deepGraphsAreNoTrouble();
};

namespace {

using Lines = std::vector<std::pair<int, int>>;
const QSizeF cell(100, 10);

std::vector<int> layers(int count, const Lines& lines)
{
    std::vector<int> result;
    for (const QPointF& corner : layeredLayout(count, lines, cell))
        result.push_back(static_cast<int>(corner.x() / 100));
    return result;
}

} // namespace

void tst_GraphLayout::nothingHasNoPlaces()
{
    QVERIFY(layeredLayout(0, {}, cell).empty());
}

void tst_GraphLayout::chainGoesFromLeftToRight()
{
    QCOMPARE(layers(3, {{2, 0}, {0, 1}}), std::vector<int>({1, 2, 0}));
    const std::vector<QPointF> corners = layeredLayout(3, {{2, 0}, {0, 1}}, cell);
    QCOMPARE(corners[0].y(), corners[1].y());
    QCOMPARE(corners[2], QPointF(0, 0));
}

void tst_GraphLayout::boxStandsBehindTheLastThatLeadsToIt()
{
    QCOMPARE(layers(4, {{0, 1}, {1, 2}, {0, 3}, {2, 3}, {0, 2}}), std::vector<int>({0, 1, 2, 3}));
}

void tst_GraphLayout::circlesAreCutOpen()
{
    QCOMPARE(layers(3, {{0, 1}, {1, 2}, {2, 0}, {1, 1}}), std::vector<int>({0, 1, 2}));
}

void tst_GraphLayout::noTwoBoxesShareAPlace_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("step");
    for (int step : {1, 2, 3, 5, 7, 11})
        QTest::addRow("%d", step) << 60 << step;
}

void tst_GraphLayout::noTwoBoxesShareAPlace()
{
    QFETCH(int, count);
    QFETCH(int, step);
    Lines lines;
    for (int i = 0; i < count; ++i) {
        lines.emplace_back(i, i * step % count);
        lines.emplace_back(i, (i + step * step) % count);
        lines.emplace_back(i, (i + step * step) % count); // twice the same
    }
    const std::vector<QPointF> corners = layeredLayout(count + 5, lines, cell);
    for (std::size_t i = 0; i < corners.size(); ++i) {
        QVERIFY(corners[i].x() >= 0 && corners[i].y() >= 0);
        for (std::size_t k = 0; k < i; ++k)
            QVERIFY(!QRectF(corners[i], cell).intersects(QRectF(corners[k], cell)));
    }
}

void tst_GraphLayout::crossingsAreUndone()
{
    // Three sources, each of which leads to one of three others, in turned order; one box joins them all.
    const std::vector<QPointF> corners =
        layeredLayout(7, {{0, 5}, {1, 4}, {2, 3}, {6, 0}, {6, 1}, {6, 2}}, cell);
    for (const auto& [from, to] : Lines{{0, 5}, {1, 4}, {2, 3}})
        QCOMPARE(corners[static_cast<std::size_t>(from)].y(), corners[static_cast<std::size_t>(to)].y());
}

void tst_GraphLayout::partsLieBelowEachOther()
{
    const std::vector<QPointF> corners = layeredLayout(5, {{0, 1}, {0, 2}, {3, 4}}, cell);
    const double end = std::max({corners[0].y(), corners[1].y(), corners[2].y()});
    QVERIFY(corners[3].y() >= end + 20);
    QCOMPARE(corners[3].y(), corners[4].y());
}

void tst_GraphLayout::boxesWithoutLinesComeLast()
{
    const std::vector<QPointF> corners = layeredLayout(8, {{6, 7}}, cell);
    for (std::size_t i = 0; i < 6; ++i)
        QVERIFY(corners[i].y() > corners[6].y());
    QCOMPARE(corners[0].y(), corners[3].y());
    QCOMPARE(corners[4].y(), corners[0].y() + 10);
}

void tst_GraphLayout::deepGraphsAreNoTrouble()
{
    constexpr int count = 20000;
    Lines lines;
    for (int i = 1; i < count; ++i)
        lines.emplace_back(i - 1, i);
    QCOMPARE(layers(count, lines).back(), count - 1);
}

QTEST_MAIN(tst_GraphLayout)
#include "tst_GraphLayout.moc"
