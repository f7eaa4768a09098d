#include "NodeCommands.h"

#include "GraphReach.h"
#include "Steps.h"
#include <Orvane/Authoring.h>
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>
#include <Orvane/SFNode.h>
#include <QCoreApplication>
#include <QSet>
#include <QorTools.h>
#include <list>

namespace {

QString tr(const char* text)
{
    return QCoreApplication::translate("NodeCommands", text);
}

QString labelOf(const Orvane::Node* node)
{
    if (!node)
        return {};
    return Orvane::Qt4::fromRuntime(node->name() ? *node->name() : node->type()->name);
}

} // namespace

// ---- Places

NodePlace NodePlace::of(const Orvane::NodePath& path)
{
    std::list<Orvane::NodeLink*> links;
    path.nodeLinks(links);
    if (links.empty())
        return {};
    const Orvane::NodeLink* const link = links.front();
    NodePlace place{link->parent()->ID(), link->field()->name(), 0};
    if (auto* const multi = dynamic_cast<Orvane::MFNode*>(link->field())) {
        for (Orvane::NodeLink& each : *multi) {
            if (&each == link)
                break;
            ++place.index;
        }
    }
    return place;
}

NodePlace NodePlace::endOf(const Orvane::Field& field)
{
    const bool isList = field.cardinality() == 1;
    return {field.node()->ID(), field.name(), isList ? static_cast<int>(field.size()) : 0};
}

Orvane::Field* NodePlace::find() const
{
    const Orvane::Node* const found = Orvane::Node::findNode(parent);
    return found ? found->findField(field, Orvane::Node::EXACT_FSO) : nullptr;
}

Orvane::Node* NodePlace::node() const
{
    Orvane::Field* const found = find();
    if (auto* const single = dynamic_cast<Orvane::SFNode*>(found))
        return single->link().directNode();
    auto* const multi = dynamic_cast<Orvane::MFNode*>(found);
    return multi && index >= 0 && index < static_cast<int>(multi->size()) ? multi->elem(index).directNode()
                                                                          : nullptr;
}

bool NodePlace::link(Orvane::Node& node) const
{
    Orvane::Field* const found = find();
    if (auto* const single = dynamic_cast<Orvane::SFNode*>(found))
        return !single->link().directNode() && single->setNode(0.0, &node, Orvane::Field::EXTERNAL_CT);
    auto* const multi = dynamic_cast<Orvane::MFNode*>(found);
    return multi && multi->insertNode(0.0, index, &node, Orvane::Field::EXTERNAL_CT);
}

bool NodePlace::unlink() const
{
    Orvane::Field* const found = find();
    if (auto* const single = dynamic_cast<Orvane::SFNode*>(found))
        return single->setNode(0.0, nullptr, Orvane::Field::EXTERNAL_CT);
    auto* const multi = dynamic_cast<Orvane::MFNode*>(found);
    return multi && multi->removeNode(0.0, index, Orvane::Field::EXTERNAL_CT);
}

// ---- Coming and leaving

PlaceCommand::PlaceCommand(Steps& steps, const NodePlace& place, Orvane::Node& node, QUndoCommand* parent)
    : QUndoCommand(parent)
    , _steps(steps)
    , _place(place)
    , _node(&node)
{
}

void PlaceCommand::comeBack()
{
    Orvane::Node* const node = _node.node();
    if (!node || !_place.link(*node)) {
        setObsolete(true);
        return;
    }
    for (const auto& [named, name] : _names) {
        if (Orvane::Node* const bearer = named.node())
            Orvane::Authoring::setName(*bearer, name);
    }
    for (auto route = _routes.rbegin(); route != _routes.rend(); ++route)
        route->make();
    _names.clear();
    _routes.clear();
    emit _steps.nodePlaced(node);
}

void PlaceCommand::leave()
{
    Orvane::Node* const node = _node.node();
    // A running scene may have put something else there.
    if (!node || _place.node() != node || !_place.unlink()) {
        setObsolete(true);
        return;
    }
    detach(strandedNodes(*node));
    if (Orvane::Node* const parent = Orvane::Node::findNode(_place.parent))
        emit _steps.childTaken(parent);
}

/// Takes names and routes from nodes that are no longer part of the scene, so that it is written without
/// them, and others may bear the names, and puts them to rest.
void PlaceCommand::detach(const std::vector<Orvane::Node*>& nodes)
{
    const QSet<Orvane::Node*> inside(nodes.begin(), nodes.end());
    for (Orvane::Node* const node : nodes) {
        for (const Orvane::Route* const route : RouteRecord::routesOf(*node)) {
            if (!inside.contains(route->outSlot()->field()->node()) ||
                !inside.contains(route->inSlot()->field()->node())) {
                _routes.emplace_back(*route);
                _routes.back().end();
            }
        }
    }
    Orvane::NodeNameSpace* const names = nodes.empty() ? nullptr : nodes.front()->nameSpace();
    for (Orvane::Node* const node : nodes) {
        emit _steps.nodeLeft(node);
        if (node->name() && node->nameSpace() == names) {
            _names.emplace_back(Orvane::HeldNode(node), *node->name());
            Orvane::Authoring::setName(*node, {});
        }
    }
    for (Orvane::Node* const node : nodes)
        Orvane::Authoring::rest(*node);
}

AddNodeCommand::AddNodeCommand(Steps& steps, const NodePlace& place, Orvane::Node& node, QUndoCommand* parent)
    : PlaceCommand(steps, place, node, parent)
{
    setText(tr("new %1").arg(labelOf(&node)));
}

DeleteNodeCommand::DeleteNodeCommand(Steps& steps, const NodePlace& place, QUndoCommand* parent)
    : PlaceCommand(steps, place, *place.node(), parent)
{
    setText(tr("delete %1").arg(labelOf(place.node())));
}

MoveNodeCommand::MoveNodeCommand(Steps& steps, const NodePlace& from, const NodePlace& to)
    : _steps(steps)
    , _from(from)
    , _to(to)
{
    setText(tr("move %1").arg(labelOf(from.node())));
}

void MoveNodeCommand::move(const NodePlace& from, const NodePlace& to)
{
    const Orvane::HeldNode held(from.node());
    Orvane::Node* const node = held.node();
    if (!node || !from.unlink()) {
        setObsolete(true);
        return;
    }
    if (!to.link(*node)) {
        from.link(*node);
        setObsolete(true);
    }
    emit _steps.nodePlaced(node);
}

// ---- Names

RenameCommand::RenameCommand(Orvane::Node& node, const std::string& name)
    : _node(node.ID())
    , _before(node.name() ? *node.name() : std::string())
    , _after(name)
{
    setText(tr("rename %1").arg(labelOf(&node)));
}

void RenameCommand::give(const std::string& name)
{
    if (Orvane::Node* const node = Orvane::Node::findNode(_node))
        Orvane::Authoring::setName(*node, name);
    else
        setObsolete(true);
}
