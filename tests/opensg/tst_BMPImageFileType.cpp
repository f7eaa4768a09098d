#include "ImageTestTools.h"

#include <QtTest>

using osg::Image;
using osg::ImageRefPtr;
using namespace ImageTestTools;

namespace {

constexpr char Mime[] = "image/bmp";

void put(Bytes& bytes, osg::UInt32 number, int size)
{
    for (int i = 0; i < size; ++i)
        bytes.push_back(static_cast<osg::UInt8>(number >> 8 * i));
}

// A file with a header of 40 bytes, what stands between it and the pixels, and the pixels.
Bytes bmpFile(int width, int height, int bits, int packing, const Bytes& between, const Bytes& pixelBytes)
{
    Bytes file{'B', 'M'};
    put(file, 0, 4);
    put(file, 0, 4);
    put(file, static_cast<osg::UInt32>(54 + between.size()), 4);
    put(file, 40, 4);
    put(file, static_cast<osg::UInt32>(width), 4);
    put(file, static_cast<osg::UInt32>(height), 4);
    put(file, 1, 2);
    put(file, static_cast<osg::UInt32>(bits), 2);
    put(file, static_cast<osg::UInt32>(packing), 4);
    file.resize(file.size() + 20);
    file.insert(file.end(), between.begin(), between.end());
    file.insert(file.end(), pixelBytes.begin(), pixelBytes.end());
    return file;
}

// Red, green, blue.
const Bytes palette{0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0, 0};

Bytes colors(const char* letters)
{
    Bytes bytes;
    for (; *letters; ++letters) {
        for (const char channel : {'r', 'g', 'b'})
            bytes.push_back(*letters == channel ? 255 : 0);
    }
    return bytes;
}

} // namespace

class tst_BMPImageFileType : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { osg::osgLog().setLogType(osg::LOG_NONE, true); }

    void qtsFilesAreRead_data();
    void qtsFilesAreRead();
    void allDepthsAreRead_data();
    void allDepthsAreRead();
    void rowsMayComeFromTheTop();
    void theOldHeaderIsRead();
    void packedRowsAreRead_data();
    void packedRowsAreRead();
    void damagedRunsAreRefused_data();
    void damagedRunsAreRefused();
    void hugePicturesInSmallFilesAreRefused_data();
    void hugePicturesInSmallFilesAreRefused();
    void anIncompleteFileIsRefusedAtEveryLength();
    void damageIsSurvived();
    void nothingIsWritten();
};

void tst_BMPImageFileType::qtsFilesAreRead_data()
{
    QTest::addColumn<int>("format");
    QTest::newRow("bits") << int(QImage::Format_Mono);
    QTest::newRow("palette") << int(QImage::Format_Indexed8);
    QTest::newRow("colors") << int(QImage::Format_RGB32);
}

void tst_BMPImageFileType::qtsFilesAreRead()
{
    QFETCH(int, format);
    const QImage picture =
        toQt(rampImage(Image::OSG_RGB_PF, 13, 5)).convertToFormat(static_cast<QImage::Format>(format));
    const ImageRefPtr image = decoded(qtEncoded(picture, "BMP"), Mime);
    QVERIFY(image);
    QCOMPARE(image->getPixelFormat(), osg::UInt32(Image::OSG_RGB_PF));
    QCOMPARE(toQt(image), picture.convertToFormat(QImage::Format_ARGB32));
}

void tst_BMPImageFileType::allDepthsAreRead_data()
{
    QTest::addColumn<Bytes>("file");
    QTest::addColumn<uint>("format");
    QTest::addColumn<Bytes>("result");
    const auto row = [](const char* name, const Bytes& file, uint format, const Bytes& result) {
        QTest::newRow(name) << file << format << result;
    };
    const Bytes masks565{0, 0xf8, 0, 0, 0xe0, 7, 0, 0, 0x1f, 0, 0, 0};
    const Bytes masksAlpha{0xff, 0, 0, 0, 0, 0xff, 0, 0, 0, 0, 0xff, 0, 0, 0, 0, 0xff};
    row("1", bmpFile(3, 1, 1, 0, palette, {0x40, 0, 0, 0}), Image::OSG_RGB_PF, colors("rgr"));
    row("4", bmpFile(3, 1, 4, 0, palette, {0x21, 0x00, 0, 0}), Image::OSG_RGB_PF, colors("bgr"));
    row("8", bmpFile(2, 1, 8, 0, palette, {1, 2, 0, 0}), Image::OSG_RGB_PF, colors("gb"));
    row("8 beyond the palette", bmpFile(1, 1, 8, 0, palette, {200, 0, 0, 0}), Image::OSG_RGB_PF, {0, 0, 0});
    row("16", bmpFile(2, 1, 16, 0, {}, {0x1f, 0, 0, 0x7c}), Image::OSG_RGB_PF, colors("br"));
    row("16 with masks", bmpFile(2, 1, 16, 3, masks565, {0xe0, 7, 0, 0xf8}), Image::OSG_RGB_PF, colors("gr"));
    row("24", bmpFile(1, 2, 24, 0, {}, {1, 2, 3, 0, 4, 5, 6, 0}), Image::OSG_RGB_PF, {3, 2, 1, 6, 5, 4});
    row("32", bmpFile(1, 1, 32, 0, {}, {1, 2, 3, 4}), Image::OSG_RGB_PF, {3, 2, 1});
    row("32 with alpha", bmpFile(1, 1, 32, 6, masksAlpha, {1, 2, 3, 4}), Image::OSG_RGBA_PF, {1, 2, 3, 4});
}

void tst_BMPImageFileType::allDepthsAreRead()
{
    QFETCH(Bytes, file);
    QFETCH(uint, format);
    QFETCH(Bytes, result);
    const ImageRefPtr image = decoded(file, Mime);
    QVERIFY(image);
    QCOMPARE(image->getPixelFormat(), format);
    QCOMPARE(pixels(image), result);
}

void tst_BMPImageFileType::rowsMayComeFromTheTop()
{
    const Bytes rows{1, 1, 1, 0, 2, 2, 2, 0};
    QCOMPARE(pixels(decoded(bmpFile(1, 2, 24, 0, {}, rows), Mime)), (Bytes{1, 1, 1, 2, 2, 2}));
    QCOMPARE(pixels(decoded(bmpFile(1, -2, 24, 0, {}, rows), Mime)), (Bytes{2, 2, 2, 1, 1, 1}));
}

void tst_BMPImageFileType::theOldHeaderIsRead()
{
    Bytes file{'B', 'M'};
    put(file, 0, 4);
    put(file, 0, 4);
    put(file, 14 + 12 + 6, 4);
    put(file, 12, 4);
    for (const osg::UInt32 number : {2u, 1u, 1u, 1u})
        put(file, number, 2);
    file.insert(file.end(), {0, 0, 255, 255, 0, 0, 0x40, 0, 0, 0});
    QCOMPARE(pixels(decoded(file, Mime)), colors("rb"));
}

void tst_BMPImageFileType::packedRowsAreRead_data()
{
    QTest::addColumn<int>("bits");
    QTest::addColumn<Bytes>("runs");
    QTest::addColumn<QByteArray>("result");
    const auto row = [](const char* name, int bits, const Bytes& runs, const char* result) {
        QTest::newRow(name) << bits << runs << QByteArray(result);
    };
    row("8", 8, {3, 1, 1, 2, 0, 0, 4, 0, 0, 1}, "gggbrrrr");
    row("8 literal", 8, {0, 3, 1, 2, 0, 0, 0, 0, 0, 4, 0, 1, 2, 1, 0, 1}, "gbrrrgbg");
    row("8 with a jump", 8, {1, 1, 0, 2, 1, 1, 1, 2, 0, 1}, "grrrrrbr");
    row("4", 4, {3, 0x12, 0, 0, 4, 0x21, 0, 1}, "gbgrbgbg");
    row("4 literal", 4, {0, 3, 0x12, 0x10, 0, 0, 0, 1}, "gbgrrrrr");
}

void tst_BMPImageFileType::packedRowsAreRead()
{
    QFETCH(int, bits);
    QFETCH(Bytes, runs);
    QFETCH(QByteArray, result);
    const ImageRefPtr image = decoded(bmpFile(4, 2, bits, bits == 8 ? 1 : 2, palette, runs), Mime);
    QVERIFY(image);
    QCOMPARE(pixels(image), colors(result.constData()));
}

void tst_BMPImageFileType::damagedRunsAreRefused_data()
{
    QTest::addColumn<Bytes>("runs");
    QTest::newRow("no end") << Bytes{4, 1};
    QTest::newRow("beyond the row") << Bytes{5, 1, 0, 1};
    QTest::newRow("beyond the last row") << Bytes{0, 0, 0, 0, 1, 1, 0, 1};
    QTest::newRow("jump away") << Bytes{0, 2, 200, 200, 1, 1, 0, 1};
    QTest::newRow("literal cut") << Bytes{0, 4, 1};
    QTest::newRow("jump cut") << Bytes{0, 2, 1};
}

void tst_BMPImageFileType::damagedRunsAreRefused()
{
    QFETCH(Bytes, runs);
    QVERIFY(!decoded(bmpFile(4, 2, 8, 1, palette, runs), Mime));
}

void tst_BMPImageFileType::hugePicturesInSmallFilesAreRefused_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    const int most = std::numeric_limits<int>::max();
    QTest::newRow("plane") << 50000 << 50000;
    QTest::newRow("all") << most << most;
    QTest::newRow("negative width") << -1 << 1;
    QTest::newRow("lowest height") << 1 << std::numeric_limits<int>::min();
    QTest::newRow("nothing") << 0 << 0;
}

void tst_BMPImageFileType::hugePicturesInSmallFilesAreRefused()
{
    QFETCH(int, width);
    QFETCH(int, height);
    for (const int packing : {0, 1})
        QVERIFY(!decoded(bmpFile(width, height, 8, packing, palette, {0, 1}), Mime));
}

void tst_BMPImageFileType::anIncompleteFileIsRefusedAtEveryLength()
{
    QCOMPARE(countReadableBeginnings(bmpFile(2, 2, 24, 0, {}, ramp(16)), Mime), 0);
    QCOMPARE(countReadableBeginnings(bmpFile(4, 2, 8, 1, palette, {3, 1, 0, 1}), Mime), 0);
}

void tst_BMPImageFileType::damageIsSurvived()
{
    QVERIFY(survivesDamage(bmpFile(2, 2, 24, 0, {}, ramp(16)), Mime));
    QVERIFY(survivesDamage(bmpFile(2, 1, 16, 3, Bytes(12, 0x11), ramp(4)), Mime));
    QVERIFY(survivesDamage(bmpFile(4, 2, 8, 1, palette, {3, 1, 0, 2, 0, 1, 0, 3, 1, 2, 0, 0, 0, 1}), Mime));
    QVERIFY(survivesDamage(bmpFile(4, 2, 4, 2, palette, {3, 0x12, 0, 0, 0, 3, 0x12, 0x10, 0, 1}), Mime));
}

void tst_BMPImageFileType::nothingIsWritten()
{
    const LogCapture log;
    QVERIFY(encoded(rampImage(Image::OSG_RGB_PF, 2, 2), Mime).empty());
    QVERIFY(log.hasWarning());
}

QTEST_APPLESS_MAIN(tst_BMPImageFileType)
#include "tst_BMPImageFileType.moc"
