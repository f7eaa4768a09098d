#pragma once

#include <cstddef>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Orvane {

class SceneSink;

/// What is open where a walk through a scene in classic encoding stands, from the scene inwards, and the
/// prototypes that may be used there. The sink is told of what ends.
class ClassicLevels
{
public:
    enum Kind {
        SCENE,
        NODE,      ///< between the braces of a node
        NODES,     ///< between the brackets of a field's nodes
        INTERFACE, ///< between the brackets of a prototype
        BODY       ///< between the braces of a prototype
    };

    /// What ends together with a node or a list of nodes.
    enum Holder { NO_HOLDER, FIELD, DECLARATION };

    struct Level
    {
        Kind kind = SCENE;
        Holder holder = NO_HOLDER;
        std::string_view name;  ///< type of the node, name of the field or prototype
        std::size_t offset = 0; ///< where it begins in the text
        std::size_t protos = 0; ///< prototypes that were declared when it began
    };

    explicit ClassicLevels(SceneSink& sink);

    const Level& top() const { return _levels.back(); }
    /// True when nothing but the scene is open.
    bool isScene() const { return _levels.size() == 1; }

    void begin(Kind kind, Holder holder, std::string_view name, std::size_t offset);
    /// Makes the interface that is open a body.
    void beginBody();
    /// Ends the innermost level, which must not be the scene, and what it holds for.
    void end();
    void endHolder(Holder holder);

    /// True when a brace, or else a bracket, closes the innermost level.
    bool isTopClosedBy(bool brace) const;
    /// True when a brace, or else a bracket, closes any.
    bool isAnyClosedBy(bool brace) const { return (brace ? _openBraces : _openBrackets) > 0; }

    /// Makes a name known as that of a prototype, up to the end of the prototype around it or of the scene.
    void declareProto(std::string_view name);
    bool isProto(std::string_view type) const { return !_protos.empty() && _protos.count(type) > 0; }

private:
    static bool hasBraces(Kind kind) { return kind == NODE || kind == BODY; }
    void forgetProtos(std::size_t count);

    SceneSink& _sink;
    std::vector<Level> _levels;
    std::size_t _openBraces = 0;
    std::size_t _openBrackets = 0;
    std::vector<std::string_view> _declared;                    ///< inner ones last
    std::unordered_map<std::string_view, unsigned int> _protos; ///< how often each is among them
};

} // namespace Orvane
