/// What a device class can do, and how a numbered request finds its class.
#pragma once

#include <cstdint>
#include <span>

#include "ostrine/common/answer.h"

namespace ostrine {

/// One device class: its number and plain functions that return whether they succeeded. A null function is an
/// operation that the class does not have; asking for it fails.
///
/// The functions may let an exception out: the caller of the class turns it into a failure.
struct DeviceClass {
  unsigned int number = 0;

  /// Prepares the class. `table` is null or the address of a null pointer; a class with a device table gives
  /// it there, allocated with malloc.
  bool (*init)(void** table) = nullptr;

  /// Answers `information_id` of the class (`device` null) or of one device.
  bool (*query)(void* device, unsigned int information_id, Answer& answer) = nullptr;

  /// Takes `value` as `information_id`; `value` is never empty.
  bool (*set)(void* device, unsigned int information_id, std::span<const std::uint8_t> value) = nullptr;

  /// Opens and closes the device of a device record, which is never null.
  bool (*open)(void* device_record) = nullptr;
  bool (*close)(void* device_record) = nullptr;
};

/// `init` of a class that has neither a table nor anything to prepare.
bool NothingToPrepare(void** table);

/// A set of classes, behind which no exception and no unchecked argument is left. The members take what the
/// library's exported functions take and return 1 for success, 0 for failure.
class DeviceClasses {
 public:
  explicit constexpr DeviceClasses(std::span<const DeviceClass> classes) : classes_(classes) {}

  int Init(unsigned int device_class, void** table) const noexcept;
  int Query(unsigned int device_class, void* device, unsigned int information_id, void* buffer,
            unsigned int buffer_size, unsigned int* returned_size) const noexcept;
  int Set(unsigned int device_class, void* device, unsigned int information_id, const void* buffer,
          unsigned int buffer_size, unsigned int* returned_size) const noexcept;
  int Open(unsigned int device_class, void* device_record) const noexcept;
  int Close(unsigned int device_class, void* device_record) const noexcept;

 private:
  std::span<const DeviceClass> classes_;
};

}  // namespace ostrine
