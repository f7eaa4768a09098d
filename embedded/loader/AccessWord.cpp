#include "loader/AccessWord.h"

namespace Orvane {

NodePartType accessOfWord(std::string_view word)
{
    if (word == "inputOutput" || word == "exposedField")
        return EXPOSEDFIELDP;
    if (word == "initializeOnly" || word == "field")
        return FIELDP;
    if (word == "inputOnly" || word == "eventIn")
        return EVENTINP;
    if (word == "outputOnly" || word == "eventOut")
        return EVENTOUTP;
    return NO_PART;
}

} // namespace Orvane
