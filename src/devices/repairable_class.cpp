#include "devices/repairable_class.h"

#include "platform/ostrine/setup_class.h"

namespace velmora {

std::optional<GUID> RepairableClass(stDEVICE_DRIVER_TYPE kind, stDEVICE_DRIVER_TYPE last) {
  if (kind > last) return std::nullopt;
  switch (kind) {
    case emDEVICE_WIRELESS:
      return setup_class::kNet;
    case emDEVICE_BLUETOOTH:
      return setup_class::kBluetooth;
    case emDEVICE_FINGERPRINT:
      return setup_class::kBiometric;
    case emDEVICE_AUDIO:
      return setup_class::kMedia;
    case emDEVICE_DISPLAY:
      return setup_class::kDisplay;
    case emDEVICE_USB:
      return setup_class::kUsb;
    default:
      return std::nullopt;
  }
}

}  // namespace velmora
