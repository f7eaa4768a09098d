#include "core/ElementProc.h"
#include "base/Graph.h"
#include "base/SceneLoader.h"
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>

namespace Orvane {

namespace {

/// Instances whose body begins with an instance, and so on: a prototype cannot hold itself, so that more
/// levels than this come of no sound scene.
constexpr int MaxNestedInstances = 256;

/// The node that stands for an instance of a prototype: the first one of its body.
Node* bodyOf(const Node& instance)
{
    for (unsigned int part = 0; part < instance.partDescCount(); ++part) {
        const Field& field = readField(instance, part);
        if (field.dataType() == MFNODE_DT && field._desc->privateAccess() && field.size() > 0)
            return static_cast<const MFNode&>(field).elem(0).node();
    }
    return nullptr;
}

} // namespace

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
    for (int level = 0; node && node->type()->isProto(); ++level)
        node = level < MaxNestedInstances ? bodyOf(*node) : nullptr;
    return node;
}

void appendResolved(Node* node, std::vector<Node*>& chain)
{
    chain.push_back(node);
    for (int level = 0; node->type()->isProto() && level < MaxNestedInstances; ++level) {
        node = bodyOf(*node);
        if (!node)
            return;
        chain.push_back(node);
    }
}

} // namespace Orvane
