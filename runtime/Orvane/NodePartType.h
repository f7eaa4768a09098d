#pragma once

namespace Orvane {

/// Access of a field: a bit mask of field, event in and event out, of which `EXPOSEDFIELDP` is the sum.
enum NodePartType : int {
    NO_PART = 0,      ///< no part
    FIELDP = 1,       ///< initializeOnly
    EVENTINP = 2,     ///< inputOnly
    EVENTOUTP = 4,    ///< outputOnly
    EXPOSEDFIELDP = 7 ///< inputOutput
};

} // namespace Orvane
