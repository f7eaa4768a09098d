#pragma once

#include <QUndoStack>
#include <QorMetaTypes.h>

/// What the user did to the scene and can take back, with signals for panels: a step that is taken back or
/// done again tells what it has changed. A step that is pushed tells too, unless it was done before.
class Steps : public QUndoStack
{
    Q_OBJECT

public:
    explicit Steps(QObject* parent);

signals:
    /// A field of the node has another value.
    void valueGiven(Orvane::Node* node);
    /// The node has other fields.
    void fieldsChanged(Orvane::Node* node);
    /// The node has come to a place of the graph.
    void nodePlaced(Orvane::Node* node);
    /// The node lives, but is no longer part of the scene.
    void nodeLeft(Orvane::Node* node);
    /// A node is no longer below this one.
    void childTaken(Orvane::Node* parent);
};
