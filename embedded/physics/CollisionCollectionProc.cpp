#include "physics/CollisionCollectionProc.h"
#include "core/Part.h"
#include "physics/CollidableProcs.h"
#include "physics/CollisionSensorProc.h"
#include "physics/RigidBodyCollectionProc.h"
#include "physics/RigidBodyProc.h"
#include "physics/RigidWorld.h"
#include <Orvane/Context.h>
#include <Orvane/MFNode.h>
#include <Orvane/SFBool.h>
#include <algorithm>
#include <unordered_map>

namespace Orvane {

namespace {

const Part collidablesPart("collidables");
const Part enabledPart("enabled");

/// Seconds after which a collection that nobody drives looks again whether its bodies have woken.
constexpr double StandByInterval = 1.0;

const ProcRegistration collisionCollection("CollisionCollection", makeProc<CollisionCollectionProc>);

/// The body that a world moves or holds; null when it is none of that world, or never moves.
dxBody* bodyIn(const RigidWorld& world, const CollidableShapeProc* shape)
{
    RigidBodyProc* const body = shape ? shape->driver().body : nullptr;
    const SimulatedBody* const simulated = body ? body->simulated() : nullptr;
    return simulated && simulated->world().get() == &world && !simulated->settings().isHeld
               ? simulated->handle()
               : nullptr;
}

} // namespace

CollisionCollectionProc::CollisionCollectionProc(Node& node)
    : ElementProc(node)
{
}

CollisionCollectionProc::~CollisionCollectionProc() = default;

void CollisionCollectionProc::elementGone()
{
    // What has died must not be met once more.
    for (Entry& entry : _entries) {
        if (!entry.shape.element())
            entry.geom.reset();
    }
    requestUpdate();
    changed();
}

void CollisionCollectionProc::update()
{
    _surface = readContactSurface(node());
    syncMembers();
    bool hasChanged = false;
    if (!Dynamics::guarded([&] { hasChanged = syncGeoms(); }))
        return;
    if (hasChanged)
        changed();
    setTicking(hasSensors());
}

void CollisionCollectionProc::syncMembers()
{
    const auto& nodes = collidablesPart.read<MFNode>(node());
    _members.resize(nodes.size());
    std::size_t i = 0;
    for (NodeLink& link : nodes)
        _members[i++].set(*this, elementOf(link.node()));
}

bool CollisionCollectionProc::syncGeoms()
{
    if (!_finder)
        _finder = std::make_unique<ContactFinder>();
    CollidableWalk walk;
    for (const Use& member : _members)
        walk.visit(member.element(), RigidPose(), true, true);

    std::vector<Entry> former;
    former.swap(_entries);
    std::unordered_map<const ElementProc*, std::size_t> places;
    const auto isInPlace = [&former](const ElementProc* shape, std::size_t place) {
        return place < former.size() && former[place].shape.element() == shape;
    };
    bool hasChanged = former.size() != walk.places.size();
    _entries.resize(walk.places.size());
    for (std::size_t i = 0; i < walk.places.size(); ++i) {
        const CollidableWalk::Place& place = walk.places[i];
        Entry& entry = _entries[i];
        std::size_t before = i;
        if (!isInPlace(place.shape, i)) {
            if (places.empty()) {
                for (std::size_t k = 0; k < former.size(); ++k)
                    places.emplace(former[k].shape.element(), k);
            }
            const auto found = places.find(place.shape);
            before = found != places.end() ? found->second : former.size();
        }
        if (isInPlace(place.shape, before))
            entry = std::move(former[before]);
        else
            entry.shape.set(*this, place.shape);

        const CollisionSolid& own = place.shape->solid();
        const CollisionSolid solid = place.exact ? own : own.bounds();
        if (!entry.geom || !(entry.geom->solid() == solid)) {
            entry.geom.reset();
            entry.geom = std::make_unique<CollisionGeom>(*_finder, solid, i);
            hasChanged = true;
        }
        entry.geom->setIndex(i);
        const CollidableProc::Driver driver = place.shape->driver();
        SimulatedBody* const body = driver.body ? driver.body->simulated() : nullptr;
        const RigidPose standing = driver.body ? driver.body->pose() * driver.offset : place.pose;
        if (entry.geom->place(body, body ? driver.offset : standing))
            hasChanged = true;
        if (entry.geom->setEnabled(place.enabled))
            hasChanged = true;
    }
    return hasChanged;
}

bool CollisionCollectionProc::hasSensors() const
{
    for (const Use* use = uses(); use; use = use->next()) {
        const auto* const sensor = dynamic_cast<CollisionSensorProc*>(use->user());
        if (sensor && sensor->isEnabled())
            return true;
    }
    return false;
}

bool CollisionCollectionProc::isDriven() const
{
    for (const Use* use = uses(); use; use = use->next()) {
        const auto* const bodies = dynamic_cast<RigidBodyCollectionProc*>(use->user());
        if (bodies && bodies->isRunning())
            return true;
    }
    return false;
}

bool CollisionCollectionProc::hasMovers() const
{
    return std::any_of(_entries.begin(), _entries.end(), [](const Entry& entry) {
        const auto* const shape = static_cast<CollidableShapeProc*>(entry.shape.element());
        const RigidBodyProc* const body = shape ? shape->driver().body : nullptr;
        return body && body->simulated();
    });
}

CollidableShapeProc* CollisionCollectionProc::shapeAt(std::size_t index) const
{
    return index < _entries.size() ? static_cast<CollidableShapeProc*>(_entries[index].shape.element())
                                   : nullptr;
}

void CollisionCollectionProc::beginReport()
{
    _met.clear();
}

const std::vector<FoundContact>& CollisionCollectionProc::find()
{
    static const std::vector<FoundContact> none;
    if (!_finder || !enabledPart.read<SFBool>(node()).value())
        return none;
    const bool sensed = hasSensors();
    const std::vector<FoundContact>& found = _finder->find(sensed);
    ++_step;
    for (const FoundContact& contact : found) {
        if (!sensed)
            break;
        // Of the steps of a frame the last one counts in which the two met.
        Met& met = _met[{contact.first, contact.second}];
        if (met.step != _step)
            met.points.clear();
        met.step = _step;
        met.points.push_back(contact.point);
    }
    return found;
}

void CollisionCollectionProc::collide(RigidWorld& world)
{
    for (const FoundContact& contact : find()) {
        dxBody* const first = bodyIn(world, shapeAt(contact.first));
        dxBody* const second = bodyIn(world, shapeAt(contact.second));
        if (first != second && !world.addContact(_surface, contact.point, first, second)) {
            complain(nullptr, "expected fewer contacts at a time; some are left out");
            return;
        }
    }
}

void CollisionCollectionProc::report(double time)
{
    std::vector<Meeting> meetings;
    for (const auto& [places, met] : _met) {
        const CollidableShapeProc* const first = shapeAt(places.first);
        const CollidableShapeProc* const second = shapeAt(places.second);
        if (first && second)
            meetings.push_back({first, second, &met.points});
    }
    for (const Use* use = uses(); use; use = use->next()) {
        if (auto* const sensor = dynamic_cast<CollisionSensorProc*>(use->user()))
            sensor->report(*this, meetings, time);
    }
}

void CollisionCollectionProc::tick(double time)
{
    const bool moving = hasMovers();
    if (!isDriven()) {
        const bool works = Dynamics::guarded([&] {
            beginReport();
            find();
        });
        if (works)
            report(time);
    }
    if (!moving)
        setTicking(false);
    else if (isDriven())
        requestFrame(StandByInterval);
}

} // namespace Orvane
