#include <OpenSG/OSGFieldContainer.h>

#include <vector>

namespace osg {

namespace {

UInt32 nextContainerId()
{
    static std::atomic<UInt32> last{0};
    return ++last;
}

// Where destructors hand over the containers that go with theirs; null outside of a destruction.
thread_local std::vector<FieldContainer*>* doomedContainers = nullptr;

} // namespace

FieldContainer::FieldContainer()
    : _id(nextContainerId())
    , _doomed(0)
{
}

FieldContainer::~FieldContainer() = default;

FieldContainerType& FieldContainer::getClassType()
{
    static FieldContainerType type("FieldContainer", nullptr);
    return type;
}

FieldContainerType& FieldContainer::getType() const
{
    return getClassType();
}

void FieldContainer::changed(BitVector, UInt32)
{
}

// A loop instead of nested destructors: a chain of nodes may be longer than the stack is deep.
void FieldContainer::release()
{
    if (_doomed)
        return;
    _doomed = 1;
    if (doomedContainers) {
        doomedContainers->push_back(this);
        return;
    }
    std::vector<FieldContainer*> waiting{this};
    doomedContainers = &waiting;
    while (!waiting.empty()) {
        FieldContainer* next = waiting.back();
        waiting.pop_back();
        delete next;
    }
    doomedContainers = nullptr;
}

} // namespace osg
