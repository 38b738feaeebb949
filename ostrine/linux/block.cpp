#include "ostrine/linux/block.h"

#include <unistd.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <system_error>
#include <utility>

#include "ostrine/common/disk_descriptor.h"
#include "ostrine/common/disk_rules.h"
#include "ostrine/linux/file.h"

namespace ostrine {
namespace {

constexpr std::uint64_t kHandleMark = std::uint64_t{1} << 63;
constexpr std::string_view kAtaVendor = "ATA";  // as the kernel has it for what speaks ATA

std::string NumberText(const BlockNumber& number) {
  return std::to_string(number.major) + ':' + std::to_string(number.minor);
}

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

bool IsAllDigits(std::string_view text) {
  return !text.empty() && std::all_of(text.begin(), text.end(), IsDigit);
}

/// Whether `name` is `stem` with nothing but digits behind it.
bool IsNumbered(std::string_view name, std::string_view stem) {
  return name.starts_with(stem) && IsAllDigits(name.substr(stem.size()));
}

/// Reads the place out of where the kernel's link leads; the folders on the way are not looked at.
BlockPlace PlaceOfLink(const std::string& link) {
  const std::string target = LinkTarget(link);
  std::string_view rest = target;
  BlockPlace place;
  while (!rest.empty()) {
    const std::string_view part = rest.substr(0, rest.find('/'));
    rest.remove_prefix(std::min(part.size() + 1, rest.size()));
    if (IsNumbered(part, "usb")) place.is_on_usb = true;
    if (IsNumbered(part, "virtio")) place.is_on_virtio = true;
    place.parent = std::exchange(place.name, std::string(part));
  }
  return place;
}

std::string FolderOf(const Path& root, const BlockNumber& number) {
  return root.native() + "/sys/dev/block/" + NumberText(number);
}

/// The disk's folder, with the device behind it. What a disk that has gone does not tell is empty.
class Disk {
 public:
  Disk(const Path& root, const BlockNumber& number) : folder_(FolderOf(root, number)) {}

  std::string MediaType() const;
  std::string Caption() const;
  std::string SerialNumber() const;
  std::string Firmware() const;

 private:
  BlockPlace Place() const { return PlaceOfLink(folder_); }
  std::string Text(const char* attribute) const {
    return CleanDiskText(ReadAttribute((folder_ + '/' + attribute).c_str()).value_or(std::string()));
  }
  DiskIdentity AtaIdentity() const {
    const auto page = ReadBytes((folder_ + "/device/vpd_pg89").c_str(), kAttributeLimit);
    return page ? ParseAtaInformationPage(*page).value_or(DiskIdentity()) : DiskIdentity();
  }

  std::string folder_;
};

std::string Disk::MediaType() const {
  const BlockPlace place = Place();
  if (place.name.empty()) return {};
  const bool is_card = place.name.starts_with("mmcblk") && Text("device/type") != "MMC";
  const DiskTraits traits{.is_optical = IsNumbered(place.name, "sr"),
                          .is_memory_card = is_card,
                          .has_removable_medium = Text("removable") == "1",
                          .is_on_usb = place.is_on_usb};
  return std::string(DiskMediaText(ChooseDiskMedia(traits)));
}

std::string Disk::Caption() const {
  const std::string vendor = Text("device/vendor");
  if (vendor == kAtaVendor) {
    if (std::string model = AtaIdentity().model; !model.empty()) return model;
  }
  std::string caption = DiskCaption(vendor, Text("device/model"));
  if (caption.empty()) caption = Text("device/name");  // eMMC disks and memory cards
  if (caption.empty() && Place().is_on_virtio) caption = "Virtio disk";
  return caption;
}

std::string Disk::SerialNumber() const {
  // NVMe and eMMC have it with the device, virtio with the disk; SCSI and SATA in a page of their own.
  for (const char* const attribute : {"device/serial", "serial"}) {
    if (std::string serial = Text(attribute); !serial.empty()) return serial;
  }
  if (const auto page = ReadBytes((folder_ + "/device/vpd_pg80").c_str(), kAttributeLimit)) {
    if (std::string serial = ParseSerialNumberPage(*page).value_or(std::string()); !serial.empty()) {
      return serial;
    }
  }
  return AtaIdentity().serial;
}

std::string Disk::Firmware() const {
  for (const char* const attribute : {"device/firmware_rev", "device/fwrev"}) {
    if (std::string revision = Text(attribute); !revision.empty()) return revision;
  }
  if (Text("device/vendor") == kAtaVendor) {
    if (std::string revision = AtaIdentity().firmware; !revision.empty()) return revision;
  }
  return Text("device/rev");
}

std::string BlockFolder(const Path& root, const std::string& name) {
  return root.native() + "/sys/block/" + name;
}

/// Names of the block devices that may be disks, in the order of their numbers.
std::vector<std::string> NamesOfCandidates(const Path& root) {
  std::vector<std::string> names = EntryNames(root / "sys/block");
  std::erase_if(names, [](const std::string& name) { return !MayBeDisk(name); });
  return names;
}

bool HasDevice(const Path& root, const std::string& name) {
  return access((BlockFolder(root, name) + "/device").c_str(), F_OK) == 0;
}

}  // namespace

std::optional<BlockNumber> ParseBlockNumber(std::string_view text) {
  const char* const end = text.data() + text.size();
  BlockNumber number;
  const auto major = std::from_chars(text.data(), end, number.major);
  if (major.ec != std::errc() || major.ptr == end || *major.ptr != ':') return std::nullopt;
  const auto minor = std::from_chars(major.ptr + 1, end, number.minor);
  if (minor.ec != std::errc() || minor.ptr != end) return std::nullopt;
  return number;
}

bool MayBeDisk(std::string_view name) {
  constexpr std::array kKernelsOwn{"loop", "ram", "zram", "dm-", "md", "nbd", "zd", "bcache", "nullb"};
  if (std::any_of(kKernelsOwn.begin(), kKernelsOwn.end(),
                  [&](std::string_view stem) { return name.starts_with(stem); })) {
    return false;
  }
  if (name.starts_with("mmcblk")) return IsNumbered(name, "mmcblk");
  // "nvme0n1" is a disk, "nvme0c0n1" one path to it.
  return !name.starts_with("nvme") || name.find('c') == std::string_view::npos;
}

std::vector<std::string> DiskNames(const Path& root) {
  std::vector<std::string> names = NamesOfCandidates(root);
  std::erase_if(names, [&](const std::string& name) { return !HasDevice(root, name); });
  return names;
}

std::optional<std::uint64_t> OpenBlockDisk(const Path& root, std::uint32_t number) {
  // Those behind the disk are not looked at.
  std::uint32_t left = number;
  std::string name;
  for (std::string& candidate : NamesOfCandidates(root)) {
    if (!HasDevice(root, candidate) || left-- != 0) continue;
    name = std::move(candidate);
    break;
  }
  if (name.empty()) return std::nullopt;
  const auto found = ParseBlockNumber(CleanAttribute(BlockFolder(root, name) + "/dev"));
  if (!found || found->major >> 31 != 0) return std::nullopt;
  return kHandleMark | std::uint64_t{found->major} << 32 | found->minor;
}

BlockNumber NumberOf(std::uint64_t handle) {
  return {.major = static_cast<std::uint32_t>((handle & ~kHandleMark) >> 32),
          .minor = static_cast<std::uint32_t>(handle)};
}

std::optional<std::string> ReadBlockText(const Path& root, std::uint64_t handle, DiskFact fact) {
  const Disk disk(root, NumberOf(handle));
  std::string text;
  if (fact == DiskFact::kMediaType) text = disk.MediaType();
  if (fact == DiskFact::kCaption) text = disk.Caption();
  if (fact == DiskFact::kSerialNumber) text = disk.SerialNumber();
  if (fact == DiskFact::kFirmware) text = disk.Firmware();
  if (text.empty()) return std::nullopt;
  return text;
}

std::optional<std::uint64_t> ReadBlockNumber(const Path& root, std::uint64_t handle, DiskFact fact) {
  const std::string folder = FolderOf(root, NumberOf(handle));
  if (fact == DiskFact::kTotal) {
    const auto sectors = NumberAttribute(folder + "/size");
    if (!sectors || *sectors < 0) return std::nullopt;
    return BytesOfSectors(static_cast<std::uint64_t>(*sectors));
  }
  if (fact != DiskFact::kSolidState) return std::nullopt;
  const auto rotates = NumberAttribute(folder + "/queue/rotational");
  if (!rotates) return std::nullopt;
  return *rotates == 0 ? 1 : 0;
}

BlockPlace PlaceOf(const Path& root, const BlockNumber& number) {
  return PlaceOfLink(FolderOf(root, number));
}

BlockPlace PlaceOf(const Path& root, std::string_view name) {
  return PlaceOfLink(root.native() + "/sys/class/block/" + std::string(name));
}

std::uint64_t BlockSize(const Path& root, std::string_view name) {
  const auto sectors = NumberAttribute(root / "sys/class/block" / name / "size");
  return sectors && *sectors > 0 ? BytesOfSectors(static_cast<std::uint64_t>(*sectors)).value_or(0) : 0;
}

}  // namespace ostrine
