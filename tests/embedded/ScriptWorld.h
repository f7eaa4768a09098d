#pragma once

#include "../opensg/LogCollector.h"
#include "base/Graph.h"
#include <Orvane/Context.h>
#include <Orvane/Field.h>
#include <Orvane/LoadReport.h>
#include <Orvane/Node.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/Scene.h>
#include <Orvane/System.h>
#include <QByteArray>
#include <QList>
#include <string>

using Lines = QList<QByteArray>;

/// A running world with scripts, whose clock stands at 1000 seconds until a test moves it. Its log is kept.
class ScriptWorld
{
public:
    /// \a text is a scene in the classic encoding, without the header line.
    explicit ScriptWorld(const std::string& text, const std::string& base = "scene.x3dv")
        : _collector(*osg::osgLogP)
        , _context(Orvane::Context::create())
    {
        osg::osgLogP->setLogLevel(osg::LOG_WARNING, true);
        osg::osgLogP->setHeaderElem(osg::LOG_NONE_HEADER, true);
        _context->holdTime(1000.0);
        _ok = _context->load(base, "#X3D V3.3 utf8\n" + text, Orvane::Context::REPLACE_LT, {});
        _context->setRootState(0.0, Orvane::RUNNING_NS);
        _context->runFrame();
        _context->runFrame();
    }
    /// A script with the fields and the code, in a world of its own.
    static std::string script(const std::string& fields, const std::string& code)
    {
        return "DEF S Script { directOutput TRUE " + fields + " url \"ecmascript:" + code + "\" }\n";
    }
    ScriptWorld(const ScriptWorld&) = delete;
    ScriptWorld& operator=(const ScriptWorld&) = delete;
    ~ScriptWorld() { _context->subRef(); }

    bool ok() const { return _ok; }
    Orvane::Context& context() const { return *_context; }
    Orvane::Node* root() const { return _context->findRoot(Orvane::Scene::_type); }
    Orvane::Node* find(const char* name) const
    {
        return Orvane::NodeNameSpace::findNode(root()->nameSpace(), name);
    }
    Orvane::Field& field(const char* node, const char* name) const
    {
        return *find(node)->findField(name, Orvane::Node::DECLARED_FSO);
    }
    QByteArray get(const char* node, const char* name) const
    {
        return QByteArray::fromStdString(field(node, name).valueToString());
    }
    /// Writes a field as a host does, and runs the frame that follows.
    void set(const char* node, const char* name, const char* value) const
    {
        field(node, name).setValueByStr(0.0, value);
        _context->runFrame();
    }
    void frame() const { _context->runFrame(); }
    void frameAt(double seconds) const
    {
        _context->holdTime(1000.0 + seconds);
        _context->runFrame();
    }
    /// The lines of the log since the last call.
    Lines log()
    {
        Lines lines = QByteArray::fromStdString(_collector.take()).split('\n');
        lines.removeAll(QByteArray());
        return lines;
    }

private:
    LogCollector _collector;
    Orvane::Context* _context;
    bool _ok = false;
};
