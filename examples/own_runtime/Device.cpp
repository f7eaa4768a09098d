// Devices as nodes: their types, names and fields. Every node has one place, so that its id is its path.

#include "Device.h"

#include "Runtime.h"
#include <Orvane/FieldType.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFString.h>
#include <Orvane/NodePath.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFInt32.h>
#include <Orvane/SFString.h>
#include <map>
#include <stdexcept>

namespace Orvane {

namespace {

std::map<UInt64, Node*>& livingNodes()
{
    static std::map<UInt64, Node*> nodes;
    return nodes;
}

std::unique_ptr<Field> makeField(Node* node, NodePartDesc* desc)
{
    switch (desc->dataType) {
    case SFBOOL_DT:
        return std::make_unique<SFBool>(node, desc);
    case SFINT32_DT:
        return std::make_unique<SFInt32>(node, desc);
    case SFFLOAT_DT:
        return std::make_unique<SFFloat>(node, desc);
    case SFSTRING_DT:
        return std::make_unique<SFString>(node, desc);
    case MFSTRING_DT:
        return std::make_unique<MFString>(node, desc);
    case MFNODE_DT:
        return std::make_unique<MFNode>(node, desc);
    default:
        throw std::invalid_argument("devices have no readings of this type");
    }
}

} // namespace

// Parts and types.

NodePartDesc::NodePartDesc() = default;
NodePartDesc::~NodePartDesc() = default;

bool NodePartDesc::autoProcess() const
{
    return false;
}

bool NodePartDesc::objExt() const
{
    return false;
}

bool NodePartDesc::privateAccess() const
{
    return false;
}

const std::string& NodePartDesc::dataTypeName() const
{
    return FieldType::dataTypeName(dataType);
}

const std::string& NodePartDesc::partTypeName() const
{
    static const std::string only = "ExposedField";
    return only;
}

std::vector<std::string> NodePartDesc::valueList() const
{
    return {};
}

NodeType::NodeType(const char* typeName)
    : name(typeName)
{
}

NodeType::~NodeType() = default;

unsigned int NodeType::getTypeVec(std::vector<NodeType*>& types, int)
{
    types.clear();
    return 0;
}

// Nodes.

Subject Node::_childAdded;
Subject Node::_childRemoved;
Subject Node::_deleteObject;
Subject Node::_nameSpaceChanged;

Node::~Node()
{
    livingNodes().erase(_data->id);
    delete _data;
}

Node* Node::findNode(unsigned long long id)
{
    const auto found = livingNodes().find(id);
    return found == livingNodes().end() ? nullptr : found->second;
}

unsigned long long Node::ID() const
{
    return _data->id;
}

const std::string& Node::getIDStr() const
{
    return _data->name;
}

Context* Node::context()
{
    return nullptr;
}

Node* Node::contextRoot() const
{
    const Node* node = this;
    while (const NodeLink* place = node->_data->place)
        node = place->parent();
    return const_cast<Node*>(node);
}

bool Node::isShared()
{
    return false;
}

int Node::childCount() const
{
    return static_cast<int>(_data->fields.back()->size());
}

int Node::collectAllChildren(std::vector<Node*>& children, unsigned int)
{
    children.clear();
    for (NodeLink& link : static_cast<MFNode&>(*_data->fields.back()))
        children.push_back(link.directNode());
    return static_cast<int>(children.size());
}

Field* Node::findField(unsigned int index) const
{
    return index < partDescCount() ? _data->fields[index].get() : nullptr;
}

Field* Node::findField(const std::string& name, FieldSearchOrder) const
{
    const int index = findEventInSlotID(name);
    return index < 0 ? nullptr : findField(static_cast<unsigned int>(index));
}

unsigned int Node::partDescCount() const
{
    return static_cast<unsigned int>(_data->fields.size());
}

int Node::findEventInSlotID(const std::string& name) const
{
    for (const auto& field : _data->fields) {
        if (name == field->name())
            return static_cast<int>(field->_desc->id);
    }
    return -1;
}

int Node::findEventOutSlotID(const std::string& name) const
{
    return findEventInSlotID(name);
}

// Paths.

struct NodePath::Data
{
    UInt64 id = 0;
};

NodePath::NodePath(Node* node)
    : _data(new Data{node ? node->ID() : 0})
{
}

NodePath::NodePath(const NodePath& other)
    : _data(new Data(*other._data))
{
}

NodePath::NodePath(const std::list<NodeLink*>& links)
    : NodePath()
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
    return _data->id == other._data->id;
}

Node* NodePath::node() const
{
    return Node::findNode(_data->id);
}

bool NodePath::isValid() const
{
    return node() != nullptr;
}

const NodePath& NodePath::addNode(Node* child)
{
    if (isValid() && child && child->data()->place && child->data()->place->parent() == node())
        _data->id = child->ID();
    return *this;
}

void NodePath::nodeLinks(std::list<NodeLink*>& links) const
{
    links.clear();
    for (const Node* last = node(); last && last->data()->place; last = last->data()->place->parent())
        links.push_back(last->data()->place);
}

void NodePath::setNode(const std::list<NodeLink*>& links)
{
    Node* last = links.empty() || !links.front() ? nullptr : links.front()->directNode();
    _data->id = last ? last->ID() : 0;
}

} // namespace Orvane

using namespace Orvane;

Device::Device(const char* type, const char* name, const std::vector<Reading>& readings)
    : _kind(type)
    , _parts(readings.size() + 1)
{
    static UInt64 lastId = 0;
    _type = &_kind;
    _state = RUNNING_NS;
    _data = new Data;
    _data->id = ++lastId;
    _data->name = name;
    _name = &_data->name;
    livingNodes()[_data->id] = this;
    for (unsigned int i = 0; i < _parts.size(); ++i) {
        const Reading below{"devices", MFNODE_DT, "", "The devices below"};
        const Reading& reading = i < readings.size() ? readings[i] : below;
        NodePartDesc& part = _parts[i];
        part.id = i;
        part.name = reading.name;
        part.dataType = reading.dataType;
        part.partType = EXPOSEDFIELDP;
        part.defaultValue = reading.value;
        part.description = reading.description;
        _data->fields.push_back(makeField(this, &part));
        std::string error;
        if (!_data->fields.back()->parseValue(part.defaultValue, error))
            throw std::invalid_argument(error);
    }
}

Device::~Device()
{
    _state = DYING_NS;
    // While fields and their descriptions are there.
    _deleteObject.fire(0.0, this);
    _data->fields.clear();
}

Device* Device::add(const char* type, const char* name, const std::vector<Reading>& readings)
{
    auto device = std::make_unique<Device>(type, name, readings);
    reading<MFNode>("devices")->addNode(0.0, device.get(), Field::EXTERNAL_CT);
    return device.release(); // the link owns it
}
