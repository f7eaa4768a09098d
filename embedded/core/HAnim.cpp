#include "base/ValueFields.h"
#include "core/ComposedMeshProc.h"
#include "core/HAnimMotionProc.h"
#include "core/TransformProc.h"
#include "core/UsableValues.h"
#include "core/VectorListProc.h"
#include <Orvane/Context.h>
#include <Orvane/MFBool.h>
#include <Orvane/MFFloat.h>
#include <Orvane/MFInt32.h>
#include <Orvane/MFNode.h>
#include <Orvane/MFVec3f.h>
#include <Orvane/SFFloat.h>
#include <Orvane/SFString.h>
#include <algorithm>
#include <string>
#include <unordered_map>

namespace Orvane {

namespace {

const Part coordIndexPart("coordIndex");
const Part coordPart("coord");
const Part displacementsPart("displacements");
const Part displacersPart("displacers");
const Part jointsPart("joints");
const Part motionsEnabledPart("motionsEnabled");
const Part motionsPart("motions");
const Part namePart("name");
const Part rotationPart("rotation");
const Part skeletonPart("skeleton");
const Part skinBindingCoordsPart("skinBindingCoords");
const Part skinBindingNormalsPart("skinBindingNormals");
const Part skinCoordIndexPart("skinCoordIndex");
const Part skinCoordPart("skinCoord");
const Part skinCoordWeightPart("skinCoordWeight");
const Part skinNormalPart("skinNormal");
const Part skinPart("skin");
const Part translationPart("translation");
const Part vectorPart("vector");
const Part viewpointsPart("viewpoints");
const Part weightPart("weight");

using Vectors = std::vector<osg::Vec3f>;

/// Behaviour of an `HAnimDisplacer`: moves points of a mesh to where they lie when it has its full weight.
class DisplacerProc : public DescriptionProc
{
public:
    using DescriptionProc::DescriptionProc;

    void displace(Vectors& points)
    {
        const float weight = usableNumber(weightPart.read<SFFloat>(node()).value(), 0.0F);
        const std::vector<int>& indices = coordIndexPart.read<MFInt32>(node()).values();
        const Vectors& moves = displacementsPart.read<MFVec3f>(node()).values();
        const std::size_t count = std::min(indices.size(), moves.size());
        for (std::size_t i = 0; weight != 0.0F && i < count; ++i) {
            const auto index = static_cast<std::size_t>(indices[i]);
            if (index < points.size())
                points[index] += usableVector(moves[i]) * weight;
            else
                complain("coordIndex", "expected indices of points, found " + std::to_string(indices[i]));
        }
    }
};

/// The displacers that a joint or a segment has, tied to it so that it follows them.
class Displacers
{
public:
    void sync(ElementProc& user)
    {
        const auto& nodes = displacersPart.read<MFNode>(user.node());
        _uses.resize(nodes.size());
        std::size_t i = 0;
        for (NodeLink& link : nodes)
            _uses[i++].set(user, elementOf<DisplacerProc>(link.node()));
    }
    bool isEmpty() const { return _uses.empty(); }
    void displace(Vectors& points) const
    {
        for (const Use& use : _uses) {
            if (auto* const displacer = dynamic_cast<DisplacerProc*>(use.element()))
                displacer->displace(points);
        }
    }

private:
    std::vector<Use> _uses;
};

/// Behaviour of an `HAnimJoint`: a transform that pulls at points of the skin.
class JointProc : public TransformProc
{
public:
    using TransformProc::TransformProc;

    void update() override
    {
        _displacers.sync(*this);
        TransformProc::update();
        changed();
    }

    void displace(Vectors& points) const { _displacers.displace(points); }
    bool pulls() const
    {
        return !_displacers.isEmpty() || skinCoordIndexPart.read<MFInt32>(node()).size() > 0;
    }

    /// The matrix of the joint by its fields.
    osg::Matrix local() const
    {
        osg::Matrix matrix;
        accumulate(matrix);
        return matrix;
    }

    /// Adds for each point of the skin that the joint pulls at, by its index and the weight.
    template <class Pull>
    void pull(std::size_t count, const Pull& add)
    {
        const std::vector<int>& indices = skinCoordIndexPart.read<MFInt32>(node()).values();
        const std::vector<float>& weights = skinCoordWeightPart.read<MFFloat>(node()).values();
        for (std::size_t i = 0; i < indices.size(); ++i) {
            const auto index = static_cast<std::size_t>(indices[i]);
            const float weight = i < weights.size() ? usableNumber(weights[i], 0.0F) : 1.0F;
            if (index < count)
                add(index, weight);
            else
                complain("skinCoordIndex",
                         "expected indices of points of the skin, found " + std::to_string(indices[i]));
        }
    }

protected:
    void elementChanged(ElementProc& element) override
    {
        if (!dynamic_cast<JointProc*>(&element) && !dynamic_cast<DisplacerProc*>(&element))
            TransformProc::elementChanged(element);
        changed(); // up to the humanoid
    }

private:
    Displacers _displacers;
};

/// Behaviour of an `HAnimSegment`: a group whose mesh has displacers.
class SegmentProc : public GroupProc
{
public:
    using GroupProc::GroupProc;

    ~SegmentProc() override
    {
        if (auto* const points = dynamic_cast<VectorListProc*>(_coord.element()))
            points->unbend();
    }

    void update() override
    {
        GroupProc::update();
        _displacers.sync(*this);
        Node* const coord = resolved(coordPart.readNode(node()));
        auto* const points = procAs<VectorListProc>(coord);
        _coord.set(*this, points);
        if (!points)
            return;
        _isBending = true;
        if (_displacers.isEmpty()) {
            points->unbend();
        } else {
            Vectors converted;
            Vectors moved = fieldPointsOf(coord, converted);
            _displacers.displace(moved);
            points->bend(std::move(moved));
        }
        _isBending = false;
    }

protected:
    void elementChanged(ElementProc& element) override
    {
        if (!_isBending)
            GroupProc::elementChanged(element);
    }

private:
    Displacers _displacers;
    Use _coord;
    bool _isBending = false;
};

/// Behaviour of an `HAnimHumanoid`: a transform over a skeleton, whose joints bend a skin.
class HumanoidProc : public TransformProc
{
public:
    using TransformProc::TransformProc;

    ~HumanoidProc() override
    {
        for (const Use* use : {&_coord, &_normal}) {
            if (auto* const list = dynamic_cast<VectorListProc*>(use->element()))
                list->unbend();
        }
    }

    void update() override
    {
        TransformProc::update();
        bendSkin();
        syncMotions();
    }

protected:
    void collectChildren(std::vector<Node*>& nodes) const override
    {
        for (const Part* part : {&skeletonPart, &viewpointsPart, &skinPart}) {
            for (NodeLink& link : part->read<MFNode>(node()))
                nodes.push_back(link.node());
        }
    }

    void elementChanged(ElementProc& element) override
    {
        if (const auto* const motion = dynamic_cast<HAnimMotionProc*>(&element))
            move(*motion);
        else if (!_isBending)
            TransformProc::elementChanged(element);
    }

private:
    /// Looks for motions that have come or gone, and takes the poses of new ones.
    void syncMotions()
    {
        const auto& nodes = motionsPart.read<MFNode>(node());
        _motions.resize(nodes.size());
        std::size_t i = 0;
        for (NodeLink& link : nodes) {
            auto* const motion = elementOf<HAnimMotionProc>(link.node());
            Use& use = _motions[i++];
            if (use.element() == motion)
                continue;
            use.set(*this, motion);
            if (motion)
                move(*motion);
        }
    }

    /// True when the humanoid takes the poses of a motion.
    bool follows(const HAnimMotionProc& motion) const
    {
        const auto& enabled = motionsEnabledPart.read<MFBool>(node());
        for (std::size_t i = 0; i < _motions.size(); ++i) {
            if (_motions[i].element() == &motion && (i >= enabled.size() || enabled[static_cast<int>(i)]))
                return true;
        }
        return false;
    }

    /// Gives the joints the poses of a motion.
    void move(const HAnimMotionProc& motion)
    {
        if (!follows(motion))
            return;
        const std::unordered_map<std::string, Node*> joints = namedJoints();
        const double time = context().timeStamp();
        for (const HAnimMotionProc::Pose& pose : motion.poses()) {
            const auto joint = joints.find(pose.joint);
            if (joint == joints.end())
                continue;
            if (pose.place[0] || pose.place[1] || pose.place[2]) {
                auto& field = translationPart.edit<SFVec3f>(*joint->second);
                osg::Vec3f place = field.value();
                for (osg::UInt32 axis = 0; axis < 3; ++axis)
                    place[axis] = pose.place[axis].value_or(place[axis]);
                field.setValue(time, place, Field::EVENT_CT);
            }
            if (pose.turn) {
                osg::Vec3f axis;
                float angle = 0.0F;
                pose.turn->getValueAsAxisRad(axis, angle);
                rotationPart.edit<SFRotation>(*joint->second)
                    .setValue(time, Rotation(axis[0], axis[1], axis[2], angle), Field::EVENT_CT);
            }
        }
    }

    /// The joints by their names, those of the list before those of the skeleton.
    std::unordered_map<std::string, Node*> namedJoints() const
    {
        std::unordered_map<std::string, Node*> joints;
        for (NodeLink& link : jointsPart.read<MFNode>(node())) {
            if (auto* const joint = elementOf<JointProc>(link.node()))
                joints.emplace(namePart.read<SFString>(joint->node()).value(), &joint->node());
        }
        for (const Pose& pose : poses())
            joints.emplace(namePart.read<SFString>(pose.joint->node()).value(), &pose.joint->node());
        return joints;
    }

    struct Pose
    {
        JointProc* joint;
        osg::Matrix toHumanoid;
    };

    /// The joints with their places. One that stands in several places counts in the first.
    std::vector<Pose> poses() const
    {
        constexpr std::size_t MostJoints = 65536;
        std::vector<Pose> result;
        const auto add = [&result](const MFNode& nodes, const osg::Matrix& above) {
            for (NodeLink& link : nodes) {
                auto* const joint = elementOf<JointProc>(link.node());
                if (!joint || result.size() >= MostJoints)
                    continue;
                osg::Matrix matrix = above;
                matrix.mult(joint->local());
                result.push_back({joint, matrix});
            }
        };
        static const Part childrenPart("children");
        add(skeletonPart.read<MFNode>(node()), osg::Matrix());
        for (std::size_t i = 0; i < result.size(); ++i) {
            const Pose pose = result[i];
            add(childrenPart.read<MFNode>(pose.joint->node()), pose.toHumanoid);
        }
        return result;
    }

    VectorListProc* listOf(Use& use, const Part& part)
    {
        auto* const list = procAs<VectorListProc>(resolved(part.readNode(node())));
        if (use.element() && use.element() != list)
            static_cast<VectorListProc*>(use.element())->unbend();
        use.set(*this, list);
        return list;
    }

    void bendSkin()
    {
        _isBending = true;
        VectorListProc* const coord = listOf(_coord, skinCoordPart);
        VectorListProc* const normal = listOf(_normal, skinNormalPart);
        const std::vector<Pose> joints = coord ? poses() : std::vector<Pose>();
        if (std::any_of(joints.begin(), joints.end(), [](const Pose& pose) { return pose.joint->pulls(); })) {
            bendLists(*coord, normal, joints);
        } else {
            if (coord)
                coord->unbend();
            if (normal)
                normal->unbend();
        }
        _isBending = false;
    }

    void bendLists(VectorListProc& coord, VectorListProc* normal, const std::vector<Pose>& joints)
    {
        Vectors converted;
        Node* const binding = resolved(skinBindingCoordsPart.readNode(node()));
        Vectors points = fieldPointsOf(binding ? binding : &coord.node(), converted);
        for (const Pose& pose : joints)
            pose.joint->displace(points);
        Vectors normals;
        Node* const bindingNormal = resolved(skinBindingNormalsPart.readNode(node()));
        Node* const normalNode = bindingNormal ? bindingNormal : normal ? &normal->node() : nullptr;
        if (normal && vectorPart.isIn(*normalNode))
            normals = vectorPart.read<MFVec3f>(*normalNode).values();
        // Only normals that go with the points can be turned with them.
        if (normals.size() != points.size())
            normals.clear();

        Vectors bentPoints(points.size());
        Vectors bentNormals(normals.size());
        std::vector<float> sums(points.size());
        for (const Pose& pose : joints) {
            const osg::Matrix& matrix = pose.toHumanoid;
            pose.joint->pull(points.size(), [&](std::size_t i, float weight) {
                osg::Pnt3f place;
                matrix.multMatrixPnt(osg::Pnt3f(points[i]), place);
                bentPoints[i] += osg::Vec3f(place[0], place[1], place[2]) * weight;
                sums[i] += weight;
                if (i >= normals.size())
                    return;
                osg::Vec3f direction;
                matrix.multMatrixVec(normals[i], direction);
                bentNormals[i] += direction * weight;
            });
        }
        for (std::size_t i = 0; i < points.size(); ++i) {
            // What no joint pulls at stays.
            if (sums[i] > 0.0F) {
                bentPoints[i] *= 1.0F / sums[i];
            } else {
                bentPoints[i] = points[i];
                if (i < normals.size())
                    bentNormals[i] = normals[i];
            }
        }
        coord.bend(std::move(bentPoints));
        if (normal && !normals.empty())
            normal->bend(std::move(bentNormals));
        else if (normal)
            normal->unbend();
    }

    Use _coord;
    Use _normal;
    std::vector<Use> _motions;
    bool _isBending = false;
};

const ProcRegistration displacer("HAnimDisplacer", makeProc<DisplacerProc>);
const ProcRegistration humanoid("HAnimHumanoid", makeProc<HumanoidProc>);
const ProcRegistration joint("HAnimJoint", makeProc<JointProc>);
const ProcRegistration segment("HAnimSegment", makeProc<SegmentProc>);
const ProcRegistration site("HAnimSite", makeProc<TransformProc>);

} // namespace

} // namespace Orvane
