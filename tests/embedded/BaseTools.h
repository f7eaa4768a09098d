#pragma once

#include "base/Graph.h"
#include "base/NodeClass.h"
#include "base/Proc.h"
#include <Orvane/Context.h>
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodeType.h>
#include <Orvane/Observer.h>
#include <Orvane/Route.h>
#include <functional>
#include <memory>
#include <string>
#include <vector>

/// A context that ends with the test.
class TestContext
{
public:
    TestContext()
        : _context(Orvane::Context::create())
    {
    }
    TestContext(const TestContext&) = delete;
    TestContext& operator=(const TestContext&) = delete;
    ~TestContext() { end(); }

    void end()
    {
        if (_context)
            _context->subRef();
        _context = nullptr;
    }

    Orvane::Context* operator->() const { return _context; }
    Orvane::Context& operator*() const { return *_context; }

    /// A node of a catalogue type without parent.
    Orvane::NodeRef make(const char* type) const
    {
        return Orvane::createNode(*_context, *Orvane::findType(type), Orvane::HOST_NC);
    }

    /// The root with children.
    Orvane::Node& scene() const
    {
        if (!_context->findRoot(*Orvane::findType("Scene")))
            Orvane::createRoot(_context, "Scene", nullptr, Orvane::HOST_NC);
        return *_context->findRoot(*Orvane::findType("Scene"));
    }
    /// A new node below the scene.
    Orvane::Node& add(const char* type) const;

    void run() const { _context->setRootState(0.0, Orvane::RUNNING_NS); }

private:
    Orvane::Context* _context;
};

template <class F>
F& field(Orvane::Node& node, const char* name)
{
    return dynamic_cast<F&>(*node.findField(name, Orvane::Node::DECLARED_FSO));
}

inline void addChild(Orvane::Node& parent, Orvane::Node& child)
{
    field<Orvane::MFNode>(parent, "children").addNode(0.0, &child, Orvane::Field::EXTERNAL_CT);
}

inline Orvane::Node& TestContext::add(const char* type) const
{
    const Orvane::NodeRef node = make(type);
    addChild(scene(), *node);
    return *node;
}

/// Makes the route between two fields, with the slots that it needs.
inline Orvane::Route* connectFields(Orvane::Field& from, Orvane::Field& to,
                                    Orvane::Route::Type type = Orvane::Route::SCENE_RT)
{
    from.createOutSlot(false);
    to.createInSlot(false);
    return Orvane::Route::create(*from._outSlot, *to._inSlot, type);
}

/// An observer that does what the test says.
class TestObserver : public Orvane::Observer
{
public:
    using Action = std::function<void(double, Orvane::BaseObject*, Orvane::BaseObject*)>;

    explicit TestObserver(Action action)
        : Observer("test")
        , _action(std::move(action))
    {
    }
    void notify(const double& time, Orvane::BaseObject* first, Orvane::BaseObject* second,
                Orvane::BaseObject*) override
    {
        ++count;
        if (_action)
            _action(time, first, second);
    }

    int count = 0;

private:
    Action _action;
};
