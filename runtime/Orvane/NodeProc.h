#pragma once

#include <Orvane/BaseObject.h>

namespace Orvane {

class Node;

/// The processing object of a node: what the node does. Owned by the runtime.
class ORVANE_API NodeProc : public BaseObject
{
public:
    NodeProc(const NodeProc&) = delete;
    NodeProc& operator=(const NodeProc&) = delete;
    ~NodeProc() override;

    /// Time stamp in seconds of the current frame of the node's context; it does not change within a frame,
    /// is never negative and never goes back.
    double contextTimeStamp();

protected:
    explicit NodeProc(Node* node)
        : _node(node)
    {
    }

    Node* _node;
};

} // namespace Orvane
