#pragma once

#include <Orvane/NodePartDataType.h>
#include <cstddef>
#include <string>
#include <string_view>

namespace Orvane {

class ClassicInput;
class SceneSink;

/// A field of a node, for messages.
struct FieldLabel
{
    std::string_view node;
    std::string_view field;
};

std::string toString(const FieldLabel& label);

/// Finds the ends of values in a classic encoding: by their type when that is known, else by their tokens.
/// What the numbers and words in them mean is left to the fields.
class ClassicValues
{
public:
    /// A value in the form that `SceneSink::fieldValue` takes.
    struct Value
    {
        std::string_view text;
        std::size_t offset = 0;
    };

    /// The sink is asked which words are fields of its open node.
    ClassicValues(ClassicInput& input, SceneSink& sink)
        : _input(input)
        , _sink(sink)
    {
    }

    /// Takes a value that holds no nodes; with `NO_DT` whatever value stands here. False, and told, when
    /// there is none, or none that can be used; its tokens are then behind.
    bool take(NodePartDataType type, const FieldLabel& label, Value& value);
    /// Goes behind what stands in the place of a value, unless it belongs to what comes after.
    void skip();
    /// True when a value of nodes stands here, as far as the tokens tell.
    bool beginsNodes() const;
    /// True when the word here is no value, but a statement or the next field of the node.
    bool beginsElement() const;

private:
    enum Shape { NUMBERS, WORDS, STRINGS, ANY };

    static Shape shapeOf(NodePartDataType type);
    bool isElement(Shape shape) const;
    bool takeWord(Value& value);
    bool takeText(const FieldLabel& label, Value& value);
    bool takeList(Shape shape, const FieldLabel& label, Value& value);
    void skipList();
    bool fail(const FieldLabel& label, const std::string& what);

    ClassicInput& _input;
    SceneSink& _sink;
};

/// True for the type of fields whose value is nodes.
inline bool holdsNodes(NodePartDataType type)
{
    return type == SFNODE_DT || type == MFNODE_DT;
}

} // namespace Orvane
