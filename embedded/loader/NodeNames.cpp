#include "loader/NodeNames.h"

#include "loader/ResolvedProtos.h"
#include "loader/SaveNotes.h"
#include "loader/SceneEmitter.h"
#include <Orvane/Node.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodeType.h>
#include <algorithm>

namespace Orvane {

std::string_view NodeNames::of(const Node& node) const
{
    const auto found = _names.find(&node);
    return found == _names.end() ? std::string_view() : std::string_view(found->second);
}

void NodeNames::take(const Node& node, std::string_view name)
{
    const std::string sayable = _emitter.sayableName(name);
    _taken.insert(sayable);
    _names.emplace(&node, sayable);
}

void NodeNames::giveTo(const Node& node, const std::string& wanted)
{
    if (has(node))
        return;
    const std::string sayable = _emitter.sayableName(wanted);
    std::string name = sayable;
    for (int number = 2; !_taken.insert(name).second; ++number)
        name = sayable + "_" + std::to_string(number);
    _names.emplace(&node, std::move(name));
}

void NodeNames::giveFound(const std::vector<const Node*>& order, NodeNameSpace* nameSpace)
{
    const auto isFound = [&](const Node& bearer) {
        return bearer.name() && NodeNameSpace::findNode(nameSpace, *bearer.name()) == &bearer;
    };
    std::vector<const Node*> unsayable;
    for (const Node* node : order) {
        const Node& bearer = _protos.bearer(*node);
        if (!isFound(bearer))
            continue;
        if (_emitter.sayableName(*bearer.name()) == *bearer.name())
            giveTo(*node, *bearer.name());
        else
            unsayable.push_back(node);
    }
    // What they become may be the name of another.
    for (const Node* node : unsayable) {
        const std::string& wanted = *_protos.bearer(*node).name();
        giveTo(*node, wanted);
        _notes.add("DEF \"" + wanted + "\": the encoding has no such name; written as " +
                   std::string(of(*node)));
    }
}

void NodeNames::giveRest(const std::vector<const Node*>& order, NodeNameSpace* nameSpace,
                         const std::function<bool(const Node&)>& isNeeded)
{
    if (std::all_of(order.begin(), order.end(), [this](const Node* node) { return has(*node); }))
        return;
    // In front of the node that is found by the name others may bear it too, unless they are called by it.
    std::unordered_set<const Node*> toCome;
    for (const Node* node : order)
        toCome.insert(&_protos.bearer(*node));
    for (const Node* node : order) {
        const Node& bearer = _protos.bearer(*node);
        toCome.erase(&bearer);
        if (has(*node))
            continue;
        const bool isCalled = isNeeded(*node);
        const bool isOfScope = bearer.name() && bearer.nameSpace() == nameSpace;
        if (isOfScope && !isCalled && toCome.count(NodeNameSpace::findNode(nameSpace, *bearer.name()))) {
            _names.emplace(node, _emitter.sayableName(*bearer.name()));
        } else if (isOfScope) {
            giveTo(*node, *bearer.name());
            _notes.add("DEF \"" + *bearer.name() + "\": several nodes bear this name; written as " +
                       std::string(of(*node)));
        } else if (isCalled || (bearer.name() && !_taken.count(_emitter.sayableName(*bearer.name())))) {
            // Names of other files and of the bodies of instances are kept as long as they are free.
            giveTo(*node, bearer.name() ? *bearer.name() : node->type()->name + "_1");
        }
    }
}

} // namespace Orvane
