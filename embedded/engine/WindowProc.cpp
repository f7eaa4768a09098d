#include "WindowBehaviour.h"
#include "base/Graph.h"
#include <OpenSG/OSGFieldContainerPtr.h>
#include <Orvane/SFString.h>
#include <Orvane/ViewareaProc.h>
#include <Orvane/Window.h>
#include <Orvane/WindowProc.h>

namespace Orvane {

Subject WindowProc::_newWidget;
Subject WindowProc::_deleteWidget;
Subject WindowProc::_showWidget;
Subject WindowProc::_hideWidget;
Subject WindowProc::_resizeWidget;
Subject WindowProc::_repositionWidget;
Subject WindowProc::_cursorWidget;
Subject WindowProc::_fullScreenWidget;
Subject WindowProc::_beginFrameWidget;
Subject WindowProc::_endFrameWidget;

WindowProc::WindowProc(Window* window)
    : NodeProc(window)
    , _window(window)
{
}

WindowProc::~WindowProc()
{
    if (_winPtrCounted)
        osg::subRefCP(_winPtr);
}

std::string WindowProc::title()
{
    const auto part = static_cast<unsigned int>(partIndex(*_window->type(), "title"));
    const std::string& title = read<SFString>(*_window, part).value();
    return title.empty() ? "Orvane" : title;
}

void WindowProc::setWinPtr(osg::WindowPtr& window, bool counted)
{
    const osg::WindowPtr replaced = _winPtr;
    const bool replacedCounted = _winPtrCounted;
    if (counted)
        osg::addRefCP(window);
    _winPtr = window;
    _winPtrCounted = counted && window != osg::NullFC;
    // Viewports leave the old window before it may die.
    if (auto* behaviour = dynamic_cast<WindowBehaviour*>(this))
        behaviour->windowPointerChanged();
    if (replacedCounted)
        osg::subRefCP(replaced);
}

void WindowProc::browsePickedNode(int x, int y)
{
    if (auto* behaviour = dynamic_cast<WindowBehaviour*>(this))
        behaviour->browse(x, y);
}

ViewareaProc::ViewareaProc(Node* viewarea)
    : NodeProc(viewarea)
{
}

ViewareaProc::~ViewareaProc() = default;

osg::ViewportPtr ViewareaProc::vptPtr()
{
    return _viewport;
}

} // namespace Orvane
