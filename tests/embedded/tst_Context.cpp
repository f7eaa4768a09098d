#include "../opensg/LogCollector.h"
#include "BaseTools.h"
#include "base/FrameWindow.h"
#include "base/SceneLoader.h"
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodeProc.h>
#include <Orvane/SFInt32.h>
#include <Orvane/System.h>
#include <QtTest>
#include <Relayne/URL.h>
#include <cmath>

using namespace Orvane;

namespace {

std::string events; ///< what the behaviours of a test did, in order
std::function<void(Node&)> onStart;

class TestProc : public Proc, public NodeProc
{
public:
    explicit TestProc(Node& node)
        : Proc(node)
        , NodeProc(&node)
    {
    }
    ~TestProc() override { note("~"); }
    NodeProc* nodeProc() override { return this; }
    void start(double time) override
    {
        note("s");
        startTime = time;
        startState = Proc::node().state();
        if (onStart)
            onStart(Proc::node());
    }
    void tick(double time) override
    {
        note("t");
        tickTime = time;
        if (onTick)
            onTick(*this);
    }
    void update() override
    {
        note("u");
        if (onUpdate)
            onUpdate(*this);
    }
    using Proc::pictureChanged;
    using Proc::requestFrame;
    using Proc::requestUpdate;
    using Proc::setTicking;

    double startTime = -1.0;
    double tickTime = -1.0;
    NodeState startState = CREATED_NS;
    std::function<void(TestProc&)> onTick;
    std::function<void(TestProc&)> onUpdate;

private:
    void note(const char* what) const
    {
        events += what;
        if (const std::string* name = Proc::node().name())
            events += *name;
        events += ' ';
    }
};

const ProcRegistration groupProc("Group", makeProc<TestProc>);

class TestWindow : public FrameWindow
{
public:
    explicit TestWindow(Context& context)
        : _context(context)
    {
        addFrameWindow(context, *this);
        addFrameWindow(context, *this);
    }
    ~TestWindow() override { removeFrameWindow(_context, *this); }

    void settle() override { ++settled; }
    void handleInput(double time) override
    {
        inputTime = time;
        if (onInput)
            onInput();
    }
    bool needsDrawing(unsigned long version) const override { return version != _drawn; }
    void draw(unsigned long version, FrameStatistics& statistics) override
    {
        _drawn = version;
        ++drawn;
        statistics.triangles += 10;
        statistics.drawCalls += 2;
        if (onDraw)
            onDraw();
    }

    int settled = 0;
    int drawn = 0;
    double inputTime = -1.0;
    std::function<void()> onInput;
    std::function<void()> onDraw;

private:
    Context& _context;
    unsigned long _drawn = 0;
};

// ---- A reader of scenes: a letter makes a named group in the scene, "E" an engine, "!" a fault.

Relayne::URL lastURL;

bool readTestScene(Context& context, const Relayne::URL& url, const std::string* text, LoadedScene& scene,
                   LoadReport& report)
{
    lastURL = url;
    const std::string content = text ? *text : "f";
    const NodeRef root = createNode(context, *findType("Scene"), LOADER_NC);
    NodeNameSpace* names = createNameSpace(context, nullptr, "scene", root.get(), url);
    scene.roots.push_back(root);
    for (const char c : content) {
        if (c == '!') {
            report.messages.push_back(
                {LoadMessage::ERROR_LM, "test", 3, 7, "expected a letter, found \"!\""});
            return false;
        }
        if (c == 'E') {
            scene.roots.push_back(createNode(context, *findType("Engine"), LOADER_NC));
            continue;
        }
        const NodeRef group = createNode(context, *findType("Group"), LOADER_NC);
        setName(*group, names, std::string(1, c));
        field<MFNode>(*root, "children").addNode(0.0, group.get(), Field::LOADER_CT);
        ++report.nodes;
    }
    return true;
}

bool writeTestScene(const Node& root, const std::string& path, const SaveOptions& options,
                    std::vector<std::string>& notes, std::string& error)
{
    notes.push_back("no words");
    if (options.useTabs) {
        error = "no tabs";
        return false;
    }
    events = root.type()->name + " to " + path;
    return true;
}

const SceneLoaderRegistration testLoader(readTestScene, nullptr, writeTestScene);

TestProc& procOfNode(Node& node)
{
    return *procAs<TestProc>(&node);
}

} // namespace

class tst_Context : public QObject
{
    Q_OBJECT

private slots:
    void init();
    void cleanup() { _context.reset(); }

    void childrenStartFirst();
    void nodeLinkedBelowARunningOneStarts();
    void behaviourThatUnlinksItselfAsItStarts();
    void observersOfTheEndDoNotFindTheContext();
    void statesOnlyGrow();
    void timeIsNeverNegativeAndNeverGoesBack();
    void heldTime();
    void heldTimeInTheFuture();
    void innerFrameDoesNothing();
    void ticksWhileTicking();
    void tickersMayComeAndGoWhileTicking();
    void updatesOncePerFrame();
    void nodesMayEndBeforeTheirUpdates();
    void updateAskedForByAnUpdateComesInTheSameFrame();
    void updateWithoutEndGoesOnInTheNextFrame();
    void waitsForTheNextFrame();
    void drawsOnlyWhatNeedsDrawing();
    void windowsMayGoDuringTheFrame();
    void statistics();
    void nodesDieAtTheEndOfTheFrame();
    void contextMayEndInsideItsFrame();
    void rootsComeAndGo();
    void loadReplacesRoots();
    void failedLoadChangesNothing();
    void loadInsideAFrame();
    void loadIntoARunningContextStarts();
    void loadReportAndMessages();
    void fileNamesWithOddCharacters();
    void savesTheScene();
    void systemStartsAndEndsAnyNumberOfTimes();

private:
    Node& group(const char* name);

    std::unique_ptr<TestContext> _context;
};

void tst_Context::init()
{
    _context = std::make_unique<TestContext>();
    events.clear();
    onStart = nullptr;
}

/// A named group below the scene.
Node& tst_Context::group(const char* name)
{
    Node& node = _context->add("Group");
    setName(node, nullptr, name);
    return node;
}

void tst_Context::childrenStartFirst()
{
    Node& a = group("a");
    const NodeRef b = _context->make("Group");
    const NodeRef c = _context->make("Group");
    setName(*b, nullptr, "b");
    setName(*c, nullptr, "c");
    addChild(a, *b);
    addChild(a, *c);
    addChild(*c, *b);
    addChild(*b, a);
    QVERIFY(!procOf(a));
    _context->run();
    QCOMPARE(events, std::string("sb sc sa "));
    QCOMPARE(int(procOfNode(a).startState), int(RUNNING_NS));
    QCOMPARE(procOfNode(a).startTime, 0.0);
    QVERIFY(!procOf(_context->scene()));
    events.clear();
    _context->run();
    QVERIFY(events.empty());
}

void tst_Context::nodeLinkedBelowARunningOneStarts()
{
    Node& a = group("a");
    _context->run();
    events.clear();
    const NodeRef b = _context->make("Group");
    const NodeRef c = _context->make("Group");
    setName(*b, nullptr, "b");
    setName(*c, nullptr, "c");
    addChild(*b, *c);
    QCOMPARE(int(c->state()), int(CREATED_NS));
    TestObserver added([&](double, BaseObject*, BaseObject*) { events += "added "; });
    Node::_childAdded.attach(added);
    addChild(a, *b);
    QCOMPARE(events, std::string("sc sb added "));
    QCOMPARE(int(c->state()), int(RUNNING_NS));
}

void tst_Context::behaviourThatUnlinksItselfAsItStarts()
{
    Node& a = group("a");
    _context->run();
    auto& children = field<MFNode>(a, "children");
    onStart = [&](Node&) { children.removeNode(0.0, 0, Field::EXTERNAL_CT); };
    TestObserver added(nullptr);
    Node::_childAdded.attach(added);
    const UInt64 id = [&] {
        const NodeRef b = _context->make("Group");
        addChild(a, *b);
        return b->ID();
    }();
    QCOMPARE(children.size(), 0U);
    QCOMPARE(added.count, 0);
    QVERIFY(!Node::findNode(id));
}

void tst_Context::observersOfTheEndDoNotFindTheContext()
{
    _context->scene();
    int deaths = 0;
    int found = 0;
    TestObserver observer([&](double, BaseObject*, BaseObject*) {
        ++deaths;
        found += NodeNameSpace::findNameSpace(nullptr, "scene", nullptr, false) ? 1 : 0;
    });
    Node::_deleteObject.attach(observer);
    _context.reset();
    QCOMPARE(deaths, 1);
    QCOMPARE(found, 0);
}

void tst_Context::statesOnlyGrow()
{
    Node& a = group("a");
    QVERIFY((*_context)->setRootState(0.0, LOADED_NS));
    QCOMPARE(int(a.state()), int(LOADED_NS));
    QVERIFY((*_context)->setRootState(0.0, RUNNING_NS));
    QVERIFY((*_context)->setRootState(0.0, CREATED_NS));
    QCOMPARE(int(a.state()), int(RUNNING_NS));
    QVERIFY(!(*_context)->setRootState(0.0, DYING_NS));
}

void tst_Context::timeIsNeverNegativeAndNeverGoesBack()
{
    Node& a = group("a");
    _context->run();
    QCOMPARE(procOfNode(a).contextTimeStamp(), 0.0);
    double last = 0.0;
    for (int i = 0; i < 5; ++i) {
        (*_context)->runFrame();
        QVERIFY((*_context)->timeStamp() >= last);
        last = (*_context)->timeStamp();
        QCOMPARE(procOfNode(a).contextTimeStamp(), last);
    }
    QVERIFY(last > 1.5e9); // seconds since 1970
}

void tst_Context::heldTime()
{
    (*_context)->holdTime(5.0);
    (*_context)->runFrame();
    QCOMPARE((*_context)->timeStamp(), 5.0);
    (*_context)->runFrame();
    QCOMPARE((*_context)->timeStamp(), 5.0);
    (*_context)->holdTime(4.0);
    (*_context)->runFrame();
    QCOMPARE((*_context)->timeStamp(), 5.0);
    (*_context)->holdTime(6.5);
    (*_context)->runFrame();
    QCOMPARE((*_context)->timeStamp(), 6.5);
    (*_context)->holdTime(-1.0);
    (*_context)->runFrame();
    QVERIFY((*_context)->timeStamp() > 1.5e9);
}

void tst_Context::heldTimeInTheFuture()
{
    (*_context)->holdTime(1e12);
    (*_context)->runFrame();
    (*_context)->holdTime(-1.0);
    QTest::qSleep(5);
    (*_context)->runFrame();
    QVERIFY((*_context)->timeStamp() > 1e12);
}

void tst_Context::innerFrameDoesNothing()
{
    Node& a = group("a");
    _context->run();
    double inner = -1.0;
    procOfNode(a).onTick = [&](TestProc&) { inner = (*_context)->runFrame(); };
    procOfNode(a).setTicking(true);
    events.clear();
    (*_context)->runFrame();
    QCOMPARE(inner, 0.0);
    QCOMPARE(events, std::string("ta "));
    QCOMPARE((*_context)->frameStatistics().framesRun, std::size_t(1));
}

void tst_Context::ticksWhileTicking()
{
    TestProc* proc = nullptr;
    {
        Node& a = group("a");
        _context->run();
        proc = &procOfNode(a);
    }
    events.clear();
    (*_context)->runFrame();
    QVERIFY(events.empty());
    proc->setTicking(true);
    proc->setTicking(true);
    (*_context)->runFrame();
    (*_context)->runFrame();
    QCOMPARE(events, std::string("ta ta "));
    QCOMPARE(proc->tickTime, (*_context)->timeStamp());
    proc->setTicking(false);
    (*_context)->runFrame();
    QCOMPARE(events, std::string("ta ta "));
}

void tst_Context::tickersMayComeAndGoWhileTicking()
{
    Node& a = group("a");
    Node& b = group("b");
    Node& c = group("c");
    Node& d = group("d");
    _context->run();
    for (Node* node : {&a, &b, &c})
        procOfNode(*node).setTicking(true);
    procOfNode(a).onTick = [&](TestProc& proc) {
        proc.setTicking(false);
        procOfNode(b).setTicking(false);
        procOfNode(d).setTicking(true);
    };
    events.clear();
    (*_context)->runFrame();
    QCOMPARE(events, std::string("ta tc "));
    events.clear();
    (*_context)->runFrame();
    QCOMPARE(events, std::string("tc td "));
    const NodeRef victim(&d);
    procOfNode(c).onTick = [&](TestProc&) { delete victim.get(); };
    events.clear();
    (*_context)->runFrame();
    QCOMPARE(events, std::string("tc ~d "));
    events.clear();
    (*_context)->runFrame();
    QCOMPARE(events, std::string("tc "));
}

void tst_Context::updatesOncePerFrame()
{
    Node& a = group("a");
    Node& b = group("b");
    _context->run();
    events.clear();
    procOfNode(a).requestUpdate();
    procOfNode(a).requestUpdate();
    procOfNode(b).requestUpdate();
    (*_context)->runFrame();
    QCOMPARE(events, std::string("ua ub "));
    events.clear();
    addChild(a, *_context->make("Shape")); // a change of the children asks for an update
    procOfNode(b).requestUpdate();
    delete &b;
    (*_context)->runFrame();
    QCOMPARE(events, std::string("~b ua "));
}

void tst_Context::nodesMayEndBeforeTheirUpdates()
{
    Node& a = group("a");
    Node& b = group("b");
    Node& c = group("c");
    Node& d = group("d");
    _context->run();
    // One waits in this round, the other, which had its turn, in the next.
    procOfNode(b).onUpdate = [&](TestProc&) {
        procOfNode(d).requestUpdate();
        procOfNode(a).requestUpdate();
        delete &a;
        delete &c;
    };
    for (Node* node : {&a, &b, &c, &d})
        procOfNode(*node).requestUpdate();
    events.clear();
    (*_context)->runFrame();
    QCOMPARE(events, std::string("ua ub ~a ~c ud "));
    events.clear();
    procOfNode(b).onUpdate = nullptr;
    procOfNode(b).requestUpdate();
    (*_context)->runFrame();
    QCOMPARE(events, std::string("ub "));
}

void tst_Context::updateAskedForByAnUpdateComesInTheSameFrame()
{
    Node& a = group("a");
    Node& b = group("b");
    _context->run();
    procOfNode(b).onUpdate = [&](TestProc&) { procOfNode(a).requestUpdate(); };
    procOfNode(a).requestUpdate();
    procOfNode(b).requestUpdate();
    events.clear();
    (*_context)->runFrame();
    QCOMPARE(events, std::string("ua ub ua "));
}

void tst_Context::updateWithoutEndGoesOnInTheNextFrame()
{
    Node& a = group("a");
    _context->run();
    procOfNode(a).onUpdate = [&](TestProc& proc) { proc.requestUpdate(); };
    procOfNode(a).requestUpdate();
    QVERIFY((*_context)->runFrame() <= 1.0 / 60.0);
    events.clear();
    (*_context)->runFrame();
    QVERIFY(!events.empty());
}

void tst_Context::waitsForTheNextFrame()
{
    Node& a = group("a");
    _context->run();
    (*_context)->runFrame();
    const double idle = (*_context)->runFrame();
    QVERIFY(idle > 1.0 / 60.0 && idle <= 0.1);
    procOfNode(a).setTicking(true);
    const double moving = (*_context)->runFrame();
    QVERIFY(moving >= 0.0 && moving <= 1.0 / 60.0);
    procOfNode(a).onTick = [](TestProc& proc) {
        proc.setTicking(false);
        proc.requestFrame(0.05);
    };
    const double wanted = (*_context)->runFrame();
    QVERIFY(wanted > 0.0 && wanted <= 0.05);
    procOfNode(a).onTick = [](TestProc& proc) {
        proc.setTicking(false);
        proc.requestFrame();
    };
    procOfNode(a).setTicking(true);
    QVERIFY((*_context)->runFrame() <= 1.0 / 60.0);
    // The wish holds for one frame.
    QVERIFY((*_context)->runFrame() > 1.0 / 60.0);
}

void tst_Context::drawsOnlyWhatNeedsDrawing()
{
    Node& a = group("a");
    _context->run();
    TestWindow window(**_context);
    (*_context)->runFrame();
    QCOMPARE(window.drawn, 1);
    QCOMPARE(window.settled, 1);
    QCOMPARE(window.inputTime, (*_context)->timeStamp());
    (*_context)->runFrame();
    QCOMPARE(window.drawn, 1);
    procOfNode(a).pictureChanged();
    (*_context)->runFrame();
    QCOMPARE(window.drawn, 2);
    window.onDraw = [&] { procOfNode(a).pictureChanged(); };
    procOfNode(a).pictureChanged();
    (*_context)->runFrame();
    (*_context)->runFrame();
    QCOMPARE(window.drawn, 4);
}

void tst_Context::windowsMayGoDuringTheFrame()
{
    _context->run();
    auto first = std::make_unique<TestWindow>(**_context);
    auto second = std::make_unique<TestWindow>(**_context);
    std::unique_ptr<TestWindow> third;
    first->onInput = [&] {
        QVERIFY(isInFrame(**_context));
        second.reset();
        if (!third)
            third = std::make_unique<TestWindow>(**_context);
    };
    (*_context)->runFrame();
    QVERIFY(!isInFrame(**_context));
    QCOMPARE(third->inputTime, -1.0);
    (*_context)->runFrame();
    QVERIFY(third->inputTime > 0.0);
    first.reset();
    (*_context)->runFrame();
}

void tst_Context::statistics()
{
    _context->run();
    TestWindow a(**_context);
    TestWindow b(**_context);
    (*_context)->runFrame();
    (*_context)->runFrame();
    const FrameStatistics statistics = (*_context)->frameStatistics();
    QCOMPARE(statistics.framesRun, std::size_t(2));
    QCOMPARE(statistics.framesDrawn, std::size_t(1));
    QCOMPARE(statistics.triangles, std::size_t(20));
    QCOMPARE(statistics.drawCalls, std::size_t(4));
    QVERIFY(statistics.framesPerSecond >= 0.0);
}

void tst_Context::nodesDieAtTheEndOfTheFrame()
{
    Node& a = group("a");
    _context->run();
    NodeRef b = _context->make("Group");
    setName(*b, nullptr, "b");
    addChild(a, *b);
    const UInt64 id = b->ID();
    b = NodeRef();
    procOfNode(a).onTick = [&](TestProc& proc) {
        proc.setTicking(false);
        field<MFNode>(a, "children").removeNode(0.0, 0, Field::EXTERNAL_CT);
        events += Node::findNode(id) ? "alive " : "dead ";
    };
    procOfNode(a).onUpdate = [&](TestProc&) { events += Node::findNode(id) ? "alive " : "dead "; };
    procOfNode(a).setTicking(true);
    events.clear();
    (*_context)->runFrame();
    QCOMPARE(events, std::string("ta alive ua alive ~b "));
    QVERIFY(!Node::findNode(id));
}

void tst_Context::contextMayEndInsideItsFrame()
{
    Node& a = group("a");
    _context->run();
    procOfNode(a).onTick = [&](TestProc&) { _context->end(); };
    procOfNode(a).setTicking(true);
    Context& context = **_context;
    events.clear();
    context.runFrame();
    QCOMPARE(events, std::string("ta ~a "));
}

void tst_Context::rootsComeAndGo()
{
    NodeType& type = *findType("Scene");
    QVERIFY(!(*_context)->findRoot(type));
    QVERIFY(!(*_context)->removeRoot(type));
    Node& scene = _context->scene();
    QCOMPARE((*_context)->findRoot(type), &scene);
    QCOMPARE(scene.context(), &**_context);
    TestWindow window(**_context);
    const UInt64 id = scene.ID();
    QVERIFY((*_context)->removeRoot(type));
    QCOMPARE(window.settled, 1);
    QVERIFY(!Node::findNode(id));
    QVERIFY(!(*_context)->findRoot(type));
}

void tst_Context::loadReplacesRoots()
{
    Node& scene = _context->scene();
    Node* const engine = createRoot(&**_context, "Engine", nullptr, HOST_NC);
    const UInt64 id = scene.ID();
    TestWindow window(**_context);
    QVERIFY((*_context)->load("base/scene.x3d", "ab", Context::REPLACE_LT, ""));
    QVERIFY(!Node::findNode(id));
    Node* const loaded = (*_context)->findRoot(*findType("Scene"));
    QCOMPARE(loaded->childCount(), 2);
    QCOMPARE(int(loaded->state()), int(LOADED_NS));
    QCOMPARE((*_context)->findRoot(*findType("Engine")), engine);
    QCOMPARE(window.settled, 1);
    NodeNameSpace* const names = NodeNameSpace::findNameSpace(nullptr, "scene", nullptr, false);
    QCOMPARE(names->rootNode(), loaded);
    QCOMPARE(names->baseURL().toString(), std::string("base/scene.x3d"));
    QVERIFY(NodeNameSpace::findNode(names, "b"));
    QVERIFY((*_context)->load("base/scene.x3d", "E", Context::REPLACE_LT, ""));
    QVERIFY((*_context)->findRoot(*findType("Engine")) != engine);
}

void tst_Context::failedLoadChangesNothing()
{
    Node& scene = _context->scene();
    Node& a = group("a");
    _context->run();
    events.clear();
    QVERIFY(!(*_context)->load("x", "b!", Context::REPLACE_LT, ""));
    QCOMPARE((*_context)->findRoot(*findType("Scene")), &scene);
    QCOMPARE(scene.childCount(), 1);
    QCOMPARE(int(a.state()), int(RUNNING_NS));
    QVERIFY(events.empty());
    QCOMPARE(NodeNameSpace::findNameSpace(nullptr, "scene", nullptr, false)->rootNode(), &scene);
    QVERIFY(!(*_context)->loadReport().ok);
    QCOMPARE((*_context)->loadReport().messages.size(), std::size_t(1));
}

void tst_Context::loadInsideAFrame()
{
    Node& a = group("a");
    _context->run();
    const UInt64 id = a.ID();
    procOfNode(a).onTick = [&](TestProc&) {
        events += (*_context)->load("x", "b", Context::REPLACE_LT, "") ? "loaded " : "failed ";
        const NodeNameSpace* names = NodeNameSpace::findNameSpace(nullptr, "scene", nullptr, false);
        events += names->rootNode() == (*_context)->findRoot(*findType("Scene")) ? "new " : "old ";
        events += Node::findNode(id) ? "alive " : "dead ";
    };
    procOfNode(a).setTicking(true);
    events.clear();
    (*_context)->runFrame();
    QCOMPARE(events, std::string("ta sb loaded new alive ~a "));
}

void tst_Context::loadIntoARunningContextStarts()
{
    QVERIFY((*_context)->load("x", "a", Context::REPLACE_LT, ""));
    QVERIFY(events.empty());
    _context->run();
    QCOMPARE(events, std::string("sa "));
    QVERIFY((*_context)->load("x", "b", Context::REPLACE_LT, ""));
    QCOMPARE(events, std::string("sa sb ~a "));
}

void tst_Context::loadReportAndMessages()
{
    osg::doInitLog();
    const osg::LogType logType = osg::osgLogP->getLogType();
    std::string log;
    {
        LogCollector collector(*osg::osgLogP);
        (*_context)->load("x", "a!", Context::REPLACE_LT, "");
        log = collector.take();
        QVERIFY2(log.find("ERROR: test:3:7: expected a letter") != std::string::npos, log.c_str());
        (*_context)->load("file:///s/x.x3d", "a", Context::REPLACE_LT, "");
        Node& a = *NodeNameSpace::findNode((*_context)->findRoot(*findType("Scene"))->nameSpace(), "a");
        setSourcePlace(a, 12, 5);
        QCOMPARE(sourceLine(a), 12U);
        QCOMPARE(sourceColumn(a), 5U);
        reportMessage(a, LoadMessage::WARNING_LM, "no image");
        log = collector.take();
    }
    osg::osgLogP->setLogType(logType);
    QVERIFY2(log.find("WARNING: /s/x.x3d:12:5: no image") != std::string::npos, log.c_str());
    const LoadReport& report = (*_context)->loadReport();
    QVERIFY(report.ok);
    QCOMPARE(report.nodes, std::size_t(1));
    QVERIFY(report.milliseconds >= 0.0);
    QCOMPARE(report.messages.size(), std::size_t(1));
    QCOMPARE(report.messages[0].toString(), std::string("/s/x.x3d:12:5: no image"));
    QCOMPARE((LoadMessage{LoadMessage::ERROR_LM, "", 0, 0, "t"}).toString(), std::string("t"));
    QCOMPARE((LoadMessage{LoadMessage::ERROR_LM, "f", 1, 0, "t"}).toString(), std::string("f:1: t"));
}

void tst_Context::fileNamesWithOddCharacters()
{
    QTemporaryDir dir;
    const QString name = dir.filePath(QStringLiteral("50%20off #1?.x3d"));
    QFile file(name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.close();
    QVERIFY((*_context)->load(QFile::encodeName(name).toStdString(), Context::REPLACE_LT, ""));
    QCOMPARE(QFile::decodeName(lastURL.localFile().c_str()), name);
    QVERIFY((*_context)->load("no%20file#view", Context::REPLACE_LT, ""));
    QCOMPARE(lastURL.localFile(), std::string("no file"));
    QCOMPARE(lastURL.fragment(), std::string("view"));
}

void tst_Context::savesTheScene()
{
    std::string error;
    QVERIFY(!(*_context)->save("a.x3d", SaveOptions(), error));
    QVERIFY(!error.empty());
    _context->scene();
    QVERIFY((*_context)->save("a.x3d", SaveOptions(), error));
    QCOMPARE((*_context)->saveNotes(), std::vector<std::string>{"no words"});
    QCOMPARE(events, std::string("Scene to a.x3d"));
    SaveOptions tabs;
    tabs.useTabs = true;
    QVERIFY(!(*_context)->save("a.x3d", tabs, error));
    QCOMPARE((*_context)->saveNotes().size(), std::size_t(1));
    QCOMPARE(error, std::string("no tabs"));
}

void tst_Context::systemStartsAndEndsAnyNumberOfTimes()
{
    QVERIFY(!System::the().isInitialised());
    System::the().exit();
    for (int i = 0; i < 3; ++i) {
        System::the().init(0, nullptr, 382);
        System::the().init(0, nullptr, 382);
        QVERIFY(System::the().isInitialised());
        System::the().exit();
        System::the().exit();
        QVERIFY(!System::the().isInitialised());
    }
}

QTEST_APPLESS_MAIN(tst_Context)
#include "tst_Context.moc"
