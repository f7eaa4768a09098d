#include "core/MeshFaults.h"

namespace Orvane {

std::string MeshFaults::text() const
{
    // What is at fault, and what the place counts.
    static const char* const Words[][2] = {
        {"left out because of an index without a point", "index"},
        {"left out because of too few points", "index"},
        {"left out because of a point that is not finite", "point"},
        {"without a value of their own because its index is outside the list", "index"},
    };
    std::string text;
    for (std::size_t kind = 0; kind < 4; ++kind) {
        const Entry& entry = _entries[kind];
        if (entry.count == 0)
            continue;
        if (!text.empty())
            text += "; ";
        text += std::to_string(entry.count) + ' ' + Words[kind][0] + " (first at " + Words[kind][1] + ' ' +
                std::to_string(entry.first) + ')';
    }
    return text;
}

} // namespace Orvane
