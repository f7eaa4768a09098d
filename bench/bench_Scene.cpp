// Before Qt, whose headers bring another GL header.
#include <epoxy/gl.h>

#include "../tests/opensg/GLPicture.h"
#include "BenchScenes.h"
#include "LineReporter.h"
#include "base/Proc.h"
#include "core/SceneProc.h"
#include <OpenSG/OSGDirectionalLight.h>
#include <OpenSG/OSGVisitSubTree.h>
#include <Orvane/Context.h>
#include <Orvane/Node.h>
#include <Orvane/Scene.h>
#include <Orvane/System.h>
#include <QGuiApplication>
#include <atomic>
#include <cstdlib>
#include <ctime>
#include <new>
#ifdef ORVANE_BENCH_COIN
#include <Inventor/SoDB.h>
#include <Inventor/SoInput.h>
#include <Inventor/actions/SoGLRenderAction.h>
#include <Inventor/nodes/SoDirectionalLight.h>
#include <Inventor/nodes/SoPerspectiveCamera.h>
#include <Inventor/nodes/SoSeparator.h>
#endif

// Frames of whole scenes as the runtime draws them, 800 x 600, beside the same files in a peer; and what
// moving scenes cost without drawing.

namespace {

std::atomic<long> allocations{0};

} // namespace

void* operator new(std::size_t size)
{
    ++allocations;
    if (void* const block = std::malloc(size ? size : 1))
        return block;
    throw std::bad_alloc();
}

void operator delete(void* block) noexcept
{
    std::free(block);
}

void operator delete(void* block, std::size_t) noexcept
{
    std::free(block);
}

namespace {

constexpr int BoxCount = 10000;
constexpr int MeshSide = 708; // a million triangles

/// A scene that runs, without windows of its own.
class RunningScene
{
public:
    explicit RunningScene(const std::string& text)
    {
        Orvane::System::the().init(0, nullptr, 382);
        _context = Orvane::Context::create();
        _context->load("scene", text, Orvane::Context::REPLACE_LT, {});
        _context->holdTime(1000.0);
        _context->setRootState(0.0, Orvane::RUNNING_NS);
        _context->runFrame();
    }
    RunningScene(const RunningScene&) = delete;
    RunningScene& operator=(const RunningScene&) = delete;
    ~RunningScene()
    {
        _context->subRef();
        Orvane::System::the().exit();
    }

    void runTo(double seconds)
    {
        _context->holdTime(1000.0 + seconds);
        _context->runFrame();
    }
    osg::NodePtr tree() const
    {
        return Orvane::procAs<Orvane::SceneProc>(_context->findRoot(Orvane::Scene::_type))->root();
    }

private:
    Orvane::Context* _context;
};

/// A clock that moves ten thousand transforms by interpolators of their own.
std::string movingXml()
{
    std::string text = "<X3D version='4.0'><Scene><TimeSensor DEF='Clock' loop='true' cycleInterval='4'/>";
    for (int i = 0; i < BoxCount; ++i) {
        const std::string n = std::to_string(i);
        text += "<PositionInterpolator DEF='I" + n +
                "' key='0 0.25 0.5 1' keyValue='0 0 0, 0 1 0, 1 1 0, 0 0 0'/>" + "<Transform DEF='T" + n +
                "'/><ROUTE fromNode='Clock' fromField='fraction_changed' toNode='I" + n +
                "' toField='set_fraction'/><ROUTE fromNode='I" + n + "' fromField='value_changed' toNode='T" +
                n + "' toField='set_translation'/>";
    }
    return text + "</Scene></X3D>";
}

/// Measures runs of \a frame, and the processor's time in all threads.
template <class Frame>
void measure(benchmark::State& state, Frame frame)
{
    const std::clock_t start = std::clock();
    for (auto _ : state)
        frame();
    state.counters["processor ms"] = 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC /
                                     static_cast<double>(state.iterations());
}

void moveInterpolators(benchmark::State& state)
{
    RunningScene scene(movingXml());
    double time = 0.0;
    scene.runTo(time += 0.016);
    scene.runTo(time += 0.016);
    const long before = allocations;
    measure(state, [&] { scene.runTo(time += 0.016); });
    state.counters["allocations"] =
        static_cast<double>(allocations - before) / static_cast<double>(state.iterations());
}

/// From where a scene is looked at: 10 units of it are as high as the picture for each 10 of distance.
struct View
{
    osg::Vec3f eye;
    float distance;
    float tilt; ///< radians, round X
};

void drawScene(benchmark::State& state, const std::string& text, const View& view)
{
    RunningScene scene(text);
    GLPicture picture(800, 600);
    const osg::TransformPtr eye = osg::TransformPtr::dcast(picture.eye->getCore());
    osg::Matrix place;
    place.setTransform(osg::Pnt3f(view.eye), osg::Quaternion(osg::Vec3f(1.0F, 0.0F, 0.0F), view.tilt));
    eye->setMatrix(place);
    picture.camera->setNear(0.01F * view.distance);
    picture.camera->setFar(10.0F * view.distance);
    const osg::DirectionalLightPtr light = osg::DirectionalLight::create();
    light->setBeacon(picture.eye.get());
    const osg::VisitSubTreePtr reference = osg::VisitSubTree::create();
    reference->setSubTreeRoot(scene.tree());
    const osg::RefPtr<osg::NodePtr> root(osg::makeNodeFor(osg::NodeCorePtr(light)));
    root->addChild(osg::makeNodeFor(osg::NodeCorePtr(reference)));
    picture.port->setRoot(root.get());
    picture.window->draw(picture.action.get());
    glFinish();
    measure(state, [&picture] {
        picture.window->draw(picture.action.get());
        glFinish();
    });
}

#ifdef ORVANE_BENCH_COIN
void drawCoin(benchmark::State& state, const std::string& text, const View& view)
{
    GLContext context(800, 600);
    SoDB::init();
    auto* const root = new SoSeparator;
    root->ref();
    auto* const camera = new SoPerspectiveCamera;
    camera->position.setValue(view.eye.getValues());
    camera->orientation.setValue(SbVec3f(1.0F, 0.0F, 0.0F), view.tilt);
    camera->heightAngle = 2.0F * 0.4636476F;
    camera->nearDistance = 0.01F * view.distance;
    camera->farDistance = 10.0F * view.distance;
    root->addChild(camera);
    root->addChild(new SoDirectionalLight);
    SoInput input;
    input.setBuffer(const_cast<char*>(text.data()), text.size());
    SoSeparator* const scene = SoDB::readAll(&input);
    if (!scene) {
        state.SkipWithError("not read");
        return;
    }
    root->addChild(scene);
    SoGLRenderAction action(SbViewportRegion(800, 600));
    action.setCacheContext(1);
    const auto frame = [&] {
        glClearColor(0.0F, 0.0F, 0.0F, 1.0F);
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glEnable(GL_DEPTH_TEST);
        action.apply(root);
        glFinish();
    };
    // Its caches are made in the first frames.
    for (int i = 0; i < 5; ++i)
        frame();
    measure(state, frame);
    root->unref();
}
#endif

const View BoxesView{osg::Vec3f(49.5F, 49.5F, 100.0F), 100.0F, 0.0F};
const View MeshView{osg::Vec3f(3.5F, 8.0F, 3.5F), 8.0F, -1.57079633F}; // from above

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "xcb");
    QGuiApplication application(argc, argv);
    const auto add = [](const char* name, auto run) {
        benchmark::RegisterBenchmark(name, run)->Unit(benchmark::kMillisecond)->UseRealTime();
    };
    add("10,000 interpolators, a frame/orvane", moveInterpolators);
    add("frame of boxes10k/orvane",
        [](benchmark::State& state) { drawScene(state, bench::boxesXml(BoxCount), BoxesView); });
#ifdef ORVANE_BENCH_COIN
    add("frame of boxes10k/coin",
        [](benchmark::State& state) { drawCoin(state, bench::boxesVrml(BoxCount), BoxesView); });
#endif
    add("frame of mesh1m/orvane",
        [](benchmark::State& state) { drawScene(state, bench::meshXml(MeshSide), MeshView); });
#ifdef ORVANE_BENCH_COIN
    add("frame of mesh1m/coin",
        [](benchmark::State& state) { drawCoin(state, bench::meshVrml(MeshSide), MeshView); });
#endif
    return runBenchmarks(argc, argv);
}
