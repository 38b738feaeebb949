#include "ostrine/common/firmware.h"

#include <windows.h>

#include <string>

#include "ostrine/common/baseboard.h"
#include "ostrine/common/smbios_entry_point.h"

namespace ostrine {
namespace {

constexpr DWORD kRawSmbiosProvider = 0x52534D42;  // 'RSMB'

/// What GetSystemFirmwareTable gives; nothing when there is no table, or one past the limit.
std::optional<std::vector<std::uint8_t>> ReadRawSmbiosData() {
  // The first call tells the size. The table may be another at the second, so a size that grew is tried
  // again.
  constexpr int kTries = 3;
  DWORD size = GetSystemFirmwareTable(kRawSmbiosProvider, 0, nullptr, 0);
  for (int i = 0; i < kTries && size != 0 && size <= kFirmwareTableLimit; ++i) {
    std::vector<std::uint8_t> bytes(size);
    size = GetSystemFirmwareTable(kRawSmbiosProvider, 0, bytes.data(), size);
    if (size != 0 && size <= bytes.size()) {
      bytes.resize(size);
      return bytes;
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<FirmwareTable> ReadFirmwareTable() {
  auto bytes = ReadRawSmbiosData();
  if (!bytes) return std::nullopt;
  const auto table = smbios::ParseRawSmbiosData(*bytes);
  if (!table || table->bytes.empty()) return std::nullopt;
  return FirmwareTable(std::move(*bytes), *table);
}

std::optional<std::string> ReadBaseboardText(BaseboardFact fact) {
  const auto table = ReadFirmwareTable();
  if (!table) return std::nullopt;
  const auto text = BaseboardText(table->View(), fact);
  return text ? std::optional<std::string>(*text) : std::nullopt;
}

}  // namespace ostrine
