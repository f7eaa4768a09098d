#pragma once

#include <Orvane/MVField.h>

namespace Orvane {

/// Double-precision numbers.
class ORVANE_API MFDouble : public MVField<double, 0>
{
public:
    /// Made by the node, which is borrowed as its description is.
    MFDouble(Node* node, NodePartDesc* desc);
    ~MFDouble() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
