#pragma once

#include <Orvane/Export.h>
#include <Relayne/URL.h>
#include <string>

namespace Orvane {

/// A readable local file to which an address leads.
struct LocalFile
{
    Relayne::URL url; ///< from which addresses inside the file count
    std::string path; ///< empty when there is no such file
};

/// The file that \a address means when it stands in a file at \a base. Both are taken as they are written,
/// and else as UTF-8: the graph keeps most names as Latin-1, file systems mostly as UTF-8.
ORVANE_API LocalFile findLocalFile(const Relayne::URL& base, const std::string& address);

} // namespace Orvane
