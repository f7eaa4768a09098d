#include "FieldState.h"

#include "GraphReach.h"
#include <Orvane/Authoring.h>
#include <Orvane/MFNode.h>
#include <Orvane/Node.h>
#include <Orvane/SFNode.h>
#include <algorithm>

FieldState::FieldState(const Orvane::Field& field)
{
    // Nodes need have no names.
    auto& links = const_cast<Orvane::Field&>(field);
    if (auto* const single = dynamic_cast<Orvane::SFNode*>(&links)) {
        _nodes.emplace_back(single->link().directNode());
    } else if (auto* const multi = dynamic_cast<Orvane::MFNode*>(&links)) {
        for (Orvane::NodeLink& link : *multi)
            _nodes.emplace_back(link.directNode());
    } else {
        _text = field.valueToString();
    }
}

void FieldState::giveTo(Orvane::Field& field) const
{
    if (auto* const single = dynamic_cast<Orvane::SFNode*>(&field)) {
        single->setNode(0.0, _nodes.front().node(), Orvane::Field::EXTERNAL_CT);
    } else if (auto* const multi = dynamic_cast<Orvane::MFNode*>(&field)) {
        while (multi->size() > 0)
            multi->removeNode(0.0, static_cast<int>(multi->size()) - 1, Orvane::Field::EXTERNAL_CT);
        for (const Orvane::HeldNode& node : _nodes)
            multi->addNode(0.0, node.node(), Orvane::Field::EXTERNAL_CT);
    } else {
        field.setValueByStr(0.0, _text.c_str());
    }
}

void FieldState::restLost(const FieldState& other) const
{
    for (const Orvane::HeldNode& lost : other._nodes) {
        const auto isLost = [&lost](const Orvane::HeldNode& kept) { return kept.node() == lost.node(); };
        if (!lost.node() || std::any_of(_nodes.begin(), _nodes.end(), isLost))
            continue;
        for (Orvane::Node* const node : strandedNodes(*lost.node()))
            Orvane::Authoring::rest(*node);
    }
}

bool FieldState::operator==(const FieldState& other) const
{
    return _text == other._text &&
           std::equal(
               _nodes.begin(), _nodes.end(), other._nodes.begin(), other._nodes.end(),
               [](const Orvane::HeldNode& a, const Orvane::HeldNode& b) { return a.node() == b.node(); });
}
