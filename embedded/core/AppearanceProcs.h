#pragma once

#include "core/ElementProc.h"
#include "core/Surface.h"
#include <OpenSG/OSGMatrix.h>
#include <Orvane/Export.h>
#include <memory>

namespace Orvane {

/// Behaviour of a material: the colours of a surface.
class ORVANE_API MaterialProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    /// Fills the colours of \a surface, whose kind is known.
    virtual void describe(Surface& surface) const = 0;
};

/// Behaviour of a texture of one image.
class ORVANE_API TextureProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    /// Fills what \a surface needs of the texture; nothing when it has no image.
    virtual void describe(Surface& surface) = 0;
};

/// Behaviour of a transformation of texture coordinates.
class ORVANE_API TextureTransformProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    virtual osg::Matrix matrix() const = 0;
};

/// Behaviour of an `Appearance`.
class ORVANE_API AppearanceProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    /// Fills a surface of which the kind, `solid` and the vertex colours are known.
    void describe(Surface& surface);

private:
    /// What few appearances have.
    struct Texturing
    {
        Use texture;
        Use transform;
    };

    void describeTexture(Surface& surface);

    Use _material;
    std::unique_ptr<Texturing> _texturing;
};

} // namespace Orvane
