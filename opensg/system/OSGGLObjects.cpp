#include "OSGGLObjects.h"

#include "OSGGLContext.h"

#include <algorithm>
#include <epoxy/gl.h>
#include <mutex>

namespace osg {

namespace {

// Places are dense, so that a table is a plain array; stamps are never used twice.
struct SlotOffice
{
    std::mutex mutex;
    std::vector<UInt32> freePlaces;
    UInt32 placeCount = 0;
    UInt64 lastStamp = 0;
    std::vector<GLObjects*> tables;
};

// Never destroyed: containers may outlive the static objects of this library.
SlotOffice& office()
{
    static SlotOffice* instance = new SlotOffice;
    return *instance;
}

} // namespace

GLSlot::GLSlot()
{
    SlotOffice& slots = office();
    const std::lock_guard<std::mutex> guard(slots.mutex);
    if (slots.freePlaces.empty()) {
        _place = slots.placeCount++;
    } else {
        _place = slots.freePlaces.back();
        slots.freePlaces.pop_back();
    }
    _owner = _stamp = ++slots.lastStamp;
}

GLSlot::~GLSlot()
{
    SlotOffice& slots = office();
    const std::lock_guard<std::mutex> guard(slots.mutex);
    for (GLObjects* table : slots.tables)
        table->retire(*this);
    slots.freePlaces.push_back(_place);
}

void GLSlot::touch()
{
    SlotOffice& slots = office();
    const std::lock_guard<std::mutex> guard(slots.mutex);
    _stamp = ++slots.lastStamp;
}

GLObject::~GLObject() = default;

GLObjects::GLObjects()
{
    SlotOffice& slots = office();
    const std::lock_guard<std::mutex> guard(slots.mutex);
    slots.tables.push_back(this);
}

GLObjects::~GLObjects()
{
    SlotOffice& slots = office();
    const std::lock_guard<std::mutex> guard(slots.mutex);
    slots.tables.erase(std::find(slots.tables.begin(), slots.tables.end(), this));
}

void GLObjects::retire(const GLSlot& slot)
{
    if (slot.getPlace() >= _entries.size())
        return;
    Entry& entry = _entries[slot.getPlace()];
    if (entry.owner == slot.getOwner() && entry.object)
        _retired.push_back(std::move(entry.object));
}

void GLObjects::enterContext()
{
    void* context = currentGLContext();
    if (context != _context) {
        _entries.clear();
        _retired.clear();
        _context = context;
        readLimits();
    }
    freeRetired();
}

void GLObjects::freeRetired()
{
    for (const std::unique_ptr<GLObject>& object : _retired)
        object->free();
    _retired.clear();
}

void GLObjects::readLimits()
{
    _limits = GLLimits();
    glGetIntegerv(GL_MAX_TEXTURE_SIZE, &_limits.textureSize);
    glGetIntegerv(GL_MAX_3D_TEXTURE_SIZE, &_limits.textureSize3D);
    glGetIntegerv(GL_MAX_TEXTURE_UNITS, &_limits.textureUnits);
    if (epoxy_has_gl_extension("GL_EXT_texture_filter_anisotropic"))
        glGetFloatv(GL_MAX_TEXTURE_MAX_ANISOTROPY_EXT, &_limits.anisotropy);
    _limits.combineModulateAdd = epoxy_has_gl_extension("GL_ATI_texture_env_combine3");
    _limits.programs = epoxy_gl_version() >= 20;
    if (_limits.programs)
        glGetIntegerv(GL_MAX_TEXTURE_IMAGE_UNITS, &_limits.imageUnits);
    _limits.framebuffers = epoxy_gl_version() >= 30 || epoxy_has_gl_extension("GL_ARB_framebuffer_object");
    _limits.generateMipmap = _limits.framebuffers;
}

} // namespace osg
