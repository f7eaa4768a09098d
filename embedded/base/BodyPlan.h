#pragma once

#include "base/NodeRef.h"
#include "base/Prototype.h"
#include <Orvane/Route.h>
#include <string>
#include <unordered_map>
#include <vector>

namespace Orvane {

class Context;
class Field;
class Node;
class NodeNameSpace;
class NodeType;

/// The body of a prototype's model as a list of steps, by which it is copied without any search. Nodes have
/// numbers: 0 is the instance itself, then come those of the body, then the default nodes of the interface,
/// part by part, as an instance that brings its own has no use for them.
class BodyPlan
{
public:
    explicit BodyPlan(Node& model);

    /// True while all nodes are there that the plan tells of.
    bool isUsable() const;

    /// Makes the body of \a instance. A part of the model is the part `partOf[part]` of the instance, -1 when
    /// it has none. \a given, \a outer and \a made are as `completeInstance` has them.
    void copyTo(Node& instance, const std::vector<int>& partOf, const std::vector<unsigned int>& given,
                NodeNameSpace* outer, std::vector<Node*>& made) const;

    ProtoSize size() const { return _size; }

private:
    struct PlannedLink
    {
        unsigned int part;
        unsigned int child;
    };
    struct PlannedNode
    {
        NodeRef source;
        unsigned int names = 0;
        std::vector<const Field*> values; ///< of the source, other than the default
        std::vector<PlannedLink> links;
    };
    struct PlannedNames
    {
        const NodeNameSpace* source;
        unsigned int parent;
        unsigned int root;
    };
    struct PlannedRoute
    {
        unsigned int from;
        unsigned int fromPart;
        unsigned int to;
        unsigned int toPart;
        Route::Type type;
        bool leadsInto;
    };
    /// The default nodes of a part of the interface.
    struct PlannedDefault
    {
        unsigned int part;
        unsigned int first; ///< of the nodes that only this part needs
        unsigned int last;
        std::vector<unsigned int> nodes; ///< those that the part links
    };

    /// A copy on its way.
    struct Copy
    {
        Context& context;
        std::vector<NodeRef> nodes;
        std::vector<NodeNameSpace*> names;
    };

    void markFed(Node& model);
    void planBranch(Node& top, unsigned int depth);
    unsigned int number(Node& node, unsigned int depth);
    unsigned int namesOf(const NodeNameSpace* names);
    void planValues(PlannedNode& planned);
    void planLinks();
    void planRoutes();

    NodeNameSpace* copyNames(const Copy& copy, const PlannedNames& planned, NodeNameSpace* parent,
                             Node& root) const;
    void copyNodes(Copy& copy, unsigned int first, unsigned int last, std::vector<Node*>& made) const;
    void copyValues(const PlannedNode& planned, Node& node) const;
    void copyLinks(Copy& copy, unsigned int first, unsigned int last) const;
    void copyRoutes(Copy& copy, const std::vector<int>& partOf) const;

    std::vector<PlannedNode> _nodes;
    unsigned int _bodyEnd = 0;
    std::vector<PlannedLink> _body; ///< what the body part links
    std::vector<PlannedDefault> _defaults;
    std::vector<PlannedNames> _names;
    std::vector<PlannedRoute> _routes;
    ProtoSize _size;

    // Only while the plan is made.
    std::unordered_map<const Node*, unsigned int> _numbers;
    std::unordered_map<const NodeNameSpace*, unsigned int> _nameNumbers;
    std::unordered_map<const Field*, bool> _fed; ///< node fields that are filled through the interface
};

} // namespace Orvane
