#include "WindowBehaviour.h"

#include "ViewareaBehaviour.h"
#include "ViewareaInput.h"
#include "base/Graph.h"
#include "core/AnchorProc.h"
#include "core/RayTarget.h"
#include <OpenSG/OSGRenderAction.h>
#include <Orvane/Context.h>
#include <Orvane/Field.h>
#include <Orvane/MFNode.h>
#include <Orvane/Window.h>
#include <algorithm>
#include <limits>
#include <utility>

namespace Orvane {

namespace {

const ProcRegistration registration("Window", makeProc<WindowBehaviour>);

/// A picture is drawn anew this often even when nothing has changed: whoever shows it may have hidden its
/// widget meanwhile and lost the pixels, of which nobody tells the runtime.
constexpr std::chrono::seconds refreshInterval(1);

/// After a widget came or changed its size every frame is drawn this long: the window system loses what is
/// drawn before it has put the widget on the screen.
constexpr std::chrono::milliseconds settlingTime(500);

} // namespace

WindowBehaviour::WindowBehaviour(Node& window)
    : WindowProc(dynamic_cast<Window*>(&window))
    , Proc(window)
    , _action(osg::RenderAction::create())
{
    _action->setTravMask(PictureTarget);
}

WindowBehaviour::~WindowBehaviour()
{
    endWindow();
    removeFrameWindow(context(), *this);
    for (ViewareaBehaviour* viewarea : viewareas())
        viewarea->setWindow(osg::WindowPtr());
}

void WindowBehaviour::ending()
{
    endWindow();
}

void WindowBehaviour::endWindow()
{
    if (std::exchange(_announced, false))
        _deleteWidget.fire(context().timeStamp(), this);
}

void WindowBehaviour::start(double)
{
    addFrameWindow(context(), *this);
    attachViewareas();
    requestFrame();
}

void WindowBehaviour::settle()
{
    if (_announced)
        return;
    _announced = true;
    const double time = context().timeStamp();
    _newWidget.fire(time, this);
    _showWidget.fire(time, this);
}

void WindowBehaviour::fieldChanged(Field& field, double time)
{
    const std::string_view name = field.name();
    if (_winPtr != osg::NullFC) {
        if (name == "size")
            _resizeWidget.fire(time, this);
        else if (name == "position")
            _repositionWidget.fire(time, this);
        else if (name == "fullScreen")
            _fullScreenWidget.fire(time, this);
    }
    render();
}

void WindowBehaviour::childrenChanged(Field&)
{
    requestFrame();
    render();
}

std::vector<ViewareaBehaviour*> WindowBehaviour::viewareas() const
{
    static const auto part = static_cast<unsigned int>(partIndex(*node().type(), "viewareas"));
    std::vector<ViewareaBehaviour*> result;
    for (NodeLink& link : read<MFNode>(node(), part)) {
        if (auto* viewarea = procAs<ViewareaBehaviour>(link.node()))
            result.push_back(viewarea);
    }
    return result;
}

std::vector<ViewareaBehaviour*> WindowBehaviour::shownViewareas() const
{
    std::vector<ViewareaBehaviour*> result = viewareas();
    result.erase(std::remove_if(result.begin(), result.end(),
                                [](ViewareaBehaviour* viewarea) { return !viewarea->isShown(); }),
                 result.end());
    return result;
}

void WindowBehaviour::attachViewareas()
{
    for (ViewareaBehaviour* viewarea : viewareas())
        viewarea->setWindow(viewarea->isEnabled() ? _winPtr : osg::WindowPtr());
}

void WindowBehaviour::windowPointerChanged()
{
    attachViewareas();
    redrawForAWhile();
}

void WindowBehaviour::redrawForAWhile()
{
    _settledAt = std::chrono::steady_clock::now() + settlingTime;
    render();
}

void WindowBehaviour::render()
{
    _redraw = true;
}

void WindowBehaviour::resize(int width, int height)
{
    if (_winPtr != osg::NullFC)
        _winPtr->resize(width, height);
    redrawForAWhile();
}

void WindowBehaviour::keyPress(int key)
{
    _input.note({InputEvent::KEY_PRESS, key, 0, 0, {}, {}});
}

void WindowBehaviour::keyRelease(int key)
{
    _input.note({InputEvent::KEY_RELEASE, key, 0, 0, {}, {}});
}

void WindowBehaviour::buttonPress(int button, int x, int y)
{
    _input.note({InputEvent::BUTTON_PRESS, button, x, y, {}, {}});
}

void WindowBehaviour::buttonRelease(int button, int x, int y)
{
    _input.note({InputEvent::BUTTON_RELEASE, button, x, y, {}, {}});
}

void WindowBehaviour::mouseMove(int x, int y)
{
    _input.note({InputEvent::MOUSE_MOVE, 0, x, y, {}, {}});
}

void WindowBehaviour::touchEvent(std::vector<TouchPointRecord>& points)
{
    _input.note({InputEvent::TOUCH, 0, 0, 0, points, {}});
}

void WindowBehaviour::message(const std::string& name)
{
    _input.note({InputEvent::MESSAGE, 0, 0, 0, {}, name});
}

void WindowBehaviour::browse(int x, int y)
{
    _input.note({InputEvent::BROWSE, 0, x, y, {}, {}});
}

void WindowBehaviour::handleInput(double time)
{
    bool mayRepeat = false;
    for (const InputEvent& event : _input.take()) {
        const bool isStep = event.kind != InputEvent::MOUSE_MOVE;
        // A press and a release are two events of the same field.
        if (isStep && std::exchange(mayRepeat, true))
            deliverEvents(context());
        // Asked for anew each time: a scene that an event brings may have other viewareas.
        const std::vector<ViewareaBehaviour*> areas = shownViewareas();
        ViewareaBehaviour* const viewarea = _input.target(event, areas);
        for (ViewareaBehaviour* const other : areas) {
            if (other != viewarea && InputDispatch::hasPlace(event))
                other->input().leave(time);
        }
        if (!viewarea)
            continue;
        if (event.kind == InputEvent::BROWSE)
            openAnchorAt(*viewarea, event.x, event.y, time);
        else
            viewarea->input().handle(event, time);
    }
    double wanted = std::numeric_limits<double>::infinity();
    for (ViewareaBehaviour* viewarea : shownViewareas()) {
        wanted = std::min(wanted, viewarea->input().advance(time));
        if (viewarea->setOverSensor(viewarea->input().isOverSensor()))
            _cursorWidget.fire(time, this, viewarea);
    }
    if (wanted < std::numeric_limits<double>::infinity())
        requestFrame(wanted);
}

void WindowBehaviour::openAnchorAt(ViewareaBehaviour& viewarea, int x, int y, double time)
{
    const std::vector<Node*> chain = viewarea.pick(x, y);
    for (auto hit = chain.rbegin(); hit != chain.rend(); ++hit) {
        if (auto* const anchor = procAs<AnchorProc>(*hit)) {
            anchor->open(time);
            return;
        }
    }
}

bool WindowBehaviour::needsDrawing(unsigned long pictureVersion) const
{
    if (_winPtr == osg::NullFC)
        return false;
    if (_redraw || pictureVersion != _drawnVersion)
        return true;
    const std::vector<ViewareaBehaviour*> areas = viewareas();
    if (std::any_of(areas.begin(), areas.end(),
                    [](const ViewareaBehaviour* area) { return area->needsDrawing(); }))
        return true;
    const auto now = std::chrono::steady_clock::now();
    return now < _settledAt || now - _drawnAt >= refreshInterval;
}

void WindowBehaviour::draw(unsigned long pictureVersion, FrameStatistics& statistics)
{
    const double time = context().timeStamp();
    _redraw = false;
    _drawnVersion = pictureVersion;
    _drawnAt = std::chrono::steady_clock::now();
    _beginFrameWidget.fire(time, this);
    // The host may have taken its window away in answer.
    if (_winPtr != osg::NullFC) {
        attachViewareas();
        for (ViewareaBehaviour* viewarea : viewareas())
            viewarea->prepare();
        // The first view of the scene is that of its mirrors, too.
        if (const auto areas = shownViewareas(); !areas.empty())
            areas.front()->drawInnerPictures(*_action);
        _action->resetStatistics();
        _winPtr->render(_action.get());
        statistics.triangles += _action->getStatistics().triangles;
        statistics.drawCalls += _action->getStatistics().drawCalls;
    }
    if (_winPtr != osg::NullFC)
        _endFrameWidget.fire(time, this);
}

} // namespace Orvane
