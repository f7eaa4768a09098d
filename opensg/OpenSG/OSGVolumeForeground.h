#pragma once

#include "OSGColor.h"
#include "OSGForeground.h"

namespace osg {

class VolumeForeground;
using VolumeForegroundPtr = FCPtr<ForegroundPtr, VolumeForeground>;

/// Draws the bounding volumes of what a viewport shows: the boxes of all drawables, and those of the groups
/// around them. Lines are hidden by what lies in front of them.
class OSG_SYSTEMLIB_DLLMAPPING VolumeForeground : public Foreground
{
public:
    using Ptr = VolumeForegroundPtr;

    static VolumeForegroundPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// Whether anything is drawn. Default: no.
    bool getActive() const { return _active; }
    void setActive(bool active) { _active = active; }

    const Color3f& getDrawableColor() const { return _drawableColor; }
    void setDrawableColor(const Color3f& color) { _drawableColor = color; }
    const Color3f& getGroupColor() const { return _groupColor; }
    void setGroupColor(const Color3f& color) { _groupColor = color; }

    void draw(RenderActionBase& action, Viewport& port) override;

protected:
    VolumeForeground() = default;

private:
    bool _active = false;
    Color3f _drawableColor{1, 1, 0};
    Color3f _groupColor{0, 0.8F, 1};
};

} // namespace osg
