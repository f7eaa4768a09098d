#include "core/AnchorProc.h"
#include "core/OpenAddress.h"
#include "core/Part.h"
#include <Orvane/MFString.h>
#include <Orvane/NodeNameSpace.h>
#include <Relayne/URL.h>

namespace Orvane {

namespace {

const Part urlPart("url");

const ProcRegistration anchor("Anchor", makeProc<AnchorProc>);

} // namespace

bool AnchorProc::isEnabled() const
{
    return urlPart.read<MFString>(node()).size() > 0;
}

void AnchorProc::deactivate(bool over, double time)
{
    if (!_active)
        return;
    _active = false;
    if (over)
        open(time);
}

bool AnchorProc::open(double time)
{
    const Relayne::URL base = node().nameSpace() ? node().nameSpace()->baseURL() : Relayne::URL();
    return openAddress(context(), urlPart.read<MFString>(node()), base, node().nameSpace(), time);
}

} // namespace Orvane
