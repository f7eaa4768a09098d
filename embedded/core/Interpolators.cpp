#include "core/InterpolatorProc.h"
#include <Orvane/MFColor.h>
#include <Orvane/MFRotation.h>
#include <Orvane/MFVec2f.h>
#include <Orvane/MFVec3f.h>

namespace Orvane {

namespace {

using ColorInterpolator = InterpolatorProc<MFColor, SFColor, osg::Color3f>;
using OrientationInterpolator = InterpolatorProc<MFRotation, SFRotation, Rotation>;
using PositionInterpolator = InterpolatorProc<MFVec3f, SFVec3f, osg::Vec3f>;
using PositionInterpolator2D = InterpolatorProc<MFVec2f, SFVec2f, osg::Vec2f>;
using ScalarInterpolator = InterpolatorProc<MFFloat, SFFloat, float>;
using CoordinateInterpolator = ListInterpolatorProc<MFVec3f, osg::Vec3f>;
using CoordinateInterpolator2D = ListInterpolatorProc<MFVec2f, osg::Vec2f>;
using NormalInterpolator = ListInterpolatorProc<MFVec3f, osg::Vec3f, DirectionBlend>;

const ProcRegistration color("ColorInterpolator", makeProc<ColorInterpolator>);
const ProcRegistration orientation("OrientationInterpolator", makeProc<OrientationInterpolator>);
const ProcRegistration position("PositionInterpolator", makeProc<PositionInterpolator>);
const ProcRegistration position2D("PositionInterpolator2D", makeProc<PositionInterpolator2D>);
const ProcRegistration scalar("ScalarInterpolator", makeProc<ScalarInterpolator>);
const ProcRegistration coordinate("CoordinateInterpolator", makeProc<CoordinateInterpolator>);
const ProcRegistration coordinate2D("CoordinateInterpolator2D", makeProc<CoordinateInterpolator2D>);
const ProcRegistration normal("NormalInterpolator", makeProc<NormalInterpolator>);

} // namespace

} // namespace Orvane
