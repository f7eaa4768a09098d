#pragma once

#include "core/ScopedProc.h"
#include <OpenSG/OSGLight.h>
#include <Orvane/Export.h>

namespace Orvane {

/// Behaviour of a light.
class ORVANE_API LightProc : public ScopedProc
{
public:
    using ScopedProc::ScopedProc;

    bool isGlobal() const override;
    osg::NodeCorePtr makeCore() const override { return makeLight(); }
    void apply(const osg::NodeCorePtr& core, const osg::NodePtr& group) const override;

protected:
    /// A light of the node's kind.
    virtual osg::LightPtr makeLight() const = 0;
    /// Brings a light from `makeLight` in step with the node.
    virtual void applyTo(const osg::LightPtr& light) const;
};

} // namespace Orvane
