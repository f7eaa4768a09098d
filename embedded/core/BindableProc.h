#pragma once

#include "core/ElementProc.h"
#include "core/LayerSeat.h"
#include <Orvane/Export.h>

namespace Orvane {

/// Behaviour of a node of which one at a time is bound in a scene.
class ORVANE_API BindableProc : public ElementProc
{
public:
    BindableProc(Node& node, BindableKind kind);
    ~BindableProc() override;

    void start(double time) override;
    void fieldChanged(Field& field, double time) override;
    void update() override;
    /// Lets another one be bound meanwhile.
    bool rest(double time) override;
    /// Binds the node again if it was bound.
    void resume(double time) override;

    bool isBound() const;
    /// The layer in which the node takes part; null when it stands in none that runs.
    SceneLayer* layer() const { return _scene ? _scene->layer() : nullptr; }
    /// Does what the event `set_bind` does.
    void bind(bool value, double time);

protected:
    friend class BindableStack;

    /// The stack has made the node its top, or taken that from it.
    virtual void setBound(bool bound, double time);

    /// Null before the node runs.
    SceneState* scene() const { return _scene.get(); }

private:
    void join(bool candidate, double time);

    LayerSeat _scene;
    BindableKind _kind;
    bool _wasBound = false; ///< before it was put to rest
};

} // namespace Orvane
