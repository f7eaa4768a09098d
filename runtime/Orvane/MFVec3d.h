#pragma once

#include <Orvane/MVField.h>

namespace Orvane {

/// Triples in double precision.
class ORVANE_API MFVec3d : public MVField<osg::Vec3d, 0>
{
public:
    /// Made by the node, which is borrowed as its description is.
    MFVec3d(Node* node, NodePartDesc* desc);
    ~MFVec3d() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
