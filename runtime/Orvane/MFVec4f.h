#pragma once

#include <Orvane/MVField.h>

namespace Orvane {

/// Quadruples.
class ORVANE_API MFVec4f : public MVField<osg::Vec4f, 0>
{
public:
    /// Made by the node, which is borrowed as its description is.
    MFVec4f(Node* node, NodePartDesc* desc);
    ~MFVec4f() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
