#pragma once

#include "loader/ClassicInput.h"
#include "loader/ClassicStatements.h"
#include "loader/ClassicValues.h"
#include "loader/SceneSink.h"
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Orvane {

/// What the classic encodings differ in.
struct ClassicDialect
{
    std::string_view name;
    std::string_view version; ///< of X3D; empty for VRML97
    bool isVrml97 = false;
};

/// Goes through a scene in one of the classic encodings and tells the sink. What is open it keeps on a stack
/// of its own, so a deep scene needs no deep calls. A fault costs what it stands in and no more: the walk
/// goes on with the next field, node or statement.
class ClassicWalk
{
public:
    ClassicWalk(SourceText& text, SceneSink& sink, LoadMessages& messages, const ClassicDialect& dialect);

    /// False when the sink gives the scene up, or when nothing was found: no node and no statement. A text
    /// that is empty but for its header \a mayBeEmpty.
    bool readScene(bool mayBeEmpty);
    /// True when the sink has given the scene up, which it has told.
    bool isGivenUp() const { return _isGivenUp; }

private:
    enum Kind {
        SCENE,
        NODE,      ///< between the braces of a node
        NODES,     ///< between the brackets of a field's nodes
        INTERFACE, ///< between the brackets of a prototype
        BODY       ///< between the braces of a prototype
    };

    /// What ends together with a node or a list of nodes.
    enum Holder { NO_HOLDER, FIELD, DECLARATION };

    struct Level
    {
        Kind kind = SCENE;
        Holder holder = NO_HOLDER;
        std::string_view name;  ///< type of the node, name of the field or prototype
        std::size_t offset = 0; ///< where it begins
        std::size_t protos = 0; ///< prototypes that were declared when it began
    };

    void readElement();
    void readStatement();
    void readNodeElement();
    void readInterfaceElement();
    void readKeyword();
    void readUse();

    void readNode(Holder holder);
    void tellDefaults(std::string_view type, SourcePlace place);
    void readField();
    void readNodes(NodePartDataType type, const FieldLabel& label, Holder holder, std::size_t offset);
    void readConnection(const FieldLabel& label, std::size_t offset);
    bool readDeclarationHead(FieldDeclaration& declaration);
    void readDeclaration();
    void readProto();
    void beginBody();
    void readExternProto();
    std::vector<FieldDeclaration> readExternFields(std::string_view name);
    void declareProto(std::string_view name);
    bool isProto(std::string_view type) const { return !_protos.empty() && _protos.count(type) > 0; }

    void push(Kind kind, Holder holder, std::string_view name, std::size_t offset);
    void endLevel();
    void endHolder(Holder holder);
    void readCloser();
    void endFile();
    void skipToStatement();

    ClassicInput _input;
    SceneSink& _sink;
    const ClassicDialect& _dialect;
    ClassicValues _values;
    ClassicStatements _statements;
    std::vector<Level> _levels;
    std::size_t _openBraces = 0;
    std::size_t _openBrackets = 0;
    std::vector<std::string_view> _declared;                    ///< prototypes, inner ones last
    std::unordered_map<std::string_view, unsigned int> _protos; ///< how often each is among them
    std::size_t _understood = 0;                                ///< nodes and statements
    bool _isGivenUp = false;
};

} // namespace Orvane
