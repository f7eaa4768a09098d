#include "loader/XmlWriter.h"

#include "base/Graph.h"
#include "base/TextCoding.h"
#include "loader/ChildPlacement.h"
#include "loader/GraphWalk.h"
#include "loader/OutputFile.h"
#include "loader/SceneEmitter.h"
#include "loader/SceneFormat.h"
#include <Orvane/MFString.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <algorithm>

namespace Orvane {

namespace {

constexpr char lastVersion[] = "4.0";

std::string_view accessWord(NodePartType access)
{
    switch (access) {
    case FIELDP:
        return "initializeOnly";
    case EVENTINP:
        return "inputOnly";
    case EVENTOUTP:
        return "outputOnly";
    default:
        return "inputOutput";
    }
}

/// True for a value that stands better as a text of its own than in an attribute.
bool isSource(const std::string& text)
{
    return text.find('\n') != std::string::npos;
}

class XmlEmitter : public SceneEmitter
{
public:
    explicit XmlEmitter(bool useTabs)
        : _useTabs(useTabs)
    {
    }

    std::string takeText() { return std::move(_out); }

    void beginScene(const std::vector<KeptHead>& head, const Node* root, std::string_view rootName) override;
    void endScene() override;
    void beginNode(const Node& node, std::string_view name, const Field* holder) override;
    void value(const Field& field) override;
    void endValues(bool hasContent) override;
    void endNode() override;
    void use(const Node& node, std::string_view name, const Field* holder) override;
    void beginDeclaration(const Field& field, bool hasNodes) override;
    void endDeclaration(bool hasNodes) override;
    void beginNodes(const Field& field) override;
    void endNodes() override;
    void route(std::string_view fromNode, std::string_view fromField, std::string_view toNode,
               std::string_view toField) override;
    void importStatement(std::string_view inlineName, std::string_view exportedName,
                         std::string_view name) override;
    void exportStatement(std::string_view localName, std::string_view exportedName) override;
    void comment(std::string_view text) override;

private:
    struct Element
    {
        std::string name;
        bool isInstance = false;
        bool hasContent = false;
        std::string source = {};                       ///< text that follows the other content
        std::vector<const Field*> instanceValues = {}; ///< which become elements of their own
    };

    void newLine();
    void attribute(std::string_view name, std::string_view value);
    void fieldAttribute(std::string_view name, const Field& field, int stringCount);
    void escape(std::string_view utf8, char quote);
    void container(const Node& node, const Field* holder);
    void beginElement(const Node& node);

    std::string _out;
    ChildPlacement _placement;
    std::vector<Element> _open;
    unsigned int _depth = 0;
    bool _useTabs;
};

void XmlEmitter::newLine()
{
    _out += '\n';
    _out.append(_useTabs ? _depth : 2 * _depth, _useTabs ? '\t' : ' ');
}

void XmlEmitter::escape(std::string_view utf8, char quote)
{
    for (const char c : utf8) {
        const auto byte = static_cast<unsigned char>(c);
        if (c == '&')
            _out += "&amp;";
        else if (c == '<')
            _out += "&lt;";
        else if (c == quote)
            _out += quote == '"' ? "&quot;" : "&apos;";
        else if (byte < 0x20)
            _out += "&#" + std::to_string(byte) + ";";
        else
            _out += c;
    }
}

void XmlEmitter::attribute(std::string_view name, std::string_view value)
{
    _out += ' ';
    _out += coding::toFile(name);
    _out += "=\"";
    escape(coding::toFile(value), '"');
    _out += '"';
}

/// The value of a field as an attribute. Of an `MFString` only the first \a stringCount texts.
void XmlEmitter::fieldAttribute(std::string_view name, const Field& field, int stringCount)
{
    if (field.dataType() == MFSTRING_DT) {
        const auto& strings = static_cast<const MFString&>(field);
        _out += ' ';
        _out += coding::toFile(name);
        _out += "='";
        for (int i = 0; i < stringCount; ++i) {
            std::string quotedText = i > 0 ? " \"" : "\"";
            for (const char c : coding::toFile(strings[i])) {
                if (c == '"' || c == '\\')
                    quotedText += '\\';
                quotedText += c;
            }
            escape(quotedText + '"', '\'');
        }
        _out += '\'';
        return;
    }
    std::string text = field.valueToString();
    // XML files write the truth values as XML does.
    if (field.dataType() == SFBOOL_DT || field.dataType() == MFBOOL_DT)
        std::transform(text.begin(), text.end(), text.begin(),
                       [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    attribute(name, text);
}

void XmlEmitter::beginScene(const std::vector<KeptHead>& head, const Node* root, std::string_view rootName)
{
    std::string profile = "Full";
    for (const KeptHead& statement : head)
        if (statement.kind == HeadStatement::PROFILE)
            profile = statement.name;
    _out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<X3D";
    attribute("profile", profile);
    attribute("version", lastVersion);
    _out += '>';
    ++_depth;
    const auto isKept = [](const KeptHead& statement) {
        return statement.kind == HeadStatement::META || statement.kind == HeadStatement::COMPONENT;
    };
    if (std::any_of(head.begin(), head.end(), isKept)) {
        newLine();
        _out += "<head>";
        ++_depth;
        // Components stand in front of metas.
        for (const HeadStatement::Kind kind : {HeadStatement::COMPONENT, HeadStatement::META}) {
            for (const KeptHead& statement : head) {
                if (statement.kind != kind)
                    continue;
                newLine();
                _out += kind == HeadStatement::META ? "<meta" : "<component";
                attribute("name", statement.name);
                attribute(kind == HeadStatement::META ? "content" : "level", statement.content);
                _out += "/>";
            }
        }
        --_depth;
        newLine();
        _out += "</head>";
    }
    newLine();
    _out += "<Scene";
    if (!rootName.empty())
        attribute("DEF", rootName);
    if (root) {
        for (unsigned int part = 0; part < partCount(*root->type()); ++part) {
            const Field& field = readField(*root, part);
            if (field.dataType() == SFBOOL_DT && field.node() == root &&
                field.valueToString() != field._desc->defaultValue)
                fieldAttribute(field.name(), field, 0);
        }
    }
    _out += '>';
    ++_depth;
}

void XmlEmitter::endScene()
{
    --_depth;
    newLine();
    _out += "</Scene>";
    --_depth;
    newLine();
    _out += "</X3D>\n";
}

void XmlEmitter::beginElement(const Node& node)
{
    newLine();
    _out += '<';
    if (isMarkedInstance(node)) {
        _out += "ProtoInstance";
        attribute("name", node.type()->name);
    } else {
        _out += coding::toFile(node.type()->name);
    }
}

/// Says into which field a node goes, unless the reader finds that field by itself.
void XmlEmitter::container(const Node& node, const Field* holder)
{
    // The element of a declared field, or of an instance's value, says it already.
    if (!holder || isMarkedInstance(*holder->node()) ||
        (holder->_desc->objExt() && !isUnknown(*holder->node()->type())))
        return;
    const Node& parent = *holder->node();
    const std::string_view byType = isUnknown(*node.type()) ? "children" : containerField(*node.type());
    const bool isDefault = byType == holder->name();
    if (isDefault && (isUnknown(*parent.type()) || _placement.accepts(*holder->_desc, *node.type())))
        return;
    // In a scene everything but metadata goes among its children.
    if (parent.type()->isContextRoot() && std::string_view(holder->name()) == "children" &&
        partIndex(*parent.type(), byType) < 0)
        return;
    attribute("containerField", holder->name());
}

void XmlEmitter::beginNode(const Node& node, std::string_view name, const Field* holder)
{
    beginElement(node);
    if (!name.empty())
        attribute("DEF", name);
    container(node, holder);
    const bool isInstance = isMarkedInstance(node);
    _open.push_back({isInstance ? "ProtoInstance" : coding::toFile(node.type()->name), isInstance});
}

void XmlEmitter::value(const Field& field)
{
    Element& element = _open.back();
    if (element.isInstance) {
        element.instanceValues.push_back(&field);
        return;
    }
    int strings = 0;
    if (field.dataType() == MFSTRING_DT) {
        const auto& texts = static_cast<const MFString&>(field);
        strings = static_cast<int>(texts.size());
        if (strings > 0 && std::string_view(field.name()) == "url" && isSource(texts[strings - 1])) {
            element.source = coding::toFile(texts[strings - 1]);
            if (--strings == 0)
                return;
        }
    }
    fieldAttribute(field.name(), field, strings);
}

void XmlEmitter::endValues(bool hasContent)
{
    Element& element = _open.back();
    element.hasContent = hasContent || !element.source.empty() || !element.instanceValues.empty();
    _out += element.hasContent ? ">" : "/>";
    ++_depth;
    for (const Field* field : element.instanceValues) {
        newLine();
        _out += "<fieldValue";
        attribute("name", field->name());
        fieldAttribute("value", *field, static_cast<int>(field->size()));
        _out += "/>";
    }
}

void XmlEmitter::beginNodes(const Field& field)
{
    if (!_open.back().isInstance)
        return;
    newLine();
    _out += "<fieldValue";
    attribute("name", field.name());
    _out += '>';
    ++_depth;
}

void XmlEmitter::endNodes()
{
    if (!_open.back().isInstance)
        return;
    --_depth;
    newLine();
    _out += "</fieldValue>";
}

void XmlEmitter::endNode()
{
    const Element element = std::move(_open.back());
    _open.pop_back();
    if (!element.source.empty()) {
        newLine();
        _out += "<![CDATA[\n";
        // The end mark of the section cannot stand inside it.
        std::string_view rest = element.source;
        for (std::size_t mark = rest.find("]]>"); mark != std::string_view::npos; mark = rest.find("]]>")) {
            _out += rest.substr(0, mark + 2);
            _out += "]]><![CDATA[";
            rest.remove_prefix(mark + 2);
        }
        _out += rest;
        _out += "\n]]>";
    }
    --_depth;
    if (element.hasContent) {
        newLine();
        _out += "</" + element.name + ">";
    }
}

void XmlEmitter::use(const Node& node, std::string_view name, const Field* holder)
{
    beginElement(node);
    attribute("USE", name);
    container(node, holder);
    _out += "/>";
}

void XmlEmitter::beginDeclaration(const Field& field, bool hasNodes)
{
    const NodePartDesc& desc = *field._desc;
    newLine();
    _out += "<field";
    attribute("accessType", accessWord(desc.partType));
    attribute("name", desc.name);
    attribute("type", field.dataTypeName());
    const bool isNodes = field.dataType() == SFNODE_DT || field.dataType() == MFNODE_DT;
    if (!isNodes && (desc.partType & FIELDP) && field.valueToString() != desc.defaultValue)
        fieldAttribute("value", field, static_cast<int>(field.size()));
    _out += hasNodes ? ">" : "/>";
    ++_depth;
}

void XmlEmitter::endDeclaration(bool hasNodes)
{
    --_depth;
    if (hasNodes) {
        newLine();
        _out += "</field>";
    }
}

void XmlEmitter::route(std::string_view fromNode, std::string_view fromField, std::string_view toNode,
                       std::string_view toField)
{
    newLine();
    _out += "<ROUTE";
    attribute("fromNode", fromNode);
    attribute("fromField", fromField);
    attribute("toNode", toNode);
    attribute("toField", toField);
    _out += "/>";
}

void XmlEmitter::importStatement(std::string_view inlineName, std::string_view exportedName,
                                 std::string_view name)
{
    newLine();
    _out += "<IMPORT";
    attribute("inlineDEF", inlineName);
    attribute("importedDEF", exportedName);
    if (name != exportedName)
        attribute("AS", name);
    _out += "/>";
}

void XmlEmitter::exportStatement(std::string_view localName, std::string_view exportedName)
{
    newLine();
    _out += "<EXPORT";
    attribute("localDEF", localName);
    if (exportedName != localName)
        attribute("AS", exportedName);
    _out += "/>";
}

void XmlEmitter::comment(std::string_view text)
{
    newLine();
    _out += "<!-- ";
    // Two dashes end a comment.
    char previous = ' ';
    for (const char c : coding::toFile(text)) {
        if (c == '-' && previous == '-')
            _out += ' ';
        _out += c;
        previous = c;
    }
    _out += " -->";
}

} // namespace

std::string xmlText(const Node& root, const SaveOptions& options)
{
    XmlEmitter emitter(options.useTabs);
    GraphWalk(root, options, emitter).run();
    return emitter.takeText();
}

bool writeXml(const Node& root, const std::string& path, const SaveOptions& options, std::string& error)
{
    const bool pack = path.size() > 5 && (path.back() == 'z' || path.back() == 'Z');
    return writeOutputFile(path, xmlText(root, options), pack, error);
}

} // namespace Orvane
