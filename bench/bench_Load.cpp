#include "BenchScenes.h"
#include "LineReporter.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/Context.h>
#include <Orvane/System.h>
#include <pugixml.hpp>
#ifdef ORVANE_BENCH_COIN
#include <Inventor/SoDB.h>
#include <Inventor/SoInput.h>
#include <Inventor/VRMLnodes/SoVRMLGroup.h>
#endif

namespace {

constexpr int boxes = 10000;
constexpr int side = 708; // a million triangles

void loadScene(benchmark::State& state, const std::string& text)
{
    for (auto step : state) {
        static_cast<void>(step);
        Orvane::Context* context = Orvane::Context::create();
        if (!context->load("bench.x3d", text, Orvane::Context::REPLACE_LT, std::string()))
            state.SkipWithError("the scene does not load");
        state.PauseTiming();
        context->subRef();
        state.ResumeTiming();
    }
}

/// The floor: the parser alone, which knows nothing of nodes.
void parseXml(benchmark::State& state, const std::string& text)
{
    for (auto step : state) {
        static_cast<void>(step);
        std::string copy = text;
        pugi::xml_document document;
        if (!document.load_buffer_inplace(copy.data(), copy.size()))
            state.SkipWithError("the scene is no XML");
        state.PauseTiming();
        document.reset();
        state.ResumeTiming();
    }
}

/// In the encoding of the suffix.
void saveScene(benchmark::State& state, const std::string& text, const char* suffix)
{
    const std::string path = std::string("/tmp/orvane-bench-save") + suffix;
    Orvane::Context* context = Orvane::Context::create();
    context->load("bench.x3d", text, Orvane::Context::REPLACE_LT, std::string());
    std::string error;
    for (auto step : state) {
        static_cast<void>(step);
        if (!context->save(path, Orvane::SaveOptions(), error))
            state.SkipWithError(error.c_str());
    }
    std::remove(path.c_str());
    context->subRef();
}

#ifdef ORVANE_BENCH_COIN
void loadCoin(benchmark::State& state, const std::string& text)
{
    for (auto step : state) {
        static_cast<void>(step);
        SoInput input;
        input.setBuffer(text.data(), text.size());
        SoVRMLGroup* root = SoDB::readAllVRML(&input);
        if (!root)
            state.SkipWithError("the scene does not load");
        state.PauseTiming();
        if (root) {
            root->ref();
            root->unref();
        }
        state.ResumeTiming();
    }
}
#endif

template <class Function>
void add(const std::string& name, Function function, const std::string& text)
{
    benchmark::RegisterBenchmark(name.c_str(), function, text)->Unit(benchmark::kMillisecond);
}

/// One scene in VRML97, here and where the same text can be read by others.
void addVrml(const std::string& name, const std::string& text)
{
    add("load_" + name + "/orvane_vrml", loadScene, text);
#ifdef ORVANE_BENCH_COIN
    add("load_" + name + "/coin", loadCoin, text);
#endif
}

void addSave(const std::string& scene, const std::string& text)
{
    for (const char* suffix : {".x3d", ".x3dv", ".wrl"})
        benchmark::RegisterBenchmark(("save_" + scene + suffix + "/orvane").c_str(), saveScene, text, suffix)
            ->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv)
{
    osg::osgLog().setLogLevel(osg::LOG_LOG);
    Orvane::System::the().init(0, nullptr, 382);
    const std::string boxesXml = bench::boxesXml(boxes);
    const std::string meshXml = bench::meshXml(side);
    add("load_boxes10k/orvane", loadScene, boxesXml);
    add("load_boxes10k/pugixml", parseXml, boxesXml);
    add("load_mesh1m/orvane", loadScene, meshXml);
    add("load_mesh1m/pugixml", parseXml, meshXml);
    addSave("boxes10k", boxesXml);
    addSave("mesh1m", meshXml);
#ifdef ORVANE_BENCH_COIN
    SoDB::init();
#endif
    addVrml("boxes10k", bench::boxesVrml(boxes));
    addVrml("boxes100k", bench::boxesVrml(10 * boxes));
    addVrml("protos10k", bench::tilesVrml(boxes));
    addVrml("protos100k", bench::tilesVrml(10 * boxes));
    addVrml("uses100k", bench::usesVrml(10 * boxes));
    addVrml("mesh1m", bench::meshVrml(side));
    // A million boxes are four million nodes. Coin would need more memory for them than small machines have.
    add("load_boxes1m/orvane_vrml", loadScene, bench::boxesVrml(100 * boxes));
    const int result = runBenchmarks(argc, argv);
    Orvane::System::the().exit();
    return result;
}
