#include "core/FollowerProc.h"

namespace Orvane {

namespace {

using Colors = FollowedField<SFColor>;
using Coordinates = FollowedListField<osg::Vec3f>;
using Orientations = FollowedField<SFRotation>;
using Places = FollowedField<SFVec3f>;
using PlanePlaces = FollowedField<SFVec2f>;
using Numbers = FollowedField<SFFloat>;
using TexCoords = FollowedListField<osg::Vec2f>;

const ProcRegistration colorDamper("ColorDamper", makeProc<DamperProc<Colors>>);
const ProcRegistration coordinateDamper("CoordinateDamper", makeProc<DamperProc<Coordinates>>);
const ProcRegistration orientationDamper("OrientationDamper", makeProc<DamperProc<Orientations>>);
const ProcRegistration positionDamper("PositionDamper", makeProc<DamperProc<Places>>);
const ProcRegistration positionDamper2D("PositionDamper2D", makeProc<DamperProc<PlanePlaces>>);
const ProcRegistration scalarDamper("ScalarDamper", makeProc<DamperProc<Numbers>>);
const ProcRegistration texCoordDamper2D("TexCoordDamper2D", makeProc<DamperProc<TexCoords>>);

const ProcRegistration colorChaser("ColorChaser", makeProc<ChaserProc<Colors>>);
const ProcRegistration coordinateChaser("CoordinateChaser", makeProc<ChaserProc<Coordinates>>);
const ProcRegistration orientationChaser("OrientationChaser", makeProc<ChaserProc<Orientations>>);
const ProcRegistration positionChaser("PositionChaser", makeProc<ChaserProc<Places>>);
const ProcRegistration positionChaser2D("PositionChaser2D", makeProc<ChaserProc<PlanePlaces>>);
const ProcRegistration scalarChaser("ScalarChaser", makeProc<ChaserProc<Numbers>>);
const ProcRegistration texCoordChaser2D("TexCoordChaser2D", makeProc<ChaserProc<TexCoords>>);

} // namespace

} // namespace Orvane
