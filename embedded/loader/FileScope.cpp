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

} // namespace Orvane
