// The text form of images: width, height, components, and a number for each pixel, from the bottom row up.
#include "base/ValueText.h"
#include <OpenSG/OSGImage.h>
#include <algorithm>
#include <vector>

namespace Orvane::text {

namespace {

constexpr osg::UInt32 formats[] = {osg::Image::OSG_L_PF, osg::Image::OSG_LA_PF, osg::Image::OSG_RGB_PF,
                                   osg::Image::OSG_RGBA_PF};

/// The image with whole bytes in one of the formats above, which is the image itself in most cases.
osg::ImagePtr inPlainFormat(const osg::ImagePtr& image)
{
    const bool hasBytes = image->getDataType() == osg::Image::OSG_UINT8_IMAGEDATA;
    const bool hasFormat =
        std::find(std::begin(formats), std::end(formats), image->getPixelFormat()) != std::end(formats);
    if (hasBytes && hasFormat)
        return image;
    osg::ImagePtr copy = osg::Image::create();
    osg::addRefCP(copy);
    copy->set(image);
    if (!hasBytes)
        copy->convertDataTypeTo(osg::Image::OSG_UINT8_IMAGEDATA);
    if (!hasFormat)
        copy->reformat(osg::Image::OSG_RGBA_PF);
    return copy;
}

void writeHex(std::string& text, const osg::UInt8* bytes, std::size_t count)
{
    static const char digits[] = "0123456789ABCDEF";
    text += "0x";
    for (std::size_t i = 0; i < count; ++i) {
        text += digits[bytes[i] >> 4];
        text += digits[bytes[i] & 15];
    }
}

} // namespace

bool read(Reader& reader, Image& value)
{
    unsigned int width = 0;
    unsigned int height = 0;
    unsigned int components = 0;
    if (!reader.read(width) || !reader.read(height))
        return false;
    if (!reader.read(components) || components > 4)
        return reader.fail("0 to 4 components");
    if (width == 0 || height == 0 || components == 0) {
        value = Image();
        return true;
    }
    // Each pixel takes a digit and a divider, so no text makes an image that is larger than itself.
    if (width > reader.size() || height > reader.size() || width * std::size_t(height) > reader.size())
        return reader.fail("as many pixels as width times height");
    std::vector<osg::UInt8> pixels;
    pixels.reserve(std::size_t(width) * height * components);
    for (std::size_t i = 0; i < std::size_t(width) * height; ++i) {
        unsigned int pixel = 0;
        if (!reader.read(pixel))
            return false;
        for (unsigned int c = components; c > 0; --c)
            pixels.push_back(static_cast<osg::UInt8>(pixel >> (8 * (c - 1))));
    }
    osg::ImagePtr image = osg::Image::create();
    Image result(image);
    image->set(formats[components - 1], static_cast<osg::Int32>(width), static_cast<osg::Int32>(height), 1, 1,
               1, 0.0, pixels.data());
    value = result;
    return true;
}

void write(std::string& text, const Image& value)
{
    if (!value.rco() || !value.rco()->isValid()) {
        text += "0 0 0";
        return;
    }
    osg::ImagePtr image = inPlainFormat(value.rco());
    const osg::UInt8* pixels = image->getData();
    if (!pixels) {
        text += "0 0 0";
    } else {
        const auto components = static_cast<std::size_t>(image->getBpp());
        const std::size_t count =
            static_cast<std::size_t>(image->getWidth()) * static_cast<std::size_t>(image->getHeight());
        text.reserve(text.size() + 32 + count * (components * 2 + 3));
        write(text, image->getWidth());
        text += ' ';
        write(text, image->getHeight());
        text += ' ';
        write(text, image->getBpp());
        for (std::size_t i = 0; i < count; ++i) {
            text += ' ';
            writeHex(text, pixels + i * components, components);
        }
    }
    if (image != value.rco())
        osg::subRefCP(image);
}

bool isSame(const Image& a, const Image& b)
{
    const bool hasA = a.rco() && a.rco()->isValid();
    const bool hasB = b.rco() && b.rco()->isValid();
    if (a.rco() == b.rco() || (!hasA && !hasB))
        return true;
    return hasA && hasB && *a.rco() == *b.rco();
}

} // namespace Orvane::text
