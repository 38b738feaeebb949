#include "ostrine/linux/block.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <system_error>

#include "ostrine/common/disk_descriptor.h"
#include "ostrine/common/disk_rules.h"
#include "ostrine/linux/file.h"

namespace ostrine {
namespace {

constexpr std::uint64_t kHandleMark = std::uint64_t{1} << 63;

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
BlockPlace PlaceOfLink(const Path& link) {
  std::error_code error;
  const Path target = std::filesystem::read_symlink(link, error);
  if (error) return {};
  BlockPlace place{.name = target.filename().string(), .parent = target.parent_path().filename().string()};
  for (const Path& part : target) {
    if (IsNumbered(part.native(), "usb")) place.is_on_usb = true;
    if (IsNumbered(part.native(), "virtio")) place.is_on_virtio = true;
  }
  return place;
}

/// The disk's folder, with the device behind it.
class Disk {
 public:
  Disk(const Path& root, const BlockNumber& number)
      : folder_(root / "sys/dev/block" / NumberText(number)), place_(PlaceOfLink(folder_)) {}

  bool Exists() const { return !place_.name.empty(); }
  std::string MediaType() const;
  std::string Caption() const;
  std::string SerialNumber() const;
  std::string Firmware() const;

 private:
  std::string Text(const char* attribute) const {
    return CleanDiskText(ReadAttribute(folder_ / attribute).value_or(std::string()));
  }
  bool IsAta() const { return Text("device/vendor") == "ATA"; }
  DiskIdentity AtaIdentity() const {
    const auto page = ReadBytes(folder_ / "device/vpd_pg89", kAttributeLimit);
    return page ? ParseAtaInformationPage(*page).value_or(DiskIdentity()) : DiskIdentity();
  }

  Path folder_;
  BlockPlace place_;
};

std::string Disk::MediaType() const {
  const bool is_card = place_.name.starts_with("mmcblk") && Text("device/type") != "MMC";
  const DiskTraits traits{.is_optical = IsNumbered(place_.name, "sr"),
                          .is_memory_card = is_card,
                          .has_removable_medium = Text("removable") == "1",
                          .is_on_usb = place_.is_on_usb};
  return std::string(DiskMediaText(ChooseDiskMedia(traits)));
}

std::string Disk::Caption() const {
  if (IsAta()) {
    if (std::string model = AtaIdentity().model; !model.empty()) return model;
  }
  std::string caption = DiskCaption(Text("device/vendor"), Text("device/model"));
  if (caption.empty()) caption = Text("device/name");  // eMMC disks and memory cards
  if (caption.empty() && place_.is_on_virtio) caption = "Virtio disk";
  return caption;
}

std::string Disk::SerialNumber() const {
  // NVMe and eMMC have it with the device, virtio with the disk; SCSI and SATA in a page of their own.
  for (const char* const attribute : {"device/serial", "serial"}) {
    if (std::string serial = Text(attribute); !serial.empty()) return serial;
  }
  if (const auto page = ReadBytes(folder_ / "device/vpd_pg80", kAttributeLimit)) {
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
  if (IsAta()) {
    if (std::string revision = AtaIdentity().firmware; !revision.empty()) return revision;
  }
  return Text("device/rev");
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
  const Path folder = root / "sys/block";
  std::vector<std::string> names = EntryNames(folder);
  std::erase_if(
      names, [&](const std::string& name) { return !MayBeDisk(name) || !Exists(folder / name / "device"); });
  return names;
}

std::optional<std::uint64_t> OpenBlockDisk(const Path& root, std::uint32_t number) {
  const std::vector<std::string> names = DiskNames(root);
  if (number >= names.size()) return std::nullopt;
  const auto found = ParseBlockNumber(CleanAttribute(root / "sys/block" / names[number] / "dev"));
  if (!found || found->major >> 31 != 0) return std::nullopt;
  return kHandleMark | std::uint64_t{found->major} << 32 | found->minor;
}

BlockNumber NumberOf(std::uint64_t handle) {
  return {.major = static_cast<std::uint32_t>((handle & ~kHandleMark) >> 32),
          .minor = static_cast<std::uint32_t>(handle)};
}

std::optional<std::string> ReadBlockText(const Path& root, std::uint64_t handle, DiskFact fact) {
  const Disk disk(root, NumberOf(handle));
  if (!disk.Exists()) return std::nullopt;
  std::string text;
  if (fact == DiskFact::kMediaType) text = disk.MediaType();
  if (fact == DiskFact::kCaption) text = disk.Caption();
  if (fact == DiskFact::kSerialNumber) text = disk.SerialNumber();
  if (fact == DiskFact::kFirmware) text = disk.Firmware();
  if (text.empty()) return std::nullopt;
  return text;
}

std::optional<std::uint64_t> ReadBlockNumber(const Path& root, std::uint64_t handle, DiskFact fact) {
  const Path folder = root / "sys/dev/block" / NumberText(NumberOf(handle));
  if (fact == DiskFact::kTotal) {
    const auto sectors = NumberAttribute(folder / "size");
    if (!sectors || *sectors < 0) return std::nullopt;
    return BytesOfSectors(static_cast<std::uint64_t>(*sectors));
  }
  if (fact != DiskFact::kSolidState) return std::nullopt;
  const auto rotates = NumberAttribute(folder / "queue/rotational");
  if (!rotates) return std::nullopt;
  return *rotates == 0 ? 1 : 0;
}

BlockPlace PlaceOf(const Path& root, const BlockNumber& number) {
  return PlaceOfLink(root / "sys/dev/block" / NumberText(number));
}

BlockPlace PlaceOf(const Path& root, std::string_view name) {
  return PlaceOfLink(root / "sys/class/block" / name);
}

std::uint64_t BlockSize(const Path& root, std::string_view name) {
  const auto sectors = NumberAttribute(root / "sys/class/block" / name / "size");
  return sectors && *sectors > 0 ? BytesOfSectors(static_cast<std::uint64_t>(*sectors)).value_or(0) : 0;
}

}  // namespace ostrine
