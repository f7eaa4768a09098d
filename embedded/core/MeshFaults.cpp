#include "core/MeshFaults.h"
#include <utility>

namespace Orvane {

std::string MeshFaults::text() const
{
    // What is at fault, and what its place counts.
    static const char* const Words[][2] = {
        {"a face or line with an index that has no point", "coordIndex"},
        {"a face or line of too few points", "coordIndex"},
        {"a face or line with a point that is not finite", "point"},
        {"a corner whose colour, normal or texture coordinate is not in the list", "coordIndex"},
    };
    std::string text = "expected sound faces and lines, found ";
    bool isFirst = true;
    for (std::size_t kind = 0; kind < 4; ++kind) {
        const Entry& entry = _entries[kind];
        if (entry.count == 0)
            continue;
        if (!std::exchange(isFirst, false))
            text += "; ";
        text += std::string(Words[kind][0]) + " (" + std::to_string(entry.count) +
                (entry.count == 1 ? " time" : " times") + ", first at " + Words[kind][1] + '[' +
                std::to_string(entry.first) + "])";
    }
    return text;
}

} // namespace Orvane
