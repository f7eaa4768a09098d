#include "core/TextureStage.h"
#include <algorithm>

namespace Orvane {

namespace {

using osg::TextureChunk;
using osg::UInt32;

// OpenGL's sources, operands and functions of combined textures.
constexpr UInt32 Texture = 0x1702;
constexpr UInt32 Constant = 0x8576;
constexpr UInt32 Primary = 0x8577;
constexpr UInt32 Previous = 0x8578;
constexpr UInt32 Color = 0x0300;
constexpr UInt32 OneMinusColor = 0x0301;
constexpr UInt32 Alpha = 0x0302;
constexpr UInt32 OneMinusAlpha = 0x0303;
constexpr UInt32 AddSigned = 0x8574;
constexpr UInt32 Interpolate = 0x8575;
constexpr UInt32 Subtract = 0x84E7;
constexpr UInt32 Dot3 = 0x86AE;

/// An argument of a function: a source, or what stands for the other colour, and what is taken of it.
struct Argument
{
    UInt32 source;
    UInt32 operand;
};
constexpr UInt32 Other = 0;
constexpr Argument TextureColor = {Texture, Color};
constexpr Argument OtherColor = {Other, Color};

struct Mode
{
    const char* name;
    UInt32 function;
    Argument arguments[3];
    float scale;
    UInt32 alphaFunction; ///< of the alpha channel, when nothing is said of it
};

const Mode modes[] = {
    {"ADD", TextureChunk::ENV_ADD, {TextureColor, OtherColor, OtherColor}, 1, TextureChunk::ENV_MODULATE},
    {"ADDSIGNED", AddSigned, {TextureColor, OtherColor, OtherColor}, 1, TextureChunk::ENV_MODULATE},
    {"ADDSIGNED2X", AddSigned, {TextureColor, OtherColor, OtherColor}, 2, TextureChunk::ENV_MODULATE},
    // a + b - ab
    {"ADDSMOOTH",
     TextureChunk::COMBINE_MODULATE_ADD,
     {OtherColor, TextureColor, {Texture, OneMinusColor}},
     1,
     TextureChunk::ENV_MODULATE},
    {"BLENDCURRENTALPHA", Interpolate, {TextureColor, OtherColor, {Previous, Alpha}}, 1, Interpolate},
    {"BLENDDIFFUSEALPHA", Interpolate, {TextureColor, OtherColor, {Primary, Alpha}}, 1, Interpolate},
    {"BLENDFACTORALPHA", Interpolate, {TextureColor, OtherColor, {Constant, Alpha}}, 1, Interpolate},
    {"BLENDTEXTUREALPHA", Interpolate, {TextureColor, OtherColor, {Texture, Alpha}}, 1, Interpolate},
    {"DOTPRODUCT3", Dot3, {TextureColor, OtherColor, OtherColor}, 1, TextureChunk::ENV_MODULATE},
    {"MODULATE",
     TextureChunk::ENV_MODULATE,
     {TextureColor, OtherColor, OtherColor},
     1,
     TextureChunk::ENV_MODULATE},
    {"MODULATE2X",
     TextureChunk::ENV_MODULATE,
     {TextureColor, OtherColor, OtherColor},
     2,
     TextureChunk::ENV_MODULATE},
    {"MODULATE4X",
     TextureChunk::ENV_MODULATE,
     {TextureColor, OtherColor, OtherColor},
     4,
     TextureChunk::ENV_MODULATE},
    {"MODULATEALPHA_ADDCOLOR",
     TextureChunk::COMBINE_MODULATE_ADD,
     {OtherColor, TextureColor, {Texture, Alpha}},
     1,
     TextureChunk::ENV_MODULATE},
    {"MODULATECOLOR_ADDALPHA",
     TextureChunk::COMBINE_MODULATE_ADD,
     {OtherColor, {Texture, Alpha}, TextureColor},
     1,
     TextureChunk::ENV_MODULATE},
    {"MODULATEINVALPHA_ADDCOLOR",
     TextureChunk::COMBINE_MODULATE_ADD,
     {OtherColor, TextureColor, {Texture, OneMinusAlpha}},
     1,
     TextureChunk::ENV_MODULATE},
    {"MODULATEINVCOLOR_ADDALPHA",
     TextureChunk::COMBINE_MODULATE_ADD,
     {OtherColor, {Texture, Alpha}, {Texture, OneMinusColor}},
     1,
     TextureChunk::ENV_MODULATE},
    {"REPLACE",
     TextureChunk::ENV_REPLACE,
     {TextureColor, OtherColor, OtherColor},
     1,
     TextureChunk::ENV_REPLACE},
    {"SELECTARG1",
     TextureChunk::ENV_REPLACE,
     {TextureColor, OtherColor, OtherColor},
     1,
     TextureChunk::ENV_REPLACE},
    {"SELECTARG2",
     TextureChunk::ENV_REPLACE,
     {OtherColor, OtherColor, OtherColor},
     1,
     TextureChunk::ENV_REPLACE},
    {"SUBTRACT", Subtract, {TextureColor, OtherColor, OtherColor}, 1, TextureChunk::ENV_MODULATE},
};

const Mode* findMode(const std::string& name)
{
    const auto* const found = std::find_if(std::begin(modes), std::end(modes),
                                           [&name](const Mode& mode) { return mode.name == name; });
    return found == std::end(modes) ? nullptr : found;
}

std::string trimmed(const std::string& text)
{
    const std::size_t first = text.find_first_not_of(" \t");
    if (first == std::string::npos)
        return {};
    return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

/// The part of a mode before or after what parts colour and alpha.
std::string modePart(const std::string& mode, bool alpha)
{
    const std::size_t bar = mode.find_first_of(",/");
    if (bar == std::string::npos)
        return alpha ? std::string() : trimmed(mode);
    return trimmed(alpha ? mode.substr(bar + 1) : mode.substr(0, bar));
}

UInt32 alphaOf(UInt32 operand)
{
    return operand == OneMinusColor || operand == OneMinusAlpha ? OneMinusAlpha : Alpha;
}

void setArguments(TextureChunk::Combine& combine, const Mode& mode, bool alpha, UInt32 other)
{
    for (std::size_t i = 0; i < 3; ++i) {
        const Argument& argument = mode.arguments[i];
        combine.source[alpha ? 1 : 0][i] = argument.source == Other ? other : argument.source;
        combine.operand[alpha ? 1 : 0][i] = alpha ? alphaOf(argument.operand) : argument.operand;
    }
}

} // namespace

bool isOff(const TextureStage& stage)
{
    return modePart(stage.mode, false) == "OFF";
}

bool setStage(SurfaceTexture& texture, const TextureStage& stage)
{
    const std::string colorName = modePart(stage.mode, false);
    const std::string alphaName = modePart(stage.mode, true);
    const Mode* color = findMode(colorName.empty() ? "MODULATE" : colorName);
    const Mode* const alpha = alphaName.empty() ? nullptr : findMode(alphaName);
    const bool knowsSource = stage.source.empty() || stage.source == "DIFFUSE" || stage.source == "FACTOR" ||
                             stage.source == "SPECULAR";
    const bool isKnown = color && (alpha || alphaName.empty()) && knowsSource;
    if (!color)
        color = findMode("MODULATE");
    const UInt32 other = stage.source == "FACTOR"                                  ? Constant
                         : stage.source == "DIFFUSE" || stage.source == "SPECULAR" ? Primary
                                                                                   : Previous;
    texture.envMode = TextureChunk::ENV_COMBINE;
    texture.combine.rgb = color->function;
    texture.combine.rgbScale = color->scale;
    setArguments(texture.combine, *color, false, other);
    if (alpha) {
        // A dot product has no alpha of its own.
        texture.combine.alpha =
            alpha->function == Dot3 ? UInt32(TextureChunk::ENV_MODULATE) : alpha->function;
        texture.combine.alphaScale = alpha->scale;
        setArguments(texture.combine, *alpha, true, other);
        return isKnown;
    }
    texture.combine.alpha = color->alphaFunction;
    texture.combine.alphaScale = 1.0F;
    const bool takesArguments = color->alphaFunction != TextureChunk::ENV_MODULATE;
    setArguments(texture.combine, takesArguments ? *color : *findMode("MODULATE"), true, other);
    return isKnown;
}

bool setFunction(SurfaceTexture& texture, const std::string& function)
{
    if (function != "COMPLEMENT" && function != "ALPHAREPLICATE")
        return false;
    texture.envMode = TextureChunk::ENV_COMBINE;
    texture.combine = TextureChunk::Combine();
    texture.combine.rgb = texture.combine.alpha = TextureChunk::ENV_REPLACE;
    texture.combine.source[0][0] = texture.combine.source[1][0] = Previous;
    texture.combine.operand[0][0] = function == "COMPLEMENT" ? OneMinusColor : Alpha;
    texture.combine.operand[1][0] = Alpha;
    return true;
}

} // namespace Orvane
