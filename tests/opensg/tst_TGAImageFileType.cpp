#include "ImageTestTools.h"

#include <QtTest>

using osg::Image;
using osg::ImageRefPtr;
using namespace ImageTestTools;

namespace {

constexpr char Mime[] = "image/x-targa";

// A file without a palette; `descriptor` tells the corner of the first pixel and the bits of alpha.
Bytes tgaFile(int kind, int width, int height, int bits, int descriptor, const Bytes& pixelBytes)
{
    const auto low = [](int number) { return static_cast<osg::UInt8>(number); };
    Bytes file{0,           0,
               low(kind),   0,
               0,           0,
               0,           0,
               0,           0,
               0,           0,
               low(width),  low(width >> 8),
               low(height), low(height >> 8),
               low(bits),   low(descriptor)};
    file.insert(file.end(), pixelBytes.begin(), pixelBytes.end());
    return file;
}

// The same with a text of two bytes and a palette whose first colour has the number 5.
Bytes paletteFile(int kind, int bits, const Bytes& palette, int count, const Bytes& indices)
{
    Bytes file = tgaFile(kind, static_cast<int>(indices.size()), 1, 8, 0, {'h', 'i'});
    file[0] = 2;
    file[1] = 1;
    file[3] = 5;
    file[5] = static_cast<osg::UInt8>(count);
    file[7] = static_cast<osg::UInt8>(bits);
    file.insert(file.end(), palette.begin(), palette.end());
    file.insert(file.end(), indices.begin(), indices.end());
    return file;
}

} // namespace

class tst_TGAImageFileType : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { osg::osgLog().setLogType(osg::LOG_NONE, true); }

    void allKindsAreRead_data();
    void allKindsAreRead();
    void theFirstPixelMayBeInAnyCorner_data();
    void theFirstPixelMayBeInAnyCorner();
    void brokenFilesAreRefused();
    void anIncompleteFileIsRefusedAtEveryLength();
    void damageIsSurvived();
};

void tst_TGAImageFileType::allKindsAreRead_data()
{
    QTest::addColumn<Bytes>("file");
    QTest::addColumn<uint>("format");
    QTest::addColumn<Bytes>("result");
    const auto row = [](const char* name, const Bytes& file, uint format, const Bytes& result) {
        QTest::newRow(name) << file << format << result;
    };
    row("grey", tgaFile(3, 2, 1, 8, 0, {7, 8}), Image::OSG_L_PF, {7, 8});
    row("15 bits", tgaFile(2, 2, 1, 15, 0, {0x1f, 0, 0, 0x7c}), Image::OSG_RGB_PF, {0, 0, 255, 255, 0, 0});
    row("16 bits", tgaFile(2, 1, 1, 16, 1, {0xe0, 3}), Image::OSG_RGB_PF, {0, 255, 0});
    row("24 bits", tgaFile(2, 1, 1, 24, 0, {1, 2, 3}), Image::OSG_RGB_PF, {3, 2, 1});
    row("32 bits", tgaFile(2, 1, 1, 32, 8, {1, 2, 3, 4}), Image::OSG_RGBA_PF, {3, 2, 1, 4});
    row("32 bits without alpha", tgaFile(2, 1, 1, 32, 0, {1, 2, 3, 4}), Image::OSG_RGB_PF, {3, 2, 1});
    row("palette", paletteFile(1, 24, {1, 2, 3, 4, 5, 6}, 2, {6, 5}), Image::OSG_RGB_PF, {6, 5, 4, 3, 2, 1});
    row("palette with alpha", paletteFile(1, 32, {1, 2, 3, 4}, 1, {5}), Image::OSG_RGBA_PF, {3, 2, 1, 4});
    row("number outside the palette", paletteFile(1, 24, {1, 2, 3}, 1, {4, 99}), Image::OSG_RGB_PF,
        {0, 0, 0, 0, 0, 0});
    row("packed grey", tgaFile(11, 5, 1, 8, 0, {0x82, 7, 1, 8, 9}), Image::OSG_L_PF, {7, 7, 7, 8, 9});
    row("packed colors", tgaFile(10, 3, 1, 24, 0, {0x81, 1, 2, 3, 0, 4, 5, 6}), Image::OSG_RGB_PF,
        {3, 2, 1, 3, 2, 1, 6, 5, 4});
    row("run over two rows", tgaFile(11, 2, 2, 8, 0, {0x83, 7}), Image::OSG_L_PF, {7, 7, 7, 7});
}

void tst_TGAImageFileType::allKindsAreRead()
{
    QFETCH(Bytes, file);
    QFETCH(uint, format);
    QFETCH(Bytes, result);
    const ImageRefPtr image = decoded(file, Mime);
    QVERIFY(image);
    QCOMPARE(image->getPixelFormat(), format);
    QCOMPARE(pixels(image), result);
}

void tst_TGAImageFileType::theFirstPixelMayBeInAnyCorner_data()
{
    QTest::addColumn<int>("descriptor");
    QTest::addColumn<Bytes>("result");
    QTest::newRow("bottom left") << 0x00 << Bytes{1, 2, 3, 4};
    QTest::newRow("bottom right") << 0x10 << Bytes{2, 1, 4, 3};
    QTest::newRow("top left") << 0x20 << Bytes{3, 4, 1, 2};
    QTest::newRow("top right") << 0x30 << Bytes{4, 3, 2, 1};
}

void tst_TGAImageFileType::theFirstPixelMayBeInAnyCorner()
{
    QFETCH(int, descriptor);
    QFETCH(Bytes, result);
    QCOMPARE(pixels(decoded(tgaFile(3, 2, 2, 8, descriptor, {1, 2, 3, 4}), Mime)), result);
}

void tst_TGAImageFileType::brokenFilesAreRefused()
{
    QVERIFY(!decoded(tgaFile(0, 1, 1, 8, 0, ramp(100)), Mime));
    QVERIFY(!decoded(tgaFile(1, 1, 1, 8, 0, ramp(100)), Mime));
    QVERIFY(!decoded(tgaFile(2, 1, 1, 8, 0, ramp(100)), Mime));
    QVERIFY(!decoded(tgaFile(3, 1, 1, 16, 0, ramp(100)), Mime));
    QVERIFY(!decoded(tgaFile(3, 0, 1, 8, 0, ramp(100)), Mime));
    QVERIFY(!decoded(tgaFile(2, 65535, 65535, 32, 8, ramp(100)), Mime));
    QVERIFY(!decoded(tgaFile(10, 65535, 65535, 32, 8, ramp(100)), Mime));
    QVERIFY(!decoded(tgaFile(11, 100, 1, 8, 0, {0x80, 1}), Mime));
}

void tst_TGAImageFileType::anIncompleteFileIsRefusedAtEveryLength()
{
    QCOMPARE(countReadableBeginnings(tgaFile(2, 2, 2, 24, 0, ramp(12)), Mime), 0);
    QCOMPARE(countReadableBeginnings(tgaFile(10, 3, 1, 24, 0, {0x81, 1, 2, 3, 0, 4, 5, 6}), Mime), 0);
    QCOMPARE(countReadableBeginnings(paletteFile(1, 24, {1, 2, 3, 4, 5, 6}, 2, {6, 5}), Mime), 0);
}

void tst_TGAImageFileType::damageIsSurvived()
{
    QVERIFY(survivesDamage(tgaFile(2, 2, 2, 24, 0, ramp(12)), Mime));
    QVERIFY(survivesDamage(tgaFile(10, 3, 1, 24, 0, {0x81, 1, 2, 3, 0, 4, 5, 6}), Mime));
    QVERIFY(survivesDamage(paletteFile(1, 24, {1, 2, 3, 4, 5, 6}, 2, {6, 5}), Mime));
}

QTEST_APPLESS_MAIN(tst_TGAImageFileType)
#include "tst_TGAImageFileType.moc"
