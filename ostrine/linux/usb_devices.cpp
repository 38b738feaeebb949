#include <algorithm>
#include <optional>
#include <string_view>

#include "ostrine/common/device_text.h"
#include "ostrine/linux/bus_devices.h"
#include "ostrine/linux/wanted_class.h"

namespace ostrine {
namespace {

constexpr int kHexWidth = 4;

/// `value` in capital hexadecimal digits, as a modalias has them.
std::string UpperHex(std::uint32_t value, int digits) {
  std::string text;
  for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
    text.push_back("0123456789ABCDEF"[value >> shift & 15]);
  }
  return text;
}

/// The attributes of the device at `path` below an open folder.
class UsbAttributes {
 public:
  UsbAttributes(const Folder& folder, const std::string& path) : folder_(folder), start_(path + "/") {}

  std::optional<UsbClass> Class() const {
    const auto base = Hexadecimal("bDeviceClass");
    const auto sub = Hexadecimal("bDeviceSubClass");
    const auto protocol = Hexadecimal("bDeviceProtocol");
    if (!base || !sub || !protocol || *base > 0xFF || *sub > 0xFF || *protocol > 0xFF) return std::nullopt;
    return UsbClass{static_cast<std::uint8_t>(*base), static_cast<std::uint8_t>(*sub),
                    static_cast<std::uint8_t>(*protocol)};
  }

  bool IsComposite() const {
    const auto interfaces = folder_.NumberAttribute(start_ + "bNumInterfaces");
    const auto configurations = folder_.NumberAttribute(start_ + "bNumConfigurations");
    if (!interfaces || !configurations) return false;
    constexpr std::int64_t kMost = 0xFF;
    if (*interfaces < 0 || *interfaces > kMost || *configurations < 0 || *configurations > kMost)
      return false;
    const auto is_composite_with = [&](const UsbClass& device_class) {
      return IsUsbComposite(device_class, static_cast<unsigned>(*interfaces),
                            static_cast<unsigned>(*configurations));
    };
    constexpr UsbClass kToldByInterfaces{};
    if (!is_composite_with(kToldByInterfaces)) return false;  // nor with any other class
    const auto device_class = Class();
    return device_class && is_composite_with(*device_class);
  }

  /// A whole device has no modalias of its own; this is how the ones of its interfaces begin.
  std::string WholeModalias() const {
    const auto vendor = Hexadecimal("idVendor");
    const auto product = Hexadecimal("idProduct");
    const auto revision = Hexadecimal("bcdDevice");
    const auto device_class = Class();
    if (!vendor || !product || !revision || !device_class) return {};
    return "usb:v" + UpperHex(*vendor, kHexWidth) + "p" + UpperHex(*product, kHexWidth) + "d" +
           UpperHex(*revision, kHexWidth) + "dc" + UpperHex(device_class->base_class, 2) + "dsc" +
           UpperHex(device_class->sub_class, 2) + "dp" + UpperHex(device_class->protocol, 2);
  }

  std::string OwnNames() const {
    return folder_.CleanAttribute(start_ + "manufacturer") + " " + folder_.CleanAttribute(start_ + "product");
  }

 private:
  std::optional<std::uint32_t> Hexadecimal(const char* name) const {
    return folder_.HexAttribute(start_ + name);
  }

  const Folder& folder_;
  std::string start_;
};

/// One device of the bus that has its driver, with its interfaces; all of them by their addresses.
class UsbDevice {
 public:
  UsbDevice(BusFolder& bus, std::string address, const std::vector<std::string>& all)
      : bus_(bus),
        address_(std::move(address)),
        attributes_(bus, address_),
        is_composite_(attributes_.IsComposite()) {
    // Called after their device: "1-4:1.0" of "1-4", and "1-0:1.0" of "usb1".
    constexpr std::string_view kRoot = "usb";
    const bool is_root = address_.starts_with(kRoot);
    const std::string start = is_root ? address_.substr(kRoot.size()) + "-0:" : address_ + ":";
    for (const std::string& other : all) {
      if (other.starts_with(start) && bus_.Exists(other + "/bInterfaceNumber")) interfaces_.push_back(other);
    }
  }

  void AppendTo(Listing& listing) {
    if (!is_composite_) {
      AppendSingle(listing);
      return;
    }
    const std::string whole = attributes_.WholeModalias();
    if (BuildDeviceIds({.modalias = whole, .usb_composite = true}).hardware.empty()) return;
    const SetupClass setup_class = ClassifyDevice(whole, {.is_composite_usb = true});
    if (listing.Wants(setup_class)) Append(listing, address_, address_, whole, setup_class);
    for (const std::string& interface : interfaces_) {
      if (BelongsToEarlierInterface(interface)) continue;
      const std::string modalias = bus_.ModaliasOf(interface);
      Facts facts{*this, {interface}};
      const auto part = FindWantedClass(modalias, listing.wanted, facts);
      if (part) Append(listing, interface, interface, modalias, *part);
    }
  }

 private:
  /// What decides the class of an interface, or of a device with these interfaces.
  struct Facts {
    UsbDevice& device;
    std::vector<std::string> interfaces;

    bool HasNetworkInterface() const { return HasOne("/net"); }
    bool HasBluetoothRadio() const { return HasOne("/bluetooth"); }
    bool IsFingerprintReader() const { return device.IsFingerprintReader(); }
    bool IsComposite() const { return device.is_composite_; }

   private:
    bool HasOne(const char* entry) const {
      return std::any_of(interfaces.begin(), interfaces.end(),
                         [&](const std::string& interface) { return device.bus_.Exists(interface + entry); });
    }
  };

  void AppendSingle(Listing& listing) {
    std::string modalias = interfaces_.empty() ? std::string() : bus_.ModaliasOf(interfaces_.front());
    if (modalias.empty()) modalias = attributes_.WholeModalias();
    Facts facts{*this, interfaces_};
    const auto setup_class = FindWantedClass(modalias, listing.wanted, facts);
    if (!setup_class) return;
    const auto bound = std::find_if(interfaces_.begin(), interfaces_.end(), [&](const std::string& one) {
      return !bus_.LinkName(one + "/driver").empty();
    });
    std::string function = address_;
    if (!interfaces_.empty()) function = bound != interfaces_.end() ? *bound : interfaces_.front();
    Append(listing, address_, function, modalias, *setup_class);
  }

  /// Appends the device or interface at `address`, whose driver serves it at `function`.
  void Append(Listing& listing, const std::string& address, const std::string& function,
              const std::string& modalias, SetupClass setup_class) {
    const bool is_part = address != address_;
    Device device{.bus = is_part ? Device::Bus::kUsbPart : Device::Bus::kUsb,
                  .address = address,
                  .node = bus_.NodeOf(address)};
    device.function = function == address ? device.node : bus_.NodeOf(function);
    device.modalias = modalias;
    device.ids = BuildDeviceIds({.modalias = modalias, .usb_composite = is_composite_});
    device.setup_class = setup_class;
    if (!device.node.empty() && !device.ids.hardware.empty()) listing.Add(std::move(device));
  }

  bool IsFingerprintReader() {
    if (!is_reader_) is_reader_ = ostrine::IsFingerprintReader(attributes_.OwnNames(), {});
    return *is_reader_;
  }

  /// Interfaces that belong together count as one device, named by the first of them.
  bool BelongsToEarlierInterface(const std::string& interface) const {
    const auto first = bus_.HexAttribute(interface + "/iad_bFirstInterface");
    return first && first != bus_.HexAttribute(interface + "/bInterfaceNumber");
  }

  BusFolder& bus_;
  std::string address_;
  UsbAttributes attributes_;
  bool is_composite_;
  std::vector<std::string> interfaces_;
  std::optional<bool> is_reader_;  ///< once it was asked
};

}  // namespace

bool IsCompositeNode(const Path& node) { return UsbAttributes(Folder(node), ".").IsComposite(); }

void AppendUsbDevices(Listing& listing) {
  BusFolder bus(listing.root, "usb");
  const std::vector<std::string> all = bus.Addresses(Numbering::kDecimal);
  for (const std::string& address : all) {
    if (listing.is_done) return;
    if (address.find(':') != std::string::npos) continue;  // an interface: it comes with its device
    // Every device gets its driver as it is plugged in; one that was taken from it is uninstalled.
    if (!bus.LinkName(address + "/driver").empty()) UsbDevice(bus, address, all).AppendTo(listing);
  }
}

}  // namespace ostrine
