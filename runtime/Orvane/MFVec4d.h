#pragma once

#include <Orvane/MVField.h>

namespace Orvane {

/// Quadruples in double precision.
class ORVANE_API MFVec4d : public MVField<osg::Vec4d, 0>
{
public:
    /// Made by the node, which is borrowed as its description is.
    MFVec4d(Node* node, NodePartDesc* desc);
    ~MFVec4d() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
