#include "loader/AccessWord.h"

namespace Orvane {

namespace {

struct AccessRow
{
    NodePartType access;
    std::string_view x3d;
    std::string_view vrml97;
};

constexpr AccessRow rows[] = {{EXPOSEDFIELDP, "inputOutput", "exposedField"},
                              {FIELDP, "initializeOnly", "field"},
                              {EVENTINP, "inputOnly", "eventIn"},
                              {EVENTOUTP, "outputOnly", "eventOut"}};

const AccessRow& rowOf(NodePartType access)
{
    for (const AccessRow& row : rows)
        if (row.access == access)
            return row;
    return rows[0];
}

} // namespace

NodePartType accessOfWord(std::string_view word)
{
    for (const AccessRow& row : rows)
        if (word == row.x3d || word == row.vrml97)
            return row.access;
    return NO_PART;
}

std::string_view x3dAccessWord(NodePartType access)
{
    return rowOf(access).x3d;
}

std::string_view vrml97AccessWord(NodePartType access)
{
    return rowOf(access).vrml97;
}

} // namespace Orvane
