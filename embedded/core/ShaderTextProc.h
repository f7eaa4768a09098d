#pragma once

#include "core/ElementProc.h"
#include "core/ShaderCode.h"
#include <OpenSG/OSGSHLProgram.h>
#include <Orvane/Export.h>
#include <optional>
#include <string>

namespace Orvane {

/// Behaviour of a node that holds the text of a shader's stage: `ShaderPart`, `ShaderProgram`. The text is
/// read again when the node's addresses change.
class ORVANE_API ShaderTextProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    void fieldChanged(Field& field, double time) override;
    void fieldsChanged() override;

    const ShaderCode& code();
    /// The text is read again when it is asked for next, as a file may have changed.
    void forgetCode() { _isRead = false; }

    /// What the node calls its stage, such as "VERTEX".
    std::string stageName() const;
    /// The stage; empty when there is none of that name that is known.
    std::optional<osg::SHLProgram::Stage> stage() const;

    /// "ShaderPart.url of NAME (FRAGMENT)", for messages.
    std::string codeLabel() const;

protected:
    /// True when the field is one of those that lead to the text.
    bool isCodeField(const Field& field) const;

private:
    ShaderCode _code;
    bool _isRead = false;
};

/// True for a field that an author gave to a shader and that a program gets.
bool isUniformField(const Field& field);

} // namespace Orvane
