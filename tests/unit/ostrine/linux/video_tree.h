/// Trees with video cards and displays, in the form in which the kernel shows them.
#pragma once

#include <filesystem>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "../edid_bytes.h"
#include "fake_root.h"
#include "ostrine/linux/video_cards.h"

namespace ostrine::test {

class VideoTree {
 public:
  using Attributes = std::map<std::string, std::string>;

  VideoTree() {
    std::filesystem::create_directories(Path() / "sys/devices");
    root_.Write("proc/sys/kernel/osrelease", "6.1.0-18-amd64\n");
    root_.Write("proc/sys/kernel/version", "#1 SMP PREEMPT_DYNAMIC Debian 6.1.76-1 (2024-02-01)\n");
    root_.Write("usr/share/misc/pci.ids",
                "1002  AMD\n\t1638  Cezanne [Radeon Vega]\n\t73ff  Navi 23 [Radeon RX 6600M]\n"
                "10de  NVIDIA Corporation\n\t25a0  GA107M [GeForce RTX 3050 Ti Mobile]\n"
                "8086  Intel Corporation\n\t46a6  Alder Lake-P GT2 [Iris Xe Graphics]\n");
  }

  /// A PCI function at `place` below sys/devices; numbers are of four hexadecimal digits.
  void AddFunction(const std::string& place, const std::string& vendor, const std::string& device,
                   const std::string& class_code, const Attributes& attributes) const {
    const std::string address = std::filesystem::path(place).filename().string();
    Write(place, {{"class", "0x" + class_code},
                  {"vendor", "0x" + vendor},
                  {"device", "0x" + device},
                  {"modalias", "pci:v0000" + vendor + "d0000" + device + "sv000017AAsd000022E6bc" +
                                   class_code.substr(0, 2) + "sc" + class_code.substr(2, 2) + "i00"}});
    Write(place, attributes);
    Link("sys/bus/pci/devices/" + address, "../../../devices/" + place);
  }
  void Bind(const std::string& place, const std::string& driver, bool from_elsewhere = false) const {
    std::filesystem::create_directories(Path() / "sys/bus/pci/drivers" / driver);
    root_.Write("sys/module/" + driver + "/taint", from_elsewhere ? "OE\n" : "\n");
    Link("sys/bus/pci/drivers/" + driver + "/module", (Path() / "sys/module" / driver).string());
    Link("sys/devices/" + place + "/driver", (Path() / "sys/bus/pci/drivers" / driver).string());
  }
  /// A connector of drm card `number`, which is the function at `place`.
  void AddConnector(const std::string& place, const std::string& number, const std::string& name,
                    const Attributes& attributes, const std::vector<std::uint8_t>& edid = {}) const {
    const std::string card = place + "/drm/card" + number;
    const std::string connector = card + "/card" + number + "-" + name;
    Write(connector, attributes);
    if (!edid.empty()) root_.Write("sys/devices/" + connector + "/edid", edid);
    LinkOnce("sys/devices/" + card + "/device", "../..");
    LinkOnce("sys/class/drm/card" + number, "../../devices/" + card);
    LinkOnce("sys/class/drm/card" + number + "-" + name, "../../devices/" + connector);
  }
  void Write(const std::string& place, const Attributes& attributes) const {
    for (const auto& [name, text] : attributes) root_.Write("sys/devices/" + place + "/" + name, text + "\n");
  }
  void Link(const std::string& name, const std::string& target) const {
    std::filesystem::create_symlink(target, root_.Place(name));
  }

  const FakeRoot& Root() const { return root_; }
  const std::filesystem::path& Path() const { return root_.Path(); }

  std::string Text(const std::optional<std::uint64_t>& card, CardFact fact) const {
    return card ? ReadCardText(Path(), *card, fact).value_or("") : "no such card";
  }

 private:
  void LinkOnce(const std::string& name, const std::string& target) const {
    if (!std::filesystem::is_symlink(std::filesystem::symlink_status(Path() / name))) Link(name, target);
  }
  FakeRoot root_;
};

inline const std::string kIntelPlace = "pci0000:00/0000:00:02.0";
inline const std::string kNvidiaPlace = "pci0000:00/0000:00:06.0/0000:01:00.0";

/// Six regions and the ROM: two registers, and a prefetchable window of `megabytes`.
inline std::string ResourceText(std::uint64_t megabytes) {
  std::ostringstream text;
  text << std::hex << "0x00000000d0000000 0x00000000d0ffffff 0x0000000000040200\n"
       << "0x0000006000000000 0x" << 0x6000000000 + (megabytes << 20) - 1 << " 0x000000000014220c\n"
       << "0x0000000000000000 0x0000000000000000 0x0000000000000000\n"
       << "0x0000000000003000 0x000000000000303f 0x0000000000040101\n"
       << "0x0000000000000000 0x0000000000000000 0x0000000000000000\n"
       << "0x0000000000000000 0x0000000000000000 0x0000000000000000\n"
       << "0x00000000000c0000 0x00000000000dffff 0x0000000000000212\n";
  return text.str();
}

/// A laptop with two cards: Intel's with the panel and an outer display, and NVIDIA's, without a display,
/// asleep.
inline void BuildTwoCardLaptop(const VideoTree& tree) {
  tree.AddFunction("pci0000:00/0000:00:00.0", "8086", "4621", "060000", {});
  tree.AddFunction(kIntelPlace, "8086", "46A6", "030000",
                   {{"boot_vga", "1"}, {"resource", ResourceText(256)}, {"power/runtime_status", "active"}});
  tree.Bind(kIntelPlace, "i915");
  tree.AddFunction("pci0000:00/0000:00:06.0", "8086", "464D", "060400", {});
  tree.AddFunction(
      kNvidiaPlace, "10DE", "25A0", "030200",
      {{"boot_vga", "0"}, {"resource", ResourceText(8192)}, {"power/runtime_status", "suspended"}});
  tree.Bind(kNvidiaPlace, "nvidia", true);
  tree.AddFunction("pci0000:00/0000:00:06.0/0000:01:00.1", "10DE", "2291", "040300", {});
  tree.AddConnector(
      kIntelPlace, "1", "DP-1",
      {{"status", "connected"}, {"enabled", "enabled"}, {"modes", "3840x2160\n1920x1080"}},
      EdidBytes{.maker = "DEL", .timing = {533'250, 3840, 160, 2160, 62}, .name = "DELL U2720Q"}.Build());
  tree.AddConnector(kIntelPlace, "1", "HDMI-A-1",
                    {{"status", "disconnected"}, {"enabled", "disabled"}, {"modes", ""}});
  tree.AddConnector(kIntelPlace, "1", "eDP-1",
                    {{"status", "connected"}, {"enabled", "enabled"}, {"modes", "1920x1080\n1280x720"}},
                    EdidBytes{}.Build());
  tree.AddConnector(kNvidiaPlace, "0", "DP-2",
                    {{"status", "connected"}, {"enabled", "enabled"}, {"modes", "1024x768"}});
  tree.Root().Write("sys/class/graphics/fb0/virtual_size", "1920,1080\n");
  tree.Root().Write("sys/class/graphics/fb0/bits_per_pixel", "32\n");
}

}  // namespace ostrine::test
