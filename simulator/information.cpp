#include "simulator/information.h"

#include <algorithm>
#include <cstring>

#include "platform/unicode.h"

namespace simulator {
namespace {

bool Put(const void* bytes, std::size_t size, std::span<unsigned char> buffer, unsigned int* returned_size) {
  if (size > buffer.size()) return false;
  std::memcpy(buffer.data(), bytes, size);
  if (returned_size != nullptr) *returned_size = static_cast<unsigned int>(size);
  return true;
}

/// Text is cut to what the buffer holds beside its terminating zero.
template <class Character>
bool PutText(const std::basic_string<Character>& text, std::span<unsigned char> buffer,
             unsigned int* returned_size) {
  const std::size_t places = buffer.size() / sizeof(Character);
  if (places == 0) return false;
  const std::basic_string<Character> cut = text.substr(0, places - 1);
  return Put(cut.c_str(), (cut.size() + 1) * sizeof(Character), buffer, returned_size);
}

}  // namespace

Information NarrowOrRefused(const Text& text) {
  if (!text) return Refused{};
  return Narrow{*text};
}

bool WriteInformation(const Information& information, std::span<unsigned char> buffer,
                      unsigned int* returned_size) {
  if (const auto* narrow = std::get_if<Narrow>(&information))
    return PutText(narrow->text, buffer, returned_size);
  if (const auto* wide = std::get_if<Wide>(&information)) {
    return PutText(velmora::unicode::Utf16FromUtf8(wide->text), buffer, returned_size);
  }
  if (const auto* number = std::get_if<std::uint32_t>(&information)) {
    return Put(number, sizeof *number, buffer, returned_size);
  }
  if (const auto* number = std::get_if<std::uint64_t>(&information)) {
    return Put(number, sizeof *number, buffer, returned_size);
  }
  return false;
}

}  // namespace simulator
