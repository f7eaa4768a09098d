#include "loader/FileScope.h"

#include <Orvane/NodeNameSpace.h>

namespace Orvane {

Node* FileScope::findNode(const std::string& name) const
{
    if (Node* node = NodeNameSpace::findNode(names, name))
        return node;
    const auto found = imported.find(name);
    return found == imported.end() ? nullptr : found->second.get();
}

std::shared_ptr<NodeType> FileScope::findPrototype(const std::string& name) const
{
    for (const FileScope* scope = this; scope; scope = scope->outer) {
        const auto found = scope->prototypes.find(name);
        if (found != scope->prototypes.end())
            return found->second;
    }
    return nullptr;
}

} // namespace Orvane
