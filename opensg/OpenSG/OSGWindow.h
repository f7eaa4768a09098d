#pragma once

#include "OSGAttachmentContainer.h"
#include "OSGViewportFields.h"
#include "OSGWindowFields.h"

#include <memory>

namespace osg {

class GLObjects;
class RenderActionBase;
using DrawAction = RenderActionBase;

/// A drawing surface with its viewports. The GL context belongs to somebody else and is current where a frame
/// is drawn. What the window keeps in that context it makes and frees within its own frames; when the window
/// goes it only forgets. No references are held on the viewports, which leave by themselves when they go.
class OSG_SYSTEMLIB_DLLMAPPING Window : public AttachmentContainer
{
public:
    using Ptr = WindowPtr;

    enum : UInt32 {
        WidthFieldId = AttachmentContainer::NextFieldId,
        HeightFieldId,
        PortFieldId,
        ResizePendingFieldId,
        NextFieldId
    };
    static constexpr BitVector WidthFieldMask = BitVector(1) << WidthFieldId;
    static constexpr BitVector HeightFieldMask = BitVector(1) << HeightFieldId;
    static constexpr BitVector PortFieldMask = BitVector(1) << PortFieldId;
    static constexpr BitVector ResizePendingFieldMask = BitVector(1) << ResizePendingFieldId;

    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    UInt16 getWidth() const { return _width; }
    UInt16 getHeight() const { return _height; }
    void setWidth(UInt16 width) { _width = width; }
    void setHeight(UInt16 height) { _height = height; }
    /// Sets the size and nothing else.
    void setSize(UInt16 width, UInt16 height);

    /// Sets the size, kept within 16 bits, and marks it as new to GL.
    virtual void resize(int width, int height);
    /// Tells GL a new size; does nothing when none is pending. Without a context it stays pending.
    virtual void resizeGL();
    bool isResizePending() const { return _resizePending; }
    bool getResizePending() const { return _resizePending; }
    void setResizePending(bool pending) { _resizePending = pending; }

    /// The viewports in the order in which they are drawn.
    const MFViewportPtr& getPort() const { return _ports; }
    /// Null when there is no such port.
    ViewportPtr getPort(UInt32 index) const;
    /// Adds a port, which leaves the window that it is in. Null is ignored. No reference is taken.
    void addPort(const ViewportPtr& port);
    /// The same at a place; one behind the end counts as the end.
    void insertPort(UInt32 index, const ViewportPtr& port);
    /// Nothing happens when there is no such port.
    void replacePort(UInt32 index, const ViewportPtr& port);
    void replacePortBy(const ViewportPtr& present, const ViewportPtr& next);
    /// Takes a port out and leaves its references as they are.
    void subPort(const ViewportPtr& port);
    void subPort(UInt32 index);
    /// Takes all ports out and gives a reference of each back.
    void clearPorts();

    /// Makes the window's context current and lets go of it; the end of a frame.
    virtual void activate() = 0;
    virtual void deactivate() = 0;
    virtual void swap() = 0;
    /// Prepares the current context for the window.
    virtual void init();

    /// Draws a frame: activate, frameInit, renderAllViewports, swap, frameExit. Nothing is drawn without a
    /// current context.
    virtual void render(RenderActionBase* action = nullptr);
    /// Draws all ports; without an action a warning is logged and nothing is drawn.
    virtual void renderAllViewports(RenderActionBase* action = nullptr);
    /// The same as `render`, with `resizeGL` after `frameInit`.
    virtual void draw(DrawAction* action = nullptr);
    virtual void drawAllViewports(DrawAction* action = nullptr) { renderAllViewports(action); }
    /// The beginning of a frame: frees what was kept in the current context for containers that are gone.
    virtual void frameInit();
    /// The end of a frame: frees what was replaced, and tells of GL errors that were left over.
    virtual void frameExit();

    /// What the window keeps in its context.
    GLObjects& getGLObjects() const { return *_glObjects; }

protected:
    Window();
    ~Window() override;

private:
    void renderFrame(RenderActionBase* action, bool withResize);
    void adopt(const ViewportPtr& port);

    UInt16 _width = 0;
    UInt16 _height = 0;
    bool _resizePending = false;
    MFViewportPtr _ports;
    std::unique_ptr<GLObjects> _glObjects;
};

} // namespace osg
