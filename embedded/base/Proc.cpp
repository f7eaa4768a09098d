#include "base/Proc.h"
#include "base/ContextData.h"
#include "base/NodeData.h"

namespace Orvane {

Proc::Proc(Node& node)
    : _node(&node)
    , _updateSlot(0)
    , _settleRequested(0)
{
}

Proc::~Proc()
{
    contextData(*_node).scheduler.forget(*this);
    contextData(*_node).cascade.forget(*this);
}

Context& Proc::context() const
{
    return *_node->data()->context;
}

void Proc::start(double)
{
}

void Proc::fieldChanged(Field&, double)
{
}

void Proc::settle(double)
{
}

void Proc::fieldsChanged()
{
}

void Proc::tick(double)
{
}

void Proc::update()
{
}

void Proc::childrenChanged(Field&)
{
    requestUpdate();
}

void Proc::leaveWorld()
{
}

bool Proc::rest(double)
{
    return false;
}

void Proc::resume(double)
{
}

void Proc::ending()
{
}

void Proc::requestSettle()
{
    contextData(*_node).cascade.requestSettle(*this);
}

void Proc::requestUpdate()
{
    contextData(*_node).scheduler.requestUpdate(*this);
}

void Proc::setTicking(bool ticking)
{
    contextData(*_node).scheduler.setTicking(*this, ticking);
}

void Proc::requestFrame(double seconds)
{
    contextData(*_node).scheduler.requestFrame(seconds);
}

void Proc::pictureChanged()
{
    contextData(*_node).scheduler.pictureChanged();
}

unsigned long Proc::pictureVersion() const
{
    return contextData(*_node).scheduler.pictureVersion();
}

Proc* procOf(const Node& node)
{
    return node.data()->proc.get();
}

} // namespace Orvane
