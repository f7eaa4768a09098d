#pragma once

#include <Orvane/Export.h>

namespace Orvane {

/// The module word of the runtime's own log lines.
ORVANE_API extern const char LogModuleName[];

} // namespace Orvane
