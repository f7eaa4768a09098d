#include "base/ValueFields.h"
#include "core/FogValues.h"
#include "core/Part.h"
#include "core/ScopedProc.h"
#include "core/UsableValues.h"
#include <OpenSG/OSGClipPlane.h>
#include <Orvane/SFBool.h>

namespace Orvane {

namespace {

const Part enabledPart("enabled");
const Part planePart("plane");

/// Behaviour of a `LocalFog`.
class LocalFogProc : public ScopedProc
{
public:
    using ScopedProc::ScopedProc;

    osg::NodeCorePtr makeCore() const override { return osg::Fog::create(); }

    void apply(const osg::NodeCorePtr& core, const osg::NodePtr&) const override
    {
        const auto fog = osg::FogPtr::dcast(core);
        applyFog(node(), fog);
        if (!enabledPart.read<SFBool>(node()).value())
            fog->setRange(0.0F);
    }
};

/// Behaviour of a `ClipPlane`.
class ClipPlaneProc : public ScopedProc
{
public:
    using ScopedProc::ScopedProc;

    osg::NodeCorePtr makeCore() const override { return osg::ClipPlane::create(); }

    void apply(const osg::NodeCorePtr& core, const osg::NodePtr&) const override
    {
        const auto plane = osg::ClipPlanePtr::dcast(core);
        const osg::Vec4f& value = planePart.read<SFVec4f>(node()).value();
        const bool usable = isUsable(osg::Vec3f(value[0], value[1], value[2])) && isDrawable(value[3]);
        if (usable)
            plane->setPlane(value);
        plane->setOn(usable && enabledPart.read<SFBool>(node()).value());
    }
};

const ProcRegistration clipPlane("ClipPlane", makeProc<ClipPlaneProc>);
const ProcRegistration localFog("LocalFog", makeProc<LocalFogProc>);

} // namespace

} // namespace Orvane
