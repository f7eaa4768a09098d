// Qt input of a render view, turned into calls on the runtime's window.

#include "OSCQGLWidget.h"
#include "QorLog.h"
#include "QorRenderView.h"
#include <Orvane/WindowProc.h>
#include <QtGui/QMouseEvent>
#include <QtGui/QWheelEvent>
#include <cstdlib>

namespace Orvane::Qt4 {

namespace {

// The runtime's numbers of mouse buttons. A wheel step is a press without a release.
const int LeftButton = 1;
const int RightButton = 2;
const int MiddleButton = 4;
const int WheelUp = 8;
const int WheelDown = 16;

const int WheelStep = 120;

const unsigned int FirstArrow = 273;
const unsigned int LastArrow = 276;

bool isArrow(unsigned int code)
{
    return code >= FirstArrow && code <= LastArrow;
}

/// The runtime's number of a button; 0 for those that it does not know.
int runtimeButton(Qt::MouseButton button)
{
    switch (button) {
    case Qt::LeftButton:
        return LeftButton;
    case Qt::RightButton:
        return RightButton;
    case Qt::MiddleButton:
        return MiddleButton;
    default:
        return 0;
    }
}

/// The first byte of the text that a key gives, signed; 0 without a text.
int textCode(const QKeyEvent* event)
{
    const QByteArray text = event->text().toLatin1();
    return text.isEmpty() ? 0 : static_cast<signed char>(text.at(0));
}

} // namespace

const std::map<int, unsigned int> QorRenderView::_keyMap = {
    {Qt::Key_F1, 257},     {Qt::Key_F2, 258},        {Qt::Key_F3, 259},     {Qt::Key_F4, 260},
    {Qt::Key_F5, 261},     {Qt::Key_F6, 262},        {Qt::Key_F7, 263},     {Qt::Key_F8, 264},
    {Qt::Key_F9, 265},     {Qt::Key_F10, 266},       {Qt::Key_F11, 267},    {Qt::Key_F12, 268},
    {Qt::Key_Home, 269},   {Qt::Key_End, 270},       {Qt::Key_PageUp, 271}, {Qt::Key_PageDown, 272},
    {Qt::Key_Up, 273},     {Qt::Key_Down, 274},      {Qt::Key_Left, 275},   {Qt::Key_Right, 276},
    {Qt::Key_Insert, 277}, {Qt::Key_Delete, 278},    {Qt::Key_Escape, 279}, {Qt::Key_Enter, 280},
    {Qt::Key_Tab, 281},    {Qt::Key_Backspace, 282}, {Qt::Key_Space, 288},
};

bool QorRenderView::takesMouse(QMouseEvent* event)
{
    if (!_windowProc || (_glWidget && _glWidget->isTouchActive())) {
        event->ignore();
        return false;
    }
    _lastMouseX = event->x();
    _lastMouseY = event->y();
    return true;
}

void QorRenderView::mousePressEvent(QMouseEvent* event)
{
    if (!takesMouse(event))
        return;
    const int button = runtimeButton(event->button());
    if (button == 0) {
        QOR_WARNING("Invalid mouse button PressEvent: %d\n", static_cast<int>(event->button()));
        event->ignore();
        return;
    }
    // Accepted first: a pick may end in the deletion of this view.
    event->accept();
    if (button == LeftButton && (event->modifiers() & Qt::ControlModifier))
        _windowProc->browsePickedNode(event->x(), event->y());
    else if (_mouseMode == NavigationMode)
        _windowProc->buttonPress(button, event->x(), event->y());
    else if (button == LeftButton)
        execRayTest(event);
}

void QorRenderView::mouseReleaseEvent(QMouseEvent* event)
{
    if (!takesMouse(event))
        return;
    const int button = runtimeButton(event->button());
    if (button == 0) {
        QOR_WARNING("Invalid mouse button ReleaseEvent: %d\n", static_cast<int>(event->button()));
        event->ignore();
        return;
    }
    if (_mouseMode == NavigationMode)
        _windowProc->buttonRelease(button, event->x(), event->y());
    event->accept();
}

void QorRenderView::mouseMoveEvent(QMouseEvent* event)
{
    if (!takesMouse(event))
        return;
    if (_mouseMode == NavigationMode && _windowProc->winPtr() == _winPtr)
        _windowProc->mouseMove(event->x(), event->y());
    event->accept();
}

void QorRenderView::wheelEvent(QWheelEvent* event)
{
    const QPoint angle = event->angleDelta();
    const int delta = std::abs(angle.x()) > std::abs(angle.y()) ? angle.x() : angle.y();
    if (!_windowProc || std::abs(delta) < WheelStep) {
        event->ignore();
        return;
    }
    const QPoint place = event->position().toPoint();
    _windowProc->buttonPress(delta > 0 ? WheelUp : WheelDown, place.x(), place.y());
    event->accept();
}

int QorRenderView::codeToForward(QKeyEvent* event, const char* operation) const
{
    if (!_windowProc) {
        event->ignore();
        return 0;
    }
    const auto entry = _keyMap.find(event->key());
    if (entry == _keyMap.end()) {
        event->ignore();
        return textCode(event);
    }
    if (!_specialKeys && !isArrow(entry->second)) {
        QOR_NOTICE("QorRenderView::%s() ignored for special keys\n", operation);
        return 0;
    }
    return static_cast<int>(entry->second);
}

void QorRenderView::keyPressEvent(QKeyEvent* event)
{
    if (const int code = codeToForward(event, "keyPressEvent"))
        _windowProc->keyPress(code);
}

void QorRenderView::keyReleaseEvent(QKeyEvent* event)
{
    if (const int code = codeToForward(event, "keyRelease"))
        _windowProc->keyRelease(code);
}

} // namespace Orvane::Qt4
