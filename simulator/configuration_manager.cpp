/// The configuration manager over a machine's devices.
#include "platform/os/configuration_manager.h"

#include <algorithm>

#include "platform/case_folding.h"
#include "platform/unicode.h"
#include "simulator/session.h"

using simulator::Device;
using simulator::Entered;
using simulator::Fault;

namespace velmora::os {
namespace {

constexpr DevNode kRoot = 1;

/// The node of the device with that instance ID; 0 if none is present. Nodes count from behind the root's.
DevNode FindNode(const std::vector<Device>& devices, const wchar_t* device_id) {
  const auto found = std::ranges::find_if(devices, [&](const Device& device) {
    return simulator::IsPresent(device) &&
           EqualIgnoringCase(unicode::WideFromUtf8(device.instance_id), device_id);
  });
  if (found == devices.end()) return 0;
  return kRoot + 1 + static_cast<DevNode>(found - devices.begin());
}

}  // namespace

ConfigResult CM_Locate_DevNodeW(DevNode& node, const wchar_t* device_id, std::uint32_t flags) {
  const Entered call("CM_Locate_DevNodeW", device_id, flags);
  if (call.fault != Fault::kNone) return call.fault == Fault::kEmpty ? kConfigSuccess : kConfigFailure;
  const auto& devices = call.session.machine.devices;
  if (!devices) {
    call.session.ReportUnscripted("CM_Locate_DevNodeW", "devices");
    return kConfigFailure;
  }
  const DevNode found = device_id == nullptr ? kRoot : FindNode(*devices, device_id);
  if (found == 0) return kConfigNoSuchDevNode;
  node = found;
  return kConfigSuccess;
}

ConfigResult CM_Reenumerate_DevNode(DevNode node, std::uint32_t flags) {
  const Entered call("CM_Reenumerate_DevNode", node, flags);
  if (call.fault != Fault::kNone) return call.fault == Fault::kEmpty ? kConfigSuccess : kConfigFailure;
  auto& devices = call.session.machine.devices;
  if (!devices) {
    call.session.ReportUnscripted("CM_Reenumerate_DevNode", "devices");
    return kConfigFailure;
  }
  if (node == 0 || node > kRoot + devices->size()) return kConfigNoSuchDevNode;
  simulator::Rescan(*devices);
  return kConfigSuccess;
}

}  // namespace velmora::os
