#include <OpenSG/OSGFieldContainer.h>

namespace osg {

UInt32 FieldContainerPtrBase::getFieldContainerId() const
{
    return _store ? _store->getFieldContainerId() : 0;
}

Int32 FieldContainerPtrBase::getRefCount() const
{
    return _store ? _store->getRefCount() : 0;
}

void addRefCP(const FieldContainerPtrBase& p)
{
    if (p._store)
        ++p._store->_refCount;
}

void subRefCP(const FieldContainerPtrBase& p)
{
    FieldContainer* container = p._store;
    if (!container || --container->_refCount > 0)
        return;
    // Nulled first: the variable may lie inside the container that goes.
    p._store = nullptr;
    container->release();
}

void setRefdCP(FieldContainerPtrBase& p, const FieldContainerPtrBase& n)
{
    if (p == n)
        return;
    // Copies, because both variables may lie in the container that `p` gives up.
    const FieldContainerPtrBase old = p;
    const FieldContainerPtrBase next = n;
    addRefCP(next);
    p._store = next._store;
    subRefCP(old);
}

void clearRefCP(FieldContainerPtrBase& p)
{
    const FieldContainerPtrBase old = p;
    p._store = nullptr;
    subRefCP(old);
}

void beginEditCP(const FieldContainerPtr&, BitVector, UInt32)
{
}

void endEditCP(const FieldContainerPtr& p, BitVector which, UInt32 origin)
{
    changedCP(p, which, origin);
}

void changedCP(const FieldContainerPtr& p, BitVector which, UInt32 origin)
{
    if (p)
        p->changed(which, origin);
}

void endEditNotChangedCP(const FieldContainerPtr&, BitVector, UInt32)
{
}

} // namespace osg
