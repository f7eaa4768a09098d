#pragma once

#include "CoreScene.h"
#include "base/ValueFields.h"
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <cmath>

/// A scene with rigid bodies, whose frames come 60 times a second.
class RigidScene : public CoreScene
{
public:
    using CoreScene::CoreScene;

    /// Runs frames for so many seconds.
    void run(double seconds)
    {
        const int frames = static_cast<int>(std::lround(seconds * 60.0));
        for (int i = 0; i < frames; ++i)
            runTo(++_frame / 60.0);
    }

    osg::Vec3f vector(const char* nodeName, const char* fieldName) const
    {
        return static_cast<Orvane::SFVec3f&>(field(nodeName, fieldName)).value();
    }
    osg::Vec3f position(const char* nodeName) const { return vector(nodeName, "position"); }
    float number(const char* nodeName, const char* fieldName) const
    {
        return static_cast<Orvane::SFFloat&>(field(nodeName, fieldName)).value();
    }
    bool flag(const char* nodeName, const char* fieldName) const
    {
        return static_cast<Orvane::SFBool&>(field(nodeName, fieldName)).value();
    }
    Orvane::Rotation rotation(const char* nodeName, const char* fieldName) const
    {
        return static_cast<Orvane::SFRotation&>(field(nodeName, fieldName)).value();
    }

private:
    int _frame = 0;
};

inline bool isNear(double a, double b, double tolerance)
{
    return std::abs(a - b) <= tolerance;
}

/// Fails with both numbers.
#define COMPARE_NEAR(actual, expected, tolerance)                                                            \
    QVERIFY2(isNear(actual, expected, tolerance),                                                            \
             qPrintable(QStringLiteral("%1, expected %2").arg(double(actual)).arg(double(expected))))
