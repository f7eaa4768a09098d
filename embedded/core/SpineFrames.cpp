#include "core/SpineFrames.h"
#include "core/NormalGenerator.h"
#include "core/UsableValues.h"
#include <OpenSG/OSGQuaternion.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

/// The unit vectors of directions; null for those that are too short beside the lengths that made them.
osg::Vec3f direction(const osg::Vec3f& vector, float scale)
{
    return vector.length() > 1e-6F * scale ? unitVector(vector) : osg::Vec3f();
}

/// Gives joints without a direction that of the joint before them; the first ones that of the first that has
/// one. False when none has.
bool fillGaps(std::vector<osg::Vec3f>& directions)
{
    std::size_t known = 0;
    while (known < directions.size() && isNull(directions[known]))
        ++known;
    if (known == directions.size())
        return false;
    for (std::size_t i = 0; i < known; ++i)
        directions[i] = directions[known];
    for (std::size_t i = known + 1; i < directions.size(); ++i) {
        if (isNull(directions[i]))
            directions[i] = directions[i - 1];
    }
    return true;
}

/// The axes of space, turned so that Y points along \a y.
SpineFrame turnedFrame(const osg::Vec3f& y)
{
    SpineFrame frame;
    const osg::Vec3f axis = frame.y.cross(y);
    const float sine = axis.length();
    if (sine < 1e-6F) {
        // Upside down: half a turn round X.
        if (y[1] < 0.0F)
            return {frame.x, -frame.y, -frame.z};
        return frame;
    }
    osg::Quaternion turn;
    turn.setValueAsAxisRad(axis * (1.0F / sine), std::atan2(sine, y[1]));
    SpineFrame result;
    turn.multVec(frame.x, result.x);
    turn.multVec(frame.z, result.z);
    result.y = y;
    return result;
}

} // namespace

std::vector<SpineFrame> spineFrames(const std::vector<osg::Vec3f>& spine)
{
    const std::size_t count = spine.size();
    std::vector<SpineFrame> frames(count);
    if (count < 2)
        return frames;
    const bool isRing = count > 2 && spine.front() == spine.back();
    std::vector<osg::Vec3f> along(count);
    std::vector<osg::Vec3f> across(count);
    for (std::size_t i = 0; i < count; ++i) {
        const bool isFirst = i == 0;
        const bool isLast = i + 1 == count;
        const osg::Vec3f& before = !isFirst ? spine[i - 1] : isRing ? spine[count - 2] : spine[i];
        const osg::Vec3f& after = !isLast ? spine[i + 1] : isRing ? spine[1] : spine[i];
        const osg::Vec3f ahead = after - spine[i];
        const osg::Vec3f back = before - spine[i];
        const float size = std::max(ahead.length(), back.length());
        along[i] = direction(after - before, size);
        across[i] = direction(ahead.cross(back), size * size);
    }
    if (!fillGaps(along))
        return frames;
    const bool bends = fillGaps(across);
    for (std::size_t i = 0; i < count; ++i) {
        const osg::Vec3f& y = along[i];
        if (bends && i > 0 && across[i].dot(across[i - 1]) < 0.0F)
            across[i] = -across[i];
        const osg::Vec3f x = bends ? unitVector(y.cross(across[i])) : osg::Vec3f();
        frames[i] = isNull(x) ? turnedFrame(y) : SpineFrame{x, y, x.cross(y)};
    }
    return frames;
}

} // namespace Orvane
