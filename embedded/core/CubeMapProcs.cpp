#include "core/AppearanceProcs.h"
#include "core/CubeImage.h"
#include "core/Part.h"
#include "core/TextureProcs.h"
#include <array>
#include <string>

namespace Orvane {

namespace {

/// In the order of the sides of a cube in OpenGL.
const Part sideParts[] = {Part("rightTexture"),  Part("leftTexture"), Part("topTexture"),
                          Part("bottomTexture"), Part("backTexture"), Part("frontTexture")};

/// Behaviour of a `ComposedCubeMapTexture`: six images round the viewer.
class ComposedCubeMapProc : public MadeTextureProc
{
public:
    using MadeTextureProc::MadeTextureProc;

protected:
    osg::ImagePtr make() override
    {
        CubeSides sides;
        bool any = false;
        bool all = true;
        for (std::size_t i = 0; i < sides.size(); ++i) {
            auto* texture = elementOf<TextureProc>(sideParts[i].readNode(node()));
            if (texture && texture->hasStages())
                texture = nullptr;
            _uses[i].set(*this, texture);
            if (texture)
                sides[i] = texture->image();
            any |= static_cast<bool>(sides[i].get());
            all &= static_cast<bool>(sides[i].get());
        }
        if (any && !all)
            complain(nullptr, "expected images on all six sides, found fewer; the others are black");
        return any ? cubeImage(sides) : osg::ImagePtr();
    }

private:
    std::array<Use, 6> _uses;
};

/// Behaviour of an `ImageCubeMapTexture`: six images in one file.
class ImageCubeMapProc : public FileTextureProc
{
public:
    using FileTextureProc::FileTextureProc;

protected:
    std::string misfit(osg::Image& image) const override
    {
        return image.getSideCount() == 6
                   ? std::string()
                   : "expected an image of the six sides of a cube, found a flat one, which is not drawn";
    }
};

const ProcRegistration composedCubeMap("ComposedCubeMapTexture", makeProc<ComposedCubeMapProc>);
const ProcRegistration imageCubeMap("ImageCubeMapTexture", makeProc<ImageCubeMapProc>);

} // namespace

} // namespace Orvane
