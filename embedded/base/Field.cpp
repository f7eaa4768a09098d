#include "base/ContextData.h"
#include "base/Log.h"
#include "base/NodeData.h"
#include <OpenSG/OSGLog.h>
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/Field.h>
#include <Orvane/FieldType.h>
#include <Orvane/Route.h>
#include <algorithm>

namespace Orvane {

namespace {

unsigned int routeCount(const EventSlot* slot, bool scene, bool internal)
{
    if (!slot)
        return 0;
    return static_cast<unsigned int>(std::count_if(slot->begin(), slot->end(), [=](const Route* route) {
        return route->type() == Route::IS_RT ? internal : scene;
    }));
}

} // namespace

Field::Field(Node* node, NodePartDesc* desc)
    : _desc(desc)
    , _node(node)
{
}

Field::~Field()
{
    if (_marks != 0)
        contextData(*_node).cascade.forget(*this);
    delete _inSlot;
    delete _outSlot;
}

const char* Field::name() const
{
    return _desc->name.c_str();
}

const std::string& Field::dataTypeName() const
{
    return FieldType::dataTypeName(dataType());
}

NodePartType Field::partType() const
{
    return _desc->partType;
}

const std::string& Field::fieldTypeName() const
{
    return dataTypeName();
}

void Field::setValueByStr(const double& time, const char* text)
{
    std::string error;
    const Node* const owner = _node;
    const UInt64 ownerId = owner ? owner->ID() : 0;
    if (parseValue(text ? text : "", error)) {
        // A text that links nodes makes observers work, who may end this one.
        if (!owner || Node::findNode(ownerId) == owner)
            processValueChange(time, EXTERNAL_CT);
        return;
    }
    ORVANE_LOG(osg::LOG_WARNING, "Node \"%s\", field \"%s\" (%s): %s.\n",
               _node ? _node->getIDStr().c_str() : "", name(), dataTypeName().c_str(), error.c_str());
}

void Field::processValueChange(const double& time, CallerType caller)
{
    if (caller == LOADER_CT || !_node || _node->state() != RUNNING_NS || _desc->id == removedPart)
        return;
    contextData(*_node).cascade.write(*this, time, caller);
}

unsigned int Field::inRouteCount(bool scene, bool internal) const
{
    return routeCount(_inSlot, scene, internal);
}

unsigned int Field::outRouteCount(bool scene, bool internal) const
{
    return routeCount(_outSlot, scene, internal);
}

EventOutSlot* Field::getOutSlot(bool create, bool internal)
{
    if (create)
        createOutSlot(internal);
    return _outSlot;
}

void Field::createInSlot(bool)
{
    if (!_inSlot)
        _inSlot = new EventInSlot(this);
}

void Field::createOutSlot(bool)
{
    if (!_outSlot)
        _outSlot = new EventOutSlot(this);
}

} // namespace Orvane
