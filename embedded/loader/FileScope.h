#pragma once

#include "base/NodeRef.h"
#include "base/Prototype.h"
#include "loader/LoadMessages.h"
#include <Relayne/URL.h>
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace Orvane {

class NodeNameSpace;
class NodeType;

/// One end of a route that is still to be made: a node, or the name of one that has not come yet.
struct PendingEnd
{
    NodeRef node;
    std::string nodeName;
    std::string field;
};

struct PendingRoute
{
    PendingEnd from;
    PendingEnd to;
    SourcePlace place;
    bool isKept = false; ///< an earlier load has told of what is missing
};

struct PendingImport
{
    std::string inlineName;
    std::string exportedName;
    std::string name;
    SourcePlace place;
};

/// What `EXPORT local AS ...` says.
struct PendingExport
{
    std::string local;
    SourcePlace place;
};

/// A USE of a name that no node before it bears.
struct UnknownUse
{
    std::string name;
    SourcePlace place;
};

/// One file of a load, or the body of a prototype in it: its names, and what can only be resolved when all of
/// it has been read. The load owns its files until it ends.
struct FileScope
{
    FileScope(LoadMessages fileMessages, Relayne::URL fileUrl)
        : messages(std::move(fileMessages))
        , url(std::move(fileUrl))
    {
    }

    /// The node that bears a name in this file, imported ones included; null when there is none (yet).
    Node* findNode(const std::string& name) const;
    /// The prototype that has been declared under a name here, or around a prototype's body; or null.
    std::shared_ptr<NodeType> findPrototype(const std::string& name) const;
    /// True for the body of a prototype.
    bool isBody() const { return outer; }

    LoadMessages messages;
    Relayne::URL url;
    /// Of a text that was taken from another file: where that lies. Addresses are rewritten.
    std::shared_ptr<const Relayne::URL> origin;
    std::string canonicalPath;         ///< empty for a text that is no file
    const FileScope* parent = nullptr; ///< of an inlined file: the one that inlines it
    const FileScope* outer = nullptr;  ///< of a body: where the prototype is declared
    bool isLibrary = false;            ///< read for its prototypes alone
    bool isRefused = false;            ///< has an error
    bool isBeingRead = false;          ///< more may be declared
    bool isClipping = false;           ///< any node may stand at its top
    NodeRef root;                      ///< the scene, or the inline that the content hangs below
    NodeNameSpace* names = nullptr;
    unsigned int depth = 0;   ///< nodes above the content
    double angleFactor = 1.0; ///< radians by the file's unit of angles

    std::unordered_map<std::string, std::shared_ptr<NodeType>> prototypes;
    std::shared_ptr<NodeType> firstPrototype;

    std::vector<WaitingInstance> instances; ///< of a body: those of prototypes in it

    std::vector<PendingRoute> routes;
    std::vector<PendingImport> imports;
    std::unordered_set<std::string> importNames; ///< of all of them, also of those that fail
    std::vector<UnknownUse> unknownUses;
    std::map<std::string, PendingExport> exports;      ///< by the exported name
    std::unordered_map<std::string, NodeRef> imported; ///< name in the file to the node of the inline
};

} // namespace Orvane
