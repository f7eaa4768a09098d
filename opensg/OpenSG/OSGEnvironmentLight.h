#pragma once

#include "OSGLight.h"
#include "OSGMatrix.h"
#include "OSGRefPtr.h"
#include "OSGTextureChunk.h"

#include <array>

namespace osg {

class EnvironmentLight;
using EnvironmentLightPtr = FCPtr<LightPtr, EnvironmentLight>;

/// The light of all that stands far around, in the diffuse colour of the light: scattered by what it
/// amounts to on each side, and mirrored by its picture. Only what programs draw shows it, and of several
/// over a shape the first one.
class OSG_SYSTEMLIB_DLLMAPPING EnvironmentLight : public Light
{
public:
    using Ptr = EnvironmentLightPtr;
    /// Three numbers, of red, green and blue, for each of 9 terms.
    using Irradiance = std::array<Real32, 27>;

    static EnvironmentLightPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// A cube map with all its levels; null where nothing is mirrored.
    const RefPtr<TextureChunkPtr>& getTexture() const { return _texture; }
    void setTexture(const TextureChunkPtr& texture) { _texture = texture; }
    /// What falls on a face whose normal is x, y, z: the sum of the terms for 1, y, z, x, xy, yz, 3zz - 1, xz
    /// and xx - yy.
    const Irradiance& getIrradiance() const { return _irradiance; }
    void setIrradiance(const Irradiance& irradiance) { _irradiance = irradiance; }
    /// From the system of the beacon to that of the cube; only turns.
    const Matrix& getTurn() const { return _turn; }
    void setTurn(const Matrix& turn) { _turn = turn; }

    Vec4f getShape(Real32 range) const override;

protected:
    EnvironmentLight() = default;

private:
    RefPtr<TextureChunkPtr> _texture;
    Irradiance _irradiance = {};
    Matrix _turn;
};

} // namespace osg
