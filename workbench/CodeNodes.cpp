#include "CodeNodes.h"

#include <Orvane/MFNode.h>
#include <Orvane/MFString.h>
#include <Orvane/NodePath.h>
#include <Orvane/NodeType.h>
#include <Orvane/SFNode.h>
#include <Orvane/SFString.h>
#include <QFileInfo>
#include <QorTools.h>

using Orvane::Qt4::QorCodeWidget;

namespace {

struct Suffix
{
    const char* suffix;
    QorCodeWidget::LanguageE language;
};

const Suffix suffixes[] = {
    {"js", QorCodeWidget::LANGUAGE_ECMA},    {"es", QorCodeWidget::LANGUAGE_ECMA},
    {"mjs", QorCodeWidget::LANGUAGE_ECMA},   {"glsl", QorCodeWidget::LANGUAGE_GLSL},
    {"vs", QorCodeWidget::LANGUAGE_GLSL},    {"fs", QorCodeWidget::LANGUAGE_GLSL},
    {"vert", QorCodeWidget::LANGUAGE_GLSL},  {"frag", QorCodeWidget::LANGUAGE_GLSL},
    {"geom", QorCodeWidget::LANGUAGE_GLSL},  {"cg", QorCodeWidget::LANGUAGE_CG},
    {"hlsl", QorCodeWidget::LANGUAGE_OTHER}, {"fx", QorCodeWidget::LANGUAGE_OTHER},
    {"x3d", QorCodeWidget::LANGUAGE_X3D},    {"x3dv", QorCodeWidget::LANGUAGE_X3D},
};

bool isOfType(const Orvane::Node& node, const char* type)
{
    return node.type()->name == type;
}

/// The first node that a field links to; null when there is none.
Orvane::Node* firstNode(const Orvane::Node& node, const char* name)
{
    Orvane::Field* field = node.findField(name, Orvane::Node::EXACT_FSO);
    if (auto* single = dynamic_cast<Orvane::SFNode*>(field))
        return single->link().node();
    auto* multi = dynamic_cast<Orvane::MFNode*>(field);
    return multi && multi->size() > 0 ? multi->elem(0).node() : nullptr;
}

/// The node above a node at its oldest place; null for a root.
Orvane::Node* parentOf(Orvane::Node& node)
{
    std::list<Orvane::NodeLink*> links;
    Orvane::NodePath(&node).nodeLinks(links);
    return links.empty() ? nullptr : links.front()->parent();
}

/// The first shader of a shape or an appearance, or the node itself.
Orvane::Node* shaderOf(Orvane::Node* node)
{
    if (node && isOfType(*node, "Shape"))
        node = firstNode(*node, "appearance");
    if (node && isOfType(*node, "Appearance"))
        node = firstNode(*node, "shaders");
    return node;
}

QString shaderLanguage(Orvane::Node& fields)
{
    // The programs of a shader leave the language to the shader.
    Orvane::Node* shader = isOfType(fields, "ShaderProgram") ? parentOf(fields) : &fields;
    const auto* language =
        shader ? dynamic_cast<Orvane::SFString*>(shader->findField("language", Orvane::Node::EXACT_FSO))
               : nullptr;
    return language ? Orvane::Qt4::fromRuntime(language->value()).toUpper() : QString();
}

} // namespace

CodeNodes CodeNodes::of(Orvane::Node* node)
{
    node = shaderOf(node);
    if (!node)
        return {};
    for (const char* type : {"Script", "ShaderProgram", "PackagedShader"}) {
        if (isOfType(*node, type))
            return {node, node};
    }
    if (isOfType(*node, "ComposedShader")) {
        Orvane::Node* part = firstNode(*node, "parts");
        return {part ? part : node, node};
    }
    if (isOfType(*node, "ProgramShader")) {
        Orvane::Node* program = firstNode(*node, "programs");
        return program ? CodeNodes{program, program} : CodeNodes{node, node};
    }
    if (isOfType(*node, "ShaderPart")) {
        Orvane::Node* shader = parentOf(*node);
        return {node, shader && isOfType(*shader, "ComposedShader") ? shader : node};
    }
    if (dynamic_cast<Orvane::MFString*>(node->findField("shaderUrl", Orvane::Node::EXACT_FSO)))
        return {node, node};
    return {};
}

QorCodeWidget::LanguageE CodeNodes::language(const QorCodeWidget& widget) const
{
    if (!code || !fields)
        return QorCodeWidget::LANGUAGE_NONE;
    Orvane::MFString* url = QorCodeWidget::urlField(code);
    if (widget.isUsingExternalScript(url)) {
        const QString suffix = QFileInfo(QUrl(Orvane::Qt4::fromRuntime((*url)[0])).path()).suffix().toLower();
        for (const Suffix& each : suffixes) {
            if (suffix == QLatin1String(each.suffix))
                return each.language;
        }
    }
    if (isOfType(*code, "Script"))
        return QorCodeWidget::LANGUAGE_ECMA;
    const QString language = shaderLanguage(*fields);
    if (language == QLatin1String("CG"))
        return QorCodeWidget::LANGUAGE_CG;
    return language.isEmpty() || language == QLatin1String("GLSL") ? QorCodeWidget::LANGUAGE_GLSL
                                                                   : QorCodeWidget::LANGUAGE_OTHER;
}
