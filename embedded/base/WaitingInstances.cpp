// Instances in the models of prototypes, which get their bodies when these are needed.
#include "base/ContextData.h"
#include "base/NodeData.h"
#include "base/Prototype.h"
#include "base/PrototypeData.h"
#include <algorithm>
#include <limits>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace Orvane {

namespace {

template <class N>
N limitedSum(N a, N b)
{
    return b > std::numeric_limits<N>::max() - a ? std::numeric_limits<N>::max() : a + b;
}

/// The size of a model, the bodies included that its instances wait for.
ProtoSize sizeOf(const PrototypeData& data)
{
    ProtoSize size;
    std::unordered_map<const Node*, unsigned int> depths{{data.declaration.model.get(), 0}};
    std::vector<const Node*> waiting{data.declaration.model.get()};
    while (!waiting.empty()) {
        const Node& node = *waiting.back();
        waiting.pop_back();
        const unsigned int depth = depths.at(&node) + 1;
        forEachChildLink(node, [&](GraphLink& link) {
            if (!depths.emplace(link.child(), depth).second)
                return;
            waiting.push_back(link.child());
            size.depth = std::max(size.depth, depth);
        });
    }
    size.nodes = depths.size() - 1;
    for (const WaitingInstance& instance : data.waiting) {
        const auto place = depths.find(instance.node.get());
        if (place == depths.end())
            continue;
        const ProtoSize inner = protoSize(*place->first->type());
        size.nodes = limitedSum(size.nodes, inner.nodes);
        size.depth = std::max(size.depth, limitedSum(place->second, inner.depth));
    }
    return size;
}

/// The prototypes with waiting instances that an instance of the type needs, inner ones first.
std::vector<PrototypeData*> waitingPrototypes(const NodeType& type)
{
    struct Step
    {
        PrototypeData* data;
        std::size_t next;
    };
    std::vector<Step> open;
    std::vector<PrototypeData*> result;
    std::unordered_set<const PrototypeData*> met;
    const auto enter = [&](const NodeType& needed) {
        PrototypeData* const data = needed.data()->prototype.get();
        if (data && !data->waiting.empty() && met.insert(data).second)
            open.push_back({data, 0});
    };
    enter(type);
    while (!open.empty()) {
        Step& step = open.back();
        if (step.next == step.data->waiting.size()) {
            result.push_back(step.data);
            open.pop_back();
        } else if (const Node* node = step.data->waiting[step.next++].node.get()) {
            enter(*node->type());
        }
    }
    return result;
}

std::size_t sumOf(const std::vector<PrototypeData*>& prototypes)
{
    std::size_t nodes = 0;
    for (const PrototypeData* data : prototypes)
        nodes = limitedSum(nodes, data->size.nodes);
    return nodes;
}

} // namespace

ProtoSize protoSize(const NodeType& type)
{
    const PrototypeData* const data = type.data()->prototype.get();
    if (data && data->size.nodes > 0)
        return data->size;
    const BodyPlan* const plan = bodyPlan(type);
    return plan ? plan->size() : ProtoSize();
}

void holdInstances(NodeType& type, std::vector<WaitingInstance> instances)
{
    // What found no place in the model is no part of it.
    const auto isOutside = [](const WaitingInstance& instance) {
        return !instance.node || !instance.node->data()->firstParent;
    };
    instances.erase(std::remove_if(instances.begin(), instances.end(), isOutside), instances.end());
    PrototypeData& data = *type.data()->prototype;
    if (instances.empty() || !data.declaration.model)
        return;
    data.waiting = std::move(instances);
    data.size = sizeOf(data);
}

bool waitsForDefault(const NodeType& type, const Node& instance, unsigned int part)
{
    const PrototypeData* const data = type.data()->prototype.get();
    if (!data)
        return false;
    const auto found =
        std::find_if(data->waiting.begin(), data->waiting.end(),
                     [&instance](const WaitingInstance& waiting) { return waiting.node.get() == &instance; });
    return found != data->waiting.end() &&
           std::find(found->given.begin(), found->given.end(), part) == found->given.end();
}

std::size_t waitingNodes(const NodeType& type)
{
    return sumOf(waitingPrototypes(type));
}

bool prepareModels(const NodeType& type)
{
    const std::vector<PrototypeData*> prototypes = waitingPrototypes(type);
    if (sumOf(prototypes) > maxModelNodes)
        return false;
    std::vector<Node*> made;
    for (PrototypeData* data : prototypes) {
        const std::vector<WaitingInstance> instances = std::exchange(data->waiting, {});
        data->plan.reset();
        for (const WaitingInstance& instance : instances)
            if (instance.node)
                completeInstance(*instance.node, instance.given, instance.outer, made);
    }
    return true;
}

} // namespace Orvane
