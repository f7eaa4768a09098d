#pragma once

#include <Orvane/Export.h>
#include <cstdint>
#include <string>
#include <vector>

namespace Orvane {

class MFString;
class Node;

/// Name of the readable file that \a address means when it stands in a field of \a node: relative addresses
/// count from the file of the scene. Empty when there is none.
ORVANE_API std::string localFileOf(const Node& node, const std::string& address);

/// Reads a "data:" address. False when \a address is none, or holds no sound data. \a mimeType may come out
/// empty.
ORVANE_API bool readDataAddress(const std::string& address, std::string& mimeType,
                                std::vector<std::uint8_t>& data);

/// The addresses of a list as a message shows them: in quotes, with commas, long ones cut.
ORVANE_API std::string quotedAddresses(const MFString& urls);

} // namespace Orvane
