#pragma once

#include "base/NodeRef.h"
#include "base/Proc.h"
#include <vector>

namespace Orvane {

/// Behaviour of the engine root: sees to it that there is a window, and keeps windows that were taken out of
/// the list alive until the next frame, since host widgets come and go only there.
class EngineProc : public Proc
{
public:
    explicit EngineProc(Node& engine);

    void start(double time) override;
    void childrenChanged(Field& field) override;
    void update() override;

private:
    void makeDefaultWindow();

    std::vector<NodeRef> _windows;
};

} // namespace Orvane
