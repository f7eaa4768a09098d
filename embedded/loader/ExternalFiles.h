#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace Relayne {
class URL;
}

/// The files that fields of a scene name. All are looked for beside their scene; nothing comes from a
/// network.
namespace Orvane {

class Node;
class NodePartDesc;
struct FileScope;

/// True for a text that holds its content itself: a data address or source code.
bool holdsContent(std::string_view address);

/// True for a part whose addresses must lead to files when the node is to do its work.
bool namesFiles(const Node& node, const NodePartDesc& desc);

/// One message for each such part of the node of which no address leads to a file.
void checkFiles(const Node& node, FileScope& scope);
/// True when an address holds its content itself or leads to a readable local file, and when there is none.
bool leadsToFile(const std::vector<std::string>& addresses, const Relayne::URL& base);
std::string missingFileText(const Node& node, const NodePartDesc& desc,
                            const std::vector<std::string>& addresses);

/// Addresses in quotes, with commas, for messages.
std::string quotedList(const std::vector<std::string>& addresses);

/// The values of an `MFString` part.
std::vector<std::string> readStrings(const Node& node, unsigned int part);

} // namespace Orvane
