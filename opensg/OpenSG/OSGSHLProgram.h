#pragma once

#include "OSGAttachmentContainer.h"
#include "OSGGLSlot.h"

#include <functional>
#include <string>
#include <vector>

namespace osg {

class SHLProgram;
using SHLProgramPtr = FCPtr<AttachmentContainerPtr, SHLProgram>;

/// A program in the shading language of OpenGL, made of the texts of its stages, which may be shared by many
/// chunks. A window compiles and links it when it is first drawn with; what comes of that can be asked for
/// from then on.
class OSG_SYSTEMLIB_DLLMAPPING SHLProgram : public AttachmentContainer
{
public:
    using Ptr = SHLProgramPtr;

    enum Stage : UInt32 { VERTEX, FRAGMENT };

    struct Source
    {
        Stage stage = FRAGMENT;
        std::string text;

        bool operator==(const Source& other) const { return stage == other.stage && text == other.text; }
    };

    enum Status { UNTRIED, GOOD, FAULTY };

    /// What the compiler or the linker says.
    struct Message
    {
        static constexpr UInt32 LINKER = ~UInt32(0);

        UInt32 source = LINKER; ///< index of the text that it is about
        std::string text;       ///< lines as the driver writes them
    };

    /// A variable that the program takes from outside.
    struct Uniform
    {
        std::string name;          ///< of an array without index
        UInt32 type = 0;           ///< OpenGL's constant, such as GL_FLOAT_VEC3
        UInt32 size = 1;           ///< elements of an array
        UInt32 components() const; ///< numbers in an element, 0 for a sampler
        bool isInteger() const;    ///< integers or truth values
        bool isSampler() const;
        const Char8* typeName() const;
    };

    static SHLProgramPtr create();
    static FieldContainerType& getClassType();
    FieldContainerType& getType() const override;

    const std::vector<Source>& getSources() const { return _sources; }
    /// Gives the program other texts, which no window has tried yet.
    void setSources(std::vector<Source> sources);

    /// How the last attempt of a window ended.
    Status getStatus() const { return _status; }
    const std::vector<Message>& getMessages() const { return _messages; }
    /// The variables of a good program.
    const std::vector<Uniform>& getUniforms() const { return _uniforms; }

    /// Is called within a frame each time that a window has tried the program. Null for none.
    void setListener(std::function<void()> listener) { _listener = std::move(listener); }

    const GLSlot& getGLSlot() const { return _glSlot; }

protected:
    SHLProgram() = default;

private:
    friend class GLProgram;

    void setOutcome(Status status, std::vector<Message> messages, std::vector<Uniform> uniforms);

    std::vector<Source> _sources;
    Status _status = UNTRIED;
    std::vector<Message> _messages;
    std::vector<Uniform> _uniforms;
    std::function<void()> _listener;
    GLSlot _glSlot;
};

} // namespace osg
