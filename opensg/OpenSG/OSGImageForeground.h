#pragma once

#include "OSGForeground.h"
#include "OSGImageFields.h"
#include "OSGRefPtr.h"
#include "OSGVector.h"

namespace osg {

class ImageForeground;
using ImageForegroundPtr = FCPtr<ForegroundPtr, ImageForeground>;

/// Draws images over the picture, pixel by pixel, blended by their alpha. References are held on them.
class OSG_SYSTEMLIB_DLLMAPPING ImageForeground : public Foreground
{
public:
    using Ptr = ImageForegroundPtr;

    static ImageForegroundPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// Adds an image of bytes in the format L, LA, RGB or RGBA with its lower left corner at `position`, in
    /// pixels from that of the viewport. Others, and a null image, are not drawn.
    void addImage(const ImagePtr& image, const Pnt2f& position);
    void clearImages() { _images.clear(); }

    void draw(RenderActionBase& action, Viewport& port) override;

protected:
    ImageForeground() = default;
    ~ImageForeground() override;

private:
    struct Entry
    {
        RefPtr<ImagePtr> image;
        Pnt2f position;
    };

    std::vector<Entry> _images;
};

} // namespace osg
