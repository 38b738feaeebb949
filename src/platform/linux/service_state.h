/// How the service manager's words and errors stand for the states and numbers that callers know. Pure.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/os/service_control.h"

namespace velmora::os {

inline constexpr std::uint32_t kServiceStopped = 1;
inline constexpr std::uint32_t kServiceStartPending = 2;
inline constexpr std::uint32_t kServiceStopPending = 3;
inline constexpr std::uint32_t kServiceRunning = 4;
inline constexpr std::uint32_t kServicePaused = 7;

inline constexpr std::uint32_t kErrorInvalidName = 123;
inline constexpr std::uint32_t kErrorDependentServicesRunning = 1051;
inline constexpr std::uint32_t kErrorInvalidServiceControl = 1052;
inline constexpr std::uint32_t kErrorServiceRequestTimeout = 1053;
inline constexpr std::uint32_t kErrorServiceAlreadyRunning = 1056;
inline constexpr std::uint32_t kErrorServiceDisabled = 1058;
inline constexpr std::uint32_t kErrorServiceDoesNotExist = 1060;
inline constexpr std::uint32_t kErrorServiceCannotAcceptControl = 1061;
inline constexpr std::uint32_t kErrorServiceNotActive = 1062;
inline constexpr std::uint32_t kErrorDatabaseDoesNotExist = 1065;
inline constexpr std::uint32_t kErrorProcessAborted = 1067;
inline constexpr std::uint32_t kErrorServerUnavailable = 1722;

/// What the manager says of a unit.
struct UnitFacts {
  std::string load_state;     ///< "loaded", "masked", "not-found"...
  std::string active_state;   ///< "active", "inactive", "failed", "activating"...
  std::string freezer_state;  ///< see UnitStateOf; empty where it is not told
  bool can_stop = true;       ///< false for a unit that only others may stop
};

/// The unit of service `name`: the name with ".service" behind it, as WMI's service names lack that. Nothing
/// for a name that Windows refuses as well: an empty one, one with a slash, or one above 256 characters.
std::optional<std::string> UnitOfService(std::wstring_view name);

/// The status record. A service that failed is stopped, and its exit code says that its process ended
/// unasked.
ServiceStatus StatusOf(const UnitFacts& unit) noexcept;

}  // namespace velmora::os
