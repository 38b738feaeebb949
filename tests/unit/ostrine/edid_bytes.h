/// A display's own description in bytes, as the tests make it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <numeric>
#include <string>
#include <string_view>
#include <vector>

namespace ostrine::test {

struct Timing {
  std::uint32_t kilohertz = 0;  ///< a multiple of 10
  std::uint32_t width = 0;
  std::uint32_t width_blank = 0;
  std::uint32_t height = 0;
  std::uint32_t height_blank = 0;
  bool is_interlaced = false;
};

/// 1920 x 1080 at 60 Hz.
inline constexpr Timing kFullHd{148'500, 1920, 280, 1080, 45};

struct EdidBytes {
  std::string maker = "AUO";
  std::uint16_t product = 0x3DED;
  Timing timing = kFullHd;
  std::string name;

  std::vector<std::uint8_t> Build() const {
    std::vector<std::uint8_t> bytes(128);
    for (std::size_t i = 1; i <= 6; ++i) bytes[i] = 0xFF;
    unsigned int packed = 0;
    for (const char letter : maker) packed = packed << 5 | static_cast<unsigned int>(letter - 'A' + 1);
    bytes[8] = static_cast<std::uint8_t>(packed >> 8);
    bytes[9] = static_cast<std::uint8_t>(packed & 0xFF);
    bytes[10] = static_cast<std::uint8_t>(product & 0xFF);
    bytes[11] = static_cast<std::uint8_t>(product >> 8);
    bytes[18] = 1;
    bytes[19] = 4;
    PutTiming(bytes, 54);
    if (!name.empty()) PutText(bytes, 90, 0xFC, name);
    PutText(bytes, 108, 0xFE, "B140HAN04.E");
    Seal(bytes);
    return bytes;
  }

  /// Makes the block add up.
  static void Seal(std::vector<std::uint8_t>& bytes) {
    const unsigned int sum = std::accumulate(bytes.begin(), bytes.begin() + 127, 0u);
    bytes[127] = static_cast<std::uint8_t>(256 - sum % 256);
  }

  static void PutText(std::vector<std::uint8_t>& bytes, std::size_t at, std::uint8_t kind,
                      std::string_view text) {
    for (std::size_t i = 0; i < 18; ++i) bytes[at + i] = i < 5 ? 0 : ' ';
    bytes[at + 3] = kind;
    for (std::size_t i = 0; i < text.size() && i < 13; ++i)
      bytes[at + 5 + i] = static_cast<std::uint8_t>(text[i]);
    if (text.size() < 13) bytes[at + 5 + text.size()] = '\n';
  }

 private:
  void PutTiming(std::vector<std::uint8_t>& bytes, std::size_t at) const {
    const auto put = [&](std::size_t low, std::size_t high, std::uint32_t active, std::uint32_t blank) {
      bytes[at + low] = static_cast<std::uint8_t>(active & 0xFF);
      bytes[at + low + 1] = static_cast<std::uint8_t>(blank & 0xFF);
      bytes[at + high] = static_cast<std::uint8_t>((active >> 8) << 4 | blank >> 8);
    };
    bytes[at] = static_cast<std::uint8_t>(timing.kilohertz / 10 & 0xFF);
    bytes[at + 1] = static_cast<std::uint8_t>(timing.kilohertz / 10 >> 8);
    put(2, 4, timing.width, timing.width_blank);
    put(5, 7, timing.height, timing.height_blank);
    bytes[at + 17] = timing.is_interlaced ? 0x9E : 0x1E;
  }
};

}  // namespace ostrine::test
