#pragma once

#include <Orvane/Node.h>
#include <Orvane/NodeType.h>

namespace Orvane {

/// Root node with the settings of a context.
class ORVANE_API ContextSetup : public Node
{
public:
    ~ContextSetup() override;

    /// Makes the root of \a owner, which must be a `Context` without one; null otherwise. \a name may be
    /// null.
    static ContextSetup* create(BaseObject* owner, const char* name, NodeCreator creator);

    /// The type of these nodes, by which a context finds its root.
    static NodeType _type;

protected:
    ContextSetup();
};

} // namespace Orvane
