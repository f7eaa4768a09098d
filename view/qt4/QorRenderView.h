#pragma once

#include "QorExport.h"
#include "QorMetaTypes.h"
#include <OpenSG/OSGWindow.h>
#include <Orvane/Observer.h>
#include <QtCore/QList>
#include <QtCore/QPointer>
#include <QtWidgets/QFrame>
#include <map>
#include <vector>

namespace Orvane {
class Window;
class WindowProc;
} // namespace Orvane

namespace Orvane::Qt4 {

class OSCQGLWidget;
class QorWindowToolbar;

/// The widget that shows one window of the runtime. The runtime decides that a window exists; the observers
/// below make its view, and the view gives the runtime an OpenSG window over its own GL context. Qt input
/// goes back as calls on the `WindowProc`. A view belongs to its Qt parent, the `WindowProc` to the runtime.
class QOR_EXPORT QorRenderView : public QFrame
{
    Q_OBJECT

public:
    /// What mouse events are for.
    enum MouseMode : int {
        NavigationMode = 0, ///< mouse events go to the runtime
        PickMode = 1        ///< mouse events stay here, a left press picks
    };

    /// The subject that an observer waits for.
    enum ObserverType : int {
        NONE_OT = 0,
        NEW_OT = 1,
        DELETE_OT = 2,
        BEGINFRAME_OT = 3,
        ENDFRAME_OT = 4,
        SHOW_OT = 5,
        HIDE_OT = 6,
        RESIZE_OT = 7,
        REPOSITION_OT = 8,
        FULLSCREEN_OT = 9,
        CURSOR_OT = 10
    };

    /// The bridge from one of the runtime's window subjects to the matching Qt call on the matching view.
    /// There are ten, one per subject, as static members of `QorRenderView`; they live as long as the
    /// library.
    class QOR_EXPORT WindowObserver : public Orvane::Observer
    {
    public:
        /// Attached to its subject by `connectObserver`.
        explicit WindowObserver(ObserverType type);
        WindowObserver(const WindowObserver& other) = default;
        WindowObserver& operator=(const WindowObserver& other) = default;
        ~WindowObserver() override;

        /// \a a is the `WindowProc`, \a b the `ViewareaProc` of a cursor change.
        void notify(const double& time, Orvane::BaseObject* a, Orvane::BaseObject* b,
                    Orvane::BaseObject* c) override;

    private:
        friend class QorRenderView;

        static void newView(Orvane::WindowProc* windowProc);
        static void deleteView(Orvane::WindowProc* windowProc, QorRenderView* view);
        static void beginFrame(QorRenderView* view);
        static void endFrame(QorRenderView* view);
        static void showView(const Orvane::Window* window, QorRenderView* view);
        static void enterFullScreen(const Orvane::Window* window, QorRenderView* view, bool placed);
        static void hideView(QorRenderView* view);
        static void resizeView(const Orvane::Window* window, QorRenderView* view);
        static void repositionView(const Orvane::Window* window, QorRenderView* view);
        static void toggleFullScreen(QorRenderView* view);
        static void setViewCursor(const Orvane::BaseObject* viewarea, QorRenderView* view);

        /// The living views that were made for a new window. Null until the first notification, never freed.
        static QList<QorRenderView*>* _viewList;

        ObserverType _type;
    };

    /// Makes the view of a new window; a null result is allowed.
    using NewCallback = QorRenderView* (*)(Orvane::WindowProc*);
    /// Ends a view, which is null when the window had none.
    using DeleteCallback = void (*)(QorRenderView*);

    /// Gives the runtime the OpenSG window of this view. \a windowProc is borrowed.
    QorRenderView(Orvane::WindowProc* windowProc, QWidget* parent, Qt::WindowFlags flags = Qt::WindowFlags());
    ~QorRenderView() override;

    /// From now on every new window of the runtime gets a view below \a parent, which may be null.
    static void connectObserver(QWidget* parent);
    /// From now on the callbacks make and end the views; a null callback stands for `new` and `delete`.
    static void connectObserver(NewCallback newCallback, DeleteCallback deleteCallback);

    /// Null once the window has ended.
    Orvane::WindowProc* windowProc() const { return _windowProc; }
    /// The OpenSG window of this view, which holds a reference to it.
    const osg::WindowPtr& winPtr() const { return _winPtr; }

    /// What mouse events are for.
    MouseMode mouseMode() const { return _mouseMode; }
    /// What the mouse does from the next event on.
    void setMouseMode(MouseMode mode) { _mouseMode = mode; }

    /// The one word of the refresh timer, that is its interval in milliseconds after `setDesiredFps`, and at
    /// first. `setTimerEnabled(true)` turns it into 1000 divided by itself.
    int desiredFps() const { return _desiredFps; }
    /// Stores 1000 divided by \a fps, which must not be 0, and restarts a timer that is enabled.
    void setDesiredFps(int fps);

    /// Whether the refresh timer may run; after `setTimerEnabled(true)` it need not run yet.
    bool isTimerEnabled() const { return _timerEnabled; }
    /// Enabling a disabled timer starts nothing: the next `setDesiredFps` does.
    void setTimerEnabled(bool enabled);

    /// Whether keys with a runtime code of their own are passed on; arrows always are.
    void enableSpecialKeys(bool enable) { _specialKeys = enable; }

    /// Shows or hides the tool bar, its toggle button included.
    void setToolbar(bool visible);

    /// 400 by 400 pixels.
    QSize sizeHint() const override;

public slots:
    /// Refreshes the GL widget's own state. The picture comes with the frames of the runtime alone.
    virtual void updateGL();

signals:
    /// The chain of nodes that a press in `PickMode` hit, from the scene down to the shape.
    void nodePickedHierachy(const std::vector<Orvane::Node*>& nodes);
    /// Hit point and smooth unit normal in world coordinates.
    void nodePickedHitData(osg::Pnt3f point, osg::Vec3f normal);

protected:
    /// An empty frame without window, GL widget and parent.
    QorRenderView(QorRenderView& other);

    virtual void initializeGL();
    virtual void paintGL();
    virtual void resizeGL(int width, int height);

    /// Casts a ray through the position of \a event and emits what it hits.
    void execRayTest(QMouseEvent* event);

    void timerEvent(QTimerEvent* event) override;
    void childEvent(QChildEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void keyReleaseEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void restartTimer();
    void stopTimer();
    /// Notes where the mouse is. False while its events are not for the scene; \a event is ignored then.
    bool takesMouse(QMouseEvent* event);
    /// What goes out for a key, 0 for nothing. A key without a code of its own gives its text, and is ignored
    /// so that the parent gets it too. \a operation is named in the log.
    int codeToForward(QKeyEvent* event, const char* operation) const;
    void forgetWindowProc();

    Orvane::WindowProc* _windowProc = nullptr;
    osg::WindowPtr _winPtr;
    OSCQGLWidget* _glWidget = nullptr;
    QorWindowToolbar* _toolbar = nullptr;
    MouseMode _mouseMode = NavigationMode;
    int _lastMouseX = 0;
    int _lastMouseY = 0;
    int _timerId = -1;
    bool _timerEnabled = true;
    int _desiredFps = 16;
    bool _specialKeys = true;

    static NewCallback _newCallback;
    static DeleteCallback _deleteCallback;
    static QPointer<QWidget> _parentWidget;

    static WindowObserver _newObserver;
    static WindowObserver _deleteObserver;
    static WindowObserver _beginFrameObserver;
    static WindowObserver _endFrameObserver;
    static WindowObserver _showObserver;
    static WindowObserver _hideObserver;
    static WindowObserver _resizeObserver;
    static WindowObserver _repositionObserver;
    static WindowObserver _fullScreenObserver;
    static WindowObserver _cursorObserver;

    /// Qt key code to the runtime's key code.
    static const std::map<int, unsigned int> _keyMap;
};

} // namespace Orvane::Qt4
