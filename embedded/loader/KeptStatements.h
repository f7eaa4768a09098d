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

/// An import from what is no inline in its file.
struct StrayImport
{
    std::string inlineName;
    std::string exportedName;
    std::string name;
};

/// Such a statement of the scene, kept by its root.
void keepStrayImport(Node& root, const StrayImport& statement);
std::vector<StrayImport> keptStrayImports(const Node& root);

/// Another file comes into the inline: forgets what the last one exported.
void dropExports(Node& inlineNode);
/// As `keptImports`, which the inline then keeps no more.
NamePairs takeImports(Node& inlineNode);

/// A route in words. Of its ends at least one is imported from an inline that holds nothing now, so that it
/// waits for that to change.
struct KeptRoute
{
    std::string fromNode;
    std::string fromField;
    std::string toNode;
    std::string toField;
};

/// A route of the scene, or of the file of an inline, kept by its root.
void keepRoute(Node& root, const KeptRoute& route);
std::vector<KeptRoute> keptRoutes(const Node& root);
/// As `keptRoutes`, which the root then keeps no more.
std::vector<KeptRoute> takeRoutes(Node& root);

/// A node of unknown type that the text calls an instance of a prototype.
void markInstance(Node& node);
bool isMarkedInstance(const Node& node);

/// The part of an `Inline` that holds what its file brought; made when it is missing.
MFNode& inlineContent(Node& inlineNode);
/// The same; null when nothing has been read into the inline yet.
const MFNode* findInlineContent(const Node& inlineNode);

} // namespace Orvane
