#pragma once

#include "loader/SourcePlace.h"
#include <Orvane/NodePartDataType.h>
#include <Orvane/NodePartType.h>
#include <string_view>

namespace Orvane {

/// The start of a node.
struct NodeStart
{
    std::string_view type;
    std::string_view name;           ///< DEF; empty when unnamed
    std::string_view containerField; ///< field of the parent, when the text says which
    bool isInstance = false;         ///< the text says that the type is declared by a prototype
    SourcePlace place;
};

/// A further place of a node that has a name.
struct NodeUse
{
    std::string_view type; ///< what the text takes the node for; empty when it does not say
    std::string_view name;
    std::string_view containerField;
    SourcePlace place;
};

/// A field that an author declares: of a script, a shader or a prototype.
struct FieldDeclaration
{
    std::string_view name;
    NodePartDataType dataType = NO_DT;
    NodePartType access = NO_PART;
    bool hasValue = false;
    std::string_view value;
    SourcePlace place;
    SourcePlace valuePlace;
};

struct RouteStatement
{
    std::string_view fromNode;
    std::string_view fromField;
    std::string_view toNode;
    std::string_view toField;
    SourcePlace place;
};

/// `IMPORT inlineName.exportedName AS name` and, without the first, `EXPORT exportedName AS name`.
struct ExchangeStatement
{
    std::string_view inlineName;
    std::string_view exportedName;
    std::string_view name; ///< empty when the text gives none
    SourcePlace place;
};

/// A statement in front of the scene.
struct HeadStatement
{
    enum Kind { PROFILE, COMPONENT, UNIT, META };

    Kind kind = META;
    std::string_view name;    ///< of the profile, component, unit's category or meta
    std::string_view content; ///< version of X3D, level, name of the unit, content of the meta
    double factor = 1.0;      ///< of a unit: into the base unit
    SourcePlace place;
};

/// Takes a scene as the reader of an encoding meets it, statement by statement. Readers know the syntax of
/// their encoding, nothing of the graph; what the events say to each other is alike for all encodings.
///
/// Texts are UTF-8 and live as long as the call. Values have the form that `Field::parseValue` takes, but an
/// `MFString` may also be one bare text. Between `beginNode` and `endNode` the events tell of that node.
class SceneSink
{
public:
    virtual ~SceneSink();

    /// The version of X3D that the file says it is written in, as "3.3"; "2.0" for VRML97. Comes first.
    virtual void version(std::string_view version) = 0;
    virtual void head(const HeadStatement& statement) = 0;

    /// False when the scene must be given up; the reader then stops and refuses the file.
    virtual bool beginNode(const NodeStart& start) = 0;
    virtual void endNode() = 0;
    virtual void useNode(const NodeUse& use) = 0;

    /// Data type of a field of the node; `NO_DT` when that is not known. Encodings whose values end by their
    /// type ask for it.
    virtual NodePartDataType fieldType(std::string_view field) = 0;
    virtual void fieldValue(std::string_view field, std::string_view text, SourcePlace place) = 0;
    /// The nodes up to `endFieldNodes` are the value of this field.
    virtual void beginFieldNodes(std::string_view field, SourcePlace place) = 0;
    virtual void endFieldNodes() = 0;
    /// Text inside the node, without the blanks round it that are only the file's: source code, that is a
    /// further value of the node's `url`.
    virtual void sourceText(std::string_view text, SourcePlace place) = 0;

    /// A field that is added to the node, or declared by the prototype. The nodes up to `endDeclaration` are
    /// its value.
    virtual void beginDeclaration(const FieldDeclaration& declaration) = 0;
    virtual void endDeclaration() = 0;
    /// A field of the node stands for one of the prototype around it.
    virtual void isConnection(std::string_view nodeField, std::string_view protoField, SourcePlace place) = 0;

    /// Both ends are looked up by name, before the statement and after it.
    virtual void route(const RouteStatement& statement) = 0;
    virtual void importNode(const ExchangeStatement& statement) = 0;
    virtual void exportNode(const ExchangeStatement& statement) = 0;

    /// A prototype: its declarations, then, between `beginProtoBody` and `endProto`, its nodes and routes.
    virtual void beginProto(std::string_view name, SourcePlace place) = 0;
    virtual void beginProtoBody() = 0;
    virtual void endProto() = 0;
    /// A prototype of another file: its declarations. \a urls is the text of an `MFString`.
    virtual void beginExternProto(std::string_view name, std::string_view urls, SourcePlace place) = 0;
    virtual void endExternProto() = 0;
};

} // namespace Orvane
