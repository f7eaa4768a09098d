#pragma once

#include "base/Proc.h"
#include "core/Use.h"
#include <OpenSG/OSGNode.h>
#include <Orvane/Export.h>
#include <string>
#include <vector>

namespace Orvane {

/// A behaviour that takes part in what is drawn, and on which others build: a material, a geometry, a group.
/// It tells its users when it changes; they bring themselves in step with it.
class ORVANE_API ElementProc : public Proc
{
public:
    explicit ElementProc(Node& node);
    ~ElementProc() override;

    void start(double time) override;
    void fieldChanged(Field& field, double time) override;
    void childrenChanged(Field& field) override;

    /// Root of what the element shows by itself, the same object for its life; null when it shows nothing. It
    /// has a parent while it stands in the first place where the element is used.
    virtual osg::NodePtr tree() const { return osg::NullFC; }

    /// First of the uses of this element, the newest one in front; null when nobody uses it.
    Use* uses() const { return _uses; }

protected:
    friend class Use;

    /// Tells all users that the element has changed.
    void changed();
    /// An element that this behaviour uses has changed. By default asks for an update.
    virtual void elementChanged(ElementProc& element);
    /// An element has died, and its uses by this behaviour are empty already. Nothing of it may be called. By
    /// default asks for an update.
    virtual void elementGone();

    /// Says that a field is at fault, once in the node's life: "Sphere.radius: " and the text. \a part is
    /// null when the fault is not that of one field.
    void complain(const char* part, const std::string& text);

private:
    // These fill what the base leaves of its last word.
    bool _complained = false;
    bool _telling = false;
    Use* _uses = nullptr;
};

/// A part of a picture that is described in one go by its user: what changes in it is handed up, and it has
/// nothing to bring in step itself.
class ORVANE_API DescriptionProc : public ElementProc
{
public:
    using ElementProc::ElementProc;

    void start(double time) override;
    void fieldChanged(Field& field, double time) override;
    void childrenChanged(Field& field) override;

protected:
    void elementChanged(ElementProc& element) override;
    void elementGone() override;
};

/// The node that stands for \a node in the picture: for an instance of a prototype the first node of its
/// body, else itself. Null when there is none.
ORVANE_API Node* resolved(Node* node);

/// Appends \a node and the nodes that stand for it, down to the one that `resolved` gives.
ORVANE_API void appendResolved(Node* node, std::vector<Node*>& chain);

/// The behaviour that stands for \a node in the picture as an \a E, or null.
template <class E = ElementProc>
E* elementOf(Node* node)
{
    return procAs<E>(resolved(node));
}

} // namespace Orvane
