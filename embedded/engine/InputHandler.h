#pragma once

#include "InputEvent.h"
#include <OpenSG/OSGMatrix.h>
#include <Orvane/Export.h>
#include <memory>

namespace Orvane {

struct SceneView;
class SceneLayer;
class ViewareaProc;

/// Takes the input of a viewarea that no sensor of its scene has taken, as a navigator does. A viewarea owns
/// its handlers; pools register what makes them.
class ORVANE_API InputHandler
{
public:
    virtual ~InputHandler();

    /// One event, in the order of arrival. Places are pixels of the window, from its upper left corner. From
    /// the press of a button to the release of the last one all moves come here, wherever they lead; sensors
    /// see none of them.
    virtual void handle(const InputEvent& event, double time) = 0;

    /// The frame goes on after its input. The answer is in how many seconds the handler wants the next frame:
    /// 0 while something moves, infinity at rest.
    virtual double advance(double time) = 0;

    /// Buttons, keys and touches that are held will not be heard of again, as the viewarea or its window
    /// went.
    virtual void letGo(double time) = 0;

    /// Turns what the nodes of a layer ask for into what the user sees of it, before each picture. By default
    /// it stays as it is.
    virtual void aim(SceneLayer& layer, SceneView& view);

    /// Where the user is, and a way to put the user elsewhere, as `ViewareaProc` tells. False for a handler
    /// that knows no user.
    virtual bool userPlace(osg::Matrix& /*cameraToWorld*/) const { return false; }
    virtual bool moveUser(const osg::Matrix& /*cameraToWorld*/, double /*time*/) { return false; }
};

/// Makes the handler of a viewarea, which outlives it.
using InputHandlerFactory = std::unique_ptr<InputHandler> (*)(ViewareaProc& viewarea);

/// Registers a kind of handler. Pools do so when they are loaded; each viewarea has one of each kind.
class ORVANE_API InputHandlerRegistration
{
public:
    explicit InputHandlerRegistration(InputHandlerFactory factory);
};

} // namespace Orvane
