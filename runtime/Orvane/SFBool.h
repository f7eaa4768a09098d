#pragma once

#include <Orvane/XField.h>

namespace Orvane {

/// One truth value.
class ORVANE_API SFBool : public XField<bool, 0>
{
public:
    /// Made by the node, which is borrowed as its description is.
    SFBool(Node* node, NodePartDesc* desc);
    ~SFBool() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
