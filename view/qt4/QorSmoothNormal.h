#pragma once

#include <OpenSG/OSGLine.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGVector.h>

namespace Orvane::Qt4 {

/// The unit normal in world coordinates where \a ray hits a triangle of \a node, interpolated over the
/// triangle's corners. Without a triangle of usable numbers it is \a fallback.
osg::Vec3f smoothNormal(const osg::Line& ray, const osg::NodePtr& node, unsigned int triangle,
                        const osg::Vec3f& fallback);

} // namespace Orvane::Qt4
