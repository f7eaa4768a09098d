#include "OSGGLProgram.h"

#include "OSGSceneDepth.h"

#include <OpenSG/OSGLog.h>
#include <OpenSG/OSGRenderActionBase.h>

#include <algorithm>
#include <cstring>
#include <epoxy/gl.h>

namespace osg {

namespace {

// A driver that says more than this has nothing to say.
const GLint longestLog = 64 * 1024;

template <class GetLength, class GetText>
std::string readLog(GetLength getLength, GetText getText)
{
    GLint length = 0;
    getLength(&length);
    length = osgMin(length, longestLog);
    if (length <= 1)
        return std::string();
    std::string log(static_cast<std::size_t>(length), '\0');
    GLsizei written = 0;
    getText(length, &written, &log[0]);
    log.resize(static_cast<std::size_t>(osgMax(0, osgMin(written, length))));
    return log;
}

/// The kind of texture that a sampler reads.
GLenum targetOf(const SHLProgram::Uniform& sampler)
{
    switch (sampler.type) {
    case GL_SAMPLER_2D:
    case GL_SAMPLER_2D_SHADOW:
        return GL_TEXTURE_2D;
    case GL_SAMPLER_3D:
        return GL_TEXTURE_3D;
    case GL_SAMPLER_CUBE:
        return GL_TEXTURE_CUBE_MAP;
    default:
        return GL_TEXTURE_1D;
    }
}

/// Remembers what is sent; false when that was sent last time.
bool remember(std::vector<UInt8>& sent, const void* data, std::size_t size)
{
    if (sent.size() == size && std::memcmp(sent.data(), data, size) == 0)
        return false;
    const auto* bytes = static_cast<const UInt8*>(data);
    sent.assign(bytes, bytes + size);
    return true;
}

} // namespace

void GLProgram::free()
{
    if (_name)
        glDeleteProgram(_name);
    _name = 0;
    _variables.clear();
    _sentChunk = 0;
    _surroundingsStamp = 0;
}

bool GLProgram::compile(UInt32 stage, const std::string& text, std::string& log)
{
    const GLuint shader = glCreateShader(stage == SHLProgram::VERTEX ? GL_VERTEX_SHADER : GL_FRAGMENT_SHADER);
    if (!shader)
        return false;
    const GLchar* data = text.data();
    const GLint length = static_cast<GLint>(text.size());
    glShaderSource(shader, 1, &data, &length);
    glCompileShader(shader);
    GLint isGood = GL_FALSE;
    glGetShaderiv(shader, GL_COMPILE_STATUS, &isGood);
    log = readLog([shader](GLint* size) { glGetShaderiv(shader, GL_INFO_LOG_LENGTH, size); },
                  [shader](GLsizei size, GLsizei* written, GLchar* into) {
                      glGetShaderInfoLog(shader, size, written, into);
                  });
    if (isGood)
        glAttachShader(_name, shader);
    // It goes with the program that it is attached to.
    glDeleteShader(shader);
    return isGood == GL_TRUE;
}

bool GLProgram::link(std::string& log)
{
    glLinkProgram(_name);
    GLint isGood = GL_FALSE;
    glGetProgramiv(_name, GL_LINK_STATUS, &isGood);
    log = readLog([this](GLint* size) { glGetProgramiv(_name, GL_INFO_LOG_LENGTH, size); },
                  [this](GLsizei size, GLsizei* written, GLchar* into) {
                      glGetProgramInfoLog(_name, size, written, into);
                  });
    return isGood == GL_TRUE;
}

void GLProgram::build(SHLProgram& program, const GLLimits& limits)
{
    free();
    std::vector<SHLProgram::Message> messages;
    if (limits.programs)
        _name = glCreateProgram();
    else
        messages.push_back({SHLProgram::Message::LINKER, "this OpenGL has no programs"});
    bool isGood = _name != 0;
    const std::vector<SHLProgram::Source>& sources = program.getSources();
    for (UInt32 i = 0; _name && i < sources.size(); ++i) {
        std::string log;
        isGood = compile(sources[i].stage, sources[i].text, log) && isGood;
        if (!log.empty())
            messages.push_back({i, std::move(log)});
    }
    if (isGood) {
        std::string log;
        isGood = link(log);
        if (!log.empty())
            messages.push_back({SHLProgram::Message::LINKER, std::move(log)});
    }
    std::vector<SHLProgram::Uniform> uniforms;
    if (isGood) {
        findVariables();
        for (const Variable& variable : _variables)
            uniforms.push_back(variable.uniform);
    } else {
        free();
    }
    program.setOutcome(isGood ? SHLProgram::GOOD : SHLProgram::FAULTY, std::move(messages),
                       std::move(uniforms));
}

void GLProgram::findVariables()
{
    GLint count = 0;
    GLint longest = 0;
    glGetProgramiv(_name, GL_ACTIVE_UNIFORMS, &count);
    glGetProgramiv(_name, GL_ACTIVE_UNIFORM_MAX_LENGTH, &longest);
    std::string name(static_cast<std::size_t>(osgMax(longest, 1)), '\0');
    _surroundingPlaces.lightCount = glGetUniformLocation(_name, "osg_LightCount");
    _surroundingPlaces.lightShape = glGetUniformLocation(_name, "osg_LightShape");
    _surroundingPlaces.fogKind = glGetUniformLocation(_name, "osg_FogKind");
    _surroundingPlaces.projected = glGetUniformLocation(_name, "osg_Projected");
    _surroundingPlaces.projection = glGetUniformLocation(_name, "osg_Projection");
    _surroundingPlaces.planeCount = glGetUniformLocation(_name, "osg_PlaneCount");
    _surroundingPlaces.planes = glGetUniformLocation(_name, "osg_Planes");
    _surroundingPlaces.depth = glGetUniformLocation(_name, "osg_Depth");
    _surroundingPlaces.depthPart = glGetUniformLocation(_name, "osg_DepthPart");
    _surroundingPlaces.turnToWorld = glGetUniformLocation(_name, "osg_TurnToWorld");
    _surroundingPlaces.environment = glGetUniformLocation(_name, "osg_Environment");
    _surroundingPlaces.irradiance = glGetUniformLocation(_name, "osg_Irradiance");
    _surroundingPlaces.turnToEnvironment = glGetUniformLocation(_name, "osg_TurnToEnvironment");
    _surroundingPlaces.mirrored = glGetUniformLocation(_name, "osg_Mirrored");
    for (GLint i = 0; i < count; ++i) {
        GLsizei length = 0;
        GLint size = 0;
        GLenum type = 0;
        glGetActiveUniform(_name, static_cast<GLuint>(i), static_cast<GLsizei>(name.size()), &length, &size,
                           &type, &name[0]);
        Variable variable;
        variable.uniform.name = name.substr(0, static_cast<std::size_t>(osgMax(length, 0)));
        variable.location = glGetUniformLocation(_name, variable.uniform.name.c_str());
        if (variable.location < 0 || variable.uniform.name.compare(0, 4, "osg_") == 0)
            continue; // built in, or sent by the painter
        const std::size_t index = variable.uniform.name.rfind("[0]");
        if (index != std::string::npos && index + 3 == variable.uniform.name.size())
            variable.uniform.name.resize(index);
        variable.uniform.type = type;
        variable.uniform.size = static_cast<UInt32>(osgMax(size, 1));
        _variables.push_back(std::move(variable));
    }
}

void GLProgram::use(const SHLChunk& chunk, RenderActionBase& action, const GLLimits& limits)
{
    glUseProgram(_name);
    if (_sentChunk != chunk.getFieldContainerId() || _sentStamp != chunk._stamp)
        sendValues(chunk);
    _sentChunk = chunk.getFieldContainerId();
    _sentStamp = chunk._stamp;
    sendSamplers(chunk, action, limits);
    sendSurroundings(action, limits);
    if (_surroundingPlaces.depth >= 0)
        sendDepth(action, limits);
}

Int32 GLProgram::getAttributePlace(const std::string& name) const
{
    return glGetAttribLocation(_name, name.c_str());
}

void GLProgram::sendSurroundings(RenderActionBase& action, const GLLimits& limits)
{
    if (!action.getSurroundings() || _surroundingsStamp == action.getSurroundings()->stamp)
        return;
    const Surroundings& surroundings = *action.getSurroundings();
    _surroundingsStamp = surroundings.stamp;
    // GL passes over places that are negative.
    glUniform1i(_surroundingPlaces.lightCount, surroundings.lightCount);
    glUniform4fv(_surroundingPlaces.lightShape, Surroundings::MostLights, surroundings.lights);
    glUniform1i(_surroundingPlaces.fogKind, surroundings.fogKind);
    glUniform1i(_surroundingPlaces.planeCount, surroundings.planeCount);
    glUniform4fv(_surroundingPlaces.planes, Surroundings::MostPlanes, surroundings.planes);
    if (_surroundingPlaces.projected >= 0) {
        // The last unit is the last one that a program gets for textures of its own.
        const Int32 unit = limits.imageUnits - 1;
        if (surroundings.projected)
            surroundings.projected->bind(action, static_cast<UInt32>(unit));
        glUniform1i(_surroundingPlaces.projected, surroundings.projected ? unit : 0);
        glUniformMatrix4fv(_surroundingPlaces.projection, 1, GL_FALSE, surroundings.projection);
    }
    if (_surroundingPlaces.environment >= 0)
        sendEnvironment(surroundings, action, limits);
    glUniformMatrix3fv(_surroundingPlaces.turnToWorld, 1, GL_FALSE, surroundings.turnToWorld);
}

// Other programs may have used the unit since: it is filled at each use.
void GLProgram::sendDepth(RenderActionBase& action, const GLLimits& limits) const
{
    const Surroundings* surroundings = action.getSurroundings();
    const Int32 unit = limits.imageUnits - 2;
    const bool isKnown = unit >= limits.textureUnits && surroundings && surroundings->depth &&
                         surroundings->depth->bind(action, static_cast<UInt32>(unit));
    glUniform1i(_surroundingPlaces.depth, isKnown ? unit : 0);
    const Real32 none[4] = {};
    glUniform4fv(_surroundingPlaces.depthPart, 1, isKnown ? surroundings->depth->getPart() : none);
}

void GLProgram::sendEnvironment(const Surroundings& surroundings, RenderActionBase& action,
                                const GLLimits& limits) const
{
    // A unit of its own, also while there is nothing to mirror: it must be no other sampler's.
    const Int32 unit = limits.imageUnits - 3;
    if (surroundings.mirrored)
        surroundings.mirrored->bind(action, static_cast<UInt32>(unit));
    glUniform1i(_surroundingPlaces.mirrored, unit);
    glUniform4fv(_surroundingPlaces.environment, 1, surroundings.environment);
    if (surroundings.environment[3] == 0)
        return;
    glUniform3fv(_surroundingPlaces.irradiance, 9, surroundings.irradiance);
    glUniformMatrix3fv(_surroundingPlaces.turnToEnvironment, 1, GL_FALSE, surroundings.turnToEnvironment);
}

void GLProgram::sendValues(const SHLChunk& chunk)
{
    for (Variable& variable : _variables) {
        if (variable.uniform.isSampler())
            continue;
        const auto value = chunk._values.find(variable.uniform.name);
        if (value == chunk._values.end() || !value->second.fits(variable.uniform))
            continue;
        if (variable.uniform.isInteger())
            sendIntegers(variable, value->second.integers, value->second.components);
        else
            sendReals(variable, value->second);
    }
}

// Elements that an array has and the value has not are zero.
void GLProgram::sendReals(Variable& variable, const SHLChunk::Value& value)
{
    std::vector<Real32> numbers(std::size_t(variable.uniform.size) * value.components);
    if (value.reals.empty())
        std::copy_n(value.integers.begin(), osgMin(numbers.size(), value.integers.size()), numbers.begin());
    else
        std::copy_n(value.reals.begin(), osgMin(numbers.size(), value.reals.size()), numbers.begin());
    if (!remember(variable.sent, numbers.data(), numbers.size() * sizeof(Real32)))
        return;
    const GLsizei size = static_cast<GLsizei>(variable.uniform.size);
    const GLint place = variable.location;
    switch (variable.uniform.type) {
    case GL_FLOAT:
        glUniform1fv(place, size, numbers.data());
        break;
    case GL_FLOAT_VEC2:
        glUniform2fv(place, size, numbers.data());
        break;
    case GL_FLOAT_VEC3:
        glUniform3fv(place, size, numbers.data());
        break;
    case GL_FLOAT_VEC4:
        glUniform4fv(place, size, numbers.data());
        break;
    case GL_FLOAT_MAT2:
        glUniformMatrix2fv(place, size, GL_FALSE, numbers.data());
        break;
    case GL_FLOAT_MAT3:
        glUniformMatrix3fv(place, size, GL_FALSE, numbers.data());
        break;
    case GL_FLOAT_MAT4:
        glUniformMatrix4fv(place, size, GL_FALSE, numbers.data());
        break;
    default:
        break;
    }
}

void GLProgram::sendIntegers(Variable& variable, const std::vector<Int32>& values, UInt32 components)
{
    std::vector<Int32> numbers(std::size_t(variable.uniform.size) * components);
    std::copy_n(values.begin(), osgMin(numbers.size(), values.size()), numbers.begin());
    if (!remember(variable.sent, numbers.data(), numbers.size() * sizeof(Int32)))
        return;
    const GLsizei size = static_cast<GLsizei>(variable.uniform.size);
    switch (components) {
    case 1:
        glUniform1iv(variable.location, size, numbers.data());
        break;
    case 2:
        glUniform2iv(variable.location, size, numbers.data());
        break;
    case 3:
        glUniform3iv(variable.location, size, numbers.data());
        break;
    default:
        glUniform4iv(variable.location, size, numbers.data());
        break;
    }
}

// Samplers without a texture of their own read what fixed drawing puts on, or nothing: two kinds of samplers
// must not share a unit.
void GLProgram::sendSamplers(const SHLChunk& chunk, RenderActionBase& action, const GLLimits& limits)
{
    Int32 unit = limits.textureUnits;
    // The last three units are those of what is thrown, of depth and of what is mirrored.
    Int32 last = limits.imageUnits - (_surroundingPlaces.mirrored >= 0 ? 4
                                      : _surroundingPlaces.depth >= 0  ? 3
                                                                       : 1);
    std::vector<std::pair<UInt32, Int32>> emptyUnits{{GL_SAMPLER_2D, 0}};
    const auto emptyUnit = [&](UInt32 type) {
        const auto found = std::find_if(emptyUnits.begin(), emptyUnits.end(),
                                        [type](const auto& entry) { return entry.first == type; });
        if (found != emptyUnits.end())
            return found->second;
        emptyUnits.emplace_back(type, last);
        return last > unit ? last-- : last;
    };
    for (Variable& variable : _variables) {
        if (!variable.uniform.isSampler())
            continue;
        const auto value = chunk._values.find(variable.uniform.name);
        std::vector<Int32> units(variable.uniform.size, -1);
        for (UInt32 i = 0; value != chunk._values.end() && i < variable.uniform.size; ++i) {
            const auto& textures = value->second.textures;
            if (i >= textures.size() || !textures[i])
                break;
            if (unit > last) {
                if (!_toldOfUnits)
                    FWARNING(
                        ("SHLChunk: no texture unit is left for \"%s\"\n", variable.uniform.name.c_str()));
                _toldOfUnits = true;
                break;
            }
            if (textures[i]->bind(action, static_cast<UInt32>(unit)) == targetOf(variable.uniform))
                units[i] = unit++;
        }
        for (Int32& entry : units) {
            if (entry < 0)
                entry = emptyUnit(variable.uniform.type);
        }
        sendIntegers(variable, units, 1);
    }
}

} // namespace osg
