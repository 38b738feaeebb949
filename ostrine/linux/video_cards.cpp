#include "ostrine/linux/video_cards.h"

#include <algorithm>
#include <charconv>
#include <system_error>

#include "ostrine/common/video_rules.h"
#include "ostrine/linux/bus_devices.h"
#include "ostrine/linux/describe.h"
#include "ostrine/linux/driver.h"
#include "ostrine/linux/file.h"
#include "ostrine/linux/video_text.h"
#include "platform/unicode.h"

namespace ostrine {
namespace {

constexpr const char* kPciDevices = "sys/bus/pci/devices";
constexpr std::uint32_t kFunctions = 8;  // of a PCI device

std::string Hex(std::uint64_t number, std::size_t width) {
  std::string digits;
  for (; number != 0 || digits.size() < width; number >>= 4)
    digits.insert(0, 1, "0123456789abcdef"[number & 15]);
  return digits;
}

/// The address without its function: "0000:01:00.".
std::string_view SlotOf(std::string_view address) { return address.substr(0, address.rfind('.') + 1); }

bool IsDisplayClass(const std::optional<std::uint32_t>& code) {
  constexpr std::uint32_t kDisplayClass = 3;
  return code && *code >> 16 == kDisplayClass;
}

bool IsDisplay(const Path& node) { return IsDisplayClass(HexAttribute(node / "class")); }

std::uint16_t VendorOf(const Path& node) {
  return static_cast<std::uint16_t>(HexAttribute(node / "vendor").value_or(0) & 0xFFFF);
}

/// Whether another function of the same PCI device is made by AMD's processor side, as in its APUs, where the
/// security processor and USB controllers stand beside the graphics.
bool IsInPackage(const Path& root, std::string_view address) {
  constexpr std::uint16_t kAmdProcessors = 0x1022;
  const std::string slot(SlotOf(address));
  for (std::uint32_t function = 0; function < kFunctions; ++function) {
    const std::string other = slot + std::to_string(function);
    if (other != address && VendorOf(root / kPciDevices / other) == kAmdProcessors) return true;
  }
  return false;
}

bool IsOnRootBus(const Path& link) {
  std::error_code error;
  const Path target = std::filesystem::read_symlink(link, error);
  return !error && target.parent_path().filename().native().starts_with("pci");
}

VideoCardTraits TraitsOf(const Path& root, const std::string& address) {
  const Path node = root / kPciDevices / address;
  return {.vendor = VendorOf(node),
          .is_on_root_bus = IsOnRootBus(node),
          .is_in_package = IsInPackage(root, address),
          .is_boot_display = CleanAttribute(node / "boot_vga") == "1"};
}

/// The card as one of the machine's devices; nothing when it has gone.
std::optional<Device> FindDevice(const Path& root, std::uint64_t card) {
  Device device{.bus = Device::Bus::kPci, .address = CardAddress(card)};
  device.node = root / kPciDevices / device.address;
  if (!IsDisplay(device.node)) return std::nullopt;
  device.function = device.node;
  device.modalias = ModaliasOf(device.node);
  device.ids = BuildDeviceIds({.modalias = device.modalias});
  return device;
}

/// A driver that comes with the kernel is of the kernel's day. Of one from elsewhere nobody tells.
std::string DriverDate(const Path& root, const Driver& driver) {
  constexpr char kFromElsewhere = 'O';
  if (driver.name.empty()) return {};
  if (!driver.module.empty()) {
    const std::string marks = CleanAttribute(root / "sys/module" / driver.module / "taint");
    if (marks.find(kFromElsewhere) != std::string::npos) return {};
  }
  return KernelBuildDate(CleanAttribute(root / "proc/sys/kernel/version")).value_or(std::string());
}

std::string CardText(const Path& root, const Device& device, CardFact fact) {
  if (fact == CardFact::kName) {
    NameDatabase names(root);
    return velmora::unicode::Utf8FromWide(Describe(device, names));
  }
  const Driver driver = DriverOf(root, device);
  if (fact == CardFact::kDriverVersion) return DriverVersion(root, driver);
  return fact == CardFact::kDriverDate ? DriverDate(root, driver) : std::string();
}

}  // namespace

std::optional<std::uint64_t> CardNumber(std::string_view address) {
  // Domain, bus, device and function, each ended by its sign; the domain may have more digits than four.
  struct Part {
    char end;
    std::uint64_t limit;
  };
  constexpr Part kParts[] = {{':', 0xFFFFFFFF}, {':', 0xFF}, {'.', 0x1F}, {'\0', 0x7}};
  constexpr unsigned int kBits[] = {32, 8, 5, 3};
  std::uint64_t number = 0;
  for (std::size_t i = 0; i < std::size(kParts); ++i) {
    const std::size_t length = std::min(address.find(kParts[i].end), address.size());
    std::uint64_t value = 0;
    const char* const end = address.data() + length;
    const auto [stop, error] = std::from_chars(address.data(), end, value, 16);
    if (error != std::errc() || stop != end || value > kParts[i].limit) return std::nullopt;
    number = number << kBits[i] | value;
    address.remove_prefix(std::min(length + 1, address.size()));
  }
  return number;
}

std::string CardAddress(std::uint64_t card) {
  return Hex(card >> 16, 4) + ":" + Hex(card >> 8 & 0xFF, 2) + ":" + Hex(card >> 3 & 0x1F, 2) + "." +
         Hex(card & 7, 1);
}

std::vector<std::string> DisplayFunctions(const Path& root) {
  Folder devices(root / kPciDevices);
  std::vector<std::string> addresses = devices.EntryNames();
  std::erase_if(addresses, [&](const std::string& address) {
    return !CardNumber(address) || !IsDisplayClass(devices.HexAttribute(address + "/class")) ||
           devices.Exists(address + "/physfn");
  });
  std::vector<std::string> cards;
  for (const std::string& address : addresses) {
    const std::string first = std::string(SlotOf(address)) + "0";
    const bool is_part =
        address != first && std::find(addresses.begin(), addresses.end(), first) != addresses.end();
    if (!is_part) cards.push_back(address);
  }
  return cards;
}

VideoCards FindVideoCards(const Path& root) {
  const std::vector<std::string> addresses = DisplayFunctions(root);
  std::vector<VideoCardTraits> traits;
  traits.reserve(addresses.size());
  for (const std::string& address : addresses) traits.push_back(TraitsOf(root, address));
  const VideoCardChoice choice = ChooseVideoCards(traits);
  VideoCards cards{.count = choice.count};
  if (choice.internal) cards.internal = CardNumber(addresses[*choice.internal]);
  if (choice.independent) cards.independent = CardNumber(addresses[*choice.independent]);
  return cards;
}

std::optional<std::string> ReadCardText(const Path& root, std::uint64_t card, CardFact fact) {
  const auto device = FindDevice(root, card);
  std::string text = device ? CardText(root, *device, fact) : std::string();
  if (text.empty()) return std::nullopt;
  return text;
}

std::optional<std::uint64_t> ReadCardMemory(const Path& root, std::uint64_t card) {
  const auto device = FindDevice(root, card);
  if (!device) return std::nullopt;
  // AMD's driver noted this when it found the card; it tells it without asking the card.
  if (const auto stated = NumberAttribute(device->node / "mem_info_vram_total"); stated && *stated > 0) {
    return static_cast<std::uint64_t>(*stated);
  }
  const auto window = LargestWindow(ReadAttribute(device->node / "resource").value_or(std::string()));
  constexpr std::uint64_t kUsualWindow = std::uint64_t{256} << 20;
  const bool shows_all =
      window && (*window > kUsualWindow || IsIntegratedCard(TraitsOf(root, device->address)));
  return shows_all ? window : std::nullopt;
}

std::optional<std::uint32_t> ReadCardProblem(const Path& root, std::uint64_t card) {
  const auto device = FindDevice(root, card);
  return device ? std::optional(ProblemCode(root, *device)) : std::nullopt;
}

}  // namespace ostrine
