#include "Terrain.h"

#include <OpenSG/OSGIntersectAction.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>

#include <benchmark/benchmark.h>
#include <memory>

// Picking in one mesh of a million triangles: the first ray builds the hierarchy, the others use it.

namespace {

using namespace osg;

void pickCold(benchmark::State& state)
{
    const RefPtr<NodePtr> node = makeNodeFor(makeTerrain(708));
    const std::unique_ptr<IntersectAction> action(IntersectAction::create());
    action->setLine(Line(Pnt3f(300, 300, 900), Vec3f(0.01F, 0.02F, -1)));
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
BENCHMARK(pickCold)->Unit(benchmark::kMillisecond);

void pickWarm(benchmark::State& state)
{
    const RefPtr<NodePtr> node = makeNodeFor(makeTerrain(708));
    const std::unique_ptr<IntersectAction> action(IntersectAction::create());
    action->setLine(Line(Pnt3f(0, 0, 900), Vec3f(0, 0, -1)));
    action->apply(node.get()); // builds the hierarchy
    int i = 0;
    int hits = 0;
    for (auto _ : state) {
        const float x = static_cast<float>(i % 701);
        const float y = static_cast<float>(i * 7 % 703);
        action->setLine(Line(Pnt3f(x, y, 900), Vec3f(0.01F, 0.02F, -1)));
        action->apply(node.get());
        hits += action->didHit();
        ++i;
    }
    if (hits * 10 < i * 9)
        state.SkipWithError("rays miss");
}
BENCHMARK(pickWarm)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
