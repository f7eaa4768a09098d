#include "core/SceneFiles.h"
#include "base/LocalFile.h"
#include <Orvane/Field.h>
#include <Orvane/MFString.h>
#include <Orvane/Node.h>
#include <Orvane/NodeLink.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePath.h>
#include <Relayne/URL.h>
#include <array>
#include <list>

namespace Orvane {

namespace {

/// The name space whose file names the node: its own, else that of the nearest node above that has one.
const NodeNameSpace* nameSpaceOf(const Node& node)
{
    if (node.nameSpace())
        return node.nameSpace();
    std::list<NodeLink*> links;
    NodePath(const_cast<Node*>(&node)).nodeLinks(links);
    for (const NodeLink* link : links) {
        const Node* const parent = link->parent();
        if (parent && parent->nameSpace())
            return parent->nameSpace();
    }
    return nullptr;
}

int hexValue(char c)
{
    if (c >= '0' && c <= '9')
        return c - '0';
    if (c >= 'a' && c <= 'f')
        return c - 'a' + 10;
    return c >= 'A' && c <= 'F' ? c - 'A' + 10 : -1;
}

std::string unescaped(const std::string& text)
{
    std::string result;
    result.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int high = text[i] == '%' && i + 2 < text.size() ? hexValue(text[i + 1]) : -1;
        const int low = high >= 0 ? hexValue(text[i + 2]) : -1;
        if (low >= 0) {
            result.push_back(static_cast<char>(high * 16 + low));
            i += 2;
        } else
            result.push_back(text[i]);
    }
    return result;
}

bool decodeBase64(const std::string& text, std::vector<std::uint8_t>& data)
{
    static constexpr char Digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    static const std::array<std::int8_t, 256> Values = [] {
        std::array<std::int8_t, 256> values;
        values.fill(-1);
        for (int i = 0; i < 64; ++i)
            values[static_cast<unsigned char>(Digits[i])] = static_cast<std::int8_t>(i);
        return values;
    }();
    data.reserve(text.size() / 4 * 3);
    unsigned int bits = 0;
    int count = 0;
    for (const char c : text) {
        if (c == '=')
            break;
        if (c == ' ' || c == '\n' || c == '\r' || c == '\t')
            continue;
        const int value = Values[static_cast<unsigned char>(c)];
        if (value < 0)
            return false;
        bits = (bits << 6 | static_cast<unsigned int>(value)) & 0xFFFFFF;
        count += 6;
        if (count >= 8) {
            count -= 8;
            data.push_back(static_cast<std::uint8_t>(bits >> count));
        }
    }
    return true;
}

} // namespace

std::string localFileOf(const Node& node, const std::string& address)
{
    const NodeNameSpace* const names = nameSpaceOf(node);
    return findLocalFile(names ? names->baseURL() : Relayne::URL(), address).path;
}

bool readDataAddress(const std::string& address, std::string& mimeType, std::vector<std::uint8_t>& data)
{
    data.clear();
    mimeType.clear();
    if (address.compare(0, 5, "data:") != 0)
        return false;
    const std::size_t comma = address.find(',');
    if (comma == std::string::npos)
        return false;
    const std::string head = address.substr(5, comma - 5);
    const std::string body = unescaped(address.substr(comma + 1));
    mimeType = head.substr(0, head.find(';'));
    static const std::string Base64 = ";base64";
    if (head.size() >= Base64.size() && head.compare(head.size() - Base64.size(), Base64.size(), Base64) == 0)
        return decodeBase64(body, data);
    data.assign(body.begin(), body.end());
    return true;
}

std::string quotedAddresses(const MFString& urls)
{
    constexpr std::size_t MaxLength = 80;
    std::string text;
    for (int i = 0; i < static_cast<int>(urls.size()); ++i) {
        const std::string& address = urls[i];
        text += i > 0 ? ", \"" : "\"";
        text += address.size() <= MaxLength ? address : address.substr(0, MaxLength) + "...";
        text += '"';
    }
    return text;
}

} // namespace Orvane
