#include "MediaFiles.h"
#include "PointerScene.h"
#include <QTemporaryDir>
#include <QtTest>

using namespace Orvane;

using Events = std::vector<std::string>;

/// What is told of the loading of files.
class tst_LoadSensor : public QObject
{
    Q_OBJECT

private slots:
    void allLoadedIsToldAtOnce();
    void aMissingFileIsAFailure();
    void waitsForWhatIsNotToLoadYet();
    void givesUpAfterItsTime();
    void anotherAddressStartsAnew();
    void disabledOrEmptyTellsNothing();

private:
    /// Lets a change reach the node itself, and then the sensor.
    static void settle(PointerScene& scene)
    {
        for (int i = 0; i < 3; ++i)
            scene.frame();
    }
    static void watch(PointerScene& scene)
    {
        for (const char* field : {"L.isActive", "L.isLoaded", "L.progress"})
            scene.watch(field);
    }
    static std::string image() { return mediafiles::dataAddress(mediafiles::gif(1, 0)).toStdString(); }
    static std::string texture(const char* name, const std::string& address, const char* more = "")
    {
        return "<ImageTexture DEF='" + std::string(name) + "' url='\"" + address + "\"' " + more +
               " containerField='children'/>";
    }
};

void tst_LoadSensor::allLoadedIsToldAtOnce()
{
    PointerScene scene("<LoadSensor DEF='L' enabled='false'>" + texture("A", image()) +
                       "<AudioClip containerField='children' url='\"" +
                       mediafiles::dataAddress(mediafiles::wav(10)).toStdString() + "\"'/></LoadSensor>");
    watch(scene);
    scene.set("L.enabled", "TRUE");
    settle(scene);
    QCOMPARE(scene.take(), (Events{"L.progress 1", "L.isLoaded TRUE"}));
    QVERIFY(scene.numbers("L.loadTime").at(0) > 1000.0);
    scene.frame();
    QCOMPARE(scene.take(), Events());
}

void tst_LoadSensor::aMissingFileIsAFailure()
{
    PointerScene scene("<LoadSensor DEF='L'>" + texture("A", image()) + texture("B", "nowhere.png") +
                       "</LoadSensor>");
    QCOMPARE(scene.get("L.isLoaded"), std::string("FALSE"));
    QCOMPARE(scene.get("L.progress"), std::string("0.5"));
    QCOMPARE(scene.get("L.loadTime"), std::string("-1"));
    watch(scene);
    scene.set("B.url", ("[\"" + image() + "\"]").c_str());
    settle(scene);
    QCOMPARE(scene.take(), (Events{"L.progress 1", "L.isLoaded TRUE"}));
}

void tst_LoadSensor::waitsForWhatIsNotToLoadYet()
{
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("part.x3dv")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("#X3D V4.0 utf8\nPROFILE Full\nShape { }");
    file.close();
    PointerScene scene("<LoadSensor DEF='L'><Inline DEF='I' load='false' url='\"part.x3dv\"'/>" +
                           texture("A", image()) + "</LoadSensor>",
                       folder.filePath(QStringLiteral("scene.x3d")).toStdString());
    QCOMPARE(scene.get("L.isActive"), std::string("TRUE"));
    QCOMPARE(scene.get("L.progress"), std::string("0.5"));
    watch(scene);
    scene.set("I.load", "TRUE");
    settle(scene);
    QCOMPARE(scene.take(), (Events{"L.isActive FALSE", "L.progress 1", "L.isLoaded TRUE"}));
}

void tst_LoadSensor::givesUpAfterItsTime()
{
    PointerScene scene("<LoadSensor DEF='L' timeOut='1'>" + texture("A", image(), "load='false'") +
                       "</LoadSensor>");
    watch(scene);
    for (int i = 0; i < 7; ++i)
        scene.frame();
    QCOMPARE(scene.take(), Events());
    for (int i = 0; i < 7; ++i)
        scene.frame();
    QCOMPARE(scene.take(), (Events{"L.isActive FALSE", "L.isLoaded FALSE"}));
}

void tst_LoadSensor::anotherAddressStartsAnew()
{
    PointerScene scene("<LoadSensor DEF='L'>" + texture("A", image()) + "</LoadSensor>");
    watch(scene);
    scene.set("A.url", ("[\"" + image() + "\", \"other.png\"]").c_str());
    settle(scene);
    QCOMPARE(scene.take(), (Events{"L.progress 1", "L.isLoaded TRUE"}));
}

void tst_LoadSensor::disabledOrEmptyTellsNothing()
{
    PointerScene scene("<LoadSensor DEF='L'/><LoadSensor DEF='M' enabled='false'>" + texture("A", image()) +
                       "</LoadSensor>");
    QCOMPARE(scene.get("L.isLoaded"), std::string("FALSE"));
    QCOMPARE(scene.get("M.isLoaded"), std::string("FALSE"));
    QCOMPARE(scene.get("M.loadTime"), std::string("-1"));
}

QTEST_GUILESS_MAIN(tst_LoadSensor)
#include "tst_LoadSensor.moc"
