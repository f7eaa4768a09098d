#pragma once

#include "base/NodeRef.h"
#include "base/SceneLoader.h"
#include "loader/ChildPlacement.h"
#include "loader/FileScope.h"
#include <Relayne/URL.h>
#include <deque>
#include <memory>
#include <string>
#include <vector>

namespace Orvane {

class SourceText;

/// One load: reads a scene, then file by file what it inlines, then makes the routes. Nothing of it outlives
/// the load but the nodes.
class LoadSession
{
public:
    /// Nodes may nest so deep, over all files.
    static constexpr unsigned int maxDepth = 2000;
    /// So many files one scene may inline, so that files that inline each other in number come to an end.
    static constexpr std::size_t maxFiles = 10000;

    LoadSession(Context& context, LoadReport& report);
    ~LoadSession();

    /// Reads a scene as `SceneReader` tells.
    bool readScene(const Relayne::URL& url, const std::string* text, LoadedScene& scene);
    /// Reads what an inline names now into it as `InlineReader` tells.
    bool reloadInline(Node& node);

    // For the builder.

    Context& context() const { return _context; }
    LoadReport& report() const { return _report; }
    ChildPlacement& placement() { return _placement; }
    /// Takes down that a node of a file inlines another, to be read when the file has been.
    void addInline(Node& node, const FileScope& scope, unsigned int depth);
    /// A root of the scene beside the `Scene`: that of the type when there is one already, else a new one.
    Node& contextRoot(NodeType& type);
    bool hasContextRoot(const NodeType& type) const;

private:
    struct PendingInline
    {
        NodeRef node;
        const FileScope* scope;
        unsigned int depth;
    };

    FileScope& openScope(std::string name, const Relayne::URL& url);
    bool parse(SourceText& source, FileScope& scope);
    void readInlines();
    bool readInline(const PendingInline& pending);
    bool readInlineFile(const PendingInline& pending, const Relayne::URL& url, const std::string& path);
    void finish();
    void tellLeftOut();
    void resolveImports(FileScope& scope);

    Context& _context;
    LoadReport& _report;
    std::size_t _leftOut = 0;
    ChildPlacement _placement;
    std::vector<NodeRef> _roots;
    std::vector<std::unique_ptr<FileScope>> _scopes;
    std::deque<PendingInline> _inlines;
};

} // namespace Orvane
