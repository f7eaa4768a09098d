#pragma once

#include "FieldRows.h"
#include "NodeEditorOnScreen.h"

/// The node of a `TinyNodeEditor`, which outlives its editor.
struct TinyNode
{
    explicit TinyNode(const std::vector<Tiny::Part>& parts)
        : node(Tiny::makeNode(Tiny::makeType("Thing", parts)))
    {
    }
    std::unique_ptr<Orvane::Node> node;
};

/// A node editor on the screen over a node of the tiny runtime.
template <class Editor>
struct TinyNodeEditor : TinyNode, NodeEditorOnScreen<Editor>
{
    explicit TinyNodeEditor(const std::vector<Tiny::Part>& parts, const QSize& size = QSize(700, 500))
        : TinyNode(parts)
        , NodeEditorOnScreen<Editor>(node.get(), size)
    {
        Tiny::reset();
    }
    // The fields of the node, also while the editor does not show it.
    Orvane::Field* field(const char* name) const { return node->findField(name, Orvane::Node::EXACT_FSO); }
    std::string text(const char* name) const { return field(name)->valueToString(); }
};
