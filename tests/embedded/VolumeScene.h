#pragma once

#include "CoreScene.h"
#include "core/VolumeProc.h"
#include <OpenSG/OSGChunkMaterial.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGSHLChunk.h>
#include <string>

// Texts of scenes with a volume V of 4 x 4 x 4 round the origin.

/// Each pixel for itself.
const std::string Sharp = "textureProperties TextureProperties { magnificationFilter NEAREST_PIXEL "
                          "minificationFilter NEAREST_PIXEL } ";

/// Voxels T of \a size, which begins with the number of components; each for itself.
inline std::string voxels(const std::string& size, const std::string& pixels)
{
    return "DEF T PixelTexture3D { image [ " + size + " " + pixels + " ] " + Sharp + "} ";
}

/// The same with all that lies between them.
inline std::string softVoxels(const std::string& size, const std::string& pixels)
{
    return "DEF T PixelTexture3D { image [ " + size + " " + pixels + " ] } ";
}

/// Opaque and red.
const std::string Solid = voxels("4 1 1 2", "0xFF0000FF 0xFF0000FF");
/// Dark to the left, bright to the right.
const std::string Halves = voxels("1 2 1 2", "0x40 0xFF 0x40 0xFF");

inline std::string volume(const std::string& voxels, const std::string& style = std::string(),
                          const std::string& fields = "dimensions 4 4 4")
{
    return "DEF V VolumeData { " + fields + " voxels " + voxels +
           (style.empty() ? std::string() : "renderStyle " + style) + "} ";
}

/// What draws the volume with a DEF name.
inline osg::SHLProgramPtr volumeProgram(const CoreScene& scene, const char* name)
{
    const auto group = osg::MaterialGroupPtr::dcast(scene.procOf<Orvane::VolumeProc>(name).tree()->getCore());
    const auto material = osg::ChunkMaterialPtr::dcast(group->getMaterial());
    return osg::SHLChunkPtr::dcast(material->findChunk(osg::StateChunk::PROGRAM))->getProgram().get();
}
