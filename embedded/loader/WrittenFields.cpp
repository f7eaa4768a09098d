#include "loader/WrittenFields.h"

#include "base/Graph.h"
#include "base/Prototype.h"
#include "loader/NodeFields.h"
#include "loader/SceneEmitter.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <Orvane/Route.h>
#include <algorithm>

namespace Orvane {

namespace {

/// The model from which an instance of a prototype is copied; null for other nodes and without one.
const Node* modelOf(const Node& node)
{
    const ProtoDeclaration* declaration = protoDeclaration(*node.type());
    return declaration ? declaration->model.get() : nullptr;
}

} // namespace

void WrittenFields::fieldsOf(const Node& node, std::vector<const Field*>& fields) const
{
    if (!_options.writeDefaultValues && !_emitter.writesUntouched(*node.type()))
        return madeFields(node, fields);
    const unsigned int count = node.partDescCount();
    for (unsigned int part = 0; part < count; ++part)
        fields.push_back(&readField(node, part));
}

void WrittenFields::contentOf(const Node& node, const std::vector<const Field*>& fields,
                              std::vector<const Field*>& content) const
{
    const NodeType& type = *node.type();
    for (const Field* field : fields)
        if (isDeclaredField(type, *field) && !field->_desc->privateAccess())
            content.push_back(field);
    for (const Field* field : fields)
        if (holdsNodes(*field) && !isDeclaredField(type, *field) && isWritten(node, *field))
            content.push_back(field);
}

bool WrittenFields::isWritten(const Node& node, const Field& field) const
{
    const NodePartDesc& desc = *field._desc;
    if (desc.privateAccess() || !(desc.partType & FIELDP) || hasValueByIs(field))
        return false;
    if (holdsNodes(field)) {
        if (!hasNodes(field) && _model && waitsForDefault(*_model->type(), node, desc.id))
            return false;
        if (!hasNodes(field))
            return (_options.writeDefaultValues && _emitter.saysEmpty()) || !holdsDefaultNodes(node, field);
        return !modelOf(node) || !holdsDefaultNodes(node, field);
    }
    return _options.writeDefaultValues || desc.objExt() || !_emitter.isDefault(node, field);
}

/// True for a field of an instance whose nodes are those of the prototype's default, and for an empty field
/// that is so by default.
bool WrittenFields::holdsDefaultNodes(const Node& instance, const Field& field) const
{
    const Node* model = modelOf(instance);
    if (!model || model == &instance || field._desc->objExt())
        return !hasNodes(field);
    return holdsAlike(field, readField(*model, field._desc->id));
}

std::vector<const Field*> WrittenFields::connectionsOf(const Field& field) const
{
    std::vector<const Field*> result;
    const auto add = [&](const Route& route, const Field& other) {
        const bool isNew = std::find(result.begin(), result.end(), &other) == result.end();
        if (route.type() == Route::IS_RT && other.node() == _model && isNew)
            result.push_back(&other);
    };
    if (!_model || !field.node())
        return result;
    if (field._inSlot)
        for (const Route* route : *field._inSlot)
            add(*route, *route->outSlot()->field());
    if (field._outSlot)
        for (const Route* route : *field._outSlot)
            add(*route, *route->inSlot()->field());
    return result;
}

bool WrittenFields::hasValueByIs(const Field& field) const
{
    if (!_model)
        return false;
    for (const Field* other : connectionsOf(field))
        if (other->_desc->partType & FIELDP)
            return true;
    return false;
}

} // namespace Orvane
