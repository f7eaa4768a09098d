#pragma once

#include <string_view>

namespace Orvane {

class ClassicInput;
class ClassicValues;
class SceneSink;

/// Reads the statements of the classic encodings that are neither nodes nor prototypes, from their first word
/// on, and tells the sink of those that are complete.
class ClassicStatements
{
public:
    /// \a version is that of X3D in the file's first line.
    ClassicStatements(ClassicInput& input, ClassicValues& values, SceneSink& sink, std::string_view version)
        : _input(input)
        , _values(values)
        , _sink(sink)
        , _version(version)
    {
    }

    /// True for the first word of a statement in front of a scene.
    static bool isHead(std::string_view word);
    /// True for IMPORT and EXPORT.
    static bool isExchange(std::string_view word);
    /// True for the first word of any statement, prototypes included.
    static bool isKeyword(std::string_view word);

    /// False, and told, when the statement is not complete.
    bool readHead();
    bool readExchange();
    bool readRoute();

private:
    /// The first word of a statement and the form of its ends, for messages.
    struct Statement
    {
        std::string_view word;
        std::string_view end;
    };

    struct End
    {
        std::string_view node;
        std::string_view name;
    };

    bool endsEarly(std::string_view where, std::string_view what);
    std::string_view takeName(std::string_view where, std::string_view what);
    bool readComponent(std::string_view& name, std::string_view& level);
    bool readUnit(std::string_view& category, std::string_view& name, double& factor);
    bool readMeta(std::string_view& name, std::string_view& content);
    bool readEnd(const Statement& statement, End& end);
    bool readAs(std::string_view& name);

    ClassicInput& _input;
    ClassicValues& _values;
    SceneSink& _sink;
    std::string_view _version;
};

} // namespace Orvane
