#pragma once

#include <Orvane/Export.h>
#include <cstddef>
#include <string>

namespace Orvane {

/// Counts what was wrong with the fields of a geometry, for one message about all of it.
class ORVANE_API MeshFaults
{
public:
    enum Kind {
        INDEX_OUT_OF_RANGE,    ///< a face or line names a point that does not exist
        TOO_FEW_CORNERS,       ///< a face of less than three points, a line of less than two
        NOT_FINITE,            ///< a point that is no place in space
        ATTRIBUTE_OUT_OF_RANGE ///< a corner names a normal, colour or texture coordinate that does not exist
    };

    /// \a listName is the field that lists the points of faces and lines; it must outlive the object.
    explicit MeshFaults(const char* listName = "coordIndex")
        : _listName(listName)
    {
    }

    /// Notes a fault at \a place, an index into the list that \a kind tells of.
    void add(Kind kind, std::size_t place)
    {
        if (_entries[kind].count++ == 0)
            _entries[kind].first = place;
    }

    bool isEmpty() const
    {
        for (const Entry& entry : _entries) {
            if (entry.count > 0)
                return false;
        }
        return true;
    }

    /// What was found in the fields, in one line.
    std::string text() const;

private:
    struct Entry
    {
        std::size_t count = 0;
        std::size_t first = 0;
    };

    const char* _listName;
    Entry _entries[4];
};

} // namespace Orvane
