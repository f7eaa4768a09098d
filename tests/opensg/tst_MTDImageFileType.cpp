#include "ImageTestTools.h"

#include <QtTest>

using osg::Image;
using osg::ImageRefPtr;
using namespace ImageTestTools;

namespace {

constexpr char Mime[] = "image/x-mtd";

// A header with the given numbers in their order, and pixels behind.
Bytes file(const std::vector<int>& numbers, const Bytes& pixelBytes)
{
    Bytes bytes{'m', 't', 'd', 0, 0, 0, 0, 0};
    for (const int number : numbers) {
        bytes.push_back(static_cast<osg::UInt8>(number >> 8));
        bytes.push_back(static_cast<osg::UInt8>(number));
    }
    bytes.resize(32);
    bytes.insert(bytes.end(), pixelBytes.begin(), pixelBytes.end());
    return bytes;
}

} // namespace

class tst_MTDImageFileType : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { osg::osgLog().setLogType(osg::LOG_NONE, true); }

    void everyByteOfAFileIsFixed();
    void everyImageComesBack_data();
    void everyImageComesBack();
    void theTextInFrontIsNotLookedAt();
    void zerosOfOlderFilesMeanOneAndBytes();
    void bytesBehindThePixelsAreIgnored();
    void anIncompleteFileIsRefusedAtEveryLength();
    void damageIsSurvived();
    void hugeCountsAreRefused_data();
    void hugeCountsAreRefused();
    void unknownFormatsAreRefused();
    void numbersBeyond16BitsAreNotWritten();
    void anImageWithoutPixelsIsNotWritten();
};

void tst_MTDImageFileType::everyByteOfAFileIsFixed()
{
    const ImageRefPtr image = Image::create();
    image->set(Image::OSG_RGBA_PF, 2, 1, 1, 1, 2, 0.258, ramp(16).data());
    Bytes expected{'m', 't', 'd', 0, 0,    0, 0, 0, 0x19, 0x08, 0, 2, 0, 1, 0, 1,
                   0,   1,   0,   2, 0x01, 2, 0, 1, 0x14, 0x01, 0, 0, 0, 0, 0, 0};
    const Bytes data = ramp(16);
    expected.insert(expected.end(), data.begin(), data.end());
    QCOMPARE(encoded(image, Mime), expected);
}

void tst_MTDImageFileType::everyImageComesBack_data()
{
    QTest::addColumn<uint>("format");
    QTest::addColumn<int>("type");
    QTest::newRow("A") << uint(Image::OSG_A_PF) << int(Image::OSG_UINT8_IMAGEDATA);
    QTest::newRow("BGRA uint16") << uint(Image::OSG_BGRA_PF) << int(Image::OSG_UINT16_IMAGEDATA);
    QTest::newRow("I int32") << uint(Image::OSG_I_PF) << int(Image::OSG_INT32_IMAGEDATA);
    QTest::newRow("LA float32") << uint(Image::OSG_LA_PF) << int(Image::OSG_FLOAT32_IMAGEDATA);
    QTest::newRow("RGB float16") << uint(Image::OSG_RGB_PF) << int(Image::OSG_FLOAT16_IMAGEDATA);
    QTest::newRow("DXT5") << uint(Image::OSG_RGBA_DXT5) << int(Image::OSG_UINT8_IMAGEDATA);
    QTest::newRow("luminance integer")
        << uint(Image::OSG_LUMINANCE_INTEGER_PF) << int(Image::OSG_UINT8_IMAGEDATA);
}

void tst_MTDImageFileType::everyImageComesBack()
{
    QFETCH(uint, format);
    QFETCH(int, type);
    const ImageRefPtr image = Image::create();
    image->set(format, 6, 4, 2, 3, 2, 0.04, nullptr, type, true, 3);
    image->setData(ramp(image->getSize()).data());
    const ImageRefPtr back = decoded(encoded(image, Mime), Mime);
    QVERIFY(back);
    QVERIFY(*back == *image);
    QCOMPARE(back->getFrameDelay(), 0.04);
}

void tst_MTDImageFileType::theTextInFrontIsNotLookedAt()
{
    Bytes bytes = file({Image::OSG_L_PF, 2, 1, 1, 1, 1, 0, 1, Image::OSG_UINT8_IMAGEDATA}, {7, 8});
    std::fill(bytes.begin(), bytes.begin() + 8, osg::UInt8(0xcd));
    QCOMPARE(pixels(decoded(bytes, Mime)), (Bytes{7, 8}));
}

void tst_MTDImageFileType::zerosOfOlderFilesMeanOneAndBytes()
{
    const ImageRefPtr image = decoded(file({Image::OSG_L_PF, 2, 0, 0, 0, 0, 0, 0, 0}, {7, 8}), Mime);
    QVERIFY(image);
    QCOMPARE(image->getMipMapCount(), 1);
    QCOMPARE(image->getFrameCount(), 1);
    QCOMPARE(image->getSideCount(), 1);
    QCOMPARE(image->getHeight(), 1);
    QCOMPARE(image->getDataType(), int(Image::OSG_UINT8_IMAGEDATA));
    QCOMPARE(pixels(image), (Bytes{7, 8}));
}

void tst_MTDImageFileType::bytesBehindThePixelsAreIgnored()
{
    const Bytes bytes =
        file({Image::OSG_L_PF, 2, 1, 1, 1, 1, 0, 1, Image::OSG_UINT8_IMAGEDATA}, {7, 8, 9, 9});
    QCOMPARE(pixels(decoded(bytes, Mime)), (Bytes{7, 8}));
}

void tst_MTDImageFileType::anIncompleteFileIsRefusedAtEveryLength()
{
    const Bytes bytes = encoded(rampImage(Image::OSG_RGBA_PF, 5, 3), Mime);
    QVERIFY(decoded(bytes, Mime));
    QCOMPARE(countReadableBeginnings(bytes, Mime), 0);
}

void tst_MTDImageFileType::damageIsSurvived()
{
    QVERIFY(survivesDamage(encoded(rampImage(Image::OSG_RGBA_PF, 3, 3), Mime), Mime));
}

void tst_MTDImageFileType::hugeCountsAreRefused_data()
{
    QTest::addColumn<int>("place");
    QTest::newRow("width") << 1;
    QTest::newRow("height") << 2;
    QTest::newRow("depth") << 3;
    QTest::newRow("levels") << 4;
    QTest::newRow("frames") << 5;
    QTest::newRow("sides") << 7;
    QTest::newRow("all") << 0;
}

void tst_MTDImageFileType::hugeCountsAreRefused()
{
    QFETCH(int, place);
    std::vector<int> numbers{Image::OSG_L_PF, 2, 2, 1, 1, 1, 0, 1, Image::OSG_UINT8_IMAGEDATA};
    QVERIFY(decoded(file(numbers, ramp(4)), Mime));
    for (const int i : {1, 2, 3, 4, 5, 7}) {
        if (i == place || place == 0)
            numbers[static_cast<std::size_t>(i)] = 0xffff;
    }
    const LogCapture log;
    QVERIFY(!decoded(file(numbers, ramp(4)), Mime));
    QVERIFY(log.hasWarning());
}

void tst_MTDImageFileType::unknownFormatsAreRefused()
{
    QVERIFY(!decoded(file({0x1234, 1, 1, 1, 1, 1, 0, 1, Image::OSG_UINT8_IMAGEDATA}, ramp(64)), Mime));
    QVERIFY(!decoded(file({Image::OSG_L_PF, 1, 1, 1, 1, 1, 0, 1, 0x1400}, ramp(64)), Mime));
}

void tst_MTDImageFileType::numbersBeyond16BitsAreNotWritten()
{
    const ImageRefPtr image = Image::create();
    image->set(Image::OSG_L_PF, 65536);
    const LogCapture log;
    QVERIFY(encoded(image, Mime).empty());
    QVERIFY(log.hasWarning());
    image->set(Image::OSG_L_PF, 65535);
    QCOMPARE(encoded(image, Mime).size(), std::size_t(32 + 65535));
    image->set(Image::OSG_L_PF, 2, 1, 1, 1, 1, 70.0);
    QVERIFY(encoded(image, Mime).empty());
}

void tst_MTDImageFileType::anImageWithoutPixelsIsNotWritten()
{
    const LogCapture log;
    QVERIFY(encoded(ImageRefPtr(Image::create()), Mime).empty());
    QVERIFY(log.hasWarning());
}

QTEST_APPLESS_MAIN(tst_MTDImageFileType)
#include "tst_MTDImageFileType.moc"
