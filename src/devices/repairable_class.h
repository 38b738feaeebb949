/// Which setup class a repair of a device kind acts on.
#pragma once

#include <optional>

#include "platform/ostrine/guid.h"
#include "velmora/devicekind.h"

namespace velmora {

/// The setup class of `kind`, for an operation that takes kinds up to `last`: nothing for a greater number,
/// for the gaps in the numbering, and for the keyboard, which is only asked about and never repaired.
std::optional<GUID> RepairableClass(stDEVICE_DRIVER_TYPE kind, stDEVICE_DRIVER_TYPE last);

}  // namespace velmora
