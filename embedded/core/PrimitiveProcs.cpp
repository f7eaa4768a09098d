#include "base/ValueFields.h"
#include "base/ValueText.h"
#include "core/GeometryProc.h"
#include "core/Part.h"
#include "core/PrimitiveMesh.h"
#include "core/SharedTable.h"
#include <Orvane/SFBool.h>
#include <Orvane/SFFloat.h>
#include <array>
#include <string>

namespace Orvane {

namespace {

const Part bottomPart("bottom");
const Part bottomRadiusPart("bottomRadius");
const Part heightPart("height");
const Part radiusPart("radius");
const Part sidePart("side");
const Part sizePart("size");
const Part solidPart("solid");
const Part topPart("top");

enum class Solid : std::uint8_t { Box, Sphere, Cone, Cylinder };

/// What a solid looks like; equal ones share one core.
struct SolidKey
{
    Solid solid = Solid::Box;
    bool side = true;
    bool bottom = true;
    bool top = true;
    std::array<float, 3> sizes{};

    bool operator==(const SolidKey& other) const
    {
        return solid == other.solid && side == other.side && bottom == other.bottom && top == other.top &&
               sizes == other.sizes;
    }
};

struct SolidKeyHash
{
    std::size_t operator()(const SolidKey& key) const
    {
        std::size_t result = static_cast<std::size_t>(key.solid) * 8 + (key.side ? 4 : 0) +
                             (key.bottom ? 2 : 0) + (key.top ? 1 : 0);
        for (const float size : key.sizes)
            result = result * 31 + std::hash<float>()(size);
        return result;
    }
};

using GeometryRef = osg::RefPtr<osg::GeometryPtr>;

MeshData meshOf(const SolidKey& key)
{
    switch (key.solid) {
    case Solid::Box:
        return boxMesh(osg::Vec3f(key.sizes[0], key.sizes[1], key.sizes[2]));
    case Solid::Sphere:
        return sphereMesh(key.sizes[0]);
    case Solid::Cone:
        return coneMesh(key.sizes[0], key.sizes[1], key.side, key.bottom);
    case Solid::Cylinder:
        break;
    }
    return cylinderMesh(key.sizes[0], key.sizes[1], key.side, key.bottom, key.top);
}

std::shared_ptr<GeometryRef> solidGeometry(const SolidKey& key)
{
    static SharedTable<SolidKey, GeometryRef, SolidKeyHash> solids;
    return solids.get(key, [&key] {
        auto geometry = std::make_unique<GeometryRef>(makeGeometry());
        setMesh(*geometry, meshOf(key), Surface::FACES);
        return geometry;
    });
}

/// Behaviour of the four solids.
class SolidProc : public GeometryProc
{
public:
    using GeometryProc::GeometryProc;

    osg::GeometryPtr geometry() const override { return _geometry ? _geometry->get() : osg::GeometryPtr(); }
    bool isSolid() const override { return solidPart.read<SFBool>(node()).value(); }

    void update() override
    {
        SolidKey wanted = key();
        for (float& size : wanted.sizes) {
            if (!isDrawable(size) || size < 0.0F) {
                complain(nullptr, "expected a finite size of 0 or more, found " + text::written(size) +
                                      "; it counts as 0");
                size = 0.0F;
            }
        }
        _geometry = solidGeometry(wanted);
        changed();
        pictureChanged();
    }

protected:
    virtual SolidKey key() const = 0;

    float number(const Part& part) const { return part.read<SFFloat>(node()).value(); }
    bool flag(const Part& part) const { return part.read<SFBool>(node()).value(); }

private:
    std::shared_ptr<GeometryRef> _geometry;
};

class BoxProc : public SolidProc
{
public:
    using SolidProc::SolidProc;

protected:
    SolidKey key() const override
    {
        const osg::Vec3f& size = sizePart.read<SFVec3f>(node()).value();
        return {Solid::Box, true, true, true, {size[0], size[1], size[2]}};
    }
};

class SphereProc : public SolidProc
{
public:
    using SolidProc::SolidProc;

protected:
    SolidKey key() const override { return {Solid::Sphere, true, true, true, {number(radiusPart)}}; }
};

class ConeProc : public SolidProc
{
public:
    using SolidProc::SolidProc;

protected:
    SolidKey key() const override
    {
        return {Solid::Cone,
                flag(sidePart),
                flag(bottomPart),
                true,
                {number(bottomRadiusPart), number(heightPart)}};
    }
};

class CylinderProc : public SolidProc
{
public:
    using SolidProc::SolidProc;

protected:
    SolidKey key() const override
    {
        return {Solid::Cylinder,
                flag(sidePart),
                flag(bottomPart),
                flag(topPart),
                {number(radiusPart), number(heightPart)}};
    }
};

const ProcRegistration box("Box", makeProc<BoxProc>);
const ProcRegistration sphere("Sphere", makeProc<SphereProc>);
const ProcRegistration cone("Cone", makeProc<ConeProc>);
const ProcRegistration cylinder("Cylinder", makeProc<CylinderProc>);

} // namespace

} // namespace Orvane
