// Any bytes as an SMBIOS table, as an entry point with a table behind it, and as Windows's raw data: walks
// everything and asks every field.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "ostrine/common/baseboard.h"
#include "ostrine/common/smbios.h"
#include "ostrine/common/smbios_entry_point.h"

namespace {

using namespace ostrine;

void Require(bool holds) {
  if (!holds) std::abort();
}

/// Adds up the bytes, so that each is touched and the sanitizers see it.
unsigned int Touch(std::string_view text) {
  unsigned int sum = 0;
  for (const char letter : text) sum += static_cast<unsigned char>(letter);
  return sum;
}

unsigned int AskEverything(const smbios::Structure& structure) {
  const std::size_t length = structure.Formatted().size();
  Require(length >= smbios::Structure::kHeaderSize && length <= 255);
  unsigned int sum = structure.Handle();
  for (std::size_t offset = 0; offset <= length; ++offset) {
    Require(structure.U8(offset).has_value() == (offset + 1 <= length));
    Require(structure.U16(offset).has_value() == (offset + 2 <= length));
    Require(structure.U32(offset).has_value() == (offset + 4 <= length));
    Require(structure.U64(offset).has_value() == (offset + 8 <= length));
    sum += structure.U8(offset).value_or(0);
  }
  for (unsigned int number = 0; number <= 255; ++number) {
    const std::string_view text = structure.String(static_cast<std::uint8_t>(number));
    Require(text.find('\0') == std::string_view::npos);
    sum += Touch(text);
  }
  return sum;
}

unsigned int WalkEverything(const smbios::TableView& table) {
  unsigned int sum = 0;
  std::size_t count = 0;
  smbios::StructureWalker walker(table);
  while (const auto structure = walker.Next()) {
    Require(++count <= table.bytes.size() / smbios::Structure::kHeaderSize);
    sum += AskEverything(*structure);
  }
  Require(!walker.Next());
  for (unsigned int id = 0; id <= 6; ++id) {
    const auto text = BaseboardText(table, static_cast<BaseboardFact>(id));
    if (text) sum += Touch(*text);
  }
  return sum;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const smbios::Bytes bytes(data, size);
  volatile unsigned int sum = WalkEverything({.bytes = bytes});
  if (size > 0) sum = WalkEverything({.bytes = bytes.subspan(1), .structure_count = bytes[0]});
  if (const auto table = smbios::ParseRawSmbiosData(bytes)) sum = WalkEverything(*table);
  const std::size_t head = size < smbios::kEntryPointLimit ? size : smbios::kEntryPointLimit;
  if (const auto entry_point = smbios::ParseEntryPoint(bytes.first(head))) {
    sum = WalkEverything(smbios::DescribedTable(*entry_point, bytes.subspan(head)));
  }
  static_cast<void>(sum);
  return 0;
}
