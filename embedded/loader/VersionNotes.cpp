#include "loader/VersionNotes.h"

#include "base/Graph.h"
#include "base/ValueFields.h"
#include "loader/NodeFields.h"
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <unordered_set>

namespace Orvane {

namespace {

/// Since then the texture of an appearance is multiplied with the colour of the material.
constexpr unsigned int multiplyingVersion = 40;

/// The node in a field; null for a node without such a field.
const Node* nodeIn(const Node& node, const char* name)
{
    const int part = partIndex(*node.type(), name);
    return part < 0 ? nullptr : readNode(node, static_cast<unsigned int>(part));
}

/// True for an appearance whose texture meets a colour of a lit material that is not white.
bool tintsTexture(const Node& appearance)
{
    const Node* const material = nodeIn(appearance, "material");
    const int part = material ? partIndex(*material->type(), "diffuseColor") : -1;
    if (part < 0 || partDesc(*material->type(), static_cast<unsigned int>(part))->dataType != SFCOLOR_DT ||
        nodeIn(*material, "diffuseTexture"))
        return false;
    const Node* const texture = nodeIn(appearance, "texture");
    const osg::Color3f& color = read<SFColor>(*material, static_cast<unsigned int>(part)).value();
    const bool isWhite = color.red() == 1.0F && color.green() == 1.0F && color.blue() == 1.0F;
    return texture && texture->type()->name != "MultiTexture" && !isWhite;
}

} // namespace

void noteVersion(const Node& root, unsigned int written, std::vector<std::string>& notes)
{
    const NodeType* const appearanceType = findType("Appearance");
    std::vector<const Node*> waiting{&root};
    std::unordered_set<const Node*> met{&root};
    std::vector<const Field*> fields;
    while (!waiting.empty()) {
        const Node& node = *waiting.back();
        waiting.pop_back();
        const unsigned int version = fileVersion(node.nameSpace());
        const bool isOther = (version >= multiplyingVersion) != (written >= multiplyingVersion);
        if (isOther && node.type() == appearanceType && tintsTexture(node)) {
            notes.push_back(
                written >= multiplyingVersion
                    ? "Appearance.texture: colours of images stood in place of the diffuse colour; "
                      "in the version that is written they are multiplied with it"
                    : "Appearance.texture: colours of images were multiplied with the diffuse colour; "
                      "in the version that is written they stand in its place");
            return;
        }
        fields.clear();
        madeFields(node, fields);
        for (const Field* field : fields) {
            // What an inline or a prototype has brought is not written.
            for (int link = 0;
                 !field->_desc->privateAccess() && holdsNodes(*field) && link < linkCount(*field); ++link)
                if (const Node* child = linkedNode(*field, link); child && met.insert(child).second)
                    waiting.push_back(child);
        }
    }
}

} // namespace Orvane
