#include "WindowEvents.h"
#include "base/Graph.h"
#include <OpenSG/OSGPassiveWindow.h>
#include <Orvane/Context.h>
#include <Orvane/ContextSetup.h>
#include <Orvane/Engine.h>
#include <Orvane/MFNode.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/SFBool.h>
#include <Orvane/Scene.h>
#include <Orvane/System.h>
#include <Orvane/Viewarea.h>
#include <Orvane/ViewareaProc.h>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>
#include <memory>

using namespace Orvane;

using Names = std::vector<std::string>;

namespace {

/// A context that is dropped at the end of its scope.
struct Host
{
    Host() { System::the().init(0, nullptr, 382); }
    ~Host()
    {
        context->subRef();
        System::the().exit();
    }

    void activate() const
    {
        if (!context->findRoot(ContextSetup::_type))
            ContextSetup::create(context, nullptr, HOST_NC);
        if (!context->findRoot(Engine::_type))
            Engine::create(context, nullptr, HOST_NC);
        if (!context->findRoot(Scene::_type))
            Scene::create(context, nullptr, HOST_NC);
        context->setRootState(0.0, RUNNING_NS);
    }
    bool load(const std::string& body) const
    {
        return context->load("engine.x3d", "<X3D version='4.0'><Scene>" + body + "</Scene></X3D>",
                             Context::REPLACE_LT, {});
    }
    MFNode& windows() const
    {
        return *dynamic_cast<MFNode*>(
            context->findRoot(Engine::_type)->findField("windows", Node::EXACT_FSO));
    }

    WindowEvents events;
    Context* context = Context::create();
};

} // namespace

class tst_Engine : public QObject
{
    Q_OBJECT

private slots:
    void engineWithoutWindowMakesOne();
    void sceneBringsItsOwnWindows();
    void noWindowBeforeTheRootsRun();
    void removedEngineEndsItsWindows();
    void endOfTheContextEndsItsWindows();
    void endingWindowCanStillBeRead();
    void windowTakenOutOfTheListEndsInTheNextFrame();
    void windowPutIntoTheListIsAnnouncedInTheNextFrame();
    void secondLoadKeepsTheWindowsOfAnEngineThatStays();
    void secondLoadWithAnEngineReplacesItsWindows();
    void noFrameIsFiredWithoutAWindowPointer();
    void frameIsFiredInPairsOnlyWhenThePictureIsOld();
    void attributesFireOnlyWhileThereIsAWindowPointer();
    void windowPointerIsCountedAndLetGo();
    void windowThatGoesInsideBeginOfFrameEndsTheFrame();
    void viewportComesAndGoesWithTheWindowPointer();
    void viewareaCoversItsFractionOfTheWindow();
    void titleIsTheFieldOrTheName();
    void resizeReachesTheOpenSGWindow();
    void windowThatEndsLetsGoOfItsPointer();
    void inputIsHandledInTheNextFrame();
    void timeStandsWithinAFrame();
};

void tst_Engine::engineWithoutWindowMakesOne()
{
    Host host;
    host.activate();
    QCOMPARE(host.events.take(), (Names{"new", "show"}));
    QCOMPARE(host.events.windows.size(), std::size_t(1));
    Window& window = *host.events.windows.front()->window();
    QCOMPARE(window.size()[0], 800.0F);
    QCOMPARE(window.size()[1], 600.0F);
    QCOMPARE(window.position()[0], -1.0F);
    QVERIFY(!window.fullScreen());
    QVERIFY(window.decoration());
    QVERIFY(window.cursorVisible());
    QCOMPARE(window.samples(), 1);
    QVERIFY(window.pipe().empty());
    QCOMPARE(window.viewareas()->size(), 1U);
    QVERIFY(dynamic_cast<Viewarea*>(window.viewareas()->elem(0).node()));
    QCOMPARE(window.contextRoot(), host.context->findRoot(Engine::_type));
}

void tst_Engine::sceneBringsItsOwnWindows()
{
    Host host;
    QVERIFY(host.load("<Engine><Window size='300 200' samples='4' pipe='#1' "
                      "fullScreen='true'><Viewarea/><Viewarea/></Window>"
                      "<Window decoration='false' position='5 6'><Viewarea/></Window></Engine><Group/>"));
    host.activate();
    QCOMPARE(host.events.take(), (Names{"new", "show", "new", "show"}));
    Window& first = *host.events.windows[0]->window();
    QCOMPARE(first.size()[0], 300.0F);
    QCOMPARE(first.samples(), 4);
    QCOMPARE(first.pipe(), std::string("#1"));
    QVERIFY(first.fullScreen());
    QCOMPARE(first.viewareas()->size(), 2U);
    Window& second = *host.events.windows[1]->window();
    QVERIFY(!second.decoration());
    QCOMPARE(second.position()[1], 6.0F);
    QCOMPARE(second.size()[0], -1.0F);
}

void tst_Engine::noWindowBeforeTheRootsRun()
{
    Host host;
    QVERIFY(host.load("<Engine><Window><Viewarea/></Window></Engine>"));
    host.context->runFrame();
    QCOMPARE(host.events.take(), Names());
    host.activate();
    QCOMPARE(host.events.take(), (Names{"new", "show"}));
}

void tst_Engine::removedEngineEndsItsWindows()
{
    Host host;
    host.activate();
    host.events.take();
    QVERIFY(host.context->removeRoot(Engine::_type));
    QCOMPARE(host.events.take(), Names{"delete"});
    QVERIFY(!host.context->removeRoot(Engine::_type));
}

void tst_Engine::endOfTheContextEndsItsWindows()
{
    WindowEvents events;
    {
        Host host;
        host.activate();
        events.take();
    }
    QCOMPARE(events.take(), Names{"delete"});
}

void tst_Engine::endingWindowCanStillBeRead()
{
    class Reader : public Observer
    {
    public:
        Reader()
            : Observer("reader")
        {
            WindowProc::_deleteWidget.attach(*this);
        }
        void notify(const double&, BaseObject* first, BaseObject*, BaseObject*) override
        {
            const auto* proc = dynamic_cast<WindowProc*>(first);
            widths.push_back(proc->window()->size()[0]);
            isWindow = dynamic_cast<Window*>(static_cast<Node*>(proc->window()));
        }
        std::vector<float> widths;
        bool isWindow = false;
    } reader;
    {
        Host host;
        host.activate();
        QVERIFY(host.context->removeRoot(Engine::_type));
        QCOMPARE(reader.widths, std::vector<float>{800.0F});
        QVERIFY(reader.isWindow);
        host.activate();
    }
    QCOMPARE(reader.widths, (std::vector<float>{800.0F, 800.0F}));
}

void tst_Engine::windowTakenOutOfTheListEndsInTheNextFrame()
{
    Host host;
    host.activate();
    host.events.take();
    QVERIFY(host.windows().removeNode(0.0, 0, Field::EXTERNAL_CT));
    QCOMPARE(host.events.take(), Names());
    host.context->runFrame();
    QCOMPARE(host.events.take(), Names{"delete"});
}

void tst_Engine::windowPutIntoTheListIsAnnouncedInTheNextFrame()
{
    Host host;
    host.activate();
    host.events.take();
    const NodeRef spare = createNode(*host.context, *findType("Window"), HOST_NC);
    QVERIFY(host.windows().addNode(0.0, spare.get(), Field::EXTERNAL_CT));
    QCOMPARE(host.events.take(), Names());
    host.context->runFrame();
    QCOMPARE(host.events.take(), (Names{"new", "show"}));
}

void tst_Engine::secondLoadKeepsTheWindowsOfAnEngineThatStays()
{
    Host host;
    QVERIFY(host.load("<Group/>"));
    host.activate();
    host.events.take();
    QVERIFY(host.load("<Transform/>"));
    host.activate();
    host.context->runFrame();
    QCOMPARE(host.events.take(), Names());
}

void tst_Engine::secondLoadWithAnEngineReplacesItsWindows()
{
    Host host;
    QVERIFY(host.load("<Group/>"));
    host.activate();
    host.events.take();
    QVERIFY(host.load("<Engine><Window><Viewarea/></Window><Window><Viewarea/></Window></Engine>"));
    host.activate();
    const Names names = host.events.take();
    QCOMPARE(std::count(names.begin(), names.end(), "new"), 2);
    QCOMPARE(std::count(names.begin(), names.end(), "show"), 2);
    QCOMPARE(std::count(names.begin(), names.end(), "delete"), 1);
    QCOMPARE(host.events.windows.size(), std::size_t(2));
}

void tst_Engine::noFrameIsFiredWithoutAWindowPointer()
{
    Host host;
    host.activate();
    host.events.take();
    host.context->runFrame();
    QCOMPARE(host.events.take(), Names());
}

void tst_Engine::frameIsFiredInPairsOnlyWhenThePictureIsOld()
{
    Host host;
    host.activate();
    WindowProc& proc = *host.events.windows.front();
    osg::WindowPtr window = osg::PassiveWindow::create();
    proc.setWinPtr(window, true);
    host.events.take();
    host.context->runFrame();
    QCOMPARE(host.events.take(), (Names{"begin", "end"}));
    // A widget that has just come may not be on the screen yet.
    host.context->runFrame();
    QCOMPARE(host.events.take(), (Names{"begin", "end"}));
    QTest::qSleep(600);
    host.context->runFrame();
    QCOMPARE(host.events.take(), Names());
    proc.render();
    host.context->runFrame();
    QCOMPARE(host.events.take(), (Names{"begin", "end"}));
    host.context->runFrame();
    QCOMPARE(host.events.take(), Names());
    proc.resize(30, 20);
    host.context->runFrame();
    QCOMPARE(host.events.take(), (Names{"begin", "end"}));
    host.context->runFrame();
    QCOMPARE(host.events.take(), (Names{"begin", "end"}));
    // Nobody tells the runtime when a widget lost its pixels.
    QTest::qSleep(600);
    host.context->runFrame();
    QCOMPARE(host.events.take(), Names());
    QTest::qSleep(600);
    host.context->runFrame();
    QCOMPARE(host.events.take(), (Names{"begin", "end"}));
}

void tst_Engine::attributesFireOnlyWhileThereIsAWindowPointer()
{
    Host host;
    host.activate();
    WindowProc& proc = *host.events.windows.front();
    host.events.take();
    const auto set = [&](const char* name, const char* text) {
        proc.window()->findField(name, Node::EXACT_FSO)->setValueByStr(0.0, text);
    };
    set("size", "320 200");
    set("position", "1 2");
    set("fullScreen", "TRUE");
    host.context->runFrame();
    QCOMPARE(host.events.take(), Names());

    osg::WindowPtr window = osg::PassiveWindow::create();
    proc.setWinPtr(window, true);
    host.context->runFrame();
    host.events.take();
    set("size", "640 400");
    set("position", "3 4");
    set("fullScreen", "FALSE");
    QCOMPARE(host.events.take(), Names());
    host.context->runFrame();
    QCOMPARE(host.events.take(), (Names{"resize", "reposition", "fullscreen", "begin", "end"}));
}

void tst_Engine::windowPointerIsCountedAndLetGo()
{
    Host host;
    host.activate();
    WindowProc& proc = *host.events.windows.front();
    osg::WindowPtr first = osg::PassiveWindow::create();
    osg::WindowPtr second = osg::PassiveWindow::create();
    osg::addRefCP(first);
    osg::addRefCP(second);
    proc.setWinPtr(first, true);
    QCOMPARE(first.getRefCount(), 2);
    QVERIFY(proc.winPtr() == first);
    proc.setWinPtr(second, true);
    QCOMPARE(first.getRefCount(), 1);
    QCOMPARE(second.getRefCount(), 2);
    osg::WindowPtr none;
    proc.setWinPtr(none, true);
    QCOMPARE(second.getRefCount(), 1);
    QVERIFY(proc.winPtr() == osg::NullFC);
    proc.setWinPtr(first, false);
    QCOMPARE(first.getRefCount(), 1);
    proc.setWinPtr(none, true);
    QCOMPARE(first.getRefCount(), 1);
    osg::subRefCP(first);
    osg::subRefCP(second);
}

void tst_Engine::windowThatGoesInsideBeginOfFrameEndsTheFrame()
{
    Host host;
    host.activate();
    WindowProc& proc = *host.events.windows.front();
    osg::WindowPtr window = osg::PassiveWindow::create();
    proc.setWinPtr(window, true);
    class Taker : public Observer
    {
    public:
        Taker()
            : Observer("taker")
        {
            WindowProc::_beginFrameWidget.attach(*this);
        }
        void notify(const double&, BaseObject* first, BaseObject*, BaseObject*) override
        {
            osg::WindowPtr none;
            dynamic_cast<WindowProc*>(first)->setWinPtr(none, true);
        }
    } taker;
    host.events.take();
    host.context->runFrame();
    QCOMPARE(host.events.take(), Names{"begin"});
    QVERIFY(proc.winPtr() == osg::NullFC);
}

void tst_Engine::viewportComesAndGoesWithTheWindowPointer()
{
    Host host;
    host.activate();
    WindowProc& proc = *host.events.windows.front();
    auto* viewarea = dynamic_cast<Viewarea*>(proc.window()->viewareas()->elem(0).node());
    QVERIFY(viewarea->getViewareaProc());
    QVERIFY(viewarea->getViewareaProc()->vptPtr() == osg::NullFC);
    osg::WindowPtr window = osg::PassiveWindow::create();
    proc.setWinPtr(window, true);
    const osg::ViewportPtr port = viewarea->getViewareaProc()->vptPtr();
    QVERIFY(port != osg::NullFC);
    QVERIFY(port->getParent() == window);
    QVERIFY(port->getCamera() != osg::NullFC);
    QVERIFY(!viewarea->getViewareaProc()->overSensor());
    osg::WindowPtr none;
    proc.setWinPtr(none, true);
    QVERIFY(viewarea->getViewareaProc()->vptPtr() == osg::NullFC);
}

void tst_Engine::viewareaCoversItsFractionOfTheWindow()
{
    Host host;
    QVERIFY(host.load("<Engine><Window><Viewarea position='0.5 0.25' size='0.5 0.75'/></Window></Engine>"));
    host.activate();
    WindowProc& proc = *host.events.windows.front();
    osg::WindowPtr window = osg::PassiveWindow::create();
    proc.setWinPtr(window, true);
    proc.resize(400, 200);
    auto* viewarea = dynamic_cast<Viewarea*>(proc.window()->viewareas()->elem(0).node());
    const osg::ViewportPtr port = viewarea->getViewareaProc()->vptPtr();
    QCOMPARE(port->getPixelLeft(), 200);
    QCOMPARE(port->getPixelRight(), 399);
    QCOMPARE(port->getPixelBottom(), 50);
    QCOMPARE(port->getPixelTop(), 199);
}

void tst_Engine::titleIsTheFieldOrTheName()
{
    Host host;
    QVERIFY(
        host.load("<Engine><Window title='Left'><Viewarea/></Window><Window><Viewarea/></Window></Engine>"));
    host.activate();
    QCOMPARE(host.events.windows[0]->title(), std::string("Left"));
    QCOMPARE(host.events.windows[1]->title(), std::string("Orvane"));
}

void tst_Engine::resizeReachesTheOpenSGWindow()
{
    Host host;
    host.activate();
    WindowProc& proc = *host.events.windows.front();
    osg::WindowPtr window = osg::PassiveWindow::create();
    proc.setWinPtr(window, true);
    proc.resize(123, 45);
    QCOMPARE(int(window->getWidth()), 123);
    QCOMPARE(int(window->getHeight()), 45);
    QVERIFY(window->isResizePending());
}

void tst_Engine::windowThatEndsLetsGoOfItsPointer()
{
    osg::WindowPtr window = osg::PassiveWindow::create();
    osg::addRefCP(window);
    for (const bool counted : {true, false}) {
        Host host;
        host.activate();
        host.events.windows.front()->setWinPtr(window, counted);
        QCOMPARE(window.getRefCount(), counted ? 2 : 1);
        QVERIFY(host.context->removeRoot(Engine::_type));
        QCOMPARE(window.getRefCount(), 1);
        QCOMPARE(window->getPort().size(), decltype(window->getPort().size())(0));
    }
    osg::subRefCP(window);
}

void tst_Engine::inputIsHandledInTheNextFrame()
{
    const QTemporaryDir folder;
    QFile target(folder.filePath(QStringLiteral("target.x3d")));
    QVERIFY(target.open(QIODevice::WriteOnly));
    target.write("<X3D version='4.0'><Scene><Group DEF='Arrived'/></Scene></X3D>");
    target.close();

    Host host;
    const std::string base = folder.filePath(QStringLiteral("start.x3d")).toStdString();
    QVERIFY(host.context->load(base,
                               "<X3D version='4.0'><Scene><Anchor url='\"absent.x3d\" \"target.x3d\"'>"
                               "<Shape><Box/></Shape></Anchor></Scene></X3D>",
                               Context::REPLACE_LT, {}));
    host.activate();
    WindowProc& proc = *host.events.windows.front();
    osg::WindowPtr window = osg::PassiveWindow::create();
    proc.setWinPtr(window, true);
    proc.resize(100, 100);
    host.context->runFrame();
    const auto hasArrived = [&] {
        return NodeNameSpace::findNode(NodeNameSpace::findNameSpace(nullptr, "scene", host.context, false),
                                       "Arrived") != nullptr;
    };
    proc.browsePickedNode(1, 1);
    host.context->runFrame();
    QVERIFY(!hasArrived());
    proc.browsePickedNode(50, 50);
    proc.message("no such message");
    QVERIFY(!hasArrived());
    host.context->runFrame();
    QVERIFY(hasArrived());
    QCOMPARE(host.events.windows.size(), std::size_t(1));
}

void tst_Engine::timeStandsWithinAFrame()
{
    /// Reads the time of a window whenever a frame draws it.
    class Reader : public Observer
    {
    public:
        Reader()
            : Observer("reader")
        {
        }
        void notify(const double&, BaseObject* window, BaseObject*, BaseObject*) override
        {
            times.push_back(dynamic_cast<WindowProc*>(window)->contextTimeStamp());
        }

        std::vector<double> times;
    };
    Host host;
    host.activate();
    WindowProc& window = *host.events.windows.front();
    QVERIFY(window.contextTimeStamp() >= 0.0);
    osg::WindowPtr pointer = osg::PassiveWindow::create();
    window.setWinPtr(pointer, true);
    Reader reader;
    WindowProc::_beginFrameWidget.attach(reader);
    WindowProc::_endFrameWidget.attach(reader);
    host.context->holdTime(window.contextTimeStamp() + 50.0);
    host.context->runFrame();
    QCOMPARE(reader.times.size(), std::size_t(2));
    QCOMPARE(reader.times[0], host.context->timeStamp());
    QCOMPARE(reader.times[1], reader.times[0]);
    QCOMPARE(window.contextTimeStamp(), reader.times[0]);
}

QTEST_GUILESS_MAIN(tst_Engine)
#include "tst_Engine.moc"
