#include "base/ValueFields.h"
#include "core/AppearanceProcs.h"
#include "core/ImageSource.h"
#include "core/Part.h"
#include "core/UsableValues.h"
#include <Orvane/MFString.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFImage.h>

namespace Orvane {

namespace {

const Part centerPart("center");
const Part imagePart("image");
const Part loadPart("load");
const Part repeatSPart("repeatS");
const Part repeatTPart("repeatT");
const Part rotationPart("rotation");
const Part scalePart("scale");
const Part translationPart("translation");
const Part urlPart("url");

class PictureTextureProc : public TextureProc
{
public:
    using TextureProc::TextureProc;

protected:
    void put(const osg::ImagePtr& image, Surface& surface) const
    {
        if (!image || image->getWidth() < 1 || !image->getData())
            return;
        surface.image = image;
        surface.repeatS = repeatSPart.read<SFBool>(node()).value();
        surface.repeatT = repeatTPart.read<SFBool>(node()).value();
    }
};

class ImageTextureProc : public PictureTextureProc
{
public:
    using PictureTextureProc::PictureTextureProc;

    void fieldChanged(Field& field, double time) override
    {
        if (urlPart.is(field) || loadPart.is(field)) {
            _isRead = false;
            _isLoaded = false;
        }
        PictureTextureProc::fieldChanged(field, time);
    }

    void describe(Surface& surface) override
    {
        if (!_isRead) {
            _isRead = true;
            readImage();
        }
        put(_source.image(), surface);
    }

private:
    void readImage()
    {
        if (!loadPart.read<SFBool>(node()).value()) {
            _source.clear();
            return;
        }
        const auto& urls = urlPart.read<MFString>(node());
        _source.read(urls);
        const std::string fault = _source.fault(urls, _isLoaded);
        if (!fault.empty())
            complain("url", fault);
    }

    ImageSource _source;
    bool _isRead = false;
    bool _isLoaded = true; ///< the addresses are those of the scene's file
};

class PixelTextureProc : public PictureTextureProc
{
public:
    using PictureTextureProc::PictureTextureProc;

    void describe(Surface& surface) override { put(imagePart.read<SFImage>(node()).image().rco(), surface); }
};

class FlatTextureTransformProc : public TextureTransformProc
{
public:
    using TextureTransformProc::TextureTransformProc;

    /// -center, scale, rotation, center and translation, the last one applied first to a coordinate.
    osg::Matrix matrix() const override
    {
        const auto pair = [this](const Part& part, float fallback) {
            const osg::Vec2f& v = part.read<SFVec2f>(node()).value();
            return osg::Vec3f(usableNumber(v[0], fallback), usableNumber(v[1], fallback), 0.0F);
        };
        const osg::Vec3f center = pair(centerPart, 0.0F);
        osg::Vec3f scale = pair(scalePart, 1.0F);
        scale[2] = 1.0F;
        osg::Matrix result;
        result.setTranslate(-center[0], -center[1], 0.0F);
        osg::Matrix step;
        step.setScale(scale[0], scale[1], scale[2]);
        result.mult(step);
        step.setIdentity();
        step.setRotate(toQuaternion(Rotation(0.0F, 0.0F, 1.0F, rotationPart.read<SFFloat>(node()).value())));
        result.mult(step);
        step.setIdentity();
        const osg::Vec3f shift = center + pair(translationPart, 0.0F);
        step.setTranslate(shift[0], shift[1], 0.0F);
        result.mult(step);
        return result;
    }
};

const ProcRegistration imageTexture("ImageTexture", makeProc<ImageTextureProc>);
const ProcRegistration pixelTexture("PixelTexture", makeProc<PixelTextureProc>);
const ProcRegistration textureTransform("TextureTransform", makeProc<FlatTextureTransformProc>);

} // namespace

} // namespace Orvane
