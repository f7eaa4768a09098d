#include "loader/ClassicValues.h"

#include "loader/AccessWord.h"
#include "loader/ClassicInput.h"
#include "loader/LoadMessages.h"
#include "loader/SceneSink.h"
#include <Orvane/FieldType.h>
#include <algorithm>

namespace Orvane {

namespace {

using Tokens = ClassicTokens;

bool isTruth(std::string_view word)
{
    return word == "TRUE" || word == "FALSE" || word == "true" || word == "false";
}

bool isStatement(std::string_view word)
{
    return word == "ROUTE" || word == "PROTO" || word == "EXTERNPROTO" || accessOfWord(word) != NO_PART;
}

bool isMultiple(NodePartDataType type)
{
    // Each type of single values is followed by that of their lists.
    return type != NO_DT && type % 2 == 0;
}

/// So many numbers a single value has, at least; 0 for values that are no row of numbers.
int leastNumbers(NodePartDataType type)
{
    switch (type) {
    case SFVEC2D_DT:
    case SFVEC2F_DT:
        return 2;
    case SFCOLOR_DT:
    case SFIMAGE_DT:
    case SFVEC3D_DT:
    case SFVEC3F_DT:
        return 3;
    case SFCOLORRGBA_DT:
    case SFROTATION_DT:
    case SFVEC4D_DT:
    case SFVEC4F_DT:
        return 4;
    case SFMATRIX3D_DT:
    case SFMATRIX3F_DT:
        return 9;
    case SFMATRIX4D_DT:
    case SFMATRIX4F_DT:
        return 16;
    default:
        return 0;
    }
}

/// True for the type of lists when so many numbers or texts are more than one value.
bool areSeveral(NodePartDataType type, int count)
{
    if (!isMultiple(type) || type == MFIMAGE_DT)
        return false;
    return count > std::max(leastNumbers(static_cast<NodePartDataType>(type - 1)), 1);
}

std::string nameOf(NodePartDataType type)
{
    return type == NO_DT ? "a value" : "a value of type " + FieldType::dataTypeName(type);
}

} // namespace

std::string toString(const FieldLabel& label)
{
    std::string text(label.node);
    return text.append(text.empty() ? "" : ".").append(label.field);
}

ClassicValues::Shape ClassicValues::shapeOf(NodePartDataType type)
{
    switch (type) {
    case NO_DT:
        return ANY;
    case SFBOOL_DT:
    case MFBOOL_DT:
        return WORDS;
    case SFSTRING_DT:
    case MFSTRING_DT:
        return STRINGS;
    default:
        return NUMBERS;
    }
}

/// True for a token that may stand in a value; that it is of the type is for the field to say.
bool ClassicValues::isElement(Shape shape) const
{
    const Tokens& tokens = _input.tokens;
    switch (shape) {
    case STRINGS:
        return tokens.kind() == Tokens::STRING;
    case WORDS:
    case ANY:
        return tokens.kind() == Tokens::NUMBER || (tokens.kind() == Tokens::WORD && isTruth(tokens.text()));
    default:
        return tokens.kind() == Tokens::NUMBER;
    }
}

bool ClassicValues::beginsNodes() const
{
    const Tokens& tokens = _input.tokens;
    if (tokens.kind() == Tokens::OPEN_BRACKET) {
        Tokens inside = tokens;
        inside.next();
        return inside.kind() == Tokens::WORD && !isTruth(inside.text());
    }
    return tokens.kind() == Tokens::WORD &&
           (tokens.is("DEF") || tokens.is("USE") || tokens.is("NULL") || tokens.opensBrace());
}

bool ClassicValues::beginsElement() const
{
    const Tokens& tokens = _input.tokens;
    return tokens.kind() == Tokens::WORD &&
           (isStatement(tokens.text()) || _sink.fieldType(tokens.text()) != NO_DT);
}

bool ClassicValues::fail(const FieldLabel& label, const std::string& what)
{
    _input.expected(toString(label), what);
    skip();
    return false;
}

void ClassicValues::skip()
{
    Tokens& tokens = _input.tokens;
    switch (tokens.kind()) {
    case Tokens::OPEN_BRACE:
    case Tokens::OPEN_BRACKET:
        tokens.skipGroup();
        return;
    case Tokens::STRING:
    case Tokens::NUMBER:
        while (tokens.kind() == Tokens::STRING || tokens.kind() == Tokens::NUMBER)
            tokens.next();
        return;
    case Tokens::WORD:
        break;
    default:
        return;
    }
    if (tokens.is("DEF") || tokens.is("USE")) {
        const bool isUse = tokens.is("USE");
        tokens.next();
        if (tokens.kind() == Tokens::WORD || tokens.kind() == Tokens::NUMBER)
            tokens.next();
        if (isUse)
            return;
    }
    if (tokens.kind() == Tokens::WORD && tokens.opensBrace()) {
        tokens.next();
        tokens.skipGroup();
    } else if (tokens.kind() == Tokens::WORD && !beginsElement()) {
        tokens.next();
    }
}

bool ClassicValues::take(NodePartDataType type, const FieldLabel& label, Value& value)
{
    Tokens& tokens = _input.tokens;
    value.offset = tokens.offset();
    const Shape shape = shapeOf(type);
    if (type == SFSTRING_DT || (shape == ANY && tokens.kind() == Tokens::STRING))
        return takeText(label, value);
    if (tokens.kind() == Tokens::OPEN_BRACKET && (isMultiple(type) || type == NO_DT))
        return takeList(shape, label, value);
    if (shape == ANY && tokens.kind() == Tokens::WORD && !beginsElement())
        return takeWord(value);
    if (!isElement(shape))
        return fail(label, nameOf(type));
    const std::string_view first = tokens.text();
    // Of many numbers without brackets the field says whether they are one value.
    const bool goesOn = tokens.kind() != Tokens::WORD;
    int count = 0;
    do {
        tokens.next();
        ++count;
    } while (goesOn && isElement(shape) && tokens.kind() != Tokens::WORD);
    value.text = tokens.since(value.offset);
    if (areSeveral(type, count))
        _input.warn(value.offset,
                    toString(label) + ": expected [ in front of several values, found " + quoted(first));
    const bool isBroken = count < leastNumbers(type) && tokens.kind() == Tokens::WORD && !beginsElement();
    if (!isBroken)
        return true;
    fail(label, nameOf(type));
    while (tokens.kind() == Tokens::NUMBER)
        tokens.next();
    return false;
}

/// A word that means something to nodes that nobody knows.
bool ClassicValues::takeWord(Value& value)
{
    value.text = _input.tokens.text();
    _input.tokens.next();
    return true;
}

bool ClassicValues::takeText(const FieldLabel& label, Value& value)
{
    Tokens& tokens = _input.tokens;
    if (tokens.kind() != Tokens::STRING)
        return fail(label, "a text in quotes");
    if (!tokens.isClosed()) {
        _input.warn(value.offset, toString(label) + ": expected a closing quote, found the end of the file");
        tokens.next();
        return false;
    }
    value.text = tokens.takeString();
    return true;
}

bool ClassicValues::takeList(Shape shape, const FieldLabel& label, Value& value)
{
    Tokens& tokens = _input.tokens;
    if ((shape == NUMBERS || shape == ANY) && tokens.takeNumbers(value.text))
        return true;
    tokens.next();
    if (shape == ANY && tokens.kind() == Tokens::STRING)
        shape = STRINGS;
    const std::size_t begin = tokens.offset();
    while (isElement(shape) && tokens.isClosed())
        tokens.next();
    value.text = tokens.since(begin);
    if (tokens.kind() == Tokens::CLOSE_BRACKET) {
        tokens.next();
        return true;
    }
    static const char* const elements[] = {"a number", "TRUE or FALSE", "a text in quotes", "a value"};
    if (tokens.isClosed())
        _input.expected(toString(label), std::string(elements[shape]) + " or ]");
    else
        _input.warn(tokens.offset(),
                    toString(label) + ": expected a closing quote, found the end of the file");
    // A forgotten bracket costs nothing, what is no value costs the list.
    if (tokens.kind() == Tokens::CLOSE_BRACE || beginsElement())
        return true;
    skipList();
    return false;
}

/// Goes behind the bracket of the list that is open, or to the brace that ends the node before it.
void ClassicValues::skipList()
{
    Tokens& tokens = _input.tokens;
    while (tokens.kind() != Tokens::END && tokens.kind() != Tokens::CLOSE_BRACE) {
        if (tokens.kind() == Tokens::CLOSE_BRACKET) {
            tokens.next();
            return;
        }
        if (tokens.kind() == Tokens::OPEN_BRACE || tokens.kind() == Tokens::OPEN_BRACKET)
            tokens.skipGroup();
        else
            tokens.next();
    }
}

} // namespace Orvane
