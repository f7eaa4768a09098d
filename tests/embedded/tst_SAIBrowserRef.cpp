#include "../opensg/LogCollector.h"
#include "WindowEvents.h"
#include <OpenSG/OSGPassiveWindow.h>
#include <Orvane/Context.h>
#include <Orvane/ContextSetup.h>
#include <Orvane/Engine.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/LogModule.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/SAIBrowserRef.h>
#include <Orvane/Scene.h>
#include <Orvane/System.h>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <algorithm>
#include <functional>
#include <memory>

using namespace Orvane;

namespace {

class Listener : public Observer
{
public:
    explicit Listener(std::function<void()> action)
        : Observer("test")
        , _action(std::move(action))
    {
    }
    void notify(const double&, BaseObject*, BaseObject*, BaseObject*) override { _action(); }

private:
    std::function<void()> _action;
};

} // namespace

class tst_SAIBrowserRef : public QObject
{
    Q_OBJECT

private slots:
    void initTestCase() { System::the().init(0, nullptr, 382); }
    void cleanupTestCase() { System::the().exit(); }
    void init() { _context = Context::create(); }
    void cleanup() { endContext(); }

    void tellsWhoItIs();
    void holdsNoCount();
    void speedIsThatOfTheBoundNavigation();
    void frameRateCountsDrawnFrames();
    void loadsTheFirstThatCanBeLoaded();
    void failedLoadLeavesTheScene();
    void descriptionIsTheTitleOfAllWindows();
    void descriptionWithoutWindowsDoesNothing();
    void printsALineOfTheRuntime();
    void disposeLetsGoOfTheContextOnly();
    void answersNothingAfterTheContext();
    void answersNothingWhileTheContextEnds();
    void nullContextIsAllowed();
    void loadMayEndTheContext();
    void anotherContextIsNotTakenForTheOldOne();
    void isDeletedByItsBase();

private:
    void endContext()
    {
        if (_context)
            _context->subRef();
        _context = nullptr;
    }
    void activate() const
    {
        ContextSetup::create(_context, nullptr, HOST_NC);
        Engine::create(_context, nullptr, HOST_NC);
        Scene::create(_context, nullptr, HOST_NC);
        _context->setRootState(0.0, RUNNING_NS);
    }
    bool load(const std::string& body) const
    {
        return _context->load("scene.x3d", "<X3D version='4.0'><Scene>" + body + "</Scene></X3D>",
                              Context::REPLACE_LT, {});
    }
    Node* named(const char* name) const
    {
        return NodeNameSpace::findNode(NodeNameSpace::findNameSpace(nullptr, "scene", _context, false), name);
    }
    /// Writes a scene with a group of that name and gives the path.
    std::string file(const char* name, const char* text = nullptr) const
    {
        const QString path = _folder.filePath(QLatin1String(name) + QStringLiteral(".x3d"));
        QFile scene(path);
        if (scene.open(QIODevice::WriteOnly))
            scene.write(text ? QByteArray(text)
                             : QByteArray("<X3D version='4.0'><Scene><Group DEF='") + name +
                                   "'/></Scene></X3D>");
        return path.toStdString();
    }
    /// What goes to the log inside \a action.
    static std::string logOf(const std::function<void()>& action)
    {
        osg::doInitLog();
        const osg::LogType logType = osg::osgLogP->getLogType();
        std::string log;
        {
            LogCollector collector(*osg::osgLogP);
            action();
            log = collector.take();
        }
        osg::osgLogP->setLogType(logType);
        return log;
    }
    static void answersNothing(Orvane::SAIBrowserRef& browser);

    QTemporaryDir _folder;
    Context* _context = nullptr;
};

void tst_SAIBrowserRef::answersNothing(Orvane::SAIBrowserRef& browser)
{
    QCOMPARE(browser.getName(), std::string());
    QCOMPARE(browser.getVersion(), std::string());
    QCOMPARE(browser.getCurrentSpeed(), 0.0);
    QCOMPARE(browser.getCurrentFrameRate(), 0.0);
    QVERIFY(!browser.getExecutionContext());
    QVERIFY(!browser.loadURL({"scene.x3d"}));
    QVERIFY(!browser.loadURL({}));
    browser.setDescription("nothing");
    QCOMPARE(logOf([&] { browser.print("nothing"); }), std::string());
    browser.dispose();
    QVERIFY(!browser.getExecutionContext());
}

void tst_SAIBrowserRef::tellsWhoItIs()
{
    const Orvane::SAIBrowserRef browser(_context);
    QCOMPARE(browser.getName(), std::string("Orvane"));
    QVERIFY(QString::fromStdString(browser.getVersion()).contains(QRegExp(QStringLiteral("^\\d+\\.\\d+"))));
    QCOMPARE(browser.getExecutionContext(), _context);
}

void tst_SAIBrowserRef::holdsNoCount()
{
    const Orvane::SAIBrowserRef browser(_context);
    QCOMPARE(_context->_refCount, 1);
    QCOMPARE(browser.getExecutionContext()->_refCount, 1);
}

void tst_SAIBrowserRef::speedIsThatOfTheBoundNavigation()
{
    const Orvane::SAIBrowserRef browser(_context);
    QCOMPARE(browser.getCurrentSpeed(), 0.0);
    QVERIFY(load("<Group/>"));
    activate();
    _context->runFrame();
    QCOMPARE(browser.getCurrentSpeed(), 1.0);
    QVERIFY(load("<NavigationInfo speed='2.5'/><NavigationInfo DEF='Fast' speed='9'/>"));
    _context->runFrame();
    QCOMPARE(browser.getCurrentSpeed(), 2.5);
    named("Fast")->findField("set_bind", Node::DECLARED_FSO)->setValueByStr(0.0, "TRUE");
    _context->runFrame();
    QCOMPARE(browser.getCurrentSpeed(), 9.0);
}

void tst_SAIBrowserRef::frameRateCountsDrawnFrames()
{
    const WindowEvents events;
    const Orvane::SAIBrowserRef browser(_context);
    activate();
    _context->runFrame();
    QCOMPARE(browser.getCurrentFrameRate(), 0.0);
    osg::WindowPtr window = osg::PassiveWindow::create();
    WindowProc& proc = *events.windows.front();
    proc.setWinPtr(window, true);
    const auto drawsOne = [&] {
        proc.render();
        _context->runFrame();
        return browser.getCurrentFrameRate() > 0.0;
    };
    QTRY_VERIFY(drawsOne());
}

void tst_SAIBrowserRef::loadsTheFirstThatCanBeLoaded()
{
    Orvane::SAIBrowserRef browser(_context);
    const std::string absent = _folder.filePath(QStringLiteral("absent.x3d")).toStdString();
    QVERIFY(browser.loadURL({absent, file("Broken", "<X3D><Scene>"), file("First"), file("Second")}));
    QVERIFY(named("First"));
    QVERIFY(!named("Second"));
    QVERIFY(browser.loadURL({file("Second")}));
    QVERIFY(!named("First"));
    QVERIFY(named("Second"));
}

void tst_SAIBrowserRef::failedLoadLeavesTheScene()
{
    Orvane::SAIBrowserRef browser(_context);
    QVERIFY(load("<Group DEF='Stays'/>"));
    const Node* const stays = named("Stays");
    QVERIFY(!browser.loadURL({}));
    QVERIFY(!browser.loadURL({"", _folder.filePath(QStringLiteral("absent.x3d")).toStdString()}));
    QCOMPARE(named("Stays"), stays);
}

void tst_SAIBrowserRef::descriptionIsTheTitleOfAllWindows()
{
    const WindowEvents events;
    Orvane::SAIBrowserRef browser(_context);
    QVERIFY(load("<Engine><Window title='Left'><Viewarea/></Window><Window><Viewarea/></Window></Engine>"));
    activate();
    QCOMPARE(events.windows.size(), std::size_t(2));
    browser.setDescription("Both \xE9");
    for (WindowProc* proc : events.windows)
        QCOMPARE(proc->title(), std::string("Both \xE9"));
    // The field is written, so its observers are told.
    int told = 0;
    Listener listener([&] { ++told; });
    Field& title = *events.windows[0]->window()->findField("title", Node::EXACT_FSO);
    title.getOutSlot(true, false)->processEventSubject().attach(listener);
    _context->runFrame();
    QCOMPARE(told, 1);
}

void tst_SAIBrowserRef::descriptionWithoutWindowsDoesNothing()
{
    Orvane::SAIBrowserRef browser(_context);
    browser.setDescription("nobody");
    QVERIFY(load("<Engine/>"));
    browser.setDescription("nobody");
    QVERIFY(_context->findRoot(Engine::_type));
}

void tst_SAIBrowserRef::printsALineOfTheRuntime()
{
    Orvane::SAIBrowserRef browser(_context);
    osg::doInitLog();
    const osg::LogLevel level = osg::osgLogP->getLogLevel();
    osg::osgLogP->setLogLevel(osg::LOG_LOG);
    const std::string log = logOf([&] { browser.print("100 %s done"); });
    osg::osgLogP->setLogLevel(level);
    QVERIFY2(log.find("100 %s done\n") != std::string::npos, log.c_str());
    QCOMPARE(std::count(log.begin(), log.end(), '\n'), std::ptrdiff_t(1));
    QCOMPARE(std::string(LogModuleName), std::string("Orvane"));
}

void tst_SAIBrowserRef::disposeLetsGoOfTheContextOnly()
{
    Orvane::SAIBrowserRef browser(_context);
    const Orvane::SAIBrowserRef other(_context);
    browser.dispose();
    answersNothing(browser);
    QCOMPARE(other.getExecutionContext(), _context);
    QCOMPARE(_context->_refCount, 1);
}

void tst_SAIBrowserRef::answersNothingAfterTheContext()
{
    Orvane::SAIBrowserRef browser(_context);
    activate();
    endContext();
    answersNothing(browser);
}

void tst_SAIBrowserRef::answersNothingWhileTheContextEnds()
{
    Orvane::SAIBrowserRef browser(_context);
    activate();
    const std::string scene = file("Late");
    int deaths = 0;
    bool isEmpty = true;
    Listener listener([&] {
        ++deaths;
        isEmpty = isEmpty && !browser.getExecutionContext() && !browser.loadURL({scene});
    });
    Node::_deleteObject.attach(listener);
    endContext();
    QVERIFY(deaths >= 3);
    QVERIFY(isEmpty);
}

void tst_SAIBrowserRef::nullContextIsAllowed()
{
    Orvane::SAIBrowserRef browser(nullptr);
    answersNothing(browser);
}

void tst_SAIBrowserRef::loadMayEndTheContext()
{
    Orvane::SAIBrowserRef browser(_context);
    QVERIFY(load("<Group/>"));
    Listener listener([this] { endContext(); });
    Node::_deleteObject.attach(listener);
    QVERIFY(browser.loadURL({file("Next")}));
    QVERIFY(!_context);
    answersNothing(browser);
}

void tst_SAIBrowserRef::anotherContextIsNotTakenForTheOldOne()
{
    // A new context may well stand at the address of the old one.
    Orvane::SAIBrowserRef browser(_context);
    endContext();
    _context = Context::create();
    answersNothing(browser);
}

void tst_SAIBrowserRef::isDeletedByItsBase()
{
    const std::unique_ptr<__SAI_SAIBrowserRef> browser = std::make_unique<Orvane::SAIBrowserRef>(_context);
    QCOMPARE(browser->getExecutionContext(), _context);
    browser->dispose();
    QVERIFY(!browser->getExecutionContext());
}

QTEST_GUILESS_MAIN(tst_SAIBrowserRef)
#include "tst_SAIBrowserRef.moc"
