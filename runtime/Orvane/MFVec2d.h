#pragma once

#include <Orvane/MVField.h>

namespace Orvane {

/// Pairs in double precision.
class ORVANE_API MFVec2d : public MVField<osg::Vec2d, 0>
{
public:
    /// Made by the node, which is borrowed as its description is.
    MFVec2d(Node* node, NodePartDesc* desc);
    ~MFVec2d() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
