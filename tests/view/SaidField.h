#pragma once

#include <Orvane/Field.h>
#include <Orvane/NodePartDesc.h>
#include <string>

/// A field that says of itself what a test wants, and counts how often it is turned into text.
class SaidField : public Orvane::Field
{
public:
    SaidField(const std::string& text, unsigned int size)
        : Field(nullptr, &desc)
        , text(text)
        , count(size)
    {
        desc.name = "said";
        desc.dataType = Orvane::MFVEC2F_DT;
    }

    Orvane::NodePartDataType dataType() const override { return desc.dataType; }
    std::string valueToString() const override
    {
        ++conversions;
        return text;
    }
    int cardinality() const override { return lists; }
    unsigned int size() const override { return count; }
    void clear() override { count = 0; }
    bool parseValue(std::string_view, std::string&) override { return false; }
    void assignValue(const Field&) override {}
    bool hasValueOf(const Field&) const override { return false; }

    Orvane::NodePartDesc desc;
    std::string text;
    unsigned int count;
    int lists = 1; ///< the answer of `cardinality`
    mutable int conversions = 0;
};
