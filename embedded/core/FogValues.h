#pragma once

#include <OpenSG/OSGFog.h>
#include <Orvane/Export.h>

namespace Orvane {

class Node;

/// Brings a fog in step with the fields of a `Fog` or `LocalFog`.
ORVANE_API void applyFog(const Node& node, const osg::FogPtr& fog);

} // namespace Orvane
