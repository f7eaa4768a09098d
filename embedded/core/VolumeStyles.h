#pragma once

#include "core/AppearanceProcs.h"
#include "core/Part.h"
#include "core/VolumeText.h"
#include <Orvane/Export.h>
#include <optional>

namespace Orvane {

/// Behaviour of a style of volumes: what it makes of the colour of each voxel. The formulas are those of the
/// volume rendering component of X3D (ISO/IEC 19775-1:2023, clause 41).
class ORVANE_API VolumeStyleProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    bool isEnabled() const;

    /// Writes what the style does to the colour of a voxel. Called by `VolumeText` only, when it is enabled.
    virtual void describe(VolumeText& text) = 0;
    /// True for a style that has rays gather by another rule than by colours and opacity.
    virtual bool isProjection() const { return false; }
    /// Writes that rule.
    virtual void describeRay(VolumeText& /*text*/) {}
};

/// The texture of a field of \a user, which follows its changes by \a use; none when it has no image.
ORVANE_API std::optional<SurfaceTexture> volumeTexture(ElementProc& user, Use& use, const Part& part);
/// The same for an image with depth. Of a flat one \a isFlat is set.
ORVANE_API std::optional<SurfaceTexture> spaceTexture(ElementProc& user, Use& use, const Part& part,
                                                      bool& isFlat);

/// A style that looks at the normals of surfaces, which a texture may give.
class ORVANE_API NormalStyleProc : public VolumeStyleProc
{
public:
    using VolumeStyleProc::VolumeStyleProc;

protected:
    /// Has `normal` and `steepness` tell of the voxel.
    void findNormal(VolumeText& text);

private:
    Use _normals;
};

} // namespace Orvane
