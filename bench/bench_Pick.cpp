#include "LineReporter.h"
#include "Terrain.h"
#include <OpenSG/OSGIntersectAction.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGPassiveWindow.h>
#include <OpenSG/OSGRefPtr.h>
#include <Orvane/Context.h>
#include <Orvane/ContextSetup.h>
#include <Orvane/Engine.h>
#include <Orvane/Field.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/Observer.h>
#include <Orvane/Scene.h>
#include <Orvane/System.h>
#include <Orvane/WindowProc.h>
#include <cstdlib>
#include <memory>
#ifdef ORVANE_BENCH_COIN
#include <Inventor/SoDB.h>
#include <Inventor/SoPickedPoint.h>
#include <Inventor/actions/SoRayPickAction.h>
#include <Inventor/nodes/SoCoordinate3.h>
#include <Inventor/nodes/SoIndexedFaceSet.h>
#include <Inventor/nodes/SoSeparator.h>
#endif

// Picking in one mesh of a million triangles, where the first ray builds the hierarchy; and the pointer moved
// over ten thousand shapes, each with a sensor.

namespace {

using namespace osg;

constexpr int side = 708;

Line rayOf(int i)
{
    return Line(Pnt3f(static_cast<float>(i % 701), static_cast<float>(i * 7 % 703), 900),
                Vec3f(0.01F, 0.02F, -1));
}

void pickCold(benchmark::State& state)
{
    const RefPtr<NodePtr> node = makeNodeFor(makeTerrain(side));
    const std::unique_ptr<IntersectAction> action(IntersectAction::create());
    action->setLine(rayOf(1));
    const GeometryPtr geometry = GeometryPtr::dcast(node->getCore());
    for (auto _ : state) {
        state.PauseTiming();
        endEditCP(geometry->getIndices());
        state.ResumeTiming();
        action->apply(node.get());
    }
    if (!action->didHit())
        state.SkipWithError("nothing hit");
}

void pickWarm(benchmark::State& state)
{
    const RefPtr<NodePtr> node = makeNodeFor(makeTerrain(side));
    const std::unique_ptr<IntersectAction> action(IntersectAction::create());
    action->setLine(rayOf(1));
    action->apply(node.get()); // builds the hierarchy
    int i = 0;
    int hits = 0;
    for (auto _ : state) {
        action->setLine(rayOf(i++));
        action->apply(node.get());
        hits += action->didHit();
    }
    if (hits * 10 < i * 9)
        state.SkipWithError("rays miss");
}

#ifdef ORVANE_BENCH_COIN
SoSeparator* makeCoinTerrain()
{
    auto* const root = new SoSeparator;
    root->ref();
    auto* const coordinates = new SoCoordinate3;
    auto* const faces = new SoIndexedFaceSet;
    root->addChild(coordinates);
    root->addChild(faces);
    const GeometryPtr terrain = makeTerrain(side);
    const RefPtr<GeometryPtr> guard = terrain;
    const UInt32 points = terrain->getPositions()->getSize();
    coordinates->point.setNum(static_cast<int>(points));
    SbVec3f* const point = coordinates->point.startEditing();
    for (UInt32 i = 0; i < points; ++i) {
        const Pnt3f place = terrain->getPositions()->getValue(i);
        point[i].setValue(place[0], place[1], place[2]);
    }
    coordinates->point.finishEditing();
    const UInt32 corners = terrain->getIndices()->getSize();
    faces->coordIndex.setNum(static_cast<int>(corners / 3 * 4));
    int32_t* index = faces->coordIndex.startEditing();
    for (UInt32 i = 0; i < corners; ++i) {
        *index++ = static_cast<int32_t>(terrain->getIndices()->getValue(i));
        if (i % 3 == 2)
            *index++ = -1;
    }
    faces->coordIndex.finishEditing();
    return root;
}

void pickOfCoin(benchmark::State& state)
{
    SoSeparator* const root = makeCoinTerrain();
    SoRayPickAction action(SbViewportRegion(800, 600));
    int i = 0;
    int hits = 0;
    for (auto _ : state) {
        const Line ray = rayOf(i++);
        const Pnt3f& from = ray.getPosition();
        const Vec3f& direction = ray.getDirection();
        action.setRay(SbVec3f(from[0], from[1], from[2]), SbVec3f(direction[0], direction[1], direction[2]));
        action.apply(root);
        hits += action.getPickedPoint() != nullptr;
    }
    if (hits * 10 < i * 9)
        state.SkipWithError("rays miss");
    root->unref();
}
#endif

/// A window of 800 by 800 pixels before a hundred by a hundred shapes, each with a sensor of its own.
class SensedShapes : private Orvane::Observer
{
public:
    SensedShapes()
        : Observer("windows")
    {
        Orvane::System::the().init(0, nullptr, 382);
        Orvane::WindowProc::_newWidget.attach(*this);
        std::string text = "<X3D version='4.0'><Scene><Viewpoint position='49.5 49.5 130'/>";
        for (int i = 0; i < 10000; ++i) {
            const std::string number = std::to_string(i);
            text += "<Transform DEF='Place" + number + "' translation='" + std::to_string(i % 100) + " " +
                    std::to_string(i / 100) + " 0'><TouchSensor DEF='Sensor" + number +
                    "'/><Shape><Box size='0.8 0.8 0.8'/></Shape></Transform>";
        }
        _context = Orvane::Context::create();
        _context->load("shapes.x3d", text + "</Scene></X3D>", Orvane::Context::REPLACE_LT, {});
        Orvane::ContextSetup::create(_context, nullptr, Orvane::HOST_NC);
        Orvane::Engine::create(_context, nullptr, Orvane::HOST_NC);
        _context->setRootState(0.0, Orvane::RUNNING_NS);
        WindowPtr pointer = PassiveWindow::create();
        _window->setWinPtr(pointer, true);
        _window->resize(800, 800);
        _context->runFrame();
        _context->runFrame();
    }
    SensedShapes(const SensedShapes&) = delete;
    SensedShapes& operator=(const SensedShapes&) = delete;
    ~SensedShapes() override
    {
        _context->subRef();
        Orvane::System::the().exit();
    }

    /// Moves the pointer to another shape and runs the frame that tells the sensors.
    void moveTo(int i)
    {
        _window->mouseMove(100 + i * 37 % 600, 100 + i * 53 % 600);
        _context->runFrame();
    }
    void moveShape(int i)
    {
        field("Place" + std::to_string(i % 10000), "rotation")
            .setValueByStr(0.0, i % 2 ? "0 0 1 0.1" : "0 0 1 0");
    }
    bool isAnyHit(int moves)
    {
        int hits = 0;
        for (int i = 0; i < moves; ++i) {
            moveTo(i);
            for (int shape = 0; shape < 10000; ++shape)
                hits += field("Sensor" + std::to_string(shape), "isOver").valueToString() == "TRUE";
        }
        return hits > moves / 3;
    }

private:
    void notify(const double&, Orvane::BaseObject* window, Orvane::BaseObject*, Orvane::BaseObject*) override
    {
        _window = dynamic_cast<Orvane::WindowProc*>(window);
    }
    Orvane::Field& field(const std::string& node, const char* name) const
    {
        Orvane::Node* const scene = _context->findRoot(Orvane::Scene::_type);
        return *Orvane::NodeNameSpace::findNode(scene->nameSpace(), node)
                    ->findField(name, Orvane::Node::DECLARED_FSO);
    }

    Orvane::Context* _context = nullptr;
    Orvane::WindowProc* _window = nullptr;
};

void pointerMove(benchmark::State& state)
{
    SensedShapes shapes;
    int i = 0;
    for (auto _ : state)
        shapes.moveTo(i++);
    if (!shapes.isAnyHit(20))
        state.SkipWithError("no sensor hears of the pointer");
}

void pointerMoveOverMovingShapes(benchmark::State& state)
{
    SensedShapes shapes;
    int i = 0;
    for (auto _ : state) {
        shapes.moveShape(i);
        shapes.moveTo(i++);
    }
    if (!shapes.isAnyHit(20))
        state.SkipWithError("no sensor hears of the pointer");
}

} // namespace

int main(int argc, char** argv)
{
    benchmark::RegisterBenchmark("pick_1m_triangles_cold/orvane", pickCold)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("pick_1m_triangles/orvane", pickWarm)->Unit(benchmark::kMicrosecond);
#ifdef ORVANE_BENCH_COIN
    SoDB::init();
    benchmark::RegisterBenchmark("pick_1m_triangles/coin", pickOfCoin)->Unit(benchmark::kMicrosecond);
#endif
    benchmark::RegisterBenchmark("pointer_move_10k_sensors/orvane", pointerMove)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("pointer_move_10k_sensors_one_moving/orvane", pointerMoveOverMovingShapes)
        ->Unit(benchmark::kMicrosecond);
    return runBenchmarks(argc, argv);
}
