#pragma once

#include <Orvane/MVField.h>

namespace Orvane {

/// Colours with opacity.
class ORVANE_API MFColorRGBA : public MVField<osg::Color4f, 0>
{
public:
    /// Made by the node, which is borrowed as its description is.
    MFColorRGBA(Node* node, NodePartDesc* desc);
    ~MFColorRGBA() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
