#include "core/TransformProc.h"
#include "base/ValueFields.h"
#include "core/UsableValues.h"
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part centerPart("center");
const Part rotationPart("rotation");
const Part scalePart("scale");
const Part scaleOrientationPart("scaleOrientation");
const Part translationPart("translation");

/// A scale below this is taken for it.
constexpr float SmallestScale = 1e-6F;

bool isSound(const osg::Vec3f& v)
{
    return isDrawable(v[0]) && isDrawable(v[1]) && isDrawable(v[2]);
}

bool isSound(const Rotation& r)
{
    return isDrawable(r.x()) && isDrawable(r.y()) && isDrawable(r.z()) && isDrawable(r.angle());
}

const ProcRegistration transform("Transform", makeProc<TransformProc>);
const ProcRegistration cadPart("CADPart", makeProc<TransformProc>);
const ProcRegistration espduTransform("EspduTransform", makeProc<TransformProc>);

} // namespace

TransformProc::TransformProc(Node& node)
    : GroupProc(node, osg::Transform::create())
{
}

void TransformProc::fieldChanged(Field& field, double time)
{
    _matrixChanged = true;
    GroupProc::fieldChanged(field, time);
}

void TransformProc::update()
{
    if (_matrixChanged) {
        _matrixChanged = false;
        static_cast<osg::Transform&>(*tree()->getCore()).setMatrix(matrix());
    }
    GroupProc::update();
}

osg::Matrix TransformProc::matrix()
{
    const osg::Vec3f& center = centerPart.read<SFVec3f>(node()).value();
    const Rotation& rotation = rotationPart.read<SFRotation>(node()).value();
    const osg::Vec3f& scale = scalePart.read<SFVec3f>(node()).value();
    const Rotation& scaleOrientation = scaleOrientationPart.read<SFRotation>(node()).value();
    const osg::Vec3f& translation = translationPart.read<SFVec3f>(node()).value();
    if (!isSound(center) || !isSound(rotation) || !isSound(scale) || !isSound(scaleOrientation) ||
        !isSound(translation))
        complain(nullptr, "expected finite numbers, found others; they are left out");

    osg::Vec3f factors = isSound(scale) ? scale : osg::Vec3f(1.0F, 1.0F, 1.0F);
    for (osg::UInt32 i = 0; i < 3; ++i) {
        if (std::abs(factors[i]) < SmallestScale)
            factors[i] = std::signbit(factors[i]) ? -SmallestScale : SmallestScale;
    }
    osg::Matrix result;
    result.setTransform(usableVector(translation), toQuaternion(rotation), factors,
                        toQuaternion(scaleOrientation), usableVector(center));
    return result;
}

} // namespace Orvane
