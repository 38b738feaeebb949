#include "ostrine/common/edid.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <numeric>

namespace ostrine {
namespace {

using Block = std::span<const std::uint8_t, 128>;
using Descriptor = std::span<const std::uint8_t, 18>;

constexpr std::array<std::size_t, 4> kDescriptors{54, 72, 90, 108};

bool IsWhole(Block block) {
  constexpr std::array<std::uint8_t, 8> kStart{0x00, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0x00};
  const unsigned int sum = std::accumulate(block.begin(), block.end(), 0u);
  return std::equal(kStart.begin(), kStart.end(), block.begin()) && sum % 256 == 0;
}

/// Three letters of five bits each, 1 for A, behind one bit that is 0.
std::string Maker(Block block) {
  const auto packed = static_cast<unsigned int>(block[8] << 8 | block[9]);
  std::string maker;
  for (const unsigned int shift : {10u, 5u, 0u}) {
    const unsigned int letter = packed >> shift & 31;
    if (letter < 1 || letter > 26) return {};
    maker.push_back(static_cast<char>('A' + letter - 1));
  }
  return packed >> 15 == 0 ? maker : std::string();
}

/// Up to 13 characters, ended by a line feed and padded with blanks.
std::string DescriptorText(Descriptor descriptor) {
  constexpr std::size_t kTextOffset = 5;
  std::string text;
  for (const std::uint8_t byte : descriptor.subspan<kTextOffset>()) {
    if (byte == '\n' || byte == 0) break;
    if (byte >= ' ' && byte <= '~') text.push_back(static_cast<char>(byte));
  }
  text.erase(text.find_last_not_of(' ') + 1);
  text.erase(0, text.find_first_not_of(' '));
  return text;
}

std::optional<EdidMode> DetailedTiming(Descriptor timing) {
  // A length of twelve bits: the low eight in a byte of their own, the high four in a shared one.
  const auto length = [&](std::size_t low, std::size_t high, unsigned int shift) {
    return static_cast<std::uint32_t>(timing[low] | (timing[high] >> shift & 15) << 8);
  };
  const auto tens_of_kilohertz = static_cast<std::uint64_t>(timing[0] | timing[1] << 8);
  const std::uint32_t width = length(2, 4, 4);
  const std::uint32_t lines = length(5, 7, 4);
  const std::uint64_t dots = std::uint64_t{width} + length(3, 4, 0);
  const std::uint64_t dots_of_picture = dots * (std::uint64_t{lines} + length(6, 7, 0));
  if (tens_of_kilohertz == 0 || width == 0 || lines == 0) return std::nullopt;
  const std::uint64_t rate = (tens_of_kilohertz * 10'000 + dots_of_picture / 2) / dots_of_picture;
  if (rate == 0) return std::nullopt;
  constexpr std::uint8_t kInterlaced = 0x80;
  const bool is_half = (timing[17] & kInterlaced) != 0;
  return EdidMode{
      .width = width, .height = is_half ? 2 * lines : lines, .rate = static_cast<std::uint32_t>(rate)};
}

/// Whether the 18 bytes hold a text or the like instead of a timing, and of which kind.
bool IsOfKind(Descriptor descriptor, std::uint8_t kind) {
  return descriptor[0] == 0 && descriptor[1] == 0 && descriptor[2] == 0 && descriptor[3] == kind;
}

}  // namespace

std::optional<Edid> ParseEdid(std::span<const std::uint8_t> bytes) {
  if (bytes.size() < Block::extent) return std::nullopt;
  const Block block = bytes.first<Block::extent>();
  if (!IsWhole(block)) return std::nullopt;
  Edid edid{.maker = Maker(block), .product = static_cast<std::uint16_t>(block[10] | block[11] << 8)};
  edid.preferred = DetailedTiming(block.subspan<kDescriptors.front(), Descriptor::extent>());
  constexpr std::uint8_t kName = 0xFC;
  for (const std::size_t at : kDescriptors) {
    const Descriptor descriptor(block.subspan(at).first<Descriptor::extent>());
    if (edid.name.empty() && IsOfKind(descriptor, kName)) edid.name = DescriptorText(descriptor);
  }
  return edid;
}

std::string MonitorCaption(const Edid& edid) {
  if (!edid.name.empty() || edid.maker.empty()) return edid.name;
  constexpr char kDigits[] = "0123456789ABCDEF";
  std::string caption = edid.maker;
  for (const unsigned int shift : {12u, 8u, 4u, 0u}) {
    caption.push_back(kDigits[static_cast<unsigned int>(edid.product) >> shift & 15]);
  }
  return caption;
}

}  // namespace ostrine
