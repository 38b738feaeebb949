/// What Windows tells about the processor.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ostrine/common/processor.h"

namespace ostrine {

class WindowsProcessor final : public ProcessorSystem {
 public:
  bool IsArm() const override;
  std::optional<std::string> Vendor() const override;
  std::optional<std::string> Name() const override;
  std::optional<std::uint32_t> CurrentClock() const override;
  /// Windows speaks of the clock without boosts alone: see NominalClock.
  std::optional<std::uint32_t> MaximumClock() const override { return std::nullopt; }
  std::optional<std::uint32_t> NominalClock() const override;
  std::optional<std::uint32_t> Cores() const override;
  std::optional<std::uint32_t> Threads() const override;
  std::vector<Cache> Caches(unsigned int level, CacheExtent extent) const override;
  std::optional<ProcessorTime> Time() const override;
  std::optional<FirmwareTable> Firmware() const override;
};

}  // namespace ostrine
