#pragma once

#include <string>
#include <string_view>

namespace Orvane {

/// The code with a call of `__tick__` at the head of each function and in every 64th turn of each loop, so
/// that one that never ends can be stopped: the engine itself has no means to interrupt running code. Lines
/// keep their numbers. `let` becomes `var`, which is all that the engine knows.
///
/// Code that does not parse comes out as something that does not parse either.
std::string guardLoops(std::string_view code);

} // namespace Orvane
