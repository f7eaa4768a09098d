#pragma once

#include "core/FaceList.h"
#include <OpenSG/OSGVector.h>
#include <Orvane/Export.h>
#include <cstdint>
#include <vector>

namespace Orvane {

/// Makes the normals of faces that bring none. Larger faces count for more where several meet.
class ORVANE_API NormalGenerator
{
public:
    /// \a faces must outlive the generator. Normals point to the side from which the corners run
    /// anticlockwise.
    explicit NormalGenerator(const FaceList& faces);

    /// Unit normal of each face; null for one without area.
    const std::vector<osg::Vec3f>& faceNormals() const { return _unit; }

    /// Unit normal of each point, over all faces round it; null for one that no face with an area touches.
    std::vector<osg::Vec3f> pointNormals() const;

    /// Unit normals of corners: a corner is smooth with those faces round its point that stand at less than
    /// \a creaseAngle radians to its own. \a normalOf gets, by place in the index list, the index of a
    /// corner's normal in the result; corners of a point that have the same normal share it.
    std::vector<osg::Vec3f> cornerNormals(float creaseAngle, std::vector<std::uint32_t>& normalOf) const;

private:
    struct Corner
    {
        std::uint32_t face;
        std::uint32_t place;
    };

    const FaceList* _faces;
    std::vector<osg::Vec3f> _area; ///< face normals of twice the face's area in length
    std::vector<osg::Vec3f> _unit;
};

/// Normal of a face, of twice its area in length.
ORVANE_API osg::Vec3f areaNormal(const FaceList& faces, const Face& face);

/// The vector scaled to length 1, however short or long it is; null for a null vector.
ORVANE_API osg::Vec3f unitVector(const osg::Vec3f& vector);

} // namespace Orvane
