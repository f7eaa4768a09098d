#pragma once

#include <Orvane/Export.h>
#include <Orvane/NodePartDataType.h>
#include <Orvane/NodePartType.h>
#include <string>
#include <string_view>

namespace Orvane {

class EventInSlot;
class EventOutSlot;
class Node;
class NodePartDesc;

/// A typed value of a node, and the end point of its routes. Owned by its node; base of all `SF...` and
/// `MF...` classes.
class ORVANE_API Field
{
public:
    /// Who writes a value.
    enum CallerType : int {
        EXTERNAL_CT = 0, ///< the host
        EVENT_CT = 1,    ///< a route, a script or a processing object
        LOADER_CT = 2    ///< a scene file: no event comes of it
    };

    /// Made by the node, which is borrowed as its description is.
    Field(Node* node, NodePartDesc* desc);
    Field(const Field&) = delete;
    Field& operator=(const Field&) = delete;
    virtual ~Field();

    /// Name of the field; valid as long as its description.
    virtual const char* name() const;
    virtual NodePartDataType dataType() const = 0;
    /// Name of the data type as shown to the user.
    virtual const std::string& dataTypeName() const;
    virtual NodePartType partType() const;
    /// Name of the field's class, for messages.
    virtual const std::string& fieldTypeName() const;
    /// The whole value as text. `setValueByStr` with this text gives the same value again.
    virtual std::string valueToString() const = 0;
    /// 0 for a single value, 1 for a list of values.
    virtual int cardinality() const = 0;
    /// Number of values of a list; 1 for a single value.
    virtual unsigned int size() const = 0;
    /// Removes all values of a list without firing; does nothing to a single value.
    virtual void clear() = 0;

    /// Parses \a text and sets the value as of the time stamp. A text that does not parse changes nothing and
    /// gives one log line.
    void setValueByStr(const double& time, const char* text);

    /// Tells the runtime that the value was changed in place: routes, observers and the node's behaviour
    /// follow, at the latest in the next frame. A time of 0.0 means now.
    void processValueChange(const double& time, CallerType caller);

    /// Number of routes into the field. \a scene counts those of the scene, \a internal the runtime's own.
    unsigned int inRouteCount(bool scene, bool internal) const;
    /// Number of routes out of the field, as `inRouteCount`.
    unsigned int outRouteCount(bool scene, bool internal) const;

    /// The field's out slot, or null. With \a create true it is made when missing; \a internal marks it as
    /// the runtime's own.
    EventOutSlot* getOutSlot(bool create, bool internal);

    /// Makes the in slot when there is none, whatever the access; \a internal as in `getOutSlot`.
    void createInSlot(bool internal);
    /// Makes the out slot, as `createInSlot`.
    void createOutSlot(bool internal);

    /// The node of the field.
    Node* node() const { return _node; }

    NodePartDesc* _desc;              ///< never null on a live field
    EventInSlot* _inSlot = nullptr;   ///< null until made
    EventOutSlot* _outSlot = nullptr; ///< null until made

    // What a runtime's value classes implement; hosts have no use for these.

    /// Sets the value from text without any event. False, with the reason in \a error, when it does not
    /// parse; the value is then unchanged.
    virtual bool parseValue(std::string_view text, std::string& error) = 0;
    /// Takes over the value of a field of the same data type without any event.
    virtual void assignValue(const Field& other) = 0;
    /// True when a field of the same data type holds the same value.
    virtual bool hasValueOf(const Field& other) const = 0;

protected:
    friend class FieldAccess;

    Node* _node;
    unsigned int _marks = 0; ///< for the runtime: pending event, ownership
};

} // namespace Orvane
