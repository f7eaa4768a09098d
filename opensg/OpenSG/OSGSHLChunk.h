#pragma once

#include "OSGRefPtr.h"
#include "OSGSHLProgram.h"
#include "OSGStateChunk.h"
#include "OSGTextureChunk.h"

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace osg {

class GLObjects;
class GLProgram;
class SHLChunk;
using SHLChunkPtr = FCPtr<StateChunkPtr, SHLChunk>;

/// Draws by a program in place of the fixed steps, whose state the program finds in its built-in variables.
/// The chunk holds the values of the program's uniforms; its textures go to units behind those of fixed
/// drawing. When a program turns out to be faulty, the last good one of the chunk stays in use, and without
/// one fixed drawing.
class OSG_SYSTEMLIB_DLLMAPPING SHLChunk : public StateChunk
{
public:
    using Ptr = SHLChunkPtr;

    /// The value of a uniform: numbers, element by element, or textures.
    struct Value
    {
        UInt32 components = 1;       ///< numbers in an element: 1 to 4, or 9 or 16 of a matrix in GL's order
        std::vector<Real32> reals;   ///< one of these three is used
        std::vector<Int32> integers; ///< truth values, too
        std::vector<RefPtr<TextureChunkPtr>> textures;

        /// Whether the uniform can take it.
        bool fits(const SHLProgram::Uniform& uniform) const;
        bool operator==(const Value& other) const;
    };
    using Values = std::map<std::string, Value, std::less<>>;

    static SHLChunkPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    const RefPtr<SHLProgramPtr>& getProgram() const { return _program; }
    /// Draws by `program` from now on; null drops the last good one, too.
    void setProgram(const SHLProgramPtr& program);
    /// The program that stands in for a faulty one; null when there is none.
    const RefPtr<SHLProgramPtr>& getLastGood() const { return _lastGood; }

    const Values& getValues() const { return _values; }
    /// Sets the uniform of that name. What the program does not have, or has of another type, is left out.
    void setValue(std::string_view name, Value value);
    /// Sets all uniforms; those that are not named are set no more.
    void setValues(Values values);

    /// Whether it draws only where a light is so near that it changes over the faces, and leaves all else to
    /// the fixed steps. Default: no.
    bool getNearLightsOnly() const { return _nearLightsOnly; }
    void setNearLightsOnly(bool only) { _nearLightsOnly = only; }

    /// Which coordinates of a geometry the program finds as those of unit 0, 1 and so on, where these show no
    /// texture. Of units that are not named it finds what fixed drawing would have used.
    const std::vector<UInt32>& getCoordSets() const { return _coordSets; }
    void setCoordSets(std::vector<UInt32> sets) { _coordSets = std::move(sets); }

    /// Tells the program of lights and fog that have changed since `activate`.
    void surroundingsChanged(RenderActionBase& action) const;

    /// Where the program that draws takes values of vertices of that name; negative where it does not.
    Int32 getAttributePlace(RenderActionBase& action, const std::string& name) const;

    ChunkClass getChunkClass() const override { return PROGRAM; }
    void activate(RenderActionBase& action, UInt32 slot) override;
    void changeFrom(RenderActionBase& action, StateChunk& old, UInt32 slot) override;
    void deactivate(RenderActionBase& action, UInt32 slot) override;

protected:
    SHLChunk() = default;

private:
    friend class GLProgram;

    GLProgram* findUsable(GLObjects& objects) const;
    bool isWanted(const RenderActionBase& action) const;

    RefPtr<SHLProgramPtr> _program;
    RefPtr<SHLProgramPtr> _lastGood;
    Values _values;
    UInt64 _stamp = 1; ///< changes with the values
    bool _nearLightsOnly = false;
    std::vector<UInt32> _coordSets;
};

} // namespace osg
