#include "base/Prototype.h"
#include "base/ContextData.h"
#include "base/Graph.h"
#include "base/LiveRoute.h"
#include "base/NodeGraph.h"
#include "base/PrototypeData.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <algorithm>
#include <unordered_set>
#include <utility>

namespace Orvane {

namespace {

class ProtoType : public NodeType
{
public:
    explicit ProtoType(std::string_view protoName)
        : NodeType("")
    {
        name = protoName;
        _isProto = true;
    }
};

/// Nobody asks for the type any more. Its model may end later, and needs it until then.
void endPrototype(NodeType* type)
{
    PrototypeData& data = *type->data()->prototype;
    NodeRef model = std::move(data.declaration.model);
    data.plan.reset();
    data.waiting.clear();
    data.isOrphan = true;
    if (data.nodeCount == 0)
        delete type;
    else
        model = NodeRef();
}

Route* makeIs(Field& from, Field& to, bool leadsInto)
{
    from.createOutSlot(false);
    to.createInSlot(false);
    Route* const route = Route::create(*from._outSlot, *to._inSlot, Route::IS_RT);
    if (route)
        static_cast<LiveRoute*>(route)->leadsInto = leadsInto;
    return route;
}

std::vector<int> sameParts(const NodeType& type)
{
    std::vector<int> parts(partCount(type));
    for (std::size_t i = 0; i < parts.size(); ++i)
        parts[i] = static_cast<int>(i);
    return parts;
}

void takeRestriction(NodePartDesc& desc, const NodePartDesc& from)
{
    desc.valueRestriction = from.valueRestriction;
    desc.valueType = from.valueType;
    desc.minValue = from.minValue;
    desc.maxValue = from.maxValue;
}

} // namespace

NodeType::Data::Data() = default;
NodeType::Data::~Data() = default;

void keepWhileUsed(PrototypeData& data)
{
    const std::size_t own = data.declaration.model ? 1 : 0;
    if (data.nodeCount > own) {
        if (!data.kept)
            data.kept = data.self.lock();
        return;
    }
    const std::shared_ptr<NodeType> last = std::move(data.kept);
    data.kept.reset();
}

void countNode(NodeType& type, int change)
{
    PrototypeData* const data = type.data()->prototype.get();
    if (!data)
        return;
    data->nodeCount += static_cast<std::size_t>(change);
    if (!data->isOrphan)
        keepWhileUsed(*data);
    else if (data->nodeCount == 0)
        delete &type;
}

std::shared_ptr<NodeType> createPrototype(std::string_view name, const std::vector<PartDeclaration>& parts)
{
    const std::shared_ptr<NodeType> type(new ProtoType(name), endPrototype);
    NodeType::Data& data = *type->data();
    data.prototype = std::make_unique<PrototypeData>();
    data.prototype->self = type;
    std::unordered_set<std::string_view> names;
    for (const PartDeclaration& part : parts) {
        if (!isValueType(part.dataType) || !names.insert(part.name).second)
            continue;
        auto desc = std::make_unique<NodePartDesc>();
        desc->name = part.name;
        desc->dataType = part.dataType;
        desc->partType = part.partType;
        desc->defaultValue = part.defaultValue;
        desc->description = part.description;
        data.parts.push_back(std::move(desc));
    }
    auto body = std::make_unique<NodePartDesc>();
    body->name = "protoBody";
    body->dataType = MFNODE_DT;
    body->partType = FIELDP;
    body->_data->privateAccess = true;
    data.parts.push_back(std::move(body));
    finishParts(data);
    return type;
}

Node& createModel(Context& context, NodeType& type, NodeNameSpace& names)
{
    const NodeRef model = createBareInstance(context, type, LOADER_NC);
    PrototypeData& data = *type.data()->prototype;
    data.declaration.model = model;
    hideNameSpace(names, *model);
    keepWhileUsed(data);
    return *model;
}

void adoptModel(Context& context, NodeType& type, const NodeType& found, std::vector<std::string>& unmatched)
{
    const BodyPlan* const plan = bodyPlan(found);
    if (!plan)
        return;
    const unsigned int foundBody = bodyPart(found);
    std::vector<int> partOf(partCount(found), -1);
    partOf[foundBody] = static_cast<int>(bodyPart(type));
    const Node& source = *protoDeclaration(found)->model;
    for (unsigned int part = 0; part < bodyPart(type); ++part) {
        NodePartDesc& desc = *partDesc(type, part);
        const int other = partIndex(found, desc.name);
        const NodePartDesc* const from =
            other < 0 ? nullptr : partDesc(found, static_cast<unsigned int>(other));
        if (!from || from->dataType != desc.dataType || from->partType != desc.partType ||
            static_cast<unsigned int>(other) == foundBody)
        {
            unmatched.push_back(desc.name);
            continue;
        }
        partOf[static_cast<unsigned int>(other)] = static_cast<int>(part);
        takeRestriction(desc, *from);
        if (!holdsNodes(desc.dataType))
            desc.defaultValue = readField(source, static_cast<unsigned int>(other)).valueToString();
        desc._data->defaultField.reset();
    }
    BusyScope busy(context);
    PrototypeData& data = *type.data()->prototype;
    data.declaration.model = createBareInstance(context, type, LOADER_NC);
    keepWhileUsed(data);
    Node& model = *data.declaration.model;
    std::vector<Node*> made;
    plan->copyTo(model, partOf, {}, nullptr, made);
    if (NodeNameSpace* names = rootNames(model))
        hideNameSpace(*names, model);
}

bool mayConnectIs(const Field& instanceField, const Field& bodyField)
{
    const NodePartType access = instanceField.partType();
    return instanceField.dataType() == bodyField.dataType() && (access & bodyField.partType()) == access;
}

bool connectIs(Field& instanceField, Field& bodyField)
{
    if (!mayConnectIs(instanceField, bodyField))
        return false;
    NodePartDesc& desc = *instanceField._desc;
    if (desc.valueRestriction == NodePartDesc::NONE_VR)
        takeRestriction(desc, *bodyField._desc);
    if (instanceField.partType() != EVENTOUTP)
        makeIs(instanceField, bodyField, true);
    if (instanceField.partType() & EVENTOUTP)
        makeIs(bodyField, instanceField, false);
    if (instanceField.partType() & FIELDP) {
        bodyField.assignValue(instanceField);
        if (bodyField.node()->type()->isProto())
            handIntoBody(bodyField);
    }
    return true;
}

void handIntoBody(Field& instanceField)
{
    std::vector<Field*> waiting{&instanceField};
    while (!waiting.empty()) {
        Field& field = *waiting.back();
        waiting.pop_back();
        if (!field._outSlot)
            continue;
        const std::vector<Route*> routes(field._outSlot->begin(), field._outSlot->end());
        for (const Route* route : routes) {
            if (!static_cast<const LiveRoute*>(route)->leadsInto)
                continue;
            Field& target = *route->inSlot()->field();
            target.assignValue(field);
            if (target.node()->type()->isProto())
                waiting.push_back(&target);
        }
    }
}

void completeInstance(Node& instance, const std::vector<unsigned int>& given, NodeNameSpace* outer,
                      std::vector<Node*>& made)
{
    const BodyPlan* const plan = bodyPlan(*instance.type());
    if (!plan)
        return;
    BusyScope busy(contextOf(instance));
    plan->copyTo(instance, sameParts(*instance.type()), given, outer, made);
}

BodyPlan* bodyPlan(const NodeType& type)
{
    PrototypeData* const data = type.data()->prototype.get();
    if (!data || !data->declaration.model || !prepareModels(type))
        return nullptr;
    if (!data->plan || !data->plan->isUsable())
        data->plan = std::make_unique<BodyPlan>(*data->declaration.model);
    return data->plan.get();
}

} // namespace Orvane
