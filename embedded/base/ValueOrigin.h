#pragma once

#include <Orvane/Export.h>

namespace Orvane {

class Field;
class Node;

/// The node whose file gave a field its value, so that addresses in it count from there. It is the field's
/// own node, unless an instance of a prototype handed the value into its body: then it is the instance, or
/// what the instance has it from in its turn. Defaults of an interface count from the file of the prototype.
ORVANE_API const Node& valueOrigin(const Field& field);

} // namespace Orvane
