#pragma once

#include <Orvane/Export.h>
#include <Orvane/Types.h>

namespace Orvane {

class BaseObject;
class Node;

/// Makes an empty node object of the C++ class that stands for a node type.
using NodeClassFactory = Node* (*)();

/// Registers the C++ class of the nodes of the type called \a typeName. Pools do so when they are loaded;
/// nodes of all other types are plain `Node`s.
class ORVANE_API NodeClassRegistration
{
public:
    NodeClassRegistration(const char* typeName, NodeClassFactory factory);
};

template <class N>
Node* makeNodeClass()
{
    return new N;
}

/// Makes the root node of a type and gives it to its context. Null when \a owner is no `Context`, has such a
/// root already, or the type stands for no root. \a name may be null.
ORVANE_API Node* createRoot(BaseObject* owner, const char* typeName, const char* name, NodeCreator creator);

} // namespace Orvane
