#pragma once

#include "tinyruntime/Runtime.h"
#include <QtCore/QByteArray>
#include <QtCore/QList>
#include <map>

/// A running graph of the tiny runtime below a root node that goes with the test. Nodes of every type have
/// the fields "title" (no nodes), "single" (one node), "children" (many), "in" and "out" (events).
class TinyTree
{
public:
    explicit TinyTree(const char* rootType = "Scene")
        : _root(Tiny::makeNode(type(rootType), "root"))
    {
        _root->data()->isRoot = true;
        Tiny::setState(_root.get(), Orvane::RUNNING_NS);
    }

    Orvane::Node& root() const { return *_root; }
    void end() { _root.reset(); }

    /// The type of the name; one that begins with "Proto" is a prototype's, "Scene" is a context root's.
    static Orvane::NodeType* type(const std::string& name)
    {
        static std::map<std::string, Orvane::NodeType*> types;
        Orvane::NodeType*& type = types[name];
        if (!type) {
            const auto part = [](const char* field, Orvane::NodePartDataType dataType,
                                 Orvane::NodePartType access) {
                Tiny::Part result;
                result.name = field;
                result.dataType = dataType;
                result.access = access;
                return result;
            };
            type = Tiny::makeType(name, {part("title", Orvane::SFSTRING_DT, Orvane::EXPOSEDFIELDP),
                                         part("single", Orvane::SFNODE_DT, Orvane::FIELDP),
                                         part("children", Orvane::MFNODE_DT, Orvane::EXPOSEDFIELDP),
                                         part("in", Orvane::SFNODE_DT, Orvane::EVENTINP),
                                         part("out", Orvane::MFNODE_DT, Orvane::EVENTOUTP)});
            Orvane::NodeType::Data::mark(*type, name.rfind("Proto", 0) == 0, name == "Scene");
        }
        return type;
    }

    /// A new running node at the end of a field.
    static Orvane::Node& add(Orvane::Node& parent, const char* typeName, const char* name = nullptr,
                             const char* field = "children")
    {
        Orvane::Node* node = make(typeName, name);
        Tiny::link(&parent, field, node);
        return *node;
    }
    /// A new running node; it is the caller's while no link leads to it.
    static Orvane::Node* make(const char* typeName, const char* name = nullptr)
    {
        Orvane::Node* node = Tiny::makeNode(type(typeName), name);
        Tiny::setState(node, Orvane::RUNNING_NS);
        return node;
    }
    static Orvane::MFNode& children(Orvane::Node& node, const char* field = "children")
    {
        return dynamic_cast<Orvane::MFNode&>(*node.findField(field, Orvane::Node::EXACT_FSO));
    }
    static Orvane::SFNode& single(Orvane::Node& node, const char* field = "single")
    {
        return dynamic_cast<Orvane::SFNode&>(*node.findField(field, Orvane::Node::EXACT_FSO));
    }

private:
    std::unique_ptr<Orvane::Node> _root;
};

/// A link that says it is in a field and is not.
struct StrayLink : Orvane::NodeLink
{
    StrayLink(Orvane::Field* field, Orvane::Node* node)
    {
        _field = field;
        _node = node;
    }
};

/// As the log prints it.
inline QByteArray address(const void* pointer)
{
    char buffer[64];
    qsnprintf(buffer, sizeof(buffer), "%p", pointer);
    return buffer;
}
