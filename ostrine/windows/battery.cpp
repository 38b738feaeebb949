#include "ostrine/common/battery.h"

#include <windows.h>

#include <array>
#include <utility>

#include "ostrine/windows/battery_query.h"
#include "platform/ostrine/wmi.h"

namespace ostrine {
namespace {

/// The firmware's method, by which thresholds are read and set on machines that have it
/// (docs/firmware-methods.md). The system itself has nothing of the kind.
class ThresholdFirmware {
 public:
  std::optional<ChargeThresholds> Read() {
    Reply reply{};
    return Ask(kReadThresholdsWord, reply) ? ParseThresholdReply(reply) : std::nullopt;
  }

  /// Whether the firmware says that it has taken them.
  bool Set(const ChargeThresholds& thresholds) {
    Reply reply{};
    return Ask(SetThresholdsWord(thresholds), reply) && reply[0] == 0;
  }

 private:
  using Reply = std::array<unsigned char, 256>;

  bool Ask(std::uint64_t word, Reply& reply) {
    return firmware_.GetOutPutUInt(word, reply.data(), static_cast<unsigned int>(reply.size()));
  }

  CWMI firmware_{L"ROOT\\WMI"};
};

class WindowsBatteries : public BatterySystem {
 public:
  std::vector<Battery> Batteries() const override {
    std::vector<Battery> batteries;
    for (const std::wstring& path : BatteryPaths()) {
      const BatteryHandle handle(path);
      if (!handle.IsOpen()) continue;
      if (auto battery = AskBattery(handle.Get())) batteries.push_back(std::move(*battery));
    }
    return batteries;
  }

  std::optional<bool> IsOnMains() const override {
    SYSTEM_POWER_STATUS status{};
    if (!GetSystemPowerStatus(&status) || status.ACLineStatus > 1) return std::nullopt;
    return status.ACLineStatus == 1;
  }

  std::optional<ChargeThresholds> Thresholds() const override { return ThresholdFirmware().Read(); }

  bool SetThresholds(const ChargeThresholds& thresholds) const override {
    ThresholdFirmware firmware;
    const auto old = firmware.Read();
    if (!old) return false;
    if (firmware.Set(thresholds) && firmware.Read() == thresholds) return true;
    firmware.Set(*old);
    return false;
  }
};

}  // namespace

bool QueryBattery(void* /*device*/, unsigned int information_id, Answer& answer) {
  return AnswerBattery(WindowsBatteries(), information_id, answer);
}

bool SetBattery(void* /*device*/, unsigned int information_id, std::span<const std::uint8_t> value) {
  return TakeBatterySetting(WindowsBatteries(), information_id, value);
}

}  // namespace ostrine
