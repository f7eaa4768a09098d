#pragma once

#include "SceneText.h"
#include "base/Graph.h"
#include "base/Proc.h"
#include "core/SceneProc.h"
#include <Orvane/Context.h>
#include <Orvane/Field.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/Route.h>
#include <Orvane/SFNode.h>
#include <Orvane/Scene.h>
#include <Orvane/System.h>
#include <QtTest>
#include <string>

/// A context with one scene, for tests of what nodes do. Scenes are given in the classic encoding, without
/// the header line. The clock stands at 0 until a test moves it.
class CoreScene
{
public:
    /// \a version is that of X3D, in tenths, which the scene is of.
    explicit CoreScene(const char* text, unsigned int version = Orvane::newestVersion)
    {
        Orvane::System::the().init(0, nullptr, 382);
        context = Orvane::Context::create();
        context->holdTime(1000.0);
        Orvane::Scene::create(context, nullptr, Orvane::HOST_NC);
        Orvane::setFileVersion(*root()->nameSpace(), version);
        SceneText(*context, *root(), text);
        context->setRootState(0.0, Orvane::RUNNING_NS);
        context->runFrame();
    }
    CoreScene(const CoreScene&) = delete;
    CoreScene& operator=(const CoreScene&) = delete;
    ~CoreScene()
    {
        context->subRef();
        Orvane::System::the().exit();
    }

    Orvane::Node* root() const { return context->findRoot(Orvane::Scene::_type); }
    Orvane::SceneProc& proc() const { return *Orvane::procAs<Orvane::SceneProc>(root()); }
    /// The node with a DEF name.
    Orvane::Node& node(const char* name) const
    {
        return *Orvane::NodeNameSpace::findNode(root()->nameSpace(), name);
    }
    Orvane::Field& field(const char* nodeName, const char* fieldName) const
    {
        return *node(nodeName).findField(fieldName, Orvane::Node::DECLARED_FSO);
    }
    template <class P>
    P& procOf(const char* name) const
    {
        return *Orvane::procAs<P>(&node(name));
    }

    /// Writes a field and runs the frame that follows.
    void set(const char* nodeName, const char* fieldName, const char* value) const
    {
        field(nodeName, fieldName).setValueByStr(0.0, value);
        context->runFrame();
    }
    std::string get(const char* nodeName, const char* fieldName) const
    {
        return field(nodeName, fieldName).valueToString();
    }
    /// Moves the clock to 1000 seconds and \a seconds, and runs a frame.
    void runTo(double seconds) const
    {
        context->holdTime(1000.0 + seconds);
        context->runFrame();
    }
    std::size_t messageCount() const { return context->loadReport().messages.size(); }

    Orvane::Context* context;
};
