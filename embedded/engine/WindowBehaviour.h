#pragma once

#include "InputDispatch.h"
#include "base/FrameWindow.h"
#include "base/Proc.h"
#include <Orvane/WindowProc.h>
#include <chrono>
#include <memory>
#include <vector>

namespace osg {
class RenderAction;
}

namespace Orvane {

class ViewareaBehaviour;

/// Behaviour of a window node: announces the window to hosts, draws its viewareas, and notes the input of the
/// host's widget until the next frame.
class WindowBehaviour final : public WindowProc, public Proc, public FrameWindow
{
public:
    explicit WindowBehaviour(Node& window);
    ~WindowBehaviour() override;

    // Proc
    NodeProc* nodeProc() override { return this; }
    void start(double time) override;
    void fieldChanged(Field& field, double time) override;
    void childrenChanged(Field& field) override;
    void ending() override;

    // WindowProc
    void render() override;
    void resize(int width, int height) override;
    void keyPress(int key) override;
    void keyRelease(int key) override;
    void buttonPress(int button, int x, int y) override;
    void buttonRelease(int button, int x, int y) override;
    void mouseMove(int x, int y) override;
    void touchEvent(std::vector<TouchPointRecord>& points) override;
    void message(const std::string& name) override;

    // FrameWindow
    void settle() override;
    void handleInput(double time) override;
    bool needsDrawing(unsigned long pictureVersion) const override;
    void draw(unsigned long pictureVersion, FrameStatistics& statistics) override;

    /// Opens the address of the anchor at the widget position in the next frame.
    void browse(int x, int y);

    /// The window pointer has changed: the viewports move to the new one.
    void windowPointerChanged();

private:
    std::vector<ViewareaBehaviour*> viewareas() const;
    std::vector<ViewareaBehaviour*> shownViewareas() const;
    void attachViewareas();
    void redrawForAWhile();
    void endWindow();
    void openAnchorAt(ViewareaBehaviour& viewarea, int x, int y, double time);

    std::unique_ptr<osg::RenderAction> _action;
    InputDispatch _input;
    std::chrono::steady_clock::time_point _drawnAt{};
    std::chrono::steady_clock::time_point _settledAt{};
    unsigned long _drawnVersion = 0;
    bool _redraw = true;
    bool _announced = false;
};

} // namespace Orvane
