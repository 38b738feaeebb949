/// The Bluetooth interface over a machine's radios and remote devices.
#include "platform/os/bluetooth_radio.h"

#include <algorithm>
#include <span>

#include "platform/unicode.h"
#include "simulator/failing.h"

using simulator::BluetoothRadio;
using simulator::BluetoothRemote;
using simulator::Closing;
using simulator::Entered;
using simulator::Error;
using simulator::Fault;
using simulator::Refuse;
using simulator::Succeed;

namespace velmora::os {
namespace {

constexpr Error kNoMoreItems = 259;
constexpr Error kRevisionMismatch = 1306;

struct FoundRadios {};
struct FoundDevices {};
struct OpenedRadio {
  std::size_t index;
};

/// Copies text to a name field; it ends in a zero.
void PutName(const std::string& text, std::span<char16_t> field) {
  const std::u16string wide = unicode::Utf16FromUtf8(text).substr(0, field.size() - 1);
  std::ranges::fill(field, u'\0');
  std::ranges::copy(wide, field.begin());
}

/// The longest name that a field holds.
void SpoilName(std::span<char16_t> field) {
  std::ranges::fill(field, u'A');
  field.back() = u'\0';
}

bool IsWanted(const BluetoothRemote& remote, const BluetoothSearchParameters& parameters) {
  if (remote.connected && parameters.return_connected != 0) return true;
  if (remote.remembered && parameters.return_remembered != 0) return true;
  if (remote.authenticated && parameters.return_authenticated != 0) return true;
  const bool is_known = remote.connected || remote.remembered || remote.authenticated;
  return !is_known && parameters.return_unknown != 0 && parameters.issue_inquiry != 0;
}

void Fill(const BluetoothRemote& remote, BluetoothDeviceInfo& info) {
  info.address = remote.address;
  info.class_of_device = remote.class_of_device;
  info.connected = remote.connected ? 1 : 0;
  info.remembered = remote.remembered ? 1 : 0;
  info.authenticated = remote.authenticated ? 1 : 0;
  PutName(remote.name, info.name);
}

}  // namespace

Handle BluetoothFindFirstRadio(const BluetoothFindRadioParameters& parameters, Handle& radio) {
  Entered call("BluetoothFindFirstRadio", parameters.size);
  if (simulator::IsRefused(call)) return nullptr;
  const auto& bluetooth = call.session.machine.bluetooth;
  if (!bluetooth) return Refuse(simulator::Unscripted(call.session, "BluetoothFindFirstRadio", "Bluetooth"));
  if (parameters.size != sizeof parameters) return Refuse(kRevisionMismatch);
  if (bluetooth->radios.empty()) return Refuse(kNoMoreItems);
  radio = call.session.Open("CloseHandle", OpenedRadio{0});
  return call.session.Open("BluetoothFindRadioClose", FoundRadios{});
}

bool BluetoothFindRadioClose(Handle find) {
  const Closing call("BluetoothFindRadioClose");
  const bool was_open = call.session.Close(find, "BluetoothFindRadioClose");
  return Succeed(was_open && !call.Fails() ? 0 : kErrorInvalidHandle);
}

std::uint32_t BluetoothGetRadioInfo(Handle handle, BluetoothRadioInfo& info) {
  Entered call("BluetoothGetRadioInfo", info.size);
  if (call.Fails()) return simulator::kInjectedError;
  if (call.fault == Fault::kUnterminated) SpoilName(info.name);
  if (call.fault != Fault::kNone) return 0;
  const auto* opened = call.session.Find<OpenedRadio>(handle, "BluetoothGetRadioInfo");
  const auto& bluetooth = call.session.machine.bluetooth;
  if (opened == nullptr || !bluetooth || opened->index >= bluetooth->radios.size())
    return kErrorInvalidHandle;
  if (info.size != sizeof info) return kRevisionMismatch;
  const BluetoothRadio& radio = bluetooth->radios[opened->index];
  if (radio.info_error != 0) return radio.info_error;
  info.address = radio.address;
  info.class_of_device = radio.class_of_device;
  info.manufacturer = static_cast<std::uint16_t>(radio.manufacturer);
  PutName(radio.name, info.name);
  return 0;
}

Handle BluetoothFindFirstDevice(const BluetoothSearchParameters& parameters, BluetoothDeviceInfo& info) {
  const auto& p = parameters;
  Entered call("BluetoothFindFirstDevice", p.size, p.return_authenticated, p.return_remembered,
               p.return_unknown, p.return_connected, p.issue_inquiry, int{p.timeout_multiplier}, info.size);
  if (simulator::IsRefused(call)) return nullptr;
  if (call.session.Find<OpenedRadio>(p.radio, "BluetoothFindFirstDevice") == nullptr) {
    return Refuse(kErrorInvalidHandle);
  }
  if (p.size != sizeof p || info.size != sizeof info) return Refuse(kRevisionMismatch);
  constexpr std::uint32_t kInquiryUnit = 1280;  // milliseconds
  auto& machine = call.session.machine;
  if (p.issue_inquiry != 0 && machine.clock) machine.clock->Advance(p.timeout_multiplier * kInquiryUnit);
  const auto& remotes = machine.bluetooth->remote_devices;
  const auto found = std::ranges::find_if(remotes, [&](const auto& remote) { return IsWanted(remote, p); });
  if (found == remotes.end()) return Refuse(kNoMoreItems);
  Fill(*found, info);
  if (call.fault == Fault::kUnterminated) SpoilName(info.name);
  return call.session.Open("BluetoothFindDeviceClose", FoundDevices{});
}

bool BluetoothFindDeviceClose(Handle find) {
  const Closing call("BluetoothFindDeviceClose");
  const bool was_open = call.session.Close(find, "BluetoothFindDeviceClose");
  return Succeed(was_open && !call.Fails() ? 0 : kErrorInvalidHandle);
}

}  // namespace velmora::os
