#include "core/CollisionProc.h"
#include "base/ValueFields.h"
#include "core/RayTarget.h"
#include <OpenSG/OSGGroup.h>
#include <OpenSG/OSGVisitSubTree.h>
#include <Orvane/SFBool.h>

namespace Orvane {

namespace {

const Part collideTimePart("collideTime");
const Part enabledPart("enabled");
const Part isActivePart("isActive");
const Part proxyPart("proxy");

const ProcRegistration collision("Collision", makeProc<CollisionProc>);

} // namespace

CollisionProc::CollisionProc(Node& node)
    : GroupProc(node)
    , _outer(osg::makeNodeFor(osg::Group::create()))
{
    _outer->addChild(GroupProc::tree());
}

void CollisionProc::update()
{
    GroupProc::update();
    showProxy();
    const bool enabled = enabledPart.read<SFBool>(node()).value();
    _outer->setTravMask(enabled ? AllTargets : AllTargets & ~ObstacleTarget);
    // What a proxy stands for is no obstacle itself. A group that is hidden stays so.
    if (_proxy && GroupProc::tree()->getActive())
        GroupProc::tree()->setTravMask(AllTargets & ~ObstacleTarget);
}

void CollisionProc::showProxy()
{
    ElementProc* const element = elementOf(proxyPart.readNode(node()));
    const osg::NodePtr shown = element ? element->tree() : osg::NodePtr();
    _proxyUse.set(*this, shown ? element : nullptr);
    const osg::VisitSubTreePtr present =
        _proxy ? osg::VisitSubTreePtr::dcast(_proxy->getCore()) : osg::VisitSubTreePtr();
    if (present ? shown && present->getSubTreeRoot() == shown : !shown)
        return;
    if (_proxy)
        _outer->subChild(_proxy);
    _proxy = osg::NullFC;
    if (!shown)
        return;
    const osg::VisitSubTreePtr reference = osg::VisitSubTree::create();
    reference->setSubTreeRoot(shown);
    _proxy = osg::makeNodeFor(reference);
    _proxy->setTravMask(ObstacleTarget);
    _outer->addChild(_proxy);
}

Node* CollisionProc::childOf(const osg::NodePtr& shown) const
{
    return _proxy && shown == osg::NodePtr(_proxy) ? proxyPart.readNode(node()) : GroupProc::childOf(shown);
}

void CollisionProc::collide(double time)
{
    if (!enabledPart.read<SFBool>(node()).value())
        return;
    _collidedAt = time;
    collideTimePart.edit<SFTime>(node()).setValue(time, time, Field::EVENT_CT);
    if (_active)
        return;
    _active = true;
    isActivePart.edit<SFBool>(node()).setValue(time, true, Field::EVENT_CT);
    setTicking(true);
}

void CollisionProc::tick(double time)
{
    if (time <= _collidedAt)
        return;
    _active = false;
    isActivePart.edit<SFBool>(node()).setValue(time, false, Field::EVENT_CT);
    setTicking(false);
}

} // namespace Orvane
