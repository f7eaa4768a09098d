#pragma once

#include <OpenSG/OSGWindow.h>
#include <Orvane/NodeProc.h>
#include <Orvane/Subject.h>
#include <Orvane/TouchPointRecord.h>
#include <string>
#include <vector>

namespace Orvane {

class Window;

/// Processing object of a window node: takes the input of the widget that shows the window, and draws into it
/// between the begin and the end of a frame. Input is noted and handled in the next frame.
class ORVANE_API WindowProc : public NodeProc
{
public:
    ~WindowProc() override;

    /// Asks for a new picture in the next frame.
    virtual void render() = 0;
    /// The GL area has a new size in pixels.
    virtual void resize(int width, int height) = 0;
    /// A key went down: a key code of 257 to 288, or a character.
    virtual void keyPress(int key) = 0;
    virtual void keyRelease(int key) = 0;
    /// A button went down at widget pixels \a x, \a y: 1 left, 2 right, 4 middle; 8 wheel up, 16 wheel down.
    virtual void buttonPress(int button, int x, int y) = 0;
    virtual void buttonRelease(int button, int x, int y) = 0;
    virtual void mouseMove(int x, int y) = 0;
    /// Touch points, primary ones first.
    virtual void touchEvent(std::vector<TouchPointRecord>& points) = 0;
    /// Runs a navigator message by its name; an unknown name does nothing.
    virtual void message(const std::string& name) = 0;

    /// Title of the window.
    std::string title();
    /// Hands over the OpenSG window that renders into the widget; with \a counted the runtime takes a
    /// reference of its own. A null pointer detaches. What was stored before is let go.
    void setWinPtr(osg::WindowPtr& window, bool counted);
    /// Opens what lies under the widget position: the address of an anchor.
    void browsePickedNode(int x, int y);

    /// The window node; may be null.
    Window* window() const { return _window; }
    /// What `setWinPtr` last stored.
    const osg::WindowPtr& winPtr() const { return _winPtr; }

    /// The subjects of all windows. First object: the `WindowProc`; second: the `ViewareaProc`, for the
    /// cursor only.
    static Subject _newWidget;
    static Subject _deleteWidget;
    static Subject _showWidget;
    static Subject _hideWidget;
    static Subject _resizeWidget;
    static Subject _repositionWidget;
    static Subject _cursorWidget;
    static Subject _fullScreenWidget;
    static Subject _beginFrameWidget;
    static Subject _endFrameWidget;

protected:
    explicit WindowProc(Window* window);

    Window* _window;
    osg::WindowPtr _winPtr;
    bool _winPtrCounted = false;
};

} // namespace Orvane
