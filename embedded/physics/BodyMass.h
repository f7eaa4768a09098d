#pragma once

#include "base/ValueFields.h"
#include <array>

namespace Orvane {

class Node;

/// The mass of a body and how it resists turns, about its centre of mass.
struct BodyMass
{
    double mass = 1.0;
    /// The symmetric matrix of inertia: 11, 22, 33, 12, 13, 23.
    std::array<double, 6> inertia{1.0, 1.0, 1.0, 0.0, 0.0, 0.0};
};

/// The inertia of \a matrix. False when that is none of a body: it has to be symmetric and positive definite.
bool readInertia(const Matrix3f& matrix, BodyMass& mass);

/// The inertia of the mass spread over a `Box`, `Sphere` or `Cone`. False when \a model is none, or has no
/// volume.
bool readInertia(const Node& model, BodyMass& mass);

} // namespace Orvane
