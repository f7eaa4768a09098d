#include "core/CodeFile.h"

#include "base/ValueOrigin.h"
#include "core/SceneFiles.h"
#include <fstream>
#include <iterator>

namespace Orvane {

namespace {

/// No name of a file is longer.
constexpr std::size_t longestAddress = 4096;

} // namespace

std::string_view withoutLineEnd(std::string_view text)
{
    return text.substr(0, text.find_last_not_of("\r\n") + 1);
}

std::string codeFileOf(const Field& addresses, std::string_view value)
{
    const std::string_view name = withoutLineEnd(value);
    const bool mayBeFile = name.size() < longestAddress && name.find('\n') == std::string_view::npos &&
                           name.substr(0, 5) != "data:";
    return mayBeFile ? localFileOf(valueOrigin(addresses), std::string(name)) : std::string();
}

bool readCodeFile(const std::string& path, unsigned int largestMB, std::string& text, std::string& fault)
{
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    const std::streamoff size = file ? static_cast<std::streamoff>(file.tellg()) : -1;
    if (size < 0 || size > std::streamoff(largestMB) * 1024 * 1024) {
        fault = size < 0 ? "cannot be read" : "is larger than " + std::to_string(largestMB) + " MB";
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

} // namespace Orvane
