#include "ostrine/common/cpuid.h"

#include <string_view>

namespace ostrine {
namespace {

constexpr std::uint32_t kFirstExtendedLeaf = 0x80000000;

std::optional<std::uint32_t> NonZero(std::uint32_t number) {
  return number == 0 ? std::nullopt : std::optional(number);
}

/// Appends the four letters of a register, the lowest byte first.
void AppendLetters(std::string& text, std::uint32_t letters) {
  for (unsigned int shift = 0; shift < 32; shift += 8) text += static_cast<char>(letters >> shift & 0xFF);
}

/// `text` up to its first zero, without blanks at both ends; nothing when none is left.
std::optional<std::string> Trimmed(std::string_view text) {
  text = text.substr(0, text.find('\0'));
  const std::size_t start = text.find_first_not_of(' ');
  if (start == std::string_view::npos) return std::nullopt;
  return std::string(text.substr(start, text.find_last_not_of(' ') + 1 - start));
}

}  // namespace

std::optional<CpuidRegisters> ReadLeaf(const CpuidSource& source, std::uint32_t leaf, std::uint32_t subleaf) {
  const std::uint32_t first = leaf & kFirstExtendedLeaf;
  const auto head = source.Read(first, 0);
  // A processor without the extended leaves answers the first of them with a number that is not above it.
  if (!head || head->eax < leaf) return std::nullopt;
  return leaf == first ? head : source.Read(leaf, subleaf);
}

std::optional<std::string> CpuidVendor(const CpuidSource& source) {
  const auto head = ReadLeaf(source, 0);
  if (!head) return std::nullopt;
  std::string letters;
  for (const std::uint32_t part : {head->ebx, head->edx, head->ecx}) AppendLetters(letters, part);
  // Some vendors have blanks among their letters, which belong to them.
  letters.resize(std::string_view(letters).substr(0, letters.find('\0')).size());
  return letters.empty() ? std::nullopt : std::optional(letters);
}

std::optional<std::string> CpuidName(const CpuidSource& source) {
  constexpr std::uint32_t kLastPart = 0x80000004;
  std::string letters;
  const auto last = ReadLeaf(source, kLastPart);
  if (!last) return std::nullopt;
  // Where the last part is there, the others are. Each reading is dear on a virtual machine.
  for (const auto& part : {source.Read(kLastPart - 2, 0), source.Read(kLastPart - 1, 0), last}) {
    if (!part) return std::nullopt;
    for (const std::uint32_t four : {part->eax, part->ebx, part->ecx, part->edx})
      AppendLetters(letters, four);
  }
  return Trimmed(letters);
}

std::optional<std::uint32_t> CpuidAddressBits(const CpuidSource& source) {
  const auto sizes = ReadLeaf(source, 0x80000008);
  return sizes ? NonZero(sizes->eax & 0xFF) : std::nullopt;
}

CpuidClocks ReadCpuidClocks(const CpuidSource& source) {
  const auto clocks = ReadLeaf(source, 0x16);
  if (!clocks) return {};
  return {.maximum = NonZero(clocks->ebx & 0xFFFF), .bus = NonZero(clocks->ecx & 0xFFFF)};
}

bool IsHybrid(const CpuidSource& source) {
  constexpr std::uint32_t kHybrid = 1U << 15;
  const auto features = ReadLeaf(source, 7);
  return features && (features->edx & kHybrid) != 0;
}

CpuidFamily FamilyOfVendor(const std::optional<std::string>& vendor) {
  if (vendor == "GenuineIntel") return CpuidFamily::kIntel;
  if (vendor == "AuthenticAMD" || vendor == "HygonGenuine") return CpuidFamily::kAmd;
  return CpuidFamily::kUnknown;
}

}  // namespace ostrine
