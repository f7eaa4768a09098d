#include "physics/CollisionSensorProc.h"
#include "base/Graph.h"
#include "base/ValueFields.h"
#include "core/ListEdit.h"
#include "core/Part.h"
#include "physics/CollidableProcs.h"
#include "physics/CollisionCollectionProc.h"
#include "physics/RigidBodyProc.h"
#include <Orvane/Context.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFNode.h>
#include <algorithm>
#include <string>
#include <utility>

namespace Orvane {

namespace {

const Part body1Part("body1");
const Part body2Part("body2");
const Part colliderPart("collider");
const Part contactNormalPart("contactNormal");
const Part contactsPart("contacts");
const Part depthPart("depth");
const Part enabledPart("enabled");
const Part geometry1Part("geometry1");
const Part geometry2Part("geometry2");
const Part intersectionsPart("intersections");
const Part isActivePart("isActive");
const Part positionPart("position");

/// A node for each contact is much to make in each frame.
constexpr std::size_t MostContacts = 2000;

/// Fields that a collection of collidables and a contact have under the same name, or these two.
const std::pair<Part, Part> SurfaceParts[] = {
    {Part("appliedParameters"), Part("appliedParameters")},
    {Part("bounce"), Part("bounce")},
    {Part("frictionCoefficients"), Part("frictionCoefficients")},
    {Part("minBounceSpeed"), Part("minBounceSpeed")},
    {Part("slipFactors"), Part("slipCoefficients")},
    {Part("softnessConstantForceMix"), Part("softnessConstantForceMix")},
    {Part("softnessErrorCorrection"), Part("softnessErrorCorrection")},
    {Part("surfaceSpeed"), Part("surfaceSpeed")}};

const ProcRegistration collisionSensor("CollisionSensor", makeProc<CollisionSensorProc>);

} // namespace

bool CollisionSensorProc::isEnabled() const
{
    return enabledPart.read<SFBool>(node()).value();
}

void CollisionSensorProc::fieldChanged(Field& field, double)
{
    // What the sensor tells itself changes nothing.
    if (field.partType() != EVENTOUTP)
        requestUpdate();
}

void CollisionSensorProc::childrenChanged(Field& field)
{
    if (field.partType() != EVENTOUTP)
        requestUpdate();
}

void CollisionSensorProc::update()
{
    auto* const collider = elementOf<CollisionCollectionProc>(colliderPart.readNode(node()));
    _collider.set(*this, collider);
    if (!isEnabled() || !collider)
        setActive(false, context().timeStamp());
    // It begins to look, or may stop.
    if (collider)
        collider->sensorsChanged();
}

void CollisionSensorProc::setActive(bool active, double time)
{
    if (isActivePart.read<SFBool>(node()).value() != active)
        isActivePart.edit<SFBool>(node()).setValue(time, active, Field::EVENT_CT);
}

void CollisionSensorProc::report(const CollisionCollectionProc& collider,
                                 const std::vector<Meeting>& meetings, double time)
{
    if (!isEnabled())
        return;
    setActive(!meetings.empty(), time);
    sendIntersections(meetings, time);
    sendContacts(collider, meetings, time);
}

void CollisionSensorProc::sendIntersections(const std::vector<Meeting>& meetings, double time)
{
    std::vector<Node*> shapes;
    for (const Meeting& meeting : meetings) {
        for (const CollidableShapeProc* const shape : {meeting.first, meeting.second}) {
            Node* const node = &shape->node();
            if (std::find(shapes.begin(), shapes.end(), node) == shapes.end())
                shapes.push_back(node);
        }
    }
    setNodes(intersectionsPart.edit<MFNode>(node()), shapes, time);
}

void CollisionSensorProc::sendContacts(const CollisionCollectionProc& collider,
                                       const std::vector<Meeting>& meetings, double time)
{
    std::vector<NodeRef> made;
    std::vector<Node*> contacts;
    for (const Meeting& meeting : meetings) {
        for (std::size_t i = 0; i < meeting.points->size(); ++i) {
            if (made.size() >= MostContacts) {
                complain("contacts", "expected at most " + std::to_string(MostContacts) +
                                         " contacts in a frame; the others are not told");
                break;
            }
            made.push_back(makeContact(collider, meeting, i));
            contacts.push_back(made.back().get());
        }
    }
    setNodes(contactsPart.edit<MFNode>(node()), contacts, time);
}

NodeRef CollisionSensorProc::makeContact(const CollisionCollectionProc& collider, const Meeting& meeting,
                                         std::size_t which)
{
    static NodeType* const type = findType("Contact");
    const ContactPoint& point = (*meeting.points)[which];
    NodeRef made = createNode(context(), *type, RUNTIME_NC);
    Node& contact = *made;
    const double time = 0.0;
    const auto setVector = [&](const Part& part, const osg::Vec3d& v) {
        part.edit<SFVec3f>(contact).setValue(time, toFloat(v), Field::LOADER_CT);
    };
    const auto setNode = [&](const Part& part, Node* node) {
        if (node)
            part.edit<SFNode>(contact).setNode(time, node, Field::LOADER_CT);
    };
    const auto bodyOf = [](const CollidableShapeProc& shape) {
        const RigidBodyProc* const body = shape.driver().body;
        return body ? &body->node() : nullptr;
    };
    setVector(positionPart, point.position);
    setVector(contactNormalPart, point.normal);
    depthPart.edit<SFFloat>(contact).setValue(time, static_cast<float>(point.depth), Field::LOADER_CT);
    setNode(geometry1Part, &meeting.first->node());
    setNode(geometry2Part, &meeting.second->node());
    setNode(body1Part, bodyOf(*meeting.first));
    setNode(body2Part, bodyOf(*meeting.second));
    for (const auto& [from, to] : SurfaceParts)
        editField(contact, to.in(contact)).assignValue(readField(collider.node(), from.in(collider.node())));
    return made;
}

} // namespace Orvane
