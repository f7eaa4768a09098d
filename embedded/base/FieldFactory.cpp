#include "base/FieldFactory.h"
#include "base/Log.h"
#include "base/NodeData.h"
#include "base/SmallBlocks.h"
#include "base/TypeData.h"
#include "base/ValueFields.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/MFBool.h>
#include <Orvane/MFColor.h>
#include <Orvane/MFColorRGBA.h>
#include <Orvane/MFDouble.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFInt32.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFRotation.h>
#include <Orvane/MFString.h>
#include <Orvane/MFVec2d.h>
#include <Orvane/MFVec2f.h>
#include <Orvane/MFVec3d.h>
#include <Orvane/MFVec3f.h>
#include <Orvane/MFVec4d.h>
#include <Orvane/MFVec4f.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFImage.h>
#include <Orvane/SFInt32.h>
#include <Orvane/SFNode.h>
#include <Orvane/SFString.h>

namespace Orvane {

namespace {

using Maker = std::unique_ptr<Field> (*)(Node*, NodePartDesc*);

template <class F>
class NodeField final : public F
{
public:
    using F::F;
    ORVANE_IN_SMALL_BLOCKS
};

template <class F>
std::unique_ptr<Field> make(Node* node, NodePartDesc* desc)
{
    return std::make_unique<NodeField<F>>(node, desc);
}

/// An `SFNode` with its link.
class LinkedSFNode : public SFNode
{
public:
    LinkedSFNode(Node* node, NodePartDesc* desc)
        : SFNode(node, desc)
        , _ownLink(this)
    {
        FieldAccess::setLink(*this, _ownLink);
    }

private:
    GraphLink _ownLink;
};

/// By data type.
constexpr Maker makers[] = {
    nullptr,           make<SFBool>,      make<MFBool>,     make<SFColor>,      make<MFColor>,
    make<SFColorRGBA>, make<MFColorRGBA>, make<SFDouble>,   make<MFDouble>,     make<SFFloat>,
    make<MFFloat>,     make<SFImage>,     make<MFImage>,    make<SFInt32>,      make<MFInt32>,
    make<SFMatrix3d>,  make<MFMatrix3d>,  make<SFMatrix3f>, make<MFMatrix3f>,   make<SFMatrix4d>,
    make<MFMatrix4d>,  make<SFMatrix4f>,  make<MFMatrix4f>, make<LinkedSFNode>, make<MFNode>,
    make<SFRotation>,  make<MFRotation>,  make<SFString>,   make<MFString>,     make<SFTime>,
    make<MFTime>,      make<SFVec2d>,     make<MFVec2d>,    make<SFVec2f>,      make<MFVec2f>,
    make<SFVec3d>,     make<MFVec3d>,     make<SFVec3f>,    make<MFVec3f>,      make<SFVec4d>,
    make<MFVec4d>,     make<SFVec4f>,     make<MFVec4f>};
static_assert(sizeof makers / sizeof *makers == MFVEC4F_DT + 1, "one maker for each data type");

} // namespace

std::unique_ptr<Field> makeField(Node& node, NodePartDesc& desc)
{
    std::unique_ptr<Field> field = makers[desc.dataType](&node, &desc);
    if (!desc.defaultValue.empty() && !holdsNodes(desc.dataType))
        field->assignValue(defaultField(desc));
    return field;
}

std::unique_ptr<Field> makeDefaultField(NodePartDesc& desc)
{
    std::unique_ptr<Field> field = makers[desc.dataType](nullptr, &desc);
    std::string error;
    if (!desc.defaultValue.empty() && !holdsNodes(desc.dataType) &&
        !field->parseValue(desc.defaultValue, error))
        ORVANE_LOG(osg::LOG_WARNING, "Default value of field \"%s\": %s.\n", desc.name.c_str(),
                   error.c_str());
    return field;
}

} // namespace Orvane
