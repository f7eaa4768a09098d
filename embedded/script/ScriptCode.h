#pragma once

#include <string>

namespace Orvane {

class Node;

/// The code of a script.
struct ScriptCode
{
    std::string text;
    std::string file; ///< from which it was read; empty when the url itself holds it
    bool isFound = false;
    std::string fault; ///< what is wrong with a url of which nothing can be used; empty for none
};

/// The code to which the first usable value of the node's `url` leads: a text that begins with "ecmascript:",
/// "javascript:" or "vrmlscript:", a "data:" address of such code, or the address of a file. A text of
/// several lines without such a beginning is taken for code too.
ScriptCode findScriptCode(const Node& script);

} // namespace Orvane
