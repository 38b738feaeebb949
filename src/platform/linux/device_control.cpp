#include "platform/linux/device_control.h"

#include <memory>
#include <string>
#include <utility>

#include "platform/case_folding.h"
#include "platform/linux/bluetooth_reset.h"
#include "platform/linux/handle_object.h"
#include "platform/os/last_error.h"

namespace velmora::os {
namespace {

constexpr const wchar_t* kResetDriver = L"\\\\.\\IBTRSTD";
constexpr std::uint32_t kResetRequest = 0x002211FC;
constexpr std::uint32_t kResetInputSize = 4;

/// The reset driver, opened for one adapter.
class ResetDevice : public KernelObject {
 public:
  ResetDevice(std::filesystem::path root, std::string adapter) noexcept
      : root_(std::move(root)), adapter_(std::move(adapter)) {}
  std::uint32_t Reset() const { return ResetBluetoothAdapter(root_, adapter_); }

 private:
  std::filesystem::path root_;
  std::string adapter_;
};

}  // namespace

Handle OpenDevice(const std::filesystem::path& root, const wchar_t* name) {
  const bool is_reset_driver = name != nullptr && EqualIgnoringCase(name, kResetDriver);
  auto adapter = is_reset_driver ? FirstBluetoothAdapter(root) : std::nullopt;
  if (adapter) return HandleOf(std::make_unique<ResetDevice>(root, std::move(*adapter)));
  SetLastError(kErrorFileNotFound);
  return InvalidHandle();
}

Handle CreateFileW(const wchar_t* name, std::uint32_t /*access*/, std::uint32_t /*share_mode*/,
                   std::uint32_t /*disposition*/, std::uint32_t /*flags*/) {
  return OpenDevice("/", name);
}

bool DeviceIoControl(Handle handle, std::uint32_t code, const void* input, std::uint32_t input_size,
                     void* /*output*/, std::uint32_t /*output_size*/, std::uint32_t* returned_size) {
  const auto* device = ObjectOf<ResetDevice>(handle);
  std::uint32_t error = 0;
  if (device == nullptr) {
    error = kErrorInvalidHandle;
  } else if (code != kResetRequest) {
    error = kErrorNotSupported;
  } else if (input == nullptr || input_size != kResetInputSize) {
    error = kErrorInvalidParameter;
  } else {
    error = device->Reset();
  }
  if (returned_size != nullptr) *returned_size = 0;
  if (error != 0) SetLastError(error);
  return error == 0;
}

}  // namespace velmora::os
