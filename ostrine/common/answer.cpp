#include "ostrine/common/answer.h"

#include <algorithm>

#include "ostrine/common/narrow_text.h"

namespace ostrine {
namespace {

bool StartsPair(char16_t unit) { return (unit & 0xFC00) == 0xD800; }
bool EndsPair(char16_t unit) { return (unit & 0xFC00) == 0xDC00; }

/// As many units of `text` as `room` holds, without the first half of a pair at the cut.
std::u16string_view WidePrefix(std::u16string_view text, std::size_t room) {
  if (text.size() <= room) return text;
  const bool splits_pair = room > 0 && StartsPair(text[room - 1]) && EndsPair(text[room]);
  return text.substr(0, splits_pair ? room - 1 : room);
}

}  // namespace

bool Answer::NarrowText(std::string_view text) {
  if (buffer_.empty()) return false;
  const std::size_t length = NarrowPrefix(text, buffer_.size() - 1);
  std::copy_n(text.begin(), length, buffer_.begin());
  buffer_[length] = 0;
  Written(length + 1);
  return true;
}

bool Answer::WideText(std::u16string_view text) {
  constexpr std::size_t kUnitSize = 2;
  if (buffer_.size() < kUnitSize) return false;
  std::size_t offset = 0;
  const auto write = [&](char16_t unit) {
    buffer_[offset++] = static_cast<std::uint8_t>(unit & 0xFF);
    buffer_[offset++] = static_cast<std::uint8_t>(unit >> 8);
  };
  for (const char16_t unit : WidePrefix(text, buffer_.size() / kUnitSize - 1)) write(unit);
  write(u'\0');
  Written(offset);
  return true;
}

bool Answer::Number(std::uint32_t number) { return Unsigned(number, sizeof number); }

bool Answer::LongNumber(std::uint64_t number) { return Unsigned(number, sizeof number); }

bool Answer::Record(std::span<const std::uint8_t> record) {
  if (record.size() > buffer_.size()) return false;
  std::copy(record.begin(), record.end(), buffer_.begin());
  Written(record.size());
  return true;
}

bool Answer::Unsigned(std::uint64_t number, std::size_t width) {
  if (width > buffer_.size()) return false;
  for (std::size_t i = 0; i < width; ++i) buffer_[i] = static_cast<std::uint8_t>(number >> (8 * i) & 0xFF);
  Written(width);
  return true;
}

void Answer::Written(std::size_t size) {
  if (returned_size_ != nullptr) *returned_size_ = static_cast<unsigned int>(size);
}

}  // namespace ostrine
