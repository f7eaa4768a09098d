#pragma once

#include <OpenSG/OSGEnvironmentLight.h>
#include <OpenSG/OSGImage.h>
#include <Orvane/Export.h>
#include <optional>
#include <vector>

namespace Orvane {

/// What a cube map of an environment holds.
enum class EnvironmentMap {
    SEEN,     ///< what is seen in each direction
    SCATTERED ///< what a white face throws back that is turned so
};

/// The light that falls from an environment on each side, by the first nine spherical harmonics: of a cube
/// map, whose colours are those of a screen. None for an image without six sides or with compressed pixels.
ORVANE_API std::optional<osg::EnvironmentLight::Irradiance> irradianceOf(const osg::ImagePtr& cube,
                                                                         EnvironmentMap kind);

/// The same of given coefficients, of red, green and blue for each of the nine in the order of degree and
/// order; what is no number counts as 0. None when they are not 27.
ORVANE_API std::optional<osg::EnvironmentLight::Irradiance>
irradianceOf(const std::vector<float>& coefficients);

} // namespace Orvane
