#include "core/AppearanceProcs.h"
#include "core/EnvironmentProcs.h"
#include "core/GroupProc.h"
#include "core/ImageSource.h"
#include "core/Part.h"
#include "core/UsableValues.h"
#include <OpenSG/OSGTextureChunk.h>
#include <Orvane/MFColor.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFString.h>
#include <Orvane/SFFloat.h>
#include <algorithm>
#include <array>

namespace Orvane {

namespace {

const Part groundAnglePart("groundAngle");
const Part groundColorPart("groundColor");
const Part skyAnglePart("skyAngle");
const Part skyColorPart("skyColor");
const Part transparencyPart("transparency");

constexpr std::size_t SideCount = osg::SkyBackground::SIDE_COUNT;

// By the sides of the sky.
const Part urlParts[SideCount] = {Part("backUrl"), Part("bottomUrl"), Part("frontUrl"),
                                  Part("leftUrl"), Part("rightUrl"),  Part("topUrl")};
const char* const urlNames[SideCount] = {"backUrl", "bottomUrl", "frontUrl", "leftUrl", "rightUrl", "topUrl"};
const Part textureParts[SideCount] = {Part("backTexture"), Part("bottomTexture"), Part("frontTexture"),
                                      Part("leftTexture"), Part("rightTexture"),  Part("topTexture")};

/// Shows images from addresses.
class ImageBackgroundProc : public BackgroundProc
{
public:
    using BackgroundProc::BackgroundProc;

    void fieldChanged(Field& field, double time) override
    {
        for (std::size_t side = 0; side < SideCount; ++side) {
            if (urlParts[side].is(field))
                _pictures[side].state = Picture::WRITTEN;
        }
        BackgroundProc::fieldChanged(field, time);
    }

protected:
    osg::ImagePtr imageOf(osg::SkyBackground::Side side) override
    {
        Picture& picture = _pictures[side];
        if (picture.state != Picture::READ) {
            const auto& urls = urlParts[side].read<MFString>(node());
            picture.source.read(urls);
            const std::string fault = picture.source.fault(urls, picture.state == Picture::LOADED);
            if (!fault.empty())
                complain(urlNames[side], fault);
            picture.state = Picture::READ;
        }
        return picture.source.image();
    }

private:
    struct Picture
    {
        ImageSource source;
        enum { LOADED, WRITTEN, READ } state = LOADED; ///< of the addresses
    };

    std::array<Picture, SideCount> _pictures;
};

/// Shows the images of textures.
class TextureBackgroundProc : public BackgroundProc
{
public:
    using BackgroundProc::BackgroundProc;

protected:
    osg::ImagePtr imageOf(osg::SkyBackground::Side side) override
    {
        auto* const texture = elementOf<TextureProc>(textureParts[side].readNode(node()));
        _uses[side].set(*this, texture);
        if (texture && texture->hasStages())
            complain(nullptr,
                     "expected one image on each side, found a MultiTexture; its first image is drawn");
        return texture ? texture->image() : osg::ImagePtr();
    }

private:
    std::array<Use, SideCount> _uses;
};

const ProcRegistration background("Background", makeProc<ImageBackgroundProc>);
const ProcRegistration textureBackground("TextureBackground", makeProc<TextureBackgroundProc>);

} // namespace

BackgroundProc::BackgroundProc(Node& node)
    : BindableProc(node, BindableKind::Background)
    , _sky(osg::SkyBackground::create())
{
}

osg::BackgroundPtr BackgroundProc::background() const
{
    const GroupProc* const group = groupOf(*this);
    _sky->setBeacon(group ? group->tree() : osg::NodePtr());
    return osg::BackgroundPtr(_sky.get());
}

void BackgroundProc::update()
{
    const auto& skyColors = skyColorPart.read<MFColor>(node()).values();
    const auto& skyAngles = skyAnglePart.read<MFFloat>(node()).values();
    const auto& groundColors = groundColorPart.read<MFColor>(node()).values();
    const auto& groundAngles = groundAnglePart.read<MFFloat>(node()).values();
    for (const auto* angles : {&skyAngles, &groundAngles}) {
        if (!std::is_sorted(angles->begin(), angles->end()))
            complain(angles == &skyAngles ? "skyAngle" : "groundAngle",
                     "expected rising angles, found falling ones; these count as the one before");
    }
    _sky->setSky(skyColors, skyAngles);
    _sky->setGround(groundColors, groundAngles);
    const float transparency = usableNumber(transparencyPart.read<SFFloat>(node()).value(), 0.0F);
    _sky->setAlpha(1.0F - std::clamp(transparency, 0.0F, 1.0F));
    for (std::size_t side = 0; side < SideCount; ++side) {
        const auto place = static_cast<osg::SkyBackground::Side>(side);
        setImage(place, imageOf(place));
    }
    BindableProc::update();
}

void BackgroundProc::setImage(osg::SkyBackground::Side side, const osg::ImagePtr& image)
{
    const osg::TextureChunkPtr& present = _sky->getTexture(side);
    if (!image || !image->getData()) {
        if (present)
            _sky->setTexture(side, osg::NullFC);
        return;
    }
    if (present && present->getImage() == image)
        return;
    const osg::TextureChunkPtr texture = osg::TextureChunk::create();
    texture->setImage(image);
    texture->setWrapS(osg::TextureChunk::CLAMP_TO_EDGE);
    texture->setWrapT(osg::TextureChunk::CLAMP_TO_EDGE);
    texture->setMinFilter(osg::TextureChunk::LINEAR);
    _sky->setTexture(side, texture);
}

} // namespace Orvane
