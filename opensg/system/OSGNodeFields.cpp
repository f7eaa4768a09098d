#include <OpenSG/OSGNodeFields.h>

#include <algorithm>

namespace osg {

MFNodePtr::MFNodePtr(std::initializer_list<NodePtr> pointers)
{
    for (const NodePtr& pointer : pointers)
        push_back(pointer);
}

MFNodePtr::MFNodePtr(const MFNodePtr& other)
{
    *this = other;
}

MFNodePtr& MFNodePtr::operator=(const MFNodePtr& other)
{
    if (this == &other)
        return *this;
    clear();
    if (other._size > 1)
        setRoom(other._size);
    std::copy(other.begin(), other.end(), begin());
    _size = other._size;
    return *this;
}

MFNodePtr::~MFNodePtr()
{
    clear();
}

void MFNodePtr::insert(const_iterator place, const NodePtr& pointer)
{
    const NodePtr inserted = pointer; // it may stand in this list
    const auto index = place - begin();
    if (_size == _room)
        setRoom(_room * 2);
    std::copy_backward(begin() + index, end(), end() + 1);
    begin()[index] = inserted;
    ++_size;
}

void MFNodePtr::erase(const_iterator place)
{
    const iterator hole = begin() + (place - begin());
    std::copy(hole + 1, end(), hole);
    if (--_size == 0)
        clear();
}

void MFNodePtr::clear()
{
    _size = 0;
    if (!isInside())
        setRoom(1);
}

/// Moves to room for that many, at least for those that are there.
void MFNodePtr::setRoom(UInt32 room)
{
    NodePtr* const many = room == 1 ? nullptr : new NodePtr[room];
    NodePtr one;
    std::copy(begin(), end(), many ? many : &one);
    if (!isInside())
        delete[] _many;
    if (many)
        _many = many;
    else
        _one = one;
    _room = room;
}

bool operator==(const MFNodePtr& a, const MFNodePtr& b)
{
    return std::equal(a.begin(), a.end(), b.begin(), b.end());
}

} // namespace osg
