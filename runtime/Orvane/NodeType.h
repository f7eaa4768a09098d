#pragma once

#include <Orvane/Export.h>
#include <string>
#include <vector>

namespace Orvane {

/// Class description of nodes. Types live until the process ends; the types of prototypes as long as their
/// prototype.
class ORVANE_API NodeType
{
public:
    /// A type that stands by its name for an entry of the runtime's tables.
    explicit NodeType(const char* name);
    NodeType(const NodeType&) = delete;
    NodeType& operator=(const NodeType&) = delete;
    virtual ~NodeType();

    /// True for a type declared by a prototype.
    bool isProto() const { return _isProto; }
    /// True for a type whose node stands for the root of a context.
    bool isContextRoot() const { return _isContextRoot; }

    /// Fills the list of all known node types in order of name and gives their number. With \a instantiable
    /// not 0 the list holds only types of which nodes can be made. Types that only a scene knows, those of
    /// its prototypes, are not in it.
    static unsigned int getTypeVec(std::vector<NodeType*>& types, int instantiable);

    /// Name, and one line for the user, which may be empty.
    std::string name;
    std::string description;

    struct Data;
    /// The runtime's own data.
    Data* data() const { return _data; }

protected:
    bool _isProto = false;
    bool _isContextRoot = false;
    Data* _data = nullptr;
};

} // namespace Orvane
