#pragma once

#include <Orvane/Export.h>
#include <Orvane/FrameStatistics.h>

namespace Orvane {

class Context;

/// A window in the eyes of the frame loop. The engine pool has one per window node.
class ORVANE_API FrameWindow
{
public:
    virtual ~FrameWindow();

    /// Makes or ends the host's widget as the node's state asks; called where windows may come and go.
    virtual void settle() = 0;
    /// Hands the input that was noted since the last frame to navigation and sensors.
    virtual void handleInput(double time) = 0;
    /// True when the picture on screen is out of date. \a pictureVersion counts the changes of the scene's
    /// picture.
    virtual bool needsDrawing(unsigned long pictureVersion) const = 0;
    /// Fires begin of frame, draws, fires end of frame. Adds to \a statistics what was drawn.
    virtual void draw(unsigned long pictureVersion, FrameStatistics& statistics) = 0;
};

/// Adds a window behind the others of the context; it is drawn in every frame that needs it.
ORVANE_API void addFrameWindow(Context& context, FrameWindow& window);
/// Takes a window out; at any moment, inside a frame too.
ORVANE_API void removeFrameWindow(Context& context, FrameWindow& window);
/// Delivers the events so far, so that what is written next is events of its own. Only while a window handles
/// its input.
ORVANE_API void deliverEvents(Context& context);
/// True while the context is inside `runFrame`.
ORVANE_API bool isInFrame(const Context& context);

} // namespace Orvane
