#pragma once

#include <Orvane/NodePartType.h>
#include <string_view>

namespace Orvane {

/// What a word of X3D or VRML97 lets a field do ("inputOutput", "exposedField"); `NO_PART` for other words.
NodePartType accessOfWord(std::string_view word);
/// The word of X3D for an access.
std::string_view x3dAccessWord(NodePartType access);
/// The same of VRML97.
std::string_view vrml97AccessWord(NodePartType access);

} // namespace Orvane
