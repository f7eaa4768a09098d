#pragma once

#include <Orvane/MVField.h>

namespace Orvane {

/// Colours, red, green and blue from 0 to 1.
class ORVANE_API MFColor : public MVField<osg::Color3f, 0>
{
public:
    /// Made by the node, which is borrowed as its description is.
    MFColor(Node* node, NodePartDesc* desc);
    ~MFColor() override;

    NodePartDataType dataType() const override;
};

} // namespace Orvane
