#include "ImageFormats.h"
#include "ImageTestTools.h"

#include <QtTest>

using osg::Image;
using osg::ImageRefPtr;
using namespace ImageTestTools;

namespace {

constexpr char Mime[] = "image/tiff";

// One entry of a directory: numbers of 16 (type 3) or 32 bits (type 4).
struct Tag
{
    int number;
    int type;
    std::vector<osg::UInt32> values;
};

// A file with one picture: header, pixels, values that do not fit into their entry, directory.
class TiffFile
{
public:
    explicit TiffFile(bool bigEndian = false)
        : _bigEndian(bigEndian)
    {
    }

    Bytes build(const std::vector<Tag>& tags, const Bytes& pixelBytes)
    {
        _bytes = _bigEndian ? Bytes{'M', 'M', 0, 42, 0, 0, 0, 0} : Bytes{'I', 'I', 42, 0, 0, 0, 0, 0};
        _bytes.insert(_bytes.end(), pixelBytes.begin(), pixelBytes.end());
        std::vector<osg::UInt32> places;
        for (const Tag& tag : tags) {
            places.push_back(static_cast<osg::UInt32>(_bytes.size()));
            if (tag.values.size() * (tag.type == 3 ? 2 : 4) > 4)
                putAll(tag);
        }
        const Bytes front = number(static_cast<osg::UInt32>(_bytes.size()), 4);
        std::copy(front.begin(), front.end(), _bytes.begin() + 4);
        put(static_cast<osg::UInt32>(tags.size()), 2);
        for (std::size_t i = 0; i < tags.size(); ++i) {
            const Tag& tag = tags[i];
            put(static_cast<osg::UInt32>(tag.number), 2);
            put(static_cast<osg::UInt32>(tag.type), 2);
            put(static_cast<osg::UInt32>(tag.values.size()), 4);
            const std::size_t entry = _bytes.size();
            if (tag.values.size() * (tag.type == 3 ? 2 : 4) > 4)
                put(places[i], 4);
            else
                putAll(tag);
            _bytes.resize(entry + 4);
        }
        put(0, 4);
        return _bytes;
    }

private:
    Bytes number(osg::UInt32 value, int size) const
    {
        Bytes result;
        for (int i = 0; i < size; ++i)
            result.push_back(static_cast<osg::UInt8>(value >> 8 * (_bigEndian ? size - 1 - i : i)));
        return result;
    }
    void put(osg::UInt32 value, int size)
    {
        const Bytes bytes = number(value, size);
        _bytes.insert(_bytes.end(), bytes.begin(), bytes.end());
    }
    void putAll(const Tag& tag)
    {
        for (const osg::UInt32 value : tag.values)
            put(value, tag.type == 3 ? 2 : 4);
    }

    bool _bigEndian;
    Bytes _bytes;
};

// The tags of an uncompressed picture in one strip.
std::vector<Tag> tags(osg::UInt32 width, osg::UInt32 height, osg::UInt32 bits, osg::UInt32 photometric,
                      osg::UInt32 samples, osg::UInt32 byteCount)
{
    return {{256, 4, {width}},   {257, 4, {height}},      {258, 3, std::vector<osg::UInt32>(samples, bits)},
            {259, 3, {1}},       {262, 3, {photometric}}, {273, 4, {8}},
            {277, 3, {samples}}, {278, 4, {height}},      {279, 4, {byteCount}}};
}

} // namespace

class tst_TIFImageFileType : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { osg::osgLog().setLogType(osg::LOG_NONE, true); }

    void everyFormatComesBack_data();
    void everyFormatComesBack();
    void blueFirstIsWrittenRedFirst();
    void theFirstRowIsTheLowest();
    void bothByteOrdersAreRead();
    void pictureFromTheBottomUpIsNotTurned();
    void palettesBecomeColors();
    void whiteIsZeroIsInverted();
    void alphaDoesNotDarkenColors();
    void resolutionComesBack();
    void anIncompleteFileGivesNothingOrTheWholePicture();
    void damageIsSurvived();
    void hugePicturesInSmallFilesAreRefused_data();
    void hugePicturesInSmallFilesAreRefused();
};

void tst_TIFImageFileType::everyFormatComesBack_data()
{
    imageFormats::addColumns();
    imageFormats::addRow("L", Image::OSG_L_PF, Image::OSG_UINT8_IMAGEDATA, Image::OSG_L_PF);
    imageFormats::addRow("A", Image::OSG_A_PF, Image::OSG_UINT8_IMAGEDATA, Image::OSG_L_PF);
    imageFormats::addRow("LA", Image::OSG_LA_PF, Image::OSG_UINT8_IMAGEDATA, Image::OSG_LA_PF);
    imageFormats::addRow("RGB", Image::OSG_RGB_PF, Image::OSG_UINT8_IMAGEDATA, Image::OSG_RGB_PF);
    imageFormats::addRow("RGBA", Image::OSG_RGBA_PF, Image::OSG_UINT8_IMAGEDATA, Image::OSG_RGBA_PF);
    imageFormats::addRow("RGBA uint16", Image::OSG_RGBA_PF, Image::OSG_UINT16_IMAGEDATA, Image::OSG_RGBA_PF);
    imageFormats::addRow("L int16", Image::OSG_L_PF, Image::OSG_INT16_IMAGEDATA, Image::OSG_L_PF);
    imageFormats::addRow("L uint32", Image::OSG_L_PF, Image::OSG_UINT32_IMAGEDATA, Image::OSG_L_PF);
    imageFormats::addRow("LA int32", Image::OSG_LA_PF, Image::OSG_INT32_IMAGEDATA, Image::OSG_LA_PF);
    imageFormats::addRow("RGB float32", Image::OSG_RGB_PF, Image::OSG_FLOAT32_IMAGEDATA, Image::OSG_RGB_PF);
    imageFormats::addRow("L float16", Image::OSG_L_PF, Image::OSG_FLOAT16_IMAGEDATA, Image::OSG_L_PF);
}

void tst_TIFImageFileType::everyFormatComesBack()
{
    imageFormats::comeBack(Mime);
}

void tst_TIFImageFileType::blueFirstIsWrittenRedFirst()
{
    for (const int type : {Image::OSG_UINT8_IMAGEDATA, Image::OSG_UINT16_IMAGEDATA}) {
        const ImageRefPtr image = rampImage(Image::OSG_BGRA_PF, 2, 2, type);
        const ImageRefPtr back = decoded(encoded(image, Mime), Mime);
        QVERIFY(back);
        QCOMPARE(back->getPixelFormat(), osg::UInt32(Image::OSG_RGBA_PF));
        QVERIFY(back->reformat(Image::OSG_BGRA_PF));
        QCOMPARE(pixels(back), pixels(image));
    }
}

void tst_TIFImageFileType::theFirstRowIsTheLowest()
{
    const ImageRefPtr image = decoded(TiffFile().build(tags(1, 2, 8, 1, 1, 2), {10, 20}), Mime);
    QVERIFY(image);
    QCOMPARE(image->getPixelFormat(), osg::UInt32(Image::OSG_L_PF));
    QCOMPARE(pixels(image), (Bytes{20, 10}));
}

void tst_TIFImageFileType::bothByteOrdersAreRead()
{
    for (const bool bigEndian : {false, true}) {
        const Bytes values = bigEndian ? Bytes{0x12, 0x34, 0xab, 0xcd} : Bytes{0x34, 0x12, 0xcd, 0xab};
        const ImageRefPtr image = decoded(TiffFile(bigEndian).build(tags(2, 1, 16, 1, 1, 4), values), Mime);
        QVERIFY(image);
        const auto* numbers = reinterpret_cast<const osg::UInt16*>(image->getData());
        QCOMPARE(numbers[0], osg::UInt16(0x1234));
        QCOMPARE(numbers[1], osg::UInt16(0xabcd));
    }
}

void tst_TIFImageFileType::pictureFromTheBottomUpIsNotTurned()
{
    std::vector<Tag> list = tags(1, 2, 8, 1, 1, 2);
    list.insert(list.begin() + 6, Tag{274, 3, {4}});
    QCOMPARE(pixels(decoded(TiffFile().build(list, {10, 20}), Mime)), (Bytes{10, 20}));
}

void tst_TIFImageFileType::palettesBecomeColors()
{
    std::vector<Tag> list = tags(2, 2, 8, 3, 1, 4);
    Tag map{320, 3, std::vector<osg::UInt32>(768)};
    for (const std::size_t plane : {0u, 256u, 512u}) {
        map.values[plane] = 0x0a0a;
        map.values[plane + 1] = static_cast<osg::UInt32>(0x2020 + plane / 256 * 0x1010);
    }
    list.push_back(map);
    const ImageRefPtr image = decoded(TiffFile().build(list, {0, 1, 1, 0}), Mime);
    QVERIFY(image);
    QCOMPARE(image->getPixelFormat(), osg::UInt32(Image::OSG_RGB_PF));
    QCOMPARE(pixels(image), (Bytes{0x20, 0x30, 0x40, 10, 10, 10, 10, 10, 10, 0x20, 0x30, 0x40}));
}

void tst_TIFImageFileType::whiteIsZeroIsInverted()
{
    const ImageRefPtr image = decoded(TiffFile().build(tags(2, 1, 8, 0, 1, 2), {0, 250}), Mime);
    QVERIFY(image);
    QCOMPARE(pixels(image), (Bytes{255, 255, 255, 5, 5, 5}));
}

void tst_TIFImageFileType::alphaDoesNotDarkenColors()
{
    // Once as rows that are taken as they stand, once in planes, which are not.
    std::vector<Tag> list = tags(1, 1, 8, 2, 4, 4);
    list.push_back({338, 3, {2}});
    QCOMPARE(pixels(decoded(TiffFile().build(list, {200, 100, 50, 128}), Mime)), (Bytes{200, 100, 50, 128}));
    list = tags(1, 1, 8, 2, 4, 1);
    list[5].values = {8, 9, 10, 11};
    list[8].values = {1, 1, 1, 1};
    list.push_back({284, 3, {2}});
    list.push_back({338, 3, {2}});
    const ImageRefPtr image = decoded(TiffFile().build(list, {200, 100, 50, 128}), Mime);
    QVERIFY(image);
    QCOMPARE(image->getPixelFormat(), osg::UInt32(Image::OSG_RGBA_PF));
    const Bytes result = pixels(image);
    QCOMPARE(result[3], osg::UInt8(128));
    QVERIFY(std::abs(result[0] - 200) <= 2 && std::abs(result[1] - 100) <= 2 &&
            std::abs(result[2] - 50) <= 2);
}

void tst_TIFImageFileType::resolutionComesBack()
{
    const ImageRefPtr image = rampImage(Image::OSG_L_PF, 2, 2);
    image->setResX(300);
    image->setResY(150.5f);
    const ImageRefPtr back = decoded(encoded(image, Mime), Mime);
    QCOMPARE(back->getResX(), 300.0f);
    QCOMPARE(back->getResY(), 150.5f);
    QCOMPARE(back->getResUnit(), osg::UInt16(Image::OSG_RESUNIT_INCH));
}

void tst_TIFImageFileType::anIncompleteFileGivesNothingOrTheWholePicture()
{
    // Whatever lies behind the pixels and their tags, such as the resolution, can be done without.
    const Bytes file = encoded(rampImage(Image::OSG_RGBA_PF, 5, 3), Mime);
    QVERIFY(decoded(file, Mime));
    const int readable = countReadableBeginnings(file, Mime);
    QVERIFY(readable >= 0 && readable < 60);
    const Bytes plain = TiffFile().build(tags(4, 4, 8, 1, 1, 16), ramp(16));
    QVERIFY(decoded(plain, Mime));
    const int readablePlain = countReadableBeginnings(plain, Mime);
    QVERIFY(readablePlain >= 0 && readablePlain <= 4);
}

void tst_TIFImageFileType::damageIsSurvived()
{
    QVERIFY(survivesDamage(encoded(rampImage(Image::OSG_RGBA_PF, 5, 3), Mime), Mime));
    QVERIFY(survivesDamage(TiffFile(true).build(tags(4, 4, 8, 2, 3, 48), ramp(48)), Mime));
    QVERIFY(survivesDamage(TiffFile().build(tags(4, 4, 8, 0, 1, 16), ramp(16)), Mime));
}

void tst_TIFImageFileType::hugePicturesInSmallFilesAreRefused_data()
{
    QTest::addColumn<uint>("width");
    QTest::addColumn<uint>("height");
    QTest::addColumn<uint>("photometric");
    for (const uint photometric : {0u, 1u}) {
        QTest::addRow("plane %u", photometric) << 60000u << 60000u << photometric;
        QTest::addRow("width %u", photometric) << 0xffffffffu << 1u << photometric;
        QTest::addRow("height %u", photometric) << 1u << 0x7fffffffu << photometric;
        QTest::addRow("all %u", photometric) << 0xffffffffu << 0xffffffffu << photometric;
        QTest::addRow("nothing %u", photometric) << 0u << 0u << photometric;
    }
}

void tst_TIFImageFileType::hugePicturesInSmallFilesAreRefused()
{
    QFETCH(uint, width);
    QFETCH(uint, height);
    QFETCH(uint, photometric);
    const LogCapture log;
    QVERIFY(!decoded(TiffFile().build(tags(width, height, 8, photometric, 1, 16), ramp(16)), Mime));
    QVERIFY(log.hasWarning());
}

QTEST_APPLESS_MAIN(tst_TIFImageFileType)
#include "tst_TIFImageFileType.moc"
