#pragma once

#include <Orvane/NodePartDesc.h>
#include <cstddef>
#include <string_view>
#include <vector>

/// The node catalogue: every node type that the runtime knows, with its fields, as constant data. It holds
/// all nodes and abstract types of X3D 4.0, the runtime's own root and window nodes, and the older names that
/// VRML97 and X3D 3 files still use. Node types are made from it when the runtime starts; nothing here is
/// ever written, so every thread may read it.
namespace Orvane::catalogue {

/// Read-only run of table rows.
template <typename Row>
class Rows
{
public:
    constexpr Rows() = default;
    template <std::size_t N>
    constexpr Rows(const Row (&rows)[N])
        : _first(rows)
        , _count(N)
    {
    }
    constexpr Rows(const Row* first, std::size_t count)
        : _first(first)
        , _count(count)
    {
    }

    constexpr const Row* begin() const { return _first; }
    constexpr const Row* end() const { return _first + _count; }
    constexpr std::size_t size() const { return _count; }
    constexpr bool empty() const { return _count == 0; }
    /// \a index must be below `size()`.
    constexpr const Row& operator[](std::size_t index) const { return _first[index]; }

private:
    const Row* _first = nullptr;
    std::size_t _count = 0;
};

/// What the values of a field are restricted to. A restriction guides editors and the choice of a field for a
/// child node; scenes whose values lie outside of it load all the same.
///
/// - `MIN_MAX_VR`: every number of the value lies from `minValue` to `maxValue`. An open bound, such as a
///   radius that must be above 0, is stored as the bound itself (for integers, the next integer). A missing
///   bound is infinite; only the missing upper bound of an integer field is 0.0.
/// - `LIST_VR`: `values` are the only texts allowed, for an `MFString` in each of its values. Fields for
///   which X3D merely suggests texts that others may extend (shader languages, font families, texture modes)
///   are unrestricted.
/// - `NODE_TYPE_VR`: `values` are the node types allowed, abstract ones included.
/// - `CDATA_VR`: the text may be source code.
struct Restriction
{
    NodePartDesc::ValueRestriction kind = NodePartDesc::NONE_VR;
    double minValue = 0.0;
    double maxValue = 0.0;
    std::string_view values; ///< divided by `|`
};

/// One field of a node type.
struct PartEntry
{
    std::string_view name;
    NodePartDataType dataType = NO_DT;
    NodePartType partType = NO_PART;
    std::string_view defaultValue; ///< in the text form of `Field::valueToString`; initial value of events
    Restriction restriction = {};
};

/// One node type. Its fields stand in alphabetical order.
struct NodeEntry
{
    std::string_view name;
    std::string_view component;
    int level = 0;                   ///< level of the component at which the type appears
    std::string_view containerField; ///< field of the parent that holds such a node when XML names none
    std::string_view bases;          ///< the direct abstract bases, divided by `|`
    Rows<PartEntry> parts = {};
    std::string_view description = {}; ///< one line for the user; empty for abstract types

    /// True for a type of which no node can be made.
    constexpr bool isAbstract() const { return containerField.empty(); }
};

/// All types: the abstract ones first, then component by component.
Rows<NodeEntry> allNodes();

/// The type of that name in constant time; null when there is none.
const NodeEntry* findNode(std::string_view name);

/// The field of that name; null when the type has none.
const PartEntry* findPart(const NodeEntry& node, std::string_view name);

/// True when \a node is of the type \a base or derives from it, directly or not.
bool isDerivedFrom(const NodeEntry& node, std::string_view base);

/// True when \a part is a node field that may hold a \a child.
bool acceptsNode(const PartEntry& part, const NodeEntry& child);

/// The values of a `LIST_VR` or the types of a `NODE_TYPE_VR`, in order; empty for other restrictions.
std::vector<std::string_view> listedValues(const Restriction& restriction);

/// What the field is for, in one line for the user; empty when its name says it.
std::string_view partDescription(const NodeEntry& node, const PartEntry& part);

/// Today's name of a node type that drafts and older standards named \a name; empty when it is no older name.
std::string_view nodeAlias(std::string_view name);

/// Today's name of the field of \a node that VRML97 or X3D 3 named \a name; empty when it is no older name.
/// Only the plain name is looked up, not its `set_` and `_changed` forms.
std::string_view fieldAlias(const NodeEntry& node, std::string_view name);

/// Name of the field \a name of \a node in VRML97; \a name itself when it is the same there.
std::string_view vrml97Name(const NodeEntry& node, std::string_view name);

/// A field whose default is another in VRML97 files.
struct Vrml97Default
{
    std::string_view node;
    std::string_view part;
    std::string_view value;
};

Rows<Vrml97Default> vrml97Defaults();

/// Default of the field in VRML97 files; the same as `PartEntry::defaultValue` but for a few fields.
std::string_view vrml97Default(const NodeEntry& node, const PartEntry& part);

} // namespace Orvane::catalogue
