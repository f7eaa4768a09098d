#include "base/LocalFile.h"
#include "base/TextCoding.h"
#include <sys/stat.h>
#include <unistd.h>

namespace Orvane {

namespace {

bool isReadableFile(const std::string& path)
{
    struct stat status = {};
    return !path.empty() && path.find('\0') == std::string::npos && ::stat(path.c_str(), &status) == 0 &&
           S_ISREG(status.st_mode) && ::access(path.c_str(), R_OK) == 0;
}

/// True when the address leads to a file; then \a path is its name.
bool leadsToFile(const Relayne::URL& url, std::string& path)
{
    path = url.localFile();
    return isReadableFile(path);
}

} // namespace

LocalFile findLocalFile(const Relayne::URL& base, const std::string& address)
{
    if (address.empty())
        return {};
    LocalFile file{base.resolved(Relayne::URL(address)), {}};
    if (leadsToFile(file.url, file.path))
        return file;
    // Percent escapes may stand for Latin-1.
    const std::string unescaped = coding::toFile(file.path);
    // Each by itself: a folder may be written in one form and the name in the other.
    file.url = Relayne::URL(coding::toFile(base.toString())).resolved(Relayne::URL(coding::toFile(address)));
    if (leadsToFile(file.url, file.path))
        return file;
    if (isReadableFile(unescaped))
        return {Relayne::URL::fromLocalFile(unescaped), unescaped};
    return {};
}

} // namespace Orvane
