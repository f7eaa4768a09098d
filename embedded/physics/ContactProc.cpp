#include "core/ElementProc.h"

namespace Orvane {

namespace {

/// A `Contact` is read by the collection to which it is sent.
const ProcRegistration contact("Contact", makeProc<DescriptionProc>);

} // namespace

} // namespace Orvane
