#include "loader/GraphWalk.h"

#include "base/Graph.h"
#include "loader/ChildPlacement.h"
#include "loader/KeptStatements.h"
#include "loader/SceneEmitter.h"
#include <Orvane/Context.h>
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <Orvane/Route.h>
#include <Orvane/SFNode.h>

namespace Orvane {

SceneEmitter::~SceneEmitter() = default;

namespace {

bool holdsNodes(const Field& field)
{
    return field.dataType() == SFNODE_DT || field.dataType() == MFNODE_DT;
}

int linkCount(const Field& field)
{
    return field.dataType() == SFNODE_DT ? 1 : static_cast<int>(field.size());
}

/// The node behind a link of a field; null for an empty link.
const Node* linkedNode(const Field& field, int link)
{
    // Looking at a link's node needs a link that may be written.
    if (field.dataType() == SFNODE_DT)
        return const_cast<SFNode&>(static_cast<const SFNode&>(field)).link().directNode();
    return static_cast<const MFNode&>(field).elem(link).directNode();
}

bool hasNodes(const Field& field)
{
    if (!holdsNodes(field))
        return false;
    const int count = linkCount(field);
    for (int link = 0; link < count; ++link)
        if (linkedNode(field, link))
            return true;
    return false;
}

bool isScene(const Node& node)
{
    return node.type()->name == "Scene";
}

} // namespace

GraphWalk::GraphWalk(const Node& root, const SaveOptions& options, SceneEmitter& emitter)
    : _root(root)
    , _options(options)
    , _emitter(emitter)
{
    if (!isScene(root) || options.skipRoot)
        return;
    // The roots beside the scene belong to its file when they came from it; others are the host's.
    for (const char* type : {"ContextSetup", "Engine"}) {
        const Node* other = contextOf(root).findRoot(*findType(type));
        if (other && sourceLine(*other) > 0)
            _otherRoots.push_back(other);
    }
}

void GraphWalk::run()
{
    for (const Node* root : _otherRoots)
        collect(*root);
    collect(_root);
    giveNames();
    const bool writesRoot = isScene(_root) && !_options.skipRoot;
    _emitter.beginScene(keptHead(_root), writesRoot ? &_root : nullptr,
                        writesRoot ? name(_root) : std::string_view());
    for (const Node* root : _otherRoots)
        writeTree(*root, nullptr);
    if (isScene(_root) || _options.skipRoot) {
        for (const Field* field : contentOf(_root)) {
            if (!writesRoot && std::string_view(field->name()) == "metadata")
                continue;
            for (int link = 0; link < linkCount(*field); ++link)
                if (const Node* node = linkedNode(*field, link))
                    writeTree(*node, field);
        }
    } else {
        writeTree(_root, nullptr);
    }
    writeRoutes();
    _emitter.endScene();
}

// ---- What is written

bool GraphWalk::isWritten(const Node& node, const Field& field) const
{
    const NodePartDesc& desc = *field._desc;
    if (desc.privateAccess() || !(desc.partType & FIELDP))
        return false;
    if (holdsNodes(field))
        return hasNodes(field);
    if (_options.writeDefaultValues || desc.objExt())
        return true;
    return field.node() == &node && field.valueToString() != desc.defaultValue;
}

std::vector<const Field*> GraphWalk::contentOf(const Node& node) const
{
    std::vector<const Field*> declared;
    std::vector<const Field*> fields;
    const bool open = isUnknown(*node.type());
    const unsigned int count = node.partDescCount();
    for (unsigned int part = 0; part < count; ++part) {
        const Field& field = readField(node, part);
        if (field._desc->objExt() && !field._desc->privateAccess() && !open)
            declared.push_back(&field);
        else if (holdsNodes(field) && isWritten(node, field))
            fields.push_back(&field);
    }
    declared.insert(declared.end(), fields.begin(), fields.end());
    return declared;
}

/// Goes the way that the writing will go, so that the first place of each node is the same.
void GraphWalk::collect(const Node& top)
{
    std::vector<Level> levels;
    const auto meet = [&](const Node& node) {
        if (!_met.insert(&node).second) {
            _shared.insert(&node);
            return;
        }
        _order.push_back(&node);
        levels.push_back({&node, contentOf(node)});
    };
    meet(top);
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.field == level.fields.size()) {
            levels.pop_back();
            continue;
        }
        const Field& field = *level.fields[level.field];
        if (!holdsNodes(field) || level.link >= linkCount(field)) {
            ++level.field;
            level.link = 0;
        } else if (const Node* node = linkedNode(field, level.link++)) {
            meet(*node);
        }
    }
}

// ---- Names

std::string_view GraphWalk::name(const Node& node) const
{
    const auto found = _names.find(&node);
    return found == _names.end() ? std::string_view() : std::string_view(found->second);
}

void GraphWalk::giveName(const Node& node, std::string wanted)
{
    if (_names.find(&node) != _names.end())
        return;
    std::string name = wanted;
    for (int number = 2; !_takenNames.insert(name).second; ++number)
        name = wanted + "_" + std::to_string(number);
    _names.emplace(&node, std::move(name));
}

void GraphWalk::giveNames()
{
    for (const Node* node : _order)
        if (node->name())
            giveName(*node, *node->name());
    for (const Node* node : _order)
        if (!keptImports(*node).empty())
            giveImportedNames(*node);
    for (const Node* node : _order)
        if (_shared.count(node))
            giveName(*node, node->type()->name + "_1");
    const auto isHere = [&](const Node* node) { return node && (_met.count(node) || _names.count(node)); };
    for (const Node* node : _order) {
        const unsigned int count = node->partDescCount();
        for (unsigned int part = 0; part < count; ++part) {
            const Field& field = readField(*node, part);
            if (field.node() != node || !field._outSlot)
                continue;
            for (const Route* route : *field._outSlot) {
                const Node* to = route->inSlot()->field()->node();
                if (route->type() != Route::SCENE_RT || !isHere(to))
                    continue;
                giveName(*node, node->type()->name + "_1");
                giveName(*to, to->type()->name + "_1");
            }
        }
    }
}

/// Finds the nodes that an inline's file exports and the scene imports.
void GraphWalk::giveImportedNames(const Node& inlineNode)
{
    giveName(inlineNode, "Inline_1");
    const NamePairs imports = keptImports(inlineNode);
    const NamePairs exports = keptExports(inlineNode);
    const MFNode* content = findInlineContent(inlineNode);
    if (!content || exports.empty())
        return;
    std::unordered_map<std::string, const Node*> inner;
    std::vector<const Node*> waiting;
    std::unordered_set<const Node*> met;
    const auto add = [&](const Field& field) {
        for (int link = 0; link < linkCount(field); ++link) {
            const Node* node = linkedNode(field, link);
            if (node && met.insert(node).second)
                waiting.push_back(node);
        }
    };
    add(*content);
    while (!waiting.empty()) {
        const Node* node = waiting.back();
        waiting.pop_back();
        if (node->name() && node->nameSpace() && node->nameSpace()->rootNode() == &inlineNode)
            inner.emplace(*node->name(), node);
        for (const Field* field : contentOf(*node))
            if (holdsNodes(*field))
                add(*field);
    }
    for (const auto& [exported, name] : imports) {
        for (const auto& [local, as] : exports) {
            const auto found = as == exported ? inner.find(local) : inner.end();
            if (found == inner.end())
                continue;
            _takenNames.insert(name);
            _names.emplace(found->second, name);
            _imported.push_back(found->second);
        }
    }
}

// ---- Writing

void GraphWalk::writeTree(const Node& top, const Field* holder)
{
    std::vector<Level> levels;
    const auto meet = [&](const Node& node, const Field* place) {
        if (!_written.insert(&node).second) {
            _emitter.use(node, name(node), place);
            return;
        }
        writeComments(node);
        levels.push_back({&node, contentOf(node)});
        _emitter.beginNode(node, name(node), place);
        writeValues(node);
        _emitter.endValues(!levels.back().fields.empty());
    };
    meet(top, holder);
    while (!levels.empty()) {
        Level& level = levels.back();
        if (level.field == level.fields.size()) {
            _emitter.endNode();
            levels.pop_back();
            continue;
        }
        const Field& field = *level.fields[level.field];
        const bool isDeclared = field._desc->objExt() && !isUnknown(*level.node->type());
        if (!level.isInField) {
            level.isInField = true;
            level.link = 0;
            if (isDeclared)
                _emitter.beginDeclaration(field, hasNodes(field));
            else
                _emitter.beginNodes(field);
        } else if (holdsNodes(field) && level.link < linkCount(field)) {
            if (const Node* node = linkedNode(field, level.link++))
                meet(*node, &field);
        } else {
            if (isDeclared)
                _emitter.endDeclaration(hasNodes(field));
            else
                _emitter.endNodes();
            level.isInField = false;
            ++level.field;
        }
    }
}

void GraphWalk::writeValues(const Node& node)
{
    const bool open = isUnknown(*node.type());
    const unsigned int count = node.partDescCount();
    for (unsigned int part = 0; part < count; ++part) {
        const Field& field = readField(node, part);
        if (!holdsNodes(field) && (open || !field._desc->objExt()) && isWritten(node, field))
            _emitter.value(field);
    }
}

void GraphWalk::writeComments(const Node& node)
{
    if (_options.writeAbstractNodes) {
        std::vector<NodeType*> types;
        NodeType::getTypeVec(types, 0);
        std::string text;
        for (const NodeType* type : types)
            if (type->name.compare(0, 3, "X3D") == 0 && isOfType(*node.type(), type->name))
                text += (text.empty() ? "" : ", ") + type->name;
        if (!text.empty())
            _emitter.comment(node.type()->name + ": " + text);
    }
    if (_options.writeProcInfo) {
        const unsigned int count = node.partDescCount();
        for (unsigned int part = 0; part < count; ++part) {
            const Field& field = readField(node, part);
            if (field._desc->partType == EVENTOUTP && !holdsNodes(field))
                _emitter.comment(node.type()->name + "." + field.name() + " = " + field.valueToString());
        }
    }
}

void GraphWalk::writeRoutes()
{
    for (const Node* node : _order)
        for (const auto& [exported, as] : keptImports(*node))
            _emitter.importStatement(name(*node), exported, as);
    for (const auto& [local, exported] : keptExports(_root))
        _emitter.exportStatement(local, exported);

    std::vector<const Node*> sources = _order;
    sources.insert(sources.end(), _imported.begin(), _imported.end());
    const std::unordered_set<const Node*> imported(_imported.begin(), _imported.end());
    for (const Node* node : sources) {
        const unsigned int count = node->partDescCount();
        for (unsigned int part = 0; part < count; ++part) {
            const Field& field = readField(*node, part);
            if (field.node() != node || !field._outSlot)
                continue;
            for (const Route* route : *field._outSlot) {
                const Node* to = route->inSlot()->field()->node();
                const bool inside = imported.count(node) && imported.count(to);
                if (route->type() == Route::SCENE_RT && !inside && _names.count(node) && _names.count(to))
                    _emitter.route(name(*node), route->outSlot()->name(), name(*to), route->inSlot()->name());
            }
        }
    }
}

} // namespace Orvane
