#pragma once

#include "base/Graph.h"
#include "base/NodeClass.h"
#include <Orvane/Context.h>
#include <Orvane/Field.h>
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>

/// A context of the embedded runtime that ends with the test.
class EmbeddedWorld
{
public:
    EmbeddedWorld()
        : _context(Orvane::Context::create())
    {
    }
    EmbeddedWorld(const EmbeddedWorld&) = delete;
    EmbeddedWorld& operator=(const EmbeddedWorld&) = delete;
    ~EmbeddedWorld() { _context->subRef(); }

    Orvane::Context* operator->() const { return _context; }
    Orvane::NodeRef make(Orvane::NodeType& type) const
    {
        return Orvane::createNode(*_context, type, Orvane::HOST_NC);
    }
    Orvane::NodeRef make(const char* type) const { return make(*Orvane::findType(type)); }
    /// A node below a running scene that nothing else holds.
    Orvane::Node& add(const char* type) const
    {
        Orvane::Node* scene = Orvane::createRoot(_context, "Scene", nullptr, Orvane::HOST_NC);
        children(*scene).addNode(0.0, make(type).get(), Orvane::Field::EXTERNAL_CT);
        _context->setRootState(0.0, Orvane::RUNNING_NS);
        return *children(*scene)[0].node();
    }
    /// Takes the node that was added first out of the scene; it dies.
    void removeAdded() const
    {
        children(*_context->findRoot(*Orvane::findType("Scene")))
            .removeNode(0.0, 0, Orvane::Field::EXTERNAL_CT);
    }

private:
    static Orvane::MFNode& children(Orvane::Node& scene)
    {
        return static_cast<Orvane::MFNode&>(*scene.findField("children", Orvane::Node::EXACT_FSO));
    }

    Orvane::Context* _context;
};
