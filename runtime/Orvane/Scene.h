#pragma once

#include <Orvane/NodeType.h>
#include <Orvane/SceneBaseNode.h>

namespace Orvane {

/// Root node that holds what is seen.
class ORVANE_API Scene : public SceneBaseNode
{
public:
    ~Scene() override;

    /// Makes the root of \a owner, which must be a `Context` without one; null otherwise. \a name may be
    /// null.
    static Scene* create(BaseObject* owner, const char* name, NodeCreator creator);

    /// The type of these nodes, by which a context finds its root.
    static NodeType _type;

protected:
    Scene();
};

} // namespace Orvane
