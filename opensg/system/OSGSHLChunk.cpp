#include <OpenSG/OSGSHLChunk.h>

#include <OpenSG/OSGRenderActionBase.h>
#include <OpenSG/OSGWindow.h>

#include "OSGContainerType.h"
#include "OSGGLProgram.h"

#include <epoxy/gl.h>

namespace osg {

OSG_CREATABLE_CONTAINER_TYPE(SHLProgram, AttachmentContainer)
OSG_CREATABLE_CONTAINER_TYPE(SHLChunk, StateChunk)

namespace {

enum Kind { REAL, INTEGER, SAMPLER };

struct UniformType
{
    UInt32 type;
    Kind kind;
    UInt32 components;
    const Char8* name;
};

const UniformType uniformTypes[] = {
    {GL_FLOAT, REAL, 1, "float"},
    {GL_FLOAT_VEC2, REAL, 2, "vec2"},
    {GL_FLOAT_VEC3, REAL, 3, "vec3"},
    {GL_FLOAT_VEC4, REAL, 4, "vec4"},
    {GL_FLOAT_MAT2, REAL, 4, "mat2"},
    {GL_FLOAT_MAT3, REAL, 9, "mat3"},
    {GL_FLOAT_MAT4, REAL, 16, "mat4"},
    {GL_INT, INTEGER, 1, "int"},
    {GL_INT_VEC2, INTEGER, 2, "ivec2"},
    {GL_INT_VEC3, INTEGER, 3, "ivec3"},
    {GL_INT_VEC4, INTEGER, 4, "ivec4"},
    {GL_BOOL, INTEGER, 1, "bool"},
    {GL_BOOL_VEC2, INTEGER, 2, "bvec2"},
    {GL_BOOL_VEC3, INTEGER, 3, "bvec3"},
    {GL_BOOL_VEC4, INTEGER, 4, "bvec4"},
    {GL_SAMPLER_1D, SAMPLER, 0, "sampler1D"},
    {GL_SAMPLER_2D, SAMPLER, 0, "sampler2D"},
    {GL_SAMPLER_3D, SAMPLER, 0, "sampler3D"},
    {GL_SAMPLER_CUBE, SAMPLER, 0, "samplerCube"},
    {GL_SAMPLER_1D_SHADOW, SAMPLER, 0, "sampler1DShadow"},
    {GL_SAMPLER_2D_SHADOW, SAMPLER, 0, "sampler2DShadow"},
};

const UniformType& typeOf(UInt32 type)
{
    static const UniformType other = {0, REAL, 0, "variable of another type"};
    for (const UniformType& entry : uniformTypes) {
        if (entry.type == type)
            return entry;
    }
    return other;
}

} // namespace

UInt32 SHLProgram::Uniform::components() const
{
    return typeOf(type).components;
}

bool SHLProgram::Uniform::isInteger() const
{
    return typeOf(type).kind == INTEGER;
}

bool SHLProgram::Uniform::isSampler() const
{
    return typeOf(type).kind == SAMPLER;
}

const Char8* SHLProgram::Uniform::typeName() const
{
    return typeOf(type).name;
}

void SHLProgram::setSources(std::vector<Source> sources)
{
    _sources = std::move(sources);
    _status = UNTRIED;
    _messages.clear();
    _uniforms.clear();
    _glSlot.touch();
}

void SHLProgram::setOutcome(Status status, std::vector<Message> messages, std::vector<Uniform> uniforms)
{
    _status = status;
    _messages = std::move(messages);
    _uniforms = std::move(uniforms);
    if (_listener)
        _listener();
}

bool SHLChunk::Value::fits(const SHLProgram::Uniform& uniform) const
{
    if (uniform.isSampler())
        return !textures.empty();
    if (uniform.components() == 0 || uniform.components() != components || !textures.empty())
        return false;
    // Integers can be told as fractions, but not the other way round.
    return reals.empty() || !uniform.isInteger();
}

bool SHLChunk::Value::operator==(const Value& other) const
{
    return components == other.components && reals == other.reals && integers == other.integers &&
           textures == other.textures;
}

void SHLChunk::setProgram(const SHLProgramPtr& program)
{
    if (program == _program.get())
        return;
    if (!program)
        _lastGood = NullFC;
    else if (_program && _program->getStatus() == SHLProgram::GOOD)
        _lastGood = _program;
    _program = program;
}

void SHLChunk::setValue(std::string_view name, Value value)
{
    const auto found = _values.find(name);
    if (found == _values.end())
        _values.emplace(std::string(name), std::move(value));
    else if (found->second == value)
        return;
    else
        found->second = std::move(value);
    ++_stamp;
}

void SHLChunk::setValues(Values values)
{
    if (values == _values)
        return;
    _values = std::move(values);
    ++_stamp;
}

GLProgram* SHLChunk::findUsable(GLObjects& objects) const
{
    // Copies: whoever listens may take a program from the chunk.
    for (const RefPtr<SHLProgramPtr>& program : {_program, _lastGood}) {
        if (!program)
            continue;
        GLProgram& made = objects.get<GLProgram>(program->getGLSlot(), [&](auto old) {
            auto result = old ? std::move(old) : std::make_unique<GLProgram>();
            result->build(*program, objects.getLimits());
            return result;
        });
        if (made.isGood())
            return &made;
    }
    return nullptr;
}

void SHLChunk::activate(RenderActionBase& action, UInt32)
{
    GLObjects& objects = action.getWindow()->getGLObjects();
    GLProgram* program = isWanted(action) ? findUsable(objects) : nullptr;
    if (program)
        program->use(*this, action, objects.getLimits());
    else if (objects.getLimits().programs)
        glUseProgram(0);
}

void SHLChunk::surroundingsChanged(RenderActionBase& action) const
{
    GLObjects& objects = action.getWindow()->getGLObjects();
    if (GLProgram* program = isWanted(action) ? findUsable(objects) : nullptr)
        program->sendSurroundings(action, objects.getLimits());
}

Int32 SHLChunk::getAttributePlace(RenderActionBase& action, const std::string& name) const
{
    const GLProgram* program = isWanted(action) ? findUsable(action.getWindow()->getGLObjects()) : nullptr;
    return program ? program->getAttributePlace(name) : -1;
}

bool SHLChunk::isWanted(const RenderActionBase& action) const
{
    return !_nearLightsOnly || action.hasNearLights();
}

void SHLChunk::changeFrom(RenderActionBase& action, StateChunk&, UInt32 slot)
{
    activate(action, slot);
}

void SHLChunk::deactivate(RenderActionBase& action, UInt32)
{
    if (action.getWindow()->getGLObjects().getLimits().programs)
        glUseProgram(0);
}

} // namespace osg
