#pragma once

#include "core/MeshData.h"
#include <OpenSG/OSGColor.h>
#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGQuaternion.h>
#include <OpenSG/OSGVector.h>
#include <Orvane/Rotation.h>
#include <cmath>

namespace Orvane {

// What scenes write is not always a number that one can work with. These give one in any case.

inline float usableNumber(float value, float fallback)
{
    return isDrawable(value) ? value : fallback;
}

/// The vector, with 0 for components that are no usable number.
inline osg::Vec3f usableVector(const osg::Vec3f& v)
{
    return osg::Vec3f(usableNumber(v[0], 0.0F), usableNumber(v[1], 0.0F), usableNumber(v[2], 0.0F));
}

/// The colour, with 0 for components that are no usable number.
inline osg::Color3f usableColor(const osg::Color3f& color)
{
    return osg::Color3f(usableNumber(color.red(), 0.0F), usableNumber(color.green(), 0.0F),
                        usableNumber(color.blue(), 0.0F));
}

inline bool isUsable(const osg::Vec3f& v)
{
    return isDrawable(v[0]) && isDrawable(v[1]) && isDrawable(v[2]);
}

inline bool isNull(const osg::Vec3f& v)
{
    return v[0] == 0.0F && v[1] == 0.0F && v[2] == 0.0F;
}

/// The rotation; none for an axis without direction or an angle that is no number.
inline osg::Quaternion toQuaternion(const Rotation& rotation)
{
    osg::Quaternion result;
    const osg::Vec3f axis = usableVector(osg::Vec3f(rotation.x(), rotation.y(), rotation.z()));
    if (!isNull(axis) && isDrawable(rotation.angle())) {
        const double length = std::hypot(double(axis[0]), double(axis[1]), double(axis[2]));
        const double half = 0.5 * double(rotation.angle());
        const double s = std::sin(half) / length;
        result.setValueAsQuat(static_cast<float>(axis[0] * s), static_cast<float>(axis[1] * s),
                              static_cast<float>(axis[2] * s), static_cast<float>(std::cos(half)));
    }
    return result;
}

} // namespace Orvane
