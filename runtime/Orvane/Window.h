#pragma once

#include <OpenSG/OSGVector.h>
#include <Orvane/Node.h>
#include <string>

namespace Orvane {

class MFNode;

/// A window node: the attributes of a window of the engine.
class ORVANE_API Window : public Node
{
public:
    ~Window() override;

    /// Width and height in pixels; negative means unset.
    const osg::Vec2f& size() const;
    /// Place on the screen in pixels; negative means unset.
    const osg::Vec2f& position() const;
    bool fullScreen() const;
    /// True when the window has a frame.
    bool decoration() const;
    bool cursorVisible() const;
    /// Samples per pixel; 1 or less means no multisampling.
    int samples() const;
    /// Display, size and screen of a full-screen window, as "1024x768:32@60#1".
    const std::string& pipe() const;
    /// The viewareas, from the bottom up.
    MFNode* viewareas() const;

protected:
    Window();
};

} // namespace Orvane
