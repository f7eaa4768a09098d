#pragma once

#include "loader/ClassicEmitter.h"

namespace Orvane {

/// Writes VRML97. What that has no word for is written as X3D says it, or as a comment when that would end
/// the reading; in both cases the notes tell.
class Vrml97Emitter final : public ClassicEmitter
{
public:
    using ClassicEmitter::ClassicEmitter;

    bool isDefault(const Node& node, const Field& field) const override;
    bool writesUntouched(const NodeType& type) const override;

    void beginNode(const Node& node, std::string_view name, const Field* holder) override;
    void importedRoute(std::string_view fromNode, const EventOutSlot& from, std::string_view toNode,
                       const EventInSlot& to) override;
    void waitingRoute(const KeptRoute& route) override;
    void importStatement(std::string_view inlineName, std::string_view exportedName,
                         std::string_view name) override;
    void exportStatement(std::string_view localName, std::string_view exportedName) override;

protected:
    void writeHead(const std::vector<KeptHead>& head) override;
    std::string_view accessWord(NodePartType access) const override;
    void checkDeclaration(const NodePartDesc& desc, const NodeType& type) override;
    std::string_view switchField() const override { return "choice"; }
    std::string fieldName(const NodeType& type, const NodePartDesc& desc, std::string_view name) override;
};

} // namespace Orvane
