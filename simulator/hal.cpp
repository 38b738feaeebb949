/// The five functions of the hardware-abstraction contract over a machine.
#include "platform/ostrine/hal.h"

#include <algorithm>
#include <span>

#include "platform/ostrine/device_record.h"
#include "simulator/information.h"
#include "simulator/session.h"

using simulator::Entered;
using simulator::Fault;
using simulator::Information;
using simulator::Machine;
using simulator::Session;
using velmora::hal::DeviceClass;
using velmora::hal::DeviceRecord;

namespace {

std::optional<Information> Find(const Machine& machine, unsigned int device_class,
                                unsigned int information_id) {
  switch (static_cast<DeviceClass>(device_class)) {
    case DeviceClass::kBaseboard:
      return simulator::BaseboardInformation(machine, information_id);
    default:
      return std::nullopt;
  }
}

/// Lets a query go wrong as the test wants it.
int Spoil(Fault fault, std::span<unsigned char> buffer) {
  if (fault == Fault::kUnterminated) std::ranges::fill(buffer, static_cast<unsigned char>('A'));
  return fault == Fault::kFail ? 0 : 1;
}

}  // namespace

int HalInit(unsigned int device_class, void** table) {
  const Entered call("HalInit", device_class, static_cast<const void*>(table));
  return call.Fails() ? 0 : 1;
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
  const auto information = Find(call.session.machine, device_class, information_id);
  if (!information) {
    call.session.ReportUnscripted("HalQueryInformation", "device class " + std::to_string(device_class));
    return 0;
  }
  return WriteInformation(*information, bytes, returned_size) ? 1 : 0;
}

int HalSetInformation(unsigned int device_class, void* device, unsigned int information_id, void* /*buffer*/,
                      unsigned int buffer_size, unsigned int* /*returned_size*/) {
  Entered call("HalSetInformation", device_class, static_cast<const void*>(device), information_id,
               buffer_size);
  if (call.fault != Fault::kNone) return call.Fails() ? 0 : 1;
  call.session.ReportUnscripted("HalSetInformation", "device class " + std::to_string(device_class));
  return 0;
}

int HalOpenDevice(unsigned int device_class, void* device_record) {
  auto& record = *static_cast<DeviceRecord*>(device_record);
  Entered call("HalOpenDevice", device_class, record.number);
  if (record.handle != 0 || record.zero != 0) {
    simulator::ReportProblem("HalOpenDevice was given a record that is not zeroed");
  }
  if (call.Fails()) return 0;
  record.handle = call.session.OpenHandle();
  return 1;
}

int HalCloseDevice(unsigned int device_class, void* device_record) {
  auto& record = *static_cast<DeviceRecord*>(device_record);
  Session::Current().CloseHandle(record.handle, "HalCloseDevice");
  const Entered call("HalCloseDevice", device_class, record.number);
  return call.Fails() ? 0 : 1;
}
