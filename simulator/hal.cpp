/// The five functions of the hardware-abstraction contract over a machine.
#include "platform/ostrine/hal.h"

#include <algorithm>
#include <array>
#include <span>

#include "simulator/device_class.h"
#include "simulator/session.h"

using simulator::DeviceClassScript;
using simulator::Entered;
using simulator::Fault;
using simulator::Session;
using velmora::hal::DeviceRecord;

namespace {

const DeviceClassScript* FindScript(unsigned int device_class) {
  static const std::array kScripts{&simulator::kBaseboardScript};
  const auto found = std::ranges::find_if(kScripts, [=](const DeviceClassScript* script) {
    return static_cast<unsigned int>(script->device_class) == device_class;
  });
  return found == kScripts.end() ? nullptr : *found;
}

/// Reports a call that nothing was scripted for; it fails.
int Unscripted(Entered& call, const char* function, unsigned int device_class) {
  call.session.ReportUnscripted(function, "device class " + std::to_string(device_class));
  return 0;
}

/// Lets a query go wrong as the test wants it.
int Spoil(Fault fault, std::span<unsigned char> buffer) {
  if (fault == Fault::kUnterminated) std::ranges::fill(buffer, static_cast<unsigned char>('A'));
  return fault == Fault::kFail ? 0 : 1;
}

}  // namespace

int HalInit(unsigned int device_class, void** table) {
  const Entered call("HalInit", device_class, static_cast<const void*>(table));
  if (table != nullptr && *table != nullptr) {
    simulator::ReportProblem("HalInit was given a table pointer that is not null");
  }
  if (call.Fails()) return 0;
  if (table == nullptr || call.fault == Fault::kEmpty) return 1;
  const auto* script = FindScript(device_class);
  if (script != nullptr && script->make_table != nullptr) *table = script->make_table(call.session.machine);
  return 1;
}

int HalQueryInformation(unsigned int device_class, void* device, unsigned int information_id, void* buffer,
                        unsigned int buffer_size, unsigned int* returned_size) {
  Entered call("HalQueryInformation", device_class, static_cast<const void*>(device), information_id,
               buffer_size);
  const std::span bytes(static_cast<unsigned char*>(buffer), buffer_size);
  if (call.fault != Fault::kNone) return Spoil(call.fault, bytes);
  if (returned_size == nullptr || *returned_size != 0) {
    simulator::ReportProblem("HalQueryInformation was given no zeroed count");
    return 0;
  }
  if (const auto& answer = call.session.query_answer) {
    const auto result = answer({device_class, device, information_id, bytes, *returned_size});
    if (result) return *result;
  }
  const auto* script = FindScript(device_class);
  const auto information = script == nullptr
                               ? std::nullopt
                               : script->query({call.session.machine, device, information_id, buffer_size});
  if (!information) return Unscripted(call, "HalQueryInformation", device_class);
  return simulator::WriteInformation(*information, bytes, returned_size) ? 1 : 0;
}

int HalSetInformation(unsigned int device_class, void* device, unsigned int information_id, void* buffer,
                      unsigned int buffer_size, unsigned int* /*returned_size*/) {
  Entered call("HalSetInformation", device_class, static_cast<const void*>(device), information_id,
               buffer_size);
  if (call.fault != Fault::kNone) return call.Fails() ? 0 : 1;
  const auto* script = FindScript(device_class);
  if (script == nullptr || script->set == nullptr) return Unscripted(call, "HalSetInformation", device_class);
  const std::span bytes(static_cast<const unsigned char*>(buffer), buffer_size);
  return script->set(call.session.machine, information_id, bytes) ? 1 : 0;
}

int HalOpenDevice(unsigned int device_class, void* device_record) {
  auto& record = *static_cast<DeviceRecord*>(device_record);
  const Entered call("HalOpenDevice", device_class, record.number);
  if (record.handle != 0 || record.zero != 0) {
    simulator::ReportProblem("HalOpenDevice was given a record that is not zeroed");
  }
  if (call.Fails()) return 0;
  record.handle = call.session.OpenHandle();
  return 1;
}

int HalCloseDevice(unsigned int device_class, void* device_record) {
  const auto& record = *static_cast<const DeviceRecord*>(device_record);
  Session::Current().CloseHandle(record.handle, "HalCloseDevice");
  const Entered call("HalCloseDevice", device_class, record.number);
  return call.Fails() ? 0 : 1;
}
