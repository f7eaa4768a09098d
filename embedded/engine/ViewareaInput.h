#pragma once

#include "InputHandler.h"
#include <memory>
#include <vector>

namespace Orvane {

struct SceneView;
class ViewareaBehaviour;

/// The input of one viewarea: the scene's sensors come first, what they do not take goes to the handlers.
class ViewareaInput
{
public:
    explicit ViewareaInput(ViewareaBehaviour& viewarea);
    ~ViewareaInput();

    void handle(const InputEvent& event, double time);

    /// Follows what has moved under the pointer, and lets the handlers go on. The answer is in how many
    /// seconds one of them wants the next frame.
    double advance(double time);

    /// True while a button or a touch that went down here is held: the pointer belongs to this viewarea.
    bool holdsPointer() const { return _buttons != 0 || _touches > 0; }

    /// Lets the handlers say what the user sees.
    void aim(SceneView& view);

    /// What is held is let go.
    void letGo(double time);

private:
    ViewareaBehaviour& _viewarea;
    std::vector<std::unique_ptr<InputHandler>> _handlers;
    int _buttons = 0; ///< those that are down, as a mask
    int _touches = 0; ///< fingers that are down
};

} // namespace Orvane
