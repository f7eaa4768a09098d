#include "QorIconFactory.h"
#include <QtCore/QFile>
#include <QtGui/QImage>
#include <QtTest>
#include <set>

using namespace Orvane;
using Orvane::Qt4::QorIconFactory;

class tst_QorIconFactory : public QObject
{
    Q_OBJECT

private slots:
    void thereIsOne();
    void iconsHaveTheirSizesAndColors_data();
    void iconsHaveTheirSizesAndColors();
    void otherTypesShareAPlainIcon();
    void allIconsTellApart();
};

namespace {

/// The colours of an icon as drawn, the transparent one included.
std::set<QRgb> colorsOf(const QImage& image)
{
    std::set<QRgb> colors;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            colors.insert(qAlpha(image.pixel(x, y)) ? image.pixel(x, y) : 0U);
    }
    return colors;
}

QImage iconOf(int type)
{
    return QorIconFactory::the()
        ->fieldIcon(static_cast<NodePartDataType>(type))
        .toImage()
        .convertToFormat(QImage::Format_ARGB32);
}

} // namespace

void tst_QorIconFactory::thereIsOne()
{
    QVERIFY(QorIconFactory::the());
    QCOMPARE(QorIconFactory::the(), QorIconFactory::the());
}

void tst_QorIconFactory::iconsHaveTheirSizesAndColors_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("colors");
    const int rows[][3] = {{1, 15, 54},  {2, 15, 53},  {3, 15, 55},  {4, 15, 57},  {9, 12, 14},  {10, 15, 34},
                           {11, 15, 13}, {12, 15, 14}, {13, 15, 14}, {14, 15, 16}, {23, 15, 77}, {24, 15, 78},
                           {25, 15, 41}, {26, 15, 41}, {27, 15, 68}, {28, 15, 68}, {29, 15, 34}, {30, 15, 34},
                           {33, 15, 32}, {34, 15, 32}, {37, 15, 31}, {38, 15, 30}};
    for (const auto& row : rows)
        QTest::addRow("%d", row[0]) << row[0] << row[1] << row[2];
}

void tst_QorIconFactory::iconsHaveTheirSizesAndColors()
{
    QFETCH(int, type);
    QFETCH(int, height);
    QFETCH(int, colors);
    const QImage icon = iconOf(type);
    QCOMPARE(icon.size(), QSize(15, height));
    QCOMPARE(static_cast<int>(colorsOf(icon).size()), colors);
}

void tst_QorIconFactory::otherTypesShareAPlainIcon()
{
    const std::set<QRgb> plain = {0U, qRgb(0, 0, 0), qRgb(0x80, 0x80, 0x80), qRgb(0xc3, 0xc3, 0xc3)};
    for (int type : {0, 5, 6, 7, 8, 15, 22, 31, 32, 35, 36, 39, 41, 42, 43, 48, 49, -1}) {
        QCOMPARE(iconOf(type).size(), QSize(12, 12));
        QCOMPARE(colorsOf(iconOf(type)), plain);
        QCOMPARE(iconOf(type), iconOf(SFDOUBLE_DT));
    }
}

void tst_QorIconFactory::allIconsTellApart()
{
    QList<QImage> icons;
    for (int type : {1, 2, 3, 4, 9, 10, 11, 12, 13, 14, 23, 24, 25, 26, 27, 28, 29, 30, 33, 34, 37, 38, 7}) {
        QVERIFY(!icons.contains(iconOf(type)));
        icons.append(iconOf(type));
    }
}

QTEST_MAIN(tst_QorIconFactory)
#include "tst_QorIconFactory.moc"
