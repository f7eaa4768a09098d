#pragma once

#include <Orvane/Field.h>
#include <Orvane/NodePartDesc.h>
#include <string>

namespace Orvane {

/// A field of a data type that the headers have no class for: it holds the text of its value.
class TextField : public Field
{
public:
    TextField(Node* node, NodePartDesc* desc)
        : Field(node, desc)
    {
    }

    NodePartDataType dataType() const override { return _desc ? _desc->dataType : NO_DT; }
    std::string valueToString() const override { return _text; }
    int cardinality() const override { return dataType() % 2 == 0 ? 1 : 0; }
    unsigned int size() const override { return 1; }
    void clear() override {}
    bool parseValue(std::string_view text, std::string&) override
    {
        _text = text;
        return true;
    }
    void assignValue(const Field& other) override { _text = other.valueToString(); }
    bool hasValueOf(const Field& other) const override { return _text == other.valueToString(); }

private:
    std::string _text;
};

} // namespace Orvane
