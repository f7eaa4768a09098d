// The destructors that anchor the type information of the small base classes.
#include "base/FrameWindow.h"
#include "base/Graph.h"
#include <Orvane/BaseObject.h>
#include <Orvane/Context.h>
#include <Orvane/NodeProc.h>
#include <Orvane/NotificationHandler.h>
#include <Orvane/RefCountObject.h>

namespace Orvane {

BaseObject::~BaseObject() = default;

NotificationHandler::~NotificationHandler() = default;

FrameWindow::~FrameWindow() = default;

RefCountObject::~RefCountObject() = default;

void RefCountObject::subRef() const
{
    if (--_refCount <= 0)
        delete this;
}

NodeProc::~NodeProc() = default;

double NodeProc::contextTimeStamp()
{
    return _node ? contextOf(*_node).timeStamp() : 0.0;
}

} // namespace Orvane
