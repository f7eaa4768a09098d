#pragma once

#include "core/ElementProc.h"
#include <OpenSG/OSGNodeCore.h>
#include <Orvane/Export.h>

namespace Orvane {

/// Behaviour of a node that is not seen itself and acts on what its group shows, or on the whole scene: a
/// light, a fog, a plane that cuts. What acts stands in OpenSG's graph above what it acts on. So groups have
/// cores made for such nodes, and keep them in step.
class ORVANE_API ScopedProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    /// True for a node that acts on the whole scene, not only on what its group holds.
    virtual bool isGlobal() const { return false; }
    /// A core of the node's kind. The caller owns it.
    virtual osg::NodeCorePtr makeCore() const = 0;
    /// Brings a core from `makeCore` in step with the node, which stands in the system of \a group.
    virtual void apply(const osg::NodeCorePtr& core, const osg::NodePtr& group) const = 0;
};

} // namespace Orvane
