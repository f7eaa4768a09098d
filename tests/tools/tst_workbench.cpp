#include "Program.h"

#include <QFile>
#include <QImage>
#include <QTemporaryDir>
#include <QTest>

class tst_workbench : public QObject
{
    Q_OBJECT

private slots:
    void screenshotShowsTheScene();
    void viewOnlyShowsTheViewAlone();
    void darkColoursAndRoutesAreShown();
    void heldTimeGivesTheSamePictureTwice();
    void laterTimeGivesAnotherPicture();
    void nodePanelShowsTheNodeOfThatName();
    void missingNodeEndsWithAMessage();
    void missingSceneEndsWithAMessage();
    void brokenSceneNamesFileAndLine();
    void wordsNeedNoDisplay_data();
    void wordsNeedNoDisplay();
    void badUsageEndsWithTwo_data();
    void badUsageEndsWithTwo();
    void everyExampleSceneIsDrawn_data();
    void everyExampleSceneIsDrawn();

private:
    QImage shoot(const QStringList& arguments);

    QTemporaryDir _folder;
    int _count = 0;
};

QImage tst_workbench::shoot(const QStringList& arguments)
{
    const QString file = _folder.filePath(QStringLiteral("shot%1.png").arg(++_count));
    const Program program = Program::run(QStringLiteral("orvane-workbench"),
                                         QStringList{QStringLiteral("--screenshot"), file} + arguments);
    if (program.status != 0)
        qWarning("%s", qPrintable(program.errors));
    return QImage(file);
}

/// Number of colours that differ clearly, on a coarse grid.
static int colourCount(const QImage& image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); y += 3) {
        for (int x = 0; x < image.width(); x += 3)
            colours.insert(image.pixel(x, y) & 0xf0f0f0U);
    }
    return colours.size();
}

void tst_workbench::screenshotShowsTheScene()
{
    const QImage image = shoot({QStringLiteral("--size"), QStringLiteral("640x480"),
                                exampleScene(QStringLiteral("primitives.x3d"))});
    QCOMPARE(image.size(), QSize(640, 480));
    QVERIFY(colourCount(image) > 20);
    // The four solids stand side by side, each with its own colour.
    bool red = false;
    bool green = false;
    bool yellow = false;
    bool blue = false;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor colour(image.pixel(x, y));
            red |= colour.red() > 2 * colour.green() && colour.red() > 2 * colour.blue() && colour.red() > 90;
            green |= colour.green() > 2 * colour.red() - 20 && colour.green() > colour.blue() + 40 &&
                     colour.green() > 80;
            yellow |= colour.red() > 120 && colour.green() > 90 && colour.blue() < 70;
            blue |= colour.blue() > 2 * colour.red() && colour.blue() > 100;
        }
    }
    QVERIFY(red);
    QVERIFY(green);
    QVERIFY(yellow);
    QVERIFY(blue);
}

void tst_workbench::viewOnlyShowsTheViewAlone()
{
    const QImage image = shoot({QStringLiteral("--view-only"), QStringLiteral("--size"),
                                QStringLiteral("320x240"), exampleScene(QStringLiteral("primitives.x3d"))});
    QCOMPARE(image.size(), QSize(320, 240));
    // The scene's background reaches into the corners.
    QCOMPARE(QColor(image.pixel(2, 2)), QColor(51, 56, 66));
    QCOMPARE(QColor(image.pixel(317, 2)), QColor(51, 56, 66));
}

void tst_workbench::darkColoursAndRoutesAreShown()
{
    const QStringList usual{QStringLiteral("--time"), QStringLiteral("1"),
                            exampleScene(QStringLiteral("gears.x3d"))};
    // Half-way between the menu and the corner of the window there is nothing but its ground.
    const auto ground = [](const QImage& image) {
        return QColor(image.pixel(image.width() / 2, 8)).lightness();
    };
    // Lines of routes are green, which nothing else in the lower part is.
    const auto greens = [](const QImage& image) {
        int count = 0;
        for (int y = image.height() * 2 / 3; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) {
                const QColor color(image.pixel(x, y));
                count += color.green() > 120 && color.red() < 60 && color.blue() < 60 ? 1 : 0;
            }
        }
        return count;
    };
    const QImage plain = shoot(usual);
    QVERIFY(ground(plain) > 200);
    QCOMPARE(greens(plain), 0);
    QVERIFY(ground(shoot(QStringList{QStringLiteral("--dark")} + usual)) < 80);
    QVERIFY(greens(shoot(QStringList{QStringLiteral("--routes")} + usual)) > 50);
}

void tst_workbench::heldTimeGivesTheSamePictureTwice()
{
    const QStringList arguments{QStringLiteral("--view-only"), QStringLiteral("--size"),
                                QStringLiteral("300x200"),     QStringLiteral("--time"),
                                QStringLiteral("3"),           exampleScene(QStringLiteral("gears.x3d"))};
    const QImage first = shoot(arguments);
    QVERIFY(!first.isNull());
    QCOMPARE(shoot(arguments), first);
}

void tst_workbench::laterTimeGivesAnotherPicture()
{
    const QStringList arguments{QStringLiteral("--view-only"), QStringLiteral("--size"),
                                QStringLiteral("300x200"), exampleScene(QStringLiteral("gears.x3d")),
                                QStringLiteral("--time")};
    const QImage first = shoot(arguments + QStringList{QStringLiteral("3")});
    const QImage second = shoot(arguments + QStringList{QStringLiteral("3.2")});
    QVERIFY(!first.isNull());
    QVERIFY(!second.isNull());
    QVERIFY(first != second);
}

void tst_workbench::nodePanelShowsTheNodeOfThatName()
{
    const QString scene = _folder.filePath(QStringLiteral("named.x3d"));
    QFile file(scene);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("<X3D version='4.0'><Scene><Transform DEF='Place'/><NavigationInfo DEF='Way'/></Scene></X3D>");
    file.close();
    const QStringList arguments{QStringLiteral("--time"), QStringLiteral("1"), scene};
    const QImage none = shoot(arguments);
    const QImage place = shoot(QStringList{QStringLiteral("--node"), QStringLiteral("Place")} + arguments);
    const QImage way = shoot(QStringList{QStringLiteral("--node"), QStringLiteral("Way")} + arguments);
    QVERIFY(!none.isNull());
    // The panel stands at the right of the window.
    const QRect panel(none.width() - 300, 30, 290, none.height() - 80);
    QVERIFY(none.copy(panel) != place.copy(panel));
    QVERIFY(place.copy(panel) != way.copy(panel));
}

void tst_workbench::missingNodeEndsWithAMessage()
{
    const Program program = Program::run(
        QStringLiteral("orvane-workbench"),
        {QStringLiteral("--screenshot"), _folder.filePath(QStringLiteral("none.png")),
         QStringLiteral("--node"), QStringLiteral("Nobody"), exampleScene(QStringLiteral("primitives.x3d"))});
    QCOMPARE(program.status, 1);
    QVERIFY(program.errors.contains(QLatin1String("Nobody")));
}

void tst_workbench::missingSceneEndsWithAMessage()
{
    const QString file = _folder.filePath(QStringLiteral("none.png"));
    const Program program =
        Program::run(QStringLiteral("orvane-workbench"),
                     {QStringLiteral("--screenshot"), file, QStringLiteral("/no/such/scene.x3d")});
    QCOMPARE(program.status, 1);
    QVERIFY2(program.errors.contains(QStringLiteral("/no/such/scene.x3d")), qPrintable(program.errors));
    QVERIFY(!QFile::exists(file));
}

void tst_workbench::brokenSceneNamesFileAndLine()
{
    const QString path = _folder.filePath(QStringLiteral("broken.x3d"));
    QFile scene(path);
    QVERIFY(scene.open(QIODevice::WriteOnly));
    scene.write("<X3D version='4.0'>\n<Scene>\n<Shape>\n</Scene>\n</X3D>\n");
    scene.close();
    const Program program =
        Program::run(QStringLiteral("orvane-workbench"),
                     {QStringLiteral("--screenshot"), _folder.filePath(QStringLiteral("b.png")), path});
    QCOMPARE(program.status, 1);
    QVERIFY2(program.errors.contains(path + QStringLiteral(":4:")), qPrintable(program.errors));
}

void tst_workbench::wordsNeedNoDisplay_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("words");
    QTest::newRow("help") << QStringList{QStringLiteral("--help")} << QStringLiteral("--screenshot");
    QTest::newRow("short help") << QStringList{QStringLiteral("-h")} << QStringLiteral("--screenshot");
    QTest::newRow("help, and more") << QStringList{QStringLiteral("a.x3d"), QStringLiteral("--help")}
                                    << QStringLiteral("[SCENE]");
    QTest::newRow("version") << QStringList{QStringLiteral("--version")}
                             << QStringLiteral("orvane-workbench 0.");
}

void tst_workbench::wordsNeedNoDisplay()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, words);
    QProcessEnvironment nowhere = QProcessEnvironment::systemEnvironment();
    for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
        nowhere.remove(QLatin1String(name));
    const Program program = Program::run(QStringLiteral("orvane-workbench"), arguments, nowhere);
    QCOMPARE(program.status, 0);
    QVERIFY2(program.output.contains(words), qPrintable(program.output));
    QVERIFY2(program.errors.isEmpty(), qPrintable(program.errors));
}

void tst_workbench::badUsageEndsWithTwo_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("unknown option") << QStringList{QStringLiteral("--nonsense")};
    QTest::newRow("frames") << QStringList{QStringLiteral("--frames"), QStringLiteral("0")};
    QTest::newRow("size") << QStringList{QStringLiteral("--size"), QStringLiteral("800")};
    QTest::newRow("negative size") << QStringList{QStringLiteral("--size"), QStringLiteral("-1x20")};
    QTest::newRow("time") << QStringList{QStringLiteral("--time"), QStringLiteral("soon")};
    QTest::newRow("two scenes") << QStringList{QStringLiteral("a.x3d"), QStringLiteral("b.x3d")};
}

void tst_workbench::badUsageEndsWithTwo()
{
    QFETCH(QStringList, arguments);
    const Program program = Program::run(QStringLiteral("orvane-workbench"), arguments);
    QCOMPARE(program.status, 2);
    QVERIFY(program.errors.contains(QStringLiteral("orvane-workbench: ")));
}

void tst_workbench::everyExampleSceneIsDrawn_data()
{
    QTest::addColumn<QString>("scene");
    const QDir folder(exampleScene(QString()));
    const QStringList scenes = folder.entryList(
        {QStringLiteral("*.x3d"), QStringLiteral("*.x3dv"), QStringLiteral("*.wrl")}, QDir::Files);
    for (const QString& scene : scenes)
        QTest::newRow(qPrintable(scene)) << folder.filePath(scene);
    QVERIFY(scenes.size() >= 6);
}

void tst_workbench::everyExampleSceneIsDrawn()
{
    QFETCH(QString, scene);
    const QImage image =
        shoot({QStringLiteral("--view-only"), QStringLiteral("--size"), QStringLiteral("400x300"),
               QStringLiteral("--time"), QStringLiteral("2"), scene});
    QVERIFY(!image.isNull());
    QVERIFY2(colourCount(image) > 6, qPrintable(scene));
}

QTEST_MAIN(tst_workbench)
#include "tst_workbench.moc"
