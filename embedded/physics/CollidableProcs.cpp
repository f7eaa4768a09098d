#include "physics/CollidableProcs.h"
#include "base/ValueFields.h"
#include "core/GeometryProc.h"
#include "core/ShapeProc.h"
#include "core/UsableValues.h"
#include "physics/CollisionCollectionProc.h"
#include "physics/RigidBodyProc.h"
#include <OpenSG/OSGTransform.h>
#include <Orvane/MFNode.h>
#include <Orvane/NodeType.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <algorithm>
#include <cmath>

namespace Orvane {

namespace {

const Part bottomRadiusPart("bottomRadius");
const Part collidablePart("collidable");
const Part collidablesPart("collidables");
const Part enabledPart("enabled");
const Part geometryPart("geometry");
const Part heightPart("height");
const Part radiusPart("radius");
const Part rotationPart("rotation");
const Part shapePart("shape");
const Part sizePart("size");
const Part translationPart("translation");
const Part useGeometryPart("useGeometry");

/// Offsets and spaces inside each other are followed so far.
constexpr int MostNested = 64;
constexpr double LargestSolid = 1e6;

/// A size that can be worked with; 0 for none.
double solidSize(float size)
{
    return size > 0.0F ? std::clamp(double(size), SmallestSolid, LargestSolid) : 0.0;
}

bool flag(const Part& part, const Node& node)
{
    return part.read<SFBool>(node).value();
}

const ProcRegistration collidableOffset("CollidableOffset", makeProc<CollidableOffsetProc>);
const ProcRegistration collidableShape("CollidableShape", makeProc<CollidableShapeProc>);
const ProcRegistration collisionSpace("CollisionSpace", makeProc<CollisionSpaceProc>);

} // namespace

void CollidableWalk::visit(ElementProc* element, const RigidPose& outer, bool enabled, bool exact)
{
    if (!element || _depth >= MostNested || !_seen.insert(element).second)
        return;
    ++_depth;
    if (auto* const collidable = dynamic_cast<CollidableProc*>(element))
        collidable->visit(*this, outer, enabled, exact);
    else if (auto* const space = dynamic_cast<CollisionSpaceProc*>(element))
        space->visit(*this, outer, enabled, exact);
    --_depth;
}

// ---- What both collidables have in common

CollidableProc::CollidableProc(Node& node)
    : GroupProc(node, osg::Transform::create())
{
}

void CollidableProc::fieldChanged(Field& field, double time)
{
    if (isDriven(field))
        return;
    GroupProc::fieldChanged(field, time);
    changed();
}

void CollidableProc::update()
{
    const RigidPose shown = shownPose();
    osg::Quaternion turn;
    turn.setValueAsQuat(static_cast<float>(shown.turn.x), static_cast<float>(shown.turn.y),
                        static_cast<float>(shown.turn.z), static_cast<float>(shown.turn.w));
    osg::Matrix matrix;
    matrix.setTransform(toFloat(shown.position), turn);
    static_cast<osg::Transform&>(*tree()->getCore()).setMatrix(matrix);
    GroupProc::update();
}

RigidPose CollidableProc::pose() const
{
    return toPose(translationPart.read<SFVec3f>(node()).value(),
                  rotationPart.read<SFRotation>(node()).value());
}

bool CollidableProc::isEnabled() const
{
    return flag(enabledPart, node());
}

CollidableProc::Driver CollidableProc::driver(int depth) const
{
    Driver first;
    for (const Use* use = uses(); use && depth < MostNested; use = use->next()) {
        if (auto* const body = dynamic_cast<RigidBodyProc*>(use->user())) {
            first = {body, {}};
        } else if (const auto* const offset = dynamic_cast<CollidableOffsetProc*>(use->user())) {
            const Driver outer = offset->driver(depth + 1);
            if (outer.body)
                first = {outer.body, outer.offset * offset->pose()};
        }
    }
    return first;
}

// ---- CollidableShape

void CollidableShapeProc::update()
{
    auto* const shape = elementOf<ShapeProc>(shapePart.readNode(node()));
    auto* const geometry = shape ? elementOf<GeometryProc>(geometryPart.readNode(shape->node())) : nullptr;
    if (_geometry.element() != geometry) {
        _geometry.set(*this, geometry);
        _solidChanged = true;
        changed();
    }
    CollidableProc::update();
}

void CollidableShapeProc::elementChanged(ElementProc& element)
{
    if (&element == _geometry.element()) {
        _solidChanged = true;
        changed();
        return;
    }
    // The shape may have got another geometry.
    CollidableProc::elementChanged(element);
}

void CollidableShapeProc::elementGone()
{
    CollidableProc::elementGone();
    if (_geometry.element())
        return;
    _solidChanged = true;
    changed();
}

void CollidableShapeProc::collectChildren(std::vector<Node*>& nodes) const
{
    if (Node* const shape = shapePart.readNode(node()))
        nodes.push_back(shape);
}

void CollidableShapeProc::drive(const RigidPose& pose, double time)
{
    const osg::Vec3f place = toFloat(pose.position);
    const Rotation turn = toRotation(pose.turn);
    auto& translation = translationPart.edit<SFVec3f>(node());
    auto& rotation = rotationPart.edit<SFRotation>(node());
    _driven = true;
    _drivenTranslation = place;
    _drivenRotation = turn;
    if (!(translation.value() == place))
        translation.setValue(time, place, Field::EVENT_CT);
    if (rotation.value() != turn)
        rotation.setValue(time, turn, Field::EVENT_CT);
    requestUpdate();
}

bool CollidableShapeProc::isDriven(const Field& field) const
{
    if (!_driven)
        return false;
    return translationPart.is(field)
               ? static_cast<const SFVec3f&>(field).value() == _drivenTranslation
               : rotationPart.is(field) && static_cast<const SFRotation&>(field).value() == _drivenRotation;
}

void CollidableShapeProc::visit(CollidableWalk& walk, const RigidPose& outer, bool enabled, bool exact)
{
    walk.places.push_back({this, outer * pose(), enabled && isEnabled(), exact});
}

const CollisionSolid& CollidableShapeProc::solid()
{
    if (_solidChanged) {
        _solidChanged = false;
        _solid = makeSolid();
    }
    return _solid;
}

CollisionSolid CollidableShapeProc::makeSolid()
{
    CollisionSolid solid;
    auto* const geometry = dynamic_cast<GeometryProc*>(_geometry.element());
    if (!geometry)
        return solid;
    const Node& shown = geometry->node();
    const std::string& type = shown.type()->name;
    const auto size = [&shown](const Part& part) { return solidSize(part.read<SFFloat>(shown).value()); };
    const auto setRound = [&](CollisionSolid::Kind kind, const Part& radius) {
        solid.size = osg::Vec3d(size(radius), size(heightPart), 0.0);
        if (solid.size[0] > 0.0 && solid.size[1] > 0.0)
            solid.kind = kind;
    };
    if (type == "Box") {
        const osg::Vec3f& sides = sizePart.read<SFVec3f>(shown).value();
        for (osg::UInt32 i = 0; i < 3; ++i)
            solid.size[i] = std::max(solidSize(sides[i]), SmallestSolid);
        // A box without thickness still is a floor or a wall; one without an area is nothing.
        if ((sides[0] > 0.0F) + (sides[1] > 0.0F) + (sides[2] > 0.0F) >= 2)
            solid.kind = CollisionSolid::Box;
    } else if (type == "Sphere") {
        solid.size = osg::Vec3d(size(radiusPart), 0.0, 0.0);
        if (solid.size[0] > 0.0)
            solid.kind = CollisionSolid::Sphere;
    } else if (type == "Cylinder") {
        setRound(CollisionSolid::Cylinder, radiusPart);
    } else if (type == "Cone") {
        setRound(CollisionSolid::Cone, bottomRadiusPart);
        if (solid.kind == CollisionSolid::Cone)
            solid.mesh = CollisionMesh::makeCone(solid.size[0], solid.size[1]);
        if (!solid.mesh)
            solid.kind = CollisionSolid::Nothing;
    } else if (geometry->kind() == Surface::FACES) {
        solid.mesh = CollisionMesh::make(geometry->geometry());
        if (solid.mesh)
            solid.kind = CollisionSolid::Mesh;
    }
    if (solid.kind == CollisionSolid::Nothing && geometry->geometry())
        complain("shape", "expected faces with a size, found none; it collides with nothing");
    return solid;
}

// ---- CollidableOffset

CollidableProc* CollidableOffsetProc::collidable() const
{
    return elementOf<CollidableProc>(collidablePart.readNode(node()));
}

void CollidableOffsetProc::drive(const RigidPose& body, double time)
{
    CollidableProc* const inner = collidable();
    if (!inner || _passing)
        return;
    _passing = true;
    inner->drive(body * pose(), time);
    _passing = false;
}

void CollidableOffsetProc::driverChanged()
{
    CollidableProc* const inner = collidable();
    if (!_passing && inner) {
        _passing = true;
        inner->driverChanged();
        _passing = false;
    }
    requestUpdate();
    changed();
}

void CollidableOffsetProc::visit(CollidableWalk& walk, const RigidPose& outer, bool enabled, bool exact)
{
    walk.visit(collidable(), outer * pose(), enabled && isEnabled(), exact);
}

void CollidableOffsetProc::elementChanged(ElementProc& element)
{
    CollidableProc::elementChanged(element);
    changed();
}

void CollidableOffsetProc::collectChildren(std::vector<Node*>& nodes) const
{
    if (Node* const inner = collidablePart.readNode(node()))
        nodes.push_back(inner);
}

RigidPose CollidableOffsetProc::shownPose() const
{
    // A body puts the content to its place in the world, the offset included.
    return driver().body ? RigidPose() : pose();
}

// ---- CollisionSpace

void CollisionSpaceProc::update()
{
    const auto& nodes = collidablesPart.read<MFNode>(node());
    _members.resize(nodes.size());
    std::size_t i = 0;
    for (NodeLink& link : nodes)
        _members[i++].set(*this, elementOf(link.node()));
    tellCollections();
}

void CollisionSpaceProc::tellCollections()
{
    std::vector<CollisionSpaceProc*> spaces{this};
    std::unordered_set<const CollisionSpaceProc*> seen{this};
    for (std::size_t i = 0; i < spaces.size(); ++i) {
        for (const Use* use = spaces[i]->uses(); use; use = use->next()) {
            if (auto* const collection = dynamic_cast<CollisionCollectionProc*>(use->user()))
                collection->membersChanged();
            auto* const space = dynamic_cast<CollisionSpaceProc*>(use->user());
            if (space && seen.insert(space).second)
                spaces.push_back(space);
        }
    }
}

void CollisionSpaceProc::visit(CollidableWalk& walk, const RigidPose& outer, bool enabled, bool exact)
{
    const bool isOn = enabled && flag(enabledPart, node());
    const bool isExact = flag(useGeometryPart, node());
    for (const Use& member : _members)
        walk.visit(member.element(), outer, isOn, exact && isExact);
}

} // namespace Orvane
