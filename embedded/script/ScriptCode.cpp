#include "script/ScriptCode.h"

#include "base/LocalFile.h"
#include "base/TextCoding.h"
#include "base/ValueOrigin.h"
#include "core/Part.h"
#include "core/SceneFiles.h"
#include <Orvane/MFString.h>
#include <Orvane/NodeNameSpace.h>
#include <algorithm>
#include <cctype>
#include <fstream>
#include <iterator>
#include <string_view>

namespace Orvane {

namespace {

const Part urlPart("url");

/// A file of code is no larger.
constexpr std::streamoff largestFile = std::streamoff(16) * 1024 * 1024;

bool beginsWith(std::string_view text, std::string_view beginning)
{
    return text.size() >= beginning.size() &&
           std::equal(beginning.begin(), beginning.end(), text.begin(),
                      [](char a, char b) { return a == std::tolower(static_cast<unsigned char>(b)); });
}

std::string_view withoutBlanks(std::string_view text)
{
    const std::size_t begin = text.find_first_not_of(" \t\r\n");
    return begin == std::string_view::npos ? std::string_view() : text.substr(begin);
}

/// Editors end the last line, that of a file's name too.
std::string_view withoutLineEnd(std::string_view text)
{
    return text.substr(0, text.find_last_not_of("\r\n") + 1);
}

/// Line ends in front of the code, so that its lines are numbered from the first of the whole text.
std::string lineEnds(std::string_view text)
{
    return std::string(static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n')), '\n');
}

/// The code in a value of the url; false when it holds none.
bool takeInline(std::string_view value, std::string& code)
{
    const std::string_view text = withoutBlanks(value);
    const std::string lines = lineEnds(value.substr(0, value.size() - text.size()));
    for (const std::string_view scheme : {"ecmascript:", "javascript:", "vrmlscript:"})
        if (beginsWith(text, scheme)) {
            code = lines + std::string(text.substr(scheme.size()));
            return true;
        }
    if (beginsWith(text, "data:")) {
        std::string mimeType;
        std::vector<std::uint8_t> data;
        if (!readDataAddress(std::string(text), mimeType, data) ||
            mimeType.find("script") == std::string::npos)
            return false;
        code.assign(data.begin(), data.end());
        return true;
    }
    if (withoutLineEnd(value).find('\n') == std::string_view::npos)
        return false;
    code = value;
    return true;
}

bool readFile(const std::string& path, std::string& text, std::string& fault)
{
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const std::streamoff size = file ? static_cast<std::streamoff>(file.tellg()) : -1;
    if (size < 0 || size > largestFile) {
        fault = size < 0 ? "cannot be read" : "is larger than 16 MB";
        return false;
    }
    file.seekg(0);
    text.assign(std::istreambuf_iterator<char>(file), {});
    constexpr std::string_view mark = "\xEF\xBB\xBF";
    if (text.compare(0, mark.size(), mark) == 0)
        text.erase(0, mark.size());
    if (text.find('\0') != std::string::npos) {
        fault = "is no text";
        return false;
    }
    return true;
}

} // namespace

ScriptCode findScriptCode(const Node& script)
{
    ScriptCode code;
    const MFString& url = urlPart.read<MFString>(script);
    if (url.size() == 0)
        return code;
    const Node& origin = valueOrigin(url);
    const Relayne::URL base = origin.nameSpace() ? origin.nameSpace()->baseURL() : Relayne::URL();
    for (unsigned int i = 0; i < url.size(); ++i) {
        const std::string& value = url[static_cast<int>(i)];
        if (takeInline(value, code.text)) {
            code.isFound = true;
            break;
        }
        const LocalFile file = findLocalFile(base, std::string(withoutLineEnd(value)));
        std::string reason = "is no readable local file";
        if (!file.path.empty() && readFile(file.path, code.text, reason)) {
            // What a file says in front of its code is none.
            const std::string whole = code.text;
            if (!takeInline(whole, code.text))
                code.text = whole;
            code.file = file.path;
            code.isFound = true;
            break;
        }
        if (value.find('\n') != std::string::npos) {
            code.text = value; // a line of code alone
            code.isFound = true;
            break;
        }
        code.fault += (code.fault.empty() ? "" : ", ") + ("\"" + value + "\" ") + reason;
    }
    return code;
}

} // namespace Orvane
