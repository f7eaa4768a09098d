#include "base/Graph.h"
#include "base/LocalFile.h"
#include "base/SceneLoader.h"
#include "base/ValueFields.h"
#include "core/GeoSystem.h"
#include "core/GroupProc.h"
#include "core/LayerSeat.h"
#include "core/SceneFiles.h"
#include "core/UsableValues.h"
#include <Orvane/Context.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFString.h>
#include <Orvane/NodeLink.h>
#include <Orvane/NodeNameSpace.h>
#include <Orvane/NodePath.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFInt32.h>
#include <list>

namespace Orvane {

namespace {

const Part centerPart("center");
const Part child1UrlPart("child1Url");
const Part child2UrlPart("child2Url");
const Part child3UrlPart("child3Url");
const Part child4UrlPart("child4Url");
const Part childrenPart("children");
const Part geoOriginPart("geoOrigin");
const Part levelChangedPart("level_changed");
const Part rangePart("range");
const Part rootNodePart("rootNode");
const Part rootUrlPart("rootUrl");

/// Shows a tile of the earth: to a viewer farther away its root, near by the four finer tiles of its files.
/// What is not shown is not kept.
class GeoLodProc : public GroupProc
{
public:
    using GroupProc::GroupProc;

    void start(double time) override
    {
        GroupProc::start(time);
        _scene.take(node());
        setTicking(true);
    }

    void tick(double time) override
    {
        // What moves the viewer asks for frames; standing by needs none.
        requestFrame(StandByInterval);
        // Where the node stands is known when the groups above have been brought in step.
        if (!std::exchange(_isPlaced, true)) {
            requestFrame();
            return;
        }
        const int level = _scene && isNear(_scene->viewer()) ? 1 : 0;
        if (level != _level)
            show(level, time);
    }

    void fieldChanged(Field& field, double time) override
    {
        if (rootNodePart.is(field) && _level == 0)
            _level = None;
        GroupProc::fieldChanged(field, time);
    }

private:
    static constexpr double StandByInterval = 1.0;
    static constexpr int None = -1;

    bool isNear(const osg::Pnt3f& viewer) const
    {
        osg::Matrix toLocal;
        if (!toWorld().inverse(toLocal))
            return false;
        osg::Pnt3f eye;
        toLocal.multMatrixPnt(viewer, eye);
        const osg::Vec3d center = GeoSystem::of(node()).toScene(centerPart.read<SFVec3d>(node()).value());
        return eye.dist(osg::Pnt3f(osg::Vec3f(center))) < rangePart.read<SFFloat>(node()).value();
    }

    void show(int level, double time)
    {
        const bool isFirst = _level == None;
        _level = level;
        auto& children = childrenPart.edit<MFNode>(node());
        for (int i = static_cast<int>(children.size()); i-- > 0;)
            children.removeNode(time, i, Field::EVENT_CT);
        if (level == 1) {
            for (const Part* part : {&child1UrlPart, &child2UrlPart, &child3UrlPart, &child4UrlPart})
                showFile(children, *part, time);
        } else {
            for (NodeLink& link : rootNodePart.read<MFNode>(node())) {
                if (Node* const root = link.directNode())
                    children.addNode(time, root, Field::EVENT_CT);
            }
            if (children.size() == 0)
                showFile(children, rootUrlPart, time);
        }
        if (!isFirst || level != 0)
            levelChangedPart.edit<SFInt32>(node()).setValue(time, level, Field::EVENT_CT);
    }

    /// Shows the scene in the first file of the addresses; the loader has told when there is none.
    void showFile(MFNode& children, const Part& part, double time)
    {
        const auto& urls = part.read<MFString>(node());
        for (int i = 0; i < static_cast<int>(urls.size()); ++i) {
            const std::string file = localFileOf(node(), urls[i]);
            if (file.empty())
                continue;
            if (isInside(file)) {
                complain(nullptr, "expected tiles in files that do not hold the tile itself, found \"" +
                                      urls[i] + '"');
                return;
            }
            static const Part urlPart("url");
            const NodeRef inlined = createNode(context(), *findType("Inline"), LOADER_NC);
            auto& url = urlPart.edit<MFString>(*inlined);
            url.addValue(file);
            children.addNode(time, inlined.get(), Field::EVENT_CT);
            reloadInline(*inlined);
            return;
        }
    }

    /// True when the node comes from the file, or something above it does.
    bool isInside(const std::string& file) const
    {
        const auto isOf = [&file](const Node* above) {
            const NodeNameSpace* const names = above ? above->nameSpace() : nullptr;
            return names && names->baseURL().isLocalFile() &&
                   findLocalFile(Relayne::URL(), names->baseURL().localFile()).path == file;
        };
        if (isOf(&node()))
            return true;
        std::list<NodeLink*> links;
        NodePath(&node()).nodeLinks(links);
        for (NodeLink* link : links) {
            if (isOf(link->parent()) || isOf(link->directNode()))
                return true;
        }
        return false;
    }

    LayerSeat _scene;
    int _level = None;
    bool _isPlaced = false;
};

const ProcRegistration registration("GeoLOD", makeProc<GeoLodProc>);

} // namespace

} // namespace Orvane
