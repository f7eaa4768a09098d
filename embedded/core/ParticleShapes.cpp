#include "core/ComposedMeshProc.h"
#include "core/MeshSpots.h"
#include "core/Part.h"
#include "core/ParticleProcs.h"
#include "core/UsableValues.h"
#include <OpenSG/OSGIntersectAction.h>
#include <Orvane/MFInt32.h>
#include <Orvane/SFBool.h>

namespace Orvane {

namespace {

const Part coordIndexPart("coordIndex");
const Part coordPart("coord");
const Part enabledPart("enabled");
const Part geometryPart("geometry");
const Part internalPart("internal");
const Part surfacePart("surface");

/// Sends particles out of the faces of a geometry, at right angles to them: on both sides of one that is not
/// solid.
class SurfaceEmitterProc : public ShapeEmitterProc
{
public:
    using ShapeEmitterProc::ShapeEmitterProc;

protected:
    void readShape() override
    {
        auto* const geometry = elementOf<GeometryProc>(surfacePart.readNode(node()));
        _geometry.set(*this, geometry);
        _spots.clear();
        _hasTwoSides = geometry && !geometry->isSolid();
        if (geometry && geometry->kind() == Surface::FACES)
            _spots.add(geometry->geometry());
    }

    bool placeAtShape(osg::Vec3f& position, osg::Vec3f& direction, Chance& chance) override
    {
        if (_spots.isEmpty())
            return false;
        _spots.pickOn(position, direction, chance);
        if (_hasTwoSides && chance.share() < 0.5F)
            direction = -direction;
        return true;
    }

private:
    Use _geometry;
    MeshSpots _spots;
    bool _hasTwoSides = false;
};

/// Sends particles out of what faces enclose, or of the faces themselves.
class VolumeEmitterProc : public ShapeEmitterProc
{
public:
    using ShapeEmitterProc::ShapeEmitterProc;

    void fieldChanged(Field& field, double time) override
    {
        static const Part setCoordIndex("set_coordIndex");
        if (setCoordIndex.is(field))
            coordIndexPart.edit<MFInt32>(node()).assignValue(field);
        ShapeEmitterProc::fieldChanged(field, time);
    }

protected:
    void readShape() override
    {
        Node* const coord = resolved(coordPart.readNode(node()));
        _coord.set(*this, procAs<ElementProc>(coord));
        _spots.clear();
        std::vector<osg::Vec3f> converted;
        MeshFaults faults;
        FaceList faces(pointsOf(coord, converted), coordIndexPart.read<MFInt32>(node()).values());
        faces.readPolygons(faults);
        MeshSource source;
        source.faces = &faces;
        source.convex = false;
        const MeshData mesh = buildMesh(source, faults);
        // Without indices the corners stand in their order.
        const std::size_t count = mesh.indices.empty() ? mesh.positions.size() : mesh.indices.size();
        const auto corner = [&mesh](std::size_t i) {
            return osg::Vec3f(mesh.positions[mesh.indices.empty() ? i : mesh.indices[i]]);
        };
        for (std::size_t i = 0; i + 2 < count; i += 3)
            _spots.add(corner(i), corner(i + 1), corner(i + 2));
        if (!faults.isEmpty())
            complain(nullptr, faults.text());
    }

    bool placeAtShape(osg::Vec3f& position, osg::Vec3f& direction, Chance& chance) override
    {
        if (_spots.isEmpty())
            return false;
        if (!internalPart.read<SFBool>(node()).value())
            _spots.pickOn(position, direction, chance);
        else if (!_spots.pickIn(position, chance))
            return false;
        direction = particleDirection(node(), chance);
        return true;
    }

private:
    Use _coord;
    MeshSpots _spots;
};

/// Throws particles back at the faces of a geometry.
class BoundedPhysicsProc : public ParticlePhysicsProc
{
public:
    explicit BoundedPhysicsProc(Node& node)
        : ParticlePhysicsProc(node)
        , _tree(osg::Node::create())
        , _action(osg::IntersectAction::create())
    {
    }

    void begin(Chance&) override
    {
        auto* const geometry = elementOf<GeometryProc>(geometryPart.readNode(node()));
        _geometry.set(*this, geometry);
        const osg::GeometryPtr core = geometry ? geometry->geometry() : osg::GeometryPtr();
        _isBounding = core && geometry->kind() == Surface::FACES && enabledPart.read<SFBool>(node()).value();
        if (_tree->getCore() != osg::NodeCorePtr(core))
            _tree->setCore(osg::NodeCorePtr(core));
    }

    osg::Vec3f force(const Particle&, Chance&) const override { return {}; }

    void bound(Particle& particle, const osg::Vec3f& from) override
    {
        const osg::Vec3f way = particle.position - from;
        const float length = way.length();
        if (!_isBounding || !(length > 0.0F) || !isUsable(particle.position))
            return;
        _action->setLine(osg::Line(osg::Pnt3f(from), way), length);
        _action->apply(_tree.get());
        if (!_action->didHit())
            return;
        // It stays short of the face, on the side from which it came, whatever rounding does.
        constexpr float Nearly = 0.999F;
        particle.position = from + way * (Nearly * _action->getHitT() / length);
        const osg::Vec3f normal = _action->getHitNormal();
        particle.velocity -= normal * (2.0F * particle.velocity.dot(normal));
    }

private:
    Use _geometry;
    osg::RefPtr<osg::NodePtr> _tree; ///< the geometry alone
    std::unique_ptr<osg::IntersectAction> _action;
    bool _isBounding = false;
};

const ProcRegistration bounded("BoundedPhysicsModel", makeProc<BoundedPhysicsProc>);
const ProcRegistration surface("SurfaceEmitter", makeProc<SurfaceEmitterProc>);
const ProcRegistration volume("VolumeEmitter", makeProc<VolumeEmitterProc>);

} // namespace

} // namespace Orvane
