#include "base/NodeText.h"
#include "base/NodeData.h"
#include <Orvane/Field.h>
#include <Orvane/NodeNameSpace.h>
#include <charconv>

namespace Orvane {

namespace {

std::string_view trimmed(std::string_view text)
{
    constexpr std::string_view blanks = " \t\r\n";
    const std::size_t begin = text.find_first_not_of(blanks);
    return begin == std::string_view::npos ? std::string_view()
                                           : text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

/// The node whose text form without a name is \a text ("Box#17").
Node* findById(std::string_view text)
{
    const std::size_t hash = text.rfind('#');
    if (hash == std::string_view::npos)
        return nullptr;
    UInt64 id = 0;
    const char* const end = text.data() + text.size();
    const std::from_chars_result result = std::from_chars(text.data() + hash + 1, end, id);
    Node* const node = result.ec == std::errc() && result.ptr == end ? Node::findNode(id) : nullptr;
    return node && node->type()->name == text.substr(0, hash) ? node : nullptr;
}

Node* findOne(const Node& owner, std::string_view text)
{
    Node* node = NodeNameSpace::findNode(owner.nameSpace(), std::string(text));
    if (!node)
        node = findById(text);
    return node && node->data()->context == owner.data()->context ? node : nullptr;
}

/// Adds the nodes of a piece between commas: one name, blanks included, or several names.
bool findPiece(const Node& owner, std::string_view piece, std::vector<NodeRef>& nodes, std::string& error)
{
    if (piece.empty() || piece == "NULL")
        return true;
    if (Node* node = findOne(owner, piece)) {
        nodes.emplace_back(node);
        return true;
    }
    const std::size_t blank = piece.find_first_of(" \t\r\n");
    if (blank == std::string_view::npos) {
        error.assign("expected NULL or the name of a node, found \"").append(piece).append("\"");
        return false;
    }
    while (!piece.empty()) {
        const std::string_view name = piece.substr(0, piece.find_first_of(" \t\r\n"));
        piece = trimmed(piece.substr(name.size()));
        if (name == "NULL")
            continue;
        Node* const node = findOne(owner, name);
        if (!node) {
            error.assign("expected NULL or the name of a node, found \"").append(name).append("\"");
            return false;
        }
        nodes.emplace_back(node);
    }
    return true;
}

} // namespace

std::string nodeText(const Node* node)
{
    return node ? node->getIDStr() : "NULL";
}

bool findNodes(const Field& field, std::string_view text, std::vector<NodeRef>& nodes, std::string& error)
{
    if (!field.node()) {
        error = "a default value holds no node";
        return false;
    }
    text = trimmed(text);
    if (text.size() > 1 && text.front() == '[' && text.back() == ']')
        text = text.substr(1, text.size() - 2);
    for (bool more = true; more;) {
        const std::size_t comma = text.find(',');
        more = comma != std::string_view::npos;
        if (!findPiece(*field.node(), trimmed(text.substr(0, comma)), nodes, error))
            return false;
        text = more ? text.substr(comma + 1) : std::string_view();
    }
    return true;
}

} // namespace Orvane
