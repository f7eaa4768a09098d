#include "GraphCompare.h"

#include "base/Graph.h"
#include "base/ProtoDeclaration.h"
#include <Orvane/EventInSlot.h>
#include <Orvane/EventOutSlot.h>
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <Orvane/Route.h>
#include <Orvane/SFNode.h>
#include <algorithm>
#include <unordered_map>
#include <vector>

using namespace Orvane;

namespace {

struct Pair
{
    Node* first;
    Node* second;
    QString path;
};

std::vector<Node*> linked(Field& field)
{
    std::vector<Node*> nodes;
    if (field.dataType() == SFNODE_DT) {
        if (Node* node = static_cast<SFNode&>(field).link().directNode())
            nodes.push_back(node);
    } else {
        for (NodeLink& link : static_cast<MFNode&>(field))
            nodes.push_back(link.directNode());
    }
    return nodes;
}

class Comparison
{
public:
    explicit Comparison(GraphLeniency ignored)
        : _ignored(ignored)
    {
    }

    QString run(Node* first, Node* second)
    {
        visit(first, second, QStringLiteral("root"));
        if (first && second)
            visitPrototypes(declaredPrototypes(*first), declaredPrototypes(*second), QStringLiteral("root"));
        while (_difference.isEmpty() && !_waiting.empty()) {
            const Pair pair = _waiting.back();
            _waiting.pop_back();
            compare(pair);
        }
        for (const Pair& pair : _done)
            if (_difference.isEmpty() && !_ignored.routes)
                compareRoutes(pair);
        return _difference;
    }

private:
    void differ(const QString& path, const QString& what)
    {
        if (_difference.isEmpty())
            _difference = path + QStringLiteral(": ") + what;
    }

    using Prototypes = std::vector<std::shared_ptr<NodeType>>;

    /// The declarations, by the models of their instances.
    void visitPrototypes(const Prototypes& first, const Prototypes& second, const QString& path)
    {
        if (first.size() != second.size())
            return differ(path, QStringLiteral("%1 and %2 prototypes").arg(first.size()).arg(second.size()));
        for (std::size_t i = 0; i < first.size(); ++i) {
            const ProtoDeclaration& one = *protoDeclaration(*first[i]);
            const ProtoDeclaration& other = *protoDeclaration(*second[i]);
            const QString protoPath =
                path + QStringLiteral(" PROTO ") + QString::fromStdString(first[i]->name);
            if (first[i]->name != second[i]->name || one.isExtern != other.isExtern || one.urls != other.urls)
                return differ(protoPath, QStringLiteral("not the same prototype"));
            visit(one.model.get(), other.model.get(), protoPath);
            visitPrototypes(one.inner, other.inner, protoPath);
        }
    }

    void visit(Node* first, Node* second, const QString& path)
    {
        if (!first || !second) {
            if (first != second)
                differ(path, QStringLiteral("only one graph has a node"));
            return;
        }
        const auto known = _partner.find(first);
        if (known != _partner.end()) {
            if (known->second != second)
                differ(path, QStringLiteral("shared in one graph only"));
            return;
        }
        _partner.emplace(first, second);
        _waiting.push_back({first, second, path});
    }

    void compare(const Pair& pair)
    {
        _done.push_back(pair);
        Node& first = *pair.first;
        Node& second = *pair.second;
        const QString path = pair.path + QLatin1Char('/') + QString::fromStdString(first.type()->name);
        if (first.type()->name != second.type()->name)
            return differ(path, QString::fromStdString(second.type()->name));
        if (!_ignored.names && first.name() && second.name() && *first.name() != *second.name())
            return differ(path, QString::fromStdString(*first.name() + " and " + *second.name()));
        for (unsigned int part = 0; part < first.partDescCount(); ++part) {
            Field& field = *first.findField(part);
            const std::string fieldName = field.name();
            if (field._desc->privateAccess() && fieldName != "inlineContent" && fieldName != "protoBody")
                continue;
            Field* other = second.findField(field.name(), Node::EXACT_FSO);
            const QString fieldPath = path + QLatin1Char('.') + QLatin1String(field.name());
            if (!other || other->dataType() != field.dataType() || other->partType() != field.partType())
                return differ(fieldPath, QStringLiteral("not the same field"));
            if (field.dataType() != SFNODE_DT && field.dataType() != MFNODE_DT) {
                if (field.valueToString() != other->valueToString())
                    return differ(fieldPath, QString::fromStdString(field.valueToString() + " and " +
                                                                    other->valueToString()));
                continue;
            }
            const std::vector<Node*> firstNodes = linked(field);
            const std::vector<Node*> secondNodes = linked(*other);
            if (firstNodes.size() != secondNodes.size())
                return differ(
                    fieldPath,
                    QStringLiteral("%1 and %2 nodes").arg(firstNodes.size()).arg(secondNodes.size()));
            for (std::size_t i = 0; i < firstNodes.size(); ++i)
                visit(firstNodes[i], secondNodes[i], fieldPath + QStringLiteral("[%1]").arg(i));
        }
        if (visibleParts(first) != visibleParts(second))
            differ(path, QStringLiteral("not as many fields"));
    }

    static int visibleParts(Node& node)
    {
        int count = 0;
        for (unsigned int part = 0; part < node.partDescCount(); ++part)
            count += node.findField(part)->_desc->privateAccess() ? 0 : 1;
        return count;
    }

    static std::vector<std::pair<Node*, std::string>> routes(Node& node)
    {
        std::vector<std::pair<Node*, std::string>> result;
        for (unsigned int part = 0; part < node.partDescCount(); ++part) {
            const EventOutSlot* slot = node.findField(part)->_outSlot;
            if (!slot)
                continue;
            for (const Route* route : *slot)
                result.emplace_back(route->inSlot()->field()->node(),
                                    std::string(slot->name()) + " to " + route->inSlot()->name());
        }
        return result;
    }

    void compareRoutes(const Pair& pair)
    {
        auto first = routes(*pair.first);
        auto second = routes(*pair.second);
        for (auto& route : first) {
            const auto partner = _partner.find(route.first);
            route.first = partner == _partner.end() ? nullptr : partner->second;
        }
        std::sort(first.begin(), first.end());
        std::sort(second.begin(), second.end());
        if (first != second)
            differ(pair.path, QStringLiteral("not the same routes"));
    }

    const GraphLeniency _ignored;
    std::unordered_map<Node*, Node*> _partner;
    std::vector<Pair> _waiting;
    std::vector<Pair> _done;
    QString _difference;
};

} // namespace

QString graphDifference(Node* first, Node* second, GraphLeniency ignored)
{
    return Comparison(ignored).run(first, second);
}
