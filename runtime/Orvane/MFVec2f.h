#pragma once

#include <Orvane/MVField.h>

namespace Orvane {

/// Pairs.
class ORVANE_API MFVec2f : public MVField<osg::Vec2f, 0>
{
public:
    /// Made by the node, which is borrowed as its description is.
    MFVec2f(Node* node, NodePartDesc* desc);
    ~MFVec2f() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
