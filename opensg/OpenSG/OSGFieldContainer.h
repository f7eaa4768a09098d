#pragma once

#include "OSGBaseTypes.h"
#include "OSGConfig.h"
#include "OSGFieldContainerPtr.h"
#include "OSGFieldContainerType.h"

#include <atomic>

namespace osg {

/// The base of everything that is handled through a container pointer. A class gives `create()`, its record
/// `getClassType()` and `getType()`. Containers start with no reference and live until `subRefCP` finds none
/// left; reference counts may be changed from any thread, everything else belongs to one thread at a time.
class OSG_SYSTEMLIB_DLLMAPPING FieldContainer
{
public:
    using Ptr = FieldContainerPtr;

    FieldContainer(const FieldContainer&) = delete;
    FieldContainer& operator=(const FieldContainer&) = delete;

    static FieldContainerType& getClassType();
    /// The record of the container's own class.
    virtual FieldContainerType& getType() const;
    UInt32 getTypeId() const { return getType().getId(); }
    const Char8* getTypeName() const { return getType().getCName(); }

    /// Runs at the end of an edit: the fields in `whichField` have changed, by `origin` (ChangedOrigin).
    virtual void changed(BitVector whichField, UInt32 origin);

    /// The number of the container, unique in this process and never 0.
    UInt32 getFieldContainerId() const { return _id; }
    Int32 getRefCount() const { return _refCount; }

protected:
    FieldContainer();
    virtual ~FieldContainer();

private:
    void release();

    friend OSG_SYSTEMLIB_DLLMAPPING void addRefCP(const FieldContainerPtrBase& p);
    friend OSG_SYSTEMLIB_DLLMAPPING void subRefCP(const FieldContainerPtrBase& p);

    std::atomic<Int32> _refCount{0};
    UInt32 _id : 31;
    UInt32 _doomed : 1; ///< the end has begun
};

} // namespace osg
