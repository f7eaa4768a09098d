#include "CoreScene.h"
#include "core/GroupProc.h"
#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGPointLight.h>
#include <OpenSG/OSGSpotLight.h>
#include <Orvane/MFNode.h>
#include <QtTest>

using namespace Orvane;

namespace {

/// The lights above what a tree shows, the outermost first.
std::vector<osg::LightPtr> lightsOf(const osg::NodePtr& tree)
{
    std::vector<osg::LightPtr> lights;
    osg::NodePtr node = tree->getNChildren() > 0 ? tree->getChild(0) : osg::NodePtr();
    while (node) {
        const osg::LightPtr light = osg::LightPtr::dcast(node->getCore());
        if (!light)
            break;
        lights.push_back(light);
        node = node->getChild(0);
    }
    return lights;
}

} // namespace

class tst_Lights : public QObject
{
    Q_OBJECT

private slots:
    void directionalLightShinesOnItsGroup();
    void globalDirectionalLightShinesOnTheScene();
    void pointLightShinesOnTheScene();
    void localPointLightShinesOnItsGroup();
    void fieldsReachTheLight();
    void directionIsTurnedRound();
    void spotLightHasItsCone();
    void badFieldsAreHarmless();
    void lightLeavesWithItsNode();
    void lightMayDieAmongOthersThatChange();
    void lightOfAnUnchosenChildIsDark();
    void childrenStayInOrderBelowALight();
    void globalLightStandsWhereItsGroupIs();
    void lightUsedTwiceShinesTwice();
    void lightsLeaveTheSceneAtRest();
};

void tst_Lights::directionalLightShinesOnItsGroup()
{
    CoreScene scene("DEF G Group { children [ DirectionalLight { } Shape { geometry Box { } } ] } Group { }");
    QCOMPARE(lightsOf(scene.proc().root()).size(), std::size_t(0));
    const auto lights = lightsOf(scene.procOf<GroupProc>("G").tree());
    QCOMPARE(lights.size(), std::size_t(1));
    QVERIFY(osg::DirectionalLightPtr::dcast(lights[0]) != osg::NullFC);
    QVERIFY(!lights[0]->getBeacon());
}

void tst_Lights::globalDirectionalLightShinesOnTheScene()
{
    CoreScene scene("DEF G Group { children [ DEF L DirectionalLight { global TRUE } ] }");
    QCOMPARE(lightsOf(scene.proc().root()).size(), std::size_t(1));
    scene.set("L", "global", "FALSE");
    QCOMPARE(lightsOf(scene.proc().root()).size(), std::size_t(0));
    QCOMPARE(lightsOf(scene.procOf<GroupProc>("G").tree()).size(), std::size_t(1));
}

void tst_Lights::pointLightShinesOnTheScene()
{
    CoreScene scene("DEF G Group { children [ PointLight { location 1 2 3 radius 50 } SpotLight { } ] }");
    const auto lights = lightsOf(scene.proc().root());
    QCOMPARE(lights.size(), std::size_t(2));
    const auto point = osg::PointLightPtr::dcast(lights[0]);
    QCOMPARE(point->getPosition(), osg::Pnt3f(1, 2, 3));
    QCOMPARE(point->getRange(), 50.0F);
}

void tst_Lights::localPointLightShinesOnItsGroup()
{
    CoreScene scene("DEF G Group { children [ PointLight { global FALSE } Shape { } ] }");
    QCOMPARE(lightsOf(scene.proc().root()).size(), std::size_t(0));
    QCOMPARE(lightsOf(scene.procOf<GroupProc>("G").tree()).size(), std::size_t(1));
}

void tst_Lights::fieldsReachTheLight()
{
    CoreScene scene(
        "DEF L PointLight { color 1 0.5 0 intensity 0.5 ambientIntensity 0.2 attenuation 1 2 3 }");
    const osg::LightPtr light = lightsOf(scene.proc().root()).at(0);
    QCOMPARE(light->getDiffuse(), osg::Color4f(0.5F, 0.25F, 0, 1));
    QCOMPARE(light->getSpecular(), osg::Color4f(0.5F, 0.25F, 0, 1));
    QCOMPARE(light->getAmbient(), osg::Color4f(0.2F, 0.1F, 0, 1));
    QCOMPARE(light->getLinearAttenuation(), 2.0F);
    QCOMPARE(light->getQuadraticAttenuation(), 3.0F);
    QVERIFY(light->getOn());
    scene.set("L", "on", "FALSE");
    QVERIFY(!light->getOn());
    scene.set("L", "color", "0 0 1");
    QCOMPARE(light->getDiffuse(), osg::Color4f(0, 0, 0.5F, 1));
}

void tst_Lights::directionIsTurnedRound()
{
    CoreScene scene("DEF L DirectionalLight { global TRUE direction 0 -1 0 }");
    const auto light = osg::DirectionalLightPtr::dcast(lightsOf(scene.proc().root()).at(0));
    QCOMPARE(light->getDirection(), osg::Vec3f(0, 1, 0)); // where the light comes from
}

void tst_Lights::spotLightHasItsCone()
{
    CoreScene scene("DEF L SpotLight { direction 1 0 0 cutOffAngle 0.5 beamWidth 0.7 }");
    const auto light = osg::SpotLightPtr::dcast(lightsOf(scene.proc().root()).at(0));
    QCOMPARE(light->getDirection(), osg::Vec3f(1, 0, 0));
    QCOMPARE(light->getSpotCutOff(), 0.5F);
    QCOMPARE(light->getSpotExponent(), 0.0F); // the beam fills the cone
    scene.set("L", "beamWidth", "0.1");
    QVERIFY(light->getSpotExponent() > 0.0F);
}

void tst_Lights::badFieldsAreHarmless()
{
    CoreScene scene("SpotLight { direction 0 0 0 attenuation 0 0 0 intensity 1e38 cutOffAngle 9 radius -1 }");
    const auto light = osg::SpotLightPtr::dcast(lightsOf(scene.proc().root()).at(0));
    QCOMPARE(light->getDirection(), osg::Vec3f(0, 0, -1));
    QCOMPARE(light->getConstantAttenuation(), 1.0F);
    QCOMPARE(light->getDiffuse().red(), 1.0F);
    QVERIFY(light->getSpotCutOff() < 1.58F);
    QCOMPARE(light->getRange(), 0.0F);
}

void tst_Lights::lightLeavesWithItsNode()
{
    CoreScene scene(
        "DEF G Group { children [ PointLight { } DirectionalLight { } Shape { geometry Box { } } ] }");
    MFNode& children = static_cast<MFNode&>(scene.field("G", "children"));
    children.removeNode(0.0, 0, Field::EXTERNAL_CT);
    children.removeNode(0.0, 0, Field::EXTERNAL_CT);
    scene.context->runFrame();
    QCOMPARE(lightsOf(scene.proc().root()).size(), std::size_t(0));
    QCOMPARE(lightsOf(scene.procOf<GroupProc>("G").tree()).size(), std::size_t(0));
    osg::Pnt3f low, high;
    scene.proc().root()->getVolume(true).getBounds(low, high);
    QCOMPARE(high, osg::Pnt3f(1, 1, 1));
}

void tst_Lights::lightMayDieAmongOthersThatChange()
{
    // The lights over the scene are hung anew before the group of the dead one has told that it is gone.
    CoreScene scene("DEF G Group { children SpotLight { global TRUE } } "
                    "Switch { whichChoice -1 children DEF D DirectionalLight { global FALSE } }");
    QCOMPARE(lightsOf(scene.proc().root()).size(), std::size_t(1));
    auto& children = static_cast<MFNode&>(*scene.root()->findField("children", Node::DECLARED_FSO));
    children.addNode(0.0, &scene.node("D"), Field::EXTERNAL_CT);
    static_cast<MFNode&>(scene.field("G", "children")).removeNode(0.0, 0, Field::EXTERNAL_CT);
    scene.context->runFrame();
    const std::vector<osg::LightPtr> lights = lightsOf(scene.proc().root());
    QCOMPARE(lights.size(), std::size_t(1));
    QVERIFY(osg::DirectionalLightPtr::dcast(lights[0]));
}

void tst_Lights::lightOfAnUnchosenChildIsDark()
{
    CoreScene scene("DEF S Switch { whichChoice -1 children Group { children PointLight { } } }");
    QCOMPARE(lightsOf(scene.proc().root()).size(), std::size_t(0));
    scene.set("S", "whichChoice", "0");
    QCOMPARE(lightsOf(scene.proc().root()).size(), std::size_t(1));
    scene.set("S", "whichChoice", "-1");
    QCOMPARE(lightsOf(scene.proc().root()).size(), std::size_t(0));
}

void tst_Lights::childrenStayInOrderBelowALight()
{
    CoreScene scene("DEF G Group { children [ DEF A Group { } DEF B Group { } ] }");
    MFNode& children = static_cast<MFNode&>(scene.field("G", "children"));
    const NodeRef light = createNode(*scene.context, *findType("DirectionalLight"), HOST_NC);
    children.insertNode(0.0, 1, light.get(), Field::EXTERNAL_CT);
    const NodeRef last = createNode(*scene.context, *findType("Group"), HOST_NC);
    children.addNode(0.0, last.get(), Field::EXTERNAL_CT);
    scene.context->runFrame();
    const osg::NodePtr tree = scene.procOf<GroupProc>("G").tree();
    QCOMPARE(lightsOf(tree).size(), std::size_t(1));
    const osg::NodePtr content = tree->getChild(0)->getChild(0);
    QCOMPARE(content->getNChildren(), 3U);
    QVERIFY(content->getChild(0) == scene.procOf<GroupProc>("A").tree());
    QVERIFY(content->getChild(2) == procAs<GroupProc>(last.get())->tree());
}

void tst_Lights::globalLightStandsWhereItsGroupIs()
{
    CoreScene scene("DEF T Transform { translation 5 0 0 children PointLight { } }");
    const osg::LightPtr light = lightsOf(scene.proc().root()).at(0);
    QCOMPARE(light->getBeacon()->getToWorld()[3][0], 5.0F);
    scene.set("T", "translation", "6 0 0");
    QCOMPARE(light->getBeacon()->getToWorld()[3][0], 6.0F);
}

void tst_Lights::lightUsedTwiceShinesTwice()
{
    CoreScene scene("Transform { translation 5 0 0 children DEF L PointLight { } }"
                    "Transform { translation -5 0 0 children USE L }");
    const auto lights = lightsOf(scene.proc().root());
    QCOMPARE(lights.size(), std::size_t(2));
    QVERIFY(lights[0]->getBeacon()->getToWorld()[3][0] != lights[1]->getBeacon()->getToWorld()[3][0]);
}

void tst_Lights::lightsLeaveTheSceneAtRest()
{
    CoreScene scene("PointLight { } DirectionalLight { } Group { children PointLight { } }");
    QVERIFY(scene.context->runFrame() > 0.05);
}

QTEST_GUILESS_MAIN(tst_Lights)
#include "tst_Lights.moc"
