#include "script/ScriptCode.h"

#include "core/CodeFile.h"
#include "core/Part.h"
#include "core/SceneFiles.h"
#include <Orvane/MFString.h>
#include <algorithm>
#include <cctype>
#include <string_view>

namespace Orvane {

namespace {

const Part urlPart("url");

/// A file of code is no larger.
constexpr unsigned int largestFileMB = 16;

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

/// True for a line that says more than a name does.
bool isLineOfCode(std::string_view value)
{
    return value.find('\n') != std::string_view::npos &&
           value.find_first_of("(;{=") != std::string_view::npos;
}

} // namespace

ScriptCode findScriptCode(const Node& script)
{
    ScriptCode code;
    const MFString& url = urlPart.read<MFString>(script);
    if (url.size() == 0)
        return code;
    for (unsigned int i = 0; i < url.size(); ++i) {
        const std::string& value = url[static_cast<int>(i)];
        if (takeInline(value, code.text)) {
            code.isFound = true;
            break;
        }
        const std::string file = codeFileOf(url, value);
        std::string reason = "is no readable local file";
        if (!file.empty() && readCodeFile(file, largestFileMB, code.text, reason)) {
            // What a file says in front of its code is none.
            const std::string whole = code.text;
            if (!takeInline(whole, code.text))
                code.text = whole;
            code.file = file;
            code.isFound = true;
            break;
        }
        if (isLineOfCode(value)) {
            code.text = value;
            code.isFound = true;
            break;
        }
        code.fault +=
            (code.fault.empty() ? "" : ", ") + ("\"" + std::string(withoutLineEnd(value)) + "\" ") + reason;
    }
    return code;
}

} // namespace Orvane
