#pragma once

#include "physics/ContactSurface.h"
#include "physics/Dynamics.h"
#include <cstddef>
#include <vector>

namespace Orvane {

/// Two solids that meet, by the indices of their geoms, and where.
struct FoundContact
{
    std::size_t first;
    std::size_t second;
    dxBody* firstBody; ///< null for what stands by itself
    dxBody* secondBody;
    ContactPoint point;
};

/// Finds the places where the solids of a collection meet. Operations may throw `DynamicsFault`.
class ContactFinder
{
public:
    ContactFinder();

    dxSpace* handle() const { return _space.get(); }

    /// Where solids meet, in an order that depends on nothing but what was done before. Solids of one body do
    /// not meet, nor do bodies that a joint holds together. Unless \a resting is true, what rests or stands
    /// does not meet others of that kind. The list is valid until the next call.
    const std::vector<FoundContact>& find(bool resting);

private:
    struct Search;

    static void meet(void* search, dxGeom* first, dxGeom* second);

    std::vector<FoundContact> _found;
    Dynamics::Space _space;
};

} // namespace Orvane
