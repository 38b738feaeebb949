#include <algorithm>
#include <optional>
#include <string_view>

#include "ostrine/linux/bus_devices.h"
#include "ostrine/linux/wanted_class.h"

namespace ostrine {
namespace {

/// What one function is, found out step by step.
class PciFunction {
 public:
  PciFunction(const Listing& listing, BusFolder& bus, const std::string& address)
      : listing_(listing), bus_(bus), address_(address), modalias_(bus.ModaliasOf(address)) {}

  const std::string& Modalias() const { return modalias_; }

  /// The device; nothing when it has none of the IDs by which it would be known.
  std::optional<Device> Describe(SetupClass setup_class) const {
    Device device{.bus = Device::Bus::kPci, .address = address_, .node = bus_.NodeOf(address_)};
    if (device.node.empty()) return std::nullopt;
    device.function = Child().empty() ? device.node : device.node / Child();
    device.modalias = modalias_;
    DeviceFacts facts{.modalias = modalias_};
    if (const auto revision = bus_.HexAttribute(address_ + "/revision"); revision && *revision <= 0xFF) {
      facts.pci_revision = static_cast<std::uint8_t>(*revision);
    }
    device.ids = BuildDeviceIds(facts);
    device.setup_class = setup_class;
    return device.ids.hardware.empty() ? std::nullopt : std::optional(std::move(device));
  }

  // Facts that decide its class.
  bool HasNetworkInterface() const { return bus_.Exists(FunctionPath() + "/net"); }
  bool HasBluetoothRadio() const { return bus_.Exists(address_ + "/bluetooth"); }
  static bool IsFingerprintReader() { return false; }
  static bool IsComposite() { return false; }

 private:
  /// A paravirtual function has a generic driver, and its real one at a device of its own below it: that
  /// device's name. Empty for any other function.
  std::string_view Child() const {
    const auto& all = listing_.paravirtual;
    const auto found = std::find_if(all.begin(), all.end(), [&](const Paravirtual& paravirtual) {
      return paravirtual.parent == address_;
    });
    return found != all.end() ? std::string_view(found->address) : std::string_view();
  }

  /// The folder that the driver serves, below the bus's.
  std::string FunctionPath() const {
    return Child().empty() ? address_ : std::string(address_).append("/").append(Child());
  }

  const Listing& listing_;
  BusFolder& bus_;
  const std::string& address_;
  std::string modalias_;
};

}  // namespace

void AppendPciDevices(Listing& listing) {
  BusFolder bus(listing.root, "pci");
  listing.pci = bus.Addresses(Numbering::kHexadecimal);
  for (const std::string& address : listing.pci) {
    if (listing.is_done) return;
    const PciFunction function(listing, bus, address);
    const auto setup_class = FindWantedClass(function.Modalias(), listing.wanted, function);
    if (!setup_class) continue;
    if (auto device = function.Describe(*setup_class)) listing.Add(std::move(*device));
  }
}

}  // namespace ostrine
