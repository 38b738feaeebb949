/// Failing devices and the repair of their drivers.
#include <new>
#include <optional>

#include "simulator/spoiled.h"
#include "tests/torture/operation.h"
#include "velmora/devicedriver.h"

namespace torture {
namespace {

constexpr unsigned long kNotDone = 0xFFFFFFFF;
constexpr unsigned long kNoSuchDevice = 0xE000020B;

/// A device that machine files have: its driver fails, and a reset heals it.
constexpr auto kHardwareId = L"PCI\\VEN_14C3&DEV_7961&SUBSYS_E0BC14C3&REV_00";

using Repair = unsigned long (CDeviceDriver::*)(std::wstring, stDEVICE_DRIVER_TYPE);

/// Runs a repair. The text of the hardware ID is the caller's to make; where it has no memory for that, it
/// has nothing to call with.
unsigned long RunOnDevice(Repair repair, stDEVICE_DRIVER_TYPE kind) {
  std::optional<std::wstring> id;
  try {
    id.emplace(kHardwareId);
  } catch (const std::bad_alloc&) {
    return kNotDone;
  }
  return (CDeviceDriver().*repair)(std::move(*id), kind);
}

Operation TextField(const char* field, std::string stErrDriverInfo::* member) {
  return Operation(std::string("CDeviceDriver::GetErrDriverInfoByIndex ") + field,
                   [member] {
                     stErrDriverInfo info = CDeviceDriver().GetErrDriverInfoByIndex(0);
                     return std::move(info.*member);
                   })
      .MayFailWith(std::string())
      .MayBeSpoiledTo(std::string(259, 'A'));
}

std::vector<Operation> Repairs() {
  return {Operation("CDeviceDriver::GetDeviceDriverErrorCode",
                    [] { return RunOnDevice(&CDeviceDriver::GetDeviceDriverErrorCode, emDEVICE_WIRELESS); })
              .MayFailWith(kAbsent)
              .MayFailWith(kNotDone)
              .MayFailWith(0),  // a success that gave nothing
          Operation("CDeviceDriver::UnInstallDeviceDriver",
                    [] { return RunOnDevice(&CDeviceDriver::UnInstallDeviceDriver, emDEVICE_WIRELESS); })
              .MayFailWith(5)  // what the simulator's system says when it is made to fail
              .MayFailWith(kNotDone)
              .MayFailWith(0),
          Operation("CDeviceDriver::ResetDeviceDriver",
                    [] { return RunOnDevice(&CDeviceDriver::ResetDeviceDriver, emDEVICE_WIRELESS); })
              .MayFailWith(5)
              .MayFailWith(kNotDone)
              .MayFailWith(kNoSuchDevice)
              .MayFailWith(0)};
}

}  // namespace

std::vector<Operation> DeviceDriverOperations() {
  std::vector<Operation> all{
      Operation("CDeviceDriver::GetErrDeviceDriverCount",
                [] { return CDeviceDriver().GetErrDeviceDriverCount(); })
          .MayFailWith(0),
      TextField("strCaption", &stErrDriverInfo::strCaption),
      TextField("strDeviceID", &stErrDriverInfo::strDeviceID),
      TextField("strClassGUID", &stErrDriverInfo::strClassGUID),
      TextField("strService", &stErrDriverInfo::strService),
      TextField("strStatus", &stErrDriverInfo::strStatus),
      TextField("strManufacture", &stErrDriverInfo::strManufacture),
      Operation("CDeviceDriver::GetErrDriverInfoByIndex uErrorCode",
                [] { return CDeviceDriver().GetErrDriverInfoByIndex(0).uErrorCode; })
          .MayFailWith(0)
          .MayBeSpoiledTo(kSpoiled),
      Operation("CDeviceDriver::ScanForHardwareChange",
                [] {
                  CDeviceDriver().ScanForHardwareChange();
                  return true;
                }),
      Operation("CDeviceDriver::GetUnkownHardId", [] { return CDeviceDriver().GetUnkownHardId(); })
          .MayFailWith(std::vector<std::wstring>())
          .MayBeSpoiledTo(simulator::SpoiledTexts(simulator::Fault::kUnterminated))};
  const auto repairs = Repairs();
  all.insert(all.end(), repairs.begin(), repairs.end());
  return all;
}

}  // namespace torture
