#include "velmora-report/repair_guard.h"

#include <algorithm>

namespace report {
namespace {

bool HangsOn(const Chain& chain, const std::string& place) { return std::ranges::count(chain, place) > 0; }

/// Whether none of the devices would be left.
bool AllHangOn(const std::vector<Chain>& chains, const std::string& place) {
  return !chains.empty() &&
         std::ranges::all_of(chains, [&](const Chain& chain) { return HangsOn(chain, place); });
}

bool AnyHangsOn(const std::vector<Chain>& chains, const std::string& place) {
  return std::ranges::any_of(chains, [&](const Chain& chain) { return HangsOn(chain, place); });
}

}  // namespace

std::string WhyNotToRemove(const RepairTarget& target, const Lifelines& lifelines) {
  if (lifelines.disks && AnyHangsOn(*lifelines.disks, target.place))
    return "the disk that this program or the system runs from hangs on it";
  if (!lifelines.disks && target.may_carry_disks)
    return "it could not be told whether the disk that this program runs from hangs on it";
  if (target.is_only_working_display || AllHangOn(lifelines.displays, target.place))
    return "it is the only display";
  if (AllHangOn(lifelines.keyboards, target.place)) return "the only keyboard hangs on it";
  return {};
}

}  // namespace report
