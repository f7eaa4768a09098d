#pragma once

#include <OpenSG/OSGMatrix.h>
#include <OpenSG/OSGVector.h>

namespace Orvane {

/// A matrix in double precision.
inline osg::Matrix4d toDouble(const osg::Matrix& matrix)
{
    osg::Matrix4d result;
    for (osg::UInt32 column = 0; column < 4; ++column)
        result[column] = osg::Vec4d(matrix[column]);
    return result;
}

/// A place, moved by a matrix.
inline osg::Vec3d transformed(const osg::Matrix4d& matrix, const osg::Vec3d& place)
{
    osg::Vec3d result(matrix[3][0], matrix[3][1], matrix[3][2]);
    for (osg::UInt32 i = 0; i < 3; ++i)
        result += osg::Vec3d(matrix[i][0], matrix[i][1], matrix[i][2]) * place[i];
    return result;
}

} // namespace Orvane
