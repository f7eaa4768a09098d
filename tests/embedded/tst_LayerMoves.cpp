#include "LayerScene.h"
#include "core/ViewpointProc.h"
#include <Orvane/SFNode.h>
#include <QtTest>
#include <algorithm>

using namespace Orvane;

/// Running nodes that are moved from one layer to another.
class tst_LayerMoves : public QObject
{
    Q_OBJECT

private slots:
    void viewpointTakesPartInTheOtherLayer_data();
    void viewpointTakesPartInTheOtherLayer();
    void firstViewpointOfALayerIsBound();
    void groupTakesItsContentAlong();
    void whatAScriptKnowsStandsWhereItIsDrawn();
    void nodeThatOnlyAScriptKnowsStays();
    void sensorsSeeTheViewerOfTheirNewLayer();
    void levelsFollowTheViewerOfTheirNewLayer();
    void lightsShineOnTheNewLayer();
    void nodeInBothStaysInTheFirst();
    void restedViewpointComesBackToItsLayer();
    void sceneWithoutLayersStaysAsItWas();

private:
    static MFNode& children(LayerScene& scene, const char* name)
    {
        return dynamic_cast<MFNode&>(*scene.node(name).findField("children", Node::DECLARED_FSO));
    }
    static void take(LayerScene& scene, const char* name, const char* from)
    {
        MFNode& list = children(scene, from);
        for (int i = static_cast<int>(list.size()); i-- > 0;) {
            if (list.elem(i).node() == &scene.node(name))
                list.removeNode(0.0, i, Field::EXTERNAL_CT);
        }
    }
    static void move(LayerScene& scene, const char* name, const char* from, const char* to)
    {
        const NodeRef held(&scene.node(name));
        children(scene, to).addNode(0.0, held.get(), Field::EXTERNAL_CT);
        take(scene, name, from);
        settle(scene);
    }
    static void settle(LayerScene& scene)
    {
        for (int i = 0; i < 4; ++i)
            scene.run(1.0);
    }
    static bool isIn(LayerScene& scene, const char* name, const char* layer)
    {
        const auto& all = procAs<SceneLayer>(&scene.node(layer))->stack(BindableKind::Viewpoint).all();
        return std::find(all.begin(), all.end(), procAs<BindableProc>(&scene.node(name))) != all.end();
    }
    static std::string bound(LayerScene& scene, const char* names)
    {
        std::string result;
        for (const QString& name : QString::fromLatin1(names).split(QLatin1Char(' ')))
            result +=
                scene.get(qPrintable(name), "isBound") == "TRUE" ? name.toStdString() : std::string("-");
        return result;
    }
};

namespace {

std::string layers(const std::string& first, const std::string& second, const std::string& before = {})
{
    return before + "<LayerSet order='0 1 2'><Layer DEF='L'>" + first + "</Layer><Layer DEF='M'>" + second +
           "</Layer></LayerSet>";
}

} // namespace

void tst_LayerMoves::viewpointTakesPartInTheOtherLayer_data()
{
    QTest::addColumn<bool>("addedFirst");
    QTest::newRow("added, then removed") << true;
    QTest::newRow("removed, then added") << false;
}

void tst_LayerMoves::viewpointTakesPartInTheOtherLayer()
{
    QFETCH(bool, addedFirst);
    LayerScene scene(
        layers("<Viewpoint DEF='A'/><Viewpoint DEF='B'/>", "<Viewpoint DEF='C' position='0 0 7'/>"));
    QCOMPARE(bound(scene, "A B C"), std::string("A-C"));
    if (addedFirst)
        move(scene, "A", "L", "M");
    else {
        const NodeRef held(&scene.node("A"));
        take(scene, "A", "L");
        children(scene, "M").addNode(0.0, held.get(), Field::EXTERNAL_CT);
        settle(scene);
    }
    QVERIFY(isIn(scene, "A", "M") && !isIn(scene, "A", "L"));
    // What was bound there stays so until an event says otherwise.
    QCOMPARE(bound(scene, "A C"), std::string("-C"));
    scene.set("A", "position", "0 3 5");
    scene.set("A", "set_bind", "TRUE");
    settle(scene);
    QCOMPARE(bound(scene, "A C"), std::string("A-"));
    QCOMPARE_NEAR(scene.eyeOf(2), osg::Vec3f(0, 3, 5));
    scene.set("B", "set_bind", "TRUE");
    QCOMPARE(bound(scene, "A B C"), std::string("AB-"));
    scene.set("A", "set_bind", "FALSE");
    QCOMPARE(bound(scene, "A B C"), std::string("-BC"));
}

void tst_LayerMoves::firstViewpointOfALayerIsBound()
{
    LayerScene scene(layers("<Viewpoint DEF='A'/><Viewpoint DEF='B'/>", ""));
    scene.set("B", "set_bind", "TRUE");
    move(scene, "B", "L", "M");
    QCOMPARE(bound(scene, "A B"), std::string("AB"));
}

void tst_LayerMoves::groupTakesItsContentAlong()
{
    LayerScene scene(layers("<Group DEF='G'><Transform><Viewpoint DEF='A'/><Background DEF='K'/></Transform>"
                            "</Group><Background DEF='I'/>",
                            "<Background DEF='J'/>"));
    move(scene, "G", "L", "M");
    QVERIFY(isIn(scene, "A", "M"));
    QCOMPARE(bound(scene, "A I J K"), std::string("A-J-"));
    scene.set("K", "set_bind", "TRUE");
    QCOMPARE(bound(scene, "I J K"), std::string("--K"));
    move(scene, "G", "M", "L");
    QVERIFY(isIn(scene, "A", "L") && !isIn(scene, "A", "M"));
    QCOMPARE(bound(scene, "J"), std::string("J"));
}

void tst_LayerMoves::whatAScriptKnowsStandsWhereItIsDrawn()
{
    // The script is the first that has it.
    LayerScene scene(layers("<Viewpoint USE='A'/>", "<Viewpoint DEF='C'/>",
                            "<Script DEF='S'><field name='known' type='SFNode' accessType='inputOutput'>"
                            "<Viewpoint DEF='A'/></field></Script>"));
    QVERIFY(isIn(scene, "A", "L"));
    QCOMPARE(bound(scene, "A C"), std::string("AC"));
    move(scene, "A", "L", "M");
    QVERIFY(isIn(scene, "A", "M") && !isIn(scene, "A", "L"));
    QCOMPARE(bound(scene, "A C"), std::string("-C"));
}

void tst_LayerMoves::nodeThatOnlyAScriptKnowsStays()
{
    LayerScene scene(layers("<Viewpoint DEF='A'/>", "<Viewpoint DEF='C'/>",
                            "<Script DEF='S'><field name='known' type='SFNode' accessType='inputOutput'>"
                            "</field></Script>"));
    dynamic_cast<SFNode&>(*scene.node("S").findField("known", Node::DECLARED_FSO))
        .setNode(0.0, &scene.node("A"), Field::EXTERNAL_CT);
    take(scene, "A", "L");
    settle(scene);
    QVERIFY(isIn(scene, "A", "L"));
    children(scene, "M").addNode(0.0, &scene.node("A"), Field::EXTERNAL_CT);
    settle(scene);
    QVERIFY(isIn(scene, "A", "M") && !isIn(scene, "A", "L"));
}

void tst_LayerMoves::sensorsSeeTheViewerOfTheirNewLayer()
{
    LayerScene scene(layers("<Viewpoint position='0 0 4'/><ProximitySensor DEF='P' size='99 99 99'/>"
                            "<VisibilitySensor DEF='V' center='0 0 6' size='1 1 1'/>",
                            "<Viewpoint position='0 0 9'/>"));
    settle(scene);
    QCOMPARE(scene.get("P", "position_changed"), std::string("0 0 4"));
    QCOMPARE(scene.get("V", "isActive"), std::string("FALSE"));
    move(scene, "P", "L", "M");
    move(scene, "V", "L", "M");
    QCOMPARE(scene.get("P", "position_changed"), std::string("0 0 9"));
    QCOMPARE(scene.get("V", "isActive"), std::string("TRUE"));
}

void tst_LayerMoves::levelsFollowTheViewerOfTheirNewLayer()
{
    LayerScene scene(layers("<Viewpoint position='0 0 4'/><LOD DEF='D' range='5'><Shape/><Shape/></LOD>",
                            "<Viewpoint position='0 0 9'/>"));
    settle(scene);
    QCOMPARE(scene.get("D", "level_changed"), std::string("0"));
    move(scene, "D", "L", "M");
    QCOMPARE(scene.get("D", "level_changed"), std::string("1"));
}

void tst_LayerMoves::lightsShineOnTheNewLayer()
{
    LayerScene scene(layers("<Group DEF='G'><PointLight/></Group>", ""));
    settle(scene);
    const auto lights = [&](const char* layer) {
        std::vector<osg::NodeCorePtr> found;
        procAs<SceneLayer>(&scene.node(layer))->state().collectLights(found);
        return found.size();
    };
    QCOMPARE(lights("L"), std::size_t(1));
    move(scene, "G", "L", "M");
    QCOMPARE(lights("L"), std::size_t(0));
    QCOMPARE(lights("M"), std::size_t(1));
}

void tst_LayerMoves::nodeInBothStaysInTheFirst()
{
    LayerScene scene(layers("<Viewpoint DEF='A'/>", "<Viewpoint DEF='C'/>"));
    children(scene, "M").addNode(0.0, &scene.node("A"), Field::EXTERNAL_CT);
    settle(scene);
    QVERIFY(isIn(scene, "A", "L") && !isIn(scene, "A", "M"));
    QCOMPARE(bound(scene, "A C"), std::string("AC"));
}

void tst_LayerMoves::restedViewpointComesBackToItsLayer()
{
    LayerScene scene(layers("<Viewpoint DEF='A'/><Viewpoint DEF='B'/>", "<Viewpoint DEF='C'/>"));
    scene.set("B", "set_bind", "TRUE");
    scene.set("A", "set_bind", "TRUE");
    BindableProc& viewpoint = *procAs<BindableProc>(&scene.node("A"));
    QVERIFY(viewpoint.rest(0.0));
    QCOMPARE(bound(scene, "A B"), std::string("-B"));
    children(scene, "M").addNode(0.0, &scene.node("B"), Field::EXTERNAL_CT);
    settle(scene); // meanwhile others are moved
    QVERIFY(!isIn(scene, "A", "L"));
    viewpoint.resume(0.0);
    settle(scene);
    QCOMPARE(bound(scene, "A B C"), std::string("A-C"));
}

void tst_LayerMoves::sceneWithoutLayersStaysAsItWas()
{
    LayerScene scene("<Group DEF='L'><Viewpoint DEF='A'/><Viewpoint DEF='B'/></Group><Group DEF='M'/>");
    scene.set("B", "set_bind", "TRUE");
    move(scene, "B", "L", "M");
    QCOMPARE(bound(scene, "A B"), std::string("-B"));
}

QTEST_GUILESS_MAIN(tst_LayerMoves)
#include "tst_LayerMoves.moc"
