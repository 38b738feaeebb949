/// Control devices of a machine: they are opened by name and take requests.
#include "platform/os/device_control.h"

#include <algorithm>

#include "platform/case_folding.h"
#include "platform/unicode.h"
#include "simulator/failing.h"

using simulator::ControlDevice;
using simulator::Entered;
using simulator::Error;
using simulator::Fault;
using simulator::Hex;
using simulator::Session;
using simulator::Succeed;

namespace velmora::os {
namespace {

struct OpenedControlDevice {
  std::wstring name;
};

ControlDevice* FindDevice(Session& session, const std::wstring& name) {
  auto& devices = session.machine.control_devices;
  if (!devices) return nullptr;
  const auto found = std::ranges::find_if(*devices, [&](const ControlDevice& device) {
    return EqualIgnoringCase(unicode::WideFromUtf8(device.name), name);
  });
  return found == devices->end() ? nullptr : &*found;
}

Handle RefuseOpen(Error error) {
  SetLastError(error);
  return InvalidHandle();
}

simulator::Bytes BytesAt(const void* bytes, std::uint32_t size) {
  const auto* first = static_cast<const std::uint8_t*>(bytes);
  return bytes == nullptr ? simulator::Bytes{} : simulator::Bytes{{first, first + size}};
}

}  // namespace

Handle CreateFileW(const wchar_t* name, std::uint32_t access, std::uint32_t share_mode,
                   std::uint32_t disposition, std::uint32_t flags) {
  Entered call("CreateFileW", name, Hex{access}, share_mode, disposition, flags);
  if (simulator::IsRefused(call)) return InvalidHandle();
  if (!call.session.machine.control_devices) {
    return RefuseOpen(simulator::Unscripted(call.session, "CreateFileW", "control devices"));
  }
  const ControlDevice* device = FindDevice(call.session, name);
  if (device == nullptr) return RefuseOpen(kErrorFileNotFound);
  if (device->open_error != 0) return RefuseOpen(device->open_error);
  return call.session.Open("CloseHandle", OpenedControlDevice{name});
}

bool DeviceIoControl(Handle handle, std::uint32_t code, const void* input, std::uint32_t input_size,
                     void* output, std::uint32_t output_size, std::uint32_t* returned_size) {
  const simulator::InsideSimulator inside;
  const simulator::Bytes sent = BytesAt(input, input_size);
  Entered call("DeviceIoControl", Hex{code}, sent, output_size);
  if (call.Fails()) return Succeed(simulator::kInjectedError);
  if (returned_size != nullptr) *returned_size = 0;
  if (call.fault != Fault::kNone) return true;
  const auto* opened = call.session.Find<OpenedControlDevice>(handle, "DeviceIoControl");
  auto* device = opened == nullptr ? nullptr : FindDevice(call.session, opened->name);
  if (device == nullptr) return Succeed(kErrorInvalidHandle);
  device->requests.push_back({code, sent});
  if (device->request_error != 0) return Succeed(device->request_error);
  const auto size = std::min<std::size_t>(output_size, device->output.data.size());
  if (output != nullptr) std::copy_n(device->output.data.begin(), size, static_cast<std::uint8_t*>(output));
  if (returned_size != nullptr) *returned_size = static_cast<std::uint32_t>(size);
  return true;
}

}  // namespace velmora::os
