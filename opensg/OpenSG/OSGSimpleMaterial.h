#pragma once

#include "OSGChunkMaterial.h"
#include "OSGMaterialChunk.h"

namespace osg {

class SimpleMaterial;
using SimpleMaterialPtr = FCPtr<ChunkMaterialPtr, SimpleMaterial>;

/// A material of plain colours, for scenes that are built by hand. More chunks may be added to it.
class OSG_SYSTEMLIB_DLLMAPPING SimpleMaterial : public ChunkMaterial
{
public:
    using Ptr = SimpleMaterialPtr;

    static SimpleMaterialPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    Color3f getAmbient() const { return rgb(_colors->getAmbient()); }
    void setAmbient(const Color3f& color) { _colors->setAmbient(rgba(color)); }
    Color3f getDiffuse() const { return rgb(_colors->getDiffuse()); }
    void setDiffuse(const Color3f& color) { _colors->setDiffuse(rgba(color)); }
    Color3f getSpecular() const { return rgb(_colors->getSpecular()); }
    void setSpecular(const Color3f& color) { _colors->setSpecular(rgba(color)); }
    Color3f getEmission() const { return rgb(_colors->getEmission()); }
    void setEmission(const Color3f& color) { _colors->setEmission(rgba(color)); }
    Real32 getShininess() const { return _colors->getShininess(); }
    void setShininess(Real32 shininess) { _colors->setShininess(shininess); }
    /// 0 is opaque, 1 invisible.
    Real32 getTransparency() const { return 1 - _colors->getDiffuse().alpha(); }
    void setTransparency(Real32 transparency);
    bool getLit() const { return _colors->getLit(); }
    void setLit(bool lit) { _colors->setLit(lit); }
    UInt32 getColorMaterial() const { return _colors->getColorMaterial(); }
    void setColorMaterial(UInt32 mode) { _colors->setColorMaterial(mode); }

protected:
    SimpleMaterial();

private:
    static Color3f rgb(const Color4f& color) { return {color.red(), color.green(), color.blue()}; }
    Color4f rgba(const Color3f& color) const
    {
        return {color.red(), color.green(), color.blue(), _colors->getDiffuse().alpha()};
    }

    MaterialChunkPtr _colors;
};

} // namespace osg
