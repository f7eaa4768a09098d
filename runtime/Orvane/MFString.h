#pragma once

#include <Orvane/MLField.h>

namespace Orvane {

/// Texts.
class ORVANE_API MFString : public MLField<std::string, 0>
{
public:
    /// Made by the node, which is borrowed as its description is.
    MFString(Node* node, NodePartDesc* desc);
    ~MFString() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
