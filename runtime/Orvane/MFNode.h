#pragma once

#include <Orvane/MLField.h>

namespace Orvane {

/// Links to nodes.
class ORVANE_API MFNode : public MLField<NodeLink, 1>
{
public:
    /// Made by the node, which is borrowed as its description is.
    MFNode(Node* node, NodePartDesc* desc);
    ~MFNode() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
