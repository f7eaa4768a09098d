#pragma once

#include <string>
#include <vector>

namespace Orvane {

class Node;

/// Appends a note for each relative address that leads to a file from where the scene was read, but not from
/// the folder of \a path, into which it has been written.
void noteMovedAddresses(const Node& root, const std::string& path, std::vector<std::string>& notes);

} // namespace Orvane
