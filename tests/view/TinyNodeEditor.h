#pragma once

#include "FieldRows.h"
#include "NodeEditorOnScreen.h"

/// A node editor on the screen over a node of the tiny runtime, which outlives it.
template <class Editor>
struct TinyNodeEditor : FieldNode, NodeEditorOnScreen<Editor>
{
    explicit TinyNodeEditor(const std::vector<Tiny::Part>& parts, const QSize& size = QSize(700, 500))
        : FieldNode(parts)
        , NodeEditorOnScreen<Editor>(node.get(), size)
    {
        Tiny::reset();
    }
    // The fields of the node, also while the editor does not show it.
    using FieldNode::field;
    using FieldNode::text;
};
