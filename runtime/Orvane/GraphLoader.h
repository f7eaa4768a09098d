#pragma once

#include <Orvane/Export.h>
#include <list>
#include <string>

namespace Orvane {

/// The file formats that the runtime reads and writes.
class ORVANE_API GraphLoader
{
public:
    /// How the name of a format is written.
    enum FormatStyle : int {
        PLAIN_FS = 0, ///< "X3D XML"
        FILTER_FS = 1 ///< "X3D XML (*.x3d *.x3dz)", as file dialogs take it
    };

    /// Appends the formats and gives their number.
    static int getFormatList(std::list<std::string>& formats, FormatStyle style);
    /// Appends the file suffixes without dot and gives their number.
    static int getSuffixList(std::list<std::string>& suffixes);
};

} // namespace Orvane
