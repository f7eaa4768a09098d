#pragma once

// What the sources of the tiny runtime share.

#include "Tiny.h"
#include <Orvane/ContextSetup.h>
#include <Orvane/Engine.h>
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/MFBool.h>
#include <Orvane/MFColor.h>
#include <Orvane/MFColorRGBA.h>
#include <Orvane/MFDouble.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFInt32.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFRotation.h>
#include <Orvane/MFString.h>
#include <Orvane/MFVec2d.h>
#include <Orvane/MFVec2f.h>
#include <Orvane/MFVec3d.h>
#include <Orvane/MFVec3f.h>
#include <Orvane/MFVec4d.h>
#include <Orvane/MFVec4f.h>
#include <Orvane/Node.h>
#include <Orvane/NodeLink.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <Orvane/Route.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFImage.h>
#include <Orvane/SFInt32.h>
#include <Orvane/SFNode.h>
#include <Orvane/SFString.h>
#include <Orvane/Scene.h>
#include <Orvane/SceneBaseNodeProc.h>
#include <map>
#include <memory>
#include <set>

namespace Orvane {

struct NodePartDesc::Data
{
    bool autoProcess = false;
    bool objExt = false;
    bool privateAccess = false;
    std::vector<std::string> valueList;
};

struct NodeType::Data
{
    std::vector<std::unique_ptr<NodePartDesc>> parts;

    static void mark(NodeType& type, bool isProto, bool isContextRoot);
};

struct Node::Data
{
    UInt64 id = 0;
    std::string name;
    std::string idStr;
    Context* context = nullptr;
    bool isRoot = false;
    bool isKept = false; ///< lives without links: a root, or a node of the test's own
    bool isDying = false;
    std::vector<std::unique_ptr<NodePartDesc>> ownDescs;
    std::vector<std::unique_ptr<Field>> fields;
    std::vector<std::unique_ptr<Field>> removedFields;
    std::vector<NodeLink*> parentLinks; ///< the oldest first
    Node* referred = nullptr;           ///< whom links to this node lead to, when it is a reference
};

struct NodeNameSpace::Data
{
    std::map<std::string, Node*> nodes;

    static std::unique_ptr<NodeNameSpace> create();
    static void setRoot(NodeNameSpace& names, Node* root) { names._rootNode = root; }
    static void setBase(NodeNameSpace& names, const std::string& url) { names._baseURL = url; }
};

struct Context::Data
{
    std::vector<Node*> roots;
    std::set<Node*> nodes; ///< all but those that the test keeps die with the context
    std::unique_ptr<NodeNameSpace> names;
    NodeState state = CREATED_NS;
    int frames = 0;
    bool inFrame = false;
    LoadReport report;

    static void setTime(Context& context, double time) { context._timeStamp = time; }
    static std::vector<Context*>& living();
    static bool addRoot(BaseObject* owner, Node* root, const char* name, NodeCreator creator);
};

/// The way into nodes that are being made.
class NodeAccess
{
public:
    static void setUp(Node* node, NodeType* type, const char* name, Context* context, bool isKept);
    /// The context is gone.
    static void orphan(Node* node);
    static void rename(Node* node, const char* name);
    static void setState(Node* node, NodeState state) { node->_state = state; }
    static void setNameSpace(Node* node, NodeNameSpace* names) { node->_nameSpace = names; }
    static Field* addField(Node* node, NodePartDesc* desc);
};

/// A link in a field, known to its child.
class FieldLink : public NodeLink
{
public:
    FieldLink(Field* field, Node* node);
    ~FieldLink() override;

    /// Points the link of a single node field elsewhere.
    void setNode(Node* node);
};

/// The way into the link lists of fields.
class FieldAccess
{
public:
    static bool insert(MLField<NodeLink, 1>& field, int index, Node* node);
    static bool remove(MLField<NodeLink, 1>& field, int index);
    static void setNode(SFNode& field, Node* node);
};

/// Deletes a node that nothing holds any more.
void releaseNode(Node* node);

std::unique_ptr<NodePartDesc> makeDesc(const Tiny::Part& part);

/// Links that are in a field, each with a number of its own.
std::map<const NodeLink*, UInt64>& livingLinks();

} // namespace Orvane
