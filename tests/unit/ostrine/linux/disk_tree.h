/// Trees with disks, in the form in which the kernel shows them.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

#include "../disk_bytes.h"
#include "fake_root.h"
#include "ostrine/linux/block.h"

namespace ostrine::test {

class DiskTree {
 public:
  using Attributes = std::map<std::string, std::string>;

  /// A block device at `place` below sys/devices, named as the last part of that.
  void Add(const std::string& place, const std::string& number, const Attributes& attributes) const {
    const std::string name = std::filesystem::path(place).filename().string();
    const std::string folder = "sys/devices/" + place + "/";
    root_.Write(folder + "dev", number + "\n");
    for (const auto& [attribute, text] : attributes) root_.Write(folder + attribute, text + "\n");
    Link("sys/class/block/" + name, "../../devices/" + place);
    Link("sys/dev/block/" + number, "../../devices/" + place);
    if (!attributes.contains("partition")) Link("sys/block/" + name, "../devices/" + place);
  }
  /// The same with a device behind it: a folder at `device` below sys/devices.
  void AddDisk(const std::string& place, const std::string& number, const std::string& device,
               const Attributes& attributes, const Attributes& device_attributes) const {
    Add(place, number, attributes);
    for (const auto& [attribute, text] : device_attributes) {
      root_.Write("sys/devices/" + device + "/" + attribute, text + "\n");
    }
    std::filesystem::create_directories(root_.Path() / "sys/devices" / device);
    const std::filesystem::path from = "/" + place;
    Link("sys/devices/" + place + "/device",
         std::filesystem::path("/" + device).lexically_relative(from).string());
  }
  /// A part of the disk at `place`.
  void AddPartition(const std::string& place, const std::string& number) const {
    Add(place, number, {{"partition", "1"}, {"size", "2048"}});
  }
  /// `upper` lies on `lower`.
  void Stack(const std::string& upper_place, const std::string& lower) const {
    Link("sys/devices/" + upper_place + "/slaves/" + lower, "../../../../../class/block/" + lower);
  }
  void Link(const std::string& name, const std::string& target) const {
    std::filesystem::create_symlink(target, root_.Place(name));
  }
  void Mounts(std::string_view mountinfo) const { root_.Write("proc/self/mountinfo", mountinfo); }

  const FakeRoot& Root() const { return root_; }
  const std::filesystem::path& Path() const { return root_.Path(); }

  /// The text of a disk; empty when it does not tell.
  std::string Text(std::uint32_t number, DiskFact fact) const {
    const auto handle = OpenBlockDisk(Path(), number);
    return handle ? ReadBlockText(Path(), *handle, fact).value_or("") : "no such disk";
  }
  std::uint64_t Number(std::uint32_t number, DiskFact fact) const {
    const auto handle = OpenBlockDisk(Path(), number);
    return handle ? ReadBlockNumber(Path(), *handle, fact).value_or(4711) : 4711;
  }

 private:
  FakeRoot root_;
};

inline const std::string kNvmeController = "pci0000:00/0000:00:0e.0/0000:01:00.0/nvme/nvme0";
inline const std::string kSataTarget = "pci0000:00/0000:00:17.0/ata2/host1/target1:0:0/1:0:0:0";
inline const std::string kUsbTarget = "pci0000:00/0000:00:14.0/usb2/2-1/2-1:1.0/host2/target2:0:0/2:0:0:0";

/// A laptop of today. Disks: 0 NVMe (512 GB), 1 SATA (1 TB, rotating), 2 a USB stick; none of the kernel's
/// own. On the NVMe disk an ESP, and in an encrypted partition a btrfs that is mounted twice; on the SATA
/// disk and the NVMe disk together a volume; on the stick a file system.
inline void BuildLaptopDisks(const DiskTree& tree) {
  const std::string nvme = kNvmeController + "/nvme0n1";
  tree.AddDisk(nvme, "259:0", kNvmeController,
               {{"size", "1000215216"}, {"removable", "0"}, {"queue/rotational", "0"}},
               {{"model", "SAMSUNG MZVLB512HBJQ-000L7              "},
                {"serial", "S4ENNF0M123456      "},
                {"firmware_rev", "4L2QEXM7"}});
  tree.AddPartition(nvme + "/nvme0n1p1", "259:1");
  tree.AddPartition(nvme + "/nvme0n1p2", "259:2");
  tree.AddPartition(nvme + "/nvme0n1p3", "259:3");
  const std::string sata = kSataTarget + "/block/sda";
  tree.AddDisk(sata, "8:0", kSataTarget,
               {{"size", "1953525168"}, {"removable", "0"}, {"queue/rotational", "1"}},
               {{"vendor", "ATA     "}, {"model", "ST1000LM035-1RK1"}, {"rev", "SDM2"}, {"type", "0"}});
  tree.AddPartition(sata + "/sda1", "8:1");
  const auto page = AtaInformationPage("ST1000LM035-1RK172", "            WL1ABCDE", "SDM2LCM1");
  tree.Root().Write("sys/devices/" + kSataTarget + "/vpd_pg89", page);
  tree.Root().Write("sys/devices/" + kSataTarget + "/vpd_pg80", SerialNumberPage("            WL1ABCDE"));
  const std::string stick = kUsbTarget + "/block/sdb";
  tree.AddDisk(stick, "8:16", kUsbTarget,
               {{"size", "60062500"}, {"removable", "1"}, {"queue/rotational", "1"}},
               {{"vendor", "SanDisk "}, {"model", "Cruzer Blade    "}, {"rev", "1.26"}});
  tree.AddPartition(stick + "/sdb1", "8:17");
  for (int i = 0; i < 3; ++i) {
    const std::string number = std::to_string(i);
    tree.Add("virtual/block/loop" + number, "7:" + number, {{"size", "2048"}, {"removable", "0"}});
  }
  tree.Add("virtual/block/zram0", "253:0", {{"size", "8388608"}, {"removable", "0"}});
  tree.Add("virtual/block/dm-0", "252:0", {{"size", "1000000"}, {"dm/name", "luks-home"}});
  tree.Stack("virtual/block/dm-0", "nvme0n1p2");
  tree.Add("virtual/block/dm-1", "252:1", {{"size", "1000000"}, {"dm/name", "vg-both"}});
  tree.Stack("virtual/block/dm-1", "nvme0n1p3");
  tree.Stack("virtual/block/dm-1", "sda1");
  tree.Link("sys/fs/btrfs/3f1b7a52-7d0e-4a4e-9d6a-0f5c7b0e8a11/devices/dm-0", "../../../../class/block/dm-0");
  tree.Mounts(
      "21 26 0:20 / /proc rw,nosuid - proc proc rw\n"
      "26 1 0:24 /@ / rw,relatime shared:1 - btrfs /dev/mapper/luks-home rw,subvol=/@\n"
      "40 26 0:24 /@home /home rw,relatime shared:20 - btrfs /dev/mapper/luks-home rw,subvol=/@home\n"
      "41 26 259:1 / /boot/efi rw,relatime shared:21 - vfat /dev/nvme0n1p1 rw\n"
      "42 26 252:1 / /srv rw,relatime shared:22 - ext4 /dev/mapper/vg-both rw\n"
      "43 26 252:1 /pub /home/pub rw,relatime shared:22 - ext4 /dev/mapper/vg-both rw\n"
      "44 26 8:17 / /media/My\\040Stick rw,nosuid shared:23 - exfat /dev/sdb1 rw\n"
      "45 26 7:0 / /snap/core ro,nodev shared:24 - squashfs /dev/loop0 ro\n"
      "46 26 0:50 / /net rw - nfs4 server:/export rw\n");
}

}  // namespace ostrine::test
