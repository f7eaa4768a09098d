#pragma once

#include "base/Graph.h"
#include "base/NodeClass.h"
#include <Orvane/Context.h>
#include <Orvane/Field.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFVec3f.h>
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>
#include <string>

/// A node of fields of the benchmark's own.
class BenchNode
{
public:
    BenchNode()
        : _context(Orvane::Context::create())
        , _node(Orvane::createNode(*_context, *Orvane::findType("Script"), Orvane::HOST_NC))
    {
    }
    BenchNode(const BenchNode&) = delete;
    BenchNode& operator=(const BenchNode&) = delete;
    ~BenchNode()
    {
        _node = Orvane::NodeRef();
        _context->subRef();
    }

    /// Puts the node into a running scene, so that its changes are told in frames.
    void run()
    {
        Orvane::Node* scene = Orvane::createRoot(_context, "Scene", nullptr, Orvane::HOST_NC);
        auto* children = static_cast<Orvane::MFNode*>(scene->findField("children", Orvane::Node::EXACT_FSO));
        children->addNode(0.0, _node.get(), Orvane::Field::EXTERNAL_CT);
        _context->setRootState(0.0, Orvane::RUNNING_NS);
        _context->runFrame();
    }

    Orvane::Node* get() const { return _node.get(); }
    Orvane::Context& context() const { return *_context; }
    template <class F>
    F& add(const char* name, Orvane::NodePartDataType type)
    {
        return static_cast<F&>(*Orvane::addField(*_node, name, type, Orvane::EXPOSEDFIELDP));
    }
    /// Adds fields of all kinds until there are as many.
    void fillTo(int count)
    {
        const Orvane::NodePartDataType types[] = {
            Orvane::SFBOOL_DT,   Orvane::SFFLOAT_DT, Orvane::SFVEC3F_DT, Orvane::SFSTRING_DT,
            Orvane::MFSTRING_DT, Orvane::MFFLOAT_DT, Orvane::SFCOLOR_DT, Orvane::MFVEC3F_DT};
        for (int i = 0; static_cast<int>(_node->partDescCount()) < count; ++i) {
            Orvane::Field* field =
                Orvane::addField(*_node, "field" + std::to_string(i), types[i % 8], Orvane::EXPOSEDFIELDP);
            if (auto* floats = dynamic_cast<Orvane::MFFloat*>(field))
                floats->editValues().assign(50, 0.1F);
            if (auto* points = dynamic_cast<Orvane::MFVec3f*>(field))
                points->editValues().assign(50, osg::Vec3f(0.1F, 0.2F, 0.3F));
        }
    }

private:
    Orvane::Context* _context;
    Orvane::NodeRef _node;
};
