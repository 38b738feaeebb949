#include "platform/linux/network_interface.h"

#include <fcntl.h>
#include <net/if_arp.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <climits>
#include <string_view>
#include <system_error>

#include "platform/linux/config_text.h"
#include "platform/linux/descriptor.h"
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

/// With a slash at its end.
std::string FolderOf(const Path& root, const std::string& interface) {
  return root.native() + "/sys/class/net/" + interface + "/";
}

bool Exists(const std::string& path) {
  struct stat status{};
  return stat(path.c_str(), &status) == 0;
}

/// Where the link `path` points; empty for anything that is not a link.
std::string TargetOf(const std::string& path) {
  char target[PATH_MAX];
  const ssize_t size = readlink(path.c_str(), target, sizeof target);
  // One that fills the room may have been cut.
  if (size <= 0 || static_cast<std::size_t>(size) >= sizeof target) return {};
  return {target, static_cast<std::size_t>(size)};
}

Medium OwnMedium(const std::string& folder_path) {
  // Opened for its name alone, so that the way to it is gone but once.
  const Descriptor folder(open(folder_path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
  const auto has = [&](const char* name) {
    struct stat status{};
    return folder && fstatat(folder.Number(), name, &status, 0) == 0;
  };
  if (has("phy80211") || has("wireless")) return Medium::kWireless;
  if (!has("device")) return Medium::kNone;
  const std::string uevent = ReadAttribute(folder.Number(), "uevent").value_or("");
  if (KeyValue(uevent, "DEVTYPE") == "wwan") return Medium::kMobile;
  const bool is_ethernet = ReadAttribute(folder.Number(), "type") == std::to_string(ARPHRD_ETHER);
  return is_ethernet ? Medium::kWired : Medium::kNone;
}

Medium MediumBelow(const Path& root, const std::string& interface, int depth) {
  constexpr std::string_view kLower = "lower_";
  if (depth == 0 || !IsName(interface)) return Medium::kNone;
  const std::string folder = FolderOf(root, interface);
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

/// Whether the interface itself is a device.
bool IsDevice(const Path& root, const std::string& interface) {
  return Exists(FolderOf(root, interface) + "device");
}

std::int64_t NumberOf(const Path& root, const std::string& interface) {
  return ReadNumber(Path(FolderOf(root, interface) + "ifindex")).value_or(0);
}

bool IsFirstOfItsDevice(const Path& root, const std::string& interface) {
  const auto others = ListNames(FolderOf(root, interface) + "device/net");
  // A device of the mobile broadband kind keeps its interfaces elsewhere.
  return !others || std::none_of(others->begin(), others->end(), [&](const std::string& other) {
    return other != interface && NumberOf(root, other) < NumberOf(root, interface);
  });
}

}  // namespace

Medium MediumOf(const Path& root, const std::string& interface) {
  return MediumBelow(root, interface, kDeepest);
}

bool IsCard(const Path& root, const std::string& interface) {
  return IsName(interface) && IsDevice(root, interface) && IsFirstOfItsDevice(root, interface);
}

std::string DriverOf(const Path& root, const std::string& interface) {
  if (!IsName(interface)) return {};
  return Path(TargetOf(FolderOf(root, interface) + "device/driver")).filename().string();
}

std::vector<std::string> ListCards(const Path& root) {
  auto names = ListNames(root.native() + "/sys/class/net").value_or(std::vector<std::string>());
  std::erase_if(names, [&](const std::string& name) { return !IsDevice(root, name); });
  if (names.size() < 2) return names;  // no other of the same device, and no order
  std::erase_if(names, [&](const std::string& name) { return !IsFirstOfItsDevice(root, name); });
  std::vector<std::pair<std::int64_t, std::string>> numbered;
  numbered.reserve(names.size());
  for (std::string& name : names) {
    const std::int64_t number = NumberOf(root, name);
    numbered.emplace_back(number, std::move(name));
  }
  std::sort(numbered.begin(), numbered.end());
  names.clear();
  for (auto& [number, name] : numbered) names.push_back(std::move(name));
  return names;
}

std::string ComponentId(const Path& root, const std::string& interface) {
  if (!IsName(interface)) return {};
  // A paravirtual or mobile broadband card hangs below the function that the bus knows, by a step or two.
  constexpr int kFarthest = 8;
  std::string folder = FolderOf(root, interface) + "device/";
  for (int step = 0; step < kFarthest; ++step) {
    std::string id = ComponentIdOf(ReadAttribute(folder + "modalias").value_or(""));
    if (!id.empty()) return id;
    folder += "../";
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
