#pragma once

#include "loader/SceneSink.h"
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// What a file says beside its nodes and routes. It is kept in private parts of the node that the statements
/// belong to, so that it goes with the node and a saver finds it again.
namespace Orvane {

class MFNode;
class Node;

/// A `HeadStatement` with texts of its own.
struct KeptHead
{
    HeadStatement::Kind kind = HeadStatement::META;
    std::string name;
    std::string content;
    std::string factor; ///< of a unit
};

void keepHead(Node& scene, const HeadStatement& statement);
std::vector<KeptHead> keptHead(const Node& scene);

using NamePairs = std::vector<std::pair<std::string, std::string>>;

/// `EXPORT first AS second`, kept by the scene, or by the inline whose file says so.
void keepExport(Node& root, std::string_view localName, std::string_view exportedName);
NamePairs keptExports(const Node& root);

/// `IMPORT inline.first AS second`, kept by the inline.
void keepImport(Node& inlineNode, std::string_view exportedName, std::string_view name);
NamePairs keptImports(const Node& inlineNode);

/// A node of unknown type that the text calls an instance of a prototype.
void markInstance(Node& node);
bool isMarkedInstance(const Node& node);

/// The part of an `Inline` that holds what its file brought; made when it is missing.
MFNode& inlineContent(Node& inlineNode);
/// The same; null when nothing has been read into the inline yet.
const MFNode* findInlineContent(const Node& inlineNode);

} // namespace Orvane
