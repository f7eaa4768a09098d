#pragma once

#include <Orvane/MVField.h>

namespace Orvane {

/// 32-bit integers.
class ORVANE_API MFInt32 : public MVField<int, 0>
{
public:
    /// Made by the node, which is borrowed as its description is.
    MFInt32(Node* node, NodePartDesc* desc);
    ~MFInt32() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
