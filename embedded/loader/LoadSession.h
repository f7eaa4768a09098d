#pragma once

#include "base/NodeRef.h"
#include "base/SceneLoader.h"
#include "loader/ChildPlacement.h"
#include "loader/ExternPrototypes.h"
#include "loader/FileScope.h"
#include "loader/LoadWatch.h"
#include "loader/SourceText.h"
#include <Relayne/URL.h>
#include <deque>
#include <memory>
#include <string>
#include <unordered_set>
#include <vector>

namespace Orvane {

struct LocalFile;

/// One load: reads a scene, then file by file what it inlines, then makes the routes. Nothing of it outlives
/// the load but the nodes.
class LoadSession
{
public:
    /// Nodes may nest so deep, over all files.
    static constexpr unsigned int maxDepth = 2000;
    /// So many files one scene may inline, so that files that inline each other in number come to an end.
    static constexpr std::size_t maxFiles = 10000;

    /// So many nodes the instances of prototypes may bring, beside those that stand in the text: instances in
    /// instances in instances are more than any text can be long. Of what their models get, `maxModelNodes`.
    static constexpr std::size_t maxInstanceNodes = 8000000;

    LoadSession(Context& context, LoadReport& report);
    ~LoadSession();

    /// Reads a scene as `SceneReader` tells.
    bool readScene(const Relayne::URL& url, const std::string* text, LoadedScene& scene);
    /// Reads what an inline names now into it as `InlineReader` tells.
    bool reloadInline(Node& node);

    /// Makes the nodes of a text as `NodeReader` tells.
    bool readNodes(Node& scene, const std::string& text, const std::string& origin,
                   std::vector<NodeRef>& nodes);

    // For the builder.

    /// False when the load is to end, as whoever watches it wants. Asked for each node that begins at \a
    /// place of the text that is being read.
    bool goesOn(SourcePlace place)
    {
        return _progress.step() ? _progress.tell(_source ? _source->offset(place) : 0, _report.nodes)
                                : _progress.goesOn();
    }

    Context& context() const { return _context; }
    LoadReport& report() const { return _report; }
    ChildPlacement& placement() { return _placement; }
    ExternPrototypes& externs() { return _externs; }
    /// A scope for the interface and the body of a prototype that \a outer declares, with names of its own.
    FileScope& openBody(FileScope& outer, const std::string& name, Node& root);
    /// The body has been read: makes its routes, and tells of what is missing.
    void closeBody(FileScope& body);
    /// The file with its prototypes, read when it has not been; null when it cannot be. A file that is still
    /// being read answers with the prototypes that it has declared so far.
    FileScope* fileOfPrototypes(const LocalFile& file, unsigned int depth);
    /// Gives an instance its body, unless that would be too large; one inside of a prototype waits for it.
    /// \a given are the parts that it sets.
    void completeInstance(Node& instance, const std::vector<unsigned int>& given, FileScope& scope,
                          unsigned int depth);
    /// True when the models may get what a copy of the type's model brings, which is then taken down.
    bool takeModel(const NodeType& type);
    /// Takes down that a node of a file inlines another, to be read when the file has been.
    void addInline(Node& node, const FileScope& scope, unsigned int depth);
    /// A root of the scene beside the `Scene`: that of the type when there is one already, else a new one.
    Node& contextRoot(NodeType& type);
    bool hasContextRoot(const NodeType& type) const;
    /// True for a prototype of the scene into which the nodes of a text will go.
    bool isOfScene(const NodeType& prototype) const { return _sceneTypes.count(&prototype) > 0; }

private:
    struct PendingInline
    {
        NodeRef node;
        const FileScope* scope; ///< of its instance, when it stands in the body of one
        unsigned int depth;
    };

    FileScope& openScope(std::string name, const Relayne::URL& url);
    bool parse(SourceText& source, FileScope& scope);
    void readInlines();
    bool readInline(const PendingInline& pending);
    bool readInlineFile(const PendingInline& pending, const Relayne::URL& url, const std::string& path);
    void checkHandedFile(const Field& field, const FileScope& scope);
    LoadMessages messagesOf(const Node& node, const FileScope& scope);
    void tellUnknownUses(const FileScope& scope);
    void finish();
    void tellLeftOut();

    Context& _context;
    LoadReport& _report;
    LoadWatch _progress;
    const SourceText* _source = nullptr; ///< that is being read
    std::size_t _leftOut = 0;
    ChildPlacement _placement;
    ExternPrototypes _externs;
    std::size_t _files = 0;
    std::size_t _instanceNodes = 0;
    std::size_t _modelNodes = 0;
    std::vector<NodeRef> _roots;
    std::vector<std::unique_ptr<FileScope>> _scopes;
    std::deque<PendingInline> _inlines;
    std::unordered_set<const NodeType*> _sceneTypes;
    std::unordered_set<std::string> _toldFiles; ///< messages about files that interfaces hand on
};

} // namespace Orvane
