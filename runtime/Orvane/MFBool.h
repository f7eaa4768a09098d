#pragma once

#include <Orvane/MLField.h>

namespace Orvane {

/// Truth values.
class ORVANE_API MFBool : public MLField<bool, 0>
{
public:
    /// Made by the node, which is borrowed as its description is.
    MFBool(Node* node, NodePartDesc* desc);
    ~MFBool() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
