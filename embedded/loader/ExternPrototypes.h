#pragma once

#include "loader/SourcePlace.h"
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Orvane {

class LoadSession;
class NodeType;
struct FileScope;

/// The prototypes of a load that say which file has their body. A file is asked for when the first instance
/// comes, and read once for all that it declares.
class ExternPrototypes
{
public:
    explicit ExternPrototypes(LoadSession& session);

    /// Takes down the declaration of an extern prototype. \a urls is the text of an `MFString`; addresses
    /// count from the file of \a scope.
    void add(NodeType& type, std::string_view urls, FileScope& scope, SourcePlace place);

    /// Sees to it that a type which is extern has its body: of the first address that leads to one. When none
    /// does, that is told, once. Does nothing for other types. \a depth is that of the instance.
    void resolve(NodeType& type, unsigned int depth);

private:
    enum State { WAITING, UNDER_WAY, DONE };

    struct Extern
    {
        FileScope* scope;
        SourcePlace place;
        State state = WAITING;
    };

    bool findBody(NodeType& type, const Extern& declared, unsigned int depth, std::string& reason);
    bool adopt(NodeType& type, const Extern& declared, const std::string& address, unsigned int depth,
               std::string& reason);

    LoadSession& _session;
    std::unordered_map<const NodeType*, Extern> _externs;
};

} // namespace Orvane
