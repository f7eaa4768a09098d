#include "physics/ContactFinder.h"
#include "physics/CollisionGeom.h"
#include "physics/SimulatedBody.h"
#include <cmath>
#include <ode/ode.h>

namespace Orvane {

namespace {

constexpr int MostContactsOfPair = 8;
constexpr std::size_t MostContacts = 100000;

const SimulatedBody* bodyOf(dxBody* body)
{
    return body ? static_cast<const SimulatedBody*>(dBodyGetData(body)) : nullptr;
}

bool isAwake(dxBody* body)
{
    const SimulatedBody* const simulated = bodyOf(body);
    return simulated && simulated->isAwake();
}

bool isSound(const dContactGeom& contact)
{
    const double length = std::hypot(contact.normal[0], contact.normal[1], contact.normal[2]);
    return std::abs(length - 1.0) < 1e-3 && std::isfinite(contact.depth) && std::isfinite(contact.pos[0]) &&
           std::isfinite(contact.pos[1]) && std::isfinite(contact.pos[2]);
}

/// The contacts of two solids. The pair is passed over when the engine cannot make sense of them, which
/// leaves the engine as it was.
int contactsOf(dxGeom* first, dxGeom* second, dContactGeom (&contacts)[MostContactsOfPair])
{
    try {
        return dCollide(first, second, MostContactsOfPair, contacts, sizeof(dContactGeom));
    } catch (const DynamicsFault&) {
        return 0;
    }
}

} // namespace

struct ContactFinder::Search
{
    std::vector<FoundContact>& found;
    bool resting;
};

ContactFinder::ContactFinder()
    : _space(dHashSpaceCreate(nullptr))
{
    dSpaceSetCleanup(_space.get(), 0);
    dHashSpaceSetLevels(_space.get(), -3, 12);
}

const std::vector<FoundContact>& ContactFinder::find(bool resting)
{
    _found.clear();
    Search search{_found, resting};
    dSpaceCollide(_space.get(), &search, &ContactFinder::meet);
    return _found;
}

void ContactFinder::meet(void* data, dxGeom* first, dxGeom* second)
{
    Search& search = *static_cast<Search*>(data);
    dxBody* const a = dGeomGetBody(first);
    dxBody* const b = dGeomGetBody(second);
    if ((a && a == b) || search.found.size() >= MostContacts)
        return;
    if (!search.resting && !isAwake(a) && !isAwake(b))
        return;
    if (a && b && dAreConnectedExcluding(a, b, dJointTypeContact))
        return;
    dContactGeom contacts[MostContactsOfPair];
    const int count = contactsOf(first, second, contacts);
    for (int i = 0; i < count; ++i) {
        const dContactGeom& contact = contacts[i];
        if (!isSound(contact))
            continue;
        // The engine may have changed the places of the two.
        const bool swapped = contact.g1 == second;
        const double sign = swapped ? -1.0 : 1.0;
        FoundContact found{static_cast<const CollisionGeom*>(dGeomGetData(first))->index(),
                           static_cast<const CollisionGeom*>(dGeomGetData(second))->index(),
                           a,
                           b,
                           {}};
        found.point.position = osg::Vec3d(contact.pos[0], contact.pos[1], contact.pos[2]);
        found.point.normal = osg::Vec3d(contact.normal[0], contact.normal[1], contact.normal[2]) * sign;
        found.point.depth = contact.depth;
        search.found.push_back(found);
    }
}

} // namespace Orvane
