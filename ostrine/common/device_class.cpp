#include "ostrine/common/device_class.h"

#include <algorithm>

namespace ostrine {
namespace {

/// Runs `operation` of the class with this number, a pointer to one of its functions, with `arguments`.
template <typename Operation, typename... Arguments>
int Run(std::span<const DeviceClass> classes, unsigned int number, Operation operation,
        Arguments&&... arguments) noexcept {
  const auto found = std::ranges::find(classes, number, &DeviceClass::number);
  if (found == classes.end()) return 0;
  const auto function = (*found).*operation;
  if (function == nullptr) return 0;
  try {
    return function(arguments...) ? 1 : 0;
  } catch (...) {
    return 0;
  }
}

}  // namespace

bool NothingToPrepare(void** /*table*/) { return true; }

int DeviceClasses::Init(unsigned int device_class, void** table) const noexcept {
  return Run(classes_, device_class, &DeviceClass::init, table);
}

int DeviceClasses::Query(unsigned int device_class, void* device, unsigned int information_id, void* buffer,
                         unsigned int buffer_size, unsigned int* returned_size) const noexcept {
  Answer answer(buffer, buffer_size, returned_size);
  if (answer.Size() == 0) return 0;
  return Run(classes_, device_class, &DeviceClass::query, device, information_id, answer);
}

int DeviceClasses::Set(unsigned int device_class, void* device, unsigned int information_id,
                       const void* buffer, unsigned int buffer_size,
                       unsigned int* returned_size) const noexcept {
  if (buffer == nullptr || buffer_size == 0) return 0;
  const std::span value(static_cast<const std::uint8_t*>(buffer), buffer_size);
  const int succeeded = Run(classes_, device_class, &DeviceClass::set, device, information_id, value);
  if (succeeded != 0 && returned_size != nullptr) *returned_size = buffer_size;
  return succeeded;
}

int DeviceClasses::Open(unsigned int device_class, void* device_record) const noexcept {
  return device_record == nullptr ? 0 : Run(classes_, device_class, &DeviceClass::open, device_record);
}

int DeviceClasses::Close(unsigned int device_class, void* device_record) const noexcept {
  return device_record == nullptr ? 0 : Run(classes_, device_class, &DeviceClass::close, device_record);
}

}  // namespace ostrine
