#include "base/BodyPlan.h"
#include "base/ContextData.h"
#include "base/Graph.h"
#include "base/LiveRoute.h"
#include "base/NodeGraph.h"
#include "base/PrototypeData.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <algorithm>

namespace Orvane {

namespace {

constexpr unsigned int noNames = static_cast<unsigned int>(-1);

void appendLink(Field& field, Node& child)
{
    if (!mayLink(field, &child))
        return;
    if (field.dataType() == MFNODE_DT)
        insertLink(static_cast<MFNode&>(field), field.size(), child);
    else if (!FieldAccess::link(static_cast<SFNode&>(field)).child())
        setLink(static_cast<SFNode&>(field), child);
}

bool holdsAny(const Field& field)
{
    bool any = false;
    forEachLink(field, [&any](GraphLink&) { any = true; });
    return any;
}

} // namespace

// ---- Making the plan

BodyPlan::BodyPlan(Node& model)
{
    number(model, 0);
    namesOf(rootNames(model));
    markFed(model);
    for (NodeLink* link : FieldAccess::links(protoBody(model)))
        if (Node* node = link->directNode()) {
            planBranch(*node, 1);
            _body.push_back({bodyPart(*model.type()), _numbers.at(node)});
        }
    _bodyEnd = static_cast<unsigned int>(_nodes.size());
    for (const unsigned int part : typeData(*model.type()).nodeParts) {
        const Field* field = part == bodyPart(*model.type()) ? nullptr : model.data()->fields.at(part);
        if (!field || !holdsAny(*field))
            continue;
        PlannedDefault planned{part, static_cast<unsigned int>(_nodes.size()), 0, {}};
        forEachLink(*field, [&](GraphLink& link) {
            planBranch(*link.child(), 1);
            planned.nodes.push_back(_numbers.at(link.child()));
        });
        planned.last = static_cast<unsigned int>(_nodes.size());
        _defaults.push_back(std::move(planned));
    }
    planLinks();
    planRoutes();
    _size.nodes = _nodes.size() - 1;
    _numbers.clear();
    _nameNumbers.clear();
    _fed.clear();
}

/// Finds the node fields to which the interface leads, through instances inside the body too.
void BodyPlan::markFed(Node& model)
{
    std::vector<const Field*> waiting;
    forEachField(model, [&waiting](Field& field) {
        if (holdsNodes(field.dataType()) && (field.partType() & FIELDP))
            waiting.push_back(&field);
    });
    while (!waiting.empty()) {
        const Field& field = *waiting.back();
        waiting.pop_back();
        if (!field._outSlot)
            continue;
        for (const Route* route : *field._outSlot) {
            const Field* target = route->inSlot()->field();
            if (static_cast<const LiveRoute*>(route)->leadsInto && _fed.emplace(target, true).second)
                waiting.push_back(target);
        }
    }
}

unsigned int BodyPlan::number(Node& node, unsigned int depth)
{
    const auto next = static_cast<unsigned int>(_nodes.size());
    const auto [place, isNew] = _numbers.emplace(&node, next);
    if (!isNew)
        return place->second;
    _size.depth = std::max(_size.depth, depth);
    _nodes.emplace_back();
    _nodes.back().source = NodeRef(&node);
    if (next > 0) {
        _nodes.back().names = namesOf(node.nameSpace());
        planValues(_nodes.back());
    }
    return next;
}

unsigned int BodyPlan::namesOf(const NodeNameSpace* names)
{
    const auto known = _nameNumbers.find(names);
    if (known != _nameNumbers.end())
        return known->second;
    unsigned int result = 0;
    const auto root = names ? _numbers.find(names->rootNode()) : _numbers.end();
    if (root != _numbers.end()) {
        result = static_cast<unsigned int>(_names.size());
        const unsigned int parent =
            _names.empty() ? noNames : namesOf(_nodes[root->second].source->nameSpace());
        _names.push_back({names, parent, root->second});
    }
    _nameNumbers.emplace(names, result);
    return result;
}

void BodyPlan::planBranch(Node& top, unsigned int depth)
{
    struct Step
    {
        Node* node;
        unsigned int depth;
    };
    std::vector<Step> waiting{{&top, depth}};
    std::vector<Step> children;
    while (!waiting.empty()) {
        const Step step = waiting.back();
        waiting.pop_back();
        if (_numbers.count(step.node) > 0)
            continue;
        number(*step.node, step.depth);
        children.clear();
        forEachChildLink(*step.node, [&](GraphLink& link) {
            if (_fed.count(link.field()) == 0)
                children.push_back({link.child(), step.depth + 1});
        });
        waiting.insert(waiting.end(), children.rbegin(), children.rend());
    }
}

void BodyPlan::planValues(PlannedNode& planned)
{
    const Node& node = *planned.source;
    const std::size_t typeParts = typeData(*node.type()).parts.size();
    forEachField(node, [&](Field& field) {
        if (field._desc->id < typeParts && !holdsNodes(field.dataType()) &&
            !field.hasValueOf(defaultField(*field._desc)))
            planned.values.push_back(&field);
    });
}

void BodyPlan::planLinks()
{
    for (std::size_t i = 1; i < _nodes.size(); ++i) {
        PlannedNode& planned = _nodes[i];
        forEachChildLink(*planned.source, [&](GraphLink& link) {
            if (_fed.count(link.field()) == 0)
                planned.links.push_back({link.field()->_desc->id, _numbers.at(link.child())});
        });
    }
}

void BodyPlan::planRoutes()
{
    for (unsigned int i = 0; i < _nodes.size(); ++i) {
        forEachField(*_nodes[i].source, [&](Field& field) {
            if (!field._outSlot)
                return;
            for (const Route* route : *field._outSlot) {
                const Field& target = *route->inSlot()->field();
                const auto to = _numbers.find(target.node());
                if (to != _numbers.end())
                    _routes.push_back({i, field._desc->id, to->second, target._desc->id, route->type(),
                                       static_cast<const LiveRoute*>(route)->leadsInto});
            }
        });
    }
}

bool BodyPlan::isUsable() const
{
    return std::all_of(_nodes.begin(), _nodes.end(),
                       [](const PlannedNode& node) { return static_cast<bool>(node.source); });
}

// ---- Copying

void BodyPlan::copyTo(Node& instance, const std::vector<int>& partOf, const std::vector<unsigned int>& given,
                      NodeNameSpace* outer, std::vector<Node*>& made) const
{
    Copy copy{contextOf(instance), std::vector<NodeRef>(_nodes.size()),
              std::vector<NodeNameSpace*>(_names.size(), nullptr)};
    copy.nodes[0] = NodeRef(&instance);
    if (!_names.empty())
        copy.names[0] = copyNames(copy, _names[0], outer, instance);
    copyNodes(copy, 1, _bodyEnd, made);
    std::vector<const PlannedDefault*> defaults;
    for (const PlannedDefault& planned : _defaults) {
        const int part = partOf[planned.part];
        if (part >= 0 &&
            std::find(given.begin(), given.end(), static_cast<unsigned int>(part)) == given.end()) {
            defaults.push_back(&planned);
            copyNodes(copy, planned.first, planned.last, made);
        }
    }
    copyLinks(copy, 1, _bodyEnd);
    for (const PlannedDefault* planned : defaults)
        copyLinks(copy, planned->first, planned->last);
    for (const PlannedLink& link : _body)
        if (copy.nodes[link.child])
            appendLink(protoBody(instance), *copy.nodes[link.child]);
    for (const PlannedDefault* planned : defaults)
        for (const unsigned int node : planned->nodes)
            if (copy.nodes[node])
                appendLink(editField(instance, static_cast<unsigned int>(partOf[planned->part])),
                           *copy.nodes[node]);
    copyRoutes(copy, partOf);
    const Node& model = *_nodes[0].source;
    for (unsigned int part = 0; part < partOf.size(); ++part) {
        Field* const field =
            partOf[part] >= 0 ? instance.data()->fields.at(static_cast<unsigned int>(partOf[part])) : nullptr;
        if (!field || !(field->partType() & FIELDP) || part == bodyPart(*model.type()))
            continue;
        if (holdsNodes(field->dataType()) ? holdsAny(*field) : !field->hasValueOf(readField(model, part)))
            handIntoBody(*field);
    }
}

/// Names of a file like those that the plan was made of, of another root.
NodeNameSpace* BodyPlan::copyNames(const Copy& copy, const PlannedNames& planned, NodeNameSpace* parent,
                                   Node& root) const
{
    NodeNameSpace* const names =
        createNameSpace(copy.context, parent, root.name() ? *root.name() : root.type()->name, &root,
                        planned.source->baseURL());
    setFileVersion(*names, fileVersion(planned.source));
    return names;
}

void BodyPlan::copyNodes(Copy& copy, unsigned int first, unsigned int last, std::vector<Node*>& made) const
{
    const NodeCreator creator = copy.nodes[0]->state() == CREATED_NS ? HOST_NC : LOADER_NC;
    for (unsigned int i = first; i < last; ++i) {
        const PlannedNode& planned = _nodes[i];
        const Node& source = *planned.source;
        copy.nodes[i] = createBareInstance(copy.context, *source.type(), creator);
        Node& node = *copy.nodes[i];
        made.push_back(&node);
        setSourcePlace(node, sourceLine(source), sourceColumn(source));
        if (planned.names < _names.size()) {
            NodeNameSpace*& names = copy.names[planned.names];
            const PlannedNames& plannedNames = _names[planned.names];
            if (!names)
                names = copyNames(copy, plannedNames, copy.names[plannedNames.parent],
                                  *copy.nodes[plannedNames.root]);
            setName(node, names, source.name() ? std::string_view(*source.name()) : std::string_view());
        }
        copyValues(planned, node);
    }
}

void BodyPlan::copyValues(const PlannedNode& planned, Node& node) const
{
    for (const Field* value : planned.values)
        editField(node, value->_desc->id).assignValue(*value);
    const NodeExtras* extras = planned.source->data()->extras.get();
    if (!extras)
        return;
    for (const AddedPart& part : extras->parts) {
        const NodePartDesc& desc = *part.desc;
        Field* const field = desc.privateAccess() ? addPrivateField(node, desc.name, desc.dataType)
                                                  : addField(node, desc.name, desc.dataType, desc.partType);
        if (field && !holdsNodes(desc.dataType))
            field->assignValue(*part.field);
    }
}

void BodyPlan::copyLinks(Copy& copy, unsigned int first, unsigned int last) const
{
    for (unsigned int i = first; i < last; ++i)
        for (const PlannedLink& link : _nodes[i].links)
            if (copy.nodes[i] && copy.nodes[link.child] && link.part < copy.nodes[i]->partDescCount())
                appendLink(editField(*copy.nodes[i], link.part), *copy.nodes[link.child]);
}

void BodyPlan::copyRoutes(Copy& copy, const std::vector<int>& partOf) const
{
    const auto field = [&](unsigned int node, unsigned int part) -> Field* {
        const int own = node == 0 ? partOf[part] : static_cast<int>(part);
        if (own < 0 || !copy.nodes[node] ||
            static_cast<unsigned int>(own) >= copy.nodes[node]->partDescCount())
            return nullptr;
        return &editField(*copy.nodes[node], static_cast<unsigned int>(own));
    };
    for (const PlannedRoute& planned : _routes) {
        Field* const from = field(planned.from, planned.fromPart);
        Field* const to = from ? field(planned.to, planned.toPart) : nullptr;
        if (!to)
            continue;
        from->createOutSlot(false);
        to->createInSlot(false);
        if (Route* route = Route::create(*from->_outSlot, *to->_inSlot, planned.type))
            static_cast<LiveRoute*>(route)->leadsInto = planned.leadsInto;
    }
}

} // namespace Orvane
