#pragma once

#include "OSGDrawable.h"
#include "OSGMaterialFields.h"

namespace osg {

class MaterialDrawable;
using MaterialDrawablePtr = FCPtr<DrawablePtr, MaterialDrawable>;

/// A drawable that is drawn with a material, on which it holds a reference.
class OSG_SYSTEMLIB_DLLMAPPING MaterialDrawable : public Drawable
{
public:
    using Ptr = MaterialDrawablePtr;

    enum : UInt32 { MaterialFieldId = Drawable::NextFieldId, NextFieldId };
    static constexpr BitVector MaterialFieldMask = BitVector(1) << MaterialFieldId;

    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// Null stands for the looks that GL has at first: a dull light grey.
    const MaterialPtr& getMaterial() const { return _material; }
    void setMaterial(const MaterialPtr& material);

protected:
    MaterialDrawable() = default;
    ~MaterialDrawable() override;

private:
    MaterialPtr _material;
};

} // namespace osg
