#include "ostrine/linux/charge_control.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstddef>
#include <string>

namespace ostrine {
namespace {

constexpr const char* kStart = "charge_control_start_threshold";
constexpr const char* kStop = "charge_control_end_threshold";

/// A percentage that stands in an attribute.
std::optional<std::uint8_t> Percentage(const Path& attribute) {
  const auto number = NumberAttribute(attribute);
  if (!number || *number < 0 || *number > 100) return std::nullopt;
  return static_cast<std::uint8_t>(*number);
}

bool HasBoth(const Path& battery) { return Exists(battery / kStart) && Exists(battery / kStop); }

/// What stands in the two attributes, possible or not.
std::optional<ChargeThresholds> Standing(const Path& battery) {
  const auto start = Percentage(battery / kStart);
  const auto stop = Percentage(battery / kStop);
  if (!start || !stop) return std::nullopt;
  return ChargeThresholds{.start = *start, .stop = *stop};
}

/// Writes one attribute, which must be there already and is not touched when it holds the number.
bool WritePercentage(const Path& attribute, std::uint8_t percentage) {
  if (Percentage(attribute) == percentage) return true;
  // Without a flag that creates: where the driver offers no such attribute, none must come to be.
  const int file =
      open(attribute.c_str(), O_WRONLY | O_TRUNC | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY);
  if (file < 0) return false;
  const std::string text = std::to_string(percentage);
  struct stat status{};
  const bool is_written = fstat(file, &status) == 0 && S_ISREG(status.st_mode) &&
                          write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size());
  close(file);
  return is_written;
}

bool Write(const Path& battery, const ChargeThresholds& old, const ChargeThresholds& wanted) {
  const auto start = [&] { return WritePercentage(battery / kStart, wanted.start); };
  const auto stop = [&] { return WritePercentage(battery / kStop, wanted.stop); };
  return IsStartWrittenFirst(old, wanted) ? start() && stop() : stop() && start();
}

/// A battery and what stood there before it was changed.
struct Change {
  const Path* battery;
  ChargeThresholds old;
};

/// Puts back what stood there. An attribute that cannot be written again is left: nothing better can be done.
void Undo(const Change& change) {
  Write(*change.battery, Standing(*change.battery).value_or(change.old), change.old);
}

/// Changes every battery; those that were touched are in `changes`, also when one does not take it.
bool ChangeAll(const std::vector<Path>& batteries, const ChargeThresholds& wanted,
               std::vector<Change>& changes) {
  for (const Path& battery : batteries) {
    if (!HasBoth(battery)) continue;
    const auto old = Standing(battery);
    if (!old) return false;
    changes.push_back({&battery, *old});
    if (!Write(battery, *old, wanted) || Standing(battery) != wanted) return false;
  }
  return !changes.empty();
}

}  // namespace

std::optional<ChargeThresholds> ReadChargeControl(const std::vector<Path>& batteries) {
  for (const Path& battery : batteries) {
    if (!HasBoth(battery)) continue;
    const auto standing = Standing(battery);
    return standing && IsPossible(*standing) ? standing : std::nullopt;
  }
  return std::nullopt;
}

bool SetChargeControl(const std::vector<Path>& batteries, const ChargeThresholds& wanted) {
  if (!IsPossible(wanted)) return false;
  std::vector<Change> changes;
  if (ChangeAll(batteries, wanted, changes)) return true;
  for (const Change& change : changes) Undo(change);
  return false;
}

}  // namespace ostrine
