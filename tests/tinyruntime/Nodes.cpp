// Nodes, their types and names, links and paths.

#include "Runtime.h"
#include "TextField.h"
#include <Orvane/FieldType.h>
#include <Orvane/NodePath.h>
#include <algorithm>
#include <utility>

namespace Orvane {

namespace {

std::map<UInt64, Node*>& livingNodes()
{
    static std::map<UInt64, Node*> nodes;
    return nodes;
}

std::map<std::string, NodeType*>& knownTypes()
{
    static std::map<std::string, NodeType*> types;
    return types;
}

/// Goes over the links of a node in order of field and element.
template <class Visit>
void forEachLink(const Node* node, Visit visit)
{
    for (const auto& field : node->data()->fields) {
        if (auto* single = dynamic_cast<SFNode*>(field.get())) {
            visit(single->link());
        } else if (auto* multi = dynamic_cast<MFNode*>(field.get())) {
            for (NodeLink& link : *multi)
                visit(link);
        }
    }
}

std::unique_ptr<Field> makeField(Node* node, NodePartDesc* desc)
{
    switch (desc->dataType) {
    case SFBOOL_DT:
        return std::make_unique<SFBool>(node, desc);
    case MFBOOL_DT:
        return std::make_unique<MFBool>(node, desc);
    case SFINT32_DT:
        return std::make_unique<SFInt32>(node, desc);
    case MFINT32_DT:
        return std::make_unique<MFInt32>(node, desc);
    case SFFLOAT_DT:
        return std::make_unique<SFFloat>(node, desc);
    case MFFLOAT_DT:
        return std::make_unique<MFFloat>(node, desc);
    case MFDOUBLE_DT:
        return std::make_unique<MFDouble>(node, desc);
    case SFSTRING_DT:
        return std::make_unique<SFString>(node, desc);
    case MFSTRING_DT:
        return std::make_unique<MFString>(node, desc);
    case SFNODE_DT:
        return std::make_unique<SFNode>(node, desc);
    case MFNODE_DT:
        return std::make_unique<MFNode>(node, desc);
    case SFIMAGE_DT:
        return std::make_unique<SFImage>(node, desc);
    case MFCOLOR_DT:
        return std::make_unique<MFColor>(node, desc);
    case MFCOLORRGBA_DT:
        return std::make_unique<MFColorRGBA>(node, desc);
    case MFROTATION_DT:
        return std::make_unique<MFRotation>(node, desc);
    case MFVEC2F_DT:
        return std::make_unique<MFVec2f>(node, desc);
    case MFVEC3F_DT:
        return std::make_unique<MFVec3f>(node, desc);
    case MFVEC4F_DT:
        return std::make_unique<MFVec4f>(node, desc);
    case MFVEC2D_DT:
        return std::make_unique<MFVec2d>(node, desc);
    case MFVEC3D_DT:
        return std::make_unique<MFVec3d>(node, desc);
    case MFVEC4D_DT:
        return std::make_unique<MFVec4d>(node, desc);
    default:
        return std::make_unique<TextField>(node, desc);
    }
}

const std::string SetPrefix = "set_";
const std::string ChangedSuffix = "_changed";

} // namespace

// Part descriptions and types.

NodePartDesc::NodePartDesc()
    : _data(new Data)
{
}

NodePartDesc::~NodePartDesc()
{
    delete _data;
}

bool NodePartDesc::autoProcess() const
{
    return _data->autoProcess;
}

bool NodePartDesc::objExt() const
{
    return _data->objExt;
}

bool NodePartDesc::privateAccess() const
{
    return _data->privateAccess;
}

const std::string& NodePartDesc::dataTypeName() const
{
    return FieldType::dataTypeName(dataType);
}

const std::string& NodePartDesc::partTypeName() const
{
    static const std::map<NodePartType, std::string> names = {{NO_PART, ""},
                                                              {FIELDP, "Field"},
                                                              {EVENTINP, "EventIn"},
                                                              {EVENTOUTP, "EventOut"},
                                                              {EXPOSEDFIELDP, "ExposedField"}};
    return names.at(partType);
}

std::vector<std::string> NodePartDesc::valueList() const
{
    return _data->valueList;
}

std::unique_ptr<NodePartDesc> makeDesc(const Tiny::Part& part)
{
    auto desc = std::make_unique<NodePartDesc>();
    desc->name = part.name;
    desc->dataType = part.dataType;
    desc->partType = part.access;
    desc->defaultValue = part.value;
    desc->description = part.description;
    desc->valueRestriction = part.restriction;
    desc->valueType = part.valueType;
    desc->minValue = part.minValue;
    desc->maxValue = part.maxValue;
    desc->_data->valueList = part.valueList;
    desc->_data->autoProcess = part.autoProcess;
    desc->_data->objExt = part.objExt;
    desc->_data->privateAccess = part.privateAccess;
    return desc;
}

NodeType::NodeType(const char* typeName)
    : name(typeName)
    , _data(new Data)
{
    knownTypes()[name] = this;
}

NodeType::~NodeType()
{
    delete _data;
}

void NodeType::Data::mark(NodeType& type, bool isProto, bool isContextRoot)
{
    type._isProto = isProto;
    type._isContextRoot = isContextRoot;
}

unsigned int NodeType::getTypeVec(std::vector<NodeType*>& types, int)
{
    types.clear();
    for (const auto& [name, type] : knownTypes())
        types.push_back(type);
    return static_cast<unsigned int>(types.size());
}

// Nodes.

Subject Node::_childAdded;
Subject Node::_childRemoved;
Subject Node::_deleteObject;
Subject Node::_nameSpaceChanged;

void NodeAccess::setUp(Node* node, NodeType* type, const char* name, Context* context, bool isKept)
{
    static UInt64 lastId = 0;
    auto* data = new Node::Data;
    node->_data = data;
    node->_type = type;
    data->id = ++lastId;
    data->context = context;
    data->isKept = isKept;
    livingNodes()[data->id] = node;
    if (context) {
        context->data()->nodes.insert(node);
        node->_nameSpace = context->data()->names.get();
    }
    for (const auto& desc : type->data()->parts)
        addField(node, desc.get());
    data->idStr = type->name + "#" + std::to_string(data->id);
    if (name)
        rename(node, name);
}

Field* NodeAccess::addField(Node* node, NodePartDesc* desc)
{
    auto& fields = node->_data->fields;
    desc->id = static_cast<unsigned int>(fields.size());
    fields.push_back(makeField(node, desc));
    std::string error;
    if (!desc->defaultValue.empty())
        fields.back()->parseValue(desc->defaultValue, error);
    return fields.back().get();
}

Field* Node::addField(const std::string& name, NodePartDataType dataType, NodePartType partType)
{
    const bool hasType = dataType >= SFBOOL_DT && dataType <= MFVEC4F_DT && partType != NO_PART;
    if (name.empty() || !hasType || findField(name, EXACT_FSO))
        return nullptr;
    Tiny::Part part;
    part.name = name;
    part.dataType = dataType;
    part.access = partType;
    part.objExt = true;
    return Tiny::addField(this, part);
}

bool Node::removeField(Field& field)
{
    auto& fields = _data->fields;
    const auto place =
        std::find_if(fields.begin(), fields.end(), [&](const auto& each) { return each.get() == &field; });
    const auto& own = _data->ownDescs;
    const auto isOwn = [&](const auto& desc) { return desc.get() == field._desc; };
    if (place == fields.end() || std::none_of(own.begin(), own.end(), isOwn))
        return false;
    delete std::exchange(field._inSlot, nullptr);
    delete std::exchange(field._outSlot, nullptr);
    field.clear();
    _data->removedFields.push_back(std::move(*place));
    for (auto i = fields.erase(place); i != fields.end(); ++i)
        --(*i)->_desc->id;
    return true;
}

void NodeAccess::rename(Node* node, const char* name)
{
    Node::Data* data = node->_data;
    NodeNameSpace* names = node->_nameSpace;
    if (names && node->_name)
        names->data()->nodes.erase(data->name);
    data->name = name ? name : "";
    node->_name = name ? &data->name : nullptr;
    data->idStr = name ? data->name : node->_type->name + "#" + std::to_string(data->id);
    if (names && name)
        names->data()->nodes[data->name] = node;
    Node::_nameSpaceChanged.fire(0.0, nullptr, node);
}

Node::~Node()
{
    _state = DYING_NS;
    _data->isDying = true;
    _deleteObject.fire(0.0, this);

    for (const auto& field : _data->fields) {
        delete field->_inSlot;
        field->_inSlot = nullptr;
        delete field->_outSlot;
        field->_outSlot = nullptr;
    }
    while (!_data->parentLinks.empty()) {
        Field* field = _data->parentLinks.back()->field();
        if (auto* single = dynamic_cast<SFNode*>(field)) {
            FieldAccess::setNode(*single, nullptr);
        } else if (auto* multi = dynamic_cast<MFNode*>(field)) {
            int index = 0;
            while (&multi->elem(index) != _data->parentLinks.back())
                ++index;
            FieldAccess::remove(*multi, index);
        }
    }
    if (_nameSpace && _name)
        _nameSpace->data()->nodes.erase(*_name);
    if (_data->context)
        _data->context->data()->nodes.erase(this);
    livingNodes().erase(_data->id);
    _data->fields.clear();
    delete _data;
}

void releaseNode(Node* node)
{
    const Node::Data* data = node->data();
    if (data->parentLinks.empty() && !data->isKept && !data->isDying)
        delete node;
}

Node* Node::findNode(unsigned long long id)
{
    const auto entry = livingNodes().find(id);
    return entry == livingNodes().end() ? nullptr : entry->second;
}

unsigned long long Node::ID() const
{
    return _data->id;
}

const std::string& Node::getIDStr() const
{
    return _data->idStr;
}

Context* Node::context()
{
    return _data->context;
}

Node* Node::contextRoot() const
{
    const Node* node = this;
    std::set<const Node*> seen;
    while (!node->_data->isRoot) {
        if (!seen.insert(node).second || node->_data->parentLinks.empty())
            return nullptr;
        node = node->_data->parentLinks.front()->parent();
    }
    return const_cast<Node*>(node);
}

bool Node::isShared()
{
    return _data->parentLinks.size() > 1;
}

int Node::childCount() const
{
    int count = 0;
    forEachLink(this, [&](NodeLink& link) { count += link.directNode() ? 1 : 0; });
    return count;
}

int Node::collectAllChildren(std::vector<Node*>& children, unsigned int)
{
    children.clear();
    forEachLink(this, [&](NodeLink& link) {
        if (link.directNode())
            children.push_back(link.directNode());
    });
    return static_cast<int>(children.size());
}

Field* Node::findField(unsigned int index) const
{
    return index < _data->fields.size() ? _data->fields[index].get() : nullptr;
}

Field* Node::findField(const std::string& fieldName, FieldSearchOrder order) const
{
    for (const auto& field : _data->fields) {
        if (fieldName == field->name())
            return field.get();
    }
    if (order == EXACT_FSO)
        return nullptr;
    for (const auto& field : _data->fields) {
        if (field->partType() == EXPOSEDFIELDP &&
            (fieldName == SetPrefix + field->name() || fieldName == field->name() + ChangedSuffix))
            return field.get();
    }
    return nullptr;
}

unsigned int Node::partDescCount() const
{
    return static_cast<unsigned int>(_data->fields.size());
}

int Node::findEventInSlotID(const std::string& event) const
{
    for (unsigned int i = 0; i < partDescCount(); ++i) {
        const Field* field = findField(i);
        if ((field->partType() & EVENTINP) && (event == field->name() || event == SetPrefix + field->name()))
            return static_cast<int>(i);
    }
    return -1;
}

int Node::findEventOutSlotID(const std::string& event) const
{
    for (unsigned int i = 0; i < partDescCount(); ++i) {
        const Field* field = findField(i);
        if ((field->partType() & EVENTOUTP) &&
            (event == field->name() || event == field->name() + ChangedSuffix))
            return static_cast<int>(i);
    }
    return -1;
}

// Slots and routes.

EventSlot::EventSlot(Field* field)
    : _field(field)
{
}

EventSlot::~EventSlot()
{
    while (!_routes.empty())
        delete _routes.back();
}

EventInSlot::EventInSlot(Field* field)
    : EventSlot(field)
{
}
EventInSlot::~EventInSlot() = default;

const char* EventInSlot::name() const
{
    return _field->name();
}

EventOutSlot::EventOutSlot(Field* field)
    : EventSlot(field)
{
}
EventOutSlot::~EventOutSlot() = default;

const char* EventOutSlot::name() const
{
    return _field->name();
}

Route* EventOutSlot::findRoute(EventInSlot* inSlot)
{
    for (Route* route : _routes) {
        if (route->inSlot() == inSlot)
            return route;
    }
    return nullptr;
}

Subject Route::_newObject;
Subject Route::_deleteObject;

Route::Route(EventOutSlot& outSlot, EventInSlot& inSlot, Type type)
    : _outSlot(&outSlot)
    , _inSlot(&inSlot)
    , _type(type)
{
    outSlot._routes.push_back(this);
    inSlot._routes.push_back(this);
}

Route::~Route()
{
    _deleteObject.fire(0.0, this);
    for (std::vector<Route*>* routes : {&_outSlot->_routes, &_inSlot->_routes})
        routes->erase(std::find(routes->begin(), routes->end(), this));
}

Route* Route::create(EventOutSlot& outSlot, EventInSlot& inSlot, Type type)
{
    const Field& from = *outSlot.field();
    const Field& to = *inSlot.field();
    if (Tiny::switches().refuseRoutes || outSlot.findRoute(&inSlot) || from.dataType() != to.dataType() ||
        !(from.partType() & EVENTOUTP) || !(to.partType() & EVENTINP))
        return nullptr;
    auto* route = new Route(outSlot, inSlot, type);
    _newObject.fire(0.0, route);
    return route;
}

// Links.

std::map<const NodeLink*, UInt64>& livingLinks()
{
    static std::map<const NodeLink*, UInt64> links;
    return links;
}

NodeLink::NodeLink() = default;

NodeLink::NodeLink(const NodeLink& other)
    : BaseObject()
    , _node(other._node)
{
}

NodeLink& NodeLink::operator=(const NodeLink& other)
{
    // A link of the graph is changed through its field only.
    if (!_field)
        _node = other._node;
    return *this;
}

NodeLink::~NodeLink() = default;

Node* NodeLink::node()
{
    return _node && _node->data()->referred ? _node->data()->referred : _node;
}

Node* NodeLink::parent() const
{
    return _field ? _field->node() : nullptr;
}

FieldLink::FieldLink(Field* field, Node* node)
{
    static UInt64 lastNumber = 0;
    _field = field;
    livingLinks()[this] = ++lastNumber;
    setNode(node);
}

FieldLink::~FieldLink()
{
    setNode(nullptr);
    livingLinks().erase(this);
}

void FieldLink::setNode(Node* node)
{
    if (_node) {
        auto& links = _node->data()->parentLinks;
        links.erase(std::find(links.begin(), links.end(), this));
    }
    _node = node;
    if (_node)
        _node->data()->parentLinks.push_back(this);
}

bool FieldAccess::insert(MLField<NodeLink, 1>& field, int index, Node* node)
{
    if (!node)
        return false;
    const int place = std::clamp(index, 0, static_cast<int>(field._links.size()));
    auto* link = new FieldLink(&field, node);
    field._links.insert(field._links.begin() + place, link);
    Node::_childAdded.fire(0.0, field.node(), link);
    return true;
}

bool FieldAccess::remove(MLField<NodeLink, 1>& field, int index)
{
    if (index < 0 || index >= static_cast<int>(field._links.size()))
        return false;
    NodeLink* link = field._links[static_cast<std::size_t>(index)];
    Node* child = link->directNode();
    Node::_childRemoved.fire(0.0, field.node(), link);
    field._links.erase(field._links.begin() + index);
    delete link;
    releaseNode(child);
    return true;
}

void FieldAccess::setNode(SFNode& field, Node* node)
{
    auto& link = static_cast<FieldLink&>(*field._link);
    Node* before = link.directNode();
    if (before)
        Node::_childRemoved.fire(0.0, field.node(), &link);
    link.setNode(node);
    if (before && before != node)
        releaseNode(before);
    if (node)
        Node::_childAdded.fire(0.0, field.node(), &link);
}

template <class T>
MLField<T, 1>::MLField(Node* node, NodePartDesc* desc)
    : Field(node, desc)
{
}

template <class T>
void MLField<T, 1>::clear()
{
    while (!_links.empty())
        FieldAccess::remove(*this, static_cast<int>(_links.size()) - 1);
}

template <class T>
MLField<T, 1>::~MLField()
{
    clear();
}

template <class T>
std::string MLField<T, 1>::valueToString() const
{
    std::string result;
    for (NodeLink* link : _links)
        result += (result.empty() ? "" : ", ") + link->directNode()->getIDStr();
    return result;
}

template <class T>
int MLField<T, 1>::cardinality() const
{
    return 1;
}

template <class T>
unsigned int MLField<T, 1>::size() const
{
    return static_cast<unsigned int>(_links.size());
}

template <class T>
bool MLField<T, 1>::parseValue(std::string_view, std::string& error)
{
    error = "nodes are not read from text";
    return false;
}

template <class T>
void MLField<T, 1>::assignValue(const Field& other)
{
    const auto* same = dynamic_cast<const MLField*>(&other);
    if (!same || same == this)
        return;
    clear();
    for (NodeLink* link : same->_links)
        FieldAccess::insert(*this, static_cast<int>(_links.size()), link->directNode());
}

template <class T>
bool MLField<T, 1>::hasValueOf(const Field& other) const
{
    const auto* same = dynamic_cast<const MLField*>(&other);
    return same && std::equal(_links.begin(), _links.end(), same->_links.begin(), same->_links.end(),
                              [](NodeLink* a, NodeLink* b) { return a->directNode() == b->directNode(); });
}

template <class T>
bool MLField<T, 1>::insertNode(const double& time, int index, Node* node, CallerType caller)
{
    if (!FieldAccess::insert(*this, index, node))
        return false;
    processValueChange(time, caller);
    return true;
}

template <class T>
bool MLField<T, 1>::addNode(const double& time, Node* node, CallerType caller)
{
    return insertNode(time, static_cast<int>(_links.size()), node, caller);
}

template <class T>
bool MLField<T, 1>::removeNode(const double& time, int index, CallerType caller)
{
    if (!FieldAccess::remove(*this, index))
        return false;
    processValueChange(time, caller);
    return true;
}

template class MLField<NodeLink, 1>;

SFNode::SFNode(Node* node, NodePartDesc* desc)
    : Field(node, desc)
    , _link(new FieldLink(this, nullptr)) // owned; see the destructor
{
}

SFNode::~SFNode()
{
    FieldAccess::setNode(*this, nullptr);
    delete _link;
}

NodePartDataType SFNode::dataType() const
{
    return SFNODE_DT;
}
std::string SFNode::valueToString() const
{
    return _link->directNode() ? _link->directNode()->getIDStr() : "NULL";
}
int SFNode::cardinality() const
{
    return 0;
}
unsigned int SFNode::size() const
{
    return 1;
}
void SFNode::clear()
{
}
bool SFNode::parseValue(std::string_view, std::string& error)
{
    error = "nodes are not read from text";
    return false;
}
void SFNode::assignValue(const Field& other)
{
    if (const auto* same = dynamic_cast<const SFNode*>(&other))
        FieldAccess::setNode(*this, same->_link->directNode());
}
bool SFNode::hasValueOf(const Field& other) const
{
    const auto* same = dynamic_cast<const SFNode*>(&other);
    return same && same->_link->directNode() == _link->directNode();
}
bool SFNode::setNode(const double& time, Node* value, CallerType caller)
{
    FieldAccess::setNode(*this, value);
    processValueChange(time, caller);
    return true;
}

// Paths: nodes by id and links by number, so that nothing dead is ever touched.

struct NodePath::Data
{
    UInt64 root = 0;
    std::list<std::pair<NodeLink*, UInt64>> links; ///< the deepest first
};

namespace {

bool isLiving(const std::pair<NodeLink*, UInt64>& entry)
{
    const auto found = livingLinks().find(entry.first);
    return found != livingLinks().end() && found->second == entry.second;
}

} // namespace

NodePath::NodePath(Node* node)
    : _data(new Data)
{
    std::set<Node*> seen;
    while (node && seen.insert(node).second && !node->data()->parentLinks.empty()) {
        NodeLink* link = node->data()->parentLinks.front();
        if (seen.count(link->parent()))
            break;
        _data->links.emplace_back(link, livingLinks().at(link));
        node = link->parent();
    }
    _data->root = node ? node->ID() : 0;
}

NodePath::NodePath(const NodePath& other)
    : _data(new Data(*other._data))
{
}

NodePath::NodePath(const std::list<NodeLink*>& links)
    : _data(new Data)
{
    setNode(links);
}

NodePath& NodePath::operator=(const NodePath& other)
{
    *_data = *other._data;
    return *this;
}

NodePath::~NodePath()
{
    delete _data;
}

bool NodePath::operator==(const NodePath& other) const
{
    return _data->root == other._data->root && _data->links == other._data->links;
}

bool NodePath::isValid() const
{
    return Node::findNode(_data->root) && std::all_of(_data->links.begin(), _data->links.end(), isLiving);
}

Node* NodePath::node() const
{
    if (!isValid())
        return nullptr;
    return _data->links.empty() ? Node::findNode(_data->root) : _data->links.front().first->node();
}

const NodePath& NodePath::addNode(Node* child)
{
    if (Node* last = node()) {
        bool found = false;
        forEachLink(last, [&](NodeLink& link) {
            if (!found && child && link.directNode() == child) {
                found = true;
                _data->links.emplace_front(&link, livingLinks().at(&link));
            }
        });
    }
    return *this;
}

void NodePath::nodeLinks(std::list<NodeLink*>& links) const
{
    links.clear();
    if (!isValid())
        return;
    for (const auto& entry : _data->links)
        links.push_back(entry.first);
}

void NodePath::setNode(const std::list<NodeLink*>& links)
{
    _data->links.clear();
    _data->root = 0;
    for (NodeLink* link : links) {
        const auto known = livingLinks().find(link);
        _data->links.emplace_back(link, known == livingLinks().end() ? 0 : known->second);
    }
    if (!links.empty() && isLiving(_data->links.back()))
        _data->root = links.back()->parent()->ID();
}

// Name spaces.

NodeNameSpace::NodeNameSpace()
    : _data(new Data)
{
}

NodeNameSpace::~NodeNameSpace()
{
    delete _data;
}

std::unique_ptr<NodeNameSpace> NodeNameSpace::Data::create()
{
    return std::unique_ptr<NodeNameSpace>(new NodeNameSpace);
}

Node* NodeNameSpace::findNode(NodeNameSpace* nameSpace, const std::string& name)
{
    if (!nameSpace)
        return nullptr;
    const auto entry = nameSpace->_data->nodes.find(name);
    return entry == nameSpace->_data->nodes.end() ? nullptr : entry->second;
}

NodeNameSpace* NodeNameSpace::findNameSpace(NodeNameSpace* parent, const std::string& name, Context* context,
                                            bool)
{
    if (parent || name != "scene")
        return nullptr;
    for (Context* living : Context::Data::living()) {
        NodeNameSpace* names = living->data()->names.get();
        if (context ? living == context : names->rootNode() != nullptr)
            return names->rootNode() ? names : nullptr;
    }
    return nullptr;
}

} // namespace Orvane

namespace Tiny {

using namespace Orvane;

NodeType* makeType(const std::string& name, const std::vector<Part>& parts, bool isProto)
{
    static std::vector<std::unique_ptr<NodeType>> made;
    made.push_back(std::make_unique<NodeType>(name.c_str()));
    NodeType* type = made.back().get();
    for (const Part& part : parts)
        type->data()->parts.push_back(makeDesc(part));
    NodeType::Data::mark(*type, isProto, false);
    return type;
}

Node* makeNode(NodeType* type, const char* name, Context* context)
{
    struct PlainNode : Node
    {
    };
    auto* node = new PlainNode;
    NodeAccess::setUp(node, type, name, context, false);
    return node;
}

void setName(Node* node, const char* name)
{
    NodeAccess::rename(node, name);
}

void setState(Node* node, NodeState state)
{
    NodeAccess::setState(node, state);
}

Field* addField(Node* node, const Part& part)
{
    node->data()->ownDescs.push_back(makeDesc(part));
    return NodeAccess::addField(node, node->data()->ownDescs.back().get());
}

Field* addFieldWithoutDescription(Node* node)
{
    Field* field = addField(node, Part());
    field->_desc = nullptr;
    return field;
}

void link(Node* parent, const std::string& fieldName, Node* child)
{
    Field* field = parent->findField(fieldName, Node::EXACT_FSO);
    if (auto* single = dynamic_cast<SFNode*>(field))
        single->setNode(0.0, child, Field::EXTERNAL_CT);
    else if (auto* multi = dynamic_cast<MFNode*>(field))
        multi->addNode(0.0, child, Field::EXTERNAL_CT);
}

void refer(Node* reference, Node* target)
{
    reference->data()->referred = target;
}

} // namespace Tiny
