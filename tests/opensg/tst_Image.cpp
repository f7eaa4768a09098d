#include "ImageTestTools.h"

#include <OpenSG/OSGSimpleAttachments.h>

#include <QtTest>

#include <cstring>
#include <limits>

using osg::Image;
using osg::ImageRefPtr;
using namespace ImageTestTools;

class tst_Image : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { osg::osgLog().setLogType(osg::LOG_NONE, true); }

    void freshImageHasTheDefaults();
    void bothCreatesMakeAnImage();
    void fieldNumbersAndMasksAreFixed();
    void constantsAreOpenGLs();

    void sizesAndCountsBelowOneBecomeOne();
    void dimensionFollowsTheEdges_data();
    void dimensionFollowsTheEdges();
    void setCopiesTheData();
    void newMemoryIsZero();
    void memoryOfTheSameSizeKeepsItsContent();
    void setWithoutMemoryDropsThePixels();
    void unknownFormatOrTypeLeavesAnEmptyImage();
    void tooManyPixelsAreRefused_data();
    void tooManyPixelsAreRefused();
    void setTakesOverAnotherImage();
    void setDataNeedsData();
    void setDataMayComeFromTheImageItself();
    void clearDataKeepsTheForm();
    void setSubDataClipsAtTheEdges();
    void setSubDataReachesEverySlice();

    void bytesPerPixelAndComponents_data();
    void bytesPerPixelAndComponents();
    void channelQueries_data();
    void channelQueries();
    void forceFlagsAnswerForTheFormat();
    void getSizeDropsFactors();
    void compressedSizesCountBlocks_data();
    void compressedSizesCountBlocks();
    void dataLiesByFrameSideAndLevel();
    void getDataIsNullWithoutPixels();
    void framesFollowTheTime();
    void mipmapGeometryHalvesDownToOne();

    void comparisonAndAssignment();
    void textAttachments();
    void changeIsToldToParents();

    void reformatBetweenFormats_data();
    void reformatBetweenFormats();
    void reformatIntoAnotherImageKeepsTheSource();
    void convertDataTypeStretchesTheRange_data();
    void convertDataTypeStretchesTheRange();
    void scaleTakesTheNearestPixel();
    void scaleKeepsSidesFramesAndLevels();
    void scaleNextPower2RoundsUp();
    void subImageCutsABox();
    void sliceTakesAPlane();
    void createMipmapAverages();
    void removeMipmapKeepsLevelZero();
    void swapDataEndianTurnsEachComponent();
    void flipDepthFrameDataSwapsSlicesAndFrames();
    void conversionsRefuseWhatTheyCannot();
};

void tst_Image::freshImageHasTheDefaults()
{
    const ImageRefPtr image = Image::create();
    QCOMPARE(image->getDimension(), 0);
    QCOMPARE(image->getWidth(), 0);
    QCOMPARE(image->getHeight(), 1);
    QCOMPARE(image->getDepth(), 1);
    QCOMPARE(image->getBpp(), 1);
    QCOMPARE(image->getMipMapCount(), 1);
    QCOMPARE(image->getFrameCount(), 1);
    QCOMPARE(image->getSideCount(), 1);
    QCOMPARE(image->getFrameDelay(), 0.0);
    QCOMPARE(image->getPixelFormat(), 0u);
    QCOMPARE(image->getDataType(), 0x1401);
    QCOMPARE(image->getFrameSize(), 0);
    QCOMPARE(image->getSideSize(), 0);
    QCOMPARE(image->getName(), std::string());
    QCOMPARE(image->getResX(), 72.0f);
    QCOMPARE(image->getResY(), 72.0f);
    QCOMPARE(image->getResUnit(), osg::UInt16(2));
    QCOMPARE(image->getSize(), 0ul);
    QVERIFY(!image->getForceAlphaChannel());
    QVERIFY(!image->getForceColorChannel());
    QVERIFY(!image->getForceAlphaBinary());
    QVERIFY(!image->getForceCompressedData());
    QVERIFY(!image->isValid());
    QVERIFY(!image->hasAttachment());

    const LogCapture log;
    QCOMPARE(int(image->getComponents()), 0);
    QVERIFY(log.hasWarning());
}

void tst_Image::bothCreatesMakeAnImage()
{
    osg::ImagePtr a = osg::ImageBase::create();
    osg::ImagePtr b = osg::Image::create();
    osg::ImagePtr c = osg::Image::createEmpty();
    for (osg::ImagePtr image : {a, b, c}) {
        QVERIFY(image != osg::NullFC);
        QCOMPARE(image.getRefCount(), 0);
        QCOMPARE(image->getTypeName(), "Image");
        osg::subRefCP(image);
        QVERIFY(!image);
    }
}

void tst_Image::fieldNumbersAndMasksAreFixed()
{
    QCOMPARE(osg::AttachmentContainer::AttachmentsFieldMask, osg::BitVector(2));
    QCOMPARE(int(Image::ParentsFieldId), 2);
    QCOMPARE(int(Image::DimensionFieldId), 3);
    QCOMPARE(int(Image::MipMapCountFieldId), 8);
    QCOMPARE(int(Image::PixelFormatFieldId), 11);
    QCOMPARE(int(Image::PixelFieldId), 12);
    QCOMPARE(int(Image::NameFieldId), 14);
    QCOMPARE(int(Image::ComponentSizeFieldId), 16);
    QCOMPARE(int(Image::SideSizeFieldId), 18);
    QCOMPARE(int(Image::ForceAlphaBinaryFieldId), 22);
    QCOMPARE(int(Image::ResUnitFieldId), 25);
    QCOMPARE(Image::PixelFieldMask, osg::BitVector(1) << 12);
    QCOMPARE(Image::ResUnitFieldMask, osg::BitVector(1) << 25);
}

void tst_Image::constantsAreOpenGLs()
{
    QCOMPARE(int(Image::OSG_RGB_PF), 6407);
    QCOMPARE(int(Image::OSG_RGBA_PF), 6408);
    QCOMPARE(int(Image::OSG_L_PF), 6409);
    QCOMPARE(int(Image::OSG_LA_PF), 6410);
    QCOMPARE(int(Image::OSG_I_PF), 32841);
    QCOMPARE(int(Image::OSG_BGR_PF), 32992);
    QCOMPARE(int(Image::OSG_BGRA_PF), 32993);
    QCOMPARE(int(Image::OSG_RGB_DXT1), 33776);
    QCOMPARE(int(Image::OSG_RGBA_DXT5), 33779);
    QCOMPARE(int(Image::OSG_ALPHA_INTEGER_PF), 0x8D97);
    QCOMPARE(int(Image::OSG_LUMINANCE_ALPHA_INTEGER_PF), 0x8D9D);
    QCOMPARE(int(Image::OSG_UINT8_IMAGEDATA), 5121);
    QCOMPARE(int(Image::OSG_UINT16_IMAGEDATA), 5123);
    QCOMPARE(int(Image::OSG_UINT32_IMAGEDATA), 5125);
    QCOMPARE(int(Image::OSG_FLOAT32_IMAGEDATA), 5126);
    QCOMPARE(int(Image::OSG_FLOAT16_IMAGEDATA), 5131);
    QCOMPARE(int(Image::OSG_INT16_IMAGEDATA), 0x1402);
    QCOMPARE(int(Image::OSG_INT32_IMAGEDATA), 0x1404);
}

void tst_Image::sizesAndCountsBelowOneBecomeOne()
{
    const ImageRefPtr image = Image::create();
    QVERIFY(
        image->set(Image::OSG_RGB_PF, 0, -5, 0, -1, 0, 0.0, nullptr, Image::OSG_UINT8_IMAGEDATA, true, -2));
    QCOMPARE(image->getWidth(), 1);
    QCOMPARE(image->getHeight(), 1);
    QCOMPARE(image->getDepth(), 1);
    QCOMPARE(image->getMipMapCount(), 1);
    QCOMPARE(image->getFrameCount(), 1);
    QCOMPARE(image->getSideCount(), 1);
    QCOMPARE(image->getSize(), 3ul);
}

void tst_Image::dimensionFollowsTheEdges_data()
{
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("depth");
    QTest::addColumn<int>("dimension");
    QTest::newRow("row") << 4 << 1 << 1 << 1;
    QTest::newRow("plane") << 4 << 2 << 1 << 2;
    QTest::newRow("column") << 1 << 2 << 1 << 2;
    QTest::newRow("volume") << 4 << 2 << 3 << 3;
    QTest::newRow("flat volume") << 4 << 1 << 3 << 3;
}

void tst_Image::dimensionFollowsTheEdges()
{
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(int, depth);
    const ImageRefPtr image = Image::create();
    QVERIFY(image->set(Image::OSG_L_PF, width, height, depth));
    QTEST(image->getDimension(), "dimension");
}

void tst_Image::setCopiesTheData()
{
    const ImageRefPtr image = Image::create();
    Bytes data = ramp(12);
    QVERIFY(image->set(Image::OSG_RGB_PF, 2, 2, 1, 1, 1, 0.5, data.data()));
    data[0] = 99;
    QCOMPARE(pixels(image), ramp(12));
    QCOMPARE(image->getFrameDelay(), 0.5);
    QVERIFY(image->isValid());
}

void tst_Image::newMemoryIsZero()
{
    const ImageRefPtr image = rampImage(Image::OSG_RGB_PF, 2, 2);
    QVERIFY(image->set(Image::OSG_RGB_PF, 3, 2));
    QCOMPARE(pixels(image), Bytes(18));
}

void tst_Image::memoryOfTheSameSizeKeepsItsContent()
{
    const ImageRefPtr image = rampImage(Image::OSG_RGBA_PF, 3, 4);
    const osg::UInt8* address = image->getData();
    QVERIFY(image->set(Image::OSG_RGB_PF, 4, 4));
    QCOMPARE(pixels(image), ramp(48));
    QCOMPARE(image->getData(), address);
    QCOMPARE(image->getBpp(), 3);
}

void tst_Image::setWithoutMemoryDropsThePixels()
{
    const ImageRefPtr image = rampImage(Image::OSG_RGBA_PF, 3, 4);
    const auto type = Image::OSG_UINT8_IMAGEDATA;
    QVERIFY(!image->set(Image::OSG_RGBA_PF, 3, 4, 1, 1, 1, 0.0, nullptr, type, false));
    QVERIFY(!image->isValid());
    QVERIFY(!image->getData());
    QCOMPARE(image->getWidth(), 3);
    QCOMPARE(image->getSize(), 48ul);
}

void tst_Image::unknownFormatOrTypeLeavesAnEmptyImage()
{
    const ImageRefPtr image = rampImage(Image::OSG_RGBA_PF, 3, 4);
    {
        const LogCapture log;
        QVERIFY(!image->set(12345, 3, 4));
        QVERIFY(log.hasWarning());
    }
    QVERIFY(!image->isValid());
    QCOMPARE(image->getWidth(), 0);
    QCOMPARE(image->getPixelFormat(), 0u);
    QVERIFY(!image->set(Image::OSG_RGBA_PF, 3, 4, 1, 1, 1, 0.0, nullptr, 77));
    QVERIFY(!image->isValid());
}

void tst_Image::tooManyPixelsAreRefused_data()
{
    const int most = std::numeric_limits<int>::max();
    QTest::addColumn<int>("width");
    QTest::addColumn<int>("height");
    QTest::addColumn<int>("depth");
    QTest::addColumn<int>("levels");
    QTest::addColumn<int>("frames");
    QTest::addColumn<int>("sides");
    QTest::newRow("plane") << 65536 << 65536 << 1 << 1 << 1 << 1;
    QTest::newRow("width") << most << 1 << 1 << 1 << 1 << 1;
    QTest::newRow("volume") << most << most << most << 1 << 1 << 1;
    QTest::newRow("everything") << most << most << most << most << most << most;
    QTest::newRow("levels") << 1 << 1 << 1 << most << 1 << 1;
    QTest::newRow("frames and sides") << 1 << 1 << 1 << 1 << 65536 << 65536;
    // 2^64 bytes, which is 0 in 64 bits.
    QTest::newRow("product that wraps") << 65536 << 65536 << 65536 << 1 << 16384 << 1;
}

void tst_Image::tooManyPixelsAreRefused()
{
    QFETCH(int, width);
    QFETCH(int, height);
    QFETCH(int, depth);
    QFETCH(int, levels);
    QFETCH(int, frames);
    QFETCH(int, sides);
    const ImageRefPtr image = Image::create();
    const LogCapture log;
    QVERIFY(!image->set(Image::OSG_RGBA_PF, width, height, depth, levels, frames, 0.0, nullptr,
                        Image::OSG_UINT8_IMAGEDATA, true, sides));
    QVERIFY(log.hasWarning());
    QVERIFY(!image->isValid());
    QCOMPARE(image->getSize(), 0ul);
}

void tst_Image::setTakesOverAnotherImage()
{
    const ImageRefPtr source = rampImage(Image::OSG_LA_PF, 3, 2);
    source->setName("source");
    source->setAttachmentField("key", "value");
    source->setForceAlphaBinary(true);
    source->setResX(300);
    osg::setName(source.get(), "attached");
    const ImageRefPtr copy = Image::create();
    QVERIFY(copy->set(source));
    QVERIFY(*copy == *source);
    QVERIFY(copy->getForceAlphaBinary());
    QCOMPARE(copy->getResX(), 300.0f);
    QCOMPARE(copy->getName(), std::string());
    QVERIFY(!copy->hasAttachment());
    QVERIFY(!osg::getName(copy.get()));
    QVERIFY(copy->set(copy));
    QCOMPARE(pixels(copy), ramp(12));
    QVERIFY(!copy->set(osg::ImagePtr()));
}

void tst_Image::setDataNeedsData()
{
    const ImageRefPtr image = Image::create();
    image->set(Image::OSG_L_PF, 4, 1, 1, 1, 1, 0.0, nullptr, Image::OSG_UINT8_IMAGEDATA, false);
    QVERIFY(image->setData(ramp(4, 9).data()));
    QCOMPARE(pixels(image), ramp(4, 9));
    const LogCapture log;
    QVERIFY(!image->setData());
    QVERIFY(log.hasWarning());
    QCOMPARE(pixels(image), ramp(4, 9));
}

void tst_Image::setDataMayComeFromTheImageItself()
{
    const ImageRefPtr image = rampImage(Image::OSG_L_PF, 8, 1);
    QVERIFY(image->setData(image->getData()));
    QCOMPARE(pixels(image), ramp(8));
    QVERIFY(image->set(Image::OSG_L_PF, 4, 1, 1, 1, 1, 0.0, image->getData() + 4));
    const Bytes whole = ramp(8);
    QCOMPARE(pixels(image), Bytes(whole.begin() + 4, whole.end()));
}

void tst_Image::clearDataKeepsTheForm()
{
    const ImageRefPtr image = rampImage(Image::OSG_RGB_PF, 3, 2);
    image->clearData();
    QVERIFY(!image->isValid());
    QCOMPARE(image->getWidth(), 3);
    QCOMPARE(image->getSize(), 18ul);
}

void tst_Image::setSubDataClipsAtTheEdges()
{
    const ImageRefPtr image = Image::create();
    image->set(Image::OSG_L_PF, 3, 3);
    const Bytes box{1, 2, 3, 4};
    QVERIFY(image->setSubData(-1, 2, 0, 2, 2, 1, box.data()));
    QCOMPARE(pixels(image), (Bytes{0, 0, 0, 0, 0, 0, 2, 0, 0}));
    QVERIFY(image->setSubData(1, 0, 0, 2, 2, 1, box.data()));
    QCOMPARE(pixels(image), (Bytes{0, 1, 2, 0, 3, 4, 2, 0, 0}));
    const int most = std::numeric_limits<int>::max();
    QVERIFY(image->setSubData(most, most, 0, 2, 2, 1, box.data()));
    QVERIFY(image->setSubData(0, 0, 1, 2, 2, 1, box.data()));
    QVERIFY(image->setSubData(0, 0, 0, -2, 2, 1, box.data()));
    QCOMPARE(pixels(image), (Bytes{0, 1, 2, 0, 3, 4, 2, 0, 0}));
    QVERIFY(!image->setSubData(0, 0, 0, 1, 1, 1, nullptr));
    image->clearData();
    QVERIFY(!image->setSubData(0, 0, 0, 1, 1, 1, box.data()));
}

void tst_Image::setSubDataReachesEverySlice()
{
    const ImageRefPtr image = Image::create();
    image->set(Image::OSG_LA_PF, 2, 1, 3);
    QVERIFY(image->setSubData(1, 0, 1, 1, 1, 2, Bytes{1, 2, 3, 4}.data()));
    QCOMPARE(pixels(image), (Bytes{0, 0, 0, 0, 0, 0, 1, 2, 0, 0, 3, 4}));
}

void tst_Image::bytesPerPixelAndComponents_data()
{
    QTest::addColumn<uint>("format");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("components");
    QTest::addColumn<int>("bpp");
    const auto row = [](const char* name, uint format, int type, int components, int bpp) {
        QTest::newRow(name) << format << type << components << bpp;
    };
    row("L uint8", Image::OSG_L_PF, Image::OSG_UINT8_IMAGEDATA, 1, 1);
    row("A uint16", Image::OSG_A_PF, Image::OSG_UINT16_IMAGEDATA, 1, 2);
    row("I int16", Image::OSG_I_PF, Image::OSG_INT16_IMAGEDATA, 1, 2);
    row("LA float16", Image::OSG_LA_PF, Image::OSG_FLOAT16_IMAGEDATA, 2, 4);
    row("RGB float32", Image::OSG_RGB_PF, Image::OSG_FLOAT32_IMAGEDATA, 3, 12);
    row("RGBA uint32", Image::OSG_RGBA_PF, Image::OSG_UINT32_IMAGEDATA, 4, 16);
    row("BGR int32", Image::OSG_BGR_PF, Image::OSG_INT32_IMAGEDATA, 3, 12);
    row("BGRA uint8", Image::OSG_BGRA_PF, Image::OSG_UINT8_IMAGEDATA, 4, 4);
    row("luminance integer", Image::OSG_LUMINANCE_INTEGER_PF, Image::OSG_UINT8_IMAGEDATA, 1, 1);
    row("luminance alpha integer", Image::OSG_LUMINANCE_ALPHA_INTEGER_PF, Image::OSG_UINT8_IMAGEDATA, 2, 2);
    row("rgb integer", Image::OSG_RGB_INTEGER_PF, Image::OSG_UINT16_IMAGEDATA, 3, 6);
    row("bgra integer", Image::OSG_BGRA_INTEGER_PF, Image::OSG_UINT8_IMAGEDATA, 4, 4);
}

void tst_Image::bytesPerPixelAndComponents()
{
    QFETCH(uint, format);
    QFETCH(int, type);
    const ImageRefPtr image = Image::create();
    QVERIFY(image->set(format, 5, 3, 1, 1, 1, 0.0, nullptr, type));
    QTEST(int(image->getComponents()), "components");
    QTEST(image->getBpp(), "bpp");
    QCOMPARE(image->getComponentSize() * image->getComponents(), image->getBpp());
    QCOMPARE(image->getSize(), static_cast<unsigned long>(15 * image->getBpp()));
}

void tst_Image::channelQueries_data()
{
    QTest::addColumn<uint>("format");
    QTest::addColumn<bool>("alpha");
    QTest::addColumn<bool>("color");
    QTest::addColumn<bool>("binary");
    QTest::addColumn<bool>("compressed");
    const auto row = [](const char* name, uint format, bool alpha, bool color, bool binary, bool compressed) {
        QTest::newRow(name) << format << alpha << color << binary << compressed;
    };
    row("A", Image::OSG_A_PF, true, false, false, false);
    row("I", Image::OSG_I_PF, true, false, false, false);
    row("L", Image::OSG_L_PF, false, false, false, false);
    row("LA", Image::OSG_LA_PF, true, false, false, false);
    row("RGB", Image::OSG_RGB_PF, false, true, false, false);
    row("RGBA", Image::OSG_RGBA_PF, true, true, false, false);
    row("BGR", Image::OSG_BGR_PF, false, true, false, false);
    row("BGRA", Image::OSG_BGRA_PF, true, true, false, false);
    row("RGB_DXT1", Image::OSG_RGB_DXT1, false, true, false, true);
    row("RGBA_DXT1", Image::OSG_RGBA_DXT1, true, true, true, true);
    row("RGBA_DXT3", Image::OSG_RGBA_DXT3, true, true, false, true);
    row("RGBA_DXT5", Image::OSG_RGBA_DXT5, true, true, false, true);
    row("alpha integer", Image::OSG_ALPHA_INTEGER_PF, true, false, false, false);
    row("rgb integer", Image::OSG_RGB_INTEGER_PF, false, true, false, false);
    row("rgba integer", Image::OSG_RGBA_INTEGER_PF, true, true, false, false);
    row("bgr integer", Image::OSG_BGR_INTEGER_PF, false, true, false, false);
    row("bgra integer", Image::OSG_BGRA_INTEGER_PF, true, true, false, false);
    row("luminance integer", Image::OSG_LUMINANCE_INTEGER_PF, false, true, false, false);
    row("luminance alpha integer", Image::OSG_LUMINANCE_ALPHA_INTEGER_PF, true, false, false, false);
    row("none", 0, false, true, false, false);
}

void tst_Image::channelQueries()
{
    QFETCH(uint, format);
    const ImageRefPtr image = Image::create();
    if (format)
        QVERIFY(image->set(format, 4, 4));
    QTEST(image->hasAlphaChannel(), "alpha");
    QTEST(image->hasColorChannel(), "color");
    QTEST(image->isAlphaBinary(), "binary");
    QTEST(image->hasCompressedData(), "compressed");
}

void tst_Image::forceFlagsAnswerForTheFormat()
{
    const ImageRefPtr image = rampImage(Image::OSG_L_PF, 2, 2);
    image->setForceAlphaChannel(true);
    image->setForceColorChannel(true);
    image->setForceAlphaBinary(true);
    image->setForceCompressedData(true);
    QVERIFY(image->hasAlphaChannel());
    QVERIFY(image->hasColorChannel());
    QVERIFY(image->isAlphaBinary());
    QVERIFY(image->hasCompressedData());
}

void tst_Image::getSizeDropsFactors()
{
    const ImageRefPtr image = Image::create();
    const auto type = Image::OSG_UINT8_IMAGEDATA;
    QVERIFY(image->set(Image::OSG_RGB_PF, 8, 4, 1, 4, 5, 0.1, nullptr, type, true, 6));
    // 8x4, 4x2, 2x1, 1x1
    const unsigned long levels = 3 * (32 + 8 + 2 + 1);
    QCOMPARE(image->getSize(), levels * 5 * 6);
    QCOMPARE(image->getSize(false), 96ul * 5 * 6);
    QCOMPARE(image->getSize(true, false), levels * 6);
    QCOMPARE(image->getSize(true, true, false), levels * 5);
    QCOMPARE(image->getSize(false, false, false), 96ul);
    QCOMPARE(image->getSideSize(), int(levels));
    QCOMPARE(image->getFrameSize(), int(levels * 6));
}

void tst_Image::compressedSizesCountBlocks_data()
{
    QTest::addColumn<uint>("format");
    QTest::addColumn<int>("size");
    // 10 x 6 is 3 x 2 blocks; then 5 x 3: 2 x 1, 2 x 1: 1, 1 x 1: 1.
    QTest::newRow("RGB_DXT1") << uint(Image::OSG_RGB_DXT1) << 10 * 8;
    QTest::newRow("RGBA_DXT1") << uint(Image::OSG_RGBA_DXT1) << 10 * 8;
    QTest::newRow("RGBA_DXT3") << uint(Image::OSG_RGBA_DXT3) << 10 * 16;
    QTest::newRow("RGBA_DXT5") << uint(Image::OSG_RGBA_DXT5) << 10 * 16;
}

void tst_Image::compressedSizesCountBlocks()
{
    QFETCH(uint, format);
    QFETCH(int, size);
    const ImageRefPtr image = Image::create();
    QVERIFY(image->set(format, 10, 6, 1, 4));
    QCOMPARE(image->getSize(), static_cast<unsigned long>(size));
    QCOMPARE(image->getSize(false), static_cast<unsigned long>(size * 6 / 10));
}

void tst_Image::dataLiesByFrameSideAndLevel()
{
    const ImageRefPtr image = Image::create();
    const auto type = Image::OSG_UINT16_IMAGEDATA;
    QVERIFY(image->set(Image::OSG_L_PF, 4, 4, 2, 3, 2, 0.1, nullptr, type, true, 3));
    const std::ptrdiff_t level0 = 4 * 4 * 2 * 2, level1 = 2 * 2 * 1 * 2, level2 = 2;
    const std::ptrdiff_t side = level0 + level1 + level2;
    const osg::UInt8* const start = image->getData();
    QCOMPARE(image->getData(1) - start, level0);
    QCOMPARE(image->getData(2) - start, level0 + level1);
    QCOMPARE(image->getData(0, 0, 2) - start, 2 * side);
    QCOMPARE(image->getData(0, 1) - start, 3 * side);
    QCOMPARE(image->getData(2, 1, 2) - start, 5 * side + level0 + level1);
    const Image& readable = *image;
    QCOMPARE(readable.getData(1, 1, 1), static_cast<const osg::UInt8*>(image->getData(1, 1, 1)));
}

void tst_Image::getDataIsNullWithoutPixels()
{
    const ImageRefPtr image = Image::create();
    QVERIFY(!image->getData());
    QVERIFY(!image->getData(3, 2, 1));
    QVERIFY(!image->getDataByTime(1.0));
}

void tst_Image::framesFollowTheTime()
{
    const ImageRefPtr image = Image::create();
    image->set(Image::OSG_L_PF, 2, 1, 1, 1, 4, 0.5);
    QCOMPARE(image->calcFrameNum(0.0), 0u);
    QCOMPARE(image->calcFrameNum(0.49), 0u);
    QCOMPARE(image->calcFrameNum(0.5), 1u);
    QCOMPARE(image->calcFrameNum(1.9), 3u);
    QCOMPARE(image->calcFrameNum(2.1), 0u);
    QCOMPARE(image->calcFrameNum(2.6, false), 1u);
    QVERIFY(image->calcFrameNum(1e300) < 4);
    QCOMPARE(image->calcFrameNum(-0.1), 3u);
    QCOMPARE(image->calcFrameNum(std::numeric_limits<double>::infinity()), 0u);
    QCOMPARE(image->getDataByTime(1.0, 3), image->getData(0, 2));
    image->set(Image::OSG_L_PF, 2, 1, 1, 1, 4);
    QCOMPARE(image->calcFrameNum(7.0), 0u);
}

void tst_Image::mipmapGeometryHalvesDownToOne()
{
    const ImageRefPtr image = Image::create();
    image->set(Image::OSG_L_PF, 20, 5, 3);
    QCOMPARE(image->calcMipmapLevelCount(), 5u);
    osg::UInt32 w, h, d;
    image->calcMipmapGeometry(0, w, h, d);
    QVERIFY(w == 20 && h == 5 && d == 3);
    image->calcMipmapGeometry(1, w, h, d);
    QVERIFY(w == 10 && h == 2 && d == 1);
    image->calcMipmapGeometry(4, w, h, d);
    QVERIFY(w == 1 && h == 1 && d == 1);
    image->calcMipmapGeometry(99, w, h, d);
    QVERIFY(w == 1 && h == 1 && d == 1);
}

void tst_Image::comparisonAndAssignment()
{
    const ImageRefPtr small = rampImage(Image::OSG_L_PF, 2, 2);
    const ImageRefPtr large = rampImage(Image::OSG_L_PF, 3, 2);
    QVERIFY(*small < *large);
    QVERIFY(!(*large < *small));
    QVERIFY(*small != *large);
    small->setName("small");
    small->setAttachmentField("key", "value");
    *large = *small;
    QVERIFY(*small == *large);
    QCOMPARE(large->getName(), std::string("small"));
    QVERIFY(large->findAttachmentField("key"));
    large->getData()[1] ^= 1;
    QVERIFY(*small != *large);
    // The same bytes in another form.
    const ImageRefPtr row = rampImage(Image::OSG_L_PF, 4, 1);
    QVERIFY(*small != *row);
}

void tst_Image::textAttachments()
{
    const ImageRefPtr image = Image::create();
    QVERIFY(!image->findAttachmentField("key"));
    image->setAttachmentField("key", "value");
    image->setAttachmentField("other", "");
    image->setAttachmentField("key", "new");
    QCOMPARE(image->attachmentCount(), 2u);
    QVERIFY(image->hasAttachment());
    QCOMPARE(*image->findAttachmentField("key"), std::string("new"));
}

namespace {

class Watcher : public osg::FieldContainer
{
public:
    static osg::FieldContainerPtr create()
    {
        return osg::FCPtr<osg::FieldContainerPtr, Watcher>(new Watcher);
    }
    void changed(osg::BitVector whichField, osg::UInt32 origin) override
    {
        ++changes;
        mask = whichField;
        lastOrigin = origin;
    }
    int changes = 0;
    osg::BitVector mask = 1;
    osg::UInt32 lastOrigin = 0;
};

} // namespace

void tst_Image::changeIsToldToParents()
{
    const ImageRefPtr image = Image::create();
    const osg::RefPtr<osg::FieldContainerPtr> parent = Watcher::create();
    auto* watcher = static_cast<Watcher*>(parent.get().getCPtr());
    image->addParent(parent);
    QCOMPARE(image->getParents().size(), std::size_t(1));
    osg::beginEditCP(image.get(), -1, 1);
    osg::endEditCP(image.get(), -1, 1);
    QCOMPARE(watcher->changes, 1);
    QCOMPARE(watcher->mask, osg::FieldBits::NoField);
    QCOMPARE(watcher->lastOrigin, osg::ChangedOrigin::Child);
    image->subParent(parent);
    image->subParent(parent);
    image->changed(0, 0);
    QCOMPARE(watcher->changes, 1);
}

void tst_Image::reformatBetweenFormats_data()
{
    QTest::addColumn<uint>("from");
    QTest::addColumn<QByteArray>("source");
    QTest::addColumn<uint>("to");
    QTest::addColumn<QByteArray>("result");
    const auto row = [](const char* name, uint from, const char* source, uint to, const char* result) {
        QTest::newRow(name) << from << QByteArray::fromHex(source) << to << QByteArray::fromHex(result);
    };
    row("RGB to RGBA", Image::OSG_RGB_PF, "010203", Image::OSG_RGBA_PF, "010203ff");
    row("RGBA to RGB", Image::OSG_RGBA_PF, "01020304", Image::OSG_RGB_PF, "010203");
    row("RGBA to BGRA", Image::OSG_RGBA_PF, "01020304", Image::OSG_BGRA_PF, "03020104");
    row("BGR to RGB", Image::OSG_BGR_PF, "010203", Image::OSG_RGB_PF, "030201");
    row("L to RGB", Image::OSG_L_PF, "07", Image::OSG_RGB_PF, "070707");
    row("LA to RGBA", Image::OSG_LA_PF, "0708", Image::OSG_RGBA_PF, "07070708");
    row("grey RGB to L", Image::OSG_RGB_PF, "c8c8c8", Image::OSG_L_PF, "c8");
    row("red to L", Image::OSG_RGB_PF, "ff0000", Image::OSG_L_PF, "4c");
    row("green to LA", Image::OSG_RGBA_PF, "00ff0040", Image::OSG_LA_PF, "9640");
    row("RGBA to A", Image::OSG_RGBA_PF, "01020304", Image::OSG_A_PF, "04");
    row("RGB to A", Image::OSG_RGB_PF, "010203", Image::OSG_A_PF, "ff");
    row("A to RGBA", Image::OSG_A_PF, "05", Image::OSG_RGBA_PF, "05050505");
    row("A to L", Image::OSG_A_PF, "05", Image::OSG_L_PF, "05");
    row("I to LA", Image::OSG_I_PF, "05", Image::OSG_LA_PF, "0505");
    row("same", Image::OSG_LA_PF, "0708090a", Image::OSG_LA_PF, "0708090a");
}

void tst_Image::reformatBetweenFormats()
{
    QFETCH(uint, from);
    QFETCH(QByteArray, source);
    QFETCH(uint, to);
    QFETCH(QByteArray, result);
    const ImageRefPtr image = Image::create();
    image->set(from, 1);
    const int width = source.size() / image->getBpp();
    image->set(from, width, 1, 1, 1, 1, 0.0, reinterpret_cast<const osg::UInt8*>(source.constData()));
    QVERIFY(image->reformat(static_cast<Image::PixelFormat>(to)));
    QCOMPARE(image->getPixelFormat(), to);
    QCOMPARE(image->getWidth(), width);
    QCOMPARE(QByteArray(reinterpret_cast<const char*>(image->getData()), int(image->getSize())), result);
}

void tst_Image::reformatIntoAnotherImageKeepsTheSource()
{
    const ImageRefPtr source = rampImage(Image::OSG_RGB_PF, 2, 2);
    const ImageRefPtr result = Image::create();
    QVERIFY(source->reformat(Image::OSG_BGR_PF, result));
    QCOMPARE(pixels(source), ramp(12));
    QCOMPARE(result->getPixelFormat(), osg::UInt32(Image::OSG_BGR_PF));
    QCOMPARE(result->getData()[0], ramp(12)[2]);
}

void tst_Image::convertDataTypeStretchesTheRange_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<QByteArray>("result");
    const auto raw = [](auto a, auto b, auto c) {
        const decltype(a) values[] = {a, b, c};
        return QByteArray(reinterpret_cast<const char*>(values), sizeof values);
    };
    QTest::newRow("uint16") << int(Image::OSG_UINT16_IMAGEDATA)
                            << raw(osg::UInt16(0), osg::UInt16(0x3333), osg::UInt16(0xffff));
    QTest::newRow("uint32") << int(Image::OSG_UINT32_IMAGEDATA) << raw(0u, 0x33333333u, 0xffffffffu);
    QTest::newRow("int16") << int(Image::OSG_INT16_IMAGEDATA)
                           << raw(osg::Int16(0), osg::Int16(6553), osg::Int16(32767));
    QTest::newRow("float32") << int(Image::OSG_FLOAT32_IMAGEDATA) << raw(0.0f, 0.2f, 1.0f);
    QTest::newRow("float16") << int(Image::OSG_FLOAT16_IMAGEDATA)
                             << raw(osg::UInt16(0), osg::UInt16(0x3266), osg::UInt16(0x3c00));
}

void tst_Image::convertDataTypeStretchesTheRange()
{
    QFETCH(int, type);
    QFETCH(QByteArray, result);
    const ImageRefPtr image = Image::create();
    const Bytes source{0, 51, 255};
    image->set(Image::OSG_RGB_PF, 1, 1, 1, 1, 1, 0.0, source.data());
    QVERIFY(image->convertDataTypeTo(type));
    QCOMPARE(image->getDataType(), type);
    QCOMPARE(QByteArray(reinterpret_cast<const char*>(image->getData()), int(image->getSize())), result);
    QVERIFY(image->convertDataTypeTo(Image::OSG_UINT8_IMAGEDATA));
    QCOMPARE(pixels(image), source);
}

void tst_Image::scaleTakesTheNearestPixel()
{
    const ImageRefPtr image = Image::create();
    image->set(Image::OSG_L_PF, 2, 2, 1, 1, 1, 0.0, Bytes{1, 2, 3, 4}.data());
    const ImageRefPtr large = Image::create();
    QVERIFY(image->scale(4, 2, 1, large));
    QCOMPARE(pixels(large), (Bytes{1, 1, 2, 2, 3, 3, 4, 4}));
    QVERIFY(large->scale(2, 1));
    QCOMPARE(pixels(large), (Bytes{1, 2}));
    QCOMPARE(pixels(image), (Bytes{1, 2, 3, 4}));
    QVERIFY(image->scale(1, 1, 2));
    QCOMPARE(pixels(image), (Bytes{1, 1}));
}

void tst_Image::scaleKeepsSidesFramesAndLevels()
{
    const ImageRefPtr image = Image::create();
    const auto type = Image::OSG_UINT8_IMAGEDATA;
    image->set(Image::OSG_L_PF, 2, 1, 1, 2, 2, 0.25, Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}.data(),
               type, true, 2);
    QVERIFY(image->scale(4));
    QCOMPARE(pixels(image),
             (Bytes{1, 1, 2, 2, 3, 3, 4, 4, 5, 5, 6, 6, 7, 7, 8, 8, 9, 9, 10, 10, 11, 11, 12, 12}));
    QCOMPARE(image->getMipMapCount(), 2);
    QCOMPARE(image->getFrameDelay(), 0.25);
    QVERIFY(image->scale(1));
    QCOMPARE(image->getMipMapCount(), 1);
    QCOMPARE(pixels(image), (Bytes{1, 4, 7, 10}));
}

void tst_Image::scaleNextPower2RoundsUp()
{
    const ImageRefPtr image = rampImage(Image::OSG_L_PF, 5, 4);
    QVERIFY(image->scaleNextPower2());
    QCOMPARE(image->getWidth(), 8);
    QCOMPARE(image->getHeight(), 4);
    QCOMPARE(image->getDepth(), 1);
}

void tst_Image::subImageCutsABox()
{
    const ImageRefPtr image = Image::create();
    image->set(Image::OSG_L_PF, 3, 2, 2, 1, 1, 0.0, Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}.data());
    const ImageRefPtr box = Image::create();
    QVERIFY(image->subImage(1, 0, 1, 2, 2, 1, box));
    QCOMPARE(pixels(box), (Bytes{8, 9, 11, 12}));
    QVERIFY(!image->subImage(2, 0, 0, 2, 1, 1, box));
    QVERIFY(!image->subImage(-1, 0, 0, 2, 1, 1, box));
    QVERIFY(!image->subImage(0, 0, 0, 0, 1, 1, box));
    QVERIFY(!image->subImage(0, 0, 0, std::numeric_limits<int>::max(), 1, 1, box));
    QCOMPARE(pixels(box), (Bytes{8, 9, 11, 12}));
}

void tst_Image::sliceTakesAPlane()
{
    const ImageRefPtr image = Image::create();
    image->set(Image::OSG_L_PF, 3, 2, 2, 1, 1, 0.0, Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}.data());
    const ImageRefPtr plane = Image::create();
    QVERIFY(image->slice(-1, -1, 1, plane));
    QCOMPARE(pixels(plane), (Bytes{7, 8, 9, 10, 11, 12}));
    QVERIFY(image->slice(-1, 1, -1, plane));
    QCOMPARE(pixels(plane), (Bytes{4, 5, 6, 10, 11, 12}));
    QCOMPARE(plane->getWidth(), 3);
    QCOMPARE(plane->getHeight(), 2);
    QVERIFY(image->slice(2, -1, -1, plane));
    QCOMPARE(pixels(plane), (Bytes{3, 9, 6, 12}));
    QCOMPARE(plane->getWidth(), 2);
    QCOMPARE(plane->getHeight(), 2);
    QCOMPARE(plane->getDepth(), 1);
    QVERIFY(!image->slice(-1, -1, -1, plane));
    QVERIFY(!image->slice(1, 1, -1, plane));
    QVERIFY(!image->slice(3, -1, -1, plane));
}

void tst_Image::createMipmapAverages()
{
    const ImageRefPtr image = Image::create();
    image->set(Image::OSG_LA_PF, 4, 2, 1, 1, 1, 0.0,
               Bytes{0, 1, 4, 1, 8, 1, 8, 1, 4, 1, 8, 1, 8, 1, 8, 1}.data());
    QVERIFY(image->createMipmap());
    QCOMPARE(image->getMipMapCount(), 3);
    const Bytes whole = pixels(image);
    QCOMPARE(Bytes(whole.begin() + 16, whole.end()), (Bytes{4, 1, 8, 1, 6, 1}));
    QVERIFY(image->createMipmap(2));
    QCOMPARE(image->getMipMapCount(), 2);
    QCOMPARE(image->getSize(), 20ul);
    QVERIFY(image->createMipmap(99));
    QCOMPARE(image->getMipMapCount(), 3);
    QCOMPARE(pixels(image), whole);
}

void tst_Image::removeMipmapKeepsLevelZero()
{
    const ImageRefPtr image = rampImage(Image::OSG_L_PF, 4, 4);
    QVERIFY(image->createMipmap());
    QVERIFY(image->removeMipmap());
    QCOMPARE(image->getMipMapCount(), 1);
    QCOMPARE(pixels(image), ramp(16));
}

void tst_Image::swapDataEndianTurnsEachComponent()
{
    const ImageRefPtr image = Image::create();
    image->set(Image::OSG_L_PF, 2, 1, 1, 1, 1, 0.0, Bytes{1, 2, 3, 4}.data(), Image::OSG_UINT16_IMAGEDATA);
    QVERIFY(image->swapDataEndian());
    QCOMPARE(pixels(image), (Bytes{2, 1, 4, 3}));
    image->set(Image::OSG_L_PF, 1, 1, 1, 1, 1, 0.0, Bytes{1, 2, 3, 4}.data(), Image::OSG_FLOAT32_IMAGEDATA);
    QVERIFY(image->swapDataEndian());
    QCOMPARE(pixels(image), (Bytes{4, 3, 2, 1}));
}

void tst_Image::flipDepthFrameDataSwapsSlicesAndFrames()
{
    const ImageRefPtr image = Image::create();
    image->set(Image::OSG_L_PF, 2, 1, 3, 1, 2, 0.0, Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}.data());
    QVERIFY(image->flipDepthFrameData());
    QCOMPARE(image->getDepth(), 2);
    QCOMPARE(image->getFrameCount(), 3);
    QCOMPARE(pixels(image), (Bytes{1, 2, 7, 8, 3, 4, 9, 10, 5, 6, 11, 12}));
    QVERIFY(image->flipDepthFrameData());
    QCOMPARE(pixels(image), (Bytes{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}));
}

void tst_Image::conversionsRefuseWhatTheyCannot()
{
    const ImageRefPtr empty = Image::create();
    const ImageRefPtr compressed = Image::create();
    compressed->set(Image::OSG_RGB_DXT1, 8, 8);
    for (const ImageRefPtr& image : {empty, compressed}) {
        QVERIFY(!image->reformat(Image::OSG_RGB_PF));
        QVERIFY(!image->convertDataTypeTo(Image::OSG_UINT16_IMAGEDATA));
        QVERIFY(!image->scale(2, 2));
        QVERIFY(!image->scaleNextPower2());
        QVERIFY(!image->subImage(0, 0, 0, 1, 1, 1));
        QVERIFY(!image->createMipmap());
        QVERIFY(!image->swapDataEndian());
        QVERIFY(!image->flipDepthFrameData());
    }
    const ImageRefPtr image = rampImage(Image::OSG_L_PF, 2, 2);
    QVERIFY(!image->reformat(Image::OSG_RGB_DXT1));
    QVERIFY(!image->reformat(Image::OSG_INVALID_PF));
    QVERIFY(!image->convertDataTypeTo(0));
    QVERIFY(!image->scale(1 << 30, 1 << 30));
    QCOMPARE(pixels(image), ramp(4));
    image->createMipmap();
    QVERIFY(!image->flipDepthFrameData());
}

QTEST_APPLESS_MAIN(tst_Image)
#include "tst_Image.moc"
