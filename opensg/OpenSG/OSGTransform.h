#pragma once

#include "OSGGroup.h"

namespace osg {

class Transform;
using TransformPtr = FCPtr<GroupPtr, Transform>;

/// The core of a node whose children stand in a system of their own.
class OSG_SYSTEMLIB_DLLMAPPING Transform : public Group
{
public:
    using Ptr = TransformPtr;

    enum : UInt32 { MatrixFieldId = Group::NextFieldId, NextFieldId };
    static constexpr BitVector MatrixFieldMask = BitVector(1) << MatrixFieldId;

    static TransformPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    /// From the children's system to that of the node's parent.
    const Matrix& getMatrix() const { return _matrix; }
    /// For changes in place, which belong between `beginEditCP` and `endEditCP`.
    Matrix& getMatrix() { return _matrix; }
    void setMatrix(const Matrix& matrix);

    void changed(BitVector whichField, UInt32 origin) override;
    void accumulateMatrix(Matrix& result) const override;
    void adjustVolume(Volume& volume) override;

protected:
    Transform() = default;

private:
    Matrix _matrix;
};

} // namespace osg
