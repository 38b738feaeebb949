#include "platform/linux/network_interface.h"

#include <net/if_arp.h>

#include <algorithm>
#include <string_view>
#include <system_error>

#include "platform/linux/config_text.h"
#include "platform/linux/small_file.h"

namespace velmora::os {
namespace {

using Path = std::filesystem::path;

/// Interfaces stand on each other no deeper than this on any machine that works.
constexpr int kDeepest = 8;

/// Names come from the kernel, which allows no slash in them; a made-up one must not lead elsewhere.
bool IsName(const std::string& name) {
  return !name.empty() && name != "." && name != ".." && name.find('/') == std::string::npos;
}

Path FolderOf(const Path& root, const std::string& interface) { return root / "sys/class/net" / interface; }

bool Exists(const Path& path) {
  std::error_code error;
  return std::filesystem::exists(path, error);
}

Medium OwnMedium(const Path& folder) {
  if (Exists(folder / "phy80211") || Exists(folder / "wireless")) return Medium::kWireless;
  if (!Exists(folder / "device")) return Medium::kNone;
  const std::string uevent = ReadSmallFile(folder / "uevent").value_or("");
  if (KeyValue(uevent, "DEVTYPE") == "wwan") return Medium::kMobile;
  return ReadNumber(folder / "type") == ARPHRD_ETHER ? Medium::kWired : Medium::kNone;
}

Medium MediumBelow(const Path& root, const std::string& interface, int depth) {
  constexpr std::string_view kLower = "lower_";
  if (depth == 0 || !IsName(interface)) return Medium::kNone;
  const Path folder = FolderOf(root, interface);
  if (const Medium own = OwnMedium(folder); own != Medium::kNone) return own;
  // The kinds stand in the order of preference of a machine that has several below one bridge.
  Medium found = Medium::kNone;
  for (const std::string& entry : ListNames(folder).value_or(std::vector<std::string>())) {
    if (!entry.starts_with(kLower)) continue;
    const Medium below = MediumBelow(root, entry.substr(kLower.size()), depth - 1);
    if (below != Medium::kNone && (found == Medium::kNone || below < found)) found = below;
  }
  return found;
}

/// The upper-case hexadecimal number of `digits` digits behind `mark` at the front of `text`, in lower case;
/// takes both off. Empty when there is none.
std::string TakeNumber(std::string_view& text, std::string_view mark, std::size_t digits) {
  if (!text.starts_with(mark) || text.size() - mark.size() < digits) return {};
  std::string number(text.substr(mark.size(), digits));
  for (char& c : number) {
    if (c >= 'A' && c <= 'F') c = static_cast<char>(c - 'A' + 'a');
  }
  if (number.find_first_not_of("0123456789abcdef") != std::string::npos) return {};
  text.remove_prefix(mark.size() + digits);
  return number;
}

/// The last four of eight digits, when the first four are zero: the bus has numbers of 16 bits.
std::string Low(const std::string& number) { return number.starts_with("0000") ? number.substr(4) : ""; }

std::string PciComponent(std::string_view text) {
  constexpr std::size_t kDigits = 8;
  const std::string vendor = Low(TakeNumber(text, "v", kDigits));
  const std::string device = Low(TakeNumber(text, "d", kDigits));
  const std::string maker = Low(TakeNumber(text, "sv", kDigits));
  const std::string model = Low(TakeNumber(text, "sd", kDigits));
  if (vendor.empty() || device.empty() || maker.empty() || model.empty()) return {};
  return std::string("pci\\ven_")
      .append(vendor)
      .append("&dev_")
      .append(device)
      .append("&subsys_")
      .append(model)
      .append(maker);
}

std::string UsbComponent(std::string_view text) {
  constexpr std::size_t kDigits = 4;
  const std::string vendor = TakeNumber(text, "v", kDigits);
  const std::string product = TakeNumber(text, "p", kDigits);
  if (vendor.empty() || product.empty()) return {};
  return std::string("usb\\vid_").append(vendor).append("&pid_").append(product);
}

}  // namespace

Medium MediumOf(const Path& root, const std::string& interface) {
  return MediumBelow(root, interface, kDeepest);
}

bool IsCard(const Path& root, const std::string& interface) {
  if (!IsName(interface)) return false;
  const Path device = FolderOf(root, interface) / "device";
  if (!Exists(device)) return false;
  const auto others = ListNames(device / "net");
  const auto number = [&](const std::string& name) {
    return ReadNumber(FolderOf(root, name) / "ifindex").value_or(0);
  };
  // A device of the mobile broadband kind keeps its interfaces elsewhere.
  return !others || std::none_of(others->begin(), others->end(), [&](const std::string& other) {
    return other != interface && number(other) < number(interface);
  });
}

std::string DriverOf(const Path& root, const std::string& interface) {
  if (!IsName(interface)) return {};
  std::error_code error;
  const Path driver = std::filesystem::read_symlink(FolderOf(root, interface) / "device/driver", error);
  return error ? std::string() : driver.filename().string();
}

std::vector<std::string> ListCards(const Path& root) {
  auto names = ListNames(root / "sys/class/net").value_or(std::vector<std::string>());
  std::erase_if(names, [&](const std::string& name) { return !IsCard(root, name); });
  std::vector<std::pair<std::int64_t, std::string>> numbered;
  for (std::string& name : names) {
    numbered.emplace_back(ReadNumber(FolderOf(root, name) / "ifindex").value_or(0), std::move(name));
  }
  std::sort(numbered.begin(), numbered.end());
  names.clear();
  for (auto& [number, name] : numbered) names.push_back(std::move(name));
  return names;
}

std::string ComponentId(const Path& root, const std::string& interface) {
  if (!IsName(interface)) return {};
  std::error_code error;
  const Path devices = std::filesystem::canonical(root / "sys/devices", error);
  if (error) return {};
  Path folder = std::filesystem::canonical(FolderOf(root, interface) / "device", error);
  if (error) return {};
  // A paravirtual or mobile broadband card hangs below the function that the bus knows.
  for (; folder.native().size() > devices.native().size(); folder = folder.parent_path()) {
    std::string id = ComponentIdOf(ReadAttribute(folder / "modalias").value_or(""));
    if (!id.empty()) return id;
  }
  return {};
}

std::string ComponentIdOf(std::string_view modalias) {
  constexpr std::string_view kPci = "pci:";
  constexpr std::string_view kUsb = "usb:";
  if (modalias.starts_with(kPci)) return PciComponent(modalias.substr(kPci.size()));
  if (modalias.starts_with(kUsb)) return UsbComponent(modalias.substr(kUsb.size()));
  return {};
}

}  // namespace velmora::os
