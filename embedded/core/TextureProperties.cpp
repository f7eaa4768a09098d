#include "base/ValueFields.h"
#include "core/Part.h"
#include "core/TextureProcs.h"
#include "core/UsableValues.h"
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFString.h>
#include <algorithm>

namespace Orvane {

namespace {

using osg::TextureChunk;

const Part anisotropicDegreePart("anisotropicDegree");
const Part borderColorPart("borderColor");
const Part boundaryModeRPart("boundaryModeR");
const Part boundaryModeSPart("boundaryModeS");
const Part boundaryModeTPart("boundaryModeT");
const Part generateMipMapsPart("generateMipMaps");
const Part magnificationFilterPart("magnificationFilter");
const Part minificationFilterPart("minificationFilter");

struct NamedValue
{
    const char* name;
    osg::UInt32 value;
};

const NamedValue boundaryModes[] = {{"CLAMP", TextureChunk::CLAMP},
                                    {"CLAMP_TO_BOUNDARY", TextureChunk::CLAMP_TO_BORDER},
                                    {"CLAMP_TO_EDGE", TextureChunk::CLAMP_TO_EDGE},
                                    {"MIRRORED_REPEAT", TextureChunk::MIRRORED_REPEAT},
                                    {"REPEAT", TextureChunk::REPEAT}};

const NamedValue magnifications[] = {{"AVG_PIXEL", TextureChunk::LINEAR},
                                     {"DEFAULT", TextureChunk::LINEAR},
                                     {"FASTEST", TextureChunk::NEAREST},
                                     {"NEAREST_PIXEL", TextureChunk::NEAREST},
                                     {"NICEST", TextureChunk::LINEAR}};

const NamedValue minifications[] = {{"AVG_PIXEL", TextureChunk::LINEAR},
                                    {"AVG_PIXEL_AVG_MIPMAP", TextureChunk::LINEAR_MIPMAP_LINEAR},
                                    {"AVG_PIXEL_NEAREST_MIPMAP", TextureChunk::LINEAR_MIPMAP_NEAREST},
                                    {"DEFAULT", TextureChunk::LINEAR_MIPMAP_LINEAR},
                                    {"FASTEST", TextureChunk::NEAREST},
                                    {"NEAREST_PIXEL", TextureChunk::NEAREST},
                                    {"NEAREST_PIXEL_AVG_MIPMAP", TextureChunk::NEAREST_MIPMAP_LINEAR},
                                    {"NEAREST_PIXEL_NEAREST_MIPMAP", TextureChunk::NEAREST_MIPMAP_NEAREST},
                                    {"NICEST", TextureChunk::LINEAR_MIPMAP_LINEAR}};

template <std::size_t N>
const NamedValue* find(const NamedValue (&values)[N], const std::string& name)
{
    const auto* const found = std::find_if(std::begin(values), std::end(values),
                                           [&name](const NamedValue& value) { return value.name == name; });
    return found == std::end(values) ? nullptr : found;
}

/// The filter that looks at one level alone.
osg::UInt32 withoutMipmaps(osg::UInt32 filter)
{
    switch (filter) {
    case TextureChunk::LINEAR_MIPMAP_LINEAR:
    case TextureChunk::LINEAR_MIPMAP_NEAREST:
        return TextureChunk::LINEAR;
    case TextureChunk::NEAREST_MIPMAP_LINEAR:
    case TextureChunk::NEAREST_MIPMAP_NEAREST:
        return TextureChunk::NEAREST;
    default:
        return filter;
    }
}

const ProcRegistration textureProperties("TextureProperties", makeProc<TexturePropertiesProc>);

} // namespace

osg::UInt32 TexturePropertiesProc::wrapOf(const char* name, const std::string& mode)
{
    if (const NamedValue* const found = find(boundaryModes, mode))
        return found->value;
    complain(name, "expected CLAMP, CLAMP_TO_EDGE, CLAMP_TO_BOUNDARY, MIRRORED_REPEAT or REPEAT, found \"" +
                       mode + "\"; it counts as REPEAT");
    return TextureChunk::REPEAT;
}

void TexturePropertiesProc::describe(SurfaceTexture& texture)
{
    const auto text = [this](const Part& part) -> const std::string& {
        return part.read<SFString>(node()).value();
    };
    texture.wrap = {wrapOf("boundaryModeS", text(boundaryModeSPart)),
                    wrapOf("boundaryModeT", text(boundaryModeTPart)),
                    wrapOf("boundaryModeR", text(boundaryModeRPart))};
    texture.anisotropy =
        std::max(usableNumber(anisotropicDegreePart.read<SFFloat>(node()).value(), 1.0F), 1.0F);
    const osg::Color4f& border = borderColorPart.read<SFColorRGBA>(node()).value();
    for (osg::UInt32 i = 0; i < 4; ++i)
        texture.borderColor[i] = std::clamp(usableNumber(border[i], 0.0F), 0.0F, 1.0F);

    const NamedValue* const larger = find(magnifications, text(magnificationFilterPart));
    const NamedValue* const smaller = find(minifications, text(minificationFilterPart));
    if (!larger || !smaller)
        complain(larger ? "minificationFilter" : "magnificationFilter",
                 "expected the name of a filter, found \"" +
                     text(larger ? minificationFilterPart : magnificationFilterPart) +
                     "\"; it counts as DEFAULT");
    if (larger)
        texture.magFilter = larger->value;
    if (smaller)
        texture.minFilter = smaller->value;
    if (smaller && !generateMipMapsPart.read<SFBool>(node()).value())
        texture.minFilter = withoutMipmaps(texture.minFilter);
}

} // namespace Orvane
