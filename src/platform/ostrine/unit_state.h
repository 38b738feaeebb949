/// What the words of systemd about a unit mean for the state of a service. Both sides of the contracts go by
/// this one rule, so that a service is in the same state whichever of them is asked.
#pragma once

#include <cstdint>
#include <string_view>

namespace velmora {

/// By the numbers of SERVICE_STATUS.
enum class UnitState : std::uint32_t {
  kStopped = 1,
  kStartPending = 2,
  kStopPending = 3,
  kRunning = 4,
  kPaused = 7,
};

/// `active_state` and `freezer_state`: the unit's properties of these names; the latter is empty where it is
/// not told. A service is paused while it is active and the freezer holds its processes, itself or with the
/// unit above it; nothing else that systemd knows is a pause. (The state of the unit's own kind, SubState,
/// does not tell: it says "running" of a frozen service, too.)
constexpr UnitState UnitStateOf(std::string_view active_state, std::string_view freezer_state) noexcept {
  if (active_state == "activating") return UnitState::kStartPending;
  if (active_state == "deactivating") return UnitState::kStopPending;
  if (active_state == "active" || active_state == "reloading" || active_state == "refreshing") {
    const bool is_held = freezer_state == "frozen" || freezer_state == "frozen-by-parent";
    return is_held ? UnitState::kPaused : UnitState::kRunning;
  }
  return UnitState::kStopped;  // "inactive", "failed", "maintenance"
}

}  // namespace velmora
