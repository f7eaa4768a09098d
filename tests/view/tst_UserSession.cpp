#include "OSCQGLWidget.h"
#include "QorRenderView.h"
#include "QorViewManager.h"
#include "QorWindowToolbar.h"
#include "RealInput.h"
#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGLight.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGViewport.h>
#include <Orvane/Context.h>
#include <Orvane/Field.h>
#include <Orvane/MFNode.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/Viewarea.h>
#include <Orvane/ViewareaProc.h>
#include <Orvane/Window.h>
#include <Orvane/WindowProc.h>
#include <QGuiApplication>
#include <QPushButton>
#include <QScreen>
#include <QTest>
#include <QTouchDevice>

using namespace Orvane::Qt4;
using RealInput::comesTrue;

namespace {

const QString scene = QStringLiteral(
    "<X3D version='4.0' profile='Full'><Scene><Background skyColor='0.2 0.4 0.8'/>"
    "<NavigationInfo transitionType='\"TELEPORT\"'/>"
    "<Viewpoint DEF='Front'/><Viewpoint DEF='Right' position='12 0 0' orientation='0 1 0 1.5708'/>"
    "<Viewpoint DEF='High' position='0 9 0' orientation='1 0 0 -1.5708'/>"
    "<Transform translation='-2 0 0'><TouchSensor DEF='T'/><Shape DEF='Left'><Appearance><Material "
    "emissiveColor='0.8 0 0'/></Appearance><Box/></Shape></Transform>"
    "<Transform DEF='Slot' translation='2 0 0'><PlaneSensor DEF='P'/><Transform DEF='Slider'>"
    "<Shape DEF='Slides'><Appearance><Material/></Appearance><Box/></Shape></Transform></Transform>"
    "<Transform translation='0 -3 0'><Anchor url='\"#Right\"'><Shape><Box size='1 1 1'/></Shape>"
    "</Anchor></Transform>"
    "<ROUTE fromNode='P' fromField='translation_changed' toNode='Slider' "
    "toField='translation'/></Scene></X3D>");

} // namespace

/// One user, from the start of the program to its end: the pointer, its buttons and wheel, and the keys are
/// those of the window system, and the scene runs by its own timer.
class tst_UserSession : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase();
    void cleanupTestCase();

    void dragTurnsTheView();
    void resetButtonTakesBack();
    void middleAndRightDragsShiftAndComeCloser();
    void wheelComesCloser();
    void arrowKeyTurns();
    void pointerOverASensorIsAHand();
    void clickReachesTheTouchSensor();
    void dragMovesWhatThePlaneSensorMoves();
    void controlClickOpensTheAnchor();
    void viewButtonsStep();
    void showAllButtonShowsAll();
    void headlightButtonSwitches();
    void pictureButtonsChangeThePicture_data();
    void pictureButtonsChangeThePicture();
    void walkAndFlyButtonsLetTheUserTravel_data();
    void walkAndFlyButtonsLetTheUserTravel();
    void everyButtonWasPressed();
    void lastButtonFoldsTheStrip();
    void pickModePicks();
    void fingerTurnsTheView();
    void fingersPinch();
    void fingerReachesTheTouchSensor();

private:
    static bool input(const char* words) { return RealInput::say(QString::fromLatin1(words)); }
    bool pointTo(const QPoint& place) const { return RealInput::moveTo(_view->mapToGlobal(place)); }
    /// Presses, moves in steps, and lets go.
    bool drag(int button, const QPoint& from, const QPoint& by) const
    {
        return RealInput::drag(_view->mapToGlobal(from), by, button);
    }
    bool press(const char* name)
    {
        _pressed << QString::fromLatin1(name);
        const auto* button = _view->findChild<QPushButton*>(QString::fromLatin1(name));
        return button && RealInput::click(button->mapToGlobal(button->rect().center()));
    }

    osg::ViewportPtr port() const
    {
        auto* area =
            dynamic_cast<Orvane::Viewarea*>(_view->windowProc()->window()->viewareas()->elem(0).node());
        return area->getViewareaProc()->vptPtr();
    }
    osg::Vec3f eye() const
    {
        osg::Matrix viewing;
        port()->getCamera()->getViewing(viewing, 400, 300);
        viewing.invert();
        return osg::Vec3f(viewing[3][0], viewing[3][1], viewing[3][2]);
    }
    bool isAt(float x, float y, float z) const { return (eye() - osg::Vec3f(x, y, z)).length() < 0.05F; }
    bool isAtFront() const { return isAt(0, 0, 10); }
    bool goBack()
    {
        return press("firstView") && press("resetViewPosition") && comesTrue([this] { return isAtFront(); });
    }
    /// The widget's pixels of a place on the plane z = 1, seen from the front.
    QPoint place(double x, double y) const
    {
        const double scale = _view->height() / 2.0 / (9.0 * 0.41421);
        return {qRound(_view->width() / 2.0 + x * scale), qRound(_view->height() / 2.0 - y * scale)};
    }
    QPoint sky() const { return place(0, 2.4); }
    QString get(const char* node, const char* field) const
    {
        Orvane::NodeNameSpace* const names = Orvane::NodeNameSpace::findNameSpace(
            nullptr, "scene", _view->windowProc()->window()->context(), false);
        const Orvane::Node* const found = Orvane::NodeNameSpace::findNode(names, node);
        return QString::fromStdString(found->findField(field, Orvane::Node::DECLARED_FSO)->valueToString());
    }
    QImage picture() const
    {
        const QPoint corner = _view->mapToGlobal(QPoint(0, 24));
        return QGuiApplication::primaryScreen()
            ->grabWindow(0, corner.x(), corner.y(), _view->width(), _view->height() - 24)
            .toImage();
    }

    QorViewManager* _manager = nullptr;
    QorRenderView* _view = nullptr;
    QTouchDevice* _device = nullptr;
    QStringList _pressed;
};

void tst_UserSession::initTestCase()
{
    _device = QTest::createTouchDevice();
    _manager = new QorViewManager(nullptr, QorViewManager::TimerTrigger);
    QVERIFY(_manager->loadContextByString(QStringLiteral("session.x3d"), scene));
    _manager->setWindowFlags(_manager->windowFlags() | Qt::FramelessWindowHint);
    _manager->setGeometry(60, 40, 400, 300);
    _manager->show();
    QVERIFY(QTest::qWaitForWindowExposed(_manager));
    _view = _manager->findChild<QorRenderView*>();
    QVERIFY(_view);
    _view->setToolbar(true);
    _manager->activateWindow();
    _view->setFocus();
    QVERIFY(comesTrue([this] { return isAtFront() && _view->hasFocus(); }));
}

void tst_UserSession::cleanupTestCase()
{
    delete _manager;
}

void tst_UserSession::dragTurnsTheView()
{
    QVERIFY(drag(1, sky(), QPoint(-60, 0)));
    QVERIFY(comesTrue([this] { return eye()[0] > 2.0F; }));
    QVERIFY(qAbs(eye()[1]) < 0.01F);
    const osg::Vec3f turned = eye();
    QVERIFY(drag(1, sky(), QPoint(0, 40)));
    QVERIFY(comesTrue([&] { return eye()[1] > turned[1] + 1.0F; }));
    // Whoever lets go is let go.
    const osg::Vec3f still = eye();
    QVERIFY(pointTo(place(3, 2)));
    QTest::qWait(150);
    QVERIFY((eye() - still).length() < 1e-3F);
}

void tst_UserSession::resetButtonTakesBack()
{
    QVERIFY(press("resetViewPosition"));
    QVERIFY(comesTrue([this] { return isAtFront(); }));
}

void tst_UserSession::middleAndRightDragsShiftAndComeCloser()
{
    QVERIFY(drag(2, sky(), QPoint(50, 0)));
    QVERIFY(comesTrue([this] { return eye()[0] < -0.5F; }));
    QVERIFY(qAbs(eye()[2] - 10.0F) < 0.05F);
    QVERIFY(goBack());
    QVERIFY(drag(3, place(0, 0), QPoint(0, -30)));
    QVERIFY(comesTrue([this] { return eye()[2] < 9.0F; }));
    QVERIFY(goBack());
}

void tst_UserSession::wheelComesCloser()
{
    QVERIFY(pointTo(place(0, 0)));
    QVERIFY(input("click 4"));
    QVERIFY(comesTrue([this] { return eye()[2] < 9.5F; }));
    const float closer = eye()[2];
    QVERIFY(input("click 5"));
    QVERIFY(comesTrue([&] { return eye()[2] > closer + 0.5F; }));
    QVERIFY(goBack());
}

void tst_UserSession::arrowKeyTurns()
{
    QVERIFY(pointTo(sky()));
    QVERIFY(input("keydown Right"));
    QVERIFY(comesTrue([this] { return eye()[0] > 1.0F; }));
    QVERIFY(input("keyup Right"));
    QTest::qWait(100);
    const osg::Vec3f still = eye();
    QTest::qWait(150);
    QVERIFY((eye() - still).length() < 1e-3F);
    QVERIFY(input("key r"));
    QVERIFY(comesTrue([this] { return isAtFront(); }));
}

void tst_UserSession::pointerOverASensorIsAHand()
{
    QVERIFY(pointTo(sky()));
    QVERIFY(comesTrue([this] { return _view->cursor().shape() == Qt::ArrowCursor; }));
    QVERIFY(pointTo(place(-2, 0)));
    QVERIFY(comesTrue([this] { return _view->cursor().shape() == Qt::PointingHandCursor; }));
    QCOMPARE(get("T", "isOver"), QStringLiteral("TRUE"));
}

void tst_UserSession::clickReachesTheTouchSensor()
{
    const QString before = get("T", "touchTime");
    QVERIFY(pointTo(place(-2, 0)));
    QVERIFY(input("mousedown 1"));
    QVERIFY(comesTrue([this] { return get("T", "isActive") == QLatin1String("TRUE"); }));
    QVERIFY(input("mouseup 1"));
    QVERIFY(comesTrue([&] { return get("T", "touchTime") != before; }));
    QCOMPARE(get("T", "isActive"), QStringLiteral("FALSE"));
    QVERIFY(isAtFront());
}

void tst_UserSession::dragMovesWhatThePlaneSensorMoves()
{
    QVERIFY(drag(1, place(2, 0), place(3, 1) - place(2, 0)));
    QVERIFY(comesTrue([this] { return get("Slider", "translation") != QLatin1String("0 0 0"); }));
    const QStringList moved = get("Slider", "translation").split(QLatin1Char(' '));
    QVERIFY2(qAbs(moved.at(0).toDouble() - 1.0) < 0.15, qPrintable(moved.join(QLatin1Char(' '))));
    QVERIFY2(qAbs(moved.at(1).toDouble() - 1.0) < 0.15, qPrintable(moved.join(QLatin1Char(' '))));
    QVERIFY(isAtFront());
}

void tst_UserSession::controlClickOpensTheAnchor()
{
    QVERIFY(pointTo(place(0, -2.9)));
    QVERIFY(input("keydown ctrl click 1 keyup ctrl"));
    QVERIFY(comesTrue([this] { return isAt(12, 0, 0); }));
    QVERIFY(goBack());
}

void tst_UserSession::viewButtonsStep()
{
    QVERIFY(press("nextView"));
    QVERIFY(comesTrue([this] { return isAt(12, 0, 0); }));
    QVERIFY(press("lastView"));
    QVERIFY(comesTrue([this] { return isAt(0, 9, 0); }));
    QVERIFY(press("prevView"));
    QVERIFY(comesTrue([this] { return isAt(12, 0, 0); }));
    QVERIFY(press("firstView"));
    QVERIFY(comesTrue([this] { return isAtFront(); }));
}

void tst_UserSession::showAllButtonShowsAll()
{
    QVERIFY(drag(3, sky(), QPoint(0, -60)));
    QVERIFY(comesTrue([this] { return !isAtFront(); }));
    QVERIFY(press("showAll"));
    const auto seen = [this](float x, float y) {
        osg::Matrix clip;
        port()->getCamera()->getWorldToScreen(clip, *port());
        osg::Pnt3f point(x, y, 0);
        clip.multFullMatrixPnt(point);
        return std::abs(point[0]) <= 1.0F && std::abs(point[1]) <= 1.0F;
    };
    QVERIFY(comesTrue([&] { return seen(-3, -1) && seen(4, 2) && seen(0, -3.5F); }));
    QVERIFY(goBack());
}

void tst_UserSession::headlightButtonSwitches()
{
    const auto isOn = [this] { return osg::LightPtr::dcast(port()->getRoot()->getCore())->getOn(); };
    QVERIFY(isOn());
    QVERIFY(press("toggleHeadlight"));
    QVERIFY(comesTrue([&] { return !isOn(); }));
    QVERIFY(press("toggleHeadlight"));
    QVERIFY(comesTrue([&] { return isOn(); }));
}

void tst_UserSession::pictureButtonsChangeThePicture_data()
{
    QTest::addColumn<int>("steps");
    QTest::newRow("toggleDrawVolume") << 2;
    QTest::newRow("nextDrawMode") << 3;
    QTest::newRow("nextInfoScreen") << 3;
}

void tst_UserSession::pictureButtonsChangeThePicture()
{
    QFETCH(int, steps);
    const char* const name = QTest::currentDataTag();
    // Where the pointer rests while the button is pressed, so that sensors and button look the same.
    QVERIFY(goBack());
    const QImage first = picture();
    QImage before = first;
    for (int i = 1; i < steps; ++i) {
        QVERIFY(press(name));
        QVERIFY(comesTrue([&] { return picture() != before; }));
        QTest::qWait(50);
        before = picture();
        QVERIFY(before != first);
    }
    QVERIFY(press(name));
    QVERIFY(comesTrue([&] { return picture() == first; }));
}

void tst_UserSession::walkAndFlyButtonsLetTheUserTravel_data()
{
    QTest::addColumn<QString>("button");
    QTest::newRow("walk") << QStringLiteral("walkNav");
    QTest::newRow("fly") << QStringLiteral("flyNav");
}

void tst_UserSession::walkAndFlyButtonsLetTheUserTravel()
{
    QFETCH(QString, button);
    QVERIFY(press(button.toLatin1().constData()));
    QVERIFY(pointTo(place(0, 1.5)));
    QVERIFY(input("mousedown 1"));
    QVERIFY(pointTo(place(0, 3)));
    // As long as the button is held.
    QVERIFY(comesTrue([this] { return eye()[2] < 9.0F; }));
    const float here = eye()[2];
    QVERIFY(comesTrue([&] { return eye()[2] < here - 0.5F; }));
    QVERIFY(input("mouseup 1"));
    QVERIFY(press("examineNav"));
    QVERIFY(goBack());
    QVERIFY(drag(1, sky(), QPoint(-60, 0)));
    QVERIFY(comesTrue([this] { return eye()[0] > 2.0F; }));
    QVERIFY(goBack());
}

void tst_UserSession::everyButtonWasPressed()
{
    const auto buttons = _view->findChildren<QPushButton*>();
    QCOMPARE(buttons.size(), 14);
    for (const QPushButton* button : buttons)
        QVERIFY2(button->objectName().isEmpty() || _pressed.contains(button->objectName()),
                 qPrintable(button->objectName()));
}

void tst_UserSession::lastButtonFoldsTheStrip()
{
    const auto* const strip = _view->findChild<QorWindowToolbar*>();
    const int whole = strip->width();
    const auto clickTheLast = [&] {
        return RealInput::click(_view->mapToGlobal(QPoint(_view->width() - 10, 10)));
    };
    QVERIFY(clickTheLast());
    QVERIFY(comesTrue([&] { return strip->width() == 20; }));
    QCOMPARE(strip->x(), _view->width() - 20);
    // What the strip gave free belongs to the view.
    QVERIFY(drag(1, QPoint(_view->width() - 100, 10), QPoint(-60, 0)));
    QVERIFY(comesTrue([this] { return eye()[0] > 2.0F; }));
    QVERIFY(clickTheLast());
    QVERIFY(comesTrue([&] { return strip->width() == whole; }));
    QVERIFY(goBack());
}

void tst_UserSession::pickModePicks()
{
    QStringList picked;
    osg::Pnt3f point;
    osg::Vec3f normal;
    const auto names =
        connect(_view, &QorRenderView::nodePickedHierachy, [&](const std::vector<Orvane::Node*>& nodes) {
            const std::string* name = nodes.back()->name();
            picked << (name ? QString::fromStdString(*name) : QString());
        });
    const auto data = connect(_view, &QorRenderView::nodePickedHitData,
                              [&](const osg::Pnt3f& hit, const osg::Vec3f& direction) {
                                  point = hit;
                                  normal = direction;
                              });
    _view->setMouseMode(QorRenderView::PickMode);
    const QString before = get("T", "touchTime");
    QVERIFY(pointTo(place(-2.3, 0.4)) && input("click 1"));
    QVERIFY(comesTrue([&] { return picked.size() == 1; }));
    QCOMPARE(picked.first(), QStringLiteral("Left"));
    QVERIFY((point - osg::Pnt3f(-2.3F, 0.4F, 1)).length() < 0.05F);
    QVERIFY((normal - osg::Vec3f(0, 0, 1)).length() < 1e-3F);
    QVERIFY(pointTo(sky()) && input("click 1"));
    QVERIFY(drag(1, sky(), QPoint(-60, 0)));
    QCOMPARE(picked.size(), 1);
    QVERIFY(isAtFront());
    QCOMPARE(get("T", "touchTime"), before);
    // The wheel goes on.
    QVERIFY(input("click 4"));
    QVERIFY(comesTrue([this] { return !isAtFront(); }));
    _view->setMouseMode(QorRenderView::NavigationMode);
    disconnect(names);
    disconnect(data);
    QVERIFY(goBack());
}

void tst_UserSession::fingerTurnsTheView()
{
    auto* const widget = _view->findChild<OSCQGLWidget*>();
    QTest::touchEvent(widget, _device).press(0, sky(), widget);
    QTest::qWait(60);
    for (int i = 1; i <= 4; ++i) {
        QTest::touchEvent(widget, _device).move(0, sky() - QPoint(15 * i, 0), widget);
        QTest::qWait(60);
    }
    QTest::touchEvent(widget, _device).release(0, sky() - QPoint(60, 0), widget);
    QVERIFY(comesTrue([this] { return eye()[0] > 2.0F; }));
    // The mouse is heard again.
    QVERIFY(goBack());
}

void tst_UserSession::fingersPinch()
{
    auto* const widget = _view->findChild<OSCQGLWidget*>();
    const QPoint middle = place(0, 0);
    QTest::touchEvent(widget, _device)
        .press(0, middle - QPoint(20, 0), widget)
        .press(1, middle + QPoint(20, 0), widget);
    QTest::qWait(60);
    for (int i = 1; i <= 4; ++i) {
        QTest::touchEvent(widget, _device)
            .move(0, middle - QPoint(20 + 5 * i, 0), widget)
            .move(1, middle + QPoint(20 + 5 * i, 0), widget);
        QTest::qWait(60);
    }
    QTest::touchEvent(widget, _device)
        .release(0, middle - QPoint(40, 0), widget)
        .release(1, middle + QPoint(40, 0), widget);
    QVERIFY(comesTrue([this] { return eye()[2] < 7.0F; }));
    QVERIFY(goBack());
}

void tst_UserSession::fingerReachesTheTouchSensor()
{
    auto* const widget = _view->findChild<OSCQGLWidget*>();
    const QString before = get("T", "touchTime");
    QTest::touchEvent(widget, _device).press(3, place(-2, 0), widget);
    QVERIFY(comesTrue([this] { return get("T", "isActive") == QLatin1String("TRUE"); }));
    QTest::touchEvent(widget, _device).release(3, place(-2, 0), widget);
    QVERIFY(comesTrue([&] { return get("T", "touchTime") != before; }));
    QVERIFY(isAtFront());
}

QTEST_MAIN(tst_UserSession)
#include "tst_UserSession.moc"
