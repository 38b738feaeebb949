/// The five functions of the hardware-abstraction contract over a machine.
#include "platform/ostrine/hal.h"

#include <algorithm>
#include <array>
#include <optional>
#include <ranges>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "simulator/device_class.h"
#include "simulator/session.h"

using simulator::DeviceClassScript;
using simulator::Entered;
using simulator::Fault;
using simulator::Session;
using velmora::hal::DeviceRecord;

namespace {

const DeviceClassScript* FindScript(unsigned int device_class) {
  static const std::array kScripts{&simulator::kAudioScript,   &simulator::kBaseboardScript,
                                   &simulator::kBatteryScript, &simulator::kCpuScript,
                                   &simulator::kDiskScript,    &simulator::kFailingDriverScript,
                                   &simulator::kMemoryScript,  &simulator::kVideoScript};
  const auto found = std::ranges::find_if(kScripts, [=](const DeviceClassScript* script) {
    return static_cast<unsigned int>(script->device_class) == device_class;
  });
  return found == kScripts.end() ? nullptr : *found;
}

/// What the device argument of a query means. A pointer is compared with the tables that were handed out and
/// read only where it can be nothing but a device record.
struct DeviceArgument {
  std::string shown;
  std::optional<std::uint32_t> number;  ///< nothing: the class as a whole
  bool is_valid = true;
};

DeviceArgument FindDevice(const Session& session, const DeviceClassScript* script, const void* device) {
  if (device == nullptr || script == nullptr) return {.shown = device == nullptr ? "null" : "pointer"};
  if (script->opens != nullptr) {
    const std::uint32_t number = static_cast<const DeviceRecord*>(device)->number;
    return {.shown = "record " + std::to_string(number),
            .number = number,
            .is_valid = script->opens(session.machine, number)};
  }
  for (const auto& table : session.tables | std::views::reverse) {
    if (table.begin == device) return {.shown = "table"};
    const auto position = table.EntryAt(device);
    if (!position) continue;
    const auto number = table.numbers.empty() ? *position : table.numbers.at(*position);
    return {.shown = "entry " + std::to_string(*position), .number = number};
  }
  return {.shown = "pointer", .is_valid = false};
}

/// Makes the table of a class and remembers where it lies.
void* MakeTable(Session& session, const DeviceClassScript& script) {
  const std::size_t count = script.count_entries(session.machine);
  void* table = simulator::MakeTable(count, script.entry_size);
  auto numbers = script.number_entries == nullptr ? std::vector<std::uint32_t>()
                                                  : script.number_entries(session.machine);
  session.tables.push_back({static_cast<const char*>(table), count, script.entry_size, std::move(numbers)});
  return table;
}

/// Reports a call that nothing was scripted for; it fails.
int UnscriptedClass(Entered& call, const char* function, unsigned int device_class) {
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
    return 0;
  }
  if (call.Fails()) return 0;
  if (table == nullptr || call.fault == Fault::kEmpty) return 1;
  const auto* script = FindScript(device_class);
  if (script != nullptr && script->count_entries != nullptr) *table = MakeTable(call.session, *script);
  const auto& answer = call.session.init_answer;
  return answer ? answer(device_class, *table) : 1;
}

int HalQueryInformation(unsigned int device_class, void* device, unsigned int information_id, void* buffer,
                        unsigned int buffer_size, unsigned int* returned_size) {
  const simulator::InsideSimulator inside;
  const auto* script = FindScript(device_class);
  const auto argument = FindDevice(Session::Current(), script, device);
  Entered call("HalQueryInformation", device_class, argument.shown, information_id, buffer_size);
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
  if (!argument.is_valid) return 0;
  const auto information =
      script == nullptr ? std::nullopt
                        : script->query({call.session.machine, argument.number, information_id, buffer_size});
  if (!information) return UnscriptedClass(call, "HalQueryInformation", device_class);
  return simulator::WriteInformation(*information, bytes, returned_size) ? 1 : 0;
}

int HalSetInformation(unsigned int device_class, void* device, unsigned int information_id, void* buffer,
                      unsigned int buffer_size, unsigned int* /*returned_size*/) {
  Entered call("HalSetInformation", device_class, static_cast<const void*>(device), information_id,
               buffer_size);
  if (call.fault != Fault::kNone) return call.Fails() ? 0 : 1;
  const auto* script = FindScript(device_class);
  if (script == nullptr || script->set == nullptr)
    return UnscriptedClass(call, "HalSetInformation", device_class);
  const std::span bytes(static_cast<const unsigned char*>(buffer), buffer_size);
  return script->set(call.session.machine, information_id, bytes) ? 1 : 0;
}

int HalOpenDevice(unsigned int device_class, void* device_record) {
  auto& record = *static_cast<DeviceRecord*>(device_record);
  Entered call("HalOpenDevice", device_class, record.number);
  if (record.handle != 0 || record.zero != 0) {
    simulator::ReportProblem("HalOpenDevice was given a record that is not zeroed");
  }
  const auto* script = FindScript(device_class);
  if (script == nullptr || script->opens == nullptr)
    return UnscriptedClass(call, "HalOpenDevice", device_class);
  if (call.Fails() || !script->opens(call.session.machine, record.number)) return 0;
  record.handle = call.session.OpenHandle();
  return 1;
}

int HalCloseDevice(unsigned int device_class, void* device_record) {
  const auto& record = *static_cast<const DeviceRecord*>(device_record);
  Session::Current().CloseHandle(record.handle, "HalCloseDevice");
  const Entered call("HalCloseDevice", device_class, record.number);
  return call.Fails() ? 0 : 1;
}
