/// The network's rules read slowly and word for word, written without a look at the product's readers, so
/// that the two can be held against each other.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::testing {

using Memory = std::vector<std::uint8_t>;

struct NaiveTexts {
  std::string manufacturer;
  std::string model;
};

/// Text of `length` bytes at `position`, up to its first zero; nothing when one of them is not there.
inline std::optional<std::string> NaiveText(const Memory& bytes, std::size_t position, std::size_t length) {
  std::string text;
  for (std::size_t i = 0; i < length; ++i) {
    if (position + i >= bytes.size()) return std::nullopt;
    text.push_back(static_cast<char>(bytes.at(position + i)));
  }
  return std::string(text.c_str());
}

/// The texts at the fixed positions of one element whose bytes, from the first of the OUI on, are `payload`.
inline NaiveTexts NaiveElement(const Memory& payload) {
  NaiveTexts texts;
  if (payload.size() < 23) return texts;
  const std::size_t a = payload.at(22);
  if (payload.size() < 23 + a + 4) return texts;
  const std::size_t b = payload.at(23 + a + 3);
  const auto manufacturer = NaiveText(payload, 23 + a + 4, b);
  if (!manufacturer) return texts;
  texts.manufacturer = *manufacturer;
  if (payload.size() < 23 + a + 4 + b + 4) return texts;
  const std::size_t c = payload.at(23 + a + 4 + b + 3);
  texts.model = NaiveText(payload, 23 + a + 4 + b + 4, c).value_or("");
  return texts;
}

inline NaiveTexts NaiveElements(const Memory& block) {
  NaiveTexts texts;
  std::size_t position = 0;
  while (position + 1 < block.size()) {
    const std::uint8_t id = block.at(position);
    const std::size_t length = block.at(position + 1);
    Memory payload;
    for (std::size_t i = 0; i < length && position + 2 + i < block.size(); ++i) {
      payload.push_back(block.at(position + 2 + i));
    }
    const bool is_used = id == 221 && length >= 19 && payload.size() >= 4 && payload[0] == 0x00 &&
                         payload[1] == 0x50 && payload[2] == 0xF2 && payload[3] == 4;
    if (is_used) texts = NaiveElement(payload);
    position += length + 2;
  }
  return texts;
}

struct NaivePoint {
  Memory address;
  Memory elements;
};

/// The first access point of a list, its numbers put together byte by byte.
inline std::optional<NaivePoint> NaiveFirstPoint(const Memory& list) {
  const auto number = [&](std::size_t position) {
    std::uint64_t value = 0;
    for (std::size_t i = 4; i > 0; --i) value = value * 256 + list.at(position + i - 1);
    return value;
  };
  if (list.size() < 8 + 360 || number(4) == 0) return std::nullopt;
  NaivePoint point;
  for (std::size_t i = 0; i < 6; ++i) point.address.push_back(list.at(8 + 40 + i));
  const std::uint64_t begin = 8 + number(8 + 352);
  const std::uint64_t end = begin + number(8 + 356);
  for (std::uint64_t i = begin; i < end; ++i) {
    if (end > list.size()) return point;
    point.elements.push_back(list.at(i));
  }
  return point;
}

/// The state's number.
inline int NaiveAddressState(const std::string& address, const std::string& gateway, bool has_dhcp) {
  if (address.size() < 7) return -1;
  int p = -1;
  int q = -1;
  for (std::size_t i = 0; i < address.size(); ++i) p = address[i] == '.' ? static_cast<int>(i) : p;
  for (std::size_t i = 0; i < gateway.size(); ++i) q = gateway[i] == '.' ? static_cast<int>(i) : q;
  if (p == -1 || p != q || p == 0) return 2;
  std::vector<double> parts(4);
  std::istringstream rest(address);
  std::string part;
  for (std::size_t i = 0; i < 4 && std::getline(rest, part, '.'); ++i) {
    // As atoi reads a part of any length; strtod would also take hexadecimal, points, exponents and words.
    const auto first = part.find_first_not_of(" \t\n\v\f\r");
    std::string digits = first == std::string::npos ? "" : part.substr(first);
    const std::size_t sign = !digits.empty() && (digits[0] == '-' || digits[0] == '+') ? 1 : 0;
    digits = digits.substr(0, digits.find_first_not_of("0123456789", sign));
    parts[i] = std::strtod(digits.c_str(), nullptr);
  }
  if (parts[0] == 169 && parts[1] == 254) return 1;
  if (parts[0] == 0 && parts[1] == 0 && parts[2] == 0 && parts[3] == 0) return 1;
  return has_dhcp ? 0 : 3;
}

/// Whether a hosts file has a line that is no comment and not blank.
inline bool NaiveHostsChanged(const std::string& file) {
  std::string translated;
  for (std::size_t i = 0; i < file.size(); ++i) {
    const bool ends_line = file[i] == '\r' && i + 1 < file.size() && file[i + 1] == '\n';
    if (!ends_line) translated.push_back(file[i]);
  }
  std::istringstream stream(translated);
  std::string line;
  while (std::getline(stream, line)) {
    const auto first = line.find_first_not_of(' ');
    if (first != std::string::npos && line[first] != '#') return true;
  }
  return false;
}

}  // namespace velmora::testing
