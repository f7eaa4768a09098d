#include "ImageTestTools.h"

#include <QtTest>
#include <cstring>

using osg::Image;
using osg::ImageRefPtr;
using namespace ImageTestTools;

namespace {

constexpr char Mime[] = "image/x-nrrd";

Bytes nrrdFile(const std::string& fields, const Bytes& numbers)
{
    const std::string head = "NRRD0004\n# a volume\n" + fields + "\n";
    Bytes file(head.begin(), head.end());
    file.insert(file.end(), numbers.begin(), numbers.end());
    return file;
}

Bytes textBytes(const std::string& text)
{
    return Bytes(text.begin(), text.end());
}

const std::string SmallVolume = "type: uchar\ndimension: 3\nsizes: 1 2 3\nencoding: raw\n";

/// The bytes 1 to 6 as gzip packs them.
const Bytes Packed{0x1f, 0x8b, 0x08, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x03, 0x63, 0x64, 0x62,
                   0x66, 0x61, 0x65, 0x03, 0x00, 0x24, 0x77, 0xf6, 0x81, 0x06, 0x00, 0x00, 0x00};

std::vector<int> shorts(const ImageRefPtr& image)
{
    std::vector<int> result;
    const Bytes bytes = pixels(image);
    for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
        osg::UInt16 value = 0;
        std::memcpy(&value, &bytes[i], 2);
        result.push_back(value);
    }
    return result;
}

} // namespace

class tst_NRRDImageFileType : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { osg::osgLog().setLogType(osg::LOG_NONE, true); }

    void bytesStayAsTheyAre();
    void packedBytesAreUnpacked();
    void textIsRead();
    void otherNumbersAreStretched_data();
    void otherNumbersAreStretched();
    void numbersThatAreNoneAreNull();
    void firstAxisMayBeTheComponents_data();
    void firstAxisMayBeTheComponents();
    void linesAndBytesAreSkipped();
    void theHeaderTellsTheType();
    void brokenFilesAreRefused_data();
    void brokenFilesAreRefused();
    void anIncompleteFileIsRefusedAtEveryLength();
    void damageIsSurvived();
};

void tst_NRRDImageFileType::bytesStayAsTheyAre()
{
    const ImageRefPtr image = decoded(nrrdFile(SmallVolume, {1, 2, 3, 4, 5, 6}), Mime);
    QVERIFY(image);
    QCOMPARE(image->getWidth(), 1);
    QCOMPARE(image->getHeight(), 2);
    QCOMPARE(image->getDepth(), 3);
    QCOMPARE(image->getPixelFormat(), uint(Image::OSG_L_PF));
    QCOMPARE(pixels(image), (Bytes{1, 2, 3, 4, 5, 6}));
}

void tst_NRRDImageFileType::packedBytesAreUnpacked()
{
    const std::string fields = "type: uint8\r\ndimension: 3\r\nsizes: 3 2 1\r\nencoding: gzip\r\n\r";
    QCOMPARE(pixels(decoded(nrrdFile(fields, Packed), Mime)), (Bytes{1, 2, 3, 4, 5, 6}));
}

void tst_NRRDImageFileType::textIsRead()
{
    const std::string fields = "type: uchar\ndimension: 2\nsizes: 3 1\nencoding: ascii\n";
    QCOMPARE(pixels(decoded(nrrdFile(fields, textBytes("0 7,\n 300")), Mime)), (Bytes{0, 7, 255}));
    QVERIFY(!decoded(nrrdFile(fields, textBytes("0 7")), Mime));
    QVERIFY(!decoded(nrrdFile(fields, textBytes("0 7 x")), Mime));
}

void tst_NRRDImageFileType::otherNumbersAreStretched_data()
{
    QTest::addColumn<QByteArray>("type");
    QTest::addColumn<QByteArray>("endian");
    QTest::addColumn<Bytes>("numbers");
    const auto row = [](const char* type, const char* endian, const Bytes& numbers) {
        QTest::addRow("%s %s", type, endian) << QByteArray(type) << QByteArray(endian) << numbers;
    };
    // -100, 0 and 100.
    row("signed char", "little", {0x9c, 0, 100});
    row("short", "little", {0x9c, 0xff, 0, 0, 100, 0});
    row("int16", "big", {0xff, 0x9c, 0, 0, 0, 100});
    row("int", "little", {0x9c, 0xff, 0xff, 0xff, 0, 0, 0, 0, 100, 0, 0, 0});
    row("float", "little", {0, 0, 0xc8, 0xc2, 0, 0, 0, 0, 0, 0, 0xc8, 0x42});
    row("double", "big",
        {0xc0, 0x59, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0x40, 0x59, 0, 0, 0, 0, 0, 0});
    // 0, 100 and 200.
    row("ushort", "big", {0, 0, 0, 100, 0, 200});
    row("unsigned int", "little", {0, 0, 0, 0, 100, 0, 0, 0, 200, 0, 0, 0});
    row("uint64", "little", {0, 0, 0, 0, 0, 0, 0, 0, 100, 0, 0, 0, 0, 0, 0, 0, 200, 0, 0, 0, 0, 0, 0, 0});
}

void tst_NRRDImageFileType::otherNumbersAreStretched()
{
    QFETCH(QByteArray, type);
    QFETCH(QByteArray, endian);
    QFETCH(Bytes, numbers);
    const std::string fields = "type: " + type.toStdString() + "\nendian: " + endian.toStdString() +
                               "\ndimension: 3\nsizes: 1 1 3\nencoding: raw\n";
    const ImageRefPtr image = decoded(nrrdFile(fields, numbers), Mime);
    QVERIFY(image);
    QCOMPARE(image->getDataType(), int(Image::OSG_UINT16_IMAGEDATA));
    QCOMPARE(shorts(image), (std::vector<int>{0, 32768, 65535}));
}

void tst_NRRDImageFileType::numbersThatAreNoneAreNull()
{
    const std::string fields = "type: float\ndimension: 3\nsizes: 4 1 1\nencoding: text\n";
    QCOMPARE(shorts(decoded(nrrdFile(fields, textBytes("nan 1 2 inf")), Mime)),
             (std::vector<int>{0, 0, 65535, 0}));
    QCOMPARE(shorts(decoded(nrrdFile(fields, textBytes("5 5 5 5")), Mime)), (std::vector<int>{0, 0, 0, 0}));
    const std::string doubles = "type: double\ndimension: 3\nsizes: 2 1 1\nencoding: text\n";
    QCOMPARE(shorts(decoded(nrrdFile(doubles, textBytes("-1.7e308 1.7e308")), Mime)),
             (std::vector<int>{0, 65535}));
}

void tst_NRRDImageFileType::firstAxisMayBeTheComponents_data()
{
    QTest::addColumn<QByteArray>("fields");
    QTest::addColumn<uint>("format");
    QTest::addColumn<int>("depth");
    QTest::newRow("four axes") << QByteArray("sizes: 3 1 1 2\n") << uint(Image::OSG_RGB_PF) << 2;
    QTest::newRow("named as colours")
        << QByteArray("sizes: 3 1 2\nkinds: RGB-color space space\n") << uint(Image::OSG_RGB_PF) << 1;
    QTest::newRow("not named") << QByteArray("sizes: 3 1 2\nkinds: domain domain domain\n")
                               << uint(Image::OSG_L_PF) << 2;
}

void tst_NRRDImageFileType::firstAxisMayBeTheComponents()
{
    QFETCH(QByteArray, fields);
    QFETCH(uint, format);
    QFETCH(int, depth);
    const ImageRefPtr image =
        decoded(nrrdFile("type: uchar\nencoding: raw\n" + fields.toStdString(), {1, 2, 3, 4, 5, 6}), Mime);
    QVERIFY(image);
    QCOMPARE(image->getPixelFormat(), format);
    QCOMPARE(image->getDepth(), depth);
}

void tst_NRRDImageFileType::linesAndBytesAreSkipped()
{
    const std::string fields = "type: uchar\ndimension: 2\nsizes: 2 1\nencoding: raw\n";
    QCOMPARE(pixels(decoded(nrrdFile(fields + "line skip: 1\nbyte skip: 2\n", textBytes("x\n..ab")), Mime)),
             (Bytes{'a', 'b'}));
    QCOMPARE(pixels(decoded(nrrdFile(fields + "byte skip: -1\n", textBytes("anything ab")), Mime)),
             (Bytes{'a', 'b'}));
    QVERIFY(!decoded(nrrdFile(fields + "line skip: 5\n", textBytes("x\nab")), Mime));
    QVERIFY(!decoded(nrrdFile(fields + "line skip: -1\n", textBytes("x\nab")), Mime));
    QVERIFY(!decoded(nrrdFile(fields + "byte skip: 9223372036854775807\n", textBytes("ab")), Mime));
}

void tst_NRRDImageFileType::theHeaderTellsTheType()
{
    QVERIFY(decoded(nrrdFile(SmallVolume, {1, 2, 3, 4, 5, 6})));
}

void tst_NRRDImageFileType::brokenFilesAreRefused_data()
{
    QTest::addColumn<QByteArray>("fields");
    const auto row = [](const char* name, const char* fields) { QTest::newRow(name) << QByteArray(fields); };
    row("nothing", "");
    row("no sizes", "type: uchar\nencoding: raw\n");
    row("an edge of 0", "type: uchar\nsizes: 1 0 1\nencoding: raw\n");
    row("an edge below 0", "type: uchar\nsizes: 1 -2 1\nencoding: raw\n");
    row("edges beyond all bounds", "type: uchar\nsizes: 65536 65536 65536\nencoding: raw\n");
    row("packed edges beyond all bounds", "type: double\nsizes: 1024 1024 1024\nencoding: gzip\n");
    row("too many axes", "type: uchar\nsizes: 1 1 1 1 1\nencoding: raw\n");
    row("too many components", "type: uchar\nsizes: 5 1 1 1\nencoding: raw\n");
    row("an unknown type", "type: block\nsizes: 1 1 1\nencoding: raw\n");
    row("an unknown packing", "type: uchar\nsizes: 1 1 1\nencoding: zstd\n");
    row("numbers elsewhere", "type: uchar\nsizes: 1 1 1\nencoding: raw\ndata file: other.raw\n");
    row("no gzip", "type: uchar\nsizes: 1 1 1\nencoding: gzip\n");
}

void tst_NRRDImageFileType::brokenFilesAreRefused()
{
    QFETCH(QByteArray, fields);
    QVERIFY(!decoded(nrrdFile(fields.toStdString(), ramp(64)), Mime));
}

void tst_NRRDImageFileType::anIncompleteFileIsRefusedAtEveryLength()
{
    QCOMPARE(countReadableBeginnings(nrrdFile(SmallVolume, ramp(6)), Mime), 0);
    // The check sum at its end is not needed.
    const Bytes file = nrrdFile("type: uchar\nsizes: 3 2 1\nencoding: gzip\n", Packed);
    QVERIFY(countReadableBeginnings(file, Mime) >= 0);
    QVERIFY(countReadableBeginnings(file, Mime) < 12);
}

void tst_NRRDImageFileType::damageIsSurvived()
{
    QVERIFY(survivesDamage(nrrdFile(SmallVolume, ramp(6)), Mime));
    QVERIFY(survivesDamage(nrrdFile("type: short\nsizes: 3 1 1\nencoding: gzip\n", Packed), Mime));
    QVERIFY(
        survivesDamage(nrrdFile("type: float\nsizes: 3 1\nencoding: text\n", textBytes("1 2e5 -3")), Mime));
}

QTEST_APPLESS_MAIN(tst_NRRDImageFileType)
#include "tst_NRRDImageFileType.moc"
