#include "core/ShaderCode.h"
#include "base/ValueText.h"
#include "core/CodeFile.h"
#include "core/SceneFiles.h"
#include <Orvane/MFString.h>
#include <Orvane/Node.h>
#include <Orvane/SFString.h>
#include <vector>

namespace Orvane {

namespace {

/// No compiler is made for more.
constexpr unsigned int largestTextMB = 1;

/// True when the value of an address list is code, which then is in \a text.
bool takeInline(const std::string& value, std::string& text, std::string& fault)
{
    const std::size_t begin = value.find_first_not_of(" \t\r\n");
    if (begin != std::string::npos && value.compare(begin, 5, "data:") == 0) {
        std::string mimeType;
        std::vector<std::uint8_t> data;
        if (!readDataAddress(value.substr(begin), mimeType, data)) {
            fault = "holds no sound data";
            return false;
        }
        text.assign(data.begin(), data.end());
    } else if (value.find_first_of("\n{;#") != std::string::npos) {
        text = value;
    } else {
        fault = "is neither a readable local file nor GLSL";
        return false;
    }
    if (text.size() > std::size_t(largestTextMB) * 1024 * 1024)
        fault = "is larger than 1 MB";
    else if (text.find('\0') != std::string::npos)
        fault = "is no text";
    else
        return true;
    return false;
}

std::string shortened(const std::string& value)
{
    constexpr std::size_t longest = 60;
    const std::string line = value.substr(0, value.find_first_of("\r\n"));
    return line.size() <= longest && line.size() == value.size() ? line : line.substr(0, longest) + "...";
}

/// The values of a list. A node of an unknown type has it as it was written, when its file does not say what
/// it is.
std::vector<std::string> valuesOf(const Field& addresses)
{
    std::vector<std::string> values;
    if (const auto* list = dynamic_cast<const MFString*>(&addresses)) {
        for (int i = 0; i < static_cast<int>(list->size()); ++i)
            values.push_back((*list)[i]);
        return values;
    }
    const std::string& written = static_cast<const SFString&>(addresses).value();
    const std::size_t begin = written.find_first_not_of(" \t\r\n");
    if (begin == std::string::npos)
        return values;
    if (written[begin] != '[' && written[begin] != '"')
        return {written};
    text::Reader reader(written);
    reader.openList();
    std::string value;
    while (!reader.atEnd() && reader.read(value))
        values.push_back(value);
    return values;
}

} // namespace

Field* shaderCodeField(const Node& node)
{
    auto* const url = dynamic_cast<MFString*>(node.findField("url", Node::EXACT_FSO));
    if (url && url->size() > 0)
        return url;
    Field* const shaderUrl = node.findField("shaderUrl", Node::EXACT_FSO);
    const bool isList =
        shaderUrl && (shaderUrl->dataType() == MFSTRING_DT || shaderUrl->dataType() == SFSTRING_DT);
    return isList ? shaderUrl : url;
}

ShaderCode findShaderCode(Field& addresses)
{
    ShaderCode code;
    for (const std::string& written : valuesOf(addresses)) {
        const std::string value(withoutLineEnd(written));
        std::string fault;
        const std::string file = codeFileOf(addresses, value);
        if (file.empty() ? takeInline(value, code.text, fault)
                         : readCodeFile(file, largestTextMB, code.text, fault)) {
            code.file = file;
            code.isFound = true;
            code.fault.clear();
            return code;
        }
        code.fault += (code.fault.empty() ? "\"" : ", \"") + shortened(value) + "\" " + fault;
    }
    code.text.clear();
    return code;
}

} // namespace Orvane
