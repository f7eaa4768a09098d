#include "LoadedText.h"
#include <Orvane/System.h>
#include <QFile>
#include <QTemporaryDir>
#include <QtTest>

using namespace Orvane;

/// Instances of prototypes that are written as the plain nodes of their bodies.
class tst_ResolvedProtos : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { System::the().init(0, nullptr, 382); }
    void cleanupTestCase() { System::the().exit(); }

    void instancesBecomeTheirBodies_data();
    void instancesBecomeTheirBodies();
    void resolvedScenesReadWithoutMessages_data();
    void resolvedScenesReadWithoutMessages();

private:
    QString save(LoadedText& scene, const char* suffix);

    QTemporaryDir _folder;
};

QString tst_ResolvedProtos::save(LoadedText& scene, const char* suffix)
{
    const QString path = _folder.filePath(QStringLiteral("scene") + QLatin1String(suffix));
    SaveOptions options;
    options.resolveProtos = true;
    std::string error;
    if (!scene.context().save(path.toStdString(), options, error))
        return QString::fromStdString(error);
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QStringLiteral("no file");
}

void tst_ResolvedProtos::instancesBecomeTheirBodies_data()
{
    QTest::addColumn<QByteArray>("scene");
    QTest::addColumn<QByteArray>("written");
    const auto row = [](const char* name, const char* scene, const char* written) {
        QTest::newRow(name) << QByteArray(scene) << QByteArray(written);
    };
    row("values",
        "PROTO P [ initializeOnly SFFloat r 2 ] { Sphere { radius IS r } }\n"
        "Shape { geometry P { } }\nShape { geometry P { r 3 } }",
        "Shape {\n  geometry Sphere {\n    radius 2\n  }\n}\n"
        "Shape {\n  geometry Sphere {\n    radius 3\n  }\n}\n");
    row("names and uses", "PROTO P [ ] { DEF B Group { } }\nDEF I P { }\nUSE I\nP { }\nP { }",
        "DEF I Group { }\nUSE I\nDEF B Group { }\nGroup { }\n");
    row("instances inside of instances",
        "PROTO Q [ initializeOnly SFVec3f s 1 1 1 ] { Box { size IS s } }\n"
        "PROTO P [ initializeOnly SFVec3f s 4 4 4 ] { Shape { geometry Q { s IS s } } }\nP { }",
        "Shape {\n  geometry Box {\n    size 4 4 4\n  }\n}\n");
    row("a body that begins with an instance",
        "PROTO Q [ ] { Group { } }\nPROTO P [ ] { Q { } }\nDEF I P { }", "DEF I Group { }\n");
    row("an empty body", "PROTO P [ ] { }\nGroup { children P { } }\nGroup { }",
        "Group {\n  children [\n  ]\n}\nGroup { }\n");
    row("the rest of a body", "PROTO P [ ] { Group { } DEF T TimeSensor { loop TRUE } Box { } }\nP { }",
        "Group { }\n"
        "Switch {\n  children [\n    DEF T TimeSensor {\n      loop TRUE\n    }\n  ]\n}\n");
    row("routes into and out of an instance",
        "PROTO P [ inputOutput SFVec3f t 0 0 0 inputOnly SFBool go outputOnly SFTime at ] {\n"
        "  Transform { translation IS t }\n  DEF S TimeSensor { set_enabled IS go cycleTime IS at }\n}\n"
        "DEF I P { }\nDEF J P { }\nDEF X TouchSensor { }\n"
        "ROUTE X.isActive TO I.go\nROUTE I.at TO J.at2\nROUTE I.t TO J.t",
        "DEF I Transform { }\nDEF J Transform { }\nDEF X TouchSensor { }\n"
        "Switch {\n  children [\n    DEF S TimeSensor { }\n    TimeSensor { }\n  ]\n}\n"
        "ROUTE I.translation_changed TO J.set_translation\nROUTE X.isActive TO S.set_enabled\n");
    row("routes inside of a body",
        "PROTO P [ ] { Group { children [ DEF T TimeSensor { } DEF S ScalarInterpolator { } ] }\n"
        "  ROUTE T.fraction_changed TO S.set_fraction }\nP { }\nP { }",
        "Group {\n  children [\n    DEF T TimeSensor { }\n    DEF S ScalarInterpolator { }\n  ]\n}\n"
        "Group {\n  children [\n    DEF T_2 TimeSensor { }\n    DEF S_2 ScalarInterpolator { }\n  ]\n}\n"
        "ROUTE T.fraction_changed TO S.set_fraction\nROUTE T_2.fraction_changed TO S_2.set_fraction\n");
    row("a route through an instance inside of an instance",
        "PROTO Q [ inputOnly SFBool go ] { TimeSensor { set_enabled IS go } }\n"
        "PROTO P [ inputOnly SFBool go ] { Group { children Q { go IS go } } }\n"
        "DEF I P { }\nDEF X TouchSensor { }\nROUTE X.isOver TO I.go",
        "DEF I Group {\n  children [\n    DEF TimeSensor_1 TimeSensor { }\n  ]\n}\nDEF X TouchSensor { }\n"
        "ROUTE X.isOver TO TimeSensor_1.set_enabled\n");
    row("a prototype that was not found",
        "EXTERNPROTO E [ inputOutput SFFloat a ] \"nowhere.wrl#E\"\nE { a 2 }",
        "EXTERNPROTO E [\n  inputOutput SFFloat a\n] \"nowhere.wrl#E\"\nE {\n  a 2\n}\n");
}

void tst_ResolvedProtos::instancesBecomeTheirBodies()
{
    QFETCH(QByteArray, scene);
    QFETCH(QByteArray, written);
    LoadedText loaded;
    QVERIFY(loaded.load("#X3D V4.0 utf8\nPROFILE Full\n" + scene.toStdString()));
    QCOMPARE(save(loaded, ".x3dv"),
             QStringLiteral("#X3D V4.0 utf8\n\nPROFILE Full\n\n") + QString::fromUtf8(written));
}

void tst_ResolvedProtos::resolvedScenesReadWithoutMessages_data()
{
    QTest::addColumn<QString>("suffix");
    for (const char* suffix : {".x3d", ".x3dv", ".wrl"})
        QTest::newRow(suffix) << QString::fromLatin1(suffix);
}

void tst_ResolvedProtos::resolvedScenesReadWithoutMessages()
{
    QFETCH(QString, suffix);
    LoadedText scene;
    QVERIFY(
        scene.load("#X3D V4.0 utf8\nPROFILE Full\n"
                   "PROTO M [ inputOutput SFColor c 1 0 0 ] { Material { diffuseColor IS c } Material { } }\n"
                   "PROTO P [ inputOutput MFNode n [ Box { } ] initializeOnly SFColor c 0 1 0 ] {\n"
                   "  Shape { appearance Appearance { material M { c IS c } } }\n"
                   "  Script { inputOutput MFNode n IS n }\n}\n"
                   "DEF A P { }\nDEF B P { c 0 0 1 n [ Sphere { } ] }\nGroup { children USE A }"));
    QCOMPARE(scene.messages(), QStringList());
    const QString text = save(scene, suffix.toLatin1().constData());
    LoadedText again;
    QVERIFY2(again.load(text.toStdString()), qPrintable(text));
    QVERIFY2(again.messages().isEmpty(), qPrintable(again.messages().join(QLatin1Char('\n')) + text));
    QCOMPARE(again.report().protos, std::size_t(0));
    QCOMPARE(LoadedText::outline(again.find("A")), QStringLiteral("Shape(Appearance(Material))"));
    QVERIFY(std::find(scene.context().saveNotes().begin(), scene.context().saveNotes().end(),
                      "Material: stands in the body of a prototype where nothing shows it; left out") !=
            scene.context().saveNotes().end());
    // The prototypes of the scene itself are what they were.
    QCOMPARE(scene.find("A")->type()->name, std::string("P"));
}

QTEST_APPLESS_MAIN(tst_ResolvedProtos)
#include "tst_ResolvedProtos.moc"
