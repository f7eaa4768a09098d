#pragma once

#include "InputEvent.h"
#include <vector>

namespace Orvane {

class ViewareaBehaviour;

/// Notes the input of a window until the next frame, and hands each event to the viewarea that it is meant
/// for: the one that holds the pointer, else the topmost one under it.
class InputDispatch
{
public:
    void note(InputEvent event);
    bool isEmpty() const { return _input.empty(); }
    /// What was noted, in order; nothing is left.
    std::vector<InputEvent> take();

    /// True when an event tells where the pointer is.
    static bool hasPlace(const InputEvent& event);

    /// The viewarea that an event belongs to; null when it is meant for none. \a viewareas are those of the
    /// window that are shown, the topmost one last.
    ViewareaBehaviour* target(const InputEvent& event, const std::vector<ViewareaBehaviour*>& viewareas);

private:
    ViewareaBehaviour* at(int x, int y, const std::vector<ViewareaBehaviour*>& viewareas) const;

    std::vector<InputEvent> _input;
    int _x = 0; ///< last place of the pointer
    int _y = 0;
};

} // namespace Orvane
