#pragma once

#include <string>
#include <vector>

namespace Orvane {

class Node;

/// Appends a note when textures of a scene will look otherwise by the rules of the version of X3D, in tenths,
/// that it has been written in: the texture of an appearance joins the colours of its material in another
/// way.
void noteVersion(const Node& root, unsigned int written, std::vector<std::string>& notes);

} // namespace Orvane
