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
class ComposedCubeMapProc : public TextureProc
{
public:
    using TextureProc::TextureProc;

    void fieldChanged(Field& field, double time) override
    {
        _isMade = false;
        TextureProc::fieldChanged(field, time);
    }

    void describe(Surface& surface) override
    {
        if (!_isMade) {
            _isMade = true;
            make();
        }
        if (!_image.get())
            return;
        SurfaceTexture texture;
        texture.image = _image;
        texture.wrap.fill(osg::TextureChunk::CLAMP_TO_EDGE);
        surface.textures.push_back(std::move(texture));
    }

protected:
    void elementChanged(ElementProc& element) override
    {
        _isMade = false;
        TextureProc::elementChanged(element);
    }
    void elementGone() override
    {
        _isMade = false;
        TextureProc::elementGone();
    }

private:
    void make()
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
        _image = any ? cubeImage(sides) : osg::ImagePtr();
    }

    std::array<Use, 6> _uses;
    osg::RefPtr<osg::ImagePtr> _image; ///< of a cube; null when there is none
    bool _isMade = false;
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
