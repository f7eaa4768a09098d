#pragma once

#include <memory>
#include <stdexcept>

struct dxBody;
struct dxGeom;
struct dxJoint;
struct dxJointGroup;
struct dxSpace;
struct dxTriMeshData;
struct dxWorld;

namespace Orvane {

/// The dynamics engine has found a fault in itself, where it would end the process by default.
class DynamicsFault : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

/// The engine behind rigid bodies. Its headers are seen by source files of this folder alone.
namespace Dynamics {

/// Readies the engine for the present thread. False when it has found a fault in itself: nothing of it may be
/// called from then on.
bool isReady();
/// Nothing of the engine is to be called any more.
void giveUp(const DynamicsFault& fault);

/// Calls \a work when the engine is ready. False when it is not, or not any more.
template <class Work>
bool guarded(Work work)
{
    if (!isReady())
        return false;
    try {
        work();
        return true;
    } catch (const DynamicsFault& fault) {
        giveUp(fault);
        return false;
    }
}

/// Ends objects of the engine; leaves them alone after a fault, which may have struck inside of them.
struct Ending
{
    void operator()(dxBody* body) const;
    void operator()(dxGeom* geom) const;
    void operator()(dxJoint* joint) const;
    void operator()(dxJointGroup* group) const;
    void operator()(dxSpace* space) const;
    void operator()(dxTriMeshData* data) const;
    void operator()(dxWorld* world) const;
};

using Body = std::unique_ptr<dxBody, Ending>;
using Geom = std::unique_ptr<dxGeom, Ending>;
using Joint = std::unique_ptr<dxJoint, Ending>;
using JointGroup = std::unique_ptr<dxJointGroup, Ending>;
using Space = std::unique_ptr<dxSpace, Ending>;
using TriMeshData = std::unique_ptr<dxTriMeshData, Ending>;
using World = std::unique_ptr<dxWorld, Ending>;

} // namespace Dynamics

} // namespace Orvane
