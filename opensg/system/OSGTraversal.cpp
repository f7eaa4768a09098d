#include "OSGTraversal.h"

#include <OpenSG/OSGLog.h>

namespace osg {

namespace {

// Each level of mutual references may multiply what is shown.
const UInt32 mostReferredVisits = 1U << 22;

} // namespace

bool Traversal::isOpen(const Node& tree) const
{
    for (const Level& level : _path) {
        if (level.node == &tree)
            return true;
    }
    return false;
}

bool Traversal::hasVisitsLeft()
{
    if (_referredVisits++ < mostReferredVisits)
        return true;
    if (!_told)
        SWARNING << "Traversal: more than " << mostReferredVisits
                 << " nodes in trees that are shown in several places; the rest is left out" << std::endl;
    _told = true;
    return false;
}

} // namespace osg
