// The panel of the log in the workbench.
#include "LogDock.h"
#include "WorkbenchWindow.h"
#include <OpenSG/OSGLog.h>
#include <QAction>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>
#include <QTextEdit>
#include <QorLogView.h>
#include <QtTest>

class tst_LogDock : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void linesOfTheProcessAreShown();
    void levelOfThePanelIsThatOfTheProcess();
    void graveLinesThatAreNotSeenAreTold();
    void menuHidesAndShowsThePanel();
    void logGoesToTheTerminalAfterwards();

private:
    static void warn(const char* text) { say(osg::LOG_WARNING, text); }
    static void say(osg::LogLevel level, const char* text);
    QTextEdit* pane() const { return _window->findChild<LogDock*>()->findChild<QTextEdit*>(); }

    std::unique_ptr<WorkbenchWindow> _window;
};

void tst_LogDock::init()
{
    _window.reset();
    _window = std::make_unique<WorkbenchWindow>(false);
    _window->show();
    QVERIFY(QTest::qWaitForWindowExposed(_window.get()));
}

void tst_LogDock::say(osg::LogLevel level, const char* text)
{
    const osg::LogLock lock;
    osg::osgLog().doHeader(level, "Test", __FILE__, __LINE__);
    osg::osgLog().doLog("%s", text);
}

void tst_LogDock::linesOfTheProcessAreShown()
{
    QVERIFY(_window->findChild<LogDock*>()->isVisible());
    warn("the first of its kind\n");
    QTRY_VERIFY(pane()->toPlainText().endsWith(QStringLiteral("the first of its kind\n")));
    warn("the first of its kind\n");
    QTRY_VERIFY(pane()->toPlainText().endsWith(QStringLiteral("the first of its kind [1]\n")));
}

void tst_LogDock::levelOfThePanelIsThatOfTheProcess()
{
    auto* view = _window->findChild<Orvane::Qt4::QorLogView*>();
    const int before = osg::osgLog().getLogLevel();
    view->setLevel(QStringLiteral("INFO"));
    QCOMPARE(osg::osgLog().getLogLevel(), osg::LOG_INFO);
    view->setLevel(before);
    QCOMPARE(static_cast<int>(osg::osgLog().getLogLevel()), before);
}

void tst_LogDock::graveLinesThatAreNotSeenAreTold()
{
    const auto told = [this] { return _window->statusBar()->currentMessage(); };
    say(osg::LOG_FATAL, "a seen mistake\n");
    QTRY_VERIFY(pane()->toPlainText().contains(QStringLiteral("a seen mistake")));
    QVERIFY2(!told().contains(QStringLiteral("a seen mistake")), qPrintable(told()));

    _window->findChild<LogDock*>()->hide();
    say(osg::LOG_FATAL, "a hidden mistake\n");
    warn("a small thing\n");
    QTRY_COMPARE(told(), QStringLiteral("a hidden mistake (see the log)"));
}

void tst_LogDock::menuHidesAndShowsThePanel()
{
    auto* dock = _window->findChild<LogDock*>();
    QAction* toggle = nullptr;
    const auto menus = _window->menuBar()->findChildren<QMenu*>();
    for (const QMenu* menu : menus)
        toggle = menu->actions().contains(dock->toggleViewAction()) ? dock->toggleViewAction() : toggle;
    QVERIFY(toggle);
    toggle->trigger();
    QVERIFY(!dock->isVisible());
    warn("told while hidden\n");
    toggle->trigger();
    QVERIFY(dock->isVisible());
    QTRY_VERIFY(pane()->toPlainText().contains(QStringLiteral("told while hidden\n")));
}

void tst_LogDock::logGoesToTheTerminalAfterwards()
{
    QCOMPARE(osg::osgLog().getLogType(), osg::LOG_BUFFER);
    _window.reset();
    QCOMPARE(osg::osgLog().getLogType(), osg::LOG_STDERR);
    warn("nobody keeps this one\n");
}

QTEST_MAIN(tst_LogDock)
#include "tst_LogDock.moc"
