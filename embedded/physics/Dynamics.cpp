#include "physics/Dynamics.h"
#include "base/Log.h"
#include <OpenSG/OSGLog.h>
#include <cstdarg>
#include <cstdio>
#include <ode/ode.h>
#include <string>

namespace Orvane {

namespace {

bool hasFault = false;

/// What the engine calls before it ends the process; an exception is the one way around that.
[[noreturn]] void faultFound(int number, const char* message, va_list arguments)
{
    char text[256];
    std::vsnprintf(text, sizeof(text), message, arguments);
    throw DynamicsFault("fault " + std::to_string(number) + ", " + text);
}

void noteMade(int number, const char* message, va_list arguments)
{
    if (!isLogged(osg::LOG_DEBUG))
        return;
    char text[256];
    std::vsnprintf(text, sizeof(text), message, arguments);
    ORVANE_LOG(osg::LOG_DEBUG, "The dynamics engine notes %d, %s\n", number, text);
}

bool isEngineReady()
{
    static const bool ready = [] {
        dSetErrorHandler(faultFound);
        dSetDebugHandler(faultFound);
        dSetMessageHandler(noteMade);
        return dInitODE2(0) != 0;
    }();
    thread_local const bool readyHere = ready && dAllocateODEDataForThread(dAllocateMaskAll) != 0;
    return readyHere;
}

} // namespace

bool Dynamics::isReady()
{
    return !hasFault && isEngineReady();
}

void Dynamics::giveUp(const DynamicsFault& fault)
{
    if (!hasFault)
        ORVANE_LOG(osg::LOG_WARNING, "Rigid bodies stand still: the dynamics engine found %s\n",
                   fault.what());
    hasFault = true;
}

void Dynamics::Ending::operator()(dxBody* body) const
{
    if (!hasFault)
        dBodyDestroy(body);
}

void Dynamics::Ending::operator()(dxGeom* geom) const
{
    if (!hasFault)
        dGeomDestroy(geom);
}

void Dynamics::Ending::operator()(dxJoint* joint) const
{
    if (!hasFault)
        dJointDestroy(joint);
}

void Dynamics::Ending::operator()(dxJointGroup* group) const
{
    if (!hasFault)
        dJointGroupDestroy(group);
}

void Dynamics::Ending::operator()(dxSpace* space) const
{
    if (!hasFault)
        dSpaceDestroy(space);
}

void Dynamics::Ending::operator()(dxTriMeshData* data) const
{
    if (!hasFault)
        dGeomTriMeshDataDestroy(data);
}

void Dynamics::Ending::operator()(dxWorld* world) const
{
    if (!hasFault)
        dWorldDestroy(world);
}

} // namespace Orvane
