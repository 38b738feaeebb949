#include "velmora-report/biometric_section.h"

#include <velmora/biometric.h>

#include "velmora-report/utf8.h"

namespace report {
namespace {

/// The problem code of a device that is known by this text; absent without one.
Value ProblemValue(const std::wstring& device, unsigned long problem) {
  if (device.empty()) return Absent{};
  return std::uint64_t{problem};
}

/// What is found and what of it does not work, for the sentence about all.
struct Health {
  bool any = false;
  std::string failing;

  void Add(const std::wstring& name, unsigned long problem) {
    if (name.empty()) return;
    any = true;
    if (problem == 0) return;
    failing += (failing.empty() ? "" : ", ") + ToUtf8(name) + " (problem " + std::to_string(problem) + ")";
  }

  std::string Verdict() const {
    if (!any) return "None of these devices was found.";
    return failing.empty() ? "All that were found work." : "Not working: " + failing + ".";
  }
};

}  // namespace

Section BiometricSection() {
  CBiometric devices;
  Health health;
  const auto reader_id = devices.GetHardwareID();
  const auto reader = devices.GetDeviceName();
  const unsigned long reader_problem = devices.GetErrorCode();
  health.Add(reader.empty() ? reader_id : reader, reader_problem);

  const auto engine = devices.GetMEIDesc();
  const unsigned long engine_problem = devices.GetSystemDeviceErrorCodeByDesc(engine);
  health.Add(engine, engine_problem);

  List controllers{.key = "serial_io", .item_title = "Serial IO controller"};
  for (const auto& description : devices.GetSerialIODesc()) {
    const unsigned long problem = devices.GetSystemDeviceErrorCodeByDesc(description);
    health.Add(description, problem);
    controllers.items.push_back({
        {"description", "Name", TextValue(description)},
        {"driver_version", "Driver version", TextValue(devices.GetSerialIODriverVersionByDesc(description))},
        {"problem_code", "Problem code", ProblemValue(description, problem)},
    });
  }
  return {
      .key = "biometric",
      .title = "Fingerprint reader and system devices",
      .verdict = health.Verdict(),
      .rows =
          {
              {"fingerprint", "Fingerprint reader", TextValue(reader)},
              {"fingerprint_manufacturer", "Reader's maker", TextValue(devices.GetManufacturer())},
              {"fingerprint_hardware_id", "Reader's hardware ID", TextValue(reader_id)},
              {"fingerprint_driver_version", "Reader's driver version",
               TextValue(devices.GetDriverVersion())},
              {"fingerprint_problem_code", "Reader's problem code", ProblemValue(reader_id, reader_problem)},
              {"management_engine", "Management engine", TextValue(engine)},
              {"management_engine_problem_code", "Engine's problem code",
               ProblemValue(engine, engine_problem)},
              {"software_guard_hardware_id", "Software guard (SGX)", TextValue(devices.GetSGXHardId())},
          },
      .lists = {std::move(controllers)},
  };
}

}  // namespace report
