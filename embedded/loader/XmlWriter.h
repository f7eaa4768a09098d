#pragma once

#include <Orvane/SaveOptions.h>
#include <string>

namespace Orvane {

class Node;

/// Writes a scene in XML encoding as `SceneWriter` tells, packed when the suffix is x3dz. A file that exists
/// is replaced only when all has been written.
bool writeXml(const Node& root, const std::string& path, const SaveOptions& options, std::string& error);

/// The text of such a file.
std::string xmlText(const Node& root, const SaveOptions& options);

} // namespace Orvane
