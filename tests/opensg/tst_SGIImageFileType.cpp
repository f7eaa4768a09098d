#include "ImageTestTools.h"

#include <QtTest>

using osg::Image;
using osg::ImageRefPtr;
using namespace ImageTestTools;

namespace {

constexpr char Mime[] = "image/x-sgi";

void put(Bytes& bytes, osg::UInt32 number, int size)
{
    for (int shift = 8 * (size - 1); shift >= 0; shift -= 8)
        bytes.push_back(static_cast<osg::UInt8>(number >> shift));
}

Bytes header(bool packed, int sampleSize, int dimension, int width, int height, int components)
{
    Bytes file;
    put(file, 474, 2);
    put(file, packed, 1);
    put(file, static_cast<osg::UInt32>(sampleSize), 1);
    for (const int number : {dimension, width, height, components})
        put(file, static_cast<osg::UInt32>(number), 2);
    file.resize(512);
    return file;
}

Bytes plainFile(int sampleSize, int dimension, int width, int height, int components, const Bytes& samples)
{
    Bytes file = header(false, sampleSize, dimension, width, height, components);
    file.insert(file.end(), samples.begin(), samples.end());
    return file;
}

// Rows of packed bytes with the table of their places and lengths in front.
Bytes packedFile(int sampleSize, int width, int height, int components, const std::vector<Bytes>& rows)
{
    Bytes file = header(true, sampleSize, 3, width, height, components);
    auto start = static_cast<osg::UInt32>(512 + rows.size() * 8);
    for (const Bytes& row : rows) {
        put(file, start, 4);
        start += static_cast<osg::UInt32>(row.size());
    }
    for (const Bytes& row : rows)
        put(file, static_cast<osg::UInt32>(row.size()), 4);
    for (const Bytes& row : rows)
        file.insert(file.end(), row.begin(), row.end());
    return file;
}

} // namespace

class tst_SGIImageFileType : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { osg::osgLog().setLogType(osg::LOG_NONE, true); }

    void componentsAreWovenTogether();
    void dimensionsLimitThePicture();
    void sixteenBitsComeInTheMachinesOrder();
    void packedRowsAreRead();
    void packedWideRowsAreRead();
    void damagedRowsAreRefused_data();
    void damagedRowsAreRefused();
    void unknownKindsAreRefused();
    void anIncompleteFileIsRefusedAtEveryLength();
    void damageIsSurvived();
};

void tst_SGIImageFileType::componentsAreWovenTogether()
{
    const ImageRefPtr image =
        decoded(plainFile(1, 3, 2, 2, 3, {1, 2, 3, 4, 11, 12, 13, 14, 21, 22, 23, 24}), Mime);
    QVERIFY(image);
    QCOMPARE(image->getPixelFormat(), osg::UInt32(Image::OSG_RGB_PF));
    QCOMPARE(pixels(image), (Bytes{1, 11, 21, 2, 12, 22, 3, 13, 23, 4, 14, 24}));
}

void tst_SGIImageFileType::dimensionsLimitThePicture()
{
    const ImageRefPtr row = decoded(plainFile(1, 1, 2, 9, 9, {1, 2}), Mime);
    QVERIFY(row);
    QCOMPARE(row->getHeight(), 1);
    QCOMPARE(pixels(row), (Bytes{1, 2}));
    const ImageRefPtr plane = decoded(plainFile(1, 2, 1, 2, 9, {1, 2}), Mime);
    QVERIFY(plane);
    QCOMPARE(plane->getPixelFormat(), osg::UInt32(Image::OSG_L_PF));
    QCOMPARE(plane->getHeight(), 2);
}

void tst_SGIImageFileType::sixteenBitsComeInTheMachinesOrder()
{
    const ImageRefPtr image = decoded(plainFile(2, 3, 1, 1, 2, {0x12, 0x34, 0xab, 0xcd}), Mime);
    QVERIFY(image);
    QCOMPARE(image->getPixelFormat(), osg::UInt32(Image::OSG_LA_PF));
    QCOMPARE(image->getDataType(), int(Image::OSG_UINT16_IMAGEDATA));
    const auto* values = reinterpret_cast<const osg::UInt16*>(image->getData());
    QCOMPARE(values[0], osg::UInt16(0x1234));
    QCOMPARE(values[1], osg::UInt16(0xabcd));
}

void tst_SGIImageFileType::packedRowsAreRead()
{
    const Bytes file = packedFile(1, 4, 1, 2, {{0x82, 1, 2, 2, 7, 0}, {4, 9}});
    QCOMPARE(pixels(decoded(file, Mime)), (Bytes{1, 9, 2, 9, 7, 9, 7, 9}));
}

void tst_SGIImageFileType::packedWideRowsAreRead()
{
    const Bytes file = packedFile(2, 3, 1, 1, {{0, 2, 1, 2, 0, 0x81, 3, 4}});
    const ImageRefPtr image = decoded(file, Mime);
    QVERIFY(image);
    const auto* values = reinterpret_cast<const osg::UInt16*>(image->getData());
    QCOMPARE(values[0], osg::UInt16(0x0102));
    QCOMPARE(values[1], osg::UInt16(0x0102));
    QCOMPARE(values[2], osg::UInt16(0x0304));
}

void tst_SGIImageFileType::damagedRowsAreRefused_data()
{
    QTest::addColumn<Bytes>("row");
    QTest::newRow("empty") << Bytes{};
    QTest::newRow("ends early") << Bytes{2, 7, 0};
    QTest::newRow("too long") << Bytes{5, 7, 0};
    QTest::newRow("literal cut") << Bytes{0x84, 1, 2, 3};
    QTest::newRow("no value") << Bytes{4};
}

void tst_SGIImageFileType::damagedRowsAreRefused()
{
    QFETCH(Bytes, row);
    QVERIFY(!decoded(packedFile(1, 4, 1, 1, {row}), Mime));
}

void tst_SGIImageFileType::unknownKindsAreRefused()
{
    QVERIFY(!decoded(plainFile(3, 3, 1, 1, 1, ramp(100)), Mime));
    QVERIFY(!decoded(plainFile(1, 3, 1, 1, 5, ramp(100)), Mime));
    QVERIFY(!decoded(plainFile(1, 3, 0, 1, 1, ramp(100)), Mime));
    QVERIFY(!decoded(header(true, 1, 3, 65535, 65535, 4), Mime));
    QVERIFY(!decoded(plainFile(1, 3, 65535, 65535, 4, ramp(100)), Mime));
}

void tst_SGIImageFileType::anIncompleteFileIsRefusedAtEveryLength()
{
    QCOMPARE(countReadableBeginnings(plainFile(1, 3, 2, 2, 3, ramp(12)), Mime), 0);
    QCOMPARE(countReadableBeginnings(packedFile(1, 4, 1, 2, {{0x82, 1, 2, 2, 7}, {4, 9}}), Mime), 0);
}

void tst_SGIImageFileType::damageIsSurvived()
{
    QVERIFY(survivesDamage(plainFile(1, 3, 2, 2, 3, ramp(12)), Mime));
    QVERIFY(survivesDamage(packedFile(1, 4, 1, 2, {{0x82, 1, 2, 2, 7, 0}, {4, 9}}), Mime));
}

QTEST_APPLESS_MAIN(tst_SGIImageFileType)
#include "tst_SGIImageFileType.moc"
