#pragma once

#include <QorCodeWidget.h>

namespace Orvane {
class Node;
}

/// The two nodes that a code widget works on: the one whose url holds the code, and the one whose fields an
/// author adds to. They differ for a part of a shader, whose fields are those of the shader.
struct CodeNodes
{
    Orvane::Node* code = nullptr;
    Orvane::Node* fields = nullptr;

    /// What is edited for a node: a script or shader itself, its first part for a shader of parts, and the
    /// first shader of a shape or an appearance. Both null when there is nothing to edit.
    static CodeNodes of(Orvane::Node* node);

    /// What the code is written in, told by the file that \a widget finds it in, else by the type of the node
    /// and the language that a shader names.
    Orvane::Qt4::QorCodeWidget::LanguageE language(const Orvane::Qt4::QorCodeWidget& widget) const;
};
