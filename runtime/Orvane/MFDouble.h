#pragma once

#include <Orvane/MVField.h>

namespace Orvane {

/// Double-precision numbers.
class ORVANE_API MFDouble : public MVField<double, 0>
{
public:
    MFDouble(Node* node, NodePartDesc* desc);
    ~MFDouble() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
