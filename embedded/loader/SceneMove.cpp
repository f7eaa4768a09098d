#include "base/ContextData.h"
#include "base/Graph.h"
#include "base/PrototypeData.h"
#include "base/ValueOrigin.h"
#include "loader/MovedAddresses.h"
#include "loader/NodeFields.h"
#include <Orvane/MFString.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <Orvane/SceneMove.h>
#include <memory>
#include <unordered_set>

namespace Orvane {

namespace {

using TypeRef = std::shared_ptr<NodeType>;

/// One address: in a field of a node, in the default of a prototype's field, or of an extern prototype. It
/// keeps nothing alive.
struct Change
{
    enum Holder : int { NodeField, TypeDefault, TypeUrls };

    Holder holder;
    unsigned long long node; ///< number of the node
    std::weak_ptr<NodeType> type;
    unsigned int part;
    std::size_t index;
    std::string before;
    std::string after;

    void replace(const std::string& present, const std::string& next) const
    {
        if (holder == NodeField) {
            Node* const living = Node::findNode(node);
            give(living ? living->findField(part) : nullptr, present, next);
            return;
        }
        const TypeRef living = type.lock();
        if (!living)
            return;
        if (holder == TypeUrls) {
            std::vector<std::string>& urls = protoDeclaration(*living)->urls;
            if (index < urls.size() && urls[index] == present)
                urls[index] = next;
            return;
        }
        NodePartDesc& desc = *partDesc(*living, part);
        auto& value = const_cast<Field&>(readDefault(desc));
        give(&value, present, next);
        desc.defaultValue = value.valueToString();
    }

private:
    void give(Field* field, const std::string& present, const std::string& next) const
    {
        auto* const strings = dynamic_cast<MFString*>(field);
        if (strings && index < strings->size() && (*strings)[static_cast<int>(index)] == present)
            strings->elem(static_cast<int>(index)) = next;
    }
};

std::string folderOf(const Relayne::URL& url)
{
    const std::string path = url.localFile();
    return path.substr(0, path.rfind('/') + 1);
}

} // namespace

struct SceneMove::Data
{
    unsigned long long root = 0; ///< its number
    Relayne::URL from;
    Relayne::URL to;
    std::vector<Change> changes;
    std::vector<std::string> addresses;
    bool isRewritten = false;

    void lookAt(Node& scene);
    void lookAt(const TypeRef& type, bool isDeclaredHere);
    void stand(const Relayne::URL& next) const;

private:
    bool isFromHere(const Node& node) const;
    void lookAtFields(const Node& node);
    void addStrings(const Field& field, Change change);
    void add(Change change);

    std::vector<const Node*> _waiting;
    std::unordered_set<const Node*> _met;
    std::unordered_set<const NodeType*> _metTypes;
    std::unordered_set<std::string> _told;
};

bool SceneMove::Data::isFromHere(const Node& node) const
{
    const NodeNameSpace* names = node.nameSpace();
    // The root of a prototype's body stands among no names but its own.
    if (!names && node.type()->isProto())
        names = rootNames(node);
    return names && names->baseURL().toString() == from.toString();
}

void SceneMove::Data::lookAt(Node& scene)
{
    for (const TypeRef& type : declaredPrototypes(scene))
        lookAt(type, true);
    _waiting.push_back(&scene);
    while (!_waiting.empty()) {
        const Node& node = *_waiting.back();
        _waiting.pop_back();
        if (_met.insert(&node).second)
            lookAtFields(node);
    }
    _met.clear();
    _metTypes.clear();
}

void SceneMove::Data::lookAtFields(const Node& node)
{
    if (node.type()->isProto())
        if (const TypeRef type = node.type()->data()->prototype->kept)
            lookAt(type, isFromHere(node));
    std::vector<const Field*> fields;
    madeFields(node, fields);
    for (const Field* field : fields) {
        for (int link = 0; holdsNodes(*field) && link < linkCount(*field); ++link)
            if (const Node* child = linkedNode(*field, link))
                _waiting.push_back(child);
        const NodePartDesc& desc = *field->_desc;
        if ((desc.partType & FIELDP) && mayNameFiles(node, desc) && isFromHere(valueOrigin(*field)))
            addStrings(*field, {Change::NodeField, node.ID(), {}, desc.id, 0, {}, {}});
    }
}

void SceneMove::Data::lookAt(const TypeRef& type, bool isDeclaredHere)
{
    if (!_metTypes.insert(type.get()).second)
        return;
    const ProtoDeclaration& declaration = *protoDeclaration(*type);
    if (declaration.isExtern) {
        for (std::size_t i = 0; isDeclaredHere && i < declaration.urls.size(); ++i)
            add({Change::TypeUrls, 0, type, 0, i, declaration.urls[i], {}});
        return;
    }
    Node* const model = declaration.model.get();
    const NodeNameSpace* const names = model ? rootNames(*model) : nullptr;
    if (!names || names->baseURL().toString() != from.toString())
        return;
    for (unsigned int part = 0; part + 1 < partCount(*type); ++part)
        if (partDesc(*type, part)->dataType == MFSTRING_DT)
            addStrings(readDefault(*partDesc(*type, part)), {Change::TypeDefault, 0, type, part, 0, {}, {}});
    _waiting.push_back(model);
    for (const TypeRef& inner : declaration.inner)
        lookAt(inner, true);
}

void SceneMove::Data::addStrings(const Field& field, Change change)
{
    const auto& strings = static_cast<const MFString&>(field);
    for (std::size_t i = 0; i < strings.size(); ++i) {
        change.index = i;
        change.before = strings[static_cast<int>(i)];
        add(change);
    }
}

void SceneMove::Data::add(Change change)
{
    change.after = movedAddress(change.before, from, to);
    if (change.after == change.before)
        return;
    if (_told.insert(change.before).second)
        addresses.push_back(change.before);
    changes.push_back(std::move(change));
}

/// All names of the scene's file, those of prototypes and their instances too, count from another one. Where
/// they count from now is asked for: the scene may have been moved again since.
void SceneMove::Data::stand(const Relayne::URL& next) const
{
    const Node* const scene = Node::findNode(root);
    if (!scene || !scene->nameSpace())
        return;
    const std::string present = scene->nameSpace()->baseURL().toString();
    for (const auto& names : contextData(*scene).nameSpaces)
        if (names->baseURL().toString() == present)
            names->setBaseURL(next);
}

SceneMove::SceneMove(Node& root, const std::string& path)
    : _data(std::make_unique<Data>())
{
    _data->root = root.ID();
    if (root.nameSpace())
        _data->from = root.nameSpace()->baseURL();
    _data->to = Relayne::URL::fromLocalFile(path);
    const bool isElsewhere =
        _data->from.isLocalFile() && (_data->from.isEmpty() || folderOf(_data->from) != folderOf(_data->to));
    if (isElsewhere)
        _data->lookAt(root);
}

SceneMove::~SceneMove() = default;

const std::vector<std::string>& SceneMove::addresses() const
{
    return _data->addresses;
}

std::vector<Node*> SceneMove::nodes() const
{
    std::vector<Node*> nodes;
    std::unordered_set<const Node*> met;
    for (const Change& change : _data->changes) {
        Node* const node = change.holder == Change::NodeField ? Node::findNode(change.node) : nullptr;
        if (node && met.insert(node).second)
            nodes.push_back(node);
    }
    return nodes;
}

void SceneMove::make(bool rewrites)
{
    _data->isRewritten = rewrites;
    for (const Change& change : _data->changes)
        if (rewrites)
            change.replace(change.before, change.after);
    _data->stand(_data->to);
}

void SceneMove::takeBack()
{
    for (const Change& change : _data->changes)
        if (_data->isRewritten)
            change.replace(change.after, change.before);
    _data->stand(_data->from);
}

} // namespace Orvane
