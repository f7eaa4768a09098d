// Finding in the panels of the workbench, and the way from a line of the log to what it speaks of.
#include "CodeDock.h"
#include "FindBar.h"
#include "LogDock.h"
#include "LogPlace.h"
#include "NodeDock.h"
#include "SceneDock.h"
#include "SceneTreeView.h"
#include "Selection.h"
#include "SourceView.h"
#include "WorkbenchWindow.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/Node.h>
#include <QAbstractButton>
#include <QLineEdit>
#include <QStatusBar>
#include <QTemporaryDir>
#include <QTextBlock>
#include <QTextEdit>
#include <QorCodeWidget.h>
#include <QorNodeEditorTreeView.h>
#include <QorTools.h>
#include <QorViewManager.h>
#include <QtTest>

class tst_Find : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup();

    void ctrlFOpensTheBarOfThePanelWithTheFocus();
    void escapeGivesTheFocusBack();
    void nodesAreFoundByName();
    void nodesAreFoundByType();
    void findingGoesRoundBothWays();
    void aSharedNodeIsFoundOnce();
    void bodiesAreSearchedWhenTheyAreShown();
    void nothingIsFound();
    void fieldsAreFoundByNameValueAndType();
    void linesAreFoundByText();
    void linesAreFoundByLevel();

    void wordsOfALine_data();
    void wordsOfALine();
    void aLineLeadsToItsNode();
    void aLineLeadsToItsLineOfCode();
    void aLineLeadsToItsLineOfAFile();
    void aLineThatLeadsNowhereIsTold();

private:
    SceneDock* scene() const { return _window->findChild<SceneDock*>(); }
    LogDock* log() const { return _window->findChild<LogDock*>(); }
    QTextEdit* pane() const { return log()->findChild<QTextEdit*>(QStringLiteral("textView")); }
    QString selected() const
    {
        return Orvane::Qt4::fromRuntime(Orvane::Qt4::nodeName(_window->selection()->node()));
    }
    void tell(const QStringList& lines) const;
    void doubleClick(const QString& line) const;
    void press(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) const
    {
        QTest::keyClick(QApplication::focusWidget(), static_cast<Qt::Key>(key), modifiers);
    }

    std::unique_ptr<WorkbenchWindow> _window;
    QTemporaryDir _folder;
    QString _file;
};

namespace {

const char sceneText[] = R"(<X3D version='4.0'><Scene>
<ProtoDeclare name='Lamp'><ProtoInterface/><ProtoBody><Group DEF='Inside'/></ProtoBody></ProtoDeclare>
<Transform DEF='Rig'>
  <Transform DEF='Arm'><Shape><Sphere DEF='Ball' radius='0.25'/></Shape></Transform>
  <Transform DEF='Forearm'><Shape DEF='Shared'><Box/></Shape></Transform>
  <Transform DEF='Hand'><Shape USE='Shared'/></Transform>
</Transform>
<ProtoInstance name='Lamp' DEF='Desk'/>
<Script DEF='Brain'><![CDATA[ecmascript:
function initialize() {
    noSuchThing();
}
]]></Script>
</Scene></X3D>
)";

} // namespace

void tst_Find::init()
{
    _file = _folder.filePath(QStringLiteral("scene.x3d"));
    QFile file(_file);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(sceneText);
    file.close();
    _window = std::make_unique<WorkbenchWindow>(false);
    _window->resize(1000, 700);
    _window->show();
    QVERIFY(QTest::qWaitForWindowActive(_window.get()));
    QVERIFY2(_window->open(_file), qPrintable(_window->loadError()));
}

void tst_Find::cleanup()
{
    _window.reset();
}

void tst_Find::tell(const QStringList& lines) const
{
    for (const QString& line : lines) {
        const osg::LogLock lock;
        osg::osgLog().doLog("%s\n", line.toUtf8().constData());
    }
    QTRY_VERIFY(pane()->toPlainText().contains(lines.last()));
}

void tst_Find::doubleClick(const QString& line) const
{
    QTextCursor cursor = pane()->document()->find(line);
    QVERIFY(!cursor.isNull());
    cursor.movePosition(QTextCursor::StartOfBlock);
    pane()->setTextCursor(cursor);
    pane()->ensureCursorVisible();
    const QPoint place = pane()->cursorRect(cursor).center() + QPoint(4, 0);
    QTest::mouseDClick(pane()->viewport(), Qt::LeftButton, Qt::NoModifier, place);
}

void tst_Find::ctrlFOpensTheBarOfThePanelWithTheFocus()
{
    QVERIFY(!scene()->findBar()->isVisible());
    press(Qt::Key_F, Qt::ControlModifier);
    QVERIFY(scene()->findBar()->isVisible());
    pane()->setFocus();
    press(Qt::Key_F, Qt::ControlModifier);
    QVERIFY(log()->findBar()->isVisible());
    QVERIFY(log()->findBar()->isAncestorOf(QApplication::focusWidget()));

    auto* nodes = _window->findChild<NodeDock*>();
    nodes->findChild<Orvane::Qt4::QorNodeEditorTreeView*>()->setFocus();
    press(Qt::Key_F, Qt::ControlModifier);
    QVERIFY(nodes->findBar()->isAncestorOf(QApplication::focusWidget()));
    // A panel that is closed opens.
    _window->findChild<SceneTreeView*>()->setFocus();
    press(Qt::Key_F, Qt::ControlModifier);
    scene()->hide();
    _window->viewManager()->findChild<QWidget*>()->setFocus();
    nodes->hide();
    log()->hide();
    press(Qt::Key_F, Qt::ControlModifier);
    QVERIFY(scene()->isVisible());
}

void tst_Find::escapeGivesTheFocusBack()
{
    auto* tree = _window->findChild<SceneTreeView*>();
    tree->setFocus();
    press(Qt::Key_F, Qt::ControlModifier);
    QVERIFY(!tree->hasFocus());
    press(Qt::Key_Escape);
    QVERIFY(tree->hasFocus());
    QVERIFY(!scene()->findBar()->isVisible());
}

void tst_Find::nodesAreFoundByName()
{
    press(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("fore"));
    QCOMPARE(selected(), QStringLiteral("Forearm"));
    QCOMPARE(scene()->findBar()->outcome(), QStringLiteral("1 of 1"));
    // Its row was not read before.
    const QModelIndex row = _window->findChild<SceneTreeView*>()->currentIndex();
    QVERIFY(row.data().toString().contains(QStringLiteral("Forearm")) ||
            row.sibling(row.row(), 1).data().toString().contains(QStringLiteral("Forearm")));
}

void tst_Find::nodesAreFoundByType()
{
    FindBar* bar = scene()->findBar();
    bar->open();
    bar->setText(QStringLiteral("script"));
    QCOMPARE(selected(), QStringLiteral("Brain"));
    bar->setChoice(1);
    QCOMPARE(bar->outcome(), QStringLiteral("None"));
    bar->setChoice(2);
    QCOMPARE(bar->outcome(), QStringLiteral("1 of 1"));
}

void tst_Find::findingGoesRoundBothWays()
{
    press(Qt::Key_F, Qt::ControlModifier);
    QTest::keyClicks(QApplication::focusWidget(), QStringLiteral("transform"));
    QCOMPARE(selected(), QStringLiteral("Rig"));
    press(Qt::Key_F3);
    QCOMPARE(selected(), QStringLiteral("Arm"));
    press(Qt::Key_Return);
    QCOMPARE(selected(), QStringLiteral("Forearm"));
    QCOMPARE(scene()->findBar()->outcome(), QStringLiteral("3 of 4"));
    press(Qt::Key_F3);
    press(Qt::Key_F3);
    QCOMPARE(selected(), QStringLiteral("Rig"));
    press(Qt::Key_F3, Qt::ShiftModifier);
    QCOMPARE(selected(), QStringLiteral("Hand"));
    press(Qt::Key_Return, Qt::ShiftModifier);
    QCOMPARE(selected(), QStringLiteral("Forearm"));
    // On from a node that is none of them.
    _window->showNode(QStringLiteral("Ball"));
    press(Qt::Key_F3);
    QCOMPARE(selected(), QStringLiteral("Forearm"));
    _window->showNode(QStringLiteral("Ball"));
    press(Qt::Key_F3, Qt::ShiftModifier);
    QCOMPARE(selected(), QStringLiteral("Arm"));
}

void tst_Find::aSharedNodeIsFoundOnce()
{
    FindBar* bar = scene()->findBar();
    bar->open();
    bar->setText(QStringLiteral("shared"));
    QCOMPARE(bar->outcome(), QStringLiteral("1 of 1"));
}

void tst_Find::bodiesAreSearchedWhenTheyAreShown()
{
    FindBar* bar = scene()->findBar();
    bar->open();
    bar->setText(QStringLiteral("inside"));
    QCOMPARE(bar->outcome(), QStringLiteral("None"));
    scene()->findChild<QAbstractButton*>(QStringLiteral("bodies"))->click();
    emit bar->wanted(FindBar::Next);
    QCOMPARE(bar->outcome(), QStringLiteral("1 of 1"));
}

void tst_Find::nothingIsFound()
{
    _window->showNode(QStringLiteral("Rig"));
    FindBar* bar = scene()->findBar();
    bar->open();
    bar->setText(QStringLiteral("no such node"));
    QCOMPARE(bar->outcome(), QStringLiteral("None"));
    QCOMPARE(selected(), QStringLiteral("Rig"));
    bar->setText(QString());
    QCOMPARE(bar->outcome(), QString());
}

void tst_Find::fieldsAreFoundByNameValueAndType()
{
    auto* dock = _window->findChild<NodeDock*>();
    FindBar* bar = dock->findBar();
    bar->open();
    bar->setText(QStringLiteral("radius"));
    QCOMPARE(bar->outcome(), QStringLiteral("None"));

    _window->showNode(QStringLiteral("Ball"));
    auto* tree = dock->findChild<Orvane::Qt4::QorNodeEditorTreeView*>();
    emit bar->wanted(FindBar::Next);
    QCOMPARE(tree->currentIndex().data().toString(), QStringLiteral("radius"));
    bar->setText(QStringLiteral("0.25"));
    QCOMPARE(bar->outcome(), QStringLiteral("1 of 1"));
    bar->setChoice(1);
    QCOMPARE(bar->outcome(), QStringLiteral("None"));
    bar->setChoice(3);
    bar->setText(QStringLiteral("sfbool"));
    QCOMPARE(tree->currentIndex().data().toString(), QStringLiteral("solid"));
}

void tst_Find::linesAreFoundByText()
{
    tell({QStringLiteral("WARNING: alpha needle"), QStringLiteral("NOTICE: beta"),
          QStringLiteral("NOTICE: gamma NEEDLE")});
    FindBar* bar = log()->findBar();
    bar->open();
    bar->setText(QStringLiteral("needle"));
    QTextCursor cursor = pane()->textCursor();
    QVERIFY(bar->outcome().endsWith(QStringLiteral(" of 2")));
    const QString first = cursor.block().text();
    emit bar->wanted(FindBar::Next);
    QVERIFY(pane()->textCursor().block().text() != first);
    emit bar->wanted(FindBar::Next);
    QCOMPARE(pane()->textCursor().block().text(), first);
    QCOMPARE(pane()->textCursor().selectedText(), first);
}

void tst_Find::linesAreFoundByLevel()
{
    tell({QStringLiteral("DEBUG: one"), QStringLiteral("a second line of it"), QStringLiteral("NOTICE: two"),
          QStringLiteral("DEBUGGER: no level")});
    FindBar* bar = log()->findBar();
    bar->open();
    bar->setChoice(osg::LOG_DEBUG + 1);
    QCOMPARE(bar->outcome(), QStringLiteral("1 of 2"));
    QCOMPARE(pane()->textCursor().block().text(), QStringLiteral("DEBUG: one"));
    emit bar->wanted(FindBar::Next);
    QCOMPARE(pane()->textCursor().block().text(), QStringLiteral("a second line of it"));
    bar->setText(QStringLiteral("two"));
    QCOMPARE(bar->outcome(), QStringLiteral("None"));
}

void tst_Find::wordsOfALine_data()
{
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QPoint>("place");
    QTest::addColumn<QStringList>("nodes");
    QTest::addColumn<int>("codeLine");
    QTest::newRow("fault of a scene")
        << QStringLiteral("WARNING:  ERROR: /a b/c.x3d:12:5: expected \"}\"") << QStringLiteral("/a b/c.x3d")
        << QPoint(5, 12) << QStringList{QStringLiteral("}")} << 0;
    QTest::newRow("header with a file")
        << QStringLiteral("WARNING: Runtime: Loading.cpp:37:  WARNING: c.wrl:2: odd")
        << QStringLiteral("c.wrl") << QPoint(0, 2) << QStringList() << 0;
    QTest::newRow("inline code") << QStringLiteral(
                                        "FATAL:  ERROR: /c.x3d:3:1: Script \"S\", line 7 of its code: odd")
                                 << QStringLiteral("/c.x3d") << QPoint(1, 3)
                                 << QStringList{QStringLiteral("S")} << 7;
    QTest::newRow("code of a file") << QStringLiteral("FATAL:  ERROR: /c.js:9: Script \"S\": \"x\" is odd")
                                    << QStringLiteral("/c.js") << QPoint(0, 9)
                                    << QStringList{QStringLiteral("S"), QStringLiteral("x")} << 9;
    QTest::newRow("field") << QStringLiteral("WARNING: Node \"Box#7\", field \"size\" (SFVec3f): odd.")
                           << QString() << QPoint()
                           << QStringList{QStringLiteral("Box#7"), QStringLiteral("size")} << 0;
    QTest::newRow("nothing") << QStringLiteral("NOTICE: all is well") << QString() << QPoint()
                             << QStringList() << 0;
}

void tst_Find::wordsOfALine()
{
    QFETCH(QString, line);
    QFETCH(QPoint, place);
    const LogPlace found = LogPlace::of(line);
    QTEST(found.file, "file");
    QCOMPARE(QPoint(found.column, found.line), place);
    QTEST(found.nodes, "nodes");
    QTEST(found.codeLine, "codeLine");
}

void tst_Find::aLineLeadsToItsNode()
{
    tell({QStringLiteral("WARNING: Node \"Inside\", field \"bboxSize\" (SFVec3f): odd.")});
    doubleClick(QStringLiteral("bboxSize"));
    QCOMPARE(selected(), QStringLiteral("Inside"));
    tell({QStringLiteral("WARNING: Node \"Ball\", field \"radius\" (SFFloat): odd.")});
    pane()->setTextCursor(pane()->document()->find(QStringLiteral("radius")));
    pane()->setFocus();
    press(Qt::Key_Return);
    QCOMPARE(selected(), QStringLiteral("Ball"));
}

void tst_Find::aLineLeadsToItsLineOfCode()
{
    for (int i = 0; i < 3; ++i)
        _window->viewManager()->runFrame();
    QTRY_VERIFY(pane()->toPlainText().contains(QStringLiteral("of its code")));
    doubleClick(QStringLiteral("of its code"));
    QCOMPARE(selected(), QStringLiteral("Brain"));
    auto* dock = _window->findChild<CodeDock*>();
    QVERIFY(dock->isVisible());
    auto* code = dock->codeWidget()->findChild<QTextEdit*>(QStringLiteral("code"));
    QCOMPARE(code->textCursor().block().text().trimmed(), QStringLiteral("noSuchThing();"));
}

void tst_Find::aLineLeadsToItsLineOfAFile()
{
    tell({QStringLiteral("WARNING:  ERROR: %1:4:3: no name of the scene").arg(_file)});
    doubleClick(QStringLiteral("no name of the scene"));
    auto* view = _window->findChild<SourceView*>();
    QVERIFY(view && view->isVisible());
    const QTextCursor cursor = view->findChild<QTextEdit*>()->textCursor();
    QVERIFY(cursor.block().text().contains(QStringLiteral("DEF='Arm'")));
    QVERIFY(cursor.block().text().mid(cursor.positionInBlock()).startsWith(QStringLiteral("<Transform")));
    QVERIFY(!view->showLine(_file, 4000, 0));
    QVERIFY(!view->showLine(_folder.path(), 1, 0));
    QVERIFY(!view->showLine(QStringLiteral("/no/such/file"), 1, 0));
}

void tst_Find::aLineThatLeadsNowhereIsTold()
{
    tell({QStringLiteral("NOTICE: a dead end")});
    doubleClick(QStringLiteral("a dead end"));
    QVERIFY(!_window->statusBar()->currentMessage().isEmpty());
    QCOMPARE(selected(), QString());
}

QTEST_MAIN(tst_Find)
#include "tst_Find.moc"
