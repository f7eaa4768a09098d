#include "loader/ExternalFiles.h"

#include "base/Graph.h"
#include "base/LocalFile.h"
#include "loader/FileScope.h"
#include <Orvane/MFString.h>
#include <Orvane/Node.h>
#include <Orvane/NodePartDesc.h>
#include <Orvane/NodeType.h>
#include <Relayne/URL.h>
#include <algorithm>

namespace Orvane {

namespace {

bool endsWith(std::string_view text, std::string_view end)
{
    return text.size() >= end.size() && text.substr(text.size() - end.size()) == end;
}

} // namespace

bool holdsContent(std::string_view address)
{
    constexpr std::string_view schemes[] = {"data:", "ecmascript:", "javascript:", "vrmlscript:"};
    const std::size_t begin = address.find_first_not_of(" \t\r\n");
    if (begin == std::string_view::npos)
        return false;
    for (const std::string_view scheme : schemes)
        if (address.substr(begin, scheme.size()) == scheme)
            return true;
    // Code on one line has both of these; names of files do not.
    const bool isCode =
        address.find('(') != std::string_view::npos && address.find('{') != std::string_view::npos;
    return isCode || address.find('\n') != std::string_view::npos;
}

bool namesFiles(const Node& node, const NodePartDesc& desc)
{
    if (desc.dataType != MFSTRING_DT || !(desc.partType & FIELDP))
        return false;
    if (desc.name != "url")
        return endsWith(desc.name, "Url");
    // An inline says itself what it could not read; the others only lead somewhere.
    const std::string& type = node.type()->name;
    return type != "Inline" && type != "Anchor" && type != "GeoMetadata" && type != "DISEntityTypeMapping" &&
           isOfType(*node.type(), "X3DUrlObject");
}

std::vector<std::string> readStrings(const Node& node, unsigned int part)
{
    const auto& field = read<MFString>(node, part);
    std::vector<std::string> strings;
    strings.reserve(field.size());
    for (unsigned int i = 0; i < field.size(); ++i)
        strings.push_back(field[static_cast<int>(i)]);
    return strings;
}

std::string quotedList(const std::vector<std::string>& addresses)
{
    std::string list;
    for (const std::string& address : addresses)
        list += (list.empty() ? "" : ", ") + quoted(address);
    return list;
}

bool leadsToFile(const std::vector<std::string>& addresses, const Relayne::URL& base)
{
    return addresses.empty() ||
           std::any_of(addresses.begin(), addresses.end(), [&base](const std::string& address) {
               return holdsContent(address) || !findLocalFile(base, address).path.empty();
           });
}

std::string missingFileText(const Node& node, const NodePartDesc& desc,
                            const std::vector<std::string>& addresses)
{
    return node.type()->name + "." + desc.name + ": expected a readable local file, found " +
           quotedList(addresses);
}

void checkFiles(const Node& node, FileScope& scope)
{
    const unsigned int count = node.partDescCount();
    for (unsigned int part = 0; part < count; ++part) {
        const NodePartDesc& desc = *readField(node, part)._desc;
        if (!namesFiles(node, desc))
            continue;
        const std::vector<std::string> addresses = readStrings(node, part);
        if (!leadsToFile(addresses, scope.url))
            scope.messages.warn({sourceLine(node), sourceColumn(node)},
                                missingFileText(node, desc, addresses));
    }
}

} // namespace Orvane
