#pragma once

#include <Orvane/Node.h>
#include <Orvane/NodeType.h>

namespace Orvane {

/// Root node that holds the windows of a context. When it starts to run without a window it makes one.
class ORVANE_API Engine : public Node
{
public:
    ~Engine() override;

    /// Makes the root of \a owner, which must be a `Context` without one; null otherwise. \a name may be
    /// null.
    static Engine* create(BaseObject* owner, const char* name, NodeCreator creator);

    /// The type of these nodes, by which a context finds its root.
    static NodeType _type;

protected:
    Engine();
};

} // namespace Orvane
