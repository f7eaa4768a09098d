#include "loader/MovedAddresses.h"

#include "base/Graph.h"
#include "base/LocalFile.h"
#include "loader/ExternalFiles.h"
#include "loader/LoadMessages.h"
#include "loader/NodeFields.h"
#include "loader/SaveNotes.h"
#include <Orvane/Field.h>
#include <Orvane/Node.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <unordered_set>

namespace Orvane {

namespace {

bool mayNameFiles(const Node& node, const NodePartDesc& desc)
{
    return namesFiles(node, desc) || (desc.name == "url" && desc.dataType == MFSTRING_DT);
}

std::string folderOf(const std::string& path)
{
    return path.substr(0, path.rfind('/') + 1);
}

} // namespace

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
                    told.add(node.type()->name + "." + desc.name + ": " + quoted(address) +
                             " counts from the folder of the new file, which has no such file");
        }
    }
}

} // namespace Orvane
