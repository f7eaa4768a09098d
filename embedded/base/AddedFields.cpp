// The fields that single nodes have beside the parts of their type.
#include "base/ContextData.h"
#include "base/FieldFactory.h"
#include "base/Graph.h"
#include "base/NodeData.h"
#include "base/NodeGraph.h"
#include <Orvane/Authoring.h>
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Observer.h>
#include <Orvane/Route.h>
#include <algorithm>

namespace Orvane {

namespace {

Field* addPart(Node& node, std::string_view name, NodePartDataType dataType, NodePartType partType)
{
    const bool isAccess =
        partType == FIELDP || partType == EVENTINP || partType == EVENTOUTP || partType == EXPOSEDFIELDP;
    if (name.empty() || !isValueType(dataType) || !isAccess || node.state() == DYING_NS ||
        node.findField(std::string(name), Node::EXACT_FSO))
        return nullptr;
    AddedPart part{std::make_unique<NodePartDesc>(), nullptr};
    part.desc->id = node.partDescCount();
    part.desc->name = name;
    part.desc->dataType = dataType;
    part.desc->partType = partType;
    // Of the nodes of unknown types few have a behaviour, and that takes no events by name.
    const TypeBehaviour* const behaviour = node.type()->data()->behaviour;
    if (behaviour != &behaviourOf(anyUnknownType))
        part.desc->_data->behaviour = behaviour;
    part.field = makeField(node, *part.desc);
    part.desc->defaultValue = part.field->valueToString();
    std::vector<AddedPart>& parts = node.data()->makeExtras().parts;
    parts.push_back(std::move(part));
    return parts.back().field.get();
}

/// The routes of the node are told of anew, as their slot numbers may have changed.
void announceRoutes(Node& node)
{
    std::vector<Route*> routes;
    const auto collect = [&routes](const EventSlot* slot) {
        if (slot)
            routes.insert(routes.end(), slot->begin(), slot->end());
    };
    forEachField(node, [&collect](Field& field) {
        collect(field._inSlot);
        collect(field._outSlot);
    });
    std::sort(routes.begin(), routes.end());
    routes.erase(std::unique(routes.begin(), routes.end()), routes.end());

    /// Drops the routes that end while the others are told of.
    class EndObserver : public Observer
    {
    public:
        explicit EndObserver(std::vector<Route*>& live)
            : Observer(nullptr)
            , _live(live)
        {
        }
        void notify(const double&, BaseObject* route, BaseObject*, BaseObject*) override
        {
            std::replace(_live.begin(), _live.end(), static_cast<Route*>(route),
                         static_cast<Route*>(nullptr));
        }

    private:
        std::vector<Route*>& _live;
    } endObserver(routes);
    Route::_deleteObject.attach(endObserver);
    const double time = timeOf(node);
    for (std::size_t i = 0; i < routes.size(); ++i)
        if (routes[i])
            Route::_newObject.fire(time, routes[i]);
}

} // namespace

Field* addField(Node& node, std::string_view name, NodePartDataType dataType, NodePartType partType)
{
    Field* const field = addPart(node, name, dataType, partType);
    if (field) {
        field->_desc->_data->objExt = true;
        if (Proc* const proc = node.data()->proc.get())
            proc->fieldsChanged();
    }
    return field;
}

Field* addPrivateField(Node& node, std::string_view name, NodePartDataType dataType)
{
    Field* const field = addPart(node, name, dataType, FIELDP);
    if (field)
        field->_desc->_data->privateAccess = true;
    return field;
}

bool removeField(Node& node, Field& field)
{
    NodeExtras* const extras = node.data()->extras.get();
    const auto place = [extras, &field] {
        return std::find_if(extras->parts.begin(), extras->parts.end(),
                            [&field](const AddedPart& part) { return part.field.get() == &field; });
    };
    if (!extras || place() == extras->parts.end())
        return false;
    BusyScope busy(*node.data()->context);
    const UInt64 id = node.ID();
    if (holdsNodes(field.dataType()))
        removeAllLinks(field);
    if (Node::findNode(id) != &node || place() == extras->parts.end())
        return true; // an observer was faster
    endRoutes(field);
    if (Node::findNode(id) != &node || place() == extras->parts.end())
        return true;

    contextData(node).cascade.forget(field);
    const auto part = place();
    extras->removedParts.push_back(std::move(*part));
    const auto next = extras->parts.erase(part);
    for (auto i = next; i != extras->parts.end(); ++i)
        --i->desc->id;
    field._desc->id = removedPart;
    if (Proc* const proc = node.data()->proc.get())
        proc->fieldsChanged();
    announceRoutes(node);
    return true;
}

bool Authoring::restoreField(Field& field, unsigned int part)
{
    Node* const node = field.node();
    NodeExtras* const extras = node ? node->data()->extras.get() : nullptr;
    if (!extras || node->state() == DYING_NS || node->findField(field._desc->name, Node::EXACT_FSO))
        return false;
    std::vector<AddedPart>& removed = extras->removedParts;
    const auto place = std::find_if(removed.begin(), removed.end(), [&field](const AddedPart& candidate) {
        return candidate.field.get() == &field;
    });
    if (place == removed.end())
        return false;
    const auto first = static_cast<unsigned int>(partCount(*node->type()));
    const unsigned int index = std::clamp(part, first, node->partDescCount()) - first;
    const auto back = extras->parts.insert(extras->parts.begin() + index, std::move(*place));
    removed.erase(place);
    field._desc->id = first + index;
    for (auto i = back + 1; i != extras->parts.end(); ++i)
        ++i->desc->id;
    announceRoutes(*node);
    return true;
}

Field* Node::addField(const std::string& name, NodePartDataType dataType, NodePartType partType)
{
    return Orvane::addField(*this, name, dataType, partType);
}

bool Node::removeField(Field& field)
{
    return Orvane::removeField(*this, field);
}

} // namespace Orvane
