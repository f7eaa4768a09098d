// Textures of images with depth.
#include "core/Part.h"
#include "core/TextureProcs.h"
#include <Orvane/MFInt32.h>
#include <Orvane/MFNode.h>
#include <algorithm>
#include <cstring>
#include <vector>

namespace Orvane {

namespace {

const Part imagePart("image");
const Part texturePart("texture");

/// Behaviour of an `ImageTexture3D`. A flat image is one with a single slice.
class ImageTexture3DProc : public FileTextureProc
{
public:
    using FileTextureProc::FileTextureProc;

protected:
    std::string misfit(osg::Image& image) const override
    {
        return image.getSideCount() == 1 ? std::string()
                                         : "expected an image with depth, found one of the six sides of a "
                                           "cube, which is not drawn";
    }
};

constexpr osg::Image::PixelFormat Formats[] = {osg::Image::OSG_L_PF, osg::Image::OSG_LA_PF,
                                               osg::Image::OSG_RGB_PF, osg::Image::OSG_RGBA_PF};

/// Behaviour of a `PixelTexture3D`: components, width, height and depth, and a number for each pixel.
class PixelTexture3DProc : public MadeTextureProc
{
public:
    using MadeTextureProc::MadeTextureProc;

protected:
    osg::ImagePtr make() override
    {
        const std::vector<int>& values = imagePart.read<MFInt32>(node()).values();
        constexpr std::size_t Head = 4;
        if (values.size() < Head ||
            std::any_of(values.begin(), values.begin() + Head, [](int v) { return v == 0; }))
            return osg::NullFC;
        const int components = values[0];
        if (components < 1 || components > 4 ||
            std::any_of(values.begin() + 1, values.begin() + Head, [](int v) { return v < 0; }))
        {
            complain("image", "expected 0 to 4 components, width, height and depth, found " +
                                  std::to_string(components) + ", " + std::to_string(values[1]) + ", " +
                                  std::to_string(values[2]) + " and " + std::to_string(values[3]));
            return osg::NullFC;
        }
        // Each edge is below 2^31: slices are told apart before their product is.
        const std::size_t slice = std::size_t(values[1]) * std::size_t(values[2]);
        const std::size_t given = values.size() - Head;
        if (slice > given || std::size_t(values[3]) > given / slice) {
            complain("image", "expected a number for each of " + std::to_string(values[1]) + " x " +
                                  std::to_string(values[2]) + " x " + std::to_string(values[3]) +
                                  " pixels, found " + std::to_string(given));
            return osg::NullFC;
        }
        const osg::ImagePtr image = osg::Image::create();
        if (!image->set(Formats[components - 1], values[1], values[2], values[3]))
            return image;
        osg::UInt8* to = image->getData();
        const std::size_t count = slice * std::size_t(values[3]);
        for (std::size_t i = 0; i < count; ++i) {
            const auto pixel = static_cast<osg::UInt32>(values[Head + i]);
            for (int c = components; c > 0; --c)
                *to++ = static_cast<osg::UInt8>(pixel >> (8 * (c - 1)));
        }
        return image;
    }
};

/// Behaviour of a `ComposedTexture3D`: flat textures, the first one at depth 0.
class ComposedTexture3DProc : public MadeTextureProc
{
public:
    using MadeTextureProc::MadeTextureProc;

protected:
    osg::ImagePtr make() override
    {
        const auto& list = texturePart.read<MFNode>(node());
        const auto count = static_cast<std::size_t>(list.size());
        _uses.resize(count);
        std::vector<osg::RefPtr<osg::ImagePtr>> slices;
        int components = 1;
        bool differ = false;
        for (std::size_t i = 0; i < count; ++i) {
            auto* texture = elementOf<TextureProc>(list.elem(static_cast<int>(i)).directNode());
            if (texture && texture->hasStages())
                texture = nullptr;
            _uses[i].set(*this, texture);
            const osg::ImagePtr image = texture ? texture->image() : osg::ImagePtr();
            if (!image || !image->isValid() || image->hasCompressedData())
                continue;
            slices.emplace_back(image);
            const bool hasColor = components > 2 || image->hasColorChannel();
            const bool hasAlpha = components % 2 == 0 || image->hasAlphaChannel();
            components = (hasColor ? 3 : 1) + (hasAlpha ? 1 : 0);
            differ |=
                image->getWidth() != slices[0]->getWidth() || image->getHeight() != slices[0]->getHeight();
        }
        if (slices.empty())
            return osg::NullFC;
        if (differ)
            complain("texture",
                     "expected images of the same size, found several; they take that of the first");
        return stack(slices, Formats[components - 1]);
    }

private:
    static osg::ImagePtr stack(const std::vector<osg::RefPtr<osg::ImagePtr>>& slices,
                               osg::Image::PixelFormat format)
    {
        const osg::Int32 width = slices[0]->getWidth();
        const osg::Int32 height = slices[0]->getHeight();
        const osg::ImagePtr result = osg::Image::create();
        if (!result->set(format, width, height, static_cast<osg::Int32>(slices.size())))
            return result;
        const std::size_t sliceSize = result->getSize() / slices.size();
        for (std::size_t i = 0; i < slices.size(); ++i) {
            const osg::RefPtr<osg::ImagePtr> slice(osg::Image::create());
            // One slice of one frame.
            if (slices[i]->reformat(format, slice.get()) &&
                slice->convertDataTypeTo(osg::Image::OSG_UINT8_IMAGEDATA) &&
                slice->subImage(0, 0, 0, slice->getWidth(), slice->getHeight(), 1) &&
                slice->scale(width, height, 1))
                std::memcpy(result->getData() + i * sliceSize, slice->getData(), sliceSize);
        }
        return result;
    }

    std::vector<Use> _uses;
};

const ProcRegistration imageTexture3D("ImageTexture3D", makeProc<ImageTexture3DProc>);
const ProcRegistration pixelTexture3D("PixelTexture3D", makeProc<PixelTexture3DProc>);
const ProcRegistration composedTexture3D("ComposedTexture3D", makeProc<ComposedTexture3DProc>);

} // namespace

} // namespace Orvane
