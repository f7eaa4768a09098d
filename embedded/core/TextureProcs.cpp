#include "core/TextureProcs.h"
#include "base/ValueFields.h"
#include "core/Part.h"
#include <Orvane/MFString.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFImage.h>

namespace Orvane {

namespace {

const Part imagePart("image");
const Part loadPart("load");
const Part repeatRPart("repeatR");
const Part repeatSPart("repeatS");
const Part repeatTPart("repeatT");
const Part texturePropertiesPart("textureProperties");
const Part urlPart("url");

class PixelTextureProc : public PictureTextureProc
{
public:
    using PictureTextureProc::PictureTextureProc;

    void describe(Surface& surface) override { put(imagePart.read<SFImage>(node()).image().rco(), surface); }
};

const ProcRegistration imageTexture("ImageTexture", makeProc<FileTextureProc>);
const ProcRegistration pixelTexture("PixelTexture", makeProc<PixelTextureProc>);

} // namespace

void FileTextureProc::fieldChanged(Field& field, double time)
{
    if (urlPart.is(field) || loadPart.is(field)) {
        _isRead = false;
        _isLoaded = false;
    }
    PictureTextureProc::fieldChanged(field, time);
}

void FileTextureProc::describe(Surface& surface)
{
    if (!_isRead) {
        _isRead = true;
        readImage();
    }
    if (_fits)
        put(_source.image(), surface);
}

std::string FileTextureProc::misfit(osg::Image&) const
{
    return {};
}

void FileTextureProc::readImage()
{
    _fits = true;
    if (!loadPart.read<SFBool>(node()).value()) {
        _source.clear();
        return;
    }
    const auto& urls = urlPart.read<MFString>(node());
    _source.read(urls);
    std::string fault = _source.fault(urls, _isLoaded);
    if (const osg::ImagePtr image = _source.image()) {
        fault = misfit(*image);
        _fits = fault.empty();
    }
    if (!fault.empty())
        complain("url", fault);
}

void MadeTextureProc::fieldChanged(Field& field, double time)
{
    _isMade = false;
    PictureTextureProc::fieldChanged(field, time);
}

void MadeTextureProc::elementChanged(ElementProc& element)
{
    _isMade = false;
    PictureTextureProc::elementChanged(element);
}

void MadeTextureProc::elementGone()
{
    _isMade = false;
    PictureTextureProc::elementGone();
}

void MadeTextureProc::describe(Surface& surface)
{
    if (!_isMade) {
        _isMade = true;
        _image = make();
    }
    put(_image.get(), surface);
}

void PictureTextureProc::put(const osg::ImagePtr& image, Surface& surface)
{
    auto* const properties = elementOf<TexturePropertiesProc>(texturePropertiesPart.readNode(node()));
    _properties.set(*this, properties);
    if (!image || image->getWidth() < 1 || !image->getData())
        return;
    SurfaceTexture texture;
    texture.image = image;
    const auto wrap = [this](const Part& part) {
        // Cubes have no such fields: they have edges, not ends.
        return part.isIn(node()) && part.read<SFBool>(node()).value() ? osg::TextureChunk::REPEAT
                                                                      : osg::TextureChunk::CLAMP_TO_EDGE;
    };
    texture.wrap[0] = wrap(repeatSPart);
    texture.wrap[1] = wrap(repeatTPart);
    texture.wrap[2] = wrap(repeatRPart);
    if (properties)
        properties->describe(texture);
    surface.textures.push_back(std::move(texture));
}

} // namespace Orvane
