#pragma once

#include <Orvane/XField.h>

namespace Orvane {

/// One 32-bit integer.
class ORVANE_API SFInt32 : public XField<int, 0>
{
public:
    /// Made by the node, which is borrowed as its description is.
    SFInt32(Node* node, NodePartDesc* desc);
    ~SFInt32() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
