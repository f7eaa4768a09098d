#pragma once

#include <memory>
#include <vector>

/// IMPORT and EXPORT between the files of a load.
namespace Orvane {

class Node;
struct FileScope;

using FileScopes = std::vector<std::unique_ptr<FileScope>>;

/// Finds the nodes that a file imports in the files of its inlines, which are among \a files and know what
/// they import themselves, and says which are missing.
void resolveImports(FileScope& scope, const FileScopes& files);

/// Says which nodes a file exports that it has not got.
void checkExports(const FileScope& scope);

/// The content of an inline is about to go, and that of another file may come: puts down for the file around
/// it what it imports from it, and the routes that lead there.
void awaitImports(Node& inlineNode, FileScope& outer);

} // namespace Orvane
