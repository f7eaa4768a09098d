#include "core/AnchorProc.h"
#include "core/BindableProc.h"
#include <Orvane/Context.h>
#include <Orvane/MFString.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/Scene.h>
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
    const MFString& urls = urlPart.read<MFString>(node());
    const Relayne::URL base = node().nameSpace() ? node().nameSpace()->baseURL() : Relayne::URL();
    for (unsigned int i = 0; i < urls.size(); ++i) {
        const Relayne::URL address(urls[static_cast<int>(i)]);
        const bool isHere = address.scheme().empty() && address.authority().empty() && address.path().empty();
        if (isHere) {
            if (bindViewpoint(address.fragment(), node().nameSpace(), time))
                return true;
            continue;
        }
        const Relayne::URL target = base.resolved(address);
        if (!context().load(target.toString(), Context::REPLACE_LT, {}))
            continue;
        const Node* const scene = context().findRoot(Scene::_type);
        if (scene && !target.fragment().empty())
            bindViewpoint(target.fragment(), scene->nameSpace(), time);
        return true;
    }
    return false;
}

bool AnchorProc::bindViewpoint(const std::string& name, NodeNameSpace* names, double time)
{
    Node* const viewpoint = names ? NodeNameSpace::findNode(names, name) : nullptr;
    auto* const bindable = elementOf<BindableProc>(viewpoint);
    if (!bindable)
        return false;
    bindable->bind(true, time);
    return true;
}

} // namespace Orvane
