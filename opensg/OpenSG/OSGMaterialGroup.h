#pragma once

#include "OSGGroup.h"
#include "OSGMaterialFields.h"

namespace osg {

class MaterialGroup;
using MaterialGroupPtr = FCPtr<GroupPtr, MaterialGroup>;

/// The core of a node below which all is drawn with one material, on which it holds a reference. It stands in
/// for the materials of the geometries, so that one geometry can be shown in several looks. Of groups inside
/// each other the outermost counts.
class OSG_SYSTEMLIB_DLLMAPPING MaterialGroup : public Group
{
public:
    using Ptr = MaterialGroupPtr;

    enum : UInt32 { MaterialFieldId = Group::NextFieldId, NextFieldId };
    static constexpr BitVector MaterialFieldMask = BitVector(1) << MaterialFieldId;

    static MaterialGroupPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// Null leaves everything with its own material.
    const MaterialPtr& getMaterial() const { return _material; }
    void setMaterial(const MaterialPtr& material);

    void renderEnter(RenderAction& action) override;
    void renderLeave(RenderAction& action) override;

protected:
    MaterialGroup() = default;
    ~MaterialGroup() override;

private:
    MaterialPtr _material;
};

} // namespace osg
