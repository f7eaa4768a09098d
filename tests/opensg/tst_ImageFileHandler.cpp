#include "ImageTestTools.h"

#include <QTemporaryDir>
#include <QtTest>

#include <fstream>
#include <list>
#include <set>

using osg::Image;
using osg::ImageFileHandler;
using osg::ImageRefPtr;
using namespace ImageTestTools;

class tst_ImageFileHandler : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();

    void typesAreFoundBySuffixAndMimeType_data();
    void typesAreFoundBySuffixAndMimeType();
    void suffixesAreListedByWhatTheTypesCan();
    void filesAreWrittenAndRead_data();
    void filesAreWrittenAndRead();
    void aReadImageKnowsItsFile();
    void imageReadsAndWritesByItself();
    void aWrongSuffixIsSeenThrough();
    void anUnknownSuffixIsNotGuessed();
    void aNativeFileIsNotFoundByItsContent();
    void missingAndOddFilesFail();
    void unwritablePlacesFail();
    void streamsNeedTheMimeType();
    void memoryIsReadWithAndWithoutMimeType();
    void storeWritesHeaderAndPixels();
    void storeAndRestoreAgree_data();
    void storeAndRestoreAgree();
    void restoreRefusesWhatIsIncomplete();

private:
    std::string path(const char* name) const
    {
        return _folder.filePath(QString::fromLatin1(name)).toStdString();
    }

    QTemporaryDir _folder;
};

void tst_ImageFileHandler::initTestCase()
{
    osg::osgLog().setLogType(osg::LOG_NONE, true);
    QVERIFY(_folder.isValid());
}

void tst_ImageFileHandler::typesAreFoundBySuffixAndMimeType_data()
{
    QTest::addColumn<QByteArray>("mime");
    QTest::addColumn<QByteArray>("name");
    QTest::addColumn<QByteArray>("type");
    const auto row = [](const char* mime, const char* name, const char* type) {
        QTest::addRow("%s %s", mime, name) << QByteArray(mime) << QByteArray(name) << QByteArray(type);
    };
    row("", "a.mtd", "image/x-mtd");
    row("", "a.opensg", "image/x-mtd");
    row("", "a.OpenSGImage", "image/x-mtd");
    row("", "/x.jpg/b.PNG", "image/png");
    row("", "a.b.jpg", "image/jpeg");
    row("", "a.JPEG", "image/jpeg");
    row("", "a.jpe", "image/jpeg");
    row("", "a.jfif", "image/jpeg");
    row("", "a.tif", "image/tiff");
    row("", "a.Tiff", "image/tiff");
    row("", "a.txt", "");
    row("", "png", "");
    row("", "folder.png/file", "");
    row("", "", "");
    row("image/tiff", "a.png", "image/tiff");
    row("IMAGE/JPEG", "", "image/jpeg");
    row("text/plain", "a.png", "image/png");
    row("text/plain", "", "");
}

void tst_ImageFileHandler::typesAreFoundBySuffixAndMimeType()
{
    QFETCH(QByteArray, mime);
    QFETCH(QByteArray, name);
    QFETCH(QByteArray, type);
    const osg::ImageFileType* found = ImageFileHandler::the().getFileType(mime.constData(), name.constData());
    QCOMPARE(QByteArray(found ? found->getMimeType() : ""), type);
}

void tst_ImageFileHandler::suffixesAreListedByWhatTheTypesCan()
{
    std::list<const osg::Char8*> suffixes;
    const int count = ImageFileHandler::the().getSuffixList(suffixes);
    QCOMPARE(std::size_t(count), suffixes.size());
    std::set<std::string> all(suffixes.begin(), suffixes.end());
    for (const char* suffix :
         {"mtd", "opensg", "opensgImage", "png", "jpg", "jpeg", "jpe", "jfif", "tif", "tiff"})
        QVERIFY2(all.count(suffix), suffix);
    std::list<const osg::Char8*> writable;
    QVERIFY(ImageFileHandler::the().getSuffixList(writable, osg::ImageFileType::OSG_WRITE_SUPPORTED) <=
            count);
    QCOMPARE(ImageFileHandler::the().getSuffixList(writable, 0), 0);
}

void tst_ImageFileHandler::filesAreWrittenAndRead_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const char* name : {"a.mtd", "a.PNG", "a.tif", "a b.opensg"})
        QTest::newRow(name) << QByteArray(name);
}

void tst_ImageFileHandler::filesAreWrittenAndRead()
{
    QFETCH(QByteArray, name);
    const ImageRefPtr image = rampImage(Image::OSG_RGBA_PF, 256, 1);
    QVERIFY(ImageFileHandler::the().write(image, path(name).c_str()));
    const ImageRefPtr back = ImageFileHandler::the().read(path(name).c_str());
    QVERIFY(back);
    QCOMPARE(back.get().getRefCount(), 1);
    QVERIFY(*back == *image);
}

void tst_ImageFileHandler::aReadImageKnowsItsFile()
{
    QVERIFY(rampImage(Image::OSG_L_PF, 2, 2)->write(path("known.png").c_str()));
    const QString before = QDir::currentPath();
    QVERIFY(QDir::setCurrent(_folder.path()));
    const ImageRefPtr image = Image::create();
    const bool done = image->read("known.png");
    QDir::setCurrent(before);
    QVERIFY(done);
    QCOMPARE(QFileInfo(QString::fromStdString(image->getName())).canonicalFilePath(),
             QFileInfo(QString::fromStdString(path("known.png"))).canonicalFilePath());
    QCOMPARE(*image->findAttachmentField("fileName"), std::string("known.png"));
    QCOMPARE(*image->findAttachmentField("fullFilePath"), image->getName());
}

void tst_ImageFileHandler::imageReadsAndWritesByItself()
{
    const ImageRefPtr image = rampImage(Image::OSG_RGB_PF, 3, 3);
    QVERIFY(image->write(path("self.tif").c_str()));
    const ImageRefPtr back = rampImage(Image::OSG_L_PF, 9, 9);
    QVERIFY(back->read(path("self.tif").c_str()));
    QVERIFY(*back == *image);
}

void tst_ImageFileHandler::aWrongSuffixIsSeenThrough()
{
    const ImageRefPtr image = rampImage(Image::OSG_RGB_PF, 3, 3);
    QVERIFY(ImageFileHandler::the().write(image, path("wrong.jpg").c_str(), "image/png"));
    const ImageRefPtr back = ImageFileHandler::the().read(path("wrong.jpg").c_str());
    QVERIFY(back);
    QVERIFY(*back == *image);
    QVERIFY(*ImageRefPtr(ImageFileHandler::the().read(path("wrong.jpg").c_str(), "image/tiff")) == *image);
}

void tst_ImageFileHandler::anUnknownSuffixIsNotGuessed()
{
    const ImageRefPtr image = rampImage(Image::OSG_RGB_PF, 3, 3);
    QVERIFY(ImageFileHandler::the().write(image, path("picture.data").c_str(), "image/png"));
    const LogCapture log;
    QVERIFY(!ImageFileHandler::the().read(path("picture.data").c_str()));
    QVERIFY(log.hasWarning());
    QVERIFY(!image->write(path("picture.unknown").c_str()));
    QVERIFY(!QFile::exists(QString::fromStdString(path("picture.unknown"))));
}

void tst_ImageFileHandler::aNativeFileIsNotFoundByItsContent()
{
    QVERIFY(ImageFileHandler::the().write(rampImage(Image::OSG_L_PF, 3, 3), path("native.png").c_str(),
                                          "image/x-mtd"));
    const LogCapture log;
    QVERIFY(!ImageFileHandler::the().read(path("native.png").c_str()));
    QVERIFY(log.hasWarning());
}

void tst_ImageFileHandler::missingAndOddFilesFail()
{
    const ImageRefPtr image = rampImage(Image::OSG_L_PF, 2, 2);
    QVERIFY(QDir(_folder.path()).mkdir(QStringLiteral("folder.png")));
    std::ofstream(path("empty.png"));
    for (const char* name : {"missing.png", "folder.png", "empty.png"}) {
        const LogCapture log;
        QVERIFY2(!image->read(path(name).c_str()), name);
        QVERIFY2(log.hasWarning(), name);
    }
    QVERIFY(!image->read(nullptr));
    QVERIFY(!image->read(""));
    QCOMPARE(pixels(image), ramp(4));
    QCOMPARE(image->getName(), std::string());
}

void tst_ImageFileHandler::unwritablePlacesFail()
{
    const LogCapture log;
    QVERIFY(!rampImage(Image::OSG_L_PF, 2, 2)->write(path("no/such/folder.png").c_str()));
    QVERIFY(log.hasWarning());
    QVERIFY(!rampImage(Image::OSG_L_PF, 2, 2)->write(nullptr));
    QVERIFY(!ImageFileHandler::the().write(osg::NullFC, path("null.png").c_str()));
    QVERIFY(!ImageFileHandler::the().write(osg::NullFC, path("null.mtd").c_str()));
}

void tst_ImageFileHandler::streamsNeedTheMimeType()
{
    const ImageRefPtr image = rampImage(Image::OSG_RGB_PF, 3, 3);
    std::stringstream stream;
    QVERIFY(ImageFileHandler::the().write(image, stream, "image/png"));
    const ImageRefPtr back = ImageFileHandler::the().read(stream, "image/png");
    QVERIFY(back);
    QVERIFY(*back == *image);
    std::stringstream other;
    QVERIFY(!ImageFileHandler::the().write(image, other, "image/unknown"));
    QVERIFY(other.str().empty());
    QVERIFY(!ImageFileHandler::the().read(other, "image/png"));
}

void tst_ImageFileHandler::memoryIsReadWithAndWithoutMimeType()
{
    const ImageRefPtr image = rampImage(Image::OSG_RGB_PF, 3, 3);
    for (const char* mime : {"image/png", "image/tiff"}) {
        const Bytes file = encoded(image, mime);
        for (const char* told : {static_cast<const char*>(nullptr), "", mime, "image/jpeg", "image/unknown"})
        {
            const ImageRefPtr back = decoded(file, told);
            QVERIFY(back);
            QVERIFY(*back == *image);
        }
    }
    QVERIFY(!ImageFileHandler::the().decode(nullptr, 0, nullptr));
    QVERIFY(!ImageFileHandler::the().decode(nullptr, 100, "image/png"));
    QVERIFY(!decoded(ramp(100)));
}

void tst_ImageFileHandler::storeWritesHeaderAndPixels()
{
    const ImageRefPtr image = rampImage(Image::OSG_L_PF, 3, 2);
    QCOMPARE(image->store("image/x-mtd", nullptr), osg::UInt64(38));
    Bytes memory(40, 0xee);
    QCOMPARE(image->store("image/x-mtd", memory.data(), 38), osg::UInt64(38));
    const Bytes file = encoded(image, "image/x-mtd");
    QVERIFY(std::equal(file.begin(), file.end(), memory.begin()));
    QCOMPARE(memory[38], osg::UInt8(0xee));
    QCOMPARE(image->store("image/x-mtd", memory.data(), 37), osg::UInt64(0));
    QCOMPARE(image->store("image/unknown", memory.data()), osg::UInt64(0));
    QCOMPARE(image->store(nullptr, memory.data()), osg::UInt64(0));
}

void tst_ImageFileHandler::storeAndRestoreAgree_data()
{
    QTest::addColumn<QByteArray>("mime");
    QTest::addColumn<QByteArray>("suffix");
    QTest::newRow("mtd") << QByteArray("image/x-mtd") << QByteArray("mtd");
    QTest::newRow("png") << QByteArray("image/png") << QByteArray("png");
    QTest::newRow("tif") << QByteArray("image/tiff") << QByteArray("tif");
}

void tst_ImageFileHandler::storeAndRestoreAgree()
{
    QFETCH(QByteArray, mime);
    QFETCH(QByteArray, suffix);
    const ImageRefPtr image = rampImage(Image::OSG_RGBA_PF, 7, 5, Image::OSG_UINT16_IMAGEDATA);
    Bytes memory(image->store(mime.constData(), nullptr));
    QCOMPARE(image->store(mime.constData(), memory.data(), int(memory.size())), osg::UInt64(memory.size()));
    QCOMPARE(QByteArray(reinterpret_cast<const char*>(memory.data())), suffix);
    const ImageRefPtr back = Image::create();
    QCOMPARE(back->restore(memory.data(), int(memory.size())), osg::UInt64(memory.size()));
    QVERIFY(*back == *image);
    const ImageRefPtr unsized = Image::create();
    QCOMPARE(unsized->restore(memory.data()) != 0, suffix == "mtd");
}

void tst_ImageFileHandler::restoreRefusesWhatIsIncomplete()
{
    const ImageRefPtr image = rampImage(Image::OSG_RGBA_PF, 3, 3);
    const ImageRefPtr target = rampImage(Image::OSG_L_PF, 1, 1);
    for (const char* mime : {"image/x-mtd", "image/png"}) {
        Bytes memory(image->store(mime, nullptr));
        image->store(mime, memory.data());
        for (std::size_t length = 0; length < memory.size(); ++length) {
            const Bytes part(memory.begin(), memory.begin() + static_cast<std::ptrdiff_t>(length));
            QCOMPARE(target->restore(part.data(), int(length)), osg::UInt64(0));
        }
        std::fill(memory.begin(), memory.begin() + 8, osg::UInt8('x'));
        QCOMPARE(target->restore(memory.data(), int(memory.size())), osg::UInt64(0));
    }
    QCOMPARE(target->restore(nullptr, 100), osg::UInt64(0));
    QCOMPARE(pixels(target), ramp(1));
}

QTEST_APPLESS_MAIN(tst_ImageFileHandler)
#include "tst_ImageFileHandler.moc"
