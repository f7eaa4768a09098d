#pragma once

#include "OSGGLObjects.h"
#include "OSGSurroundings.h"

#include <OpenSG/OSGSHLChunk.h>

namespace osg {

/// A program in a GL context, and what its uniforms were set to last.
class GLProgram : public GLObject
{
public:
    /// Compiles and links, and tells the program how it went.
    void build(SHLProgram& program, const GLLimits& limits);
    void free() override;

    bool isGood() const { return _name != 0; }

    /// Has GL draw by the program, with the values of a chunk. Only values that differ from what was set
    /// last are sent.
    void use(const SHLChunk& chunk, RenderActionBase& action, const GLLimits& limits);
    /// Where the program takes values of vertices of that name; negative where it does not.
    Int32 getAttributePlace(const std::string& name) const;
    /// Tells the program, which is in use, what acts on shapes, if it asks for that.
    void sendSurroundings(RenderActionBase& action, const GLLimits& limits);

private:
    /// Where the program takes what acts on shapes; negative where it does not.
    struct SurroundingPlaces
    {
        Int32 lightCount = -1;
        Int32 lightShape = -1;
        Int32 fogKind = -1;
        Int32 turnToWorld = -1;
        Int32 projected = -1;
        Int32 projection = -1;
        Int32 planeCount = -1;
        Int32 planes = -1;
        Int32 depth = -1;
        Int32 depthPart = -1;
        Int32 environment = -1;
        Int32 irradiance = -1;
        Int32 turnToEnvironment = -1;
        Int32 mirrored = -1;
    };

    struct Variable
    {
        SHLProgram::Uniform uniform;
        Int32 location;
        std::vector<UInt8> sent; ///< empty before anything was sent
    };

    bool compile(UInt32 stage, const std::string& text, std::string& log);
    bool link(std::string& log);
    void findVariables();
    void sendEnvironment(const Surroundings& surroundings, RenderActionBase& action,
                         const GLLimits& limits) const;
    void sendValues(const SHLChunk& chunk);
    void sendDepth(RenderActionBase& action, const GLLimits& limits) const;
    void sendSamplers(const SHLChunk& chunk, RenderActionBase& action, const GLLimits& limits);
    static void sendReals(Variable& variable, const SHLChunk::Value& value);
    static void sendIntegers(Variable& variable, const std::vector<Int32>& values, UInt32 components);

    UInt32 _name = 0;
    std::vector<Variable> _variables;
    UInt32 _sentChunk = 0; ///< whose values were sent last
    UInt64 _sentStamp = 0;
    SurroundingPlaces _surroundingPlaces;
    UInt64 _surroundingsStamp = 0; ///< of what was sent last
    bool _toldOfUnits = false;
};

} // namespace osg
