#pragma once

#include "base/Graph.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/Context.h>
#include <Orvane/LoadReport.h>
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodeType.h>
#include <QString>
#include <QStringList>
#include <string>

/// A context with a scene that a test loads, and short ways to look at it.
class LoadedText
{
public:
    LoadedText()
        : _context(Orvane::Context::create())
    {
        osg::osgLog().setLogLevel(osg::LOG_LOG); // tests read the report
    }
    /// The nodes of a scene in XML, between the tags of the root elements.
    explicit LoadedText(const std::string& nodes)
        : LoadedText()
    {
        ok = load(document(nodes));
    }
    LoadedText(const LoadedText&) = delete;
    LoadedText& operator=(const LoadedText&) = delete;
    ~LoadedText() { _context->subRef(); }

    /// Keeps the text on lines of its own, so that the nodes begin on line 2.
    static std::string document(const std::string& nodes)
    {
        return "<X3D version='4.0' profile='Full'><Scene>\n" + nodes + "\n</Scene></X3D>\n";
    }

    bool load(const std::string& text)
    {
        return _context->load("scene.x3d", text, Orvane::Context::REPLACE_LT, {});
    }
    bool loadFile(const std::string& path) { return _context->load(path, Orvane::Context::REPLACE_LT, {}); }

    Orvane::Context& context() const { return *_context; }
    const Orvane::LoadReport& report() const { return _context->loadReport(); }

    /// The messages as "line:column text", in order.
    QStringList messages() const
    {
        QStringList list;
        for (const Orvane::LoadMessage& message : report().messages)
            list << QStringLiteral("%1:%2 %3")
                        .arg(message.line)
                        .arg(message.column)
                        .arg(QString::fromStdString(message.text));
        return list;
    }

    Orvane::Node* root(const char* type) const { return _context->findRoot(*Orvane::findType(type)); }
    Orvane::Node* scene() const { return root("Scene"); }
    Orvane::Node* find(const char* name) const
    {
        return Orvane::NodeNameSpace::findNode(scene() ? scene()->nameSpace() : nullptr, name);
    }
    /// Value of a field as text; "no node", "no field" when that is missing.
    static QString value(Orvane::Node* node, const char* field)
    {
        if (!node)
            return QStringLiteral("no node");
        Orvane::Field* found = node->findField(field, Orvane::Node::EXACT_FSO);
        return found ? QString::fromStdString(found->valueToString()) : QStringLiteral("no field");
    }
    QString value(const char* name, const char* field) const { return value(find(name), field); }

    /// The graph below a node as "Type(Type Type(Type))", a node that was told already as "*".
    static QString outline(Orvane::Node* node)
    {
        if (!node)
            return QStringLiteral("null");
        QString text = QString::fromStdString(node->type()->name);
        std::vector<Orvane::Node*> children;
        node->collectAllChildren(children, 0);
        QStringList parts;
        for (Orvane::Node* child : children)
            parts << outline(child);
        return parts.isEmpty() ? text
                               : text + QLatin1Char('(') + parts.join(QLatin1Char(' ')) + QLatin1Char(')');
    }

    bool ok = false;

private:
    Orvane::Context* _context;
};
