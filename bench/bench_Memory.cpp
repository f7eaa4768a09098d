// What one box of a scene takes in memory: a named transform, a shape, an appearance, a material and a box.
// Prints one line a case, "case;peer;bytes of a box;B;boxes". Heaps are counted as malloc does, with what it
// keeps beside each block; texts that were read do not count.
#include "BenchScenes.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/Context.h>
#include <Orvane/System.h>
#include <cstdio>
#include <malloc.h>
#ifdef ORVANE_BENCH_COIN
#include <Inventor/SbViewportRegion.h>
#include <Inventor/SoDB.h>
#include <Inventor/SoInput.h>
#include <Inventor/VRMLnodes/SoVRMLGroup.h>
#include <Inventor/actions/SoGetBoundingBoxAction.h>
#endif

namespace {

double heapInUse()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks) + static_cast<double>(info.hblkhd);
}

/// Prints what has come onto the heap since it held \a start bytes.
void report(const char* what, const char* peer, double start, int boxes)
{
    std::printf("memory_box_%s;%s;%.0f;B;%d\n", what, peer, (heapInUse() - start) / boxes, boxes);
    std::fflush(stdout);
}

bool measureOrvane(int boxes)
{
    const std::string text = bench::boxesXml(boxes);
    const double start = heapInUse();
    Orvane::Context* context = Orvane::Context::create();
    const bool isLoaded = context->load("bench.x3d", text, Orvane::Context::REPLACE_LT, std::string());
    if (isLoaded) {
        report("loaded", "orvane", start, boxes);
        context->setRootState(0.0, Orvane::RUNNING_NS);
        context->runFrame();
        report("shown", "orvane", start, boxes);
    }
    context->subRef();
    return isLoaded;
}

#ifdef ORVANE_BENCH_COIN
/// Nothing is drawn here, but the bounds of all shapes are kept, as in the frame above.
void measureCoin(int boxes)
{
    const std::string text = bench::boxesVrml(boxes);
    const double start = heapInUse();
    SoInput input;
    input.setBuffer(text.data(), text.size());
    SoVRMLGroup* const root = SoDB::readAllVRML(&input);
    if (!root)
        return;
    root->ref();
    report("loaded", "coin", start, boxes);
    SoGetBoundingBoxAction bounds(SbViewportRegion(800, 600));
    bounds.apply(root);
    report("shown", "coin", start, boxes);
    root->unref();
}
#endif

} // namespace

int main()
{
    osg::osgLog().setLogLevel(osg::LOG_LOG);
    Orvane::System::the().init(0, nullptr, 382);
    bool isLoaded = measureOrvane(1); // what is made but once
    for (const int boxes : {10000, 100000})
        isLoaded = measureOrvane(boxes) && isLoaded;
#ifdef ORVANE_BENCH_COIN
    SoDB::init();
    measureCoin(1);
    for (const int boxes : {10000, 100000})
        measureCoin(boxes);
#endif
    Orvane::System::the().exit();
    return isLoaded ? 0 : 1;
}
