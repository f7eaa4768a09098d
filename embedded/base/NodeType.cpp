#include "base/Graph.h"
#include "base/PrototypeData.h"
#include <algorithm>
#include <charconv>
#include <map>
#include <numeric>

namespace Orvane {

namespace {

/// All types by name. Never destroyed, so that nodes may die in the last destructors of the process.
struct Registry
{
    std::map<std::string, NodeType*, std::less<>> types;
    std::map<std::string, NodeType*, std::less<>> unknownTypes;
    std::map<std::string, TypeBehaviour, std::less<>> behaviours;
    bool hasBehaviours = false;
};

Registry& registry()
{
    static Registry* const the = new Registry;
    return *the;
}

std::string limitText(double limit)
{
    char buffer[32];
    return std::string(buffer, std::to_chars(buffer, buffer + sizeof buffer, limit).ptr);
}

std::unique_ptr<NodePartDesc> describe(const catalogue::NodeEntry& node, const catalogue::PartEntry& part)
{
    auto desc = std::make_unique<NodePartDesc>();
    desc->name = part.name;
    desc->dataType = part.dataType;
    desc->partType = part.partType;
    desc->defaultValue = part.defaultValue;
    desc->description = catalogue::partDescription(node, part);
    desc->valueRestriction = part.restriction.kind;
    desc->minValue = part.restriction.minValue;
    desc->maxValue = part.restriction.maxValue;
    desc->valueType = part.restriction.kind == NodePartDesc::MIN_MAX_VR
                          ? limitText(desc->minValue) + " " + limitText(desc->maxValue)
                          : std::string(part.restriction.values);
    return desc;
}

void collectBases(const catalogue::NodeEntry& entry, std::vector<std::string_view>& bases)
{
    for (std::string_view rest = entry.bases; !rest.empty();) {
        const std::string_view base = rest.substr(0, rest.find('|'));
        rest.remove_prefix(std::min(base.size() + 1, rest.size()));
        if (std::find(bases.begin(), bases.end(), base) != bases.end())
            continue;
        bases.push_back(base);
        if (const catalogue::NodeEntry* above = catalogue::findNode(base))
            collectBases(*above, bases);
    }
}

int exactPartIndex(const NodeType::Data& data, std::string_view name)
{
    const auto found = std::lower_bound(
        data.byName.begin(), data.byName.end(), name,
        [&data](unsigned int part, std::string_view wanted) { return data.parts[part]->name < wanted; });
    return found != data.byName.end() && data.parts[*found]->name == name ? static_cast<int>(*found) : -1;
}

} // namespace

NodeType::NodeType(const char* typeName)
    : name(typeName)
    , _data(new Data)
{
    _data->behaviour = &behaviourOf(name);
    if (name.empty())
        return;
    _data->entry = catalogue::findNode(name);
    if (!_data->entry)
        return;
    description = _data->entry->description;
    _isContextRoot = name == "ContextSetup" || name == "Engine" || name == "Scene";
    registry().types.insert_or_assign(name, this);
}

NodeType::~NodeType()
{
    const auto found = registry().types.find(name);
    if (found != registry().types.end() && found->second == this)
        registry().types.erase(found);
    delete _data;
}

unsigned int NodeType::getTypeVec(std::vector<NodeType*>& types, int instantiable)
{
    types.clear();
    for (const catalogue::NodeEntry& entry : catalogue::allNodes())
        findType(entry.name);
    for (const auto& [name, type] : registry().types)
        if (instantiable == 0 || !type->_data->entry->isAbstract())
            types.push_back(type);
    return static_cast<unsigned int>(types.size());
}

void finishParts(NodeType::Data& data)
{
    data.hasParts = true;
    data.byName.resize(data.parts.size());
    std::iota(data.byName.begin(), data.byName.end(), 0U);
    std::sort(data.byName.begin(), data.byName.end(),
              [&data](unsigned int a, unsigned int b) { return data.parts[a]->name < data.parts[b]->name; });
    for (unsigned int i = 0; i < data.parts.size(); ++i) {
        data.parts[i]->id = i;
        data.parts[i]->_data->behaviour = data.behaviour;
        if (holdsNodes(data.parts[i]->dataType))
            data.nodeParts.push_back(i);
    }
}

void makeParts(NodeType::Data& data)
{
    if (data.entry) {
        data.parts.reserve(data.entry->parts.size());
        for (const catalogue::PartEntry& part : data.entry->parts)
            data.parts.push_back(describe(*data.entry, part));
        collectBases(*data.entry, data.bases);
    }
    finishParts(data);
}

bool hasBehaviours()
{
    return registry().hasBehaviours;
}

TypeBehaviour& behaviourOf(std::string_view name)
{
    auto& behaviours = registry().behaviours;
    const auto found = behaviours.find(name);
    return found != behaviours.end() ? found->second : behaviours[std::string(name)];
}

ProcRegistration::ProcRegistration(const char* typeName, ProcFactory factory)
{
    behaviourOf(typeName).makeProc = factory;
    registry().hasBehaviours = true;
}

NodeClassRegistration::NodeClassRegistration(const char* typeName, NodeClassFactory factory)
{
    behaviourOf(typeName).makeNode = factory;
}

NodeType* findType(std::string_view name)
{
    const auto found = registry().types.find(name);
    if (found != registry().types.end())
        return found->second;
    if (!catalogue::findNode(name)) {
        const std::string_view newerName = catalogue::nodeAlias(name);
        return newerName.empty() ? nullptr : findType(newerName);
    }
    return new NodeType(std::string(name).c_str()); // the registry keeps it
}

NodeType* unknownType(std::string_view name)
{
    auto& types = registry().unknownTypes;
    const auto found = types.find(name);
    if (found != types.end())
        return found->second;
    NodeType* type = new NodeType("");
    types.emplace(name, type);
    type->name = name;
    type->data()->behaviour = &behaviourOf(anyUnknownType);
    return type;
}

unsigned int partCount(const NodeType& type)
{
    return static_cast<unsigned int>(typeData(type).parts.size());
}

int partIndex(const NodeType& type, std::string_view name)
{
    const NodeType::Data& data = typeData(type);
    const int index = exactPartIndex(data, name);
    if (index >= 0 || !data.entry)
        return index;
    const std::string_view newerName = catalogue::fieldAlias(*data.entry, name);
    return newerName.empty() ? -1 : exactPartIndex(data, newerName);
}

NodePartDesc* partDesc(const NodeType& type, unsigned int part)
{
    const NodeType::Data& data = typeData(type);
    return part < data.parts.size() ? data.parts[part].get() : nullptr;
}

std::string_view containerField(const NodeType& type)
{
    const catalogue::NodeEntry* entry = type.data()->entry;
    return entry && !entry->isAbstract() ? entry->containerField : "children";
}

std::vector<FieldDefault> vrml97Defaults(std::string_view type)
{
    std::vector<FieldDefault> defaults;
    for (const catalogue::Vrml97Default& row : catalogue::vrml97Defaults())
        if (row.node == type)
            defaults.push_back({row.part, row.value});
    return defaults;
}

std::string_view vrml97Name(const NodeType& type, unsigned int part)
{
    const NodeType::Data& data = typeData(type);
    const std::string_view name = data.parts[part]->name;
    return data.entry ? catalogue::vrml97Name(*data.entry, name) : name;
}

std::string_view vrml97Default(const NodeType& type, unsigned int part)
{
    const NodeType::Data& data = typeData(type);
    return data.entry ? catalogue::vrml97Default(*data.entry, data.entry->parts[part])
                      : data.parts[part]->defaultValue;
}

bool isOfType(const NodeType& type, std::string_view name)
{
    const std::vector<std::string_view>& bases = typeData(type).bases;
    return type.name == name || std::find(bases.begin(), bases.end(), name) != bases.end();
}

} // namespace Orvane
