// The panel of the workbench that follows the node picked in a view, over a scene on the screen.
#include "NodeDock.h"
#include "Picker.h"
#include "QorObservingNodeEditor.h"
#include "QorRenderView.h"
#include "QorViewManager.h"
#include "Selection.h"
#include "Steps.h"
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>
#include <Orvane/WindowProc.h>
#include <QAction>
#include <QGLWidget>
#include <QTest>

using namespace Orvane::Qt4;

namespace {

const QString box =
    QStringLiteral("<X3D version='4.0'><Scene><Transform><Shape DEF='%1'><Appearance><Material/></Appearance>"
                   "<Box size='3 3 3'/></Shape></Transform></Scene></X3D>");

} // namespace

class tst_NodeDock : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();
    void pressLeadsToTheShapeWhilePickingIsOn();
    void pressNavigatesWhilePickingIsOff();
    void replacedSceneEmptiesThePanel();

private:
    void runFrames(int count = 3);
    void press();
    QorObservingNodeEditor* editor() const { return _dock->findChild<QorObservingNodeEditor*>(); }
    QString shownName() const
    {
        const Orvane::Node* node = editor()->node();
        return node && node->name() ? QString::fromStdString(*node->name()) : QString();
    }

    QorViewManager* _manager = nullptr;
    Selection* _selection = nullptr;
    Picker* _picker = nullptr;
    NodeDock* _dock = nullptr;
};

void tst_NodeDock::init()
{
    _manager = new QorViewManager(nullptr, QorViewManager::ManualTrigger);
    _selection = new Selection(_manager);
    _picker = new Picker(_manager, _selection, _manager);
    _dock = new NodeDock(_selection, new Steps(_manager), nullptr);
    QVERIFY(_manager->loadContextByString(QStringLiteral("box.x3d"), box.arg(QStringLiteral("First"))));
    _manager->setWindowFlags(_manager->windowFlags() | Qt::FramelessWindowHint);
    _manager->setGeometry(20, 20, 320, 240);
    _manager->show();
    QVERIFY(QTest::qWaitForWindowExposed(_manager));
    runFrames();
}

void tst_NodeDock::cleanup()
{
    delete _dock;
    delete _manager;
}

void tst_NodeDock::runFrames(int count)
{
    for (int i = 0; i < count; ++i) {
        _manager->runFrame();
        QTest::qWait(10);
    }
}

void tst_NodeDock::press()
{
    QWidget* gl = _manager->findChild<QGLWidget*>();
    QTest::mouseClick(gl, Qt::LeftButton, Qt::NoModifier, gl->rect().center());
    runFrames(1);
}

void tst_NodeDock::pressLeadsToTheShapeWhilePickingIsOn()
{
    QVERIFY(!editor()->node());
    _picker->action()->trigger();
    for (const QorRenderView* view : _manager->findChildren<QorRenderView*>())
        QCOMPARE(view->mouseMode(), QorRenderView::PickMode);
    press();
    QVERIFY(editor()->node());
    QCOMPARE(shownName(), QStringLiteral("First"));
    QVERIFY(editor()->model()->rowCount() > 3);
}

void tst_NodeDock::pressNavigatesWhilePickingIsOff()
{
    press();
    QVERIFY(!editor()->node());
    _picker->action()->trigger();
    _picker->action()->trigger();
    press();
    QVERIFY(!editor()->node());
}

void tst_NodeDock::replacedSceneEmptiesThePanel()
{
    _picker->action()->trigger();
    press();
    QCOMPARE(shownName(), QStringLiteral("First"));
    QVERIFY(_manager->loadContextByString(QStringLiteral("box.x3d"), box.arg(QStringLiteral("Second"))));
    runFrames();
    QVERIFY(!editor()->node());
    press();
    QCOMPARE(shownName(), QStringLiteral("Second"));
}

QTEST_MAIN(tst_NodeDock)
#include "tst_NodeDock.moc"
