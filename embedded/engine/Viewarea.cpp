#include "base/NodeClass.h"
#include "base/Proc.h"
#include <Orvane/Viewarea.h>
#include <Orvane/ViewareaProc.h>

namespace Orvane {

namespace {

class ViewareaNode : public Viewarea
{
};

const NodeClassRegistration registration("Viewarea", makeNodeClass<ViewareaNode>);

} // namespace

Viewarea::Viewarea() = default;

Viewarea::~Viewarea() = default;

ViewareaProc* Viewarea::getViewareaProc()
{
    return procAs<ViewareaProc>(this);
}

} // namespace Orvane
