#include "NavigationScene.h"
#include <Orvane/EventOutSlot.h>
#include <Orvane/Observer.h>

namespace {

const std::string box = "<Shape><Box size='2 2 2'/></Shape>";
const std::string teleport = "<NavigationInfo DEF='I' transitionType='\"TELEPORT\"'/>";
const std::string three = "<Viewpoint DEF='A' position='0 0 10'/><Viewpoint DEF='B' position='5 0 10'/>"
                          "<Viewpoint DEF='C' position='9 0 10'/>";

/// Counts what a field sends.
class Counter : public Orvane::Observer
{
public:
    explicit Counter(Orvane::Field& field)
        : Orvane::Observer("counter")
    {
        field.createOutSlot(false);
        field._outSlot->processEventSubject().attach(*this);
    }
    void notify(const double&, Orvane::BaseObject*, Orvane::BaseObject*, Orvane::BaseObject*) override
    {
        ++count;
    }
    int count = 0;
};

} // namespace

/// The way from one viewpoint to the next, and what of the user's own way lasts beyond it.
class tst_NavigationTransitions : public QObject
{
    Q_OBJECT

private slots:
    void linearTransitionTakesItsTime();
    void animatedTransitionIsSlowAtBothEnds();
    void teleportIsThereAtOnce();
    void unknownTransitionTypesArePassedOver();
    void fieldOfViewGoesAlong();
    void dragEndsATransition();
    void transitionCompleteIsSent();
    void jumpFalseKeepsTheView();
    void retainedOffsetsComeBack();
    void offsetsAreForgottenOtherwise();
    void movingViewpointCarriesTheUser();
};

void tst_NavigationTransitions::linearTransitionTakesItsTime()
{
    NavigationScene scene("<NavigationInfo transitionTime='2'/>"
                          "<Viewpoint/><Viewpoint position='8 0 10' orientation='0 1 0 1'/>" +
                          box);
    scene.send("nextView");
    QCOMPARE_NEAR(scene.eye(), osg::Vec3f(0, 0, 10));
    scene.run(0.5);
    QCOMPARE_NEAR(scene.eye(), osg::Vec3f(2, 0, 10));
    QCOMPARE_NEAR(scene.forward(), osg::Vec3f(-std::sin(0.25F), 0, -std::cos(0.25F)));
    scene.run(0.5);
    QCOMPARE_NEAR(scene.eye(), osg::Vec3f(4, 0, 10));
    scene.run(2.0);
    QCOMPARE(scene.eye(), osg::Vec3f(8, 0, 10));
    QCOMPARE_NEAR(scene.forward(), osg::Vec3f(-std::sin(1.0F), 0, -std::cos(1.0F)));
}

void tst_NavigationTransitions::animatedTransitionIsSlowAtBothEnds()
{
    NavigationScene scene("<NavigationInfo transitionType='\"ANIMATE\"'/>"
                          "<Viewpoint/><Viewpoint position='8 0 10'/>" +
                          box);
    scene.send("nextView");
    scene.run(0.125);
    const float begin = scene.eye()[0];
    QVERIFY(begin > 0.0F && begin < 0.6F);
    scene.run(0.375);
    QVERIFY(qAbs(scene.eye()[0] - 4.0F) < 0.01F);
    scene.run(0.375);
    QVERIFY(qAbs(scene.eye()[0] - (8.0F - begin)) < 0.01F);
    scene.run(0.125);
    QCOMPARE_NEAR(scene.eye(), osg::Vec3f(8, 0, 10));
}

void tst_NavigationTransitions::teleportIsThereAtOnce()
{
    NavigationScene scene("<NavigationInfo transitionTime='0'/><Viewpoint/><Viewpoint position='8 0 10'/>" +
                          box);
    scene.send("nextView");
    QCOMPARE(scene.eye(), osg::Vec3f(8, 0, 10));
}

void tst_NavigationTransitions::unknownTransitionTypesArePassedOver()
{
    NavigationScene scene("<NavigationInfo transitionType='\"SWOOP\" \"TELEPORT\" \"LINEAR\"'/>"
                          "<Viewpoint/><Viewpoint position='8 0 10'/>" +
                          box);
    scene.send("nextView");
    QCOMPARE(scene.eye(), osg::Vec3f(8, 0, 10));
}

void tst_NavigationTransitions::fieldOfViewGoesAlong()
{
    NavigationScene scene("<Viewpoint fieldOfView='0.5'/><Viewpoint fieldOfView='1.5'/>" + box);
    const float before = scene.seenAt(osg::Vec3f(1, 0, 0))[0];
    scene.send("nextView");
    scene.run(0.5);
    const float between = scene.seenAt(osg::Vec3f(1, 0, 0))[0];
    scene.run(0.6);
    const float after = scene.seenAt(osg::Vec3f(1, 0, 0))[0];
    QVERIFY(before > between + 5.0F);
    QVERIFY(between > after + 5.0F);
}

void tst_NavigationTransitions::dragEndsATransition()
{
    NavigationScene scene("<Viewpoint/><Viewpoint position='8 0 10'/>" + box);
    scene.send("nextView");
    scene.run(0.5);
    scene.drag(4, 200, 200, 210, 200);
    const osg::Vec3f there = scene.eye();
    QVERIFY(there[0] > 3.0F && there[0] < 4.0F);
    scene.runFor(1.0);
    QCOMPARE_NEAR(scene.eye(), there);
}

void tst_NavigationTransitions::transitionCompleteIsSent()
{
    NavigationScene scene("<NavigationInfo DEF='I'/><Viewpoint/><Viewpoint position='8 0 10'/>" + box);
    Counter counter(*scene.node("I").findField("transitionComplete", Orvane::Node::DECLARED_FSO));
    scene.send("nextView");
    scene.run(0.9);
    QCOMPARE(counter.count, 0);
    scene.run(0.2);
    QCOMPARE(counter.count, 1);
    scene.run(0.2);
    QCOMPARE(counter.count, 1);
    scene.set("I", "transitionType", "\"TELEPORT\"");
    scene.send("prevView");
    scene.run();
    QCOMPARE(counter.count, 2);
}

void tst_NavigationTransitions::jumpFalseKeepsTheView()
{
    NavigationScene scene("<Viewpoint/><Transform DEF='T'><Viewpoint DEF='B' jump='false' position='5 0 0'/>"
                          "</Transform>" +
                          box);
    scene.drag(1, 200, 200, 250, 200);
    const osg::Matrix still = scene.camera();
    scene.set("B", "set_bind", "TRUE");
    scene.runFor(1.5);
    QVERIFY(scene.camera().equals(still, 1e-4F));
    // From now on the new viewpoint carries the user.
    const osg::Vec3f before = scene.eye();
    scene.set("T", "translation", "0 3 0");
    QCOMPARE_NEAR(scene.eye(), before + osg::Vec3f(0, 3, 0));
}

void tst_NavigationTransitions::retainedOffsetsComeBack()
{
    NavigationScene scene(teleport +
                          "<Viewpoint DEF='A' retainUserOffsets='true'/>"
                          "<Viewpoint DEF='B' position='5 0 10'/>" +
                          box);
    scene.drag(4, 200, 200, 250, 200);
    const osg::Vec3f moved = scene.eye();
    scene.send("nextView");
    QCOMPARE(scene.eye(), osg::Vec3f(5, 0, 10));
    scene.send("nextView");
    QCOMPARE_NEAR(scene.eye(), moved);
}

void tst_NavigationTransitions::offsetsAreForgottenOtherwise()
{
    NavigationScene scene(teleport + three + box);
    scene.drag(4, 200, 200, 250, 200);
    scene.send("nextView");
    scene.send("prevView");
    QCOMPARE(scene.eye(), osg::Vec3f(0, 0, 10));
}

void tst_NavigationTransitions::movingViewpointCarriesTheUser()
{
    NavigationScene scene("<Transform DEF='T'><Viewpoint DEF='A'/></Transform>" + box);
    scene.drag(4, 200, 200, 250, 220);
    const osg::Vec3f before = scene.eye();
    scene.set("T", "translation", "3 0 0");
    QCOMPARE_NEAR(scene.eye(), before + osg::Vec3f(3, 0, 0));
    scene.set("A", "position", "0 2 10");
    QCOMPARE_NEAR(scene.eye(), before + osg::Vec3f(3, 2, 0));
    scene.set("T", "rotation", "0 1 0 1.5707963");
    QCOMPARE_NEAR(scene.forward(), osg::Vec3f(-1, 0, 0));
}

QTEST_GUILESS_MAIN(tst_NavigationTransitions)
#include "tst_NavigationTransitions.moc"
