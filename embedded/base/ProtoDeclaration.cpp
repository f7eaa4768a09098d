#include "base/ProtoDeclaration.h"
#include "base/ContextData.h"
#include "base/Graph.h"
#include "base/PrototypeData.h"

namespace Orvane {

ProtoDeclaration* protoDeclaration(const NodeType& type)
{
    PrototypeData* const data = type.data()->prototype.get();
    return data ? &data->declaration : nullptr;
}

MFNode& protoBody(Node& instance)
{
    return edit<MFNode>(instance, bodyPart(*instance.type()));
}

const MFNode& protoBody(const Node& instance)
{
    return read<MFNode>(instance, bodyPart(*instance.type()));
}

Node* protoStandIn(Node& node)
{
    Node* result = &node;
    for (int level = 0; result && result->type()->isProto(); ++level) {
        const std::vector<NodeLink*>* body =
            &FieldAccess::links(protoBody(static_cast<const Node&>(*result)));
        // An instance in a model may still wait for its body.
        Node* const model = protoDeclaration(*result->type())->model.get();
        if (body->empty() && model)
            body = &FieldAccess::links(protoBody(static_cast<const Node&>(*model)));
        result = body->empty() || level == maxNestedInstances ? nullptr : body->front()->directNode();
    }
    return result;
}

NodeNameSpace* rootNames(const Node& root)
{
    const auto& namesOfRoots = contextData(root).namesOfRoots;
    const auto own = namesOfRoots.find(&root);
    return own == namesOfRoots.end() ? nullptr : own->second;
}

const std::vector<std::shared_ptr<NodeType>>& declaredPrototypes(const Node& root)
{
    static const std::vector<std::shared_ptr<NodeType>> none;
    const NodeExtras* extras = root.data()->extras.get();
    return extras ? extras->prototypes : none;
}

void addDeclaredPrototype(Node& root, std::shared_ptr<NodeType> type)
{
    root.data()->makeExtras().prototypes.push_back(std::move(type));
}

void clearDeclaredPrototypes(Node& root)
{
    if (NodeExtras* extras = root.data()->extras.get())
        extras->prototypes.clear();
}

} // namespace Orvane
