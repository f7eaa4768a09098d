#include "core/ElementProc.h"
#include "base/Graph.h"
#include "base/ProtoDeclaration.h"
#include "base/SceneLoader.h"
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>

namespace Orvane {

ElementProc::ElementProc(Node& node)
    : Proc(node)
{
}

ElementProc::~ElementProc()
{
    while (_uses) {
        ElementProc* const user = _uses->user();
        _uses->clear();
        user->elementGone();
    }
}

void ElementProc::start(double)
{
    requestUpdate();
}

void ElementProc::fieldChanged(Field&, double)
{
    requestUpdate();
}

void ElementProc::childrenChanged(Field&)
{
    requestUpdate();
}

void ElementProc::changed()
{
    if (_telling)
        return; // elements that use each other in a ring
    _telling = true;
    for (Use* use = _uses; use; use = use->next())
        use->user()->elementChanged(*this);
    _telling = false;
}

void ElementProc::elementChanged(ElementProc&)
{
    requestUpdate();
}

void ElementProc::elementGone()
{
    requestUpdate();
}

void ElementProc::complain(const char* part, const std::string& text)
{
    if (_complained)
        return;
    _complained = true;
    std::string where = node().type()->name;
    if (part)
        where.append(".").append(part);
    if (node().name())
        where.append(" of ").append(*node().name());
    reportMessage(node(), LoadMessage::WARNING_LM, where + ": " + text);
}

void DescriptionProc::start(double)
{
    changed();
}

void DescriptionProc::fieldChanged(Field&, double)
{
    changed();
}

void DescriptionProc::childrenChanged(Field&)
{
    changed();
}

void DescriptionProc::elementChanged(ElementProc&)
{
    changed();
}

void DescriptionProc::elementGone()
{
    changed();
}

Node* resolved(Node* node)
{
    return node ? protoStandIn(*node) : nullptr;
}

void appendResolved(Node* node, std::vector<Node*>& chain)
{
    chain.push_back(node);
    for (int level = 0; node->type()->isProto() && level < maxNestedInstances; ++level) {
        const MFNode& body = protoBody(static_cast<const Node&>(*node));
        if (body.size() == 0)
            return;
        node = body.elem(0).directNode();
        chain.push_back(node);
    }
}

} // namespace Orvane
