#include "nodes/Catalogue.h"
#include "nodes/Restrictions.h"
#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

namespace Orvane::catalogue {

namespace {

struct NodeAlias
{
    std::string_view olderName;
    std::string_view name;
};

struct FieldAlias
{
    std::string_view node;
    std::string_view olderName;
    std::string_view name;
};

struct PartDescription
{
    std::string_view part;
    std::string_view node; ///< empty for every node with such a field
    std::string_view text;
};

#include "tables/Abstract.inc"
#include "tables/Aliases.inc"
#include "tables/CADGeometry.inc"
#include "tables/Core.inc"
#include "tables/Dis.inc"
#include "tables/Engine.inc"
#include "tables/Environment.inc"
#include "tables/EventUtilities.inc"
#include "tables/Followers.inc"
#include "tables/Geometry.inc"
#include "tables/Geospatial.inc"
#include "tables/Grouping.inc"
#include "tables/HAnim.inc"
#include "tables/Interpolation.inc"
#include "tables/Nurbs.inc"
#include "tables/PartDescriptions.inc"
#include "tables/ParticleSystems.inc"
#include "tables/Rendering.inc"
#include "tables/RigidBodyPhysics.inc"
#include "tables/Sensors.inc"
#include "tables/Shaders.inc"
#include "tables/Shape.inc"
#include "tables/Sound.inc"
#include "tables/Texturing.inc"
#include "tables/VolumeRendering.inc"

template <std::size_t... N>
constexpr auto joined(const NodeEntry (&... tables)[N])
{
    std::array<NodeEntry, (N + ...)> result{};
    std::size_t next = 0;
    const auto append = [&result, &next](Rows<NodeEntry> rows) {
        for (const NodeEntry& row : rows)
            result[next++] = row;
    };
    (append(tables), ...);
    return result;
}

constexpr auto nodeTable =
    joined(abstractNodes, coreNodes, groupingNodes, geometryNodes, renderingNodes, shapeNodes, shadersNodes,
           texturingNodes, environmentNodes, sensorsNodes, eventUtilitiesNodes, interpolationNodes,
           followersNodes, soundNodes, cadNodes, geospatialNodes, hAnimNodes, nurbsNodes,
           particleSystemsNodes, rigidBodyPhysicsNodes, volumeRenderingNodes, disNodes, engineNodes);

constexpr std::size_t slotCount = 1024;
static_assert(nodeTable.size() * 2 < slotCount, "the name index must stay at most half full");

constexpr std::size_t slotOf(std::string_view name)
{
    std::uint32_t hash = 2166136261u;
    for (const char c : name)
        hash = (hash ^ static_cast<unsigned char>(c)) * 16777619u;
    return (hash ^ (hash >> 16)) % slotCount;
}

/// Open hash index made by the compiler: table position plus one, 0 in free slots.
constexpr auto nameIndex = [] {
    std::array<std::uint16_t, slotCount> slots{};
    for (std::size_t i = 0; i < nodeTable.size(); ++i) {
        std::size_t slot = slotOf(nodeTable[i].name);
        while (slots[slot] != 0)
            slot = (slot + 1) % slotCount;
        slots[slot] = static_cast<std::uint16_t>(i + 1);
    }
    return slots;
}();

/// Takes the first of the texts that `|` divides off \a list; the rest stays in it.
std::string_view takeFirst(std::string_view& list)
{
    const std::size_t bar = list.find('|');
    const std::string_view first = list.substr(0, bar);
    list.remove_prefix(bar == std::string_view::npos ? list.size() : bar + 1);
    return first;
}

constexpr const NodeEntry* find(std::string_view name)
{
    for (std::size_t slot = slotOf(name); nameIndex[slot] != 0; slot = (slot + 1) % slotCount) {
        const NodeEntry& node = nodeTable[nameIndex[slot] - 1u];
        if (node.name == name)
            return &node;
    }
    return nullptr;
}

constexpr const PartEntry* find(const NodeEntry& node, std::string_view name)
{
    for (const PartEntry& part : node.parts)
        if (part.name == name)
            return &part;
    return nullptr;
}

constexpr bool comesBefore(const PartDescription& row, std::string_view part, std::string_view node)
{
    return row.part != part ? row.part < part : row.node < node;
}

constexpr bool areSortedAndNameFields(Rows<PartDescription> rows)
{
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (i > 0 && !comesBefore(rows[i - 1], rows[i].part, rows[i].node))
            return false;
        const NodeEntry* node = find(rows[i].node);
        if (!rows[i].node.empty() && !(node && find(*node, rows[i].part)))
            return false;
    }
    return true;
}

constexpr bool leadToFields(Rows<FieldAlias> aliases)
{
    for (const FieldAlias& alias : aliases) {
        const NodeEntry* node = find(alias.node);
        if (!node || !find(*node, alias.name) || find(*node, alias.olderName))
            return false;
    }
    return true;
}

constexpr bool leadToNodes(Rows<NodeAlias> aliases)
{
    for (const NodeAlias& alias : aliases)
        if (!find(alias.name) || find(alias.olderName))
            return false;
    return true;
}

constexpr bool nameFields(Rows<Vrml97Default> defaults)
{
    for (const Vrml97Default& row : defaults) {
        const NodeEntry* node = find(row.node);
        if (!node || !find(*node, row.part))
            return false;
    }
    return true;
}

static_assert(leadToNodes(nodeAliases) && leadToFields(vrml97Names) && leadToFields(x3dNames),
              "an older name must lead to a name that exists, and be none itself");
static_assert(areSortedAndNameFields(partDescriptions), "descriptions are found by bisection");
static_assert(nameFields(changedDefaults), "a VRML97 default must belong to a field that exists");

} // namespace

Rows<NodeEntry> allNodes()
{
    return {nodeTable.data(), nodeTable.size()};
}

const NodeEntry* findNode(std::string_view name)
{
    return find(name);
}

const PartEntry* findPart(const NodeEntry& node, std::string_view name)
{
    return find(node, name);
}

bool isDerivedFrom(const NodeEntry& node, std::string_view base)
{
    if (node.name == base)
        return true;
    for (std::string_view rest = node.bases; !rest.empty();) {
        const NodeEntry* direct = findNode(takeFirst(rest));
        if (direct && isDerivedFrom(*direct, base))
            return true;
    }
    return false;
}

bool acceptsNode(const PartEntry& part, const NodeEntry& child)
{
    if (part.restriction.kind != NodePartDesc::NODE_TYPE_VR)
        return false;
    for (std::string_view rest = part.restriction.values; !rest.empty();)
        if (isDerivedFrom(child, takeFirst(rest)))
            return true;
    return false;
}

std::vector<std::string_view> listedValues(const Restriction& restriction)
{
    std::vector<std::string_view> values;
    for (std::string_view rest = restriction.values; !rest.empty();)
        values.push_back(takeFirst(rest));
    return values;
}

std::string_view partDescription(const NodeEntry& node, const PartEntry& part)
{
    for (const std::string_view of : {node.name, std::string_view()}) {
        const auto* row = std::lower_bound(std::begin(partDescriptions), std::end(partDescriptions), of,
                                           [&part](const PartDescription& row, std::string_view of) {
                                               return comesBefore(row, part.name, of);
                                           });
        if (row != std::end(partDescriptions) && row->part == part.name && row->node == of)
            return row->text;
    }
    return {};
}

std::string_view nodeAlias(std::string_view name)
{
    for (const NodeAlias& alias : nodeAliases)
        if (alias.olderName == name)
            return alias.name;
    return {};
}

std::string_view fieldAlias(const NodeEntry& node, std::string_view name)
{
    for (const Rows<FieldAlias> aliases : {Rows(vrml97Names), Rows(x3dNames)})
        for (const FieldAlias& alias : aliases)
            if (alias.olderName == name && alias.node == node.name)
                return alias.name;
    return {};
}

std::string_view vrml97Name(const NodeEntry& node, std::string_view name)
{
    for (const FieldAlias& alias : vrml97Names)
        if (alias.name == name && alias.node == node.name)
            return alias.olderName;
    return name;
}

Rows<Vrml97Default> vrml97Defaults()
{
    return changedDefaults;
}

std::string_view vrml97Default(const NodeEntry& node, const PartEntry& part)
{
    for (const Vrml97Default& row : changedDefaults)
        if (row.part == part.name && row.node == node.name)
            return row.value;
    return part.defaultValue;
}

} // namespace Orvane::catalogue
