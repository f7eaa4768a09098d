#include "core/BindableProc.h"
#include "base/ValueFields.h"
#include "core/Part.h"
#include <Orvane/Context.h>
#include <Orvane/NodeLink.h>
#include <Orvane/NodePath.h>
#include <Orvane/NodeType.h>
#include <Orvane/SFBool.h>
#include <algorithm>
#include <list>

namespace Orvane {

namespace {

const Part bindTimePart("bindTime");
const Part isBoundPart("isBound");
const Part setBindPart("set_bind");

/// What an inline brings is bound by events only.
bool isInlined(Node& node)
{
    std::list<NodeLink*> links;
    NodePath(&node).nodeLinks(links);
    return std::any_of(links.begin(), links.end(),
                       [](const NodeLink* link) { return link->parent()->type()->name == "Inline"; });
}

} // namespace

BindableProc::BindableProc(Node& node, BindableKind kind)
    : ElementProc(node)
    , _kind(kind)
{
}

BindableProc::~BindableProc()
{
    if (_scene)
        _scene->stack(_kind).remove(*this, context().timeStamp());
}

void BindableProc::start(double time)
{
    join(!isInlined(node()), time);
    requestUpdate();
}

void BindableProc::join(bool candidate, double time)
{
    _scene.take(node(), [this](SceneState& former) {
        // It leaves the other stack as if it had been taken out of the scene, and comes as if it were new.
        const double now = context().timeStamp();
        BindableStack& stack = former.stack(_kind);
        stack.unbind(*this, now);
        stack.remove(*this, now);
        _scene->stack(_kind).add(*this, !isInlined(node()), now);
        requestUpdate();
    });
    if (_scene)
        _scene->stack(_kind).add(*this, candidate, time);
}

void BindableProc::fieldChanged(Field& field, double time)
{
    if (setBindPart.is(field))
        bind(setBindPart.read<SFBool>(node()).value(), time);
    else
        requestUpdate();
}

void BindableProc::update()
{
    pictureChanged();
}

bool BindableProc::rest(double time)
{
    _wasBound = isBound();
    if (_scene) {
        _scene->stack(_kind).unbind(*this, time);
        _scene->stack(_kind).remove(*this, time);
        _scene.leave();
    }
    return true;
}

void BindableProc::resume(double time)
{
    join(false, time);
    if (_wasBound)
        bind(true, time);
    requestUpdate();
}

bool BindableProc::isBound() const
{
    return _scene && _scene->stack(_kind).bound() == this;
}

void BindableProc::bind(bool value, double time)
{
    if (!_scene)
        return;
    if (value)
        _scene->stack(_kind).bind(*this, time);
    else
        _scene->stack(_kind).unbind(*this, time);
}

void BindableProc::setBound(bool bound, double time)
{
    if (node().state() >= DYING_NS)
        return;
    isBoundPart.edit<SFBool>(node()).setValue(time, bound, Field::EVENT_CT);
    bindTimePart.edit<SFTime>(node()).setValue(time, context().timeStamp(), Field::EVENT_CT);
    requestUpdate();
}

} // namespace Orvane
