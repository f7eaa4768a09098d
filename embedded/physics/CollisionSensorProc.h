#pragma once

#include "base/NodeRef.h"
#include "core/ElementProc.h"
#include <vector>

namespace Orvane {

class CollisionCollectionProc;
struct Meeting;

/// Behaviour of a `CollisionSensor`: tells which collidables meet, and where.
class CollisionSensorProc : public ElementProc
{
public:
    using ElementProc::ElementProc;

    void fieldChanged(Field& field, double time) override;
    void childrenChanged(Field& field) override;
    void update() override;

    bool isEnabled() const;
    /// What meets in this frame.
    void report(const CollisionCollectionProc& collider, const std::vector<Meeting>& meetings, double time);

protected:
    void elementChanged(ElementProc&) override {}

private:
    void setActive(bool active, double time);
    void sendIntersections(const std::vector<Meeting>& meetings, double time);
    void sendContacts(const CollisionCollectionProc& collider, const std::vector<Meeting>& meetings,
                      double time);
    NodeRef makeContact(const CollisionCollectionProc& collider, const Meeting& meeting, std::size_t point);

    Use _collider;
};

} // namespace Orvane
