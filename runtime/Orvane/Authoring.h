#pragma once

#include <Orvane/Export.h>
#include <Orvane/HeldNode.h>
#include <string>
#include <vector>

namespace Orvane {

class Field;
class Node;
class NodeType;

/// What authors do to the nodes of a scene beside writing values and making routes. There are no objects of
/// it.
class ORVANE_API Authoring
{
public:
    Authoring() = delete;

    /// Names a node among those of its scene; an empty name takes its name away. A node that bore the name
    /// before keeps it, but is no longer found by it.
    static void setName(Node& node, const std::string& name);
    /// The name itself when no node of \a scene is found by it, else one with a number behind.
    static std::string freeName(const Node& scene, const std::string& name);

    /// The node and what hangs below it as a scene in classic encoding, with the prototypes and routes that
    /// it needs. Empty, with the reason in \a error, when there is no room for it.
    static std::string text(const Node& node, std::string& error);
    /// Makes the nodes of a text in any encoding, to be linked into the scene below \a scene: addresses count
    /// from its file, names that it bears already get a number, and its prototypes are known. What the text
    /// says beside nodes and routes is left out. A text that was taken from the file at \a origin has
    /// addresses that lead to files from there: they are rewritten so that they do so from the scene. False,
    /// with the reason in \a error, when the text cannot be read.
    static bool read(Node& scene, const std::string& text, std::vector<HeldNode>& nodes, std::string& error,
                     const std::string& origin = {});
    /// The address of the file to which a node belongs; empty when it stands in none.
    static std::string origin(const Node& node);
    /// Stops what a node does that is no longer part of a scene, but is kept: it takes no events, does not
    /// tick, and is not bound. Linked below a running node again it goes on. Nodes below it rest when they
    /// are put to rest themselves.
    static void rest(Node& node);

    /// The prototypes of which nodes can be made in the scene.
    static std::vector<NodeType*> prototypes(const Node& scene);

    /// The field into which a child of some type goes when nobody says; null when the parent takes none.
    static Field* fieldFor(Node& parent, const NodeType& child);
    /// The types of the catalogue with a field for children of the type, in order of name: those where it is
    /// the field into which these usually go, if there are some.
    static std::vector<NodeType*> parentTypes(const NodeType& child);
    /// True when the field holds nodes and may hold those of the type.
    static bool accepts(const Field& field, const NodeType& child);

    /// Puts back a field that `Node::removeField` took out of its node, as the part with the number \a part
    /// and without its routes and nodes. False when it is not such a field, or its name has been given away.
    static bool restoreField(Field& field, unsigned int part);
};

} // namespace Orvane
