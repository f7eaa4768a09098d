#include "core/ShaderProc.h"
#include "base/Graph.h"
#include "core/AppearanceProcs.h"
#include "core/Part.h"
#include "core/UniformValue.h"
#include <Orvane/Context.h>
#include <Orvane/MFNode.h>
#include <Orvane/NodeType.h>
#include <Orvane/SFBool.h>
#include <Orvane/SFString.h>
#include <algorithm>
#include <cctype>

namespace Orvane {

namespace {

/// A program of more texts is none that a person wrote.
constexpr std::size_t mostParts = 64;

const Part activatePart("activate");
const Part isSelectedPart("isSelected");
const Part isValidPart("isValid");
const Part languagePart("language");
const Part partsPart("parts");
const Part programsPart("programs");

/// Nodes of types that nobody knows have a behaviour when older scenes use them as shaders.
Proc* makeOldShader(Node& node)
{
    return shaderCodeField(node) ? new ShaderProc(node) : nullptr;
}

const ProcRegistration composedShader("ComposedShader", makeProc<ShaderProc>);
const ProcRegistration programShader("ProgramShader", makeProc<ShaderProc>);
const ProcRegistration oldShader(anyUnknownType, makeOldShader);

void show(const Part& part, Node& node, bool value, double time)
{
    if (part.isIn(node) && part.read<SFBool>(node).value() != value)
        part.edit<SFBool>(node).setValue(time, value, Field::EVENT_CT);
}

} // namespace

ShaderProc::ShaderProc(Node& node)
    : ShaderTextProc(node)
    , _chunk(osg::SHLChunk::create())
    , _messages(node)
    , _textures(*this)
{
}

ShaderProc::~ShaderProc()
{
    if (_program)
        _program->removeUser(*this);
}

void ShaderProc::start(double time)
{
    requestUpdate();
    ShaderTextProc::start(time);
}

void ShaderProc::fieldChanged(Field& field, double time)
{
    if (field.partType() == EVENTOUTP)
        return;
    if (activatePart.isIn(node()) && activatePart.is(field)) {
        if (!activatePart.read<SFBool>(node()).value())
            return;
        forgetCode();
        for (const Use& use : _partUses) {
            if (use.element())
                static_cast<ShaderTextProc*>(use.element())->forgetCode();
        }
    }
    if (isUniformField(field))
        uniformChanged(field);
    else
        requestUpdate();
    ShaderTextProc::fieldChanged(field, time);
}

void ShaderProc::fieldsChanged()
{
    requestUpdate();
    ShaderTextProc::fieldsChanged();
}

void ShaderProc::childrenChanged(Field& field)
{
    requestUpdate();
    ShaderTextProc::childrenChanged(field);
}

void ShaderProc::elementChanged(ElementProc&)
{
    requestUpdate();
}

void ShaderProc::elementGone()
{
    requestUpdate();
}

void ShaderProc::uniformChanged(const Field& field)
{
    osg::SHLChunk::Value value;
    // Of several programs the last one with a field of the name counts.
    if (field.node() != &node() || !uniformValue(field, value)) {
        requestUpdate();
        return;
    }
    _chunk->setValue(field._desc->name, std::move(value));
    pictureChanged();
}

void ShaderProc::update()
{
    std::vector<ShaderTextProc*> parts;
    collectParts(parts);
    SharedProgram::Key key;
    _hasFault = !collectSources(parts, key);
    collectUniforms(parts, key);
    if (!isOfKnownLanguage() || (!_hasFault && key.sources.empty()))
        setProgram(nullptr);
    else if (!_hasFault)
        setProgram(SharedProgram::get(key));
    if (!_hasFault)
        _messages.setPlaces(parts);
    if (_program && _program->program()->getStatus() != osg::SHLProgram::UNTRIED)
        tellOutcome();
    showState();
    pictureChanged();
}

/// The nodes with a text, of which the program is made.
void ShaderProc::collectParts(std::vector<ShaderTextProc*>& parts)
{
    std::vector<Use> uses;
    if (!code().text.empty() || !code().fault.empty())
        parts.push_back(this);
    for (const Part* list : {&partsPart, &programsPart}) {
        if (!list->isIn(node()))
            continue;
        for (NodeLink& link : list->read<MFNode>(node())) {
            auto* const part = elementOf<ShaderTextProc>(link.directNode());
            if (!part || part == this)
                continue;
            uses.emplace_back();
            uses.back().set(*this, part);
            parts.push_back(part);
        }
    }
    _partUses = std::move(uses);
}

/// False when there is a text that cannot be taken; then the program stays what it is.
bool ShaderProc::collectSources(const std::vector<ShaderTextProc*>& parts, SharedProgram::Key& key)
{
    if (!isOfKnownLanguage())
        return true;
    if (parts.size() > mostParts) {
        _messages.tell(node(), LoadMessage::ERROR_LM,
                       label() + ": expected at most " + std::to_string(mostParts) + " parts, found " +
                           std::to_string(parts.size()));
        return false;
    }
    bool isSound = true;
    for (ShaderTextProc* part : parts) {
        const ShaderCode& code = part->code();
        if (!code.fault.empty()) {
            _messages.tell(part->node(), LoadMessage::ERROR_LM,
                           part->codeLabel() + ": expected GLSL or a file of it, found " + code.fault);
            isSound = false;
        } else if (code.isFound && !part->stage()) {
            _messages.tell(part->node(), LoadMessage::ERROR_LM,
                           part->codeLabel() + ": expected the stage VERTEX or FRAGMENT, found \"" +
                               part->stageName() + '"');
            isSound = false;
        } else if (code.isFound) {
            key.sources.push_back({*part->stage(), code.text});
        }
    }
    return isSound;
}

void ShaderProc::collectUniforms(const std::vector<ShaderTextProc*>& parts, SharedProgram::Key& key)
{
    std::vector<Node*> owners{&node()};
    for (const ShaderTextProc* part : parts) {
        if (part != this)
            owners.push_back(&part->node());
    }
    osg::SHLChunk::Values values;
    _textures.begin();
    for (const Node* owner : owners) {
        for (unsigned int i = partCount(*owner->type()); i < owner->partDescCount(); ++i) {
            const Field& field = *owner->findField(i);
            osg::SHLChunk::Value value;
            if (isUniformField(field) && (uniformValue(field, value) || _textures.take(field, value)))
                values.insert_or_assign(field._desc->name, std::move(value));
        }
    }
    _textures.end();
    // Samplers are set anew whenever the program is used.
    for (const auto& entry : values) {
        if (entry.second.textures.empty())
            key.uniforms.push_back(entry.first);
    }
    _chunk->setValues(std::move(values));
}

void ShaderProc::setProgram(std::shared_ptr<SharedProgram> program)
{
    if (program == _program)
        return;
    _messages.renew();
    if (_program) {
        _program->removeUser(*this);
        if (_program->program()->getStatus() == osg::SHLProgram::GOOD)
            _lastGood = std::move(_program);
    }
    if (!program)
        _lastGood = nullptr;
    _program = std::move(program);
    if (_program)
        _program->addUser(*this);
    _chunk->setProgram(_program ? _program->program() : osg::SHLProgramPtr());
}

void ShaderProc::programTried()
{
    tellOutcome();
    requestUpdate();
}

void ShaderProc::tellOutcome()
{
    _messages.tellLog(*_program->program());
    if (_program->program()->getStatus() != osg::SHLProgram::GOOD)
        return;
    for (const osg::SHLProgram::Uniform& uniform : _program->program()->getUniforms()) {
        const auto value = _chunk->getValues().find(uniform.name);
        if (value != _chunk->getValues().end() && !value->second.fits(uniform))
            _messages.tell(node(), LoadMessage::WARNING_LM,
                           label() + ": the field \"" + uniform.name + "\" has no value for a " +
                               uniform.typeName());
    }
}

void ShaderProc::showState()
{
    const osg::SHLProgram::Status status =
        _program ? _program->program()->getStatus() : osg::SHLProgram::FAULTY;
    const bool isUsable = _program && (status != osg::SHLProgram::FAULTY || _chunk->getLastGood());
    if (isUsable != _isUsable) {
        _isUsable = isUsable;
        changed();
    }
    const double time = context().timeStamp();
    show(isValidPart, node(), status == osg::SHLProgram::GOOD && !_hasFault, time);
    show(isSelectedPart, node(), _selections > 0, time);
}

void ShaderProc::select()
{
    if (++_selections == 1)
        requestUpdate();
}

void ShaderProc::deselect()
{
    if (--_selections == 0)
        requestUpdate();
}

bool ShaderProc::isOfKnownLanguage() const
{
    if (!languagePart.isIn(node()))
        return true;
    const std::string& language = languagePart.read<SFString>(node()).value();
    static const std::string known = "GLSL";
    return language.empty() ||
           std::equal(language.begin(), language.end(), known.begin(), known.end(),
                      [](char a, char b) { return std::toupper(static_cast<unsigned char>(a)) == b; });
}

std::string ShaderProc::label() const
{
    return node().name() ? node().type()->name + " " + *node().name() : node().type()->name;
}

} // namespace Orvane
