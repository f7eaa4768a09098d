#pragma once

#include <Orvane/MVField.h>

namespace Orvane {

/// Single-precision numbers.
class ORVANE_API MFFloat : public MVField<float, 0>
{
public:
    /// Made by the node, which is borrowed as its description is.
    MFFloat(Node* node, NodePartDesc* desc);
    ~MFFloat() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
