#include "QorRenderView.h"
#include "QorViewManager.h"
#include <OpenSG/OSGCamera.h>
#include <OpenSG/OSGViewport.h>
#include <OpenSG/OSGWindow.h>
#include <Orvane/Field.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/Window.h>
#include <Orvane/WindowProc.h>
#include <QScreen>
#include <QTest>

using namespace Orvane::Qt4;

namespace {

/// A button of a display in the upper left corner of the window, over a box that is drawn in the whole of it.
const QString scene = QStringLiteral(
    "<X3D version='4.0' profile='Full'><Scene><NavigationInfo transitionType='\"TELEPORT\"'/>"
    "<Group><TouchSensor DEF='T'/><Shape><Box size='30 30 1'/></Shape></Group><Viewpoint DEF='A'/>"
    "<Viewpoint DEF='B' position='0 0 20'/><LayerSet DEF='S' order='0 1 2'>"
    "<LayoutLayer><LayoutGroup><Layout align='\"LEFT\" \"TOP\"' size='60 30' sizeUnits='\"PIXEL\" \"PIXEL\"' "
    "scaleMode='\"PIXEL\" \"PIXEL\"'/><TouchSensor DEF='U'/><Shape DEF='Knob'><Appearance><Material "
    "diffuseColor='0 0 0' emissiveColor='0 1 0'/></Appearance><Rectangle2D size='60 30'/></Shape>"
    "</LayoutGroup></LayoutLayer><Layer DEF='Map'><Viewport clipBoundary='0.5 1 0 0.5'/><PlaneSensor "
    "DEF='P'/>"
    "<Transform DEF='Slides'><Shape><Box size='8 8 1'/></Shape></Transform></Layer></LayerSet>"
    "<BooleanFilter DEF='F'/><ROUTE fromNode='U' fromField='isActive' toNode='F' toField='set_boolean'/>"
    "<ROUTE fromNode='F' fromField='inputTrue' toNode='B' toField='set_bind'/><ROUTE fromNode='P' "
    "fromField='translation_changed' toNode='Slides' toField='translation'/></Scene></X3D>");

} // namespace

/// Layers in a render view on the screen, under a real mouse.
class tst_LayersInView : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void displayIsDrawnInItsCorner();
    void clickReachesTheButtonInTheDisplay();
    void clickBesideTheButtonReachesTheScene();
    void dragMovesWhatTheLayerHolds();
    void buttonStaysInItsCorner();
    void dragNavigatesInTheActiveLayer();

private:
    void runFrames(int count = 3)
    {
        for (int i = 0; i < count; ++i) {
            _manager->runFrame();
            QTest::qWait(5);
        }
    }
    Orvane::Field& field(const char* node, const char* name) const
    {
        Orvane::NodeNameSpace* const names = Orvane::NodeNameSpace::findNameSpace(
            nullptr, "scene", _view->windowProc()->window()->context(), false);
        return *Orvane::NodeNameSpace::findNode(names, node)->findField(name, Orvane::Node::DECLARED_FSO);
    }
    QString get(const char* node, const char* name) const
    {
        return QString::fromStdString(field(node, name).valueToString());
    }
    void click(const QPoint& place)
    {
        QTest::mouseMove(_view, place);
        runFrames();
        QTest::mousePress(_view, Qt::LeftButton, Qt::NoModifier, place);
        runFrames();
        QTest::mouseRelease(_view, Qt::LeftButton, Qt::NoModifier, place);
        runFrames();
    }
    osg::Vec3f eyeOf(unsigned int port) const
    {
        osg::Matrix viewing;
        _view->windowProc()->winPtr()->getPort(port)->getCamera()->getViewing(viewing, 300, 300);
        viewing.invert();
        return osg::Vec3f(viewing[3][0], viewing[3][1], viewing[3][2]);
    }
    QColor screenColor(const QPoint& place) const
    {
        const QPoint onScreen = _view->mapToGlobal(place);
        return _view->screen()->grabWindow(0, onScreen.x(), onScreen.y(), 1, 1).toImage().pixelColor(0, 0);
    }

    std::unique_ptr<QorViewManager> _manager;
    QorRenderView* _view = nullptr;
};

void tst_LayersInView::init()
{
    _manager = std::make_unique<QorViewManager>(nullptr, QorViewManager::ManualTrigger);
    _manager->loadContextByString(QStringLiteral("layers.x3d"), scene);
    _manager->setWindowFlags(_manager->windowFlags() | Qt::FramelessWindowHint);
    _manager->setGeometry(QRect(40, 40, 300, 300));
    _manager->show();
    QVERIFY(QTest::qWaitForWindowExposed(_manager.get()));
    runFrames(5);
    _view = _manager->findChild<QorRenderView*>();
    QVERIFY(_view);
}

void tst_LayersInView::cleanup()
{
    _manager.reset();
}

void tst_LayersInView::displayIsDrawnInItsCorner()
{
    runFrames(5);
    QCOMPARE(screenColor(QPoint(3, 3)), QColor(Qt::green));
    QCOMPARE(screenColor(QPoint(57, 27)), QColor(Qt::green));
    QVERIFY(screenColor(QPoint(64, 15)) != QColor(Qt::green));
    QVERIFY(screenColor(QPoint(30, 34)) != QColor(Qt::green));
}

void tst_LayersInView::clickReachesTheButtonInTheDisplay()
{
    click(QPoint(20, 10));
    QVERIFY(get("U", "touchTime").toDouble() > 0.0);
    QCOMPARE(get("B", "isBound"), QStringLiteral("TRUE"));
    const QStringList point = get("U", "hitPoint_changed").split(QLatin1Char(' '));
    QVERIFY(qAbs(point.at(0).toDouble() + 10.0) < 1.5);
    QVERIFY(qAbs(point.at(1).toDouble() - 5.0) < 1.5);
    QCOMPARE(get("T", "isOver"), QStringLiteral("FALSE"));
    QCOMPARE(_view->cursor().shape(), Qt::PointingHandCursor);
}

void tst_LayersInView::clickBesideTheButtonReachesTheScene()
{
    click(QPoint(100, 100));
    QCOMPARE(get("A", "isBound"), QStringLiteral("TRUE"));
    QVERIFY(get("T", "touchTime").toDouble() > 0.0);
    QVERIFY(!(get("U", "touchTime").toDouble() > 0.0));
}

void tst_LayersInView::dragMovesWhatTheLayerHolds()
{
    const QPoint middle(_view->width() * 3 / 4, _view->height() * 3 / 4);
    QTest::mousePress(_view, Qt::LeftButton, Qt::NoModifier, middle);
    runFrames();
    QTest::mouseMove(_view, middle - QPoint(20, 0));
    runFrames();
    QTest::mouseMove(_view, middle - QPoint(40, 0));
    runFrames();
    QTest::mouseRelease(_view, Qt::LeftButton, Qt::NoModifier, middle - QPoint(40, 0));
    runFrames();
    // The front of the box is 9.5 units away, and the layer is half as high as the view.
    const double expected = -40.0 * 2.0 * 4.142 * 0.95 / (_view->height() / 2.0);
    const double moved = get("Slides", "translation").split(QLatin1Char(' ')).at(0).toDouble();
    QVERIFY2(qAbs(moved - expected) < 0.1, qPrintable(QString::number(moved)));
}

void tst_LayersInView::buttonStaysInItsCorner()
{
    _manager->resize(500, 240);
    QTest::qWait(50);
    runFrames(5);
    click(QPoint(55, 25));
    QCOMPARE(get("B", "isBound"), QStringLiteral("TRUE"));
}

void tst_LayersInView::dragNavigatesInTheActiveLayer()
{
    field("S", "activeLayer").setValueByStr(0.0, "2");
    runFrames();
    QTest::keyClick(_view, Qt::Key_Left);
    runFrames(10);
    QVERIFY(qAbs(eyeOf(2)[0]) > 0.01F);
    QCOMPARE(eyeOf(0), osg::Vec3f(0, 0, 10));
}

QTEST_MAIN(tst_LayersInView)
#include "tst_LayersInView.moc"
