#pragma once

#include "core/ShaderMessages.h"
#include "core/ShaderTextProc.h"
#include "core/ShaderTextures.h"
#include "core/SharedProgram.h"
#include <OpenSG/OSGRefPtr.h>
#include <OpenSG/OSGSHLChunk.h>
#include <Orvane/Export.h>
#include <memory>
#include <string>
#include <vector>

namespace Orvane {

/// Behaviour of a `ComposedShader` and a `ProgramShader`, and of a node with a `shaderUrl` that older scenes
/// use as one: keeps the program and its uniforms in step with the fields. A new text takes the place of the
/// old one when it turns out, in the next picture, to be good.
class ORVANE_API ShaderProc : public ShaderTextProc
{
public:
    explicit ShaderProc(Node& node);
    ~ShaderProc() override;

    void start(double time) override;
    void fieldChanged(Field& field, double time) override;
    void fieldsChanged() override;
    void childrenChanged(Field& field) override;
    void update() override;

    /// False when the shader is of another language, has no text, or none that compiles.
    bool isUsable() const { return _isUsable; }
    /// What a surface is drawn with, the same object for the behaviour's life.
    osg::SHLChunkPtr chunk() const { return _chunk.get(); }

    /// An appearance takes the shader, or another one in its place.
    void select();
    void deselect();

    /// A window has tried the program.
    void programTried();
    /// A field of the shader or of one of its parts, which a program gets, has another value.
    void uniformChanged(const Field& field);

protected:
    void elementChanged(ElementProc& element) override;
    void elementGone() override;

private:
    void collectParts(std::vector<ShaderTextProc*>& parts);
    bool collectSources(const std::vector<ShaderTextProc*>& parts, SharedProgram::Key& key);
    void collectUniforms(const std::vector<ShaderTextProc*>& parts, SharedProgram::Key& key);
    void setProgram(std::shared_ptr<SharedProgram> program);
    void tellOutcome();
    void showState();
    bool isOfKnownLanguage() const;
    std::string label() const;

    osg::RefPtr<osg::SHLChunkPtr> _chunk;
    std::shared_ptr<SharedProgram> _program;
    std::shared_ptr<SharedProgram> _lastGood;
    ShaderMessages _messages;
    ShaderTextures _textures;
    std::vector<Use> _partUses;
    int _selections = 0;
    bool _isUsable = false;
    bool _hasFault = false; ///< the present texts cannot even be tried
};

} // namespace Orvane
