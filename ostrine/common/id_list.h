/// Looking up names in the text files in which the numbers of PCI and USB devices are registered.
#pragma once

#include <cstdint>
#include <string_view>

namespace ostrine {

struct ListedNumbers {
  std::uint16_t vendor = 0;
  std::uint16_t device = 0;
  std::uint16_t subsystem_vendor = 0;  ///< 0: none, as for USB
  std::uint16_t subsystem_device = 0;
};

/// Names within the list's text; empty where the list has none.
struct ListedNames {
  std::string_view vendor;
  std::string_view device;
  std::string_view subsystem;
};

/// Finds the numbers in `list`:
///
///     8086  Vendor
///     	51f0  Device
///     		8086 0094  Subsystem
///
/// Lines that begin with '#' and sections of another kind ("C 02 ...") are passed over, as is every line that
/// has another form. Linear in the list; nothing is copied.
ListedNames FindListedNames(std::string_view list, const ListedNumbers& numbers) noexcept;

}  // namespace ostrine
