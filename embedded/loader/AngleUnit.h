#pragma once

namespace Orvane {

class Field;

/// Brings a value that a file gives in its own unit of angles to radians: rotations, and the numbers that are
/// angles by the name of their field. \a factor is radians by unit. Other values stay as they are.
void convertAngles(Field& field, double factor);

} // namespace Orvane
