#pragma once

#include <OpenSG/OSGImage.h>
#include <Orvane/Export.h>

namespace Orvane {

/// Image value of `SFImage`: a counted reference to an OpenSG image, so copies share their pixels.
class ORVANE_API Image
{
public:
    /// An image without pixels.
    Image();
    explicit Image(const osg::ImagePtr& image);
    Image(const Image& other);
    Image& operator=(const Image& other);
    ~Image();

    /// Pixels; 0 without an image.
    int width() const;
    int height() const;
    int depth() const;

    /// The OpenSG image, null when there is none.
    osg::ImagePtr rco() const { return _image; }

private:
    osg::ImagePtr _image;
};

} // namespace Orvane
