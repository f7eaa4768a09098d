// The frames of a context.
#include "base/ContextData.h"
#include "base/NodeData.h"
#include <algorithm>
#include <chrono>
#include <cmath>

namespace Orvane {

namespace {

constexpr double tickInterval = 1.0 / 60.0;
constexpr double idleInterval = 0.1;

double steadySeconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

/// Windows may come and go while they are gone through; those that come wait for the next time.
template <class Visit>
void forEachWindow(Context::Data& data, Visit visit)
{
    const std::size_t count = data.windows.size();
    for (std::size_t i = 0; i < count && i < data.windows.size(); ++i)
        if (data.windows[i])
            visit(*data.windows[i]);
}

void drawWindows(Context::Data& data)
{
    FrameStatistics drawn;
    bool hasDrawn = false;
    const unsigned long version = data.scheduler.pictureVersion();
    forEachWindow(data, [&](FrameWindow& window) {
        if (window.needsDrawing(version)) {
            hasDrawn = true;
            window.draw(version, drawn);
        }
    });
    if (!hasDrawn)
        return;
    data.drawn.triangles = drawn.triangles;
    data.drawn.drawCalls = drawn.drawCalls;
    ++data.drawn.framesDrawn;
    data.drawTimes.push_back(steadySeconds());
}

void forgetOldDrawTimes(std::deque<double>& times)
{
    const double now = steadySeconds();
    while (!times.empty() && times.front() <= now - 1.0)
        times.pop_front();
}

/// Seconds from now until the next frame is due.
double waitOf(const Context::Data& data, double start)
{
    const bool movesOn = data.scheduler.isMoving() || data.cascade.isPending();
    const double wanted =
        movesOn ? tickInterval : std::clamp(data.scheduler.wantedIn(), tickInterval, idleInterval);
    return std::max(0.0, wanted - (steadySeconds() - start));
}

} // namespace

void settleWindows(Context& context)
{
    forEachWindow(*context.data(), [](FrameWindow& window) { window.settle(); });
}

double Context::runFrame()
{
    if (_data->isInFrame)
        return 0.0;
    const RefGuard guard(*this);
    const double start = steadySeconds();
    {
        BusyScope busy(*this);
        _data->isInFrame = true;
        _timeStamp = _data->clock.now(_timeStamp);
        _data->scheduler.beginFrame();
        settleWindows(*this);
        const double time = _timeStamp;
        forEachWindow(*_data, [time](FrameWindow& window) { window.handleInput(time); });
        _data->scheduler.tick(time, _data->cascade);
        _data->cascade.run(time);
        _data->scheduler.update(_data->cascade);
        drawWindows(*_data);
        ++_data->drawn.framesRun;
    }
    auto& windows = _data->windows;
    windows.erase(std::remove(windows.begin(), windows.end(), nullptr), windows.end());
    forgetOldDrawTimes(_data->drawTimes);
    _data->isInFrame = false;
    return waitOf(*_data, start);
}

FrameStatistics Context::frameStatistics() const
{
    forgetOldDrawTimes(_data->drawTimes);
    FrameStatistics statistics = _data->drawn;
    statistics.framesPerSecond = static_cast<double>(_data->drawTimes.size());
    return statistics;
}

void addFrameWindow(Context& context, FrameWindow& window)
{
    auto& windows = context.data()->windows;
    if (std::find(windows.begin(), windows.end(), &window) == windows.end())
        windows.push_back(&window);
}

void removeFrameWindow(Context& context, FrameWindow& window)
{
    auto& windows = context.data()->windows;
    std::replace(windows.begin(), windows.end(), &window, static_cast<FrameWindow*>(nullptr));
}

void deliverEvents(Context& context)
{
    context.data()->cascade.run(context.timeStamp());
}

bool isInFrame(const Context& context)
{
    return context.data()->isInFrame;
}

} // namespace Orvane
