// What a route of a cascade costs, with an observer at its end, beside field connections of Coin that are
// read; what an idle frame of a large scene costs; what a text of numbers costs.
#include "LineReporter.h"
#include "base/Graph.h"
#include "base/NodeClass.h"
#include "base/ValueFields.h"
#include <Orvane/Context.h>
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>
#include <Orvane/Observer.h>
#include <Orvane/Route.h>
#include <benchmark/benchmark.h>
#include <charconv>
#include <string>
#include <vector>
#ifdef ORVANE_BENCH_COIN
#include <Inventor/SoDB.h>
#include <Inventor/fields/SoSFVec3f.h>
#include <Inventor/nodes/SoTranslation.h>
#endif

namespace {

using namespace Orvane;

class CountingObserver : public Observer
{
public:
    CountingObserver()
        : Observer("count")
    {
    }
    void notify(const double&, BaseObject*, BaseObject*, BaseObject*) override { ++count; }

    unsigned long count = 0;
};

/// Transforms below a running scene.
class World
{
public:
    explicit World(int count)
        : _context(Context::create())
    {
        _scene = createRoot(_context, "Scene", nullptr, HOST_NC);
        auto& children = static_cast<MFNode&>(*_scene->findField("children", Node::EXACT_FSO));
        for (int i = 0; i < count; ++i)
            children.addNode(0.0, createNode(*_context, *findType("Transform"), HOST_NC).get(),
                             Field::LOADER_CT);
        _context->setRootState(0.0, RUNNING_NS);
    }
    World(const World&) = delete;
    World& operator=(const World&) = delete;
    ~World() { _context->subRef(); }

    Context& context() const { return *_context; }
    SFVec3f& translation(int index) const
    {
        auto& children = static_cast<MFNode&>(*_scene->findField("children", Node::EXACT_FSO));
        return static_cast<SFVec3f&>(*children[index].node()->findField("translation", Node::EXACT_FSO));
    }

private:
    Context* _context;
    Node* _scene;
};

void connectFields(Field& from, Field& to)
{
    from.createOutSlot(false);
    to.createInSlot(false);
    Route::create(*from._outSlot, *to._inSlot, Route::SCENE_RT);
}

/// A chain of 1,000 routes; an observer at each event in.
void chainOfRoutes(benchmark::State& state)
{
    constexpr int length = 1000;
    const World world(length + 1);
    CountingObserver observer;
    for (int i = 0; i < length; ++i) {
        connectFields(world.translation(i), world.translation(i + 1));
        world.translation(i + 1)._inSlot->processEventSubject().attach(observer);
    }
    float x = 0.0F;
    for (auto _ : state) {
        world.translation(0).setValue(0.0, osg::Vec3f(x += 1.0F, 0.0F, 0.0F), Field::EXTERNAL_CT);
        world.context().runFrame();
    }
    if (world.translation(length).value()[0] != x || observer.count == 0)
        state.SkipWithError("the value did not arrive");
}

void fanOfRoutes(benchmark::State& state)
{
    constexpr int width = 1000;
    const World world(width + 1);
    CountingObserver observer;
    for (int i = 1; i <= width; ++i) {
        connectFields(world.translation(0), world.translation(i));
        world.translation(i)._inSlot->processEventSubject().attach(observer);
    }
    float x = 0.0F;
    for (auto _ : state) {
        world.translation(0).setValue(0.0, osg::Vec3f(x += 1.0F, 0.0F, 0.0F), Field::EXTERNAL_CT);
        world.context().runFrame();
    }
}

void idleFrame(benchmark::State& state)
{
    const World world(10000);
    world.context().runFrame();
    for (auto _ : state)
        benchmark::DoNotOptimize(world.context().runFrame());
}

std::string numbersText()
{
    std::string text;
    for (int i = 0; i < 99999; ++i)
        text += std::to_string(i * 0.001F) + (i % 3 == 2 ? ", " : " ");
    return text;
}

void numbersFromText(benchmark::State& state)
{
    const std::string text = numbersText();
    Context* const context = Context::create();
    {
        const NodeRef node = createNode(*context, *findType("Coordinate"), HOST_NC);
        Field& points = *node->findField("point", Node::EXACT_FSO);
        std::string error;
        for (auto _ : state)
            if (!points.parseValue(text, error))
                state.SkipWithError(error.c_str());
    }
    context->subRef();
}

/// What the standard library needs for the numbers alone.
void numbersByFromChars(benchmark::State& state)
{
    const std::string text = numbersText();
    for (auto _ : state) {
        std::vector<float> values;
        const char* const end = text.data() + text.size();
        for (const char* at = text.data(); at < end;) {
            float value = 0.0F;
            at = std::from_chars(at, end, value).ptr;
            while (at < end && (*at == ' ' || *at == ','))
                ++at;
            values.push_back(value);
        }
        benchmark::DoNotOptimize(values.data());
    }
}

#ifdef ORVANE_BENCH_COIN
/// A chain of connected fields, read at its end: Coin evaluates on demand.
void chainOfCoin(benchmark::State& state)
{
    constexpr int length = 1000;
    std::vector<SoTranslation*> nodes;
    for (int i = 0; i <= length; ++i) {
        nodes.push_back(new SoTranslation);
        nodes.back()->ref();
        if (i > 0)
            nodes[i]->translation.connectFrom(&nodes[i - 1]->translation);
    }
    float x = 0.0F;
    for (auto _ : state) {
        nodes[0]->translation.setValue(x += 1.0F, 0.0F, 0.0F);
        for (SoTranslation* node : nodes)
            benchmark::DoNotOptimize(node->translation.getValue());
    }
    if (nodes[length]->translation.getValue()[0] != x)
        state.SkipWithError("the value did not arrive");
    for (auto node = nodes.rbegin(); node != nodes.rend(); ++node)
        (*node)->unref();
}
#endif

} // namespace

int main(int argc, char** argv)
{
    benchmark::RegisterBenchmark("chain_of_1000_routes/orvane", chainOfRoutes)->Unit(benchmark::kMicrosecond);
#ifdef ORVANE_BENCH_COIN
    SoDB::init();
    benchmark::RegisterBenchmark("chain_of_1000_routes/coin", chainOfCoin)->Unit(benchmark::kMicrosecond);
#endif
    benchmark::RegisterBenchmark("fan_of_1000_routes/orvane", fanOfRoutes)->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("idle_frame_10k_nodes/orvane", idleFrame)->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("100k_numbers_of_text/orvane", numbersFromText)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("100k_numbers_of_text/from_chars", numbersByFromChars)
        ->Unit(benchmark::kMicrosecond);
    return runBenchmarks(argc, argv);
}
