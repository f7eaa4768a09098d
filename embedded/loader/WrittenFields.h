#pragma once

#include <Orvane/SaveOptions.h>
#include <vector>

namespace Orvane {

class Field;
class Node;
class SceneEmitter;

/// Says which fields of a node are written, in the scene or in the body of a prototype.
class WrittenFields
{
public:
    /// \a model is that of the prototype; null for the scene.
    WrittenFields(const SaveOptions& options, const SceneEmitter& emitter, const Node* model)
        : _options(options)
        , _emitter(emitter)
        , _model(model)
    {
    }

    const Node* model() const { return _model; }

    /// The fields of a node that need a look: those that were made, unless others are written too.
    void fieldsOf(const Node& node, std::vector<const Field*>& fields) const;
    /// Appends to \a content the declared ones of these fields, then those that are written with their nodes.
    void contentOf(const Node& node, const std::vector<const Field*>& fields,
                   std::vector<const Field*>& content) const;
    /// True for a field that is written, and is neither declared nor private.
    bool isWritten(const Node& node, const Field& field) const;

    /// The fields of the prototype around for which a field of its body stands.
    std::vector<const Field*> connectionsOf(const Field& field) const;
    /// True for a field that has its value from the prototype around.
    bool hasValueByIs(const Field& field) const;

private:
    bool holdsDefaultNodes(const Node& instance, const Field& field) const;

    const SaveOptions& _options;
    const SceneEmitter& _emitter;
    const Node* _model;
};

} // namespace Orvane
