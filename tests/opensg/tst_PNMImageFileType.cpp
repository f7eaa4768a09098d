#include "ImageFormats.h"
#include "ImageTestTools.h"

#include <QtTest>

using osg::Image;
using osg::ImageRefPtr;
using namespace ImageTestTools;

namespace {

constexpr char Mime[] = "image/x-portable-bitmap";

Bytes bytesOf(const QByteArray& text)
{
    return Bytes(text.begin(), text.end());
}

} // namespace

class tst_PNMImageFileType : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { osg::osgLog().setLogType(osg::LOG_NONE, true); }

    void allKindsAreRead_data();
    void allKindsAreRead();
    void everyFormatComesBack_data();
    void everyFormatComesBack();
    void everyByteOfAFileIsFixed();
    void qtReadsWhatIsWritten();
    void fractionsAreNotWritten();
    void damagedHeadsAreRefused_data();
    void damagedHeadsAreRefused();
    void anIncompleteFileIsRefusedAtEveryLength();
    void damageIsSurvived();
};

void tst_PNMImageFileType::allKindsAreRead_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<uint>("format");
    QTest::addColumn<int>("type");
    QTest::addColumn<Bytes>("result");
    const auto row = [](const char* name, const QByteArray& file, uint format, const Bytes& result) {
        QTest::newRow(name) << file << format << int(Image::OSG_UINT8_IMAGEDATA) << result;
    };
    row("text bits", "P1 # black is 1\n3 2\n1 0 1\n010\n", Image::OSG_L_PF, {255, 0, 255, 0, 255, 0});
    row("text greys", "P2\n# a comment\n2 2 255\n1 2\n3 4\n", Image::OSG_L_PF, {3, 4, 1, 2});
    row("text colors", "P3 1 1 255 1 2 3 ", Image::OSG_RGB_PF, {1, 2, 3});
    row("bits", "P4 9 1\n" + QByteArray("\x55\x80", 2), Image::OSG_L_PF, {255, 0, 255, 0, 255, 0, 255, 0, 0});
    row("greys", "P5 1 2 255\n" + QByteArray("\x07\x08"), Image::OSG_L_PF, {8, 7});
    row("colors", "P6 1 1 255\n" + QByteArray("\x07\x08\x09"), Image::OSG_RGB_PF, {7, 8, 9});
    row("stretched", "P2 3 1 15 0 5 15 ", Image::OSG_L_PF, {0, 85, 255});
    row("above the largest", "P2 1 1 15 16 ", Image::OSG_L_PF, {255});
    const osg::UInt16 wide[] = {0x1234, 0xffff};
    const auto* raw = reinterpret_cast<const osg::UInt8*>(wide);
    QTest::newRow("wide greys") << "P5 2 1 65535\n" + QByteArray("\x12\x34\xff\xff", 4)
                                << uint(Image::OSG_L_PF) << int(Image::OSG_UINT16_IMAGEDATA)
                                << Bytes(raw, raw + 4);
}

void tst_PNMImageFileType::allKindsAreRead()
{
    QFETCH(QByteArray, file);
    QFETCH(uint, format);
    QFETCH(int, type);
    QFETCH(Bytes, result);
    const ImageRefPtr image = decoded(bytesOf(file), Mime);
    QVERIFY(image);
    QCOMPARE(image->getPixelFormat(), format);
    QCOMPARE(image->getDataType(), type);
    QCOMPARE(pixels(image), result);
}

void tst_PNMImageFileType::everyFormatComesBack_data()
{
    imageFormats::addColumns();
    imageFormats::addRow("L", Image::OSG_L_PF, Image::OSG_UINT8_IMAGEDATA, Image::OSG_L_PF);
    imageFormats::addRow("LA", Image::OSG_LA_PF, Image::OSG_UINT8_IMAGEDATA, Image::OSG_L_PF);
    imageFormats::addRow("RGB", Image::OSG_RGB_PF, Image::OSG_UINT8_IMAGEDATA, Image::OSG_RGB_PF);
    imageFormats::addRow("RGBA", Image::OSG_RGBA_PF, Image::OSG_UINT8_IMAGEDATA, Image::OSG_RGB_PF);
    imageFormats::addRow("BGRA 16", Image::OSG_BGRA_PF, Image::OSG_UINT16_IMAGEDATA, Image::OSG_RGB_PF);
    imageFormats::addRow("L 16", Image::OSG_L_PF, Image::OSG_UINT16_IMAGEDATA, Image::OSG_L_PF);
}

void tst_PNMImageFileType::everyFormatComesBack()
{
    QFETCH(uint, format);
    QFETCH(int, type);
    QFETCH(uint, result);
    const ImageRefPtr image = rampImage(format, 5, 3, type);
    const ImageRefPtr back = decoded(encoded(image, Mime), Mime);
    QVERIFY(back);
    QVERIFY(image->reformat(static_cast<Image::PixelFormat>(result)));
    QVERIFY(*back == *image);
}

void tst_PNMImageFileType::everyByteOfAFileIsFixed()
{
    const ImageRefPtr image = rampImage(Image::OSG_L_PF, 2, 2);
    Bytes expected = bytesOf("P5\n2 2\n255\n");
    expected.insert(expected.end(), {14, 21, 0, 7});
    QCOMPARE(encoded(image, Mime), expected);
}

void tst_PNMImageFileType::qtReadsWhatIsWritten()
{
    for (const uint format : {Image::OSG_L_PF, Image::OSG_RGB_PF}) {
        const ImageRefPtr image = rampImage(format, 7, 4);
        QCOMPARE(qtDecoded(encoded(image, Mime), "PPM"), toQt(image));
    }
}

void tst_PNMImageFileType::fractionsAreNotWritten()
{
    QVERIFY(encoded(rampImage(Image::OSG_L_PF, 2, 2, Image::OSG_FLOAT32_IMAGEDATA), Mime).empty());
    QVERIFY(encoded(ImageRefPtr(Image::create()), Mime).empty());
}

void tst_PNMImageFileType::damagedHeadsAreRefused_data()
{
    QTest::addColumn<QByteArray>("file");
    for (const char* file : {"P7 1 1 255 1", "P2 0 1 255 1", "P2 1 -1 255 1", "P2 1 1 0 1", "P2 1 1 65536 1",
                             "P2 a 1 255 1", "P2 99999999999999999999 1 255 1", "P5 99999999 99999999 255 1",
                             "P6 20000 20000 255 1", "P1 40000 40000 1", "P2 1 1 255 x", "P1 1 1 2",
                             "P2 # 1 1 255 1", "P2", "P2 1 1 255", "P21 1 255 1"})
        QTest::newRow(file) << QByteArray(file);
}

void tst_PNMImageFileType::damagedHeadsAreRefused()
{
    QFETCH(QByteArray, file);
    const LogCapture log;
    QVERIFY(!decoded(bytesOf(file), Mime));
    QVERIFY(log.hasWarning());
}

void tst_PNMImageFileType::anIncompleteFileIsRefusedAtEveryLength()
{
    QCOMPARE(countReadableBeginnings(encoded(rampImage(Image::OSG_RGB_PF, 3, 2), Mime), Mime), 0);
    QCOMPARE(countReadableBeginnings(bytesOf("P4 9 2\nabcd"), Mime), 0);
    QCOMPARE(countReadableBeginnings(bytesOf("P3 1 1 255 1 2 3"), Mime), 0);
}

void tst_PNMImageFileType::damageIsSurvived()
{
    QVERIFY(survivesDamage(encoded(rampImage(Image::OSG_RGB_PF, 3, 2), Mime), Mime));
    QVERIFY(survivesDamage(bytesOf("P2\n# a comment\n2 2 255\n1 2\n3 4\n"), Mime));
    QVERIFY(survivesDamage(bytesOf("P1 3 2 101010"), Mime));
}

QTEST_APPLESS_MAIN(tst_PNMImageFileType)
#include "tst_PNMImageFileType.moc"
