// What a frame of a thousand scripts costs, and what it takes to bring 400 of them to life, beside a heap of
// Duktape for each; and the memory that they take.
#include "LineReporter.h"
#include "base/Graph.h"
#include <Orvane/Context.h>
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/Scene.h>
#include <Orvane/System.h>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <duktape.h>
#include <malloc.h>
#include <string>
#include <vector>

namespace {

using namespace Orvane;

constexpr int manyScripts = 1000;
constexpr int fewScripts = 400;

const char code[] = "var turns = 0;\n"
                    "function initialize() { turns = 0; }\n"
                    "function set_fraction(value, time) {\n"
                    "  ++turns;\n"
                    "  place = new SFVec3f(Math.sin(value), value * 2, 0);\n"
                    "}\n";

/// A world of scripts that one clock drives, each of which moves a shape.
std::string sceneOf(int count)
{
    std::string text = "#X3D V3.3 utf8\nDEF Clock ScalarInterpolator { key [ 0 1 ] keyValue [ 0 1 ] }\n";
    for (int i = 0; i < count; ++i) {
        const std::string number = std::to_string(i);
        text += "DEF T" + number + " Transform {}\nDEF S" + number +
                " Script { inputOnly SFFloat set_fraction outputOnly SFVec3f place url \"ecmascript:" + code +
                "\" }\nROUTE Clock.value_changed TO S" + number + ".set_fraction\nROUTE S" + number +
                ".place TO T" + number + ".translation\n";
    }
    return text;
}

class World
{
public:
    explicit World(int scripts)
        : _context(Context::create())
    {
        _context->load("bench.x3dv", sceneOf(scripts), Context::REPLACE_LT, {});
        _context->setRootState(0.0, RUNNING_NS);
    }
    World(const World&) = delete;
    World& operator=(const World&) = delete;
    ~World() { _context->subRef(); }

    Context& context() const { return *_context; }
    Field& field(const char* node, const char* name) const
    {
        Node* const scene = _context->findRoot(Scene::_type);
        return *NodeNameSpace::findNode(scene->nameSpace(), node)->findField(name, Node::DECLARED_FSO);
    }

private:
    Context* _context;
};

void frameOfScripts(benchmark::State& state)
{
    const World world(manyScripts);
    world.context().runFrame();
    Field& fraction = world.field("Clock", "set_fraction");
    int turn = 0;
    for (auto _ : state) {
        fraction.setValueByStr(0.0, ++turn % 2 ? "0.25" : "0.75");
        world.context().runFrame();
    }
    if (world.field("T999", "translation").valueToString() == "0 0 0")
        state.SkipWithError("the scripts did nothing");
}

void birthOfScripts(benchmark::State& state)
{
    for (auto _ : state) {
        const World world(fewScripts);
        world.context().runFrame();
    }
}

/// A heap for a script, with a vector class and the same code.
duk_context* heapOfItsOwn()
{
    duk_context* const heap = duk_create_heap_default();
    duk_eval_string_noresult(heap,
                             "function SFVec3f(x, y, z) { this.x = x; this.y = y; this.z = z; } var place;");
    duk_eval_string_noresult(heap, code);
    duk_eval_string_noresult(heap, "initialize()");
    return heap;
}

void birthOfHeaps(benchmark::State& state)
{
    for (auto _ : state) {
        std::vector<duk_context*> heaps;
        for (int i = 0; i < fewScripts; ++i)
            heaps.push_back(heapOfItsOwn());
        for (duk_context* heap : heaps)
            duk_destroy_heap(heap);
    }
}

double megabytes()
{
    const struct mallinfo2 info = ::mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd) / (1024.0 * 1024.0);
}

void reportMemory()
{
    const double before = megabytes();
    {
        const World world(fewScripts);
        world.context().runFrame();
        std::printf("400_scripts_memory;orvane;%.3f;MB;1\n", megabytes() - before);
    }
    const double between = megabytes();
    std::vector<duk_context*> heaps;
    for (int i = 0; i < fewScripts; ++i)
        heaps.push_back(heapOfItsOwn());
    std::printf("400_scripts_memory;duktape_each;%.3f;MB;1\n", megabytes() - between);
    for (duk_context* heap : heaps)
        duk_destroy_heap(heap);
}

} // namespace

int main(int argc, char** argv)
{
    System::the().init(0, nullptr, 382);
    reportMemory();
    benchmark::RegisterBenchmark("frame_of_1000_scripts/orvane", frameOfScripts)
        ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("400_scripts/orvane", birthOfScripts)->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("400_scripts/duktape_each", birthOfHeaps)->Unit(benchmark::kMillisecond);
    const int result = runBenchmarks(argc, argv);
    System::the().exit();
    return result;
}
