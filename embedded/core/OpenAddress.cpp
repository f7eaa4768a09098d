#include "core/OpenAddress.h"

#include "core/BindableProc.h"
#include <Orvane/Context.h>
#include <Orvane/MFString.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/Scene.h>
#include <Relayne/URL.h>
#include <string>
#include <vector>

namespace Orvane {

namespace {

bool bindViewpoint(const std::string& name, NodeNameSpace* names, double time)
{
    Node* const viewpoint = names ? NodeNameSpace::findNode(names, name) : nullptr;
    auto* const bindable = elementOf<BindableProc>(viewpoint);
    if (!bindable)
        return false;
    bindable->bind(true, time);
    return true;
}

} // namespace

bool openAddress(Context& context, const MFString& addresses, const Relayne::URL& base, NodeNameSpace* names,
                 double time)
{
    std::vector<std::string> texts; // the list may go with its world
    for (unsigned int i = 0; i < addresses.size(); ++i)
        texts.push_back(addresses[static_cast<int>(i)]);
    for (const std::string& text : texts) {
        const Relayne::URL address(text);
        const bool isHere = address.scheme().empty() && address.authority().empty() && address.path().empty();
        if (isHere) {
            if (bindViewpoint(address.fragment(), names, time))
                return true;
            continue;
        }
        const Relayne::URL target = base.resolved(address);
        if (!context.load(target.toString(), Context::REPLACE_LT, {}))
            continue;
        const Node* const scene = context.findRoot(Scene::_type);
        if (scene && !target.fragment().empty())
            bindViewpoint(target.fragment(), scene->nameSpace(), time);
        return true;
    }
    return false;
}

} // namespace Orvane
