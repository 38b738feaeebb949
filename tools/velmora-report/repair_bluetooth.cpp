#include "velmora-report/repair_bluetooth.h"

#include <velmora/bluetooth.h>
#include <velmora/devicedriver.h>

#include <algorithm>
#include <chrono>
#include <thread>

#include "velmora-report/bluetooth_plan.h"
#include "velmora-report/device_list.h"
#include "velmora-report/problem_text.h"
#include "velmora-report/repair_guard.h"

namespace report {
namespace {

constexpr std::string_view kAddress = "--address";
constexpr std::string_view kForce = "--force";
constexpr std::string_view kOptions[] = {kAddress, kForce};

/// The USB device that the library would uninstall: the first that fails, devices being known by description.
std::optional<ListedDevice> FirstFailingUsbDevice() {
  constexpr std::uint32_t kDisabled = 22;
  const DeviceClass& usb = *FindKind("usb");
  const auto devices = ListByDescription(usb);
  const auto found = std::ranges::find_if(devices, [](const ListedDevice& device) {
    return device.problem_code != 0 && device.problem_code != kDisabled;
  });
  if (found == devices.end()) return std::nullopt;
  ListedDevice target = *found;
  // It is uninstalled by its hardware ID, which means the first device that has it.
  if (const auto removed = FindDevice(usb, target.hardware_id)) target.instance_id = removed->instance_id;
  return target;
}

/// Why the remedy is not to be used on this machine; empty when nothing speaks against it.
std::string WhyNot(BluetoothRemedy remedy, const std::optional<ListedDevice>& target) {
  if (remedy != BluetoothRemedy::kUsbRepair || !target) return {};
  return WhyNotToRemove({.place = PlaceOf(target->instance_id), .may_carry_disks = true}, ReadLifelines());
}

/// The name by which the device has to be called to be uninstalled against advice.
const std::string& NameToForce(const ListedDevice& device) {
  return device.description.empty() ? device.hardware_id : device.description;
}

bool IsForced(const RepairArguments& arguments, const ListedDevice& device) {
  const std::string name = arguments.Optional(kForce);
  return !name.empty() && (name == device.description || name == device.hardware_id);
}

/// Waits until an adapter is there, five seconds at most.
void AwaitAdapter() {
  constexpr int kLooks = 10;
  constexpr std::chrono::milliseconds kPause(500);
  for (int i = 0; i < kLooks && CBluetooth().GetHardwareID().empty(); ++i)
    std::this_thread::sleep_for(kPause);
}

/// Uses the remedy; what it gave, where it gives something.
Value Use(BluetoothRemedy remedy) {
  if (remedy == BluetoothRemedy::kUsbRepair) return std::uint64_t{CBluetooth().RepairInUSBDriver()};
  if (remedy == BluetoothRemedy::kRescan) {
    CDeviceDriver().ScanForHardwareChange();
    AwaitAdapter();
  }
  return Absent{};
}

/// All that would be done, after "Would "; empty when nothing would.
std::string Plan(BluetoothRemedy remedy, const std::string& address) {
  std::string intention = Intention(remedy);
  if (address.empty()) return intention;
  return (intention.empty() ? "" : intention + ", then ") + "switch the radio off and on";
}

/// Two sentences, of which the second may be empty.
std::string JoinedSentences(const std::string& first, const std::string& second) {
  return second.empty() ? first : first + " " + second;
}

/// What is told when nothing is done: `sentence`, and what would change that, which may be nothing.
RepairOutcome Tell(Section section, const std::string& sentence, const std::string& remark,
                   ExitStatus status) {
  section.rows.push_back({"done", "Done", false});
  section.verdict = sentence + " Nothing has been done" + (remark.empty() ? "" : "; " + remark) + ".";
  return {std::move(section), status};
}

/// Resets the radio and waits until the adapter is back; the system's error number.
std::uint64_t ResetRadio(const std::string& address, Rows& rows) {
  unsigned long error = 0;
  CBluetooth().RepairBtByReHard(address, error);
  if (error == 0) AwaitAdapter();
  rows.push_back({"radio_reset_error", "Error of the radio reset", std::uint64_t{error}});
  return error;
}

RepairOutcome RepairAdapter(BluetoothRemedy remedy, const std::string& address, Section section) {
  const Value result = Use(remedy);
  const std::uint64_t reset_error = address.empty() ? 0 : ResetRadio(address, section.rows);
  const BluetoothState after = ReadBluetoothState();
  const bool works = !after.hardware_id.empty() && after.problem_code == 0;
  const bool is_done = works && reset_error == 0;
  section.rows.push_back({"remedy_result", "Result of the USB repair", result});
  section.rows.push_back({"state_after", "State after", Sentence(after)});
  section.rows.push_back({"hardware_id_after", "Hardware ID after", TextValue(after.hardware_id)});
  section.rows.push_back({"finds_device", "Finds a remote device",
                          works ? Value(CBluetooth().IsFindBtDevice()) : Value(Absent{})});
  section.rows.push_back({"done", "Done", is_done});
  section.verdict = Sentence(after);
  if (reset_error != 0) {
    section.verdict += " Its radio could not be reset: error " + std::to_string(reset_error) + ".";
  }
  return {std::move(section), is_done ? kDone : kFailed};
}

RepairOutcome RepairBluetooth(const RepairArguments& arguments) {
  const BluetoothState before = ReadBluetoothState();
  const BluetoothRemedy remedy = RemedyFor(before);
  const std::string address = arguments.Optional(kAddress);
  const auto target = remedy == BluetoothRemedy::kUsbRepair ? FirstFailingUsbDevice() : std::nullopt;
  Section section{.key = "repair",
                  .title = "Bluetooth repair",
                  .rows = {{"action", "Repair", std::string("bluetooth")},
                           {"state_before", "State before", Sentence(before)},
                           {"hardware_id_before", "Hardware ID before", TextValue(before.hardware_id)}}};
  if (target) {
    section.rows.push_back({"usb_device", "USB device", target->description});
    section.rows.push_back({"usb_problem", "State of that device", ProblemText(target->problem_code)});
  }
  if (remedy == BluetoothRemedy::kUsbRepair && !target)
    return Tell(std::move(section), "The USB device that failed does so no more.", "", kFailed);
  const std::string plan = Plan(remedy, address);
  if (plan.empty()) {
    const ExitStatus status = remedy == BluetoothRemedy::kNotNeeded ? kDone : kFailed;
    return Tell(std::move(section), JoinedSentences(Sentence(before), Advice(remedy, before)), "", status);
  }
  const std::string reason = WhyNot(remedy, target);
  if (!reason.empty() && !IsForced(arguments, *target)) {
    section.rows.push_back({"refused_because", "Refused because", reason});
    const std::string remark = "--force \"" + NameToForce(*target) + "\" takes that upon you";
    return Tell(std::move(section), "Refused: " + reason + ".", remark, kRefused);
  }
  if (arguments.IsConfirmed()) return RepairAdapter(remedy, address, std::move(section));
  const std::string state = JoinedSentences(Sentence(before), Advice(remedy, before));
  return Tell(std::move(section), state + " Would " + plan + ".", "--yes does it", kDone);
}

}  // namespace

constexpr RepairVerb kBluetoothVerb{
    .name = "bluetooth",
    .usage = "[--address ADDRESS] [--force NAME] [--yes]",
    .summary =
        "bring a lost Bluetooth adapter back, and with its address reset its radio;\n"
        "                  --force names a USB device that the machine needs",
    .options = kOptions,
    .run = RepairBluetooth};

}  // namespace report
