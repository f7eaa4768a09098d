#pragma once

#include <Orvane/Export.h>
#include <memory>
#include <string>
#include <vector>

namespace Orvane {

class Node;

/// A scene that is to stand in another file. Relative addresses count from the file, so that in another
/// folder those of pictures, scripts and inlined files lead elsewhere or nowhere unless they are rewritten.
/// Nothing is told of addresses that are: what they lead to is the same as before. It may outlive the scene.
class ORVANE_API SceneMove
{
public:
    /// Looks for the addresses in the scene below \a root, its prototypes included, that do not lead to the
    /// same files from the file at \a path. Changes nothing.
    SceneMove(Node& root, const std::string& path);
    SceneMove(const SceneMove&) = delete;
    SceneMove& operator=(const SceneMove&) = delete;
    ~SceneMove();

    /// These addresses, each once, as they stand in the scene.
    const std::vector<std::string>& addresses() const;
    /// The nodes of the scene that have some.
    std::vector<Node*> nodes() const;

    /// The scene stands in the new file from now on. With \a rewrites these addresses lead where they did.
    void make(bool rewrites);
    /// The scene stands where it stood. Addresses that have been given other values since keep them.
    void takeBack();

private:
    struct Data;
    std::unique_ptr<Data> _data;
};

} // namespace Orvane
