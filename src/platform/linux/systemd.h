/// What is asked of the service manager over the bus. Every failure is a Windows error number; 0 is success.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/linux/service_state.h"
#include "platform/linux/system_bus.h"

namespace velmora::os {

/// Whether the service manager is on the bus.
bool HasServiceManager(SystemBus* bus) noexcept;

/// Replaces `unit` by the name of the unit that is meant: itself, or the one that differs only in letter
/// case.
std::uint32_t FindUnit(SystemBus* bus, std::string& unit);

/// Asks for the present facts of `unit`.
std::uint32_t ReadUnit(SystemBus* bus, const std::string& unit, UnitFacts& facts);

/// Whether another service that runs needs this one.
bool HasRunningDependents(SystemBus* bus, const std::string& unit);

/// Has the unit started or stopped and returns as soon as the job has been accepted.
std::uint32_t StartUnit(SystemBus* bus, const std::string& unit) noexcept;
std::uint32_t StopUnit(SystemBus* bus, const std::string& unit) noexcept;

}  // namespace velmora::os
