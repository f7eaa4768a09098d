#pragma once

#include "core/ElementProc.h"
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <array>

namespace Orvane {

/// A rectangle on the plane of a layout, in units of the layer, and how long the unit of what stands in it
/// is.
struct LayoutBox
{
    osg::Vec2f center;
    osg::Vec2f size;
    osg::Vec2f scale = {1.0F, 1.0F};

    /// From what stands in this box to what stands in the \a outer one, which stands in the same layer.
    osg::Matrix matrixIn(const LayoutBox& outer) const;
};

/// Behaviour of a `Layout`: where a rectangle lies in another one, how large it is, and in which units.
class ORVANE_API LayoutProc : public ElementProc
{
public:
    using ElementProc::ElementProc;

    void update() override;

    /// The box of this layout in an outer one; \a pixel is the length of one. The outermost box hands down no
    /// scale.
    LayoutBox place(const LayoutBox& outer, bool isOutermost, float pixel) const;

private:
    enum Unit { WORLD, FRACTION, PIXEL };
    enum ScaleMode { NONE_SCALE, FRACTION_SCALE, STRETCH_SCALE, PIXEL_SCALE };

    // Each for both directions.
    std::array<int, 2> _align = {0, 0}; ///< -1 at the left or lower edge, 1 at the other one
    std::array<float, 2> _offset = {0.0F, 0.0F};
    std::array<float, 2> _size = {1.0F, 1.0F};
    std::array<Unit, 2> _offsetUnit = {WORLD, WORLD};
    std::array<Unit, 2> _sizeUnit = {WORLD, WORLD};
    std::array<ScaleMode, 2> _scaleMode = {NONE_SCALE, NONE_SCALE};
};

} // namespace Orvane
