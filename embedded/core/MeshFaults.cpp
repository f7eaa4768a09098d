#include "core/MeshFaults.h"
#include <utility>

namespace Orvane {

std::string MeshFaults::text() const
{
    static const char* const Words[] = {
        "a face or line with an index that has no point",
        "a face or line of too few points",
        "a face or line with a point that is not finite",
        "a corner whose colour, normal or texture coordinate is not in the list",
    };
    std::string text = "expected sound faces and lines, found ";
    bool isFirst = true;
    for (std::size_t kind = 0; kind < 4; ++kind) {
        const Entry& entry = _entries[kind];
        if (entry.count == 0)
            continue;
        if (!std::exchange(isFirst, false))
            text += "; ";
        text += std::string(Words[kind]) + " (" + std::to_string(entry.count) +
                (entry.count == 1 ? " time" : " times") + ", first at " +
                (kind == NOT_FINITE ? "point" : _listName) + '[' + std::to_string(entry.first) + "])";
    }
    return text;
}

} // namespace Orvane
