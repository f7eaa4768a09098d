#include "base/ValueFields.h"
#include "core/AppearanceProcs.h"
#include "core/FollowedLayer.h"
#include "core/GeometryProc.h"
#include "core/NormalGenerator.h"
#include "core/Part.h"
#include "core/ParticleLook.h"
#include "core/ParticleProcs.h"
#include "core/UsableValues.h"
#include "core/ViewFollower.h"
#include <OpenSG/OSGGeometry.h>
#include <Orvane/Context.h>
#include <Orvane/MFNode.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFInt32.h>
#include <algorithm>
#include <string>

namespace Orvane {

namespace {

const Part appearancePart("appearance");
const Part colorPart("color");
const Part createParticlesPart("createParticles");
const Part emitterPart("emitter");
const Part enabledPart("enabled");
const Part geometryPart("geometry");
const Part isActivePart("isActive");
const Part lifetimeVariationPart("lifetimeVariation");
const Part maxParticlesPart("maxParticles");
const Part particleLifetimePart("particleLifetime");
const Part physicsPart("physics");
const Part texCoordPart("texCoord");
const Part visiblePart("visible");

constexpr int MostParticles = 10000;
/// A longer time than this between two frames counts as this.
constexpr double LongestStep = 0.25;

/// Behaviour of a `ParticleSystem`: moves particles in the time between frames, and draws them as one mesh.
class ParticleSystemProc : public ElementProc, public ViewFollower
{
public:
    explicit ParticleSystemProc(Node& node)
        : ElementProc(node)
        , _tree(osg::Node::create())
        , _geometry(makeGeometry())
    {
        _tree->addChild(osg::makeNodeFor(osg::NodeCorePtr(osg::GeometryPtr(_geometry.get()))));
    }

    osg::NodePtr tree() const override { return _tree; }

    void start(double time) override
    {
        _last = time;
        _followed.join(node(), *this);
        ElementProc::start(time);
    }

    void update() override
    {
        _tree->setActive(visiblePart.read<SFBool>(node()).value());
        if (maxParticlesPart.read<SFInt32>(node()).value() > MostParticles)
            complain("maxParticles", "expected at most " + std::to_string(MostParticles) + ", found more");
        syncUses();
        syncSurface();
        if (most() > _look.limit())
            complain("geometry", "expected at most " + std::to_string(ParticleLook::MostVertices) +
                                     " vertices for all particles together, found more");
        draw();
        setTicking(isEnabled() || !_particles.empty());
        setActive(isEnabled());
    }

    void tick(double time) override
    {
        const double step = std::clamp(time - _last, 0.0, LongestStep);
        _last = time;
        if (step > 0.0 && isEnabled()) {
            move(static_cast<float>(step));
            if (createParticlesPart.read<SFBool>(node()).value())
                create(static_cast<float>(step));
            draw();
        }
        if (!isEnabled())
            setTicking(false);
    }

    bool follow(const DrawnView& view) override
    {
        osg::Matrix toWorld;
        if (const osg::NodePtr parent = _tree->getParent())
            toWorld = parent->getToWorld();
        osg::Matrix toLocal;
        if (!toWorld.inverse(toLocal))
            return false;
        osg::Vec3f axes[2];
        for (osg::UInt32 i = 0; i < 2; ++i) {
            const auto& column = view.cameraToWorld[i];
            toLocal.multMatrixVec(osg::Vec3f(column[0], column[1], column[2]), axes[i]);
            axes[i] = unitVector(axes[i]);
        }
        if (axes[0] == _right && axes[1] == _up)
            return false;
        _right = axes[0];
        _up = axes[1];
        if (_look.facesViewer())
            draw();
        return true;
    }

protected:
    void elementGone() override
    {
        if (!_geometryUse.element())
            _look.dropGeometry();
        ElementProc::elementGone();
    }

private:
    bool isEnabled() const { return enabledPart.read<SFBool>(node()).value(); }

    void setActive(bool active)
    {
        if (active == isActivePart.read<SFBool>(node()).value())
            return;
        isActivePart.edit<SFBool>(node()).setValue(context().timeStamp(), active, Field::EVENT_CT);
    }

    void syncUses()
    {
        _emitter.set(*this, elementOf<EmitterProc>(emitterPart.readNode(node())));
        const auto& nodes = physicsPart.read<MFNode>(node());
        _physics.resize(nodes.size());
        std::size_t i = 0;
        for (NodeLink& link : nodes)
            _physics[i++].set(*this, elementOf<ParticlePhysicsProc>(link.node()));
        const auto useOf = [this](Use& use, const Part& part) {
            Node* const used = resolved(part.readNode(node()));
            use.set(*this, procAs<ElementProc>(used));
            return used;
        };
        const Node* const colors = useOf(_color, colorPart);
        const Node* const texCoords = useOf(_texCoord, texCoordPart);
        useOf(_geometryUse, geometryPart);
        _look.read(node(), colors, texCoords, dynamic_cast<GeometryProc*>(_geometryUse.element()));
    }

    std::size_t most() const
    {
        return static_cast<std::size_t>(
            std::clamp(maxParticlesPart.read<SFInt32>(node()).value(), 0, MostParticles));
    }

    void syncSurface()
    {
        auto* const appearance = elementOf<AppearanceProc>(appearancePart.readNode(node()));
        _appearance.set(*this, appearance);
        Surface surface;
        surface.kind = _look.kind();
        surface.solid = _look.isSolid();
        surface.vertexColors = _look.hasColors() ? Surface::DIFFUSE_COLORS : Surface::NO_COLORS;
        if (appearance)
            appearance->describe(surface, {});
        if (!surface.textures.empty())
            _look.needTexCoords();
        _surface = surfaceCore(surface);
        _tree->setCore(_surface->core);
    }

    void move(float step)
    {
        for (const Use& use : _physics) {
            if (auto* const physics = dynamic_cast<ParticlePhysicsProc*>(use.element()))
                physics->begin(_chance);
        }
        for (Particle& particle : _particles) {
            osg::Vec3f force;
            for (const Use& use : _physics) {
                if (const auto* const physics = dynamic_cast<ParticlePhysicsProc*>(use.element()))
                    force += physics->force(particle, _chance);
            }
            const float mass = particle.mass > 0.0F ? particle.mass : 1.0F;
            const osg::Vec3f from = particle.position;
            particle.velocity += force * (step / mass);
            particle.position += particle.velocity * step;
            particle.age += step;
            for (const Use& use : _physics) {
                if (auto* const physics = dynamic_cast<ParticlePhysicsProc*>(use.element()))
                    physics->bound(particle, from);
            }
        }
        const auto isGone = [](const Particle& particle) {
            return !(particle.age < particle.lifetime) || !isUsable(particle.position) ||
                   !isUsable(particle.velocity);
        };
        _particles.erase(std::remove_if(_particles.begin(), _particles.end(), isGone), _particles.end());
    }

    void create(float step)
    {
        auto* const emitter = dynamic_cast<EmitterProc*>(_emitter.element());
        const std::size_t most = std::min(this->most(), _look.limit());
        const float lifetime = usableNumber(particleLifetimePart.read<SFFloat>(node()).value(), 0.0F);
        if (!emitter || !emitter->isOn() || !(lifetime > 0.0F))
            return;
        if (emitter->isExplosion()) {
            _owed = static_cast<float>(most);
            createParticlesPart.edit<SFBool>(node()).setValue(context().timeStamp(), false, Field::EVENT_CT);
        } else {
            _owed = std::min(_owed + static_cast<float>(most) / lifetime * step, static_cast<float>(most));
        }
        const float variation =
            std::clamp(usableNumber(lifetimeVariationPart.read<SFFloat>(node()).value(), 0.0F), 0.0F, 1.0F);
        for (; _owed >= 1.0F; _owed -= 1.0F) {
            Particle particle;
            if (_particles.size() >= most || !emitter->emit(particle, _chance))
                continue;
            particle.lifetime = _chance.about(lifetime, variation);
            _particles.push_back(particle);
        }
    }

    /// Lays the particles out as they are now.
    void draw()
    {
        setMesh(_geometry.get(), _look.mesh(_particles, _right, _up), _look.kind(), _look.hasAlpha());
        pictureChanged();
    }

    osg::RefPtr<osg::NodePtr> _tree; ///< the surface over the geometry
    osg::RefPtr<osg::GeometryPtr> _geometry;
    std::shared_ptr<SurfaceCore> _surface;
    FollowedLayer _followed;
    Use _appearance;
    Use _color;
    Use _emitter;
    Use _geometryUse;
    Use _texCoord;
    std::vector<Use> _physics;
    ParticleLook _look;
    std::vector<Particle> _particles;
    Chance _chance;
    float _owed = 0.0F; ///< particles that are due, with a part of one
    double _last = 0.0;
    osg::Vec3f _right{1.0F, 0.0F, 0.0F}; ///< of the viewer, like the next
    osg::Vec3f _up{0.0F, 1.0F, 0.0F};
};

const ProcRegistration particleSystem("ParticleSystem", makeProc<ParticleSystemProc>);

} // namespace

} // namespace Orvane
