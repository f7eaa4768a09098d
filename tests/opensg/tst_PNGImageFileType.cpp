#include "ImageFormats.h"
#include "ImageTestTools.h"

#include <QtTest>

using osg::Image;
using osg::ImageRefPtr;
using namespace ImageTestTools;

namespace {

constexpr char Mime[] = "image/png";

osg::UInt32 crc(const Bytes& bytes)
{
    osg::UInt32 rest = 0xffffffffu;
    for (const osg::UInt8 byte : bytes) {
        rest ^= byte;
        for (int bit = 0; bit < 8; ++bit)
            rest = rest & 1 ? 0xedb88320u ^ (rest >> 1) : rest >> 1;
    }
    return ~rest;
}

void put32(Bytes& bytes, osg::UInt32 number)
{
    for (int shift = 24; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<osg::UInt8>(number >> shift));
}

void putChunk(Bytes& file, const char* name, const Bytes& content)
{
    put32(file, static_cast<osg::UInt32>(content.size()));
    Bytes covered(name, name + 4);
    covered.insert(covered.end(), content.begin(), content.end());
    file.insert(file.end(), covered.begin(), covered.end());
    put32(file, crc(covered));
}

// A file of the given header numbers, chunks before the pixels, and unpacked rows with their filter bytes.
Bytes pngFile(osg::UInt32 width, osg::UInt32 height, int depth, int colorType, const Bytes& rows,
              const std::vector<std::pair<const char*, Bytes>>& chunks = {})
{
    Bytes file{0x89, 'P', 'N', 'G', 13, 10, 26, 10};
    Bytes header;
    put32(header, width);
    put32(header, height);
    for (const int number : {depth, colorType, 0, 0, 0})
        header.push_back(static_cast<osg::UInt8>(number));
    putChunk(file, "IHDR", header);
    for (const auto& [name, content] : chunks)
        putChunk(file, name, content);
    const QByteArray packed = qCompress(rows.data(), static_cast<int>(rows.size())).mid(4);
    putChunk(file, "IDAT", Bytes(packed.begin(), packed.end()));
    putChunk(file, "IEND", {});
    return file;
}

} // namespace

class tst_PNGImageFileType : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { osg::osgLog().setLogType(osg::LOG_NONE, true); }

    void everyFormatComesBack_data();
    void everyFormatComesBack();
    void blueFirstIsWrittenRedFirst();
    void theFirstRowIsTheLowest();
    void qtReadsWhatIsWritten();
    void interlacedFilesAreRead();
    void palettesAndThinGreysAreWidened_data();
    void palettesAndThinGreysAreWidened();
    void sixteenBitsComeInTheMachinesOrder();
    void resolutionComesBack();
    void onlyTheFirstPictureIsWritten();
    void fractionsAndCompressedPixelsAreNotWritten();
    void anIncompleteFileIsRefusedAtEveryLength();
    void damageIsSurvived();
    void hugePicturesInSmallFilesAreRefused();
    void aFailureLeavesTheImageAsItWas();
};

void tst_PNGImageFileType::everyFormatComesBack_data()
{
    imageFormats::addColumns();
    imageFormats::addRow("L", Image::OSG_L_PF, Image::OSG_UINT8_IMAGEDATA, Image::OSG_L_PF);
    imageFormats::addRow("A", Image::OSG_A_PF, Image::OSG_UINT8_IMAGEDATA, Image::OSG_L_PF);
    imageFormats::addRow("I", Image::OSG_I_PF, Image::OSG_UINT16_IMAGEDATA, Image::OSG_L_PF);
    imageFormats::addRow("LA", Image::OSG_LA_PF, Image::OSG_UINT8_IMAGEDATA, Image::OSG_LA_PF);
    imageFormats::addRow("RGB", Image::OSG_RGB_PF, Image::OSG_UINT8_IMAGEDATA, Image::OSG_RGB_PF);
    imageFormats::addRow("RGBA", Image::OSG_RGBA_PF, Image::OSG_UINT8_IMAGEDATA, Image::OSG_RGBA_PF);
    imageFormats::addRow("L 16", Image::OSG_L_PF, Image::OSG_UINT16_IMAGEDATA, Image::OSG_L_PF);
    imageFormats::addRow("LA 16", Image::OSG_LA_PF, Image::OSG_UINT16_IMAGEDATA, Image::OSG_LA_PF);
    imageFormats::addRow("RGB 16", Image::OSG_RGB_PF, Image::OSG_UINT16_IMAGEDATA, Image::OSG_RGB_PF);
    imageFormats::addRow("RGBA 16", Image::OSG_RGBA_PF, Image::OSG_UINT16_IMAGEDATA, Image::OSG_RGBA_PF);
}

void tst_PNGImageFileType::everyFormatComesBack()
{
    imageFormats::comeBack(Mime);
}

void tst_PNGImageFileType::blueFirstIsWrittenRedFirst()
{
    for (const int type : {Image::OSG_UINT8_IMAGEDATA, Image::OSG_UINT16_IMAGEDATA}) {
        const ImageRefPtr image = rampImage(Image::OSG_BGRA_PF, 2, 2, type);
        const ImageRefPtr back = decoded(encoded(image, Mime), Mime);
        QVERIFY(back);
        QVERIFY(back->reformat(Image::OSG_BGRA_PF));
        QCOMPARE(pixels(back), pixels(image));
    }
}

void tst_PNGImageFileType::theFirstRowIsTheLowest()
{
    const ImageRefPtr image = decoded(pngFile(1, 2, 8, 0, {0, 10, 0, 20}), Mime);
    QVERIFY(image);
    QCOMPARE(pixels(image), (Bytes{20, 10}));
}

void tst_PNGImageFileType::qtReadsWhatIsWritten()
{
    for (const uint format : {Image::OSG_L_PF, Image::OSG_LA_PF, Image::OSG_RGB_PF, Image::OSG_RGBA_PF}) {
        const ImageRefPtr image = rampImage(format, 7, 4);
        QCOMPARE(qtDecoded(encoded(image, Mime), "PNG"), toQt(image));
    }
}

void tst_PNGImageFileType::interlacedFilesAreRead()
{
    // One pixel is the whole of the first pass; the other passes have no rows.
    Bytes file = pngFile(1, 1, 8, 2, {0, 1, 2, 3});
    Bytes header(file.begin() + 12, file.begin() + 29);
    header.back() = 1;
    Bytes sum;
    put32(sum, crc(header));
    file[28] = 1;
    std::copy(sum.begin(), sum.end(), file.begin() + 29);
    QCOMPARE(pixels(decoded(file, Mime)), (Bytes{1, 2, 3}));
}

void tst_PNGImageFileType::palettesAndThinGreysAreWidened_data()
{
    using Chunks = std::vector<std::pair<const char*, Bytes>>;
    QTest::addColumn<Bytes>("file");
    QTest::addColumn<uint>("format");
    QTest::addColumn<Bytes>("result");
    const Bytes palette{1, 2, 3, 4, 5, 6};
    const auto row = [](const char* name, const Bytes& file, uint format, const Bytes& result) {
        QTest::newRow(name) << file << format << result;
    };
    row("palette", pngFile(2, 1, 8, 3, {0, 1, 0}, Chunks{{"PLTE", palette}}), Image::OSG_RGB_PF,
        {4, 5, 6, 1, 2, 3});
    row("palette with alpha", pngFile(2, 1, 1, 3, {0, 0x40}, Chunks{{"PLTE", palette}, {"tRNS", {9}}}),
        Image::OSG_RGBA_PF, {1, 2, 3, 9, 4, 5, 6, 255});
    row("one bit", pngFile(3, 1, 1, 0, {0, 0xa0}), Image::OSG_L_PF, {255, 0, 255});
    row("two bits", pngFile(4, 1, 2, 0, {0, 0x1b}), Image::OSG_L_PF, {0, 85, 170, 255});
    row("four bits", pngFile(2, 1, 4, 0, {0, 0x3f}), Image::OSG_L_PF, {0x33, 0xff});
    row("transparent grey", pngFile(2, 1, 8, 0, {0, 5, 6}, Chunks{{"tRNS", {0, 6}}}), Image::OSG_LA_PF,
        {5, 255, 6, 0});
    row("transparent color", pngFile(1, 1, 8, 2, {0, 1, 2, 3}, Chunks{{"tRNS", {0, 1, 0, 2, 0, 3}}}),
        Image::OSG_RGBA_PF, {1, 2, 3, 0});
}

void tst_PNGImageFileType::palettesAndThinGreysAreWidened()
{
    QFETCH(Bytes, file);
    QFETCH(uint, format);
    QFETCH(Bytes, result);
    const ImageRefPtr image = decoded(file, Mime);
    QVERIFY(image);
    QCOMPARE(image->getPixelFormat(), format);
    QCOMPARE(image->getDataType(), int(Image::OSG_UINT8_IMAGEDATA));
    QCOMPARE(pixels(image), result);
}

void tst_PNGImageFileType::sixteenBitsComeInTheMachinesOrder()
{
    const ImageRefPtr image = decoded(pngFile(2, 1, 16, 0, {0, 0x12, 0x34, 0xab, 0xcd}), Mime);
    QVERIFY(image);
    QCOMPARE(image->getDataType(), int(Image::OSG_UINT16_IMAGEDATA));
    const auto* values = reinterpret_cast<const osg::UInt16*>(image->getData());
    QCOMPARE(values[0], osg::UInt16(0x1234));
    QCOMPARE(values[1], osg::UInt16(0xabcd));
}

void tst_PNGImageFileType::resolutionComesBack()
{
    const ImageRefPtr image = rampImage(Image::OSG_L_PF, 2, 2);
    image->setResX(300);
    image->setResY(150);
    ImageRefPtr back = decoded(encoded(image, Mime), Mime);
    QVERIFY(std::abs(back->getResX() - 300) < 0.02f);
    QVERIFY(std::abs(back->getResY() - 150) < 0.02f);
    QCOMPARE(back->getResUnit(), osg::UInt16(Image::OSG_RESUNIT_INCH));
    image->setResX(0);
    back = decoded(encoded(image, Mime), Mime);
    QCOMPARE(back->getResX(), 72.0f);
}

void tst_PNGImageFileType::onlyTheFirstPictureIsWritten()
{
    const ImageRefPtr image = Image::create();
    image->set(Image::OSG_L_PF, 2, 1, 2, 2, 2);
    image->setData(ramp(image->getSize(), 1).data());
    const LogCapture log;
    const ImageRefPtr back = decoded(encoded(image, Mime), Mime);
    QVERIFY(log.hasWarning());
    const Bytes all = ramp(2, 1);
    QCOMPARE(pixels(back), all);
}

void tst_PNGImageFileType::fractionsAndCompressedPixelsAreNotWritten()
{
    QVERIFY(encoded(rampImage(Image::OSG_L_PF, 2, 2, Image::OSG_FLOAT32_IMAGEDATA), Mime).empty());
    QVERIFY(encoded(rampImage(Image::OSG_RGB_DXT1, 4, 4), Mime).empty());
    QVERIFY(encoded(ImageRefPtr(Image::create()), Mime).empty());
}

void tst_PNGImageFileType::anIncompleteFileIsRefusedAtEveryLength()
{
    const Bytes file = encoded(rampImage(Image::OSG_RGBA_PF, 5, 3), Mime);
    QVERIFY(decoded(file, Mime));
    QCOMPARE(countReadableBeginnings(file, Mime), 0);
}

void tst_PNGImageFileType::damageIsSurvived()
{
    QVERIFY(survivesDamage(encoded(rampImage(Image::OSG_RGBA_PF, 5, 3), Mime), Mime));
    QVERIFY(
        survivesDamage(pngFile(2, 1, 1, 3, {0, 0x40}, {{"PLTE", {1, 2, 3, 4, 5, 6}}, {"tRNS", {9}}}), Mime));
}

void tst_PNGImageFileType::hugePicturesInSmallFilesAreRefused()
{
    for (const osg::UInt32 edge : {0u, 20000u, 0x7fffffffu, 0x80000000u, 0xffffffffu}) {
        const LogCapture log;
        QVERIFY(!decoded(pngFile(edge, edge, 16, 6, {0, 1, 2, 3}), Mime));
        QVERIFY(log.hasWarning());
    }
}

void tst_PNGImageFileType::aFailureLeavesTheImageAsItWas()
{
    const ImageRefPtr image = rampImage(Image::OSG_RGB_PF, 2, 2);
    Bytes file = encoded(rampImage(Image::OSG_L_PF, 4, 4), Mime);
    file.resize(file.size() - 20);
    osg::ImagePtr target = image;
    QVERIFY(!osg::ImageFileHandler::the().decode(target, file.data(), file.size(), Mime));
    QVERIFY(target == image.get());
    QCOMPARE(image->getWidth(), 2);
    QCOMPARE(pixels(image), ramp(12));
}

QTEST_APPLESS_MAIN(tst_PNGImageFileType)
#include "tst_PNGImageFileType.moc"
