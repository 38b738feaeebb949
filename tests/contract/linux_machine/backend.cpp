/// The machine that the test runs on as a backend of the contract tests. Its devices are those that the
/// kernel has enumerated; none of them is touched.
#include "tests/contract/backend.h"

#include <unistd.h>

#include <filesystem>

#include "ostrine/linux/describe.h"
#include "ostrine/linux/device_query.h"
#include "ostrine/linux/driver.h"
#include "platform/os/last_error.h"

namespace contract {
namespace {

class ThisMachine : public Backend {
 public:
  bool IsMadeUp() const override { return false; }

  std::vector<Device> DevicesOf(const GUID& setup_class) const override {
    const ostrine::Path root("/");
    ostrine::NameDatabase names(root);
    std::vector<Device> devices;
    for (const auto& device : ostrine::ListDevices(root, ostrine::SetupClassOf(setup_class))) {
      devices.push_back({.setup_class = setup_class,
                         .hardware_ids = device.ids.hardware,
                         .description = ostrine::Describe(device, names),
                         .inf = L"",
                         .instance_id = ostrine::InstanceId(device),
                         .problem_code = ostrine::ProblemCode(root, device)});
    }
    return devices;
  }
  std::optional<std::vector<std::wstring>> UnknownDevices() const override { return std::nullopt; }
  std::optional<std::vector<FailingDriver>> FailingDrivers() const override { return std::nullopt; }
  std::optional<Device> RemovableDevice() const override { return std::nullopt; }
  void Rescan() override {}

  std::vector<Selection> Selections() const override {
    const std::wstring number = std::to_wstring(getpid());
    const std::wstring self = L" FROM Win32_Process WHERE ProcessId=" + number;
    const auto program = std::filesystem::read_symlink("/proc/self/exe");
    return {{L"SELECT Caption" + self, L"Caption", program.filename().wstring(), 0},
            {L"SELECT ExecutablePath" + self, L"ExecutablePath", program.wstring(), 0},
            {L"SELECT ProcessId" + self, L"ProcessId", number, static_cast<unsigned int>(getpid())},
            {L"SELECT NoSuchProperty" + self, L"NoSuchProperty", L"", 0}};
  }
  std::optional<FirmwareCall> AnsweredFirmwareCall() const override { return std::nullopt; }
  std::uint64_t RefusedFirmwareInput() const override { return 0x0101; }
  std::optional<int> OpenConnections() const override { return std::nullopt; }
  std::uint32_t LastError() const override { return velmora::os::LastError(); }
};

}  // namespace

std::unique_ptr<Backend> Backend::SetUp() { return std::make_unique<ThisMachine>(); }

}  // namespace contract
