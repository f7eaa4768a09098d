#pragma once

#include <Orvane/SaveOptions.h>
#include <string>
#include <vector>

namespace Orvane {

class Node;

/// A scene in XML encoding. What that cannot say goes to \a notes.
std::string xmlText(const Node& root, const SaveOptions& options, std::vector<std::string>& notes);

} // namespace Orvane
