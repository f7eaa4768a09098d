#include "ImageTestTools.h"

#include <QtTest>

#include <map>

using osg::Image;
using osg::ImageRefPtr;
using namespace ImageTestTools;

namespace {

constexpr char Mime[] = "image/gif";

void put16(Bytes& bytes, int number)
{
    bytes.push_back(static_cast<osg::UInt8>(number));
    bytes.push_back(static_cast<osg::UInt8>(number >> 8));
}

// Packs numbers of `rootBits` bits as the format wants it, into blocks.
Bytes packed(const Bytes& indices, int rootBits)
{
    Bytes codes;
    osg::UInt32 buffer = 0;
    int bitCount = 0, codeBits = rootBits + 1, next = (1 << rootBits) + 2;
    const auto put = [&](int code) {
        buffer |= static_cast<osg::UInt32>(code) << bitCount;
        for (bitCount += codeBits; bitCount >= 8; bitCount -= 8, buffer >>= 8)
            codes.push_back(static_cast<osg::UInt8>(buffer));
    };
    std::map<Bytes, int> table;
    const auto codeOf = [&](const Bytes& string) {
        return string.size() == 1 ? string[0] : table.at(string);
    };
    put(1 << rootBits);
    Bytes string;
    for (const osg::UInt8 index : indices) {
        Bytes longer = string;
        longer.push_back(index);
        if (string.empty() || table.count(longer)) {
            string = longer;
            continue;
        }
        put(codeOf(string));
        if (next == 4096) {
            put(1 << rootBits);
            table.clear();
            next = (1 << rootBits) + 2;
            codeBits = rootBits + 1;
        } else {
            table[longer] = next;
            if (next++ == 1 << codeBits)
                ++codeBits;
        }
        string = {index};
    }
    if (!string.empty())
        put(codeOf(string));
    put((1 << rootBits) + 1);
    codeBits = 7;
    put(0);
    Bytes blocks{static_cast<osg::UInt8>(rootBits)};
    for (std::size_t i = 0; i < codes.size(); i += 255) {
        const std::size_t length = std::min<std::size_t>(255, codes.size() - i);
        blocks.push_back(static_cast<osg::UInt8>(length));
        blocks.insert(blocks.end(), &codes[i], &codes[i] + length);
    }
    blocks.push_back(0);
    return blocks;
}

// A file that is put together block by block; colour i of the palette is (i, 2 i, 255 - i).
class GifFile
{
public:
    GifFile(int width, int height, int paletteBits = 2)
        : _bytes{'G', 'I', 'F', '8', '9', 'a'}
        , _rootBits(std::max(2, paletteBits))
    {
        put16(_bytes, width);
        put16(_bytes, height);
        _bytes.push_back(static_cast<osg::UInt8>(0x80 | (paletteBits - 1)));
        _bytes.insert(_bytes.end(), {0, 0});
        putPalette(paletteBits, 0);
    }

    GifFile& control(int disposal, int transparent, int delay = 0)
    {
        _bytes.insert(_bytes.end(),
                      {0x21, 0xf9, 4, static_cast<osg::UInt8>(disposal << 2 | (transparent >= 0))});
        put16(_bytes, delay);
        _bytes.insert(_bytes.end(), {static_cast<osg::UInt8>(std::max(transparent, 0)), 0});
        return *this;
    }
    GifFile& comment()
    {
        _bytes.insert(_bytes.end(), {0x21, 0xfe, 2, 'h', 'i', 0});
        return *this;
    }
    GifFile& picture(int left, int top, int width, int height, const Bytes& indices, int flags = 0)
    {
        _bytes.push_back(0x2c);
        for (const int number : {left, top, width, height})
            put16(_bytes, number);
        _bytes.push_back(static_cast<osg::UInt8>(flags));
        if (flags & 0x80)
            putPalette((flags & 7) + 1, 100);
        const Bytes blocks = packed(indices, _rootBits);
        _bytes.insert(_bytes.end(), blocks.begin(), blocks.end());
        return *this;
    }
    Bytes end()
    {
        _bytes.push_back(0x3b);
        return _bytes;
    }

private:
    void putPalette(int bits, int first)
    {
        for (int i = first; i < first + (1 << bits); ++i) {
            for (const int part : {i, 2 * i, 255 - i})
                _bytes.push_back(static_cast<osg::UInt8>(part));
        }
    }

    Bytes _bytes;
    int _rootBits;
};

// Pixels of the palette's colours, with alpha where a number may be missing (-1).
Bytes colors(const std::vector<int>& indices, bool alpha)
{
    Bytes bytes;
    for (const int i : indices) {
        for (const int part : {i, 2 * i, 255 - i})
            bytes.push_back(i < 0 ? osg::UInt8(0) : static_cast<osg::UInt8>(part));
        if (alpha)
            bytes.push_back(i < 0 ? 0 : 255);
    }
    return bytes;
}

} // namespace

class tst_GIFImageFileType : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { osg::osgLog().setLogType(osg::LOG_NONE, true); }

    void aPictureComesFromTheBottomUp();
    void leftOutPixelsAreTransparent();
    void largePicturesUseLongCodes_data();
    void largePicturesUseLongCodes();
    void interlacedRowsAreSorted();
    void aPictureMayHaveItsOwnPalette();
    void picturesBecomeFrames();
    void disposalClearsOrBringsBack();
    void picturesAreClippedAtTheCanvas();
    void brokenFilesAreRefused();
    void hugePicturesInSmallFilesAreRefused();
    void anIncompleteFileIsRefusedAtEveryLength();
    void damageIsSurvived();
    void nothingIsWritten();
};

void tst_GIFImageFileType::aPictureComesFromTheBottomUp()
{
    const ImageRefPtr image = decoded(GifFile(2, 2).comment().picture(0, 0, 2, 2, {0, 1, 2, 3}).end(), Mime);
    QVERIFY(image);
    QCOMPARE(image->getPixelFormat(), osg::UInt32(Image::OSG_RGB_PF));
    QCOMPARE(image->getFrameCount(), 1);
    QCOMPARE(pixels(image), colors({2, 3, 0, 1}, false));
}

void tst_GIFImageFileType::leftOutPixelsAreTransparent()
{
    const ImageRefPtr image = decoded(GifFile(2, 1).control(0, 1).picture(0, 0, 2, 1, {0, 1}).end(), Mime);
    QVERIFY(image);
    QCOMPARE(image->getPixelFormat(), osg::UInt32(Image::OSG_RGBA_PF));
    QCOMPARE(pixels(image), colors({0, -1}, true));
}

void tst_GIFImageFileType::largePicturesUseLongCodes_data()
{
    QTest::addColumn<int>("paletteBits");
    QTest::addColumn<int>("period");
    // One number over and over asks for codes that are made as they are used; many fill the table.
    QTest::newRow("one color") << 2 << 1;
    QTest::newRow("two colors") << 1 << 2;
    QTest::newRow("pattern") << 4 << 16;
    QTest::newRow("noise") << 8 << 0;
}

void tst_GIFImageFileType::largePicturesUseLongCodes()
{
    QFETCH(int, paletteBits);
    QFETCH(int, period);
    Bytes indices(150 * 150);
    osg::UInt32 noise = 1;
    for (std::size_t i = 0; i < indices.size(); ++i) {
        noise = noise * 1664525u + 1013904223u;
        indices[i] = static_cast<osg::UInt8>(period ? i % static_cast<std::size_t>(period) : noise >> 24);
    }
    const Bytes file = GifFile(150, 150, paletteBits).picture(0, 0, 150, 150, indices).end();
    const ImageRefPtr image = decoded(file, Mime);
    QVERIFY(image);
    const Bytes result = pixels(image);
    for (std::size_t i = 0; i < indices.size(); ++i) {
        const std::size_t place = ((149 - i / 150) * 150 + i % 150) * 3;
        QCOMPARE(int(result[place]), int(indices[i]));
    }
    QCOMPARE(toQt(image), qtDecoded(file, "GIF"));
}

void tst_GIFImageFileType::interlacedRowsAreSorted()
{
    // Rows 0 and 8, then 4, then 2 and 6, then the odd ones.
    const Bytes file = GifFile(1, 10, 4).picture(0, 0, 1, 10, {0, 8, 4, 2, 6, 1, 3, 5, 7, 9}, 0x40).end();
    QCOMPARE(pixels(decoded(file, Mime)), colors({9, 8, 7, 6, 5, 4, 3, 2, 1, 0}, false));
}

void tst_GIFImageFileType::aPictureMayHaveItsOwnPalette()
{
    const Bytes file = GifFile(2, 1).picture(0, 0, 2, 1, {0, 1}, 0x81).end();
    QCOMPARE(pixels(decoded(file, Mime)), colors({100, 101}, false));
}

void tst_GIFImageFileType::picturesBecomeFrames()
{
    GifFile file(2, 1);
    file.control(1, -1, 25).picture(0, 0, 2, 1, {0, 1});
    file.control(1, -1, 50).picture(1, 0, 1, 1, {3});
    const ImageRefPtr image = decoded(file.end(), Mime);
    QVERIFY(image);
    QCOMPARE(image->getFrameCount(), 2);
    QCOMPARE(image->getFrameDelay(), 0.25);
    QCOMPARE(pixels(image), colors({0, 1, 0, 3}, false));
    QCOMPARE(image->calcFrameNum(0.3), 1u);
}

void tst_GIFImageFileType::disposalClearsOrBringsBack()
{
    GifFile file(3, 1);
    file.control(2, -1).picture(0, 0, 2, 1, {0, 1});
    file.control(3, -1).picture(2, 0, 1, 1, {2});
    file.picture(1, 0, 1, 1, {3});
    const ImageRefPtr image = decoded(file.end(), Mime);
    QVERIFY(image);
    QCOMPARE(pixels(image), colors({0, 1, -1, -1, -1, 2, -1, 3, -1}, true));
}

void tst_GIFImageFileType::picturesAreClippedAtTheCanvas()
{
    GifFile file(2, 2);
    file.control(2, -1).picture(1, 1, 3, 3, {1, 1, 1, 1, 1, 1, 1, 1, 1});
    file.control(3, -1).picture(60000, 60000, 1, 1, {2});
    const ImageRefPtr image = decoded(file.end(), Mime);
    QVERIFY(image);
    QCOMPARE(pixels(image), colors({-1, 1, -1, -1, -1, -1, -1, -1}, true));
}

void tst_GIFImageFileType::brokenFilesAreRefused()
{
    QVERIFY(!decoded(GifFile(2, 2).end(), Mime));
    QVERIFY(!decoded(GifFile(0, 2).picture(0, 0, 1, 1, {0}).end(), Mime));
    QVERIFY(!decoded(GifFile(2, 2).picture(0, 0, 2, 2, {0, 1, 2}).end(), Mime));
    Bytes file = GifFile(2, 2).picture(0, 0, 2, 2, {0, 1, 2, 3}).end();
    file.back() = 0x55;
    QVERIFY(!decoded(file, Mime));
}

void tst_GIFImageFileType::hugePicturesInSmallFilesAreRefused()
{
    QVERIFY(!decoded(GifFile(65535, 65535).picture(0, 0, 1, 1, {0}).end(), Mime));
    QVERIFY(!decoded(GifFile(2, 2).picture(0, 0, 65535, 65535, {0}).end(), Mime));
    // Each picture asks for a whole canvas more.
    GifFile file(2000, 2000);
    for (int i = 0; i < 50; ++i)
        file.picture(0, 0, 1, 1, {1});
    const LogCapture log;
    QVERIFY(!decoded(file.end(), Mime));
    QVERIFY(log.text().find("plausible") != std::string::npos);
}

void tst_GIFImageFileType::anIncompleteFileIsRefusedAtEveryLength()
{
    GifFile file(3, 2);
    file.control(2, 1).picture(0, 0, 3, 2, {0, 1, 2, 3, 2, 1}).comment();
    QCOMPARE(countReadableBeginnings(file.end(), Mime), 0);
}

void tst_GIFImageFileType::damageIsSurvived()
{
    GifFile file(3, 2);
    file.control(2, 1).picture(0, 0, 3, 2, {0, 1, 2, 3, 2, 1}, 0x40).comment();
    file.control(3, 1).picture(1, 0, 2, 2, {0, 1, 2, 3}, 0x81);
    QVERIFY(survivesDamage(file.picture(0, 1, 1, 1, {2}).end(), Mime));
}

void tst_GIFImageFileType::nothingIsWritten()
{
    const LogCapture log;
    QVERIFY(encoded(rampImage(Image::OSG_RGB_PF, 2, 2), Mime).empty());
    QVERIFY(log.hasWarning());
}

QTEST_APPLESS_MAIN(tst_GIFImageFileType)
#include "tst_GIFImageFileType.moc"
