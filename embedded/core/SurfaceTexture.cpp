#include "core/SurfaceTexture.h"
#include <algorithm>
#include <iterator>

namespace Orvane {

namespace {

bool isSame(const osg::Color4f& a, const osg::Color4f& b)
{
    // Exactly: colours have a tolerant comparison of their own.
    return std::equal(a.getValuesRGBA(), a.getValuesRGBA() + 4, b.getValuesRGBA());
}

bool isSame(const osg::TextureChunk::Combine& a, const osg::TextureChunk::Combine& b)
{
    for (std::size_t i = 0; i < 2; ++i) {
        if (!std::equal(std::begin(a.source[i]), std::end(a.source[i]), std::begin(b.source[i])) ||
            !std::equal(std::begin(a.operand[i]), std::end(a.operand[i]), std::begin(b.operand[i])))
            return false;
    }
    return a.rgb == b.rgb && a.alpha == b.alpha && a.rgbScale == b.rgbScale && a.alphaScale == b.alphaScale;
}

bool isSame(const std::optional<osg::Matrix>& a, const std::optional<osg::Matrix>& b)
{
    if (!a || !b)
        return !a && !b;
    return std::equal(a->getValues(), a->getValues() + 16, b->getValues());
}

} // namespace

bool SurfaceTexture::hasStateOf(const SurfaceTexture& other) const
{
    return image == other.image && wrap == other.wrap && minFilter == other.minFilter &&
           magFilter == other.magFilter && anisotropy == other.anisotropy &&
           isSame(borderColor, other.borderColor) && envMode == other.envMode &&
           isSame(factor, other.factor) && isSame(combine, other.combine) && coordSet == other.coordSet;
}

bool SurfaceTexture::operator==(const SurfaceTexture& other) const
{
    return hasStateOf(other) && coordinates == other.coordinates && isSame(transform, other.transform);
}

std::optional<osg::Matrix> SurfaceTexture::matrix() const
{
    if (coordinates != CAMERA_SPHERE)
        return transform;
    // From -1 to 1 becomes from 0 to 1.
    osg::Matrix result = transform.value_or(osg::Matrix());
    osg::Matrix step;
    step.setTranslate(0.5F, 0.5F, 0.0F);
    result.mult(step);
    step.setIdentity();
    step.setScale(0.5F, 0.5F, 1.0F);
    result.mult(step);
    return result;
}

std::size_t SurfaceTexture::hash() const
{
    return std::hash<const void*>()(image.get().getCPtr()) + wrap[0] * 31U + wrap[1] * 37U + envMode * 41U +
           combine.rgb * 43U + minFilter * 47U + magFilter * 53U + coordSet;
}

} // namespace Orvane
