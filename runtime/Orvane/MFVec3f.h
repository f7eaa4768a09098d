#pragma once

#include <Orvane/MVField.h>

namespace Orvane {

/// Triples.
class ORVANE_API MFVec3f : public MVField<osg::Vec3f, 0>
{
public:
    /// Made by the node, which is borrowed as its description is.
    MFVec3f(Node* node, NodePartDesc* desc);
    ~MFVec3f() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
