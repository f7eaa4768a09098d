#pragma once

#include "OSGMatrix.h"
#include "OSGPointLight.h"
#include "OSGRefPtr.h"
#include "OSGTextureChunk.h"

namespace osg {

class ProjectorLight;
using ProjectorLightPtr = FCPtr<PointLightPtr, ProjectorLight>;

/// A light that throws a flat texture onto what it meets, from a point or in parallel rays. Only what
/// programs draw shows it, and of several over a shape the first one.
class OSG_SYSTEMLIB_DLLMAPPING ProjectorLight : public PointLight
{
public:
    using Ptr = ProjectorLightPtr;

    static ProjectorLightPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// Null for a projector that is dark.
    const RefPtr<TextureChunkPtr>& getTexture() const { return _texture; }
    void setTexture(const TextureChunkPtr& texture) { _texture = texture; }
    /// From the system of the beacon to the texture: what is shown lies between 0 and w in x, y and z.
    const Matrix& getProjection() const { return _projection; }
    void setProjection(const Matrix& projection) { _projection = projection; }
    /// Where parallel rays come from; null, the default, for those from the position.
    const Vec3f& getDirection() const { return _direction; }
    void setDirection(const Vec3f& direction) { _direction = direction; }

    Vec4f getShape(Real32 range) const override;
    void activate(UInt32 index, const Matrix& toEye) const override;

protected:
    ProjectorLight() = default;

private:
    RefPtr<TextureChunkPtr> _texture;
    Matrix _projection;
    Vec3f _direction;
};

} // namespace osg
