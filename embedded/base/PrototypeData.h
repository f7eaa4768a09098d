#pragma once

#include "base/BodyPlan.h"
#include "base/ProtoDeclaration.h"
#include "base/TypeData.h"
#include <cstddef>
#include <memory>

namespace Orvane {

/// What the type of a prototype has beside its parts. The last part is the body.
///
/// The type lives as long as somebody asked for it or a node of it is there, its own model not counted.
struct PrototypeData
{
    ProtoDeclaration declaration;
    std::unique_ptr<BodyPlan> plan;       ///< made when the first instance is
    std::vector<WaitingInstance> waiting; ///< instances in the model that have no bodies yet
    ProtoSize size;                       ///< with their bodies; only of a model that had such instances

    std::size_t nodeCount = 0;      ///< living nodes of the type, the model among them
    std::weak_ptr<NodeType> self;   ///< as it was made
    std::shared_ptr<NodeType> kept; ///< the same while it has instances
    bool isOrphan = false;          ///< only waits for the end of its model
};

/// The type has got or lost instances or its model.
void keepWhileUsed(PrototypeData& data);

inline unsigned int bodyPart(const NodeType& type)
{
    return static_cast<unsigned int>(typeData(type).parts.size()) - 1;
}

/// Hands the value of a field of an instance into the body, through instances inside it too.
void handIntoBody(Field& instanceField);

/// Gives the instances in the model of a type, and in the models that it needs, their bodies. False when
/// these would be too large.
bool prepareModels(const NodeType& type);

/// The plan of a prototype's body; null while it has no model, and when its models would be too large.
BodyPlan* bodyPlan(const NodeType& type);

} // namespace Orvane
