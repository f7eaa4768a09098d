#include "base/SceneLoader.h"
#include "core/GroupProc.h"
#include "core/SceneState.h"
#include <OpenSG/OSGSwitch.h>
#include <Orvane/MFNode.h>
#include <Orvane/NodeType.h>
#include <Orvane/SFInt32.h>

namespace Orvane {

namespace {

const Part loadPart("load");
const Part shapePart("shape");
const Part urlPart("url");
const Part whichChoicePart("whichChoice");

/// Shows the child that `whichChoice` names.
class SwitchProc : public GroupProc
{
public:
    explicit SwitchProc(Node& node)
        : GroupProc(node, osg::Switch::create())
        , _switch(osg::SwitchPtr::dcast(tree()->getCore()))
    {
    }

    void update() override
    {
        GroupProc::update();
        choose();
    }

protected:
    void contentChanged() override { choose(); }

private:
    void choose()
    {
        const int choice = whichChoicePart.read<SFInt32>(node()).value();
        const int place = choice >= 0 ? shownPlace(static_cast<std::size_t>(choice)) : -1;
        const osg::Int32 wanted = place >= 0 ? place : osg::Int32(osg::Switch::NONE);
        if (_switch->getChoice() == wanted)
            return;
        _switch->setChoice(wanted);
        SceneState::askForGlobalLights(node());
    }

    osg::SwitchPtr _switch; ///< the core of the tree's root
};

/// Shows what was loaded from its address: the loader keeps that in parts that the user does not see.
class InlineProc : public GroupProc
{
public:
    using GroupProc::GroupProc;

    void fieldChanged(Field& field, double time) override
    {
        if (loadPart.is(field) || urlPart.is(field))
            reloadInline(node());
        else
            GroupProc::fieldChanged(field, time);
    }

protected:
    void collectChildren(std::vector<Node*>& nodes) const override
    {
        for (unsigned int part = partCount(*node().type()); part < node().partDescCount(); ++part) {
            const Field& field = readField(node(), part);
            if (field.dataType() != MFNODE_DT || !field._desc->privateAccess())
                continue;
            for (NodeLink& link : static_cast<const MFNode&>(field))
                nodes.push_back(link.node());
        }
    }
};

/// Shows the one shape, or group of shapes, that makes up a face of a part.
class FaceProc : public GroupProc
{
public:
    using GroupProc::GroupProc;

protected:
    void collectChildren(std::vector<Node*>& nodes) const override
    {
        nodes.push_back(shapePart.readNode(node()));
    }
};

const ProcRegistration assembly("CADAssembly", makeProc<GroupProc>);
const ProcRegistration cadLayer("CADLayer", makeProc<GroupProc>);
const ProcRegistration face("CADFace", makeProc<FaceProc>);
const ProcRegistration group("Group", makeProc<GroupProc>);
const ProcRegistration inlined("Inline", makeProc<InlineProc>);
const ProcRegistration staticGroup("StaticGroup", makeProc<GroupProc>);
const ProcRegistration switched("Switch", makeProc<SwitchProc>);

} // namespace

} // namespace Orvane
