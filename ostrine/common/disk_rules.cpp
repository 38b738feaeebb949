#include "ostrine/common/disk_rules.h"

#include <algorithm>
#include <array>
#include <limits>

namespace ostrine {
namespace {

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool EqualWithoutCase(std::string_view left, std::string_view right) {
  return std::equal(left.begin(), left.end(), right.begin(), right.end(),
                    [](char a, char b) { return Lower(a) == Lower(b); });
}

bool NamesNobody(std::string_view vendor) {
  constexpr std::array kBuses{"ATA", "NVMe", "USB"};
  return vendor.empty() || vendor.starts_with("0x") ||
         std::any_of(kBuses.begin(), kBuses.end(), [&](const char* bus) { return vendor == bus; });
}

}  // namespace

DiskMedia ChooseDiskMedia(const DiskTraits& traits) noexcept {
  if (traits.is_optical) return DiskMedia::kOptical;
  if (traits.is_image) return DiskMedia::kImage;
  const bool may_leave = traits.has_removable_medium || traits.is_on_usb || traits.is_memory_card;
  return may_leave ? DiskMedia::kRemovable : DiskMedia::kFixed;
}

std::string_view DiskMediaText(DiskMedia media) noexcept {
  switch (media) {
    case DiskMedia::kFixed:
      return "Fixed hard disk media";
    case DiskMedia::kRemovable:
      return "Removable Media";
    case DiskMedia::kOptical:
      return "CD-ROM";
    case DiskMedia::kImage:
      break;
  }
  return "Disk image";
}

std::string CleanDiskText(std::string_view text) {
  std::string clean(text.substr(0, text.find('\0')));
  std::erase_if(clean, [](char c) { return c < ' ' || c > '~'; });
  clean.erase(clean.find_last_not_of(' ') + 1);
  clean.erase(0, clean.find_first_not_of(' '));
  return clean;
}

std::string DiskCaption(std::string_view vendor, std::string_view model) {
  if (model.empty()) return {};
  const bool repeats = EqualWithoutCase(model.substr(0, vendor.size()), vendor);
  if (repeats || NamesNobody(vendor)) return std::string(model);
  return std::string(vendor).append(" ").append(model);
}

std::optional<std::uint64_t> BytesOfSectors(std::uint64_t sectors) noexcept {
  constexpr std::uint64_t kSector = 512;
  if (sectors > std::numeric_limits<std::uint64_t>::max() / kSector) return std::nullopt;
  return sectors * kSector;
}

std::uint64_t WholeMegabytes(std::uint64_t bytes) noexcept { return bytes / 1'000'000; }

std::uint64_t ShareOf(std::uint64_t bytes, std::uint64_t part, std::uint64_t whole) noexcept {
  if (part >= whole) return whole == 0 ? 0 : bytes;
  // The product has up to 128 bits: it is divided as it grows, one bit of `part` after the other, from the
  // highest. `quotient` and `remainder` are those of bytes times the bits so far, divided by `whole`.
  std::uint64_t quotient = 0;
  std::uint64_t remainder = 0;
  const auto add = [&](std::uint64_t more_remainder, std::uint64_t more_quotient) {
    quotient += more_quotient;
    const bool carries = remainder >= whole - more_remainder;
    remainder = carries ? remainder - (whole - more_remainder) : remainder + more_remainder;
    quotient += carries ? 1 : 0;
  };
  const std::uint64_t once_quotient = bytes / whole;
  const std::uint64_t once_remainder = bytes % whole;
  for (std::uint64_t bit = std::uint64_t{1} << 63; bit != 0; bit >>= 1) {
    add(remainder, quotient);
    if ((part & bit) != 0) add(once_remainder, once_quotient);
  }
  return quotient;
}

}  // namespace ostrine
