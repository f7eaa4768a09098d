#pragma once

#include <Orvane/Export.h>
#include <string>

namespace Orvane {

class Field;
class Node;

/// The text of a shader's stage, as its address list leads to it.
struct ShaderCode
{
    std::string text;
    std::string file; ///< from which it was read; empty when the field itself holds it
    bool isFound = false;
    std::string fault; ///< why there is none; empty when nothing is asked for
};

/// The list of addresses of a node: its `url`, or `shaderUrl` as older scenes call it where `url` is missing
/// or empty. Null when the node has no such list.
ORVANE_API Field* shaderCodeField(const Node& node);

/// The text to which the first usable value of the list leads: an address of a local file, a "data:" address,
/// or the text itself. Neither a file nor a text of more than 1 MB is taken.
ORVANE_API ShaderCode findShaderCode(Field& addresses);

} // namespace Orvane
