#include "CoreScene.h"
#include "MediaFiles.h"
#include "core/AppearanceProcs.h"
#include <OpenSG/OSGImage.h>
#include <QTemporaryDir>
#include <QtTest>

using namespace Orvane;
using namespace mediafiles;

/// Recordings and films: their time, and the pictures that stand at it.
class tst_Media : public QObject
{
    Q_OBJECT

private slots:
    void clipTellsItsDuration();
    void clipRunsForItsDuration();
    void pitchShortensARun();
    void loopGoesOnUntilTheStop();
    void pauseAndResume();
    void anotherFileEndsTheRun();
    void loadOffHasNoSound();
    void firstWorkingAddressCounts();
    void badSoundsAreTold_data();
    void badSoundsAreTold();
    void clipSleepsBetweenLooks();
    void soundIsSaidToBeUnheard();

    void filmTellsItsDuration();
    void filmShowsItsPicturesInTime();
    void speedCounts();
    void backwards();
    void stillPictureNeverRuns();
    void badFilmsAreTold_data();
    void badFilmsAreTold();

private:
    static std::string clip(const QByteArray& fields, int milliseconds = 2000)
    {
        return ("DEF A AudioClip { url \"" + dataAddress(wav(milliseconds)) + "\" " + fields + " }")
            .toStdString();
    }
    static std::string film(const QByteArray& fields, int frames = 4)
    {
        return ("Shape { appearance Appearance { texture DEF A MovieTexture { url \"" +
                dataAddress(gif(frames, 50)) + "\" " + fields + " } } geometry Box { } }")
            .toStdString();
    }
    /// The colour that the film shows, as hexadecimal digits.
    static QByteArray color(const CoreScene& scene)
    {
        const osg::ImagePtr image = scene.procOf<TextureProc>("A").image();
        return QByteArray(reinterpret_cast<const char*>(image->getData()), 3).toHex();
    }
};

void tst_Media::clipTellsItsDuration()
{
    CoreScene scene(clip("").c_str());
    QCOMPARE(scene.get("A", "duration_changed"), std::string("2"));
    QCOMPARE(scene.get("A", "isActive"), std::string("FALSE"));
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

void tst_Media::clipRunsForItsDuration()
{
    CoreScene scene(clip("startTime 1001").c_str());
    scene.runTo(0.5);
    QCOMPARE(scene.get("A", "isActive"), std::string("FALSE"));
    scene.runTo(1);
    QCOMPARE(scene.get("A", "isActive"), std::string("TRUE"));
    scene.runTo(2.5);
    QCOMPARE(scene.get("A", "elapsedTime"), std::string("1.5"));
    scene.runTo(3);
    QCOMPARE(scene.get("A", "isActive"), std::string("FALSE"));
    QCOMPARE(scene.get("A", "elapsedTime"), std::string("2"));
}

void tst_Media::pitchShortensARun()
{
    CoreScene scene(clip("startTime 1000 pitch 2").c_str());
    scene.set("A", "pitch", "0.5"); // too late for this run
    scene.runTo(0.9);
    QCOMPARE(scene.get("A", "isActive"), std::string("TRUE"));
    scene.runTo(1);
    QCOMPARE(scene.get("A", "isActive"), std::string("FALSE"));
    scene.set("A", "startTime", "1001");
    scene.runTo(4.5);
    QCOMPARE(scene.get("A", "isActive"), std::string("TRUE"));
    scene.runTo(5);
    QCOMPARE(scene.get("A", "isActive"), std::string("FALSE"));
}

void tst_Media::loopGoesOnUntilTheStop()
{
    CoreScene scene(clip("startTime 1000 loop TRUE").c_str());
    scene.runTo(9);
    QCOMPARE(scene.get("A", "isActive"), std::string("TRUE"));
    scene.set("A", "stopTime", "1009.5");
    scene.runTo(10);
    QCOMPARE(scene.get("A", "isActive"), std::string("FALSE"));
    QCOMPARE(scene.get("A", "elapsedTime"), std::string("9.5"));
}

void tst_Media::pauseAndResume()
{
    CoreScene scene(clip("startTime 1000").c_str());
    scene.runTo(1);
    scene.set("A", "pauseTime", "1001");
    QCOMPARE(scene.get("A", "isPaused"), std::string("TRUE"));
    scene.runTo(5);
    QCOMPARE(scene.get("A", "isActive"), std::string("TRUE"));
    scene.set("A", "resumeTime", "1005");
    QCOMPARE(scene.get("A", "isPaused"), std::string("FALSE"));
    scene.runTo(6);
    QCOMPARE(scene.get("A", "isActive"), std::string("FALSE"));
}

void tst_Media::anotherFileEndsTheRun()
{
    CoreScene scene(clip("startTime 1000 stopTime 900").c_str());
    scene.runTo(0.5);
    scene.set("A", "url", ("[\"" + dataAddress(wav(500)) + "\"]").constData());
    QCOMPARE(scene.get("A", "duration_changed"), std::string("0.5"));
    QCOMPARE(scene.get("A", "isActive"), std::string("FALSE"));
    scene.set("A", "url", "[]");
    QCOMPARE(scene.get("A", "duration_changed"), std::string("-1"));
    scene.set("A", "startTime", "1001");
    scene.runTo(1);
    QCOMPARE(scene.get("A", "isActive"), std::string("FALSE"));
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

void tst_Media::loadOffHasNoSound()
{
    CoreScene scene(clip("startTime 1000 load FALSE").c_str());
    QCOMPARE(scene.get("A", "duration_changed"), std::string("-1"));
    QCOMPARE(scene.get("A", "isActive"), std::string("FALSE"));
    scene.set("A", "load", "TRUE");
    QCOMPARE(scene.get("A", "duration_changed"), std::string("2"));
    QCOMPARE(scene.get("A", "isActive"), std::string("TRUE"));
}

void tst_Media::firstWorkingAddressCounts()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("short.wav")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(wav(250));
    file.close();
    const QByteArray text = "DEF A AudioClip { url [ \"nowhere.wav\" \"" + dataAddress("no sound") + "\" \"" +
                            file.fileName().toUtf8() + "\" \"" + dataAddress(wav(100)) + "\" ] }";
    CoreScene scene(text.constData());
    QCOMPARE(scene.get("A", "duration_changed"), std::string("0.25"));
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

void tst_Media::badSoundsAreTold_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("text") << QByteArray("this is no sound");
    QTest::newRow("no samples") << wav(0);
    QByteArray cut = wav(100);
    cut.truncate(20);
    QTest::newRow("cut off") << cut;
    QByteArray slow = wav(100);
    slow.replace(24, 4, QByteArray(4, '\0'));
    QTest::newRow("no rate") << slow;
}

void tst_Media::badSoundsAreTold()
{
    QFETCH(QByteArray, file);
    CoreScene scene(
        ("DEF A AudioClip { startTime 1000 loop TRUE url \"" + dataAddress(file) + "\" }").constData());
    scene.runTo(1);
    QCOMPARE(scene.get("A", "duration_changed"), std::string("-1"));
    QCOMPARE(scene.get("A", "isActive"), std::string("FALSE"));
    QCOMPARE(scene.messageCount(), std::size_t(1));
    QVERIFY(scene.context->loadReport().messages[0].text.find("AudioClip.url of A") != std::string::npos);
}

void tst_Media::clipSleepsBetweenLooks()
{
    CoreScene scene(clip("startTime 1000 loop TRUE").c_str());
    scene.runTo(1);
    QVERIFY(scene.context->runFrame() > 0.05);
    scene.runTo(1.98);
    QVERIFY(scene.context->runFrame() < 0.05); // the cycle ends
}

void tst_Media::soundIsSaidToBeUnheard()
{
    CoreScene scene("Sound { } Sound { }");
    QCOMPARE(scene.messageCount(), std::size_t(1));
    QCOMPARE(scene.context->loadReport().messages[0].text,
             std::string("Sound: nodes of this type are kept and not heard"));
}

void tst_Media::filmTellsItsDuration()
{
    CoreScene scene(film("").c_str());
    QCOMPARE(scene.get("A", "duration_changed"), std::string("2"));
    QCOMPARE(scene.get("A", "isActive"), std::string("FALSE"));
    QCOMPARE(color(scene), QByteArray("ff0000"));
}

void tst_Media::filmShowsItsPicturesInTime()
{
    CoreScene scene(film("startTime 1000").c_str());
    QCOMPARE(color(scene), QByteArray("ff0000"));
    const auto version = scene.proc().pictureVersion();
    scene.runTo(0.25);
    QCOMPARE(scene.proc().pictureVersion(), version); // the same picture
    scene.runTo(0.75);
    QVERIFY(scene.proc().pictureVersion() != version);
    QCOMPARE(color(scene), QByteArray("00ff00"));
    scene.runTo(1.25);
    QCOMPARE(color(scene), QByteArray("0000ff"));
    scene.runTo(2);
    QCOMPARE(scene.get("A", "isActive"), std::string("FALSE"));
    QCOMPARE(color(scene), QByteArray("ffffff")); // the last one stands
}

void tst_Media::speedCounts()
{
    CoreScene scene(film("startTime 1000 speed 2 loop TRUE").c_str());
    scene.runTo(0.375);
    QCOMPARE(color(scene), QByteArray("00ff00"));
    scene.runTo(1.125);
    QCOMPARE(color(scene), QByteArray("ff0000"));
    scene.set("A", "speed", "0.5"); // too late for this run
    scene.runTo(1.375);
    QCOMPARE(color(scene), QByteArray("00ff00"));
    CoreScene still(film("startTime 1000 speed 0").c_str());
    still.runTo(60);
    QCOMPARE(color(still), QByteArray("ff0000"));
}

void tst_Media::backwards()
{
    CoreScene scene(film("startTime 1001 speed -1").c_str());
    QCOMPARE(color(scene), QByteArray("ffffff"));
    scene.runTo(1.75);
    QCOMPARE(color(scene), QByteArray("0000ff"));
    scene.runTo(4);
    QCOMPARE(color(scene), QByteArray("ff0000"));
}

void tst_Media::stillPictureNeverRuns()
{
    CoreScene scene(film("startTime 1000 loop TRUE", 1).c_str());
    scene.runTo(1);
    QCOMPARE(scene.get("A", "duration_changed"), std::string("-1"));
    QCOMPARE(scene.get("A", "isActive"), std::string("FALSE"));
    QCOMPARE(color(scene), QByteArray("ff0000"));
    QCOMPARE(scene.messageCount(), std::size_t(0));
}

void tst_Media::badFilmsAreTold_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("of another kind") << QByteArray("\x00\x00\x01\xBA MPEG", 9);
    QByteArray cut = gif(3, 10);
    cut.chop(12);
    QTest::newRow("cut off") << cut;
}

void tst_Media::badFilmsAreTold()
{
    QFETCH(QByteArray, file);
    const QByteArray text = "Shape { appearance Appearance { texture DEF A MovieTexture { loop TRUE url \"" +
                            dataAddress(file) + "\" } } geometry Box { } }";
    CoreScene scene(text.constData());
    scene.runTo(1);
    QCOMPARE(scene.get("A", "duration_changed"), std::string("-1"));
    QVERIFY(!scene.procOf<TextureProc>("A").image());
    QCOMPARE(scene.messageCount(), std::size_t(1));
}

QTEST_GUILESS_MAIN(tst_Media)
#include "tst_Media.moc"
