#include "ostrine/linux/dmi.h"

#include <array>
#include <cstddef>
#include <utility>

#include "ostrine/common/smbios_entry_point.h"
#include "ostrine/linux/file.h"

namespace ostrine {
namespace {

constexpr const char* kRoot = "/";

/// The kernel's copies, in the order of BaseboardFact.
constexpr std::array kAttributes{
    "board_name", "board_vendor", "board_version", "board_serial", "bios_version", "bios_vendor", "bios_date",
};

}  // namespace

std::optional<FirmwareTable> ReadFirmwareTableBelow(const std::filesystem::path& root) {
  const std::string folder = root.native() + "/sys/firmware/dmi/tables/";
  const auto head = ReadBytes((folder + "smbios_entry_point").c_str(), smbios::kEntryPointLimit);
  if (!head) return std::nullopt;
  const auto entry_point = smbios::ParseEntryPoint(*head);
  if (!entry_point) return std::nullopt;
  auto bytes = ReadBytes((folder + "DMI").c_str(), kFirmwareTableLimit);
  if (!bytes) return std::nullopt;
  const smbios::TableView table = smbios::DescribedTable(*entry_point, *bytes);
  if (table.bytes.empty()) return std::nullopt;
  return FirmwareTable(std::move(*bytes), table);
}

std::optional<std::string> ReadBaseboardTextBelow(const std::filesystem::path& root, BaseboardFact fact) {
  if (const auto table = ReadFirmwareTableBelow(root)) {
    const auto text = BaseboardText(table->View(), fact);
    return text ? std::optional<std::string>(*text) : std::nullopt;
  }
  const std::string folder = root.native() + "/sys/class/dmi/id/";
  return ReadAttribute((folder + kAttributes.at(static_cast<std::size_t>(fact))).c_str());
}

std::optional<FirmwareTable> ReadFirmwareTable() { return ReadFirmwareTableBelow(kRoot); }

std::optional<std::string> ReadBaseboardText(BaseboardFact fact) {
  return ReadBaseboardTextBelow(kRoot, fact);
}

}  // namespace ostrine
