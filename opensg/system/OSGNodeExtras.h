#pragma once

#include <OpenSG/OSGNode.h>

#include "OSGChildTree.h"

#include <memory>
#include <vector>

namespace osg {

/// What few nodes have.
struct Node::Extras
{
    std::vector<VisitSubTree*> referrers; ///< that show the node in other places
    std::unique_ptr<ChildTree> childTree; ///< null until a ray has asked for it
};

} // namespace osg
