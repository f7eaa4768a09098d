#pragma once

#include "core/ElementProc.h"
#include "core/LayerWatcher.h"
#include "core/Part.h"
#include <OpenSG/OSGNode.h>
#include <OpenSG/OSGRefPtr.h>
#include <Orvane/Export.h>
#include <cstdint>
#include <memory>
#include <vector>

namespace Orvane {

class PointingSensorProc;
class SceneState;
class ScopedProc;

/// Behaviour of a node that shows its children together, and base of all that do more with them. An edit of
/// the list of children touches only what it changed.
class ORVANE_API GroupProc : public ElementProc
{
public:
    explicit GroupProc(Node& node);
    /// A group that is of another kind for OpenSG too.
    GroupProc(Node& node, const osg::NodeCorePtr& core);
    ~GroupProc() override;

    void fieldChanged(Field& field, double time) override;
    void childrenChanged(Field& field) override;
    void update() override;

    osg::NodePtr tree() const override { return _tree; }
    /// The matrix from the system of the children to the world, by the first place where the group is used.
    osg::Matrix toWorld() const { return _tree->getToWorld(); }
    /// Multiplies a matrix by that from the system of the children to the system of the group itself.
    void accumulate(osg::Matrix& matrix) const { _tree->getCore()->accumulateMatrix(matrix); }

    /// The child below which \a shown stands, a node right below the group's content in OpenSG's graph; null
    /// when there is none.
    virtual Node* childOf(const osg::NodePtr& shown) const;

    /// Adds the sensors among the children, which sense the pointer over all of them.
    void collectSensors(std::vector<PointingSensorProc*>& sensors) const;
    /// Adds those children that are drawn at present, in order.
    void collectShown(std::vector<ElementProc*>& shown) const;

protected:
    void elementChanged(ElementProc& element) override;
    void elementGone() override;

    /// Fills \a nodes with the nodes that are shown, in order.
    virtual void collectChildren(std::vector<Node*>& nodes) const;
    /// Adds the lights and the like, other than those of the children, that act on the content.
    virtual void collectLights(std::vector<osg::NodeCorePtr>& lights) const;
    /// The list of what is shown has changed.
    virtual void contentChanged() {}

    /// Has the lights of the content looked at in the next update.
    void askForLights();
    /// Place in OpenSG's graph of the child at \a index; -1 when it shows nothing.
    int shownPlace(std::size_t index) const;

private:
    /// A child that is not drawn: a light or the like, or a sensor for the pointer.
    struct Unseen
    {
        ScopedProc* scoped;                 ///< null for a sensor
        osg::RefPtr<osg::NodeCorePtr> core; ///< what acts here for the node
    };

    /// One element of the list of children.
    struct Entry
    {
        Node* node = nullptr;            ///< only compared: it may have died
        Use use;                         ///< empty when the node shows nothing and shines on nothing
        osg::RefPtr<osg::NodePtr> shown; ///< the element's tree, or what refers to it; null when it has none
        std::unique_ptr<Unseen> unseen;  ///< null for other nodes
    };

    void syncChildren();
    void syncLights();
    void hangBelow(const std::vector<osg::NodeCorePtr>& lights);
    void removeEntries(std::size_t first, std::size_t last);
    Entry makeEntry(Node* node, std::size_t place);
    std::size_t shownBefore(std::size_t index) const;
    osg::NodePtr show(const osg::NodePtr& tree, std::size_t place);
    bool isUpToDate(const Entry& entry, Node* node) const;

    /// What a group has that holds lights.
    struct Lighting : LayerWatcher
    {
        explicit Lighting(GroupProc& owner)
            : group(owner)
        {
        }
        void nodesMoved() override;

        GroupProc& group;
        osg::RefPtr<osg::NodePtr> content; ///< below the lights; null when all of them are global
        /// What the global ones light up: the layers where the group stands. Empty when there were none.
        std::vector<std::shared_ptr<SceneState>> layers;
    };

    /// Parent of what the children show: the tree's root, or below lights.
    const osg::NodePtr& content() const;
    Lighting& lighting();

    osg::RefPtr<osg::NodePtr> _tree;
    std::vector<Entry> _entries;
    std::unique_ptr<Lighting> _lighting;
    std::uint32_t _sensorCount = 0; ///< children that are sensors
    bool _childrenChanged = true;
    bool _lightsChanged = false;
};

/// The group in which an element stands, by the first place where it is used; null when it stands in none.
ORVANE_API GroupProc* groupOf(const ElementProc& element);

} // namespace Orvane
