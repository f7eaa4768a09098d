#pragma once

#include "core/Surface.h"
#include <OpenSG/OSGSHLChunk.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace Orvane {

class VolumeStyleProc;

/// The program that draws a volume, while it is written: the voxels that it reads, what styles do to their
/// colours, and how these are gathered along a ray. What styles write may use
///  * `color`: colour and opacity of the voxel, for them to change,
///  * `texel`: the voxel as it is in its image, and `place`: where that is, from 0 to 1 on each axis,
///  * `look`: the way to the eye, and where `useSlope` was called `normal` and `steepness`: how the intensity
///    changes. Directions are in the camera's system; the normal is on the side that is seen.
class ORVANE_API VolumeText
{
public:
    using Value = osg::SHLChunk::Value;
    using Parts = std::vector<std::shared_ptr<SurfaceChunk>>;

    /// How deep styles may stand within each other.
    static constexpr int MostLevels = 16;

    explicit VolumeText(const osg::Vec3f& boxSize);

    // Uniforms. Each answers its name.
    std::string number(float value);
    std::string color(const osg::Color3f& color);
    std::string color(const osg::Color4f& color);
    std::string numbers(const std::vector<float>& values);
    std::string colors(const std::vector<osg::Color4f>& values);
    /// A sampler for a texture, flat or with depth, whose ends are not repeated.
    std::string map(SurfaceTexture texture);

    /// Adds voxels, from an image with depth, and answers their number.
    std::size_t addVoxels(const SurfaceTexture& voxels);
    /// Has the gradients of voxels come from a texture, not from their intensities.
    void setGradients(std::size_t voxels, const SurfaceTexture& gradients);
    /// Adds a function that answers the colour of voxels at `place` as \a style shows it; with null, or a
    /// style that is not enabled, as they are. Answers the call of it.
    std::string addStyle(std::size_t voxels, VolumeStyleProc* style);

    // For styles, while their function is being written.
    void write(const std::string& statements) { _body += statements; }
    /// Has \a style change the colour too, when it is enabled and not too deep within others.
    void apply(VolumeStyleProc* style);
    /// An expression for the first \a count components of the voxel, with 0 for those that it has not.
    std::string components(int count) const;
    /// From here on `normal` and `steepness` tell of the voxel.
    void useSlope();
    /// From here on they are what a texture of normals says.
    void useNormals(const SurfaceTexture& normals);
    /// The colour is another one, or the voxel: what was told of it does not count any more.
    void dropSlope() { _hasSlope = false; }

    // How a ray gathers, the last of these counts.
    /// Colours by their opacity. \a color is an expression for the colour at `place`.
    void gatherColors(const std::string& color);
    /// The same by segments, whose numbers are the first component of an image, from 0 to 255; without one
    /// all is segment 0. \a colors are expressions, one for each segment, and one for all others.
    void gatherSegments(const std::optional<SurfaceTexture>& segments,
                        const std::vector<std::string>& colors);
    /// Colours where the intensity of voxels 0 goes through one of rising \a values; \a colors are calls, one
    /// for each. Surfaces with a steepness below \a tolerance are left out.
    void gatherSurfaces(const std::vector<float>& values, const std::vector<std::string>& colors,
                        float tolerance);
    /// The intensity of voxels 0 alone, gathered by \a step into `best`.
    void gatherIntensity(const std::string& step);

    /// The texts of the program, in GLSL 1.20, the values of its uniforms, and what these hold.
    std::vector<osg::SHLProgram::Source> sources() const;
    const osg::SHLChunk::Values& values() const { return _values; }
    const Parts& parts() const { return _parts; }

private:
    std::string add(const char* type, Value value, const std::string& length = std::string());

    osg::SHLChunk::Values _values;
    Parts _parts;
    std::string _uniforms;
    std::string _functions;
    std::vector<std::string> _slopes;  ///< of each voxels the lines that find their gradient
    std::vector<std::string> _members; ///< of each voxels what their components are called in a texel
    std::size_t _styleCount = 0;
    // Of the function that is being written.
    std::string _body;
    std::size_t _voxels = 0;
    bool _hasSlope = false;
    int _level = 0;
    // Of the ray.
    std::string _begin;
    std::string _step;
    std::string _end;
};

} // namespace Orvane
