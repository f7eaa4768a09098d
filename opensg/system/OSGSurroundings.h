#pragma once

#include <OpenSG/OSGBaseTypes.h>

namespace osg {

class SceneDepth;
class TextureChunk;

/// What acts on the shapes that are being drawn, for programs, beside what they find in their built-in
/// variables. A program that declares the uniforms `osg_LightCount`, `osg_LightShape[8]`, `osg_FogKind`,
/// `osg_TurnToWorld`, `osg_Projected`, `osg_Projection`, `osg_PlaneCount`, `osg_Planes[6]`, `osg_Depth`,
/// `osg_DepthPart`, `osg_Environment`, `osg_Irradiance[9]`, `osg_TurnToEnvironment` or `osg_Mirrored` gets
/// it.
struct Surroundings
{
    static constexpr UInt32 MostLights = 8;
    static constexpr UInt32 MostPlanes = 6;

    /// Changes with the values; no two states ever have the same.
    UInt64 stamp = 0;
    /// Lights from this one on are off.
    Int32 lightCount = 0;
    /// Of each light its `Light::getShape`, or zeros when it is off.
    Real32 lights[4 * MostLights] = {};
    /// 0 for none, 1 for a linear fog, 2 for an exponential one; 3 and 4 for the same by `gl_FogCoord`.
    Int32 fogKind = 0;

    /// From the camera's system to that of the world, without the place, as 3 columns.
    Real32 turnToWorld[9] = {};

    /// What the projector among the lights throws, and where its picture lies, from the camera's system.
    TextureChunk* projected = nullptr;
    Real32 projection[16] = {};

    /// The planes that cut what is drawn, in the camera's system; zeros for one that is off.
    Int32 planeCount = 0;
    Real32 planes[4 * MostPlanes] = {};

    /// How far what is opaque is from the viewer, while what is transparent is drawn; null before.
    SceneDepth* depth = nullptr;

    /// The colour of an `EnvironmentLight`, and the levels of the cube that is mirrored: below 0 for none, 0
    /// where there is no such light.
    Real32 environment[4] = {};
    Real32 irradiance[27] = {}; ///< its `getIrradiance`
    /// From the camera's system to that of the cube, as 3 columns.
    Real32 turnToEnvironment[9] = {};
    TextureChunk* mirrored = nullptr;

    /// Gives the state a stamp of its own.
    void renew();
};

} // namespace osg
