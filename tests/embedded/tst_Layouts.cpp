#include "LayerScene.h"
#include "core/GroupProc.h"
#include <Orvane/SFNode.h>
#include <QtTest>

using namespace Orvane;

/// Layouts, in a window of 400 x 200 pixels: where their boxes lie, and how large their units are.
class tst_Layouts : public QObject
{
    Q_OBJECT

private slots:
    void layerWithoutLayoutHasItsOwnUnits();
    void boxes_data();
    void boxes();
    void groupStandsInTheBoxOfTheOuterOne();
    void groupWithoutLayoutStandsAsTheOuterOne();
    void transformBetweenMovesTheBox();
    void boxesFollowTheWindow();
    void boxesFollowTheFields();
    void boxesSuitEachViewarea();
    void layerFitsItsViewport();
    void boxWithoutSizeIsHarmless();
    void groupOutsideOfLayoutsIsAPlainOne();
    void layoutsThatStandInThemselvesAreHarmless();
    void noUserMovesTheView();
    void boundViewpointDoesNotMatter();
    void farContentIsInFrontOfTheCamera();
    void screenGroupHasPixelsAsUnits();
    void screenFontKeepsItsSize_data();
    void screenFontKeepsItsSize();
    void screenFontInPerspectiveKeepsItsSize();
    void pointSizeIsFollowed();

private:
    /// The unit square round the origin of a group, as "left bottom width height" in pixels.
    static QString boxOf(const LayerScene& scene, const char* name, float pixel = 0.01F, int width = 400,
                         int height = 200);
};

namespace {

std::string layout(const std::string& fields)
{
    return "<Layout DEF='Y' " + fields + "/>";
}

std::string hud(const std::string& body)
{
    return "<LayerSet DEF='S' order='0 1' activeLayer='1'><LayoutLayer DEF='L'>" + body +
           "</LayoutLayer></LayerSet>";
}

/// Width and height of what a shape shows, in pixels.
osg::Vec2f extentOf(const LayerScene& scene, const char* shape, float pixel)
{
    osg::DynamicVolume volume;
    procAs<ElementProc>(&scene.node(shape))->tree()->getWorldVolume(volume);
    osg::Pnt3f low;
    osg::Pnt3f high;
    volume.getBounds(low, high);
    return osg::Vec2f((high[0] - low[0]) / pixel, (high[1] - low[1]) / pixel);
}

bool isClose(const osg::Vec2f& a, const osg::Vec2f& b)
{
    return std::abs(a[0] - b[0]) < 0.01F * b[0] && std::abs(a[1] - b[1]) < 0.01F * b[1];
}

} // namespace

QString tst_Layouts::boxOf(const LayerScene& scene, const char* name, float pixel, int width, int height)
{
    const osg::Matrix toWorld = procAs<GroupProc>(&scene.node(name))->toWorld();
    osg::Pnt3f low(-0.5F, -0.5F, 0.0F);
    osg::Pnt3f high(0.5F, 0.5F, 0.0F);
    toWorld.multMatrixPnt(low);
    toWorld.multMatrixPnt(high);
    return QStringLiteral("%1 %2 %3 %4")
        .arg(qRound(low[0] / pixel) + width / 2)
        .arg(qRound(low[1] / pixel) + height / 2)
        .arg(qRound((high[0] - low[0]) / pixel))
        .arg(qRound((high[1] - low[1]) / pixel));
}

void tst_Layouts::layerWithoutLayoutHasItsOwnUnits()
{
    LayerScene scene(hud("<Group DEF='G'/>"), 400, 200);
    QCOMPARE(boxOf(scene, "G"), QStringLiteral("150 50 100 100"));
}

void tst_Layouts::boxes_data()
{
    QTest::addColumn<QString>("fields");
    QTest::addColumn<QString>("box");
    const auto row = [](const char* name, const char* fields, const char* box) {
        QTest::newRow(name) << QString::fromLatin1(fields) << QString::fromLatin1(box);
    };
    row("defaults", "", "150 50 100 100");
    row("fractions", "size='0.5 0.25' sizeUnits='\"FRACTION\" \"FRACTION\"'", "100 75 200 50");
    row("pixels", "size='30 20' sizeUnits='\"PIXEL\" \"PIXEL\"'", "185 90 30 20");
    row("one word for both", "size='30' sizeUnits='\"PIXEL\"'", "185 85 30 30");
    row("left top", "align='\"LEFT\" \"TOP\"'", "0 100 100 100");
    row("right bottom", "align='\"RIGHT\" \"BOTTOM\"'", "300 0 100 100");
    row("offset in the world", "offset='0.5 -0.25'", "200 25 100 100");
    row("offset in pixels", "align='\"LEFT\" \"BOTTOM\"' offset='10 20' offsetUnits='\"PIXEL\" \"PIXEL\"'",
        "10 20 100 100");
    row("offset in fractions", "offset='0.25 0.25' offsetUnits='\"FRACTION\" \"FRACTION\"'",
        "250 100 100 100");
    row("scale in pixels", "align='\"LEFT\" \"TOP\"' scaleMode='\"PIXEL\" \"PIXEL\"'", "50 150 1 1");
    row("scale of the box", "size='2 1' scaleMode='\"FRACTION\" \"FRACTION\"'", "100 50 200 100");
    row("stretched across", "size='2 1' scaleMode='\"STRETCH\" \"FRACTION\"'", "150 50 100 100");
    row("stretched upwards", "size='2 1' scaleMode='\"FRACTION\" \"STRETCH\"'", "100 0 200 200");
    row("stretched both ways", "size='2 1' scaleMode='\"STRETCH\" \"STRETCH\"'", "150 50 100 100");
    row("no numbers", "size='NaN Inf' offset='NaN'", "150 50 100 100");
    row("empty lists", "size='' offset='' align='' sizeUnits='' offsetUnits='' scaleMode=''",
        "150 50 100 100");
    row("words that are none", "align='\"UP\" \"LEFT\"' sizeUnits='\"MILES\"'", "150 50 100 100");
}

void tst_Layouts::boxes()
{
    QFETCH(QString, fields);
    QFETCH(QString, box);
    LayerScene scene(hud(layout(fields.toStdString()) + "<Group DEF='G'/>"), 400, 200);
    QCOMPARE(boxOf(scene, "G"), box);
}

void tst_Layouts::groupStandsInTheBoxOfTheOuterOne()
{
    LayerScene scene(hud("<Layout align='\"LEFT\" \"TOP\"' size='0.5 0.5' sizeUnits='\"FRACTION\"'/>"
                         "<LayoutGroup DEF='G'><Layout align='\"RIGHT\" \"BOTTOM\"' size='0.5 0.2' "
                         "sizeUnits='\"FRACTION\"' scaleMode='\"FRACTION\"'/>"
                         "<LayoutGroup DEF='H'><Layout align='\"LEFT\" \"CENTER\"' size='10 10' "
                         "sizeUnits='\"PIXEL\"' scaleMode='\"FRACTION\"'/>"
                         "<LayoutGroup DEF='I'><Layout size='7 7' sizeUnits='\"PIXEL\"'/></LayoutGroup>"
                         "</LayoutGroup></LayoutGroup>"),
                     400, 200);
    QCOMPARE(boxOf(scene, "G"), QStringLiteral("100 100 100 20"));
    QCOMPARE(boxOf(scene, "H"), QStringLiteral("100 105 10 10"));
    // Without a mode of its own it has the outer unit.
    QCOMPARE(boxOf(scene, "I"), QStringLiteral("100 105 10 10"));
}

void tst_Layouts::groupWithoutLayoutStandsAsTheOuterOne()
{
    LayerScene scene(hud("<Layout size='40 20' sizeUnits='\"PIXEL\"' align='\"LEFT\" \"BOTTOM\"'/>"
                         "<LayoutGroup DEF='G'/>"),
                     400, 200);
    QCOMPARE(boxOf(scene, "G"), QStringLiteral("0 0 40 20"));
}

void tst_Layouts::transformBetweenMovesTheBox()
{
    LayerScene scene(hud("<Layout size='40 20' sizeUnits='\"PIXEL\"' scaleMode='\"PIXEL\"'/>"
                         "<Transform translation='100 50 0'><LayoutGroup DEF='G'><Layout size='10 10' "
                         "sizeUnits='\"PIXEL\"' scaleMode='\"FRACTION\"'/></LayoutGroup></Transform>"),
                     400, 200);
    QCOMPARE(boxOf(scene, "G"), QStringLiteral("295 145 10 10"));
}

void tst_Layouts::boxesFollowTheWindow()
{
    LayerScene scene(hud("<Layout align='\"LEFT\" \"TOP\"' size='30 20' sizeUnits='\"PIXEL\"'/>"
                         "<Group DEF='G'/>"),
                     400, 200);
    QCOMPARE(boxOf(scene, "G"), QStringLiteral("0 180 30 20"));
    scene.window().resize(100, 500);
    scene.run();
    QCOMPARE(boxOf(scene, "G", 0.02F, 100, 500), QStringLiteral("0 480 30 20"));
}

void tst_Layouts::boxesFollowTheFields()
{
    LayerScene scene(hud(layout("size='30 20' sizeUnits='\"PIXEL\"'") + "<Group DEF='G'/>"), 400, 200);
    scene.set("Y", "size", "50 60");
    QCOMPARE(boxOf(scene, "G"), QStringLiteral("175 70 50 60"));
    scene.set("Y", "align", "\"LEFT\" \"CENTER\"");
    QCOMPARE(boxOf(scene, "G"), QStringLiteral("0 70 50 60"));
    dynamic_cast<SFNode&>(*scene.node("L").findField("layout", Node::DECLARED_FSO))
        .setNode(0.0, nullptr, Field::EXTERNAL_CT);
    scene.run();
    QCOMPARE(boxOf(scene, "G"), QStringLiteral("150 50 100 100"));
}

void tst_Layouts::boxesSuitEachViewarea()
{
    // What is drawn last, in the viewarea on the right, has the last word.
    LayerScene scene("<Engine><Window><Viewarea size='0.25 1'/><Viewarea position='0.25 0' size='0.75 1'/>"
                     "</Window></Engine>" +
                         hud("<Layout align='\"RIGHT\" \"TOP\"' size='30 20' sizeUnits='\"PIXEL\"'/>"
                             "<Group DEF='G'/>"),
                     400, 200);
    QCOMPARE(boxOf(scene, "G", 0.01F, 300, 200), QStringLiteral("270 180 30 20"));
}

void tst_Layouts::layerFitsItsViewport()
{
    LayerScene scene(hud("<Viewport clipBoundary='0.5 1 0 1'/><Layout align='\"LEFT\" \"TOP\"' size='30 20' "
                         "sizeUnits='\"PIXEL\"'/><Group DEF='G'/>"),
                     400, 200);
    QCOMPARE(scene.rectangles()[1], std::string("200 0 200 200"));
    QCOMPARE(boxOf(scene, "G", 0.01F, 200, 200), QStringLiteral("0 180 30 20"));
}

void tst_Layouts::boxWithoutSizeIsHarmless()
{
    LayerScene scene(hud(layout("size='0 -3'") + "<LayoutGroup DEF='G'>" +
                         "<Layout scaleMode='\"FRACTION\"' "
                         "sizeUnits='\"FRACTION\"'/><Shape><Box/></Shape></LayoutGroup>"),
                     400, 200);
    scene.run();
    QVERIFY(scene.isFinite());
}

void tst_Layouts::groupOutsideOfLayoutsIsAPlainOne()
{
    LayerScene scene("<LayoutGroup DEF='G'>" + layout("size='3 3' scaleMode='\"FRACTION\"'") +
                         "<Shape><Box/></Shape></LayoutGroup>",
                     400, 200);
    const osg::Matrix none;
    QVERIFY(procAs<GroupProc>(&scene.node("G"))->toWorld() == none);
}

void tst_Layouts::layoutsThatStandInThemselvesAreHarmless()
{
    LayerScene scene(hud("<LayoutGroup DEF='G'><Layout/></LayoutGroup>"), 400, 200);
    auto& children = dynamic_cast<MFNode&>(*scene.node("G").findField("children", Node::DECLARED_FSO));
    children.addNode(0.0, &scene.node("G"), Field::EXTERNAL_CT);
    scene.run();
    scene.run();
    QVERIFY(scene.isFinite());
}

void tst_Layouts::noUserMovesTheView()
{
    LayerScene scene(hud("<Shape><Box/></Shape>"), 400, 200);
    const osg::Vec3f before = scene.eyeOf(1);
    scene.wheel(true, 200, 100);
    scene.drag(1, 200, 100, 250, 150);
    scene.send("showAll");
    scene.runFor(2.0);
    QCOMPARE_NEAR(scene.eyeOf(1), before);
    QCOMPARE_NEAR(scene.eyeOf(0), osg::Vec3f(0, 0, 10));
}

void tst_Layouts::boundViewpointDoesNotMatter()
{
    LayerScene scene(hud("<Viewpoint DEF='V' position='50 0 0'/><Group DEF='G'/>"), 400, 200);
    QCOMPARE(scene.get("V", "isBound"), std::string("TRUE"));
    QCOMPARE(scene.eyeOf(1)[0], 0.0F);
}

void tst_Layouts::farContentIsInFrontOfTheCamera()
{
    LayerScene scene(hud("<Transform translation='0 0 5000'><Shape><Box/></Shape></Transform>"), 400, 200);
    scene.run();
    QVERIFY(scene.eyeOf(1)[2] > 5001.0F);
}

void tst_Layouts::screenGroupHasPixelsAsUnits()
{
    LayerScene scene(
        hud("<LayoutGroup><Layout size='0.3 0.8' sizeUnits='\"FRACTION\"' scaleMode='\"FRACTION\"'/>"
            "<ScreenGroup><Shape DEF='T'><Rectangle2D size='40 10'/></Shape></ScreenGroup>"
            "</LayoutGroup>"),
        400, 200);
    QVERIFY(isClose(extentOf(scene, "T", 0.01F), osg::Vec2f(40, 10)));
    scene.window().resize(100, 100);
    scene.run();
    QVERIFY(isClose(extentOf(scene, "T", 0.02F), osg::Vec2f(40, 10)));
}

void tst_Layouts::screenFontKeepsItsSize_data()
{
    QTest::addColumn<QString>("fields");
    QTest::newRow("in units of the layer") << "";
    QTest::newRow("in pixels") << "scaleMode='\"PIXEL\"'";
    QTest::newRow("in a small box") << "size='0.1 0.7' scaleMode='\"FRACTION\"'";
}

void tst_Layouts::screenFontKeepsItsSize()
{
    QFETCH(QString, fields);
    LayerScene scene(
        hud("<LayoutGroup>" + layout(fields.toStdString()) +
            "<Shape DEF='T'><Text string='\"Height\"'><ScreenFontStyle DEF='F' pointSize='12'/></Text>"
            "</Shape></LayoutGroup><LayoutGroup><Layout scaleMode='\"PIXEL\"'/><Shape DEF='U'>"
            "<Text string='\"Height\"'><FontStyle size='16'/></Text></Shape></LayoutGroup>"),
        400, 200);
    // 12 points are 16 pixels on a screen of 96 pixels an inch.
    QVERIFY(isClose(extentOf(scene, "T", 0.01F), extentOf(scene, "U", 0.01F)));
    scene.window().resize(1000, 100);
    scene.run();
    QVERIFY(isClose(extentOf(scene, "T", 0.02F), extentOf(scene, "U", 0.02F)));
}

void tst_Layouts::screenFontInPerspectiveKeepsItsSize()
{
    LayerScene scene("<Viewpoint DEF='V' position='0 0 10'/><Shape DEF='T'><Text string='\"Height\"'>"
                     "<ScreenFontStyle/></Text></Shape>",
                     400, 200);
    const float near = extentOf(scene, "T", 1.0F)[1];
    scene.set("V", "position", "0 0 30");
    scene.runFor(2.0);
    const float far = extentOf(scene, "T", 1.0F)[1];
    QVERIFY2(std::abs(far / near - 3.0F) < 0.01F, qPrintable(QString::number(double(far / near))));
}

void tst_Layouts::pointSizeIsFollowed()
{
    LayerScene scene(
        hud("<Shape DEF='T'><Text string='\"Height\"'><ScreenFontStyle DEF='F'/></Text></Shape>"), 400, 200);
    const float before = extentOf(scene, "T", 0.01F)[1];
    scene.set("F", "pointSize", "24");
    const float after = extentOf(scene, "T", 0.01F)[1];
    QVERIFY(before > 5.0F);
    QVERIFY(std::abs(after / before - 2.0F) < 0.02F);
}

QTEST_GUILESS_MAIN(tst_Layouts)
#include "tst_Layouts.moc"
