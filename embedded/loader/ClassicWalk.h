#pragma once

#include "loader/ClassicInput.h"
#include "loader/ClassicLevels.h"
#include "loader/ClassicStatements.h"
#include "loader/ClassicValues.h"
#include "loader/SceneSink.h"
#include <string_view>
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
    using Level = ClassicLevels::Level;
    using Holder = ClassicLevels::Holder;

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

    void readCloser();
    void endFile();
    void skipToStatement();

    ClassicInput _input;
    SceneSink& _sink;
    const ClassicDialect& _dialect;
    ClassicValues _values;
    ClassicStatements _statements;
    ClassicLevels _levels;
    std::size_t _understood = 0; ///< nodes and statements
    bool _isGivenUp = false;
};

} // namespace Orvane
