#pragma once

#include <Orvane/SaveOptions.h>
#include <string>
#include <vector>

namespace Orvane {

class Node;

/// A scene in classic encoding. What that cannot say goes to \a notes.
std::string classicText(const Node& root, const SaveOptions& options, std::vector<std::string>& notes);
/// The same in VRML97.
std::string vrml97Text(const Node& root, const SaveOptions& options, std::vector<std::string>& notes);

} // namespace Orvane
