#include "base/ValueFields.h"
#include "core/AppearanceProcs.h"
#include "core/GeometryProc.h"
#include "core/NormalGenerator.h"
#include "core/Part.h"
#include "core/ParticleProcs.h"
#include "core/SceneState.h"
#include "core/UsableValues.h"
#include "core/ViewFollower.h"
#include <OpenSG/OSGGeometry.h>
#include <Orvane/Context.h>
#include <Orvane/MFColor.h>
#include <Orvane/MFColorRGBA.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFNode.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFInt32.h>
#include <Orvane/SFString.h>
#include <algorithm>
#include <string>

namespace Orvane {

namespace {

const Part appearancePart("appearance");
const Part colorKeyPart("colorKey");
const Part colorPart("color");
const Part createParticlesPart("createParticles");
const Part emitterPart("emitter");
const Part enabledPart("enabled");
const Part geometryTypePart("geometryType");
const Part isActivePart("isActive");
const Part lifetimeVariationPart("lifetimeVariation");
const Part maxParticlesPart("maxParticles");
const Part particleLifetimePart("particleLifetime");
const Part particleSizePart("particleSize");
const Part physicsPart("physics");
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

    ~ParticleSystemProc() override
    {
        if (_scene)
            _scene->removeViewFollower(*this);
    }

    osg::NodePtr tree() const override { return _tree; }

    void start(double time) override
    {
        _last = time;
        _scene = SceneState::of(node());
        if (_scene)
            _scene->addViewFollower(*this);
        ElementProc::start(time);
    }

    void update() override
    {
        _tree->setActive(visiblePart.read<SFBool>(node()).value());
        const std::string& type = geometryTypePart.read<SFString>(node()).value();
        _kind = type == "LINE" ? Surface::LINES : type == "POINT" ? Surface::POINTS : Surface::FACES;
        if (type == "GEOMETRY")
            complain("geometryType",
                     "expected particles of a kind that is drawn, found \"GEOMETRY\"; they are "
                     "drawn as \"QUAD\"");
        if (maxParticlesPart.read<SFInt32>(node()).value() > MostParticles)
            complain("maxParticles", "expected at most " + std::to_string(MostParticles) + ", found more");
        syncUses();
        syncSurface();
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
        if (_kind == Surface::FACES)
            draw();
        return true;
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
        Node* const ramp = resolved(colorPart.readNode(node()));
        _color.set(*this, procAs<ElementProc>(ramp));
        readRamp(ramp);
    }

    /// The colours over the life of a particle.
    void readRamp(Node* ramp)
    {
        _ramp.clear();
        _rampHasAlpha = false;
        if (!ramp || !colorPart.isIn(*ramp))
            return;
        const Field& field = readField(*ramp, colorPart.in(*ramp));
        if (field.dataType() == MFCOLOR_DT) {
            for (const osg::Color3f& c : static_cast<const MFColor&>(field).values())
                _ramp.emplace_back(c.red(), c.green(), c.blue(), 1.0F);
        } else if (field.dataType() == MFCOLORRGBA_DT) {
            _ramp = static_cast<const MFColorRGBA&>(field).values();
            _rampHasAlpha = true;
        }
        _ramp.resize(std::min(_ramp.size(), colorKeyPart.read<MFFloat>(node()).values().size()));
    }

    osg::Color4f rampAt(float share) const
    {
        const std::vector<float>& keys = colorKeyPart.read<MFFloat>(node()).values();
        const auto end = keys.begin() + static_cast<std::ptrdiff_t>(_ramp.size());
        const auto next = std::upper_bound(keys.begin(), end, share);
        if (next == keys.begin())
            return _ramp.front();
        if (next == end)
            return _ramp.back();
        const auto i = static_cast<std::size_t>(next - keys.begin());
        const float width = keys[i] - keys[i - 1];
        const float t = width > 0.0F ? std::clamp((share - keys[i - 1]) / width, 0.0F, 1.0F) : 1.0F;
        const auto mix = [t](float a, float b) { return a + (b - a) * t; };
        const osg::Color4f& a = _ramp[i - 1];
        const osg::Color4f& b = _ramp[i];
        return osg::Color4f(mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue()),
                            mix(a.alpha(), b.alpha()));
    }

    void syncSurface()
    {
        auto* const appearance = elementOf<AppearanceProc>(appearancePart.readNode(node()));
        _appearance.set(*this, appearance);
        Surface surface;
        surface.kind = _kind;
        surface.solid = false;
        surface.vertexColors = _ramp.empty() ? Surface::NO_COLORS : Surface::DIFFUSE_COLORS;
        if (appearance)
            appearance->describe(surface, {});
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
            particle.velocity += force * (step / mass);
            particle.position += particle.velocity * step;
            particle.age += step;
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
        const int most = std::clamp(maxParticlesPart.read<SFInt32>(node()).value(), 0, MostParticles);
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
            if (_particles.size() >= static_cast<std::size_t>(most) || !emitter->emit(particle, _chance))
                continue;
            particle.lifetime = _chance.about(lifetime, variation);
            _particles.push_back(particle);
        }
    }

    /// Lays the particles out as they are now.
    void draw()
    {
        MeshData mesh;
        const osg::Vec2f& size = particleSizePart.read<SFVec2f>(node()).value();
        const float width = usableNumber(size[0], 0.0F) * 0.5F;
        const float height = usableNumber(size[1], 0.0F) * 0.5F;
        const osg::Vec3f facing = _right.cross(_up);
        const auto add = [&](const osg::Vec3f& place, const osg::Color4f& color) {
            mesh.positions.emplace_back(place);
            if (!_ramp.empty())
                mesh.colors.push_back(color);
        };
        for (const Particle& particle : _particles) {
            const osg::Color4f color =
                _ramp.empty() ? osg::Color4f() : rampAt(particle.age / particle.lifetime);
            if (_kind == Surface::POINTS) {
                add(particle.position, color);
                continue;
            }
            if (_kind == Surface::LINES) {
                const osg::Vec3f half = unitVector(particle.velocity) * height;
                add(particle.position - half, color);
                add(particle.position + half, color);
                continue;
            }
            const auto first = static_cast<std::uint32_t>(mesh.positions.size());
            for (const std::uint32_t corner : {0U, 1U, 3U, 2U}) {
                const float s = corner & 1U ? 1.0F : 0.0F;
                const float t = corner & 2U ? 1.0F : 0.0F;
                add(particle.position + _right * (width * (2.0F * s - 1.0F)) +
                        _up * (height * (2.0F * t - 1.0F)),
                    color);
                mesh.normals.push_back(facing);
                mesh.texCoords.push_back(s);
                mesh.texCoords.push_back(t);
            }
            for (const std::uint32_t corner : {0U, 1U, 2U, 0U, 2U, 3U})
                mesh.indices.push_back(first + corner);
        }
        setMesh(_geometry.get(), std::move(mesh), _kind, _rampHasAlpha);
        pictureChanged();
    }

    osg::RefPtr<osg::NodePtr> _tree; ///< the surface over the geometry
    osg::RefPtr<osg::GeometryPtr> _geometry;
    std::shared_ptr<SurfaceCore> _surface;
    std::shared_ptr<SceneState> _scene;
    Use _appearance;
    Use _color;
    Use _emitter;
    std::vector<Use> _physics;
    std::vector<osg::Color4f> _ramp;
    bool _rampHasAlpha = false;
    Surface::Kind _kind = Surface::FACES;
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
