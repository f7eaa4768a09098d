#include "base/NodeClimb.h"
#include "base/NodeData.h"
#include <Orvane/NodePath.h>
#include <algorithm>
#include <utility>

namespace Orvane {

/// The chain of a path, from the root down. Paths that are copies of each other share it; whoever changes it
/// makes one of his own first.
struct NodePath::Data
{
    unsigned int holders = 1;
    UInt64 rootId = 0;
    std::vector<LinkHandle*> links;

    Data() = default;
    Data(const Data& other)
        : rootId(other.rootId)
        , links(other.links)
    {
        for (LinkHandle* link : links)
            ++link->holders;
    }
    Data& operator=(const Data&) = delete;
    ~Data()
    {
        for (LinkHandle* link : links)
            link->release();
    }

    static void release(Data* data)
    {
        if (data && --data->holders == 0)
            delete data;
    }

    /// The last node, or null.
    Node* end() const;
};

Node* NodePath::Data::end() const
{
    Node* node = Node::findNode(rootId);
    if (!node ||
        std::any_of(links.begin(), links.end(), [](const LinkHandle* handle) { return !handle->link; }))
        return nullptr;
    return links.empty() ? node : links.back()->link->child();
}

NodePath::NodePath(Node* node)
{
    if (!node || node->state() == DYING_NS)
        return;
    _data = new Data;
    const std::vector<GraphLink*> way = climb(*node);
    _data->rootId = way.empty() ? node->ID() : way.back()->parent()->ID();
    _data->links.reserve(way.size());
    for (auto link = way.rbegin(); link != way.rend(); ++link)
        _data->links.push_back((*link)->holdHandle());
}

NodePath::NodePath(const NodePath& other)
    : _data(other._data)
{
    if (_data)
        ++_data->holders;
}

NodePath::NodePath(const std::list<NodeLink*>& links)
{
    setNode(links);
}

NodePath& NodePath::operator=(const NodePath& other)
{
    if (other._data)
        ++other._data->holders;
    Data::release(_data);
    _data = other._data;
    return *this;
}

NodePath::~NodePath()
{
    Data::release(_data);
}

bool NodePath::operator==(const NodePath& other) const
{
    if (!_data || !other._data)
        return _data == other._data;
    return _data == other._data ||
           (_data->rootId == other._data->rootId && _data->links == other._data->links);
}

Node* NodePath::node() const
{
    return _data ? _data->end() : nullptr;
}

bool NodePath::isValid() const
{
    return node();
}

const NodePath& NodePath::addNode(Node* child)
{
    const Node* last = node();
    GraphLink* found = nullptr;
    if (last && child)
        forEachChildLink(*last, [&found, child](GraphLink& link) {
            if (!found && link.child() == child)
                found = &link;
        });
    if (!found)
        return *this;
    if (_data->holders > 1) {
        Data* const own = new Data(*_data);
        Data::release(_data);
        _data = own;
    }
    _data->links.push_back(found->holdHandle());
    return *this;
}

void NodePath::nodeLinks(std::list<NodeLink*>& links) const
{
    links.clear();
    if (!isValid())
        return;
    for (auto handle = _data->links.rbegin(); handle != _data->links.rend(); ++handle)
        links.push_back((*handle)->link);
}

void NodePath::setNode(const std::list<NodeLink*>& links)
{
    Data::release(std::exchange(_data, nullptr));
    const NodeLink* lower = nullptr;
    for (NodeLink* link : links) {
        // Every link must be one of the graph, and the next one must lead to its parent.
        const bool isLinked =
            link && link->field() && link->directNode() && (!lower || lower->parent() == link->directNode());
        if (!isLinked)
            return;
        lower = link;
    }
    if (!lower)
        return;
    _data = new Data;
    _data->rootId = lower->parent()->ID();
    for (auto link = links.rbegin(); link != links.rend(); ++link)
        _data->links.push_back(static_cast<GraphLink*>(*link)->holdHandle());
}

} // namespace Orvane
