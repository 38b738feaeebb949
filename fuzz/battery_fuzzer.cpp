// Any bytes as what batteries, the kernel's files and a firmware say about charge.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>
#include <span>
#include <vector>

#include "ostrine/common/battery_record.h"
#include "ostrine/common/charge_thresholds.h"
#include "ostrine/linux/battery.h"

namespace {

using Bytes = std::span<const std::uint8_t>;

void Require(bool holds) {
  if (!holds) std::abort();
}

/// Takes numbers off the front of the input; nothing when it is used up, or when a byte of 0 says so.
class Numbers {
 public:
  explicit Numbers(Bytes bytes) : bytes_(bytes) {}

  std::optional<std::int64_t> Next() {
    std::int64_t number = 0;
    if (bytes_.size() < 1 + sizeof number || bytes_[0] == 0) return std::nullopt;
    std::memcpy(&number, bytes_.data() + 1, sizeof number);
    bytes_ = bytes_.subspan(1 + sizeof number);
    return number;
  }

 private:
  Bytes bytes_;
};

ostrine::Battery FromFiles(Bytes bytes) {
  Numbers numbers(bytes);
  ostrine::BatteryAttributes attributes;
  attributes.status = bytes.empty() || bytes[0] % 2 == 0 ? "Charging" : "Unknown";
  for (auto* const number : {&attributes.energy_now, &attributes.energy_full, &attributes.energy_full_design,
                             &attributes.charge_now, &attributes.charge_full, &attributes.charge_full_design,
                             &attributes.power_now, &attributes.current_now, &attributes.voltage_now,
                             &attributes.voltage_min_design}) {
    *number = numbers.Next();
  }
  return ostrine::BatteryOf(attributes);
}

void RequireSane(const std::vector<ostrine::Battery>& batteries) {
  constexpr std::uint32_t kLeastMarker = 0x80000000;
  for (unsigned int number = 0; number <= 12; ++number) {
    const auto combined = ostrine::CombinedNumber(batteries, static_cast<ostrine::BatteryNumber>(number));
    Require(combined.value_or(0) < kLeastMarker);
  }
  Require(ostrine::CombinedNumber(batteries, ostrine::BatteryNumber::kLoss).value_or(0) <= 10'000);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Bytes bytes(data, size);
  const Bytes information = bytes.first(std::min(size, ostrine::kBatteryInformationSize));
  std::vector<ostrine::Battery> batteries;
  if (auto battery = ostrine::BatteryOfRecords(information, bytes.subspan(information.size()))) {
    batteries.push_back(*battery);
  }
  batteries.push_back(FromFiles(bytes));
  RequireSane(batteries);
  if (const auto thresholds = ostrine::ParseThresholdReply(bytes)) {
    Require(ostrine::IsPossible(*thresholds) && thresholds->start < thresholds->stop);
    Require(ostrine::ParseThresholdRecord(ostrine::ToRecord(*thresholds)) == thresholds);
  }
  return 0;
}
