#include "ImageTestTools.h"

#include <QtTest>

using osg::Image;
using osg::ImageRefPtr;
using namespace ImageTestTools;

namespace {

constexpr char Mime[] = "image/vnd-ms.dds";

struct Kind
{
    osg::UInt32 flags = 0x40; // colours by masks
    const char* code = "\0\0\0\0";
    osg::UInt32 bits = 24;
    std::vector<osg::UInt32> masks = {0xff0000, 0xff00, 0xff, 0};
    osg::UInt32 caps = 0;
    osg::UInt32 depth = 0;
    osg::UInt32 levels = 0;
};

Bytes ddsFile(osg::UInt32 width, osg::UInt32 height, const Kind& kind, const Bytes& pixelBytes)
{
    Bytes file{'D', 'D', 'S', ' '};
    const auto put = [&file](osg::UInt32 number) {
        for (int shift = 0; shift < 32; shift += 8)
            file.push_back(static_cast<osg::UInt8>(number >> shift));
    };
    for (osg::UInt32 number : {124U, 0x1007U, height, width, 0U, kind.depth, kind.levels})
        put(number);
    for (int i = 0; i < 11; ++i)
        put(0);
    put(32);
    put(kind.flags);
    file.insert(file.end(), kind.code, kind.code + 4);
    put(kind.bits);
    for (osg::UInt32 mask : kind.masks)
        put(mask);
    for (osg::UInt32 number : {0x1000U, kind.caps, 0U, 0U, 0U})
        put(number);
    file.insert(file.end(), pixelBytes.begin(), pixelBytes.end());
    return file;
}

Kind packed(const char* code)
{
    Kind kind;
    kind.flags = 4;
    kind.code = code;
    return kind;
}

const osg::UInt32 WholeCube = 0xfe00;
const osg::UInt32 Volume = 0x200000;

} // namespace

class tst_DDSImageFileType : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { osg::osgLog().setLogType(osg::LOG_NONE, true); }

    void masksTellTheChannels_data();
    void masksTellTheChannels();
    void blocksAreUnpacked_data();
    void blocksAreUnpacked();
    void theUppermostRowIsTheLast();
    void cubesHaveSixSides();
    void sidesFollowTheirLevels();
    void volumesHaveDepth();
    void brokenFilesAreRefused();
    void anIncompleteFileIsRefusedAtEveryLength();
    void damageIsSurvived();
};

void tst_DDSImageFileType::masksTellTheChannels_data()
{
    QTest::addColumn<Bytes>("file");
    QTest::addColumn<uint>("format");
    QTest::addColumn<Bytes>("result");
    const auto row = [](const char* name, const Kind& kind, const Bytes& bytes, uint format,
                        const Bytes& result) {
        QTest::newRow(name) << ddsFile(1, 1, kind, bytes) << format << result;
    };
    Kind kind;
    row("24 bits", kind, {1, 2, 3}, Image::OSG_RGB_PF, {3, 2, 1});
    kind.bits = 32;
    row("32 bits", kind, {1, 2, 3, 4}, Image::OSG_RGB_PF, {3, 2, 1});
    kind.flags = 0x41;
    kind.masks = {0xff, 0xff00, 0xff0000, 0xff000000};
    row("32 bits with alpha", kind, {1, 2, 3, 4}, Image::OSG_RGBA_PF, {1, 2, 3, 4});
    kind.bits = 16;
    kind.masks = {0x7c00, 0x03e0, 0x001f, 0x8000};
    row("16 bits with alpha", kind, {0x1f, 0xfc}, Image::OSG_RGBA_PF, {255, 0, 255, 255});
    kind.flags = 0x20000;
    kind.bits = 8;
    kind.masks = {0xff, 0, 0, 0};
    row("grey", kind, {9}, Image::OSG_L_PF, {9});
    kind.flags = 0x20001;
    kind.bits = 16;
    kind.masks = {0xff, 0, 0, 0xff00};
    row("grey with alpha", kind, {9, 5}, Image::OSG_LA_PF, {9, 5});
}

void tst_DDSImageFileType::masksTellTheChannels()
{
    QFETCH(Bytes, file);
    QFETCH(uint, format);
    QFETCH(Bytes, result);
    const ImageRefPtr image = decoded(file, Mime);
    QVERIFY(image);
    QCOMPARE(image->getPixelFormat(), format);
    QCOMPARE(pixels(image), result);
}

void tst_DDSImageFileType::blocksAreUnpacked_data()
{
    QTest::addColumn<Bytes>("file");
    QTest::addColumn<Bytes>("result");
    // Red and blue, and the four numbers in the first row.
    const Bytes falling{0x00, 0xf8, 0x1f, 0x00, 0xe4, 0, 0, 0};
    QTest::newRow("DXT1") << ddsFile(4, 1, packed("DXT1"), falling)
                          << Bytes{255, 0, 0, 255, 0, 0, 255, 255, 170, 0, 85, 255, 85, 0, 170, 255};
    const Bytes rising{0x1f, 0x00, 0x00, 0xf8, 0xe4, 0, 0, 0};
    QTest::newRow("DXT1 with holes") << ddsFile(4, 1, packed("DXT1"), rising)
                                     << Bytes{0, 0, 255, 255, 255, 0, 0, 255, 127, 0, 127, 255, 0, 0, 0, 0};
    Bytes third{0x10, 0x32, 0, 0, 0, 0, 0, 0};
    third.insert(third.end(), rising.begin(), rising.end());
    QTest::newRow("DXT3") << ddsFile(4, 1, packed("DXT3"), third)
                          << Bytes{0, 0, 255, 0, 255, 0, 0, 17, 85, 0, 170, 34, 170, 0, 85, 51};
    // Alphas 70 and 0, and the numbers 0, 1, 2 and 7.
    Bytes fifth{70, 0, 0x88, 0x0e, 0, 0, 0, 0};
    fifth.insert(fifth.end(), rising.begin(), rising.end());
    QTest::newRow("DXT5") << ddsFile(4, 1, packed("DXT5"), fifth)
                          << Bytes{0, 0, 255, 70, 255, 0, 0, 0, 85, 0, 170, 60, 170, 0, 85, 10};
    fifth[0] = 0;
    fifth[1] = 70;
    QTest::newRow("DXT5 with ends") << ddsFile(4, 1, packed("DXT5"), fifth)
                                    << Bytes{0, 0, 255, 0, 255, 0, 0, 70, 85, 0, 170, 14, 170, 0, 85, 255};
}

void tst_DDSImageFileType::blocksAreUnpacked()
{
    QFETCH(Bytes, file);
    QFETCH(Bytes, result);
    const ImageRefPtr image = decoded(file, Mime);
    QVERIFY(image);
    QCOMPARE(image->getPixelFormat(), uint(Image::OSG_RGBA_PF));
    QCOMPARE(pixels(image), result);
}

void tst_DDSImageFileType::theUppermostRowIsTheLast()
{
    Kind kind;
    QCOMPARE(pixels(decoded(ddsFile(1, 2, kind, {1, 2, 3, 4, 5, 6}), Mime)), (Bytes{6, 5, 4, 3, 2, 1}));
    // Rows 4 and 5 are in blocks of their own.
    Bytes blocks(16);
    blocks[8] = 0xff;
    blocks[9] = 0xff;
    const Bytes result = pixels(decoded(ddsFile(1, 5, packed("DXT1"), blocks), Mime));
    QCOMPARE(result.size(), std::size_t(20));
    QCOMPARE(int(result[0]), 255);
    QCOMPARE(int(result[4]), 0);
}

void tst_DDSImageFileType::cubesHaveSixSides()
{
    Kind kind;
    kind.caps = WholeCube;
    Bytes bytes;
    for (osg::UInt8 side = 0; side < 6; ++side) {
        for (osg::UInt8 i = 0; i < 12; ++i)
            bytes.push_back(static_cast<osg::UInt8>(side * 12 + i));
    }
    const ImageRefPtr image = decoded(ddsFile(2, 2, kind, bytes), Mime);
    QVERIFY(image);
    QCOMPARE(image->getSideCount(), 6);
    // As they stand in the file, but for the order of the channels.
    for (osg::UInt32 side = 0; side < 6; ++side)
        QCOMPARE(int(image->getData(0, 0, side)[0]), int(side * 12 + 2));
    kind.caps = 0x0600;
    QVERIFY(!decoded(ddsFile(2, 2, kind, bytes), Mime));
}

void tst_DDSImageFileType::sidesFollowTheirLevels()
{
    Kind kind;
    kind.caps = WholeCube;
    kind.levels = 2;
    const ImageRefPtr image = decoded(ddsFile(2, 2, kind, ramp(6 * 15)), Mime);
    QVERIFY(image);
    QCOMPARE(image->getMipMapCount(), 1);
    QCOMPARE(image->getData(0, 0, 1)[0], ramp(6 * 15)[17]);
}

void tst_DDSImageFileType::volumesHaveDepth()
{
    Kind kind;
    kind.flags = 0x20000;
    kind.bits = 8;
    kind.masks = {0xff, 0, 0, 0};
    kind.caps = Volume;
    kind.depth = 3;
    const ImageRefPtr image = decoded(ddsFile(1, 2, kind, {1, 2, 3, 4, 5, 6}), Mime);
    QVERIFY(image);
    QCOMPARE(image->getDepth(), 3);
    QCOMPARE(pixels(image), (Bytes{2, 1, 4, 3, 6, 5}));
}

void tst_DDSImageFileType::brokenFilesAreRefused()
{
    const Bytes some = ramp(100);
    Kind kind;
    QVERIFY(!decoded(ddsFile(0, 1, kind, some), Mime));
    QVERIFY(!decoded(ddsFile(6, 6, kind, some), Mime));
    QVERIFY(!decoded(ddsFile(0xffffffffU, 0xffffffffU, kind, some), Mime));
    QVERIFY(!decoded(ddsFile(65535, 65535, packed("DXT5"), some), Mime));
    QVERIFY(!decoded(ddsFile(1, 1, packed("DX10"), some), Mime));
    kind.levels = 1000;
    QVERIFY(!decoded(ddsFile(1, 1, kind, some), Mime));
    kind.levels = 1;
    kind.bits = 12;
    QVERIFY(!decoded(ddsFile(1, 1, kind, some), Mime));
    kind.bits = 24;
    kind.caps = Volume;
    kind.depth = 0xffffffffU;
    QVERIFY(!decoded(ddsFile(1, 1, kind, some), Mime));
    Bytes other = ddsFile(1, 1, Kind(), some);
    other[0] = 'X';
    QVERIFY(!decoded(other, Mime));
}

void tst_DDSImageFileType::anIncompleteFileIsRefusedAtEveryLength()
{
    QCOMPARE(countReadableBeginnings(ddsFile(2, 2, Kind(), ramp(12)), Mime), 0);
    QCOMPARE(countReadableBeginnings(ddsFile(5, 5, packed("DXT5"), ramp(64)), Mime), 0);
}

void tst_DDSImageFileType::damageIsSurvived()
{
    QVERIFY(survivesDamage(ddsFile(2, 2, Kind(), ramp(12)), Mime));
    QVERIFY(survivesDamage(ddsFile(5, 5, packed("DXT5"), ramp(64)), Mime));
    Kind cube;
    cube.caps = WholeCube;
    QVERIFY(survivesDamage(ddsFile(1, 1, cube, ramp(18)), Mime));
}

QTEST_APPLESS_MAIN(tst_DDSImageFileType)
#include "tst_DDSImageFileType.moc"
