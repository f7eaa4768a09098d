#pragma once

#include "OSGAttachmentContainer.h"
#include "OSGBackgroundFields.h"
#include "OSGCameraFields.h"
#include "OSGForeground.h"
#include "OSGNodePtr.h"
#include "OSGViewportFields.h"
#include "OSGWindowFields.h"

namespace osg {

class RenderActionBase;

/// A rectangle of a window that shows a scene through a camera. Edges above 1 are pixels, edges up to and
/// including 1 are fractions of the window; y grows upwards, right and top belong to the rectangle. No
/// references are held on window, camera, root and background.
class OSG_SYSTEMLIB_DLLMAPPING Viewport : public AttachmentContainer
{
public:
    using Ptr = ViewportPtr;

    enum : UInt32 {
        LeftFieldId = AttachmentContainer::NextFieldId,
        RightFieldId,
        BottomFieldId,
        TopFieldId,
        ParentFieldId,
        CameraFieldId,
        RootFieldId,
        BackgroundFieldId,
        ForegroundsFieldId,
        TravMaskFieldId,
        DrawTimeFieldId,
        NextFieldId
    };
    static constexpr BitVector LeftFieldMask = BitVector(1) << LeftFieldId;
    static constexpr BitVector RightFieldMask = BitVector(1) << RightFieldId;
    static constexpr BitVector BottomFieldMask = BitVector(1) << BottomFieldId;
    static constexpr BitVector TopFieldMask = BitVector(1) << TopFieldId;
    static constexpr BitVector ParentFieldMask = BitVector(1) << ParentFieldId;
    static constexpr BitVector CameraFieldMask = BitVector(1) << CameraFieldId;
    static constexpr BitVector RootFieldMask = BitVector(1) << RootFieldId;
    static constexpr BitVector BackgroundFieldMask = BitVector(1) << BackgroundFieldId;
    static constexpr BitVector ForegroundsFieldMask = BitVector(1) << ForegroundsFieldId;
    static constexpr BitVector TravMaskFieldMask = BitVector(1) << TravMaskFieldId;
    static constexpr BitVector DrawTimeFieldMask = BitVector(1) << DrawTimeFieldId;

    static ViewportPtr create();
    static ViewportPtr createEmpty();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    Real32 getLeft() const { return _left; }
    Real32 getRight() const { return _right; }
    Real32 getBottom() const { return _bottom; }
    Real32 getTop() const { return _top; }
    void setLeft(Real32 left) { _left = left; }
    void setRight(Real32 right) { _right = right; }
    void setBottom(Real32 bottom) { _bottom = bottom; }
    void setTop(Real32 top) { _top = top; }
    void setSize(Real32 left, Real32 bottom, Real32 right, Real32 top);

    /// The edges in pixels. A fraction without a window logs a warning and gives 0.
    Int32 getPixelLeft() const;
    Int32 getPixelRight() const;
    Int32 getPixelBottom() const;
    Int32 getPixelTop() const;
    Int32 getPixelWidth() const { return getPixelRight() - getPixelLeft() + 1; }
    Int32 getPixelHeight() const { return getPixelTop() - getPixelBottom() + 1; }
    /// Whether the viewport covers its window exactly; false without a window.
    bool isFullWindow() const;

    /// The window whose port this is; it sets itself.
    const WindowPtr& getParent() const { return _parent; }
    const CameraPtr& getCamera() const { return _camera; }
    void setCamera(const CameraPtr& camera) { _camera = camera; }
    const NodePtr& getRoot() const { return _root; }
    void setRoot(const NodePtr& root) { _root = root; }
    const BackgroundPtr& getBackground() const { return _background; }
    void setBackground(const BackgroundPtr& background) { _background = background; }

    /// What is drawn over the scene, in order. References are held on these.
    const MFForegroundPtr& getForegrounds() const { return _foregrounds; }
    void addForeground(const ForegroundPtr& foreground);
    void clearForegrounds();

    /// How faces are drawn whose material does not say: 0x1B00 as points, 0x1B01 as lines, 0x1B02 filled, as
    /// in GL. Default: filled.
    UInt32 getPolygonMode() const { return _polygonMode; }
    void setPolygonMode(UInt32 mode) { _polygonMode = mode; }

    /// A node is drawn when its own mask shares a bit with this one.
    UInt32 getTravMask() const { return _travMask; }
    void setTravMask(UInt32 mask) { _travMask = mask; }

    /// Draws background, scene and foregrounds; the context of the window must be current. A missing camera,
    /// background or root logs a warning, and nothing is drawn.
    virtual void render(RenderActionBase* action);
    virtual void draw(RenderActionBase* action) { render(action); }

protected:
    Viewport() = default;
    ~Viewport() override;

private:
    friend class Window;

    Int32 toPixel(Real32 value, bool horizontal, Int32 inclusive) const;

    Real32 _left = 0;
    Real32 _right = 0;
    Real32 _bottom = 0;
    Real32 _top = 0;
    UInt32 _travMask = ~UInt32(0);
    UInt32 _polygonMode = 0x1B02;
    WindowPtr _parent;
    CameraPtr _camera;
    NodePtr _root;
    BackgroundPtr _background;
    MFForegroundPtr _foregrounds;
};

} // namespace osg
