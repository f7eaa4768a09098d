#pragma once

#include "core/ElementProc.h"
#include <OpenSG/OSGLight.h>
#include <Orvane/Export.h>

namespace Orvane {

/// Behaviour of a light. The light itself stands in OpenSG's graph above what it lights: the group that holds
/// the node, or the whole scene. So groups have lights made for them, and keep them in step.
class ORVANE_API LightProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    /// True for a light that shines on the whole scene, not only on what its group holds.
    bool isGlobal() const;
    /// A light of the node's kind. The caller owns it and sets its beacon.
    virtual osg::LightPtr makeLight() const = 0;
    /// Brings a light from `makeLight` in step with the node.
    virtual void apply(const osg::LightPtr& light) const;
};

} // namespace Orvane
