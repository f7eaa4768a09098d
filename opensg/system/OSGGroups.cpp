#include <OpenSG/OSGMaterial.h>
#include <OpenSG/OSGMaterialGroup.h>
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRenderAction.h>
#include <OpenSG/OSGSwitch.h>
#include <OpenSG/OSGTransform.h>
#include <OpenSG/OSGVisitSubTree.h>

#include "OSGContainerType.h"
#include "OSGSceneStamp.h"

namespace osg {

OSG_CREATABLE_CONTAINER_TYPE(Group, NodeCore)
OSG_CREATABLE_CONTAINER_TYPE(Transform, Group)
OSG_CREATABLE_CONTAINER_TYPE(Switch, Group)
OSG_CREATABLE_CONTAINER_TYPE(VisitSubTree, Group)
OSG_CREATABLE_CONTAINER_TYPE(MaterialGroup, Group)

void Transform::setMatrix(const Matrix& matrix)
{
    _matrix = matrix;
    invalidateVolume();
}

void Transform::changed(BitVector whichField, UInt32 origin)
{
    if (whichField & MatrixFieldMask)
        invalidateVolume();
    Group::changed(whichField, origin);
}

void Transform::accumulateMatrix(Matrix& result) const
{
    result.mult(_matrix);
}

void Transform::adjustVolume(Volume& volume)
{
    volume.transform(_matrix);
}

void Switch::setChoice(Int32 choice)
{
    _choice = choice;
    invalidateVolume();
}

void Switch::changed(BitVector whichField, UInt32 origin)
{
    if (whichField & ChoiceFieldMask)
        invalidateVolume();
    Group::changed(whichField, origin);
}

NodeCore::ChildRange Switch::getActiveChildren(UInt32 count) const
{
    if (_choice == ALL)
        return {0, count};
    if (_choice < 0 || static_cast<UInt32>(_choice) >= count)
        return {0, 0};
    const UInt32 chosen = static_cast<UInt32>(_choice);
    return {chosen, chosen + 1};
}

VisitSubTree::~VisitSubTree()
{
    setSubTreeRoot(NullFC);
}

void VisitSubTree::setSubTreeRoot(const NodePtr& root)
{
    if (root == _subTreeRoot)
        return;
    if (_subTreeRoot)
        _subTreeRoot->subReferrer(this);
    _subTreeRoot = root;
    if (_subTreeRoot)
        _subTreeRoot->addReferrer(this);
    invalidateVolume();
}

MaterialGroup::~MaterialGroup()
{
    clearRefCP(_material);
}

void MaterialGroup::setMaterial(const MaterialPtr& material)
{
    if (material != _material)
        SceneStamp::renew();
    setRefdCP(_material, material);
}

void MaterialGroup::renderEnter(RenderAction& action)
{
    action.pushMaterial(_material.getCPtr());
}

void MaterialGroup::renderLeave(RenderAction& action)
{
    action.popMaterial();
}

} // namespace osg
