#pragma once

#include "base/SmallBlocks.h"
#include <Orvane/Export.h>
#include <cstdint>

namespace Orvane {

class Context;
class Field;
class Node;
class NodeProc;

/// What a node does. The node owns it and makes it when it comes to run. A type of which no pool knows a
/// behaviour has none: its nodes keep their fields, take edits and routes, and are saved.
class ORVANE_API Proc
{
public:
    explicit Proc(Node& node);
    Proc(const Proc&) = delete;
    Proc& operator=(const Proc&) = delete;
    virtual ~Proc();

    ORVANE_IN_SMALL_BLOCKS

    Node& node() const { return *_node; }
    Context& context() const;

    /// The interface object that hosts see, for the few nodes that have one.
    virtual NodeProc* nodeProc() { return nullptr; }

    /// The node and what hangs below it have come to run; called once, children first.
    virtual void start(double time);

    /// A value arrived at \a field by a write or a route. Called inside the cascade, once per event. What the
    /// behaviour itself writes to its node as `EVENT_CT` goes out without this call.
    virtual void fieldChanged(Field& field, double time);

    /// The events of the run in which `requestSettle` was called have been delivered. What is written now is
    /// delivered in the same run.
    virtual void settle(double time);

    /// A field was added to the node, or taken out of it.
    virtual void fieldsChanged();

    /// Called once a frame before the events while ticking (see `setTicking`).
    virtual void tick(double time);

    /// Brings what is drawn in step with the fields. Called once, after the events of the frame in which
    /// `requestUpdate` was called.
    virtual void update();

    /// A child of the node was linked or is about to be unlinked; by default asks for an update.
    virtual void childrenChanged(Field& field);

    /// The world in which the node stood has been replaced, whatever may still hold the node.
    virtual void leaveWorld();

    /// The node has been taken out of its scene, and may come back. True when the behaviour waits for that:
    /// nothing is called until `resume`. Else, as by default, it ends, and another one starts then.
    virtual bool rest(double time);
    /// The node has come back, and runs again.
    virtual void resume(double time);

    /// The node is about to die, while it still is of its own class. Not called when a host deletes the node.
    virtual void ending();

    /// Changes whenever a behaviour tells that the picture does.
    unsigned long pictureVersion() const;

protected:
    /// Asks for `settle` in the present run of events, or in the next one.
    void requestSettle();

    /// Asks for `update` in this frame (or the next one, outside a frame).
    void requestUpdate();

    /// Puts the node on the list of those that tick, or takes it off. Inside `tick` too. While it ticks there
    /// is a frame at each 60 Hz tick, unless `tick` asks for its next one by `requestFrame`.
    void setTicking(bool ticking);

    /// Wants the next frame at the latest in \a seconds; 0 means at the next 60 Hz tick. Holds for one frame.
    void requestFrame(double seconds = 0.0);

    /// The next frame draws a new picture.
    void pictureChanged();

private:
    friend class Cascade;
    friend class FrameScheduler;

    Node* _node;
    std::uint32_t _tickSlot = 0;        ///< place in the context's list of ticking nodes, 0 when not ticking
    std::uint32_t _updateSlot : 31;     ///< place in the list of updates, 0 when none was asked for
    std::uint32_t _settleRequested : 1; ///< the end of the run of events is waited for
};

/// Makes the behaviour of a node of one type; null when the node is to have none.
using ProcFactory = Proc* (*)(Node& node);

/// In place of a type's name: all types that the catalogue does not have.
constexpr const char* anyUnknownType = "*";

/// Registers the behaviour of the type called \a typeName. Pools do so when they are loaded, one line a type:
/// `static const ProcRegistration box("Box", makeProc<BoxProc>);`
class ORVANE_API ProcRegistration
{
public:
    ProcRegistration(const char* typeName, ProcFactory factory);
};

template <class P>
Proc* makeProc(Node& node)
{
    return new P(node);
}

/// The behaviour of a node as a \a P; null when it has none, none yet, or another one.
ORVANE_API Proc* procOf(const Node& node);

template <class P>
P* procAs(const Node* node)
{
    return node ? dynamic_cast<P*>(procOf(*node)) : nullptr;
}

} // namespace Orvane
