#pragma once

#include <Orvane/Node.h>

namespace Orvane {

class SceneBaseNodeProc;

/// Base of nodes that hold a scene.
class ORVANE_API SceneBaseNode : public Node
{
public:
    ~SceneBaseNode() override;

    /// The processing object; null before the node runs.
    SceneBaseNodeProc* getSceneBaseNodeProc();

protected:
    SceneBaseNode();
};

} // namespace Orvane
