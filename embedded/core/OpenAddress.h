#pragma once

#include <Orvane/Export.h>

namespace Relayne {
class URL;
}

namespace Orvane {

class Context;
class MFString;
class NodeNameSpace;

/// Opens the first of the addresses that leads to something: a scene file takes the place of the world,
/// "#name" binds a viewpoint, of that file or, alone, among \a names. Relative addresses count from \a base.
/// False when none leads anywhere.
ORVANE_API bool openAddress(Context& context, const MFString& addresses, const Relayne::URL& base,
                            NodeNameSpace* names, double time);

} // namespace Orvane
