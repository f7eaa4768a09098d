#include "NodeSearch.h"

#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodeLink.h>
#include <Orvane/NodeType.h>
#include <QorTools.h>
#include <unordered_set>

NodeSearch::NodeSearch(Orvane::Node& root, bool withBodies)
{
    std::unordered_set<const Orvane::Node*> known;
    std::vector<Place> waiting{{&root, nullptr, -1}};
    while (!waiting.empty()) {
        const Place place = waiting.back();
        waiting.pop_back();
        if (!known.insert(place.node).second)
            continue;
        const int index = size();
        _places.push_back(place);
        if (place.node->type()->isProto() && !withBodies)
            continue;
        QList<Orvane::NodeLink*> links;
        Orvane::Qt4::nodeLinks(place.node, links, false);
        for (auto link = links.crbegin(); link != links.crend(); ++link) {
            const Orvane::NodePartType part = (*link)->field()->partType();
            if (part != Orvane::EVENTINP && part != Orvane::EVENTOUTP)
                waiting.push_back({(*link)->directNode(), *link, index});
        }
    }
}

Orvane::NodePath NodeSearch::path(int place) const
{
    std::list<Orvane::NodeLink*> links;
    for (int i = place; i >= 0; i = _places[static_cast<std::size_t>(i)].above) {
        if (Orvane::NodeLink* link = _places[static_cast<std::size_t>(i)].link)
            links.push_back(link);
    }
    return links.empty() ? Orvane::NodePath(node(place)) : Orvane::NodePath(links);
}
