#pragma once

#include <Orvane/Export.h>
#include <Relayne/URL.h>
#include <string>

namespace Orvane {

class Context;
class Node;

/// The names of the nodes of one scene, prototype instance or inline. May nest.
class ORVANE_API NodeNameSpace
{
public:
    NodeNameSpace(const NodeNameSpace&) = delete;
    NodeNameSpace& operator=(const NodeNameSpace&) = delete;
    virtual ~NodeNameSpace();

    /// The node that bears \a name in \a nameSpace; null when unknown or \a nameSpace is null.
    static Node* findNode(NodeNameSpace* nameSpace, const std::string& name);

    /// The name space called \a name below \a parent (null: below \a context). Without a context the first
    /// living one, in order of creation, that has such a name space answers. With \a recursive nested name
    /// spaces are searched too.
    static NodeNameSpace* findNameSpace(NodeNameSpace* parent, const std::string& name, Context* context,
                                        bool recursive);

    /// Root of the name space; the `Scene` for the name space "scene".
    Node* rootNode() const { return _rootNode; }
    /// Address from which relative addresses of the scene count.
    const Relayne::URL& baseURL() const { return _baseURL; }

    struct Data;
    /// The runtime's own data.
    Data* data() const { return _data; }

protected:
    NodeNameSpace();

    Node* _rootNode = nullptr;
    Relayne::URL _baseURL;
    Data* _data = nullptr;
};

} // namespace Orvane
