#pragma once

#include <string>

namespace Orvane {

/// Where something stands in a scene file: line and column from 1, columns in bytes; 0 when not known.
struct SourcePlace
{
    unsigned int line = 0;
    unsigned int column = 0;
};

/// What makes a file unreadable: what was expected and what was found, and where.
struct SourceFault
{
    SourcePlace place;
    std::string text;
};

} // namespace Orvane
