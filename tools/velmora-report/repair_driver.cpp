#include "velmora-report/repair_driver.h"

#include <velmora/devicedriver.h>

#include <algorithm>

#include "velmora-report/device_list.h"
#include "velmora-report/failing_drivers_section.h"
#include "velmora-report/options.h"
#include "velmora-report/problem_text.h"
#include "velmora-report/repair_guard.h"
#include "velmora-report/utf8.h"

namespace report {
namespace {

constexpr std::string_view kKind = "--kind";
constexpr std::string_view kId = "--id";
constexpr std::string_view kForce = "--force";
constexpr std::string_view kDeviceOptions[] = {kKind, kId, kForce};

/// What the repairs of one device have in common, and how each is told of.
struct DeviceAction {
  std::string_view name;
  std::string_view would;  ///< after "Would "
  std::string_view done;   ///< the sentence of success
  unsigned long (CDeviceDriver::*run)(std::wstring, stDEVICE_DRIVER_TYPE);
};

constexpr DeviceAction kReset{
    .name = "reset",
    .would = "uninstall the device and have the hardware rescanned, up to ten times, until the device works",
    .done = "The device works.",
    .run = &CDeviceDriver::ResetDeviceDriver};
constexpr DeviceAction kUninstall{.name = "uninstall",
                                  .would = "uninstall the device, so that the next rescan installs it afresh",
                                  .done = "The device is uninstalled; the next rescan installs it afresh.",
                                  .run = &CDeviceDriver::UnInstallDeviceDriver};

std::string KindNames(bool with_usb) {
  std::string names;
  for (const DeviceClass& device_class : DeviceClasses()) {
    if (device_class.kind.empty() || (device_class.type == emDEVICE_USB && !with_usb)) continue;
    names += (names.empty() ? "" : ", ") + std::string(device_class.kind);
  }
  return names;
}

/// The class of the kind that was given, which the action must be there for.
const DeviceClass& ClassFor(const RepairArguments& arguments, bool takes_usb) {
  const std::string& kind = arguments.Required(kKind);
  const DeviceClass* const found = FindKind(kind);
  if (found == nullptr || (found->type == emDEVICE_USB && !takes_usb))
    throw UsageError("no device of the kind \"" + kind + "\" can be repaired so, only " +
                     KindNames(takes_usb));
  return *found;
}

/// Whether another display adapter than `device` works, be it one of the same hardware ID.
bool AnotherDisplayWorks(const DeviceClass& displays, const ListedDevice& device) {
  return std::ranges::any_of(ListDevices(displays), [&](const ListedDevice& listed) {
    const bool is_another = listed.hardware_id != device.hardware_id || listed.count > 1;
    return is_another && listed.problem_code == 0;
  });
}

std::string WhyNotToRepair(const DeviceClass& device_class, const ListedDevice& device) {
  const bool is_display = device_class.type == emDEVICE_DISPLAY;
  return WhyNotToRemove({.place = PlaceOf(device.instance_id),
                         .is_only_working_display = is_display && !AnotherDisplayWorks(device_class, device),
                         .may_carry_disks = device_class.type == emDEVICE_USB},
                        ReadLifelines());
}

/// The name by which the device has to be called to be taken out against advice.
const std::string& NameToForce(const ListedDevice& device) {
  return device.description.empty() ? device.hardware_id : device.description;
}

bool IsForced(const RepairArguments& arguments, const ListedDevice& device) {
  const std::string name = arguments.Optional(kForce);
  return !name.empty() && (name == device.description || name == device.hardware_id);
}

Value ProblemCodeValue(std::uint32_t code) { return std::uint64_t{code}; }

Section SectionFor(const DeviceAction& action, const DeviceClass& device_class, const std::string& id) {
  return {.key = "repair",
          .title = "Driver repair",
          .rows = {{"action", "Repair", std::string(action.name)},
                   {"kind", "Kind of device", std::string(device_class.kind)},
                   {"hardware_id", "Hardware ID", id}}};
}

/// Tells of the device before anything is done.
void AppendDevice(const ListedDevice& device, Rows& rows) {
  rows.push_back({"description", "Name", NameToForce(device)});
  rows.push_back({"instance_id", "Instance ID", device.instance_id});
  rows.push_back({"problem_code_before", "Problem code before", ProblemCodeValue(device.problem_code)});
  rows.push_back({"problem_before", "State before", ProblemText(device.problem_code)});
}

RepairOutcome Refuse(Section section, const std::string& reason, const ListedDevice& device) {
  section.verdict = "Refused: " + reason + ". Nothing has been done; --force \"" + NameToForce(device) +
                    "\" takes that upon you.";
  section.rows.push_back({"done", "Done", false});
  section.rows.push_back({"refused_because", "Refused because", reason});
  return {std::move(section), kRefused};
}

RepairOutcome Act(const DeviceAction& action, const DeviceClass& device_class, const std::string& id,
                  Section section) {
  const auto error =
      static_cast<std::uint32_t>((CDeviceDriver().*action.run)(FromUtf8(id), device_class.type));
  const std::uint32_t code = ReadProblemCode(device_class, id);
  section.rows.push_back({"problem_code_after", "Problem code after", ProblemCodeValue(code)});
  section.rows.push_back({"problem_after", "State after", ProblemText(code)});
  section.rows.push_back({"done", "Done", error == 0});
  section.rows.push_back({"result", "Result", std::uint64_t{error}});
  section.verdict =
      error == 0 ? std::string(action.done)
                 : "The repair failed, result " + std::to_string(error) + ": " + RepairErrorText(error) + ".";
  return {std::move(section), error == 0 ? kDone : kFailed};
}

RepairOutcome RepairDevice(const DeviceAction& action, const RepairArguments& arguments, bool takes_usb) {
  const DeviceClass& device_class = ClassFor(arguments, takes_usb);
  const std::string& id = arguments.Required(kId);
  Section section = SectionFor(action, device_class, id);
  const auto device = FindDevice(device_class, id);
  if (!device) {
    section.verdict = "There is no device of this kind with this hardware ID. Nothing has been done.";
    section.rows.push_back({"done", "Done", false});
    return {std::move(section), kFailed};
  }
  AppendDevice(*device, section.rows);
  const std::string reason = WhyNotToRepair(device_class, *device);
  if (!reason.empty() && !IsForced(arguments, *device)) return Refuse(std::move(section), reason, *device);
  if (arguments.IsConfirmed()) return Act(action, device_class, id, std::move(section));
  section.verdict = "Would " + std::string(action.would) + ". Nothing has been done; --yes does it.";
  section.rows.push_back({"done", "Done", false});
  return {std::move(section), kDone};
}

RepairOutcome Reset(const RepairArguments& arguments) { return RepairDevice(kReset, arguments, false); }
RepairOutcome Uninstall(const RepairArguments& arguments) {
  return RepairDevice(kUninstall, arguments, true);
}

RepairOutcome Rescan(const RepairArguments& arguments) {
  List before = FailingDriversList("failing_before", "Failing before: device");
  const std::size_t count_before = before.items.size();
  Section section{.key = "repair",
                  .title = "Driver repair",
                  .rows = {{"action", "Repair", std::string("rescan")},
                           {"count_before", "Failing devices before", std::uint64_t{count_before}},
                           {"done", "Done", arguments.IsConfirmed()}},
                  .lists = {std::move(before)}};
  if (!arguments.IsConfirmed()) {
    section.verdict =
        "Would have the system look for hardware that it does not know. Nothing has been done; --yes does "
        "it.";
    return {std::move(section), kDone};
  }
  CDeviceDriver().ScanForHardwareChange();
  List after = FailingDriversList("failing_after", "Failing after: device");
  const std::size_t count_after = after.items.size();
  section.rows.push_back({"count_after", "Failing devices after", std::uint64_t{count_after}});
  section.lists.push_back(std::move(after));
  section.verdict = "The system was asked to look for hardware: " + std::to_string(count_before) +
                    " failed before, " + std::to_string(count_after) +
                    " fail now. It may still be at it; the report tells later.";
  return {std::move(section), kDone};
}

}  // namespace

constexpr RepairVerb kResetVerb{
    .name = "reset",
    .usage = "--kind KIND --id HARDWARE_ID [--force NAME] [--yes]",
    .summary =
        "uninstall a wireless, bluetooth, fingerprint, audio or display device, and\n"
        "                  wait until it works; --force names one that the machine needs",
    .options = kDeviceOptions,
    .run = Reset};

constexpr RepairVerb kUninstallVerb{.name = "uninstall",
                                    .usage = "--kind KIND --id HARDWARE_ID [--force NAME] [--yes]",
                                    .summary = "uninstall such a device, or a usb device",
                                    .options = kDeviceOptions,
                                    .run = Uninstall};

constexpr RepairVerb kRescanVerb{.name = "rescan",
                                 .usage = "[--yes]",
                                 .summary = "have the system look for hardware that it does not know",
                                 .run = Rescan};

}  // namespace report
