#include "ViewareaInput.h"
#include "ViewareaBehaviour.h"
#include <algorithm>
#include <limits>

namespace Orvane {

namespace {

std::vector<InputHandlerFactory>& factories()
{
    static std::vector<InputHandlerFactory> list;
    return list;
}

/// Wheel steps are presses without a release.
constexpr int heldButtons = 1 | 2 | 4;

} // namespace

InputHandler::~InputHandler() = default;

void InputHandler::aim(SceneView&)
{
}

InputHandlerRegistration::InputHandlerRegistration(InputHandlerFactory factory)
{
    factories().push_back(factory);
}

ViewareaInput::ViewareaInput(ViewareaBehaviour& viewarea)
    : _viewarea(viewarea)
{
    for (const InputHandlerFactory factory : factories())
        _handlers.push_back(factory(_viewarea));
}

ViewareaInput::~ViewareaInput() = default;

void ViewareaInput::handle(const InputEvent& event, double time)
{
    if (event.kind == InputEvent::BUTTON_PRESS)
        _buttons |= event.code & heldButtons;
    else if (event.kind == InputEvent::BUTTON_RELEASE)
        _buttons &= ~event.code;
    else if (event.kind == InputEvent::TOUCH)
        _touches = static_cast<int>(std::count_if(event.touches.begin(), event.touches.end(),
                                                  [](const TouchPointRecord& p) { return p.state != 1; }));
    for (const std::unique_ptr<InputHandler>& handler : _handlers)
        handler->handle(event, time);
}

double ViewareaInput::advance(double time)
{
    double wanted = std::numeric_limits<double>::infinity();
    for (const std::unique_ptr<InputHandler>& handler : _handlers)
        wanted = std::min(wanted, handler->advance(time));
    return wanted;
}

void ViewareaInput::aim(SceneView& view)
{
    for (const std::unique_ptr<InputHandler>& handler : _handlers)
        handler->aim(view);
}

void ViewareaInput::letGo(double time)
{
    if (!holdsPointer())
        return;
    _buttons = 0;
    _touches = 0;
    for (const std::unique_ptr<InputHandler>& handler : _handlers)
        handler->letGo(time);
}

} // namespace Orvane
