#pragma once

#include <Orvane/NodePath.h>
#include <string>
#include <vector>

/// A place of a scene that is found again in the same scene read anew: a way from the root, by fields and
/// positions in them. A value without pointers.
struct ScenePlace
{
    struct Turn
    {
        std::string field;
        int index = 0;
    };
    std::string name; ///< of the node; empty for none
    std::string type;
    std::vector<Turn> way;

    static ScenePlace of(const Orvane::NodePath& path);
    /// The path to the node there, or to one of its name and type that has moved; not valid when there is
    /// none.
    Orvane::NodePath find(Orvane::Node& root) const;
};
