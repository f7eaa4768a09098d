#pragma once

#include <OpenSG/OSGBaseTypes.h>

#include <atomic>

namespace osg {

/// A number that grows with every change of what is to be drawn anywhere: nodes, their places, which
/// materials they have and whether these are transparent. What has been collected for a picture is good until
/// then.
class SceneStamp
{
public:
    static UInt64 get() { return _stamp.load(std::memory_order_relaxed); }
    static void renew() { _stamp.fetch_add(1, std::memory_order_relaxed); }

private:
    static inline std::atomic<UInt64> _stamp{1};
};

} // namespace osg
