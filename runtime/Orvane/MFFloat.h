#pragma once

#include <Orvane/MVField.h>

namespace Orvane {

/// Single-precision numbers.
class ORVANE_API MFFloat : public MVField<float, 0>
{
public:
    MFFloat(Node* node, NodePartDesc* desc);
    ~MFFloat() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
