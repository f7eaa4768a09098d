#include "QorTypeFilter.h"

#include "QorTools.h"
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>

namespace Orvane::Qt4 {

bool isTypeShown(const Orvane::Node& node, const QStringList& show, const QStringList& hide)
{
    if (show.isEmpty() && hide.isEmpty())
        return true;
    const QString type = fromRuntime(node.type()->name);
    return (!hide.isEmpty() && !hide.contains(type)) || show.contains(type);
}

} // namespace Orvane::Qt4
