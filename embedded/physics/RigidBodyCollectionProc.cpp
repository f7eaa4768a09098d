#include "physics/RigidBodyCollectionProc.h"
#include "base/ValueFields.h"
#include "core/Part.h"
#include "physics/CollisionCollectionProc.h"
#include "physics/JointProc.h"
#include "physics/RigidBodyProc.h"
#include <Orvane/Context.h>
#include <Orvane/MFNode.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFInt32.h>
#include <algorithm>
#include <cmath>
#include <unordered_set>

namespace Orvane {

namespace {

const Part bodiesPart("bodies");
const Part body1Part("body1");
const Part body2Part("body2");
const Part colliderPart("collider");
const Part constantForceMixPart("constantForceMix");
const Part contactNormalPart("contactNormal");
const Part contactSurfaceThicknessPart("contactSurfaceThickness");
const Part depthPart("depth");
const Part enabledPart("enabled");
const Part errorCorrectionPart("errorCorrection");
const Part frictionDirectionPart("frictionDirection");
const Part gravityPart("gravity");
const Part iterationsPart("iterations");
const Part jointsPart("joints");
const Part maxCorrectionSpeedPart("maxCorrectionSpeed");
const Part positionPart("position");
const Part preferAccuracyPart("preferAccuracy");
const Part setContactsPart("set_contacts");

/// So much time is made up for in one frame; what is more, passes without the bodies.
constexpr double LongestCatchUp = 0.1;
constexpr int MostIterations = 1000;

const ProcRegistration rigidBodyCollection("RigidBodyCollection", makeProc<RigidBodyCollectionProc>);

/// The elements of a list of nodes that are of a kind.
template <class E>
std::vector<E*> elementsOf(const Part& part, const Node& node)
{
    std::vector<E*> elements;
    std::unordered_set<E*> seen;
    for (NodeLink& link : part.read<MFNode>(node)) {
        E* const element = elementOf<E>(link.node());
        if (element && seen.insert(element).second)
            elements.push_back(element);
    }
    return elements;
}

/// Brings \a uses in step with a list. True when another one was there before; those that have left are told.
template <class E, class Leave>
bool syncUses(ElementProc& user, const std::vector<E*>& elements, std::vector<Use>& uses, Leave leave)
{
    const auto isSame = [](const Use& use, E* element) { return use.element() == element; };
    if (std::equal(uses.begin(), uses.end(), elements.begin(), elements.end(), isSame))
        return false;
    const std::unordered_set<ElementProc*> wanted(elements.begin(), elements.end());
    std::vector<Use> former;
    former.swap(uses);
    uses.resize(elements.size());
    for (std::size_t i = 0; i < elements.size(); ++i)
        uses[i].set(user, elements[i]);
    for (Use& use : former) {
        auto* const element = dynamic_cast<E*>(use.element());
        use.clear();
        if (element && wanted.count(element) == 0)
            leave(*element);
    }
    return true;
}

} // namespace

RigidBodyCollectionProc::RigidBodyCollectionProc(Node& node)
    : ElementProc(node)
{
}

RigidBodyCollectionProc::~RigidBodyCollectionProc()
{
    Dynamics::guarded([this] {
        syncUses<JointProc>(*this, {}, _joints, [](JointProc& joint) { joint.leave(); });
        syncUses<RigidBodyProc>(*this, {}, _bodies, [](RigidBodyProc& body) { body.leave(); });
    });
}

template <class Visit>
void RigidBodyCollectionProc::forEachBody(Visit visit)
{
    for (const Use& use : _bodies) {
        auto* const body = static_cast<RigidBodyProc*>(use.element());
        if (body && body->simulated() && body->simulated()->world() == _world)
            visit(*body);
    }
}

template <class Visit>
void RigidBodyCollectionProc::forEachJoint(Visit visit)
{
    for (const Use& use : _joints) {
        auto* const joint = static_cast<JointProc*>(use.element());
        if (joint && joint->isAttached())
            visit(*joint);
    }
}

void RigidBodyCollectionProc::fieldChanged(Field& field, double)
{
    if (setContactsPart.is(field))
        takeContacts(field);
    else
        _wakeAll = true;
    requestUpdate();
}

void RigidBodyCollectionProc::elementChanged(ElementProc& element)
{
    // What stood below a body may be gone.
    if (&element == _collider.element())
        _wakeAll = true;
    requestUpdate();
}

void RigidBodyCollectionProc::elementGone()
{
    _wakeAll = true;
    requestUpdate();
}

void RigidBodyCollectionProc::update()
{
    const bool works = Dynamics::guarded([this] {
        if (!_world)
            _world = std::make_shared<RigidWorld>();
        syncWorld();
        _collider.set(*this, elementOf<CollisionCollectionProc>(colliderPart.readNode(node())));
        syncBodies();
        syncJoints();
        if (_wakeAll)
            wake();
        _wakeAll = false;
    });
    if (!works)
        complain(nullptr, "expected a working dynamics engine, found a fault; the bodies stand still");
    _settled = false;
    setRunning(works && enabledPart.read<SFBool>(node()).value() && !_bodies.empty());
}

void RigidBodyCollectionProc::syncWorld()
{
    const auto number = [this](const Part& part, double least, double most) {
        return bounded(part.read<SFFloat>(node()).value(), least, most, least);
    };
    WorldSettings settings;
    settings.gravity = toDouble(gravityPart.read<SFVec3f>(node()).value());
    settings.errorCorrection = number(errorCorrectionPart, 0.0, 1.0);
    settings.constantForceMix = number(constantForceMixPart, 0.0, 1e6);
    settings.surfaceThickness = number(contactSurfaceThicknessPart, 0.0, 1e6);
    settings.maxCorrectionSpeed = number(maxCorrectionSpeedPart, -1.0, 1e6);
    settings.iterations = std::clamp(iterationsPart.read<SFInt32>(node()).value(), 1, MostIterations);
    settings.preferAccuracy = preferAccuracyPart.read<SFBool>(node()).value();
    _world->set(settings);
}

void RigidBodyCollectionProc::syncBodies()
{
    if (syncUses(*this, elementsOf<RigidBodyProc>(bodiesPart, node()), _bodies,
                 [](RigidBodyProc& body) { body.leave(); }))
        _wakeAll = true;
    const RestLimits limits = readRestLimits(node());
    for (const Use& use : _bodies) {
        auto* const body = static_cast<RigidBodyProc*>(use.element());
        if (!body || body->collection() != this)
            continue;
        body->join(_world, limits);
        body->takeEdits(context().timeStamp());
    }
}

void RigidBodyCollectionProc::syncJoints()
{
    if (syncUses(*this, elementsOf<JointProc>(jointsPart, node()), _joints,
                 [](JointProc& joint) { joint.leave(); }))
        _wakeAll = true;
    for (const Use& use : _joints) {
        auto* const joint = static_cast<JointProc*>(use.element());
        if (joint && joint->collection() == this && joint->join(_world))
            _wakeAll = true;
    }
}

void RigidBodyCollectionProc::wake()
{
    forEachBody([](RigidBodyProc& body) { body.simulated()->wake(); });
}

void RigidBodyCollectionProc::setRunning(bool running)
{
    if (running && !_running) {
        _last = context().timeStamp();
        _owed = 0.0;
    }
    _running = running;
    setTicking(running);
}

void RigidBodyCollectionProc::takeContacts(Field& field)
{
    _given.clear();
    for (NodeLink& link : static_cast<const MFNode&>(field)) {
        const Node* const contact = resolved(link.node());
        if (!contact || !contactNormalPart.isIn(*contact))
            continue;
        GivenContact given;
        given.surface = readContactSurface(*contact);
        given.point.position = toDouble(positionPart.read<SFVec3f>(*contact).value());
        given.point.normal = toDirection(contactNormalPart.read<SFVec3f>(*contact).value(), {});
        given.point.depth = bounded(depthPart.read<SFFloat>(*contact).value(), 0.0, 1e6, 0.0);
        given.point.frictionDirection =
            toDirection(frictionDirectionPart.read<SFVec3f>(*contact).value(), {});
        const Node* const first = resolved(body1Part.readNode(*contact));
        const Node* const second = resolved(body2Part.readNode(*contact));
        given.bodies[0] = first ? first->ID() : 0;
        given.bodies[1] = second ? second->ID() : 0;
        if (given.point.normal.length() > 0.5)
            _given.push_back(given);
    }
    // Links of an event would count as parents.
    field.clear();
}

void RigidBodyCollectionProc::addGivenContacts()
{
    const auto bodyOf = [this](UInt64 id) -> dxBody* {
        const auto* const body = procAs<RigidBodyProc>(id == 0 ? nullptr : Node::findNode(id));
        const SimulatedBody* const simulated = body ? body->simulated() : nullptr;
        return simulated && simulated->world() == _world && !simulated->settings().isHeld
                   ? simulated->handle()
                   : nullptr;
    };
    for (const GivenContact& given : _given) {
        dxBody* const first = bodyOf(given.bodies[0]);
        dxBody* const second = bodyOf(given.bodies[1]);
        if (first != second)
            _world->addContact(given.surface, given.point, first, second);
    }
}

void RigidBodyCollectionProc::tick(double time)
{
    const double passed = time - _last;
    _last = time;
    if (!(passed > 0.0))
        return;
    _owed = std::min(_owed + passed, LongestCatchUp);
    // A hair's breadth more, or the sum of frames of a sixtieth second would lack a step now and then.
    const int steps = static_cast<int>(std::floor(_owed / RigidWorld::Step + 1e-6));
    _owed = std::max(0.0, _owed - steps * RigidWorld::Step);
    if (steps == 0)
        return;
    if (!Dynamics::guarded([&] { run(steps, time); }))
        requestUpdate();
}

void RigidBodyCollectionProc::run(int steps, double time)
{
    auto* const collider = static_cast<CollisionCollectionProc*>(_collider.element());
    forEachBody([time](RigidBodyProc& body) { body.takeEdits(time); });
    if (collider)
        collider->beginReport();
    for (int i = 0; i < steps; ++i) {
        forEachBody([](RigidBodyProc& body) { body.simulated()->applyForces(); });
        forEachJoint([](JointProc& joint) { joint.applyForces(); });
        if (collider)
            collider->collide(*_world);
        addGivenContacts();
        _world->step();
        forEachBody([](RigidBodyProc& body) { body.keepSound(); });
    }
    const bool hadContacts = !_given.empty();
    _given.clear();
    bool changed = false;
    bool awake = false;
    forEachBody([&](RigidBodyProc& body) {
        changed = body.send(time) || changed;
        awake = awake || body.simulated()->isAwake();
    });
    forEachJoint([time](JointProc& joint) { joint.send(time); });
    if (collider)
        collider->report(time);
    // A step that changes nothing would change nothing the next time either.
    const bool isSettled = !changed && !hadContacts;
    if (!awake || (isSettled && _settled))
        setRunning(false);
    _settled = isSettled;
}

} // namespace Orvane
