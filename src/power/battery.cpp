#include "velmora/battery.h"

#include "platform/guard.h"
#include "platform/halquery.h"
#include "platform/logging.h"
#include "platform/os/system_status.h"

using velmora::LogDebug;
using velmora::hal::DeviceClass;
using velmora::hal::NarrowText;
using velmora::hal::Number;

namespace {

constexpr auto kBattery = DeviceClass::kBattery;

/// Information ids of the class.
enum Id : std::uint32_t {
  kPresent = 0,
  kBatteryManufacturer = 1,
  kName = 2,
  kRemaining = 3,
  kFull = 4,
  kDesign = 5,
  kAcLine = 6,
  kVoltage = 7,
  kLoss = 8,
  kDischargeRate = 9,
  kThresholdToRead = 9,  ///< the same id as the rate: the library tells them apart by the buffer's size
  kChargeRate = 10,
  kThresholdToWrite = 12,
};

using Threshold = _BATTERY_CHARGE_THRESHOLD_LIMIT_STRUCT;
static_assert(sizeof(Threshold) == 2);

}  // namespace

CBattery::CBattery() { velmora::hal::Prepare(kBattery); }
CBattery::~CBattery() = default;

std::wstring CBattery::GetBatteryName() { return NarrowText(kBattery, kName); }
std::wstring CBattery::GetBatteryManufacturer() { return NarrowText(kBattery, kBatteryManufacturer); }

int CBattery::CheckBattery() {
  std::uint32_t whatever_it_holds = 0;
  return velmora::hal::QueryResult(kBattery, kPresent, whatever_it_holds);
}

unsigned long CBattery::GetBatteryRemainCapacity() { return Number(kBattery, kRemaining); }
unsigned long CBattery::GetBatteryFullCapacity() { return Number(kBattery, kFull); }
unsigned long CBattery::GetBatteryDesignCapacity() { return Number(kBattery, kDesign); }
unsigned char CBattery::AcLine() { return static_cast<unsigned char>(Number(kBattery, kAcLine) & 0xFFU); }
unsigned long CBattery::GetBatteryVoltage() { return Number(kBattery, kVoltage); }

float CBattery::GetBattertLoss() {
  const auto hundredths = static_cast<float>(Number(kBattery, kLoss));
  return static_cast<float>(static_cast<double>(hundredths) / 100.0);
}

unsigned long CBattery::GetDisChargeRate() { return Number(kBattery, kDischargeRate); }
unsigned long CBattery::GetChargeRate() { return Number(kBattery, kChargeRate); }

unsigned long CBattery::GetBatteryPercent() {
  constexpr int kTries = 3;
  velmora::os::PowerStatus status{};
  bool is_known = false;
  for (int i = 0; i < kTries && !is_known; ++i) {
    is_known = velmora::Answer(false, [&] { return velmora::os::GetSystemPowerStatus(status); });
  }
  const unsigned long percent = is_known ? status.battery_life_percent : 0;
  LogDebug([&](auto& line) { line << "CBattery::GetBatteryPercent: dwPercent=" << percent; });
  return percent;
}

bool CBattery::GetChargeThreshold(Threshold& threshold) {
  return velmora::hal::QueryResult(kBattery, kThresholdToRead, threshold) == 1;
}

bool CBattery::SetChargeThreshold(const Threshold& threshold) {
  Threshold copy = threshold;  // the abstraction library takes no const memory
  return velmora::hal::SetResult(kBattery, kThresholdToWrite, copy) == 1;
}
