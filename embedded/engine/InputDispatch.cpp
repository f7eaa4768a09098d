#include "InputDispatch.h"
#include "ViewareaBehaviour.h"
#include "ViewareaInput.h"
#include <algorithm>
#include <utility>

namespace Orvane {

void InputDispatch::note(InputEvent event)
{
    // Only the last of several moves counts: the pointer is asked for its place once a frame.
    if (event.kind == InputEvent::MOUSE_MOVE && !_input.empty() &&
        _input.back().kind == InputEvent::MOUSE_MOVE)
        _input.back() = std::move(event);
    else
        _input.push_back(std::move(event));
}

std::vector<InputEvent> InputDispatch::take()
{
    return std::exchange(_input, {});
}

bool InputDispatch::hasPlace(const InputEvent& event)
{
    return event.kind != InputEvent::KEY_PRESS && event.kind != InputEvent::KEY_RELEASE &&
           event.kind != InputEvent::MESSAGE;
}

ViewareaBehaviour* InputDispatch::target(const InputEvent& event,
                                         const std::vector<ViewareaBehaviour*>& viewareas)
{
    if (event.kind == InputEvent::TOUCH && !event.touches.empty()) {
        _x = pixel(event.touches.front().x);
        _y = pixel(event.touches.front().y);
    } else if (event.kind != InputEvent::TOUCH && hasPlace(event)) {
        _x = event.x;
        _y = event.y;
    }
    const auto holder = std::find_if(viewareas.begin(), viewareas.end(), [](ViewareaBehaviour* viewarea) {
        return viewarea->input().holdsPointer();
    });
    if (holder != viewareas.end())
        return *holder;
    ViewareaBehaviour* const under = at(_x, _y, viewareas);
    return !under && !hasPlace(event) && !viewareas.empty() ? viewareas.front() : under;
}

ViewareaBehaviour* InputDispatch::at(int x, int y, const std::vector<ViewareaBehaviour*>& viewareas) const
{
    const auto found = std::find_if(viewareas.rbegin(), viewareas.rend(),
                                    [=](ViewareaBehaviour* viewarea) { return viewarea->contains(x, y); });
    return found == viewareas.rend() ? nullptr : *found;
}

} // namespace Orvane
