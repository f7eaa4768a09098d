#include <Orvane/Image.h>

namespace Orvane {

Image::Image() = default;

Image::Image(const osg::ImagePtr& image)
    : _image(image)
{
    osg::addRefCP(_image);
}

Image::Image(const Image& other)
    : Image(other._image)
{
}

Image& Image::operator=(const Image& other)
{
    osg::setRefdCP(_image, other._image);
    return *this;
}

Image::~Image()
{
    osg::subRefCP(_image);
}

int Image::width() const
{
    return _image ? _image->getWidth() : 0;
}

int Image::height() const
{
    return _image ? _image->getHeight() : 0;
}

int Image::depth() const
{
    return _image ? _image->getDepth() : 0;
}

} // namespace Orvane
