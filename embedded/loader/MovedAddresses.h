#pragma once

#include <Relayne/URL.h>
#include <string>
#include <vector>

namespace Orvane {

class MFString;
class Node;
class NodePartDesc;

/// True for a field that may name files. The fields of a prototype say nothing of that, so that each list of
/// strings may.
bool mayNameFiles(const Node& node, const NodePartDesc& desc);

/// What leads from a file at \a to where \a address leads from one at \a from. An address that is absolute,
/// holds the content itself or leads to no file stays as it is.
std::string movedAddress(const std::string& address, const Relayne::URL& from, const Relayne::URL& to);
/// The same for each value of a field.
void moveAddresses(MFString& field, const Relayne::URL& from, const Relayne::URL& to);

/// Appends a note for each relative address that leads to a file from where the scene was read, but not from
/// the folder of \a path, into which it has been written.
void noteMovedAddresses(const Node& root, const std::string& path, std::vector<std::string>& notes);

} // namespace Orvane
