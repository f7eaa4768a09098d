// What a frame costs in which boxes fall onto a floor and come to lie in heaps, with all events that tell it;
// and one in which they all rest. No frame is drawn.
#include "LineReporter.h"
#include <Orvane/Context.h>
#include <Orvane/System.h>
#include <string>

namespace {

using namespace Orvane;

constexpr int framesToFall = 120;

std::string number(double value)
{
    return std::to_string(value);
}

/// Boxes in layers above a floor, some of them turned.
std::string boxes(int count, bool resting)
{
    std::string shapes = "<CollidableShape DEF='F' translation='0 -0.5 0'><Shape containerField='shape'>"
                         "<Box size='90 1 90'/></Shape></CollidableShape>";
    std::string collidables = "<CollidableShape USE='F' containerField='collidables'/>";
    std::string bodies;
    const int side = 10;
    for (int i = 0; i < count; ++i) {
        const std::string name = "S" + std::to_string(i);
        const int layer = resting ? 0 : i / (side * side);
        const double spread = resting ? 1.5 : 1.1;
        const int row = resting ? 40 : side;
        shapes += "<CollidableShape DEF='" + name +
                  "'><Shape containerField='shape'><Box size='1 1 1'/></Shape></CollidableShape>";
        collidables += "<CollidableShape USE='" + name + "' containerField='collidables'/>";
        bodies += "<RigidBody position='" + number((i % row - row / 2) * spread) + " " +
                  number(0.5 + layer * 1.3) + " " +
                  number((i / row % (resting ? 40 : side) - row / 2) * spread) + "' orientation='1 0 1 " +
                  number(resting ? 0.0 : 0.1 * (i % 7)) + "'><CollidableShape USE='" + name +
                  "' containerField='geometry'/><Box size='1 1 1' containerField='massDensityModel'/>"
                  "</RigidBody>";
    }
    return "<X3D profile='Immersive' version='4.0'><Scene>" + shapes +
           "<RigidBodyCollection autoDisable='true' disableLinearSpeed='0.05' disableAngularSpeed='0.05'>"
           "<CollisionCollection containerField='collider' frictionCoefficients='0.5 0.5'>" +
           collidables + "</CollisionCollection>" + bodies + "</RigidBodyCollection></Scene></X3D>";
}

void frames(benchmark::State& state, int count, bool resting)
{
    const std::string text = boxes(count, resting);
    Context* context = nullptr;
    double time = 1000.0;
    int frame = 0;
    const auto begin = [&] {
        if (context)
            context->subRef();
        context = Context::create();
        context->holdTime(time);
        if (!context->load("bench.x3d", text, Context::REPLACE_LT, std::string()))
            state.SkipWithError("the scene does not load");
        context->setRootState(0.0, RUNNING_NS);
        for (frame = 0; frame < (resting ? 120 : 1); ++frame) {
            time += 1.0 / 60.0;
            context->holdTime(time);
            context->runFrame();
        }
        frame = 0;
    };
    begin();
    for (auto step : state) {
        static_cast<void>(step);
        if (!resting && frame == framesToFall) {
            state.PauseTiming();
            begin();
            state.ResumeTiming();
        }
        ++frame;
        time += 1.0 / 60.0;
        context->holdTime(time);
        context->runFrame();
    }
    context->subRef();
}

} // namespace

int main(int argc, char** argv)
{
    System::the().init(0, nullptr, 382);
    const auto add = [](const char* name, int count, bool resting) {
        benchmark::RegisterBenchmark(name, frames, count, resting)
            ->Unit(benchmark::kMillisecond)
            ->Iterations(framesToFall);
    };
    add("frame_of_100_falling_boxes/orvane", 100, false);
    add("frame_of_1000_falling_boxes/orvane", 1000, false);
    add("frame_of_1000_resting_boxes/orvane", 1000, true);
    const int result = runBenchmarks(argc, argv);
    System::the().exit();
    return result;
}
