#include "loader/MovedAddresses.h"

#include "base/Graph.h"
#include "base/LocalFile.h"
#include "base/TextCoding.h"
#include "loader/ExternalFiles.h"
#include "loader/LoadMessages.h"
#include "loader/NodeFields.h"
#include "loader/SaveNotes.h"
#include <Orvane/MFString.h>
#include <Orvane/Node.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <filesystem>
#include <unordered_set>

namespace Orvane {

namespace {

std::string folderOf(const std::string& path)
{
    return path.substr(0, path.rfind('/') + 1);
}

/// The address of a file for a scene in a folder; as it is where no relative one leads there.
std::string addressFor(const std::string& path, const Relayne::URL& scene)
{
    namespace fs = std::filesystem;
    std::error_code error;
    const fs::path folder = fs::absolute(folderOf(scene.localFile()), error);
    const fs::path absolute = fs::absolute(path, error);
    const bool isSaved = scene.isLocalFile() && !scene.isEmpty() && !error;
    const fs::path relative = isSaved ? absolute.lexically_relative(folder) : fs::path();
    const std::string name = (relative.empty() ? absolute : relative).string();
    return coding::toGraph(Relayne::URL::fromLocalFile(name).toString());
}

} // namespace

bool mayNameFiles(const Node& node, const NodePartDesc& desc)
{
    return desc.dataType == MFSTRING_DT &&
           (desc.name == "url" || node.type()->isProto() || namesFiles(node, desc));
}

std::string movedAddress(const std::string& address, const Relayne::URL& from, const Relayne::URL& to)
{
    const Relayne::URL parsed(address);
    const std::string named = parsed.localFile();
    if (holdsContent(address) || named.empty() || named.front() == '/')
        return address;
    const LocalFile file = findLocalFile(from, address);
    if (file.path.empty() || findLocalFile(to, address).path == file.path)
        return address;
    const std::string fragment = parsed.fragment().empty() ? std::string() : "#" + parsed.fragment();
    return addressFor(file.path, to) + fragment;
}

void moveAddresses(MFString& field, const Relayne::URL& from, const Relayne::URL& to)
{
    for (int i = 0; i < static_cast<int>(field.size()); ++i)
        field.elem(i) = movedAddress(field[i], from, to);
}

void noteMovedAddresses(const Node& root, const std::string& path, std::vector<std::string>& notes)
{
    const Relayne::URL from = root.nameSpace() ? root.nameSpace()->baseURL() : Relayne::URL();
    const Relayne::URL to = Relayne::URL::fromLocalFile(path);
    if (!from.isLocalFile() || folderOf(from.localFile()) == folderOf(to.localFile()))
        return;
    SaveNotes told(notes);
    std::vector<const Node*> waiting{&root};
    std::unordered_set<const Node*> met{&root};
    std::vector<const Field*> fields;
    while (!waiting.empty()) {
        const Node& node = *waiting.back();
        waiting.pop_back();
        fields.clear();
        madeFields(node, fields);
        for (const Field* field : fields) {
            // What an inline or a prototype has brought is not written.
            const NodePartDesc& desc = *field->_desc;
            if (desc.privateAccess())
                continue;
            for (int link = 0; holdsNodes(*field) && link < linkCount(*field); ++link)
                if (const Node* child = linkedNode(*field, link); child && met.insert(child).second)
                    waiting.push_back(child);
            if (!mayNameFiles(node, desc))
                continue;
            for (const std::string& address : readStrings(node, desc.id))
                if (!holdsContent(address) && !findLocalFile(from, address).path.empty() &&
                    findLocalFile(to, address).path.empty())
                    told.add(node.type()->name + "." + desc.name + ": " + Orvane::quoted(address) +
                             " counts from the folder of the new file, which has no such file");
        }
    }
}

} // namespace Orvane
