#pragma once

#include <OpenSG/OSGGLSlot.h>

#include <memory>
#include <vector>

namespace osg {

/// Something that lives in a GL context: buffers, a texture, a program. Deleting the C++ object makes no GL
/// call, as there may be no context any more.
class GLObject
{
public:
    virtual ~GLObject();
    /// Frees what the context holds; the context is current.
    virtual void free() = 0;
};

/// What GL offers in a context.
struct GLLimits
{
    Int32 textureSize = 64;
    Int32 textureSize3D = 16;
    Int32 textureUnits = 1;
    Real32 anisotropy = 1;
    bool generateMipmap = false;
    bool framebuffers = false;
    bool combineModulateAdd = false;
    bool programs = false; ///< and the images that these reach
    Int32 imageUnits = 1;
};

/// The GL objects of one window, by the slots of the containers that they are made for. Objects whose slot
/// has gone wait until the window's context is current again.
class GLObjects
{
public:
    GLObjects();
    ~GLObjects();
    GLObjects(const GLObjects&) = delete;
    GLObjects& operator=(const GLObjects&) = delete;

    /// To be called with the window's context current at the begin of a frame: frees what has to go. In
    /// another context than last time everything is forgotten.
    void enterContext();
    void freeRetired();

    const GLLimits& getLimits() const { return _limits; }

    /// The object of `slot`. When there is none that is up to date, `make` is called with the old one (or
    /// null), which it may bring up to date and give back, or free.
    template <class T, class Make>
    T& get(const GLSlot& slot, Make make)
    {
        if (slot.getPlace() >= _entries.size())
            _entries.resize(slot.getPlace() + 1);
        Entry& entry = _entries[slot.getPlace()];
        if (entry.stamp != slot.getStamp()) {
            std::unique_ptr<T> old;
            if (entry.owner == slot.getOwner())
                old.reset(static_cast<T*>(entry.object.release()));
            entry.object = make(std::move(old));
            entry.owner = slot.getOwner();
            entry.stamp = slot.getStamp();
        }
        return static_cast<T&>(*entry.object);
    }

private:
    friend class GLSlot;

    struct Entry
    {
        UInt64 owner = 0;
        UInt64 stamp = 0;
        std::unique_ptr<GLObject> object;
    };

    void retire(const GLSlot& slot);
    void readLimits();

    void* _context = nullptr;
    GLLimits _limits;
    std::vector<Entry> _entries;
    std::vector<std::unique_ptr<GLObject>> _retired;
};

} // namespace osg
