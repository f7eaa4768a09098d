#pragma once

#include <Orvane/Route.h>
#include <vector>

namespace Orvane {
class EventOutSlot;
class Field;
class Node;
} // namespace Orvane

/// All that it takes to make a route again: its ends and type, and the routes that stood behind it at its
/// source, since routes are written in this order. It holds numbers, no pointers.
class RouteRecord
{
public:
    /// Numbers of the two ends.
    struct Ends
    {
        unsigned long long fromNode;
        unsigned int fromField;
        unsigned long long toNode;
        unsigned int toField;
    };

    RouteRecord(const Ends& ends, Orvane::Route::Type type);
    /// Of a living route.
    explicit RouteRecord(const Orvane::Route& route);

    const Ends& ends() const { return _ends; }

    /// Makes the route, at its place if it had one. False when there cannot be such a route.
    bool make() const;
    /// Ends the route, and takes down its place. False when it is not there.
    bool end();

    /// The routes from and to the fields of a node, without those of prototypes.
    static std::vector<Orvane::Route*> routesOf(const Orvane::Node& node);
    static std::vector<Orvane::Route*> routesOf(const Orvane::Field& field);

private:
    struct Behind
    {
        Ends ends;
        Orvane::Route::Type type;
    };

    static Ends endsOf(const Orvane::Route& route);
    static Orvane::Route* find(const Ends& ends);
    static bool create(const Ends& ends, Orvane::Route::Type type);

    Ends _ends;
    Orvane::Route::Type _type;
    std::vector<Behind> _behind;
};
