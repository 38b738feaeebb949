/// Looking up names in the text files in which the numbers of PCI and USB devices are registered.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
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

/// A list that is not in memory as a whole.
class ListInPieces {
 public:
  ListInPieces() = default;
  ListInPieces(const ListInPieces&) = delete;
  ListInPieces& operator=(const ListInPieces&) = delete;
  virtual ~ListInPieces() = default;

  virtual std::size_t Size() const = 0;

  /// The list's text from `offset` on, at least up to the end of the line there; as good as until the next
  /// call. Empty at the end of the list, and where it cannot be read.
  virtual std::string_view From(std::size_t offset) = 0;
};

/// ListedNames that outlive their list.
struct FoundNames {
  std::string vendor;
  std::string device;
  std::string subsystem;
};

/// What FindListedNames finds, of a list in which each vendor stands once and each device of a vendor once.
/// Such lists are sorted as a rule: a few pieces of one are looked at. Where the vendor is not found that way
/// there is no answer; the list may still have it, if it is not sorted.
std::optional<FoundNames> FindNamesByHalves(ListInPieces& list, const ListedNumbers& numbers);

}  // namespace ostrine
