#pragma once

#include "TinyParts.h"
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <memory>

/// A node of the tiny runtime, of the type "Thing", with fields that a test writes down; it goes with the
/// test.
struct FieldNode
{
    explicit FieldNode(const std::vector<Tiny::Part>& parts)
        : node(Tiny::makeNode(Tiny::makeType("Thing", parts)))
    {
    }

    Orvane::Node* get() const { return node.get(); }
    Orvane::Field* field(int part) const { return node->findField(static_cast<unsigned int>(part)); }
    Orvane::Field* field(const char* name) const { return node->findField(name, Orvane::Node::EXACT_FSO); }
    /// A field as one of its class.
    template <class F>
    F& as(int part) const
    {
        return dynamic_cast<F&>(*field(part));
    }
    template <class F>
    F* field(const char* name) const
    {
        return dynamic_cast<F*>(field(name));
    }
    std::string text(const char* name) const { return field(name)->valueToString(); }

    std::unique_ptr<Orvane::Node> node;
};
