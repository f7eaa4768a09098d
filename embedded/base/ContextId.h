#pragma once

#include <Orvane/Export.h>
#include <Orvane/Types.h>

namespace Orvane {

class Context;

/// Process-wide number of a context, never used again, never 0: for who remembers a context without keeping
/// it alive.
ORVANE_API UInt64 contextId(const Context& context);

/// The living context of that number; null when there is none.
ORVANE_API Context* findContext(UInt64 id);

} // namespace Orvane
