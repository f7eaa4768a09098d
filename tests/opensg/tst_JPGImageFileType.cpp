#include "ImageTestTools.h"

#include <QtTest>

using osg::Image;
using osg::ImageRefPtr;
using namespace ImageTestTools;

namespace {

constexpr char Mime[] = "image/jpeg";

// A lossy file gives smooth pictures back, roughly.
ImageRefPtr smoothImage(osg::UInt32 format, int width, int height)
{
    const ImageRefPtr image = Image::create();
    image->set(format, width, height);
    const int components = image->getComponents();
    for (int i = 0; i < width * height * components; ++i) {
        const int y = i / components / width;
        image->getData()[i] = static_cast<osg::UInt8>(40 + 20 * (i % components) + 100 * y / height);
    }
    return image;
}

int largestDifference(const Bytes& a, const Bytes& b)
{
    if (a.size() != b.size())
        return 256;
    int largest = 0;
    for (std::size_t i = 0; i < a.size(); ++i)
        largest = std::max(largest, std::abs(a[i] - b[i]));
    return largest;
}

} // namespace

class tst_JPGImageFileType : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { osg::osgLog().setLogType(osg::LOG_NONE, true); }

    void everyFormatComesBackNearly_data();
    void everyFormatComesBackNearly();
    void qtReadsWhatIsWritten();
    void qtsFilesAreRead();
    void resolutionComesBack();
    void otherTypesAreNotWritten();
    void tooWidePicturesAreNotWritten();
    void anIncompleteFileIsRefusedAtEveryLength();
    void damageIsSurvived();
    void hugePicturesInSmallFilesAreRefused();
    void endlessPassesAreRefused();
};

void tst_JPGImageFileType::everyFormatComesBackNearly_data()
{
    QTest::addColumn<uint>("format");
    QTest::addColumn<uint>("result");
    QTest::newRow("L") << uint(Image::OSG_L_PF) << uint(Image::OSG_L_PF);
    QTest::newRow("A") << uint(Image::OSG_A_PF) << uint(Image::OSG_L_PF);
    QTest::newRow("LA") << uint(Image::OSG_LA_PF) << uint(Image::OSG_L_PF);
    QTest::newRow("RGB") << uint(Image::OSG_RGB_PF) << uint(Image::OSG_RGB_PF);
    QTest::newRow("RGBA") << uint(Image::OSG_RGBA_PF) << uint(Image::OSG_RGB_PF);
    QTest::newRow("BGR") << uint(Image::OSG_BGR_PF) << uint(Image::OSG_RGB_PF);
    QTest::newRow("BGRA") << uint(Image::OSG_BGRA_PF) << uint(Image::OSG_RGB_PF);
}

void tst_JPGImageFileType::everyFormatComesBackNearly()
{
    QFETCH(uint, format);
    QFETCH(uint, result);
    const ImageRefPtr image = smoothImage(format, 20, 12);
    const ImageRefPtr back = decoded(encoded(image, Mime), Mime);
    QVERIFY(back);
    QCOMPARE(back->getPixelFormat(), result);
    QCOMPARE(back->getWidth(), 20);
    QCOMPARE(back->getHeight(), 12);
    if (format == Image::OSG_A_PF)
        image->set(Image::OSG_L_PF, 20, 12);
    QVERIFY(image->reformat(static_cast<Image::PixelFormat>(result)));
    QVERIFY(largestDifference(pixels(back), pixels(image)) < 8);
}

void tst_JPGImageFileType::qtReadsWhatIsWritten()
{
    const ImageRefPtr image = smoothImage(Image::OSG_RGB_PF, 16, 16);
    const QImage expected = toQt(image), result = qtDecoded(encoded(image, Mime), "JPG");
    QCOMPARE(result.size(), expected.size());
    for (int y = 0; y < 16; ++y)
        QVERIFY(std::abs(qRed(result.pixel(3, y)) - qRed(expected.pixel(3, y))) < 8);
}

void tst_JPGImageFileType::qtsFilesAreRead()
{
    const ImageRefPtr original = smoothImage(Image::OSG_RGB_PF, 16, 16);
    const ImageRefPtr image = decoded(qtEncoded(toQt(original), "JPG", 95), Mime);
    QVERIFY(image);
    QVERIFY(largestDifference(pixels(image), pixels(original)) < 8);
}

void tst_JPGImageFileType::resolutionComesBack()
{
    const ImageRefPtr image = smoothImage(Image::OSG_L_PF, 8, 8);
    image->setResX(300);
    image->setResY(150);
    ImageRefPtr back = decoded(encoded(image, Mime), Mime);
    QCOMPARE(back->getResX(), 300.0f);
    QCOMPARE(back->getResY(), 150.0f);
    image->setResUnit(Image::OSG_RESUNIT_NONE);
    back = decoded(encoded(image, Mime), Mime);
    QCOMPARE(back->getResX(), 72.0f);
}

void tst_JPGImageFileType::otherTypesAreNotWritten()
{
    QVERIFY(encoded(rampImage(Image::OSG_L_PF, 2, 2, Image::OSG_UINT16_IMAGEDATA), Mime).empty());
    QVERIFY(encoded(rampImage(Image::OSG_RGB_DXT1, 4, 4), Mime).empty());
    QVERIFY(encoded(ImageRefPtr(Image::create()), Mime).empty());
}

void tst_JPGImageFileType::tooWidePicturesAreNotWritten()
{
    const ImageRefPtr image = Image::create();
    image->set(Image::OSG_L_PF, 70000);
    const LogCapture log;
    QVERIFY(encoded(image, Mime).empty());
    QVERIFY(log.hasWarning());
}

void tst_JPGImageFileType::anIncompleteFileIsRefusedAtEveryLength()
{
    const Bytes file = encoded(smoothImage(Image::OSG_RGB_PF, 17, 9), Mime);
    QVERIFY(decoded(file, Mime));
    QCOMPARE(countReadableBeginnings(file, Mime), 0);
}

void tst_JPGImageFileType::damageIsSurvived()
{
    QVERIFY(survivesDamage(encoded(smoothImage(Image::OSG_RGB_PF, 17, 9), Mime), Mime));
}

void tst_JPGImageFileType::hugePicturesInSmallFilesAreRefused()
{
    Bytes file = encoded(smoothImage(Image::OSG_RGB_PF, 8, 8), Mime);
    const Bytes frameMarker{0xff, 0xc0, 0x00, 0x11, 0x08};
    const auto frame = std::search(file.begin(), file.end(), frameMarker.begin(), frameMarker.end());
    QVERIFY(frame != file.end());
    std::fill(frame + 5, frame + 9, osg::UInt8(0xf0));
    const LogCapture log;
    QVERIFY(!decoded(file, Mime));
    QVERIFY(log.text().find("plausible") != std::string::npos);
}

void tst_JPGImageFileType::endlessPassesAreRefused()
{
    // A progressive file of one grey block whose first pass is repeated over and over.
    Bytes file{0xff, 0xd8};
    const auto segment = [&file](osg::UInt8 marker, const Bytes& content) {
        const auto length = content.size() + 2;
        file.insert(file.end(),
                    {0xff, marker, static_cast<osg::UInt8>(length >> 8), static_cast<osg::UInt8>(length)});
        file.insert(file.end(), content.begin(), content.end());
    };
    Bytes quantization(65, 1);
    quantization[0] = 0;
    segment(0xdb, quantization);
    segment(0xc2, {8, 0, 8, 0, 8, 1, 1, 0x11, 0});
    // One code of one bit: a difference of no bits.
    segment(0xc4, {0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    const auto pass = [&](int high, int low) {
        segment(0xda, {1, 1, 0, 0, 0, static_cast<osg::UInt8>(high << 4 | low)});
        file.push_back(0x7f);
    };
    pass(0, 1);
    const Bytes one = file;
    for (int i = 0; i < 150; ++i)
        pass(1, 0);
    Bytes bearable = file;
    for (int i = 0; i < 150; ++i)
        pass(1, 0);
    for (Bytes* bytes : {&file, &bearable})
        bytes->insert(bytes->end(), {0xff, 0xd9});
    QVERIFY(decoded(bearable, Mime));
    QVERIFY(!decoded(file, Mime));
}

QTEST_APPLESS_MAIN(tst_JPGImageFileType)
#include "tst_JPGImageFileType.moc"
