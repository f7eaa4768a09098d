#include "core/ShaderTextProc.h"
#include "core/Part.h"
#include "core/ShaderProc.h"
#include <Orvane/NodeType.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFString.h>
#include <algorithm>
#include <cctype>

namespace Orvane {

namespace {

const Part loadPart("load");

const ProcRegistration shaderPart("ShaderPart", makeProc<ShaderTextProc>);
const ProcRegistration shaderProgram("ShaderProgram", makeProc<ShaderTextProc>);

} // namespace

bool isUniformField(const Field& field)
{
    return field._desc->objExt() && field.partType() != EVENTOUTP && field._desc->name != "shaderUrl";
}

bool ShaderTextProc::isCodeField(const Field& field) const
{
    const std::string& name = field._desc->name;
    return name == "url" || name == "shaderUrl" || name == "load";
}

void ShaderTextProc::fieldChanged(Field& field, double)
{
    if (isCodeField(field))
        _isRead = false;
    if (!isUniformField(field)) {
        changed();
        return;
    }
    for (Use* use = uses(); use; use = use->next()) {
        if (auto* const shader = dynamic_cast<ShaderProc*>(use->user()))
            shader->uniformChanged(field);
    }
}

void ShaderTextProc::fieldsChanged()
{
    _isRead = false;
    changed();
}

const ShaderCode& ShaderTextProc::code()
{
    if (_isRead)
        return _code;
    _isRead = true;
    _code = ShaderCode();
    Field* const addresses = shaderCodeField(node());
    if (addresses && (!loadPart.isIn(node()) || loadPart.read<SFBool>(node()).value()))
        _code = findShaderCode(*addresses);
    return _code;
}

std::string ShaderTextProc::stageName() const
{
    if (const auto* type = dynamic_cast<SFString*>(node().findField("type", Node::EXACT_FSO)))
        return type->value();
    // Older scenes have a type of node for each stage.
    return node().type()->name.find("Vertex") != std::string::npos ? "VERTEX" : "FRAGMENT";
}

std::optional<osg::SHLProgram::Stage> ShaderTextProc::stage() const
{
    std::string name = stageName();
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return static_cast<char>(std::toupper(static_cast<unsigned char>(c))); });
    if (name == "VERTEX")
        return osg::SHLProgram::VERTEX;
    if (name == "FRAGMENT")
        return osg::SHLProgram::FRAGMENT;
    return std::nullopt;
}

std::string ShaderTextProc::codeLabel() const
{
    const Field* const addresses = shaderCodeField(node());
    std::string label = node().type()->name + "." + (addresses ? addresses->_desc->name : "url");
    if (node().name())
        label.append(" of ").append(*node().name());
    return label.append(" (").append(stageName()).append(")");
}

} // namespace Orvane
